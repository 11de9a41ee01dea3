// The screen: pixels after drawing boxes, text, GL primitives and the SDK's art, blending, the standard
// widgets' look and record, the screen size, the move and screenshot events and options, and a real
// plugin that links libGL drawing through xpsim.
#include <GL/gl.h>
#include <cairo.h>
#include <limits.h>
#include <stdlib.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "../PngPixels.h"
#include "SimTestSupport.h"
#include "XPLMDataAccess.h"
#include "XPLMDisplay.h"
#include "XPLMGraphics.h"
#include "XPStandardWidgets.h"
#include "XPUIGraphics.h"
#include "XPWidgets.h"
#include "host/Driver.h"
#include "host/Events.h"
#include "host/Options.h"
#include "world/Drawing.h"
#include "world/Screen.h"
#include "world/Windows.h"

namespace {

using pngtest::Near;
using pngtest::Pixel;
using simtest::LogText;
using simtest::RealPath;
using Lines = std::vector<std::string>;

constexpr uint32_t kBackground = xpsim::kScreenBackground;

std::string Hex(uint32_t rgb) {
    char text[16];
    std::snprintf(text, sizeof text, "%06x", rgb);
    return text;
}

#define EXPECT_PIXEL(x, y, rgb) EXPECT_TRUE(Near(xpsim::ScreenPixel(x, y), rgb)) \
    << "(" << (x) << ", " << (y) << ") is " << Hex(xpsim::ScreenPixel(x, y)) << ", not " << Hex(rgb)

// Half of a colour over another, as alpha 0.5 blends it.
uint32_t Half(uint32_t over, uint32_t under) {
    uint32_t out = 0;
    for (int shift = 0; shift <= 16; shift += 8)
        out |= uint32_t((((over >> shift) & 0xff) + ((under >> shift) & 0xff)) / 2) << shift;
    return out;
}

class sim_Screen : public simtest::WorldTest {
protected:
    // The frame's record, emptied (with the screen) for the next check.
    Lines Drawn() {
        Lines lines = xpsim::DrawingThisFrame();
        xpsim::BeginFrame();
        return lines;
    }
    std::string NewLog() {
        const std::string log = LogText();
        const std::string added = log.substr(std::min(seen_, log.size()));
        seen_ = log.size();
        return added;
    }
    size_t seen_ = 0;
};

void Quad(GLenum mode, int left, int bottom, int right, int top) {
    glBegin(mode);
    glVertex2i(left, bottom);
    glVertex2i(right, bottom);
    glVertex2i(right, top);
    glVertex2i(left, top);
    glEnd();
}

TEST_F(sim_Screen, BoxesGlShapesAndBlendingLandOnThePixelsTheyName) {
    const xpsim::DrawingScope drawing;
    EXPECT_PIXEL(0, 0, kBackground);
    EXPECT_PIXEL(1023, 767, kBackground);
    EXPECT_EQ(xpsim::ScreenPixel(1024, 0), 0u);  // off the screen
    EXPECT_EQ(xpsim::ScreenPixel(-1, 5), 0u);

    // The dark box covers its pixels from left to right - 1 and bottom to top - 1, black at half.
    XPLMDrawTranslucentDarkBox(10, 60, 200, 10);
    EXPECT_PIXEL(10, 10, Half(0, kBackground));
    EXPECT_PIXEL(199, 59, Half(0, kBackground));
    EXPECT_PIXEL(200, 30, kBackground);
    EXPECT_PIXEL(50, 60, kBackground);

    // An opaque quad; then, blending off, alpha is ignored; blending on, it mixes.
    glColor3f(1.0f, 0.0f, 0.0f);
    Quad(GL_QUADS, 300, 300, 340, 340);
    glColor4f(0.0f, 0.0f, 1.0f, 0.5f);
    Quad(GL_QUADS, 330, 330, 350, 350);
    EXPECT_PIXEL(310, 310, 0xff0000);
    EXPECT_PIXEL(335, 335, 0x0000ff);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    Quad(GL_POLYGON, 305, 305, 315, 315);
    EXPECT_PIXEL(310, 310, Half(0x0000ff, 0xff0000));
    // Additive: red and green make yellow.
    glBlendFunc(GL_ONE, GL_ONE);
    glColor3ub(0, 255, 0);
    Quad(GL_QUADS, 300, 320, 310, 330);
    EXPECT_PIXEL(305, 325, 0xffff00);
    glDisable(GL_BLEND);
    // XPLMSetGraphicsState switches blending as the simulator's GL does.
    XPLMSetGraphicsState(0, 0, 0, 0, 1, 0, 0);
    EXPECT_EQ(glIsEnabled(GL_BLEND), GL_TRUE);
    XPLMSetGraphicsState(0, 0, 0, 0, 0, 0, 0);

    // Lines and points light the pixels their coordinates name; strips, fans and rects fill.
    glColor3f(1.0f, 1.0f, 1.0f);
    glBegin(GL_LINES);
    glVertex2i(400, 100);
    glVertex2i(450, 100);
    glEnd();
    glPointSize(3.0f);
    glBegin(GL_POINTS);
    glVertex2f(420.0f, 200.0f);
    glEnd();
    glPushMatrix();
    glTranslatef(500.0f, 500.0f, 0.0f);
    glColor4ub(0, 255, 255, 255);
    glRecti(0, 0, 10, 10);
    glPopMatrix();
    glRecti(0, 0, 4, 4);
    glColor3f(0.0f, 1.0f, 0.0f);
    glBegin(GL_TRIANGLE_STRIP);
    glVertex2i(600, 100);
    glVertex2i(600, 120);
    glVertex2i(640, 100);
    glVertex2i(640, 120);
    glEnd();
    EXPECT_PIXEL(425, 100, 0xffffff);
    EXPECT_PIXEL(425, 101, kBackground);
    EXPECT_PIXEL(425, 99, kBackground);
    EXPECT_PIXEL(421, 201, 0xffffff);
    EXPECT_PIXEL(505, 505, 0x00ffff);
    EXPECT_PIXEL(2, 2, 0x00ffff);
    EXPECT_PIXEL(638, 102, 0x00ff00);  // in the strip's second triangle

    const Lines drawn = xpsim::DrawingThisFrame();
    EXPECT_EQ(drawn[1], "gl mode=GL_QUADS vertices=4 rgba=1.000,0.000,0.000,1.000 blend=off texture=0 "
                        "points=(300,300);(340,300);(340,340);(300,340)");
    EXPECT_EQ(drawn[3], "gl mode=GL_POLYGON vertices=4 rgba=0.000,0.000,1.000,0.500 blend=alpha texture=0 "
                        "points=(305,305);(315,305);(315,315);(305,315)");
    EXPECT_EQ(drawn[4], "gl mode=GL_QUADS vertices=4 rgba=0.000,1.000,0.000,1.000 blend=additive texture=0 "
                        "points=(300,320);(310,320);(310,330);(300,330)");
    EXPECT_EQ(Lines(drawn.begin() + 5, drawn.end()),
              Lines({"gl mode=GL_LINES vertices=2 rgba=1.000,1.000,1.000,1.000 blend=off texture=0 width=1 "
                     "points=(400,100);(450,100)",
                     "gl mode=GL_POINTS vertices=1 rgba=1.000,1.000,1.000,1.000 blend=off texture=0 size=3 "
                     "points=(420,200)",
                     "gl mode=glRect vertices=4 rgba=0.000,1.000,1.000,1.000 blend=off texture=0 "
                     "points=(500,500);(510,500);(510,510);(500,510)",
                     "gl mode=glRect vertices=4 rgba=0.000,1.000,1.000,1.000 blend=off texture=0 "
                     "points=(0,0);(4,0);(4,4);(0,4)",
                     "gl mode=GL_TRIANGLE_STRIP vertices=4 rgba=0.000,1.000,0.000,1.000 blend=off texture=0 "
                     "points=(600,100);(600,120);(640,100);(640,120)"}));

    // A new frame starts from the background.
    xpsim::BeginFrame();
    EXPECT_PIXEL(310, 310, kBackground);
    EXPECT_EQ(xpsim::ScreenItemCount(), 0u);
}

TEST_F(sim_Screen, BlendingSwitchedOnAloneBlendsAsTheSimulatorKeepsIt) {
    const xpsim::DrawingScope drawing;
    glColor3f(1.0f, 0.0f, 0.0f);
    Quad(GL_QUADS, 300, 300, 340, 340);
    XPLMSetGraphicsState(0, 0, 0, 0, 1, 0, 0);
    glColor4f(0.0f, 0.0f, 1.0f, 0.5f);
    Quad(GL_QUADS, 300, 300, 340, 340);
    EXPECT_PIXEL(310, 310, Half(0x0000ff, 0xff0000));
    EXPECT_EQ(xpsim::DrawingThisFrame().back(),
              "gl mode=GL_QUADS vertices=4 rgba=0.000,0.000,1.000,0.500 blend=alpha texture=0 "
              "points=(300,300);(340,300);(340,340);(300,340)");
    XPLMSetGraphicsState(0, 0, 0, 0, 0, 0, 0);
}

TEST_F(sim_Screen, TextIsPaintedInItsFontCellsAndMisusedGlIsReportedOrIgnored) {
    NewLog();
    glBegin(GL_LINES);  // not drawing: ignored, noted once
    glEnd();
    glColor3f(1, 0, 0);
    {
        const xpsim::DrawingScope drawing;
        float white[] = {1.0f, 1.0f, 1.0f};
        char text[] = "HHHH";
        XPLMDrawString(white, 100, 100, text, nullptr, xplmFont_Basic);
        // Some pixels of the four 7 x 12 cells are lit; none beyond them.
        int lit = 0;
        for (int x = 100; x < 128; ++x)
            for (int y = 100; y < 112; ++y) lit += Near(xpsim::ScreenPixel(x, y), 0xffffff, 40) ? 1 : 0;
        EXPECT_GT(lit, 20);
        for (int y = 95; y < 118; ++y) EXPECT_PIXEL(129, y, kBackground);

        glEnd();                // no glBegin
        glBegin(0x1234);        // no such mode
        glBegin(GL_TRIANGLES);  // two vertices make no triangle: recorded, nothing painted
        glVertex2i(0, 0);
        glVertex2i(5, 5);
        glEnd();
        glPopMatrix();  // the stack is empty
        glLineWidth(-1.0f);
    }
    EXPECT_EQ(NewLog(),
              "xpsim: OpenGL calls made while the sim is not drawing are ignored (the first: glBegin)\n"
              "xpsim: glEnd: no glBegin before it\n"
              "xpsim: glBegin: unknown primitive mode 0x1234; nothing is drawn\n"
              "xpsim: glPopMatrix: the matrix stack is empty\n"
              "xpsim: glLineWidth: the width must be above 0; unchanged\n");
    EXPECT_EQ(Drawn(), Lines({"string x=100 y=100 rgb=1.000,1.000,1.000 font=xplmFont_Basic \"HHHH\"",
                              "gl mode=GL_TRIANGLES vertices=2 rgba=1.000,1.000,1.000,1.000 blend=off texture=0 "
                              "points=(0,0);(5,5)"}));
    glBegin(GL_LINES);  // noted only once a run
    EXPECT_EQ(NewLog(), "");
}

// Draws into the frame from the 3-d objects phase and the 2-d window phase.
int DrawBothPhases(XPLMDrawingPhase phase, int, void*) {
    glColor3f(1, 1, 0);
    Quad(GL_QUADS, 10, 10, 20, 20);
    if (phase == xplm_Phase_Objects) {
        glBegin(GL_LINES);  // left open: dropped at the phase's end
        glVertex2i(0, 0);
    }
    return 1;
}

TEST_F(sim_Screen, TheThreeDPhasesAreRecordedButNotPainted) {
    const int plugin = simtest::AddEnabledPlugin("/plugins/phases.xpl", simtest::StartAsPlugin);
    {
        xpsim::PluginContext context(plugin);
        XPLMRegisterDrawCallback(DrawBothPhases, xplm_Phase_Objects, 0, nullptr);
    }
    NewLog();
    RunFrames(1);
    EXPECT_EQ(xpsim::DrawingThisFrame(),
              Lines({"gl mode=GL_QUADS vertices=4 rgba=1.000,1.000,0.000,1.000 blend=off texture=0 world=1 "
                     "points=(10,10,0);(20,10,0);(20,20,0);(10,20,0)"}));
    EXPECT_PIXEL(15, 15, kBackground);
    EXPECT_EQ(NewLog(), "xpsim: glBegin: no glEnd before the end of the drawing phase; the primitive is dropped\n");
    {
        xpsim::PluginContext context(plugin);
        XPLMUnregisterDrawCallback(DrawBothPhases, xplm_Phase_Objects, 0, nullptr);
        XPLMRegisterDrawCallback(DrawBothPhases, xplm_Phase_Window, 0, nullptr);
    }
    RunFrames(1);
    EXPECT_PIXEL(15, 15, 0xffff00);
}

TEST_F(sim_Screen, EveryUiElementWindowAndTrackDrawsAndIsNamed) {
    const int elements[] = {6,  9,  10, 14, 15, 16, 17, 24, 25, 26, 27, 28, 29, 30, 31, 32, 33, 34,
                            35, 36, 37, 38, 39, 40, 41, 45, 46, 47, 48, 49, 51, 52, 53, 54, 61, 62};
    NewLog();
    XPDrawElement(0, 0, 10, 10, xpElement_PushButton, 0);  // not drawing
    const xpsim::DrawingScope drawing;
    for (int element : elements) {
        const size_t before = xpsim::ScreenItemCount();
        XPDrawElement(40, 40, 8, 8, element, 1);  // corners in any order
        EXPECT_GT(xpsim::ScreenItemCount(), before) << element;
        const std::string line = xpsim::DrawingThisFrame().back();
        EXPECT_EQ(line.rfind("ui-element style=xpElement_", 0), 0u) << line;
        EXPECT_NE(line.find(" left=8 top=40 right=40 bottom=8"), std::string::npos) << line;
    }
    XPDrawElement(0, 0, 10, 10, 7, 0);
    XPDrawWindow(0, 0, 10, 10, 3);
    XPDrawTrack(0, 0, 10, 10, 0, 1, 0, 9, 0);
    EXPECT_EQ(NewLog(), "xpsim: XPDrawElement: called while the sim is not drawing (outside a draw callback or "
                        "window); nothing is drawn\n"
                        "xpsim: XPDrawElement: no style 7; nothing is drawn\n"
                        "xpsim: XPDrawWindow: no style 3; nothing is drawn\n"
                        "xpsim: XPDrawTrack: no style 9; nothing is drawn\n");
    xpsim::BeginFrame();

    // A main window: its body and title bar; buttons, lit and not; a progress track's filled part.
    XPDrawWindow(100, 500, 400, 200, xpWindow_MainWindow);
    XPDrawElement(120, 420, 200, 440, xpElement_PushButton, 0);
    XPDrawElement(220, 420, 300, 440, xpElement_PushButton, 1);
    XPDrawElement(310, 420, 326, 436, xpElement_WindowCloseBox, 1);  // cannot be lit
    XPDrawTrack(120, 290, 300, 300, 0, 100, 25, xpTrack_Progress, 1);
    EXPECT_EQ(Drawn(), Lines({"ui-window style=xpWindow_MainWindow left=100 top=500 right=400 bottom=200",
                              "ui-element style=xpElement_PushButton lit=0 left=120 top=440 right=200 bottom=420",
                              "ui-element style=xpElement_PushButton lit=1 left=220 top=440 right=300 bottom=420",
                              "ui-element style=xpElement_WindowCloseBox lit=0 left=310 top=436 right=326 bottom=420",
                              "ui-track style=xpTrack_Progress lit=0 min=0 max=100 value=25 left=120 top=300 "
                              "right=300 bottom=290"}));
}

TEST_F(sim_Screen, TheStandardWidgetsDrawTheirLookFromTheirState) {
    const int plugin = simtest::AddEnabledPlugin("/plugins/widgets.xpl", simtest::StartAsPlugin);
    {
        xpsim::PluginContext context(plugin);
        XPWidgetID window = XPCreateWidget(100, 500, 400, 200, 1, "Settings", 1, nullptr, xpWidgetClass_MainWindow);
        XPSetWidgetProperty(window, xpProperty_MainWindowHasCloseBoxes, 1);
        XPCreateWidget(120, 440, 200, 420, 1, "OK", 0, window, xpWidgetClass_Button);
        XPWidgetID check = XPCreateWidget(120, 400, 136, 384, 1, "", 0, window, xpWidgetClass_Button);
        XPSetWidgetProperty(check, xpProperty_ButtonType, xpRadioButton);
        XPSetWidgetProperty(check, xpProperty_ButtonBehavior, xpButtonBehaviorCheckBox);
        XPSetWidgetProperty(check, xpProperty_ButtonState, 1);
        XPWidgetID radio = XPCreateWidget(140, 400, 156, 384, 1, "", 0, window, xpWidgetClass_Button);
        XPSetWidgetProperty(radio, xpProperty_ButtonType, xpRadioButton);
        XPSetWidgetProperty(radio, xpProperty_ButtonBehavior, xpButtonBehaviorRadioButton);
        XPCreateWidget(120, 370, 300, 350, 1, "abc", 0, window, xpWidgetClass_TextField);
        XPCreateWidget(120, 340, 300, 328, 1, "Name", 0, window, xpWidgetClass_Caption);
        XPWidgetID bar = XPCreateWidget(120, 320, 300, 304, 1, "", 0, window, xpWidgetClass_ScrollBar);
        XPSetWidgetProperty(bar, xpProperty_ScrollBarSliderPosition, 50);
        XPWidgetID progress = XPCreateWidget(120, 300, 300, 290, 1, "", 0, window, xpWidgetClass_Progress);
        XPSetWidgetProperty(progress, xpProperty_ProgressPosition, 25);
        XPWidgetID secret = XPCreateWidget(310, 370, 390, 350, 1, "pin", 0, window, xpWidgetClass_TextField);
        XPSetWidgetProperty(secret, xpProperty_PasswordMode, 1);
    }
    xpsim::Click(210, 360);  // the field takes the keyboard, the caret at the end
    RunFrames(1);
    const Lines drawn = xpsim::DrawingThisFrame();
    const auto at = [&](const std::string& line) {
        return std::find(drawn.begin(), drawn.end(), line) - drawn.begin();
    };
    const Lines expected = {
        "window number=1 plugin=1 left=100 top=500 right=400 bottom=200",
        "widget number=1 class=xpWidgetClass_MainWindow left=100 top=500 right=400 bottom=200 "
        "type=xpMainWindowStyle_MainWindow closeboxes=1 \"Settings\"",
        "ui-window style=xpWindow_MainWindow left=100 top=500 right=400 bottom=200",
        "ui-element style=xpElement_WindowCloseBox lit=0 left=104 top=496 right=120 bottom=480",
        "ui-element style=xpElement_WindowCloseBox lit=0 left=380 top=496 right=396 bottom=480",
        "string x=126 y=484 rgb=0.000,0.000,0.000 font=xplmFont_Basic \"Settings\"",
        "widget number=2 class=xpWidgetClass_Button left=120 top=440 right=200 bottom=420 type=xpPushButton "
        "behavior=xpButtonBehaviorPushButton state=0 hilited=0 enabled=1 \"OK\"",
        "ui-element style=xpElement_PushButton lit=0 left=120 top=440 right=200 bottom=420",
        "string x=153 y=424 rgb=0.000,0.000,0.000 font=xplmFont_Basic \"OK\"",
        "widget number=3 class=xpWidgetClass_Button left=120 top=400 right=136 bottom=384 type=xpRadioButton "
        "behavior=xpButtonBehaviorCheckBox state=1 hilited=0 enabled=1 \"\"",
        "ui-element style=xpElement_CheckBoxLit lit=0 left=120 top=400 right=136 bottom=384",
        "widget number=4 class=xpWidgetClass_Button left=140 top=400 right=156 bottom=384 type=xpRadioButton "
        "behavior=xpButtonBehaviorRadioButton state=0 hilited=0 enabled=1 \"\"",
        "widget number=5 class=xpWidgetClass_TextField left=120 top=370 right=300 bottom=350 type=xpTextEntryField "
        "enabled=1 focus=1 selection=3,3 \"abc\"",
        "ui-element style=xpElement_TextField lit=0 left=120 top=370 right=300 bottom=350",
        "string x=123 y=354 rgb=0.000,0.000,0.000 font=xplmFont_Basic \"abc\"",
        "widget number=6 class=xpWidgetClass_Caption left=120 top=340 right=300 bottom=328 lit=0 \"Name\"",
        "string x=120 y=328 rgb=0.000,0.000,0.000 font=xplmFont_Basic \"Name\"",
        "widget number=7 class=xpWidgetClass_ScrollBar left=120 top=320 right=300 bottom=304 "
        "type=xpScrollBarTypeScrollBar min=0 max=100 position=50 \"\"",
        "ui-track style=xpTrack_ScrollBar lit=0 min=0 max=100 value=50 left=120 top=320 right=300 bottom=304",
        "widget number=8 class=xpWidgetClass_Progress left=120 top=300 right=300 bottom=290 min=0 max=100 "
        "position=25 \"\"",
        "ui-track style=xpTrack_Progress lit=0 min=0 max=100 value=25 left=120 top=300 right=300 bottom=290",
        "widget number=9 class=xpWidgetClass_TextField left=310 top=370 right=390 bottom=350 type=xpTextEntryField "
        "enabled=1 focus=0 \"***\"",
        "ui-element style=xpElement_TextField lit=0 left=310 top=370 right=390 bottom=350",
        "string x=313 y=354 rgb=0.000,0.000,0.000 font=xplmFont_Basic \"***\"",
    };
    EXPECT_EQ(drawn.size(), expected.size()) << ::testing::PrintToString(drawn);
    for (size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(at(expected[i]), long(i)) << expected[i];

    EXPECT_PIXEL(250, 490, 0x9aa6b2);  // title bar
    EXPECT_PIXEL(110, 215, 0xb8bcc0);  // window body
    EXPECT_PIXEL(124, 436, 0xd4d6d8);  // button
    EXPECT_PIXEL(123, 397, 0xffffff);  // check box
    EXPECT_PIXEL(250, 360, 0xffffff);  // text field
    EXPECT_PIXEL(144, 360, 0x000000);  // the caret after "abc"
    EXPECT_PIXEL(130, 295, 0x4ca04c);  // progress filled
    EXPECT_PIXEL(200, 295, 0x3c4450);  // and not
    EXPECT_PIXEL(210, 312, 0xd4d6d8);  // scroll bar thumb
    EXPECT_PIXEL(150, 312, 0x7c8288);  // and track

    // Pressing the button lights it.
    xpsim::MouseDown(150, 430);
    RunFrames(1);
    EXPECT_PIXEL(124, 436, 0xf2d67a);
    xpsim::MouseUp(150, 430);
}

TEST_F(sim_Screen, HostileGeometryAndNumbersDrawWithoutHarm) {
    const int plugin = simtest::AddEnabledPlugin("/plugins/hostile.xpl", simtest::StartAsPlugin);
    {
        xpsim::PluginContext context(plugin);
        XPWidgetID window = XPCreateWidget(INT_MIN, INT_MAX, INT_MAX, INT_MIN, 1, "far", 1, nullptr,
                                           xpWidgetClass_MainWindow);
        XPSetWidgetProperty(window, xpProperty_MainWindowHasCloseBoxes, 1);
        for (XPWidgetClass widgetClass : {xpWidgetClass_Button, xpWidgetClass_TextField, xpWidgetClass_ScrollBar,
                                          xpWidgetClass_Progress, xpWidgetClass_Caption}) {
            XPWidgetID child = XPCreateWidget(INT_MIN, INT_MAX, INT_MAX, INT_MIN, 1, "far", 0, window, widgetClass);
            XPSetWidgetProperty(child, xpProperty_ButtonType, xpRadioButton);
            XPSetWidgetProperty(child, xpProperty_ScrollBarMin, INT_MIN);
            XPSetWidgetProperty(child, xpProperty_ScrollBarMax, INT_MAX);
        }
    }
    RunFrames(1);
    EXPECT_EQ(xpsim::DrawingThisFrame().at(1).rfind("widget number=1 class=xpWidgetClass_MainWindow left=-2147483648 "
                                                    "top=2147483647 right=2147483647 bottom=-2147483648",
                                                    0),
              0u);
    const xpsim::DrawingScope drawing;
    XPDrawTrack(INT_MIN, INT_MIN, INT_MAX, INT_MAX, INT_MIN, INT_MAX, INT_MAX, xpTrack_ScrollBar, 1);
    XPDrawTrack(INT_MAX, INT_MIN, INT_MIN, INT_MAX, INT_MAX, INT_MIN, 0, xpTrack_Progress, 0);
    XPDrawElement(INT_MIN, INT_MIN, INT_MAX, INT_MAX, xpElement_VORWithCompassRose, 1);
    glLineWidth(1e30f);
    glTranslatef(3e38f, -3e38f, 0.0f);
    glBegin(GL_POLYGON);
    glVertex2f(3e38f, 1.0f);
    glVertex2f(NAN, 0.0f);
    glVertex3f(INFINITY, 0.0f, 0.0f);
    glVertex2d(-1e300, 1e300);
    glVertex2i(INT_MIN, INT_MAX);
    glEnd();
    EXPECT_EQ(xpsim::ScreenPixel(512, 384) >> 24, 0u);  // the pixels are made, whatever they show
    EXPECT_EQ(xpsim::DrawingThisFrame().back().rfind("gl mode=GL_POLYGON vertices=3 ", 0), 0u);
}

TEST_F(sim_Screen, TheScreenSizeAnswersEverywhereAndTheMouseMovesWithoutClicking) {
    simtest::WriteFile(root_ + "/DataRefs.txt", "2\nsim/graphics/view/window_width\tint\ty\tpixels\tW\n"
                                                "sim/graphics/view/window_height\tint\ty\tpixels\tH\n");
    ASSERT_EQ(xpsim::LoadDataRefsFile(root_ + "/DataRefs.txt"), 2);
    EXPECT_FALSE(xpsim::SetScreenSize(63, 480));
    EXPECT_FALSE(xpsim::SetScreenSize(640, 8193));
    ASSERT_TRUE(xpsim::SetScreenSize(640, 480));
    int width = 0, height = 0, x = 0, y = 0;
    XPLMGetScreenSize(&width, &height);
    XPLMGetMouseLocation(&x, &y);
    EXPECT_EQ(std::vector<int>({width, height, x, y}), std::vector<int>({640, 480, 320, 240}));
    EXPECT_EQ(XPLMGetDatai(XPLMFindDataRef("sim/graphics/view/window_width")), 640);
    EXPECT_EQ(XPLMGetDatai(XPLMFindDataRef("sim/graphics/view/window_height")), 480);
    EXPECT_PIXEL(639, 479, kBackground);
    EXPECT_EQ(xpsim::ScreenPixel(640, 0), 0u);

    // move: the mouse goes there; no window hears of it.
    static int clicks = 0;
    const int plugin = simtest::AddEnabledPlugin("/plugins/move.xpl", simtest::StartAsPlugin);
    {
        xpsim::PluginContext context(plugin);
        XPLMCreateWindow(0, 400, 400, 0, 1, [](XPLMWindowID, void*) {},
                         [](XPLMWindowID, char, XPLMKeyFlags, char, void*, int) {},
                         [](XPLMWindowID, int, int, XPLMMouseStatus, void*) { return ++clicks; }, nullptr);
    }
    std::istringstream in("0 move 150 160\n");
    std::vector<xpsim::Event> events;
    std::string error;
    ASSERT_TRUE(xpsim::ParseEvents(in, events, error)) << error;
    xpsim::ApplyEvent(events[0]);
    XPLMGetMouseLocation(&x, &y);
    EXPECT_EQ(std::vector<int>({x, y, clicks}), std::vector<int>({150, 160, 0}));
}

TEST(sim_ScreenEvents, MoveScreenshotAndTheOptionsParse) {
    std::istringstream in("0.5 move 10 -20\n1 screenshot shots/a b.png   # one\n");
    std::vector<xpsim::Event> events;
    std::string error;
    ASSERT_TRUE(xpsim::ParseEvents(in, events, error)) << error;
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].verb, xpsim::EventVerb::Move);
    EXPECT_EQ(std::vector<int>({events[0].x1, events[0].y1}), std::vector<int>({10, -20}));
    EXPECT_EQ(events[1].verb, xpsim::EventVerb::Screenshot);
    EXPECT_EQ(events[1].text, "shots/a b.png");
    const std::pair<const char*, const char*> bad[] = {
        {"1 move 5", "line 1: move takes a screen point: X Y"},
        {"1 move 5 up", "line 1: move takes whole-number coordinates, not '5 up'"},
        {"1 screenshot", "line 1: screenshot takes the PNG file to write the screen to"},
    };
    for (const auto& entry : bad) {
        std::istringstream line(std::string(entry.first) + "\n");
        EXPECT_FALSE(xpsim::ParseEvents(line, events, error));
        EXPECT_EQ(error, entry.second);
    }

