// Start-up: the real xpsim program with the real Corvelle.xpl and a number of scripts, timed from
// the start of the process to its first frame. The first script's first flight loop writes the
// clock's reading; both sides read CLOCK_MONOTONIC.
#include <fcntl.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

double Now() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// A script as scripts commonly start: a few modules, a few datarefs, a flight loop. The first one
// writes the time of its first flight loop to STAMP.
const char* const kScript = R"(import time
from XPLMDataAccess import *
from XPLMProcessing import *
from XPLMMenus import *
from XPLMDisplay import *
from XPLMGraphics import *
class Corvelle:
    def XPluginStart(self):
        self.stamp = 'STAMP' if NUMBER == 0 else None
        self.refs = [XPLMFindDataRef(n) for n in ('sim/aircraft/view/acf_Vso', 'sim/aircraft/prop/acf_num_blades',
                                                  'sim/time/paused')]
        self.loop = self.Loop
        XPLMRegisterFlightLoopCallback(self, self.loop, -1.0, 0)
        return 'StartupNUMBER', 'bench.startup.NUMBER', 'A start-up script'
    def XPluginStop(self):
        XPLMUnregisterFlightLoopCallback(self, self.loop, 0)
    def XPluginEnable(self):
        return 1
    def XPluginDisable(self):
        pass
    def XPluginReceiveMessage(self, fromWho, message, param):
        pass
    def Loop(self, since, sinceLoop, counter, refcon):
        if self.stamp:
            with open(self.stamp, 'w') as f:
                f.write(repr(time.clock_gettime(time.CLOCK_MONOTONIC)))
            self.stamp = None
        return -1.0
)";

std::string Script(int number, const std::string& stampPath) {
    std::string script = kScript;
    for (auto [word, value] :
         {std::pair<std::string, std::string>{"NUMBER", std::to_string(number)}, {"STAMP", stampPath}})
        for (size_t at = script.find(word); at != std::string::npos; at = script.find(word, at + value.size()))
            script.replace(at, word.size(), value);
    return script;
}

// One run: the seconds from the start of the process to the first frame, or a negative number.
double OneRun(const std::string& root) {
    const std::string stampPath = root + "/first-frame.txt";
    fs::remove(stampPath);
    std::vector<std::string> args = {XPSIM_BIN, "run", "--root", root, "--plugin", CORVELLE_XPL, "--frames", "2"};
    std::vector<char*> argv;
    for (std::string& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    const double start = Now();
    const pid_t pid = fork();
    if (pid == 0) {
        const int quiet = open("/dev/null", O_WRONLY);
        dup2(quiet, 1);
        dup2(quiet, 2);
        execv(argv[0], argv.data());
        _exit(127);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    std::ifstream in(stampPath);
    double firstFrame = 0;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || !(in >> firstFrame)) return -1;
    return firstFrame - start;
}

}  // namespace

// The median of five runs with `scripts` scripts, in seconds; negative when a run failed.
double StartupSeconds(int scripts) {
    char dir[] = "/tmp/corvelle-startup-XXXXXX";
    if (mkdtemp(dir) == nullptr) return -1;
    const std::string root = dir;
    fs::create_directories(root + "/Resources/plugins/PythonScripts");
    fs::copy_file(std::string(TEST_DATA_DIR) + "/DataRefs.txt", root + "/Resources/plugins/DataRefs.txt");
    for (int i = 0; i < scripts; ++i) {
        char name[64];
        snprintf(name, sizeof name, "/Resources/plugins/PythonScripts/CV_Startup%03d.py", i);
        std::ofstream(root + name) << Script(i, root + "/first-frame.txt");
    }
    std::vector<double> runs;
    for (int i = 0; i < 5; ++i) runs.push_back(OneRun(root));
    fs::remove_all(root);
    std::sort(runs.begin(), runs.end());
    return runs.front() < 0 ? -1 : runs[2];
}
