// The xpsim program: command line, the simulator folder it prepares, its log, and (with the probe
// plugin) a plugin's whole life through frames, events and a reload.
#include <limits.h>
#include <stdlib.h>

#include "SimTestSupport.h"

namespace {

using simtest::RealPath;

using simtest::ReadFile;
using simtest::RunXpsim;

// The probe plugin (tests/sim/plugins/probe_plugin.cpp), when the build made one.
std::string ProbePlugin() {
    if (const char* path = getenv("XPSIM_TEST_PLUGIN")) return path;
#ifdef XPSIM_TEST_PLUGIN
    return XPSIM_TEST_PLUGIN;
#else
    return "";
#endif
}

}  // namespace

TEST(sim_Program, HelpAndCommandLineErrors) {
    const auto help = RunXpsim({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.out.rfind("usage: xpsim run --root DIR [--plugin FILE.xpl]... [--sdk 1.02|2.00|2.10]\n", 0), 0u);

    const std::pair<std::vector<std::string>, std::string> errors[] = {
        {{"run"}, "xpsim: --root DIR is required\n"},
        {{"run", "--root", "/tmp/x", "--sdk", "3.0"}, "xpsim: --sdk must be 1.02, 2.00 or 2.10, not '3.0'\n"},
        {{"run", "--root", "/tmp/x", "--seconds", "1", "--frames", "2"}, "xpsim: give --seconds or --frames, not both\n"},
        {{"run", "--root", "/tmp/x", "--fps", "0"}, "xpsim: --fps needs a rate above 0 and up to 10000, not '0'\n"},
        {{"run", "--root"}, "xpsim: --root needs a value\n"},
        {{"fly"}, "xpsim: unknown command 'fly'\n"},
    };
    for (const auto& entry : errors) {
        const auto result = RunXpsim(entry.first);
        EXPECT_EQ(result.status, 2) << entry.second;
        EXPECT_EQ(result.err.rfind(entry.second + "usage: xpsim run", 0), 0u) << result.err;
        EXPECT_EQ(result.out, "");
    }
}

TEST(sim_Program, PreparesTheFolderWritesTheLogAndPlacesTheLibraryByLevel) {
    const simtest::TempDir dir;
    const std::string root = dir.path() + "/new/sim";
    const auto run = RunXpsim({"run", "--root", root, "--frames", "2"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "");
    for (const char* part : {"/Resources/plugins", "/Output/preferences",
                             "/Aircraft/General Aviation/Cessna 172SP/Cessna_172SP.acf"})
        EXPECT_TRUE(simtest::Exists(root + part)) << part;
    EXPECT_EQ(RealPath(root + "/Resources/plugins/XPLM_64.so"), RealPath(XPLM_LIB));
    const std::string system = RealPath(root) + "/";
    const std::string apt = "Resources/default scenery/default apt dat/Earth nav data/apt.dat";
    EXPECT_EQ(ReadFile(root + "/Log.txt"),
              "xpsim: headless X-Plane 10.41, SDK 2.10\n"
              "xpsim: system path " + system + ", 20 simulated frames per second\n"
              "xpsim: no " + system + "Resources/plugins/DataRefs.txt; only the datarefs xpsim drives itself exist\n"
              "xpsim: navigation data: no " + system + apt + "\n"
              "xpsim: navigation data: 0 airports from " + system + apt + "\n"
              "xpsim: navigation data: no " + system + "Resources/default data/earth_nav.dat\n"
              "xpsim: navigation data: 0 navaids from " + system + "Resources/default data/earth_nav.dat\n"
              "xpsim: navigation data: no " + system + "Resources/default data/earth_fix.dat\n"
              "xpsim: navigation data: 0 fixes from " + system + "Resources/default data/earth_fix.dat\n"
              "xpsim: the user's aircraft is at xpsim's default position: 47.449889, -122.311778, elevation 131.98 m\n"
              "xpsim: the sim sends XPLM_MSG_PLANE_LOADED 0\n"
              "xpsim: the sim sends XPLM_MSG_AIRPORT_LOADED\n"
              "xpsim: the sim sends XPLM_MSG_SCENERY_LOADED\n"
              "xpsim: run complete: 2 frames, 0.10 s\n");

    // At 1.02 nothing lies where a plugin looks for the library, and the log is started afresh.
    const auto old = RunXpsim({"run", "--root", root, "--sdk", "1.02", "--seconds", "0.5", "--fps", "10"});
    ASSERT_EQ(old.status, 0) << old.err;
    EXPECT_FALSE(simtest::Exists(root + "/Resources/plugins/XPLM_64.so"));
    const std::string log = ReadFile(root + "/Log.txt");
    EXPECT_EQ(log.rfind("xpsim: headless X-Plane 10.41, SDK 1.02\n", 0), 0u);
    EXPECT_NE(log.find("xpsim: run complete: 5 frames, 0.50 s\n"), std::string::npos);

    // A root that is a file cannot be used.
    const auto bad = RunXpsim({"run", "--root", root + "/Log.txt", "--frames", "1"});
    EXPECT_EQ(bad.status, 1);
    EXPECT_EQ(bad.err.rfind("xpsim: cannot use " + root + "/Log.txt as the simulator folder: ", 0), 0u) << bad.err;
}

TEST(sim_Program, AMalformedEventsFileStopsTheRunBeforeItStarts) {
    const simtest::TempDir temp;
    const std::string& dir = temp.path();
    simtest::WriteFile(dir + "/events.txt", "# events\n1 key A\n2 menu\n");
    const auto result = RunXpsim({"run", "--root", dir + "/root", "--events", dir + "/events.txt"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "xpsim: events file " + dir + "/events.txt, line 3: menu takes a path of item names such "
                          "as Plugins/Corvelle/Control Panel\n");
    EXPECT_FALSE(simtest::Exists(dir + "/root"));
}

TEST(sim_Program, APluginLivesThroughFramesEventsAndAReload) {
    const std::string plugin = ProbePlugin();
    if (plugin.empty()) GTEST_SKIP() << "the probe plugin was not built (XPSIM_TEST_PLUGIN)";
    const simtest::TempDir temp;
    const std::string& dir = temp.path();
    const std::string root = dir + "/root";
    const std::string folder = root + "/Resources/plugins/Probe/lin_x64";
    ASSERT_EQ(std::system(("mkdir -p '" + folder + "' && cp '" + plugin + "' '" + folder + "/probe.xpl'").c_str()), 0);
    simtest::WriteFile(dir + "/events.txt",
                       "0.5 menu Plugins/Probe/Hello\n"
                       "1.0 message xpsim.tests.probe 8000 7   # from the sim\n"
                       "1.2 set xpsim/tests/probe/shared 42\n"
                       "1.6 menu Plugins/Probe/Nope\n"
                       "1.7 click 50 50\n"
                       "1.7 key k\n"
                       "1.8 command xpsim/tests/probe/hello\n"
                       "2.0 menu Plugins/Probe/Reload\n"
                       "2.5 message xpsim.tests.probe 0x10 -3\n"
                       "9 reload-plugins\n");
    // Given twice (by --plugin and in the plugins folder), loaded once.
    const auto run = RunXpsim({"run", "--root", root, "--plugin", folder + "/probe.xpl", "--seconds", "3",
                               "--events", dir + "/events.txt"});
    ASSERT_EQ(run.status, 0) << run.err;
    const std::string start =
        "probe: start as plugin 1\n"
        "probe: XPLM library found, same as loaded: yes, versions 1041 210 1\n"
        "probe: XPLMCreateCommand found, XPLMCreateFlightLoop found\n"
        "probe: enable\n";
    EXPECT_EQ(run.out, start +
                           // The sim loads the aircraft once at the start; a reload does not load it again.
                           "probe: message 102 from 0 with 0\n"
                           "probe: message 103 from 0 with 0\n"
                           "probe: message 104 from 0 with 0\n"
                           "probe: menu Hello in plugin 1 with menu refcon probe-menu\n"
                           "probe: message 8000 from 0 with 7\n"
                           "probe: loop 1 at 1.00 (since last call 1.00, counter 20)\n"
                           "probe: shared data changed to 42 in plugin 1\n"
                           "probe: mouse 1 at 50,50 in plugin 1\n"
                           "probe: mouse 3 at 50,50 in plugin 1\n"
                           "probe: key k with flags 8\n"
                           "probe: key k with flags 16\n"
                           "probe: command phase 0\n"
                           "probe: command phase 2\n"
                           "probe: menu Reload in plugin 1 with menu refcon probe-menu\n"
                           "probe: loop 2 at 2.00 (since last call 1.00, counter 40)\n"
                           "probe: disable\n"
                           "probe: stop after 2 loops\n" +
                           start +
                           "probe: message 16 from 0 with -3\n"
                           "probe: loop 1 at 3.00 (since last call 1.00, counter 60)\n"
                           "probe: disable\n"
                           "probe: stop after 1 loops\n");
    const std::string log = ReadFile(root + "/Log.txt");
    const std::string path = RealPath(folder + "/probe.xpl");
    EXPECT_NE(log.find("probe: XPLMCreateCommand found, XPLMCreateFlightLoop found\nLoaded: " + path +
                       " (xpsim.tests.probe).\nprobe: enable\n"),
              std::string::npos);
    EXPECT_NE(log.find("xpsim: events line 4: menu 'Plugins/Probe' has no item 'Nope'\n"), std::string::npos);
    EXPECT_NE(log.find("xpsim: plugin 1 asked for a reload of all plugins\n"
                       "probe: loop 2 at 2.00 (since last call 1.00, counter 40)\n"
                       "xpsim: reloading plugins at the end of frame 40\n"),
              std::string::npos);
    EXPECT_NE(log.find("xpsim: events line 10: 9.00 s is after the end of the run; not applied\n"), std::string::npos);

    // Older simulators: no 2.10 functions at 2.00, no library to find at 1.02.
    const auto at200 = RunXpsim({"run", "--root", root, "--sdk", "2.00", "--frames", "1"});
    EXPECT_NE(at200.out.find("versions 1041 200 1\nprobe: XPLMCreateCommand found, XPLMCreateFlightLoop missing\n"),
              std::string::npos)
        << at200.out;
    const auto at102 = RunXpsim({"run", "--root", root, "--sdk", "1.02", "--frames", "1"});
    EXPECT_EQ(at102.out.rfind("probe: start as plugin 1\nprobe: no XPLM library in the plugins folder\n", 0), 0u)
        << at102.out;
}

TEST(sim_Program, TheEventsDriveKeysTheMouseAndCommands) {
    const simtest::TempDir temp;
    const std::string& dir = temp.path();
    simtest::WriteFile(dir + "/events.txt",
                       "0.1 key p\n"
                       "0.2 click 10 10\n"
                       "0.25 wheel 5 5 -1\n"
                       "0.3 command-begin sim/view/chase\n"
                       "0.4 command sim/none/none\n"
                       "0.5 command-end sim/view/chase\n"
                       "0.6 command-end sim/view/chase\n"
                       "0.7 command-begin sim/none/none\n"
                       "0.8 key shift+XPLM_VK_F1\n"
                       "0.9 command sim/no/such\n");
    const auto run = RunXpsim({"run", "--root", dir + "/root", "--seconds", "1", "--events", dir + "/events.txt"});
    ASSERT_EQ(run.status, 0) << run.err;
    const std::string log = ReadFile(dir + "/root/Log.txt");
    EXPECT_NE(log.find("xpsim: 0.10 s (frame 2): 0.1 key p\n"
                       "xpsim: the sim gets key 'p' (XPLM_VK_P, down): sim/operation/pause_toggle\n"
                       "xpsim: sim/operation/pause_toggle: the sim is paused at frame 2\n"
                       "xpsim: 0.20 s (frame 4): 0.2 click 10 10\n"
                       "xpsim: mouse down at (10, 10) reaches the sim\n"
                       "xpsim: 0.25 s (frame 5): 0.25 wheel 5 5 -1\n"
                       "xpsim: mouse wheel at (5, 5) reaches the sim\n"
                       "xpsim: 0.30 s (frame 6): 0.3 command-begin sim/view/chase\n"
                       "xpsim: sim/view/chase: the view follows the aircraft from behind\n"
                       "xpsim: 0.40 s (frame 8): 0.4 command sim/none/none\n"
                       "xpsim: sim/none/none: nothing happens\n"
                       "xpsim: 0.50 s (frame 10): 0.5 command-end sim/view/chase\n"
                       "xpsim: 0.60 s (frame 12): 0.6 command-end sim/view/chase\n"
                       "xpsim: events line 7: sim/view/chase is not held\n"
                       "xpsim: 0.70 s (frame 14): 0.7 command-begin sim/none/none\n"
                       "xpsim: sim/none/none: nothing happens\n"
                       "xpsim: 0.80 s (frame 16): 0.8 key shift+XPLM_VK_F1\n"
                       "xpsim: the sim gets key (XPLM_VK_F1, shift+down)\n"
                       "xpsim: 0.90 s (frame 18): 0.9 command sim/no/such\n"
                       "xpsim: events line 10: no command named sim/no/such\n"
                       "xpsim: sim/none/none is still held at the end of the run\n"
                       "xpsim: run complete: 20 frames, 1.00 s\n"),
              std::string::npos)
        << log;
}

TEST(sim_Program, TheEventsClickAndTypeIntoAPluginsWidgets) {
    const std::string plugin = ProbePlugin();
    if (plugin.empty()) GTEST_SKIP() << "the probe plugin was not built (XPSIM_TEST_PLUGIN)";
    const simtest::TempDir temp;
    const std::string& dir = temp.path();
    simtest::WriteFile(dir + "/events.txt",
                       "0.1 click 250 330             # the text field takes the keyboard\n"
                       "0.2 type Hi there,#1!\n"
                       "0.3 key XPLM_VK_BACK\n"
                       "0.4 click 250 250             # the button\n"
                       "0.5 click 250 380             # the title bar: nothing happens\n"
                       "0.6 key p                     # the field still has the keyboard\n"
                       "0.7 click 250 250\n");
    const auto run = RunXpsim({"run", "--root", dir + "/root", "--plugin", plugin, "--seconds", "1", "--events",
                               dir + "/events.txt"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("probe: message 104 from 0 with 0\n"
                           "probe: button pressed with text 'Hi there,#1' in plugin 1\n"
                           "probe: button pressed with text 'Hi there,#1p' in plugin 1\n"
                           "probe: loop 1 at 1.00 (since last call 1.00, counter 20)\n"),
              std::string::npos)
        << run.out;
    const std::string log = ReadFile(dir + "/root/Log.txt");
    EXPECT_EQ(log.find("reaches the sim"), std::string::npos) << log;
    EXPECT_EQ(log.find("the sim gets key"), std::string::npos) << log;
    EXPECT_EQ(log.find("left registered"), std::string::npos) << log;
}
