// XPWidgets: the widget tree, properties, messages and focus.
#include "XPWidgets.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "world/Widgets.h"
#include "world/World.h"

namespace {

// The live widget behind a handle; reports a bad or stale one.
xpsim::WidgetRecord* Widget(XPWidgetID id, const char* function) {
    std::string what;
    xpsim::WidgetRecord* widget = xpsim::WidgetFromHandle(id, what);
    if (widget == nullptr) xpsim::ReportMisuse(function, what);
    return widget;
}

// A container handle: null is no container, anything else must be a live widget.
bool Container(XPWidgetID id, const char* function, xpsim::WidgetRecord*& container) {
    container = nullptr;
    if (id == nullptr) return true;
    container = Widget(id, function);
    return container != nullptr;
}

void ClearRect(int* outLeft, int* outTop, int* outRight, int* outBottom) {
    if (outLeft) *outLeft = 0;
    if (outTop) *outTop = 0;
    if (outRight) *outRight = 0;
    if (outBottom) *outBottom = 0;
}

XPWidgetID Create(const char* function, int inLeft, int inTop, int inRight, int inBottom, int inVisible,
                  const char* inDescriptor, int inIsRoot, XPWidgetID inContainer, XPWidgetClass widgetClass,
                  XPWidgetFunc_t callback) {
    if (inIsRoot && inContainer != nullptr) {
        xpsim::ReportMisuse(function, "a root widget cannot have a container");
        return nullptr;
    }
    xpsim::WidgetRecord* container;
    if (!Container(inContainer, function, container)) return nullptr;
    return xpsim::CreateWidget(inLeft, inTop, inRight, inBottom, inVisible != 0, inDescriptor, inIsRoot != 0,
                               container, widgetClass, callback);
}

}  // namespace

// ------------------------------------------------------------------ creating and destroying

XPWidgetID XPCreateWidget(int inLeft, int inTop, int inRight, int inBottom, int inVisible, const char* inDescriptor,
                          int inIsRoot, XPWidgetID inContainer, XPWidgetClass inClass) {
    const char* const function = "XPCreateWidget";
    XPWidgetFunc_t callback = xpsim::StandardClassFunction(inClass);
    if (callback == nullptr) {
        xpsim::ReportMisuse(function, std::to_string(inClass) + " is not a widget class");
        return nullptr;
    }
    return Create(function, inLeft, inTop, inRight, inBottom, inVisible, inDescriptor, inIsRoot, inContainer,
                  inClass, callback);
}

XPWidgetID XPCreateCustomWidget(int inLeft, int inTop, int inRight, int inBottom, int inVisible,
                                const char* inDescriptor, int inIsRoot, XPWidgetID inContainer,
                                XPWidgetFunc_t inCallback) {
    const char* const function = "XPCreateCustomWidget";
    if (inCallback == nullptr) {
        xpsim::ReportMisuse(function, "no widget callback");
        return nullptr;
    }
    return Create(function, inLeft, inTop, inRight, inBottom, inVisible, inDescriptor, inIsRoot, inContainer,
                  xpsim::kCustomClass, inCallback);
}

void XPDestroyWidget(XPWidgetID inWidget, int inDestroyChildren) {
    if (xpsim::WidgetRecord* widget = Widget(inWidget, "XPDestroyWidget"))
        xpsim::DestroyWidget(*widget, inDestroyChildren != 0);
}

// ------------------------------------------------------------------ messages

int XPSendMessageToWidget(XPWidgetID inWidget, XPWidgetMessage inMessage, XPDispatchMode inMode, intptr_t inParam1,
                          intptr_t inParam2) {
    const char* const function = "XPSendMessageToWidget";
    xpsim::WidgetRecord* widget = Widget(inWidget, function);
    if (widget == nullptr) return 0;
    return xpsim::SendMessage(*widget, inMessage, inMode, inParam1, inParam2, function);
}

// ------------------------------------------------------------------ the tree

void XPPlaceWidgetWithin(XPWidgetID inSubWidget, XPWidgetID inContainer) {
    const char* const function = "XPPlaceWidgetWithin";
    xpsim::WidgetRecord* widget = Widget(inSubWidget, function);
    xpsim::WidgetRecord* container;
    if (widget == nullptr || !Container(inContainer, function, container)) return;
    if (widget->root) {
        xpsim::ReportMisuse(function, xpsim::DescribeWidget(*widget) + " is a root widget");
        return;
    }
    std::string problem;
    if (!xpsim::PlaceWithin(*widget, container, problem)) xpsim::ReportMisuse(function, problem);
}

