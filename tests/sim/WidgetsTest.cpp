// Widgets: the tree, messages and their dispatch, geometry, focus, the standard classes driven by the
// mouse and the keyboard, the utilities, and misuse.
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "SimTestSupport.h"
#include "XPLMDisplay.h"
#include "XPLMPlugin.h"
#include "XPLMUtilities.h"
#include "XPStandardWidgets.h"
#include "XPUIGraphics.h"
#include "XPWidgetUtils.h"
#include "XPWidgets.h"
#include "world/Keys.h"
#include "world/Widgets.h"
#include "world/Windows.h"

namespace {

using simtest::LogText;

class sim_Widgets : public simtest::WorldTest {};

std::vector<std::string> gCalls;
std::map<XPWidgetID, std::string> gNames;
// Messages each recording callback handles, by widget name ("A" handles those in gHandles["A"]).
std::map<std::string, std::vector<XPWidgetMessage>> gHandles;
XPWidgetID gDestroyOnMessage = nullptr;
int gRecursions = 0;

// A widget's name: the one a test gave it, or else its descriptor (widgets are made with their name as
// descriptor, and hear of their creation before the test knows their handle).
std::string NameOf(XPWidgetID id) {
    auto found = gNames.find(id);
    if (found != gNames.end()) return found->second;
    char buffer[64] = "";
    XPGetWidgetDescriptor(id, buffer, sizeof buffer - 1);
    return buffer;
}

std::string MessageName(XPWidgetMessage message) {
    switch (message) {
        case xpMsg_Create: return "create";
        case xpMsg_Destroy: return "destroy";
        case xpMsg_Paint: return "paint";
        case xpMsg_Draw: return "draw";
        case xpMsg_KeyPress: return "key";
        case xpMsg_KeyTakeFocus: return "take focus";
        case xpMsg_KeyLoseFocus: return "lose focus";
        case xpMsg_MouseDown: return "down";
        case xpMsg_MouseDrag: return "drag";
        case xpMsg_MouseUp: return "up";
        case xpMsg_Reshape: return "reshape";
        case xpMsg_AcceptChild: return "accept child";
        case xpMsg_LoseChild: return "lose child";
        case xpMsg_AcceptParent: return "accept parent";
        case xpMsg_Shown: return "shown";
        case xpMsg_Hidden: return "hidden";
        case xpMsg_DescriptorChanged: return "descriptor";
        case xpMsg_PropertyChanged: return "property";
        case xpMsg_MouseWheel: return "wheel";
        case xpMsg_CursorAdjust: return "cursor";
        case xpMsg_PushButtonPressed: return "pushed";
        case xpMsg_ButtonStateChanged: return "state";
        case xpMsg_TextFieldChanged: return "text";
        case xpMsg_ScrollBarSliderPositionChanged: return "slider";
        case xpMessage_CloseButtonPushed: return "close";
        default: return std::to_string(message);
    }
}

bool Handles(const std::string& name, XPWidgetMessage message) {
    for (XPWidgetMessage m : gHandles[name])
        if (m == message) return true;
    return false;
}

// Records "<widget> <message> <parameters>", and the plugin it runs in unless that is plugin 1.
std::string Param(intptr_t param) { return NameOf(reinterpret_cast<XPWidgetID>(param)); }

int Record(const std::string& tag, XPWidgetMessage message, XPWidgetID widget, intptr_t param1, intptr_t param2) {
    std::string line = tag + " " + MessageName(message);
    if (message == xpMsg_Create || message == xpMsg_Destroy || message == xpMsg_KeyTakeFocus ||
        message == xpMsg_KeyLoseFocus)
        line += " " + std::to_string(param1);
    if (message == xpMsg_AcceptChild || message == xpMsg_LoseChild || message == xpMsg_AcceptParent ||
        message == xpMsg_PushButtonPressed || message == xpMsg_TextFieldChanged ||
        message == xpMsg_ScrollBarSliderPositionChanged || message == xpMessage_CloseButtonPushed)
        line += " " + Param(param1);
    if (message == xpMsg_ButtonStateChanged) line += " " + Param(param1) + "=" + std::to_string(param2);
    if (message == xpMsg_PropertyChanged) line += " " + std::to_string(param1) + "=" + std::to_string(param2);
    if (message >= xpMsg_MouseDown && message <= xpMsg_MouseUp) {
        const auto* mouse = reinterpret_cast<const XPMouseState_t*>(param1);
        line += " " + std::to_string(mouse->x) + "," + std::to_string(mouse->y);
    }
    if (message == xpMsg_Reshape) {
        const auto* change = reinterpret_cast<const XPWidgetGeometryChange_t*>(param2);
        line += " " + Param(param1) + " " + std::to_string(change->dx) + " " + std::to_string(change->dy) + " " +
                std::to_string(change->dwidth) + " " + std::to_string(change->dheight);
    }
    if (XPLMGetMyID() != 1) line += " in " + std::to_string(XPLMGetMyID());
    gCalls.push_back(line);
    if (gDestroyOnMessage == widget && message == xpMsg_UserStart) XPDestroyWidget(widget, 1);
    return Handles(tag, message) ? 1 : 0;
}

int Callback(XPWidgetMessage message, XPWidgetID widget, intptr_t param1, intptr_t param2) {
    return Record(NameOf(widget), message, widget, param1, param2);
}

// A second callback, added later: its lines are tagged "<name>+".
int Subclass(XPWidgetMessage message, XPWidgetID widget, intptr_t param1, intptr_t param2) {
    return Record(NameOf(widget) + "+", message, widget, param1, param2);
}

// Records only what a test listens for on a standard widget (no drawing, no property noise).
int Listener(XPWidgetMessage message, XPWidgetID widget, intptr_t param1, intptr_t param2) {
    if (message == xpMsg_Paint || message == xpMsg_Draw || message == xpMsg_PropertyChanged ||
        message == xpMsg_DescriptorChanged || message == xpMsg_CursorAdjust || message == xpMsg_Reshape ||
        message == xpMsg_Create)
        return 0;
    return Record(NameOf(widget), message, widget, param1, param2);
}

int SendsToItself(XPWidgetMessage message, XPWidgetID widget, intptr_t, intptr_t) {
    if (message != xpMsg_UserStart) return 0;
    ++gRecursions;
    return XPSendMessageToWidget(widget, xpMsg_UserStart, xpMode_Direct, 0, 0);
}

void RecordError(const char* message) { gCalls.push_back(std::string("error: ") + message); }

XPWidgetID Custom(const std::string& name, int left, int top, int right, int bottom, bool root,
                  XPWidgetID container) {
    XPWidgetID id = XPCreateCustomWidget(left, top, right, bottom, 1, name.c_str(), root, container, Callback);
    gNames[id] = name;
    return id;
}

XPWidgetID Standard(const std::string& name, XPWidgetClass widgetClass, int left, int top, int right, int bottom,
                    XPWidgetID container) {
    XPWidgetID id = XPCreateWidget(left, top, right, bottom, 1, name.c_str(), container == nullptr, container,
                                   widgetClass);
    gNames[id] = name;
    return id;
}

std::string Descriptor(XPWidgetID id) {
    char buffer[256];
    XPGetWidgetDescriptor(id, buffer, sizeof buffer);
    return buffer;
}

void Type(const std::string& text) {
    for (char c : text) xpsim::PressKey(xpsim::KeyForCharacter(static_cast<unsigned char>(c), 0));
}

XPLMWindowID WindowOf(XPWidgetID id) { return xpsim::WidgetWindow(id); }

void Reset() {
    gCalls.clear();
    gNames.clear();
    gHandles.clear();
    gDestroyOnMessage = nullptr;
    gRecursions = 0;
}

}  // namespace

