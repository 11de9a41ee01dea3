// Planes and scenery end to end: the binding rules of XPLMPlanes and XPLMScenery (SDK-level gates,
// registrations of the planes-available, library-enumerator and object-loaded callbacks, their
// reports, traces and leftovers) as scripts meet them.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "SimHarness.h"

namespace {

const std::vector<std::string> kModules = {"XPLMPlanes", "XPLMScenery"};
const std::string kDebugIni = "[DEBUG]\nDebugCallbacks=1\nCheckCallbacks=1\n";

// Calls every scenery function once with harmless arguments.
const char* const kEveryScenery = R"(
self.enum, self.loaded = self.Enumerate, self.Loaded
print('scenery', XPLMCreateProbe(xplm_ProbeY) != 0, XPLMDestroyProbe(0), XPLMProbeTerrainXYZ(0, 0, 0, 0, []),
      XPLMLoadObject('a.obj'), XPLMDrawObjects(0, 1, [(0, 0, 0, 0, 0, 0)], 0, 0), XPLMUnloadObject(0),
      XPLMLookupObjects(self, 'lib/a.obj', 0, 0, self.enum, 0), XPLMLoadObjectAsync(self, 'a.obj', self.loaded, 0),
      CV_RemoveLookupObjects(self, self.enum, 0), CV_RemoveObjectLoadedCallback(self, self.loaded))
)";
const char* const kCallbacks = R"(
def Enumerate(self, path, refcon):
    print('found', path, refcon)
def Loaded(self, object, refcon):
    print('loaded', object != 0, refcon)
def Available(self, refcon):
    print('available', refcon)
)";

// A number whose conversion empties the list it sits in, as a script's __float__ may.
const char* const kEmptier = R"(
class Emptier:
    def __init__(self, victim):
        self.victim = victim
    def __float__(self):
        self.victim.clear()
        return 0.5
)";

// Bindings read a script's sequences item by item, converting each; an item that changes the list
// meanwhile leaves the binding reading the items it was given (under the debug allocator a freed
// list is the sanitizer's to see).
TEST(PlanesScenery, SequencesChangedWhileReadAreReadAsGiven) {
    setenv("PYTHONMALLOC", "malloc_debug", 1);
    SimFolder sim;
    const std::string out = RunLater(sim, "Emptied", kModules, std::string(kEmptier) + R"(
state = [44, 0.5] + [0.25] * 9
state[2] = Emptier(state)
locations = [[1, 2, 3, 4, 5, 6], (1, 2, 3, 4, 5, 6)]
locations[0][3] = Emptier(locations)
location = [1, 2, 3, 4, 5, 6]
location[4] = Emptier(location)
print('drawn', XPLMDrawAircraft(1, 0, 0, 0, 0, 0, 0, 1, state), XPLMDrawObjects(0, 2, locations, 0, 0),
      XPLMDrawObjects(0, 1, [location], 0, 0), len(state), len(locations), len(location))
)");
    EXPECT_EQ(out, "drawn 1 1 1 0 0 0\n");
}

TEST(PlanesScenery, SceneryFunctionsAreGatedOnTheSdkLevel) {
    const std::vector<std::string> sdk200 = {"XPLMCreateProbe", "XPLMDestroyProbe", "XPLMProbeTerrainXYZ",
                                             "XPLMLoadObject",  "XPLMDrawObjects",  "XPLMUnloadObject",
                                             "XPLMLookupObjects"};
    for (const char* level : {"1.02", "2.00"}) {
        SimFolder sim;
        const std::string out = RunLater(sim, "Scenery", kModules, kEveryScenery, {"--sdk", level}, "", kCallbacks);
        const std::string log = sim.log();
        const bool old = std::string(level) == "1.02";
        // At 2.00 the calls reach the simulator: a probe, an error for probe 0, a file that is not there.
        EXPECT_EQ(out, old ? "scenery False 0 0 0 0 0 0 0 1 1\n" : "scenery True 1 1 0 1 1 0 0 1 1\n") << level;
        for (const std::string& function : sdk200)
            EXPECT_EQ(CountOf(log, Report("XPLMScenery", function, "Not supported in SDK 1.02")), old ? 1u : 0u)
                << level << function;
        // Both levels lack the asynchronous load; 2.00 passes the gate and still gets no call.
        EXPECT_EQ(CountOf(log, Report("XPLMScenery", "XPLMLoadObjectAsync", "Not supported in SDK 1.02 or SDK 2.00")),
                  1u)
            << level << log;
    }
}

