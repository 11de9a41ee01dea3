// Path conversion and the configuration file.
#include "Paths.h"

#include <iniparser.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "XPLMUtilities.h"

char CV_PluginDataFile[1024] = {0};
int gCV_DebugCallbacks = 0;
int gCV_CheckCallbacks = 0;

static dictionary* gCV_Dictionary = nullptr;

// iniparser writes its syntax-error reports here; the build points its `stderr` at this variable.
extern "C" FILE* CV_IniparserErrorStream;
FILE* CV_IniparserErrorStream = nullptr;

int CV_ConvertPathUsing(const char* simPath, char separator, char* out, int outSize) {
    if (simPath == nullptr || out == nullptr || outSize <= 0) return -1;
    std::string converted;
    if (separator == ':') {
        converted = "/Volumes/";
        for (const char* p = simPath; *p; ++p) converted += (*p == ':') ? '/' : *p;
    } else {
        converted = simPath;
    }
    if (converted.size() + 1 > static_cast<size_t>(outSize)) return -1;
    memcpy(out, converted.c_str(), converted.size() + 1);
    return 0;
}

std::string CV_PosixPath(const char* simPath, char separator) {
    std::vector<char> converted(strlen(simPath) + 16);
    if (CV_ConvertPathUsing(simPath, separator, converted.data(), static_cast<int>(converted.size())) != 0)
        return simPath;
    return converted.data();
}

char CV_Separator() {
    const char* sep = XPLMGetDirectorySeparator();
    return (sep && sep[0]) ? sep[0] : '/';
}

int CV_ConvertPath(const char* simPath, char* out, int outSize) {
    return CV_ConvertPathUsing(simPath, CV_Separator(), out, outSize);
}

std::string CV_JoinPath(const char* base, char separator, const std::vector<const char*>& parts) {
    std::string path = base ? base : "";
    for (size_t i = 0; i < parts.size(); ++i) {
        path += parts[i];
        if (i + 1 < parts.size()) path += separator;
    }
    return path;
}

std::string CV_SimPath(const std::vector<const char*>& parts) {
    char systemPath[1024] = {0};
    XPLMGetSystemPath(systemPath);
    systemPath[sizeof systemPath - 1] = '\0';
    return CV_JoinPath(systemPath, CV_Separator(), parts);
}

std::string CV_ScriptsPosixPath(const char* systemPath, char separator) {
    if (separator == ':') {
        std::string path = std::string("/Volumes:") + systemPath + "Resources:plugins:PythonScripts";
        for (char& c : path)
            if (c == ':') c = '/';
        return path;
    }
    return CV_JoinPath(systemPath, separator, {"Resources", "plugins", "PythonScripts"});
}

std::string CV_NormaliseLineEnds(const std::string& text) {
    const size_t kMaxLine = 1024;
    std::string result;
    size_t i = 0;
    const size_t n = text.size();
    while (i < n) {
        size_t start = i;
        while (i < n && text[i] != '\n' && text[i] != '\r' && i - start < kMaxLine) ++i;
        result.append(text, start, i - start);
        result += '\n';
        if (i < n && (text[i] == '\n' || text[i] == '\r')) {
            char first = text[i++];
            // CRLF and LFCR are one line end.
            if (i < n && (text[i] == '\n' || text[i] == '\r') && text[i] != first) ++i;
        }
    }
    return result;
}

int CV_GetINIFileValues() {
    FILE* f = fopen(CV_PluginDataFile, "rb");
    if (f == nullptr) return 0;
    std::string content;
    char chunk[4096];
    size_t got;
    while ((got = fread(chunk, 1, sizeof chunk, f)) > 0) content.append(chunk, got);
    fclose(f);

    dictionary* dict = nullptr;
    CV_IniparserErrorStream = stderr;
    if (content.find('\r') == std::string::npos) {
        dict = iniparser_load(CV_PluginDataFile);
    } else {
        // iniparser reads LF line ends; other conventions are rewritten to LF in a private copy.
        char tempPath[] = "/tmp/Corvelle.ini.XXXXXX";
        int fd = mkstemp(tempPath);
        if (fd < 0) return 0;
        std::string normalised = CV_NormaliseLineEnds(content);
        bool written = write(fd, normalised.data(), normalised.size()) == static_cast<ssize_t>(normalised.size());
        close(fd);
        if (written) dict = iniparser_load(tempPath);
        unlink(tempPath);
    }
    if (dict == nullptr) return 0;
    if (gCV_Dictionary) iniparser_freedict(gCV_Dictionary);
    gCV_Dictionary = dict;
    gCV_DebugCallbacks = iniparser_getint(gCV_Dictionary, "DEBUG:DebugCallbacks", 0);
    gCV_CheckCallbacks = iniparser_getint(gCV_Dictionary, "DEBUG:CheckCallbacks", 0);
    return 1;
}
