// The script module XPLMCamera.
#include "BindingModules.h"
#include "BindingSupport.h"

namespace {

PyMethodDef XPLMCameraMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMCameraModule = {PyModuleDef_HEAD_INIT, "XPLMCamera", nullptr, -1, XPLMCameraMethods};

}  // namespace

PyObject* initXPLMCamera() { return CV_CreateModule(&XPLMCameraModule); }
