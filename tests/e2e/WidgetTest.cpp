// Widgets end to end: scripts build dialogs from plain, table-made and custom widgets, attach their
// widget functions, and react to the events file's clicks, typing and close box; the records of
// WidgetCallbackList follow owners and destruction, and misuse is reported or raised, never fatal.
// The test build's AddressSanitizer checks that no widget message reads a freed record.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SimHarness.h"

namespace {

const std::vector<std::string> kWidgetModules = {"XPWidgetDefs", "XPWidgets", "XPStandardWidgets", "XPUIGraphics",
                                                 "XPWidgetUtils"};

TEST(Widget, DialogReactsToClicksTypingAndTheCloseBox) {
    SimFolder sim;
    sim.writeFile("Resources/plugins/Corvelle/Corvelle.ini", "[DEBUG]\nDebugCallbacks=1\nCheckCallbacks=1\n");
    sim.writeScript("CV_Dialog.py",
                    TestScript("Dialog", kWidgetModules,
        "self.mainCB, self.customCB = self.Main, self.Custom\n"
        "self.main = XPCreateWidget(100, 400, 400, 100, 1, 'Main', 1, 0, xpWidgetClass_MainWindow)\n"
        "XPSetWidgetProperty(self.main, xpProperty_MainWindowHasCloseBoxes, 1)\n"
        "print('add', XPAddWidgetCallback(self, self.main, self.mainCB))\n"
        "self.button = XPCreateWidget(120, 380, 200, 360, 1, 'Push', 0, self.main, xpWidgetClass_Button)\n"
        "made = []\n"
        "print('table', XPUCreateWidgets([[120, 350, 140, 330, 1, 'Check', 0, PARAM_PARENT, xpWidgetClass_Button]], 1, self.main, made), len(made))\n"
        "self.check = made[0]\n"
        "XPSetWidgetProperty(self.check, xpProperty_ButtonBehavior, xpButtonBehaviorCheckBox)\n"
        "self.field = XPCreateWidget(120, 320, 300, 300, 1, 'ab', 0, self.main, xpWidgetClass_TextField)\n"
        "self.custom = XPCreateCustomWidget(self, 300, 380, 380, 340, 1, 'Custom', 0, self.main, self.customCB)\n",
                               "XPSetWidgetGeometry(self.custom, 310, 380, 380, 340)\n",
                               "",
        "def Main(self, message, widget, param1, param2):\n"
        "    if message == xpMsg_PushButtonPressed:\n"
        "        print('pushed', param1 == self.button)\n"
        "        return 1\n"
        "    if message == xpMsg_ButtonStateChanged:\n"
        "        print('check', param1 == self.check, param2)\n"
        "        return 1\n"
        "    if message == xpMsg_TextFieldChanged:\n"
        "        text = []\n"
        "        XPGetWidgetDescriptor(self.field, text, 50)\n"
        "        print('text', text)\n"
        "        return 1\n"
        "    if message == xpMsg_KeyPress:\n"
        "        print('key', CV_GetKeyState(param1))\n"
        "        return 1\n"
        "    if message == xpMessage_CloseButtonPushed:\n"
        "        print('close', param1 == self.main)\n"
        "        XPDestroyWidget(self, self.main, 1)\n"
        "        return 1\n"
        "    if message == xpMsg_Destroy:\n"
        "        print('main destroyed', param1)\n"
        "    return 0\n"
        "def Custom(self, message, widget, param1, param2):\n"
        "    if message == xpMsg_Create:\n"
        "        print('custom create', param1, param2)\n"
        "    elif message == xpMsg_MouseDown:\n"
        "        print('custom down', CV_GetMouseState(param1))\n"
        "        return 1\n"
        "    elif message == xpMsg_MouseUp:\n"
        "        print('custom up', CV_GetMouseState(param1))\n"
        "        return 1\n"
        "    elif message == xpMsg_Reshape:\n"
        "        print('custom reshape', widget == self.custom, param1 == self.custom, CV_GetWidgetGeometryChange(param2))\n"
        "        return 1\n"
        "    elif message == xpMsg_Destroy:\n"
        "        print('custom destroyed', param1)\n"
        "    return 0\n"));
    const std::string events = sim.writeEvents("0.2 click 150 370   # the push button\n"
                                               "0.3 click 130 340   # the check box\n"
                                               "0.4 click 200 310   # the text field takes the keyboard\n"
                                               "0.5 type cd\n"
                                               "0.6 key XPLM_VK_RETURN   # left to the main window\n"
                                               "0.7 click 340 360   # the custom widget\n"
                                               "0.8 click 110 390   # the close box\n");
    SimRun run = sim.run({"--seconds", "1", "--events", events});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    // The custom widget sees its create message (param1 1) and the reshape of the first frame; the
    // decoders give what the simulator put into the message parameters.
    EXPECT_EQ(sim.output(),
              "add 1\n"
              "table (1,) 1\n"
              "custom create 1 0\n"
              "custom reshape True True (10, 0, -10, 0)\n"
              "pushed True\n"
              "check True 1\n"
              "text ['abc']\n"
              "text ['abcd']\n"
              "key (13, 8, 13)\n"
              "key (13, 16, 13)\n"
              "custom down (340, 360, 0, 0)\n"
              "custom up (340, 360, 0, 0)\n"
              "close True\n"
              "custom destroyed 1\n"
              "main destroyed 0\n");
    const std::string log = sim.log();
    const std::string script = Between(log, "XPAddWidgetCallback\npScriptId = ", ",");
    const std::string main = Between(log, "XPCreateWidget\noutWidgetID = ", ",");
    ASSERT_FALSE(script.empty()) << log;
    ASSERT_FALSE(main.empty()) << log;
    // Every widget but the table-made check box is recorded; the main window's record takes the
    // function; destroying it removes its children's records too.
    EXPECT_TRUE(InOrder(log, {"XPCreateWidget\noutWidgetID = " + main + ", inIsRoot = 1, inContainer = 0\n"
                              "WidgetCallbackList size = 1\nXPCreateWidget\n",
                              "XPAddWidgetCallback\npScriptId = " + script + ", inWidgetID = " + main +
                                  "\nWidgetCallbackList size = 1\nXPAddWidgetCallback\n",
                              ", inIsRoot = 0, inContainer = " + main + "\nWidgetCallbackList size = 2\n",
                              ", inIsRoot = 0, inContainer = " + main + "\nWidgetCallbackList size = 3\n",
                              "XPCreateCustomWidget\npScriptId = " + script + ", outWidgetID = ",
                              ", inIsRoot = 0, inContainer = " + main +
                                  "\nWidgetCallbackList size = 4\nXPCreateCustomWidget\n",
                              "XPDestroyWidget\npScriptId = " + script + ", Script Name = Dialog, inWidgetID = " +
                                  main + "\nWidgetCallbackList size = 0\nXPDestroyWidget\n",
                              "*** Checking Integrity of Callbacks Started. ***\n"
                              "*** Checking Integrity of Callbacks Finished. ***\n"}))
        << log;
    EXPECT_EQ(CountOf(log, "Error"), 0u) << log;
    EXPECT_EQ(CountOf(sim.simLog(), "reaches the sim"), 0u) << sim.simLog();
}

TEST(Widget, RecordsFollowOwnersAndDestruction) {
    SimFolder sim;
    sim.writeFile("Resources/plugins/Corvelle/Corvelle.ini", "[DEBUG]\nDebugCallbacks=1\nCheckCallbacks=1\n");
    sim.writeScript("CV_A.py", TestScript("WidgetsA", kWidgetModules,
        "import builtins\n"
        "self.aCB = self.A\n"
        "self.root = XPCreateCustomWidget(self, 0, 500, 200, 300, 1, 'A root', 1, 0, self.aCB)\n"
        "builtins.sharedRoot = self.root\n",
                                          "", "",
        "def A(self, message, widget, param1, param2):\n"
        "    if message >= 10000:\n"
        "        print('A got', message)\n"
        "        return 1\n"
        "    return 0\n"));
    sim.writeScript("CV_B.py", TestScript("WidgetsB", kWidgetModules, "",
        "import builtins\n"
        "self.bCB, self.oneCB, self.twoCB = self.B, self.One, self.Two\n"
        "root = builtins.sharedRoot\n"
        "print('A before', XPSendMessageToWidget(root, 10001, xpMode_Direct, 0, 0))\n"
        "print('take over', XPAddWidgetCallback(self, root, self.bCB))\n"
        "print('B after', XPSendMessageToWidget(root, 10002, xpMode_Direct, 0, 0))\n"
        "made = []\n"
        "XPUCreateWidgets([[0, 100, 50, 50, 1, 'Btn', 1, NO_PARENT, xpWidgetClass_Button]], 1, 0, made)\n"
        "print('no record', XPAddWidgetCallback(self, made[0], self.oneCB))\n"
        "print('no entry handles', XPSendMessageToWidget(made[0], 10003, xpMode_Direct, 0, 0))\n"
        "w = XPCreateWidget(300, 500, 400, 400, 1, 'W', 1, 0, xpWidgetClass_SubWindow)\n"
        "print('plain', XPSendMessageToWidget(w, 10004, xpMode_Direct, 0, 0))\n"
        "XPAddWidgetCallback(self, w, self.oneCB)\n"
        "XPAddWidgetCallback(self, w, self.twoCB)\n"
        "print('replaced', XPSendMessageToWidget(w, 10005, xpMode_Direct, 0, 0))\n"
        "child = XPCreateWidget(310, 490, 390, 410, 1, 'child', 0, w, xpWidgetClass_Caption)\n"
        "grand = XPCreateCustomWidget(self, 320, 480, 380, 420, 1, 'grand', 0, child, self.oneCB)\n"
        "XPDestroyWidget(self, w, 1)\n"
        "print('grand gone', XPSendMessageToWidget(grand, 10006, xpMode_Direct, 0, 0))\n"
        "r2 = XPCreateWidget(0, 700, 100, 600, 1, 'R2', 1, 0, xpWidgetClass_MainWindow)\n"
        "c2 = XPCreateWidget(10, 690, 90, 610, 1, 'C2', 0, r2, xpWidgetClass_Button)\n"
        "XPDestroyWidget(self, c2, 0)\n"
        "XPDestroyWidget(self, r2, 0)\n"
        "r3 = XPCreateCustomWidget(self, 0, 900, 100, 800, 1, 'R3', 1, 0, self.oneCB)\n"
        "c3 = XPCreateCustomWidget(self, 10, 890, 90, 810, 1, 'C3', 0, r3, self.twoCB)\n"
        "XPDestroyWidget(self, r3, 0)\n"
        "print('orphan', XPGetParentWidget(c3), XPSendMessageToWidget(c3, 10007, xpMode_Direct, 0, 0))\n"
        "XPDestroyWidget(self, c3, 0)\n"
        "XPDestroyWidget(self, root, 1)\n",
                                          "",
        "def B(self, message, widget, param1, param2):\n"
        "    if message >= 10000:\n"
        "        print('B got', message)\n"
        "        return 1\n"
        "    return 0\n"
        "def One(self, message, widget, param1, param2):\n"
        "    if message >= 10000 or message == xpMsg_Create:\n"
        "        print('one got', message, param1)\n"
        "    return 0\n"
        "def Two(self, message, widget, param1, param2):\n"
        "    if message >= 10000 or message == xpMsg_Create:\n"
        "        print('two got', message, param1)\n"
        "        return 1\n"
        "    return 0\n"));
    SimRun run = sim.run({"--frames", "5"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(),
              "A got 10001\nA before 1\n"
              // Attaching moves the widget's record to the other script.
              "take over 1\nB got 10002\nB after 1\n"
              // A table-made widget has no record: the trampoline answers 1 for it.
              "no record 1\nno entry handles 1\n"
              // A plain widget without a function: the standard class does not handle the message.
              "plain 0\n"
              "one got 1 1\ntwo got 1 1\ntwo got 10005 0\nreplaced 1\n"
              "one got 1 1\ngrand gone 0\n"
              "one got 1 1\ntwo got 1 1\n"
              // A direct child's record goes with its container even when the child stays.
              "orphan 0 1\n");
    const std::string log = sim.log();
    const std::string destroyed = "XPDestroyWidget\npScriptId = ";
    EXPECT_TRUE(InOrder(log, {"Module - XPWidgets, Function - XPAddWidgetCallback, Error = Script 'WidgetsB.py' "
                              "XPAddWidgetCallback Error.\n",
                              // Root with a function, child, grandchild: all three records go.
                              "WidgetCallbackList size = 4\nXPCreateCustomWidget\n", destroyed,
                              "\nWidgetCallbackList size = 1\nXPDestroyWidget\n",
                              // A child never given a function: silent, no size line.
                              destroyed, "\nXPDestroyWidget\n"
                              "Module - XPWidgets, Function - XPDestroyWidget, Error = Script 'WidgetsB.py' was "
                              "unregistering a callback that does not exist.\n",
                              destroyed, "\nWidgetCallbackList size = 1\nXPDestroyWidget\n",
                              "WidgetCallbackList size = 3\nXPCreateCustomWidget\n", destroyed,
                              "\nWidgetCallbackList size = 1\nXPDestroyWidget\n"
                              "Module - XPWidgets, Function - XPDestroyWidget, Error = Script 'WidgetsB.py' was "
                              "unregistering a callback that does not exist.\n",
                              destroyed, "\nWidgetCallbackList size = 0\nXPDestroyWidget\n",
                              "*** Checking Integrity of Callbacks Started. ***\n"
                              "*** Checking Integrity of Callbacks Finished. ***\n"}))
        << log;
    EXPECT_EQ(CountOf(log, "Error = "), 3u) << log;
}

TEST(Widget, MisuseIsReportedOrRaisedAndNeverFatal) {
    SimFolder sim;
    sim.writeScript("CV_Misuse.py", TestScript("Misuse", kWidgetModules, "",
        "def attempt(label, call):\n"
        "    try:\n"
        "        print(label, call())\n"
        "    except Exception as error:\n"
        "        print(label, type(error).__name__, error)\n"
        "self.boomCB, self.selfDestroyCB, self.exitCB = self.Boom, self.SelfDestroy, self.Exit\n"
        "w = XPCreateWidget(0, 500, 200, 300, 1, 'W', 1, 0, xpWidgetClass_MainWindow)\n"
        "attempt('str container', lambda: XPCreateWidget(0, 1, 1, 0, 1, 'x', 0, 'nope', xpWidgetClass_Button))\n"
        "attempt('float widget', lambda: XPShowWidget(1.5))\n"
        "attempt('bad class', lambda: XPCreateWidget(0, 1, 1, 0, 1, 'x', 1, 0, 99))\n"
        "attempt('bad id', lambda: XPGetWidgetDescriptor(12345, [], 10))\n"
        "attempt('bad destroy', lambda: XPDestroyWidget(self, 12345, 1))\n"
        "attempt('str destroy', lambda: XPDestroyWidget(self, 'x', 1))\n"
        "attempt('str property', lambda: XPSetWidgetProperty(w, xpProperty_Refcon, 'x'))\n"
        "attempt('tuple out', lambda: XPGetWidgetGeometry(w, (), None, None, None))\n"
        "attempt('tuple defs', lambda: XPUCreateWidgets([(0, 1, 1, 0, 1, 'x', 1, NO_PARENT, xpWidgetClass_Button)], 1, 0, []))\n"
        "attempt('count', lambda: XPUCreateWidgets([], 2, 0, []))\n"
        "attempt('index', lambda: XPUCreateWidgets([[0, 1, 1, 0, 1, 'x', 0, 5, xpWidgetClass_Button]], 1, 0, []))\n"
        "attempt('mouse null', lambda: CV_GetMouseState(0))\n"
        "attempt('key wild', lambda: CV_GetKeyState(1))\n"
        "attempt('geometry wild', lambda: CV_GetWidgetGeometryChange(-8))\n"
        "attempt('stale add', lambda: XPAddWidgetCallback(self, 12345, self.boomCB))\n"
        "b = XPCreateCustomWidget(self, 10, 400, 100, 350, 1, 'boom', 0, w, self.boomCB)\n"
        "attempt('boom', lambda: XPSendMessageToWidget(b, 10001, xpMode_Direct, 0, 0))\n"
        "e = XPCreateCustomWidget(self, 10, 340, 100, 320, 1, 'exit', 0, w, self.exitCB)\n"
        "attempt('exit', lambda: XPSendMessageToWidget(e, 10001, xpMode_Direct, 0, 0))\n"
        "self.sd = XPCreateCustomWidget(self, 110, 400, 190, 350, 1, 'self', 0, w, self.selfDestroyCB)\n"
        "self.w = w\n",
                                               "",
        "def Boom(self, message, widget, param1, param2):\n"
        "    if message == 10001:\n"
        "        raise RuntimeError('boom')\n"
        "    return 0\n"
        "def Exit(self, message, widget, param1, param2):\n"
        "    if message == 10001:\n"
        "        import sys\n"
        "        sys.exit(3)\n"
        "    return 0\n"
        "def SelfDestroy(self, message, widget, param1, param2):\n"
        "    if message == xpMsg_MouseDown:\n"
        "        XPDestroyWidget(self, self.w, 1)\n"
        "        print('destroyed from inside')\n"
        "        return 1\n"
        "    return 0\n"));
    const std::string events = sim.writeEvents("0.3 click 150 380   # the widget that destroys its own tree\n"
                                               "0.4 click 150 380   # nothing there any more\n");
    SimRun run = sim.run({"--seconds", "0.6", "--events", events});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(),
              "str container TypeError an integer is required\n"
              "float widget TypeError an integer is required\n"
              "bad class 0\n"
              "bad id 0\n"
              "bad destroy 1\n"
              "str destroy TypeError an integer is required\n"
              "str property TypeError an integer is required\n"
              "tuple out TypeError expected sequence\n"
              "tuple defs TypeError expected a list of 9 items for widget definition 0\n"
              "count ValueError 2 widget definitions asked for, 0 given\n"
              "index ValueError widget definition 0: container index 5 is not in the table\n"
              "mouse null 0\n"
              "key wild 0\n"
              "geometry wild 0\n"
              "stale add 1\n"
              // A failing widget function counts as handled and prints nothing; sys.exit is contained.
              "boom 1\n"
              "exit 1\n"
              "destroyed from inside\n");
    const std::string log = sim.log();
    EXPECT_TRUE(InOrder(log, {"Module - XPWidgets, Function - XPDestroyWidget, Error = Script 'Misuse.py' was "
                              "unregistering a callback that does not exist.\n",
                              "Module - XPWidgetDefs, Function - CV_GetMouseState, Error = Parameter Error\n",
                              "Module - XPWidgetDefs, Function - CV_GetKeyState, Error = Parameter Error\n",
                              "Module - XPWidgetDefs, Function - CV_GetWidgetGeometryChange, Error = Parameter Error\n",
                              "Module - XPWidgets, Function - XPAddWidgetCallback, Error = Script 'Misuse.py' "
                              "XPAddWidgetCallback Error.\n",
                              // The widget function destroying its own tree during a click.
                              "Module - XPWidgets, Function - XPDestroyWidget, Error = Script 'Misuse.py' was "
                              "unregistering a callback that does not exist.\n"}))
        << log;
    EXPECT_EQ(CountOf(log, "boom"), 0u) << log;
    const std::string simLog = sim.simLog();
    EXPECT_NE(simLog.find("xpsim: XPGetWidgetDescriptor: 0x3039 is not a widget"), std::string::npos) << simLog;
    // The second click finds the tree gone.
    EXPECT_NE(simLog.find("mouse down at (150, 380) reaches the sim"), std::string::npos) << simLog;
}

// Messages whose parameters point to structures (mouse and key states, geometry changes, the cursor)
// reach the simulator only with parameters that can be read; what a widget function was given
// passes on as it is.
TEST(Widget, MessagesThatPointToStructuresNeedReadableParameters) {
    SimFolder sim;
    sim.writeScript(
        "CV_Pointers.py",
        TestScript("Pointers", kWidgetModules, "",
                   "self.gripCB = self.Grip\n"
                   "self.w = XPCreateWidget(100, 500, 400, 300, 1, 'W', 1, 0, xpWidgetClass_MainWindow)\n"
                   "b = XPCreateWidget(120, 350, 200, 330, 1, 'B', 0, self.w, xpWidgetClass_Button)\n"
                   "XPCreateCustomWidget(self, 110, 470, 390, 450, 1, 'grip', 0, self.w, self.gripCB)\n"
                   "print('refused', XPSendMessageToWidget(b, xpMsg_MouseDown, xpMode_Direct, 2, 0),\n"
                   "      XPSendMessageToWidget(b, xpMsg_KeyPress, xpMode_Direct, 12345, 0),\n"
                   "      XPSendMessageToWidget(b, xpMsg_CursorAdjust, xpMode_UpChain, 0, 0),\n"
                   "      XPUDragWidget(xpMsg_MouseDown, self.w, 16, 0, 100), XPUFixedLayout(xpMsg_Reshape, self.w, "
                   "self.w, 4096),\n"
                   "      XPUSelectIfNeeded(xpMsg_MouseUp, self.w, -1, 0, 1), XPUDefocusKeyboard(xpMsg_MouseWheel, "
                   "self.w, 8, 0, 1))\n"
                   "print('user message', XPSendMessageToWidget(b, xpMsg_UserStart, xpMode_Direct, 2, 3))\n",
                   "",
                   "def Grip(self, message, widget, param1, param2):\n"
                   "    # Passes the mouse on, as a title bar would, to drag the whole window.\n"
                   "    if message in (xpMsg_MouseDown, xpMsg_MouseDrag, xpMsg_MouseUp):\n"
                   "        XPUDragWidget(message, self.w, param1, param2, 100)\n"
                   "        if message == xpMsg_MouseUp:\n"
                   "            geometry = [[], [], [], []]\n"
                   "            XPGetWidgetGeometry(self.w, *geometry)\n"
                   "            print('dragged to', geometry)\n"
                   "        return 1\n"
                   "    return 0\n"));
    const std::string events = sim.writeEvents("0.2 drag 200 460 250 400\n");
    SimRun run = sim.run({"--seconds", "0.3", "--events", events});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(), "refused 0 0 0 0 0 0 0\nuser message 0\ndragged to [[150], [440], [450], [240]]\n");
    for (const auto& [module, function] :
         std::vector<std::pair<std::string, std::string>>{{"XPWidgets", "XPSendMessageToWidget"},
                                                          {"XPWidgetUtils", "XPUDragWidget"},
                                                          {"XPWidgetUtils", "XPUFixedLayout"},
                                                          {"XPWidgetUtils", "XPUSelectIfNeeded"},
                                                          {"XPWidgetUtils", "XPUDefocusKeyboard"}})
        EXPECT_EQ(CountOf(sim.log(), Report(module, function, "Parameter Error")),
                  function == "XPSendMessageToWidget" ? 3u : 1u)
            << function << sim.log();
}

