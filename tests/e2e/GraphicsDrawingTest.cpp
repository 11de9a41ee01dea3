// Drawing end to end: a script's draw callback draws a dark box, strings and a number through the
// XPLMGraphics bindings, and the events file's draw-log writes what two frames drew.
#include <gtest/gtest.h>

#include <string>

#include "SimHarness.h"

namespace {

TEST(GraphicsDrawing, AScriptsDrawCallbackReachesTheDrawLog) {
    SimFolder sim;
    sim.writeScript("CV_Draw.py", TestScript("Draw", {"XPLMDisplay", "XPLMGraphics"},
                                             "self.frames = 0\n"
                                             "self.draw = self.Draw\n"
                                             "XPLMRegisterDrawCallback(self, self.draw, xplm_Phase_Window, 0, 0)\n",
                                             "XPLMDrawString((1.0, 1.0, 1.0), 1, 1, 'from a flight loop', 0, 0)\n",
                                             "XPLMUnregisterDrawCallback(self, self.draw, xplm_Phase_Window, 0, 0)\n",
                                             "def Draw(self, phase, isBefore, refcon):\n"
                                             "    self.frames += 1\n"
                                             "    XPLMDrawTranslucentDarkBox(10, 120, 200, 10)\n"
                                             "    XPLMDrawString((1.0, 0.5, 0.0), 12, 100, 'Gear \"down\"', 0, "
                                             "xplmFont_Basic)\n"
                                             "    XPLMDrawString((1.0, 1.0, 1.0), 12, 80, 'one two three', 50, "
                                             "xplmFont_Basic)\n"
                                             "    XPLMDrawNumber((0.0, 1.0, 0.0), 12, 20, self.frames + 0.25, 4, 2, 1, "
                                             "xplmFont_Basic)\n"
                                             "    return 1\n"));
    const std::string events = sim.writeEvents("0.10 draw-log draw log.txt\n0.15 draw-log draw log.txt\n");
    const SimRun run = sim.run({"--frames", "4", "--events", events});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    auto frame = [](int n) {
        return "frame " + std::to_string(n) +
               "\n"
               "dark-box left=10 top=120 right=200 bottom=10\n"
               "string x=12 y=100 rgb=1.000,0.500,0.000 font=xplmFont_Basic \"Gear \\\"down\\\"\"\n"
               "string x=12 y=80 rgb=1.000,1.000,1.000 font=xplmFont_Basic \"one two\"\n"
               "string x=12 y=68 rgb=1.000,1.000,1.000 font=xplmFont_Basic \"three\"\n"
               "number x=12 y=20 rgb=0.000,1.000,0.000 font=xplmFont_Basic \"+000" +
               std::to_string(n) + ".25\"\n";
    };
    EXPECT_EQ(sim.read("draw log.txt"), frame(2) + frame(3)) << sim.output();
    // The flight loop's string drew nothing and was reported.
    EXPECT_EQ(CountOf(sim.simLog(), "xpsim: XPLMDrawString: called while the sim is not drawing"), 1u) << sim.simLog();
}

}  // namespace
