// Plugin windows: handles, z-order, drawing, the mouse, the wheel, the cursor and keyboard focus.
#include <cstdint>
#include <vector>

#include "SimTestSupport.h"
#include "XPLMDisplay.h"
#include "XPLMPlugin.h"
#include "XPLMUtilities.h"
#include "world/Keys.h"
#include "world/Windows.h"

namespace {

using simtest::LogText;

class sim_Windows : public simtest::WorldTest {};

std::vector<std::string> gCalls;
// What the click and wheel callbacks answer, by refcon (the window's name).
std::string gPassing;
XPLMWindowID gDestroyOnDraw = nullptr;
XPLMCursorStatus gCursor = xplm_CursorDefault;
int gFocusGrabs = 0;

std::string Name(void* refcon) { return static_cast<const char*>(refcon); }
std::string In() { return " in " + std::to_string(XPLMGetMyID()); }

void Draw(XPLMWindowID, void* refcon) {
    gCalls.push_back("draw " + Name(refcon) + In());
    if (gDestroyOnDraw != nullptr) {
        XPLMDestroyWindow(gDestroyOnDraw);
        gDestroyOnDraw = nullptr;
    }
}

int Mouse(XPLMWindowID, int x, int y, XPLMMouseStatus status, void* refcon) {
    static const char* const kStatus[] = {"?", "down", "drag", "up"};
    gCalls.push_back(Name(refcon) + " " + kStatus[status] + " " + std::to_string(x) + "," + std::to_string(y) + In());
    return gPassing.find(Name(refcon)) == std::string::npos ? 1 : 0;
}

int MouseDestroysItself(XPLMWindowID window, int, int, XPLMMouseStatus status, void* refcon) {
    gCalls.push_back(Name(refcon) + " mouse " + std::to_string(status));
    XPLMDestroyWindow(window);
    return 1;
}

void Key(XPLMWindowID window, char key, XPLMKeyFlags flags, char, void* refcon, int losingFocus) {
    if (losingFocus)
        gCalls.push_back(Name(refcon) + " loses focus to " +
                         (window ? Name(XPLMGetWindowRefCon(window)) : std::string("the sim")));
    else
        gCalls.push_back(Name(refcon) + " key " + key + " " + std::to_string(flags));
}

void KeyTakesFocusBack(XPLMWindowID, char, XPLMKeyFlags, char, void* refcon, int losingFocus) {
    ++gFocusGrabs;
    if (losingFocus) XPLMTakeKeyboardFocus(refcon);  // the refcon is the window itself
}

XPLMCursorStatus Cursor(XPLMWindowID, int x, int y, void* refcon) {
    gCalls.push_back(Name(refcon) + " cursor " + std::to_string(x) + "," + std::to_string(y));
    return gCursor;
}

int Wheel(XPLMWindowID, int x, int y, int wheel, int clicks, void* refcon) {
    gCalls.push_back(Name(refcon) + " wheel " + std::to_string(clicks) + " axis " + std::to_string(wheel));
    return gPassing.find(Name(refcon)) == std::string::npos ? 1 : 0;
}

int SuppressWindows(XPLMDrawingPhase, int, void*) { return 0; }

void RecordError(const char* message) { gCalls.push_back(std::string("error") + In() + ": " + message); }

char kA[] = "A", kB[] = "B", kC[] = "C", kM[] = "M";

XPLMWindowID Legacy(int left, int top, int right, int bottom, char* name, int visible = 1) {
    return XPLMCreateWindow(left, top, right, bottom, visible, Draw, Key, Mouse, name);
}

XPLMWindowID Modern(int left, int top, int right, int bottom, char* name) {
    XPLMCreateWindow_t params = {};
    params.structSize = sizeof params;
    params.left = left;
    params.top = top;
    params.right = right;
    params.bottom = bottom;
    params.visible = 1;
    params.drawWindowFunc = Draw;
    params.handleMouseClickFunc = Mouse;
    params.handleKeyFunc = Key;
    params.handleCursorFunc = Cursor;
    params.handleMouseWheelFunc = Wheel;
    params.refcon = name;
    return XPLMCreateWindowEx(&params);
}

void Reset() {
    gCalls.clear();
    gPassing.clear();
    gDestroyOnDraw = nullptr;
    gCursor = xplm_CursorDefault;
    gFocusGrabs = 0;
}

}  // namespace

