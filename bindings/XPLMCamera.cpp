// The script module XPLMCamera and its constants.
#include "BindingModules.h"
#include "BindingSupport.h"

#include <iterator>

namespace {

// Installed in this order, each under its SDK name.
const CV_IntConstant XPLMCameraConstants[] = {
    // How long a plugin keeps control of the camera.
    {"xplm_ControlCameraUntilViewChanges", 1},
    {"xplm_ControlCameraForever", 2},
};

PyMethodDef XPLMCameraMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMCameraModule = {PyModuleDef_HEAD_INIT, "XPLMCamera", nullptr, -1, XPLMCameraMethods};

}  // namespace

PyObject* initXPLMCamera() {
    return CV_CreateModule(&XPLMCameraModule, XPLMCameraConstants, std::size(XPLMCameraConstants));
}
