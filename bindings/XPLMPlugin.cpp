// The script module XPLMPlugin and its constants.
#include "BindingModules.h"
#include "BindingSupport.h"

#include <iterator>

namespace {

// Installed in this order, each under its SDK name.
const CV_IntConstant XPLMPluginConstants[] = {
    // Messages the simulator sends to every plugin.
    {"XPLM_MSG_PLANE_CRASHED", 101},
    {"XPLM_MSG_PLANE_LOADED", 102},
    {"XPLM_MSG_AIRPORT_LOADED", 103},
    {"XPLM_MSG_SCENERY_LOADED", 104},
    {"XPLM_MSG_AIRPLANE_COUNT_CHANGED", 105},
    {"XPLM_MSG_PLANE_UNLOADED", 106},
    {"XPLM_MSG_WILL_WRITE_PREFS", 107},
    {"XPLM_MSG_LIVERY_LOADED", 108},
};

PyMethodDef XPLMPluginMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMPluginModule = {PyModuleDef_HEAD_INIT, "XPLMPlugin", nullptr, -1, XPLMPluginMethods};

}  // namespace

PyObject* initXPLMPlugin() {
    return CV_CreateModule(&XPLMPluginModule, XPLMPluginConstants, std::size(XPLMPluginConstants));
}