TEST_F(sim_Widgets, MessagesDispatchByModeNewestCallbackFirst) {
    Reset();
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    xpsim::PluginContext context(one);
    XPLMSetErrorCallback(RecordError);
    XPWidgetID r = Custom("R", 0, 100, 100, 0, true, nullptr);
    XPWidgetID a = Custom("A", 10, 90, 90, 10, false, r);
    XPWidgetID b = Custom("B", 20, 80, 80, 20, false, a);
    XPWidgetID c = Custom("C", 20, 80, 80, 20, false, r);
    XPAddWidgetCallback(a, Subclass);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"R create 0", "A create 0", "A accept parent R", "R accept child A",
                                                "B create 0", "B accept parent A", "A accept child B", "C create 0",
                                                "C accept parent R", "R accept child C", "A+ create 1"}));
    const XPWidgetMessage m = xpMsg_UserStart;

    // Direct: the newest callback first, the older one only when it did not handle the message.
    gCalls.clear();
    EXPECT_EQ(XPSendMessageToWidget(a, m, xpMode_Direct, 0, 0), 0);
    gHandles["A+"] = {m};
    EXPECT_EQ(XPSendMessageToWidget(a, m, xpMode_Direct, 0, 0), 1);
    EXPECT_EQ(XPSendMessageToWidget(a, m, xpMode_DirectAllCallbacks, 0, 0), 1);
    gHandles["A+"].clear();
    gHandles["A"] = {m};
    EXPECT_EQ(XPSendMessageToWidget(a, m, xpMode_Once, 0, 0), 0);  // the newest only, though it refuses
    EXPECT_EQ(gCalls, (std::vector<std::string>{"A+ 10000", "A 10000", "A+ 10000", "A+ 10000", "A 10000", "A+ 10000"}));

    // Up the chain until handled; recursively to the whole subtree, depth first, back to front.
    gCalls.clear();
    gHandles.clear();
    EXPECT_EQ(XPSendMessageToWidget(b, m, xpMode_UpChain, 0, 0), 0);
    gHandles["A"] = {m};
    EXPECT_EQ(XPSendMessageToWidget(b, m, xpMode_UpChain, 0, 0), 1);
    EXPECT_EQ(XPSendMessageToWidget(r, m, xpMode_Recursive, 0, 0), 1);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"B 10000", "A+ 10000", "A 10000", "R 10000",  //
                                                "B 10000", "A+ 10000", "A 10000",              //
                                                "R 10000", "A+ 10000", "A 10000", "B 10000", "C 10000"}));

    // Placing a widget within its parent again brings it to the front of its siblings.
    EXPECT_EQ(XPGetNthChildWidget(r, 0), a);
    XPPlaceWidgetWithin(a, r);
    EXPECT_EQ(XPGetNthChildWidget(r, 0), c);
    EXPECT_EQ(XPGetNthChildWidget(r, 1), a);

    // A message sent from its own handler, for ever, is cut off instead of exhausting the stack.
    gCalls.clear();
    XPAddWidgetCallback(c, SendsToItself);
    gHandles["C"] = {m};
    EXPECT_EQ(XPSendMessageToWidget(c, m, xpMode_Direct, 0, 0), 1);
    EXPECT_EQ(gRecursions, 64);
    EXPECT_EQ(XPSendMessageToWidget(c, m, 7, 0, 0), 0);
    EXPECT_EQ(gCalls, (std::vector<std::string>{
                          "error: XPSendMessageToWidget: messages nested 64 deep; message 10000 to widget 4 "
                          "(plugin 1) is not sent",
                          "C 10000",  // the innermost handler's older callback takes it
                          "error: XPSendMessageToWidget: 7 is not a dispatch mode"}));
}

