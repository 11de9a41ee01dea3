// Path conversion and the configuration file.
#include "Paths.h"

#include <fcntl.h>
#include <iniparser.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
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

std::vector<CV_IniLine> CV_ReadIniLines(const std::string& text) {
    std::vector<CV_IniLine> lines;
    size_t i = 0;
    const size_t n = text.size();
    while (i < n) {
        CV_IniLine line;
        size_t start = i;
        while (i < n && text[i] != '\n' && text[i] != '\r' && i - start < kCV_IniLineBytes) ++i;
        line.text.assign(text, start, i - start);
        if (i < n && text[i] != '\n' && text[i] != '\r') {
            // More than one line's worth: the rest up to the line end is not read.
            line.tooLong = true;
            while (i < n && text[i] != '\n' && text[i] != '\r') ++i;
        }
        if (i < n) {
            char first = text[i++];
            // CR LF and LF CR are one line end.
            if (i < n && (text[i] == '\n' || text[i] == '\r') && text[i] != first) ++i;
        }
        lines.push_back(std::move(line));
    }
    return lines;
}

namespace {

// Reads at most `limit` bytes of a regular file. Anything else (a FIFO, a device, a directory) is
// refused without reading, so that a strange Corvelle.ini can neither block the start nor be read
// forever.
bool ReadRegularFile(const char* path, size_t limit, std::string* content) {
    int fd = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) return false;
    struct stat info;
    if (fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        close(fd);
        return false;
    }
    content->assign(limit, '\0');
    size_t got = 0;
    bool failed = false;
    while (got < limit) {
        ssize_t n = read(fd, &(*content)[got], limit - got);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) failed = true;
        if (n <= 0) break;
        got += static_cast<size_t>(n);
    }
    close(fd);
    content->resize(got);
    return !failed;
}

// A line as iniparser joins it: a physical line whose text, without trailing white space, ends in
// "\" continues on the next one (iniparser drops that "\" and appends the next line in its place).
struct LogicalLine {
    size_t first = 0, last = 0;  // its physical lines, indices into the file's lines
    bool refused = false;
    std::string report;  // what was reported about it, in iniparser's words
};

// iniparser's report line for a line of a file: "iniparser: WHAT in PATH (N)".
std::string IniReport(const std::string& what, const char* path, size_t lineNumber) {
    return "iniparser: " + what + " in " + path + " (" + std::to_string(lineNumber) + ")";
}

std::vector<LogicalLine> JoinContinuations(const std::vector<CV_IniLine>& lines) {
    std::vector<LogicalLine> logical;
    std::string joined;
    bool open = false;
    for (size_t i = 0; i < lines.size(); ++i) {
        if (!open) {
            logical.push_back(LogicalLine{i, i});
            joined.clear();
            open = true;
        }
        LogicalLine& current = logical.back();
        current.last = i;
        if (lines[i].tooLong) {
            // The rest of an over-long line is not read, so it cannot continue: it ends its line.
            current.refused = true;
            current.report = IniReport("input line too long", CV_PluginDataFile, i + 1);
            open = false;
            continue;
        }
        joined += lines[i].text;
        while (!joined.empty() && isspace(static_cast<unsigned char>(joined.back()))) joined.pop_back();
        if (!joined.empty() && joined.back() == '\\')
            joined.pop_back();
        else
            open = false;
    }
    return logical;
}

// A private file that iniparser loads the candidate lines from; removed when it goes.
struct PrivateFile {
    char path[32] = "/tmp/Corvelle.ini.XXXXXX";
    int fd = mkstemp(path);
    PrivateFile() = default;
    PrivateFile(const PrivateFile&) = delete;
    PrivateFile& operator=(const PrivateFile&) = delete;
    ~PrivateFile() {
        if (fd >= 0) {
            close(fd);
            unlink(path);
        }
    }
    bool Replace(const std::string& text) {
        if (ftruncate(fd, 0) != 0) return false;
        for (size_t done = 0; done < text.size();) {
            ssize_t n = pwrite(fd, text.data() + done, text.size() - done, static_cast<off_t>(done));
            if (n < 0 && errno == EINTR) continue;
            if (n <= 0) return false;
            done += static_cast<size_t>(n);
        }
        return true;
    }
};

