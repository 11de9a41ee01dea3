// Scripts finding, switching and messaging one another through PythonScriptMessaging.
#include <gtest/gtest.h>

#include "SimHarness.h"

namespace {

const char* kReceiver =
    "class Corvelle:\n"
    "    def XPluginStart(self):\n"
    "        return 'Receiver', 'test.receiver', 'Receives'\n"
    "    def XPluginReceiveMessage(self, sender, message, param):\n"
    "        print('receiver got', message, param, sender is not self)\n"
    "        if message == 13:\n"
    "            raise RuntimeError('receiver failed')\n";

}  // namespace

TEST(ScriptMessaging, FindSwitchAndMessageOtherScripts) {
    SimFolder sim;
    sim.writeScript("CV_A_Sender.py",
                    "from PythonScriptMessaging import *\n"
                    "class Corvelle:\n"
                    "    def XPluginStart(self):\n"
                    "        return 'Sender', 'test.sender', 'Sends'\n"
                    "    def XPluginReceiveMessage(self, sender, message, param):\n"
                    "        print('sender got', message, param, sender is self)\n"
                    "    def XPluginEnable(self):\n"
                    "        print('count', CV_CountScripts())\n"
                    "        other = CV_FindScriptBySignature('test.receiver')\n"
                    "        print('info', CV_GetScriptInfo(other), CV_GetScriptInfo(42))\n"
                    "        print('unknown', CV_FindScriptBySignature('no.such.script'), CV_GetNthScript(99))\n"
                    "        print('nth', CV_GetNthScript(0) is self, CV_GetNthScript(1) is other)\n"
                    "        print('broadcast', CV_SendMessageToScript(self, None, 7, 'all'))\n"
                    "        print('direct', CV_SendMessageToScript(self, other, 8, [1, 2]))\n"
                    "        print('raising', CV_SendMessageToScript(self, None, 13, None))\n"
                    "        print('silent', CV_SendMessageToScript(self, CV_GetNthScript(2), 9, 0))\n"
                    "        print('disable', CV_DisableScript(other), CV_DisableScript(other), CV_IsScriptEnabled(other))\n"
                    "        print('while disabled', CV_SendMessageToScript(self, other, 10, 0))\n"
                    "        print('enable', CV_EnableScript(other), CV_EnableScript(other), CV_IsScriptEnabled(other))\n"
                    "        print('not a script', CV_IsScriptEnabled(self.__class__), CV_EnableScript(3))\n"
                    "        return 1\n");
    sim.writeScript("CV_B_Receiver.py", kReceiver);
    sim.writeScript("CV_C_Mute.py", "class Corvelle:\n    def XPluginStart(self):\n        return 'Mute', 'test.mute', 'd'\n");
    ASSERT_EQ(sim.run({"--frames", "2"}).exitCode, 0);

    EXPECT_EQ(sim.output(),
              "count 3\n"
              "info ('Receiver', 'test.receiver', 'Receives') ('', '', '')\n"
              "unknown None None\n"
              "nth True True\n"
              "sender got 7 all True\n"
              "receiver got 7 all True\n"
              "broadcast 1\n"
              "receiver got 8 [1, 2] True\n"
              "direct 1\n"
              "sender got 13 None True\n"
              "receiver got 13 None True\n"
              "raising 1\n"
              "silent 1\n"
              "disable 1 1 0\n"
              "while disabled 1\n"
              "enable 0 1 1\n"
              "not a script 0 0\n"
              // The sim's start-up messages, once every plugin is enabled.
              "sender got 102 0 False\nreceiver got 102 0 True\n"
              "sender got 103 0 False\nreceiver got 103 0 True\n"
              "sender got 104 0 False\nreceiver got 104 0 True\n");
    const std::string log = sim.log();
    // The receiver's failure is printed; the mute script's missing method is logged for each delivery.
    EXPECT_TRUE(InOrder(log, {"RuntimeError: receiver failed", "Cannot find method XPluginReceiveMessage\n",
                              "Cannot find method XPluginReceiveMessage\n"}))
        << log;
}

