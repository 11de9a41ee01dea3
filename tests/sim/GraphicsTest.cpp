// XPLMGraphics: the graphics state, textures, fonts and measuring, and what strings, numbers and boxes
// put into the drawing record; the draw-log event.
#include <cmath>
#include <cstring>
#include <set>
#include <sstream>
#include <vector>

#include "SimTestSupport.h"
#include "XPLMDisplay.h"
#include "XPLMGraphics.h"
#include "XPLMProcessing.h"
#include "host/Events.h"
#include "world/Drawing.h"
#include "world/Graphics.h"

namespace {

using simtest::LogText;

class sim_Graphics : public simtest::WorldTest {
protected:
    // What the log gained since the last call.
    std::string NewLog() {
        const std::string log = LogText();
        const std::string added = log.substr(std::min(seen_, log.size()));
        seen_ = log.size();
        return added;
    }
    // The frame's record, emptied for the next check.
    std::vector<std::string> Drawn() {
        std::vector<std::string> lines = xpsim::DrawingThisFrame();
        xpsim::BeginFrame();
        return lines;
    }

    size_t seen_ = 0;
};

float kWhite[3] = {1.0f, 1.0f, 1.0f};

void DrawText(const char* text, int x = 10, int y = 700, int* wrap = nullptr, XPLMFontID font = xplmFont_Basic) {
    std::vector<char> copy(text, text + strlen(text) + 1);
    XPLMDrawString(kWhite, x, y, copy.data(), wrap, font);
}

TEST_F(sim_Graphics, StateAndBindingsAreKeptAndImpossibleValuesReported) {
    NewLog();
    XPLMSetGraphicsState(1, 2, 0, 7, 1, 0, -1);
    XPLMBindTexture2d(1000, 0);
    XPLMBindTexture2d(42, 3);
    XPLMBindTexture2d(0, 0);
    EXPECT_EQ(NewLog(), "");  // correct calls are silent
    xpsim::GraphicsState state = xpsim::CurrentGraphicsState();
    EXPECT_EQ(std::vector<int>({state.fog, state.textureUnits, state.lighting, state.alphaTesting, state.alphaBlending,
                                state.depthTesting, state.depthWriting}),
              std::vector<int>({1, 2, 0, 1, 1, 0, 1}));
    EXPECT_EQ(xpsim::BoundTexture(0), 0);
    EXPECT_EQ(xpsim::BoundTexture(3), 42);

    XPLMSetGraphicsState(0, 5, 0, 0, 0, 0, 0);
    XPLMSetGraphicsState(0, -1, 0, 0, 0, 0, 0);
    XPLMBindTexture2d(7, 4);
    XPLMBindTexture2d(7, -1);
    XPLMBindTexture2d(-2, 3);
    EXPECT_EQ(NewLog(),
              "xpsim: XPLMSetGraphicsState: the number of texture units is 0 to 4, not 5; the state is unchanged\n"
              "xpsim: XPLMSetGraphicsState: the number of texture units is 0 to 4, not -1; the state is unchanged\n"
              "xpsim: XPLMBindTexture2d: texture unit 4 does not exist (0 to 3)\n"
              "xpsim: XPLMBindTexture2d: texture unit -1 does not exist (0 to 3)\n"
              "xpsim: XPLMBindTexture2d: texture number -2 is negative\n");
    EXPECT_EQ(xpsim::CurrentGraphicsState().textureUnits, 2);
    EXPECT_EQ(xpsim::BoundTexture(3), 42);

    xpsim::ResetWorld();
    EXPECT_EQ(xpsim::CurrentGraphicsState().fog, 0);
    EXPECT_EQ(xpsim::BoundTexture(3), 0);
}

TEST_F(sim_Graphics, TextureNumbersAreUniqueAndApartFromTheSims) {
    std::set<int> seen;
    int first[3] = {}, second[2] = {};
    XPLMGenerateTextureNumbers(first, 3);
    XPLMGenerateTextureNumbers(second, 2);
    XPLMGenerateTextureNumbers(second, 0);  // changes nothing
    for (int n : first) seen.insert(n);
    for (int n : second) seen.insert(n);
    EXPECT_EQ(seen.size(), 5u);
    EXPECT_EQ(seen.count(0), 0u);
    EXPECT_EQ(xpsim::GeneratedTextureCount(), 5);
    for (XPLMTextureID id : {xplm_Tex_GeneralInterface, xplm_Tex_AircraftPaint, xplm_Tex_AircraftLiteMap}) {
        const int number = XPLMGetTexture(id);
        EXPECT_NE(number, 0);
        EXPECT_TRUE(seen.insert(number).second) << "texture id " << id << " answers a number already in use";
        EXPECT_EQ(XPLMGetTexture(id), number);  // fixed
    }
    NewLog();
    int untouched[2] = {-7, -7};
    XPLMGenerateTextureNumbers(nullptr, 2);
    XPLMGenerateTextureNumbers(untouched, -1);
    EXPECT_EQ(XPLMGetTexture(3), 0);
    EXPECT_EQ(XPLMGetTexture(-1), 0);
    EXPECT_EQ(untouched[0], -7);
    EXPECT_EQ(NewLog(), "xpsim: XPLMGenerateTextureNumbers: the output array is null\n"
                        "xpsim: XPLMGenerateTextureNumbers: the count -1 is negative\n"
                        "xpsim: XPLMGetTexture: no texture id 3\n"
                        "xpsim: XPLMGetTexture: no texture id -1\n");
}

TEST_F(sim_Graphics, FontsMeasureAsTheirDimensionsSay) {
    NewLog();
    for (int font = xplmFont_Basic; font <= xplmFont_Proportional; ++font) {
        int width = -1, height = -1, digitsOnly = -1;
        XPLMGetFontDimensions(font, &width, &height, &digitsOnly);
        EXPECT_TRUE(width > 0 && height > 0 && (digitsOnly == 0 || digitsOnly == 1)) << "font " << font;
        XPLMGetFontDimensions(font, nullptr, &height, nullptr);
        // Digits are as wide as the reported width in every font, the proportional one included.
        EXPECT_EQ(XPLMMeasureString(font, "0123456789", 10), 10.0f * width) << "font " << font;
        if (font != xplmFont_Proportional) {
            EXPECT_EQ(XPLMMeasureString(font, "Wil !", 5), 5.0f * width);
        }
    }
    int basic[3], led[3];
    XPLMGetFontDimensions(xplmFont_Basic, &basic[0], &basic[1], &basic[2]);
    XPLMGetFontDimensions(xplmFont_Led, &led[0], &led[1], &led[2]);
    EXPECT_EQ(std::vector<int>(basic, basic + 3), std::vector<int>({7, 12, 0}));
    EXPECT_EQ(led[2], 1);
    EXPECT_EQ(NewLog(), "");

    // The proportional font: its printable ASCII characters average the reported width.
    int total = 0;
    for (int c = 0x20; c <= 0x7e; ++c) total += xpsim::ProportionalWidth(static_cast<unsigned char>(c));
    EXPECT_EQ(std::lround(total / 95.0), 7);
    EXPECT_EQ(XPLMMeasureString(xplmFont_Proportional, "Wil !", 5), 11.0f + 3 + 3 + 4 + 3);
    EXPECT_EQ(XPLMMeasureString(xplmFont_Proportional, "mAx", 3), 11.0f + 8 + 7);

    // Counts are bytes, the text may end before them, and nothing past its end is read (the buffers are
    // exactly as long as their texts, so reading further is caught).
    const std::vector<char> accented = {'\xc3', '\xa9', '\0'};
    const std::vector<char> unterminated = {'a', 'b', 'c'};
    EXPECT_EQ(XPLMMeasureString(xplmFont_Basic, accented.data(), 2), 14.0f);
    EXPECT_EQ(XPLMMeasureString(xplmFont_Proportional, accented.data(), 1), 7.0f);
    EXPECT_EQ(XPLMMeasureString(xplmFont_Basic, accented.data(), 1000000), 14.0f);
    EXPECT_EQ(XPLMMeasureString(xplmFont_Basic, unterminated.data(), 3), 21.0f);
    EXPECT_EQ(XPLMMeasureString(xplmFont_Basic, "", 0), 0.0f);
    EXPECT_EQ(NewLog(), "");

    int width = -1;
    XPLMGetFontDimensions(19, &width, nullptr, nullptr);
    EXPECT_EQ(width, 0);
    EXPECT_EQ(XPLMMeasureString(-1, "abc", 3), 0.0f);
    EXPECT_EQ(XPLMMeasureString(xplmFont_Basic, nullptr, 3), 0.0f);
    EXPECT_EQ(XPLMMeasureString(xplmFont_Basic, "abc", -3), 0.0f);
    EXPECT_EQ(NewLog(), "xpsim: XPLMGetFontDimensions: no font 19\n"
                        "xpsim: XPLMMeasureString: no font -1\n"
                        "xpsim: XPLMMeasureString: the text is null\n"
                        "xpsim: XPLMMeasureString: the character count -3 is negative\n");
}

TEST_F(sim_Graphics, NumbersShowTheirDigitsDecimalsAndSign) {
    struct Case {
        double value;
        int digits, decimals, showSign;
        const char* text;
    };
    const Case kCases[] = {
        {3.25, 4, 2, 1, "+0003.25"},
        {3.25, 1, 2, 0, "3.25"},
        {3.25, 0, 1, 0, "3.2"},  // rounded from the exact value, ties to even
        {2.675, 1, 2, 0, "2.67"},  // 2.675 is a little less than 2.675 as a double
        {-42.0, 3, 0, 1, "-042"},
        {-42.5, 1, 0, 0, "-42"},
        {12345.678, 2, 1, 0, "12345.7"},  // more integer digits than asked for are all shown
        {7.0, 3, 0, 0, "007"},
        {0.0, 0, 0, 0, "0"},
        {-0.004, 1, 2, 0, "0.00"},  // rounds to zero: no minus
        {-0.004, 1, 2, 1, "+0.00"},
        {1e20, 1, 0, 0, "100000000000000000000"},
        {0.1, 0, 20, 0, "0.10000000000000000555"},
        {NAN, 3, 2, 1, "nan"},
        {INFINITY, 3, 2, 1, "+inf"},
        {-INFINITY, 3, 2, 0, "-inf"},
    };
    xpsim::DrawingScope drawing;
    float green[3] = {0.0f, 1.0f, 0.0f};
    for (const Case& c : kCases) {
        XPLMDrawNumber(green, 12, 20, c.value, c.digits, c.decimals, c.showSign, xplmFont_Led);
        EXPECT_EQ(Drawn(), std::vector<std::string>({std::string("number x=12 y=20 rgb=0.000,1.000,0.000 "
                                                                 "font=xplmFont_Led \"") + c.text + "\""}))
            << c.value << " " << c.digits << " " << c.decimals << " " << c.showSign;
    }
    NewLog();
    XPLMDrawNumber(green, 0, 0, 1.0, -1, 0, 0, xplmFont_Basic);
    XPLMDrawNumber(green, 0, 0, 1.0, 0, 21, 0, xplmFont_Basic);
    XPLMDrawNumber(green, 0, 0, 1.0, 0, 0, 0, 42);
    XPLMDrawNumber(nullptr, 0, 0, 1.0, 0, 0, 0, xplmFont_Basic);
    EXPECT_EQ(Drawn(), std::vector<std::string>());
    EXPECT_EQ(NewLog(), "xpsim: XPLMDrawNumber: digits -1 and decimals 0 must each be 0 to 20; nothing is drawn\n"
                        "xpsim: XPLMDrawNumber: digits 0 and decimals 21 must each be 0 to 20; nothing is drawn\n"
                        "xpsim: XPLMDrawNumber: no font 42; nothing is drawn\n"
                        "xpsim: XPLMDrawNumber: the colour is null; nothing is drawn\n");
}

TEST_F(sim_Graphics, StringsAreRecordedReadablyAndWrappedAtWordBoundaries) {
    xpsim::DrawingScope drawing;
    const std::string at = "string x=10 y=";
    const std::string white = " rgb=1.000,1.000,1.000 font=xplmFont_Basic ";
    struct Case {
        const char* text;
        int wrap;  // -1: no word wrap
        XPLMFontID font;
        std::vector<std::string> lines;  // "y text", the text as recorded
    };
    const Case kCases[] = {
        {"Hello", -1, xplmFont_Basic, {"700 \"Hello\""}},
        // Quotes, backslashes and bytes outside printable ASCII are escaped.
        {"say \"hi\"\\ \t\x01\xc3\xa9", -1, xplmFont_Basic, {"700 \"say \\\"hi\\\"\\\\ \\x09\\x01\\xc3\\xa9\""}},
        // Without wrapping, spaces and line feeds stay as they are.
        {"  two\nlines ", -1, xplmFont_Basic, {"700 \"  two\\x0alines \""}},
        {"", -1, xplmFont_Basic, {}},
        // 7 pixels a character: "The quick" is 63 wide, "The quick brown" 105.
        {"The quick brown fox jumps", 70, xplmFont_Basic,
         {"700 \"The quick\"", "688 \"brown fox\"", "676 \"jumps\""}},
        {"The quick", 63, xplmFont_Basic, {"700 \"The quick\""}},  // exactly the width fits
        {"The quick", 62, xplmFont_Basic, {"700 \"The\"", "688 \"quick\""}},
        // A word wider than the width stands alone; the first line keeps its leading spaces, breaks drop theirs.
        {"  a extraordinarily   b  ", 30, xplmFont_Basic, {"700 \"  a\"", "688 \"extraordinarily\"", "676 \"b\""}},
        {"a  b", 1000, xplmFont_Basic, {"700 \"a  b\""}},
        {"one two", 0, xplmFont_Basic, {"700 \"one\"", "688 \"two\""}},
        {"   ", 100, xplmFont_Basic, {}},
        // The proportional font: "Wil" is 17 wide, "Wil il" 27; lines are 12 apart. The radios font's 14.
        {"Wil il", 17, xplmFont_Proportional, {"700 \"Wil\"", "688 \"il\""}},
        {"Wil il", 27, xplmFont_Proportional, {"700 \"Wil il\""}},
        {"12 34", 20, xplmFont_RadiosGA, {"700 \"12\"", "686 \"34\""}},
    };
    for (const Case& c : kCases) {
        int wrap = c.wrap;
        DrawText(c.text, 10, 700, c.wrap < 0 ? nullptr : &wrap, c.font);
        xpsim::FontMetrics font;
        ASSERT_TRUE(xpsim::FindFont(c.font, font));
        std::vector<std::string> expected;
        for (const std::string& line : c.lines)
            expected.push_back(at + line.substr(0, line.find(' ')) + " rgb=1.000,1.000,1.000 font=" + font.name + " " +
                               line.substr(line.find(' ') + 1));
        EXPECT_EQ(Drawn(), expected) << c.text << " wrapped at " << c.wrap;
    }

    // The colour as the screen shows it; the dark box as given.
    float odd[3] = {1.5f, -0.25f, NAN};
    char text[] = "x";
    XPLMDrawString(odd, -5, 3, text, nullptr, xplmFont_Basic);
    XPLMDrawTranslucentDarkBox(10, 60, 200, 10);
    EXPECT_EQ(Drawn(), std::vector<std::string>({"string x=-5 y=3 rgb=1.000,0.000,0.000 font=xplmFont_Basic \"x\"",
                                                 "dark-box left=10 top=60 right=200 bottom=10"}));

    NewLog();
    XPLMDrawString(kWhite, 0, 0, nullptr, nullptr, xplmFont_Basic);
    XPLMDrawString(nullptr, 0, 0, text, nullptr, xplmFont_Basic);
    XPLMDrawString(kWhite, 0, 0, text, nullptr, 19);
    EXPECT_EQ(Drawn(), std::vector<std::string>());
    EXPECT_EQ(NewLog(), "xpsim: XPLMDrawString: the text is null; nothing is drawn\n"
                        "xpsim: XPLMDrawString: the colour is null; nothing is drawn\n"
                        "xpsim: XPLMDrawString: no font 19; nothing is drawn\n");
}

// Drawing happens in the frame's drawing phases; a flight loop's drawing draws nothing.
int DrawInPhase(XPLMDrawingPhase, int, void*) {
    XPLMDrawTranslucentDarkBox(0, 20, 20, 0);
    DrawText("in phase");
    return 1;
}
float DrawInLoop(float, float, int, void*) {
    DrawText("in loop");
    return -1.0f;
}

TEST_F(sim_Graphics, OnlyTheDrawingPhasesDraw) {
    const int plugin = simtest::AddEnabledPlugin("/plugins/draws.xpl", simtest::StartAsPlugin);
    NewLog();
    {
        xpsim::PluginContext context(plugin);
        XPLMRegisterDrawCallback(DrawInPhase, xplm_Phase_Gauges, 0, nullptr);
        XPLMRegisterFlightLoopCallback(DrawInLoop, -1.0f, nullptr);
        XPLMDrawTranslucentDarkBox(0, 1, 1, 0);
    }
    EXPECT_EQ(NewLog(), "xpsim: XPLMDrawTranslucentDarkBox: called while the sim is not drawing (outside a draw "
                        "callback or window); nothing is drawn\n");
    EXPECT_EQ(xpsim::DrawingThisFrame(), std::vector<std::string>());
    RunFrames(2);
    EXPECT_EQ(xpsim::DrawingThisFrame(),  // the second frame's only
              std::vector<std::string>({"dark-box left=0 top=20 right=20 bottom=0",
                                        "string x=10 y=700 rgb=1.000,1.000,1.000 font=xplmFont_Basic \"in phase\""}));
    const std::string outside =
        "xpsim: XPLMDrawString: called while the sim is not drawing (outside a draw callback or window); nothing is "
        "drawn\n";
    EXPECT_EQ(NewLog(), outside + outside);
    EXPECT_FALSE(xpsim::InDrawing());

    // The draw log: a frame header, then the record; the first write starts the file.
    const std::string path = root_ + "/draw.txt";
    std::string error;
    ASSERT_TRUE(xpsim::WriteDrawingRecord(path, true, error)) << error;
    ASSERT_TRUE(xpsim::WriteDrawingRecord(path, false, error)) << error;
    ASSERT_TRUE(xpsim::WriteDrawingRecord(path, true, error)) << error;
    EXPECT_EQ(simtest::ReadFile(path),
              "frame 2\n"
              "dark-box left=0 top=20 right=20 bottom=0\n"
              "string x=10 y=700 rgb=1.000,1.000,1.000 font=xplmFont_Basic \"in phase\"\n");
    EXPECT_FALSE(xpsim::WriteDrawingRecord(root_ + "/no/such/folder/draw.txt", true, error));
    EXPECT_EQ(error, "cannot write " + root_ + "/no/such/folder/draw.txt: No such file or directory");
}

TEST(sim_GraphicsEvents, DrawLogTakesAFileNameWithSpaces) {
    std::istringstream in("0.5 draw-log logs/frame ten.txt   # the tenth frame\n1 draw-log\n");
    std::vector<xpsim::Event> events;
    std::string error;
    EXPECT_FALSE(xpsim::ParseEvents(in, events, error));
    EXPECT_EQ(error, "line 2: draw-log takes the file to write the frame's drawing to");
    std::istringstream good("0.5 draw-log logs/frame ten.txt   # the tenth frame\n");
    ASSERT_TRUE(xpsim::ParseEvents(good, events, error)) << error;
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].verb, xpsim::EventVerb::DrawLog);
    EXPECT_EQ(events[0].text, "logs/frame ten.txt");
    EXPECT_STREQ(xpsim::VerbName(events[0].verb), "draw-log");
}

}  // namespace