TEST(PlanesScenery, RegistrationsAreTracedReportedAndCheckedAtStop) {
    SimFolder sim;
    sim.writeFile("Resources/plugins/Corvelle/Corvelle.ini", kDebugIni);
    const std::string out = RunLater(sim, "Planes", kModules, R"(
print('id %x' % id(self))
self.enum, self.loaded, self.avail = self.Enumerate, self.Loaded, self.Available
print('release unacquired', XPLMReleasePlanes(self))
print('acquire', type(XPLMAcquirePlanes(self, ['', ''], self.avail, 7)))
print('lookups', XPLMLookupObjects(self, 'lib/none.obj', 47.5, -122.25, self.enum, 3),
      XPLMLookupObjects(self, 'lib/none.obj', 47.5, -122.25, self.enum, 3),
      XPLMLookupObjects(self, 'lib/none.obj', 0, 0, lambda path, refcon: None, 3))
print('remove lookup', CV_RemoveLookupObjects(self, self.enum, 4), CV_RemoveLookupObjects(self, print, 4))
print('async', XPLMLoadObjectAsync(self, 'none.obj', self.loaded, 5), XPLMLoadObjectAsync(self, 'none.obj',
      self.loaded, 5), XPLMLoadObjectAsync(self, 'none.obj', self.loaded, 6))
print('remove loaded', CV_RemoveObjectLoadedCallback(self, self.avail))
print('draw objects', XPLMDrawObjects(0, 2, [(0, 0, 0, 0, 0, 0)] * 3, 1, 0), XPLMDrawObjects(0, 0, (), 1, 0))
for bad in (lambda: XPLMAcquirePlanes(self, 'Aircraft/a.acf', self.avail, 0),
            lambda: XPLMAcquirePlanes(self, [b'Aircraft/a.acf'], self.avail, 0),
            lambda: XPLMDrawAircraft(1, 0, 0, 0, 0, 0, 0, 1, [44] + [0.5] * 9),
            lambda: XPLMDrawAircraft(1, 0, 0, 0, 0, 0, 0, 1, [44, 'up'] + [0.5] * 9),
            lambda: XPLMDrawObjects(0, 1, [(0, 0, 0)], 1, 0),
            lambda: XPLMProbeTerrainXYZ(0, 0, 0, 0, 'info')):
    try:
        bad()
    except TypeError as e:
        print('TypeError', e)
)",
                                     {}, "", kCallbacks);
    const std::string id = Between(out, "id ", "\n");
    EXPECT_EQ(out.substr(out.find('\n') + 1),
              "release unacquired 1\n"
              "acquire <class 'int'>\n"
              "lookups 0 0 0\n"
              "remove lookup 1 1\n"
              "async 1 1 1\n"
              "remove loaded 1\n"
              "draw objects 0 0\n"
              "TypeError XPLMAcquirePlanes expects a list of aircraft paths\n"
              "TypeError bad argument type for built-in operation\n"
              "TypeError XPLMDrawAircraft expects a draw state sequence of 11 items\n"
              "TypeError must be real number, not str\n"
              "TypeError XPLMDrawObjects expects each location as (x, y, z, pitch, heading, roll)\n"
              "TypeError expected sequence\n"
              // The next frame's load completes; the removed record (refcon 5) is not called.
              "loaded False 6\n");
    const std::string log = sim.log();
    const std::string refconText =
        "was unregistering a callback and refcon that does not exist, check refcon matches the one that was used "
        "in registering.";
    EXPECT_EQ(CountOf(log, Report("XPLMPlanes", "XPLMReleasePlanes",
                                  "Script 'Planes.py' was unregistering a callback that does not exist.")),
              1u);
    EXPECT_EQ(CountOf(log, Report("XPLMPlugin", "CV_RemoveLookupObjects", "Script 'Planes.py' " + refconText)), 1u);
    EXPECT_EQ(CountOf(log, Report("XPLMScenery", "XPLMDrawObjects", "Parameter Error - List empty or not equal to count")),
              2u);
    auto trace = [&](const std::string& function, const std::string& details, const std::string& list, int size) {
        return function + "\n" + details + "\n" + list + " size = " + std::to_string(size) + "\n" + function + "\n";
    };
    const std::string script = "pScriptId = " + id;
    EXPECT_TRUE(InOrder(
        log, {trace("XPLMReleasePlanes", script + ", Script Name = Planes", "PlanesAvailableCallbackList", 0),
              trace("XPLMAcquirePlanes", script + ", inRefcon = 7", "PlanesAvailableCallbackList", 1),
              trace("XPLMLookupObjects",
                    script + ", inPath = lib/none.obj, inLatitude = 47.500000, inLongitude = -122.250000, inRefcon = 3",
                    "LibraryEnumeratorCallbackList", 1),
              trace("CV_RemoveLookupObjects", script + ", Script Name = Planes, inRefcon = 4",
                    "LibraryEnumeratorCallbackList", 1),
              trace("XPLMLoadObjectAsync", script + ", inPath = none.obj, inRefcon = 6", "ObjectLoadedCallbackList", 2),
              trace("CV_RemoveObjectLoadedCallback", script + ", Script Name = Planes", "ObjectLoadedCallbackList",
                    1)}))
        << log;
    // What the script left behind is reported at stop, list by list.
    const std::string check = Between(log, "*** Checking Integrity of Callbacks Started. ***\n", "*** Checking");
    EXPECT_TRUE(InOrder(check, {"PlanesAvailableCallbackList size = 1\n", "LibraryEnumeratorCallbackList size = 1\n",
                                "ObjectLoadedCallbackList size = 1\n"}))
        << check;
    EXPECT_EQ(CountOf(check, "Mismatch of callback creation and destruction.\n"), 3u) << check;
}

