#ifndef _XPLMDisplay_h_
#define _XPLMDisplay_h_

/*
 * XPLMDisplay.h - drawing hooks into the simulator's render loop, key
 * sniffers, plugin windows (with mouse, keyboard and cursor handling) and
 * global hot keys.
 *
 * XPLMCursorStatus (used by XPLMHandleCursor_f) is defined in XPLMDefs.h.
 */

#include "XPLMDefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/***************************************************************************
 * DRAWING CALLBACKS
 ***************************************************************************/

/*
 * XPLMDrawingPhase
 * Points in the frame at which a draw callback can run. 3-d phases are
 * drawn in local OpenGL coordinates, 2-d phases in screen pixels.
 */
enum {
     /* Start of 3-d scene drawing. */
     xplm_Phase_FirstScene                    = 0,
     /* Terrain. */
     xplm_Phase_Terrain                       = 5,
     /* Runways and airport markings. */
     xplm_Phase_Airports                      = 10,
     /* Roads, rivers and other vector features. */
     xplm_Phase_Vectors                       = 15,
     /* 3-d scenery objects. */
     xplm_Phase_Objects                       = 20,
     /* Aircraft (external views). */
     xplm_Phase_Airplanes                     = 25,
     /* End of 3-d scene drawing. */
     xplm_Phase_LastScene                     = 30,
     /* Start of 2-d cockpit/overlay drawing. */
     xplm_Phase_FirstCockpit                  = 35,
     /* Panel background. */
     xplm_Phase_Panel                         = 40,
     /* Panel instruments. */
     xplm_Phase_Gauges                        = 45,
     /* Floating windows (plugin and X-Plane). */
     xplm_Phase_Window                        = 50,
     /* End of 2-d drawing. */
     xplm_Phase_LastCockpit                   = 55
#if defined(XPLM200)
     /* 3-d view of the local map. */
    ,xplm_Phase_LocalMap3D                    = 100
#endif /* XPLM200 */
#if defined(XPLM200)
     /* 2-d view of the local map. */
    ,xplm_Phase_LocalMap2D                    = 101
#endif /* XPLM200 */
#if defined(XPLM200)
     /* Profile view of the local map. */
    ,xplm_Phase_LocalMapProfile               = 102
#endif /* XPLM200 */
};
typedef int XPLMDrawingPhase;

/*
 * XPLMDrawCallback_f
 * A draw callback. inIsBefore says whether it runs before or after
 * X-Plane draws that phase. When called before, returning 0 suppresses
 * X-Plane's own drawing of the phase; otherwise return 1.
 */
typedef int (* XPLMDrawCallback_f)(
                                   XPLMDrawingPhase     inPhase,
                                   int                  inIsBefore,
                                   void *               inRefcon);

/*
 * XPLMKeySniffer_f
 * Sees every keystroke before (or after) windows do. Return 1 to pass
 * the key on, 0 to consume it.
 */
typedef int (* XPLMKeySniffer_f)(
                                   char                 inChar,
                                   XPLMKeyFlags         inFlags,
                                   char                 inVirtualKey,
                                   void *               inRefcon);

/*
 * XPLMRegisterDrawCallback
 * Adds a draw callback for a phase, before or after X-Plane's drawing.
 * Returns 1 on success.
 */
XPLM_API int                  XPLMRegisterDrawCallback(
                                   XPLMDrawCallback_f   inCallback,
                                   XPLMDrawingPhase     inPhase,
                                   int                  inWantsBefore,
                                   void *               inRefcon);

/*
 * XPLMUnregisterDrawCallback
 * Removes a draw callback; arguments must match the registration.
 * Returns 1 if it was found.
 */
XPLM_API int                  XPLMUnregisterDrawCallback(
                                   XPLMDrawCallback_f   inCallback,
                                   XPLMDrawingPhase     inPhase,
                                   int                  inWantsBefore,
                                   void *               inRefcon);

/*
 * XPLMRegisterKeySniffer
 * Installs a key sniffer, ahead of (inBeforeWindows = 1) or after the
 * windows. Returns 1 on success.
 */
XPLM_API int                  XPLMRegisterKeySniffer(
                                   XPLMKeySniffer_f     inCallback,
                                   int                  inBeforeWindows,
                                   void *               inRefcon);

/*
 * XPLMUnregisterKeySniffer
 * Removes a key sniffer; arguments must match. Returns 1 if found.
 */
XPLM_API int                  XPLMUnregisterKeySniffer(
                                   XPLMKeySniffer_f     inCallback,
                                   int                  inBeforeWindows,
                                   void *               inRefcon);

/***************************************************************************
 * WINDOW API
 ***************************************************************************/

/*
 * XPLMMouseStatus
 * Stage of a mouse click delivered to a window.
 */
