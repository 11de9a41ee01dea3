// Windows end to end: scripts create windows whose handlers are their methods; clicks, drags, the
// wheel and keys from the events file reach them; destruction follows the scripts' index rules
// while the test build's AddressSanitizer checks that no trampoline reads freed memory.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SimHarness.h"

namespace {

std::string Script(const std::string& name, const std::string& start, const std::string& enable,
                   const std::string& stop, const std::string& methods) {
    return EntryPointScript("from XPLMDefs import *\n"
                            "from XPLMDisplay import *\n"
                            "from XPLMProcessing import *\n"
                            "def attempt(label, call):\n"
                            "    try:\n"
                            "        print(label, call())\n"
                            "    except Exception as error:\n"
                            "        print(label, type(error).__name__)\n",
                            name, start, enable, stop, methods);
}

// Every value of a "name = value" pair in the log, in order.
std::vector<std::string> AllValues(const std::string& log, const std::string& name) {
    std::vector<std::string> values;
    for (size_t pos = log.find(name + " = "); pos != std::string::npos; pos = log.find(name + " = ", pos + 1))
        values.push_back(Between(log, name + " = ", "\n", pos));
    return values;
}

std::string SizeLines(int draw, int key, int mouse, int cursor, int wheel) {
    return "DrawWindowCallbackList size = " + std::to_string(draw) + "\nKeyCallbackList size = " + std::to_string(key) +
           "\nMouseClickCallbackList size = " + std::to_string(mouse) +
           "\nCursorStatusCallbackList size = " + std::to_string(cursor) +
           "\nMouseWheelCallbackList size = " + std::to_string(wheel) + "\n";
}

TEST(Window, OldSimulatorRefusesCreateWindowExAndEmptyListsAreReported) {
    SimFolder sim;
    sim.writeFile("Resources/plugins/Corvelle/Corvelle.ini", "[DEBUG]\nDebugCallbacks=1\n");
    sim.writeScript("CV_OldWindows.py",
                    Script("OldWindows",
                           "        self.draw, self.mouse = self.Draw, self.Mouse\n"
                           "        self.n = 0\n"
                           "        print('ex', XPLMCreateWindowEx(self, [0, 100, 100, 0, 1, self.draw, 0, 0, 0, 0, 0]))\n"
                           // No key handler: the window gets no key record and no KeyCallbackList entry.
                           "        self.w = XPLMCreateWindow(self, 10, 110, 110, 10, 1, self.draw, None, self.mouse, 4)\n",
                           "",
                           "        print('draws', self.n)\n"
                           "        print('destroy', XPLMDestroyWindow(self, self.w))\n"
                           "        print('again', XPLMDestroyWindow(self, self.w))\n",
                           "    def Draw(self, window, refcon):\n"
                           "        self.n += 1\n"
                           "    def Mouse(self, window, x, y, status, refcon):\n"
                           "        print('mouse', x, y, status, refcon)\n"
                           "        return 1\n"));
    const std::string events = sim.writeEvents("0.5 click 50 50\n0.6 key a\n");
    SimRun run = sim.run({"--sdk", "1.02", "--frames", "20", "--events", events});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(), "ex 0\nmouse 50 50 1 4\nmouse 50 50 3 4\ndraws 20\ndestroy 1\nagain 1\n");

    const std::string log = sim.log();
    EXPECT_NE(log.find("Module - XPLMDisplay, Function - XPLMCreateWindowEx, Error = Not supported in SDK 1.02\n"),
              std::string::npos)
        << log;
    // Refused before anything was recorded: the first trace is XPLMCreateWindow's.
    EXPECT_EQ(CountOf(log, "XPLMCreateWindowEx\n"), 0u);
    const std::string window = Between(log, "IsVisible = 1, Refcon = 4, WindowID = ", "\n");
    ASSERT_GT(window.size(), 8u) << log;
    EXPECT_NE(log.find("XPLMCreateWindow\npScriptId = " + Between(log, "XPLMCreateWindow\npScriptId = ", ",") +
                       ", Left = 10, Top = 110, Right = 110, Bottom = 10, IsVisible = 1, Refcon = 4, WindowID = " +
                       window + "\nDrawWindowCallbackList size = 1\nKeyCallbackList size = 0\n"
                       "MouseClickCallbackList size = 1\nXPLMCreateWindow\n"),
              std::string::npos)
        << log;
    EXPECT_TRUE(InOrder(log, {"Script Name = OldWindows, inWindowID = " + window + "\npDrawWindowCB = ",
                              SizeLines(0, 0, 0, 0, 0),
                              "Module - XPLMDisplay, Function - XPLMDestroyWindow, Error = List Empty Error\n"
                              "XPLMDestroyWindow\n",
                              "Script Name = OldWindows, inWindowID = " + window + "\npDrawWindowCB = 0\n" +
                                  SizeLines(0, 0, 0, 0, 0)}))
        << log;
    // The key went to the simulator: the window had no key handler and no focus.
    EXPECT_NE(sim.simLog().find("the sim gets key 'a'"), std::string::npos) << sim.simLog();
}

