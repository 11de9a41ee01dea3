// The script module XPLMUtilities.
#include "BindingModules.h"
#include "BindingSupport.h"

namespace {

PyMethodDef XPLMUtilitiesMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMUtilitiesModule = {PyModuleDef_HEAD_INIT, "XPLMUtilities", nullptr, -1, XPLMUtilitiesMethods};

}  // namespace

PyObject* initXPLMUtilities() { return CV_CreateModule(&XPLMUtilitiesModule); }
