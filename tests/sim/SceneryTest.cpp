// XPLMScenery: the terrain and its probes, OBJ8 objects (loading, reference counts, asynchronous
// loads, drawing) and the scenery library's lookups.
#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include "SimTestSupport.h"
#include "XPLMPlugin.h"
#include "XPLMScenery.h"
#include "world/Drawing.h"
#include "world/Objects.h"
#include "world/Position.h"
#include "world/SceneryLibrary.h"
#include "world/Terrain.h"

namespace {

using simtest::LogText;

static_assert(sizeof(XPLMProbeInfo_t) == 44, "the SDK's probe info");
static_assert(sizeof(XPLMDrawInfo_t) == 28, "the SDK's draw info");

const std::string kMarker = "Custom Scenery/xpsim Demo Objects/objects/marker.obj";
const std::string kBeacon = "Custom Scenery/xpsim Demo Objects/objects/beacon.obj";
const std::string kDefaultMarker = "Resources/default scenery/xpsim default library/objects/marker.obj";
const std::string kDefaultBeacon = "Resources/default scenery/xpsim default library/objects/beacon.obj";

class sim_Scenery : public simtest::WorldTest {
protected:
    // Writes a file under the root, making its folders.
    void Write(const std::string& relative, const std::string& text) {
        const std::filesystem::path path = root_ + "/" + relative;
        std::filesystem::create_directories(path.parent_path());
        simtest::WriteFile(path.string(), text);
    }
    void InstallData() {
        std::filesystem::copy(std::string(TEST_DATA_DIR) + "/xpsim-root", root_,
                              std::filesystem::copy_options::recursive |
                                  std::filesystem::copy_options::overwrite_existing);
    }
    bool Logged(const std::string& line) { return LogText().find("xpsim: " + line + "\n") != std::string::npos; }

