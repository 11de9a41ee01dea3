// The script module XPStandardWidgets and its constants.
#include "BindingModules.h"
#include "BindingSupport.h"

#include <iterator>

namespace {

// Installed in this order, each under its SDK name.
const CV_IntConstant XPStandardWidgetsConstants[] = {
    // Main window.
    {"xpWidgetClass_MainWindow", 1},
    {"xpMainWindowStyle_MainWindow", 0},
    {"xpMainWindowStyle_Translucent", 1},
    {"xpProperty_MainWindowType", 1100},
    {"xpProperty_MainWindowHasCloseBoxes", 1200},
    {"xpMessage_CloseButtonPushed", 1200},
    // Sub-window.
    {"xpWidgetClass_SubWindow", 2},
    {"xpSubWindowStyle_SubWindow", 0},
    {"xpSubWindowStyle_Screen", 2},
    {"xpSubWindowStyle_ListView", 3},
    {"xpProperty_SubWindowType", 1200},
    // Button.
    {"xpWidgetClass_Button", 3},
    {"xpPushButton", 0},
    {"xpRadioButton", 1},
    {"xpWindowCloseBox", 3},
    {"xpLittleDownArrow", 5},
    {"xpLittleUpArrow", 6},
    {"xpButtonBehaviorPushButton", 0},
    {"xpButtonBehaviorCheckBox", 1},
    {"xpButtonBehaviorRadioButton", 2},
    {"xpProperty_ButtonType", 1300},
    {"xpProperty_ButtonBehavior", 1301},
    {"xpProperty_ButtonState", 1302},
    {"xpMsg_PushButtonPressed", 1300},
    {"xpMsg_ButtonStateChanged", 1301},
    // Text field.
    {"xpWidgetClass_TextField", 4},
    {"xpTextEntryField", 0},
    {"xpTextTransparent", 3},
    {"xpTextTranslucent", 4},
    {"xpProperty_EditFieldSelStart", 1400},
    {"xpProperty_EditFieldSelEnd", 1401},
    {"xpProperty_EditFieldSelDragStart", 1402},
    {"xpProperty_TextFieldType", 1403},
    {"xpProperty_PasswordMode", 1404},
    {"xpProperty_MaxCharacters", 1405},
    {"xpProperty_ScrollPosition", 1406},
    {"xpProperty_Font", 1407},
    {"xpProperty_ActiveEditSide", 1408},
    {"xpMsg_TextFieldChanged", 1400},
    // Scroll bar.
    {"xpWidgetClass_ScrollBar", 5},
    {"xpScrollBarTypeScrollBar", 0},
    {"xpScrollBarTypeSlider", 1},
    {"xpProperty_ScrollBarSliderPosition", 1500},
    {"xpProperty_ScrollBarMin", 1501},
    {"xpProperty_ScrollBarMax", 1502},
    {"xpProperty_ScrollBarPageAmount", 1503},
    {"xpProperty_ScrollBarType", 1504},
    {"xpProperty_ScrollBarSlop", 1505},
    {"xpMsg_ScrollBarSliderPositionChanged", 1500},
    // Caption.
    {"xpWidgetClass_Caption", 6},
    {"xpProperty_CaptionLit", 1600},
    // General graphics.
    {"xpWidgetClass_GeneralGraphics", 7},
    {"xpShip", 4},
    {"xpILSGlideScope", 5},
    {"xpMarkerLeft", 6},
    {"xp_Airport", 7},
    {"xpNDB", 8},
    {"xpVOR", 9},
    {"xpRadioTower", 10},
    {"xpAircraftCarrier", 11},
    {"xpFire", 12},
    {"xpMarkerRight", 13},
    {"xpCustomObject", 14},
    {"xpCoolingTower", 15},
    {"xpSmokeStack", 16},
    {"xpBuilding", 17},
    {"xpPowerLine", 18},
    {"xpVORWithCompassRose", 19},
    {"xpOilPlatform", 21},
    {"xpOilPlatformSmall", 22},
    {"xpWayPoint", 23},
    {"xpProperty_GeneralGraphicsType", 1700},
    // Progress indicator.
    {"xpWidgetClass_Progress", 8},
    {"xpProperty_ProgressPosition", 1800},
    {"xpProperty_ProgressMin", 1801},
    {"xpProperty_ProgressMax", 1802},
};

PyMethodDef XPStandardWidgetsMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

PyObject* initXPStandardWidgets() {
    return CV_CreateModule("XPStandardWidgets", XPStandardWidgetsMethods, XPStandardWidgetsConstants);
}
