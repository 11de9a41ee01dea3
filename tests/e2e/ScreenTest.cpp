// The screen end to end: a script opens a window that draws a dark box and a string, and a widget
// dialog with a button; the events file's screenshot and draw-log show what a person would see.
#include <cairo.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "../PngPixels.h"
#include "SimHarness.h"

namespace {

using pngtest::Near;
using pngtest::Pixel;

const char* const kScript = R"(
self.draw, self.key, self.click = self.Draw, self.Key, self.Click
self.window = XPLMCreateWindow(self, 50, 700, 350, 500, 1, self.draw, self.key, self.click, 0)
self.dialog = XPCreateWidget(400, 700, 800, 400, 1, 'Screen test', 1, 0, xpWidgetClass_MainWindow)
self.button = XPCreateWidget(420, 660, 520, 640, 1, 'Press me', 0, self.dialog, xpWidgetClass_Button)
)";

const char* const kMethods = R"(
def Draw(self, window, refcon):
    XPLMDrawTranslucentDarkBox(50, 700, 350, 500)
    XPLMDrawString([1.0, 1.0, 0.0], 60, 680, 'Hello from a window', 0, xplmFont_Basic)
def Key(self, *args):
    pass
def Click(self, *args):
    return 1
)";

TEST(Screen, AScriptsWindowAndWidgetsReachTheScreenshotAndTheDrawLog) {
    SimFolder sim;
    sim.writeScript(
        "CV_Screen.py",
        TestScript("Screen", {"XPLMDisplay", "XPLMGraphics", "XPWidgets", "XPStandardWidgets"}, kScript, "",
                   "XPDestroyWidget(self, self.dialog, 1)\nXPLMDestroyWindow(self, self.window)\n", kMethods));
    const std::string events = sim.writeEvents("0.10 screenshot shot.png\n0.10 draw-log draw.txt\n");
    const SimRun run = sim.run({"--frames", "3", "--events", events});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;

    const std::string drawn = sim.read("draw.txt");
    EXPECT_TRUE(InOrder(drawn, {
        "frame 2\n",
        "window number=1 plugin=1 left=50 top=700 right=350 bottom=500\n",
        "dark-box left=50 top=700 right=350 bottom=500\n",
        "string x=60 y=680 rgb=1.000,1.000,0.000 font=xplmFont_Basic \"Hello from a window\"\n",
        "window number=2 plugin=1 left=400 top=700 right=800 bottom=400\n",
        "widget number=1 class=xpWidgetClass_MainWindow left=400 top=700 right=800 bottom=400 "
        "type=xpMainWindowStyle_MainWindow closeboxes=0 \"Screen test\"\n",
        "ui-window style=xpWindow_MainWindow left=400 top=700 right=800 bottom=400\n",
        "string x=408 y=684 rgb=0.000,0.000,0.000 font=xplmFont_Basic \"Screen test\"\n",
        "widget number=2 class=xpWidgetClass_Button left=420 top=660 right=520 bottom=640 type=xpPushButton "
        "behavior=xpButtonBehaviorPushButton state=0 hilited=0 enabled=1 \"Press me\"\n",
        "ui-element style=xpElement_PushButton lit=0 left=420 top=660 right=520 bottom=640\n",
        "string x=442 y=644 rgb=0.000,0.000,0.000 font=xplmFont_Basic \"Press me\"\n",
    })) << drawn << sim.log();
    EXPECT_NE(sim.simLog().find("xpsim: screenshot of frame 2 written to " + sim.root() + "/shot.png"),
              std::string::npos);

    cairo_surface_t* png = cairo_image_surface_create_from_png((sim.root() + "/shot.png").c_str());
    ASSERT_EQ(cairo_surface_status(png), CAIRO_STATUS_SUCCESS);
    EXPECT_EQ(cairo_image_surface_get_width(png), 1024);
    EXPECT_EQ(cairo_image_surface_get_height(png), 768);
    const std::pair<std::pair<int, int>, uint32_t> pixels[] = {
        {{900, 100}, 0x3a4a5c},  // the background
        {{300, 520}, 0x1d252e},  // the dark box: the background at half
        {{600, 690}, 0x9aa6b2},  // the dialog's title bar
        {{600, 500}, 0xb8bcc0},  // its body
        {{424, 656}, 0xd4d6d8},  // the button
    };
    for (const auto& [point, rgb] : pixels)
        EXPECT_TRUE(Near(Pixel(png, point.first, point.second), rgb, 2)) << point.first << ", " << point.second;
    // The string's 19 cells of 7 x 12 pixels from (60, 680) show yellow text, nothing beyond them.
    int yellow = 0;
    for (int x = 60; x < 60 + 19 * 7; ++x)
        for (int y = 680; y < 692; ++y) yellow += Near(Pixel(png, x, y), 0xffff00, 60) ? 1 : 0;
    EXPECT_GT(yellow, 60);
    for (int y = 676; y < 696; ++y) EXPECT_TRUE(Near(Pixel(png, 60 + 19 * 7 + 1, y), 0x1d252e, 2)) << y;
    cairo_surface_destroy(png);
}

}  // namespace
