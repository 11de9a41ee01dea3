// The end-to-end harness: a temporary simulator folder and a child xpsim process.
#include "SimHarness.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace fs = std::filesystem;

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return std::string();
    std::stringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

bool FileExists(const std::string& path) { return fs::exists(path); }

size_t CountOf(const std::string& text, const std::string& needle) {
    if (needle.empty()) return 0;
    size_t count = 0;
    for (size_t pos = text.find(needle); pos != std::string::npos; pos = text.find(needle, pos + needle.size())) ++count;
    return count;
}

bool InOrder(const std::string& text, const std::vector<std::string>& needles) {
    size_t pos = 0;
    for (const auto& n : needles) {
        size_t found = text.find(n, pos);
        if (found == std::string::npos) return false;
        pos = found + n.size();
    }
    return true;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::string line;
    std::istringstream in(text);
    while (std::getline(in, line)) lines.push_back(line);
    return lines;
}

std::string Between(const std::string& text, const std::string& before, const std::string& after, size_t from) {
    size_t start = text.find(before, from);
    if (start == std::string::npos) return "";
    start += before.size();
    size_t end = text.find(after, start);
    return end == std::string::npos ? "" : text.substr(start, end - start);
}

std::string EntryPointScript(const std::string& header, const std::string& name, const std::string& start,
                             const std::string& enable, const std::string& stop, const std::string& methods) {
    return header +
           "class Corvelle:\n"
           "    def XPluginStart(self):\n" +
           start + "        return '" + name + "', 'test." + name + "', 'A test script'\n" +
           "    def XPluginEnable(self):\n" + enable + "        return 1\n" +
           "    def XPluginStop(self):\n" + stop + "        pass\n" +
           "    def XPluginDisable(self):\n        pass\n"
           "    def XPluginReceiveMessage(self, fromWho, message, param):\n        pass\n" +
           methods;
}

SimFolder::SimFolder(bool withScriptsFolder) {
    std::string base = fs::temp_directory_path().string() + "/corvelle-e2e-XXXXXX";
    std::vector<char> buffer(base.begin(), base.end());
    buffer.push_back('\0');
    if (mkdtemp(buffer.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
    root_ = buffer.data();
    fs::create_directories(root_ + "/Resources/plugins");
    fs::copy_file(std::string(TEST_DATA_DIR) + "/DataRefs.txt", root_ + "/Resources/plugins/DataRefs.txt");
    if (withScriptsFolder) fs::create_directories(scriptsDir());
}

SimFolder::~SimFolder() {
    if (getenv("CORVELLE_KEEP_TEST_ROOT") == nullptr) {
        std::error_code ec;
        fs::remove_all(root_, ec);
    }
}

void SimFolder::writeScript(const std::string& fileName, const std::string& source) const {
    writeFile("Resources/plugins/PythonScripts/" + fileName, source);
}

void SimFolder::writeFile(const std::string& relativePath, const std::string& content) const {
    fs::path path = fs::path(root_) / relativePath;
    fs::create_directories(path.parent_path());
    std::ofstream out(path, std::ios::binary);
    out << content;
}

std::string SimFolder::writeEvents(const std::string& events) const {
    writeFile("events.txt", events);
    return root_ + "/events.txt";
}

SimRun SimFolder::run(const std::vector<std::string>& options) const {
    std::vector<std::string> args = {XPSIM_BIN, "run", "--root", root_, "--plugin", CORVELLE_XPL};
    args.insert(args.end(), options.begin(), options.end());
    std::vector<char*> argv;
    for (auto& a : args) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);

    const std::string outPath = root_ + "/xpsim-stdout.txt";
    const std::string errPath = root_ + "/xpsim-stderr.txt";
    pid_t pid = fork();
    if (pid == 0) {
        int out = open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        int err = open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        dup2(out, 1);
        dup2(err, 2);
        execv(argv[0], argv.data());
        _exit(127);
    }
    SimRun result;
    int status = 0;
    // A run that hangs is killed, so a test fails instead of blocking the suite.
    auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(100);
    while (true) {
        pid_t done = waitpid(pid, &status, WNOHANG);
        if (done == pid) break;
        if (std::chrono::steady_clock::now() > deadline) {
            kill(pid, SIGKILL);
            waitpid(pid, &status, 0);
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
    else if (WIFSIGNALED(status)) result.exitCode = 128 + WTERMSIG(status);
    result.stdoutText = ReadFile(outPath);
    result.stderrText = ReadFile(errPath);
    return result;
}

std::string SimFolder::read(const std::string& relativePath) const { return ReadFile(root_ + "/" + relativePath); }
std::string SimFolder::log() const { return ReadFile(scriptsDir() + "/CorvelleLog.txt"); }
std::string SimFolder::output() const { return ReadFile(scriptsDir() + "/CorvelleOutput.txt"); }
std::string SimFolder::simLog() const { return ReadFile(root_ + "/Log.txt"); }

namespace {

// Every non-empty line of `code` indented by `spaces`.
std::string IndentCode(const std::string& code, int spaces) {
    std::istringstream in(code);
    std::string line, result;
    while (std::getline(in, line))
        if (!line.empty()) result += std::string(spaces, ' ') + line + "\n";
    return result;
}

}  // namespace

std::string TestScript(const std::string& name, const std::vector<std::string>& modules, const std::string& start,
                       const std::string& later, const std::string& stop, const std::string& methods) {
    std::string source = "from XPLMProcessing import *\n";
    for (const auto& module : modules) source += "from " + module + " import *\n";
    source += "class Corvelle:\n"
              "    def XPluginStart(self):\n" +
              IndentCode(start, 8) +
              "        self.laterCB = self.Later\n"
              "        XPLMRegisterFlightLoopCallback(self, self.laterCB, -1, 0)\n"
              "        return '" + name + "', 'test." + name + "', 'A test script'\n"
              "    def Later(self, sinceCall, sinceLoop, counter, refcon):\n" +
              IndentCode(later, 8) +
              "        return 0\n"
              "    def XPluginStop(self):\n" +
              IndentCode(stop, 8) +
              "        XPLMUnregisterFlightLoopCallback(self, self.laterCB, 0)\n"
              "    def XPluginEnable(self):\n"
              "        return 1\n"
              "    def XPluginDisable(self):\n"
              "        pass\n"
              "    def XPluginReceiveMessage(self, fromWho, message, param):\n"
              "        if fromWho != 0 or message not in (102, 103, 104):  # not the sim's start-up loads\n"
              "            print('received', fromWho, message, param)\n" +
              IndentCode(methods, 4);
    return source;
}

std::string Report(const std::string& module, const std::string& function, const std::string& message) {
    return "Module - " + module + ", Function - " + function + ", Error = " + message + "\n";
}

std::string RunLater(const SimFolder& sim, const std::string& name, const std::vector<std::string>& modules,
                     const std::string& later, std::vector<std::string> options, const std::string& stop,
                     const std::string& methods) {
    sim.writeScript("CV_" + name + ".py", TestScript(name, modules, "", later, stop, methods));
    options.insert(options.end(), {"--frames", "2"});
    const SimRun run = sim.run(options);
    EXPECT_EQ(run.exitCode, 0) << run.stderrText;
    return sim.output();
}
