// XPWidgetUtils: building widget trees and common widget behaviours.
//
// The behaviours are widget functions a plugin adds with XPAddWidgetCallback or calls from its own;
// they answer 1 for the messages they handle. They work through the SDK's own functions, so what
// they do to a widget (moving it, bringing it to front, the keyboard focus) sends the usual messages.
#include "XPWidgetUtils.h"

#include <algorithm>
#include <climits>
#include <string>

#include "XPWidgets.h"
#include "world/Widgets.h"
#include "world/World.h"

namespace {

const XPMouseState_t* Mouse(intptr_t param) { return reinterpret_cast<const XPMouseState_t*>(param); }

bool IsMouseMessage(XPWidgetMessage message) {
    return message == xpMsg_MouseDown || message == xpMsg_MouseDrag || message == xpMsg_MouseUp;
}

// Geometry may be anything an int holds; moves are worked out in long long and each edge stops at the
// end of the int range.
int Saturated(long long value) { return int(std::clamp<long long>(value, INT_MIN, INT_MAX)); }

void MoveBy(XPWidgetID widget, long long dx, long long dy) {
    int left, top, right, bottom;
    XPGetWidgetGeometry(widget, &left, &top, &right, &bottom);
    XPSetWidgetGeometry(widget, Saturated(left + dx), Saturated(top + dy), Saturated(right + dx),
                        Saturated(bottom + dy));
}

}  // namespace

void XPUCreateWidgets(const XPWidgetCreate_t* inWidgetDefs, int inCount, XPWidgetID inParamParent,
                      XPWidgetID* ioWidgets) {
    const char* const function = "XPUCreateWidgets";
    if (inCount <= 0) {
        if (inCount < 0) xpsim::ReportMisuse(function, "the count " + std::to_string(inCount) + " is negative");
        return;
    }
    if (inWidgetDefs == nullptr || ioWidgets == nullptr) {
        xpsim::ReportMisuse(function, inWidgetDefs == nullptr ? "no widget definitions" : "no array for the widgets");
        return;
    }
    for (int i = 0; i < inCount; ++i) {
        const XPWidgetCreate_t& def = inWidgetDefs[i];
        XPWidgetID container = nullptr;
        if (def.containerIndex == PARAM_PARENT) {
            container = inParamParent;
        } else if (def.containerIndex >= 0 && def.containerIndex < i) {
            container = ioWidgets[def.containerIndex];
        } else if (def.containerIndex != NO_PARENT) {
            // A container later in the array does not exist yet.
            xpsim::ReportMisuse(function, "widget " + std::to_string(i) + " names container index " +
                                              std::to_string(def.containerIndex) + ", not an earlier widget");
        }
        ioWidgets[i] = XPCreateWidget(def.left, def.top, def.right, def.bottom, def.visible, def.descriptor,
                                      def.isRoot, container, def.widgetClass);
    }
}

void XPUMoveWidgetBy(XPWidgetID inWidget, int inDeltaX, int inDeltaY) {
    std::string what;
    if (xpsim::WidgetFromHandle(inWidget, what) == nullptr) {
        xpsim::ReportMisuse("XPUMoveWidgetBy", what);
        return;
    }
    MoveBy(inWidget, inDeltaX, inDeltaY);
}

int XPUFixedLayout(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t inParam1, intptr_t inParam2) {
    // Only the widget's own reshape moves its children; children's reshapes come up the chain too.
    if (inMessage != xpMsg_Reshape || inParam1 != reinterpret_cast<intptr_t>(inWidget) || inParam2 == 0) return 0;
    const auto* change = reinterpret_cast<const XPWidgetGeometryChange_t*>(inParam2);
    if (change->dx == 0 && change->dy == 0) return 0;
    const int count = XPCountChildWidgets(inWidget);
    for (int i = 0; i < count; ++i) XPUMoveWidgetBy(XPGetNthChildWidget(inWidget, i), change->dx, change->dy);
    return 0;  // others may want to hear of the reshape too
}

int XPUSelectIfNeeded(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t, intptr_t, int inEatClick) {
    if (inMessage != xpMsg_MouseDown || XPIsWidgetInFront(inWidget)) return 0;
    XPBringRootWidgetToFront(inWidget);
    return inEatClick ? 1 : 0;
}

int XPUDefocusKeyboard(XPWidgetMessage inMessage, XPWidgetID, intptr_t, intptr_t, int inEatClick) {
    if (inMessage != xpMsg_MouseDown) return 0;
    XPSetKeyboardFocus(nullptr);
    return inEatClick ? 1 : 0;
}

int XPUDragWidget(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t inParam1, intptr_t, int inLeft, int inTop,
                  int inRight, int inBottom) {
    if (!IsMouseMessage(inMessage) || inParam1 == 0) return 0;
    const XPMouseState_t* mouse = Mouse(inParam1);
    int left = 0, top = 0;
    XPGetWidgetGeometry(inWidget, &left, &top, nullptr, nullptr);
    if (inMessage == xpMsg_MouseDown) {
        if (mouse->x < inLeft || mouse->x > inRight || mouse->y < inBottom || mouse->y > inTop) return 0;
        // The grip: where the mouse holds the widget, from its top left.
        XPSetWidgetProperty(inWidget, xpProperty_Dragging, 1);
        XPSetWidgetProperty(inWidget, xpProperty_DragXOff, intptr_t(mouse->x) - left);
        XPSetWidgetProperty(inWidget, xpProperty_DragYOff, intptr_t(mouse->y) - top);
        return 1;
    }
    if (XPGetWidgetProperty(inWidget, xpProperty_Dragging, nullptr) == 0) return 0;
    // A grip lies within the int range's width of the widget's corner; one set further off is held there.
    const auto grip = [&](XPWidgetPropertyID property) {
        return std::clamp<long long>(XPGetWidgetProperty(inWidget, property, nullptr), -(long long)UINT_MAX,
                                     (long long)UINT_MAX);
    };
    // The widget's top left goes under the grip, as near as the int range lets it.
    const int x = Saturated(mouse->x - grip(xpProperty_DragXOff));
    const int y = Saturated(mouse->y - grip(xpProperty_DragYOff));
    MoveBy(inWidget, (long long)x - left, (long long)y - top);
    if (inMessage == xpMsg_MouseUp) XPSetWidgetProperty(inWidget, xpProperty_Dragging, 0);
    return 1;
}
