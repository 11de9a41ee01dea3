// Starting and stopping the scripts while the plugin stays loaded, in the cases the control panel's
// buttons cannot reach end to end (a start while running, a scripts folder that appears later, the
// simulator's state right after a stop). The plugin's own objects run inside this test process,
// entered in xpsim's plugin table so that every SDK call is answered by the simulator library in the
// plugin's context. The buttons themselves are tested end to end (tests/e2e/ControlPanelTest.cpp).
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "CV_ScriptTable.h"
#include "PanelState.h"
#include "PluginEntry.h"
#include "XPLMDefs.h"
#include "XPLMDataAccess.h"
#include "XPLMDisplay.h"
#include "world/Commands.h"
#include "world/DataRefs.h"
#include "world/Keys.h"
#include "world/Scheduler.h"
#include "world/Plugins.h"
#include "world/World.h"

PLUGIN_API int XPluginStart(char*, char*, char*);
PLUGIN_API void XPluginStop(void);
PLUGIN_API int XPluginEnable(void);
PLUGIN_API void XPluginDisable(void);
PLUGIN_API void XPluginReceiveMessage(XPLMPluginID, int, void*);

namespace fs = std::filesystem;

namespace {

std::string Read(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

size_t Count(const std::string& text, const std::string& needle) {
    size_t n = 0;
    for (size_t p = text.find(needle); p != std::string::npos; p = text.find(needle, p + 1)) ++n;
    return n;
}

class StartStop : public ::testing::Test {
protected:
    void SetUp() override {
        char dir[] = "/tmp/corvelle-inprocess-XXXXXX";
        ASSERT_NE(mkdtemp(dir), nullptr);
        root_ = dir;
        std::string error;
        ASSERT_TRUE(xpsim::PrepareRoot(root_, error)) << error;
        ASSERT_TRUE(xpsim::SetSdkLevel(210));
        ASSERT_TRUE(xpsim::InstallLibraryLink(error)) << error;
        xpsim::StartLog();
        xpsim::LoadStandardDataRefs();
    }

    void TearDown() override {
        std::error_code ec;
        fs::remove_all(root_, ec);
    }

    std::string Scripts() const { return root_ + "/Resources/plugins/PythonScripts"; }

    void WriteScript(const std::string& name, const std::string& source) const {
        fs::create_directories(Scripts());
        std::ofstream(Scripts() + "/" + name) << source;
    }

    // Loads the plugin as the simulator does: start, then enable.
    void LoadPlugin() {
        xpsim::PluginEntryPoints entry;
        entry.start = XPluginStart;
        entry.stop = XPluginStop;
        entry.enable = XPluginEnable;
        entry.disable = XPluginDisable;
        entry.receiveMessage = XPluginReceiveMessage;
        id_ = xpsim::AddPlugin(root_ + "/Resources/plugins/Corvelle/lin_x64/Corvelle.xpl", nullptr, entry);
        ASSERT_TRUE(xpsim::StartPlugin(id_));
        xpsim::EnablePlugin(id_);
    }

    void UnloadPlugin() {
        xpsim::DisablePlugin(id_);
        xpsim::StopPlugin(id_);
    }

    std::string Log() const { return Read(Scripts() + "/CorvelleLog.txt"); }
    std::string Output() const { return Read(Scripts() + "/CorvelleOutput.txt"); }

    std::string root_;
    int id_ = 0;
};

const char* kTalkingScript =
    "class Corvelle:\n"
    "    def XPluginStart(self):\n        print('start')\n        return 'Talk', 'sig.talk', 'd'\n"
    "    def XPluginEnable(self):\n        print('enable')\n"
    "    def XPluginDisable(self):\n        print('disable')\n"
    "    def XPluginStop(self):\n        print('stop')\n";

}  // namespace

TEST_F(StartStop, StartingWhileRunningDoesNothing) {
    WriteScript("CV_Talk.py", kTalkingScript);
    LoadPlugin();
    {
        xpsim::PluginContext context(id_);
        StartPython(1);  // already running: nothing happens
        EXPECT_EQ(Count(Log(), "+++ LOGGING STARTED +++"), 1u);
    }
    UnloadPlugin();
    EXPECT_EQ(Output(), "start\nenable\ndisable\nstop\n");
}

TEST_F(StartStop, MissingFolderLeavesTheRunStateStoppedUntilAStartFindsIt) {
    LoadPlugin();
    EXPECT_EQ(CVTestTable->GetPythonRunState(), 0);
    EXPECT_STREQ(szPopupText, "PythonScripts Directory Error;");
    EXPECT_FALSE(fs::exists(Scripts()));
    WriteScript("CV_Talk.py", kTalkingScript);
    {
        xpsim::PluginContext context(id_);
        StopPython(1);  // never started: nothing to stop, nothing logged
        EXPECT_FALSE(fs::exists(Scripts() + "/CorvelleLog.txt"));
        StartPython(1);
        EXPECT_EQ(CVTestTable->GetPythonRunState(), 1);
    }
    UnloadPlugin();
    EXPECT_EQ(Output(), "start\nenable\ndisable\nstop\n");
    const std::string log = Log();
    EXPECT_EQ(Count(log, "+++ LOGGING STARTED +++"), 1u);
    EXPECT_EQ(log.find("+++ LOGGING STARTED +++"), 0u);
    EXPECT_EQ(Count(log, "--- LOGGING STOPPED ---"), 1u);
}

TEST_F(StartStop, CallbacksLeftBehindByStoppedScriptsNoLongerHoldTheSimulatorBack) {
    WriteScript("CV_Greedy.py",
                "from XPLMDisplay import *\n"
                "from XPLMProcessing import *\n"
                "from XPLMUtilities import *\n"
                "class Corvelle:\n"
                "    def XPluginStart(self):\n"
                "        self.Draw, self.Sniff, self.Handle, self.Loop = self.DrawCB, self.SniffCB, self.HandleCB, self.LoopCB\n"
                "        XPLMRegisterDrawCallback(self, self.Draw, xplm_Phase_Objects, 1, 0)\n"
                "        XPLMRegisterKeySniffer(self, self.Sniff, 1, 0)\n"
                "        XPLMRegisterCommandHandler(self, XPLMFindCommand('sim/operation/pause_toggle'), self.Handle, 1, 0)\n"
                "        XPLMRegisterFlightLoopCallback(self, self.Loop, -1.0, 0)\n"
                "        return 'Greedy', 'sig.greedy', 'Keeps everything and unregisters nothing'\n"
                "    def DrawCB(self, phase, before, refcon):\n        return 0\n"
                "    def SniffCB(self, key, flags, vkey, refcon):\n        return 0\n"
                "    def HandleCB(self, command, phase, refcon):\n        return 0\n"
                "    def LoopCB(self, since, sinceLoop, counter, refcon):\n        print('loop')\n        return -1.0\n");
    LoadPlugin();
    XPLMDataRef paused = XPLMFindDataRef("sim/time/paused");
    ASSERT_NE(paused, nullptr);
    std::string error;
    auto frame = [] {
        xpsim::BeginFrame();
        xpsim::RunFrameCallbacks();
    };
    auto pressP = [] { xpsim::PressKey(xpsim::KeyForCharacter('p', 0)); };

    // While the script runs it suppresses the phase, eats the key and stops the command.
    frame();
    EXPECT_EQ(xpsim::SimSuppressedFrames(xplm_Phase_Objects), 1);
    pressP();
    ASSERT_TRUE(xpsim::RunCommandByName("sim/operation/pause_toggle", xpsim::CommandRun::Once, error)) << error;
    EXPECT_EQ(XPLMGetDatai(paused), 0);

    {
        xpsim::PluginContext context(id_);
        StopPython(1);
    }
    // Its leftovers stay registered with the simulator but let it carry on.
    frame();
    frame();
    EXPECT_EQ(xpsim::SimSuppressedFrames(xplm_Phase_Objects), 1);
    pressP();
    EXPECT_EQ(XPLMGetDatai(paused), 1);
    ASSERT_TRUE(xpsim::RunCommandByName("sim/operation/pause_toggle", xpsim::CommandRun::Once, error)) << error;
    EXPECT_EQ(XPLMGetDatai(paused), 0);
    UnloadPlugin();
    EXPECT_EQ(Output(), "loop\n");
}
