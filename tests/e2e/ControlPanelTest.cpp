// The control panel end to end: the real Corvelle.xpl in xpsim, driven through its menu, clicks and
// drags. What the panel shows is read from the drawing record (draw-log): the list boxes and the
// popup draw their texts with XPLMDrawString. What its buttons and windows do is read from the
// scripts' output and the logs.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "SimHarness.h"

namespace {

// The panel as the menu builds it: left 500, top 650, 450 x 550. Click points of its parts.
const char* const kOpenPanel = "menu Plugins/Corvelle/Control Panel";
const char* const kOpenAdmin = "menu Plugins/Corvelle/Script Enable / Disable";
const char* const kOpenInfo = "menu Plugins/Corvelle/Script Information";
const char* const kStart = "click 615 184";
const char* const kStop = "click 715 184";
const char* const kOutputBox = "click 781 184";
const char* const kReload = "click 615 164";
const char* const kClear = "click 715 164";
const char* const kReloadPlugins = "click 815 164";
const char* const kScriptInfo = "click 825 144";
const char* const kPopup = "click 675 144";
const char* const kClosePanel = "click 510 640";
// The administration window (200, 550, 494, 245): a row's check box, its pages and close box.
std::string AdminBox(int row) { return "click 467 " + std::to_string(479 - 25 * row); }
const char* const kAdminNext = "click 387 277";
const char* const kAdminPrevious = "click 306 277";
const char* const kCloseAdmin = "click 210 538";
// The information window (290, 680, 707, 204).
const char* const kCloseInfo = "click 300 668";

struct Drawn {
    int x = 0, y = 0;
    std::string font, text;
};

// The strings of a draw-log file, in drawing order.
std::vector<Drawn> Strings(const std::string& record) {
    std::vector<Drawn> drawn;
    for (const std::string& line : Lines(record)) {
        if (line.rfind("string ", 0) != 0) continue;
        Drawn d;
        d.x = std::atoi(Between(line, " x=", " ").c_str());
        d.y = std::atoi(Between(line, " y=", " ").c_str());
        d.font = Between(line, " font=", " ");
        const size_t open = line.find('"'), close = line.rfind('"');
        if (open != std::string::npos && close > open) d.text = line.substr(open + 1, close - open - 1);
        drawn.push_back(d);
    }
    return drawn;
}

template <typename Keep>
std::vector<std::string> Texts(const std::string& record, Keep keep) {
    std::vector<std::string> texts;
    for (const Drawn& d : Strings(record))
        if (keep(d)) texts.push_back(d.text);
    return texts;
}

// The display list (570 to 880, 600 to 450) and the print list (570 to 880, 440 to 210), row by row.
std::vector<std::string> DisplayList(const std::string& record) {
    return Texts(record, [](const Drawn& d) { return d.x == 570 && d.y > 450 && d.y < 600; });
}
std::vector<std::string> PrintList(const std::string& record) {
    return Texts(record, [](const Drawn& d) { return d.x == 570 && d.y > 210 && d.y < 440; });
}
// The popup button's text, and the items of an open popup menu.
std::vector<std::string> PopupButton(const std::string& record) {
    return Texts(record, [](const Drawn& d) { return d.x == 579 && d.font == "xplmFont_Basic"; });
}
// A menu opened from the chooser at its place (575, 155) draws its items 18 pixels into each column
// of `columnWidth` pixels.
std::vector<std::string> MenuItems(const std::string& record, int columnWidth) {
    return Texts(record, [columnWidth](const Drawn& d) {
        return d.font == "xplmFont_Menus" && d.x >= 593 && (d.x - 593) % columnWidth == 0;
    });
}

using Texts_ = std::vector<std::string>;

// A script that prints every entry point it gets but messages, with whether the table has it enabled
// then.
std::string Talker(const std::string& n, const std::string& start = "") {
    return "from PythonScriptMessaging import *\n"
           "from BrindleUtilities import *\n"
           "class Corvelle:\n"
           "    def XPluginStart(self):\n" +
           start + "        print('start " + n + "')\n" + "        return 'Script " + n + "', 'sig." + n +
           "', 'Description " + n +
           "'\n"
           "    def XPluginEnable(self):\n"
           "        print('enable " + n + " %d' % CV_IsScriptEnabled(self))\n" +
           "        return 1\n"
           "    def XPluginDisable(self):\n"
           "        print('disable " + n + " %d' % CV_IsScriptEnabled(self))\n" +
           "    def XPluginStop(self):\n"
           "        print('stop " + n + "')\n"
           "    def XPluginReceiveMessage(self, fromWho, message, param):\n"
           "        pass\n";
}

// Events, one a line, each at its own time from 0.1 s on, 0.05 s apart.
std::string Timeline(const std::vector<std::string>& events) {
    std::string text;
    for (size_t i = 0; i < events.size(); ++i) {
        char time[16];
        snprintf(time, sizeof time, "%.2f ", 0.1 + 0.05 * double(i));
        text += time + events[i] + "\n";
    }
    return text;
}

SimRun RunPanel(const SimFolder& sim, const std::vector<std::string>& events, const std::string& seconds = "") {
    const std::string file = sim.writeEvents(Timeline(events));
    const std::string length = seconds.empty() ? std::to_string(0.2 + 0.05 * double(events.size())) : seconds;
    return sim.run({"--seconds", length, "--events", file});
}

}  // namespace