TEST_F(sim_Windows, HandlesGeometryAndMisuse) {
    Reset();
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    XPLMWindowID a;
    {
        xpsim::PluginContext context(one);
        XPLMSetErrorCallback(RecordError);
        a = Legacy(10, 200, 110, 100, kA, 0);
        ASSERT_NE(a, nullptr);
        XPLMCreateWindow_t params = {};
        params.structSize = sizeof params - 1;
        params.drawWindowFunc = Draw;
        EXPECT_EQ(XPLMCreateWindowEx(&params), nullptr);
        EXPECT_EQ(XPLMCreateWindow(0, 10, 10, 0, 1, nullptr, Key, Mouse, kB), nullptr);
    }
    int left, top, right, bottom;
    XPLMGetWindowGeometry(a, &left, &top, &right, &bottom);
    EXPECT_EQ(std::vector<int>({left, top, right, bottom}), std::vector<int>({10, 200, 110, 100}));
    XPLMSetWindowGeometry(a, 1, 2, 3, 4);
    XPLMGetWindowGeometry(a, nullptr, &top, nullptr, &bottom);
    EXPECT_EQ(top, 2);
    EXPECT_EQ(bottom, 4);
    EXPECT_EQ(XPLMGetWindowIsVisible(a), 0);
    XPLMSetWindowIsVisible(a, 5);
    EXPECT_EQ(XPLMGetWindowIsVisible(a), 1);
    EXPECT_EQ(Name(XPLMGetWindowRefCon(a)), "A");
    XPLMSetWindowRefCon(a, kB);
    EXPECT_EQ(Name(XPLMGetWindowRefCon(a)), "B");

    XPLMDestroyWindow(a);  // the sim is not its owner
    EXPECT_EQ(xpsim::WindowCount(), 1);
    {
        xpsim::PluginContext context(one);
        XPLMDestroyWindow(a);
        // A destroyed window's handle stays told apart from a live one.
        EXPECT_EQ(XPLMGetWindowIsVisible(a), 0);
        XPLMGetWindowGeometry(a, &left, nullptr, nullptr, nullptr);
        EXPECT_EQ(left, 0);
        XPLMTakeKeyboardFocus(reinterpret_cast<XPLMWindowID>(0x40));
    }
    EXPECT_EQ(xpsim::WindowCount(), 0);
    EXPECT_EQ(gCalls, (std::vector<std::string>{
                          "error in 1: XPLMCreateWindowEx: structSize " + std::to_string(sizeof(XPLMCreateWindow_t) - 1) +
                              " is smaller than " + std::to_string(sizeof(XPLMCreateWindow_t)),
                          "error in 1: XPLMCreateWindow: no draw callback",
                          "error in 1: XPLMGetWindowIsVisible: window 1 (plugin 1) was destroyed",
                          "error in 1: XPLMGetWindowGeometry: window 1 (plugin 1) was destroyed",
                          "error in 1: XPLMTakeKeyboardFocus: 0x40 is not a window"}));
    EXPECT_NE(LogText().find("xpsim: XPLMDestroyWindow: window 1 belongs to plugin 1\n"), std::string::npos);

    // A plugin's windows go with it.
    {
        xpsim::PluginContext context(one);
        Legacy(0, 10, 10, 0, kA);
    }
    xpsim::RemovePlugin(one);
    EXPECT_EQ(xpsim::WindowCount(), 0);
    EXPECT_NE(LogText().find("xpsim: plugin 1 left registered: 1 window; removed\n"), std::string::npos);
}

