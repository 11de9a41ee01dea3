// The plugin's life in the simulator: start, scripts, logs, configuration and SDK levels.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "SimHarness.h"

namespace {

// A script that reports each entry point on standard output.
std::string LifecycleScript(const std::string& tag) {
    return "class Corvelle:\n"
           "    def XPluginStart(self):\n"
           "        print('" + tag + " start')\n"
           "        return 'Name " + tag + "', 'sig." + tag + "', 'Desc " + tag + "'\n"
           "    def XPluginEnable(self):\n"
           "        print('" + tag + " enable')\n"
           "        return 1\n"
           "    def XPluginDisable(self):\n"
           "        print('" + tag + " disable')\n"
           "    def XPluginStop(self):\n"
           "        print('" + tag + " stop')\n"
           "    def XPluginReceiveMessage(self, who, msg, param):\n"
           "        print('" + tag + " message %d %d %d' % (who, msg, param))\n";
}

// What a lifecycle script prints for the sim's start-up messages (the aircraft, airport and scenery
// loaded), which arrive once every plugin is enabled.
std::string StartMessages(const std::string& tag) {
    return tag + " message 0 102 0\n" + tag + " message 0 103 0\n" + tag + " message 0 104 0\n";
}

// Compiles a script into a sourceless .pyc in the scripts folder with the system interpreter.
void Compile(const SimFolder& sim, const std::string& source, const std::string& pycName) {
    sim.writeFile("src/module.py", source);
    std::string command = "/usr/bin/python3 -c \"import py_compile; py_compile.compile('" + sim.root() +
                          "/src/module.py', cfile='" + sim.scriptsDir() + "/" + pycName + "', doraise=True)\"";
    ASSERT_EQ(system(command.c_str()), 0);
}

}  // namespace

