// XPLMCamera: camera control.
#include "XPLMCamera.h"

#include "world/Camera.h"

void XPLMControlCamera(XPLMCameraControlDuration inHowLong, XPLMCameraControl_f inControlFunc, void* inRefcon) {
    xpsim::ControlCamera(inHowLong, inControlFunc, inRefcon);
}

void XPLMDontControlCamera(void) { xpsim::DontControlCamera(); }

int XPLMIsCameraBeingControlled(XPLMCameraControlDuration* outCameraControlDuration) {
    return xpsim::IsCameraBeingControlled(outCameraControlDuration);
}

void XPLMReadCameraPosition(XPLMCameraPosition_t* outCameraPosition) {
    xpsim::ReadCameraPosition(outCameraPosition);
}