TEST_F(sim_Widgets, DestroyingTakesChildrenOrOrphansThem) {
    Reset();
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    xpsim::PluginContext context(one);
    XPLMSetErrorCallback(RecordError);
    XPWidgetID r = Custom("R", 0, 100, 100, 0, true, nullptr);
    XPWidgetID a = Custom("A", 10, 90, 90, 10, false, r);
    XPWidgetID b = Custom("B", 20, 80, 80, 20, false, a);
    XPWidgetID c = Custom("C", 20, 80, 80, 20, false, r);
    XPAddWidgetCallback(a, Subclass);
    gHandles["A+"] = {xpMsg_Destroy};  // handling it does not keep the older callback from hearing it
    EXPECT_EQ(xpsim::WidgetCount(), 4);
    EXPECT_EQ(xpsim::WindowCount(), 1);  // the root's window

    gCalls.clear();
    XPDestroyWidget(a, 1);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"B destroy 1", "A+ destroy 0", "A destroy 0", "R lose child A"}));
    EXPECT_EQ(xpsim::WidgetCount(), 2);
    EXPECT_EQ(XPCountChildWidgets(r), 1);
    EXPECT_EQ(XPGetParentWidget(b), nullptr);  // reported: B is gone

    // Without its children: they stay, with no parent.
    XPWidgetID d = Custom("D", 0, 10, 10, 0, false, c);
    gCalls.clear();
    XPDestroyWidget(r, 0);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"R destroy 0"}));
    EXPECT_EQ(XPGetParentWidget(c), nullptr);
    EXPECT_EQ(XPGetParentWidget(d), c);
    EXPECT_EQ(XPFindRootWidget(d), nullptr);
    EXPECT_EQ(xpsim::WindowCount(), 0);

    // A widget that destroys itself (and its child) from its own handler.
    gCalls.clear();
    gDestroyOnMessage = c;
    EXPECT_EQ(XPSendMessageToWidget(c, xpMsg_UserStart, xpMode_UpChain, 0, 0), 0);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"C 10000", "D destroy 1", "C destroy 0"}));
    EXPECT_EQ(xpsim::WidgetCount(), 0);

    // A plugin's widgets go with it.
    gCalls.clear();
    Custom("E", 0, 10, 10, 0, true, nullptr);
    xpsim::RemovePlugin(one);
    EXPECT_EQ(xpsim::WidgetCount(), 0);
    EXPECT_EQ(xpsim::WindowCount(), 0);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"E create 0"}));  // and it is not called
    EXPECT_NE(LogText().find("xpsim: plugin 1 left registered: 1 widget; removed\n"), std::string::npos);
    EXPECT_NE(LogText().find("xpsim: XPGetParentWidget: widget 3 (plugin 1) was destroyed\n"), std::string::npos);
}

