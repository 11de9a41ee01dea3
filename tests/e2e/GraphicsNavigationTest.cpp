// Graphics and navigation end to end: the binding rules of XPLMGraphics and XPLMNavigation (argument
// forms, results, output lists, reports and the SDK-level gate), as scripts meet them.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "SimHarness.h"

namespace {

const std::vector<std::string> kModules = {"XPLMGraphics", "XPLMNavigation"};

// Runs a script whose first flight loop runs `later` with both modules imported; its output.
std::string RunScript(const SimFolder& sim, const std::string& later, std::vector<std::string> options = {}) {
    return RunLater(sim, "Graphics", kModules, later, std::move(options));
}

TEST(GraphicsNavigation, BindingsTakeTheirArgumentFormsAndAnswerAsDescribed) {
    SimFolder sim;
    EXPECT_EQ(RunScript(sim, R"(
print('state', XPLMSetGraphicsState(0, 1, 0, 0, 1, 0, 0), XPLMBindTexture2d(1, 0))
ids = [7]
print('textures', XPLMGenerateTextureNumbers(ids, 3), len(ids), ids[0], all(type(i) is int for i in ids))
print('no textures', XPLMGenerateTextureNumbers(None, 2), XPLMGenerateTextureNumbers([], -1))
local = XPLMWorldToLocal(47.45, -122.3, 130)
world = XPLMLocalToWorld(*local)
print('convert', len(local), all(type(v) is float for v in local + world))
print('draw', XPLMDrawTranslucentDarkBox(10, 60, 200, 10), XPLMDrawString((1.0, 1, True), 12, 40, 'Gear down', 0,
      xplmFont_Basic), XPLMDrawNumber((0.0, 1.0, 0.0), 12, 20, 3.25, 4, 2, 1, xplmFont_Basic))
for bad in [((1.0, 1.0), 1, 1, 'x', 0, 0), ((1.0, 1.0, 1.0), 1, 1, None, 0, 0)]:
    try:
        XPLMDrawString(*bad)
    except TypeError:
        print('refused', len(bad[0]))
w, h = [], [5]
print('font', XPLMGetFontDimensions(xplmFont_Basic, w, h, None), len(w), len(h), type(XPLMMeasureString(0, 'abc', 99)))
print('nav info', XPLMGetNavAidInfo(XPLM_NAV_NOT_FOUND, None, None, None, None, None, None, None, None, None))
print('find', type(XPLMFindNavAid(None, 'SEA', None, None, None, xplm_Nav_VOR)),
      type(XPLMFindNavAid('Seattle', None, 47.4, -122.3, 11680, xplm_Nav_VOR | xplm_Nav_NDB)))
try:
    XPLMFindNavAid(None, None, 'north', None, None, xplm_Nav_VOR)
except TypeError:
    print('latitude must be a number')
out = [[] for i in range(6)]
print('fms', XPLMSetFMSEntryLatLon(150, 47.0, -122.0, 3000), XPLMClearFMSEntry(-1), XPLMGetFMSEntryInfo(-5, *out),
      [len(o) for o in out], XPLMSetDestinationFMSEntry(100), type(XPLMGetGPSDestination()))
try:
    XPLMGetFMSEntryInfo(0, 'type', None, None, None, None, None)
except TypeError as e:
    print('fms out', e)
)"),
              "state 0 1\n"
              "textures 1 4 7 True\n"
              "no textures 1 0\n"
              "convert 3 True\n"
              "draw 1 1 1\n"
              "refused 2\n"
              "refused 3\n"
              "font 1 1 1 <class 'int'>\n"
              "nav info (1,)\n"
              "find <class 'int'> <class 'int'>\n"
              "latitude must be a number\n"
              "fms 1 1 1 [1, 1, 1, 1, 1, 1] 1 <class 'int'>\n"
              "fms out expected sequence\n");
    EXPECT_EQ(CountOf(sim.log(), Report("XPLMGraphics", "XPLMGenerateTextureNumbers", "Parameter Error")), 1u);
}

TEST(GraphicsNavigation, MeasureStringNeedsSdk200) {
    SimFolder sim;
    EXPECT_EQ(RunScript(sim, "print('measure', XPLMMeasureString(xplmFont_Basic, 'abc', 3))\n", {"--sdk", "1.02"}),
              "measure 0\n");
    EXPECT_NE(sim.log().find(Report("XPLMGraphics", "XPLMMeasureString", "Not supported in SDK 1.02")),
              std::string::npos);
}

// A script programs the FMS from the project's navigation data set around Seattle and reads it back
// through the GPS.
TEST(GraphicsNavigation, ScriptsFindNavaidsAndProgramTheFms) {
    SimFolder sim;
    std::filesystem::copy(TEST_DATA_DIR "/xpsim-root", sim.root(), std::filesystem::copy_options::recursive);
    EXPECT_EQ(RunScript(sim, R"(
sea = XPLMFindNavAid(None, 'SEA', None, None, None, xplm_Nav_VOR)
info = [[] for i in range(9)]
XPLMGetNavAidInfo(sea, *info)
print('info', info[0][0], round(info[1][0], 4), round(info[2][0], 4), info[4][0], info[6][0], info[7][0], info[8][0])
ksea = XPLMFindNavAid('seattle-tacoma', None, None, None, None, xplm_Nav_Airport)
olm = XPLMFindNavAid(None, None, 47.0, -122.9, None, xplm_Nav_VOR)
print('found', ksea >= 0, olm == XPLMFindNavAid(None, 'OLM', None, None, None, xplm_Nav_VOR), XPLMGetNextNavAid(-1))
XPLMSetFMSEntryInfo(0, ksea, 0)
XPLMSetFMSEntryInfo(1, sea, 3000)
XPLMSetFMSEntryLatLon(2, 47.9, -122.3, 5000)
XPLMSetDestinationFMSEntry(1)
print('fms', XPLMCountFMSEntries(), XPLMGetDestinationFMSEntry(), XPLMGetGPSDestinationType(),
      XPLMGetGPSDestination() == sea)
out = [[] for i in range(6)]
XPLMGetFMSEntryInfo(2, *out)
print('entry', out[0][0], repr(out[1][0]), out[2][0], out[3][0], round(out[4][0], 1), round(out[5][0], 1))
XPLMClearFMSEntry(0)
print('cleared', XPLMCountFMSEntries(), XPLMGetDestinationFMSEntry(), XPLMGetGPSDestination() == sea)
)"),
              "info 4 47.4354 -122.3096 11680 SEA SEATTLE VORTAC 0\n"
              "found True True -1\n"
              "fms 3 1 4 True\n"
              "entry 2048 '' -1 5000 47.9 -122.3\n"
              "cleared 2 0 True\n");
}

}  // namespace
