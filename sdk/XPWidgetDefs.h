#ifndef _XPWidgetDefs_h_
#define _XPWidgetDefs_h_

/*
 * XPWidgetDefs.h - basic types of the widget library: widget IDs,
 * properties, messages, dispatch modes and the widget callback type.
 */

#include "XPLMDefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * WIDGET_API marks functions implemented by the widget library. They
 * always have C linkage. When XPWIDGETS is defined the library itself is
 * being built and the symbols are exported; otherwise they are imported.
 */
#if IBM
  #if XPWIDGETS
    #define WIDGET_API_DECL __declspec(dllexport)
  #else
    #define WIDGET_API_DECL __declspec(dllimport)
  #endif
#elif APL || LIN
  #define WIDGET_API_DECL __attribute__((visibility("default")))
#else
  #error "Platform not defined!"
#endif

#ifdef __cplusplus
  #define WIDGET_API extern "C" WIDGET_API_DECL
#else
  #define WIDGET_API WIDGET_API_DECL
#endif

/***************************************************************************
 * WIDGET DEFINITIONS
 ***************************************************************************/

/*
 * XPWidgetID
 * Opaque, non-zero handle to a widget; 0 means "no widget".
 */
typedef void * XPWidgetID;

/*
 * XPWidgetPropertyID
 * Identifies a pointer-sized value attached to a widget. Predefined IDs
 * are below; standard widgets use ranges of their own, and plugins may
 * use IDs from xpProperty_UserStart up.
 */
enum {
     /* Free value for the widget's owner. */
     xpProperty_Refcon                        = 0,
     /* Used by the drag helpers in XPWidgetUtils. */
     xpProperty_Dragging                      = 1,
     xpProperty_DragXOff                      = 2,
     xpProperty_DragYOff                      = 3,
     /* Whether the widget is highlighted. */
     xpProperty_Hilited                       = 4,
     /* A C++ object associated with the widget. */
     xpProperty_Object                        = 5,
     /* Non-zero to clip drawing of the widget to its bounds. */
     xpProperty_Clip                          = 6,
     /* Whether the widget is enabled (not greyed out). */
     xpProperty_Enabled                       = 7,
     /* First ID available for plugin-defined properties. */
     xpProperty_UserStart                     = 10000
};
typedef int XPWidgetPropertyID;

/*
 * XPMouseState_t
 * Mouse information passed (by pointer, in param1) with mouse messages.
 */
typedef struct {
     /* Position in global screen coordinates. */
     int                       x;
     int                       y;
     /* Button number, 0 = left (for wheel messages: the wheel axis). */
     int                       button;
#if defined(XPLM200)
     /* Wheel movement for xpMsg_MouseWheel. */
     int                       delta;
#endif /* XPLM200 */
} XPMouseState_t;

/*
 * XPKeyState_t
 * Keystroke information passed (by pointer, in param1) with
 * xpMsg_KeyPress.
 */
typedef struct {
     /* Character typed (ASCII). */
     char                      key;
     /* Modifier and up/down flags. */
     XPLMKeyFlags              flags;
     /* Virtual key code (XPLM_VK_*). */
     char                      vkey;
} XPKeyState_t;

/*
 * XPWidgetGeometryChange_t
 * Describes a move/resize; passed (by pointer, in param2) with
 * xpMsg_Reshape.
 */
typedef struct {
     /* Change of the left edge. */
     int                       dx;
     /* Change of the top edge (positive = up). */
     int                       dy;
     /* Change in width. */
     int                       dwidth;
     /* Change in height. */
     int                       dheight;
} XPWidgetGeometryChange_t;

/*
 * XPDispatchMode
 * How XPSendMessageToWidget delivers a message through the widget tree.
 */
enum {
     /* Only the target widget's callbacks, stopping at the first taker. */
     xpMode_Direct                            = 0,
     /* The target, then its parents, until one handles it. */
     xpMode_UpChain                           = 1,
     /* The target and all of its children. */
     xpMode_Recursive                         = 2,
     /* Every callback of the target, even after one handles it. */
     xpMode_DirectAllCallbacks                = 3,
     /* Only the target's most recently added callback. */
     xpMode_Once                              = 4
};
typedef int XPDispatchMode;