TEST_F(sim_Widgets, GeometryExposureAndLocation) {
    Reset();
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    xpsim::PluginContext context(one);
    XPWidgetID r = Custom("R", 0, 200, 200, 0, true, nullptr);
    XPWidgetID a = Custom("A", 50, 150, 250, 50, false, r);  // sticks out on the right
    XPWidgetID b = Custom("B", 60, 140, 100, 100, false, a);
    int left, top, right, bottom;
    XPGetWidgetExposedGeometry(a, &left, &top, &right, &bottom);
    EXPECT_EQ(std::vector<int>({left, top, right, bottom}), std::vector<int>({50, 150, 200, 50}));
    XPGetWidgetGeometry(a, nullptr, nullptr, &right, nullptr);
    EXPECT_EQ(right, 250);

    EXPECT_EQ(XPGetWidgetForLocation(r, 70, 120, 1, 1), b);
    EXPECT_EQ(XPGetWidgetForLocation(r, 70, 120, 0, 1), a);
    EXPECT_EQ(XPGetWidgetForLocation(r, 150, 120, 1, 1), a);
    EXPECT_EQ(XPGetWidgetForLocation(r, 10, 10, 1, 1), r);
    EXPECT_EQ(XPGetWidgetForLocation(r, 220, 100, 1, 1), nullptr);  // in A, but outside R
    EXPECT_EQ(XPGetWidgetForLocation(a, 220, 100, 1, 1), nullptr);  // A's exposed part ends at 200 too
    XPHideWidget(b);
    EXPECT_EQ(XPGetWidgetForLocation(r, 70, 120, 1, 1), a);
    EXPECT_EQ(XPGetWidgetForLocation(r, 70, 120, 1, 0), b);
    EXPECT_EQ(XPIsWidgetVisible(b), 0);
    EXPECT_EQ(XPIsWidgetVisible(a), 1);
    XPShowWidget(b);
    XPHideWidget(r);
    EXPECT_EQ(XPIsWidgetVisible(b), 0);  // a hidden parent hides it
    XPShowWidget(r);
    XPPlaceWidgetWithin(a, nullptr);
    EXPECT_EQ(XPIsWidgetVisible(b), 0);  // outside a rooted tree nobody sees it
    XPPlaceWidgetWithin(a, r);

    // Reshapes go up the chain with the change; a widget's children stay where they are.
    gCalls.clear();
    XPSetWidgetGeometry(a, 40, 160, 250, 50);
    XPSetWidgetGeometry(a, 40, 160, 250, 50);  // no change, no message
    XPGetWidgetGeometry(b, &left, &top, &right, &bottom);
    EXPECT_EQ(std::vector<int>({left, top, right, bottom}), std::vector<int>({60, 140, 100, 100}));
    XPUMoveWidgetBy(r, 5, -5);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"A reshape A -10 10 10 10", "R reshape A -10 10 10 10",
                                                "R reshape R 5 -5 0 0"}));
    int wl, wt, wr, wb;
    XPLMGetWindowGeometry(WindowOf(r), &wl, &wt, &wr, &wb);
    EXPECT_EQ(std::vector<int>({wl, wt, wr, wb}), std::vector<int>({5, 195, 205, -5}));  // the window follows
    XPWidgetID main = Standard("M", xpWidgetClass_MainWindow, 300, 400, 500, 300, nullptr);
    XPWidgetID inner = Standard("I", xpWidgetClass_Button, 320, 380, 380, 360, main);
    XPUMoveWidgetBy(main, 10, 20);  // a main window keeps its children in place relative to itself
    XPGetWidgetGeometry(inner, &wl, &wt, &wr, &wb);
    EXPECT_EQ(std::vector<int>({wl, wt, wr, wb}), std::vector<int>({330, 400, 390, 380}));
    xpsim::Click(315, 415);  // the window moved: this is inside it now, and nothing takes it through
    EXPECT_EQ(LogText().find("xpsim: mouse down at (315, 415) reaches the sim"), std::string::npos);
}

TEST_F(sim_Widgets, DescriptorsAndPropertiesRoundTrip) {
    Reset();
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    xpsim::PluginContext context(one);
    XPWidgetID a = Custom("A", 0, 10, 10, 0, true, nullptr);
    gCalls.clear();
    XPSetWidgetDescriptor(a, "Hello, world");
    char buffer[16];
    std::memset(buffer, 'x', sizeof buffer);
    EXPECT_EQ(XPGetWidgetDescriptor(a, buffer, sizeof buffer), 12);
    EXPECT_STREQ(buffer, "Hello, world");
    // A buffer too short gets what fits, unterminated, as strncpy does.
    std::memset(buffer, 'x', sizeof buffer);
    EXPECT_EQ(XPGetWidgetDescriptor(a, buffer, 5), 12);
    EXPECT_EQ(std::string(buffer, 6), "Hellox");
    EXPECT_EQ(XPGetWidgetDescriptor(a, nullptr, 0), 12);
    EXPECT_EQ(XPGetWidgetDescriptor(a, buffer, 12), 12);  // exactly the length: still unterminated
    EXPECT_EQ(buffer[12], 'x');
    XPSetWidgetDescriptor(a, nullptr);
    EXPECT_EQ(XPGetWidgetDescriptor(a, nullptr, 0), 0);

    int exists = -1;
    EXPECT_EQ(XPGetWidgetProperty(a, xpProperty_UserStart, &exists), 0);
    EXPECT_EQ(exists, 0);
    const intptr_t big = intptr_t(1) << 40;
    XPSetWidgetProperty(a, xpProperty_UserStart, big);
    XPSetWidgetProperty(a, xpProperty_Refcon, -7);
    EXPECT_EQ(XPGetWidgetProperty(a, xpProperty_UserStart, &exists), big);
    EXPECT_EQ(exists, 1);
    EXPECT_EQ(XPGetWidgetProperty(a, xpProperty_Refcon, nullptr), -7);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"A descriptor", "A descriptor", "A property 10000=" + std::to_string(big),
                                                "A property 0=-7"}));

    // The standard classes start with their properties.
    XPWidgetID field = Standard("F", xpWidgetClass_TextField, 0, 20, 100, 0, nullptr);
    EXPECT_EQ(XPGetWidgetProperty(field, xpProperty_MaxCharacters, &exists), 0);
    EXPECT_EQ(exists, 1);
    XPWidgetID bar = Standard("S", xpWidgetClass_ScrollBar, 0, 20, 100, 0, nullptr);
    EXPECT_EQ(XPGetWidgetProperty(bar, xpProperty_ScrollBarMax, nullptr), 100);
    // A class function makes a custom widget behave as that class.
    EXPECT_NE(XPGetWidgetClassFunc(xpWidgetClass_Button), XPGetWidgetClassFunc(xpWidgetClass_TextField));
    XPWidgetID custom = XPCreateCustomWidget(0, 10, 10, 0, 1, "", 0, nullptr, XPGetWidgetClassFunc(xpWidgetClass_Button));
    EXPECT_EQ(XPGetWidgetProperty(custom, xpProperty_ButtonBehavior, &exists), xpButtonBehaviorPushButton);
    EXPECT_EQ(exists, 1);
}

