// Paths, directory listing, versions, symbol lookup, the log and the exported function set.
#include <dlfcn.h>
#include <limits.h>

#include <cctype>
#include <cstring>
#include <thread>
#include <vector>

#include "SimTestSupport.h"
#include "XPLMGraphics.h"
#include "XPLMMenus.h"
#include "XPLMPlanes.h"
#include "XPLMProcessing.h"
#include "XPLMUtilities.h"
#include "world/Threads.h"

namespace {

using simtest::RealPath;

using simtest::LogText;

class sim_Utilities : public simtest::WorldTest {};

}  // namespace

TEST_F(sim_Utilities, DirectoryListingFollowsTheSdkContract) {
    const std::string dir = root_ + "/listing";
    mkdir(dir.c_str(), 0755);
    mkdir((dir + "/d").c_str(), 0755);
    for (const char* name : {"b.py", "a.txt", "ccc"}) simtest::WriteFile(dir + "/" + name, "x");

    char names[64];
    char* index[8];
    int total = -1, returned = -1;
    EXPECT_EQ(XPLMGetDirectoryContents(dir.c_str(), 0, names, sizeof names, index, 8, &total, &returned), 1);
    EXPECT_EQ(total, 4);
    EXPECT_EQ(returned, 4);
    EXPECT_EQ(std::string(names, 18), std::string("a.txt\0b.py\0ccc\0d\0\0", 18));
    EXPECT_EQ(index[0], names);
    EXPECT_EQ(index[1], names + 6);
    EXPECT_EQ(index[3], names + 15);
    EXPECT_EQ(index[4], nullptr);

    // A buffer with room for two names and the closing empty string; nothing is written past it.
    char guarded[20];
    std::memset(guarded, '#', sizeof guarded);
    EXPECT_EQ(XPLMGetDirectoryContents(dir.c_str(), 0, guarded, 12, nullptr, 0, &total, &returned), 0);
    EXPECT_EQ(total, 4);
    EXPECT_EQ(returned, 2);
    EXPECT_EQ(std::string(guarded, 20), std::string("a.txt\0b.py\0\0########", 20));
    // One byte less and the second name no longer fits with the closing empty string after it.
    std::memset(guarded, '#', sizeof guarded);
    EXPECT_EQ(XPLMGetDirectoryContents(dir.c_str(), 0, guarded, 11, nullptr, 0, &total, &returned), 0);
    EXPECT_EQ(returned, 1);
    EXPECT_EQ(std::string(guarded, 20), std::string("a.txt\0\0#############", 20));

    // Two index slots hold one name and the closing null.
    char* slots[3] = {names, names, names};
    EXPECT_EQ(XPLMGetDirectoryContents(dir.c_str(), 0, names, sizeof names, slots, 2, nullptr, &returned), 0);
    EXPECT_EQ(returned, 1);
    EXPECT_EQ(slots[1], nullptr);
    EXPECT_EQ(slots[2], names);

    // Skipping entries, and reading from past the end.
    EXPECT_EQ(XPLMGetDirectoryContents(dir.c_str(), 3, names, sizeof names, index, 8, &total, &returned), 1);
    EXPECT_EQ(std::string(index[0]), "d");
    EXPECT_EQ(returned, 1);
    EXPECT_EQ(XPLMGetDirectoryContents(dir.c_str(), 9, names, sizeof names, index, 8, &total, &returned), 1);
    EXPECT_EQ(returned, 0);
    EXPECT_EQ(names[0], '\0');

    // A folder that does not exist, and misuse.
    total = returned = 5;
    EXPECT_EQ(XPLMGetDirectoryContents((dir + "/none").c_str(), 0, names, sizeof names, index, 8, &total, &returned), 0);
    EXPECT_EQ(total, 0);
    EXPECT_EQ(returned, 0);
    EXPECT_EQ(XPLMGetDirectoryContents(nullptr, 0, names, sizeof names, index, 8, &total, &returned), 0);
    EXPECT_EQ(XPLMGetDirectoryContents(dir.c_str(), -1, names, sizeof names, index, 8, &total, &returned), 0);
    EXPECT_NE(LogText().find("xpsim: XPLMGetDirectoryContents: negative first index or index count\n"), std::string::npos);
}

