#ifndef _XPLMUtilities_h_
#define _XPLMUtilities_h_

/*
 * XPLMUtilities.h - miscellaneous services: file system helpers, version
 * and language queries, logging, simulated keystrokes and joystick
 * buttons, and (2.00) the command system.
 */

#include "XPLMDefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/***************************************************************************
 * FILE UTILITIES
 ***************************************************************************/

#if defined(XPLM200)
/*
 * XPLMDataFileType
 * Kinds of X-Plane data file that can be loaded or saved.
 */
enum {
     /* A situation (.sit) file: aircraft, position and conditions. */
     xplm_DataFile_Situation                  = 1,
     /* A replay movie (.rep) file. */
     xplm_DataFile_ReplayMovie                = 2
};
typedef int XPLMDataFileType;
#endif /* XPLM200 */

/*
 * XPLMGetSystemPath
 * Writes the full path of the X-Plane folder, with a trailing separator,
 * into outSystemPath (at least 512 bytes).
 */
XPLM_API void                 XPLMGetSystemPath(
                                   char *               outSystemPath);

/*
 * XPLMGetPrefsPath
 * Writes the full path of a file inside the preferences folder into
 * outPrefsPath (at least 512 bytes); strip the file name to get the folder.
 */
XPLM_API void                 XPLMGetPrefsPath(
                                   char *               outPrefsPath);

/*
 * XPLMGetDirectorySeparator
 * Returns the path separator string used by the simulator's paths.
 */
XPLM_API const char *         XPLMGetDirectorySeparator(void);

/*
 * XPLMExtractFileAndPath
 * Splits a full path in place: the buffer is cut at the last separator so
 * it holds the folder, and a pointer to the file name part is returned.
 */
XPLM_API char *               XPLMExtractFileAndPath(
                                   char *               inFullPath);

/*
 * XPLMGetDirectoryContents
 * Lists the files in a folder. Names are packed NUL-separated into
 * outFileNames (inFileNameBufSize bytes); outIndices (inIndexCount
 * entries, may be NULL) receives pointers to each name. inFirstReturn
 * skips that many entries. Returns 1 if every remaining entry fit.
 */
XPLM_API int                  XPLMGetDirectoryContents(
                                   const char *         inDirectoryPath,
                                   int                  inFirstReturn,
                                   char *               outFileNames,
                                   int                  inFileNameBufSize,
                                   char **              outIndices,    /* Can be NULL */
                                   int                  inIndexCount,
                                   int *                outTotalFiles,    /* Can be NULL */
                                   int *                outReturnedFiles);    /* Can be NULL */

#if defined(XPLM200)
/*
 * XPLMLoadDataFile
 * Loads a situation or replay file. Returns 1 on success.
 */
XPLM_API int                  XPLMLoadDataFile(
                                   XPLMDataFileType     inFileType,
                                   const char *         inFilePath);    /* Can be NULL */
#endif /* XPLM200 */

#if defined(XPLM200)
/*
 * XPLMSaveDataFile
 * Saves the current situation or replay to a file. Returns 1 on success.
 */
XPLM_API int                  XPLMSaveDataFile(
                                   XPLMDataFileType     inFileType,
                                   const char *         inFilePath);
#endif /* XPLM200 */

/***************************************************************************
 * X-PLANE MISC
 ***************************************************************************/

/*
 * XPLMHostApplicationID
 * Which Laminar application is hosting the plugin.
 */
enum {
     xplm_Host_Unknown                        = 0,
     xplm_Host_XPlane                         = 1,
     xplm_Host_PlaneMaker                     = 2,
     xplm_Host_WorldMaker                     = 3,
     xplm_Host_Briefer                        = 4,
     xplm_Host_PartMaker                      = 5,
     xplm_Host_YoungsMod                      = 6,
     xplm_Host_XAuto                          = 7
};
typedef int XPLMHostApplicationID;

/*
 * XPLMLanguageCode
 * The language the simulator's user interface is running in.
 */
enum {
     xplm_Language_Unknown                    = 0,
     xplm_Language_English                    = 1,
     xplm_Language_French                     = 2,
     xplm_Language_German                     = 3,
     xplm_Language_Italian                    = 4,
     xplm_Language_Spanish                    = 5,
     xplm_Language_Korean                     = 6
#if defined(XPLM200)
    ,xplm_Language_Russian                    = 7
#endif /* XPLM200 */
#if defined(XPLM200)
    ,xplm_Language_Greek                      = 8
#endif /* XPLM200 */
#if defined(XPLM200)
    ,xplm_Language_Japanese                   = 9
#endif /* XPLM200 */
};
typedef int XPLMLanguageCode;