TEST_F(sim_Widgets, KeyboardFocusIsOfferedAndPassedUp) {
    Reset();
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    xpsim::PluginContext context(one);
    XPWidgetID r = Custom("R", 0, 100, 100, 0, true, nullptr);
    XPWidgetID a = Custom("A", 10, 90, 90, 10, false, r);
    XPWidgetID b = Custom("B", 20, 80, 80, 20, false, a);
    gHandles["B"] = {xpMsg_KeyTakeFocus, xpMsg_KeyPress};
    gHandles["R"] = {xpMsg_KeyTakeFocus};
    gCalls.clear();
    EXPECT_EQ(XPSetKeyboardFocus(a), nullptr);  // A refuses
    EXPECT_EQ(XPSetKeyboardFocus(b), b);
    EXPECT_EQ(XPGetWidgetWithFocus(), b);
    EXPECT_EQ(xpsim::KeyboardFocus(), WindowOf(r));
    xpsim::SendKey('q', xplm_DownFlag, XPLM_VK_Q);  // B takes it
    gHandles["B"] = {xpMsg_KeyTakeFocus};
    xpsim::SendKey('w', xplm_DownFlag, XPLM_VK_W);  // nobody takes it: on to the sim
    XPLoseKeyboardFocus(b);                         // A refuses, R takes it
    EXPECT_EQ(XPGetWidgetWithFocus(), r);
    EXPECT_EQ(XPSetKeyboardFocus(b), b);
    EXPECT_EQ(XPSetKeyboardFocus(nullptr), nullptr);
    EXPECT_EQ(xpsim::KeyboardFocus(), nullptr);
    EXPECT_EQ(gCalls, (std::vector<std::string>{
                          "A take focus 0", "B take focus 0",
                          "B key", "B key", "A key", "R key",
                          "A take focus 1", "R take focus 1", "B lose focus 1",
                          "B take focus 0", "R lose focus 1",
                          "B lose focus 0"}));
    EXPECT_NE(LogText().find("xpsim: the sim gets key 'w' (XPLM_VK_W, down)\n"), std::string::npos);

    // A plugin giving the keyboard to its own window takes it from the widget.
    EXPECT_EQ(XPSetKeyboardFocus(b), b);
    gCalls.clear();
    XPLMTakeKeyboardFocus(nullptr);
    EXPECT_EQ(XPGetWidgetWithFocus(), nullptr);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"B lose focus 0"}));
}

