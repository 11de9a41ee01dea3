// The events file.
#include "host/Events.h"

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace xpsim {
namespace {

std::string Trim(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) return "";
    const size_t last = text.find_last_not_of(" \t\r\n");
    return text.substr(first, last - first + 1);
}

// Cuts a comment: "#" at the start or after white space.
std::string StripComment(const std::string& line) {
    for (size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '#' && (i == 0 || line[i - 1] == ' ' || line[i - 1] == '\t')) return line.substr(0, i);
    }
    return line;
}

// Splits off the first white-space separated word; `rest` keeps the remainder, trimmed.
std::string FirstWord(const std::string& text, std::string& rest) {
    const std::string trimmed = Trim(text);
    const size_t end = trimmed.find_first_of(" \t");
    if (end == std::string::npos) {
        rest.clear();
        return trimmed;
    }
    rest = Trim(trimmed.substr(end));
    return trimmed.substr(0, end);
}

std::vector<std::string> Words(const std::string& text) {
    std::vector<std::string> words;
    std::istringstream stream(text);
    std::string word;
    while (stream >> word) words.push_back(word);
    return words;
}

bool ParseInt(const std::string& text, int& value) {
    if (text.empty()) return false;
    char* end = nullptr;
    errno = 0;
    const long long v = std::strtoll(text.c_str(), &end, 10);
    if (errno != 0 || *end != '\0' || v < INT32_MIN || v > INT32_MAX) return false;
    value = int(v);
    return true;
}

// Decimal or 0x-hexadecimal, as message numbers are usually written.
bool ParseInteger(const std::string& text, long long& value) {
    if (text.empty()) return false;
    char* end = nullptr;
    errno = 0;
    value = std::strtoll(text.c_str(), &end, 0);
    return errno == 0 && *end == '\0';
}

bool ParseLine(const std::string& body, int lineNumber, Event& event, std::string& error) {
    const std::string where = "line " + std::to_string(lineNumber) + ": ";
    std::string rest;
    const std::string timeText = FirstWord(body, rest);
    char* end = nullptr;
    const double time = std::strtod(timeText.c_str(), &end);
    if (timeText.empty() || *end != '\0' || !std::isfinite(time) || time < 0.0) {
        error = where + "'" + timeText + "' is not a time in seconds (a number from 0)";
        return false;
    }
    std::string args;
    const std::string verb = FirstWord(rest, args);
    const std::vector<std::string> words = Words(args);
    event = Event();
    event.time = time;
    event.line = lineNumber;
    event.source = Trim(body);
    auto expect = [&](size_t count, const char* form) {
        if (words.size() == count) return true;
        error = where + verb + " takes " + form;
        return false;
    };
    if (verb.empty()) {
        error = where + "a time needs a verb after it";
        return false;
    } else if (verb == "key") {
        event.verb = EventVerb::Key;
        if (!expect(1, "one key: modifiers joined by + (shift, ctrl, alt), then a character or an XPLM_VK_ name"))
            return false;
        event.text = words[0];
        std::string problem;
        if (!ParseKey(event.text, event.key, problem)) {
            error = where + problem;
            return false;
        }
    } else if (verb == "type") {
        event.verb = EventVerb::Type;
        event.text = args;
        if (args.empty()) {
            error = where + "type takes the text to type";
            return false;
        }
        for (char c : args) {
            if (c < 32 || c > 126) {
                error = where + "type takes printable ASCII text; use key for other keys";
                return false;
            }
        }
    } else if (verb == "click") {
        event.verb = EventVerb::Click;
        if (!expect(2, "a screen point: X Y")) return false;
        if (!ParseInt(words[0], event.x1) || !ParseInt(words[1], event.y1)) {
            error = where + "click takes whole-number coordinates, not '" + args + "'";
            return false;
        }
    } else if (verb == "move") {
        event.verb = EventVerb::Move;
        if (!expect(2, "a screen point: X Y")) return false;
        if (!ParseInt(words[0], event.x1) || !ParseInt(words[1], event.y1)) {
            error = where + "move takes whole-number coordinates, not '" + args + "'";
            return false;
        }
    } else if (verb == "drag") {
        event.verb = EventVerb::Drag;
        if (!expect(4, "two screen points: X1 Y1 X2 Y2")) return false;
        if (!ParseInt(words[0], event.x1) || !ParseInt(words[1], event.y1) || !ParseInt(words[2], event.x2) ||
            !ParseInt(words[3], event.y2)) {
            error = where + "drag takes whole-number coordinates, not '" + args + "'";
            return false;
        }
    } else if (verb == "wheel") {
        event.verb = EventVerb::Wheel;
        if (words.size() != 3 && words.size() != 4) {
            error = where + "wheel takes a screen point, clicks and an optional axis: X Y CLICKS [AXIS]";
            return false;
        }
        if (!ParseInt(words[0], event.x1) || !ParseInt(words[1], event.y1) || !ParseInt(words[2], event.clicks)) {
            error = where + "wheel takes whole numbers, not '" + args + "'";
            return false;
        }
        if (words.size() == 4 && words[3] != "0" && words[3] != "1") {
            error = where + "the wheel axis is 0 (vertical) or 1 (horizontal), not '" + words[3] + "'";
            return false;
        }
        event.axis = words.size() == 4 && words[3] == "1" ? 1 : 0;
    } else if (verb == "menu") {
        event.verb = EventVerb::Menu;
        event.text = args;
        if (args.empty() || args.find('/') == std::string::npos) {
            error = where + "menu takes a path of item names such as Plugins/Corvelle/Control Panel";
            return false;
        }
    } else if (verb == "command" || verb == "command-begin" || verb == "command-end") {
        event.verb = verb == "command"         ? EventVerb::Command
                     : verb == "command-begin" ? EventVerb::CommandBegin
                                               : EventVerb::CommandEnd;
        if (!expect(1, "one command name")) return false;
        event.text = words[0];
    } else if (verb == "set") {
        event.verb = EventVerb::Set;
        std::string value;
        event.text = FirstWord(args, value);
        event.value = value;
        if (event.text.empty() || value.empty()) {
            error = where + "set takes a dataref name and a value";
            return false;
        }
    } else if (verb == "message") {
        event.verb = EventVerb::Message;
        if (!expect(3, "a plugin signature, a message number and an integer parameter")) return false;
        event.text = words[0];
        long long number;
        if (!ParseInteger(words[1], number) || number < INT32_MIN || number > UINT32_MAX) {
            error = where + "'" + words[1] + "' is not a message number";
            return false;
        }
        event.message = int(static_cast<uint32_t>(number));
        if (!ParseInteger(words[2], event.param)) {
            error = where + "'" + words[2] + "' is not an integer parameter";
            return false;
        }
    } else if (verb == "reload-plugins") {
        event.verb = EventVerb::ReloadPlugins;
        if (!expect(0, "nothing after it")) return false;
    } else if (verb == "draw-log") {
        event.verb = EventVerb::DrawLog;
        event.text = args;
        if (args.empty()) {
            error = where + "draw-log takes the file to write the frame's drawing to";
            return false;
        }
    } else if (verb == "screenshot") {
        event.verb = EventVerb::Screenshot;
        event.text = args;
        if (args.empty()) {
            error = where + "screenshot takes the PNG file to write the screen to";
            return false;
        }
    } else {
        error = where + "unknown verb '" + verb +
                "' (key, type, click, move, drag, wheel, menu, command, command-begin, command-end, set, message, "
                "reload-plugins, draw-log, screenshot)";
        return false;
    }
    return true;
}

}  // namespace