#if defined(XPLM200)
/*
 * XPLMError_f
 * Receives a description of an SDK misuse detected by the simulator.
 */
typedef void (* XPLMError_f)(
                                   const char *         inMessage);
#endif /* XPLM200 */

/*
 * XPLMInitialized
 * Returns 1 once the XPLM is up; mainly for code that may run outside
 * the simulator.
 */
XPLM_API int                  XPLMInitialized(void);

/*
 * XPLMGetVersions
 * Reports the X-Plane version (e.g. 1000), the XPLM version (e.g. 210)
 * and the host application.
 */
XPLM_API void                 XPLMGetVersions(
                                   int *                outXPlaneVersion,
                                   int *                outXPLMVersion,
                                   XPLMHostApplicationID * outHostID);

/*
 * XPLMGetLanguage
 * Returns the current user-interface language.
 */
XPLM_API XPLMLanguageCode     XPLMGetLanguage(void);

/*
 * XPLMDebugString
 * Appends a string to the simulator's log (Log.txt). Add your own newline.
 */
XPLM_API void                 XPLMDebugString(
                                   const char *         inString);

#if defined(XPLM200)
/*
 * XPLMSetErrorCallback
 * Installs a function that is told about SDK misuse by this plugin
 * (debugging aid; pass NULL to remove).
 */
XPLM_API void                 XPLMSetErrorCallback(
                                   XPLMError_f          inCallback);
#endif /* XPLM200 */

#if defined(XPLM200)
/*
 * XPLMFindSymbol
 * Looks up an exported XPLM function by name; NULL if it does not exist.
 * Lets a plugin use newer APIs only when they are present.
 */
XPLM_API void *               XPLMFindSymbol(
                                   const char *         inString);
#endif /* XPLM200 */

/***************************************************************************
 * X-PLANE USER INTERACTION
 ***************************************************************************/

/*
 * XPLMCommandKeyID
 * Legacy simulator keystroke functions (prefer the command system).
 */
enum {
     xplm_key_pause=0,
     xplm_key_revthrust,
     xplm_key_jettison,
     xplm_key_brakesreg,
     xplm_key_brakesmax,
     xplm_key_gear,
     xplm_key_timedn,
     xplm_key_timeup,
     xplm_key_fadec,
     xplm_key_otto_dis,
     xplm_key_otto_atr,
     xplm_key_otto_asi,
     xplm_key_otto_hdg,
     xplm_key_otto_gps,
     xplm_key_otto_lev,
     xplm_key_otto_hnav,
     xplm_key_otto_alt,
     xplm_key_otto_vvi,
     xplm_key_otto_vnav,
     xplm_key_otto_nav1,
     xplm_key_otto_nav2,
     xplm_key_targ_dn,
     xplm_key_targ_up,
     xplm_key_hdgdn,
     xplm_key_hdgup,
     xplm_key_barodn,
     xplm_key_baroup,
     xplm_key_obs1dn,
     xplm_key_obs1up,
     xplm_key_obs2dn,
     xplm_key_obs2up,
     xplm_key_com1_1,
     xplm_key_com1_2,
     xplm_key_com1_3,
     xplm_key_com1_4,
     xplm_key_nav1_1,
     xplm_key_nav1_2,
     xplm_key_nav1_3,
     xplm_key_nav1_4,
     xplm_key_com2_1,
     xplm_key_com2_2,
     xplm_key_com2_3,
     xplm_key_com2_4,
     xplm_key_nav2_1,
     xplm_key_nav2_2,
     xplm_key_nav2_3,
     xplm_key_nav2_4,
     xplm_key_adf_1,
     xplm_key_adf_2,
     xplm_key_adf_3,
     xplm_key_adf_4,
     xplm_key_adf_5,
     xplm_key_adf_6,
     xplm_key_transpon_1,
     xplm_key_transpon_2,
     xplm_key_transpon_3,
     xplm_key_transpon_4,
     xplm_key_transpon_5,
     xplm_key_transpon_6,
     xplm_key_transpon_7,
     xplm_key_transpon_8,
     xplm_key_flapsup,
     xplm_key_flapsdn,
     xplm_key_cheatoff,
     xplm_key_cheaton,
     xplm_key_sbrkoff,
     xplm_key_sbrkon,
     xplm_key_ailtrimL,
     xplm_key_ailtrimR,
     xplm_key_rudtrimL,
     xplm_key_rudtrimR,
     xplm_key_elvtrimD,
     xplm_key_elvtrimU,
     xplm_key_forward,
     xplm_key_down,
     xplm_key_left,
     xplm_key_right,
     xplm_key_back,
     xplm_key_tower,
     xplm_key_runway,
     xplm_key_chase,
     xplm_key_free1,
     xplm_key_free2,
     xplm_key_spot,
     xplm_key_fullscrn1,
     xplm_key_fullscrn2,
     xplm_key_tanspan,
     xplm_key_smoke,
     xplm_key_map,
     xplm_key_zoomin,
     xplm_key_zoomout,
     xplm_key_cycledump,
     xplm_key_replay,
     xplm_key_tranID,
     xplm_key_max
};
typedef int XPLMCommandKeyID;