TEST_F(sim_Widgets, AClickedPushButtonTellsItsWindowInItsPlugin) {
    Reset();
    simtest::AddEnabledPlugin("/p/zero.xpl", simtest::StartAsPlugin);
    const int two = simtest::AddEnabledPlugin("/p/two.xpl", simtest::StartAsPlugin);
    XPWidgetID window, button, caption;
    {
        xpsim::PluginContext context(two);
        window = Standard("W", xpWidgetClass_MainWindow, 100, 300, 300, 100, nullptr);
        button = Standard("P", xpWidgetClass_Button, 120, 200, 200, 180, window);
        caption = Standard("C", xpWidgetClass_Caption, 120, 150, 200, 130, window);
        XPAddWidgetCallback(window, Listener);
        XPAddWidgetCallback(button, Callback);
        XPSetWidgetProperty(window, xpProperty_MainWindowHasCloseBoxes, 1);
    }
    gHandles["P"] = {xpMsg_Paint};  // the button paints itself: its draw is not asked for
    gCalls.clear();
    RunFrames(1);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"P paint in 2"}));

    gCalls.clear();
    gHandles.clear();
    xpsim::Click(150, 190);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"P down 150,190 in 2", "P property 4=1 in 2", "P up 150,190 in 2",
                                                "P property 4=0 in 2", "P pushed P in 2", "W pushed P in 2"}));
    // Released away from the button: no push. A click on the caption goes to the window.
    gCalls.clear();
    xpsim::Drag(150, 190, 250, 250);
    xpsim::Click(150, 140);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"P down 150,190 in 2", "P property 4=1 in 2", "P drag 250,250 in 2",
                                                "P property 4=0 in 2", "P up 250,250 in 2", "W down 150,140 in 2",
                                                "W up 150,140 in 2"}));
    // The close box, in the top right corner, tells the window.
    gCalls.clear();
    xpsim::Click(290, 290);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"W down 290,290 in 2", "W up 290,290 in 2", "W close W in 2"}));
    // A window dragged by its title bar takes its children along.
    xpsim::Drag(200, 295, 250, 245);
    int left, top;
    XPGetWidgetGeometry(window, &left, &top, nullptr, nullptr);
    EXPECT_EQ(left, 150);
    EXPECT_EQ(top, 250);
    XPGetWidgetGeometry(caption, &left, &top, nullptr, nullptr);
    EXPECT_EQ(left, 170);
    EXPECT_EQ(top, 100);
    // A disabled button does not take clicks.
    XPSetWidgetProperty(button, xpProperty_Enabled, 0);
    gCalls.clear();
    xpsim::Click(200, 140);
    EXPECT_EQ(gCalls.front(), "P down 200,140 in 2");
    EXPECT_EQ(gCalls[1], "W down 200,140 in 2");
}

TEST_F(sim_Widgets, CheckBoxesToggleAndRadioButtonsSet) {
    Reset();
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    xpsim::PluginContext context(one);
    XPWidgetID window = Standard("W", xpWidgetClass_MainWindow, 0, 100, 100, 0, nullptr);
    XPWidgetID check = Standard("K", xpWidgetClass_Button, 10, 50, 20, 40, window);
    XPWidgetID radio = Standard("O", xpWidgetClass_Button, 30, 50, 40, 40, window);
    XPSetWidgetProperty(check, xpProperty_ButtonType, xpRadioButton);
    XPSetWidgetProperty(check, xpProperty_ButtonBehavior, xpButtonBehaviorCheckBox);
    XPSetWidgetProperty(radio, xpProperty_ButtonBehavior, xpButtonBehaviorRadioButton);
    XPAddWidgetCallback(window, Listener);
    gCalls.clear();
    xpsim::Click(15, 45);
    EXPECT_EQ(XPGetWidgetProperty(check, xpProperty_ButtonState, nullptr), 1);
    xpsim::Click(15, 45);
    EXPECT_EQ(XPGetWidgetProperty(check, xpProperty_ButtonState, nullptr), 0);
    xpsim::Click(35, 45);
    xpsim::Click(35, 45);  // already set: no change
    EXPECT_EQ(XPGetWidgetProperty(radio, xpProperty_ButtonState, nullptr), 1);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"W state K=1", "W state K=0", "W state O=1"}));
}

TEST_F(sim_Widgets, TextFieldsEditTheirDescriptorFromKeys) {
    Reset();
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    XPWidgetID window, field, other;
    {
        xpsim::PluginContext context(one);
        window = Standard("W", xpWidgetClass_MainWindow, 0, 200, 200, 0, nullptr);
        field = Standard("F", xpWidgetClass_TextField, 10, 100, 150, 80, window);
        other = Standard("G", xpWidgetClass_TextField, 10, 60, 150, 40, window);
        XPSetWidgetDescriptor(field, "ab");
        XPAddWidgetCallback(window, Listener);
    }
    xpsim::Click(20, 90);  // focus, the caret at the end
    EXPECT_EQ(XPGetWidgetWithFocus(), field);
    Type("cd");
    xpsim::PressKey(xpsim::KeyForVirtualKey(XPLM_VK_LEFT, 0));
    xpsim::PressKey(xpsim::KeyForVirtualKey(XPLM_VK_BACK, 0));
    Type("X");
    xpsim::PressKey(xpsim::KeyForVirtualKey(XPLM_VK_HOME, 0));
    xpsim::PressKey(xpsim::KeyForVirtualKey(XPLM_VK_DELETE, 0));
    EXPECT_EQ(Descriptor(field), "bXd");
    EXPECT_EQ(XPGetWidgetProperty(field, xpProperty_EditFieldSelStart, nullptr), 0);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"W text F", "W text F", "W text F", "W text F", "W text F"}));

    // Return is not the field's: it goes up the chain and on to the sim.
    gCalls.clear();
    xpsim::PressKey(xpsim::KeyForVirtualKey(XPLM_VK_RETURN, 0));
    EXPECT_EQ(gCalls, (std::vector<std::string>{"W key", "W key"}));
    EXPECT_NE(LogText().find("xpsim: the sim gets key char 13 (XPLM_VK_RETURN, down)"), std::string::npos);

    // At its limit the field eats keys without changing; a selection is replaced.
    {
        xpsim::PluginContext context(one);
        XPSetWidgetProperty(field, xpProperty_MaxCharacters, 3);
    }
    gCalls.clear();
    Type("z");
    {
        xpsim::PluginContext context(one);
        XPSetWidgetProperty(field, xpProperty_EditFieldSelStart, 1);
        XPSetWidgetProperty(field, xpProperty_EditFieldSelEnd, 3);
    }
    Type("!");
    EXPECT_EQ(Descriptor(field), "b!");
    EXPECT_EQ(gCalls, (std::vector<std::string>{"W text F"}));

    // Clicking the other field moves the focus there.
    xpsim::Click(20, 50);
    Type("hi");
    EXPECT_EQ(Descriptor(other), "Ghi");
    EXPECT_EQ(Descriptor(field), "b!");
}