TEST_F(sim_Windows, VisibleWindowsDrawBackToFrontInTheirPluginsContext) {
    Reset();
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    const int two = simtest::AddEnabledPlugin("/p/two.xpl", simtest::StartAsPlugin);
    XPLMWindowID a, b, c;
    {
        xpsim::PluginContext context(one);
        a = Legacy(0, 100, 100, 0, kA);
        c = Legacy(0, 100, 100, 0, kC, 0);
    }
    {
        xpsim::PluginContext context(two);
        b = Modern(0, 100, 100, 0, kB);
    }
    RunFrames(1);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"draw A in 1", "draw B in 2"}));
    EXPECT_EQ(XPLMIsWindowInFront(b), 1);
    EXPECT_EQ(XPLMIsWindowInFront(c), 0);  // the newest, but hidden

    gCalls.clear();
    XPLMBringWindowToFront(a);
    XPLMSetWindowIsVisible(c, 1);
    EXPECT_EQ(XPLMIsWindowInFront(a), 1);
    EXPECT_EQ(XPLMIsWindowInFront(b), 0);
    // A window destroyed by a callback earlier in the frame (C's, in plugin 1) is not drawn.
    gDestroyOnDraw = a;
    RunFrames(1);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"draw C in 1", "draw B in 2"}));
    EXPECT_EQ(XPLMIsWindowInFront(b), 1);

    // Windows are the sim's own drawing of the window phase; a disabled plugin's are not drawn.
    gCalls.clear();
    xpsim::DisablePlugin(two);
    RunFrames(1);
    XPLMRegisterDrawCallback(SuppressWindows, xplm_Phase_Window, 1, nullptr);
    RunFrames(1);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"draw C in 1"}));
}

TEST_F(sim_Windows, ClicksGoToTheTopmostWindowAndPassThroughOnZero) {
    Reset();
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    XPLMWindowID b;
    {
        xpsim::PluginContext context(one);
        Legacy(100, 300, 300, 100, kA);
        b = Legacy(200, 400, 400, 200, kB);  // overlaps A's top right corner, in front of it
    }
    xpsim::Click(250, 250);
    gPassing = "B";
    xpsim::Click(250, 250);  // B passes the click down to A
    xpsim::Click(350, 350);  // B passes, nothing below: the sim gets it
    gPassing.clear();
    // Edges are inside the window; one pixel beyond is outside.
    xpsim::Click(400, 400);
    xpsim::Click(401, 400);
    XPLMSetWindowIsVisible(b, 0);
    xpsim::Click(250, 250);
    EXPECT_EQ(gCalls, (std::vector<std::string>{
                          "B down 250,250 in 1", "B up 250,250 in 1",
                          "B down 250,250 in 1", "A down 250,250 in 1", "A up 250,250 in 1",
                          "B down 350,350 in 1",
                          "B down 400,400 in 1", "B up 400,400 in 1",
                          "A down 250,250 in 1", "A up 250,250 in 1"}));
    const std::string log = LogText();
    EXPECT_NE(log.find("xpsim: mouse down at (350, 350) reaches the sim\n"), std::string::npos);
    EXPECT_NE(log.find("xpsim: mouse down at (401, 400) reaches the sim\n"), std::string::npos);
    // Clicks move neither the z-order nor the keyboard focus.
    XPLMSetWindowIsVisible(b, 1);
    EXPECT_EQ(XPLMIsWindowInFront(b), 1);
    EXPECT_EQ(xpsim::KeyboardFocus(), nullptr);

    // Drags and the up go to the window that took the down, even outside it.
    gCalls.clear();
    xpsim::Drag(150, 150, 500, 20);
    int x = 0, y = 0;
    XPLMGetMouseLocation(&x, &y);
    EXPECT_EQ(x, 500);
    EXPECT_EQ(y, 20);
    // A window that destroys itself on the down gets nothing more.
    {
        xpsim::PluginContext context(one);
        XPLMCreateWindow(0, 50, 50, 0, 1, Draw, Key, MouseDestroysItself, kM);
    }
    xpsim::Drag(10, 10, 120, 120);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"A down 150,150 in 1", "A drag 500,20 in 1", "A up 500,20 in 1",
                                                "M mouse 1"}));
    EXPECT_EQ(xpsim::WindowCount(), 2);
}

