#ifndef _XPLMPlanes_h_
#define _XPLMPlanes_h_

/*
 * XPLMPlanes.h - changing and placing the user's aircraft, and taking over
 * or drawing the other (AI / multiplayer) aircraft. Aircraft paths here
 * are full file system paths.
 */

#include "XPLMDefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/***************************************************************************
 * USER AIRCRAFT ACCESS
 ***************************************************************************/

/*
 * XPLMSetUsersAircraft
 * Loads a new user aircraft from the full path of its .acf file.
 */
XPLM_API void                 XPLMSetUsersAircraft(
                                   const char *         inAircraftPath);

/*
 * XPLMPlaceUserAtAirport
 * Moves the user's aircraft to an airport given by its ID (e.g. "KBOS").
 */
XPLM_API void                 XPLMPlaceUserAtAirport(
                                   const char *         inAirportCode);

/***************************************************************************
 * GLOBAL AIRCRAFT ACCESS
 ***************************************************************************/

/* Aircraft index of the user's plane. */
#define XPLM_USER_AIRCRAFT   0

/*
 * XPLMPlaneDrawState_t
 * Extra control-surface state for XPLMDrawAircraft. Set structSize to
 * sizeof(XPLMPlaneDrawState_t). Ratios run from 0 to 1 unless noted.
 */
typedef struct {
     /* Size of this structure in bytes. */
     int                       structSize;
     /* Landing gear extension. */
     float                     gearPosition;
     /* Flap deployment. */
     float                     flapRatio;
     /* Spoiler deployment. */
     float                     spoilerRatio;
     /* Speed brake deployment. */
     float                     speedBrakeRatio;
     /* Slat deployment. */
     float                     slatRatio;
     /* Wing sweep, 0 = forward, 1 = swept. */
     float                     wingSweep;
     /* Thrust, 0 = none, 1 = full (negative = reverse). */
     float                     thrust;
     /* Commanded yoke pitch, -1..1. */
     float                     yokePitch;
     /* Commanded yoke heading (rudder), -1..1. */
     float                     yokeHeading;
     /* Commanded yoke roll, -1..1. */
     float                     yokeRoll;
} XPLMPlaneDrawState_t;

/*
 * XPLMCountAircraft
 * Reports the number of aircraft slots, how many are active, and which
 * plugin (if any) has acquired them.
 */
XPLM_API void                 XPLMCountAircraft(
                                   int *                outTotalAircraft,
                                   int *                outActiveAircraft,
                                   XPLMPluginID *       outController);

/*
 * XPLMGetNthAircraftModel
 * Returns the .acf file name (at least 256 bytes) and full path (at least
 * 512 bytes) of the aircraft in a slot.
 */
XPLM_API void                 XPLMGetNthAircraftModel(
                                   int                  inIndex,
                                   char *               outFileName,
                                   char *               outPath);

/***************************************************************************
 * EXCLUSIVE AIRCRAFT ACCESS
 ***************************************************************************/

/*
 * XPLMPlanesAvailable_f
 * Called when aircraft that another plugin held become available.
 */
typedef void (* XPLMPlanesAvailable_f)(
                                   void *               inRefcon);

/*
 * XPLMAcquirePlanes
 * Requests exclusive control of the other aircraft. inAircraft is a
 * NULL-terminated list of .acf paths to load (empty string = leave slot
 * alone), or NULL. Returns 1 if granted; otherwise inCallback is called
 * when they become free.
 */
XPLM_API int                  XPLMAcquirePlanes(
                                   char **              inAircraft,    /* Can be NULL */
                                   XPLMPlanesAvailable_f inCallback,
                                   void *               inRefcon);

/*
 * XPLMReleasePlanes
 * Gives up exclusive control of the other aircraft.
 */
XPLM_API void                 XPLMReleasePlanes(void);

/*
 * XPLMSetActiveAircraftCount
 * Sets how many aircraft (including the user's) are active.
 */
XPLM_API void                 XPLMSetActiveAircraftCount(
                                   int                  inCount);

/*
 * XPLMSetAircraftModel
 * Loads an aircraft model into a slot (not the user's, slot 0).
 */
XPLM_API void                 XPLMSetAircraftModel(
                                   int                  inIndex,
                                   const char *         inAircraftPath);

/*
 * XPLMDisableAIForPlane
 * Stops X-Plane's AI from flying an aircraft so the plugin can move it.
 */
XPLM_API void                 XPLMDisableAIForPlane(
                                   int                  inPlaneIndex);

/*
 * XPLMDrawAircraft
 * Draws an aircraft model at a local-coordinate position and attitude
 * (3-d draw callbacks only). inFullDraw = 0 draws only the lights.
 */
XPLM_API void                 XPLMDrawAircraft(
                                   int                  inPlaneIndex,
                                   float                inX,
                                   float                inY,
                                   float                inZ,
                                   float                inPitch,
                                   float                inRoll,
                                   float                inYaw,
                                   int                  inFullDraw,
                                   XPLMPlaneDrawState_t * inDrawStateInfo);

/*
 * XPLMReinitUsersPlane
 * Re-initialises the user's aircraft after its position or state was set
 * through datarefs.
 */
XPLM_API void                 XPLMReinitUsersPlane(void);

#ifdef __cplusplus
}
#endif

#endif /* _XPLMPlanes_h_ */