TEST_F(sim_Widgets, ScrollBarsStayWithinTheirRange) {
    Reset();
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    XPWidgetID window, bar;
    {
        xpsim::PluginContext context(one);
        window = Standard("W", xpWidgetClass_MainWindow, 0, 200, 300, 0, nullptr);
        // Horizontal, 200 long and 20 thick: buttons of 20, a thumb of 20, 140 pixels of travel.
        bar = Standard("S", xpWidgetClass_ScrollBar, 50, 60, 250, 40, window);
        XPSetWidgetProperty(bar, xpProperty_ScrollBarMin, 0);
        XPSetWidgetProperty(bar, xpProperty_ScrollBarMax, 14);
        XPSetWidgetProperty(bar, xpProperty_ScrollBarPageAmount, 5);
        XPSetWidgetProperty(bar, xpProperty_ScrollBarSliderPosition, 20);
        EXPECT_EQ(XPGetWidgetProperty(bar, xpProperty_ScrollBarSliderPosition, nullptr), 14);
        XPSetWidgetProperty(bar, xpProperty_ScrollBarSliderPosition, -3);
        EXPECT_EQ(XPGetWidgetProperty(bar, xpProperty_ScrollBarSliderPosition, nullptr), 0);
        XPAddWidgetCallback(window, Listener);
    }
    auto position = [bar] { return XPGetWidgetProperty(bar, xpProperty_ScrollBarSliderPosition, nullptr); };
    xpsim::Click(55, 50);  // the down button, at the minimum already: nothing changes
    EXPECT_EQ(position(), 0);
    xpsim::Click(245, 50);  // the up button
    EXPECT_EQ(position(), 1);
    xpsim::Click(200, 50);  // the track past the thumb: a page up
    EXPECT_EQ(position(), 6);
    xpsim::Click(200, 50);
    xpsim::Click(200, 50);  // a page past the maximum stops there
    EXPECT_EQ(position(), 14);
    xpsim::Wheel(100, 50, -3, 0);
    EXPECT_EQ(position(), 11);
    // Dragging the thumb: it starts at 20 + 140 * 11 / 14 = 130 pixels in (x = 180).
    xpsim::Drag(185, 50, 85, 50);
    EXPECT_EQ(position(), 1);
    xpsim::Drag(85, 50, 0, 50);  // the thumb at 80..100, dragged far past the left end
    EXPECT_EQ(position(), 0);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"W slider S", "W slider S", "W slider S", "W slider S", "W slider S",
                                                "W slider S", "W slider S"}));

    int vertical, down, downPage, thumb, upPage, up;
    XPGetTrackMetrics(0, 0, 20, 200, 0, 10, 5, xpTrack_ScrollBar, &vertical, &down, &downPage, &thumb, &upPage, &up);
    EXPECT_EQ(std::vector<int>({vertical, down, downPage, thumb, upPage, up}), std::vector<int>({1, 20, 70, 20, 70, 20}));
    XPGetTrackMetrics(0, 0, 100, 10, 0, 10, 20, xpTrack_Progress, &vertical, &down, &downPage, &thumb, &upPage, &up);
    EXPECT_EQ(std::vector<int>({vertical, down, downPage, thumb, upPage, up}), std::vector<int>({0, 0, 100, 0, 0, 0}));
}

