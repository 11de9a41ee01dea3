// Flight loop scheduling and the drawing phases.
#include <cmath>
#include <cstdio>
#include <vector>

#include "SimTestSupport.h"
#include "XPLMDisplay.h"
#include "XPLMProcessing.h"

namespace {

class sim_Scheduler : public simtest::WorldTest {};

std::vector<std::string> gCalls;
float gNext = 0.0f;

std::string Text(const char* format, double a, double b, int c) {
    char text[128];
    std::snprintf(text, sizeof text, format, a, b, c);
    return text;
}

float Repeat(float sinceCall, float sinceLoop, int counter, void*) {
    gCalls.push_back(Text("%.3f %.3f %d", sinceCall, sinceLoop, counter));
    return gNext;
}

}  // namespace

TEST_F(sim_Scheduler, SecondsIntervalsFireAtTheFirstFrameAtOrAfterTheirTime) {
    gCalls.clear();
    gNext = 0.1f;
    XPLMRegisterFlightLoopCallback(Repeat, 0.1f, nullptr);
    RunFrames(20);  // one simulated second at 20 frames per second
    ASSERT_EQ(gCalls.size(), 10u);
    EXPECT_EQ(gCalls[0], "0.100 0.050 2");
    EXPECT_EQ(gCalls[9], "0.100 0.050 20");
    EXPECT_FLOAT_EQ(XPLMGetElapsedTime(), 1.0f);
    EXPECT_EQ(XPLMGetCycleNumber(), 20);

    // An interval between frames waits for the next frame: 0.12 s from frame 20 is frame 23.
    gCalls.clear();
    gNext = 0.0f;
    XPLMSetFlightLoopCallbackInterval(Repeat, 0.12f, 1, nullptr);
    RunFrames(5);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"0.150 0.050 23"}));

    // Relative to the last call (frame 23, 1.15 s) the loop is due at 1.25 s, which frame 25 has
    // reached already: the next frame calls it.
    XPLMSetFlightLoopCallbackInterval(Repeat, 0.1f, 0, nullptr);
    RunFrames(1);
    EXPECT_EQ(gCalls.back(), "0.150 0.050 26");
}

TEST_F(sim_Scheduler, NegativeIntervalsCountFramesAndZeroStops) {
    gCalls.clear();
    gNext = -3.0f;
    XPLMRegisterFlightLoopCallback(Repeat, -1.0f, nullptr);
    RunFrames(10);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"0.050 0.050 1", "0.150 0.050 4", "0.150 0.050 7",
                                                "0.150 0.050 10"}));
    gCalls.clear();
    gNext = 0.0f;
    RunFrames(5);  // due at frame 13, then returns 0
    EXPECT_EQ(gCalls, (std::vector<std::string>{"0.150 0.050 13"}));
    XPLMSetFlightLoopCallbackInterval(Repeat, 0.0f, 1, nullptr);
    RunFrames(20);
    EXPECT_EQ(gCalls.size(), 1u);
    EXPECT_EQ(xpsim::FlightLoopCount(), 1);  // stopped, still registered
    XPLMUnregisterFlightLoopCallback(Repeat, nullptr);
    EXPECT_EQ(xpsim::FlightLoopCount(), 0);
    XPLMUnregisterFlightLoopCallback(Repeat, nullptr);
    EXPECT_NE(simtest::LogText().find("xpsim: XPLMUnregisterFlightLoopCallback: no flight loop with this callback and refcon\n"),
              std::string::npos);
}

namespace {

XPLMFlightLoopID gLoopC = nullptr;

float Named(float, float, int counter, void* refcon) {
    const std::string name = static_cast<const char*>(refcon);
    gCalls.push_back(name + std::to_string(counter));
    if (name == "A" && counter == 2) XPLMDestroyFlightLoop(gLoopC);                 // another loop, later this frame
    if (name == "B" && counter == 3) XPLMUnregisterFlightLoopCallback(Named, refcon);  // itself
    return -1.0f;
}

}  // namespace

