#ifndef _XPStandardWidgets_h_
#define _XPStandardWidgets_h_

/*
 * XPStandardWidgets.h - the widget classes built into the widget library
 * (windows, buttons, text fields, scroll bars, captions, icons, progress
 * bars), with their styles, properties and notification messages.
 * Each class uses its own range of property and message numbers.
 */

#include "XPWidgetDefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/***************************************************************************
 * MAIN WINDOW
 ***************************************************************************/

/* A top-level window with a title bar that can be dragged. */
#define xpWidgetClass_MainWindow 1

/* Main window styles (xpProperty_MainWindowType). */
enum {
     /* Standard dialog-style window. */
     xpMainWindowStyle_MainWindow             = 0,
     /* Dark translucent window, as used by X-Plane's own overlays. */
     xpMainWindowStyle_Translucent            = 1
};

/* Main window properties. */
enum {
     /* Window style, one of the values above. */
     xpProperty_MainWindowType                = 1100,
     /* Non-zero to show close boxes in the title bar. */
     xpProperty_MainWindowHasCloseBoxes       = 1200
};

/* Main window messages. */
enum {
     /* A close box was clicked (sent up the chain; p1 = the window). */
     xpMessage_CloseButtonPushed              = 1200
};

/***************************************************************************
 * SUB WINDOW
 ***************************************************************************/

/* A panel drawn inside a main window to group other widgets. */
#define xpWidgetClass_SubWindow 2

/* Sub window styles (xpProperty_SubWindowType). */
enum {
     /* Recessed panel. */
     xpSubWindowStyle_SubWindow               = 0,
     /* Dark "screen" area. */
     xpSubWindowStyle_Screen                  = 2,
     /* List background. */
     xpSubWindowStyle_ListView                = 3
};

/* Sub window properties. */
enum {
     /* Panel style, one of the values above. */
     xpProperty_SubWindowType                 = 1200
};

/***************************************************************************
 * BUTTON
 ***************************************************************************/

/* Push buttons, check boxes, radio buttons and small arrow buttons. */
#define xpWidgetClass_Button 3

/* Button appearances (xpProperty_ButtonType). */
enum {
     /* Ordinary push button. */
     xpPushButton                             = 0,
     /* Check box / radio button look. */
     xpRadioButton                            = 1,
     /* Window close box. */
     xpWindowCloseBox                         = 3,
     /* Small down arrow. */
     xpLittleDownArrow                        = 5,
     /* Small up arrow. */
     xpLittleUpArrow                          = 6
};

/* Button behaviours (xpProperty_ButtonBehavior). */
enum {
     /* Sends xpMsg_PushButtonPressed when clicked and released over it. */
     xpButtonBehaviorPushButton               = 0,
     /* Toggles its state on each click; sends xpMsg_ButtonStateChanged. */
     xpButtonBehaviorCheckBox                 = 1,
     /* Sets its state to 1 when clicked; sends xpMsg_ButtonStateChanged.
        Un-setting the rest of the group is up to the plugin. */
     xpButtonBehaviorRadioButton              = 2
};

/* Button properties. */
enum {
     /* Appearance, one of the button types above. */
     xpProperty_ButtonType                    = 1300,
     /* Behaviour, one of the button behaviours above. */
     xpProperty_ButtonBehavior                = 1301,
     /* Checked state (0 or 1) for check boxes and radio buttons. */
     xpProperty_ButtonState                   = 1302
};

/* Button messages (sent up the chain; p1 = the button). */
enum {
     /* A push button was clicked. */
     xpMsg_PushButtonPressed                  = 1300,
     /* A check box / radio button changed; p2 = new state. */
     xpMsg_ButtonStateChanged                 = 1301
};

/***************************************************************************
 * TEXT FIELD
 ***************************************************************************/

/* An editable single-line text field; its text is the descriptor. */
#define xpWidgetClass_TextField 4

/* Text field appearances (xpProperty_TextFieldType). */
enum {
     /* Standard edit box. */
     xpTextEntryField                         = 0,
     /* Text drawn with no background. */
     xpTextTransparent                        = 3,
     /* Text on a dark translucent background. */
     xpTextTranslucent                        = 4
};

