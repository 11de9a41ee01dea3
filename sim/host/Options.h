// xpsim's command line.
#pragma once

#include <string>
#include <vector>

namespace xpsim {

struct Options {
    std::string root;
    std::vector<std::string> plugins;
    int sdkLevel = 210;
    double fps = 20.0;
    // Exactly one of the two is used: frames when set (>= 0), otherwise seconds.
    int frames = -1;
    double seconds = 5.0;
    std::string eventsFile;
    // The screen's size (--screen WxH).
    int screenWidth = 1024;
    int screenHeight = 768;
    // --screenshot SECONDS:FILE.png, in the order given; each is a screenshot event.
    std::vector<std::string> screenshots;
    // --dump-datarefs FILE: every dataref's value after the last frame (relative to the root).
    std::string dumpDataRefs;
};

enum class CommandLineResult { Run, Help, Error };

// Parses `xpsim run --root DIR [--plugin FILE]... [--sdk 1.02|2.00|2.10] [--seconds S | --frames N]
// [--events FILE] [--fps N] [--screen WxH] [--screenshot SECONDS:FILE.png]... [--dump-datarefs FILE]` and
// `xpsim --help`. On
// Error, `error` says what is wrong.
CommandLineResult ParseCommandLine(const std::vector<std::string>& args, Options& options, std::string& error);

// The number of frames the run lasts: --frames, or --seconds times --fps rounded to the nearest frame.
int FramesToRun(const Options& options);

// The text `xpsim --help` prints.
std::string UsageText();
// The first lines of it, printed after a command-line error.
std::string ShortUsageText();

}  // namespace xpsim
