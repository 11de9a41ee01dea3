// Utilities end to end: Corvelle.xpl in xpsim with scripts using the XPLMUtilities module for paths,
// directory listings, versions, the log, keys and buttons, error callbacks, symbols and data files.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "SimHarness.h"

namespace {

// A script with the data access, plugin and utilities modules (see TestScript).
std::string Script(const std::string& name, const std::string& start, const std::string& later,
                   const std::string& stop = "", const std::string& methods = "") {
    return TestScript(name, {"XPLMDataAccess", "XPLMPlugin", "XPLMUtilities"}, start, later, stop, methods);
}

std::string Report(const std::string& function, const std::string& message) {
    return "Module - XPLMUtilities, Function - " + function + ", Error = " + message + "\n";
}

TEST(UtilitiesTest, PathsVersionsLogKeysAndButtons) {
    SimFolder sim;
    sim.writeScript("CV_Utils.py", Script("Utils", "", R"(
print('system', XPLMGetSystemPath())
print('prefs', XPLMGetPrefsPath())
print('separator', XPLMGetDirectorySeparator(), XPLMGetDirectorySeparator_NP(self))
print('np', XPLMGetSystemPath_NP(self) == XPLMGetSystemPath(), XPLMGetPrefsPath_NP(self) == XPLMGetPrefsPath())
full = '/a/b/c.txt'
print('extract', XPLMExtractFileAndPath(full), XPLMExtractFileAndPath_NP(self, full), full)
print('versions', XPLMGetVersions(), XPLMGetLanguage(), XPLMInitialized())
print('log', XPLMDebugString('a line from a script\n'), XPLMSpeakString('Gear down'))
print('keys', XPLMCommandKeyStroke(xplm_key_gear), XPLMCommandKeyStroke(500))
print('buttons', XPLMCommandButtonPress(xplm_joy_flapsdn), XPLMCommandButtonRelease(xplm_joy_flapsdn),
      XPLMCommandButtonRelease(xplm_joy_flapsdn))
print('virtual key', XPLMGetVirtualKeyDescription(0x0D))
try:
    XPLMGetVirtualKeyDescription(300)
except OverflowError:
    print('300 is not a virtual key')
print('symbols', XPLMFindSymbol('XPLMGetVersions') != 0, XPLMFindSymbol('NoSuchSymbol'))
print('scenery', XPLMReloadScenery())
com1 = XPLMFindDataRef('sim/cockpit/radios/com1_freq_hz')
XPLMSetDatai(com1, 12345)
print('save', XPLMSaveDataFile(xplm_DataFile_Situation, 'Output/test.sit'))
XPLMSetDatai(com1, 11800)
print('load', XPLMLoadDataFile(xplm_DataFile_Situation, 'Output/test.sit'), XPLMGetDatai(com1),
      XPLMLoadDataFile(xplm_DataFile_Situation, '/etc/passwd'), XPLMSaveDataFile(7, 'Output/x.sit'))
)"));
    SimRun run = sim.run({"--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    const std::string root = sim.root() + "/";
    EXPECT_EQ(sim.output(),
              "system " + root + "\n"
              "prefs " + root + "Output/preferences/Set X-Plane.prf\n"
              "separator / /\n"
              "np True True\n"
              "extract ('c.txt', '/a/b') ('c.txt', '/a/b') /a/b/c.txt\n"
              "versions (1041, 210, 1) 1 1\n"
              "log 1 1\n"
              "keys 1 1\n"
              "buttons 1 1 1\n"
              "virtual key RETURN\n"
              "300 is not a virtual key\n"
              "symbols True 0\n"
              "scenery 1\n"
              "save 1\n"
              "load 1 12345 0 0\n");
    EXPECT_TRUE(InOrder(sim.simLog(), {"a line from a script\n", "xpsim: XPLMSpeakString: Gear down\n",
                                       "xpsim: key stroke xplm_key_gear (5)\n",
                                       "xpsim: XPLMCommandKeyStroke: no XPLMCommandKeyID 500\n",
                                       "xpsim: button press xplm_joy_flapsdn (48)\n",
                                       "xpsim: button release xplm_joy_flapsdn (48)\n",
                                       "xpsim: XPLMCommandButtonRelease: xplm_joy_flapsdn (48) is not pressed\n",
                                       "xpsim: XPLMLoadDataFile: '/etc/passwd' is an absolute path",
                                       "xpsim: XPLMSaveDataFile: unknown data file type 7\n"}))
        << sim.simLog();
    EXPECT_EQ(CountOf(sim.log(), "Module - "), 0u) << sim.log();
}

TEST(UtilitiesTest, DirectoryContentsFillListsWithinTheirBuffers) {
    SimFolder sim;
    for (const char* name : {"a.txt", "b.txt", "c.txt", "d.txt"}) sim.writeFile(std::string("Custom/List/") + name, "x");
    sim.writeScript("CV_Listing.py", Script("Listing", "", R"(
folder = XPLMGetSystemPath() + 'Custom/List'
names, idx, tot, ret = ['kept'], [], [99], []
print('all', XPLMGetDirectoryContents(folder, 0, names, 1024, idx, 10, tot, ret), names, idx, tot, ret)
idx, ret = [], []
print('from 2', XPLMGetDirectoryContents(folder, 2, None, 1024, idx, 10, None, ret), idx, ret)
idx, ret = [], []
print('index count 2', XPLMGetDirectoryContents(folder, 0, None, 1024, idx, 2, None, ret), idx, ret)
idx, ret = [], []
print('index count 1', XPLMGetDirectoryContents(folder, 0, None, 1024, idx, 1, None, ret), idx, ret)
names, idx, ret = [], [], []
print('small buffer', XPLMGetDirectoryContents(folder, 0, names, 8, idx, 10, None, ret), names, idx, ret)
idx = []
print('no returned count', XPLMGetDirectoryContents(folder, 0, None, 1024, idx, 10, None, None), idx)
names, idx, tot, ret = [], [], [], []
print('np', XPLMGetDirectoryContents_NP(self, folder, 0, names, 1024, idx, 10, tot, ret), names, idx, tot, ret)
tot = []
print('missing', XPLMGetDirectoryContents('/no/such/folder', 0, None, 1024, None, 10, tot, None), tot)
tot = []
print('outside', XPLMGetDirectoryContents('/', 0, None, 4096, None, 0, tot, None), tot[0] > 0)
lists = [[], [], [], []]
for first, size, count in [(-1, 1024, 10), (0, -1, 10), (0, 2 ** 40, 10), (0, 1024, -5), (0, 1024, 10 ** 9)]:
    print('refused', XPLMGetDirectoryContents(folder, first, lists[0], size, lists[1], count, lists[2], lists[3]),
          XPLMGetDirectoryContents_NP(self, folder, first, lists[0], size, lists[1], count, lists[2], lists[3]), lists)
try:
    XPLMGetDirectoryContents(folder, 0, ('a tuple',), 1024, None, 10, None, None)
except TypeError as e:
    print('TypeError', e)
try:
    XPLMGetDirectoryContents(folder, 2 ** 70, None, 1024, None, 10, None, None)
except OverflowError:
    print('OverflowError')
)"));
    SimRun run = sim.run({"--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    // outFileNames receives the name buffer as one text, so only its first name; outIndices every
    // name returned. xpsim keeps one index slot and one byte free for the closing entries, so two
    // index slots hold one name and eight bytes hold "a.txt".
    EXPECT_EQ(sim.output(),
              "all (1,) ['kept', 'a.txt'] ['a.txt', 'b.txt', 'c.txt', 'd.txt'] [4] [4]\n"
              "from 2 (1,) ['c.txt', 'd.txt'] [2]\n"
              "index count 2 (0,) ['a.txt'] [1]\n"
              "index count 1 (0,) [] [0]\n"
              "small buffer (0,) ['a.txt'] ['a.txt'] [1]\n"
              "no returned count (1,) []\n"
              "np (1,) ['a.txt'] ['a.txt', 'b.txt', 'c.txt', 'd.txt'] [4] [4]\n"
              "missing (0,) [0]\n"
              "outside (1,) True\n"
              "refused (0,) (0,) [[], [], [], []]\n"
              "refused (0,) (0,) [[], [], [], []]\n"
              "refused (0,) (0,) [[], [], [], []]\n"
              "refused (0,) (0,) [[], [], [], []]\n"
              "refused (0,) (0,) [[], [], [], []]\n"
              "TypeError expected sequence\n"
              "OverflowError\n");
    const std::string log = sim.log();
    for (const char* message : {"inFirstReturn -1 is outside 0 to 2147483647",
                                "inFileNameBufSize -1 is outside 0 to 16777216",
                                "inFileNameBufSize 1099511627776 is outside 0 to 16777216",
                                "inIndexCount -5 is outside 0 to 1048576",
                                "inIndexCount 1000000000 is outside 0 to 1048576"})
        EXPECT_EQ(CountOf(log, Report("XPLMGetDirectoryContents", message)), 2u) << message << "\n" << log;
}

TEST(UtilitiesTest, EveryErrorCallbackOfEveryScriptReceivesEveryErrorInOrder) {
    SimFolder sim;
    sim.writeFile("Resources/plugins/Corvelle/Corvelle.ini", "[DEBUG]\nDebugCallbacks=1\nCheckCallbacks=1\n");
    // A registers first, B second, so A's callback is called first; A's raises on one of the errors.
    sim.writeScript("CV_A.py", Script("A", "", R"(
print('A ids %x %x %x' % (id(self), id(None), id(self.First)))
self.first = self.First
self.second = self.Second
print('A none', XPLMSetErrorCallback(self, None))
print('A set', XPLMSetErrorCallback(self, self.first), XPLMSetErrorCallback(self, self.second))
)",
                                      "print('A removes', CV_RemoveErrorCallback(self, self.second))\n",
                                      "def First(self, message):\n"
                                      "    print('A first:', message)\n"
                                      "    if 'plugin' in message:\n"
                                      "        raise ValueError('A gives up')\n"
                                      "def Second(self, message):\n"
                                      "    print('A second:', message)\n"));
    sim.writeScript("CV_B.py", Script("B", "", R"(
print('B id %x' % id(self))
self.cb = self.OnError
print('B set', XPLMSetErrorCallback(self, self.cb))
XPLMGetDatai(1)
XPLMGetPluginInfo(9999, None, None, None, None)
print('B none', XPLMSetErrorCallback(self, None))
print('B removes', CV_RemoveErrorCallback(self, self.cb), CV_RemoveErrorCallback(self, None))
XPLMGetDatai(2)
)",
                                      "", "def OnError(self, message):\n    print('B:', message)\n"));
    SimRun run = sim.run({"--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    const std::string out = sim.output();
    const std::vector<std::string> lines = Lines(out);
    ASSERT_EQ(lines.size(), 13u) << out;
    EXPECT_EQ(out.substr(out.find('\n') + 1),
              "A none 1\n"
              "A set 1 1\n"
              "B id " + lines[3].substr(5) + "\n"
              "B set 1\n"
              "A first: XPLMGetDatai: 0x1 is not a dataref\n"
              "B: XPLMGetDatai: 0x1 is not a dataref\n"
              "A first: XPLMGetPluginInfo: no plugin with id 9999\n"
              "B: XPLMGetPluginInfo: no plugin with id 9999\n"
              "B none 1\n"
              "B removes 1 1\n"
              "A first: XPLMGetDatai: 0x2 is not a dataref\n"
              "A removes 1\n");
    const std::string log = sim.log();
    EXPECT_EQ(CountOf(log, "ValueError: A gives up"), 1u) << log;
    EXPECT_EQ(CountOf(log, Report("XPLMSetErrorCallback", "Script 'A.py' was unregistering a callback that does not "
                                                          "exist.")),
              1u)
        << log;
    EXPECT_EQ(CountOf(log, Report("CV_RemoveErrorCallback",
                                  "Script 'B.py' was unregistering a callback and refcon that does not exist, check "
                                  "refcon matches the one that was used in registering.")),
              1u)
        << log;

    // The debug trace names the script, its id and the callback in full hex.
    std::istringstream ids(lines[0].substr(6));
    std::string a, none;
    ids >> a >> none;
    const std::string b = lines[3].substr(5);
    EXPECT_TRUE(InOrder(log, {"XPLMSetErrorCallback\npScriptId = " + a + ", Script Name = A, TempCallback = " + none +
                                  "\nErrorCallbackList size = 0\nXPLMSetErrorCallback\n",
                              "XPLMSetErrorCallback\npScriptId = " + a + ", Script Name = A, TempCallback = ",
                              "\nErrorCallbackList size = 1\nXPLMSetErrorCallback\n",
                              "XPLMSetErrorCallback\npScriptId = " + b + ", Script Name = B, TempCallback = ",
                              "\nErrorCallbackList size = 2\nXPLMSetErrorCallback\n",
                              "XPLMSetErrorCallback\npScriptId = " + b + ", Script Name = B, TempCallback = " + none +
                                  "\nErrorCallbackList size = 1\nXPLMSetErrorCallback\n",
                              "CV_RemoveErrorCallback\npScriptId = " + b +
                                  ", Script Name = B\nErrorCallbackList size = 1\nCV_RemoveErrorCallback\n",
                              "CV_RemoveErrorCallback\npScriptId = " + a +
                                  ", Script Name = A\nErrorCallbackList size = 0\nCV_RemoveErrorCallback\n"}))
        << log;
    // Every registration was removed again.
    EXPECT_NE(log.find("*** Checking Integrity of Callbacks Started. ***\n"
                       "*** Checking Integrity of Callbacks Finished. ***\n"),
              std::string::npos)
        << log;
}

TEST(UtilitiesTest, OlderSimulatorsRefuseNewerFunctionsBeforeTheirArguments) {
    const std::string script = Script("Old", "", R"(
self.cb = self.OnError
XPLMSetErrorCallback(self, self.cb)
print('versions', XPLMGetVersions()[1], 'enable', XPLMEnableFeature(self, 'XPLM_USE_NATIVE_PATHS', 1))
print('symbols', XPLMFindSymbol('XPLMFindCommand') != 0, XPLMFindSymbol('XPLMCreateFlightLoop') != 0)
self.fe = self.Feature
print('enumerate', XPLMEnumerateFeatures(self, self.fe, 0))
print('np', XPLMGetSystemPath_NP(self) == XPLMGetSystemPath(), XPLMExtractFileAndPath_NP(self, '/x/y'),
      XPLMFindPluginByPath_NP(self, '/no/such/plugin.xpl'))
XPLMGetPluginInfo_NP(self, 9001, None, None, None, None)
print('create', XPLMCreateCommand('corvelle/tests/old', 'Too new') != 0)
try:
    print('no arguments', XPLMEnableFeature(), XPLMHasFeature(), XPLMIsFeatureEnabled(), XPLMEnumerateFeatures(),
          XPLMFindSymbol(), XPLMLoadDataFile(), XPLMSaveDataFile(), XPLMFindCommand(), XPLMCommandBegin(),
          XPLMCommandEnd(), XPLMCommandOnce(), XPLMCreateCommand(), XPLMRegisterCommandHandler(),
          XPLMUnregisterCommandHandler())
except TypeError:
    print('no arguments raise TypeError')
)",
                                      "XPLMSetErrorCallback(self, None)\n",
                                      "def Feature(self, name, refcon):\n    print('feature', name)\n"
                                      "def OnError(self, message):\n    print('error', message)\n");
    {
        // SDK 2.00 has commands and features but not native paths: scripts cannot ask for them, and
        // the `_NP` functions leave alone a feature the simulator lacks.
        SimFolder sim;
        sim.writeScript("CV_Old.py", script);
        SimRun run = sim.run({"--sdk", "2.00", "--frames", "2"});
        ASSERT_EQ(run.exitCode, 0) << run.stderrText;
        EXPECT_EQ(sim.output(),
                  "versions 200 enable 0\n"
                  "symbols True False\n"
                  "feature XPLM_WANTS_REFLECTIONS\n"
                  "enumerate 1\n"
                  "np True ('y', '/x') -1\n"
                  "error XPLMGetPluginInfo: no plugin with id 9001\n"
                  "create True\n"
                  "no arguments raise TypeError\n");
        EXPECT_NE(sim.log().find("Module - XPLMPlugin, Function - XPLMEnableFeature, Error = Feature "
                                 "[XPLM_USE_NATIVE_PATHS] not supported\n"),
                  std::string::npos)
            << sim.log();
        EXPECT_EQ(CountOf(sim.simLog(), "XPLMEnableFeature"), 0u) << sim.simLog();
    }
    // SDK 1.02 has neither: every such function says so before it reads its arguments, and the
    // `_NP` functions work without a feature to switch.
    SimFolder sim;
    sim.writeScript("CV_Old.py", script);
    SimRun run = sim.run({"--sdk", "1.02", "--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(),
              "versions 102 enable 0\n"
              "symbols False False\n"
              "enumerate 0\n"
              "np True ('y', '/x') -1\n"
              "create False\n"
              "no arguments 0 0 0 0 0 0 0 0 0 0 0 0 0 0\n");
    const std::string log = sim.log();
    const std::vector<std::pair<std::string, size_t>> refusals = {
        {"XPLMPlugin, Function - XPLMEnableFeature", 2},      {"XPLMPlugin, Function - XPLMHasFeature", 1},
        {"XPLMPlugin, Function - XPLMIsFeatureEnabled", 1},   {"XPLMPlugin, Function - XPLMEnumerateFeatures", 2},
        {"XPLMUtilities, Function - XPLMFindSymbol", 3},      {"XPLMUtilities, Function - XPLMLoadDataFile", 1},
        {"XPLMUtilities, Function - XPLMSaveDataFile", 1},    {"XPLMUtilities, Function - XPLMFindCommand", 1},
        {"XPLMUtilities, Function - XPLMCommandBegin", 1},    {"XPLMUtilities, Function - XPLMCommandEnd", 1},
        {"XPLMUtilities, Function - XPLMCommandOnce", 1},     {"XPLMUtilities, Function - XPLMCreateCommand", 2},
        {"XPLMUtilities, Function - XPLMRegisterCommandHandler", 1},
        {"XPLMUtilities, Function - XPLMUnregisterCommandHandler", 1}};
    for (const auto& refusal : refusals)
        EXPECT_EQ(CountOf(log, "Module - " + refusal.first + ", Error = Not supported in SDK 1.02\n"), refusal.second)
            << refusal.first << "\n" << log;
}

TEST(UtilitiesTest, MethodTablesCarryTheirDocStrings) {
    SimFolder sim;
    sim.writeScript("CV_Docs.py", Script("Docs", R"(
import XPLMPlugin, XPLMUtilities
for module in (XPLMPlugin, XPLMUtilities):
    for name in sorted(dir(module)):
        if callable(getattr(module, name)):
            print(module.__name__, name, getattr(module, name).__doc__)
)", ""));
    SimRun run = sim.run({"--frames", "1"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(),
              "XPLMPlugin CV_RemoveEnumerateFeatures Remove Enumerate Features.\n"
              "XPLMPlugin XPLMCountPlugins Count the number of plugins.\n"
              "XPLMPlugin XPLMDisablePlugin Disable the plugin.\n"
              "XPLMPlugin XPLMEnableFeature Enable the Feature.\n"
              "XPLMPlugin XPLMEnablePlugin Enable the plugin.\n"
              "XPLMPlugin XPLMEnumerateFeatures Enumerate Features.\n"
              "XPLMPlugin XPLMFindPluginByPath Find plugin by path.\n"
              "XPLMPlugin XPLMFindPluginByPath_NP Find plugin by path using Native Paths.\n"
              "XPLMPlugin XPLMFindPluginBySignature Find plugin by signature.\n"
              "XPLMPlugin XPLMGetMyID Get plugin ID.\n"
              "XPLMPlugin XPLMGetNthPlugin Get the Nth plugins.\n"
              "XPLMPlugin XPLMGetPluginInfo Get plugin info.\n"
              "XPLMPlugin XPLMGetPluginInfo_NP Get plugin info using Native Paths.\n"
              "XPLMPlugin XPLMHasFeature Has the feature.\n"
              "XPLMPlugin XPLMIsFeatureEnabled Is the Feature enabled.\n"
              "XPLMPlugin XPLMIsPluginEnabled Is the plugin enabled.\n"
              "XPLMPlugin XPLMReloadPlugins Extract File and Path.\n"
              "XPLMPlugin XPLMSendMessageToPlugin Send message to a plugin.\n"
              "XPLMUtilities CV_RemoveErrorCallback Remove the callback for errors.\n"
              "XPLMUtilities XPLMCommandBegin Begin the Command.\n"
              "XPLMUtilities XPLMCommandButtonPress Send a Command Button Press.\n"
              "XPLMUtilities XPLMCommandButtonRelease Send a Command Button Release.\n"
              "XPLMUtilities XPLMCommandEnd End the Command.\n"
              "XPLMUtilities XPLMCommandKeyStroke Send a Command Key.\n"
              "XPLMUtilities XPLMCommandOnce Do Command Once.\n"
              "XPLMUtilities XPLMCreateCommand Create Commmand.\n"
              "XPLMUtilities XPLMDebugString Write Debug String to Error.out.\n"
              "XPLMUtilities XPLMExtractFileAndPath Extract File and Path.\n"
              "XPLMUtilities XPLMExtractFileAndPath_NP Extract File and Path using Native Paths.\n"
              "XPLMUtilities XPLMFindCommand Find the Command.\n"
              "XPLMUtilities XPLMFindSymbol Find symbol.\n"
              "XPLMUtilities XPLMGetDirectoryContents Get the Directory Contents.\n"
              "XPLMUtilities XPLMGetDirectoryContents_NP Get the Directory Contents using Native Paths.\n"
              "XPLMUtilities XPLMGetDirectorySeparator Get the OS Directory Separator.\n"
              "XPLMUtilities XPLMGetDirectorySeparator_NP Get the OS Directory Separator using Native Paths.\n"
              "XPLMUtilities XPLMGetLanguage Get Language.\n"
              "XPLMUtilities XPLMGetPrefsPath Get the Xplane Pref Path.\n"
              "XPLMUtilities XPLMGetPrefsPath_NP Get the Xplane Pref Path using Native Paths.\n"
              "XPLMUtilities XPLMGetSystemPath Get the XPlane System Path.\n"
              "XPLMUtilities XPLMGetSystemPath_NP Get the XPlane System Path using Native Paths.\n"
              "XPLMUtilities XPLMGetVersions Get Xplane and XPLM Versions.\n"
              "XPLMUtilities XPLMGetVirtualKeyDescription Get Virtual Key Description.\n"
              "XPLMUtilities XPLMInitialized Is XPLM Initialized Properly.\n"
              "XPLMUtilities XPLMLoadDataFile Load Data File.\n"
              "XPLMUtilities XPLMRegisterCommandHandler Register the Command Callback.\n"
              "XPLMUtilities XPLMReloadScenery Reload the Scenery.\n"
              "XPLMUtilities XPLMSaveDataFile Save Data File.\n"
              "XPLMUtilities XPLMSetErrorCallback Set the callback for errors.\n"
              "XPLMUtilities XPLMSpeakString Speak and Display String.\n"
              "XPLMUtilities XPLMUnregisterCommandHandler Unregister the Command Callback.\n");
}

}  // namespace
