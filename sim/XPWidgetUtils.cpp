// XPWidgetUtils: building widget trees and common widget behaviours.
#include "XPWidgetUtils.h"

#include "world/World.h"

// ------------------------------------------------------------------ not yet simulated

void XPUCreateWidgets(const XPWidgetCreate_t * inWidgetDefs, int inCount, XPWidgetID inParamParent, XPWidgetID * ioWidgets) {
    xpsim::NotYetSimulated("XPUCreateWidgets");
}

void XPUMoveWidgetBy(XPWidgetID inWidget, int inDeltaX, int inDeltaY) {
    xpsim::NotYetSimulated("XPUMoveWidgetBy");
}

int XPUFixedLayout(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t inParam1, intptr_t inParam2) {
    xpsim::NotYetSimulated("XPUFixedLayout");
    return 0;
}

int XPUSelectIfNeeded(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t inParam1, intptr_t inParam2, int inEatClick) {
    xpsim::NotYetSimulated("XPUSelectIfNeeded");
    return 0;
}

int XPUDefocusKeyboard(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t inParam1, intptr_t inParam2, int inEatClick) {
    xpsim::NotYetSimulated("XPUDefocusKeyboard");
    return 0;
}

int XPUDragWidget(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t inParam1, intptr_t inParam2, int inLeft, int inTop, int inRight, int inBottom) {
    xpsim::NotYetSimulated("XPUDragWidget");
    return 0;
}
