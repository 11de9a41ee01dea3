// Numbers at the ends of their types, NaN and infinities from plugins: every SDK function answers them
// with a defined result (a misuse report, or a clamped answer), never with undefined behaviour.
#include <limits.h>
#include <stdint.h>

#include <array>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "SimTestSupport.h"
#include "XPLMDataAccess.h"
#include "XPLMGraphics.h"
#include "XPLMProcessing.h"
#include "XPStandardWidgets.h"
#include "XPUIGraphics.h"
#include "XPWidgetUtils.h"
#include "XPWidgets.h"
#include "world/Drawing.h"

namespace {

using simtest::LogText;

class sim_Hostile : public simtest::WorldTest {
protected:
    void SetUp() override {
        WorldTest::SetUp();
        plugin_ = simtest::AddEnabledPlugin("/plugins/hostile.xpl", simtest::StartAsPlugin);
    }

    // Sends a mouse message straight to a widget, as the widget system does; answers the widget's reply.
    static int Mouse(XPWidgetID widget, XPWidgetMessage message, int x, int y, int delta = 0) {
        XPMouseState_t mouse = {x, y, 0, delta};
        return XPSendMessageToWidget(widget, message, xpMode_Direct, reinterpret_cast<intptr_t>(&mouse), 0);
    }

    static std::array<int, 4> Geometry(XPWidgetID widget) {
        std::array<int, 4> g{};
        XPGetWidgetGeometry(widget, &g[0], &g[1], &g[2], &g[3]);
        return g;
    }