enum {
     /* Button pressed. */
     xplm_MouseDown                           = 1,
     /* Mouse moved while the button is held. */
     xplm_MouseDrag                           = 2,
     /* Button released. */
     xplm_MouseUp                             = 3
};
typedef int XPLMMouseStatus;

/*
 * XPLMWindowID
 * Opaque handle to a plugin window.
 */
typedef void * XPLMWindowID;

/*
 * XPLMDrawWindow_f
 * Draws the window; called every frame while it is visible.
 */
typedef void (* XPLMDrawWindow_f)(
                                   XPLMWindowID         inWindowID,
                                   void *               inRefcon);

/*
 * XPLMHandleKey_f
 * Receives keystrokes while the window has keyboard focus. When
 * losingFocus is non-zero the other key arguments are meaningless and the
 * window is being told it lost focus.
 */
typedef void (* XPLMHandleKey_f)(
                                   XPLMWindowID         inWindowID,
                                   char                 inKey,
                                   XPLMKeyFlags         inFlags,
                                   char                 inVirtualKey,
                                   void *               inRefcon,
                                   int                  losingFocus);

/*
 * XPLMHandleMouseClick_f
 * Mouse click inside the window (screen coordinates). Return 1 to consume
 * the click (and receive the drag/up that follow), 0 to pass it through.
 */
typedef int (* XPLMHandleMouseClick_f)(
                                   XPLMWindowID         inWindowID,
                                   int                  x,
                                   int                  y,
                                   XPLMMouseStatus      inMouse,
                                   void *               inRefcon);

#if defined(XPLM200)
/*
 * XPLMHandleCursor_f
 * Asked what to do with the cursor while it is over the window.
 */
typedef XPLMCursorStatus (* XPLMHandleCursor_f)(
                                   XPLMWindowID         inWindowID,
                                   int                  x,
                                   int                  y,
                                   void *               inRefcon);
#endif /* XPLM200 */

#if defined(XPLM200)
/*
 * XPLMHandleMouseWheel_f
 * Scroll wheel over the window: wheel is the axis (0 vertical,
 * 1 horizontal), clicks the signed amount. Return 1 to consume.
 */
typedef int (* XPLMHandleMouseWheel_f)(
                                   XPLMWindowID         inWindowID,
                                   int                  x,
                                   int                  y,
                                   int                  wheel,
                                   int                  clicks,
                                   void *               inRefcon);
#endif /* XPLM200 */

#if defined(XPLM200)
/*
 * XPLMCreateWindow_t
 * Parameters for XPLMCreateWindowEx. Set structSize to
 * sizeof(XPLMCreateWindow_t). Geometry is in screen pixels, origin at the
 * bottom left.
 */
typedef struct {
     /* Size of this structure in bytes. */
     int                       structSize;
     /* Window edges. */
     int                       left;
     int                       top;
     int                       right;
     int                       bottom;
     /* 1 if the window starts visible. */
     int                       visible;
     /* Callbacks (drawWindowFunc is required). */
     XPLMDrawWindow_f          drawWindowFunc;
     XPLMHandleMouseClick_f    handleMouseClickFunc;
     XPLMHandleKey_f           handleKeyFunc;
     XPLMHandleCursor_f        handleCursorFunc;
     XPLMHandleMouseWheel_f    handleMouseWheelFunc;
     /* Passed back to every callback. */
     void *                    refcon;
} XPLMCreateWindow_t;
#endif /* XPLM200 */

/*
 * XPLMCreateWindow
 * Creates a window with draw, key and click callbacks. Returns its ID.
 */
XPLM_API XPLMWindowID         XPLMCreateWindow(
                                   int                  inLeft,
                                   int                  inTop,
                                   int                  inRight,
                                   int                  inBottom,
                                   int                  inIsVisible,
                                   XPLMDrawWindow_f     inDrawCallback,
                                   XPLMHandleKey_f      inKeyCallback,
                                   XPLMHandleMouseClick_f inMouseCallback,
                                   void *               inRefcon);

#if defined(XPLM200)
/*
 * XPLMCreateWindowEx
 * Creates a window from a parameter block (adds cursor and wheel
 * callbacks).
 */
XPLM_API XPLMWindowID         XPLMCreateWindowEx(
                                   XPLMCreateWindow_t * inParams);
#endif /* XPLM200 */

/*
 * XPLMDestroyWindow
 * Destroys a window created by this plugin.
 */
XPLM_API void                 XPLMDestroyWindow(
                                   XPLMWindowID         inWindowID);

/*
 * XPLMGetScreenSize
 * Size of the simulator's main window in pixels (either pointer may be
 * NULL).
 */
XPLM_API void                 XPLMGetScreenSize(
                                   int *                outWidth,    /* Can be NULL */
                                   int *                outHeight);    /* Can be NULL */

/*
 * XPLMGetMouseLocation
 * Current mouse position in screen pixels (either pointer may be NULL).
 */