TEST(Widget, QueriesFillOutListsAndUtilitiesAct) {
    SimFolder sim;
    sim.writeScript("CV_Queries.py",
                    TestScript("Queries", kWidgetModules, "",
                               "w = XPCreateWidget(100, 400, 300, 200, 1, 'Window', 1, 0, xpWidgetClass_MainWindow)\n"
                               "c = XPCreateWidget(110, 380, 200, 360, 1, 'Caption', 0, w, xpWidgetClass_Caption)\n"
                               "g = [[], [7], None, []]\n"
                               "print('geometry', XPGetWidgetGeometry(c, *g), g)\n"
                               "text = ['keep']\n"
                               "print('descriptor', XPGetWidgetDescriptor(c, text, 4), XPGetWidgetDescriptor(c, text, 50),\n"
                               "      XPGetWidgetDescriptor(c, None, 0), text)\n"
                               "print('set', XPSetWidgetProperty(c, xpProperty_UserStart, -5))\n"
                               "e, f = [9], []\n"
                               "print('property', XPGetWidgetProperty(c, xpProperty_UserStart, e), e)\n"
                               "print('missing', XPGetWidgetProperty(c, xpProperty_UserStart + 1, f), f,\n"
                               "      XPGetWidgetProperty(c, xpProperty_UserStart, None))\n"
                               "print('tree', XPCountChildWidgets(w), XPGetNthChildWidget(w, 0) == c, XPGetParentWidget(c) == w,\n"
                               "      XPFindRootWidget(c) == w, XPGetWidgetForLocation(w, 150, 370, 1, 1) == c)\n"
                               "print('hide', XPHideWidget(c), XPIsWidgetVisible(c), XPShowWidget(c), XPIsWidgetVisible(c))\n"
                               "print('move', XPUMoveWidgetBy(c, 5, -5), XPSetWidgetDescriptor(c, 'New'))\n"
                               "x = []\n"
                               "XPGetWidgetExposedGeometry(c, x, x, x, x)\n"
                               "print('exposed', x)\n"
                               "print('front', XPBringRootWidgetToFront(w), XPIsWidgetInFront(w))\n"
                               "print('class', XPGetWidgetClassFunc(xpWidgetClass_Button) != 0, XPGetWidgetClassFunc(99))\n"
                               "print('focus', XPGetWidgetWithFocus(), XPLoseKeyboardFocus(c))\n"
                               "wd, ht, lit = [], [], []\n"
                               "print('window', XPGetWindowDefaultDimensions(xpWindow_MainWindow, wd, ht), wd, ht)\n"
                               "print('element', XPGetElementDefaultDimensions(xpElement_CheckBox, wd, None, lit), wd, lit)\n"
                               "print('track', XPGetTrackDefaultDimensions(xpTrack_ScrollBar),\n"
                               "      XPGetTrackMetrics(0, 0, 100, 16, 0, 100, 50, xpTrack_ScrollBar))\n"
                               "print('draw', XPDrawWindow(0, 0, 10, 10, xpWindow_SubWindow), XPDrawElement(0, 0, 10, 10, 6, 0),\n"
                               "      XPDrawTrack(0, 0, 100, 16, 0, 100, 50, xpTrack_Slider, 0))\n"
                               "print('send', XPSendMessageToWidget(c, xpMsg_UserStart, xpMode_Direct, -1, 2 ** 40))\n"
                               "print('utils', XPUFixedLayout(xpMsg_None, w, 0, 0), XPUSelectIfNeeded(xpMsg_None, w, 0, 0, 1),\n"
                               "      XPUDefocusKeyboard(xpMsg_None, w, 0, 0, 1), XPUDragWidget(xpMsg_None, w, 0, 0, 100))\n"
                               "print('within', XPPlaceWidgetWithin(c, 0), XPGetParentWidget(c))\n"
                               "XPDestroyWidget(self, c, 0)\n"
                               "XPDestroyWidget(self, w, 1)\n"));
    SimRun run = sim.run({"--frames", "3"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    // Out-lists: an empty list is appended to, a filled one has item 0 replaced, None is skipped; the
    // descriptor is always appended, cut to the maximum length.
    EXPECT_EQ(sim.output(),
              "geometry 1 [[110], [380], None, [360]]\n"
              "descriptor 7 7 7 ['keep', 'Capt', 'Caption']\n"
              "set 1\n"
              "property -5 [1]\n"
              "missing 0 [0] -5\n"
              "tree 1 True True True True\n"
              "hide 1 0 1 1\n"
              "move 1 1\n"
              "exposed [355]\n"
              "front 1 1\n"
              "class True 0\n"
              "focus 0 1\n"
              "window 1 [300] [200]\n"
              "element 1 [16] [1]\n"
              "track (16, 1) (0, 16, 26, 16, 26, 16)\n"
              "draw 1 1 1\n"
              "send 0\n"
              "utils 0 0 0 0\n"
              "within 1 0\n");
    // Neither widget was given a function, and both have no parent when destroyed.
    EXPECT_EQ(CountOf(sim.log(), "Module - XPWidgets, Function - XPDestroyWidget, Error = Script 'Queries.py' was "
                                 "unregistering a callback that does not exist.\n"),
              2u)
        << sim.log();
    EXPECT_EQ(CountOf(sim.log(), "Error"), 2u) << sim.log();
}

}  // namespace