    int plugin_ = 0;
};

// The parts of a track: vertical, down button, down page, thumb, up page, up button.
using Parts = std::array<int, 6>;

TEST_F(sim_Hostile, TrackMetricsKeepEveryPartWithinTheTrack) {
    const struct {
        int x1, y1, x2, y2, min, max, value;
        XPTrackStyle style;
        Parts parts;
    } cases[] = {
        {0, 0, 100, 16, -1, INT_MAX, INT_MAX, xpTrack_ScrollBar, {0, 16, 52, 16, 0, 16}},
        {0, 0, 100, 16, -1, INT_MAX, -1, xpTrack_ScrollBar, {0, 16, 0, 16, 52, 16}},
        {0, 0, 100, 16, INT_MIN, INT_MAX, 0, xpTrack_ScrollBar, {0, 16, 26, 16, 26, 16}},
        {0, 0, 100, 16, INT_MAX, INT_MIN, INT_MIN, xpTrack_ScrollBar, {0, 16, 0, 16, 52, 16}},
        // A value outside the range counts as its nearer end.
        {0, 0, 100, 16, 0, 10, INT_MIN, xpTrack_Slider, {0, 0, 0, 16, 84, 0}},
        {0, 0, 100, 16, 0, 10, INT_MAX, xpTrack_Progress, {0, 0, 100, 0, 0, 0}},
        // Corners as far apart as int allows: the length is cut to INT_MAX.
        {INT_MIN, 0, INT_MAX, 16, INT_MIN, INT_MAX, INT_MAX, xpTrack_Slider, {0, 0, INT_MAX - 16, 16, 0, 0}},
        {0, INT_MAX, 16, INT_MIN, 0, 2, 1, xpTrack_ScrollBar,
         {1, 16, (INT_MAX - 48) / 2, 16, (INT_MAX - 48) / 2 + 1, 16}},
        {INT_MAX, INT_MIN, INT_MIN, INT_MAX, 0, 1, 1, xpTrack_ScrollBar,
         {0, INT_MAX / 3, 0, INT_MAX - 2 * (INT_MAX / 3), 0, INT_MAX / 3}},
        {7, 7, 7, 7, INT_MIN, INT_MAX, 0, xpTrack_ScrollBar, {0, 0, 0, 0, 0, 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.x1) + "," + std::to_string(c.y1) + " " + std::to_string(c.x2) + "," +
                     std::to_string(c.y2) + " range " + std::to_string(c.min) + ".." + std::to_string(c.max) +
                     " value " + std::to_string(c.value));
        Parts parts{};
        XPGetTrackMetrics(c.x1, c.y1, c.x2, c.y2, c.min, c.max, c.value, c.style, &parts[0], &parts[1], &parts[2],
                          &parts[3], &parts[4], &parts[5]);
        EXPECT_EQ(parts, c.parts);
    }
}

TEST_F(sim_Hostile, WidgetGeometryAndItsChangesSaturateAtTheIntRange) {
    xpsim::PluginContext context(plugin_);
    static std::vector<std::array<int, 4>> changes;
    changes.clear();
    XPWidgetID window = XPCreateWidget(0, 100, 100, 0, 1, "w", 1, nullptr, xpWidgetClass_SubWindow);
    XPAddWidgetCallback(window, [](XPWidgetMessage message, XPWidgetID, intptr_t, intptr_t param2) {
        if (message != xpMsg_Reshape) return 0;
        const auto* change = reinterpret_cast<const XPWidgetGeometryChange_t*>(param2);
        changes.push_back({change->dx, change->dy, change->dwidth, change->dheight});
        return 0;
    });
    XPUMoveWidgetBy(window, INT_MAX, INT_MIN);
    EXPECT_EQ(Geometry(window), (std::array<int, 4>{INT_MAX, INT_MIN + 100, INT_MAX, INT_MIN}));
    XPSetWidgetGeometry(window, INT_MIN, INT_MAX, INT_MAX, INT_MIN);
    XPUMoveWidgetBy(window, INT_MIN, INT_MIN);
    EXPECT_EQ(Geometry(window), (std::array<int, 4>{INT_MIN, -1, -1, INT_MIN}));
    EXPECT_EQ(changes, (std::vector<std::array<int, 4>>{{INT_MAX, INT_MIN, -100, 0},
                                                        {INT_MIN, INT_MAX, INT_MAX, INT_MAX},
                                                        {0, INT_MIN, INT_MIN, INT_MIN}}));

    // Dragged by its title bar from the bottom of the int range to the top: it moves as far as it can.
    XPWidgetID main = XPCreateWidget(INT_MIN, INT_MIN + 10, INT_MIN + 100, INT_MIN, 1, "m", 1, nullptr,
                                     xpWidgetClass_MainWindow);
    XPSetWidgetProperty(main, xpProperty_MainWindowHasCloseBoxes, 1);
    EXPECT_EQ(Mouse(main, xpMsg_MouseDown, INT_MIN + 50, INT_MIN + 5), 1);
    EXPECT_EQ(XPGetWidgetProperty(main, xpProperty_Dragging, nullptr), 1);
    EXPECT_EQ(Mouse(main, xpMsg_MouseUp, INT_MAX, INT_MAX), 1);
    EXPECT_EQ(Geometry(main), (std::array<int, 4>{INT_MAX - 50, INT_MAX, INT_MAX, INT_MAX - 10}));
    // A grip set far off the widget is held within the int range's width of it: the widget goes as far
    // as it can towards where that puts it, each edge stopping at the end of the int range.
    XPSetWidgetProperty(main, xpProperty_Dragging, 1);
    XPSetWidgetProperty(main, xpProperty_DragXOff, INTPTR_MIN);
    XPSetWidgetProperty(main, xpProperty_DragYOff, INTPTR_MAX);
    EXPECT_EQ(Mouse(main, xpMsg_MouseDrag, INT_MIN, INT_MIN), 1);
    EXPECT_EQ(Geometry(main), (std::array<int, 4>{INT_MAX, INT_MIN, INT_MAX, INT_MIN}));
}

TEST_F(sim_Hostile, ScrollBarPositionsStayInTheirRangeWhateverTheStepsAndTheMouse) {
    xpsim::PluginContext context(plugin_);
    // Horizontal, 200 long: buttons 16, thumb 16, 152 for the pages; the mouse acts 100 pixels in.
    XPWidgetID bar = XPCreateWidget(100, 16, 300, 0, 1, "", 1, nullptr, xpWidgetClass_ScrollBar);
    XPSetWidgetProperty(bar, xpProperty_ScrollBarMin, INTPTR_MIN);
    XPSetWidgetProperty(bar, xpProperty_ScrollBarMax, INTPTR_MAX);
    XPSetWidgetProperty(bar, xpProperty_ScrollBarPageAmount, INTPTR_MAX);
    auto position = [&] { return XPGetWidgetProperty(bar, xpProperty_ScrollBarSliderPosition, nullptr); };
    auto click = [&](int x, int y, int delta = 0) {
        Mouse(bar, delta ? xpMsg_MouseWheel : xpMsg_MouseDown, x, y, delta);
        if (!delta) Mouse(bar, xpMsg_MouseUp, x, y);
        return position();
    };
    XPSetWidgetProperty(bar, xpProperty_ScrollBarSliderPosition, 1);
    EXPECT_EQ(click(250, 8), INTPTR_MAX);  // up page: 1 + a page
    EXPECT_EQ(click(295, 8), INTPTR_MAX);  // up button
    EXPECT_EQ(click(105, 8), INTPTR_MAX - 1);
    EXPECT_EQ(click(150, 8), -1);  // down page
    EXPECT_EQ(click(150, 8), INTPTR_MIN);
    EXPECT_EQ(click(105, 8), INTPTR_MIN);
    EXPECT_EQ(click(150, 8, INT_MIN), INTPTR_MIN);  // the wheel
    EXPECT_EQ(click(150, 8, INT_MAX), INTPTR_MIN + INT_MAX);
    // The thumb, held and dragged to either end of the int range and back to the middle.
    XPSetWidgetProperty(bar, xpProperty_ScrollBarSliderPosition, 0);
    Mouse(bar, xpMsg_MouseDown, 200, 8);
    Mouse(bar, xpMsg_MouseDrag, INT_MIN, INT_MIN);
    EXPECT_EQ(position(), INTPTR_MIN);
    Mouse(bar, xpMsg_MouseDrag, INT_MAX, INT_MAX);
    EXPECT_EQ(position(), INTPTR_MAX);
    Mouse(bar, xpMsg_MouseUp, 200, 8);
    EXPECT_EQ(position(), 0);

    // A vertical bar at the far ends of the int range, turned by the wheel's most negative step.
    XPWidgetID tall =
        XPCreateWidget(INT_MIN, INT_MAX, INT_MIN + 16, INT_MIN, 1, "", 1, nullptr, xpWidgetClass_ScrollBar);
    auto tallPosition = [&] { return XPGetWidgetProperty(tall, xpProperty_ScrollBarSliderPosition, nullptr); };
    XPSetWidgetProperty(tall, xpProperty_ScrollBarSliderPosition, 50);
    Mouse(tall, xpMsg_MouseWheel, INT_MIN, INT_MAX, INT_MIN);
    EXPECT_EQ(tallPosition(), 100);
    Mouse(tall, xpMsg_MouseDown, INT_MAX, INT_MAX);  // the top: its down button
    EXPECT_EQ(tallPosition(), 99);
    Mouse(tall, xpMsg_MouseDown, INT_MAX, INT_MIN);  // the bottom, the whole int range away: its up button
    EXPECT_EQ(tallPosition(), 100);
}

TEST_F(sim_Hostile, FlightLoopIntervalsBeyondAnyFrameNeverComeDue) {
    static std::vector<float> calls;
    calls.clear();
    XPLMFlightLoop_f loop = [](float, float, int, void* refcon) {
        calls.push_back(*static_cast<float*>(refcon));
        return *static_cast<float*>(refcon);
    };
    static float intervals[] = {INFINITY, -INFINITY, 3e38f, -3e38f, NAN, -1.0f};
    {
        xpsim::PluginContext context(plugin_);
        for (float& interval : intervals) XPLMRegisterFlightLoopCallback(loop, interval, &interval);
    }
    RunFrames(3);
    EXPECT_EQ(calls, std::vector<float>({-1.0f, -1.0f, -1.0f}));
    EXPECT_NE(LogText().find("XPLMRegisterFlightLoopCallback: the interval is not a number"), std::string::npos);
    // A loop asking for an infinite interval from its callback is not called again.
    intervals[5] = INFINITY;
    RunFrames(3);
    EXPECT_EQ(calls.size(), 4u);
}

TEST_F(sim_Hostile, TextNumbersAndDataAtTheEndsOfTheirTypes) {
    xpsim::PluginContext context(plugin_);
    EXPECT_EQ(XPLMMeasureString(xplmFont_Basic, "abc", INT_MAX), 21.0f);
    EXPECT_EQ(XPLMMeasureString(xplmFont_Basic, "abc", INT_MIN), 0.0f);
    EXPECT_EQ(XPLMMeasureString(INT_MIN, "abc", 3), 0.0f);
    float white[3] = {1, 1, NAN};
    {
        const xpsim::DrawingScope drawing;
        XPLMDrawNumber(white, INT_MIN, INT_MAX, NAN, 3, 2, 1, xplmFont_Basic);
        XPLMDrawNumber(white, 0, 0, -INFINITY, 3, 2, 1, xplmFont_Basic);
        XPLMDrawNumber(white, 0, 0, -1e308, 20, 20, 1, xplmFont_Basic);
        XPLMDrawNumber(white, 0, 0, 1.0, INT_MAX, INT_MIN, 0, xplmFont_Basic);
    }
    const std::vector<std::string> drawn = xpsim::DrawingThisFrame();
    ASSERT_EQ(drawn.size(), 3u);
    EXPECT_EQ(drawn[0], "number x=-2147483648 y=2147483647 rgb=1.000,1.000,0.000 font=xplmFont_Basic \"nan\"");
    EXPECT_NE(drawn[1].find("\"-inf\""), std::string::npos);
    // The largest doubles show all their 309 integer digits and the decimals asked for.
    const std::string big = drawn[2].substr(drawn[2].find('"'));
    EXPECT_EQ(big.size(), 1 + 1 + 309 + 1 + 20 + 1u) << big;
    EXPECT_EQ(big.rfind("\"-1000000000000000010979", 0), 0u) << big;
    EXPECT_EQ(big.substr(big.size() - 22), "." + std::string(20, '0') + "\"");

    XPLMDataRef shared = nullptr;
    ASSERT_EQ(XPLMShareData("xpsim/test/hostile", xplmType_Data, nullptr, nullptr), 1);
    shared = XPLMFindDataRef("xpsim/test/hostile");
    char bytes[4] = "abc";
    XPLMSetDatab(shared, bytes, 0, 3);
    XPLMSetDatab(shared, bytes, INT_MAX, INT_MAX);
    EXPECT_EQ(XPLMGetDatab(shared, bytes, INT_MAX, INT_MAX), 0);
    EXPECT_EQ(XPLMGetDatab(shared, bytes, 1, INT_MAX), 2);
    EXPECT_EQ(XPLMGetDatab(shared, nullptr, INT_MIN, INT_MIN), 3);
    ASSERT_EQ(XPLMShareData("xpsim/test/ints", xplmType_IntArray, nullptr, nullptr), 1);
    int ints[2] = {1, 2};
    XPLMSetDatavi(XPLMFindDataRef("xpsim/test/ints"), ints, INT_MAX, INT_MAX);
    EXPECT_EQ(XPLMGetDatavi(XPLMFindDataRef("xpsim/test/ints"), ints, INT_MIN, 1), 0);
    const std::string log = LogText();
    for (const char* report : {"XPLMMeasureString: the character count -2147483648 is negative",
                               "XPLMMeasureString: no font -2147483648",
                               "XPLMDrawNumber: digits 2147483647 and decimals -2147483648 must each be 0 to 20",
                               "XPLMSetDatab: writing up to element 4294967294 of xpsim/test/hostile is beyond",
                               "XPLMSetDatavi: writing up to element 4294967294 of xpsim/test/ints is beyond",
                               "XPLMGetDatavi: negative offset or count (-2147483648, 1) for xpsim/test/ints"})
        EXPECT_NE(log.find(report), std::string::npos) << report;
}

}  // namespace
