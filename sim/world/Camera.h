// The camera: the sim's own views and a plugin's control of the camera.
//
// While no plugin controls it, the camera shows the current view (the default view at the start;
// the sim/view/... commands switch views). A plugin takes control with XPLMControlCamera, either
// until the view changes or forever. In the camera phase of every frame (after the flight loops,
// before the drawing phases) the controlling plugin's callback is called in its context with the
// current camera position; it moves the camera by changing the record and returning 1, and gives
// control back by returning 0. Control ends, and the sim shows the current view again, when:
//   - the callback returns 0, or the plugin calls XPLMDontControlCamera (the callback is not told);
//   - another XPLMControlCamera takes over (the old callback is called once with a null position
//     and is-losing-control 1);
//   - a view command runs while the control lasts until the view changes (the callback is told as
//     above; control "forever" survives view changes);
//   - the plugin is disabled or unloaded (its callback is not called).
// Log.txt notes every change of hands.
#pragma once

#include <string>

#include "XPLMCamera.h"
#include "world/Export.h"

namespace xpsim {

// ------------------------------------------------------------------ control interface

// The camera position as the last frame left it (or as the current view shows it).
XPSIM_API XPLMCameraPosition_t CameraPosition();
// The plugin controlling the camera, or kSimId when the sim shows its own view.
XPSIM_API int CameraController();
// xplm_ControlCameraUntilViewChanges or xplm_ControlCameraForever; 0 while the sim has it.
XPSIM_API int CameraControlDuration();
// The command name of the current view ("sim/view/default_view" at the start).
XPSIM_API std::string CameraView();
// The position the sim shows for a view command; false for a command that is not a view.
XPSIM_API bool ViewPosition(const std::string& view, XPLMCameraPosition_t& position);

// ------------------------------------------------------------------ inside the library

void ControlCamera(XPLMCameraControlDuration howLong, XPLMCameraControl_f callback, void* refcon);
void DontControlCamera();
int IsCameraBeingControlled(XPLMCameraControlDuration* duration);
void ReadCameraPosition(XPLMCameraPosition_t* position);

// The camera phase of a frame.
void RunCameraPhase();
// A view command ran: the view becomes `view` and control "until the view changes" ends.
void ChangeView(const std::string& view);

// Ends a plugin's control without calling it; 1 when it had the camera.
int ForgetCameraOf(int plugin);
void ResetCamera();

}  // namespace xpsim
