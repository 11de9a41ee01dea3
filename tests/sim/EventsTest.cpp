// The events file grammar.
#include <sstream>

#include <gtest/gtest.h>

#include "XPLMDefs.h"
#include "host/Events.h"

using xpsim::Event;
using xpsim::EventVerb;

TEST(sim_EventsFile, ParsesEveryVerbAroundCommentsAndBlankLines) {
    std::istringstream in(
        "# input for a test\n"
        "\n"
        "1.5 key A\n"
        "1.6 key XPLM_VK_RETURN   # the Enter key\n"
        "2 click 520 300\n"
        "2.5\tdrag 520 300 560 -340\n"
        "3.0 menu Plugins/Corvelle/Control Panel\n"
        "3.5 command sim/operation/pause_toggle\n"
        "4.0 set sim/cockpit/radios/com1_freq_hz 12345\n"
        "4.1 set sim/some/array 1, 2.5,3\n"
        "4.2 set sim/aircraft/view/acf_tailnum N#1 X\n"
        "4.5 message brindle.projects.corvelle 8000 7\r\n"
        "4.6 message x.y 0x8000000 -1\n"
        "0.5 reload-plugins\n"
        "5 wheel 10 -20 -3\n"
        "5.1 wheel 10 20 2 1\n"
        "6 command-begin sim/view/chase\n"
        "6.5 command-end sim/view/chase\n"
        "7 key ctrl+shift+XPLM_VK_F1\n"
        "7.1 key shift+3\n"
        "7.2 key shift++\n"
        "7.3 key a\n"
        "8 type  Hello, world! N#1  # a comment\n");
    std::vector<Event> events;
    std::string error;
    ASSERT_TRUE(xpsim::ParseEvents(in, events, error)) << error;
    ASSERT_EQ(events.size(), 21u);

    // Capitals are typed with shift, on the letter's key.
    EXPECT_EQ(events[0].verb, EventVerb::Key);
    EXPECT_DOUBLE_EQ(events[0].time, 1.5);
    EXPECT_EQ(events[0].line, 3);
    EXPECT_EQ(events[0].key.character, 'A');
    EXPECT_EQ(events[0].key.virtualKey, XPLM_VK_A);
    EXPECT_EQ(events[0].key.modifiers, xplm_ShiftFlag);
    EXPECT_EQ(events[1].key.character, XPLM_KEY_RETURN);
    EXPECT_EQ(events[1].key.virtualKey, XPLM_VK_RETURN);
    EXPECT_EQ(events[1].key.modifiers, 0);
    EXPECT_EQ(events[1].source, "1.6 key XPLM_VK_RETURN");

    EXPECT_EQ(events[2].verb, EventVerb::Click);
    EXPECT_EQ(events[2].x1, 520);
    EXPECT_EQ(events[2].y1, 300);
    EXPECT_EQ(events[3].verb, EventVerb::Drag);
    EXPECT_EQ(events[3].x2, 560);
    EXPECT_EQ(events[3].y2, -340);

    EXPECT_EQ(events[4].verb, EventVerb::Menu);
    EXPECT_EQ(events[4].text, "Plugins/Corvelle/Control Panel");
    EXPECT_EQ(events[5].verb, EventVerb::Command);
    EXPECT_EQ(events[5].text, "sim/operation/pause_toggle");

    EXPECT_EQ(events[6].verb, EventVerb::Set);
    EXPECT_EQ(events[6].text, "sim/cockpit/radios/com1_freq_hz");
    EXPECT_EQ(events[6].value, "12345");
    EXPECT_EQ(events[7].value, "1, 2.5,3");
    // "#" inside a word is text, not a comment.
    EXPECT_EQ(events[8].value, "N#1 X");

    EXPECT_EQ(events[9].verb, EventVerb::Message);
    EXPECT_EQ(events[9].text, "brindle.projects.corvelle");
    EXPECT_EQ(events[9].message, 8000);
    EXPECT_EQ(events[9].param, 7);
    EXPECT_EQ(events[10].message, 0x8000000);
    EXPECT_EQ(events[10].param, -1);

    // Kept in file order even when an earlier time comes later.
    EXPECT_EQ(events[11].verb, EventVerb::ReloadPlugins);
    EXPECT_DOUBLE_EQ(events[11].time, 0.5);
    EXPECT_EQ(events[11].line, 14);

    EXPECT_EQ(events[12].verb, EventVerb::Wheel);
    EXPECT_EQ(events[12].y1, -20);
    EXPECT_EQ(events[12].clicks, -3);
    EXPECT_EQ(events[12].axis, 0);
    EXPECT_EQ(events[13].axis, 1);
    EXPECT_EQ(events[14].verb, EventVerb::CommandBegin);
    EXPECT_EQ(events[14].text, "sim/view/chase");
    EXPECT_EQ(events[15].verb, EventVerb::CommandEnd);
    EXPECT_EQ(events[16].key.virtualKey, XPLM_VK_F1);
    EXPECT_EQ(events[16].key.character, 0);
    EXPECT_EQ(events[16].key.modifiers, xplm_ControlFlag | xplm_ShiftFlag);
    EXPECT_EQ(events[17].key.character, '#');
    EXPECT_EQ(events[17].key.virtualKey, XPLM_VK_3);
    EXPECT_EQ(events[18].key.character, '+');
    EXPECT_EQ(events[18].key.virtualKey, XPLM_VK_EQUAL);
    EXPECT_EQ(events[18].key.modifiers, xplm_ShiftFlag);
    EXPECT_EQ(events[19].key.character, 'a');
    EXPECT_EQ(events[19].key.modifiers, 0);
    // The text keeps its inner spaces and "#" inside a word; the comment goes.
    EXPECT_EQ(events[20].verb, EventVerb::Type);
    EXPECT_EQ(events[20].text, "Hello, world! N#1");
}

