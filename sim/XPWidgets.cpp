// XPWidgets: the widget tree, properties, messages and focus.
#include "XPWidgets.h"

#include "world/World.h"

// ------------------------------------------------------------------ not yet simulated

XPWidgetID XPCreateWidget(int inLeft, int inTop, int inRight, int inBottom, int inVisible, const char * inDescriptor, int inIsRoot, XPWidgetID inContainer, XPWidgetClass inClass) {
    xpsim::NotYetSimulated("XPCreateWidget");
    return nullptr;
}

XPWidgetID XPCreateCustomWidget(int inLeft, int inTop, int inRight, int inBottom, int inVisible, const char * inDescriptor, int inIsRoot, XPWidgetID inContainer, XPWidgetFunc_t inCallback) {
    xpsim::NotYetSimulated("XPCreateCustomWidget");
    return nullptr;
}

void XPDestroyWidget(XPWidgetID inWidget, int inDestroyChildren) {
    xpsim::NotYetSimulated("XPDestroyWidget");
}

int XPSendMessageToWidget(XPWidgetID inWidget, XPWidgetMessage inMessage, XPDispatchMode inMode, intptr_t inParam1, intptr_t inParam2) {
    xpsim::NotYetSimulated("XPSendMessageToWidget");
    return 0;
}

void XPPlaceWidgetWithin(XPWidgetID inSubWidget, XPWidgetID inContainer) {
    xpsim::NotYetSimulated("XPPlaceWidgetWithin");
}

int XPCountChildWidgets(XPWidgetID inWidget) {
    xpsim::NotYetSimulated("XPCountChildWidgets");
    return 0;
}

XPWidgetID XPGetNthChildWidget(XPWidgetID inWidget, int inIndex) {
    xpsim::NotYetSimulated("XPGetNthChildWidget");
    return nullptr;
}

XPWidgetID XPGetParentWidget(XPWidgetID inWidget) {
    xpsim::NotYetSimulated("XPGetParentWidget");
    return nullptr;
}

void XPShowWidget(XPWidgetID inWidget) {
    xpsim::NotYetSimulated("XPShowWidget");
}

void XPHideWidget(XPWidgetID inWidget) {
    xpsim::NotYetSimulated("XPHideWidget");
}

int XPIsWidgetVisible(XPWidgetID inWidget) {
    xpsim::NotYetSimulated("XPIsWidgetVisible");
    return 0;
}

XPWidgetID XPFindRootWidget(XPWidgetID inWidget) {
    xpsim::NotYetSimulated("XPFindRootWidget");
    return nullptr;
}

void XPBringRootWidgetToFront(XPWidgetID inWidget) {
    xpsim::NotYetSimulated("XPBringRootWidgetToFront");
}

int XPIsWidgetInFront(XPWidgetID inWidget) {
    xpsim::NotYetSimulated("XPIsWidgetInFront");
    return 0;
}

void XPGetWidgetGeometry(XPWidgetID inWidget, int * outLeft, int * outTop, int * outRight, int * outBottom) {
    xpsim::NotYetSimulated("XPGetWidgetGeometry");
    if (outLeft) *outLeft = 0;
    if (outTop) *outTop = 0;
    if (outRight) *outRight = 0;
    if (outBottom) *outBottom = 0;
}

void XPSetWidgetGeometry(XPWidgetID inWidget, int inLeft, int inTop, int inRight, int inBottom) {
    xpsim::NotYetSimulated("XPSetWidgetGeometry");
}

XPWidgetID XPGetWidgetForLocation(XPWidgetID inContainer, int inXOffset, int inYOffset, int inRecursive, int inVisibleOnly) {
    xpsim::NotYetSimulated("XPGetWidgetForLocation");
    return nullptr;
}

void XPGetWidgetExposedGeometry(XPWidgetID inWidgetID, int * outLeft, int * outTop, int * outRight, int * outBottom) {
    xpsim::NotYetSimulated("XPGetWidgetExposedGeometry");
    if (outLeft) *outLeft = 0;
    if (outTop) *outTop = 0;
    if (outRight) *outRight = 0;
    if (outBottom) *outBottom = 0;
}

void XPSetWidgetDescriptor(XPWidgetID inWidget, const char * inDescriptor) {
    xpsim::NotYetSimulated("XPSetWidgetDescriptor");
}

int XPGetWidgetDescriptor(XPWidgetID inWidget, char * outDescriptor, int inMaxDescLength) {
    xpsim::NotYetSimulated("XPGetWidgetDescriptor");
    if (outDescriptor) outDescriptor[0] = '\0';
    return 0;
}

void XPSetWidgetProperty(XPWidgetID inWidget, XPWidgetPropertyID inProperty, intptr_t inValue) {
    xpsim::NotYetSimulated("XPSetWidgetProperty");
}

intptr_t XPGetWidgetProperty(XPWidgetID inWidget, XPWidgetPropertyID inProperty, int * inExists) {
    xpsim::NotYetSimulated("XPGetWidgetProperty");
    return 0;
}

XPWidgetID XPSetKeyboardFocus(XPWidgetID inWidget) {
    xpsim::NotYetSimulated("XPSetKeyboardFocus");
    return nullptr;
}

void XPLoseKeyboardFocus(XPWidgetID inWidget) {
    xpsim::NotYetSimulated("XPLoseKeyboardFocus");
}

XPWidgetID XPGetWidgetWithFocus(void) {
    xpsim::NotYetSimulated("XPGetWidgetWithFocus");
    return nullptr;
}

void XPAddWidgetCallback(XPWidgetID inWidget, XPWidgetFunc_t inNewCallback) {
    xpsim::NotYetSimulated("XPAddWidgetCallback");
}

XPWidgetFunc_t XPGetWidgetClassFunc(XPWidgetClass inWidgetClass) {
    xpsim::NotYetSimulated("XPGetWidgetClassFunc");
    return nullptr;
}
