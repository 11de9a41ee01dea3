// The script module XPLMDisplay.
#include "BindingModules.h"
#include "BindingSupport.h"

namespace {

PyMethodDef XPLMDisplayMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMDisplayModule = {PyModuleDef_HEAD_INIT, "XPLMDisplay", nullptr, -1, XPLMDisplayMethods};

}  // namespace

PyObject* initXPLMDisplay() { return CV_CreateModule(&XPLMDisplayModule); }