TEST_F(sim_Utilities, PathsAndTheUsersAircraftLookLikeTheSimulators) {
    const std::string system = RealPath(root_) + "/";
    char path[512];
    XPLMGetSystemPath(path);
    EXPECT_EQ(std::string(path), system);
    XPLMGetPrefsPath(path);
    EXPECT_EQ(std::string(path), system + "Output/preferences/Set X-Plane.prf");
    EXPECT_STREQ(XPLMGetDirectorySeparator(), "/");

    char file[256];
    XPLMGetNthAircraftModel(0, file, path);
    EXPECT_STREQ(file, "Cessna_172SP.acf");
    EXPECT_EQ(std::string(path), system + "Aircraft/General Aviation/Cessna 172SP/Cessna_172SP.acf");
    EXPECT_TRUE(simtest::Exists(path));
    XPLMGetNthAircraftModel(20, file, path);  // there are 20 aircraft
    EXPECT_STREQ(file, "");
    EXPECT_STREQ(path, "");

    char full[] = "/a/b/c.txt";
    char* name = XPLMExtractFileAndPath(full);
    EXPECT_STREQ(name, "c.txt");
    EXPECT_STREQ(full, "/a/b");
    char bare[] = "plain";
    EXPECT_EQ(XPLMExtractFileAndPath(bare), bare);
    EXPECT_STREQ(bare, "plain");
}

TEST_F(sim_Utilities, VersionsSymbolsAndLibraryLinkFollowTheSdkLevel) {
    const std::string link = root_ + "/Resources/plugins/XPLM_64.so";
    std::string error;
    int xplane = 0, xplm = 0, host = 0;

    ASSERT_TRUE(xpsim::SetSdkLevel(210));
    ASSERT_TRUE(xpsim::InstallLibraryLink(error)) << error;
    EXPECT_EQ(RealPath(link), RealPath(XPLM_LIB));
    XPLMGetVersions(&xplane, &xplm, &host);
    EXPECT_EQ(xplane, 1041);
    EXPECT_EQ(xplm, 210);
    EXPECT_EQ(host, xplm_Host_XPlane);
    EXPECT_EQ(XPLMFindSymbol("XPLMCreateFlightLoop"), reinterpret_cast<void*>(&XPLMCreateFlightLoop));
    EXPECT_EQ(XPLMFindSymbol("XPLMRemoveMenuItem"), reinterpret_cast<void*>(&XPLMRemoveMenuItem));
    EXPECT_EQ(XPLMFindSymbol("XPLMNoSuchFunction"), nullptr);
    EXPECT_EQ(XPLMFindSymbol("malloc"), nullptr);
    EXPECT_EQ(XPLMFindSymbol("_ZN5xpsim10ResetWorldEv"), nullptr);

    ASSERT_TRUE(xpsim::SetSdkLevel(200));
    ASSERT_TRUE(xpsim::InstallLibraryLink(error)) << error;
    EXPECT_TRUE(simtest::Exists(link));
    XPLMGetVersions(&xplane, &xplm, &host);
    EXPECT_EQ(xplm, 200);
    for (const char* added : {"XPLMRemoveMenuItem", "XPLMCreateFlightLoop", "XPLMDestroyFlightLoop",
                              "XPLMScheduleFlightLoop", "XPLMLoadObjectAsync"})
        EXPECT_EQ(XPLMFindSymbol(added), nullptr) << added;
    EXPECT_EQ(XPLMFindSymbol("XPLMCreateCommand"), reinterpret_cast<void*>(&XPLMCreateCommand));

    ASSERT_TRUE(xpsim::SetSdkLevel(102));
    ASSERT_TRUE(xpsim::InstallLibraryLink(error)) << error;
    EXPECT_FALSE(simtest::Exists(link));
    XPLMGetVersions(&xplane, &xplm, &host);
    EXPECT_EQ(xplm, 102);
    EXPECT_EQ(XPLMFindSymbol("XPLMCreateCommand"), nullptr);

    // A file that xpsim did not put there is never replaced.
    simtest::WriteFile(link, "not a library");
    ASSERT_TRUE(xpsim::SetSdkLevel(210));
    EXPECT_FALSE(xpsim::InstallLibraryLink(error));
    EXPECT_EQ(error, RealPath(root_) + "/Resources/plugins/XPLM_64.so exists and is not the link xpsim makes; remove it");
}