XPLM_API void                 XPLMGetMouseLocation(
                                   int *                outX,    /* Can be NULL */
                                   int *                outY);    /* Can be NULL */

/*
 * XPLMGetWindowGeometry
 * Reads a window's edges (any pointer may be NULL).
 */
XPLM_API void                 XPLMGetWindowGeometry(
                                   XPLMWindowID         inWindowID,
                                   int *                outLeft,    /* Can be NULL */
                                   int *                outTop,    /* Can be NULL */
                                   int *                outRight,    /* Can be NULL */
                                   int *                outBottom);    /* Can be NULL */

/*
 * XPLMSetWindowGeometry
 * Moves / resizes a window.
 */
XPLM_API void                 XPLMSetWindowGeometry(
                                   XPLMWindowID         inWindowID,
                                   int                  inLeft,
                                   int                  inTop,
                                   int                  inRight,
                                   int                  inBottom);

/*
 * XPLMGetWindowIsVisible
 * Returns 1 if the window is shown.
 */
XPLM_API int                  XPLMGetWindowIsVisible(
                                   XPLMWindowID         inWindowID);

/*
 * XPLMSetWindowIsVisible
 * Shows (1) or hides (0) a window.
 */
XPLM_API void                 XPLMSetWindowIsVisible(
                                   XPLMWindowID         inWindowID,
                                   int                  inIsVisible);

/*
 * XPLMGetWindowRefCon
 * Returns the window's refcon.
 */
XPLM_API void *               XPLMGetWindowRefCon(
                                   XPLMWindowID         inWindowID);

/*
 * XPLMSetWindowRefCon
 * Replaces the window's refcon.
 */
XPLM_API void                 XPLMSetWindowRefCon(
                                   XPLMWindowID         inWindowID,
                                   void *               inRefcon);

/*
 * XPLMTakeKeyboardFocus
 * Gives keyboard focus to a window (NULL returns focus to X-Plane).
 */
XPLM_API void                 XPLMTakeKeyboardFocus(
                                   XPLMWindowID         inWindow);

/*
 * XPLMBringWindowToFront
 * Raises a window above the other plugin windows.
 */
XPLM_API void                 XPLMBringWindowToFront(
                                   XPLMWindowID         inWindow);

/*
 * XPLMIsWindowInFront
 * Returns 1 if the window is the frontmost one.
 */
XPLM_API int                  XPLMIsWindowInFront(
                                   XPLMWindowID         inWindow);

/***************************************************************************
 * HOT KEYS
 ***************************************************************************/

/*
 * XPLMHotKey_f
 * Called when a hot key is pressed.
 */
typedef void (* XPLMHotKey_f)(
                                   void *               inRefcon);

/*
 * XPLMHotKeyID
 * Opaque handle to a registered hot key.
 */
typedef void * XPLMHotKeyID;

/*
 * XPLMRegisterHotKey
 * Registers a hot key on a virtual key + modifier flags combination, with
 * a description the user can see when remapping it.
 */
XPLM_API XPLMHotKeyID         XPLMRegisterHotKey(
                                   char                 inVirtualKey,
                                   XPLMKeyFlags         inFlags,
                                   const char *         inDescription,
                                   XPLMHotKey_f         inCallback,
                                   void *               inRefcon);

/*
 * XPLMUnregisterHotKey
 * Removes a hot key this plugin registered.
 */
XPLM_API void                 XPLMUnregisterHotKey(
                                   XPLMHotKeyID         inHotKey);

/*
 * XPLMCountHotKeys
 * Returns the number of hot keys registered by all plugins.
 */
XPLM_API int                  XPLMCountHotKeys(void);

/*
 * XPLMGetNthHotKey
 * Returns a hot key by 0-based index.
 */
XPLM_API XPLMHotKeyID         XPLMGetNthHotKey(
                                   int                  inIndex);

/*
 * XPLMGetHotKeyInfo
 * Reads a hot key's key, flags, description (at least 512 bytes) and
 * owning plugin; any pointer may be NULL.
 */
XPLM_API void                 XPLMGetHotKeyInfo(
                                   XPLMHotKeyID         inHotKey,
                                   char *               outVirtualKey,    /* Can be NULL */
                                   XPLMKeyFlags *       outFlags,    /* Can be NULL */
                                   char *               outDescription,    /* Can be NULL */
                                   XPLMPluginID *       outPlugin);    /* Can be NULL */

/*
 * XPLMSetHotKeyCombination
 * Remaps a hot key to a different key combination.
 */
XPLM_API void                 XPLMSetHotKeyCombination(
                                   XPLMHotKeyID         inHotKey,
                                   char                 inVirtualKey,
                                   XPLMKeyFlags         inFlags);

#ifdef __cplusplus
}
#endif

#endif /* _XPLMDisplay_h_ */