    xpsim::Options options;
    ASSERT_EQ(xpsim::ParseCommandLine({"run", "--root", "r", "--screen", "800x600", "--screenshot", "1.5:a b.png",
                                       "--screenshot", "0:/tmp/c.png"},
                                      options, error),
              xpsim::CommandLineResult::Run)
        << error;
    EXPECT_EQ(std::vector<int>({options.screenWidth, options.screenHeight}), std::vector<int>({800, 600}));
    EXPECT_EQ(options.screenshots, Lines({"1.5:a b.png", "0:/tmp/c.png"}));
    xpsim::Event shot;
    ASSERT_TRUE(xpsim::ParseScreenshotOption(options.screenshots[0], shot, error));
    EXPECT_EQ(shot.time, 1.5);
    EXPECT_EQ(shot.text, "a b.png");
    const std::pair<std::vector<std::string>, std::string> errors[] = {
        {{"--screen", "800"}, "--screen needs WIDTHxHEIGHT in pixels, each 64 to 8192, not '800'"},
        {{"--screen", "10x10"}, "--screen needs WIDTHxHEIGHT in pixels, each 64 to 8192, not '10x10'"},
        {{"--screen", "800x-6"}, "--screen needs WIDTHxHEIGHT in pixels, each 64 to 8192, not '800x-6'"},
        {{"--screenshot", "shot.png"}, "--screenshot takes SECONDS:FILE.png, not 'shot.png'"},
        {{"--screenshot", "1:"}, "--screenshot takes SECONDS:FILE.png, not '1:'"},
        {{"--screenshot", "soon:a.png"}, "--screenshot: 'soon' is not a time in seconds (a number from 0)"},
    };
    for (const auto& entry : errors) {
        std::vector<std::string> args = {"run", "--root", "r"};
        args.insert(args.end(), entry.first.begin(), entry.first.end());
        EXPECT_EQ(xpsim::ParseCommandLine(args, options, error), xpsim::CommandLineResult::Error);
        EXPECT_EQ(error, entry.second);
    }
}