TEST(Window, HandlersReceiveClicksDragsWheelKeysAndCursorQueries) {
    SimFolder sim;
    sim.writeScript(
        "CV_Panel.py",
        Script("Panel",
               "        self.handlers = [self.Draw, self.Key, self.Mouse, self.Cursor, self.Wheel]\n"
               "        self.draws = 0\n"
               "        self.w = XPLMCreateWindowEx(self, [100, 500, 400, 200, 1] + self.handlers + [9])\n"
               "        self.other = XPLMCreateWindow(self, 600, 500, 700, 400, 1, self.handlers[0], 0, 0, 0)\n"
               "        self.loop = self.Loop\n"
               "        XPLMRegisterFlightLoopCallback(self, self.loop, -1, 0)\n",
               "        g = [[], [], [], []]\n"
               "        print('geometry', XPLMGetWindowGeometry(self.w, *g), g)\n"
               "        print('visible', XPLMGetWindowIsVisible(self.w), 'front', XPLMIsWindowInFront(self.w),\n"
               "              XPLMIsWindowInFront(self.other))\n"
               "        print('to front', XPLMBringWindowToFront(self.w), XPLMIsWindowInFront(self.w))\n"
               "        print('refcon', XPLMGetWindowRefCon(self.w) != 0)\n",
               "        XPLMUnregisterFlightLoopCallback(self, self.loop, 0)\n"
               "        print('draws', self.draws)\n"
               "        print('destroy', XPLMDestroyWindow(self, self.w), XPLMDestroyWindow(self, self.other))\n",
               "    def Draw(self, window, refcon):\n"
               "        if window == self.w:\n"
               "            self.draws += 1\n"
               "    def Key(self, window, key, flags, virtualKey, refcon, losingFocus):\n"
               "        if losingFocus or flags & xplm_DownFlag:\n"
               "            print('key', window == self.w, key, flags, virtualKey, refcon, losingFocus)\n"
               "    def Mouse(self, window, x, y, status, refcon):\n"
               "        print('mouse', window == self.w, x, y, status, refcon)\n"
               "        if status == xplm_MouseUp:\n"
               "            XPLMTakeKeyboardFocus(window)\n"
               "        return 1\n"
               "    def Cursor(self, window, x, y, refcon):\n"
               "        return xplm_CursorArrow\n"
               "    def Wheel(self, window, x, y, wheel, clicks, refcon):\n"
               "        print('wheel', x, y, wheel, clicks, refcon)\n"
               "        return 1\n"
               "    def Loop(self, sinceCall, sinceLoop, counter, refcon):\n"
               "        if counter == 14:\n"
               "            x, y = [], []\n"
               "            XPLMGetMouseLocation(x, y)\n"
               "            print('mouse at', x, y)\n"
               "            print('hide', XPLMSetWindowIsVisible(self.w, 0), XPLMGetWindowIsVisible(self.w))\n"
               "            print('move', XPLMSetWindowGeometry(self.w, 0, 100, 50, 0))\n"
               "        return -1\n"));
    const std::string events = sim.writeEvents("0.20 click 150 300\n"
                                               "0.30 key b\n"
                                               "0.40 drag 150 300 200 350\n"
                                               "0.50 wheel 150 300 -2\n"
                                               "0.60 click 650 450   # the other window has no mouse handler\n"
                                               "0.80 click 150 300   # hidden and moved away: reaches the sim\n");
    SimRun run = sim.run({"--seconds", "1", "--events", events});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(),
              "geometry 1 [[100], [500], [400], [200]]\n"
              "visible 1 front 0 1\n"
              "to front 1 1\n"
              "refcon True\n"
              "mouse True 150 300 1 9\n"
              "mouse True 150 300 3 9\n"
              "key True 98 8 66 9 0\n"
              "mouse True 150 300 1 9\n"
              "mouse True 200 350 2 9\n"
              "mouse True 200 350 3 9\n"
              "wheel 150 300 0 -2 9\n"
              "mouse at [650] [450]\n"
              "hide 1 0\n"
              "move 1\n"
              "draws 13\n"
              "destroy 1 1\n");
    const std::string simLog = sim.simLog();
    EXPECT_NE(simLog.find("the cursor over window 1 (plugin 1) is xplm_CursorArrow"), std::string::npos) << simLog;
    EXPECT_TRUE(InOrder(simLog, {"0.60 click 650 450", "mouse down at (650, 450) reaches the sim",
                                 "0.80 click 150 300", "mouse down at (150, 300) reaches the sim"}))
        << simLog;
    EXPECT_EQ(CountOf(sim.log(), "Error"), 0u) << sim.log();
}

