// XPLMCamera: camera control.
#include "XPLMCamera.h"

#include "world/World.h"

// ------------------------------------------------------------------ not yet simulated

void XPLMControlCamera(XPLMCameraControlDuration inHowLong, XPLMCameraControl_f inControlFunc, void * inRefcon) {
    xpsim::NotYetSimulated("XPLMControlCamera");
}

void XPLMDontControlCamera(void) {
    xpsim::NotYetSimulated("XPLMDontControlCamera");
}

int XPLMIsCameraBeingControlled(XPLMCameraControlDuration * outCameraControlDuration) {
    xpsim::NotYetSimulated("XPLMIsCameraBeingControlled");
    if (outCameraControlDuration) *outCameraControlDuration = 0;
    return 0;
}

void XPLMReadCameraPosition(XPLMCameraPosition_t * outCameraPosition) {
    xpsim::NotYetSimulated("XPLMReadCameraPosition");
    if (outCameraPosition) *outCameraPosition = XPLMCameraPosition_t();
}
