// XPLMDisplay: drawing callbacks, screen, windows, key sniffers and hot keys.
#include "XPLMDisplay.h"

#include <string>

#include "world/Keys.h"
#include "world/Scheduler.h"
#include "world/Screen.h"
#include "world/Windows.h"
#include "world/World.h"

namespace {

// The SDK's size for XPLMGetHotKeyInfo's description buffer.
constexpr size_t kHotKeyDescriptionSize = 512;

// The live window behind a handle; reports a bad or stale one.
xpsim::WindowRecord* Window(XPLMWindowID id, const char* function) {
    std::string what;
    xpsim::WindowRecord* window = xpsim::WindowFromHandle(id, what);
    if (window == nullptr) xpsim::ReportMisuse(function, what);
    return window;
}

xpsim::HotKeyRecord* HotKey(XPLMHotKeyID id, const char* function) {
    std::string what;
    xpsim::HotKeyRecord* hotKey = xpsim::HotKeyFromHandle(id, what);
    if (hotKey == nullptr) xpsim::ReportMisuse(function, what);
    return hotKey;
}

XPLMWindowID NewWindow(const char* function, const xpsim::WindowRecord& params) {
    if (params.draw == nullptr) {
        xpsim::ReportMisuse(function, "no draw callback");
        return nullptr;
    }
    return xpsim::CreateWindow(params);
}

}  // namespace

// ------------------------------------------------------------------ drawing

int XPLMRegisterDrawCallback(XPLMDrawCallback_f inCallback, XPLMDrawingPhase inPhase, int inWantsBefore,
                             void* inRefcon) {
    return xpsim::RegisterDrawCallback(inCallback, inPhase, inWantsBefore, inRefcon);
}

int XPLMUnregisterDrawCallback(XPLMDrawCallback_f inCallback, XPLMDrawingPhase inPhase, int inWantsBefore,
                               void* inRefcon) {
    return xpsim::UnregisterDrawCallback(inCallback, inPhase, inWantsBefore, inRefcon);
}

void XPLMGetScreenSize(int* outWidth, int* outHeight) {
    if (outWidth) *outWidth = xpsim::ScreenWidth();
    if (outHeight) *outHeight = xpsim::ScreenHeight();
}

void XPLMGetMouseLocation(int* outX, int* outY) {
    int x, y;
    xpsim::MouseLocation(x, y);
    if (outX) *outX = x;
    if (outY) *outY = y;
}

// ------------------------------------------------------------------ key sniffers

int XPLMRegisterKeySniffer(XPLMKeySniffer_f inCallback, int inBeforeWindows, void* inRefcon) {
    return xpsim::RegisterKeySniffer(inCallback, inBeforeWindows, inRefcon);
}

int XPLMUnregisterKeySniffer(XPLMKeySniffer_f inCallback, int inBeforeWindows, void* inRefcon) {
    return xpsim::UnregisterKeySniffer(inCallback, inBeforeWindows, inRefcon);
}

// ------------------------------------------------------------------ windows

XPLMWindowID XPLMCreateWindow(int inLeft, int inTop, int inRight, int inBottom, int inIsVisible,
                              XPLMDrawWindow_f inDrawCallback, XPLMHandleKey_f inKeyCallback,
                              XPLMHandleMouseClick_f inMouseCallback, void* inRefcon) {
    xpsim::WindowRecord params;
    params.left = inLeft;
    params.top = inTop;
    params.right = inRight;
    params.bottom = inBottom;
    params.visible = inIsVisible != 0;
    params.draw = inDrawCallback;
    params.key = inKeyCallback;
    params.click = inMouseCallback;
    params.refcon = inRefcon;
    return NewWindow("XPLMCreateWindow", params);
}

XPLMWindowID XPLMCreateWindowEx(XPLMCreateWindow_t* inParams) {
    const char* const function = "XPLMCreateWindowEx";
    if (inParams == nullptr) {
        xpsim::ReportMisuse(function, "no parameters");
        return nullptr;
    }
    if (inParams->structSize < int(sizeof(XPLMCreateWindow_t))) {
        xpsim::ReportMisuse(function, "structSize " + std::to_string(inParams->structSize) +
                                          " is smaller than " + std::to_string(sizeof(XPLMCreateWindow_t)));
        return nullptr;
    }
    xpsim::WindowRecord params;
    params.left = inParams->left;
    params.top = inParams->top;
    params.right = inParams->right;
    params.bottom = inParams->bottom;
    params.visible = inParams->visible != 0;
    params.modern = true;
    params.draw = inParams->drawWindowFunc;
    params.click = inParams->handleMouseClickFunc;
    params.key = inParams->handleKeyFunc;
    params.cursor = inParams->handleCursorFunc;
    params.wheel = inParams->handleMouseWheelFunc;
    params.refcon = inParams->refcon;
    return NewWindow(function, params);
}

void XPLMDestroyWindow(XPLMWindowID inWindowID) {
    const char* const function = "XPLMDestroyWindow";
    xpsim::WindowRecord* window = Window(inWindowID, function);
    if (window == nullptr) return;
    if (window->owner != xpsim::CurrentPlugin()) {
        xpsim::ReportMisuse(function, "window " + std::to_string(window->number) + " belongs to plugin " +
                                          std::to_string(window->owner));
        return;
    }
    xpsim::DestroyWindow(*window);
}

