#ifndef _XPWidgets_h_
#define _XPWidgets_h_

/*
 * XPWidgets.h - creating, arranging, querying and messaging widgets, and
 * managing their properties, keyboard focus and callbacks.
 */

#include "XPWidgetDefs.h"

#ifdef __cplusplus
extern "C" {
#endif

/***************************************************************************
 * WIDGET CREATION AND MANAGEMENT
 ***************************************************************************/

/*
 * XPCreateWidget
 * Creates a widget of a standard class with the given global geometry,
 * visibility and descriptor. inIsRoot = 1 makes it a top-level window;
 * otherwise it is placed inside inContainer. Returns its ID.
 */
WIDGET_API XPWidgetID         XPCreateWidget(
                                   int                  inLeft,
                                   int                  inTop,
                                   int                  inRight,
                                   int                  inBottom,
                                   int                  inVisible,
                                   const char *         inDescriptor,
                                   int                  inIsRoot,
                                   XPWidgetID           inContainer,
                                   XPWidgetClass        inClass);

/*
 * XPCreateCustomWidget
 * Like XPCreateWidget, but the widget's behaviour comes from inCallback
 * instead of a standard class.
 */
WIDGET_API XPWidgetID         XPCreateCustomWidget(
                                   int                  inLeft,
                                   int                  inTop,
                                   int                  inRight,
                                   int                  inBottom,
                                   int                  inVisible,
                                   const char *         inDescriptor,
                                   int                  inIsRoot,
                                   XPWidgetID           inContainer,
                                   XPWidgetFunc_t       inCallback);

/*
 * XPDestroyWidget
 * Destroys a widget, and its children too if inDestroyChildren is 1
 * (otherwise they are left without a parent).
 */
WIDGET_API void               XPDestroyWidget(
                                   XPWidgetID           inWidget,
                                   int                  inDestroyChildren);

/*
 * XPSendMessageToWidget
 * Sends a message using the given dispatch mode. Returns 1 if some
 * callback handled it.
 */
WIDGET_API int                XPSendMessageToWidget(
                                   XPWidgetID           inWidget,
                                   XPWidgetMessage      inMessage,
                                   XPDispatchMode       inMode,
                                   intptr_t             inParam1,
                                   intptr_t             inParam2);

/***************************************************************************
 * WIDGET POSITIONING AND VISIBILITY
 ***************************************************************************/

/*
 * XPPlaceWidgetWithin
 * Moves a widget into a new container (0 = detach it).
 */
WIDGET_API void               XPPlaceWidgetWithin(
                                   XPWidgetID           inSubWidget,
                                   XPWidgetID           inContainer);

/*
 * XPCountChildWidgets
 * Returns the number of direct children.
 */
WIDGET_API int                XPCountChildWidgets(
                                   XPWidgetID           inWidget);

/*
 * XPGetNthChildWidget
 * Returns a direct child by 0-based index, or 0.
 */
WIDGET_API XPWidgetID         XPGetNthChildWidget(
                                   XPWidgetID           inWidget,
                                   int                  inIndex);

/*
 * XPGetParentWidget
 * Returns the widget's container, or 0.
 */
WIDGET_API XPWidgetID         XPGetParentWidget(
                                   XPWidgetID           inWidget);

/*
 * XPShowWidget
 * Makes a widget visible (it is only on screen if its ancestors are too).
 */
WIDGET_API void               XPShowWidget(
                                   XPWidgetID           inWidget);

/*
 * XPHideWidget
 * Hides a widget and, in effect, its children.
 */
WIDGET_API void               XPHideWidget(
                                   XPWidgetID           inWidget);

/*
 * XPIsWidgetVisible
 * Returns 1 if the widget and all its ancestors are visible.
 */
WIDGET_API int                XPIsWidgetVisible(
                                   XPWidgetID           inWidget);

/*
 * XPFindRootWidget
 * Returns the top-level window containing the widget, or 0.
 */
WIDGET_API XPWidgetID         XPFindRootWidget(
                                   XPWidgetID           inWidget);

/*
 * XPBringRootWidgetToFront
 * Raises the widget's top-level window above the others.
 */
WIDGET_API void               XPBringRootWidgetToFront(
                                   XPWidgetID           inWidget);

/*
 * XPIsWidgetInFront
 * Returns 1 if the widget's top-level window is frontmost.
 */
WIDGET_API int                XPIsWidgetInFront(
                                   XPWidgetID           inWidget);

/*
 * XPGetWidgetGeometry
 * Reads a widget's bounds in global screen coordinates (any pointer may
 * be NULL).
 */
WIDGET_API void               XPGetWidgetGeometry(
                                   XPWidgetID           inWidget,
                                   int *                outLeft,    /* Can be NULL */
                                   int *                outTop,    /* Can be NULL */
                                   int *                outRight,    /* Can be NULL */
                                   int *                outBottom);    /* Can be NULL */

/*
 * XPSetWidgetGeometry
 * Moves / resizes a widget (global coordinates); children are not moved.
 */
WIDGET_API void               XPSetWidgetGeometry(
                                   XPWidgetID           inWidget,
                                   int                  inLeft,
                                   int                  inTop,
                                   int                  inRight,
                                   int                  inBottom);

/*
 * XPGetWidgetForLocation
 * Finds the widget at a global point inside a container, optionally
 * searching recursively and only among visible widgets. Returns 0 if the
 * point is outside the container.
 */
WIDGET_API XPWidgetID         XPGetWidgetForLocation(
                                   XPWidgetID           inContainer,
                                   int                  inXOffset,
                                   int                  inYOffset,
                                   int                  inRecursive,
                                   int                  inVisibleOnly);

/*
 * XPGetWidgetExposedGeometry
 * Reads the part of a widget not clipped by its ancestors.
 */
WIDGET_API void               XPGetWidgetExposedGeometry(
                                   XPWidgetID           inWidgetID,
                                   int *                outLeft,    /* Can be NULL */
                                   int *                outTop,    /* Can be NULL */
                                   int *                outRight,    /* Can be NULL */
                                   int *                outBottom);    /* Can be NULL */

/***************************************************************************
 * ACCESSING WIDGET DATA
 ***************************************************************************/

/*
 * XPSetWidgetDescriptor
 * Sets a widget's descriptor (its caption or text; copied).
 */
WIDGET_API void               XPSetWidgetDescriptor(
                                   XPWidgetID           inWidget,
                                   const char *         inDescriptor);

/*
 * XPGetWidgetDescriptor
 * Copies up to inMaxDescLength characters of the descriptor and returns
 * its full length. Pass NULL for outDescriptor to just get the length.
 */
WIDGET_API int                XPGetWidgetDescriptor(
                                   XPWidgetID           inWidget,
                                   char *               outDescriptor,
                                   int                  inMaxDescLength);

/*
 * XPSetWidgetProperty
 * Sets (adding if needed) a property value.
 */
WIDGET_API void               XPSetWidgetProperty(
                                   XPWidgetID           inWidget,
                                   XPWidgetPropertyID   inProperty,
                                   intptr_t             inValue);

/*
 * XPGetWidgetProperty
 * Returns a property value (0 if absent); *inExists, if given, is set to
 * whether the property exists.
 */
WIDGET_API intptr_t           XPGetWidgetProperty(
                                   XPWidgetID           inWidget,
                                   XPWidgetPropertyID   inProperty,
                                   int *                inExists);    /* Can be NULL */

/***************************************************************************
 * KEYBOARD MANAGEMENT
 ***************************************************************************/

/*
 * XPSetKeyboardFocus
 * Gives keyboard focus to a widget (0 = give it back to X-Plane).
 * Returns the widget that actually got focus, or 0.
 */
WIDGET_API XPWidgetID         XPSetKeyboardFocus(
                                   XPWidgetID           inWidget);

/*
 * XPLoseKeyboardFocus
 * Takes focus away from a widget if it (or a child) has it.
 */
WIDGET_API void               XPLoseKeyboardFocus(
                                   XPWidgetID           inWidget);

/*
 * XPGetWidgetWithFocus
 * Returns the widget with keyboard focus, or 0.
 */
WIDGET_API XPWidgetID         XPGetWidgetWithFocus(void);

/***************************************************************************
 * CREATING CUSTOM WIDGETS
 ***************************************************************************/

/*
 * XPAddWidgetCallback
 * Adds a callback to a widget; it sees messages before the widget's
 * existing callbacks (subclassing).
 */
WIDGET_API void               XPAddWidgetCallback(
                                   XPWidgetID           inWidget,
                                   XPWidgetFunc_t       inNewCallback);

/*
 * XPGetWidgetClassFunc
 * Returns the callback implementing a standard widget class.
 */
WIDGET_API XPWidgetFunc_t     XPGetWidgetClassFunc(
                                   XPWidgetClass        inWidgetClass);

#ifdef __cplusplus
}
#endif

#endif /* _XPWidgets_h_ */