/* Text field properties. */
enum {
     /* Start of the selection (character index). */
     xpProperty_EditFieldSelStart             = 1400,
     /* End of the selection (character index). */
     xpProperty_EditFieldSelEnd               = 1401,
     /* Anchor point while drag-selecting. */
     xpProperty_EditFieldSelDragStart         = 1402,
     /* Appearance, one of the types above. */
     xpProperty_TextFieldType                 = 1403,
     /* Non-zero to show asterisks instead of the text. */
     xpProperty_PasswordMode                  = 1404,
     /* Maximum number of characters (0 = unlimited). */
     xpProperty_MaxCharacters                 = 1405,
     /* First visible character when the text is scrolled. */
     xpProperty_ScrollPosition                = 1406,
     /* Font to draw with (an XPLMFontID). */
     xpProperty_Font                          = 1407,
     /* Which end of the selection is being edited. */
     xpProperty_ActiveEditSide                = 1408
};

/* Text field messages. */
enum {
     /* The text changed (sent up the chain; p1 = the field). */
     xpMsg_TextFieldChanged                   = 1400
};

/***************************************************************************
 * SCROLL BAR
 ***************************************************************************/

/* A scroll bar or slider. */
#define xpWidgetClass_ScrollBar 5

/* Scroll bar appearances (xpProperty_ScrollBarType). */
enum {
     /* Scroll bar with arrows and a thumb. */
     xpScrollBarTypeScrollBar                 = 0,
     /* Slider with a knob. */
     xpScrollBarTypeSlider                    = 1
};

/* Scroll bar properties. */
enum {
     /* Current value. */
     xpProperty_ScrollBarSliderPosition       = 1500,
     /* Minimum value. */
     xpProperty_ScrollBarMin                  = 1501,
     /* Maximum value. */
     xpProperty_ScrollBarMax                  = 1502,
     /* Amount moved by a click in the track. */
     xpProperty_ScrollBarPageAmount           = 1503,
     /* Appearance, one of the types above. */
     xpProperty_ScrollBarType                 = 1504,
     /* Internal: drag offset while moving the thumb. */
     xpProperty_ScrollBarSlop             = 1505
};

/* Scroll bar messages. */
enum {
     /* The value changed (sent up the chain; p1 = the scroll bar). */
     xpMsg_ScrollBarSliderPositionChanged     = 1500
};

/***************************************************************************
 * CAPTION
 ***************************************************************************/

/* A static text label; its text is the descriptor. */
#define xpWidgetClass_Caption 6

/* Caption properties. */
enum {
     /* Non-zero to draw the text lit (for dark backgrounds). */
     xpProperty_CaptionLit                    = 1600
};

/***************************************************************************
 * GENERAL GRAPHICS
 ***************************************************************************/

/* A small map-style icon. */
#define xpWidgetClass_GeneralGraphics 7

/* Icons available (xpProperty_GeneralGraphicsType). */
enum {
     xpShip                                   = 4,
     xpILSGlideScope                          = 5,
     xpMarkerLeft                             = 6,
     xp_Airport                               = 7,
     xpNDB                                    = 8,
     xpVOR                                    = 9,
     xpRadioTower                             = 10,
     xpAircraftCarrier                        = 11,
     xpFire                                   = 12,
     xpMarkerRight                            = 13,
     xpCustomObject                           = 14,
     xpCoolingTower                           = 15,
     xpSmokeStack                             = 16,
     xpBuilding                               = 17,
     xpPowerLine                              = 18,
     xpVORWithCompassRose                     = 19,
     xpOilPlatform                            = 21,
     xpOilPlatformSmall                       = 22,
     xpWayPoint                               = 23
};

/* General graphics properties. */
enum {
     /* Which icon to draw. */
     xpProperty_GeneralGraphicsType           = 1700
};

/***************************************************************************
 * PROGRESS INDICATOR
 ***************************************************************************/

/* A read-only progress bar. */
#define xpWidgetClass_Progress 8

/* Progress indicator properties. */
enum {
     /* Current value. */
     xpProperty_ProgressPosition              = 1800,
     /* Minimum value. */
     xpProperty_ProgressMin                   = 1801,
     /* Maximum value. */
     xpProperty_ProgressMax                   = 1802
};

#ifdef __cplusplus
}
#endif

#endif /* _XPStandardWidgets_h_ */
