// XPLMDisplay: drawing callbacks, screen, windows, key sniffers and hot keys.
#include "XPLMDisplay.h"

#include "world/Scheduler.h"
#include "world/World.h"

namespace {

// The size of xpsim's (invisible) screen.
constexpr int kScreenWidth = 1024;
constexpr int kScreenHeight = 768;

}  // namespace

int XPLMRegisterDrawCallback(XPLMDrawCallback_f inCallback, XPLMDrawingPhase inPhase, int inWantsBefore,
                             void* inRefcon) {
    return xpsim::RegisterDrawCallback(inCallback, inPhase, inWantsBefore, inRefcon);
}

int XPLMUnregisterDrawCallback(XPLMDrawCallback_f inCallback, XPLMDrawingPhase inPhase, int inWantsBefore,
                               void* inRefcon) {
    return xpsim::UnregisterDrawCallback(inCallback, inPhase, inWantsBefore, inRefcon);
}

void XPLMGetScreenSize(int* outWidth, int* outHeight) {
    if (outWidth) *outWidth = kScreenWidth;
    if (outHeight) *outHeight = kScreenHeight;
}

// ------------------------------------------------------------------ not yet simulated

int XPLMRegisterKeySniffer(XPLMKeySniffer_f inCallback, int inBeforeWindows, void * inRefcon) {
    xpsim::NotYetSimulated("XPLMRegisterKeySniffer");
    return 0;
}

int XPLMUnregisterKeySniffer(XPLMKeySniffer_f inCallback, int inBeforeWindows, void * inRefcon) {
    xpsim::NotYetSimulated("XPLMUnregisterKeySniffer");
    return 0;
}

XPLMWindowID XPLMCreateWindow(int inLeft, int inTop, int inRight, int inBottom, int inIsVisible, XPLMDrawWindow_f inDrawCallback, XPLMHandleKey_f inKeyCallback, XPLMHandleMouseClick_f inMouseCallback, void * inRefcon) {
    xpsim::NotYetSimulated("XPLMCreateWindow");
    return nullptr;
}

XPLMWindowID XPLMCreateWindowEx(XPLMCreateWindow_t * inParams) {
    xpsim::NotYetSimulated("XPLMCreateWindowEx");
    return nullptr;
}

void XPLMDestroyWindow(XPLMWindowID inWindowID) {
    xpsim::NotYetSimulated("XPLMDestroyWindow");
}

void XPLMGetMouseLocation(int * outX, int * outY) {
    xpsim::NotYetSimulated("XPLMGetMouseLocation");
    if (outX) *outX = 0;
    if (outY) *outY = 0;
}

void XPLMGetWindowGeometry(XPLMWindowID inWindowID, int * outLeft, int * outTop, int * outRight, int * outBottom) {
    xpsim::NotYetSimulated("XPLMGetWindowGeometry");
    if (outLeft) *outLeft = 0;
    if (outTop) *outTop = 0;
    if (outRight) *outRight = 0;
    if (outBottom) *outBottom = 0;
}

void XPLMSetWindowGeometry(XPLMWindowID inWindowID, int inLeft, int inTop, int inRight, int inBottom) {
    xpsim::NotYetSimulated("XPLMSetWindowGeometry");
}

int XPLMGetWindowIsVisible(XPLMWindowID inWindowID) {
    xpsim::NotYetSimulated("XPLMGetWindowIsVisible");
    return 0;
}

void XPLMSetWindowIsVisible(XPLMWindowID inWindowID, int inIsVisible) {
    xpsim::NotYetSimulated("XPLMSetWindowIsVisible");
}

void * XPLMGetWindowRefCon(XPLMWindowID inWindowID) {
    xpsim::NotYetSimulated("XPLMGetWindowRefCon");
    return nullptr;
}

void XPLMSetWindowRefCon(XPLMWindowID inWindowID, void * inRefcon) {
    xpsim::NotYetSimulated("XPLMSetWindowRefCon");
}

void XPLMTakeKeyboardFocus(XPLMWindowID inWindow) {
    xpsim::NotYetSimulated("XPLMTakeKeyboardFocus");
}

void XPLMBringWindowToFront(XPLMWindowID inWindow) {
    xpsim::NotYetSimulated("XPLMBringWindowToFront");
}

int XPLMIsWindowInFront(XPLMWindowID inWindow) {
    xpsim::NotYetSimulated("XPLMIsWindowInFront");
    return 0;
}

XPLMHotKeyID XPLMRegisterHotKey(char inVirtualKey, XPLMKeyFlags inFlags, const char * inDescription, XPLMHotKey_f inCallback, void * inRefcon) {
    xpsim::NotYetSimulated("XPLMRegisterHotKey");
    return nullptr;
}

void XPLMUnregisterHotKey(XPLMHotKeyID inHotKey) {
    xpsim::NotYetSimulated("XPLMUnregisterHotKey");
}

int XPLMCountHotKeys(void) {
    xpsim::NotYetSimulated("XPLMCountHotKeys");
    return 0;
}

XPLMHotKeyID XPLMGetNthHotKey(int inIndex) {
    xpsim::NotYetSimulated("XPLMGetNthHotKey");
    return nullptr;
}

void XPLMGetHotKeyInfo(XPLMHotKeyID inHotKey, char * outVirtualKey, XPLMKeyFlags * outFlags, char * outDescription, XPLMPluginID * outPlugin) {
    xpsim::NotYetSimulated("XPLMGetHotKeyInfo");
    if (outVirtualKey) outVirtualKey[0] = '\0';
    if (outFlags) *outFlags = 0;
    if (outDescription) outDescription[0] = '\0';
    if (outPlugin) *outPlugin = 0;
}

void XPLMSetHotKeyCombination(XPLMHotKeyID inHotKey, char inVirtualKey, XPLMKeyFlags inFlags) {
    xpsim::NotYetSimulated("XPLMSetHotKeyCombination");
}
