// The virtual-camera utilities end to end: BrindleVCUtilities reads and writes the fourteen shared
// items that Corvelle publishes while its interpreter runs.
#include <gtest/gtest.h>

#include <string>

#include "SimHarness.h"

namespace {

TEST(VirtualCameraTest, FunctionsReadAndWriteTheirOwnSharedItems) {
    SimFolder sim;
    sim.writeScript(
        "CV_Virtual.py",
        TestScript("Virtual", {"BrindleVCUtilities", "XPLMDataAccess"}, "",
                   "def item(name):\n"
                   "    return XPLMFindDataRef('brindle/virtualcamera/' + name)\n"
                   "print('ready', VC_CameraPluginReady())\n"
                   "print('zoom', VC_SetZoomRatio(2.5), VC_GetZoomRatio(), XPLMGetDataf(item('zoomratio')))\n"
                   "print('requests', VC_AcquireCamera(), VC_ReleaseCamera(), VC_SetCamera(),\n"
                   "      [XPLMGetDatai(item(n)) for n in ('acquirecamera', 'releasecamera', 'setcamera', 'cameraindex')])\n"
                   "VC_SetCameraIndex(4); VC_SetCameraTypeIndex(5); VC_SetLookAtAircraft(6)\n"
                   "print('ints', VC_GetCameraIndex(), VC_GetCameraTypeIndex(), VC_GetLookAtAircraft(),\n"
                   "      [XPLMGetDatai(item(n)) for n in ('cameraindex', 'cameratypeindex', 'lookataircraft')])\n"
                   "VC_SetXOffset(1.5); VC_SetYOffset(2.5); VC_SetZOffset(3.5)\n"
                   "VC_SetHeadingOffset(4.5); VC_SetPitchOffset(5.5); VC_SetRollOffset(6.5)\n"
                   "print('offsets', VC_GetXOffset(), VC_GetYOffset(), VC_GetZOffset(),\n"
                   "      VC_GetHeadingOffset(), VC_GetPitchOffset(), VC_GetRollOffset(),\n"
                   "      [XPLMGetDataf(item(n + 'offset')) for n in ('x', 'y', 'z', 'heading', 'pitch', 'roll')])\n"
                   "try:\n"
                   "    VC_SetZoomRatio('near')\n"
                   "except TypeError:\n"
                   "    print('zoom needs a number')\n"
                   "print(VC_SetCamera.__doc__, VC_GetLookAtAircraft.__doc__, VC_SetHeadingOffset.__doc__,\n"
                   "      VC_CameraPluginReady.__doc__)\n"));
    SimRun run = sim.run({"--frames", "3"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    const std::string out = sim.output();
    EXPECT_NE(out.find("ready 0\n"), std::string::npos) << out;
    EXPECT_NE(out.find("zoom 0 2.5 2.5\n"), std::string::npos) << out;
    EXPECT_NE(out.find("requests 0 0 0 [1, 1, 1, 0]\n"), std::string::npos) << out;
    EXPECT_NE(out.find("ints 4 5 6 [4, 5, 6]\n"), std::string::npos) << out;
    EXPECT_NE(out.find("offsets 1.5 2.5 3.5 4.5 5.5 6.5 [1.5, 2.5, 3.5, 4.5, 5.5, 6.5]\n"), std::string::npos) << out;
    EXPECT_NE(out.find("zoom needs a number\n"), std::string::npos) << out;
    EXPECT_NE(out.find("Set the Camerar. Get the LookAtAircraft Index. Set the Heading Offset. "
                       "Check that VC plugin is ready.\n"),
              std::string::npos)
        << out;
    EXPECT_EQ(CountOf(sim.log(), "Error"), 0u) << sim.log();
    // Every item was withdrawn when the interpreter stopped.
    EXPECT_EQ(sim.simLog().find("shared data"), std::string::npos) << sim.simLog();
}

}  // namespace