TEST(sim_EventsFile, MalformedLinesAreErrorsNamingTheLine) {
    const std::pair<const char*, const char*> cases[] = {
        {"1 jump", "line 3: unknown verb 'jump' (key, type, click, move, drag, wheel, menu, command, command-begin, "
                   "command-end, set, message, reload-plugins, draw-log, screenshot)"},
        {"soon key A", "line 3: 'soon' is not a time in seconds (a number from 0)"},
        {"-1 key A", "line 3: '-1' is not a time in seconds (a number from 0)"},
        {"2", "line 3: a time needs a verb after it"},
        {"1 key", "line 3: key takes one key: modifiers joined by + (shift, ctrl, alt), then a character or "
                  "an XPLM_VK_ name"},
        {"1 key XPLM_VK_NOPE", "line 3: unknown key 'XPLM_VK_NOPE' (a character or an XPLM_VK_ name)"},
        {"1 key Shift+a", "line 3: unknown modifier 'Shift' (shift, ctrl, alt)"},
        {"1 key ctrl+", "line 3: unknown key 'ctrl+' (a character or an XPLM_VK_ name)"},
        {"1 wheel 1 2", "line 3: wheel takes a screen point, clicks and an optional axis: X Y CLICKS [AXIS]"},
        {"1 wheel 1 2 3 2", "line 3: the wheel axis is 0 (vertical) or 1 (horizontal), not '2'"},
        {"1 wheel 1 2 up", "line 3: wheel takes whole numbers, not '1 2 up'"},
        {"1 command-end", "line 3: command-end takes one command name"},
        {"1 click 5", "line 3: click takes a screen point: X Y"},
        {"1 click 5 y", "line 3: click takes whole-number coordinates, not '5 y'"},
        {"1 drag 1 2 3", "line 3: drag takes two screen points: X1 Y1 X2 Y2"},
        {"1 menu Plugins", "line 3: menu takes a path of item names such as Plugins/Corvelle/Control Panel"},
        {"1 command a b", "line 3: command takes one command name"},
        {"1 set sim/x", "line 3: set takes a dataref name and a value"},
        {"1 message sig 12", "line 3: message takes a plugin signature, a message number and an integer parameter"},
        {"1 message sig twelve 1", "line 3: 'twelve' is not a message number"},
        {"1 message sig 12 p", "line 3: 'p' is not an integer parameter"},
        {"1 type", "line 3: type takes the text to type"},
        {"1 type caf\xc3\xa9", "line 3: type takes printable ASCII text; use key for other keys"},
        {"1 reload-plugins now", "line 3: reload-plugins takes nothing after it"},
    };
    for (const auto& entry : cases) {
        std::istringstream in(std::string("0 key A\n# comment\n") + entry.first + "\n9 key B\n");
        std::vector<Event> events;
        std::string error;
        EXPECT_FALSE(xpsim::ParseEvents(in, events, error)) << entry.first;
        EXPECT_EQ(error, entry.second) << entry.first;
    }
}