    // Probes from y = 123 (which a Y probe disregards).
    XPLMProbeResult Probe(XPLMProbeRef probe, float x, float z, XPLMProbeInfo_t& info) {
        info = XPLMProbeInfo_t();
        info.structSize = sizeof info;
        info.locationY = 42.0f;
        return XPLMProbeTerrainXYZ(probe, x, 123.0f, z, &info);
    }
    // Checks a hit: its height, its normal and whether it is water, everything else exactly.
    void ExpectHit(XPLMProbeRef probe, float x, float z, double y, double nx, double ny, double nz, int wet,
                   double tolerance = 1e-3) {
        XPLMProbeInfo_t info;
        ASSERT_EQ(Probe(probe, x, z, info), xplm_ProbeHitTerrain) << x << "," << z;
        EXPECT_EQ(info.locationX, x);
        EXPECT_NEAR(info.locationY, y, tolerance) << x << "," << z;
        EXPECT_EQ(info.locationZ, z);
        EXPECT_NEAR(info.normalX, nx, 1e-4) << x << "," << z;
        EXPECT_NEAR(info.normalY, ny, 1e-4) << x << "," << z;
        EXPECT_NEAR(info.normalZ, nz, 1e-4) << x << "," << z;
        EXPECT_EQ(info.velocityX, 0.0f);
        EXPECT_EQ(info.velocityY, 0.0f);
        EXPECT_EQ(info.velocityZ, 0.0f);
        EXPECT_EQ(info.is_wet, wet) << x << "," << z;
    }
    xpsim::ObjectInfo Describe(XPLMObjectRef ref) {
        xpsim::ObjectInfo info;
        EXPECT_TRUE(xpsim::DescribeObject(ref, info));
        return info;
    }
};

// ------------------------------------------------------------------ terrain

TEST_F(sim_Scenery, ProbesFindTheFlatSeaLevelGroundWithoutATerrainFile) {
    const double R = xpsim::kEarthRadius;
    XPLMProbeRef probe = XPLMCreateProbe(xplm_ProbeY);
    ASSERT_NE(probe, nullptr);
    ExpectHit(probe, 0, 0, 0.0, 0, 1, 0, 0);
    // The ground curves away from the local frame: 5 km out it lies 1.96 m below y = 0, and its
    // normal leans outward.
    ExpectHit(probe, 3000, -4000, -1.95982, 3000 / R, 1, -4000 / R, 0);
    // Beyond the loaded 300 x 300 km the probe finds the sea-level sphere.
    ExpectHit(probe, 200000, 0, -3136.483, 200000 / R, 0.999508, 0, 0, 0.01);
    // Where the vertical misses the earth, nothing is found and the info is left alone.
    XPLMProbeInfo_t info;
    EXPECT_EQ(Probe(probe, 7.0e6f, 0, info), xplm_ProbeMissed);
    EXPECT_EQ(info.locationY, 42.0f);
    EXPECT_EQ(xpsim::ProbeCount(), 1);
    XPLMDestroyProbe(probe);
    EXPECT_EQ(xpsim::ProbeCount(), 0);
    EXPECT_EQ(LogText().find("terrain:"), std::string::npos);
}

TEST_F(sim_Scenery, TheTerrainFileGivesElevationWaterAndHills) {
    xpsim::SetReferencePoint(47.0, -122.0);
    Write("xpsim/terrain.txt",
          "# a valley floor at 100 m with a lake north of a hill\n"
          "elevation 100\n"
          "water 47.02 -121.99 47.01 -122.01   # corners in any order\n"
          "hill 47 -122 2000 300\n");
    XPLMProbeRef probe = XPLMCreateProbe(xplm_ProbeY);
    // The hill's top stands over the reference point.
    ExpectHit(probe, 0, 0, 400.0, 0, 1, 0, 0);
    EXPECT_TRUE(Logged("terrain: " + xpsim::SystemPath() + "xpsim/terrain.txt: ground at 100 m, 1 water box, 1 hill"));
    // Half way down its east side: 150 m above the floor (less the curve of the earth), the slope
    // tilts the normal east.
    ExpectHit(probe, 1000, 0, 249.9308, 0.22934 + 1000 / xpsim::kEarthRadius, 0.97331, 0, 0);
    // The lake covers the hill's north side: water at the floor's elevation.
    ExpectHit(probe, 0, -1670, 99.7814, 0, 1, -1670 / xpsim::kEarthRadius, 1);
    // Away from the hill the floor is flat; beyond the loaded square the sea-level sphere again.
    ExpectHit(probe, -5000, 0, 100 - 1.95982, -5000 / xpsim::kEarthRadius, 1, 0, 0);
    ExpectHit(probe, 0, 160000, -2007.171, 0, 0.999685, 160000 / xpsim::kEarthRadius, 0, 0.01);
    bool wet = true;
    EXPECT_NEAR(xpsim::TerrainElevation(47.0, -122.0, &wet), 400.0, 1e-9);
    EXPECT_FALSE(wet);
    EXPECT_NEAR(xpsim::TerrainElevation(47.015, -122.0, &wet), 100.0, 1e-9);
    EXPECT_TRUE(wet);
}

TEST_F(sim_Scenery, TerrainLinesThatCannotBeReadAreNotedAndSkipped) {
    Write("xpsim/terrain.txt",
          "elevation 100\n"
          "elevation\n"
          "elevation high\n"
          "water 47 -122 91 -121\n"
          "hill 47 -122 0 10\n"
          "hill 47 -122 100 200\n"
          "mountain 47 -122\n"
          "hill 47 -122 2000 300 9\n"
          "hill 0 0 2000 -300\n");
    EXPECT_EQ(xpsim::LoadTerrain(), 1);
    const std::string file = xpsim::SystemPath() + "xpsim/terrain.txt line ";
    for (const char* line :
         {"2: elevation takes 1 value, the line has 0", "3: bad elevation 'high'", "4: bad latitude '91'",
          "5: bad radius '0'", "6: a hill's height may not exceed its radius", "7: unknown item 'mountain'",
          "8: hill takes 4 values, the line has 5"})
        EXPECT_TRUE(Logged(file + line + "; line skipped")) << line;
    EXPECT_TRUE(
        Logged("terrain: " + xpsim::SystemPath() + "xpsim/terrain.txt: ground at 100 m, 0 water boxes, 1 hill"));
    // The hollow at the reference point is the one hill read.
    EXPECT_NEAR(xpsim::TerrainElevation(0, 0, nullptr), -200.0, 1e-9);
}

TEST_F(sim_Scenery, ProbeMisuseIsReportedAndAnswersAnError) {
    EXPECT_EQ(XPLMCreateProbe(1), nullptr);
    EXPECT_TRUE(Logged("XPLMCreateProbe: unknown probe type 1"));
    XPLMProbeRef probe = XPLMCreateProbe(xplm_ProbeY);
    XPLMProbeInfo_t info = XPLMProbeInfo_t();
    info.structSize = 40;
    EXPECT_EQ(XPLMProbeTerrainXYZ(probe, 0, 0, 0, &info), xplm_ProbeError);
    EXPECT_TRUE(Logged("XPLMProbeTerrainXYZ: structSize 40 is not 44"));
    EXPECT_EQ(XPLMProbeTerrainXYZ(probe, 0, 0, 0, nullptr), xplm_ProbeError);
    EXPECT_TRUE(Logged("XPLMProbeTerrainXYZ: no XPLMProbeInfo_t"));
    EXPECT_EQ(Probe(probe, NAN, 0, info), xplm_ProbeError);
    EXPECT_TRUE(Logged("XPLMProbeTerrainXYZ: x and z must be finite numbers"));
    EXPECT_EQ(Probe(nullptr, 0, 0, info), xplm_ProbeError);
    EXPECT_TRUE(Logged("XPLMProbeTerrainXYZ: 0 is not a terrain probe"));
    XPLMDestroyProbe(probe);
    XPLMDestroyProbe(probe);
    EXPECT_TRUE(Logged("XPLMDestroyProbe: terrain probe 1 was destroyed"));
    EXPECT_EQ(Probe(probe, 0, 0, info), xplm_ProbeError);
    EXPECT_TRUE(Logged("XPLMProbeTerrainXYZ: terrain probe 1 was destroyed"));
    int notAProbe = 0;
    XPLMDestroyProbe(&notAProbe);
    EXPECT_NE(LogText().find(" is not a terrain probe\n"), std::string::npos);
}

// ------------------------------------------------------------------ objects

TEST_F(sim_Scenery, ObjectsLoadOnceAndAreReferenceCounted) {
    InstallData();
    XPLMObjectRef marker = XPLMLoadObject(kMarker.c_str());
    XPLMObjectRef beacon = XPLMLoadObject(kBeacon.c_str());
    ASSERT_NE(marker, nullptr);
    ASSERT_NE(beacon, nullptr);
    xpsim::ObjectInfo info = Describe(marker);
    EXPECT_EQ(info.path, kMarker);
    EXPECT_EQ(std::vector<int>({info.references, info.vertices, info.lineVertices, info.lightVertices, info.indices,
                                info.triangles, info.lineSegments, info.lights, info.animations}),
              std::vector<int>({1, 8, 0, 0, 36, 12, 0, 0, 0}));
    info = Describe(beacon);
    EXPECT_EQ(std::vector<int>({info.references, info.vertices, info.lineVertices, info.lightVertices, info.indices,
                                info.triangles, info.lineSegments, info.lights, info.animations}),
              std::vector<int>({1, 5, 0, 1, 12, 4, 0, 1, 1}));

    // The same file again, however spelled, is the same object with one more reference.
    EXPECT_EQ(XPLMLoadObject(("./" + kMarker).c_str()), marker);
    EXPECT_EQ(Describe(marker).references, 2);
    EXPECT_EQ(xpsim::LoadedObjectCount(), 2);
    XPLMUnloadObject(marker);
    EXPECT_EQ(Describe(marker).references, 1);
    // Only a plugin holding a reference may give one back.
    {
        xpsim::PluginContext other(7);
        XPLMUnloadObject(marker);
    }
    EXPECT_TRUE(Logged("XPLMUnloadObject: plugin 7 holds no reference to object 1 (" + kMarker + ")"));
    XPLMUnloadObject(marker);
    xpsim::ObjectInfo gone;
    EXPECT_FALSE(xpsim::DescribeObject(marker, gone));
    EXPECT_EQ(xpsim::LoadedObjectCount(), 1);
    XPLMUnloadObject(marker);
    EXPECT_TRUE(Logged("XPLMUnloadObject: object 1 (" + kMarker + ") was unloaded"));
    XPLMUnloadObject(nullptr);
    EXPECT_TRUE(Logged("XPLMUnloadObject: 0 is not an object"));
    // Loaded anew, it is a new object with a handle of its own.
    XPLMObjectRef again = XPLMLoadObject(kMarker.c_str());
    EXPECT_NE(again, marker);
    XPLMUnloadObject(marker);
    EXPECT_TRUE(Logged("XPLMUnloadObject: object 1 (" + kMarker + ") was unloaded"));
    EXPECT_EQ(Describe(again).references, 1);

    // Paths the SDK does not take.
    EXPECT_EQ(XPLMLoadObject("Custom Scenery/none.obj"), nullptr);
    EXPECT_TRUE(Logged("XPLMLoadObject: cannot open Custom Scenery/none.obj"));
    EXPECT_EQ(XPLMLoadObject("Custom Scenery"), nullptr);
    EXPECT_TRUE(Logged("XPLMLoadObject: cannot open Custom Scenery"));
    EXPECT_EQ(XPLMLoadObject((root_ + "/" + kMarker).c_str()), nullptr);
    EXPECT_TRUE(Logged("XPLMLoadObject: '" + root_ + "/" + kMarker +
                       "' is an absolute path; object paths are relative to the X-System folder"));
    EXPECT_EQ(XPLMLoadObject(nullptr), nullptr);
    EXPECT_TRUE(Logged("XPLMLoadObject: no file path"));
    // A virtual path is not a file: XPLMLookupObjects gives the files behind it.
    EXPECT_EQ(XPLMLoadObject("xpsim/demo/marker.obj"), nullptr);
    EXPECT_EQ(xpsim::LoadedObjectCount(), 2);
}

TEST_F(sim_Scenery, Obj8RowsAreReadAndUnknownCommandsNoted) {
    Write("objects/lines.obj",
          "A\n800\nOBJ\n\nTEXTURE box.png  # its skin\nPOINT_COUNTS 3 2 0 5   # three vertices, two line ends\n"
          "VT 0 0 0 0 1 0 0 0\nVT 1 0 0 0 1 0 1 0\nVT 0 0 1 0 1 0 0 1\n"
          "VLINE 0 0 0 1 1 1\nVLINE 0 5 0 1 1 1\nIDX 0\nIDX 1\nIDX 2\nIDX 0\nIDX 1\n"
          "ATTR_shade_flat\nTRIS 0 3\nFROBNICATE 1 2\nLINES 3 2\nLIGHT_NAMED airplane_beacon 0 5 0\n"
          "ANIM_begin\nANIM_trans_begin sim/time/total_running_time_sec\nANIM_trans_key 0 0 0 0\n"
          "ANIM_trans_key 10 0 1 0\nANIM_trans_end\nANIM_hide 0 1 sim/time/paused\nANIM_end\n");
    XPLMObjectRef ref = XPLMLoadObject("objects/lines.obj");
    ASSERT_NE(ref, nullptr);
    const xpsim::ObjectInfo info = Describe(ref);
    EXPECT_EQ(info.texture, "box.png");
    EXPECT_EQ(std::vector<int>({info.vertices, info.lineVertices, info.indices, info.triangles, info.lineSegments,
                                info.animations}),
              std::vector<int>({3, 2, 5, 1, 1, 1}));
    EXPECT_TRUE(Logged("XPLMLoadObject: objects/lines.obj line 19: unknown command 'FROBNICATE'; ignored"));
}

TEST_F(sim_Scenery, MalformedObj8FilesAreRefusedWithFileAndLine) {
    const std::string obj = "I\n800\nOBJ\n";
    const std::string vt = "VT 0 0 0 0 1 0 0 0\nVT 1 0 0 0 1 0 1 0\nVT 0 0 1 0 1 0 0 1\n";
    const std::string tri = obj + "POINT_COUNTS 3 0 0 3\n" + vt + "IDX 0\nIDX 1\nIDX 2\n";  // lines 4 to 10
    struct Case {
        std::string text, report;
    };
    const Case cases[] = {
        {"X\n800\nOBJ\n", "line 1: the first line must be I or A, not 'X'"},
        {"I\n700\nOBJ\n", "line 2: version '700' is not 800 (OBJ8)"},
        {"I\n800\nOBJECT\n", "line 3: the third line must be OBJ, not 'OBJECT'"},
        {"I\n800\n", "line 2: the file ends before its header (I or A, 800, OBJ)"},
        {obj + "TRIS 0 3\n", "line 4: no POINT_COUNTS"},
        {obj + vt, "line 4: VT before POINT_COUNTS"},
        {obj + "POINT_COUNTS 3 0 0\n", "line 4: POINT_COUNTS needs 4 values, the row has 3"},
        {obj + "POINT_COUNTS 3 0 -1 3\n", "line 4: POINT_COUNTS '-1' is not a count"},
        {obj + "POINT_COUNTS 3 0 0 3\nVT 0 0 zero 0 1 0 0 0\n", "line 5: VT: 'zero' is not a number"},
        {obj + "POINT_COUNTS 3 0 0 3\nVT 0 0 0 0 1 0 0\n", "line 5: VT needs 8 values, the row has 7"},
        {tri + "VT 1 1 1 0 1 0 1 1\n", "line 11: more VT rows than the 3 POINT_COUNTS declares"},
        {tri + "IDX10 0 1 2 0 1 2 0 1 2 0\n", "line 11: more indices than the 3 POINT_COUNTS declares"},
        {obj + "POINT_COUNTS 4 0 0 3\n" + vt + "IDX 0\nIDX 1\nIDX 2\n",
         "line 4: POINT_COUNTS declares 4 VT rows, the file has 3"},
        {obj + "POINT_COUNTS 3 0 0 4\n" + vt + "IDX 0\nIDX 1\nIDX 2\n",
         "line 4: POINT_COUNTS declares 4 indices, the file has 3"},
        {tri + "POINT_COUNTS 3 0 0 3\n", "line 11: POINT_COUNTS given again (first on line 4)"},
        {tri + "TRIS 0 4\n", "line 11: TRIS count 4 is not a multiple of 3"},
        {tri + "TRIS 0 6\n", "line 11: TRIS 0 6 runs past the 3 indices"},
        {tri + "TRIS 1 x\n", "line 11: TRIS count 'x' is not a count"},
        {obj + "POINT_COUNTS 3 0 0 3\n" + vt + "IDX 0\nIDX 7\nIDX 2\nTRIS 0 3\n",
         "line 11: TRIS 0 3: index 7 names no vertex of the 3 VT rows"},
        {tri + "LINES 0 2\n", "line 11: LINES 0 2: index 0 names no vertex of the 0 VLINE rows"},
        {tri + "LIGHTS 0 1\n", "line 11: LIGHTS 0 1 runs past the 0 VLIGHT rows"},
        {tri + "ATTR_LOD 100 50\n", "line 11: ATTR_LOD needs 0 <= near < far"},
        {tri + "TRIS 0 3\nANIM_begin\n", "line 12: ANIM_begin is never closed by ANIM_end"},
        {tri + "ANIM_end\n", "line 11: ANIM_end without ANIM_begin"},
        {tri + "ANIM_rotate 0 1 0 0 90 0 1 sim/x\n", "line 11: ANIM_rotate outside ANIM_begin/ANIM_end"},
        {tri + "ANIM_begin\nANIM_trans 0 0 0 1 1\nANIM_end\n", "line 12: ANIM_trans needs 8 values, the row has 5"},
        {tri + "ANIM_begin\nANIM_rotate_key 0 90\nANIM_end\n",
         "line 12: ANIM_rotate_key outside an ANIM_rotate_begin block"},
        {tri + "ANIM_begin\nANIM_trans_begin sim/x\nANIM_trans_key 0 0 0 0\nANIM_end\n",
         "line 14: ANIM_end inside the ANIM_trans_begin block of line 12"},
        {tri + "ANIM_begin\nANIM_rotate_begin 0 1 0 sim/x\n", "line 12: ANIM_rotate_begin is never closed"},
    };
    for (const Case& c : cases) {
        Write("objects/bad.obj", c.text);
        EXPECT_EQ(XPLMLoadObject("objects/bad.obj"), nullptr) << c.report;
        EXPECT_TRUE(Logged("XPLMLoadObject: objects/bad.obj " + c.report + "; not loaded")) << c.report;
    }
    EXPECT_EQ(xpsim::LoadedObjectCount(), 0);
}

TEST_F(sim_Scenery, DrawObjectsAddsOneLinePerCallToTheDrawingRecord) {
    InstallData();
    XPLMObjectRef marker = XPLMLoadObject(kMarker.c_str());
    XPLMDrawInfo_t at[2] = {{sizeof(XPLMDrawInfo_t), 1, 2, 3, 0, 90, 0},
                            {sizeof(XPLMDrawInfo_t), -10.5f, 0, 250, 5, 180.25f, -2}};
    XPLMDrawObjects(marker, 2, at, 1, 0);
    XPLMDrawObjects(marker, 1, at + 1, 0, 7);
    // Misuse draws nothing.
    XPLMDrawObjects(marker, 0, at, 0, 0);
    XPLMDrawObjects(marker, -3, at, 0, 0);
    XPLMDrawObjects(marker, 1, nullptr, 0, 0);
    XPLMDrawObjects(nullptr, 1, at, 0, 0);
    at[1].structSize = 24;
    XPLMDrawObjects(marker, 2, at, 0, 0);
    const std::string file = "objects file=" + kMarker;
    EXPECT_EQ(xpsim::DrawingThisFrame(),
              std::vector<std::string>(
                  {file + " count=2 lighting=1 earth_relative=0 at=(1,2,3,0,90,0);(-10.5,0,250,5,180.25,-2)",
                   file + " count=1 lighting=0 earth_relative=1 at=(-10.5,0,250,5,180.25,-2)"}));
    for (const char* line : {"count 0 is not between 1 and 100000", "count -3 is not between 1 and 100000",
                             "no locations", "0 is not an object", "location 1 has structSize 24, not 28"})
        EXPECT_TRUE(Logged(std::string("XPLMDrawObjects: ") + line)) << line;
    RunFrames(1);
    EXPECT_TRUE(xpsim::DrawingThisFrame().empty());
}

// ------------------------------------------------------------------ asynchronous loads

struct Delivery {
    int plugin;
    XPLMObjectRef ref;
    void* refcon;
    int frame;
    bool operator==(const Delivery& o) const {
        return plugin == o.plugin && ref == o.ref && refcon == o.refcon && frame == o.frame;
    }
};
std::vector<Delivery> gDeliveries;

void Loaded(XPLMObjectRef ref, void* refcon) {
    gDeliveries.push_back({XPLMGetMyID(), ref, refcon, xpsim::FrameNumber()});
}

TEST_F(sim_Scenery, AsyncLoadsCallBackOnALaterFrameInThePluginsContext) {
    InstallData();
    gDeliveries.clear();
    const int id = simtest::AddEnabledPlugin("/plugins/a.xpl", simtest::StartAsPlugin);
    int tag = 0;
    {
        xpsim::PluginContext context(id);
        XPLMLoadObjectAsync(kMarker.c_str(), Loaded, &tag);
        XPLMLoadObjectAsync("Custom Scenery/none.obj", Loaded, nullptr);
        XPLMLoadObjectAsync(kMarker.c_str(), nullptr, nullptr);
    }
    EXPECT_TRUE(Logged("XPLMLoadObjectAsync: no callback"));
    EXPECT_TRUE(gDeliveries.empty());
    EXPECT_EQ(xpsim::PendingObjectLoads(), 2);
    EXPECT_EQ(xpsim::LoadedObjectCount(), 0);  // not even read yet
    RunFrames(1);
    ASSERT_EQ(gDeliveries.size(), 2u);
    XPLMObjectRef marker = gDeliveries[0].ref;
    ASSERT_NE(marker, nullptr);
    EXPECT_EQ(gDeliveries, std::vector<Delivery>({{id, marker, &tag, 1}, {id, nullptr, nullptr, 1}}));
    EXPECT_TRUE(Logged("XPLMLoadObjectAsync: cannot open Custom Scenery/none.obj"));
    EXPECT_EQ(Describe(marker).references, 1);
    RunFrames(2);
    EXPECT_EQ(gDeliveries.size(), 2u);

    // A disabled plugin's object is read and held; the callback comes once it is enabled again.
    {
        xpsim::PluginContext context(id);
        XPLMLoadObjectAsync(kBeacon.c_str(), Loaded, nullptr);
    }
    xpsim::DisablePlugin(id);
    RunFrames(2);
    EXPECT_EQ(gDeliveries.size(), 2u);
    EXPECT_EQ(xpsim::LoadedObjectCount(), 2);
    EXPECT_EQ(xpsim::PendingObjectLoads(), 1);
    xpsim::EnablePlugin(id);
    RunFrames(1);
    ASSERT_EQ(gDeliveries.size(), 3u);
    EXPECT_EQ(gDeliveries[2].plugin, id);
    EXPECT_EQ(gDeliveries[2].frame, 6);
    XPLMObjectRef beacon = gDeliveries[2].ref;
    EXPECT_EQ(Describe(beacon).path, kBeacon);

    // An unloaded plugin's pending loads are dropped, and what it holds is given back.
    {
        xpsim::PluginContext context(id);
        XPLMLoadObjectAsync(kBeacon.c_str(), Loaded, nullptr);
        XPLMLoadObjectAsync(kDefaultMarker.c_str(), Loaded, nullptr);
    }
    xpsim::DisablePlugin(id);
    RunFrames(1);
    EXPECT_EQ(Describe(beacon).references, 2);
    EXPECT_EQ(xpsim::LoadedObjectCount(), 3);
    xpsim::RemovePlugin(id);
    EXPECT_TRUE(Logged("plugin " + std::to_string(id) + " left registered: 3 objects; removed"));
    EXPECT_EQ(xpsim::PendingObjectLoads(), 0);
    EXPECT_EQ(xpsim::LoadedObjectCount(), 0);
    RunFrames(2);
    EXPECT_EQ(gDeliveries.size(), 3u);
}

// ------------------------------------------------------------------ the library

std::vector<std::string> gFound;

void Found(const char* path, void* ref) {
    gFound.push_back(std::string(path) + (ref == &gFound ? "" : " (wrong ref)"));
}

TEST_F(sim_Scenery, LookupsFollowPackagePriorityRegionsAndExportVariants) {
    const std::string header = "A\n800\nLIBRARY\n";
    auto package = [&](const std::string& folder, const std::string& rows, std::vector<std::string> files) {
        Write(folder + "/library.txt", header + rows);
        for (const std::string& file : files) Write(folder + "/objects/" + file, "");
    };
    package("Custom Scenery/A High",
            "EXPORT lib/tree.obj objects/tree_a.obj\n"
            "EXPORT_EXTEND lib/car.obj objects/car_a.obj\n"
            "REGION_DEFINE alps\nREGION_RECT 5 45 15 47\nREGION alps\n"
            "EXPORT lib/house.obj objects/chalet.obj\n"
            "REGION_ALL\nEXPORT_BACKUP lib/rock.obj objects/rock_a.obj\n",
            {"tree_a.obj", "car_a.obj", "chalet.obj", "rock_a.obj"});
    package("Custom Scenery/B Mid",
            "EXPORT lib/tree.obj objects/tree_b.obj\n"
            "EXPORT_RATIO 0.5 lib/car.obj objects/car_b.obj\n"
            "EXPORT lib/car.obj objects/car_b2.obj\n"
            "EXPORT lib/house.obj objects/house_b.obj\n"
            "REGION_DEFINE north\nREGION_RECT -180 60 179 89\nREGION north\n"
            "EXPORT_EXCLUDE lib/sign.obj objects/sign_b.obj\n",
            {"tree_b.obj", "car_b.obj", "car_b2.obj", "house_b.obj", "sign_b.obj"});
    package("Custom Scenery/C Low",
            "EXPORT lib/car.obj objects/car_c.obj\n"
            "EXPORT lib/sign.obj objects/sign_c.obj\n"
            "EXPORT_BACKUP lib/rock.obj objects/rock_c.obj\n",
            {"car_c.obj", "sign_c.obj", "rock_c.obj"});
    package("Resources/default scenery/D",
            "EXPORT lib/house.obj objects/house_d.obj\nEXPORT lib/well.obj objects/well_d.obj\n",
            {"house_d.obj", "well_d.obj"});
    Write("Custom Scenery/No Library/objects/x.obj", "");

    const std::string A = "Custom Scenery/A High/objects/", B = "Custom Scenery/B Mid/objects/",
                      C = "Custom Scenery/C Low/objects/", D = "Resources/default scenery/D/objects/";
    struct Case {
        const char* path;
        float latitude, longitude;
        std::vector<std::string> found;
    };
    const Case cases[] = {
        {"lib/tree.obj", 0, 0, {A + "tree_a.obj"}},
        {"lib/car.obj", 0, 0, {A + "car_a.obj", B + "car_b.obj", B + "car_b2.obj"}},
        {"lib/house.obj", 46.5f, 10.2f, {A + "chalet.obj"}},
        {"lib/house.obj", 47.9f, 15.9f, {A + "chalet.obj"}},
        {"lib/house.obj", 48.0f, 15.9f, {B + "house_b.obj"}},
        {"lib/house.obj", 0, 0, {B + "house_b.obj"}},
        {"lib/sign.obj", 65, 10, {B + "sign_b.obj"}},
        {"lib/sign.obj", 10, 10, {}},
        {"lib/rock.obj", 0, 0, {A + "rock_a.obj"}},
        {"lib/well.obj", 0, 0, {D + "well_d.obj"}},
        {"lib/none.obj", 0, 0, {}},
        {"objects/tree_a.obj", 0, 0, {}},
    };
    for (const Case& c : cases) {
        gFound.clear();
        EXPECT_EQ(XPLMLookupObjects(c.path, c.latitude, c.longitude, Found, &gFound), int(c.found.size())) << c.path;
        EXPECT_EQ(gFound, c.found) << c.path << " at " << c.latitude << "," << c.longitude;
    }
    EXPECT_EQ(xpsim::SceneryPackages(),
              std::vector<std::string>({"Custom Scenery/A High/", "Custom Scenery/B Mid/", "Custom Scenery/C Low/",
                                        "Resources/default scenery/D/"}));
    EXPECT_TRUE(Logged("library: " + xpsim::SystemPath() + "Custom Scenery/B Mid/library.txt: 5 exports"));
    EXPECT_EQ(XPLMLookupObjects("lib/car.obj", 0, 0, nullptr, nullptr), 3);
    EXPECT_EQ(XPLMLookupObjects(nullptr, 0, 0, Found, nullptr), 0);
    EXPECT_TRUE(Logged("XPLMLookupObjects: no path"));

    // scenery_packs.ini orders the custom packages: those it does not list first, disabled ones out.
    Write("Custom Scenery/scenery_packs.ini",
          "I\n1000 Version\nSCENERY\n\nSCENERY_PACK Custom Scenery/C Low/\n"
          "SCENERY_PACK_DISABLED Custom Scenery/A High/\nSCENERY_PACK Custom Scenery/B Mid/\n"
          "SCENERY_PACK Custom Scenery/Gone/\n");
    package("Custom Scenery/E New", "EXPORT_EXTEND lib/car.obj objects/car_e.obj\n", {"car_e.obj"});
    xpsim::LoadSceneryLibrary();
    EXPECT_EQ(xpsim::SceneryPackages(),
              std::vector<std::string>({"Custom Scenery/E New/", "Custom Scenery/C Low/", "Custom Scenery/B Mid/",
                                        "Resources/default scenery/D/"}));
    EXPECT_EQ(xpsim::LookupLibraryPath("lib/car.obj", 0, 0),
              std::vector<std::string>({"Custom Scenery/E New/objects/car_e.obj", C + "car_c.obj"}));
    EXPECT_EQ(xpsim::LookupLibraryPath("lib/rock.obj", 0, 0), std::vector<std::string>({C + "rock_c.obj"}));
}

TEST_F(sim_Scenery, LibraryRowsThatCannotBeReadAreNotedAndSkipped) {
    Write("Custom Scenery/F/objects/x.obj", "");
    Write("Custom Scenery/F/objects/with space.obj", "");
    Write("Custom Scenery/F/library.txt",
          "A\n800\nLIBRARY\n"
          "EXPORT lib/x.obj\n"
          "EXPORT_RATIO -1 lib/x.obj objects/x.obj\n"
          "EXPORT lib/x.obj objects/missing.obj\n"
          "REGION_RECT 0 0 1 1\n"
          "REGION nowhere\n"
          "REGION_DEFINE r\n"
          "REGION_RECT 10 0 5 1\n"
          "REGION_DEFINE r\n"
          "REGION_DREF sim/x == 1\n"
          "FOO bar\n"
          "EXPORT lib/x.obj objects/x.obj\n"
          "EXPORT lib/space.obj objects/with space.obj   # a file name with a space\n"
          "EXPORT_EXTEND lib/back.obj objects\\x.obj\n");
    Write("Custom Scenery/G/library.txt", "A\n800\nSCENERY\nEXPORT lib/g.obj library.txt\n");
    Write("Custom Scenery/H/library.txt", "A\n");
    EXPECT_EQ(xpsim::LoadSceneryLibrary(), 3);
    const std::string file = xpsim::SystemPath() + "Custom Scenery/F/library.txt line ";
    for (const char* line :
         {"4: EXPORT needs a virtual path and a file", "5: bad ratio '-1'",
          "6: no file 'objects/missing.obj' in the package", "7: REGION_RECT before any REGION_DEFINE",
          "8: unknown region 'nowhere'", "10: REGION_RECT 10 0 5 1 is not a box of tiles",
          "11: region 'r' is defined again", "12: REGION_DREF is not read by xpsim", "13: unknown command 'FOO'"})
        EXPECT_TRUE(Logged(file + line + "; row skipped")) << line;
    EXPECT_TRUE(Logged(xpsim::SystemPath() + "Custom Scenery/G/library.txt line 3: the header needs LIBRARY here, "
                                             "not 'SCENERY'; file not read"));
    EXPECT_TRUE(Logged(xpsim::SystemPath() + "Custom Scenery/H/library.txt: the file ends before its header "
                                             "(I or A, 800, LIBRARY); file not read"));
    const std::vector<std::string> x = {"Custom Scenery/F/objects/x.obj"};
    EXPECT_EQ(xpsim::LookupLibraryPath("lib/x.obj", 0, 0), x);
    EXPECT_EQ(xpsim::LookupLibraryPath("lib/space.obj", 0, 0),
              std::vector<std::string>({"Custom Scenery/F/objects/with space.obj"}));
    EXPECT_EQ(xpsim::LookupLibraryPath("lib/back.obj", 0, 0), x);
    EXPECT_EQ(xpsim::LookupLibraryPath("lib/g.obj", 0, 0), std::vector<std::string>());
}

TEST_F(sim_Scenery, TheDataSetsLibraryFindsObjectsThatLoad) {
    InstallData();
    EXPECT_EQ(xpsim::LookupLibraryPath("xpsim/demo/marker.obj", 0, 0), std::vector<std::string>({kMarker}));
    EXPECT_EQ(xpsim::LookupLibraryPath("xpsim/demo/beacon.obj", 0, 0),
              std::vector<std::string>({kBeacon, kDefaultBeacon}));
    EXPECT_EQ(xpsim::LookupLibraryPath("xpsim/demo/local.obj", 47.45f, -122.3f), std::vector<std::string>({kBeacon}));
    EXPECT_EQ(xpsim::LookupLibraryPath("xpsim/demo/local.obj", 0, 0), std::vector<std::string>({kDefaultMarker}));
    EXPECT_EQ(xpsim::LookupLibraryPath("xpsim/demo/spare.obj", 0, 0), std::vector<std::string>({kDefaultMarker}));
    for (const std::string& path : {kMarker, kBeacon, kDefaultMarker, kDefaultBeacon}) {
        XPLMObjectRef ref = XPLMLoadObject(path.c_str());
        EXPECT_NE(ref, nullptr) << path;
    }
    EXPECT_EQ(xpsim::LoadedObjectCount(), 4);
    // Without a terrain file the data set's ground stays flat at sea level.
    EXPECT_EQ(xpsim::TerrainElevation(47.45, -122.3, nullptr), 0.0);
}

}  // namespace
