// Path handling and the configuration file. The simulator hands out paths in its own form: POSIX
// paths with "/" on Linux, colon-separated (HFS) paths where its directory separator is ":".
#pragma once

#include <string>
#include <vector>

// Full path of the configuration file, Corvelle.ini.
extern char CV_PluginDataFile[1024];
// The two debug switches of the configuration file.
extern int gCV_DebugCallbacks;
extern int gCV_CheckCallbacks;

// Converts a path in the simulator's form into a POSIX path in out (at most outSize bytes with the
// terminating zero). Returns 0 on success, -1 when the path does not fit.
int CV_ConvertPath(const char* simPath, char* out, int outSize);
// The same for a given separator: with ":" the colon path becomes "/Volumes/..." with "/"
// separators; with any other separator the path is taken as it is.
int CV_ConvertPathUsing(const char* simPath, char separator, char* out, int outSize);
// A path from the simulator in the form Python opens: colon paths become "/Volumes/..." paths,
// others stay as they are.
std::string CV_PosixPath(const char* simPath, char separator);

// The simulator's system path followed by the given folder and file names, joined with the
// simulator's separator.
std::string CV_SimPath(const std::vector<const char*>& parts);
std::string CV_JoinPath(const char* base, char separator, const std::vector<const char*>& parts);

// The scripts folder as a POSIX path without trailing separator, for sys.path.
std::string CV_ScriptsPosixPath(const char* systemPath, char separator);

// The simulator's directory separator as one character.
char CV_Separator();

// Reads the configuration file CV_PluginDataFile; 1 when it was read, 0 when it could not be (missing,
// not a regular file, unreadable). Only its first kCV_IniFileBytes bytes are read. Lines iniparser
// refuses, and lines over kCV_IniLineBytes, are reported on standard error in iniparser's words and
// skipped; the other keys still count.
int CV_GetINIFileValues();
constexpr size_t kCV_IniFileBytes = 64 * 1024;
constexpr size_t kCV_IniLineBytes = 1024;

// A physical line of the configuration file, without its line end. A line over kCV_IniLineBytes keeps
// its first kCV_IniLineBytes bytes and is marked too long; the rest of it is skipped.
struct CV_IniLine {
    std::string text;
    bool tooLong = false;
};
// Cuts text into lines ending at LF, CR, CR LF or LF CR; a last line without a line end still counts.
std::vector<CV_IniLine> CV_ReadIniLines(const std::string& text);
