// The script module XPLMPlanes.
#include "BindingModules.h"
#include "BindingSupport.h"

namespace {

PyMethodDef XPLMPlanesMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMPlanesModule = {PyModuleDef_HEAD_INIT, "XPLMPlanes", nullptr, -1, XPLMPlanesMethods};

}  // namespace

PyObject* initXPLMPlanes() { return CV_CreateModule(&XPLMPlanesModule); }
