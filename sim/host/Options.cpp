// xpsim's command line.
#include "host/Options.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>

#include "host/Events.h"
#include "world/Screen.h"

namespace xpsim {
namespace {

bool ParseNumber(const std::string& text, double& value) {
    if (text.empty()) return false;
    char* end = nullptr;
    errno = 0;
    value = std::strtod(text.c_str(), &end);
    return errno == 0 && end != nullptr && *end == '\0' && std::isfinite(value);
}

bool ParseCount(const std::string& text, int& value) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos || text.size() > 9)
        return false;
    value = std::atoi(text.c_str());
    return true;
}

// WxH, each side a whole number of pixels.
bool ParseScreenSize(const std::string& text, int& width, int& height) {
    const size_t x = text.find('x');
    if (x == std::string::npos) return false;
    return ParseCount(text.substr(0, x), width) && ParseCount(text.substr(x + 1), height) &&
           width >= kMinScreenSide && width <= kMaxScreenSide && height >= kMinScreenSide &&
           height <= kMaxScreenSide;
}

}  // namespace

std::string ShortUsageText() {
    return "usage: xpsim run --root DIR [--plugin FILE.xpl]... [--sdk 1.02|2.00|2.10]\n"
           "                 [--seconds S | --frames N] [--events FILE] [--fps N]\n"
           "                 [--screen WxH] [--screenshot SECONDS:FILE.png]...\n"
           "                 [--dump-datarefs FILE]\n"
           "       xpsim --help\n";
}

std::string UsageText() {
    return ShortUsageText() + "\n"
           "Runs X-Plane plugins headlessly: makes DIR an X-Plane folder where parts are missing,\n"
           "loads every --plugin file and every DIR/Resources/plugins/*/lin_x64/*.xpl, starts and\n"
           "enables them, runs simulated frames and applies the events of FILE at their times,\n"
           "then disables and stops the plugins. Plugin output goes to DIR/Log.txt and stdout.\n"
           "\n"
           "  --root DIR      the simulator folder (created when missing)\n"
           "  --plugin FILE   a plugin to load besides those in the plugins folder (repeatable)\n"
           "  --sdk LEVEL     the SDK level on offer: 1.02, 2.00 or 2.10 (default 2.10)\n"
           "  --seconds S     simulated seconds to run (default 5)\n"
           "  --frames N      frames to run instead of --seconds\n"
           "  --fps N         simulated frames per second (default 20)\n"
           "  --events FILE   timed input: keys, clicks, drags, the mouse wheel, menu picks,\n"
           "                  commands, dataref writes, plugin messages, plugin reloads,\n"
           "                  drawing records and screenshots\n"
           "  --screen WxH    the screen's size in pixels (default 1024x768)\n"
           "  --screenshot SECONDS:FILE.png\n"
           "                  writes the screen at the end of the frame at SECONDS to FILE.png\n"
           "                  (relative to DIR; repeatable)\n"
           "  --dump-datarefs FILE\n"
           "                  writes every dataref's value after the last frame to FILE\n"
           "                  (relative to DIR): name, type and value a line\n";
}

CommandLineResult ParseCommandLine(const std::vector<std::string>& args, Options& options, std::string& error) {
    options = Options();
    if (args.empty()) {
        error = "no command given";
        return CommandLineResult::Error;
    }
    if (args[0] == "--help" || args[0] == "-h" || args[0] == "help") return CommandLineResult::Help;
    if (args[0] != "run") {
        error = "unknown command '" + args[0] + "'";
        return CommandLineResult::Error;
    }
    bool haveSeconds = false;
    bool haveFrames = false;
    for (size_t i = 1; i < args.size(); ++i) {
        const std::string& option = args[i];
        if (option == "--help" || option == "-h") return CommandLineResult::Help;
        const bool takesValue = option == "--root" || option == "--plugin" || option == "--sdk" ||
                                option == "--seconds" || option == "--frames" || option == "--events" ||
                                option == "--fps" || option == "--screen" || option == "--screenshot" ||
                                option == "--dump-datarefs";
        if (!takesValue) {
            error = "unknown option '" + option + "'";
            return CommandLineResult::Error;
        }
        if (i + 1 >= args.size()) {
            error = option + " needs a value";
            return CommandLineResult::Error;
        }
        const std::string& value = args[++i];
        if (option == "--root") {
            options.root = value;
        } else if (option == "--plugin") {
            options.plugins.push_back(value);
        } else if (option == "--events") {
            options.eventsFile = value;
        } else if (option == "--dump-datarefs") {
            if (value.empty()) {
                error = "--dump-datarefs needs a file name";
                return CommandLineResult::Error;
            }
            options.dumpDataRefs = value;
        } else if (option == "--sdk") {
            if (value == "1.02") options.sdkLevel = 102;
            else if (value == "2.00") options.sdkLevel = 200;
            else if (value == "2.10") options.sdkLevel = 210;
            else {
                error = "--sdk must be 1.02, 2.00 or 2.10, not '" + value + "'";
                return CommandLineResult::Error;
            }
        } else if (option == "--seconds") {
            if (!ParseNumber(value, options.seconds) || options.seconds < 0.0 || options.seconds > 1e6) {
                error = "--seconds needs a number of seconds from 0 to 1000000, not '" + value + "'";
                return CommandLineResult::Error;
            }
            haveSeconds = true;
        } else if (option == "--frames") {
            if (!ParseCount(value, options.frames)) {
                error = "--frames needs a whole number of frames, not '" + value + "'";
                return CommandLineResult::Error;
            }
            haveFrames = true;
        } else if (option == "--screen") {
            if (!ParseScreenSize(value, options.screenWidth, options.screenHeight)) {
                error = "--screen needs WIDTHxHEIGHT in pixels, each " + std::to_string(kMinScreenSide) + " to " +
                        std::to_string(kMaxScreenSide) + ", not '" + value + "'";
                return CommandLineResult::Error;
            }
        } else if (option == "--screenshot") {
            Event event;
            if (!ParseScreenshotOption(value, event, error)) return CommandLineResult::Error;
            options.screenshots.push_back(value);
        } else if (option == "--fps") {
            if (!ParseNumber(value, options.fps) || options.fps <= 0.0 || options.fps > 10000.0) {
                error = "--fps needs a rate above 0 and up to 10000, not '" + value + "'";
                return CommandLineResult::Error;
            }
        }
    }
    if (haveSeconds && haveFrames) {
        error = "give --seconds or --frames, not both";
        return CommandLineResult::Error;
    }
    if (options.root.empty()) {
        error = "--root DIR is required";
        return CommandLineResult::Error;
    }
    if (FramesToRun(options) > 100000000) {
        error = "the run would last more than 100000000 frames";
        return CommandLineResult::Error;
    }
    return CommandLineResult::Run;
}

int FramesToRun(const Options& options) {
    if (options.frames >= 0) return options.frames;
    const double frames = std::round(options.seconds * options.fps);
    return frames > 2e9 ? 2000000000 : int(frames);
}

}  // namespace xpsim