/*
 * XPWidgetClass
 * Identifies a standard widget class (see XPStandardWidgets.h).
 */
typedef int XPWidgetClass;

/* No class: used for custom widgets that provide their own callback. */
#define xpWidgetClass_None   0

/***************************************************************************
 * WIDGET MESSAGES
 ***************************************************************************/

/*
 * XPWidgetMessage
 * Messages the widget library sends to widget callbacks. For each one,
 * the dispatch mode and the meaning of param1/param2 are noted.
 */
enum {
     /* Never sent. */
     xpMsg_None                               = 0,
     /* Widget created (or callback attached). Direct; p1: 1 if added
        as a subclass callback. */
     xpMsg_Create                             = 1,
     /* Widget being destroyed. Direct to all callbacks; p1: 1 if part of
        a recursive delete. */
     xpMsg_Destroy                            = 2,
     /* Full paint request (draw self and children). Direct. */
     xpMsg_Paint                              = 3,
     /* Draw self only. Direct. */
     xpMsg_Draw                               = 4,
     /* Key pressed. Up chain; p1: XPKeyState_t *. */
     xpMsg_KeyPress                           = 5,
     /* Offered keyboard focus; return 1 to accept. Direct; p1: 1 if a
        child is taking focus. */
     xpMsg_KeyTakeFocus                       = 6,
     /* Keyboard focus lost. Direct; p1: 1 if another widget took it. */
     xpMsg_KeyLoseFocus                       = 7,
     /* Mouse button down; return 1 to capture drag/up. Up chain;
        p1: XPMouseState_t *. */
     xpMsg_MouseDown                          = 8,
     /* Mouse dragged after a captured down. Direct; p1: XPMouseState_t *. */
     xpMsg_MouseDrag                          = 9,
     /* Mouse released after a captured down. Direct; p1: XPMouseState_t *. */
     xpMsg_MouseUp                            = 10,
     /* Widget (or an ancestor) moved/resized. Up chain; p1: widget that
        changed, p2: XPWidgetGeometryChange_t *. */
     xpMsg_Reshape                            = 11,
     /* Visible (exposed) area changed. Up chain. */
     xpMsg_ExposedChanged                     = 12,
     /* A child was added. Direct; p1: the child. */
     xpMsg_AcceptChild                        = 13,
     /* A child was removed. Direct; p1: the child. */
     xpMsg_LoseChild                          = 14,
     /* The widget was given a parent. Direct; p1: the parent. */
     xpMsg_AcceptParent                       = 15,
     /* The widget became visible. Up chain; p1: widget shown. */
     xpMsg_Shown                              = 16,
     /* The widget became hidden. Up chain; p1: widget hidden. */
     xpMsg_Hidden                             = 17,
     /* Descriptor text changed. Direct. */
     xpMsg_DescriptorChanged                  = 18,
     /* A property changed. Direct; p1: property ID, p2: new value. */
     xpMsg_PropertyChanged                    = 19
#if defined(XPLM200)
     /* Mouse wheel moved; return 1 to consume. Up chain;
        p1: XPMouseState_t *. */
    ,xpMsg_MouseWheel                         = 20
#endif /* XPLM200 */
#if defined(XPLM200)
     /* Cursor is over the widget; set *(XPLMCursorStatus *)p2 and return
        1 to choose the cursor. Up chain; p1: XPMouseState_t *. */
    ,xpMsg_CursorAdjust                       = 21
#endif /* XPLM200 */
     /* First number available for plugin-defined messages. */
    ,xpMsg_UserStart                          = 10000
};
typedef int XPWidgetMessage;

/***************************************************************************
 * WIDGET CALLBACK FUNCTION
 ***************************************************************************/

/*
 * XPWidgetFunc_t
 * A widget callback: handles one message for one widget. Return 1 if the
 * message was handled, 0 to let it continue.
 */
typedef int (* XPWidgetFunc_t)(
                                   XPWidgetMessage      inMessage,
                                   XPWidgetID           inWidget,
                                   intptr_t             inParam1,
                                   intptr_t             inParam2);

#ifdef __cplusplus
}
#endif

#endif /* _XPWidgetDefs_h_ */