// Loads the private file with iniparser, its reports captured instead of printed.
dictionary* LoadCapturingReports(const char* path, std::string* reports) {
    char* buffer = nullptr;
    size_t size = 0;
    FILE* capture = open_memstream(&buffer, &size);
    if (capture == nullptr) return nullptr;
    FILE* saved = CV_IniparserErrorStream;
    CV_IniparserErrorStream = capture;
    dictionary* dict = iniparser_load(path);
    CV_IniparserErrorStream = saved;
    fclose(capture);
    reports->assign(buffer, size);
    free(buffer);
    return dict;
}

// Reads a report line of iniparser's, "iniparser: WHAT in PATH (N)REST", about the file `path`:
// returns N (0 when the line is no such report) and sets WHAT and REST.
size_t ReportedLine(const std::string& line, const std::string& path, std::string* what, std::string* rest) {
    const std::string prefix = "iniparser: ", marker = " in " + path + " (";
    size_t at = line.find(marker);
    if (line.compare(0, prefix.size(), prefix) != 0 || at == std::string::npos || at < prefix.size()) return 0;
    size_t digits = at + marker.size();
    size_t close = line.find(')', digits);
    if (close == std::string::npos || close == digits || close - digits > 9) return 0;
    size_t number = 0;
    for (size_t i = digits; i < close; ++i) {
        if (!isdigit(static_cast<unsigned char>(line[i]))) return 0;
        number = number * 10 + static_cast<size_t>(line[i] - '0');
    }
    *what = line.substr(prefix.size(), at - prefix.size());
    *rest = line.substr(close + 1);
    return number;
}

}  // namespace

int CV_GetINIFileValues() {
    std::string content;
    if (!ReadRegularFile(CV_PluginDataFile, kCV_IniFileBytes, &content)) return 0;
    const std::vector<CV_IniLine> lines = CV_ReadIniLines(content);
    std::vector<LogicalLine> logical = JoinContinuations(lines);
    PrivateFile file;
    if (file.fd < 0) return 0;

    // iniparser refuses a whole file for one bad line. It is asked about the lines still in question,
    // one document with a line end after every physical line; each line its reports name is taken
    // out, with the report, until it gives a dictionary. Refused lines change nothing, not even the
    // section: the keys after them stay in the section before.
    dictionary* dict = nullptr;
    while (dict == nullptr) {
        std::string document;
        std::vector<std::pair<size_t, size_t>> source;  // document line - 1 -> (logical line, physical line)
        for (size_t l = 0; l < logical.size(); ++l) {
            if (logical[l].refused) continue;
            for (size_t i = logical[l].first; i <= logical[l].last; ++i) {
                document += lines[i].text;
                document += '\n';
                source.emplace_back(l, i);
            }
        }
        if (!file.Replace(document)) return 0;
        std::string reports;
        dict = LoadCapturingReports(file.path, &reports);
        if (dict != nullptr) break;

        // A report is a line naming the file and the line number, followed for a syntax error by the
        // line itself ("-> ...").
        bool named = false;
        LogicalLine* reported = nullptr;
        for (size_t pos = 0; pos < reports.size();) {
            size_t end = std::min(reports.find('\n', pos), reports.size());
            const std::string line = reports.substr(pos, end - pos);
            pos = end + 1;
            std::string what, rest;
            size_t number = ReportedLine(line, file.path, &what, &rest);
            if (number >= 1 && number <= source.size()) {
                reported = &logical[source[number - 1].first];
                reported->refused = named = true;
                reported->report = IniReport(what, CV_PluginDataFile, source[number - 1].second + 1) + rest;
            } else if (reported != nullptr && line.compare(0, 3, "-> ") == 0) {
                reported->report += "\n" + line;
            } else {
                reported = nullptr;
            }
        }
        if (!named) return 0;  // refused for a reason that names no line
    }

    CV_IniparserErrorStream = stderr;
    for (const LogicalLine& line : logical)
        if (line.refused) fprintf(CV_IniparserErrorStream, "%s\n", line.report.c_str());
    if (gCV_Dictionary) iniparser_freedict(gCV_Dictionary);
    gCV_Dictionary = dict;
    gCV_DebugCallbacks = iniparser_getint(gCV_Dictionary, "DEBUG:DebugCallbacks", 0);
    gCV_CheckCallbacks = iniparser_getint(gCV_Dictionary, "DEBUG:CheckCallbacks", 0);
    return 1;
}
