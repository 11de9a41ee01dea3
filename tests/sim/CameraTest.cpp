// The camera: per-frame control callbacks, giving control up, take-overs, view changes and misuse.
#include <string>
#include <vector>

#include "SimTestSupport.h"
#include "XPLMCamera.h"
#include "world/Camera.h"
#include "world/Commands.h"

namespace {

class sim_Camera : public simtest::WorldTest {};

struct Call {
    int plugin;        // the current plugin during the call
    bool hasPosition;  // false for a null position
    int losing;
    long refcon;
    float x;
};
std::vector<Call> gCalls;
int gStopAfter = 0;  // answer 0 on this call (counting from 1); 0 never

int Mover(XPLMCameraPosition_t* position, int losing, void* refcon) {
    gCalls.push_back({xpsim::CurrentPlugin(), position != nullptr, losing, long(reinterpret_cast<intptr_t>(refcon)),
                      position ? position->x : 0.0f});
    if (position == nullptr) return 0;
    position->x += 1.0f;
    position->zoom = 2.0f;
    return int(gCalls.size()) == gStopAfter ? 0 : 1;
}

void* Refcon(long value) { return reinterpret_cast<void*>(intptr_t(value)); }

void Control(int plugin, XPLMCameraControlDuration howLong, long refcon) {
    xpsim::PluginContext context(plugin);
    XPLMControlCamera(howLong, Mover, Refcon(refcon));
}

}  // namespace

TEST_F(sim_Camera, ControllerIsCalledEveryFrameUntilItAnswersZero) {
    gCalls.clear();
    gStopAfter = 3;
    const int plugin = simtest::AddEnabledPlugin("/a.xpl", simtest::StartAsPlugin);
    XPLMCameraPosition_t view;
    ASSERT_TRUE(xpsim::ViewPosition("sim/view/default_view", view));
    XPLMCameraControlDuration howLong = 99;
    EXPECT_EQ(XPLMIsCameraBeingControlled(&howLong), 0);
    EXPECT_EQ(howLong, 0);
    EXPECT_EQ(XPLMIsCameraBeingControlled(nullptr), 0);

    Control(plugin, xplm_ControlCameraForever, 7);
    EXPECT_EQ(XPLMIsCameraBeingControlled(&howLong), 1);
    EXPECT_EQ(howLong, xplm_ControlCameraForever);
    EXPECT_TRUE(gCalls.empty());  // the first call comes with the next frame

    RunFrames(2);
    ASSERT_EQ(gCalls.size(), 2u);
    // Each call starts from the position the previous one left, in the plugin's context.
    EXPECT_EQ(gCalls[0].plugin, plugin);
    EXPECT_TRUE(gCalls[0].hasPosition);
    EXPECT_EQ(gCalls[0].losing, 0);
    EXPECT_EQ(gCalls[0].refcon, 7);
    EXPECT_FLOAT_EQ(gCalls[0].x, view.x);
    EXPECT_FLOAT_EQ(gCalls[1].x, view.x + 1.0f);
    XPLMCameraPosition_t read;
    XPLMReadCameraPosition(&read);
    EXPECT_FLOAT_EQ(read.x, view.x + 2.0f);
    EXPECT_FLOAT_EQ(read.zoom, 2.0f);
    EXPECT_FLOAT_EQ(xpsim::CameraPosition().x, view.x + 2.0f);
    EXPECT_EQ(xpsim::CameraController(), plugin);

    // The third call answers 0: its change is dropped, the sim shows its view, nobody is called again.
    RunFrames(3);
    EXPECT_EQ(gCalls.size(), 3u);
    EXPECT_EQ(xpsim::CameraController(), xpsim::kSimId);
    EXPECT_EQ(xpsim::CameraControlDuration(), 0);
    XPLMReadCameraPosition(&read);
    EXPECT_FLOAT_EQ(read.x, view.x);
    EXPECT_FLOAT_EQ(read.zoom, view.zoom);
    const std::string log = simtest::LogText();
    const size_t taken = log.find("xpsim: plugin 1 takes control of the camera forever\n");
    const size_t given = log.find("xpsim: plugin 1 gives up the camera (its callback returned 0); the sim shows "
                                  "sim/view/default_view again\n");
    ASSERT_NE(taken, std::string::npos) << log;
    ASSERT_NE(given, std::string::npos) << log;
    EXPECT_LT(taken, given);
}

TEST_F(sim_Camera, TakeOverTellsTheOldControllerOnceAndOnlyTheOwnerMayGiveUp) {
    gCalls.clear();
    gStopAfter = 0;
    const int first = simtest::AddEnabledPlugin("/a.xpl", simtest::StartAsPlugin);
    const int second = simtest::AddEnabledPlugin("/b.xpl", simtest::StartAsPlugin);
    Control(first, xplm_ControlCameraForever, 1);
    RunFrames(1);
    Control(second, xplm_ControlCameraUntilViewChanges, 2);
    // Told at once, in its own context, with no position.
    ASSERT_EQ(gCalls.size(), 2u);
    EXPECT_EQ(gCalls[1].plugin, first);
    EXPECT_FALSE(gCalls[1].hasPosition);
    EXPECT_EQ(gCalls[1].losing, 1);
    EXPECT_EQ(gCalls[1].refcon, 1);
    RunFrames(2);
    ASSERT_EQ(gCalls.size(), 4u);
    EXPECT_EQ(gCalls[2].plugin, second);
    EXPECT_EQ(gCalls[3].refcon, 2);
    EXPECT_NE(simtest::LogText().find("xpsim: plugin 2 takes control of the camera until the view changes from plugin 1\n"),
              std::string::npos);

    // The former controller cannot end someone else's control.
    {
        xpsim::PluginContext context(first);
        XPLMDontControlCamera();
    }
    EXPECT_EQ(xpsim::CameraController(), second);
    EXPECT_NE(simtest::LogText().find("xpsim: XPLMDontControlCamera: plugin 2 controls the camera, not plugin 1; "
                                      "left as it is\n"),
              std::string::npos);
    // The owner's XPLMDontControlCamera does not call its callback.
    {
        xpsim::PluginContext context(second);
        XPLMDontControlCamera();
        XPLMDontControlCamera();  // nothing left to give up: no report
    }
    EXPECT_EQ(xpsim::CameraController(), xpsim::kSimId);
    RunFrames(2);
    EXPECT_EQ(gCalls.size(), 4u);
    EXPECT_EQ(simtest::LogText().find("not plugin 2"), std::string::npos);
}