TEST(sim_ScreenProgram, APluginLinkingLibGlDrawsThroughXpsimIntoScreenshots) {
    simtest::TempDir dir;
    const std::string events = dir.path() + "/events.txt";
    simtest::WriteFile(events, "0.05 draw-log draw.txt\n"
                               "0.05 screenshot shot.png\n"
                               "0.05 screenshot no/such/folder/x.png\n"
                               "0.05 move 150 160\n");
    const auto result = simtest::RunXpsim({"run", "--root", dir.path() + "/root", "--plugin", XPSIM_GL_PLUGIN,
                                           "--frames", "2", "--events", events, "--screen", "800x600",
                                           "--screenshot", "0.1:" + dir.path() + "/second.png"});
    ASSERT_EQ(result.status, 0) << result.err;
    const std::string log = simtest::ReadFile(dir.path() + "/root/Log.txt");
    // The plugin's glBegin is xpsim's, though the plugin links libGL.
    const size_t at = log.find("gl: glBegin from ");
    ASSERT_NE(at, std::string::npos) << log;
    const std::string library = log.substr(at + 17, log.find('\n', at) - at - 17);
    EXPECT_EQ(RealPath(library), RealPath(XPLM_LIB)) << log;
    const std::string ignored =
        "xpsim: OpenGL calls made while the sim is not drawing are ignored (the first: glBegin)\n";
    EXPECT_NE(log.find(ignored), std::string::npos) << log;
    EXPECT_EQ(log.find(ignored), log.rfind(ignored));
    EXPECT_NE(log.find("xpsim: events line 3: cannot write " + dir.path() +
                       "/root/no/such/folder/x.png: No such file or directory\n"),
              std::string::npos)
        << log;
    EXPECT_NE(log.find("xpsim: screenshot of frame 2 written to " + dir.path() + "/second.png\n"), std::string::npos);

    EXPECT_EQ(simtest::ReadFile(dir.path() + "/root/draw.txt"),
              "frame 1\n"
              "window number=1 plugin=1 left=100 top=300 right=300 bottom=100\n"
              "gl mode=GL_QUADS vertices=4 rgba=1.000,0.000,0.000,1.000 blend=off texture=0 "
              "points=(110,110);(190,110);(190,190);(110,190)\n"
              "gl mode=glRect vertices=4 rgba=0.000,0.000,1.000,0.500 blend=alpha texture=0 "
              "points=(150,150);(250,150);(250,250);(150,250)\n"
              "gl mode=GL_TRIANGLE_FAN vertices=3 rgba=0.000,1.000,0.000,1.000 blend=off texture=0 "
              "points=(200,110);(290,110);(290,140)\n"
              "gl mode=GL_LINES vertices=2 rgba=1.000,1.000,1.000,1.000 blend=off texture=0 width=1 "
              "points=(110,280);(290,280)\n"
              "string x=110 y=260 rgb=1.000,1.000,1.000 font=xplmFont_Basic \"GL plugin\"\n");

    cairo_surface_t* png = cairo_image_surface_create_from_png((dir.path() + "/root/shot.png").c_str());
    ASSERT_EQ(cairo_surface_status(png), CAIRO_STATUS_SUCCESS);
    EXPECT_EQ(cairo_image_surface_get_width(png), 800);
    EXPECT_EQ(cairo_image_surface_get_height(png), 600);
    const std::pair<std::pair<int, int>, uint32_t> pixels[] = {
        {{120, 120}, 0xff0000},
        {{170, 170}, Half(0x0000ff, 0xff0000)},
        {{230, 230}, Half(0x0000ff, kBackground)},
        {{285, 115}, 0x00ff00},
        {{200, 280}, 0xffffff},
        {{50, 50}, kBackground},
        {{799, 599}, kBackground},
    };
    for (const auto& [point, rgb] : pixels)
        EXPECT_TRUE(Near(Pixel(png, point.first, point.second), rgb))
            << point.first << ", " << point.second << ": " << Hex(Pixel(png, point.first, point.second));
    cairo_surface_destroy(png);
    EXPECT_TRUE(simtest::Exists(dir.path() + "/second.png"));
}

}  // namespace
