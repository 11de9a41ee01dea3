// The events file: timed user input and simulator actions, one a line.
//
//   <seconds> key [shift+|ctrl+|alt+]...<character | XPLM_VK_name>
//   <seconds> type <text: printable ASCII, spaces inside allowed>
//   <seconds> click <x> <y>
//   <seconds> move <x> <y>
//   <seconds> drag <x1> <y1> <x2> <y2>
//   <seconds> wheel <x> <y> <clicks> [<axis: 0 vertical (default), 1 horizontal>]
//   <seconds> menu <path of item names, "/"-separated, spaces allowed>
//   <seconds> command <command name>
//   <seconds> command-begin <command name>
//   <seconds> command-end <command name>
//   <seconds> set <dataref> <value | v1,v2,... | text for byte arrays>
//   <seconds> message <plugin signature> <message number> <integer parameter>
//   <seconds> reload-plugins
//   <seconds> draw-log <file: the frame's drawing record; relative to the simulator folder>
//   <seconds> screenshot <file.png: the screen at the frame's end; relative to the simulator folder>
//
// "#" at the start of a line or after white space starts a comment. Blank lines are ignored.
#pragma once

#include <istream>
#include <string>
#include <vector>

#include "world/Keys.h"

namespace xpsim {

enum class EventVerb {
    Key, Type, Click, Drag, Wheel, Menu, Command, CommandBegin, CommandEnd, Set, Message, ReloadPlugins, DrawLog,
    Move, Screenshot
};

struct Event {
    double time = 0.0;
    int line = 0;
    EventVerb verb = EventVerb::Key;
    // key: the key as written; type: the text; menu: the path; command, command-begin, command-end: the command
    // name; set: the dataref name; message: the target signature; draw-log, screenshot: the file.
    std::string text;
    // set: the value as written.
    std::string value;
    // key: the character, virtual key and modifiers it stands for.
    KeyStroke key;
    // click, move, wheel: x1, y1; drag: from x1, y1 to x2, y2.
    int x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    // wheel: how far and on which axis.
    int clicks = 0;
    int axis = 0;
    // message: number and parameter.
    int message = 0;
    long long param = 0;
    // The line without its comment, for the log.
    std::string source;
};

// Parses a whole events file. On a malformed line returns false with `error` naming the line number
// ("line 4: ..."); `events` is then of no use.
bool ParseEvents(std::istream& in, std::vector<Event>& events, std::string& error);
// Reads and parses FILE; errors name the file and the line.
bool LoadEventsFile(const std::string& path, std::vector<Event>& events, std::string& error);

const char* VerbName(EventVerb verb);

// The event a `--screenshot SECONDS:FILE.png` option stands for; false with a message when the text
// is not of that form.
bool ParseScreenshotOption(const std::string& text, Event& event, std::string& error);

}  // namespace xpsim