// Planes-a (a C++ plugin) holds the other aircraft when the script first asks; the script waits, tells
// planes-a to let go, and is called back, takes them, sets their models and draws one.
TEST(PlanesScenery, AScriptWaitsForTheAircraftTakesThemAndDrawsOne) {
    SimFolder sim;
    std::filesystem::copy(TEST_DATA_DIR "/xpsim-root", sim.root(), std::filesystem::copy_options::recursive);
    const std::string events = sim.writeEvents("0.10 draw-log aircraft.txt\n");
    const std::string out = RunLater(sim, "Planes", {"XPLMPlanes", "XPLMPlugin", "XPLMDisplay", "XPLMUtilities"}, R"(
self.avail, self.draw = self.Available, self.Draw
self.baron = XPLMGetSystemPath() + 'Aircraft/Laminar Research/Baron B58/Baron_58.acf'
print('user', XPLMGetNthAircraftModel(0)[0], XPLMGetNthAircraftModel_NP(self, 0) == XPLMGetNthAircraftModel(0))
print('wait', XPLMAcquirePlanes(self, [''], self.avail, 42), XPLMCountAircraft()[2] == XPLMGetMyID())
XPLMSendMessageToPlugin(XPLMFindPluginBySignature('xpsim.tests.planes.a'), 0x7E570101, 0)
print('mine', XPLMCountAircraft() == (20, 1, XPLMGetMyID()))
print('set', XPLMSetActiveAircraftCount(3), XPLMSetAircraftModel(2, self.baron), XPLMDisableAIForPlane(2),
      XPLMCountAircraft()[:2], XPLMGetNthAircraftModel(2)[0], XPLMGetNthAircraftModel(1)[1] == self.baron)
XPLMRegisterDrawCallback(self, self.draw, xplm_Phase_Airplanes, 0, 0)
)",
                                     {"--plugin", PLANES_A_XPL, "--events", events},
                                     "XPLMUnregisterDrawCallback(self, self.draw, xplm_Phase_Airplanes, 0, 0)\n"
                                     "print('release', XPLMReleasePlanes(self), XPLMCountAircraft()[2])\n",
                                     R"(
def Available(self, refcon):
    print('available', refcon, XPLMAcquirePlanes(self, [self.baron, ''], None, 0))
def Draw(self, phase, isBefore, refcon):
    XPLMDrawAircraft(2, 10.0, 2, -30, 1.5, 0, 90, 1, [44, 1, 0.5, 0, 0, 0, 0, 0.75, 0, 0, 0])
    return 1
)");
    // Each model change unloads the slot's aircraft first (XPLM_MSG_PLANE_UNLOADED, 106).
    EXPECT_EQ(out,
              "received 0 106 2\n"
              "user Cessna_172SP.acf True\n"
              "wait 0 False\n"
              "received 0 106 1\n"
              "available 42 1\n"
              "mine True\n"
              "received 0 106 2\n"
              "set 1 1 1 (20, 3) Baron_58.acf True\n"
              "release 1 -1\n");
    EXPECT_EQ(sim.read("aircraft.txt"),
              "frame 2\n"
              "aircraft index=2 model=Baron_58.acf x=10.00 y=2.00 z=-30.00 pitch=1.50 roll=0.00 yaw=90.00 full=1 "
              "gear=1.00 flaps=0.50 spoilers=0.00 speedbrake=0.00 slats=0.00 sweep=0.00 thrust=0.75 "
              "yoke=0.00,0.00,0.00\n");
}