TEST(Window, WindowsSharingADrawMethodFollowTheUpdateRuleAndKeepDrawing) {
    SimFolder sim;
    sim.writeFile("Resources/plugins/Corvelle/Corvelle.ini", "[DEBUG]\nDebugCallbacks=1\nCheckCallbacks=1\n");
    // The second creation stores its window id in the first window's draw record. Destroying the
    // second window therefore takes the first window's draw record and, by the position where it
    // was found (0), the first window's key record; the first window keeps drawing all the same.
    sim.writeScript("CV_Shared.py",
                    Script("Shared",
                           "        self.draw, self.loop = self.Draw, self.Loop\n"
                           "        self.draws = {1: 0, 2: 0}\n"
                           "        self.w1 = XPLMCreateWindowEx(self, [0, 100, 100, 0, 1, self.draw, 0, 0, 0, 0, 1])\n"
                           "        self.w2 = XPLMCreateWindowEx(self, [200, 100, 300, 0, 1, self.draw, 0, 0, 0, 0, 2])\n"
                           "        print('records', '%x %x' % (XPLMGetWindowRefCon(self.w1), XPLMGetWindowRefCon(self.w2)))\n"
                           "        XPLMRegisterFlightLoopCallback(self, self.loop, -1, 0)\n",
                           "",
                           "        XPLMUnregisterFlightLoopCallback(self, self.loop, 0)\n"
                           "        print('draws', self.draws)\n",
                           "    def Draw(self, window, refcon):\n"
                           "        self.draws[refcon] += 1\n"
                           "    def Loop(self, sinceCall, sinceLoop, counter, refcon):\n"
                           "        if counter == 5:\n"
                           "            print('destroy w2', XPLMDestroyWindow(self, self.w2))\n"
                           "        if counter == 10:\n"
                           "            print('destroy w1', XPLMDestroyWindow(self, self.w1))\n"
                           "        if counter == 12:\n"
                           "            print('again', XPLMDestroyWindow(self, self.w1))\n"
                           "        return -1\n"));
    SimRun run = sim.run({"--frames", "15"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    const std::string out = sim.output();
    const std::string records = Between(out, "records ", "\n");
    const std::string k1 = records.substr(0, records.find(' '));
    const std::string k2 = records.substr(records.find(' ') + 1);
    EXPECT_EQ(out, "records " + records + "\ndestroy w2 1\ndestroy w1 1\nagain 1\ndraws {1: 9, 2: 4}\n");

    const std::string log = sim.log();
    // Created with key records k1 and k2; the destructions remove k1, then k2, then nothing.
    EXPECT_EQ(AllValues(log, "pDrawWindowCB"), (std::vector<std::string>{k1, k2, k1, k2, "0"})) << log;
    const std::string w1 = Between(log, "Refcon = 1, WindowID = ", "\n");
    const std::string w2 = Between(log, "Refcon = 2, WindowID = ", "\n");
    EXPECT_TRUE(InOrder(log, {"XPLMCreateWindowEx\n", SizeLines(1, 0, 0, 0, 0) + "XPLMCreateWindowEx\n",
                              "XPLMCreateWindowEx\n", SizeLines(2, 0, 0, 0, 0) + "XPLMCreateWindowEx\n",
                              "inWindowID = " + w2 + "\npDrawWindowCB = " + k1 + "\n" + SizeLines(1, 0, 0, 0, 0),
                              // The first window's own draw record is gone: nothing is found for it.
                              "inWindowID = " + w1 + "\npDrawWindowCB = " + k2 + "\n" + SizeLines(1, 0, 0, 0, 0),
                              "Module - XPLMDisplay, Function - XPLMDestroyWindow, Error = List Empty Error\n",
                              "*** Checking Integrity of Callbacks Started. ***\n"
                              "DrawWindowCallbackList size = 1\n"
                              "Script 'Shared.py.'\n"
                              "Mismatch of callback creation and destruction.\n"
                              "*** Checking Integrity of Callbacks Finished. ***\n"}))
        << log;
}

TEST(Window, RefconsAndMalformedArgumentsNeverReachTheTrampolinesUnchecked) {
    SimFolder sim;
    sim.writeScript(
        "CV_Refcons.py",
        Script("Refcons",
               "        self.draw, self.loop = self.Draw, self.Loop\n"
               "        self.n = 0\n"
               "        self.w = XPLMCreateWindow(self, 0, 100, 100, 0, 1, self.draw, 0, 0, 0)\n"
               "        self.own = XPLMGetWindowRefCon(self.w)\n"
               "        XPLMRegisterFlightLoopCallback(self, self.loop, -1, 0)\n",
               "        attempt('any number', lambda: XPLMSetWindowRefCon(self.w, 12345))\n"
               "        attempt('not a window', lambda: XPLMSetWindowRefCon(54321, 0))\n"
               "        attempt('not a sequence', lambda: XPLMCreateWindowEx(self, 5))\n"
               "        attempt('short', lambda: XPLMCreateWindowEx(self, [0, 1, 2, 3, 4, self.draw]))\n"
               "        attempt('text edge', lambda: XPLMCreateWindowEx(self, ['0', 1, 1, 0, 1, 0, 0, 0, 0, 0, 0]))\n"
               "        attempt('text refcon', lambda: XPLMCreateWindowEx(self, [0, 1, 1, 0, 1, 0, 0, 0, 0, 0, 'r']))\n"
               "        attempt('text window', lambda: XPLMDestroyWindow(self, 'w'))\n"
               "        out = [[], [], [], []]\n"
               "        attempt('unknown window', lambda: (XPLMGetWindowGeometry(54321, *out), out))\n",
               "        XPLMUnregisterFlightLoopCallback(self, self.loop, 0)\n"
               "        print('draws', self.n)\n"
               "        XPLMDestroyWindow(self, self.w)\n",
               "    def Draw(self, window, refcon):\n"
               "        self.n += 1\n"
               "    def Loop(self, sinceCall, sinceLoop, counter, refcon):\n"
               "        if counter == 5:\n"
               "            print('cleared', XPLMSetWindowRefCon(self.w, 0), XPLMGetWindowRefCon(self.w))\n"
               "        if counter == 10:\n"
               "            print('restored', XPLMSetWindowRefCon(self.w, self.own), XPLMGetWindowRefCon(self.w) == self.own)\n"
               "        return -1\n"));
    SimRun run = sim.run({"--frames", "15"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    // Without its key record the window's draw calls reach nothing (frames 5 to 9).
    EXPECT_EQ(sim.output(),
              "any number 0\n"
              "not a window 0\n"
              "not a sequence TypeError\n"
              "short IndexError\n"
              "text edge TypeError\n"
              "text refcon TypeError\n"
              "text window TypeError\n"
              "unknown window (1, [[0], [0], [0], [0]])\n"
              "cleared 1 0\n"
              "restored 1 True\n"
              "draws 10\n");
    EXPECT_EQ(CountOf(sim.log(), "Module - XPLMDisplay, Function - XPLMSetWindowRefCon, Error = "), 2u) << sim.log();
    EXPECT_NE(sim.simLog().find("xpsim: XPLMGetWindowGeometry: "), std::string::npos) << sim.simLog();
}

TEST(Window, WindowDemoExampleRunsWithTheDemoEvents) {
    SimFolder sim;
    sim.writeScript("CV_WindowDemo.py", ReadFile(std::string(EXAMPLES_DIR) + "/CV_WindowDemo.py"));
    SimRun run = sim.run({"--seconds", "5", "--events", std::string(EXAMPLES_DIR) + "/../demo-events.txt"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    // 100 frames: hidden from frame 60 (3.0 s) to frame 80 (4.0 s).
    EXPECT_EQ(sim.output(),
              "WindowDemo: mouse down at 200, 300\n"
              "WindowDemo: key 'h' (virtual key 72) pressed in the window\n"
              "WindowDemo: key 'i' (virtual key 73) pressed in the window\n"
              "WindowDemo: wheel turned by 3 at 250, 250\n"
              "WindowDemo: frame 40, window at left 100 top 400 right 400 bottom 200\n"
              "WindowDemo: window hidden after 59 frames\n"
              "WindowDemo: window shown\n"
              "WindowDemo: 69 frames drawn so far\n"
              "WindowDemo: frame 80, window at left 100 top 400 right 400 bottom 200\n"
              "WindowDemo: 80 frames drawn, keys typed: 'hi'\n");
    EXPECT_EQ(CountOf(sim.log(), "Traceback"), 0u) << sim.log();
    EXPECT_EQ(CountOf(sim.log(), "Module - "), 0u) << sim.log();
}

}  // namespace