TEST_F(sim_Widgets, CreatingFromATableParentsByIndex) {
    Reset();
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    xpsim::PluginContext context(one);
    XPLMSetErrorCallback(RecordError);
    XPWidgetID outer = Custom("O", 0, 500, 500, 0, true, nullptr);
    const XPWidgetCreate_t defs[] = {
        {10, 400, 400, 10, 1, "Window", 1, NO_PARENT, xpWidgetClass_MainWindow},
        {20, 300, 100, 280, 1, "OK", 0, 0, xpWidgetClass_Button},
        {20, 200, 100, 180, 1, "Name", 0, PARAM_PARENT, xpWidgetClass_TextField},
        {20, 100, 100, 80, 1, "Label", 0, 1, xpWidgetClass_Caption},
        {20, 100, 100, 80, 1, "Later", 0, 5, xpWidgetClass_Caption},
    };
    XPWidgetID made[5] = {};
    XPUCreateWidgets(defs, 5, outer, made);
    for (XPWidgetID id : made) ASSERT_NE(id, nullptr);
    EXPECT_EQ(XPGetParentWidget(made[0]), nullptr);
    EXPECT_EQ(XPFindRootWidget(made[0]), made[0]);
    EXPECT_EQ(XPGetParentWidget(made[1]), made[0]);
    EXPECT_EQ(XPGetParentWidget(made[2]), outer);
    EXPECT_EQ(XPGetParentWidget(made[3]), made[1]);
    EXPECT_EQ(XPGetParentWidget(made[4]), nullptr);
    EXPECT_EQ(Descriptor(made[2]), "Name");
    EXPECT_EQ(XPCountChildWidgets(made[0]), 1);
    EXPECT_EQ(gCalls.back(), "error: XPUCreateWidgets: widget 4 names container index 5, not an earlier widget");
}

TEST_F(sim_Widgets, MisuseIsReportedAndAnsweredWithFailure) {
    Reset();
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    xpsim::PluginContext context(one);
    XPLMSetErrorCallback(RecordError);
    XPWidgetID r = Custom("R", 0, 100, 100, 0, true, nullptr);
    XPWidgetID a = Custom("A", 0, 100, 100, 0, false, r);
    gCalls.clear();
    XPWidgetID bogus = reinterpret_cast<XPWidgetID>(0x40);
    EXPECT_EQ(XPCreateWidget(0, 1, 1, 0, 1, "", 0, nullptr, 99), nullptr);
    EXPECT_EQ(XPCreateWidget(0, 1, 1, 0, 1, "", 1, r, xpWidgetClass_Button), nullptr);
    EXPECT_EQ(XPCreateCustomWidget(0, 1, 1, 0, 1, "", 0, nullptr, nullptr), nullptr);
    EXPECT_EQ(XPCreateWidget(0, 1, 1, 0, 1, "", 0, bogus, xpWidgetClass_Button), nullptr);
    EXPECT_EQ(XPSendMessageToWidget(nullptr, xpMsg_UserStart, xpMode_Direct, 0, 0), 0);
    XPPlaceWidgetWithin(r, a);
    XPPlaceWidgetWithin(a, a);
    EXPECT_EQ(XPGetNthChildWidget(r, 1), nullptr);
    EXPECT_EQ(XPGetWidgetClassFunc(0), nullptr);
    char buffer[4] = "abc";
    EXPECT_EQ(XPGetWidgetDescriptor(bogus, buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "");
    int exists = 1;
    EXPECT_EQ(XPGetWidgetProperty(bogus, xpProperty_Refcon, &exists), 0);
    EXPECT_EQ(exists, 0);
    int left = 5;
    XPGetWidgetGeometry(bogus, &left, nullptr, nullptr, nullptr);
    EXPECT_EQ(left, 0);
    XPDestroyWidget(a, 0);
    XPDestroyWidget(a, 0);
    EXPECT_EQ(XPSetKeyboardFocus(a), nullptr);
    EXPECT_EQ(gCalls, (std::vector<std::string>{
                          "error: XPCreateWidget: 99 is not a widget class",
                          "error: XPCreateWidget: a root widget cannot have a container",
                          "error: XPCreateCustomWidget: no widget callback",
                          "error: XPCreateWidget: 0x40 is not a widget",
                          "error: XPSendMessageToWidget: (nil) is not a widget",
                          "error: XPPlaceWidgetWithin: widget 1 (plugin 1) is a root widget",
                          "error: XPPlaceWidgetWithin: widget 2 (plugin 1) is the widget itself",
                          "error: XPGetNthChildWidget: index 1 is not below 1",
                          "error: XPGetWidgetClassFunc: 0 is not a widget class",
                          "error: XPGetWidgetDescriptor: 0x40 is not a widget",
                          "error: XPGetWidgetProperty: 0x40 is not a widget",
                          "error: XPGetWidgetGeometry: 0x40 is not a widget",
                          "A destroy 0", "R lose child A",
                          "error: XPDestroyWidget: widget 2 (plugin 1) was destroyed",
                          "error: XPSetKeyboardFocus: widget 2 (plugin 1) was destroyed"}));
    EXPECT_NE(LogText().find("xpsim: XPPlaceWidgetWithin: widget 1 (plugin 1) is a root widget\n"), std::string::npos);
    // Drawing and dimension functions are simulated, not reported.
    int width = 0, height = 0, lit = 0;
    XPDrawWindow(0, 0, 10, 10, xpWindow_MainWindow);
    XPGetElementDefaultDimensions(xpElement_PushButton, &width, &height, &lit);
    EXPECT_EQ(std::vector<int>({width, height, lit}), std::vector<int>({80, 20, 1}));
    EXPECT_EQ(LogText().find("not yet simulated"), std::string::npos);
}
