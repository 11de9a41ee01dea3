// The script module XPLMMenus.
#include "BindingModules.h"
#include "BindingSupport.h"

namespace {

PyMethodDef XPLMMenusMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMMenusModule = {PyModuleDef_HEAD_INIT, "XPLMMenus", nullptr, -1, XPLMMenusMethods};

}  // namespace

PyObject* initXPLMMenus() { return CV_CreateModule(&XPLMMenusModule); }
