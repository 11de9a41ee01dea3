// The navigation database read from the simulator's data files, its searches, the FMS and the GPS.
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "SimTestSupport.h"
#include "XPLMNavigation.h"
#include "world/Navigation.h"

namespace {

using simtest::LogText;

const std::string kNavFile = "Resources/default data/earth_nav.dat";
const std::string kFixFile = "Resources/default data/earth_fix.dat";
const std::string kAptFile = "Resources/default scenery/default apt dat/Earth nav data/apt.dat";
constexpr XPLMNavType kAllTypes = 0xffff;

class sim_Navigation : public simtest::WorldTest {
protected:
    // Copies the test data set (tests/data/xpsim-root) into the root.
    void InstallData() {
        std::filesystem::copy(std::string(TEST_DATA_DIR) + "/xpsim-root", root_,
                              std::filesystem::copy_options::recursive |
                                  std::filesystem::copy_options::overwrite_existing);
    }
    bool Logged(const std::string& line) { return LogText().find("xpsim: " + line + "\n") != std::string::npos; }
};

// "type ID 'name' frequency heading" of a database entry.
std::string Describe(XPLMNavRef ref) {
    XPLMNavType type = -1;
    int frequency = -1;
    float heading = -1;
    char id[32] = "?", name[256] = "?", text[400];
    XPLMGetNavAidInfo(ref, &type, nullptr, nullptr, nullptr, &frequency, &heading, id, name, nullptr);
    std::snprintf(text, sizeof text, "%d %s '%s' %d %g", type, id, name, frequency, heading);
    return text;
}

std::vector<std::string> Database() {
    std::vector<std::string> entries;
    for (XPLMNavRef ref = XPLMGetFirstNavAid(); ref != XPLM_NAV_NOT_FOUND; ref = XPLMGetNextNavAid(ref))
        entries.push_back(Describe(ref));
    return entries;
}

// The data set, in the database's order: airports, NDBs, VORs, ILS parts, fixes, DMEs.
const std::vector<std::string> kDataSet = {
    "1 KSEA 'Seattle-Tacoma Intl' 0 0", "1 KBFI 'Boeing Fld King Co Intl' 0 0", "1 KRNT 'Renton Muni' 0 0",
    "1 W55 'Kenmore Air Harbor' 0 0", "1 WA09 'Harborview Heliport' 0 0", "2 BF 'NOLLA NDB' 362 0",
    "2 SZ 'SEAGO NDB' 278 0", "4 SEA 'SEATTLE VORTAC' 11680 19", "4 PAE 'PAINE VOR/DME' 11060 20",
    "4 OLM 'OLYMPIA VORTAC' 11340 19", "8 ISZI 'KSEA 16R ILS-cat-I' 11030 180", "16 IBFI 'KBFI 14R LOC' 10990 135.5",
    "32 ISZI 'KSEA 16R GS' 11030 180", "64  'KSEA 16R OM' 0 180", "128  'KSEA 16R MM' 0 180",
    "256  'KSEA 16R IM' 0 180", "512 ALKIS 'ALKIS' 0 0", "512 HAWKZ 'HAWKZ' 0 0", "512 EDDEE 'EDDEE' 0 0",
    "512 MARNR 'MARNR' 0 0", "512 SUMMA 'SUMMA' 0 0", "1024 SEA 'SEATTLE VORTAC DME' 11680 0",
    "1024 ISZI 'KSEA 16R DME-ILS' 11030 0", "1024 BRM 'BREMERTON DME' 11300 0"};

XPLMNavRef Find(const char* id, XPLMNavType type) { return XPLMFindNavAid(nullptr, id, nullptr, nullptr, nullptr, type); }

}  // namespace