TEST(ScriptMessaging, ADisabledScriptsFlightLoopIsSkippedAndComesBackAfterOneSecond) {
    SimFolder sim;
    sim.writeScript("CV_A_Switch.py",
                    "from PythonScriptMessaging import *\n"
                    "from XPLMProcessing import *\n"
                    "class Corvelle:\n"
                    "    def XPluginStart(self):\n"
                    "        self.Loop = self.Switch\n"
                    "        XPLMRegisterFlightLoopCallback(self, self.Loop, 1.0, 0)\n"
                    "        return 'Switch', 'test.switch', 'd'\n"
                    "    def Switch(self, since, sinceLoop, counter, refcon):\n"
                    "        other = CV_FindScriptBySignature('test.ticker')\n"
                    "        now = round(XPLMGetElapsedTime(), 2)\n"
                    "        if now == 1.0:\n"
                    "            CV_DisableScript(other)\n"
                    "            print('disabled at', now)\n"
                    "        if now == 2.5:\n"
                    "            CV_EnableScript(other)\n"
                    "            print('enabled at', now)\n"
                    "        return 0.5\n"
                    "    def XPluginStop(self):\n"
                    "        XPLMUnregisterFlightLoopCallback(self, self.Loop, 0)\n");
    sim.writeScript("CV_B_Ticker.py",
                    "from XPLMProcessing import *\n"
                    "class Corvelle:\n"
                    "    def XPluginStart(self):\n"
                    "        self.Loop = self.Tick\n"
                    "        XPLMRegisterFlightLoopCallback(self, self.Loop, 0.25, 0)\n"
                    "        return 'Ticker', 'test.ticker', 'd'\n"
                    "    def Tick(self, since, sinceLoop, counter, refcon):\n"
                    "        print('tick', round(XPLMGetElapsedTime(), 2))\n"
                    "        return 0.25\n"
                    "    def XPluginStop(self):\n"
                    "        XPLMUnregisterFlightLoopCallback(self, self.Loop, 0)\n");
    ASSERT_EQ(sim.run({"--seconds", "3.6"}).exitCode, 0);
    // Disabled at 1.0 before the tick of that frame: the skipped calls come back a second apart
    // (2.0, 3.0); the first after the enable at 2.5 is the one due at 3.0, then every 0.25 s again.
    EXPECT_EQ(sim.output(),
              "tick 0.25\ntick 0.5\ntick 0.75\n"
              "disabled at 1.0\n"
              "enabled at 2.5\n"
              "tick 3.0\ntick 3.25\ntick 3.5\n");
}

TEST(ScriptMessaging, MessagesSentWhileScriptsStopNeverReachAStoppedScript) {
    SimFolder sim;
    sim.writeScript("CV_A_First.py",
                    "class Corvelle:\n"
                    "    def XPluginStart(self):\n        return 'First', 'test.first', 'd'\n"
                    "    def XPluginReceiveMessage(self, sender, message, param):\n"
                    "        print('first got', message)\n"
                    "    def XPluginStop(self):\n        print('first stopped')\n");
    sim.writeScript("CV_B_Last.py",
                    "from PythonScriptMessaging import *\n"
                    "class Corvelle:\n"
                    "    def XPluginStart(self):\n        return 'Last', 'test.last', 'd'\n"
                    "    def XPluginReceiveMessage(self, sender, message, param):\n"
                    "        print('last got', message)\n"
                    "    def XPluginStop(self):\n"
                    "        print('goodbye', CV_SendMessageToScript(self, None, 99, 'bye'))\n"
                    "        first = CV_FindScriptBySignature('test.first')\n"
                    "        print('first enabled', CV_IsScriptEnabled(first))\n"
                    "        print('direct', CV_SendMessageToScript(self, first, 98, None))\n");
    SimRun run = sim.run({"--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    // The first script has stopped (and may be gone): the broadcast reaches only the sender.
    EXPECT_EQ(sim.output(), "first got 102\nlast got 102\nfirst got 103\nlast got 103\nfirst got 104\nlast got 104\n"
                            "first stopped\nlast got 99\ngoodbye 1\nfirst enabled 0\ndirect 1\n");
}
