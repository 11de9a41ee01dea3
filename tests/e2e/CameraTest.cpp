// Camera control end to end: scripts take over xpsim's camera through the XPLMCamera module, move it
// from their per-frame callbacks, give it up, and lose it to each other and to view commands.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "SimHarness.h"

namespace {

const std::string kDebugIni = "[DEBUG]\nDebugCallbacks=1\nCheckCallbacks=1\n";

// A flight loop that prints the camera position and control state on the given frame.
const std::string kWatcher =
    "def Watch(self, sinceCall, sinceLoop, counter, refcon):\n"
    "    if counter == self.watchFrame:\n"
    "        p = []\n"
    "        XPLMReadCameraPosition(p)\n"
    "        print('frame', counter, ' '.join('%.2f' % v for v in p), XPLMIsCameraBeingControlled())\n"
    "    return -1\n";
const std::string kStartWatcher =
    "self.watchCB = self.Watch\n"
    "XPLMRegisterFlightLoopCallback(self, self.watchCB, -1, 0)\n";
const std::string kStopWatcher = "XPLMUnregisterFlightLoopCallback(self, self.watchCB, 0)\n";

TEST(CameraTest, ReadingPositionAndStateWithoutAController) {
    SimFolder sim;
    sim.writeScript("CV_Reader.py",
                    TestScript("Reader", {"XPLMCamera"}, "",
                               "a = []\n"
                               "r = XPLMReadCameraPosition(a)\n"
                               "print('empty', r, len(a), all(type(v) is float for v in a), ' '.join('%.2f' % v for v in a))\n"
                               "b = [1, 2, 3, 4, 5, 6, 'seven']\n"
                               "print('seven', XPLMReadCameraPosition(b), len(b), b[:7], '%.2f' % b[8])\n"
                               "print('controlled', XPLMIsCameraBeingControlled())\n"
                               "print('dont', XPLMDontControlCamera(self))\n"
                               "try:\n"
                               "    XPLMReadCameraPosition(5)\n"
                               "except TypeError as e:\n"
                               "    print('not a list:', e)\n"
                               "print(XPLMControlCamera.__doc__, XPLMDontControlCamera.__doc__,\n"
                               "      XPLMIsCameraBeingControlled.__doc__, XPLMReadCameraPosition.__doc__)\n"));
    SimRun run = sim.run({"--frames", "3"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    const std::string out = sim.output();
    // The default view, as x, y, z, pitch, heading, roll, zoom.
    EXPECT_NE(out.find("empty (1,) 7 True 0.00 1.20 -0.50 0.00 0.00 0.00 1.00\n"), std::string::npos) << out;
    EXPECT_NE(out.find("seven (1,) 14 [1, 2, 3, 4, 5, 6, 'seven'] 1.20\n"), std::string::npos) << out;
    EXPECT_NE(out.find("controlled (0, 0)\n"), std::string::npos) << out;
    EXPECT_NE(out.find("dont 1\n"), std::string::npos) << out;
    EXPECT_NE(out.find("not a list: expected sequence\n"), std::string::npos) << out;
    EXPECT_NE(out.find("Control Camera. Dont Control Camera. Is the Camera being Controlledk. Read Camera Position.\n"),
              std::string::npos)
        << out;
    EXPECT_NE(sim.log().find("Module - XPLMCamera, Function - XPLMDontControlCamera, Error = Script 'Reader.py' was "
                             "unregistering a callback that does not exist.\n"),
              std::string::npos)
        << sim.log();
    // No registration: the simulator was never asked.
    EXPECT_EQ(sim.simLog().find("the camera"), std::string::npos) << sim.simLog();
}

TEST(CameraTest, CallbackMovesTheCameraByAssigningListItemsEveryFrame) {
    SimFolder sim;
    sim.writeFile("Resources/plugins/Corvelle/Corvelle.ini", kDebugIni);
    sim.writeScript("CV_Mover.py",
                    TestScript("Mover", {"XPLMCamera"}, "self.camCB = self.Camera\nself.calls = 0\nself.watchFrame = 5\n",
                               kStartWatcher + "print('control', XPLMControlCamera(self, xplm_ControlCameraForever, self.camCB, 42))\n",
                               kStopWatcher + "print('calls', self.calls)\nprint('dont', XPLMDontControlCamera(self))\n",
                               "def Camera(self, pos, losing, refcon):\n"
                               "    self.calls += 1\n"
                               "    if self.calls == 1:\n"
                               "        print('first', len(pos), losing, refcon, '%.2f %.2f' % (pos[1], pos[6]))\n"
                               "        for i, v in enumerate([10.0, 20.0, 30.0, 5.0, 90.0, 2.0, 1.5]):\n"
                               "            pos[i] = v\n"
                               "    return 1\n" +
                                   kWatcher));
    SimRun run = sim.run({"--frames", "10"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    const std::string out = sim.output();
    EXPECT_NE(out.find("control 1\n"), std::string::npos) << out;
    EXPECT_NE(out.find("first 7 0 42 1.20 1.00\n"), std::string::npos) << out;
    // Moved on frame 1; frames 2 to 4 returned 1 without touching the list, which keeps the position.
    EXPECT_NE(out.find("frame 5 10.00 20.00 30.00 5.00 90.00 2.00 1.50 (1, 2)\n"), std::string::npos) << out;
    EXPECT_NE(out.find("calls 10\n"), std::string::npos) << out;  // once per frame
    EXPECT_NE(out.find("dont 1\n"), std::string::npos) << out;
    const std::string log = sim.log();
    EXPECT_TRUE(InOrder(log, {"XPLMControlCamera\npScriptId = ", ", inHowLong = 2, inRefcon = 42\n"
                              "HotKeysCallbackList size = 1\nXPLMControlCamera\n",
                              "XPLMDontControlCamera\npScriptId = ", ", Script Name = Mover\n"
                              "CameraCallbackList size = 0\nXPLMDontControlCamera\n"}))
        << log;
    EXPECT_EQ(CountOf(log, "Error"), 0u) << log;
    EXPECT_TRUE(InOrder(sim.simLog(), {"xpsim: plugin 1 takes control of the camera forever\n",
                                       "xpsim: plugin 1 gives up the camera (XPLMDontControlCamera); the sim shows "
                                       "sim/view/default_view again\n"}))
        << sim.simLog();
}

// The position is read back from the list item by item; an item whose conversion empties the list
// leaves the other fields as the list held them when the callback returned.
TEST(CameraTest, APositionListEmptiedWhileReadBackMovesTheCameraAsItHeld) {
    setenv("PYTHONMALLOC", "malloc_debug", 1);  // a freed list is then the sanitizer's to see
    SimFolder sim;
    sim.writeScript("CV_Mover.py",
                    TestScript("Mover", {"XPLMCamera"}, "self.camCB = self.Camera\nself.watchFrame = 3\n",
                               kStartWatcher + "XPLMControlCamera(self, xplm_ControlCameraForever, self.camCB, 0)\n",
                               kStopWatcher + "XPLMDontControlCamera(self)\n",
                               "class Emptier:\n"
                               "    def __float__(self):\n"
                               "        self.victim.clear()\n"
                               "        return 5.0\n"
                               "def Camera(self, pos, losing, refcon):\n"
                               "    emptier = self.Emptier()\n"
                               "    emptier.victim = pos\n"
                               "    pos[0:3] = [emptier, 7.0, 9.0]\n"
                               "    return 1\n" +
                                   kWatcher));
    SimRun run = sim.run({"--frames", "4"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_NE(sim.output().find("frame 3 5.00 7.00 9.00 0.00 0.00 0.00 1.00 (1, 2)\n"), std::string::npos)
        << sim.output();
}

TEST(CameraTest, ReturningZeroGivesTheCameraBackAndTheRecordStays) {
    SimFolder sim;
    sim.writeFile("Resources/plugins/Corvelle/Corvelle.ini", kDebugIni);
    sim.writeScript("CV_Quitter.py",
                    TestScript("Quitter", {"XPLMCamera"}, "self.camCB = self.Camera\nself.calls = 0\nself.watchFrame = 6\n",
                               kStartWatcher + "XPLMControlCamera(self, xplm_ControlCameraForever, self.camCB, 0)\n",
                               kStopWatcher + "print('calls', self.calls)\nXPLMDontControlCamera(self)\n",
                               "def Camera(self, pos, losing, refcon):\n"
                               "    self.calls += 1\n"
                               "    pos[0] = 99.0\n"
                               "    return 1 if self.calls < 3 else 0\n" +
                                   kWatcher));
    SimRun run = sim.run({"--frames", "10"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    const std::string out = sim.output();
    EXPECT_NE(out.find("calls 3\n"), std::string::npos) << out;
    // Back to the default view, with nobody in control.
    EXPECT_NE(out.find("frame 6 0.00 1.20 -0.50 0.00 0.00 0.00 1.00 (0, 0)\n"), std::string::npos) << out;
    // The record stayed until XPLMDontControlCamera: found, so no report, and nothing left over.
    EXPECT_NE(sim.log().find("CameraCallbackList size = 0\n"), std::string::npos) << sim.log();
    EXPECT_EQ(CountOf(sim.log(), "Error"), 0u) << sim.log();
    EXPECT_NE(sim.simLog().find("xpsim: plugin 1 gives up the camera (its callback returned 0)"), std::string::npos)
        << sim.simLog();
}

TEST(CameraTest, SecondControlAndViewCommandTakeTheCameraAway) {
    SimFolder sim;
    sim.writeFile("Resources/plugins/Corvelle/Corvelle.ini", kDebugIni);
    sim.writeScript("CV_Viewer.py",
                    TestScript("Viewer", {"XPLMCamera"},
                               "self.cbA = self.CameraA\nself.cbB = self.CameraB\nself.watchFrame = 12\nself.calls = []\n",
                               kStartWatcher +
                                   "XPLMControlCamera(self, xplm_ControlCameraUntilViewChanges, self.cbA, 1)\n"
                                   "XPLMControlCamera(self, xplm_ControlCameraUntilViewChanges, self.cbB, 2)\n"
                                   "print('after two', XPLMIsCameraBeingControlled())\n",
                               kStopWatcher + "print(self.calls)\nXPLMDontControlCamera(self)\n",
                               "def CameraA(self, pos, losing, refcon):\n"
                               "    self.calls.append(('A', pos, losing, refcon))\n"
                               "    return 1\n"
                               "def CameraB(self, pos, losing, refcon):\n"
                               "    if pos == 0:\n"
                               "        self.calls.append(('B', pos, losing, refcon))\n"
                               "    return 1\n" +
                                   kWatcher));
    const std::string events = sim.writeEvents("0.5 command sim/view/chase\n");
    SimRun run = sim.run({"--frames", "15", "--events", events});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    const std::string out = sim.output();
    EXPECT_NE(out.find("after two (1, 1)\n"), std::string::npos) << out;
    // A lost control to B at once and was never called with a position; B lost it to the view
    // command on frame 10. Each was told exactly once.
    EXPECT_NE(out.find("[('A', 0, 1, 1), ('B', 0, 1, 2)]\n"), std::string::npos) << out;
    EXPECT_NE(out.find("frame 12 0.00 8.00 30.00 -10.00 0.00 0.00 1.00 (0, 0)\n"), std::string::npos) << out;
    // Two registrations, one XPLMDontControlCamera: one record remains.
    EXPECT_NE(sim.log().find("HotKeysCallbackList size = 2\n"), std::string::npos) << sim.log();
    EXPECT_NE(sim.log().find("Script Name = Viewer\nCameraCallbackList size = 1\n"), std::string::npos) << sim.log();
    EXPECT_TRUE(InOrder(sim.simLog(), {"xpsim: plugin 1 takes control of the camera until the view changes from plugin 1\n",
                                       "xpsim: sim/view/chase: the view follows the aircraft from behind\n",
                                       "xpsim: plugin 1 loses the camera: the view changed to sim/view/chase; the sim "
                                       "shows sim/view/chase again\n"}))
        << sim.simLog();
}

}  // namespace
