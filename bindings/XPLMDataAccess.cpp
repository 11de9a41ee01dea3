// The script module XPLMDataAccess.
#include "BindingModules.h"
#include "BindingSupport.h"

namespace {

PyMethodDef XPLMDataAccessMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMDataAccessModule = {PyModuleDef_HEAD_INIT, "XPLMDataAccess", nullptr, -1, XPLMDataAccessMethods};

}  // namespace

PyObject* initXPLMDataAccess() { return CV_CreateModule(&XPLMDataAccessModule); }
