// A small plugin for xpsim's own tests. It exercises the host's lifecycle and reports everything it
// sees with XPLMDebugString, one "probe: ..." line per observation, so that tests can assert on
// xpsim's standard output and Log.txt.
//
// It probes the SDK level the way a plugin for several simulator versions does (opening
// <system path>Resources/plugins/XPLM_64.so and asking XPLMFindSymbol), builds a menu
// Plugins/Probe with the items "Hello" and "Reload", runs a flight loop every simulated second,
// shares the int "xpsim/tests/probe/shared" and logs every message it receives. A window at the
// bottom left (0, 0 to 100, 100) takes keyboard focus when clicked and reports its clicks and keys;
// the command "xpsim/tests/probe/hello" reports its phases. A widget dialog (a main window from
// 200, 400 to 400, 200) has a text field (220, 340 to 380, 320) and a push button (220, 260 to 300,
// 240) that reports the field's text.
#include <dlfcn.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "XPLMDataAccess.h"
#include "XPLMDisplay.h"
#include "XPLMMenus.h"
#include "XPLMPlugin.h"
#include "XPLMProcessing.h"
#include "XPLMUtilities.h"
#include "XPStandardWidgets.h"
#include "XPWidgets.h"

namespace {

XPLMMenuID gMenu = nullptr;
XPLMWindowID gWindow = nullptr;
XPLMCommandRef gHello = nullptr;
int gLoopCalls = 0;
XPWidgetID gDialog = nullptr;
XPWidgetID gField = nullptr;

void Say(const std::string& text) { XPLMDebugString(("probe: " + text + "\n").c_str()); }

void DrawWindow(XPLMWindowID, void*) {}

int ClickWindow(XPLMWindowID window, int x, int y, XPLMMouseStatus status, void*) {
    Say("mouse " + std::to_string(status) + " at " + std::to_string(x) + "," + std::to_string(y) + " in plugin " +
        std::to_string(XPLMGetMyID()));
    if (status == xplm_MouseDown) XPLMTakeKeyboardFocus(window);
    return 1;
}

void KeyWindow(XPLMWindowID, char key, XPLMKeyFlags flags, char, void*, int losingFocus) {
    if (!losingFocus) Say(std::string("key ") + key + " with flags " + std::to_string(flags));
}

int Hello(XPLMCommandRef, XPLMCommandPhase phase, void*) {
    Say("command phase " + std::to_string(phase));
    return 1;
}

int DialogMessage(XPWidgetMessage message, XPWidgetID, intptr_t, intptr_t) {
    if (message != xpMsg_PushButtonPressed) return 0;
    char text[64];
    XPGetWidgetDescriptor(gField, text, sizeof text);
    Say(std::string("button pressed with text '") + text + "' in plugin " + std::to_string(XPLMGetMyID()));
    return 1;
}

void MakeDialog() {
    gDialog = XPCreateWidget(200, 400, 400, 200, 1, "Probe", 1, nullptr, xpWidgetClass_MainWindow);
    gField = XPCreateWidget(220, 340, 380, 320, 1, "", 0, gDialog, xpWidgetClass_TextField);
    XPCreateWidget(220, 260, 300, 240, 1, "Report", 0, gDialog, xpWidgetClass_Button);
    XPAddWidgetCallback(gDialog, DialogMessage);
}

float Loop(float sinceCall, float sinceLoop, int counter, void*) {
    ++gLoopCalls;
    char text[128];
    std::snprintf(text, sizeof text, "loop %d at %.2f (since last call %.2f, counter %d)", gLoopCalls,
                  XPLMGetElapsedTime(), sinceCall, counter);
    Say(text);
    return 1.0f;
}

void MenuHandler(void* menuRef, void* itemRef) {
    const std::string item = static_cast<const char*>(itemRef);
    Say("menu " + item + " in plugin " + std::to_string(XPLMGetMyID()) + " with menu refcon " +
        static_cast<const char*>(menuRef));
    if (item == "Reload") XPLMReloadPlugins();
}

void SharedChanged(void*) {
    XPLMDataRef ref = XPLMFindDataRef("xpsim/tests/probe/shared");
    Say("shared data changed to " + std::to_string(XPLMGetDatai(ref)) + " in plugin " +
        std::to_string(XPLMGetMyID()));
}

void ProbeSdk() {
    char path[512];
    XPLMGetSystemPath(path);
    const std::string library = std::string(path) + "Resources/plugins/XPLM_64.so";
    void* handle = dlopen(library.c_str(), RTLD_NOW | RTLD_GLOBAL);
    if (handle == nullptr) {
        Say("no XPLM library in the plugins folder");
        return;
    }
    using FindSymbol = void* (*)(const char*);
    auto findSymbol = reinterpret_cast<FindSymbol>(dlsym(handle, "XPLMFindSymbol"));
    const bool sameLibrary = findSymbol == reinterpret_cast<FindSymbol>(&XPLMFindSymbol);
    int xplane = 0, xplm = 0;
    XPLMHostApplicationID host = 0;
    XPLMGetVersions(&xplane, &xplm, &host);
    Say("XPLM library found, same as loaded: " + std::string(sameLibrary ? "yes" : "no") + ", versions " +
        std::to_string(xplane) + " " + std::to_string(xplm) + " " + std::to_string(host));
    Say(std::string("XPLMCreateCommand ") + (findSymbol("XPLMCreateCommand") ? "found" : "missing") +
        ", XPLMCreateFlightLoop " + (findSymbol("XPLMCreateFlightLoop") ? "found" : "missing"));
}

}  // namespace

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription) {
    std::strcpy(outName, "Probe");
    std::strcpy(outSignature, "xpsim.tests.probe");
    std::strcpy(outDescription, "Reports what xpsim does to a plugin.");
    gLoopCalls = 0;
    Say("start as plugin " + std::to_string(XPLMGetMyID()));
    ProbeSdk();
    const int item = XPLMAppendMenuItem(XPLMFindPluginsMenu(), "Probe", nullptr, 1);
    gMenu = XPLMCreateMenu("Probe", XPLMFindPluginsMenu(), item, MenuHandler, const_cast<char*>("probe-menu"));
    XPLMAppendMenuItem(gMenu, "Hello", const_cast<char*>("Hello"), 1);
    XPLMAppendMenuItem(gMenu, "Reload", const_cast<char*>("Reload"), 1);
    XPLMRegisterFlightLoopCallback(Loop, 1.0f, nullptr);
    XPLMShareData("xpsim/tests/probe/shared", xplmType_Int, SharedChanged, nullptr);
    gWindow = XPLMCreateWindow(0, 100, 100, 0, 1, DrawWindow, KeyWindow, ClickWindow, nullptr);
    MakeDialog();
    gHello = XPLMCreateCommand("xpsim/tests/probe/hello", "Says hello.");
    XPLMRegisterCommandHandler(gHello, Hello, 1, nullptr);
    return 1;
}

PLUGIN_API void XPluginStop(void) {
    XPLMUnregisterFlightLoopCallback(Loop, nullptr);
    XPLMUnshareData("xpsim/tests/probe/shared", xplmType_Int, SharedChanged, nullptr);
    XPLMDestroyMenu(gMenu);
    XPLMDestroyWindow(gWindow);
    XPDestroyWidget(gDialog, 1);
    XPLMUnregisterCommandHandler(gHello, Hello, 1, nullptr);
    Say("stop after " + std::to_string(gLoopCalls) + " loops");
}

PLUGIN_API int XPluginEnable(void) {
    Say("enable");
    return 1;
}

PLUGIN_API void XPluginDisable(void) { Say("disable"); }

PLUGIN_API void XPluginReceiveMessage(XPLMPluginID inFrom, int inMessage, void* inParam) {
    Say("message " + std::to_string(inMessage) + " from " + std::to_string(inFrom) + " with " +
        std::to_string(reinterpret_cast<intptr_t>(inParam)));
}
