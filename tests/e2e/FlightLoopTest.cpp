// Flight loops end to end: Corvelle.xpl in xpsim (20 simulated frames per second) with scripts
// that register, reschedule and unregister flight loops through the XPLMProcessing module.
#include <gtest/gtest.h>

#include <string>

#include "SimHarness.h"

namespace {

// A script whose class Corvelle has the given start code (inside XPluginStart, before its return),
// stop code and further methods, with the remaining entry points doing nothing.
std::string Script(const std::string& name, const std::string& start, const std::string& stop,
                   const std::string& methods) {
    return "from XPLMProcessing import *\n"
           "class Corvelle:\n"
           "    def XPluginStart(self):\n" +
           start + "        return '" + name + "', 'test." + name + "', 'A test script'\n" +
           "    def XPluginStop(self):\n" + stop + "        pass\n" +
           "    def XPluginEnable(self):\n        return 1\n"
           "    def XPluginDisable(self):\n        pass\n"
           "    def XPluginReceiveMessage(self, fromWho, message, param):\n        pass\n" +
           methods;
}

const std::string kSeparator(115, '-');

TEST(FlightLoopTest, IntervalRunsTheLoopTenTimesPerSimulatedSecond) {
    SimFolder sim;
    sim.writeScript("CV_Ticker.py", Script("Ticker",
                                           "        self.cb = self.Loop\n"
                                           "        self.n = 0\n"
                                           "        XPLMRegisterFlightLoopCallback(self, self.cb, 0.1, 7)\n",
                                           "        XPLMUnregisterFlightLoopCallback(self, self.cb, 7)\n"
                                           "        print('stopped after %d' % self.n)\n",
                                           "    def Loop(self, sinceCall, sinceLoop, counter, refcon):\n"
                                           "        self.n += 1\n"
                                           "        if self.n == 5:\n"
                                           "            print('fifth %.2f %d %.2f %d' % (sinceCall, refcon,\n"
                                           "                  XPLMGetElapsedTime(), XPLMGetCycleNumber() == counter))\n"
                                           "        return 0.1\n"));
    SimRun run = sim.run({"--seconds", "3"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    const std::string out = sim.output();
    // Due every 0.1 s from registration: 30 times in 3 simulated seconds, give or take the edges.
    const std::string count = Between(out, "stopped after ", "\n");
    ASSERT_FALSE(count.empty()) << out;
    const int calls = std::stoi(count);
    EXPECT_GE(calls, 29);
    EXPECT_LE(calls, 31);
    // The loop receives the time since its last call, its own refcon, and the cycle number.
    EXPECT_NE(out.find("fifth 0.10 7 0.50 1\n"), std::string::npos) << out;
    EXPECT_EQ(CountOf(sim.log(), "Error"), 0u) << sim.log();
}

TEST(FlightLoopTest, ReturnValueSchedulesTheNextCall) {
    SimFolder sim;
    sim.writeScript("CV_Returns.py", Script("Returns",
                                            "        self.calls = {'once': 0, 'every': 0, 'second': 0}\n"
                                            "        self.cbs = [self.Once, self.Every, self.Second]\n"
                                            "        for cb in self.cbs:\n"
                                            "            XPLMRegisterFlightLoopCallback(self, cb, -1.0, 0)\n",
                                            "        for cb in self.cbs:\n"
                                            "            XPLMUnregisterFlightLoopCallback(self, cb, 0)\n"
                                            "        print('once=%(once)d every=%(every)d second=%(second)d' % self.calls)\n",
                                            "    def Once(self, a, b, counter, refcon):\n"
                                            "        self.calls['once'] += 1\n"
                                            "        return 0\n"
                                            "    def Every(self, a, b, counter, refcon):\n"
                                            "        self.calls['every'] += 1\n"
                                            "        return -1\n"
                                            "    def Second(self, a, b, counter, refcon):\n"
                                            "        self.calls['second'] += 1\n"
                                            "        return -2.0\n"));
    SimRun run = sim.run({"--frames", "40"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    // 0 stops the loop after its first call; -1 runs every frame, -2 every second frame.
    EXPECT_NE(sim.output().find("once=1 every=40 second=20\n"), std::string::npos) << sim.output();
}

TEST(FlightLoopTest, RaisingLoopIsPrintedEachCallAndRetriedAfterOneSecond) {
    SimFolder sim;
    sim.writeScript("CV_Faulty.py", Script("Faulty",
                                           "        self.cb = self.Loop\n"
                                           "        XPLMRegisterFlightLoopCallback(self, self.cb, 0.05, 0)\n",
                                           "        XPLMUnregisterFlightLoopCallback(self, self.cb, 0)\n",
                                           "    def Loop(self, sinceCall, sinceLoop, counter, refcon):\n"
                                           "        print('call at %.2f' % XPLMGetElapsedTime())\n"
                                           "        return 1 / 0\n"));
    SimRun run = sim.run({"--seconds", "3.5"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(), "call at 0.05\ncall at 1.05\ncall at 2.05\ncall at 3.05\n");
    const std::string log = sim.log();
    EXPECT_EQ(CountOf(log, "ZeroDivisionError: division by zero"), 4u) << log;
    EXPECT_EQ(CountOf(log, "Traceback (most recent call last):"), 4u) << log;
}

TEST(FlightLoopTest, UnregisteringOrReschedulingWithAnotherRefconIsReportedAndChangesNothing) {
    SimFolder sim;
    sim.writeScript("CV_Mismatch.py", Script("Mismatch",
                                             "        self.cb = self.Loop\n"
                                             "        self.n = 0\n"
                                             "        XPLMRegisterFlightLoopCallback(self, self.cb, -1, 1)\n",
                                             "        print('calls %d' % self.n)\n"
                                             "        XPLMUnregisterFlightLoopCallback(self, self.cb, 1)\n",
                                             "    def Loop(self, a, b, counter, refcon):\n"
                                             "        self.n += 1\n"
                                             "        if self.n == 5:\n"
                                             "            print('unregister', XPLMUnregisterFlightLoopCallback(self, self.cb, 2))\n"
                                             "            print('interval', XPLMSetFlightLoopCallbackInterval(self, self.cb, 5.0, 1, 3))\n"
                                             "        return -1\n"));
    SimRun run = sim.run({"--frames", "20"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(), "unregister 1\ninterval 1\ncalls 20\n");
    EXPECT_TRUE(InOrder(sim.log(),
                        {"Module - XPLMProcessing, Function - XPLMUnregisterFlightLoopCallback, Error = Script "
                         "'Mismatch.py' was unregistering a callback and refcon that does not exist, check refcon "
                         "matches the one that was used in registering.\n",
                         "Module - XPLMProcessing, Function - XPLMSetFlightLoopCallbackInterval, Error = Script "
                         "'Mismatch.py' was trying to set a callback and refcon that does not exist, check refcon "
                         "matches the one that was used in registering.\n"}))
        << sim.log();
    // The simulator was never asked to unregister or reschedule anything.
    EXPECT_EQ(CountOf(sim.simLog(), "XPLMUnregisterFlightLoopCallback:"), 0u) << sim.simLog();
    EXPECT_EQ(CountOf(sim.simLog(), "XPLMSetFlightLoopCallbackInterval:"), 0u) << sim.simLog();
}

TEST(FlightLoopTest, UnstoredBoundMethodKeepsRunningAndMustBeUnregisteredWithTheSameObject) {
    SimFolder sim;
    // self.Loop makes a new bound method object on every access. The registration keeps the one it
    // was given alive, so the loop runs however many other method objects the script makes; the
    // unregistration with a different object is refused, as unregistrations match by identity.
    sim.writeScript("CV_Unstored.py", Script("Unstored",
                                             "        self.n = 0\n"
                                             "        XPLMRegisterFlightLoopCallback(self, self.Loop, -1, 0)\n"
                                             "        self.others = [self.Other for i in range(1000)]\n",
                                             "        print('calls %d' % self.n)\n"
                                             "        XPLMUnregisterFlightLoopCallback(self, self.Loop, 0)\n",
                                             "    def Loop(self, a, b, counter, refcon):\n"
                                             "        self.n += 1\n"
                                             "        self.churn = [self.Other for i in range(100)]\n"
                                             "        return -1\n"
                                             "    def Other(self):\n"
                                             "        raise RuntimeError('the wrong method was called')\n"));
    SimRun run = sim.run({"--frames", "30"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(), "calls 30\n");
    EXPECT_EQ(CountOf(sim.log(), "RuntimeError"), 0u) << sim.log();
    EXPECT_EQ(CountOf(sim.log(), "Script 'Unstored.py' was unregistering a callback and refcon that does not exist"), 1u)
        << sim.log();
}

TEST(FlightLoopTest, DuplicateRegistrationsRunTwiceAndNeedTwoUnregistrations) {
    SimFolder sim;
    sim.writeScript("CV_Twice.py", Script("Twice",
                                          "        self.dup = self.Dup\n"
                                          "        self.ctl = self.Control\n"
                                          "        self.frames = {}\n"
                                          "        XPLMRegisterFlightLoopCallback(self, self.ctl, -1, 0)\n"
                                          "        XPLMRegisterFlightLoopCallback(self, self.dup, -1, 9)\n"
                                          "        XPLMRegisterFlightLoopCallback(self, self.dup, -1, 9)\n",
                                          "        XPLMUnregisterFlightLoopCallback(self, self.ctl, 0)\n"
                                          "        runs = [self.frames.get(f, 0) for f in range(5, 15)]\n"
                                          "        print('runs', runs)\n",
                                          "    def Dup(self, a, b, counter, refcon):\n"
                                          "        self.frames[counter] = self.frames.get(counter, 0) + 1\n"
                                          "        return -1\n"
                                          "    def Control(self, a, b, counter, refcon):\n"
                                          "        if counter in (8, 11):\n"
                                          "            XPLMUnregisterFlightLoopCallback(self, self.dup, 9)\n"
                                          "        return -1\n"));
    SimRun run = sim.run({"--frames", "20"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(), "runs [2, 2, 2, 1, 1, 1, 0, 0, 0, 0]\n");
    EXPECT_EQ(CountOf(sim.log(), "does not exist"), 0u) << sim.log();
}

TEST(FlightLoopTest, OldFourArgumentIntervalCallPrintsUsageAndRaises) {
    SimFolder sim;
    sim.writeScript("CV_OldStyle.py", Script("OldStyle",
                                             "        self.cb = self.Loop\n"
                                             "        XPLMRegisterFlightLoopCallback(self, self.cb, 0, 0)\n"
                                             "        try:\n"
                                             "            XPLMSetFlightLoopCallbackInterval(self.cb, 1.0, 1, 0)\n"
                                             "        except TypeError:\n"
                                             "            print('raised TypeError')\n"
                                             "        self.n = 0\n"
                                             "        XPLMSetFlightLoopCallbackInterval(self, self.cb, 0.5, 1, 0)\n",
                                             "        XPLMUnregisterFlightLoopCallback(self, self.cb, 0)\n"
                                             "        print('calls %d' % self.n)\n",
                                             "    def Loop(self, a, b, counter, refcon):\n"
                                             "        self.n += 1\n"
                                             "        return 0.5\n"));
    SimRun run = sim.run({"--seconds", "2.2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    // Registered inactive; the five-argument form starts it, every half second.
    EXPECT_EQ(sim.output(), "raised TypeError\ncalls 4\n");
    EXPECT_NE(sim.log().find(kSeparator + "\n" +
                             "Module - XPLMProcessing, Function - XPLMSetFlightLoopCallbackInterval, Error = Wrong "
                             "number of parameters Error\n" +
                             kSeparator + "\n" +
                             "This changed from Version 2.66.01 onwards as the original syntax was incorrect.\n"
                             "Usage Syntax :- XPLMSetFlightLoopCallbackInterval(self, FlightLoopCallbackPointer, "
                             "Interval, RelativeToNow, RefCon)\n"
                             "Usage Example :- XPLMSetFlightLoopCallbackInterval(self, self.ExampleFlightLoopCB, 3.0, "
                             "1, 0)\n" +
                             kSeparator + "\n"),
              std::string::npos)
        << sim.log();
    EXPECT_EQ(CountOf(sim.log(), kSeparator), 3u);
}

TEST(FlightLoopTest, DebugSwitchesTraceRegistrationsAndReportLeftoversAtStop) {
    SimFolder sim;
    sim.writeFile("Resources/plugins/Corvelle/Corvelle.ini", "[DEBUG]\nDebugCallbacks=1\nCheckCallbacks=1\n");
    sim.writeScript("CV_Forgetful.py", Script("Forgetful",
                                              "        self.cb = self.Loop\n"
                                              "        self.kept = self.Loop\n"
                                              "        XPLMRegisterFlightLoopCallback(self, self.cb, 0.25, -3)\n"
                                              "        XPLMRegisterFlightLoopCallback(self, self.kept, 0.25, 4)\n",
                                              "        XPLMUnregisterFlightLoopCallback(self, self.kept, 4)\n",
                                              "    def Loop(self, a, b, counter, refcon):\n"
                                              "        return 0.25\n"));
    SimRun run = sim.run({"--seconds", "1"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    const std::string log = sim.log();

    const std::string id = Between(log, "XPLMRegisterFlightLoopCallback\npScriptId = ", ",");
    // The script id is printed in full, in lowercase hex: a 64-bit heap address does not fit 32 bits.
    ASSERT_GT(id.size(), 8u) << log;
    EXPECT_EQ(id.find_first_not_of("0123456789abcdef"), std::string::npos) << id;
    EXPECT_NE(log.find("XPLMRegisterFlightLoopCallback\n"
                       "pScriptId = " + id + ", Interval = 0.250000, inRefcon = -3\n"
                       "FlightLoopCallbackList size = 1\n"
                       "XPLMRegisterFlightLoopCallback\n"
                       "XPLMRegisterFlightLoopCallback\n"
                       "pScriptId = " + id + ", Interval = 0.250000, inRefcon = 4\n"
                       "FlightLoopCallbackList size = 2\n"
                       "XPLMRegisterFlightLoopCallback\n"),
              std::string::npos)
        << log;
    EXPECT_NE(log.find("XPLMUnregisterFlightLoopCallback\n"
                       "pScriptId = " + id + ", Script Name = Forgetful, inRefcon = 4\n"
                       "FlightLoopCallbackList size = 1\n"
                       "XPLMUnregisterFlightLoopCallback\n"),
              std::string::npos)
        << log;

    EXPECT_NE(log.find("After Py_Finalize()\n"
                       "\n*** Checking Integrity of Callbacks Started. ***\n"
                       "FlightLoopCallbackList size = 1\n"
                       "Script 'Forgetful.py.'\n"
                       "Mismatch of callback creation and destruction.\n"
                       "*** Checking Integrity of Callbacks Finished. ***\n\n"
                       "--- LOGGING STOPPED ---\n"),
              std::string::npos)
        << log;
}

TEST(FlightLoopTest, FlightLoopObjectsAreCreatedScheduledAndDestroyed) {
    SimFolder sim;
    sim.writeScript("CV_Objects.py",
                    "calls = []\n"
                    "def plain(a, b, counter, refcon):\n"
                    "    calls.append('plain')\n"
                    "    return -1\n" +
                        Script("Objects",
                               "        self.cb = self.Loop\n"
                               "        self.n = 0\n"
                               "        self.id = XPLMCreateFlightLoop(self, [1, self.cb, 5])\n"
                               "        print('id', type(self.id).__name__, self.id != 0)\n"
                               "        print('schedule', XPLMScheduleFlightLoop(self, self.id, 0.25, 1))\n"
                               "        self.plainId = XPLMCreateFlightLoop(self, [0, plain, 6])\n"
                               "        XPLMScheduleFlightLoop(self, self.plainId, -1, 1)\n",
                               "        print('calls %d, plain %d' % (self.n, len(calls)))\n"
                               "        print('destroy', XPLMDestroyFlightLoop(self, self.id))\n"
                               "        print('again', XPLMDestroyFlightLoop(self, self.id))\n"
                               "        print('plain', XPLMDestroyFlightLoop(self, self.plainId))\n",
                               "    def Loop(self, sinceCall, sinceLoop, counter, refcon):\n"
                               "        self.n += 1\n"
                               "        if self.n == 1:\n"
                               "            print('refcon', refcon)\n"
                               "        return 0.25\n"));
    SimRun run = sim.run({"--seconds", "2.1"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    // A plain function gets no record, so its flight loop never reaches the script.
    EXPECT_EQ(sim.output(),
              "id int True\n"
              "schedule 1\n"
              "refcon 5\n"
              "calls 8, plain 0\n"
              "destroy 1\n"
              "again 1\n"
              "plain 1\n");
    EXPECT_EQ(CountOf(sim.log(), "Module - XPLMProcessing, Function - XPLMDestroyFlightLoop, Error = Script "
                                 "'Objects.py' was unregistering a callback that does not exist.\n"),
              2u)
        << sim.log();
    EXPECT_EQ(CountOf(sim.simLog(), "XPLMCreateFlightLoop:"), 0u) << sim.simLog();
}

TEST(FlightLoopTest, FlightLoopObjectsAreRefusedBelowSdk210) {
    SimFolder sim;
    sim.writeScript("CV_OldSim.py", Script("OldSim",
                                           "        print(XPLMCreateFlightLoop(self, [1, self.Loop, 0]),\n"
                                           "              XPLMScheduleFlightLoop(self, 1234, 1.0, 1),\n"
                                           "              XPLMDestroyFlightLoop(self, 1234))\n",
                                           "",
                                           "    def Loop(self, a, b, counter, refcon):\n"
                                           "        return 1.0\n"));
    SimRun run = sim.run({"--sdk", "2.00", "--seconds", "0.5"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(), "0 0 0\n");
    EXPECT_TRUE(InOrder(sim.log(),
                        {"Module - XPLMProcessing, Function - XPLMCreateFlightLoop, Error = Not supported in SDK 1.02 "
                         "or SDK 2.00\n",
                         "Module - XPLMProcessing, Function - XPLMScheduleFlightLoop, Error = Not supported in SDK "
                         "1.02 or SDK 2.00\n",
                         "Module - XPLMProcessing, Function - XPLMDestroyFlightLoop, Error = Not supported in SDK "
                         "1.02 or SDK 2.00\n"}))
        << sim.log();
}

}  // namespace
