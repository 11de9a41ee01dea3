// The aircraft: the user's position coupled to the local frame, placement, the user's aircraft, the
// other aircraft and exclusive access to them, the load messages; and two real plugins competing
// for the aircraft in the xpsim program.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "SimTestSupport.h"
#include "XPLMDataAccess.h"
#include "XPLMGraphics.h"
#include "XPLMPlanes.h"
#include "XPLMPlugin.h"
#include "XPLMUtilities.h"
#include "world/Aircraft.h"
#include "world/Drawing.h"
#include "world/Position.h"

namespace {

using simtest::LogText;

const char* const kLatitude = "sim/flightmodel/position/latitude";
const char* const kLongitude = "sim/flightmodel/position/longitude";
const char* const kElevation = "sim/flightmodel/position/elevation";
const char* const kLocal[3] = {"sim/flightmodel/position/local_x", "sim/flightmodel/position/local_y",
                               "sim/flightmodel/position/local_z"};
const char* const kLatRef = "sim/flightmodel/position/lat_ref";
const char* const kLonRef = "sim/flightmodel/position/lon_ref";
const double kRadians = M_PI / 180.0;

// Messages the in-process plugins received: "<plugin> <message> [<param>]".
std::vector<std::string> gMessages;
// "<plugin> <refcon>" for each XPLMPlanesAvailable_f call.
std::vector<std::string> gTold;
bool gPlaceWhenAirportLoaded = false;
bool gAcquireWhenTold = false;

void ReceiveMessage(int from, int message, void* param) {
    const int plugin = xpsim::CurrentPlugin();
    const std::string value = std::to_string(reinterpret_cast<intptr_t>(param));
    std::string text = std::to_string(plugin) + " ";
    switch (message) {
        case XPLM_MSG_PLANE_LOADED: text += "loaded " + value; break;
        case XPLM_MSG_PLANE_UNLOADED: text += "unloaded " + value; break;
        case XPLM_MSG_AIRPORT_LOADED: text += "airport"; break;
        case XPLM_MSG_SCENERY_LOADED: text += "scenery"; break;
        default: text += std::to_string(message);
    }
    if (from != XPLM_PLUGIN_XPLANE) text += " from " + std::to_string(from);
    gMessages.push_back(text);
    if (message == XPLM_MSG_AIRPORT_LOADED && gPlaceWhenAirportLoaded) XPLMPlaceUserAtAirport("KRNT");
}

void Available(void* refcon) {
    gTold.push_back(std::to_string(xpsim::CurrentPlugin()) + " " + static_cast<const char*>(refcon));
    if (gAcquireWhenTold) XPLMAcquirePlanes(nullptr, Available, refcon);
}

char gRefA[] = "a", gRefB[] = "b", gRefC[] = "c";

class sim_Aircraft : public simtest::WorldTest {
protected:
    // The test data set (tests/data/xpsim-root: airports KSEA, KBFI, KRNT, W55, WA09 and a Baron 58),
    // the sim's datarefs and the start position.
    void SetUp() override {
        WorldTest::SetUp();
        std::filesystem::copy(std::string(TEST_DATA_DIR) + "/xpsim-root", root_,
                              std::filesystem::copy_options::recursive |
                                  std::filesystem::copy_options::overwrite_existing);
        xpsim::LoadStandardDataRefs();
        xpsim::StartAircraft();
        gMessages.clear();
        gTold.clear();
        gPlaceWhenAirportLoaded = gAcquireWhenTold = false;
    }

    int AddPlugin() {
        xpsim::PluginEntryPoints entry;
        entry.start = simtest::StartAsPlugin;
        entry.stop = [] {};
        entry.enable = [] { return 1; };
        entry.disable = [] {};
        entry.receiveMessage = ReceiveMessage;
        const int id = xpsim::AddPlugin("plugin.xpl", nullptr, entry);
        EXPECT_TRUE(xpsim::StartPlugin(id) && xpsim::EnablePlugin(id));
        return id;
    }