TEST_F(sim_Camera, ViewChangeEndsOnlyControlUntilTheViewChanges) {
    gCalls.clear();
    gStopAfter = 0;
    const int plugin = simtest::AddEnabledPlugin("/a.xpl", simtest::StartAsPlugin);
    std::string error;
    Control(plugin, xplm_ControlCameraForever, 3);
    RunFrames(1);
    ASSERT_TRUE(xpsim::RunCommandByName("sim/view/chase", xpsim::CommandRun::Once, error)) << error;
    EXPECT_EQ(xpsim::CameraController(), plugin);  // forever survives the view change
    EXPECT_EQ(xpsim::CameraView(), "sim/view/chase");
    EXPECT_EQ(gCalls.size(), 1u);

    Control(plugin, xplm_ControlCameraUntilViewChanges, 3);  // the same registration: only the duration changes
    EXPECT_EQ(gCalls.size(), 1u);
    EXPECT_EQ(xpsim::CameraControlDuration(), xplm_ControlCameraUntilViewChanges);
    ASSERT_TRUE(xpsim::RunCommandByName("sim/view/default_view", xpsim::CommandRun::Once, error)) << error;
    ASSERT_EQ(gCalls.size(), 2u);
    EXPECT_FALSE(gCalls[1].hasPosition);
    EXPECT_EQ(gCalls[1].losing, 1);
    EXPECT_EQ(xpsim::CameraController(), xpsim::kSimId);
    XPLMCameraPosition_t view, read;
    ASSERT_TRUE(xpsim::ViewPosition("sim/view/default_view", view));
    XPLMReadCameraPosition(&read);
    EXPECT_FLOAT_EQ(read.x, view.x);
    EXPECT_FLOAT_EQ(read.zoom, view.zoom);
    EXPECT_NE(simtest::LogText().find("xpsim: plugin 1 loses the camera: the view changed to sim/view/default_view; "
                                      "the sim shows sim/view/default_view again\n"),
              std::string::npos);

    // Without a controller a view command moves the camera to that view.
    ASSERT_TRUE(xpsim::RunCommandByName("sim/view/chase", xpsim::CommandRun::Once, error)) << error;
    ASSERT_TRUE(xpsim::ViewPosition("sim/view/chase", view));
    EXPECT_FLOAT_EQ(xpsim::CameraPosition().z, view.z);
    EXPECT_FLOAT_EQ(xpsim::CameraPosition().pitch, view.pitch);
}

TEST_F(sim_Camera, MisuseIsReportedAndDisabledOrUnloadedControllersLoseTheCamera) {
    gCalls.clear();
    gStopAfter = 0;
    const int plugin = simtest::AddEnabledPlugin("/a.xpl", simtest::StartAsPlugin);
    {
        xpsim::PluginContext context(plugin);
        XPLMControlCamera(xplm_ControlCameraForever, nullptr, nullptr);
        XPLMControlCamera(5, Mover, nullptr);
        XPLMReadCameraPosition(nullptr);
    }
    EXPECT_EQ(xpsim::CameraController(), xpsim::kSimId);
    const std::string log = simtest::LogText();
    EXPECT_NE(log.find("xpsim: XPLMControlCamera: no camera control callback\n"), std::string::npos) << log;
    EXPECT_NE(log.find("xpsim: XPLMControlCamera: unknown duration 5\n"), std::string::npos) << log;
    EXPECT_NE(log.find("xpsim: XPLMReadCameraPosition: no camera position record\n"), std::string::npos) << log;

    Control(plugin, xplm_ControlCameraForever, 0);
    xpsim::DisablePlugin(plugin);
    RunFrames(2);
    EXPECT_TRUE(gCalls.empty());
    EXPECT_EQ(xpsim::CameraController(), xpsim::kSimId);
    EXPECT_NE(simtest::LogText().find("xpsim: plugin 1 is disabled and loses the camera"), std::string::npos);

    ASSERT_TRUE(xpsim::EnablePlugin(plugin));
    Control(plugin, xplm_ControlCameraForever, 0);
    xpsim::RemovePlugin(plugin);
    EXPECT_EQ(xpsim::CameraController(), xpsim::kSimId);
    RunFrames(1);
    EXPECT_TRUE(gCalls.empty());
    EXPECT_NE(simtest::LogText().find("left registered: 1 camera control; removed\n"), std::string::npos)
        << simtest::LogText();
}
