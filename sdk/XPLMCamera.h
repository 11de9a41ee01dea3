#ifndef _XPLMCamera_h_
#define _XPLMCamera_h_

/*
 * XPLMCamera.h - reading the camera position and taking control of the
 * camera from a plugin.
 */

#include "XPLMDefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/***************************************************************************
 * CAMERA CONTROL
 ***************************************************************************/

/*
 * XPLMCameraControlDuration
 * How long a plugin keeps control of the camera.
 */
enum {
     /* Until the user picks a different view. */
     xplm_ControlCameraUntilViewChanges       = 1,
     /* Until the plugin gives it up. */
     xplm_ControlCameraForever                = 2
};
typedef int XPLMCameraControlDuration;

/*
 * XPLMCameraPosition_t
 * Camera position in local OpenGL coordinates, orientation in degrees,
 * and zoom factor (1.0 = normal).
 */
typedef struct {
     float                     x;
     float                     y;
     float                     z;
     float                     pitch;
     float                     heading;
     float                     roll;
     float                     zoom;
} XPLMCameraPosition_t;

/*
 * XPLMCameraControl_f
 * Called each frame while the plugin controls the camera; fill in
 * outCameraPosition (it may be NULL when losing control). Return 1 to keep
 * control, 0 to give it up. inIsLosingControl is 1 when control is being
 * taken away.
 */
typedef int (* XPLMCameraControl_f)(
                                   XPLMCameraPosition_t * outCameraPosition,    /* Can be NULL */
                                   int                  inIsLosingControl,
                                   void *               inRefcon);

/*
 * XPLMControlCamera
 * Takes control of the camera for the given duration.
 */
XPLM_API void                 XPLMControlCamera(
                                   XPLMCameraControlDuration inHowLong,
                                   XPLMCameraControl_f  inControlFunc,
                                   void *               inRefcon);

/*
 * XPLMDontControlCamera
 * Gives camera control back to X-Plane.
 */
XPLM_API void                 XPLMDontControlCamera(void);

/*
 * XPLMIsCameraBeingControlled
 * Returns 1 if some plugin controls the camera, and how long for.
 */
XPLM_API int                  XPLMIsCameraBeingControlled(
                                   XPLMCameraControlDuration * outCameraControlDuration);    /* Can be NULL */

/*
 * XPLMReadCameraPosition
 * Reads the current camera position.
 */
XPLM_API void                 XPLMReadCameraPosition(
                                   XPLMCameraPosition_t * outCameraPosition);

#ifdef __cplusplus
}
#endif

#endif /* _XPLMCamera_h_ */