TEST(PlanesScenery, ScriptsProbeLookUpLoadAndDrawObjects) {
    SimFolder sim;
    std::filesystem::copy(TEST_DATA_DIR "/xpsim-root", sim.root(), std::filesystem::copy_options::recursive);
    sim.writeFile("xpsim/terrain.txt", "elevation 120\nwater -89 -179 89 179\n");
    const std::string events = sim.writeEvents("0.10 draw-log objects.txt\n");
    const std::string out = RunLater(sim, "Objects", {"XPLMScenery", "XPLMDisplay"}, R"(
self.draw, self.enum, self.loaded = self.Draw, self.Enumerate, self.Loaded
XPLMRegisterDrawCallback(self, self.draw, xplm_Phase_Objects, 0, 0)
probe = XPLMCreateProbe(xplm_ProbeY)
info = []
print('probe', XPLMProbeTerrainXYZ(probe, 0.0, 500.0, 0.0, info), [round(v, 6) + 0 for v in info])
print('probe again', XPLMProbeTerrainXYZ(probe, True, 0, 0, info), len(info))
print('destroyed', XPLMDestroyProbe(probe), XPLMProbeTerrainXYZ(probe, 0, 0, 0, []))
self.found = []
print('lookup', XPLMLookupObjects(self, 'xpsim/demo/beacon.obj', 47.45, -122.3, self.enum, 1), self.found)
self.obj = XPLMLoadObject(self.found[0])
print('load', self.obj != 0, XPLMLoadObject('Custom Scenery/none.obj'), XPLMLoadObjectAsync(self, self.found[1],
      self.loaded, 9))
)",
                                     {"--events", events},
                                     "XPLMUnloadObject(self.obj)\n"
                                     "XPLMUnregisterDrawCallback(self, self.draw, xplm_Phase_Objects, 0, 0)\n",
                                     R"(
def Enumerate(self, path, refcon):
    self.found.append(path)
def Loaded(self, object, refcon):
    print('loaded', object != 0, refcon, XPLMUnloadObject(object))
def Draw(self, phase, isBefore, refcon):
    if self.obj:
        XPLMDrawObjects(self.obj, 2, [(1, 2, 3, 0, 90, 0), (-10.5, 0, 250, 5, 180, -2)], 1, 0)
    return 1
)");
    // Flat ground at 120 m under water: the hit, its normal and the wet flag; y of the probe is ignored.
    EXPECT_EQ(out,
              "probe 0 [44, 0.0, 120.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1]\n"
              "probe again 0 22\n"
              "destroyed 1 1\n"
              "lookup 2 ['Custom Scenery/xpsim Demo Objects/objects/beacon.obj', "
              "'Resources/default scenery/xpsim default library/objects/beacon.obj']\n"
              "load True 0 1\n"
              "loaded True 9 1\n");
    EXPECT_EQ(sim.read("objects.txt"),
              "frame 2\n"
              "objects file=Custom Scenery/xpsim Demo Objects/objects/beacon.obj count=2 lighting=1 earth_relative=0 "
              "at=(1,2,3,0,90,0);(-10.5,0,250,5,180,-2)\n");
    EXPECT_NE(sim.simLog().find("xpsim: XPLMLoadObject: cannot open Custom Scenery/none.obj"), std::string::npos)
        << sim.simLog();
}

}  // namespace
