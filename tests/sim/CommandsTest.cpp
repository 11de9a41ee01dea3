// Commands: finding and creating them, their phases and handler chains, the pause toggle and misuse.
#include <vector>

#include "SimTestSupport.h"
#include "XPLMDataAccess.h"
#include "XPLMPlugin.h"
#include "XPLMUtilities.h"
#include "world/Commands.h"

namespace {

using simtest::LogText;

int gRecursions = 0;

class sim_Commands : public simtest::WorldTest {
protected:
    void SetUp() override {
        WorldTest::SetUp();
        xpsim::LoadStandardDataRefs();
        gCalls.clear();
        gStop.clear();
        gUnregister = nullptr;
        gRecursions = 0;
    }

public:
    static std::vector<std::string> gCalls;
    static std::string gStop;  // the handler that answers 0
    static XPLMCommandRef gUnregister;
};

std::vector<std::string> sim_Commands::gCalls;
std::string sim_Commands::gStop;
XPLMCommandRef sim_Commands::gUnregister = nullptr;

char kH1[] = "H1", kH2[] = "H2", kH3[] = "H3", kH4[] = "H4";

int Handle(XPLMCommandRef, XPLMCommandPhase phase, void* refcon) {
    const std::string name = static_cast<const char*>(refcon);
    sim_Commands::gCalls.push_back(name + " " + std::to_string(phase) + " paused " +
                                   std::to_string(XPLMGetDatai(XPLMFindDataRef("sim/time/paused"))) + " frame " +
                                   std::to_string(xpsim::FrameNumber()) + " in " + std::to_string(XPLMGetMyID()));
    if (name == "H1" && sim_Commands::gUnregister != nullptr) {
        XPLMUnregisterCommandHandler(sim_Commands::gUnregister, Handle, 1, kH2);
        XPLMRegisterCommandHandler(sim_Commands::gUnregister, Handle, 0, kH4);  // from the next phase on
        sim_Commands::gUnregister = nullptr;
    }
    return name == sim_Commands::gStop ? 0 : 1;
}

int RunsItself(XPLMCommandRef command, XPLMCommandPhase, void*) {
    ++gRecursions;
    XPLMCommandOnce(command);
    return 1;
}

void RecordError(const char* message) {
    sim_Commands::gCalls.push_back("error in " + std::to_string(XPLMGetMyID()) + ": " + message);
}

}  // namespace

TEST_F(sim_Commands, HandlersRunBeforeTheSimThenAfterInEveryPhase) {
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    const int two = simtest::AddEnabledPlugin("/p/two.xpl", simtest::StartAsPlugin);
    XPLMCommandRef pause = XPLMFindCommand("sim/operation/pause_toggle");
    ASSERT_NE(pause, nullptr);
    EXPECT_EQ(XPLMCreateCommand("sim/operation/pause_toggle", "Mine now"), pause);
    EXPECT_EQ(XPLMFindCommand("sim/operation/no_such_thing"), nullptr);
    XPLMCommandRef custom;
    {
        xpsim::PluginContext context(one);
        custom = XPLMCreateCommand("corvelle/test/hold", "Hold me.");
        ASSERT_NE(custom, nullptr);
        XPLMRegisterCommandHandler(pause, Handle, 0, kH3);  // after the sim, though registered first
        XPLMRegisterCommandHandler(pause, Handle, 1, kH1);
    }
    EXPECT_EQ(XPLMCreateCommand("corvelle/test/hold", "Other"), custom);
    EXPECT_EQ(XPLMFindCommand("corvelle/test/hold"), custom);
    {
        xpsim::PluginContext context(two);
        XPLMRegisterCommandHandler(pause, Handle, 1, kH2);
        XPLMRegisterCommandHandler(custom, Handle, 1, kH4);
    }
    XPLMCommandOnce(pause);
    EXPECT_EQ(gCalls, (std::vector<std::string>{
                          "H1 0 paused 0 frame 0 in 1", "H2 0 paused 0 frame 0 in 2", "H3 0 paused 1 frame 0 in 1",
                          "H1 2 paused 1 frame 0 in 1", "H2 2 paused 1 frame 0 in 2", "H3 2 paused 1 frame 0 in 1"}));

    // Held: a continue at the start of every later frame, until the end. Begun as events are, between
    // the start of a frame and its callbacks.
    gCalls.clear();
    xpsim::BeginFrame();
    XPLMCommandBegin(custom);
    xpsim::RunFrameCallbacks();
    EXPECT_EQ(xpsim::HeldCommands(), (std::vector<std::string>{"corvelle/test/hold"}));
    RunFrames(2);
    XPLMCommandEnd(custom);
    RunFrames(1);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"H4 0 paused 1 frame 1 in 2", "H4 1 paused 1 frame 2 in 2",
                                                "H4 1 paused 1 frame 3 in 2", "H4 2 paused 1 frame 3 in 2"}));
    EXPECT_TRUE(xpsim::HeldCommands().empty());
}