TEST(ControlPanel, ShowsEarlierLinesAndEveryButtonDoesItsPart) {
    SimFolder sim;
    sim.writeScript("CV_A.py", Talker("A",
                                      "        BrindleDisplay('display A')\n"
                                      "        BrindlePrint('print A')\n"));
    const SimRun run = RunPanel(sim, {kOpenPanel, "draw-log open.txt",
                                 kStop, "draw-log stopped.txt", kStop /* disabled now: nothing */,
                                 kClear, "draw-log cleared.txt",
                                 kStart, kStart /* disabled now */, "draw-log started.txt",
                                 kClear, kReload, kStart /* still disabled after a reload */, "draw-log reloaded.txt",
                                 kClear, kScriptInfo, "draw-log info.txt"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;

    // What the script printed at start, before the panel existed, is there when it opens.
    const std::string open = sim.read("open.txt");
    EXPECT_EQ(DisplayList(open), (Texts_{"display A"}));
    EXPECT_EQ(PrintList(open), (Texts_{"print A", "start A", "enable A 1"}));
    EXPECT_EQ(PopupButton(open), (Texts_{"CV_A"}));
    EXPECT_EQ(PrintList(sim.read("stopped.txt")), (Texts_{"print A", "start A", "enable A 1", "Stopping Python",
                                                          "disable A 1", "stop A", "Python Stopped"}));
    EXPECT_EQ(DisplayList(sim.read("cleared.txt")), Texts_{});
    EXPECT_EQ(PrintList(sim.read("cleared.txt")), Texts_{});
    EXPECT_EQ(PrintList(sim.read("started.txt")),
              (Texts_{"Starting Python", "print A", "start A", "enable A 1", "Python Started"}));
    EXPECT_EQ(PrintList(sim.read("reloaded.txt")),
              (Texts_{"Stopping Python", "disable A 1", "stop A", "Python Stopped", "Starting Python", "print A",
                      "start A", "enable A 1", "Python Started"}));
    const Texts_ info = PrintList(sim.read("info.txt"));
    ASSERT_EQ(info.size(), 6u) << sim.read("info.txt");
    EXPECT_EQ(info[0], "Script Information");
    EXPECT_EQ(info[1].rfind("Script Id :- ", 0), 0u);
    EXPECT_EQ(info[1].find_first_not_of("0123456789abcdef", 13), std::string::npos) << info[1];
    EXPECT_EQ(Texts_(info.begin() + 2, info.end()),
              (Texts_{"Name :- Script A", "Signature :- sig.A", "Description :- Description A", "Script Type :- 1"}));

    // Three starts, one each from the plugin, Start and Reload Scripts; the disabled buttons did nothing.
    EXPECT_EQ(sim.output(),
              "start A\nenable A 1\ndisable A 1\nstop A\n"
              "start A\nenable A 1\ndisable A 1\nstop A\n"
              "start A\nenable A 1\ndisable A 1\nstop A\n");
    EXPECT_EQ(CountOf(sim.log(), "+++ LOGGING STARTED +++"), 3u);
    // The panel's windows and menu went with the plugin.
    EXPECT_EQ(sim.simLog().find("left registered"), std::string::npos) << sim.simLog();
}

TEST(ControlPanel, AStartFromThePanelEnablesOnlyScriptsThatNamedThemselves) {
    SimFolder sim;
    sim.writeScript("CV_Odd.py",
                    "class Corvelle:\n"
                    "    def XPluginStart(self):\n        print('start')\n        return 42\n"
                    "    def XPluginEnable(self):\n        print('enable')\n"
                    "    def XPluginDisable(self):\n        print('disable')\n"
                    "    def XPluginStop(self):\n        print('stop')\n");
    const SimRun run = RunPanel(sim, {kOpenPanel, kStop, kStart, kClear, kScriptInfo, "draw-log info.txt"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    // The simulator's enable reached it the first time; the panel's start did not enable it.
    EXPECT_EQ(sim.output(), "start\nenable\ndisable\nstop\nstart\ndisable\nstop\n");
    const Texts_ info = PrintList(sim.read("info.txt"));
    ASSERT_EQ(info.size(), 6u);
    EXPECT_EQ(Texts_(info.begin() + 2, info.end()),
              (Texts_{"Name :- ", "Signature :- ", "Description :- ", "Script Type :- 1"}));
}

TEST(ControlPanel, TheOutputFileCheckBoxGatesTheOutputFileOnly) {
    SimFolder sim;
    sim.writeScript("CV_Tick.py", TestScript("Tick", {"XPLMProcessing"},
                                             "self.loop = self.Loop\n"
                                             "XPLMRegisterFlightLoopCallback(self, self.loop, -5.0, 0)\n",
                                             "", "XPLMUnregisterFlightLoopCallback(self, self.loop, 0)\n",
                                             "def Loop(self, since, sinceLoop, counter, refcon):\n"
                                             "    print('tick %d' % XPLMGetCycleNumber())\n"
                                             "    return -5.0\n"));
    // Unchecked at frame 8, checked again at frame 18.
    const std::string events = sim.writeEvents(std::string("0.05 ") + kOpenPanel + "\n0.40 " + kOutputBox +
                                               "\n0.90 " + kOutputBox + "\n1.30 draw-log list.txt\n");
    const SimRun run = sim.run({"--seconds", "1.3", "--events", events});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(), "tick 5\ntick 20\ntick 25\n");
    EXPECT_EQ(PrintList(sim.read("list.txt")), (Texts_{"tick 5", "tick 10", "tick 15", "tick 20", "tick 25"}));
}

TEST(ControlPanel, ReloadPluginsReloadsTheSimulatorsPluginsAndThePanelComesBack) {
    SimFolder sim;
    sim.writeScript("CV_A.py", Talker("A"));
    const SimRun run = RunPanel(sim, {kOpenPanel, kReloadPlugins, kOpenPanel, "draw-log after.txt"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(CountOf(sim.simLog(), "Loaded: "), 2u) << sim.simLog();
    EXPECT_EQ(CountOf(sim.log(), "+++ LOGGING STARTED +++"), 2u);
    EXPECT_EQ(sim.output(), "start A\nenable A 1\ndisable A 1\nstop A\nstart A\nenable A 1\ndisable A 1\nstop A\n");
    // The new plugin's menu built a new panel, holding only what the new start printed.
    EXPECT_EQ(PrintList(sim.read("after.txt")), (Texts_{"start A", "enable A 1"}));
    EXPECT_EQ(sim.simLog().find("left registered"), std::string::npos) << sim.simLog();
}

TEST(ControlPanel, ThePopupChoosesTheScriptThatScriptInfoDescribes) {
    SimFolder sim;
    for (const char* n : {"A", "B", "C"}) sim.writeScript(std::string("CV_") + n + ".py", Talker(n));
    // The menu opens with the current item over the button (575, 155): 63 pixels wide, 12 a line.
    const SimRun run = RunPanel(sim, {kOpenPanel, kPopup, "draw-log menu.txt", "click 600 125", "draw-log picked.txt",
                                 kClear, kScriptInfo, "draw-log info.txt",
                                 kPopup, "draw-log again.txt", "click 900 600" /* outside: no pick */,
                                 "draw-log closed.txt", kClear, kScriptInfo, "draw-log info2.txt"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    const std::string menu = sim.read("menu.txt");
    EXPECT_EQ(MenuItems(menu, 63), (Texts_{"CV_A", "CV_B", "CV_C"}));
    EXPECT_NE(menu.find("string x=593 y=121 rgb=0.000,0.000,0.000 font=xplmFont_Menus \"CV_C\""), std::string::npos)
        << menu;
    EXPECT_EQ(MenuItems(sim.read("picked.txt"), 63), Texts_{});
    EXPECT_EQ(PopupButton(sim.read("picked.txt")), (Texts_{"CV_C"}));
    const Texts_ info = PrintList(sim.read("info.txt"));
    ASSERT_EQ(info.size(), 6u);
    EXPECT_EQ(info[2], "Name :- Script C");
    // Opened again, the current item C lies over the button: A two lines above it.
    EXPECT_NE(sim.read("again.txt").find("string x=593 y=169 rgb=0.000,0.000,0.000 font=xplmFont_Menus \"CV_A\""),
              std::string::npos)
        << sim.read("again.txt");
    EXPECT_EQ(MenuItems(sim.read("closed.txt"), 63), Texts_{});
    EXPECT_EQ(PopupButton(sim.read("closed.txt")), (Texts_{"CV_C"}));
    EXPECT_EQ(PrintList(sim.read("info2.txt"))[2], "Name :- Script C");
}

TEST(ControlPanel, ScriptInfoWithoutScriptsOrWithoutTheirFolder) {
    {
        SimFolder sim;  // an empty scripts folder
        const SimRun run = RunPanel(sim, {kOpenPanel, kScriptInfo, "draw-log info.txt"});
        ASSERT_EQ(run.exitCode, 0) << run.stderrText;
        EXPECT_EQ(PopupButton(sim.read("info.txt")), (Texts_{"No Scripts Found"}));
        EXPECT_EQ(PrintList(sim.read("info.txt")), (Texts_{"Script Not Loaded"}));
    }
    {
        SimFolder sim(false);
        const SimRun run = RunPanel(sim, {kOpenPanel, kScriptInfo, "draw-log info.txt"});
        ASSERT_EQ(run.exitCode, 0) << run.stderrText;
        // The button shows what fits in its 200 pixels: (200 - 24) / 7 characters.
        EXPECT_EQ(PopupButton(sim.read("info.txt")), (Texts_{"PythonScripts Directory E"}));
        // The list shows (310 - 20) / 7 characters of a line.
        EXPECT_EQ(PrintList(sim.read("info.txt")),
                  (Texts_{"PythonScripts Directory Error", "Check that the PythonScripts Directory ex"}));
    }
}

TEST(ControlPanel, ThePrintListScrollsAndJumpsBackToTheTopForNewLines) {
    SimFolder sim;
    sim.writeScript("CV_Lines.py", TestScript("Lines", {"XPLMProcessing"},
                                              "for i in range(30):\n"
                                              "    print('line %02d' % i)\n"
                                              "self.loop = self.Loop\n"
                                              "XPLMRegisterFlightLoopCallback(self, self.loop, 2.0, 0)\n",
                                              "", "XPLMUnregisterFlightLoopCallback(self, self.loop, 0)\n",
                                              "def Loop(self, since, sinceLoop, counter, refcon):\n"
                                              "    print('late line')\n"
                                              "    return 0\n"));
    // The print list's scroll bar: x 860 to 880, y 210 to 440; 20-pixel buttons and thumb.
    const std::string events = sim.writeEvents(std::string("0.10 ") + kOpenPanel +
                                               "\n0.20 draw-log top.txt\n"
                                               "0.30 click 870 215\n0.35 draw-log down.txt\n"
                                               "0.40 click 870 300\n0.45 draw-log page.txt\n"
                                               "0.50 drag 870 296 870 410\n0.55 draw-log dragged.txt\n"
                                               "1.50 click 870 215\n1.55 draw-log before.txt\n"
                                               "2.10 draw-log after.txt\n");
    const SimRun run = sim.run({"--seconds", "2.2", "--events", events});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    auto lines = [](int from, int to) {
        Texts_ texts;
        for (int i = from; i < to; ++i) texts.push_back((i < 10 ? "line 0" : "line ") + std::to_string(i));
        return texts;
    };
    // 230 pixels show 19 lines, the first item at the top.
    EXPECT_EQ(PrintList(sim.read("top.txt")), lines(0, 19));
    // The bottom button moves on by one line, the track below the thumb by a page of 19.
    EXPECT_EQ(PrintList(sim.read("down.txt")), lines(1, 20));
    EXPECT_EQ(PrintList(sim.read("page.txt")), lines(20, 30));
    // The thumb dragged to the top of its travel shows the first item again.
    EXPECT_EQ(PrintList(sim.read("dragged.txt")), lines(0, 19));
    EXPECT_EQ(PrintList(sim.read("before.txt")), lines(1, 20));
    EXPECT_EQ(PrintList(sim.read("after.txt")), lines(0, 19));
}

TEST(ControlPanel, TheSelectionAndTheHoveredMenuItemAreHighlightedInTheSimulatorsColours) {
    SimFolder sim;
    for (const char* n : {"A", "B"}) sim.writeScript(std::string("CV_") + n + ".py", Talker(n));
    // The print list's third row (y 416 to 404) is clicked; the popup menu's first item (575 to 638,
    // 155 to 143) is hovered.
    const SimRun run = RunPanel(sim, {"set sim/graphics/colors/menu_hilite_rgb 0.2,0.4,0.6",
                                      "set sim/graphics/colors/list_text_rgb 1,1,0",
                                      "set sim/graphics/colors/menu_text_rgb 0,1,1", kOpenPanel,
                                      "draw-log open.txt", "click 600 410", "draw-log selected.txt", kPopup,
                                      "move 600 150", "draw-log hover.txt"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    auto highlight = [](int top, int right, int bottom, const std::string& rgb) {
        return "gl mode=GL_QUADS vertices=4 rgba=" + rgb + ",0.250 blend=alpha texture=0 points=(570," +
               std::to_string(top) + ");(" + std::to_string(right) + "," + std::to_string(top) + ");(" +
               std::to_string(right) + "," + std::to_string(bottom) + ");(570," + std::to_string(bottom) + ")\n";
    };
    // The first line is selected from the start.
    const std::string open = sim.read("open.txt");
    EXPECT_NE(open.find(highlight(440, 860, 428, "0.200,0.400,0.600")), std::string::npos) << open;
    EXPECT_NE(open.find("string x=570 y=430 rgb=1.000,1.000,0.000 font=xplmFont_Basic \"start A\""),
              std::string::npos);
    const std::string selected = sim.read("selected.txt");
    EXPECT_NE(selected.find(highlight(416, 860, 404, "0.200,0.400,0.600")), std::string::npos) << selected;
    EXPECT_EQ(selected.find(highlight(440, 860, 428, "0.200,0.400,0.600")), std::string::npos);
    const std::string hover = sim.read("hover.txt");
    EXPECT_NE(hover.find("ui-element style=xpElement_PushButtonLit lit=0 left=575 top=155 right=638 bottom=143"),
              std::string::npos)
        << hover;
    EXPECT_NE(hover.find("ui-element style=xpElement_PushButton lit=0 left=575 top=143 right=638 bottom=131"),
              std::string::npos);
    EXPECT_NE(hover.find("gl mode=GL_QUADS vertices=4 rgba=0.200,0.400,0.600,0.250 blend=alpha texture=0 "
                         "points=(575,155);(638,155);(638,143);(575,143)"),
              std::string::npos);
    EXPECT_NE(hover.find("string x=593 y=145 rgb=0.000,1.000,1.000 font=xplmFont_Menus \"CV_A\""), std::string::npos);

    // Without the simulator's colour, the highlight is the backup colour in the cockpit's light.
    SimFolder dim;
    dim.writeScript("CV_A.py", Talker("A"));
    std::string datarefs;
    for (const std::string& line : Lines(ReadFile(std::string(TEST_DATA_DIR) + "/DataRefs.txt")))
        if (line.rfind("sim/graphics/colors/menu_hilite_rgb", 0) != 0) datarefs += line + "\n";
    dim.writeFile("Resources/plugins/DataRefs.txt", datarefs);
    ASSERT_EQ(RunPanel(dim, {"set sim/graphics/misc/cockpit_light_level_r 0.5",
                             "set sim/graphics/misc/cockpit_light_level_g 1",
                             "set sim/graphics/misc/cockpit_light_level_b 1", kOpenPanel, "draw-log open.txt"})
                  .exitCode,
              0);
    // 65/256 at half light, 83/256 and 89/256 in full light.
    EXPECT_NE(dim.read("open.txt").find(highlight(440, 860, 428, "0.127,0.324,0.348")), std::string::npos)
        << dim.read("open.txt");
}

TEST(ControlPanel, LongAndMultiByteLinesAreCutSafely) {
    SimFolder sim;
    sim.writeScript("CV_Long.py", TestScript("Long", {"BrindleUtilities"},
                                             "print('x' * 100000)\n"
                                             "BrindleDisplay('y' * 1000)\n"
                                             "print('a' * 40 + '\\u00e9' + 'b' * 10)\n",
                                             "print('z' * 100000)\n"
                                             "BrindleDisplay('w' * 100)\n"));
    const SimRun run = RunPanel(sim, {kOpenPanel, "draw-log open.txt"}, "0.5");
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    const std::string open = sim.read("open.txt");
    // Every piece is cut to the 41 characters the list shows; the wrap counts bytes, so the
    // two-byte letter is split between the pieces.
    const std::string x(41, 'x'), y(41, 'y'), z(41, 'z'), w(41, 'w');
    EXPECT_EQ(PrintList(open), (Texts_{x, x, x, std::string(40, 'a') + "\\xc3", "bbbbbbb", z, z, z}));
    EXPECT_EQ(DisplayList(open), (Texts_{y, y, y, w, w, std::string(10, 'w')}));
}

TEST(ControlPanel, ClosedWindowsHideAndTheMenuBringsThemBackManyTimes) {
    SimFolder sim;
    sim.writeScript("CV_A.py", Talker("A"));
    std::vector<std::string> events = {kOpenPanel, kClosePanel, "draw-log hidden.txt", kOpenPanel,
                                       "draw-log shown.txt", kClosePanel};
    for (int i = 0; i < 10; ++i) {
        events.insert(events.end(), {kOpenAdmin, kCloseAdmin, kOpenInfo, kCloseInfo});
    }
    // The last administration window still works.
    events.insert(events.end(), {kOpenAdmin, AdminBox(0), kOpenPanel, "draw-log last.txt"});
    const SimRun run = RunPanel(sim, events);
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(Strings(sim.read("hidden.txt")).size(), 0u) << sim.read("hidden.txt");
    EXPECT_EQ(PrintList(sim.read("shown.txt")), (Texts_{"start A", "enable A 1"}));
    EXPECT_EQ(PrintList(sim.read("last.txt")), (Texts_{"start A", "enable A 1", "disable A 1"}));
    // The disabled script's XPluginDisable is not called again when the plugin stops.
    EXPECT_EQ(sim.output(), "start A\nenable A 1\ndisable A 1\nstop A\n");
    EXPECT_EQ(sim.simLog().find("left registered"), std::string::npos) << sim.simLog();
}

TEST(ScriptAdministration, CheckBoxesCallTheScriptsEntryPointsInOrderOnEveryPage) {
    SimFolder sim;
    for (int i = 1; i <= 9; ++i) sim.writeScript("CV_" + std::to_string(i) + ".py", Talker(std::to_string(i)));
    const SimRun run = RunPanel(sim, {kOpenAdmin, AdminBox(0), AdminBox(0), kAdminNext, AdminBox(0),
                                 AdminBox(1) /* no script on that row: its box is disabled */, kAdminPrevious,
                                 AdminBox(2)});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    std::string expected;
    for (int i = 1; i <= 9; ++i) expected += "start " + std::to_string(i) + "\n";
    for (int i = 1; i <= 9; ++i) expected += "enable " + std::to_string(i) + " 1\n";
    // A script's disable entry runs while it is still enabled, its enable entry once it is.
    expected += "disable 1 1\nenable 1 1\ndisable 9 1\ndisable 3 1\n";
    // The simulator's own disable skips the two scripts the user switched off.
    for (int i : {1, 2, 4, 5, 6, 7, 8}) expected += "disable " + std::to_string(i) + " 1\n";
    for (int i = 1; i <= 9; ++i) expected += "stop " + std::to_string(i) + "\n";
    EXPECT_EQ(sim.output(), expected);
}

TEST(ControlPanel, ReloadingWhileALeftoverScriptWindowHasTheKeyboard) {
    SimFolder sim;
    // The script keeps its window (it never destroys it) and takes the keyboard only early on, so
    // after the reload the old instance's window still has it.
    sim.writeScript("CV_Keys.py", TestScript("Keys", {"XPLMDefs", "XPLMDisplay", "XPLMProcessing"},
                                             "self.handlers = [self.Draw, self.Key, self.Mouse]\n"
                                             "self.w = XPLMCreateWindow(self, 10, 110, 110, 10, 1, "
                                             "self.handlers[0], self.handlers[1], self.handlers[2], 0)\n"
                                             "if XPLMGetCycleNumber() < 3:\n"
                                             "    XPLMTakeKeyboardFocus(self.w)\n",
                                             "", "",
                                             "def Draw(self, window, refcon):\n    pass\n"
                                             "def Key(self, window, key, flags, vkey, refcon, losing):\n"
                                             "    if not losing and flags & xplm_DownFlag:\n"
                                             "        print('key pressed')\n"
                                             "def Mouse(self, window, x, y, status, refcon):\n    return 1\n"));
    const SimRun run = RunPanel(sim, {"key a", kOpenPanel, kReload, "key b", kReload, "key c"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(), "key pressed\n");
    EXPECT_EQ(CountOf(sim.log(), "+++ LOGGING STARTED +++"), 3u);
}

TEST(ControlPanel, ThePopupOpensInColumnsForTheMostScriptsThereCanBe) {
    SimFolder sim;
    // 257 files: the first 256 load, which the popup lists in five columns of up to 60.
    for (int i = 0; i <= 256; ++i) {
        char name[16];
        snprintf(name, sizeof name, "%03d", i);
        sim.writeScript(std::string("CV_") + name + ".py",
                        "class Corvelle:\n    def XPluginStart(self):\n        return 'Script " + std::string(name) +
                            "', 'sig." + name + "', 'd'\n");
    }
    // 256 items fill 720 pixels: the menu is moved up to (575, 730) - (960, 10).
    const SimRun run = RunPanel(sim, {kOpenPanel, kPopup, "draw-log menu.txt", "click 920 544", kClear, kScriptInfo,
                                 "draw-log info.txt"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    const std::string menu = sim.read("menu.txt");
    EXPECT_EQ(MenuItems(menu, 77).size(), 256u);
    EXPECT_NE(menu.find("string x=593 y=720 rgb=0.000,0.000,0.000 font=xplmFont_Menus \"CV_000\""), std::string::npos);
    EXPECT_NE(menu.find("string x=901 y=540 rgb=0.000,0.000,0.000 font=xplmFont_Menus \"CV_255\""), std::string::npos);
    const Texts_ info = PrintList(sim.read("info.txt"));
    ASSERT_EQ(info.size(), 6u) << sim.read("info.txt");
    EXPECT_EQ(info[2], "Name :- Script 255");
}
