#ifndef _XPWidgetUtils_h_
#define _XPWidgetUtils_h_

/*
 * XPWidgetUtils.h - conveniences for widget code: building a widget tree
 * from a table, moving widgets, and ready-made behaviours (fixed layout,
 * bring-to-front on click, defocus on click, dragging) that a widget
 * callback can delegate messages to.
 */

#include "XPWidgetDefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/***************************************************************************
 * GENERAL UTILITIES
 ***************************************************************************/

/*
 * XPWidgetCreate_t
 * One row of a widget table for XPUCreateWidgets.
 */
typedef struct {
     /* Bounds in global screen coordinates. */
     int                       left;
     int                       top;
     int                       right;
     int                       bottom;
     /* 1 to create the widget visible. */
     int                       visible;
     /* Descriptor (caption / text). */
     const char *              descriptor;
     /* 1 for a top-level (root) widget. */
     int                       isRoot;
     /* Index in the table of the container, or NO_PARENT / PARAM_PARENT. */
     int                       containerIndex;
     /* Standard class to create. */
     XPWidgetClass             widgetClass;
} XPWidgetCreate_t;

/* containerIndex value: the widget has no container. */
#define NO_PARENT            -1

/* containerIndex value: use the inParamParent passed to
   XPUCreateWidgets. */
#define PARAM_PARENT         -2

/* Number of rows in a statically sized widget table. */
#define WIDGET_COUNT(x)      ((sizeof(x) / sizeof(XPWidgetCreate_t)))

/*
 * XPUCreateWidgets
 * Creates inCount widgets from a table, storing each new ID in
 * ioWidgets at the same index. Parents must come before their children.
 */
WIDGET_API void               XPUCreateWidgets(
                                   const XPWidgetCreate_t * inWidgetDefs,
                                   int                  inCount,
                                   XPWidgetID           inParamParent,
                                   XPWidgetID *         ioWidgets);

/*
 * XPUMoveWidgetBy
 * Moves a widget and all its children by the given offsets.
 */
WIDGET_API void               XPUMoveWidgetBy(
                                   XPWidgetID           inWidget,
                                   int                  inDeltaX,
                                   int                  inDeltaY);

/***************************************************************************
 * LAYOUT MANAGERS
 ***************************************************************************/

/*
 * XPUFixedLayout
 * Install as a widget callback so that children move along with the
 * widget when it is moved (no resizing).
 */
WIDGET_API int                XPUFixedLayout(
                                   XPWidgetMessage      inMessage,
                                   XPWidgetID           inWidget,
                                   intptr_t             inParam1,
                                   intptr_t             inParam2);

/***************************************************************************
 * WIDGET PROC BEHAVIORS
 ***************************************************************************/

/*
 * XPUSelectIfNeeded
 * On mouse-down, brings the widget's window to the front. inEatClick = 1
 * consumes the click. Returns 1 if the message was consumed.
 */
WIDGET_API int                XPUSelectIfNeeded(
                                   XPWidgetMessage      inMessage,
                                   XPWidgetID           inWidget,
                                   intptr_t             inParam1,
                                   intptr_t             inParam2,
                                   int                  inEatClick);

/*
 * XPUDefocusKeyboard
 * On mouse-down, gives keyboard focus back to X-Plane. inEatClick = 1
 * consumes the click. Returns 1 if the message was consumed.
 */
WIDGET_API int                XPUDefocusKeyboard(
                                   XPWidgetMessage      inMessage,
                                   XPWidgetID           inWidget,
                                   intptr_t             inParam1,
                                   intptr_t             inParam2,
                                   int                  inEatClick);

/*
 * XPUDragWidget
 * Lets the user drag the widget by the given region (global coordinates,
 * e.g. a title bar). Returns 1 if the message was consumed.
 */
WIDGET_API int                XPUDragWidget(
                                   XPWidgetMessage      inMessage,
                                   XPWidgetID           inWidget,
                                   intptr_t             inParam1,
                                   intptr_t             inParam2,
                                   int                  inLeft,
                                   int                  inTop,
                                   int                  inRight,
                                   int                  inBottom);

#ifdef __cplusplus
}
#endif

#endif /* _XPWidgetUtils_h_ */