TEST_F(sim_Commands, AZeroStopsTheRestOfThePhase) {
    XPLMCommandRef pause = XPLMFindCommand("sim/operation/pause_toggle");
    XPLMRegisterCommandHandler(pause, Handle, 1, kH1);
    XPLMRegisterCommandHandler(pause, Handle, 1, kH2);
    XPLMRegisterCommandHandler(pause, Handle, 0, kH3);
    // A before-handler's 0: no later handler, and the sim does not act.
    gStop = "H1";
    XPLMCommandOnce(pause);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"H1 0 paused 0 frame 0 in 0", "H1 2 paused 0 frame 0 in 0"}));
    // An after-handler's 0 stops the after-handlers behind it; the sim has acted.
    gCalls.clear();
    gStop = "H3";
    XPLMRegisterCommandHandler(pause, Handle, 0, kH4);
    XPLMCommandBegin(pause);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"H1 0 paused 0 frame 0 in 0", "H2 0 paused 0 frame 0 in 0",
                                                "H3 0 paused 1 frame 0 in 0"}));
    // Handlers removed and added during a phase: the removed one is not called again, the new one
    // joins from the next phase.
    gCalls.clear();
    gStop.clear();
    XPLMUnregisterCommandHandler(pause, Handle, 0, kH4);
    gUnregister = pause;
    XPLMCommandEnd(pause);
    XPLMCommandOnce(pause);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"H1 2 paused 1 frame 0 in 0", "H3 2 paused 1 frame 0 in 0",
                                                "H1 0 paused 1 frame 0 in 0", "H3 0 paused 0 frame 0 in 0",
                                                "H4 0 paused 0 frame 0 in 0", "H1 2 paused 0 frame 0 in 0",
                                                "H3 2 paused 0 frame 0 in 0", "H4 2 paused 0 frame 0 in 0"}));
}

TEST_F(sim_Commands, ThePauseToggleStopsFlightTimeAndViewCommandsOnlySayWhatTheyDo) {
    XPLMDataRef flight = XPLMFindDataRef("sim/time/total_flight_time_sec");
    XPLMDataRef running = XPLMFindDataRef("sim/time/total_running_time_sec");
    RunFrames(2);
    std::string error;
    ASSERT_TRUE(xpsim::RunCommandByName("sim/operation/pause_toggle", xpsim::CommandRun::Once, error)) << error;
    RunFrames(4);
    EXPECT_FLOAT_EQ(XPLMGetDataf(flight), 0.1f);
    EXPECT_FLOAT_EQ(XPLMGetDataf(running), 0.3f);
    ASSERT_TRUE(xpsim::RunCommandByName("sim/operation/pause_toggle", xpsim::CommandRun::Begin, error));
    EXPECT_FALSE(xpsim::RunCommandByName("sim/operation/pause_toggle", xpsim::CommandRun::Begin, error));
    EXPECT_EQ(error, "sim/operation/pause_toggle is held already");
    RunFrames(2);  // held: no second toggle
    ASSERT_TRUE(xpsim::RunCommandByName("sim/operation/pause_toggle", xpsim::CommandRun::End, error));
    EXPECT_FLOAT_EQ(XPLMGetDataf(flight), 0.2f);
    ASSERT_TRUE(xpsim::RunCommandByName("sim/view/default_view", xpsim::CommandRun::Once, error));
    ASSERT_TRUE(xpsim::RunCommandByName("sim/none/none", xpsim::CommandRun::Once, error));
    EXPECT_FALSE(xpsim::RunCommandByName("sim/view/default_view", xpsim::CommandRun::End, error));
    EXPECT_EQ(error, "sim/view/default_view is not held");
    EXPECT_FALSE(xpsim::RunCommandByName("sim/nothing/here", xpsim::CommandRun::Once, error));
    EXPECT_EQ(error, "no command named sim/nothing/here");
    EXPECT_NE(LogText().find("xpsim: sim/operation/pause_toggle: the sim is paused at frame 2\n"
                             "xpsim: sim/operation/pause_toggle: the sim runs again from frame 6\n"
                             "xpsim: sim/view/default_view: the view goes back to the default view\n"
                             "xpsim: sim/none/none: nothing happens\n"),
              std::string::npos);
}