/*
 * XPLMCommandButtonID
 * Legacy joystick button functions (prefer the command system).
 */
enum {
     xplm_joy_nothing=0,
     xplm_joy_start_all,
     xplm_joy_start_0,
     xplm_joy_start_1,
     xplm_joy_start_2,
     xplm_joy_start_3,
     xplm_joy_start_4,
     xplm_joy_start_5,
     xplm_joy_start_6,
     xplm_joy_start_7,
     xplm_joy_throt_up,
     xplm_joy_throt_dn,
     xplm_joy_prop_up,
     xplm_joy_prop_dn,
     xplm_joy_mixt_up,
     xplm_joy_mixt_dn,
     xplm_joy_carb_tog,
     xplm_joy_carb_on,
     xplm_joy_carb_off,
     xplm_joy_trev,
     xplm_joy_trm_up,
     xplm_joy_trm_dn,
     xplm_joy_rot_trm_up,
     xplm_joy_rot_trm_dn,
     xplm_joy_rud_lft,
     xplm_joy_rud_cntr,
     xplm_joy_rud_rgt,
     xplm_joy_ail_lft,
     xplm_joy_ail_cntr,
     xplm_joy_ail_rgt,
     xplm_joy_B_rud_lft,
     xplm_joy_B_rud_rgt,
     xplm_joy_look_up,
     xplm_joy_look_dn,
     xplm_joy_look_lft,
     xplm_joy_look_rgt,
     xplm_joy_glance_l,
     xplm_joy_glance_r,
     xplm_joy_v_fnh,
     xplm_joy_v_fwh,
     xplm_joy_v_tra,
     xplm_joy_v_twr,
     xplm_joy_v_run,
     xplm_joy_v_cha,
     xplm_joy_v_fr1,
     xplm_joy_v_fr2,
     xplm_joy_v_spo,
     xplm_joy_flapsup,
     xplm_joy_flapsdn,
     xplm_joy_vctswpfwd,
     xplm_joy_vctswpaft,
     xplm_joy_gear_tog,
     xplm_joy_gear_up,
     xplm_joy_gear_down,
     xplm_joy_lft_brake,
     xplm_joy_rgt_brake,
     xplm_joy_brakesREG,
     xplm_joy_brakesMAX,
     xplm_joy_speedbrake,
     xplm_joy_ott_dis,
     xplm_joy_ott_atr,
     xplm_joy_ott_asi,
     xplm_joy_ott_hdg,
     xplm_joy_ott_alt,
     xplm_joy_ott_vvi,
     xplm_joy_tim_start,
     xplm_joy_tim_reset,
     xplm_joy_ecam_up,
     xplm_joy_ecam_dn,
     xplm_joy_fadec,
     xplm_joy_yaw_damp,
     xplm_joy_art_stab,
     xplm_joy_chute,
     xplm_joy_JATO,
     xplm_joy_arrest,
     xplm_joy_jettison,
     xplm_joy_fuel_dump,
     xplm_joy_puffsmoke,
     xplm_joy_prerotate,
     xplm_joy_UL_prerot,
     xplm_joy_UL_collec,
     xplm_joy_TOGA,
     xplm_joy_shutdown,
     xplm_joy_con_atc,
     xplm_joy_fail_now,
     xplm_joy_pause,
     xplm_joy_rock_up,
     xplm_joy_rock_dn,
     xplm_joy_rock_lft,
     xplm_joy_rock_rgt,
     xplm_joy_rock_for,
     xplm_joy_rock_aft,
     xplm_joy_idle_hilo,
     xplm_joy_lanlights,
     xplm_joy_max
};
typedef int XPLMCommandButtonID;

