// The events file.
#include "host/Events.h"

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "XPLMDefs.h"

namespace xpsim {
namespace {

// Every virtual key the SDK names.
#define XPSIM_VIRTUAL_KEYS(VK)                                                                         \
    VK(BACK) VK(TAB) VK(CLEAR) VK(RETURN) VK(ESCAPE) VK(SPACE) VK(PRIOR) VK(NEXT)                      \
    VK(END) VK(HOME) VK(LEFT) VK(UP) VK(RIGHT) VK(DOWN) VK(SELECT) VK(PRINT)                           \
    VK(EXECUTE) VK(SNAPSHOT) VK(INSERT) VK(DELETE) VK(HELP) VK(0) VK(1) VK(2)                          \
    VK(3) VK(4) VK(5) VK(6) VK(7) VK(8) VK(9) VK(A)                                                    \
    VK(B) VK(C) VK(D) VK(E) VK(F) VK(G) VK(H) VK(I)                                                    \
    VK(J) VK(K) VK(L) VK(M) VK(N) VK(O) VK(P) VK(Q)                                                    \
    VK(R) VK(S) VK(T) VK(U) VK(V) VK(W) VK(X) VK(Y)                                                    \
    VK(Z) VK(NUMPAD0) VK(NUMPAD1) VK(NUMPAD2) VK(NUMPAD3) VK(NUMPAD4) VK(NUMPAD5) VK(NUMPAD6)          \
    VK(NUMPAD7) VK(NUMPAD8) VK(NUMPAD9) VK(MULTIPLY) VK(ADD) VK(SEPARATOR) VK(SUBTRACT) VK(DECIMAL)    \
    VK(DIVIDE) VK(F1) VK(F2) VK(F3) VK(F4) VK(F5) VK(F6) VK(F7)                                        \
    VK(F8) VK(F9) VK(F10) VK(F11) VK(F12) VK(F13) VK(F14) VK(F15)                                      \
    VK(F16) VK(F17) VK(F18) VK(F19) VK(F20) VK(F21) VK(F22) VK(F23)                                    \
    VK(F24) VK(EQUAL) VK(MINUS) VK(RBRACE) VK(LBRACE) VK(QUOTE) VK(SEMICOLON) VK(BACKSLASH)            \
    VK(COMMA) VK(SLASH) VK(PERIOD) VK(BACKQUOTE) VK(ENTER) VK(NUMPAD_ENT) VK(NUMPAD_EQ)

struct VirtualKeyName {
    const char* name;
    int code;
};

#define XPSIM_VK_ENTRY(name) {"XPLM_VK_" #name, XPLM_VK_##name},
const VirtualKeyName kVirtualKeys[] = {XPSIM_VIRTUAL_KEYS(XPSIM_VK_ENTRY)};
#undef XPSIM_VK_ENTRY

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
        if (!expect(1, "one key: a character or an XPLM_VK_ name")) return false;
        event.text = words[0];
        if (event.text.size() == 1) {
            event.keyCode = static_cast<unsigned char>(event.text[0]);
        } else {
            event.keyCode = VirtualKeyCode(event.text);
            event.virtualKey = true;
            if (event.keyCode < 0) {
                error = where + "unknown key '" + event.text + "' (a character or an XPLM_VK_ name)";
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
    } else if (verb == "drag") {
        event.verb = EventVerb::Drag;
        if (!expect(4, "two screen points: X1 Y1 X2 Y2")) return false;
        if (!ParseInt(words[0], event.x1) || !ParseInt(words[1], event.y1) || !ParseInt(words[2], event.x2) ||
            !ParseInt(words[3], event.y2)) {
            error = where + "drag takes whole-number coordinates, not '" + args + "'";
            return false;
        }
    } else if (verb == "menu") {
        event.verb = EventVerb::Menu;
        event.text = args;
        if (args.empty() || args.find('/') == std::string::npos) {
            error = where + "menu takes a path of item names such as Plugins/Corvelle/Control Panel";
            return false;
        }
    } else if (verb == "command") {
        event.verb = EventVerb::Command;
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
    } else {
        error = where + "unknown verb '" + verb +
                "' (key, click, drag, menu, command, set, message, reload-plugins)";
        return false;
    }
    return true;
}

}  // namespace

int VirtualKeyCode(const std::string& name) {
    for (const auto& key : kVirtualKeys) {
        if (name == key.name) return key.code;
    }
    return -1;
}

const char* VerbName(EventVerb verb) {
    switch (verb) {
        case EventVerb::Key: return "key";
        case EventVerb::Click: return "click";
        case EventVerb::Drag: return "drag";
        case EventVerb::Menu: return "menu";
        case EventVerb::Command: return "command";
        case EventVerb::Set: return "set";
        case EventVerb::Message: return "message";
        case EventVerb::ReloadPlugins: return "reload-plugins";
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