TEST_F(sim_Navigation, BothNavaidLayoutsFixesAndAirportsMakeOneDatabaseWithEachTypeInOneRun) {
    InstallData();
    EXPECT_EQ(Database(), kDataSet);
    EXPECT_TRUE(Logged("navigation data: 5 airports from " + xpsim::SystemPath() + kAptFile));
    EXPECT_TRUE(Logged("navigation data: 14 navaids from " + xpsim::SystemPath() + kNavFile));
    EXPECT_TRUE(Logged("navigation data: 5 fixes from " + xpsim::SystemPath() + kFixFile));

    // Heights in metres; airports sit on their datum or in the middle of their runways and helipads.
    struct Place { XPLMNavRef ref; float latitude, longitude, height; };
    for (const Place& p : {Place{0, 47.449889f, -122.311778f, 131.9784f}, Place{1, 47.53f, -122.305f, 6.4008f},
                           Place{3, 47.762f, -122.259f, 0.0f}, Place{4, 47.604f, -122.324f, 15.24f},
                           Place{7, 47.435389f, -122.309611f, 107.8992f}, Place{17, 47.388889f, -122.35f, 0.0f}}) {
        float latitude = 0, longitude = 0, height = -1;
        XPLMGetNavAidInfo(p.ref, nullptr, &latitude, &longitude, &height, nullptr, nullptr, nullptr, nullptr, nullptr);
        EXPECT_NEAR(latitude, p.latitude, 1e-5) << p.ref;
        EXPECT_NEAR(longitude, p.longitude, 1e-5) << p.ref;
        EXPECT_NEAR(height, p.height, 1e-3) << p.ref;
    }

    struct Run { XPLMNavType type; XPLMNavRef first, last; };
    for (const Run& run : {Run{xplm_Nav_Airport, 0, 4}, Run{xplm_Nav_NDB, 5, 6}, Run{xplm_Nav_VOR, 7, 9},
                           Run{xplm_Nav_ILS, 10, 10}, Run{xplm_Nav_Localizer, 11, 11}, Run{xplm_Nav_InnerMarker, 15, 15},
                           Run{xplm_Nav_Fix, 16, 20}, Run{xplm_Nav_DME, 21, 23}, Run{xplm_Nav_LatLon, -1, -1}}) {
        EXPECT_EQ(XPLMFindFirstNavAidOfType(run.type), run.first) << run.type;
        EXPECT_EQ(XPLMFindLastNavAidOfType(run.type), run.last) << run.type;
    }
    EXPECT_EQ(XPLMGetNextNavAid(23), XPLM_NAV_NOT_FOUND);
    EXPECT_EQ(XPLMGetNextNavAid(XPLM_NAV_NOT_FOUND), XPLM_NAV_NOT_FOUND);
    EXPECT_EQ(XPLMFindFirstNavAidOfType(xplm_Nav_VOR | xplm_Nav_NDB), XPLM_NAV_NOT_FOUND);
    EXPECT_TRUE(Logged("XPLMFindFirstNavAidOfType: type 6 is not exactly one navaid type"));
    EXPECT_EQ(XPLMFindLastNavAidOfType(0), XPLM_NAV_NOT_FOUND);
    EXPECT_TRUE(Logged("XPLMFindLastNavAidOfType: type 0 is not exactly one navaid type"));

    // The same navaids in the 810 layout make the same database.
    std::filesystem::copy_file(std::string(TEST_DATA_DIR) + "/earth_nav_810.dat", root_ + "/" + kNavFile,
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(xpsim::LoadNavigationData(), 24);
    EXPECT_EQ(Database(), kDataSet);
}

TEST_F(sim_Navigation, MalformedRowsAreReportedWithFileAndLineAndSkipped) {
    struct Case { std::string file, text, report; int kept; };
    const std::string nav = "I\n1100 Version\n", fix = "I\n1101 Version\n", apt = "I\n1000 Version\n";
    const std::string vor = "3 47.4 -122.3 354 11680 130 19.0 SEA ENRT K1 SEATTLE VORTAC\n";
    const std::string airport = "1 21 1 0 KBFI Boeing Field\n102 H1 47.5 -122.3 0 10 10 1 0 0 0.25 0\n";
    const Case cases[] = {
        {kNavFile, nav + "3 47.4 -122.3 354 11680 130 19.0 SEA ENRT K1\n" + vor + "99\n",
         " line 3: VOR row has 10 fields, needs 11; row skipped", 1},
        {kNavFile, nav + "2 95.0 -122.3 20 362 25 0.0 BF ENRT K1 NOLLA NDB\n" + vor + "99\n",
         " line 3: bad latitude '95.0'; row skipped", 1},
        {kNavFile, nav + vor + "3 47.4 -122.3 354 116.80 130 19.0 SEA ENRT K1 SEATTLE VORTAC\n99\n",
         " line 4: bad frequency '116.80'; row skipped", 1},
        {kNavFile, nav + "6 47.4 -122.3 400 11030 10 3deg ISZI KSEA K1 16R GS\n" + vor + "99\n",
         " line 3: bad course '3deg'; row skipped", 1},
        {kNavFile, nav + "\n11 47.4 -122.3 0 0 0 0 X ENRT K1 X\nX 1\n" + vor + "99\n",
         " line 4: unknown row code 11; row skipped", 1},
        {kNavFile, nav + "X 1\n" + vor + "99\n", " line 3: row code 'X' is not a number; row skipped", 1},
        {kNavFile, "I\n810 Version\n14 47.4 -122.3 380 61010 0.0 180.0 R16RY KSEA 16R LPV\n99\n",
         " line 3: unknown row code 14; row skipped", 0},
        {kNavFile, "I\n740 Version\n" + vor, ": version 740 is not one xpsim reads; file not read", 0},
        {kNavFile, "I\nnavaids\n" + vor, " line 2: no '<number> Version' header; file not read", 0},
        {kNavFile, "I\n", ": no version line; file not read", 0},
        {kNavFile, nav + vor, ": ends without its closing 99 row", 1},
        {kFixFile, fix + "47.5 -122.3\n47.5 -122.3 ALKIS ENRT K1 0\n99\n",
         " line 3: fix row has 2 fields, needs 5; row skipped", 1},
        {kFixFile, fix + "47.5 -190.0 ALKIS ENRT K1 0\n99\n", " line 3: bad longitude '-190.0'; row skipped", 0},
        {kAptFile, apt + "1 high 1 0 KSEA Seattle\n100 45 1 0 0.25 1 2 1\n" + airport + "99\n",
         " line 3: bad elevation 'high'; row skipped", 1},
        {kAptFile, apt + airport + "100 45 1 0 0.25 1 2 1 16L 47.46 -122.30\n99\n",
         " line 5: runway row has 11 fields, needs 20; row skipped", 1},
        {kAptFile, apt + airport + "1302 datum_lat 123\n99\n", " line 5: bad latitude '123'; row skipped", 1},
        {kAptFile, apt + "1 0 0 0 XNOP Nowhere\n" + airport + "99\n",
         " line 3: airport XNOP has no runway, helipad or datum to place it; left out", 1},
    };
    for (const Case& c : cases) {
        for (const std::string& file : {kNavFile, kFixFile, kAptFile}) std::filesystem::remove(root_ + "/" + file);
        std::filesystem::create_directories(std::filesystem::path(root_ + "/" + c.file).parent_path());
        simtest::WriteFile(root_ + "/" + c.file, c.text);
        EXPECT_EQ(xpsim::LoadNavigationData(), c.kept) << c.report;
        EXPECT_TRUE(Logged(xpsim::SystemPath() + c.file + c.report)) << c.report;
    }
}

TEST_F(sim_Navigation, MissingFilesGiveAnEmptyDatabaseAndAnotherRootIsReadAfresh) {
    EXPECT_EQ(XPLMGetFirstNavAid(), XPLM_NAV_NOT_FOUND);
    EXPECT_EQ(XPLMFindFirstNavAidOfType(xplm_Nav_Airport), XPLM_NAV_NOT_FOUND);
    EXPECT_EQ(XPLMFindNavAid(nullptr, nullptr, nullptr, nullptr, nullptr, kAllTypes), XPLM_NAV_NOT_FOUND);
    for (const std::string& file : {kNavFile, kFixFile, kAptFile})
        EXPECT_TRUE(Logged("navigation data: no " + xpsim::SystemPath() + file)) << file;

    const std::string empty = root_;
    root_ += "/with-data";
    std::string error;
    ASSERT_TRUE(xpsim::PrepareRoot(root_, error)) << error;
    InstallData();
    EXPECT_EQ(Database(), kDataSet);
    XPLMSetFMSEntryInfo(0, 0, 1000);
    EXPECT_EQ(XPLMCountFMSEntries(), 1);

    // Back in the empty root: no navaids, and the FMS no longer holds the other database's airport.
    ASSERT_TRUE(xpsim::PrepareRoot(empty, error)) << error;
    EXPECT_EQ(XPLMGetFirstNavAid(), XPLM_NAV_NOT_FOUND);
    EXPECT_EQ(XPLMCountFMSEntries(), 0);
}

TEST_F(sim_Navigation, FindNavAidMatchesFragmentsPositionFrequencyAndTypes) {
    InstallData();
    struct Case { const char *name, *id; bool position; float latitude, longitude; bool tuned; int frequency;
                  XPLMNavType types; XPLMNavRef expected; };
    const Case cases[] = {
        {nullptr, "SEA", false, 0, 0, false, 0, xplm_Nav_VOR, 7},
        {nullptr, "SEA", false, 0, 0, false, 0, kAllTypes, 21},  // the last match: the VOR's DME
        {"seattle", nullptr, false, 0, 0, false, 0, xplm_Nav_Airport, 0},
        {"Intl", nullptr, false, 0, 0, false, 0, xplm_Nav_Airport, 1},
        {"Intl", nullptr, true, 47.45f, -122.31f, false, 0, xplm_Nav_Airport, 0},  // nearest, not last
        {nullptr, nullptr, true, 47.9f, -122.28f, false, 0, xplm_Nav_VOR | xplm_Nav_NDB, 8},
        {"16R", "isz", false, 0, 0, false, 0, xplm_Nav_GlideSlope | xplm_Nav_OuterMarker, 12},
        {nullptr, nullptr, true, 47.4311f, -122.3212f, true, 11030, kAllTypes & ~xplm_Nav_Airport, 10},
        {nullptr, nullptr, false, 0, 0, true, 11030, xplm_Nav_Fix, 20},  // fixes pass any frequency
        {nullptr, nullptr, false, 0, 0, true, 0, xplm_Nav_OuterMarker | xplm_Nav_InnerMarker, -1},
        {nullptr, nullptr, false, 0, 0, true, 362, xplm_Nav_NDB, 5},
        {nullptr, nullptr, false, 0, 0, true, 36200, xplm_Nav_NDB, -1},  // NDBs are in kHz
        {nullptr, nullptr, true, 47.4354f, -122.3096f, true, 11680, xplm_Nav_VOR | xplm_Nav_DME, 7},  // tie: first
        {nullptr, "zz", false, 0, 0, false, 0, kAllTypes, -1},
        {nullptr, nullptr, false, 0, 0, false, 0, 0, -1},
    };
    for (const Case& c : cases) {
        float latitude = c.latitude, longitude = c.longitude;
        int frequency = c.frequency;
        EXPECT_EQ(XPLMFindNavAid(c.name, c.id, c.position ? &latitude : nullptr, c.position ? &longitude : nullptr,
                                 c.tuned ? &frequency : nullptr, c.types),
                  c.expected)
            << (c.name ? c.name : "-") << " " << (c.id ? c.id : "-") << " " << c.frequency << " " << c.types;
    }
    // A latitude without a longitude is no position: the last match.
    float latitude = 47.53f;
    EXPECT_EQ(XPLMFindNavAid(nullptr, nullptr, &latitude, nullptr, nullptr, xplm_Nav_NDB), 6);
}

TEST_F(sim_Navigation, NavAidInfoFillsWhatIsAskedForWithinTheSdkBufferSizes) {
    InstallData();
    XPLMGetNavAidInfo(7, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    char reg[2] = {'x', 'x'};
    XPLMGetNavAidInfo(7, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, reg);
    EXPECT_EQ(reg[0], 0);
    EXPECT_EQ(reg[1], 'x');  // one byte, not a string

    XPLMNavType type = 7;
    char id[8] = "?";
    XPLMGetNavAidInfo(24, &type, nullptr, nullptr, nullptr, nullptr, nullptr, id, nullptr, nullptr);
    EXPECT_EQ(type, xplm_Nav_Unknown);
    EXPECT_STREQ(id, "");
    EXPECT_TRUE(Logged("XPLMGetNavAidInfo: no navaid 24"));

    // IDs are copied into 32 bytes and names into 256, cut when longer.
    const std::string longId(40, 'I'), longName(300, 'N');
    simtest::WriteFile(root_ + "/" + kNavFile,
                       "I\n810 Version\n2 47.5 -122.3 20 362 25 0.0 " + longId + " " + longName + "\n99\n");
    ASSERT_EQ(xpsim::LoadNavigationData(), 11);
    std::vector<char> idBuffer(40, 'x'), nameBuffer(300, 'x');
    XPLMGetNavAidInfo(5, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, idBuffer.data(), nameBuffer.data(),
                      nullptr);
    EXPECT_EQ(std::string(idBuffer.data()), longId.substr(0, 31));
    EXPECT_EQ(idBuffer[32], 'x');
    EXPECT_EQ(std::string(nameBuffer.data()), longName.substr(0, 255));
    EXPECT_EQ(nameBuffer[256], 'x');
}

TEST_F(sim_Navigation, FmsEntriesAreSetReadClearedAndGuardedAgainstBadIndices) {
    InstallData();
    struct Entry { XPLMNavType type; std::string id; XPLMNavRef ref; int altitude; float latitude, longitude; };
    auto entry = [](int index) {
        Entry e{-1, "?", -2, -1, -1, -1};
        char id[32] = "?";
        XPLMGetFMSEntryInfo(index, &e.type, id, &e.ref, &e.altitude, &e.latitude, &e.longitude);
        e.id = id;
        return e;
    };
    auto expect = [&](int index, const Entry& want) {
        const Entry got = entry(index);
        EXPECT_EQ(got.type, want.type) << index;
        EXPECT_EQ(got.id, want.id) << index;
        EXPECT_EQ(got.ref, want.ref) << index;
        EXPECT_EQ(got.altitude, want.altitude) << index;
        EXPECT_NEAR(got.latitude, want.latitude, 1e-5) << index;
        EXPECT_NEAR(got.longitude, want.longitude, 1e-5) << index;
    };
    const Entry empty{xplm_Nav_Unknown, "", XPLM_NAV_NOT_FOUND, 0, 0, 0};
    EXPECT_EQ(XPLMCountFMSEntries(), 0);
    expect(0, empty);

    XPLMSetFMSEntryInfo(0, Find("KSEA", xplm_Nav_Airport), 0);
    XPLMSetFMSEntryInfo(1, Find("SEA", xplm_Nav_VOR), 5000);
    XPLMSetFMSEntryLatLon(2, 47.6f, -122.5f, 7000);
    XPLMSetFMSEntryInfo(3, Find("ALKIS", xplm_Nav_Fix), 3000);
    XPLMSetFMSEntryInfo(4, Find("ISZI", xplm_Nav_ILS), 2000);
    XPLMSetFMSEntryInfo(4, 99, 2000);
    XPLMSetFMSEntryLatLon(4, 91.0f, 0.0f, 2000);
    EXPECT_EQ(XPLMCountFMSEntries(), 4);
    expect(1, {xplm_Nav_VOR, "SEA", 7, 5000, 47.435389f, -122.309611f});
    expect(2, {xplm_Nav_LatLon, "", XPLM_NAV_NOT_FOUND, 7000, 47.6f, -122.5f});
    expect(3, {xplm_Nav_Fix, "ALKIS", 16, 3000, 47.541861f, -122.326167f});
    EXPECT_TRUE(Logged("XPLMSetFMSEntryInfo: navaid 10 (ILS localizer) is not an airport, fix, VOR or NDB"));
    EXPECT_TRUE(Logged("XPLMSetFMSEntryInfo: no navaid 99"));
    EXPECT_TRUE(Logged("XPLMSetFMSEntryLatLon: latitude 91, longitude 0 is not a point on the earth"));

    XPLMSetDisplayedFMSEntry(2);
    XPLMSetDestinationFMSEntry(3);
    const std::pair<const char*, std::function<void(int)>> calls[] = {
        {"XPLMSetDisplayedFMSEntry", XPLMSetDisplayedFMSEntry},
        {"XPLMSetDestinationFMSEntry", XPLMSetDestinationFMSEntry},
        {"XPLMSetFMSEntryInfo", [](int i) { XPLMSetFMSEntryInfo(i, 0, 0); }},
        {"XPLMSetFMSEntryLatLon", [](int i) { XPLMSetFMSEntryLatLon(i, 0, 0, 0); }},
        {"XPLMClearFMSEntry", XPLMClearFMSEntry},
        {"XPLMGetFMSEntryInfo", [&](int i) { expect(i, empty); }},
    };
    for (const auto& call : calls)
        for (int index : {-1, 100, -2147483647 - 1}) {
            call.second(index);
            EXPECT_TRUE(Logged(std::string(call.first) + ": entry " + std::to_string(index) +
                               " is not one of the FMS's entries 0 to 99"));
        }
    EXPECT_EQ(XPLMCountFMSEntries(), 4);
    EXPECT_EQ(XPLMGetDisplayedFMSEntry(), 2);
    EXPECT_EQ(XPLMGetDestinationFMSEntry(), 3);

    // Clearing moves the later entries up; the displayed and destination entries move with them.
    XPLMClearFMSEntry(1);
    EXPECT_EQ(XPLMCountFMSEntries(), 3);
    expect(1, {xplm_Nav_LatLon, "", XPLM_NAV_NOT_FOUND, 7000, 47.6f, -122.5f});
    expect(3, empty);
    EXPECT_EQ(XPLMGetDisplayedFMSEntry(), 1);
    EXPECT_EQ(XPLMGetDestinationFMSEntry(), 2);
    XPLMSetFMSEntryLatLon(99, -33.9f, 151.2f, 0);
    EXPECT_EQ(XPLMCountFMSEntries(), 100);  // the empty entries between count
    XPLMClearFMSEntry(99);
    EXPECT_EQ(XPLMCountFMSEntries(), 3);
}

TEST_F(sim_Navigation, TheGpsFliesToTheFmsDestinationEntry) {
    InstallData();
    EXPECT_EQ(XPLMGetGPSDestinationType(), xplm_Nav_Unknown);
    EXPECT_EQ(XPLMGetGPSDestination(), XPLM_NAV_NOT_FOUND);
    XPLMSetFMSEntryInfo(0, Find("KSEA", xplm_Nav_Airport), 0);
    XPLMSetFMSEntryInfo(1, Find("BF", xplm_Nav_NDB), 3000);
    XPLMSetFMSEntryLatLon(2, 47.6f, -122.5f, 5000);
    struct Step { std::function<void()> change; XPLMNavType type; XPLMNavRef ref; };
    const Step steps[] = {
        {[] { XPLMSetDestinationFMSEntry(1); }, xplm_Nav_NDB, 5},
        {[] { XPLMSetDestinationFMSEntry(0); }, xplm_Nav_Airport, 0},
        {[] { XPLMSetDestinationFMSEntry(2); }, xplm_Nav_LatLon, XPLM_NAV_NOT_FOUND},
        {[] { XPLMSetFMSEntryInfo(2, Find("PAE", xplm_Nav_VOR), 5000); }, xplm_Nav_VOR, 8},
        {[] { XPLMClearFMSEntry(0); }, xplm_Nav_VOR, 8},
        {[] { XPLMClearFMSEntry(1); }, xplm_Nav_Unknown, XPLM_NAV_NOT_FOUND},
    };
    for (const Step& step : steps) {
        step.change();
        EXPECT_EQ(XPLMGetGPSDestinationType(), step.type) << &step - steps;
        EXPECT_EQ(XPLMGetGPSDestination(), step.ref) << &step - steps;
    }
}