TEST_F(sim_Windows, TheWheelAndTheCursorFindTheWindowUnderTheMouse) {
    Reset();
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    {
        xpsim::PluginContext context(one);
        XPLMSetErrorCallback(RecordError);
        Modern(0, 100, 100, 0, kA);
        Legacy(0, 100, 100, 0, kB);  // legacy windows have no wheel: it passes through
        Modern(50, 100, 100, 50, kC);
    }
    xpsim::Wheel(75, 75, -2, 1);
    gPassing = "C";
    xpsim::Wheel(75, 75, 3, 0);
    gPassing = "AC";
    xpsim::Wheel(75, 75, 1, 0);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"C wheel -2 axis 1", "C wheel 3 axis 0", "A wheel 3 axis 0",
                                                "C wheel 1 axis 0", "A wheel 1 axis 0"}));
    EXPECT_NE(LogText().find("xpsim: mouse wheel at (75, 75) reaches the sim\n"), std::string::npos);

    // Every frame, the topmost window under the mouse is asked for the cursor.
    gCalls.clear();
    gCursor = xplm_CursorHidden;
    RunFrames(1);
    EXPECT_EQ(xpsim::CursorStatus(), xplm_CursorHidden);
    xpsim::Wheel(20, 20, 0, 0);  // over B, a legacy window: the sim's own cursor
    RunFrames(1);
    EXPECT_EQ(xpsim::CursorStatus(), xplm_CursorDefault);
    xpsim::Wheel(60, 60, 0, 0);
    gCursor = 9;
    RunFrames(1);
    EXPECT_EQ(gCalls, (std::vector<std::string>{
                          "draw A in 1", "draw B in 1", "draw C in 1", "C cursor 75,75",
                          "A wheel 0 axis 0",  // B has no wheel callback; A is still passing
                          "draw A in 1", "draw B in 1", "draw C in 1",
                          "C wheel 0 axis 0", "A wheel 0 axis 0",
                          "draw A in 1", "draw B in 1", "draw C in 1", "C cursor 60,60",
                          "error in 1: cursor callback result: window 3 (plugin 1) answered 9, not an XPLMCursorStatus"}));
    const std::string log = LogText();
    EXPECT_NE(log.find("xpsim: the cursor over window 3 (plugin 1) is xplm_CursorHidden\n"
                       "xpsim: mouse wheel at (20, 20) reaches the sim\n"
                       "xpsim: the cursor is the sim's own again\n"),
              std::string::npos);
}

TEST_F(sim_Windows, KeyboardFocusMovesWithTheLosingWindowTold) {
    Reset();
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    XPLMWindowID a, b;
    {
        xpsim::PluginContext context(one);
        a = Legacy(0, 10, 10, 0, kA);
        b = Legacy(0, 10, 10, 0, kB, 0);
    }
    XPLMTakeKeyboardFocus(a);
    EXPECT_EQ(xpsim::KeyboardFocus(), a);
    xpsim::SendKey('x', xplm_DownFlag, XPLM_VK_X);
    XPLMTakeKeyboardFocus(a);  // no change, no call
    XPLMTakeKeyboardFocus(b);  // a hidden window may have focus too
    xpsim::SendKey('y', xplm_UpFlag, XPLM_VK_Y);
    XPLMTakeKeyboardFocus(nullptr);
    xpsim::SendKey('z', xplm_DownFlag, XPLM_VK_Z);
    XPLMTakeKeyboardFocus(a);
    {
        xpsim::PluginContext context(one);
        XPLMDestroyWindow(a);  // focus goes back to the sim; the destroyed window is not called
    }
    EXPECT_EQ(xpsim::KeyboardFocus(), nullptr);
    xpsim::SendKey('w', xplm_DownFlag, XPLM_VK_W);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"A key x 8", "A loses focus to B", "B key y 16",
                                                "B loses focus to the sim"}));
    const std::string log = LogText();
    EXPECT_NE(log.find("xpsim: the sim gets key 'z' (XPLM_VK_Z, down)\n"
                       "xpsim: the sim gets key 'w' (XPLM_VK_W, down)\n"),
              std::string::npos);

    // Two windows that take focus back whenever they lose it are stopped, not followed for ever.
    XPLMWindowID p = XPLMCreateWindow(0, 10, 10, 0, 1, Draw, KeyTakesFocusBack, Mouse, nullptr);
    XPLMWindowID q = XPLMCreateWindow(0, 10, 10, 0, 1, Draw, KeyTakesFocusBack, Mouse, nullptr);
    XPLMSetWindowRefCon(p, p);
    XPLMSetWindowRefCon(q, q);
    XPLMTakeKeyboardFocus(p);
    XPLMTakeKeyboardFocus(q);
    EXPECT_EQ(gFocusGrabs, 16);
    EXPECT_NE(LogText().find("xpsim: XPLMTakeKeyboardFocus: focus changes nested 16 deep in losing-focus "
                             "callbacks; this one is ignored\n"),
              std::string::npos);
}
