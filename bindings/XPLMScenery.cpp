// The script module XPLMScenery.
#include "BindingModules.h"
#include "BindingSupport.h"

namespace {

PyMethodDef XPLMSceneryMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMSceneryModule = {PyModuleDef_HEAD_INIT, "XPLMScenery", nullptr, -1, XPLMSceneryMethods};

}  // namespace

PyObject* initXPLMScenery() { return CV_CreateModule(&XPLMSceneryModule); }
