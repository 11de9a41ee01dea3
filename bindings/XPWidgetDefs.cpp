// The script module XPWidgetDefs and its constants.
#include "BindingModules.h"
#include "BindingSupport.h"

#include <iterator>

namespace {

// Installed in this order, each under its SDK name.
const CV_IntConstant XPWidgetDefsConstants[] = {
    // Widget properties.
    {"xpProperty_Refcon", 0},
    {"xpProperty_Dragging", 1},
    {"xpProperty_DragXOff", 2},
    {"xpProperty_DragYOff", 3},
    {"xpProperty_Hilited", 4},
    {"xpProperty_Object", 5},
    {"xpProperty_Clip", 6},
    {"xpProperty_Enabled", 7},
    {"xpProperty_UserStart", 10000},
    // Message dispatch modes.
    {"xpMode_Direct", 0},
    {"xpMode_UpChain", 1},
    {"xpMode_Recursive", 2},
    {"xpMode_DirectAllCallbacks", 3},
    {"xpMode_Once", 4},
    // The widget class of no class.
    {"xpWidgetClass_None", 0},
    // Widget messages.
    {"xpMsg_None", 0},
    {"xpMsg_Create", 1},
    {"xpMsg_Destroy", 2},
    {"xpMsg_Paint", 3},
    {"xpMsg_Draw", 4},
    {"xpMsg_KeyPress", 5},
    {"xpMsg_KeyTakeFocus", 6},
    {"xpMsg_KeyLoseFocus", 7},
    {"xpMsg_MouseDown", 8},
    {"xpMsg_MouseDrag", 9},
    {"xpMsg_MouseUp", 10},
    {"xpMsg_Reshape", 11},
    {"xpMsg_ExposedChanged", 12},
    {"xpMsg_AcceptChild", 13},
    {"xpMsg_LoseChild", 14},
    {"xpMsg_AcceptParent", 15},
    {"xpMsg_Shown", 16},
    {"xpMsg_Hidden", 17},
    {"xpMsg_DescriptorChanged", 18},
    {"xpMsg_PropertyChanged", 19},
    {"xpMsg_MouseWheel", 20},
    {"xpMsg_CursorAdjust", 21},
    {"xpMsg_UserStart", 10000},
};

PyMethodDef XPWidgetDefsMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPWidgetDefsModule = {PyModuleDef_HEAD_INIT, "XPWidgetDefs", nullptr, -1, XPWidgetDefsMethods};

}  // namespace

PyObject* initXPWidgetDefs() {
    return CV_CreateModule(&XPWidgetDefsModule, XPWidgetDefsConstants, std::size(XPWidgetDefsConstants));
}
