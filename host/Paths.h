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

// Reads the configuration file CV_PluginDataFile; 1 when it was read, 0 when it could not be.
int CV_GetINIFileValues();
// Splits text into lines ending at LF, CR, CRLF or LFCR; a line is at most 1024 bytes and a last
// line without a line end still counts. Returns the lines joined with LF.
std::string CV_NormaliseLineEnds(const std::string& text);