TEST_F(sim_Utilities, DebugStringGoesToLogAndStdoutByteForByte) {
    const std::string text = "tab\there\nutf8 \xc3\xa9, no newline";
    testing::internal::CaptureStdout();
    XPLMDebugString(text.c_str());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), text);
    const std::string log = LogText();
    EXPECT_EQ(log, "xpsim: headless X-Plane 10.41, SDK 2.10\n" + text);
}

namespace {

// The names of the functions a header declares: the identifier before the first "(" after each
// XPLM_API or WIDGET_API, comments removed.
std::vector<std::string> DeclaredFunctions(std::string text) {
    for (size_t open = text.find("/*"); open != std::string::npos; open = text.find("/*", open)) {
        const size_t close = text.find("*/", open + 2);
        text.erase(open, close == std::string::npos ? std::string::npos : close + 2 - open);
    }
    std::vector<std::string> names;
    for (const std::string marker : {"XPLM_API ", "WIDGET_API "}) {
        for (size_t at = text.find(marker); at != std::string::npos; at = text.find(marker, at + 1)) {
            // Skip the macros' own definitions.
            if (at > 0 && text[at - 1] != '\n') continue;
            size_t paren = text.find('(', at);
            size_t end = paren;
            while (end > at && text[end - 1] == ' ') --end;
            size_t begin = end;
            while (begin > at && (std::isalnum(static_cast<unsigned char>(text[begin - 1])) || text[begin - 1] == '_'))
                --begin;
            names.push_back(text.substr(begin, end - begin));
        }
    }
    return names;
}

}  // namespace

TEST(sim_Exports, EveryFunctionTheSdkHeadersDeclareIsExported) {
    const std::string sdk = std::string(TEST_DATA_DIR) + "/../../sdk/";
    size_t count = 0;
    for (const char* header : {"XPLMDataAccess.h", "XPLMUtilities.h", "XPLMPlugin.h", "XPLMProcessing.h",
                               "XPLMMenus.h", "XPLMDisplay.h", "XPLMGraphics.h", "XPLMCamera.h",
                               "XPLMNavigation.h", "XPLMPlanes.h", "XPLMScenery.h", "XPWidgets.h",
                               "XPStandardWidgets.h", "XPUIGraphics.h", "XPWidgetUtils.h"}) {
        const std::string text = simtest::ReadFile(sdk + header);
        ASSERT_FALSE(text.empty()) << header;
        for (const std::string& name : DeclaredFunctions(text)) {
            ++count;
            EXPECT_EQ(name.compare(0, 2, "XP"), 0) << name << " from " << header;
            void* symbol = dlsym(RTLD_DEFAULT, name.c_str());
            EXPECT_NE(symbol, nullptr) << name << " from " << header;
            Dl_info info;
            if (symbol && dladdr(symbol, &info)) {
                EXPECT_EQ(RealPath(info.dli_fname), RealPath(XPLM_LIB)) << name;
            }
        }
    }
    EXPECT_GT(count, 150u);
}

// The SDK belongs to the main thread: every call from another thread is noted, up to a hundred.
TEST_F(sim_Utilities, SdkCallsFromAnotherThreadAreNotedAsMisuse) {
    const int before = xpsim::ForeignThreadCalls();
    XPLMGetElapsedTime();
    std::thread([] {
        XPLMDebugString("from a thread\n");
        XPLMGetElapsedTime();
    }).join();
    EXPECT_EQ(xpsim::ForeignThreadCalls(), before + 2);
    const std::string log = simtest::LogText();
    for (const char* function : {"XPLMDebugString", "XPLMGetElapsedTime"})
        EXPECT_NE(log.find(std::string("xpsim: ") + function +
                           ": called from a thread other than the simulator's main thread\n"),
                  std::string::npos)
            << log;
    EXPECT_NE(log.find("from a thread\n"), std::string::npos);  // noted, and still done
}
