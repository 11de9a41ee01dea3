// Pure logic of the plugin host: file selection, line ends, paths, wrapping and the output gate.
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

#include "CV_ScriptTable.h"
#include "LogFiles.h"
#include "PanelState.h"
#include "Paths.h"
#include "ScriptLoader.h"

TEST(ScriptSelection, PicksSourceThenCompiledByTheNameRules) {
    std::vector<std::string> listing = {"CV_Radio.py", "CV_Radio2.pyc", "CV_a.py", "CV_a.pyc", "CV_x.txt",
                                        "Cv_mixed.py", "cv_tool.pyc", "notes_CV_.py", "readme.py",
                                        "CV_old.py.bak", "CV_two.dots.py", "CV_arch.tar.pyc", "__pycache__"};
    std::vector<std::string> picked = CV_SelectScriptFiles(listing, 256);
    // Source pass cuts at the last dot; compiled pass cuts at the first dot and skips any file that
    // contains an already picked name (CV_Radio2.pyc is hidden by CV_Radio).
    std::vector<std::string> expected = {"CV_Radio", "CV_a", "notes_CV_", "CV_two.dots", "cv_tool"};
    EXPECT_EQ(picked, expected);
}

TEST(ScriptSelection, StopsAtTheSlotCount) {
    std::vector<std::string> listing;
    for (int i = 0; i < 300; ++i) listing.push_back("CV_" + std::to_string(1000 + i) + ".py");
    for (int i = 0; i < 5; ++i) listing.push_back("cv_c" + std::to_string(i) + ".pyc");
    std::vector<std::string> picked = CV_SelectScriptFiles(listing, 256);
    ASSERT_EQ(picked.size(), 256u);
    EXPECT_EQ(picked.front(), "CV_1000");
    EXPECT_EQ(picked.back(), "CV_1255");
}

TEST(ConfigLines, EveryLineEndReadsTheSameAndLongLinesAreMarked) {
    auto texts = [](const std::vector<CV_IniLine>& lines) {
        std::string joined;
        for (const CV_IniLine& line : lines) joined += (line.tooLong ? "!" : "") + line.text + "|";
        return joined;
    };
    const struct {
        std::string text, lines;
    } cases[] = {
        {"[DEBUG]\nA = 1\nB = 0\n", "[DEBUG]|A = 1|B = 0|"},
        {"[DEBUG]\r\nA = 1\r\nB = 0\r\n", "[DEBUG]|A = 1|B = 0|"},
        {"[DEBUG]\rA = 1\rB = 0\r", "[DEBUG]|A = 1|B = 0|"},
        {"[DEBUG]\n\rA = 1\n\rB = 0\n\r", "[DEBUG]|A = 1|B = 0|"},
        {"[DEBUG]\nA = 1\nB = 0", "[DEBUG]|A = 1|B = 0|"},
        // Two line ends of one kind are two lines; a third byte after a pair starts the next line end.
        {"a\r\rb\n\nc\r\n\r\nd\n\r\ne", "a||b||c||d||e|"},
        {"", ""},
        {std::string(1024, 'x') + "\nb", std::string(1024, 'x') + "|b|"},
        // Past 1024 bytes the line is marked and the rest of it skipped, whatever ends it.
        {std::string(1025, 'x') + "\r\nb", "!" + std::string(1024, 'x') + "|b|"},
        {"a\r" + std::string(3000, 'y'), "a|!" + std::string(1024, 'y') + "|"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text.substr(0, 40));
        EXPECT_EQ(texts(CV_ReadIniLines(c.text)), c.lines);
    }
}

namespace {

// Reads the configuration file at `path` through the plugin's reader, both switches set to -1
// before; returns what it answered and what it wrote to standard error.
std::pair<int, std::string> ReadConfigAt(const std::string& path) {
    CV_CopyText(CV_PluginDataFile, sizeof CV_PluginDataFile, path.c_str());
    gCV_DebugCallbacks = gCV_CheckCallbacks = -1;
    testing::internal::CaptureStderr();
    int found = CV_GetINIFileValues();
    return {found, testing::internal::GetCapturedStderr()};
}

// The same for a file with the given content; "@" in `reports` stands for its path.
void ExpectConfig(const std::string& content, int debug, int check, std::string reports = "") {
    char path[] = "/tmp/corvelle-ini-XXXXXX";
    int fd = mkstemp(path);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(write(fd, content.data(), content.size()), static_cast<ssize_t>(content.size()));
    close(fd);
    std::pair<int, std::string> read = ReadConfigAt(path);
    unlink(path);
    for (size_t at = reports.find('@'); at != std::string::npos; at = reports.find('@', at + 1))
        reports.replace(at, 1, path);
    EXPECT_EQ(read.first, 1);
    EXPECT_EQ(gCV_DebugCallbacks, debug);
    EXPECT_EQ(gCV_CheckCallbacks, check);
    EXPECT_EQ(read.second, reports);
}

}  // namespace

