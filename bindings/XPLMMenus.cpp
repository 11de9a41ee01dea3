// The script module XPLMMenus and its constants.
#include "BindingModules.h"
#include "BindingSupport.h"

#include <iterator>

namespace {

// Installed in this order, each under its SDK name.
const CV_IntConstant XPLMMenusConstants[] = {
    // Menu item check states.
    {"xplm_Menu_NoCheck", 0},
    {"xplm_Menu_Unchecked", 1},
    {"xplm_Menu_Checked", 2},
};

PyMethodDef XPLMMenusMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMMenusModule = {PyModuleDef_HEAD_INIT, "XPLMMenus", nullptr, -1, XPLMMenusMethods};

}  // namespace

PyObject* initXPLMMenus() {
    return CV_CreateModule(&XPLMMenusModule, XPLMMenusConstants, std::size(XPLMMenusConstants));
}
