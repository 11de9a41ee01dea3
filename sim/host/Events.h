// The events file: timed user input and simulator actions, one a line.
//
//   <seconds> key <character | XPLM_VK_name>
//   <seconds> click <x> <y>
//   <seconds> drag <x1> <y1> <x2> <y2>
//   <seconds> menu <path of item names, "/"-separated, spaces allowed>
//   <seconds> command <command name>
//   <seconds> set <dataref> <value | v1,v2,... | text for byte arrays>
//   <seconds> message <plugin signature> <message number> <integer parameter>
//   <seconds> reload-plugins
//
// "#" at the start of a line or after white space starts a comment. Blank lines are ignored.
#pragma once

#include <istream>
#include <string>
#include <vector>

namespace xpsim {

enum class EventVerb { Key, Click, Drag, Menu, Command, Set, Message, ReloadPlugins };

struct Event {
    double time = 0.0;
    int line = 0;
    EventVerb verb = EventVerb::Key;
    // key: the key as written; menu: the path; command: the command name; set: the dataref name;
    // message: the target signature.
    std::string text;
    // set: the value as written.
    std::string value;
    // key: the character code or XPLM_VK_ code.
    int keyCode = 0;
    bool virtualKey = false;
    // click: x1, y1; drag: from x1, y1 to x2, y2.
    int x1 = 0, y1 = 0, x2 = 0, y2 = 0;
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
// The XPLM_VK_ code of a name such as "XPLM_VK_RETURN", or -1.
int VirtualKeyCode(const std::string& name);

}  // namespace xpsim
