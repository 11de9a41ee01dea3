// Plugins and features end to end: Corvelle.xpl and the test plugin peer.xpl in xpsim, with scripts
// that query, enable, disable and message the peer through the XPLMPlugin module, and use the
// per-script features.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "SimHarness.h"

namespace {

// A script with the plugin and utilities modules (see TestScript).
std::string Script(const std::string& name, const std::string& start, const std::string& later,
                   const std::string& stop = "", const std::string& methods = "") {
    return TestScript(name, {"XPLMPlugin", "XPLMUtilities"}, start, later, stop, methods);
}

std::string Report(const std::string& function, const std::string& message) {
    return "Module - XPLMPlugin, Function - " + function + ", Error = " + message + "\n";
}

// The peer plugin as xpsim names it.
std::string PeerPath() { return std::filesystem::canonical(PEER_XPL).string(); }

const std::string kSeparator(115, '-');

TEST(PluginTest, ScriptsFindInspectDisableAndEnableAnotherPlugin) {
    SimFolder sim;
    sim.writeScript("CV_Query.py", Script("Query", "", R"(
peer = XPLMFindPluginBySignature('corvelle.tests.peer')
print('me', XPLMGetMyID(), 'count', XPLMCountPlugins(), 'nth', XPLMGetNthPlugin(0), XPLMGetNthPlugin(1), 'peer', peer)
name, path, sig = [], ['replaced'], ['a', 'b']
print('info', XPLMGetPluginInfo(peer, name, path, sig, None), name, sig, len(path))
print('path', path[0])
info = [[], [], [], []]
print('info_np', XPLMGetPluginInfo_NP(self, peer, *info), info[0], info[2], info[3], info[1] == path)
print('by path', XPLMFindPluginByPath(path[0]), XPLMFindPluginByPath_NP(self, path[0]), XPLMFindPluginByPath('/etc/passwd'))
print('enabled', XPLMIsPluginEnabled(peer), XPLMDisablePlugin(peer), XPLMIsPluginEnabled(peer))
print('enable', XPLMEnablePlugin(peer), XPLMIsPluginEnabled(peer))
unknown = ['old']
print('unknown', XPLMIsPluginEnabled(9999), XPLMEnablePlugin(9999), XPLMDisablePlugin(9999), XPLMGetNthPlugin(99),
      XPLMFindPluginBySignature('no.such.plugin'), XPLMGetPluginInfo(9999, unknown, None, None, None), unknown)
try:
    XPLMGetPluginInfo(peer, (), None, None, None)
except TypeError as e:
    print('TypeError', e)
try:
    XPLMGetNthPlugin(2 ** 40)
except OverflowError:
    print('OverflowError')
)"));
    SimRun run = sim.run({"--plugin", PEER_XPL, "--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(),
              "me 1 count 2 nth 1 2 peer 2\n"
              "info 1 ['Peer'] ['corvelle.tests.peer', 'b'] 1\n"
              "path " + PeerPath() + "\n"
              "info_np 1 ['Peer'] ['corvelle.tests.peer'] ['A plugin beside Corvelle for its tests.'] True\n"
              "by path 2 2 -1\n"
              "enabled 1 1 0\n"
              "enable 1 1\n"
              "unknown 0 0 1 -1 -1 1 ['']\n"
              "TypeError expected sequence\n"
              "OverflowError\n");
    // The peer saw itself disabled and enabled again by the script; the simulator reported the
    // misuse with unknown ids, and nothing reached the bindings' error reporter.
    EXPECT_TRUE(InOrder(sim.simLog(), {"peer: enable\n", "peer: disable\n", "peer: enable\n",
                                       "xpsim: XPLMEnablePlugin: no plugin with id 9999\n",
                                       "xpsim: XPLMDisablePlugin: no plugin with id 9999\n",
                                       "xpsim: XPLMGetNthPlugin: index 99 is not below 2\n",
                                       "xpsim: XPLMGetPluginInfo: no plugin with id 9999\n"}))
        << sim.simLog();
    EXPECT_EQ(CountOf(sim.log(), "Module - "), 0u) << sim.log();
}

TEST(PluginTest, MessagesReachThePeerWithTheParametersValueOrText) {
    SimFolder sim;
    sim.writeScript("CV_Sender.py", Script("Sender", "", R"(
peer = XPLMFindPluginBySignature('corvelle.tests.peer')
text = 0x7E570001
print('text', XPLMSendMessageToPlugin(peer, text, 'hello peer'), XPLMSendMessageToPlugin(peer, text, b'bytes too'),
      XPLMSendMessageToPlugin(peer, text, bytearray(b'mutable')))
print('value', XPLMSendMessageToPlugin(peer, 12345, 42), XPLMSendMessageToPlugin(peer, 12345, -7),
      XPLMSendMessageToPlugin(peer, 12345, True))
print('refused', XPLMSendMessageToPlugin(peer, 12345, 1.5), XPLMSendMessageToPlugin(peer, 12345, None),
      XPLMSendMessageToPlugin(peer, 12345, [1]), XPLMSendMessageToPlugin(peer, 12345, 2 ** 80),
      XPLMSendMessageToPlugin(peer, 2 ** 40, 1))
print('unknown plugin', XPLMSendMessageToPlugin(9999, 12345, 1))
print('reply', XPLMSendMessageToPlugin(peer, 0x7E570003, 77))
)"));
    SimRun run = sim.run({"--plugin", PEER_XPL, "--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    // The peer's answer arrives while the script's own send is still running.
    EXPECT_EQ(sim.output(),
              "text 1 1 1\n"
              "value 1 1 1\n"
              "refused 0 0 0 0 0\n"
              "unknown plugin 1\n"
              "received 2 2119630852 77\n"
              "reply 1\n");
    const std::string simLog = sim.simLog();
    EXPECT_TRUE(InOrder(simLog, {"peer: message 2119630849 from 1 text 'hello peer'\n",
                                 "peer: message 2119630849 from 1 text 'bytes too'\n",
                                 "peer: message 2119630849 from 1 text 'mutable'\n",
                                 "peer: message 12345 from 1 value 42\n",
                                 "peer: message 12345 from 1 value -7\n",
                                 "peer: message 12345 from 1 value 1\n",
                                 "xpsim: XPLMSendMessageToPlugin: no plugin with id 9999\n",
                                 "peer: message 2119630851 from 1 value 77\n"}))
        << simLog;
    // The refused parameters never reached the simulator.
    EXPECT_EQ(CountOf(simLog, "peer: message 12345 "), 3u) << simLog;
    EXPECT_EQ(CountOf(sim.log(), Report("XPLMSendMessageToPlugin", "Parameter Error")), 5u) << sim.log();
}

// Two scripts, only the first of which asks for native paths. Every error the simulator reports
// during an SDK call reaches both scripts' error callbacks while the call is running, so they can
// see the simulator's native-paths switch as it is inside the call.
TEST(PluginTest, NativePathsAreSwitchedPerScriptAndOnlyForTheCall) {
    SimFolder sim;
    const std::string watcher =
        "def OnError(self, message):\n"
        "    print(self.tag, 'sees', message, 'native', XPLMIsFeatureEnabled('XPLM_USE_NATIVE_PATHS'))\n";
    sim.writeScript("CV_A.py", Script("A", R"(
self.tag = 'A'
self.cb = self.OnError
XPLMSetErrorCallback(self, self.cb)
)",
                                      R"(
print('A wants', XPLMEnableFeature(self, 'XPLM_USE_NATIVE_PATHS', 1))
XPLMGetPluginInfo_NP(self, 9001, None, None, None, None)
print('A after', XPLMIsFeatureEnabled('XPLM_USE_NATIVE_PATHS'))
XPLMGetPluginInfo(9002, None, None, None, None)
XPLMGetDirectoryContents_NP(self, XPLMGetSystemPath(), 0, [], 0, None, 0, None, None)
print('A system path', XPLMGetSystemPath_NP(self) == XPLMGetSystemPath(), XPLMIsFeatureEnabled('XPLM_USE_NATIVE_PATHS'))
print('A reflections', XPLMEnableFeature(self, 'XPLM_WANTS_REFLECTIONS', 1), XPLMIsFeatureEnabled('XPLM_WANTS_REFLECTIONS'))
)",
                                      "XPLMSetErrorCallback(self, None)\n", watcher));
    sim.writeScript("CV_B.py", Script("B", R"(
self.tag = 'B'
self.cb = self.OnError
XPLMSetErrorCallback(self, self.cb)
)",
                                      R"(
XPLMGetPluginInfo_NP(self, 9003, None, None, None, None)
print('B after', XPLMIsFeatureEnabled('XPLM_USE_NATIVE_PATHS'))
print('B has', XPLMHasFeature('XPLM_USE_NATIVE_PATHS'), XPLMHasFeature('XPLM_NO_SUCH_FEATURE'))
print('B unknown', XPLMEnableFeature(self, 'XPLM_NO_SUCH_FEATURE', 1))
try:
    XPLMEnableFeature('XPLM_USE_NATIVE_PATHS', 1)
except TypeError:
    print('B two arguments raise TypeError')
)",
                                      "XPLMSetErrorCallback(self, None)\n", watcher));
    SimRun run = sim.run({"--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(),
              "A wants 1\n"
              "A sees XPLMGetPluginInfo: no plugin with id 9001 native 1\n"
              "B sees XPLMGetPluginInfo: no plugin with id 9001 native 1\n"
              "A after 0\n"
              "A sees XPLMGetPluginInfo: no plugin with id 9002 native 0\n"
              "B sees XPLMGetPluginInfo: no plugin with id 9002 native 0\n"
              "A sees XPLMGetDirectoryContents: no name buffer native 1\n"
              "B sees XPLMGetDirectoryContents: no name buffer native 1\n"
              "A system path True 0\n"
              "A reflections 1 0\n"
              "A sees XPLMGetPluginInfo: no plugin with id 9003 native 0\n"
              "B sees XPLMGetPluginInfo: no plugin with id 9003 native 0\n"
              "B after 0\n"
              "B has 1 0\n"
              "B unknown 0\n"
              "B two arguments raise TypeError\n")
        << sim.log();
    const std::string log = sim.log();
    EXPECT_NE(log.find(Report("XPLMEnableFeature", "Feature [XPLM_NO_SUCH_FEATURE] not supported")),
              std::string::npos)
        << log;
    EXPECT_NE(log.find(kSeparator + "\n" + Report("XPLMEnableFeature", "Wrong number of parameters Error") +
                       kSeparator + "\n" +
                       "This has changed from Version 2.0.0.1 as it has to handle native paths on a per script "
                       "basis.\n"
                       "Usage Syntax :- XPLMEnableFeature(self, inFeature, inEnable)\n"
                       "Usage Example :- XPLMEnableFeature(self, \"XPLM_WANTS_REFLECTIONS\", 1)\n"
                       "Usage Example :- XPLMEnableFeature(self, \"XPLM_USE_NATIVE_PATHS\", 1)\n" +
                       kSeparator + "\n"),
              std::string::npos)
        << log;
    EXPECT_EQ(CountOf(log, kSeparator), 3u) << log;
}

// An enumerator may take its own registration back while the simulator is still calling it: the
// record stays until the enumeration is over, which goes on to its end.
TEST(PluginTest, EnumeratorsThatRemoveThemselvesMidwayAreCalledToTheEnd) {
    SimFolder sim;
    std::filesystem::copy(TEST_DATA_DIR "/xpsim-root", sim.root(), std::filesystem::copy_options::recursive);
    sim.writeScript("CV_Quitter.py",
                    TestScript("Quitter", {"XPLMPlugin", "XPLMScenery"}, "", R"(
self.fe, self.enum = self.Feature, self.Enumerate
print('features', XPLMEnumerateFeatures(self, self.fe, 7))
print('lookup', XPLMLookupObjects(self, 'xpsim/demo/beacon.obj', 47.45, -122.3, self.enum, 1))
print('again', XPLMEnumerateFeatures(self, self.fe, 7))
)",
                               "",
                               "def Feature(self, name, refcon):\n"
                               "    print('feature', name, CV_RemoveEnumerateFeatures(self, self.fe, 7))\n"
                               "def Enumerate(self, path, refcon):\n"
                               "    print('found', path[-10:], CV_RemoveLookupObjects(self, self.enum, 1))\n"));
    SimRun run = sim.run({"--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(),
              "feature XPLM_WANTS_REFLECTIONS 1\nfeature XPLM_USE_NATIVE_PATHS 1\nfeatures 1\n"
              "found beacon.obj 1\nfound beacon.obj 1\nlookup 2\n"
              "feature XPLM_WANTS_REFLECTIONS 1\nfeature XPLM_USE_NATIVE_PATHS 1\nagain 1\n");
    // The second call of each enumeration found its registration gone already.
    EXPECT_EQ(CountOf(sim.log(), "was unregistering a callback and refcon that does not exist"), 3u) << sim.log();
}

TEST(PluginTest, EnumeratingFeaturesCallsTheMethodOncePerRegistration) {
    SimFolder sim;
    sim.writeFile("Resources/plugins/Corvelle/Corvelle.ini", "[DEBUG]\nDebugCallbacks=1\nCheckCallbacks=1\n");
    sim.writeScript("CV_Features.py", Script("Features", "", R"(
print('id %x' % id(self))
self.fe = self.Feature
self.bad = self.Bad
print('first', XPLMEnumerateFeatures(self, self.fe, 7))
print('again', XPLMEnumerateFeatures(self, self.fe, 7))
print('other refcon', XPLMEnumerateFeatures(self, self.fe, 8))
print('function', XPLMEnumerateFeatures(self, lambda name, refcon: print('lambda', name), 9))
print('raising', XPLMEnumerateFeatures(self, self.bad, 0))
print('remove', CV_RemoveEnumerateFeatures(self, self.fe, 7))
print('remove again', CV_RemoveEnumerateFeatures(self, self.fe, 7))
print('after removal', XPLMEnumerateFeatures(self, self.fe, 7))
print('removals', CV_RemoveEnumerateFeatures(self, self.fe, 7), CV_RemoveEnumerateFeatures(self, self.bad, 0),
      CV_RemoveEnumerateFeatures(self, None, 8))
try:
    XPLMEnumerateFeatures(self, self.fe, 'refcon')
except TypeError:
    print('text refcon raises TypeError')
)",
                                             "",
                                             "def Feature(self, name, refcon):\n"
                                             "    print('feature', name, refcon)\n"
                                             "def Bad(self, name, refcon):\n"
                                             "    raise ValueError('bad feature ' + name)\n"));
    SimRun run = sim.run({"--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    const std::string out = sim.output();
    EXPECT_EQ(out.substr(out.find('\n') + 1),
              "feature XPLM_WANTS_REFLECTIONS 7\n"
              "feature XPLM_USE_NATIVE_PATHS 7\n"
              "first 1\n"
              "again 1\n"
              "feature XPLM_WANTS_REFLECTIONS 8\n"
              "feature XPLM_USE_NATIVE_PATHS 8\n"
              "other refcon 1\n"
              "function 1\n"
              "raising 1\n"
              "remove 1\n"
              "remove again 1\n"
              "feature XPLM_WANTS_REFLECTIONS 7\n"
              "feature XPLM_USE_NATIVE_PATHS 7\n"
              "after removal 1\n"
              "removals 1 1 1\n"
              "text refcon raises TypeError\n");
    const std::string id = out.substr(3, out.find('\n') - 3);
    const std::string log = sim.log();
    // A raising enumerator is printed for each feature; the enumeration goes on.
    EXPECT_EQ(CountOf(log, "ValueError: bad feature XPLM_WANTS_REFLECTIONS"), 1u) << log;
    EXPECT_EQ(CountOf(log, "ValueError: bad feature XPLM_USE_NATIVE_PATHS"), 1u) << log;
    EXPECT_EQ(CountOf(log, Report("CV_RemoveEnumerateFeatures",
                                  "Script 'Features.py' was unregistering a callback and refcon that does not exist, "
                                  "check refcon matches the one that was used in registering.")),
              1u)
        << log;
    EXPECT_TRUE(InOrder(log, {"XPLMEnumerateFeatures\npScriptId = " + id +
                                  ", inRefcon = 7\nFeatureEnumeratorCallbackList size = 1\nXPLMEnumerateFeatures\n",
                              "XPLMEnumerateFeatures\npScriptId = " + id +
                                  ", inRefcon = 7\nFeatureEnumeratorCallbackList size = 1\nXPLMEnumerateFeatures\n",
                              "XPLMEnumerateFeatures\npScriptId = " + id +
                                  ", inRefcon = 8\nFeatureEnumeratorCallbackList size = 2\nXPLMEnumerateFeatures\n",
                              "CV_RemoveEnumerateFeatures\npScriptId = " + id +
                                  ", Script Name = Features, inRefcon = 7\nFeatureEnumeratorCallbackList size = "
                                  "2\nCV_RemoveEnumerateFeatures\n"}))
        << log;
    // The registration with refcon 8 was never removed: the check at stop reports it.
    EXPECT_TRUE(InOrder(log, {"*** Checking Integrity of Callbacks Started. ***\n",
                              "FeatureEnumeratorCallbackList size = 1\n",
                              "Mismatch of callback creation and destruction.\n",
                              "*** Checking Integrity of Callbacks Finished. ***\n"}))
        << log;
}

}  // namespace