int XPCountChildWidgets(XPWidgetID inWidget) {
    xpsim::WidgetRecord* widget = Widget(inWidget, "XPCountChildWidgets");
    return widget ? int(widget->children.size()) : 0;
}

XPWidgetID XPGetNthChildWidget(XPWidgetID inWidget, int inIndex) {
    const char* const function = "XPGetNthChildWidget";
    xpsim::WidgetRecord* widget = Widget(inWidget, function);
    if (widget == nullptr) return nullptr;
    if (inIndex < 0 || inIndex >= int(widget->children.size())) {
        xpsim::ReportMisuse(function, "index " + std::to_string(inIndex) + " is not below " +
                                          std::to_string(widget->children.size()));
        return nullptr;
    }
    return widget->children[size_t(inIndex)];
}

XPWidgetID XPGetParentWidget(XPWidgetID inWidget) {
    xpsim::WidgetRecord* widget = Widget(inWidget, "XPGetParentWidget");
    return widget ? widget->parent : nullptr;
}

void XPShowWidget(XPWidgetID inWidget) {
    if (xpsim::WidgetRecord* widget = Widget(inWidget, "XPShowWidget")) xpsim::SetWidgetVisible(*widget, true);
}

void XPHideWidget(XPWidgetID inWidget) {
    if (xpsim::WidgetRecord* widget = Widget(inWidget, "XPHideWidget")) xpsim::SetWidgetVisible(*widget, false);
}

int XPIsWidgetVisible(XPWidgetID inWidget) {
    xpsim::WidgetRecord* widget = Widget(inWidget, "XPIsWidgetVisible");
    return widget != nullptr && xpsim::WidgetIsVisible(*widget) ? 1 : 0;
}

XPWidgetID XPFindRootWidget(XPWidgetID inWidget) {
    xpsim::WidgetRecord* widget = Widget(inWidget, "XPFindRootWidget");
    return widget ? xpsim::FindRoot(*widget) : nullptr;
}

void XPBringRootWidgetToFront(XPWidgetID inWidget) {
    if (xpsim::WidgetRecord* widget = Widget(inWidget, "XPBringRootWidgetToFront")) xpsim::BringRootToFront(*widget);
}

int XPIsWidgetInFront(XPWidgetID inWidget) {
    xpsim::WidgetRecord* widget = Widget(inWidget, "XPIsWidgetInFront");
    return widget != nullptr && xpsim::RootIsInFront(*widget) ? 1 : 0;
}

// ------------------------------------------------------------------ geometry

void XPGetWidgetGeometry(XPWidgetID inWidget, int* outLeft, int* outTop, int* outRight, int* outBottom) {
    xpsim::WidgetRecord* widget = Widget(inWidget, "XPGetWidgetGeometry");
    if (widget == nullptr) return ClearRect(outLeft, outTop, outRight, outBottom);
    if (outLeft) *outLeft = widget->left;
    if (outTop) *outTop = widget->top;
    if (outRight) *outRight = widget->right;
    if (outBottom) *outBottom = widget->bottom;
}

void XPSetWidgetGeometry(XPWidgetID inWidget, int inLeft, int inTop, int inRight, int inBottom) {
    const char* const function = "XPSetWidgetGeometry";
    if (xpsim::WidgetRecord* widget = Widget(inWidget, function))
        xpsim::SetWidgetGeometry(*widget, inLeft, inTop, inRight, inBottom, function);
}

XPWidgetID XPGetWidgetForLocation(XPWidgetID inContainer, int inXOffset, int inYOffset, int inRecursive,
                                  int inVisibleOnly) {
    xpsim::WidgetRecord* container = Widget(inContainer, "XPGetWidgetForLocation");
    if (container == nullptr) return nullptr;
    return xpsim::WidgetAt(*container, inXOffset, inYOffset, inRecursive != 0, inVisibleOnly != 0);
}