    static std::string Baron() { return xpsim::SystemPath() + "Aircraft/Laminar Research/Baron B58/Baron_58.acf"; }

    static double Get(const char* name) {
        XPLMDataRef ref = XPLMFindDataRef(name);
        EXPECT_NE(ref, nullptr) << name;
        return XPLMGetDataRefTypes(ref) == xplmType_Float ? XPLMGetDataf(ref) : XPLMGetDatad(ref);
    }
    static void Set(const char* name, double value) { XPLMSetDatad(XPLMFindDataRef(name), value); }
    static void SetAsSim(const char* name, double value) {
        char text[64];
        std::snprintf(text, sizeof text, "%.9f", value);
        std::string error;
        EXPECT_TRUE(xpsim::SetDataRefFromText(name, text, error)) << error;
    }
    static std::vector<double> Position() {
        return {Get(kLatitude), Get(kLongitude), Get(kElevation), Get(kLocal[0]), Get(kLocal[1]), Get(kLocal[2])};
    }

    // The datarefs agree with each other and with the local frame: lat_ref/lon_ref are the reference
    // point (exactly), and the local position is the world position's (within a centimetre).
    static void ExpectCoupled() {
        EXPECT_EQ(Get(kLatRef), xpsim::ReferenceLatitude());
        EXPECT_EQ(Get(kLonRef), xpsim::ReferenceLongitude());
        double x, y, z;
        XPLMWorldToLocal(Get(kLatitude), Get(kLongitude), Get(kElevation), &x, &y, &z);
        EXPECT_NEAR(x, Get(kLocal[0]), 0.01);
        EXPECT_NEAR(y, Get(kLocal[1]), 0.01);
        EXPECT_NEAR(z, Get(kLocal[2]), 0.01);
    }

    static std::string Model(int index) {
        char file[256] = "?", path[512] = "?";
        XPLMGetNthAircraftModel(index, file, path);
        return std::string(file) + " " + path;
    }