const char* VerbName(EventVerb verb) {
    switch (verb) {
        case EventVerb::Key: return "key";
        case EventVerb::Type: return "type";
        case EventVerb::Click: return "click";
        case EventVerb::Drag: return "drag";
        case EventVerb::Wheel: return "wheel";
        case EventVerb::Menu: return "menu";
        case EventVerb::Command: return "command";
        case EventVerb::CommandBegin: return "command-begin";
        case EventVerb::CommandEnd: return "command-end";
        case EventVerb::Set: return "set";
        case EventVerb::Message: return "message";
        case EventVerb::ReloadPlugins: return "reload-plugins";
        case EventVerb::DrawLog: return "draw-log";
        case EventVerb::Move: return "move";
        case EventVerb::Screenshot: return "screenshot";
    }
    return "?";
}

bool ParseEvents(std::istream& in, std::vector<Event>& events, std::string& error) {
    events.clear();
    std::string line;
    int lineNumber = 0;
    while (std::getline(in, line)) {
        ++lineNumber;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const std::string body = Trim(StripComment(line));
        if (body.empty()) continue;
        Event event;
        if (!ParseLine(body, lineNumber, event, error)) return false;
        events.push_back(event);
    }
    return true;
}

bool ParseScreenshotOption(const std::string& text, Event& event, std::string& error) {
    const size_t colon = text.find(':');
    const std::string file = colon == std::string::npos ? "" : text.substr(colon + 1);
    if (colon == std::string::npos || file.empty()) {
        error = "--screenshot takes SECONDS:FILE.png, not '" + text + "'";
        return false;
    }
    const std::string timeText = text.substr(0, colon);
    char* end = nullptr;
    const double time = std::strtod(timeText.c_str(), &end);
    if (timeText.empty() || *end != '\0' || !std::isfinite(time) || time < 0.0) {
        error = "--screenshot: '" + timeText + "' is not a time in seconds (a number from 0)";
        return false;
    }
    event = Event();
    event.time = time;
    event.verb = EventVerb::Screenshot;
    event.text = file;
    event.source = "screenshot " + file + " (--screenshot)";
    return true;
}

bool LoadEventsFile(const std::string& path, std::vector<Event>& events, std::string& error) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = "cannot read the events file " + path;
        return false;
    }
    if (!ParseEvents(in, events, error)) {
        error = "events file " + path + ", " + error;
        return false;
    }
    return true;
}

}  // namespace xpsim
