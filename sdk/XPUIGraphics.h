#ifndef _XPUIGraphics_h_
#define _XPUIGraphics_h_

/*
 * XPUIGraphics.h - drawing X-Plane's standard user-interface artwork
 * (window backgrounds, buttons and other elements, scroll and slider
 * tracks) and measuring it. Coordinates are global screen pixels.
 */

#include "XPWidgetDefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/***************************************************************************
 * UI GRAPHICS
 ***************************************************************************/

/*
 * XPWindowStyle
 * Kinds of window background that can be drawn.
 */
enum {
     /* Help / tooltip style window. */
     xpWindow_Help                            = 0,
     /* Main dialog window. */
     xpWindow_MainWindow                      = 1,
     /* Recessed panel inside a window. */
     xpWindow_SubWindow                       = 2,
     /* Dark "screen" panel. */
     xpWindow_Screen                          = 4,
     /* List background. */
     xpWindow_ListView                        = 5
};
typedef int XPWindowStyle;

/*
 * XPDrawWindow
 * Draws a window background stretched over the given rectangle.
 */
WIDGET_API void               XPDrawWindow(
                                   int                  inX1,
                                   int                  inY1,
                                   int                  inX2,
                                   int                  inY2,
                                   XPWindowStyle        inStyle);

/*
 * XPGetWindowDefaultDimensions
 * Reports the natural size of a window style (either pointer may be
 * NULL).
 */
WIDGET_API void               XPGetWindowDefaultDimensions(
                                   XPWindowStyle        inStyle,
                                   int *                outWidth,    /* Can be NULL */
                                   int *                outHeight);    /* Can be NULL */

/*
 * XPElementStyle
 * Individually drawable interface elements. Some can be stretched and
 * some have a lit variant.
 */
enum {
     xpElement_TextField                      = 6,
     xpElement_CheckBox                       = 9,
     xpElement_CheckBoxLit                    = 10,
     xpElement_WindowCloseBox                 = 14,
     xpElement_WindowCloseBoxPressed          = 15,
     xpElement_PushButton                     = 16,
     xpElement_PushButtonLit                  = 17,
     xpElement_OilPlatform                    = 24,
     xpElement_OilPlatformSmall               = 25,
     xpElement_Ship                           = 26,
     xpElement_ILSGlideScope                  = 27,
     xpElement_MarkerLeft                     = 28,
     xpElement_Airport                        = 29,
     xpElement_Waypoint                       = 30,
     xpElement_NDB                            = 31,
     xpElement_VOR                            = 32,
     xpElement_RadioTower                     = 33,
     xpElement_AircraftCarrier                = 34,
     xpElement_Fire                           = 35,
     xpElement_MarkerRight                    = 36,
     xpElement_CustomObject                   = 37,
     xpElement_CoolingTower                   = 38,
     xpElement_SmokeStack                     = 39,
     xpElement_Building                       = 40,
     xpElement_PowerLine                      = 41,
     xpElement_CopyButtons                    = 45,
     xpElement_CopyButtonsWithEditingGrid     = 46,
     xpElement_EditingGrid                    = 47,
     xpElement_ScrollBar                      = 48,
     xpElement_VORWithCompassRose             = 49,
     xpElement_Zoomer                         = 51,
     xpElement_TextFieldMiddle                = 52,
     xpElement_LittleDownArrow                = 53,
     xpElement_LittleUpArrow                  = 54,
     xpElement_WindowDragBar                  = 61,
     xpElement_WindowDragBarSmooth            = 62
};
typedef int XPElementStyle;

/*
 * XPDrawElement
 * Draws an element in the given rectangle, lit if inLit is non-zero and
 * the element supports it.
 */
WIDGET_API void               XPDrawElement(
                                   int                  inX1,
                                   int                  inY1,
                                   int                  inX2,
                                   int                  inY2,
                                   XPElementStyle       inStyle,
                                   int                  inLit);

/*
 * XPGetElementDefaultDimensions
 * Reports an element's natural size and whether it has a lit version
 * (any pointer may be NULL).
 */
WIDGET_API void               XPGetElementDefaultDimensions(
                                   XPElementStyle       inStyle,
                                   int *                outWidth,    /* Can be NULL */
                                   int *                outHeight,    /* Can be NULL */
                                   int *                outCanBeLit);    /* Can be NULL */

/*
 * XPTrackStyle
 * Kinds of track (value bar) that can be drawn.
 */
enum {
     /* Scroll bar with arrows and thumb. */
     xpTrack_ScrollBar                        = 0,
     /* Slider with a knob. */
     xpTrack_Slider                           = 1,
     /* Progress bar (not interactive). */
     xpTrack_Progress                         = 2
};
typedef int XPTrackStyle;

/*
 * XPDrawTrack
 * Draws a track showing inValue within [inMin, inMax]. Horizontal or
 * vertical depending on the rectangle's shape.
 */
WIDGET_API void               XPDrawTrack(
                                   int                  inX1,
                                   int                  inY1,
                                   int                  inX2,
                                   int                  inY2,
                                   int                  inMin,
                                   int                  inMax,
                                   int                  inValue,
                                   XPTrackStyle         inTrackStyle,
                                   int                  inLit);

/*
 * XPGetTrackDefaultDimensions
 * Reports a track style's natural thickness and whether it can be lit.
 */
WIDGET_API void               XPGetTrackDefaultDimensions(
                                   XPTrackStyle         inStyle,
                                   int *                outWidth,
                                   int *                outCanBeLit);

/*
 * XPGetTrackMetrics
 * Reports how a track drawn with these arguments is laid out: whether it
 * is vertical, and the sizes in pixels of its down button, down page
 * area, thumb, up page area and up button (for hit testing).
 */
WIDGET_API void               XPGetTrackMetrics(
                                   int                  inX1,
                                   int                  inY1,
                                   int                  inX2,
                                   int                  inY2,
                                   int                  inMin,
                                   int                  inMax,
                                   int                  inValue,
                                   XPTrackStyle         inTrackStyle,
                                   int *                outIsVertical,
                                   int *                outDownBtnSize,
                                   int *                outDownPageSize,
                                   int *                outThumbSize,
                                   int *                outUpPageSize,
                                   int *                outUpBtnSize);

#ifdef __cplusplus
}
#endif

#endif /* _XPUIGraphics_h_ */