TEST_F(sim_Commands, MisuseIsReportedAndAPluginsHandlersAndHoldsGoWithIt) {
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    XPLMCommandRef chase = XPLMFindCommand("sim/view/chase");
    XPLMRegisterCommandHandler(chase, Handle, 0, kH3);
    {
        xpsim::PluginContext context(one);
        XPLMSetErrorCallback(RecordError);
        XPLMCommandRef notACommand = XPLMFindDataRef("sim/time/paused");
        XPLMCommandOnce(notACommand);
        XPLMRegisterCommandHandler(nullptr, Handle, 1, nullptr);
        XPLMRegisterCommandHandler(chase, nullptr, 1, nullptr);
        XPLMUnregisterCommandHandler(chase, Handle, 1, kH3);  // H3 runs after the sim
        EXPECT_EQ(XPLMCreateCommand("", "nameless"), nullptr);
        XPLMCommandEnd(chase);
        XPLMRegisterCommandHandler(chase, Handle, 1, kH1);
        XPLMCommandBegin(chase);
        XPLMCommandBegin(chase);
    }
    char text[64];
    std::snprintf(text, sizeof text, "%p", XPLMFindDataRef("sim/time/paused"));
    EXPECT_EQ(gCalls, (std::vector<std::string>{
                          "error in 1: XPLMCommandOnce: " + std::string(text) + " is not a command",
                          "error in 1: XPLMRegisterCommandHandler: (nil) is not a command",
                          "error in 1: XPLMRegisterCommandHandler: no handler for sim/view/chase",
                          "error in 1: XPLMUnregisterCommandHandler: no handler of sim/view/chase with this "
                          "callback, side and refcon",
                          "error in 1: XPLMCreateCommand: no command name",
                          "error in 1: XPLMCommandEnd: sim/view/chase is not held",
                          "H1 0 paused 0 frame 0 in 1", "H3 0 paused 0 frame 0 in 0",
                          "error in 1: XPLMCommandBegin: sim/view/chase is held already; end it first"}));

    // A handler that runs its own command on every phase is stopped, not followed down the stack.
    XPLMCommandRef loop = XPLMCreateCommand("corvelle/test/loop", "Runs itself.");
    XPLMRegisterCommandHandler(loop, RunsItself, 1, nullptr);
    XPLMCommandOnce(loop);
    EXPECT_EQ(gRecursions, 64);  // 32 deep from the begin, 32 from the end
    EXPECT_NE(LogText().find("xpsim: corvelle/test/loop: commands run from command handlers nest 32 deep; nested "
                             "runs are refused\n"),
              std::string::npos);
    XPLMUnregisterCommandHandler(loop, RunsItself, 1, nullptr);

    // The plugin goes while holding the command: its handler is removed and the others see the end.
    gCalls.clear();
    xpsim::RemovePlugin(one);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"H3 2 paused 0 frame 0 in 0"}));
    EXPECT_TRUE(xpsim::HeldCommands().empty());
    EXPECT_NE(LogText().find("xpsim: sim/view/chase ends: plugin 1 was holding it\n"
                             "xpsim: plugin 1 left registered: 1 command handler; removed\n"),
              std::string::npos);
}