void XPGetWidgetExposedGeometry(XPWidgetID inWidgetID, int* outLeft, int* outTop, int* outRight, int* outBottom) {
    xpsim::WidgetRecord* widget = Widget(inWidgetID, "XPGetWidgetExposedGeometry");
    if (widget == nullptr) return ClearRect(outLeft, outTop, outRight, outBottom);
    int left, top, right, bottom;
    xpsim::ExposedGeometry(*widget, left, top, right, bottom);
    if (outLeft) *outLeft = left;
    if (outTop) *outTop = top;
    if (outRight) *outRight = right;
    if (outBottom) *outBottom = bottom;
}

// ------------------------------------------------------------------ descriptor and properties

void XPSetWidgetDescriptor(XPWidgetID inWidget, const char* inDescriptor) {
    const char* const function = "XPSetWidgetDescriptor";
    if (xpsim::WidgetRecord* widget = Widget(inWidget, function))
        xpsim::SetDescriptor(*widget, inDescriptor ? inDescriptor : "", function);
}

int XPGetWidgetDescriptor(XPWidgetID inWidget, char* outDescriptor, int inMaxDescLength) {
    const char* const function = "XPGetWidgetDescriptor";
    xpsim::WidgetRecord* widget = Widget(inWidget, function);
    if (widget == nullptr) {
        if (outDescriptor != nullptr && inMaxDescLength > 0) outDescriptor[0] = '\0';
        return 0;
    }
    const std::string& text = widget->descriptor;
    if (outDescriptor != nullptr) {
        if (inMaxDescLength < 0) {
            xpsim::ReportMisuse(function, "the buffer length " + std::to_string(inMaxDescLength) + " is negative");
        } else {
            // strncpy: the text is terminated only when it is shorter than the buffer.
            const size_t count = std::min(text.size(), size_t(inMaxDescLength));
            std::memcpy(outDescriptor, text.data(), count);
            if (count < size_t(inMaxDescLength)) outDescriptor[count] = '\0';
        }
    }
    return int(text.size());
}

void XPSetWidgetProperty(XPWidgetID inWidget, XPWidgetPropertyID inProperty, intptr_t inValue) {
    const char* const function = "XPSetWidgetProperty";
    if (xpsim::WidgetRecord* widget = Widget(inWidget, function))
        xpsim::SetProperty(*widget, inProperty, inValue, function);
}

intptr_t XPGetWidgetProperty(XPWidgetID inWidget, XPWidgetPropertyID inProperty, int* inExists) {
    xpsim::WidgetRecord* widget = Widget(inWidget, "XPGetWidgetProperty");
    intptr_t value = 0;
    const bool exists = widget != nullptr && xpsim::GetProperty(*widget, inProperty, value);
    if (inExists) *inExists = exists ? 1 : 0;
    return value;
}

// ------------------------------------------------------------------ keyboard focus

XPWidgetID XPSetKeyboardFocus(XPWidgetID inWidget) {
    if (inWidget == nullptr) return xpsim::SetKeyboardFocus(nullptr);
    xpsim::WidgetRecord* widget = Widget(inWidget, "XPSetKeyboardFocus");
    if (widget == nullptr) return xpsim::FocusedWidget();
    return xpsim::SetKeyboardFocus(widget);
}

void XPLoseKeyboardFocus(XPWidgetID inWidget) {
    if (xpsim::WidgetRecord* widget = Widget(inWidget, "XPLoseKeyboardFocus")) xpsim::LoseKeyboardFocus(*widget);
}

XPWidgetID XPGetWidgetWithFocus(void) { return xpsim::FocusedWidget(); }

// ------------------------------------------------------------------ callbacks

void XPAddWidgetCallback(XPWidgetID inWidget, XPWidgetFunc_t inNewCallback) {
    const char* const function = "XPAddWidgetCallback";
    xpsim::WidgetRecord* widget = Widget(inWidget, function);
    if (widget == nullptr) return;
    if (inNewCallback == nullptr) {
        xpsim::ReportMisuse(function, "no widget callback");
        return;
    }
    xpsim::AddCallback(*widget, inNewCallback);
}

XPWidgetFunc_t XPGetWidgetClassFunc(XPWidgetClass inWidgetClass) {
    XPWidgetFunc_t callback = xpsim::StandardClassFunction(inWidgetClass);
    if (callback == nullptr)
        xpsim::ReportMisuse("XPGetWidgetClassFunc", std::to_string(inWidgetClass) + " is not a widget class");
    return callback;
}