void XPLMGetWindowGeometry(XPLMWindowID inWindowID, int* outLeft, int* outTop, int* outRight, int* outBottom) {
    xpsim::WindowRecord* window = Window(inWindowID, "XPLMGetWindowGeometry");
    if (outLeft) *outLeft = window ? window->left : 0;
    if (outTop) *outTop = window ? window->top : 0;
    if (outRight) *outRight = window ? window->right : 0;
    if (outBottom) *outBottom = window ? window->bottom : 0;
}

void XPLMSetWindowGeometry(XPLMWindowID inWindowID, int inLeft, int inTop, int inRight, int inBottom) {
    xpsim::WindowRecord* window = Window(inWindowID, "XPLMSetWindowGeometry");
    if (window == nullptr) return;
    window->left = inLeft;
    window->top = inTop;
    window->right = inRight;
    window->bottom = inBottom;
}

int XPLMGetWindowIsVisible(XPLMWindowID inWindowID) {
    xpsim::WindowRecord* window = Window(inWindowID, "XPLMGetWindowIsVisible");
    return window != nullptr && window->visible ? 1 : 0;
}

void XPLMSetWindowIsVisible(XPLMWindowID inWindowID, int inIsVisible) {
    if (xpsim::WindowRecord* window = Window(inWindowID, "XPLMSetWindowIsVisible"))
        xpsim::SetWindowVisible(*window, inIsVisible != 0);
}

void* XPLMGetWindowRefCon(XPLMWindowID inWindowID) {
    xpsim::WindowRecord* window = Window(inWindowID, "XPLMGetWindowRefCon");
    return window ? window->refcon : nullptr;
}

void XPLMSetWindowRefCon(XPLMWindowID inWindowID, void* inRefcon) {
    if (xpsim::WindowRecord* window = Window(inWindowID, "XPLMSetWindowRefCon")) window->refcon = inRefcon;
}

void XPLMTakeKeyboardFocus(XPLMWindowID inWindow) {
    if (inWindow == nullptr) {
        xpsim::TakeKeyboardFocus(nullptr);
        return;
    }
    if (xpsim::WindowRecord* window = Window(inWindow, "XPLMTakeKeyboardFocus")) xpsim::TakeKeyboardFocus(window);
}

void XPLMBringWindowToFront(XPLMWindowID inWindow) {
    if (xpsim::WindowRecord* window = Window(inWindow, "XPLMBringWindowToFront")) xpsim::BringToFront(*window);
}

int XPLMIsWindowInFront(XPLMWindowID inWindow) {
    xpsim::WindowRecord* window = Window(inWindow, "XPLMIsWindowInFront");
    return window != nullptr && xpsim::IsInFront(*window) ? 1 : 0;
}

// ------------------------------------------------------------------ hot keys

XPLMHotKeyID XPLMRegisterHotKey(char inVirtualKey, XPLMKeyFlags inFlags, const char* inDescription,
                                XPLMHotKey_f inCallback, void* inRefcon) {
    return xpsim::RegisterHotKey(inVirtualKey, inFlags, inDescription, inCallback, inRefcon);
}

void XPLMUnregisterHotKey(XPLMHotKeyID inHotKey) {
    const char* const function = "XPLMUnregisterHotKey";
    xpsim::HotKeyRecord* hotKey = HotKey(inHotKey, function);
    if (hotKey == nullptr) return;
    if (hotKey->owner != xpsim::CurrentPlugin()) {
        xpsim::ReportMisuse(function, "the hot key '" + hotKey->description + "' belongs to plugin " +
                                          std::to_string(hotKey->owner));
        return;
    }
    xpsim::UnregisterHotKey(*hotKey);
}

int XPLMCountHotKeys(void) { return xpsim::HotKeyCount(); }

XPLMHotKeyID XPLMGetNthHotKey(int inIndex) {
    xpsim::HotKeyRecord* hotKey = xpsim::NthHotKey(inIndex);
    if (hotKey == nullptr)
        xpsim::ReportMisuse("XPLMGetNthHotKey", "index " + std::to_string(inIndex) + " is not below " +
                                                    std::to_string(xpsim::HotKeyCount()));
    return hotKey;
}

void XPLMGetHotKeyInfo(XPLMHotKeyID inHotKey, char* outVirtualKey, XPLMKeyFlags* outFlags, char* outDescription,
                       XPLMPluginID* outPlugin) {
    xpsim::HotKeyRecord* hotKey = HotKey(inHotKey, "XPLMGetHotKeyInfo");
    if (outVirtualKey) *outVirtualKey = hotKey ? hotKey->virtualKey : 0;
    if (outFlags) *outFlags = hotKey ? hotKey->flags : 0;
    if (outDescription) xpsim::CopyOut(outDescription, kHotKeyDescriptionSize, hotKey ? hotKey->description : "");
    if (outPlugin) *outPlugin = hotKey ? hotKey->owner : XPLM_NO_PLUGIN_ID;
}

void XPLMSetHotKeyCombination(XPLMHotKeyID inHotKey, char inVirtualKey, XPLMKeyFlags inFlags) {
    // Any plugin may remap a hot key: that is what the descriptions are for.
    xpsim::HotKeyRecord* hotKey = HotKey(inHotKey, "XPLMSetHotKeyCombination");
    if (hotKey == nullptr) return;
    hotKey->virtualKey = inVirtualKey;
    hotKey->flags = inFlags;
}
