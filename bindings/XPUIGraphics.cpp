// The script module XPUIGraphics and its constants.
#include "BindingModules.h"
#include "BindingSupport.h"

#include <iterator>

namespace {

// Installed in this order, each under its SDK name.
const CV_IntConstant XPUIGraphicsConstants[] = {
    // Window styles.
    {"xpWindow_Help", 0},
    {"xpWindow_MainWindow", 1},
    {"xpWindow_SubWindow", 2},
    {"xpWindow_Screen", 4},
    {"xpWindow_ListView", 5},
    // Element styles.
    {"xpElement_TextField", 6},
    {"xpElement_CheckBox", 9},
    {"xpElement_CheckBoxLit", 10},
    {"xpElement_WindowCloseBox", 14},
    {"xpElement_WindowCloseBoxPressed", 15},
    {"xpElement_PushButton", 16},
    {"xpElement_PushButtonLit", 17},
    {"xpElement_OilPlatform", 24},
    {"xpElement_OilPlatformSmall", 25},
    {"xpElement_Ship", 26},
    {"xpElement_ILSGlideScope", 27},
    {"xpElement_MarkerLeft", 28},
    {"xpElement_Airport", 29},
    {"xpElement_Waypoint", 30},
    {"xpElement_NDB", 31},
    {"xpElement_VOR", 32},
    {"xpElement_RadioTower", 33},
    {"xpElement_AircraftCarrier", 34},
    {"xpElement_Fire", 35},
    {"xpElement_MarkerRight", 36},
    {"xpElement_CustomObject", 37},
    {"xpElement_CoolingTower", 38},
    {"xpElement_SmokeStack", 39},
    {"xpElement_Building", 40},
    {"xpElement_PowerLine", 41},
    {"xpElement_CopyButtons", 45},
    {"xpElement_CopyButtonsWithEditingGrid", 46},
    {"xpElement_EditingGrid", 47},
    {"xpElement_ScrollBar", 48},
    {"xpElement_VORWithCompassRose", 49},
    {"xpElement_Zoomer", 51},
    {"xpElement_TextFieldMiddle", 52},
    {"xpElement_LittleDownArrow", 53},
    {"xpElement_LittleUpArrow", 54},
    {"xpElement_WindowDragBar", 61},
    {"xpElement_WindowDragBarSmooth", 62},
    // Track styles.
    {"xpTrack_ScrollBar", 0},
    {"xpTrack_Slider", 1},
    {"xpTrack_Progress", 2},
};

PyMethodDef XPUIGraphicsMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPUIGraphicsModule = {PyModuleDef_HEAD_INIT, "XPUIGraphics", nullptr, -1, XPUIGraphicsMethods};

}  // namespace

PyObject* initXPUIGraphics() {
    return CV_CreateModule(&XPUIGraphicsModule, XPUIGraphicsConstants, std::size(XPUIGraphicsConstants));
}
