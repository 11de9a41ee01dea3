// The script module XPLMDisplay and its constants.
#include "BindingModules.h"
#include "BindingSupport.h"

#include <iterator>

namespace {

// Installed in this order, each under its SDK name.
const CV_IntConstant XPLMDisplayConstants[] = {
    // Drawing phases.
    {"xplm_Phase_FirstScene", 0},
    {"xplm_Phase_Terrain", 5},
    {"xplm_Phase_Airports", 10},
    {"xplm_Phase_Vectors", 15},
    {"xplm_Phase_Objects", 20},
    {"xplm_Phase_Airplanes", 25},
    {"xplm_Phase_LastScene", 30},
    {"xplm_Phase_FirstCockpit", 35},
    {"xplm_Phase_Panel", 40},
    {"xplm_Phase_Gauges", 45},
    {"xplm_Phase_Window", 50},
    {"xplm_Phase_LastCockpit", 55},
    // Mouse status.
    {"xplm_MouseDown", 1},
    {"xplm_MouseDrag", 2},
    {"xplm_MouseUp", 3},
    // Cursor status.
    {"xplm_CursorDefault", 0},
    {"xplm_CursorHidden", 1},
    {"xplm_CursorArrow", 2},
    {"xplm_CursorCustom", 3},
};

PyMethodDef XPLMDisplayMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMDisplayModule = {PyModuleDef_HEAD_INIT, "XPLMDisplay", nullptr, -1, XPLMDisplayMethods};

}  // namespace

PyObject* initXPLMDisplay() {
    return CV_CreateModule(&XPLMDisplayModule, XPLMDisplayConstants, std::size(XPLMDisplayConstants));
}