    static bool Logged(const std::string& line) { return LogText().find("xpsim: " + line + "\n") != std::string::npos; }
};

TEST_F(sim_Aircraft, StartsAtTheFirstAirportAndCouplesTheWorldAndLocalPositions) {
    // KSEA: the first airport of apt.dat, at its datum and its 433 ft, with the reference point there.
    EXPECT_EQ(xpsim::UserAirport(), "KSEA");
    EXPECT_NEAR(Get(kLatitude), 47.449889, 1e-9);
    EXPECT_NEAR(Get(kLongitude), -122.311778, 1e-9);
    EXPECT_NEAR(Get(kElevation), 433 * 0.3048, 1e-4);
    EXPECT_EQ(Get(kLatRef), double(47.449889f));
    EXPECT_EQ(Get(kLonRef), double(-122.311778f));
    EXPECT_NEAR(Get(kLocal[0]), 0.0, 1.0);
    EXPECT_NEAR(Get(kLocal[2]), 0.0, 1.0);
    EXPECT_NEAR(Get(kLocal[1]), 433 * 0.3048, 0.01);
    EXPECT_TRUE(Logged("the user's aircraft is at KSEA: 47.449889, -122.311778, elevation 131.98 m"));
    ExpectCoupled();

    // The datarefs exist without a DataRefs.txt, typed and writable as in X-Plane's list.
    const std::pair<const char*, XPLMDataTypeID> kinds[] = {{kLatitude, xplmType_Double}, {kLocal[1], xplmType_Double},
                                                            {kLatRef, xplmType_Float}};
    for (const auto& kind : kinds) EXPECT_EQ(XPLMGetDataRefTypes(XPLMFindDataRef(kind.first)), kind.second);
    EXPECT_EQ(XPLMCanWriteDataRef(XPLMFindDataRef(kLocal[0])), 1);
    EXPECT_EQ(XPLMCanWriteDataRef(XPLMFindDataRef(kLatitude)), 0);
    EXPECT_EQ(XPLMCanWriteDataRef(XPLMFindDataRef(kLonRef)), 0);

    const int plugin = AddPlugin();
    const std::vector<double> start = Position();
    {
        xpsim::PluginContext context(plugin);
        // 1000 m east along local x: the longitude grows by 1000 m on the latitude's circle.
        Set(kLocal[0], start[3] + 1000.0);
        const double east = 1000.0 / ((xpsim::kEarthRadius + start[2]) * std::cos(start[0] * kRadians)) / kRadians;
        EXPECT_NEAR(Get(kLongitude) - start[1], east, 1e-7);
        EXPECT_NEAR(Get(kLatitude), start[0], 1e-5);
        ExpectCoupled();
        // Plugins may not write the world position, nor anything that is not a number.
        XPLMSetDatad(XPLMFindDataRef(kLatitude), 10.0);
        Set(kLocal[2], NAN);
        EXPECT_NEAR(Get(kLatitude), start[0], 1e-5);
        EXPECT_EQ(Get(kLocal[2]), start[5]);
        EXPECT_TRUE(Logged("XPLMSetDatad: sim/flightmodel/position/latitude is read-only; the write is ignored"));
        EXPECT_TRUE(Logged("sim/flightmodel/position/local_z: nan is not a position; the aircraft stays where it is"));
    }

    // The sim writes the world position: 0.01 degrees north is about 1112 m towards -z.
    SetAsSim(kLatitude, start[0] + 0.01);
    EXPECT_NEAR(Get(kLocal[2]) - start[5], -0.01 * kRadians * (xpsim::kEarthRadius + start[2]), 1.0);
    ExpectCoupled();
    // Back through the local coordinates: the round trip comes home within a centimetre.
    for (int i = 0; i < 3; ++i) Set(kLocal[i], start[3 + i]);
    EXPECT_NEAR(Get(kLatitude), start[0], 1e-9);
    EXPECT_NEAR(Get(kLongitude), start[1], 1e-9);
    EXPECT_NEAR(Get(kElevation), start[2], 0.01);

    // The sim writing lat_ref moves the reference point; the aircraft stays where it is.
    SetAsSim(kLatRef, 47.5);
    EXPECT_EQ(xpsim::ReferenceLatitude(), 47.5);
    EXPECT_NEAR(Get(kLatitude), start[0], 1e-9);
    EXPECT_NEAR(Get(kLocal[2]), (47.5 - start[0]) * kRadians * xpsim::kEarthRadius, 5.0);
    ExpectCoupled();
    EXPECT_FALSE(xpsim::UpdateReferencePoint());
    EXPECT_TRUE(gMessages.empty());

    // More than 100 km away, the next frame moves the reference point under the aircraft and tells
    // the plugins that scenery was loaded.
    Set(kLocal[0], 150000.0);
    const std::vector<double> far = Position();
    EXPECT_TRUE(xpsim::UpdateReferencePoint());
    EXPECT_EQ(xpsim::ReferenceLatitude(), double(float(far[0])));
    EXPECT_EQ(xpsim::ReferenceLongitude(), double(float(far[1])));
    EXPECT_EQ(Get(kLongitude), far[1]);
    EXPECT_NEAR(Get(kLocal[0]), 0.0, 1.0);
    ExpectCoupled();
    EXPECT_EQ(gMessages, std::vector<std::string>{"1 scenery"});
    EXPECT_FALSE(xpsim::UpdateReferencePoint());

    // A loaded situation restores the local datarefs; the next frame's check follows them.
    ASSERT_EQ(XPLMSaveDataFile(xplm_DataFile_Situation, "Output/far.sit"), 1);
    Set(kLocal[0], Get(kLocal[0]) + 500.0);
    ASSERT_EQ(XPLMLoadDataFile(xplm_DataFile_Situation, "Output/far.sit"), 1);
    xpsim::UpdateReferencePoint();
    EXPECT_NEAR(Get(kLongitude), far[1], 1e-9);
    ExpectCoupled();
}

TEST_F(sim_Aircraft, PlacesTheUserAtAirportsAndSendsTheLoadMessages) {
    const int a = AddPlugin(), b = AddPlugin();
    xpsim::SendStartMessages();
    EXPECT_EQ(gMessages, (std::vector<std::string>{"1 loaded 0", "2 loaded 0", "1 airport", "2 airport", "1 scenery",
                                                   "2 scenery"}));
    gMessages.clear();

    {
        xpsim::PluginContext context(a);
        XPLMPlaceUserAtAirport("kbfi");  // IDs match in any case
    }
    EXPECT_EQ(gMessages, (std::vector<std::string>{"1 airport", "2 airport", "1 scenery", "2 scenery"}));
    // KBFI has no datum: it lies in the middle of its runway, at 21 ft, with the reference point there.
    EXPECT_EQ(xpsim::UserAirport(), "KBFI");
    EXPECT_NEAR(Get(kLatitude), 47.53, 1e-9);
    EXPECT_NEAR(Get(kLongitude), -122.305, 1e-9);
    EXPECT_NEAR(Get(kElevation), 21 * 0.3048, 1e-4);
    EXPECT_EQ(Get(kLatRef), double(47.53f));
    ExpectCoupled();

    // Unknown codes and null are reported; nothing moves and nobody is told.
    gMessages.clear();
    const std::vector<double> before = Position();
    {
        xpsim::PluginContext context(b);
        XPLMPlaceUserAtAirport("XXXX");
        XPLMPlaceUserAtAirport(nullptr);
        XPLMPlaceUserAtAirport(std::string(5000, 'K').c_str());
    }
    EXPECT_TRUE(
        Logged("XPLMPlaceUserAtAirport: no airport 'XXXX' in the navigation data; the aircraft stays where it is"));
    EXPECT_TRUE(Logged("XPLMPlaceUserAtAirport: null airport code"));
    EXPECT_EQ(Position(), before);
    EXPECT_TRUE(gMessages.empty());

    // A placement asked for while the plugins are being told of one is refused.
    gPlaceWhenAirportLoaded = true;
    XPLMPlaceUserAtAirport("W55");
    EXPECT_EQ(xpsim::UserAirport(), "W55");
    EXPECT_TRUE(Logged("XPLMPlaceUserAtAirport: called while the plugins are being told of a load; ignored"));
}

TEST_F(sim_Aircraft, WithoutAirportsTheUserStartsAtTheDefaultPosition) {
    xpsim::ResetWorld();
    const simtest::TempDir empty;
    std::string error;
    ASSERT_TRUE(xpsim::PrepareRoot(empty.path(), error)) << error;
    xpsim::StartLog();
    xpsim::LoadStandardDataRefs();
    xpsim::StartAircraft();
    EXPECT_EQ(xpsim::UserAirport(), "");
    EXPECT_EQ(Get(kLatitude), xpsim::kDefaultStartLatitude);
    EXPECT_EQ(Get(kLongitude), xpsim::kDefaultStartLongitude);
    EXPECT_TRUE(
        Logged("the user's aircraft is at xpsim's default position: 47.449889, -122.311778, elevation 131.98 m"));
    ExpectCoupled();
    // Without airports a new aircraft stays where the user is.
    XPLMSetUsersAircraft(xpsim::UserAircraftFolder().append(xpsim::UserAircraftFile()).c_str());
    EXPECT_EQ(Get(kLatitude), xpsim::kDefaultStartLatitude);
}

TEST_F(sim_Aircraft, TheUsersAircraftChangesFromFullPathsAndReloads) {
    const int plugin = AddPlugin();
    const std::string cessna = "Cessna_172SP.acf " + xpsim::UserAircraftFolder() + "Cessna_172SP.acf";
    EXPECT_EQ(Model(0), cessna);

    const std::pair<std::string, std::string> refused[] = {
        {"Aircraft/Laminar Research/Baron B58/Baron_58.acf",
         "'Aircraft/Laminar Research/Baron B58/Baron_58.acf' is not a full path (aircraft paths are full file "
         "system paths: start from XPLMGetSystemPath)"},
        {xpsim::SystemPath() + "Aircraft/none.acf", "no aircraft file " + xpsim::SystemPath() + "Aircraft/none.acf"},
        {xpsim::SystemPath() + "Log.txt", "'" + xpsim::SystemPath() + "Log.txt' is not an .acf file"},
        {"/" + std::string(600, 'a') + ".acf", "the aircraft path is longer than 511 bytes"},
    };
    {
        xpsim::PluginContext context(plugin);
        for (const auto& entry : refused) {
            XPLMSetUsersAircraft(entry.first.c_str());
            EXPECT_TRUE(Logged("XPLMSetUsersAircraft: " + entry.second)) << entry.first;
        }
        XPLMSetUsersAircraft(nullptr);
        EXPECT_TRUE(Logged("XPLMSetUsersAircraft: null aircraft path"));
    }
    EXPECT_EQ(Model(0), cessna);
    EXPECT_TRUE(gMessages.empty());

    // A new aircraft starts on the nearest airport: from near Kenmore that is W55.
    SetAsSim(kLatitude, 47.75);
    SetAsSim(kLongitude, -122.27);
    XPLMSetUsersAircraft(Baron().c_str());
    EXPECT_EQ(gMessages, (std::vector<std::string>{"1 unloaded 0", "1 loaded 0", "1 airport", "1 scenery"}));
    EXPECT_EQ(Model(0), "Baron_58.acf " + Baron());
    EXPECT_EQ(xpsim::UserAirport(), "W55");
    EXPECT_EQ(Get(kLatRef), double(47.762f));
    ExpectCoupled();

    // Reinitialising reloads the same aircraft where it is; SDK 1.02 knows no unload message.
    gMessages.clear();
    const std::vector<double> before = Position();
    XPLMReinitUsersPlane();
    xpsim::SetSdkLevel(102);
    XPLMReinitUsersPlane();
    EXPECT_EQ(gMessages, (std::vector<std::string>{"1 unloaded 0", "1 loaded 0", "1 loaded 0"}));
    EXPECT_EQ(Position(), before);
    EXPECT_EQ(Model(0), "Baron_58.acf " + Baron());
}

TEST_F(sim_Aircraft, OnePluginAtATimeHoldsTheOtherAircraft) {
    const int a = AddPlugin(), b = AddPlugin(), c = AddPlugin();
    const std::string cessna = "Cessna_172SP.acf " + xpsim::UserAircraftFolder() + "Cessna_172SP.acf";
    int total = -1, active = -1, controller = 99;
    XPLMCountAircraft(&total, &active, &controller);
    EXPECT_EQ(total, 20);
    EXPECT_EQ(active, 1);
    EXPECT_EQ(controller, XPLM_NO_PLUGIN_ID);
    XPLMCountAircraft(nullptr, nullptr, nullptr);
    EXPECT_EQ(Model(19), cessna);
    EXPECT_EQ(Model(20), " ");
    EXPECT_EQ(Model(-1), " ");
    EXPECT_TRUE(Logged("XPLMGetNthAircraftModel: aircraft index 20 is not between 0 and 19"));

    const std::string baron = Baron();
    char empty[] = "";
    char* list[] = {empty, const_cast<char*>(baron.c_str()), nullptr};
    {
        // A takes them; its list loads the Baron into aircraft 2 and leaves aircraft 1 alone.
        xpsim::PluginContext context(a);
        EXPECT_EQ(XPLMAcquirePlanes(list, Available, gRefA), 1);
        EXPECT_EQ(XPLMAcquirePlanes(nullptr, nullptr, nullptr), 1);  // again: still A's
        XPLMSetActiveAircraftCount(50);
        XPLMSetActiveAircraftCount(0);
        XPLMSetAircraftModel(0, baron.c_str());
        XPLMSetAircraftModel(20, baron.c_str());
        XPLMSetAircraftModel(3, (xpsim::SystemPath() + "Aircraft/none.acf").c_str());
        XPLMSetAircraftModel(4, baron.c_str());
        XPLMDisableAIForPlane(4);
        XPLMDisableAIForPlane(-2);
    }
    EXPECT_EQ(gMessages, (std::vector<std::string>{"1 unloaded 2", "2 unloaded 2", "3 unloaded 2", "1 loaded 2",
                                                   "2 loaded 2", "3 loaded 2", "1 unloaded 4", "2 unloaded 4",
                                                   "3 unloaded 4", "1 loaded 4", "2 loaded 4", "3 loaded 4"}));
    EXPECT_EQ(Model(1), cessna);
    EXPECT_EQ(Model(2), "Baron_58.acf " + baron);
    EXPECT_EQ(Model(3), cessna);
    EXPECT_EQ(Model(4), "Baron_58.acf " + baron);
    XPLMCountAircraft(&total, &active, &controller);
    EXPECT_EQ(active, 20);  // bounded to the total
    EXPECT_EQ(controller, a);
    EXPECT_TRUE(xpsim::AircraftAIDisabled(4));
    for (const char* line : {"XPLMSetActiveAircraftCount: count 0: the user's aircraft is always active",
                             "XPLMSetAircraftModel: aircraft 0 is the user's: use XPLMSetUsersAircraft",
                             "XPLMSetAircraftModel: aircraft index 20 is not between 1 and 19",
                             "XPLMDisableAIForPlane: aircraft index -2 is not between 0 and 19"})
        EXPECT_TRUE(Logged(line)) << line;

    {
        // B waits; C neither gets them nor waits; neither may act on them.
        xpsim::PluginContext context(b);
        EXPECT_EQ(XPLMAcquirePlanes(nullptr, Available, gRefB), 0);
        XPLMSetActiveAircraftCount(2);
        XPLMReleasePlanes();
    }
    {
        xpsim::PluginContext context(c);
        EXPECT_EQ(XPLMAcquirePlanes(nullptr, nullptr, nullptr), 0);
    }
    EXPECT_TRUE(Logged("XPLMSetActiveAircraftCount: plugin 2 does not hold the aircraft (plugin 1 holds them)"));
    EXPECT_TRUE(Logged("XPLMReleasePlanes: plugin 2 does not hold the aircraft (plugin 1 does)"));
    EXPECT_EQ(xpsim::ActiveAircraftCount(), 20);
    EXPECT_TRUE(gTold.empty());

    // A lets go: B is told in its own context and takes them; the sim flies them again.
    gAcquireWhenTold = true;
    {
        xpsim::PluginContext context(a);
        XPLMReleasePlanes();
        EXPECT_EQ(XPLMAcquirePlanes(nullptr, Available, gRefA), 0);  // now A waits
    }
    EXPECT_EQ(gTold, std::vector<std::string>{"2 b"});
    EXPECT_EQ(xpsim::AircraftController(), b);
    EXPECT_FALSE(xpsim::AircraftAIDisabled(4));

    // B is disabled: it loses them, and A (waiting) gets them. When A is unloaded nobody holds them.
    xpsim::DisablePlugin(b);
    EXPECT_EQ(gTold, (std::vector<std::string>{"2 b", "1 a"}));
    EXPECT_EQ(xpsim::AircraftController(), a);
    EXPECT_TRUE(Logged("plugin 2 loses the aircraft (disabled or unloaded)"));
    xpsim::RemovePlugin(a);
    EXPECT_EQ(xpsim::AircraftController(), XPLM_NO_PLUGIN_ID);
    EXPECT_EQ(gTold.size(), 2u);

    // Waiters are told in the order they asked, until one takes them; the others wait on.
    gAcquireWhenTold = false;
    const int d = AddPlugin(), e = AddPlugin();
    {
        xpsim::PluginContext context(c);
        EXPECT_EQ(XPLMAcquirePlanes(nullptr, nullptr, nullptr), 1);
    }
    for (int waiter : {d, e}) {
        xpsim::PluginContext context(waiter);
        EXPECT_EQ(XPLMAcquirePlanes(nullptr, Available, gRefC), 0);
    }
    {
        xpsim::PluginContext context(c);
        XPLMReleasePlanes();
    }
    EXPECT_EQ(gTold, (std::vector<std::string>{"2 b", "1 a", "4 c", "5 c"}));
    EXPECT_EQ(xpsim::AircraftController(), XPLM_NO_PLUGIN_ID);

    // A list longer than the 19 other aircraft is cut and reported.
    std::vector<char*> longList(25, empty);
    longList.back() = nullptr;
    {
        xpsim::PluginContext context(d);
        EXPECT_EQ(XPLMAcquirePlanes(longList.data(), nullptr, nullptr), 1);
    }
    EXPECT_TRUE(Logged("XPLMAcquirePlanes: the list names more than 19 aircraft; the rest are left out"));
}

TEST_F(sim_Aircraft, DrawingAnAircraftAddsALineToTheFrame) {
    XPLMPlaneDrawState_t full = {int(sizeof(XPLMPlaneDrawState_t)), 0.5f, 0.25f, 0.1f, 0.2f, 0.3f, 0.4f, 0.9f,
                                 -1.0f, 0.5f, 1.0f};
    XPLMDrawAircraft(1, 10.0f, 2.5f, -30.0f, 5.0f, -10.0f, 270.0f, 1, &full);
    // An older draw state has fewer fields; without one the gear is down and all else at rest.
    XPLMPlaneDrawState_t shorter = full;
    shorter.structSize = int(offsetof(XPLMPlaneDrawState_t, spoilerRatio));
    XPLMDrawAircraft(2, 0, 0, 0, 0, 0, 0, 0, &shorter);
    XPLMDrawAircraft(0, 0, 0, 0, 0, 0, 0, 7, nullptr);
    XPLMDrawAircraft(20, 0, 0, 0, 0, 0, 0, 1, nullptr);
    EXPECT_EQ(xpsim::DrawingThisFrame(),
              (std::vector<std::string>{
                  "aircraft index=1 model=Cessna_172SP.acf x=10.00 y=2.50 z=-30.00 pitch=5.00 roll=-10.00 yaw=270.00 "
                  "full=1 gear=0.50 flaps=0.25 spoilers=0.10 speedbrake=0.20 slats=0.30 sweep=0.40 thrust=0.90 "
                  "yoke=-1.00,0.50,1.00",
                  "aircraft index=2 model=Cessna_172SP.acf x=0.00 y=0.00 z=0.00 pitch=0.00 roll=0.00 yaw=0.00 full=0 "
                  "gear=0.50 flaps=0.25 spoilers=0.00 speedbrake=0.00 slats=0.00 sweep=0.00 thrust=0.00 "
                  "yoke=0.00,0.00,0.00",
                  "aircraft index=0 model=Cessna_172SP.acf x=0.00 y=0.00 z=0.00 pitch=0.00 roll=0.00 yaw=0.00 full=1 "
                  "gear=1.00 flaps=0.00 spoilers=0.00 speedbrake=0.00 slats=0.00 sweep=0.00 thrust=0.00 "
                  "yoke=0.00,0.00,0.00"}));
    EXPECT_TRUE(Logged("XPLMDrawAircraft: aircraft index 20 is not between 0 and 19"));
}

// ------------------------------------------------------------------ in the xpsim program

std::string PlanesPlugin(const char* which) {
#if defined(XPSIM_PLANES_A) && defined(XPSIM_PLANES_B)
    return which[0] == 'a' ? XPSIM_PLANES_A : XPSIM_PLANES_B;
#else
    return "";
#endif
}

TEST(sim_AircraftProgram, TwoPluginsCompeteForTheAircraftAndSeeTheLoadMessages) {
    if (PlanesPlugin("a").empty()) GTEST_SKIP() << "the planes plugins were not built";
    const simtest::TempDir temp;
    const std::string root = temp.path() + "/root";
    std::filesystem::copy(std::string(TEST_DATA_DIR) + "/xpsim-root", root, std::filesystem::copy_options::recursive);
    simtest::WriteFile(temp.path() + "/events.txt",
                       "0.5 message xpsim.tests.planes.a 0x7E570101 0   # a releases\n"
                       "0.6 message xpsim.tests.planes.b 0x7E570102 0   # b places the user at KBFI\n");
    const auto run = simtest::RunXpsim({"run", "--root", root, "--plugin", PlanesPlugin("a"), "--plugin",
                                        PlanesPlugin("b"), "--seconds", "1", "--events", temp.path() + "/events.txt"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out,
              "planes-a: start as plugin 1\n"
              "planes-b: start as plugin 2\n"
              // A loads the Baron while it is being enabled: no plugin is enabled yet to be told.
              "planes-a: enable\n"
              "planes-a: acquire answers 1; controller 1 of 20 (1 active)\n"
              "planes-b: enable\n"
              "planes-b: acquire answers 0; controller 1 of 20 (1 active)\n"
              // The start, once both are enabled.
              "planes-a: message 102 from 0 param 0\n"
              "planes-a: aircraft 0 is Cessna_172SP.acf\n"
              "planes-b: message 102 from 0 param 0\n"
              "planes-b: aircraft 0 is Cessna_172SP.acf\n"
              "planes-a: message 103 from 0 param 0\n"
              "planes-a: at latitude 47.449889, reference 47.449890\n"
              "planes-b: message 103 from 0 param 0\n"
              "planes-b: at latitude 47.449889, reference 47.449890\n"
              "planes-a: message 104 from 0 param 0\n"
              "planes-b: message 104 from 0 param 0\n"
              // A releases: B is told in its own context and takes them.
              "planes-a: message 2119631105 from 0 param 0\n"
              "planes-b: aircraft available, told in plugin 2 with refcon planes-refcon\n"
              "planes-b: acquire answers 1; controller 2 of 20 (1 active)\n"
              "planes-a: released; controller 2 of 20 (1 active)\n"
              // B places the user at KBFI.
              "planes-b: message 2119631106 from 0 param 0\n"
              "planes-a: message 103 from 0 param 0\n"
              "planes-a: at latitude 47.530000, reference 47.529999\n"
              "planes-b: message 103 from 0 param 0\n"
              "planes-b: at latitude 47.530000, reference 47.529999\n"
              "planes-a: message 104 from 0 param 0\n"
              "planes-b: message 104 from 0 param 0\n"
              "planes-a: disable; controller 2 of 20 (1 active)\n"
              "planes-b: disable; controller 2 of 20 (1 active)\n"
              "planes-a: stop\n"
              "planes-b: stop\n");
    const std::string log = simtest::ReadFile(root + "/Log.txt");
    for (const std::string line : {"aircraft 2 is now " + std::filesystem::canonical(root).string() +
                                       "/Aircraft/Laminar Research/Baron B58/Baron_58.acf",
                                   std::string("plugin 2 cannot have the aircraft: plugin 1 holds them; it waits"),
                                   std::string("plugin 2 loses the aircraft (disabled or unloaded)")})
        EXPECT_NE(log.find("xpsim: " + line + "\n"), std::string::npos) << line << "\n" << log;
}

}  // namespace