TEST_F(sim_Scheduler, PhasesRunInRegistrationOrderAndRemovalInsideCallbacksIsSafe) {
    gCalls.clear();
    char a[] = "A", b[] = "B", c[] = "C", d[] = "D";
    XPLMRegisterFlightLoopCallback(Named, -1.0f, b);  // legacy loops run after the flight model
    XPLMCreateFlightLoop_t params = {sizeof(XPLMCreateFlightLoop_t), xplm_FlightLoop_Phase_BeforeFlightModel, Named, a};
    XPLMFlightLoopID loopA = XPLMCreateFlightLoop(&params);
    params.refcon = c;
    gLoopC = XPLMCreateFlightLoop(&params);
    params.refcon = d;
    params.phase = xplm_FlightLoop_Phase_AfterFlightModel;
    XPLMFlightLoopID loopD = XPLMCreateFlightLoop(&params);  // created but never scheduled
    ASSERT_NE(loopA, nullptr);
    ASSERT_NE(loopD, nullptr);
    XPLMScheduleFlightLoop(loopA, -1.0f, 1);
    XPLMScheduleFlightLoop(gLoopC, -1.0f, 1);
    RunFrames(4);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"A1", "C1", "B1", "A2", "B2", "A3", "B3", "A4"}));

    // A destroyed id is no longer a flight loop.
    XPLMScheduleFlightLoop(gLoopC, 1.0f, 1);
    EXPECT_NE(simtest::LogText().find("xpsim: XPLMScheduleFlightLoop: not a flight loop id\n"), std::string::npos);

    // Bad creation parameters are refused.
    params.structSize = 8;
    EXPECT_EQ(XPLMCreateFlightLoop(&params), nullptr);
    params.structSize = sizeof(XPLMCreateFlightLoop_t);
    params.phase = 7;
    EXPECT_EQ(XPLMCreateFlightLoop(&params), nullptr);
    EXPECT_NE(simtest::LogText().find("xpsim: XPLMCreateFlightLoop: structSize 8 is smaller than 24\n"),
              std::string::npos);
    EXPECT_NE(simtest::LogText().find("xpsim: XPLMCreateFlightLoop: unknown phase 7\n"), std::string::npos);
}

namespace {

int Draw(XPLMDrawingPhase phase, int before, void* refcon) {
    gCalls.push_back(std::to_string(phase) + (before ? "b" : "a"));
    // The terrain before-callback keeps the sim from drawing terrain from frame 2 on.
    return !(phase == xplm_Phase_Terrain && XPLMGetCycleNumber() >= 2);
}

}  // namespace

TEST_F(sim_Scheduler, DrawingPhasesRunInOrderAndBeforeCallbacksCanSuppressTheSim) {
    gCalls.clear();
    EXPECT_EQ(XPLMRegisterDrawCallback(Draw, xplm_Phase_Window, 0, nullptr), 1);
    EXPECT_EQ(XPLMRegisterDrawCallback(Draw, xplm_Phase_Terrain, 1, nullptr), 1);
    EXPECT_EQ(XPLMRegisterDrawCallback(Draw, xplm_Phase_FirstScene, 0, nullptr), 1);
    EXPECT_EQ(XPLMRegisterDrawCallback(Draw, xplm_Phase_Window, 1, nullptr), 1);
    EXPECT_EQ(XPLMRegisterDrawCallback(Draw, xplm_Phase_LocalMap2D, 1, nullptr), 1);  // the map is never open
    EXPECT_EQ(XPLMRegisterDrawCallback(Draw, 33, 1, nullptr), 0);
    RunFrames(1);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"0a", "5b", "50b", "50a"}));
    RunFrames(2);
    EXPECT_EQ(xpsim::SimDrawnFrames(xplm_Phase_Terrain), 1);
    EXPECT_EQ(xpsim::SimSuppressedFrames(xplm_Phase_Terrain), 2);
    EXPECT_EQ(xpsim::SimDrawnFrames(xplm_Phase_Window), 3);
    EXPECT_NE(simtest::LogText().find(
                  "xpsim: the sim's own drawing of xplm_Phase_Terrain is suppressed by a before-callback from frame 2\n"),
              std::string::npos);

    EXPECT_EQ(XPLMUnregisterDrawCallback(Draw, xplm_Phase_Terrain, 1, nullptr), 1);
    EXPECT_EQ(XPLMUnregisterDrawCallback(Draw, xplm_Phase_Terrain, 1, nullptr), 0);
    RunFrames(1);
    EXPECT_EQ(xpsim::SimDrawnFrames(xplm_Phase_Terrain), 2);
    EXPECT_NE(simtest::LogText().find("xpsim: the sim's own drawing of xplm_Phase_Terrain resumes from frame 4\n"),
              std::string::npos);
}
