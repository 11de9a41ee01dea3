// Pure logic of the plugin host: file selection, line ends, paths, wrapping and the output gate.
#include <gtest/gtest.h>

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

TEST(LineEnds, EveryConventionReadsTheSame) {
    const std::string expected = "[DEBUG]\nCheckCallbacks = 1\nDebugCallbacks = 0\n";
    EXPECT_EQ(CV_NormaliseLineEnds("[DEBUG]\nCheckCallbacks = 1\nDebugCallbacks = 0\n"), expected);
    EXPECT_EQ(CV_NormaliseLineEnds("[DEBUG]\r\nCheckCallbacks = 1\r\nDebugCallbacks = 0\r\n"), expected);
    EXPECT_EQ(CV_NormaliseLineEnds("[DEBUG]\rCheckCallbacks = 1\rDebugCallbacks = 0\r"), expected);
    EXPECT_EQ(CV_NormaliseLineEnds("[DEBUG]\n\rCheckCallbacks = 1\n\rDebugCallbacks = 0\n\r"), expected);
    // A last line without a line end still counts; an empty line between two line ends stays.
    EXPECT_EQ(CV_NormaliseLineEnds("[DEBUG]\r\rCheckCallbacks = 1"), "[DEBUG]\n\nCheckCallbacks = 1\n");
    // A physical line is at most 1024 bytes; the rest starts the next line.
    std::string longLine(1500, 'x');
    EXPECT_EQ(CV_NormaliseLineEnds(longLine), std::string(1024, 'x') + "\n" + std::string(476, 'x') + "\n");
}

namespace {

// Writes a configuration file and reads it through the plugin's reader.
int ReadConfig(const std::string& content) {
    char path[] = "/tmp/corvelle-ini-XXXXXX";
    int fd = mkstemp(path);
    EXPECT_GE(fd, 0);
    EXPECT_EQ(write(fd, content.data(), content.size()), static_cast<ssize_t>(content.size()));
    close(fd);
    CV_CopyText(CV_PluginDataFile, sizeof CV_PluginDataFile, path);
    gCV_DebugCallbacks = gCV_CheckCallbacks = -1;
    int found = CV_GetINIFileValues();
    unlink(path);
    return found;
}

}  // namespace

TEST(ConfigFile, KeysAreReadAlikeFromEveryLineEndAndCase) {
    for (const char* text : {"[DEBUG]\nDebugCallbacks = 1\nCheckCallbacks = 0x1\n",
                             "[DEBUG]\r\nDebugCallbacks = 1\r\nCheckCallbacks = 01\r\n",
                             "[DEBUG]\rDebugCallbacks = 1\rCheckCallbacks = 1\r",
                             "[DEBUG]\nDebugCallbacks = 1\nCheckCallbacks = 1"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(ReadConfig(text), 1);
        EXPECT_EQ(gCV_DebugCallbacks, 1);
        EXPECT_EQ(gCV_CheckCallbacks, 1);
    }
    EXPECT_EQ(ReadConfig("[debug]\ncheckcallbacks=2\n"), 1);
    EXPECT_EQ(gCV_CheckCallbacks, 2);
    EXPECT_EQ(gCV_DebugCallbacks, 0);
    EXPECT_EQ(ReadConfig("[DEBUG]\nCheckCallbacks = abc ; a comment\nDebugCallbacks = \"1\"\n"), 1);
    EXPECT_EQ(gCV_CheckCallbacks, 0);
    EXPECT_EQ(gCV_DebugCallbacks, 1);
}

TEST(ConfigFile, MissingFileKeepsTheSwitches) {
    CV_CopyText(CV_PluginDataFile, sizeof CV_PluginDataFile, "/nonexistent/Corvelle.ini");
    gCV_DebugCallbacks = 0;
    gCV_CheckCallbacks = 3;
    EXPECT_EQ(CV_GetINIFileValues(), 0);
    EXPECT_EQ(gCV_CheckCallbacks, 3);
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