/*
 * XPLMSimulateKeyPress
 * Feeds a raw keystroke to X-Plane (not to plugins). inKeyType is an
 * XPLMKeyFlags value, inKey a character/key code.
 */
XPLM_API void                 XPLMSimulateKeyPress(
                                   int                  inKeyType,
                                   int                  inKey);

/*
 * XPLMSpeakString
 * Speaks the text if speech is available, and shows it on screen.
 */
XPLM_API void                 XPLMSpeakString(
                                   const char *         inString);

/*
 * XPLMCommandKeyStroke
 * Triggers the simulator function bound to a legacy key ID.
 */
XPLM_API void                 XPLMCommandKeyStroke(
                                   XPLMCommandKeyID     inKey);

/*
 * XPLMCommandButtonPress
 * Presses a legacy joystick button function; pair with a release.
 */
XPLM_API void                 XPLMCommandButtonPress(
                                   XPLMCommandButtonID  inButton);

/*
 * XPLMCommandButtonRelease
 * Releases a button pressed with XPLMCommandButtonPress.
 */
XPLM_API void                 XPLMCommandButtonRelease(
                                   XPLMCommandButtonID  inButton);

/*
 * XPLMGetVirtualKeyDescription
 * Returns a human-readable name for an XPLM_VK_* code.
 */
XPLM_API const char *         XPLMGetVirtualKeyDescription(
                                   char                 inVirtualKey);

/***************************************************************************
 * X-PLANE MISC (continued)
 ***************************************************************************/

/*
 * XPLMReloadScenery
 * Reloads the scenery around the current aircraft position.
 */
XPLM_API void                 XPLMReloadScenery(void);

#if defined(XPLM200)
/***************************************************************************
 * X-PLANE COMMAND MANAGEMENT
 ***************************************************************************/

/*
 * XPLMCommandPhase
 * Stage of a command's execution passed to command handlers.
 */
enum {
     /* The command has just started (button went down). */
     xplm_CommandBegin                        = 0,
     /* The command is still held; sent repeatedly. */
     xplm_CommandContinue                     = 1,
     /* The command has finished (button went up). */
     xplm_CommandEnd                          = 2
};
typedef int XPLMCommandPhase;

/*
 * XPLMCommandRef
 * Opaque handle to a simulator or plugin command.
 */
typedef void * XPLMCommandRef;

/*
 * XPLMCommandCallback_f
 * Command handler. Return 1 to let further handlers (and X-Plane) process
 * the command, 0 to stop it here.
 */
typedef int (* XPLMCommandCallback_f)(
                                   XPLMCommandRef       inCommand,
                                   XPLMCommandPhase     inPhase,
                                   void *               inRefcon);

/*
 * XPLMFindCommand
 * Looks up a command by name; NULL if unknown.
 */
XPLM_API XPLMCommandRef       XPLMFindCommand(
                                   const char *         inName);

/*
 * XPLMCommandBegin
 * Starts (holds down) a command; balance with XPLMCommandEnd.
 */
XPLM_API void                 XPLMCommandBegin(
                                   XPLMCommandRef       inCommand);

/*
 * XPLMCommandEnd
 * Ends a command started with XPLMCommandBegin.
 */
XPLM_API void                 XPLMCommandEnd(
                                   XPLMCommandRef       inCommand);

/*
 * XPLMCommandOnce
 * Runs a command once (begin immediately followed by end).
 */
XPLM_API void                 XPLMCommandOnce(
                                   XPLMCommandRef       inCommand);

/*
 * XPLMCreateCommand
 * Creates a new command (or returns the existing one with that name).
 */
XPLM_API XPLMCommandRef       XPLMCreateCommand(
                                   const char *         inName,
                                   const char *         inDescription);

/*
 * XPLMRegisterCommandHandler
 * Attaches a handler to a command, before (inBefore = 1) or after X-Plane
 * handles it.
 */
XPLM_API void                 XPLMRegisterCommandHandler(
                                   XPLMCommandRef       inComand,
                                   XPLMCommandCallback_f inHandler,
                                   int                  inBefore,
                                   void *               inRefcon);

/*
 * XPLMUnregisterCommandHandler
 * Removes a handler; all arguments must match the registration.
 */
XPLM_API void                 XPLMUnregisterCommandHandler(
                                   XPLMCommandRef       inComand,
                                   XPLMCommandCallback_f inHandler,
                                   int                  inBefore,
                                   void *               inRefcon);

#endif /* XPLM200 */

#ifdef __cplusplus
}
#endif

#endif /* _XPLMUtilities_h_ */