TEST(Spine, LifecycleLogHeaderAndOutputInOrder) {
    SimFolder sim;
    sim.writeScript("CV_Life.py", LifecycleScript("life"));
    sim.writeEvents("1.0 message brindle.projects.corvelle 8000 7\n");
    SimRun run = sim.run({"--seconds", "2", "--events", sim.root() + "/events.txt"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;

    EXPECT_EQ(sim.output(), "life start\nlife enable\n" + StartMessages("life") +
                                "life message 0 8000 7\nlife disable\nlife stop\n");
    const std::string log = sim.log();
    EXPECT_TRUE(InOrder(log, {"+++ LOGGING STARTED +++\n",
                              "Corvelle 2.67.07 (SDK 2.10) ",
                              "Corvelle.ini file not found\n",
                              "Before Py_Initialize()\n",
                              "After Py_Initialize()\n",
                              "Python Version 3.",
                              "Before Modules Init\n",
                              "Using path below for script path\n" + sim.scriptsDir() + "\n",
                              "After Modules Init\n",
                              "Searching for Standard Scripts\n",
                              "Script 'CV_Life.py' successfully loaded.\n",
                              "Before Py_Finalize()\n",
                              "After Py_Finalize()\n",
                              "--- LOGGING STOPPED ---\n\n"}))
        << log;
    EXPECT_TRUE(log.rfind("--- LOGGING STOPPED ---\n\n") == log.size() - 25) << log;
    // The simulator's log carries the version without the SDK level.
    EXPECT_NE(sim.simLog().find("CorvelleVersionNumber = 2.67.07\n"), std::string::npos);
    EXPECT_EQ(sim.simLog().find("CorvelleVersionNumber = 2.67.07 ("), std::string::npos);
}

TEST(Spine, SdkLevelShowsInTheHeaderOnly) {
    for (const std::string level : {"2.10", "2.00", "1.02"}) {
        SCOPED_TRACE(level);
        SimFolder sim;
        sim.writeScript("CV_Life.py", LifecycleScript("life"));
        SimRun run = sim.run({"--sdk", level, "--frames", "3"});
        ASSERT_EQ(run.exitCode, 0) << run.stderrText;
        EXPECT_NE(sim.log().find("Corvelle 2.67.07 (SDK " + level + ") "), std::string::npos) << sim.log();
        EXPECT_NE(sim.simLog().find("CorvelleVersionNumber = 2.67.07\n"), std::string::npos);
        EXPECT_EQ(sim.output(), "life start\nlife enable\n" + StartMessages("life") + "life disable\nlife stop\n");
    }
}

TEST(Spine, DiscoveryPicksScriptsByName) {
    SimFolder sim;
    sim.writeScript("CV_a.py", "print('CV_a from source')\nclass Corvelle:\n"
                               "    def XPluginStart(self):\n        return 'a', 'sig.a', 'd'\n");
    Compile(sim, "print('CV_a from compiled file')\nclass Corvelle:\n    pass\n", "CV_a.pyc");
    Compile(sim, "print('cv_tool compiled')\nclass Corvelle:\n"
                 "    def XPluginStart(self):\n        return 'tool', 'sig.tool', 'd'\n", "cv_tool.pyc");
    sim.writeScript("notes_CV_.py", "print('notes_CV_ loaded')\nclass Corvelle:\n    pass\n");
    sim.writeScript("CV_x.txt", "print('CV_x loaded')\n");
    sim.writeScript("readme.py", "print('readme loaded')\n");
    sim.writeScript("Cv_mixed.py", "print('Cv_mixed loaded')\n");
    ASSERT_EQ(sim.run({"--frames", "2"}).exitCode, 0);

    const std::string log = sim.log();
    EXPECT_EQ(CountOf(log, "successfully loaded."), 3u) << log;
    EXPECT_TRUE(InOrder(log, {"Script 'CV_a.py' successfully loaded.\n", "Script 'notes_CV_.py' successfully loaded.\n",
                              "Script 'cv_tool.py' successfully loaded.\n"}))
        << log;
    const std::string out = sim.output();
    EXPECT_TRUE(InOrder(out, {"CV_a from source\n", "notes_CV_ loaded\n", "cv_tool compiled\n"})) << out;
    EXPECT_EQ(out.find("from compiled file"), std::string::npos);
    EXPECT_EQ(out.find("CV_x"), std::string::npos);
    EXPECT_EQ(out.find("readme"), std::string::npos);
    EXPECT_EQ(out.find("Cv_mixed"), std::string::npos);
    // Scripts without XPluginStop and friends are reported, not fatal.
    EXPECT_NE(log.find("Cannot find method XPluginEnable\n"), std::string::npos);
}

TEST(Spine, AtMostTwoHundredFiftySixScriptsLoad) {
    SimFolder sim;
    for (int i = 0; i < 300; ++i) sim.writeScript("CV_" + std::to_string(1000 + i) + ".py", "class Corvelle:\n    pass\n");
    ASSERT_EQ(sim.run({"--frames", "1"}).exitCode, 0);
    const std::string log = sim.log();
    EXPECT_EQ(CountOf(log, "successfully loaded."), 256u);
    EXPECT_NE(log.find("Script 'CV_1255.py' successfully loaded."), std::string::npos);
    EXPECT_EQ(log.find("Script 'CV_1256.py'"), std::string::npos);
}

TEST(Spine, LoadFailuresAreLoggedAndTheOthersLoad) {
    SimFolder sim;
    sim.writeScript("CV_1noclass.py", "value = 1\n");
    sim.writeScript("CV_2broken.py", "class Corvelle:\n    def XPluginStart(self)\n        pass\n");
    sim.writeScript("CV_3raises.py", "raise RuntimeError('import went wrong')\n");
    sim.writeScript("CV_4ctor.py", "class Corvelle:\n    def __init__(self):\n        raise ValueError('no instance')\n");
    sim.writeScript("CV_5good.py", LifecycleScript("good"));
    ASSERT_EQ(sim.run({"--frames", "2"}).exitCode, 0);
    const std::string log = sim.log();
    EXPECT_TRUE(InOrder(log, {"Corvelle Class Missing\n",
                              "SyntaxError", "'CV_2broken' failed to load\n",
                              "Traceback (most recent call last):", "RuntimeError: import went wrong", "'CV_3raises' failed to load\n",
                              "ValueError: no instance", "Corvelle Call failed\n",
                              "Script 'CV_5good.py' successfully loaded.\n"}))
        << log;
    EXPECT_EQ(CountOf(log, "successfully loaded."), 1u);
    EXPECT_EQ(sim.output(), "good start\ngood enable\n" + StartMessages("good") + "good disable\ngood stop\n");
}

TEST(Spine, BadStartResultKeepsTheScriptUnnamed) {
    SimFolder sim;
    sim.writeScript("CV_Unnamed.py",
                    "class Corvelle:\n"
                    "    def XPluginStart(self):\n        return 'only', 'two'\n"
                    "    def XPluginEnable(self):\n        print('enabled anyway')\n"
                    "    def XPluginStop(self):\n        print('stopped')\n");
    ASSERT_EQ(sim.run({"--frames", "2"}).exitCode, 0);
    // Started from the simulator, the plugin's own enable still reaches the script.
    EXPECT_EQ(sim.output(), "enabled anyway\nstopped\n");
    EXPECT_EQ(sim.log().find("Traceback"), std::string::npos) << sim.log();
}

TEST(Spine, ScriptErrorsAndExitsNeverEndTheSimulator) {
    SimFolder sim;
    sim.writeScript("CV_Raise.py",
                    "import sys\n"
                    "class Corvelle:\n"
                    "    def XPluginStart(self):\n        raise KeyError('start failed')\n"
                    "    def XPluginEnable(self):\n        sys.exit(3)\n"
                    "    def XPluginReceiveMessage(self, who, msg, param):\n        raise ValueError('message failed')\n"
                    "    def XPluginDisable(self):\n        sys.exit('leaving now')\n"
                    "    def XPluginStop(self):\n        raise SystemExit\n");
    sim.writeScript("CV_Exits.py",
                    "import os, posix\n"
                    "class Corvelle:\n"
                    "    def XPluginStart(self):\n        os._exit(4)\n"
                    "    def XPluginEnable(self):\n        os.abort()\n"
                    "    def XPluginStop(self):\n        posix._exit(0)\n"
                    "    def XPluginReceiveMessage(self, who, msg, param):\n        pass\n"
                    "    def XPluginDisable(self):\n        pass\n");
    sim.writeScript("CV_Zlast.py", LifecycleScript("last"));
    sim.writeEvents("0.5 message brindle.projects.corvelle 8001 1\n");
    SimRun run = sim.run({"--seconds", "1", "--events", sim.root() + "/events.txt"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    const std::string log = sim.log();
    EXPECT_TRUE(InOrder(log, {"KeyError: 'start failed'", "SystemExit: 3", "ValueError: message failed",
                              "SystemExit: leaving now", "SystemExit", "--- LOGGING STOPPED ---"}))
        << log;
    // os._exit and os.abort raise SystemExit in the simulator's process instead of ending it.
    EXPECT_TRUE(InOrder(log, {"SystemExit: os._exit(4) refused: a script cannot end the simulator\n",
                              "SystemExit: os.abort() refused: a script cannot end the simulator\n",
                              "SystemExit: os._exit(0) refused: a script cannot end the simulator\n"}))
        << log;
    // The next script is called at every step.
    EXPECT_EQ(sim.output(), "last start\nlast enable\n" + StartMessages("last") +
                                "last message 0 8001 1\nlast disable\nlast stop\n");
}

TEST(Spine, MissingScriptsFolderIsReportedOnTheDebugOutput) {
    SimFolder sim(false);
    SimRun run = sim.run({"--frames", "2"});
    ASSERT_EQ(run.exitCode, 0);
    const std::string folder = sim.root() + "/Resources/plugins/PythonScripts/";
    const std::string expected = "\n*** CORVELLE ERROR ***\nPath :- " + folder +
                                 " does not exist.\nYou will need to create a folder called PythonScripts under the "
                                 "plugins folder\n*** CORVELLE ERROR ***\n\n";
    EXPECT_NE(sim.simLog().find(expected), std::string::npos) << sim.simLog();
    EXPECT_NE(run.stdoutText.find(expected), std::string::npos);
    EXPECT_FALSE(FileExists(sim.scriptsDir()));
}

TEST(Spine, ConfigurationFileIsFoundAndAnyLineEndWorks) {
    for (const std::string& ini : {std::string("[DEBUG]\nCheckCallbacks = 1\n"), std::string("[DEBUG]\r\nCheckCallbacks = 1\r\n"),
                                   std::string("[DEBUG]\rCheckCallbacks = 1\r"), std::string("[debug]\ncheckcallbacks=2")}) {
        SCOPED_TRACE(ini);
        SimFolder sim;
        sim.writeFile("Resources/plugins/Corvelle/Corvelle.ini", ini);
        sim.writeScript("CV_Life.py", LifecycleScript("life"));
        ASSERT_EQ(sim.run({"--frames", "2"}).exitCode, 0);
        const std::string log = sim.log();
        EXPECT_NE(log.find("Corvelle.ini file found\n"), std::string::npos);
        EXPECT_TRUE(InOrder(log, {"After Py_Finalize()\n", "\n*** Checking Integrity of Callbacks Started. ***\n",
                                  "*** Checking Integrity of Callbacks Finished. ***\n\n", "--- LOGGING STOPPED ---"}))
            << log;
    }
    SimFolder off;
    off.writeFile("Resources/plugins/Corvelle/Corvelle.ini", "[DEBUG]\nCheckCallbacks = abc\n");
    ASSERT_EQ(off.run({"--frames", "2"}).exitCode, 0);
    EXPECT_NE(off.log().find("Corvelle.ini file found\n"), std::string::npos);
    EXPECT_EQ(off.log().find("Checking Integrity"), std::string::npos);
}

TEST(Spine, OutputFileKeepsWhatScriptsWriteCutAt4095) {
    SimFolder sim;
    sim.writeScript("CV_Out.py",
                    "import sys\n"
                    "sys.stdout.write('\\n\\n')\n"
                    "sys.stdout.write('a\\rb\\n')\n"
                    "sys.stdout.write('x' * 5000)\n"
                    "sys.stdout.write('\\n')\n"
                    "sys.stderr.write('to the log\\n')\n"
                    "print('flushed', flush=True)\n"
                    "class Corvelle:\n    pass\n");
    ASSERT_EQ(sim.run({"--frames", "1"}).exitCode, 0);
    EXPECT_EQ(sim.output(), "\n\na\rb\n" + std::string(4095, 'x') + "\nflushed\n");
    EXPECT_NE(sim.log().find("to the log\n"), std::string::npos);
}

TEST(Spine, ReloadBringsBackAFreshInterpreter) {
    SimFolder sim;
    sim.writeScript("CV_State.py",
                    "import json\n"
                    "starts = 0\n"
                    "class Corvelle:\n"
                    "    def XPluginStart(self):\n"
                    "        global starts\n"
                    "        starts += 1\n"
                    "        import sys\n"
                    "        marker = getattr(sys, 'corvelle_marker', 'fresh')\n"
                    "        sys.corvelle_marker = 'used'\n"
                    "        print('starts=%d %s %s' % (starts, marker, json.dumps([1])))\n"
                    "        return 'State', 'sig.state', 'd'\n"
                    "    def XPluginStop(self):\n"
                    "        print('stop')\n");
    sim.writeEvents("0.5 reload-plugins\n");
    SimRun run = sim.run({"--seconds", "1", "--events", sim.root() + "/events.txt"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(), "starts=1 fresh [1]\nstop\nstarts=1 fresh [1]\nstop\n");
    EXPECT_EQ(CountOf(sim.log(), "+++ LOGGING STARTED +++"), 2u);
    EXPECT_EQ(CountOf(sim.log(), "--- LOGGING STOPPED ---"), 2u);
}

TEST(Spine, VirtualCameraItemsAreSharedWhileScriptsRun) {
    SimFolder sim;
    sim.writeScript("CV_Camera.py",
                    "from XPLMDataAccess import *\n"
                    "names = ['cameraindex', 'cameratypeindex', 'camerapluginready', 'acquirecamera', 'releasecamera',\n"
                    "         'setcamera', 'xoffset', 'yoffset', 'zoffset', 'headingoffset', 'pitchoffset', 'rolloffset',\n"
                    "         'zoomratio', 'lookataircraft']\n"
                    "class Corvelle:\n"
                    "    def XPluginStart(self):\n"
                    "        types = [XPLMGetDataRefTypes(XPLMFindDataRef('brindle/virtualcamera/' + n)) for n in names]\n"
                    "        print(types)\n"
                    "        return 'Camera', 'sig.camera', 'd'\n");
    ASSERT_EQ(sim.run({"--frames", "2"}).exitCode, 0);
    EXPECT_EQ(sim.output(), "[1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 2, 1]\n");
    // Everything shared at start was withdrawn at stop: the simulator found nothing left behind.
    EXPECT_EQ(sim.simLog().find("left registered"), std::string::npos) << sim.simLog();
}

TEST(Spine, ThePluginExportsOnlyItsFiveEntryPoints) {
    FILE* pipe = popen(("nm -D --defined-only '" + std::string(CORVELLE_XPL) + "'").c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::vector<std::string> names;
    char line[512];
    while (fgets(line, sizeof line, pipe)) {
        std::string text(line);
        size_t space = text.find_last_of(' ');
        names.push_back(text.substr(space + 1, text.find_last_not_of("\n") - space));
    }
    pclose(pipe);
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"XPluginDisable", "XPluginEnable", "XPluginReceiveMessage",
                                               "XPluginStart", "XPluginStop"}));
}

TEST(Spine, AStoppedScriptLeavesNothingAliveOrRunning) {
    SimFolder sim;
    sim.writeFile("Resources/plugins/Corvelle/Corvelle.ini", "[DEBUG]\nCheckCallbacks = 1\n");
    // Registrations never taken back, through callables only the registry holds (two windows share
    // theirs).
    sim.writeScript("CV_Leaves.py",
                    "from XPLMProcessing import *\nfrom XPLMDisplay import *\n"
                    "class Keeper:\n"
                    "    def __init__(self, name): self.name = name\n"
                    "    def __del__(self): print('freed', self.name)\n"
                    "    def Loop(self, *args): return 1.0\n"
                    "    def Draw(self, *args): return 1\n"
                    "class Corvelle:\n"
                    "    def XPluginStart(self):\n"
                    "        XPLMRegisterFlightLoopCallback(self, Keeper('loop').Loop, 1.0, 0)\n"
                    "        XPLMRegisterDrawCallback(self, Keeper('draw').Draw, xplm_Phase_Window, 0, 0)\n"
                    "        draw = Keeper('windows').Draw\n"
                    "        for left in (0, 100):\n"
                    "            XPLMCreateWindow(self, left, 50, left + 50, 0, 1, draw, draw, draw, 0)\n"
                    "        return 'Leaves', 'sig.leaves', 'd'\n"
                    "    def XPluginStop(self):\n"
                    "        print('leaves stop')\n");
    // Threads left running: one that ends when asked to, one blocked for good; the first also tries
    // the SDK and prints from its own thread.
    sim.writeScript("CV_Threads.py",
                    "import threading, time\nfrom XPLMDataAccess import *\n"
                    "class Corvelle:\n"
                    "    def XPluginStart(self):\n"
                    "        ref = XPLMFindDataRef('sim/flightmodel/position/elevation')\n"
                    "        def work():\n"
                    "            print('worker got', XPLMGetDatai(ref))\n"
                    "            while True: time.sleep(0.02)\n"
                    "        threading.Thread(target=work, name='worker').start()\n"
                    "        threading.Thread(target=threading.Event().wait, name='blocked').start()\n"
                    "        return 'Threads', 'sig.threads', 'd'\n");
    sim.writeEvents("0.5 reload-plugins\n");
    SimRun run = sim.run({"--seconds", "1", "--events", sim.root() + "/events.txt"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    const std::string output = sim.output(), log = sim.log();
    // Each stop frees what the script made, after its own stop.
    const std::string firstStop = Between(output, "", "leaves stop\n");
    const std::string secondStop = Between(output, "leaves stop\n", "leaves stop\n");
    for (const std::string& what : {"loop", "draw", "windows"}) {
        EXPECT_EQ(CountOf(firstStop, "freed " + what), 0u) << output;
        EXPECT_EQ(CountOf(secondStop, "freed " + what + "\n"), 1u) << output;
        EXPECT_EQ(CountOf(output, "freed " + what + "\n"), 2u) << output;
    }
    EXPECT_EQ(CountOf(output, "worker got 0\n"), 2u) << output;
    // The records stay for the integrity check.
    EXPECT_EQ(CountOf(log, "FlightLoopCallbackList size = 1\n"), 2u) << log;
    EXPECT_EQ(CountOf(log, "DrawCallbackList size = 1\n"), 2u) << log;
    // The worker's SDK call was refused and never reached the simulator.
    EXPECT_EQ(CountOf(log, Report("XPLMDataAccess", "XPLMGetDatai",
                                  "Not on the simulator's main thread: the SDK call was refused")),
              2u)
        << log;
    EXPECT_EQ(CountOf(sim.simLog(), "main thread"), 0u) << sim.simLog();
    // Both stops completed, naming the threads: the worker ended when asked, the blocked one not.
    EXPECT_EQ(CountOf(log, "Thread worker still running at stop: raising SystemExit in it\n"), 2u) << log;
    EXPECT_EQ(CountOf(log, "Thread blocked still running at stop: raising SystemExit in it\n"), 2u) << log;
    EXPECT_EQ(CountOf(log, "Thread blocked did not end: left running\n"), 2u) << log;
    EXPECT_EQ(CountOf(log, "Thread worker did not end"), 0u) << log;
    EXPECT_EQ(CountOf(log, "--- LOGGING STOPPED ---"), 2u) << log;
}