TEST(ConfigFile, KeysAreReadAlikeFromEveryLineEndAndCase) {
    for (const char* text : {"[DEBUG]\nDebugCallbacks = 1\nCheckCallbacks = 0x1\n",
                             "[DEBUG]\r\nDebugCallbacks = 1\r\nCheckCallbacks = 01\r\n",
                             "[DEBUG]\rDebugCallbacks = 1\rCheckCallbacks = 1\r",
                             "[DEBUG]\n\rDebugCallbacks = 1\n\rCheckCallbacks = 1\n\r",
                             "[DEBUG]\nDebugCallbacks = 1\nCheckCallbacks = 1"}) {
        SCOPED_TRACE(text);
        ExpectConfig(text, 1, 1);
    }
    ExpectConfig("[debug]\ncheckcallbacks=2\n", 0, 2);
    ExpectConfig("[DEBUG]\nCheckCallbacks = abc ; a comment\n# DebugCallbacks = 2\nDebugCallbacks = \"1\"\n", 1, 0);
    ExpectConfig("", 0, 0);
}

TEST(ConfigFile, RefusedLinesAreReportedWhereTheyAreAndTheRestCounts) {
    const std::string longLine(1500, 'x');
    const struct {
        std::string content;
        int debug, check;
        std::string reports;
    } cases[] = {
        {"[DEBUG]\nDebugCallbacks = 1\nnot a key\nCheckCallbacks = 1\n", 1, 1,
         "iniparser: syntax error in @ (3):\n-> not a key\n"},
        // Line numbers count the file's own line ends; iniparser prints the line without trailing blanks.
        {"[DEBUG]\r\n\r\nnot a key \t\r\nCheckCallbacks = 1\r\n[broken\r\nDebugCallbacks = 1", 1, 1,
         "iniparser: syntax error in @ (3):\n-> not a key\niniparser: syntax error in @ (5):\n-> [broken\n"},
        {"[DEBUG]\r" + longLine + "\rCheckCallbacks = 1\r", 0, 1, "iniparser: input line too long in @ (2)\n"},
        // iniparser's own line is a little shorter than the file's: it reports a 1023-byte line itself.
        {"[DEBUG]\n" + std::string(1023, 'k') + "\nDebugCallbacks=1\n" + std::string(1022, ';') +
             "\nCheckCallbacks=1\n",
         1, 1, "iniparser: input line too long in @ (2)\n"},
        // A line ending in "\" continues; the joined line is judged and reported at its last line.
        {"[DEBUG]\nDebugCallbacks = \\\n  1\nbad \\\nstill bad\nCheckCallbacks = 1\n", 1, 1,
         "iniparser: syntax error in @ (5):\n-> bad still bad\n"},
        // An over-long line ends the line it continues and is not continued itself.
        {"[DEBUG]\nCheckCallbacks = 1\\\n" + longLine + "\\\nDebugCallbacks = 1\n", 1, 0,
         "iniparser: input line too long in @ (3)\n"},
        // Several refusals of both kinds, reported in the file's order.
        {"one\n" + longLine + "\n[DEBUG]\ntwo\nDebugCallbacks=1\n" + std::string(1024, 'z') + "\nthree", 1, 0,
         "iniparser: syntax error in @ (1):\n-> one\niniparser: input line too long in @ (2)\n"
         "iniparser: syntax error in @ (4):\n-> two\niniparser: input line too long in @ (6)\n"
         "iniparser: syntax error in @ (7):\n-> three\n"},
        // A refused section line leaves the keys after it in the section before.
        {"[DEBUG]\n[other\nCheckCallbacks = 1\n", 0, 1, "iniparser: syntax error in @ (2):\n-> [other\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.content.substr(0, 60));
        ExpectConfig(c.content, c.debug, c.check, c.reports);
    }
}

TEST(ConfigFile, OnlyTheFirst64KiBOfTheFileAreRead) {
    std::string content = "[DEBUG]\nDebugCallbacks = 1\n";
    const std::string filler = "; " + std::string(97, '-') + "\n";
    const std::string last = "CheckCallbacks = 1";
    while (content.size() + filler.size() + last.size() < kCV_IniFileBytes) content += filler;
    content += std::string(kCV_IniFileBytes - content.size() - last.size(), ' ');
    // The bound falls between the "1" and the "2": the last line read has no line end.
    ExpectConfig(content + "CheckCallbacks = 12\nDebugCallbacks = 0\n", 1, 1);
}

namespace {

// Reads the configuration file in a child process, so that a reader that waits, or reads for ever,
// fails the test instead of hanging it. Answers 0 for "not found, switches untouched", -1 when the
// child had to be stopped after 10 seconds, and something else for any other outcome.
int ReadInChild(const std::string& path) {
    const pid_t child = fork();
    if (child == 0) {
        CV_CopyText(CV_PluginDataFile, sizeof CV_PluginDataFile, path.c_str());
        gCV_CheckCallbacks = 3;
        const int found = CV_GetINIFileValues();
        _exit(found == 0 && gCV_CheckCallbacks == 3 ? 0 : 1 + found);
    }
    for (int waited = 0; child > 0 && waited < 1000; ++waited) {
        int status = 0;
        if (waitpid(child, &status, WNOHANG) == child) return WIFEXITED(status) ? WEXITSTATUS(status) : -2;
        usleep(10000);
    }
    if (child > 0) {
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    }
    return -1;
}

}  // namespace

TEST(ConfigFile, AnythingButARegularFileIsNotFoundAndNeverWaitedFor) {
    char folder[] = "/tmp/corvelle-ini-dir-XXXXXX";
    ASSERT_NE(mkdtemp(folder), nullptr);
    const std::string fifo = std::string(folder) + "/Corvelle.ini";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    for (const std::string& path :
         {fifo, std::string("/dev/zero"), std::string(folder), std::string("/nonexistent/x")})
        EXPECT_EQ(ReadInChild(path), 0) << path;
    unlink(fifo.c_str());
    rmdir(folder);
}

TEST(Paths, ColonPathsBecomePosixOthersStay) {
    char out[64];
    EXPECT_EQ(CV_ConvertPathUsing("/home/pilot/X-Plane/Resources/", '/', out, sizeof out), 0);
    EXPECT_STREQ(out, "/home/pilot/X-Plane/Resources/");
    EXPECT_EQ(CV_ConvertPathUsing("Macintosh HD:X-Plane:Resources:plugins:", ':', out, sizeof out), 0);
    EXPECT_STREQ(out, "/Volumes/Macintosh HD/X-Plane/Resources/plugins/");
    // A result that does not fit, terminator included, is refused.
    char small[10];
    EXPECT_EQ(CV_ConvertPathUsing("/123456789", '/', small, sizeof small), -1);
    EXPECT_EQ(CV_ConvertPathUsing("/12345678", '/', small, sizeof small), 0);
    // The aircraft model paths scripts receive.
    EXPECT_EQ(CV_PosixPath("HD:X-Plane:Aircraft:C172:C172.acf", ':'), "/Volumes/HD/X-Plane/Aircraft/C172/C172.acf");
    EXPECT_EQ(CV_PosixPath("/opt/X-Plane/Aircraft/C172/C172.acf", '/'), "/opt/X-Plane/Aircraft/C172/C172.acf");

    EXPECT_EQ(CV_ScriptsPosixPath("Macintosh HD:X-Plane:", ':'), "/Volumes/Macintosh HD/X-Plane/Resources/plugins/PythonScripts");
    EXPECT_EQ(CV_ScriptsPosixPath("/opt/X-Plane/", '/'), "/opt/X-Plane/Resources/plugins/PythonScripts");
    EXPECT_EQ(CV_JoinPath("/opt/X-Plane/", '/', {"Resources", "plugins", "PythonScripts", ""}),
              "/opt/X-Plane/Resources/plugins/PythonScripts/");

    char drive[] = "C:\\x\\y:z";
    CV_ScriptTable::ChangeSeparatorToDefault(drive);
    EXPECT_STREQ(drive, "C//x/y/z");
}

TEST(OutputCapture, LineFeedsLeaveThePrintListItemCarriageReturnsStay) {
    char item[4096];
    CV_StripLineFeeds("\n\n\n", item, sizeof item);
    EXPECT_STREQ(item, "");
    CV_StripLineFeeds("one\rtwo\nthree\n", item, sizeof item);
    EXPECT_STREQ(item, "one\rtwothree");
    std::string big(5000, 'b');
    CV_StripLineFeeds(big.c_str(), item, sizeof item);
    EXPECT_EQ(strlen(item), 4095u);
}
