// The script module XPLMNavigation.
#include "BindingModules.h"
#include "BindingSupport.h"

namespace {

PyMethodDef XPLMNavigationMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMNavigationModule = {PyModuleDef_HEAD_INIT, "XPLMNavigation", nullptr, -1, XPLMNavigationMethods};

}  // namespace

PyObject* initXPLMNavigation() { return CV_CreateModule(&XPLMNavigationModule); }
