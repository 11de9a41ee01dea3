// Helpers shared by xpsim's tests: temporary simulator folders, files, fake in-process plugins and
// running the xpsim program.
#pragma once

#include <limits.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "world/DataRefs.h"
#include "world/Plugins.h"
#include "world/Scheduler.h"
#include "world/World.h"

namespace simtest {

// A path with every link resolved; "" when it does not exist.
inline std::string RealPath(const std::string& path) {
    char resolved[PATH_MAX];
    return realpath(path.c_str(), resolved) ? resolved : "";
}

inline std::string MakeTempDir() {
    char pattern[] = "/tmp/xpsim-test-XXXXXX";
    const char* dir = mkdtemp(pattern);
    EXPECT_NE(dir, nullptr);
    return dir ? dir : "/tmp";
}

// A temporary folder, removed with everything in it when the object goes.
class TempDir {
public:
    TempDir() : path_(MakeTempDir()) {}
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

inline std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

inline void WriteFile(const std::string& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary);
    out << text;
}

inline bool Exists(const std::string& path) {
    struct stat st;
    return lstat(path.c_str(), &st) == 0;
}

inline std::string LogText() { return ReadFile(xpsim::LogPath()); }

// A fresh world in a fresh simulator folder, with its log started. The test itself calls the SDK as
// the simulator (plugin 0) unless it opens a PluginContext.
class WorldTest : public ::testing::Test {
protected:
    void SetUp() override {
        xpsim::ResetWorld();
        root_ = dir_.path();
        std::string error;
        ASSERT_TRUE(xpsim::PrepareRoot(root_, error)) << error;
        xpsim::StartLog();
    }
    void TearDown() override { xpsim::ResetWorld(); }

    // Runs whole frames: time advances, then flight loops and drawing.
    void RunFrames(int count) {
        for (int i = 0; i < count; ++i) {
            xpsim::BeginFrame();
            xpsim::RunFrameCallbacks();
        }
    }

    TempDir dir_;
    std::string root_;
};

// An in-process plugin: entry points that do nothing but succeed, entered, started and enabled.
inline int AddEnabledPlugin(const std::string& path, int (*start)(char*, char*, char*)) {
    xpsim::PluginEntryPoints entry;
    entry.start = start;
    entry.stop = [] {};
    entry.enable = [] { return 1; };
    entry.disable = [] {};
    entry.receiveMessage = [](int, int, void*) {};
    const int id = xpsim::AddPlugin(path, nullptr, entry);
    EXPECT_TRUE(xpsim::StartPlugin(id));
    EXPECT_TRUE(xpsim::EnablePlugin(id));
    return id;
}

inline int StartAsPlugin(char* name, char* signature, char* description) {
    snprintf(name, 256, "Test");
    snprintf(signature, 256, "xpsim.tests.plugin%d", xpsim::CurrentPlugin());
    description[0] = '\0';
    return 1;
}

struct ProgramResult {
    int status = -1;
    std::string out;
    std::string err;
};

// Runs the xpsim program with the given arguments (each single-quoted; none may hold a quote).
inline ProgramResult RunXpsim(const std::vector<std::string>& args) {
    static int counter = 0;
    const std::string base = "/tmp/xpsim-test-run-" + std::to_string(getpid()) + "-" + std::to_string(counter++);
    std::string command = XPSIM_BIN;
    for (const auto& arg : args) command += " '" + arg + "'";
    command += " >" + base + ".out 2>" + base + ".err";
    ProgramResult result;
    const int status = std::system(command.c_str());
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.out = ReadFile(base + ".out");
    result.err = ReadFile(base + ".err");
    unlink((base + ".out").c_str());
    unlink((base + ".err").c_str());
    return result;
}

}  // namespace simtest
