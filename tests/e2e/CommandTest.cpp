// Commands end to end: Corvelle.xpl (and the test plugin peer.xpl) in xpsim, with scripts that find,
// create, run and handle commands through the XPLMUtilities module, and events files that run them
// as the user would.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "SimHarness.h"

namespace {

// A script with the data access, plugin and utilities modules (see TestScript).
std::string Script(const std::string& name, const std::string& start, const std::string& later,
                   const std::string& stop = "", const std::string& methods = "") {
    return TestScript(name, {"XPLMDataAccess", "XPLMPlugin", "XPLMUtilities"}, start, later, stop, methods);
}

TEST(CommandTest, ScriptCommandRunsItsHandlersInEveryPhase) {
    SimFolder sim;
    sim.writeScript("CV_Demo.py", Script("Demo", R"(
self.cmd = XPLMCreateCommand('corvelle/tests/demo', 'A demo command')
self.before = self.Before
self.after = self.After
self.continues = {'before': 0, 'after': 0}
print('create', self.cmd != 0, XPLMFindCommand('corvelle/tests/demo') == self.cmd,
      XPLMCreateCommand('corvelle/tests/demo', 'again') == self.cmd)
print('register', XPLMRegisterCommandHandler(self, self.cmd, self.before, 1, 11),
      XPLMRegisterCommandHandler(self, self.cmd, self.after, 0, 22))
)",
                                         "print('once', XPLMCommandOnce(self.cmd))\n",
                                         R"(
print('unregister', XPLMUnregisterCommandHandler(self, self.cmd, self.before, 1, 11),
      XPLMUnregisterCommandHandler(self, self.cmd, self.after, 0, 22))
print('continues', self.continues)
)",
                                         R"(
def Handle(self, side, cmd, phase, refcon):
    if phase == xplm_CommandContinue:
        self.continues[side] += 1
    else:
        print(side, cmd == self.cmd, phase, refcon, '%.2f' % XPLMGetElapsedTime())
    return 1
def Before(self, cmd, phase, refcon):
    return self.Handle('before', cmd, phase, refcon)
def After(self, cmd, phase, refcon):
    return self.Handle('after', cmd, phase, refcon)
)"));
    const std::string events = sim.writeEvents("0.5 command corvelle/tests/demo\n"
                                               "1.0 command-begin corvelle/tests/demo\n"
                                               "1.3 command-end corvelle/tests/demo\n");
    SimRun run = sim.run({"--seconds", "2", "--events", events});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    // Begin and end in one call of XPLMCommandOnce and of each "command" event; a held command
    // continues in every frame after the one it began in (1.05 to 1.25 at 20 frames per second).
    EXPECT_EQ(sim.output(),
              "create True True True\n"
              "register 1 1\n"
              "before True 0 11 0.05\n"
              "after True 0 22 0.05\n"
              "before True 2 11 0.05\n"
              "after True 2 22 0.05\n"
              "once 1\n"
              "before True 0 11 0.50\n"
              "after True 0 22 0.50\n"
              "before True 2 11 0.50\n"
              "after True 2 22 0.50\n"
              "before True 0 11 1.00\n"
              "after True 0 22 1.00\n"
              "before True 2 11 1.30\n"
              "after True 2 22 1.30\n"
              "unregister 1 1\n"
              "continues {'before': 5, 'after': 5}\n");
    EXPECT_EQ(CountOf(sim.log(), "Module - "), 0u) << sim.log();
}

TEST(CommandTest, BeforeHandlerAnsweringZeroStopsTheCommandBeforeTheSimulatorActs) {
    SimFolder sim;
    sim.writeScript("CV_Pause.py", Script("Pause", R"(
self.pause = XPLMFindCommand('sim/operation/pause_toggle')
self.paused = XPLMFindDataRef('sim/time/paused')
self.block = True
self.before = self.Before
self.after = self.After
XPLMRegisterCommandHandler(self, self.pause, self.before, 1, 0)
XPLMRegisterCommandHandler(self, self.pause, self.after, 0, 0)
)",
                                          "",
                                          R"(
XPLMUnregisterCommandHandler(self, self.pause, self.before, 1, 0)
XPLMUnregisterCommandHandler(self, self.pause, self.after, 0, 0)
print('paused at stop', XPLMGetDatai(self.paused))
)",
                                          R"(
def Before(self, cmd, phase, refcon):
    print('before', phase, XPLMGetDatai(self.paused))
    if not self.block:
        return 1
    if phase == xplm_CommandEnd:
        self.block = False
    return 0
def After(self, cmd, phase, refcon):
    print('after', phase, XPLMGetDatai(self.paused))
    return 1
)"));
    const std::string events = sim.writeEvents("1.0 command sim/operation/pause_toggle\n"
                                               "2.0 command sim/operation/pause_toggle\n");
    SimRun run = sim.run({"--seconds", "3", "--events", events});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    // The first toggle is stopped in both phases: the simulator does not act and the after handler
    // is not called. The second passes: the simulator pauses between the two handlers.
    EXPECT_EQ(sim.output(),
              "before 0 0\n"
              "before 2 0\n"
              "before 0 0\n"
              "after 0 1\n"
              "before 2 1\n"
              "after 2 1\n"
              "paused at stop 1\n");
    EXPECT_EQ(CountOf(sim.simLog(), "sim/operation/pause_toggle: the sim is paused at frame 40\n"), 1u)
        << sim.simLog();
    EXPECT_EQ(CountOf(sim.simLog(), "sim/operation/pause_toggle: the sim is paused"), 1u) << sim.simLog();
}

