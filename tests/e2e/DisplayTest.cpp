// Drawing callbacks, key sniffers, hot keys and the screen queries of XPLMDisplay end to end, with
// key strokes and mouse clicks from the events file.
#include <gtest/gtest.h>

#include <string>

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

const std::string kRefconMessage =
    "was unregistering a callback and refcon that does not exist, check refcon matches the one that was used in "
    "registering.\n";

TEST(Display, DrawCallbacksSuppressTheSimulatorsDrawingUntilUnregistered) {
    SimFolder sim;
    sim.writeFile("Resources/plugins/Corvelle/Corvelle.ini", "[DEBUG]\nDebugCallbacks=1\n");
    sim.writeScript(
        "CV_Draw.py",
        Script("Draw",
               "        self.calls = {'hide': 0, 'after': 0, 'terrain': 0}\n"
               "        self.hide, self.after, self.terrain = self.Hide, self.After, self.Terrain\n"
               "        self.loop = self.Loop\n"
               "        print('register', XPLMRegisterDrawCallback(self, self.hide, xplm_Phase_Objects, 1, 4),\n"
               "              XPLMRegisterDrawCallback(self, self.after, xplm_Phase_Window, 0, 0),\n"
               "              XPLMRegisterDrawCallback(self, self.terrain, xplm_Phase_Terrain, 0, 2),\n"
               "              XPLMRegisterDrawCallback(self, self.after, 9999, 0, 0))\n"
               "        XPLMRegisterFlightLoopCallback(self, self.loop, -1, 0)\n",
               "",
               "        XPLMUnregisterFlightLoopCallback(self, self.loop, 0)\n"
               "        print('calls', self.calls)\n",
               "    def Hide(self, phase, isBefore, refcon):\n"
               "        self.calls['hide'] += 1\n"
               "        return 0\n"
               "    def After(self, phase, isBefore, refcon):\n"
               "        if self.calls['after'] == 0:\n"
               "            print('after', phase, isBefore, refcon)\n"
               "        self.calls['after'] += 1\n"
               "        return 0\n"
               "    def Terrain(self, phase, isBefore, refcon):\n"
               "        self.calls['terrain'] += 1\n"
               "        return 1\n"
               "    def Loop(self, sinceCall, sinceLoop, counter, refcon):\n"
               "        if counter == 10:\n"
               "            print('wrong refcon', XPLMUnregisterDrawCallback(self, self.hide, xplm_Phase_Objects, 1, 9))\n"
               "            print('unregister', XPLMUnregisterDrawCallback(self, self.hide, xplm_Phase_Objects, 1, 4))\n"
               // Found by script, callable and refcon, but registered for another phase: the
               // simulator keeps the registration, and the callback keeps running.
               "            print('wrong phase', XPLMUnregisterDrawCallback(self, self.terrain, xplm_Phase_Airports, 0, 2))\n"
               "        return -1\n"));
    SimRun run = sim.run({"--frames", "20"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    // An after-callback's result does not matter: the window phase is drawn throughout.
    EXPECT_EQ(sim.output(),
              "register 1 1 1 0\n"
              "after 50 0 0\n"
              "wrong refcon 0\n"
              "unregister 1\n"
              "wrong phase 0\n"
              "calls {'hide': 9, 'after': 20, 'terrain': 20}\n");
    const std::string simLog = sim.simLog();
    EXPECT_TRUE(InOrder(simLog, {"the sim's own drawing of xplm_Phase_Objects is suppressed by a before-callback from "
                                 "frame 1",
                                 "the sim's own drawing of xplm_Phase_Objects resumes from frame 10"}))
        << simLog;
    EXPECT_EQ(CountOf(simLog, "is suppressed"), 1u) << simLog;

    const std::string log = sim.log();
    EXPECT_NE(log.find("Module - XPLMDisplay, Function - XPLMUnregisterDrawCallback, Error = Script 'Draw.py' " +
                       kRefconMessage),
              std::string::npos)
        << log;
    EXPECT_TRUE(InOrder(log, {"XPLMRegisterDrawCallback\npScriptId = ",
                              ", inPhase = 20, inWantsBefore = 1, inRefcon = 4\nDrawCallbackList size = 1\n"
                              "XPLMRegisterDrawCallback\n",
                              ", inPhase = 9999, inWantsBefore = 0, inRefcon = 0\nDrawCallbackList size = 4\n",
                              ", Script Name = Draw, inPhase = 20, inWantsBefore = 1, inRefcon = 9\n"
                              "DrawCallbackList size = 4\nXPLMUnregisterDrawCallback\n",
                              ", Script Name = Draw, inPhase = 20, inWantsBefore = 1, inRefcon = 4\n"
                              "DrawCallbackList size = 3\nXPLMUnregisterDrawCallback\n",
                              ", Script Name = Draw, inPhase = 10, inWantsBefore = 0, inRefcon = 2\n"
                              "DrawCallbackList size = 2\nXPLMUnregisterDrawCallback\n"}))
        << log;
}

TEST(Display, OutListsAreFilledAppendedOrReplacedAtItemZeroAndTheMethodTableIsComplete) {
    SimFolder sim;
    sim.writeScript("CV_Screen.py",
                    Script("Screen",
                           "        print('none', XPLMGetScreenSize(None, None))\n"
                           "        w, h = [], []\n"
                           "        print('empty', XPLMGetScreenSize(w, h), w, h)\n"
                           "        w, h = ['old', 'kept'], [0]\n"
                           "        print('filled', XPLMGetScreenSize(w, None), XPLMGetScreenSize(None, h), w, h)\n"
                           "        x, y = [], []\n"
                           "        print('mouse', XPLMGetMouseLocation(x, y), x, y)\n"
                           "        attempt('int out', lambda: XPLMGetScreenSize(5, None))\n"
                           "        attempt('tuple out', lambda: XPLMGetMouseLocation(None, ()))\n"
                           "        attempt('one arg', lambda: XPLMGetScreenSize(None))\n"
                           "        import XPLMDisplay\n"
                           "        for name in sorted(n for n in dir(XPLMDisplay) if callable(getattr(XPLMDisplay, n))):\n"
                           "            print(name, getattr(XPLMDisplay, name).__doc__)\n",
                           "", "", ""));
    SimRun run = sim.run({"--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(),
              "none 1\n"
              "empty 1 [1024] [768]\n"
              "filled 1 1 [1024, 'kept'] [768]\n"
              "mouse 1 [512] [384]\n"
              "int out TypeError\n"
              "tuple out TypeError\n"
              "one arg TypeError\n"
              "XPLMBringWindowToFront Bring Window to Front.\n"
              "XPLMCountHotKeys Count the Hot Keys.\n"
              "XPLMCreateWindow Creates a window.\n"
              "XPLMCreateWindowEx Creates a window using a struct.\n"
              "XPLMDestroyWindow Destroys a window.\n"
              "XPLMGetHotKeyInfo Get Hot Key Info.\n"
              "XPLMGetMouseLocation Get Mouse Location.\n"
              "XPLMGetNthHotKey Get Nth Hot Key.\n"
              "XPLMGetScreenSize Get Screen Size.\n"
              "XPLMGetWindowGeometry Get window geometry.\n"
              "XPLMGetWindowIsVisible Get Window is Visible.\n"
              "XPLMGetWindowRefCon Get the Window RefCon.\n"
              "XPLMIsWindowInFront Is the Window in Front.\n"
              "XPLMRegisterDrawCallback Registers a Draw Call Back.\n"
              "XPLMRegisterHotKey Register Hot Key.\n"
              "XPLMRegisterKeySniffer Registers a Key Sniffer.\n"
              "XPLMSetHotKeyCombination Set the Hot Key Combination.\n"
              "XPLMSetWindowGeometry Set window geometry.\n"
              "XPLMSetWindowIsVisible Set Window is Visible.\n"
              "XPLMSetWindowRefCon Set the Window RefCon.\n"
              "XPLMTakeKeyboardFocus Take the Keyboard Focus.\n"
              "XPLMUnregisterDrawCallback Unregisters a Draw Call Back.\n"
              "XPLMUnregisterHotKey Unregister Hot Key.\n"
              "XPLMUnregisterKeySniffer Unregisters a Key Sniffer.\n");
}

TEST(Display, KeySnifferReturningZeroConsumesTheKey) {
    SimFolder sim;
    sim.writeScript("CV_Sniffer.py",
                    Script("Sniffer",
                           "        self.sniff, self.hot, self.loop = self.Sniff, self.Hot, self.Loop\n"
                           "        print('sniffer', XPLMRegisterKeySniffer(self, self.sniff, 1, 3))\n"
                           "        self.x = XPLMRegisterHotKey(self, XPLM_VK_X, 0, 'Hot X', self.hot, 5)\n"
                           "        XPLMRegisterFlightLoopCallback(self, self.loop, -1, 0)\n",
                           "",
                           "        XPLMUnregisterFlightLoopCallback(self, self.loop, 0)\n"
                           "        XPLMUnregisterHotKey(self, self.x)\n",
                           "    def Sniff(self, char, flags, virtualKey, refcon):\n"
                           "        if flags & xplm_DownFlag:\n"
                           "            print('sniff', chr(char), flags, virtualKey, refcon)\n"
                           "        return 0 if char == ord('x') else 1\n"
                           "    def Hot(self, refcon):\n"
                           "        print('hot', refcon)\n"
                           "    def Loop(self, sinceCall, sinceLoop, counter, refcon):\n"
                           "        if counter == 10:\n"
                           "            print('unregister', XPLMUnregisterKeySniffer(self, self.sniff, 1, 3))\n"
                           "        return -1\n"));
    const std::string events = sim.writeEvents("0.2 key x\n"
                                               "0.3 key a\n"
                                               "0.6 key x   # the sniffer is gone: the hot key gets it\n");
    SimRun run = sim.run({"--seconds", "1", "--events", events});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(),
              "sniffer 1\n"
              "sniff x 8 88 3\n"
              "sniff a 8 65 3\n"
              "unregister 1\n"
              "hot 5\n");
    const std::string simLog = sim.simLog();
    // Only the key the sniffer passed on reaches the simulator.
    EXPECT_EQ(CountOf(simLog, "the sim gets key"), 1u) << simLog;
    EXPECT_NE(simLog.find("the sim gets key 'a' (XPLM_VK_A"), std::string::npos) << simLog;
}

TEST(Display, HotKeysFireTheirHandlerAndSharedMethodsFollowTheUpdateRule) {
    SimFolder sim;
    sim.writeScript(
        "CV_HotKeys.py",
        Script("HotKeys",
               "        self.hot, self.loop = self.Hot, self.Loop\n"
               // One method for both: the second registration's id goes into the first record.
               "        self.h = XPLMRegisterHotKey(self, XPLM_VK_H, 0, 'Hot H', self.hot, 11)\n"
               "        self.j = XPLMRegisterHotKey(self, XPLM_VK_J, xplm_ShiftFlag, 'Hot J', self.hot, 22)\n"
               "        print('ids', type(self.h).__name__, self.h != self.j, XPLMCountHotKeys(),\n"
               "              XPLMGetNthHotKey(1) == self.j, XPLMGetNthHotKey(5))\n"
               "        vk, flags, text, plugin = [], [], ['old'], []\n"
               "        print('info', XPLMGetHotKeyInfo(self.j, vk, flags, text, plugin), vk, flags, text, plugin)\n"
               "        print('info none', XPLMGetHotKeyInfo(self.h, None, None, None, None))\n"
               "        attempt('key range', lambda: XPLMRegisterHotKey(self, 300, 0, 'd', self.hot, 0))\n"
               "        XPLMRegisterFlightLoopCallback(self, self.loop, -1, 0)\n",
               "        print('unknown', XPLMUnregisterHotKey(self, 12345))\n"
               "        attempt('text id', lambda: XPLMUnregisterHotKey(self, 'id'))\n",
               "        XPLMUnregisterFlightLoopCallback(self, self.loop, 0)\n",
               "    def Hot(self, refcon):\n"
               "        print('hot', refcon)\n"
               "    def Loop(self, sinceCall, sinceLoop, counter, refcon):\n"
               "        if counter == 8:\n"
               "            print('unregister h', XPLMUnregisterHotKey(self, self.h))\n"
               "            print('unregister j', XPLMUnregisterHotKey(self, self.j), XPLMCountHotKeys())\n"
               "        if counter == 13:\n"
               "            print('remap', XPLMSetHotKeyCombination(self.h, XPLM_VK_K, 0))\n"
               "        return -1\n"));
    const std::string events = sim.writeEvents("0.2 key h\n"
                                               "0.3 key shift+j\n"
                                               "0.5 key h   # still registered: its record outlives j's unregistration\n"
                                               "0.6 key shift+j\n"
                                               "0.7 key k\n"
                                               "0.8 key h\n");
    SimRun run = sim.run({"--seconds", "1", "--events", events});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(),
              "ids int True 2 True 0\n"
              "info 1 [74] [1] ['Hot J'] [1]\n"
              "info none 1\n"
              "key range OverflowError\n"
              "unknown 1\n"
              "text id TypeError\n"
              "hot 11\n"
              "hot 22\n"
              "unregister h 1\n"
              "unregister j 1 1\n"
              "hot 11\n"
              "remap 1\n"
              "hot 11\n");
    // The unknown id and the first hot key (whose record took the second one's id) are not found.
    EXPECT_EQ(CountOf(sim.log(), "Module - XPLMDisplay, Function - XPLMUnregisterHotKey, Error = Script 'HotKeys.py' "
                                 "was unregistering a callback that does not exist.\n"),
              2u)
        << sim.log();
    const std::string simLog = sim.simLog();
    EXPECT_TRUE(InOrder(simLog, {"0.6 key shift+j", "the sim gets key 'J' (XPLM_VK_J", "0.8 key h",
                                 "the sim gets key 'h' (XPLM_VK_H"}))
        << simLog;
    EXPECT_EQ(CountOf(simLog, "the sim gets key"), 2u) << simLog;
}

}  // namespace
