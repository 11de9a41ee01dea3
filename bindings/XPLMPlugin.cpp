// The script module XPLMPlugin.
#include "BindingModules.h"
#include "BindingSupport.h"

namespace {

PyMethodDef XPLMPluginMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMPluginModule = {PyModuleDef_HEAD_INIT, "XPLMPlugin", nullptr, -1, XPLMPluginMethods};

}  // namespace

PyObject* initXPLMPlugin() { return CV_CreateModule(&XPLMPluginModule); }