TEST(CommandTest, ScriptsAndAnotherPluginRunAndStopEachOthersCommands) {
    SimFolder sim;
    sim.writeScript("CV_Shared.py", Script("Shared", "", R"(
hello = XPLMFindCommand('corvelle/tests/peer/hello')
print('peer command', hello != 0)
XPLMCommandOnce(hello)
self.stopper = self.Stopper
XPLMRegisterCommandHandler(self, hello, self.stopper, 1, 5)
XPLMCommandOnce(hello)
XPLMUnregisterCommandHandler(self, hello, self.stopper, 1, 5)
print('begin', XPLMCommandBegin(hello), 'end', XPLMCommandEnd(hello))
self.mine = XPLMCreateCommand('corvelle/tests/mine', 'Run by the peer')
self.handler = self.Mine
XPLMRegisterCommandHandler(self, self.mine, self.handler, 0, 9)
XPLMSendMessageToPlugin(XPLMFindPluginBySignature('corvelle.tests.peer'), 0x7E570002, 'corvelle/tests/mine')
)",
                                            "XPLMUnregisterCommandHandler(self, self.mine, self.handler, 0, 9)\n",
                                            R"(
def Stopper(self, cmd, phase, refcon):
    print('stopped', phase, refcon)
    return 0
def Mine(self, cmd, phase, refcon):
    print('mine', phase, refcon, cmd == self.mine)
    return 1
)"));
    SimRun run = sim.run({"--plugin", PEER_XPL, "--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(),
              "peer command True\n"
              "stopped 0 5\n"
              "stopped 2 5\n"
              "begin 1 end 1\n"
              "mine 0 9 True\n"
              "mine 2 9 True\n");
    const std::string simLog = sim.simLog();
    EXPECT_TRUE(InOrder(simLog, {"peer: command corvelle/tests/peer/hello phase 0 count 1 in plugin 2\n",
                                 "peer: command corvelle/tests/peer/hello phase 2 count 1 in plugin 2\n",
                                 "peer: command corvelle/tests/peer/hello phase 0 count 2 in plugin 2\n",
                                 "peer: command corvelle/tests/peer/hello phase 2 count 2 in plugin 2\n",
                                 "peer: message 2119630850 from 1 run 'corvelle/tests/mine'\n"}))
        << simLog;
    // The stopped run never reached the peer's handler.
    EXPECT_EQ(CountOf(simLog, "peer: command "), 4u) << simLog;
}

TEST(CommandTest, MismatchedUnregistrationsAndBadCommandRefsAreReportedNeverFatal) {
    SimFolder sim;
    sim.writeFile("Resources/plugins/Corvelle/Corvelle.ini", "[DEBUG]\nDebugCallbacks=1\nCheckCallbacks=1\n");
    sim.writeScript("CV_Errors.py", Script("Errors", "", R"(
self.cmd = XPLMCreateCommand('corvelle/tests/errors', 'Errors')
self.other = XPLMCreateCommand('corvelle/tests/other', 'Other')
print('ids %x %d %d' % (id(self), self.cmd, self.other))
self.h = self.Handler
self.err = self.OnError
XPLMSetErrorCallback(self, self.err)
print('register', XPLMRegisterCommandHandler(self, self.cmd, self.h, 1, 3),
      XPLMRegisterCommandHandler(self, self.other, self.h, 1, 3))
print('wrong refcon', XPLMUnregisterCommandHandler(self, self.cmd, self.h, 1, 4))
print('wrong side', XPLMUnregisterCommandHandler(self, self.cmd, self.h, 0, 3))
print('other command', XPLMUnregisterCommandHandler(self, self.other, self.h, 1, 3))
XPLMCommandOnce(self.cmd)
XPLMCommandOnce(self.other)
print('bad refs', XPLMCommandOnce(12345), XPLMCommandBegin(0), XPLMCommandEnd(12345),
      XPLMRegisterCommandHandler(self, 12345, self.h, 1, 0), XPLMUnregisterCommandHandler(self, 12345, self.h, 1, 0))
print('not held', XPLMCommandEnd(self.cmd))
print('missing', XPLMFindCommand('corvelle/tests/none'), XPLMCreateCommand('', 'no name'))
for call in (lambda: XPLMCommandOnce('corvelle/tests/errors'),
             lambda: XPLMRegisterCommandHandler(self, self.cmd, self.h, 1, 'refcon')):
    try:
        call()
    except TypeError:
        print('TypeError')
)",
                                            R"(
print('unregister', XPLMUnregisterCommandHandler(self, self.cmd, self.h, 1, 3))
XPLMSetErrorCallback(self, None)
)",
                                            R"(
def Handler(self, cmd, phase, refcon):
    print('handler', cmd == self.cmd, phase, refcon)
    return 1
def OnError(self, message):
    print('error:', message)
)"));
    SimRun run = sim.run({"--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    const std::string out = sim.output();
    const std::vector<std::string> lines = Lines(out);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(out.substr(out.find('\n') + 1),
              "register 1 1\n"
              "wrong refcon 1\n"
              // Found by handler and refcon; the simulator still holds the other side's handler.
              "error: XPLMUnregisterCommandHandler: no handler of corvelle/tests/errors with this callback, side "
              "and refcon\n"
              "wrong side 1\n"
              "other command 1\n"
              "handler True 0 3\n"
              "handler True 2 3\n"
              "error: XPLMCommandOnce: 0x3039 is not a command\n"
              "error: XPLMCommandBegin: (nil) is not a command\n"
              "error: XPLMCommandEnd: 0x3039 is not a command\n"
              "error: XPLMRegisterCommandHandler: 0x3039 is not a command\n"
              "error: XPLMUnregisterCommandHandler: 0x3039 is not a command\n"
              "bad refs 1 1 1 1 1\n"
              "error: XPLMCommandEnd: corvelle/tests/errors is not held\n"
              "not held 1\n"
              "error: XPLMCreateCommand: no command name\n"
              "missing 0 0\n"
              "TypeError\n"
              "TypeError\n"
              "unregister 1\n");
    const std::string log = sim.log();
    const std::string mismatch =
        "Module - XPLMUtilities, Function - XPLMUnregisterCommandHandler, Error = Script 'Errors.py' was "
        "unregistering a callback and refcon that does not exist, check refcon matches the one that was used in "
        "registering.\n";
    EXPECT_EQ(CountOf(log, mismatch), 2u) << log;

    // "ids <script id in hex> <command> <other command>"
    std::istringstream ids(lines[0].substr(4));
    std::string id, cmd, other;
    ids >> id >> cmd >> other;
    auto registered = [&](const std::string& command, int size) {
        return "XPLMRegisterCommandHandler\npScriptId = " + id + ", inCommand = " + command +
               ", inBefore = 1, inRefcon = 3\nCommandCallbackList size = " + std::to_string(size) +
               "\nXPLMRegisterCommandHandler\n";
    };
    auto unregistered = [&](const std::string& command, int before, int refcon, int size) {
        return "XPLMUnregisterCommandHandler\npScriptId = " + id + ", Script Name = Errors, inCommand = " + command +
               ", inBefore = " + std::to_string(before) + ", inRefcon = " + std::to_string(refcon) +
               "\nCommandCallbackList size = " + std::to_string(size) + "\nXPLMUnregisterCommandHandler\n";
    };
    EXPECT_TRUE(InOrder(log, {registered(cmd, 1), registered(other, 2), mismatch, unregistered(cmd, 1, 4, 2),
                              unregistered(cmd, 0, 3, 1), unregistered(other, 1, 3, 0), mismatch,
                              unregistered(cmd, 1, 3, 0)}))
        << log;
    EXPECT_NE(log.find("*** Checking Integrity of Callbacks Started. ***\n"
                       "*** Checking Integrity of Callbacks Finished. ***\n"),
              std::string::npos)
        << log;
}

TEST(CommandTest, CommandDemoExampleRunsWithTheDemoEvents) {
    SimFolder sim;
    sim.writeScript("CV_CommandDemo.py", ReadFile(std::string(EXAMPLES_DIR) + "/CV_CommandDemo.py"));
    SimRun run = sim.run({"--seconds", "5", "--events", std::string(EXAMPLES_DIR) + "/../demo-events.txt"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(),
              "CommandDemo: corvelle/demo/say_hello begins: hello!\n"
              "CommandDemo: corvelle/demo/say_hello ends after 0 held frames\n"
              "CommandDemo: corvelle/demo/say_hello begins: hello!\n"
              "CommandDemo: corvelle/demo/say_hello ends after 9 held frames\n"
              "CommandDemo: the pause command ran; the simulator is now paused\n"
              "CommandDemo: the pause command ran; the simulator is now running\n");
    EXPECT_EQ(CountOf(sim.log(), "Traceback"), 0u) << sim.log();
    EXPECT_EQ(CountOf(sim.log(), "Module - "), 0u) << sim.log();
}

}  // namespace
