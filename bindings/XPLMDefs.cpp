// The script module XPLMDefs.
#include "BindingModules.h"
#include "BindingSupport.h"

namespace {

PyMethodDef XPLMDefsMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMDefsModule = {PyModuleDef_HEAD_INIT, "XPLMDefs", nullptr, -1, XPLMDefsMethods};

}  // namespace

PyObject* initXPLMDefs() { return CV_CreateModule(&XPLMDefsModule); }
