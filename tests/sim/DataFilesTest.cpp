// Situations and replay movies: saving, loading back, paths and bad files.
#include <vector>

#include "SimTestSupport.h"
#include "XPLMDataAccess.h"
#include "XPLMUtilities.h"

namespace {

using simtest::LogText;

class sim_DataFiles : public simtest::WorldTest {
protected:
    void SetUp() override {
        WorldTest::SetUp();
        simtest::WriteFile(root_ + "/Resources/plugins/DataRefs.txt",
                           "2 1041 header\n"
                           "test/int\tint\ty\n"
                           "test/zero\tint\ty\n"
                           "test/double\tdouble\ty\n"
                           "test/floats\tfloat[3]\ty\n"
                           "test/bytes\tbyte[4]\ty\n"
                           "test/readonly\tint\tn\n");
        xpsim::LoadStandardDataRefs();
    }

    void Set(const char* name, const char* value) {
        std::string error;
        ASSERT_TRUE(xpsim::SetDataRefFromText(name, value, error)) << error;
    }
};

std::vector<float> Floats() {
    float values[3] = {};
    XPLMGetDatavf(XPLMFindDataRef("test/floats"), values, 0, 3);
    return std::vector<float>(values, values + 3);
}

}  // namespace

TEST_F(sim_DataFiles, ASituationRoundTripsTheFlightAndTheWritableDatarefs) {
    RunFrames(3);
    Set("test/int", "-7");
    Set("test/double", "0.1");
    Set("test/floats", "0,2.5,0");
    Set("test/bytes", "N1");
    Set("test/readonly", "9");
    Set("sim/time/paused", "1");
    mkdir((root_ + "/Output/situations").c_str(), 0755);
    ASSERT_EQ(XPLMSaveDataFile(xplm_DataFile_Situation, "Output/situations/test.sit"), 1);
    EXPECT_EQ(simtest::ReadFile(root_ + "/Output/situations/test.sit"),
              "xpsim situation 1\n"
              "flight-time 0.15000000000000002\n"
              "paused 1\n"
              "test/int\tint\t-7\n"
              "test/double\tdouble\t0.10000000000000001\n"
              "test/floats\tfloat[3]\t0,2.5,0\n"
              "test/bytes\tbyte[4]\t4e310000\n");

    // Everything changes; loading brings back exactly what was saved.
    Set("sim/time/paused", "0");
    RunFrames(5);
    Set("test/int", "3");
    Set("test/zero", "4");
    Set("test/floats", "1,1,1");
    Set("test/bytes", "XYZ");
    ASSERT_EQ(XPLMLoadDataFile(xplm_DataFile_Situation, "Output/situations/test.sit"), 1);
    EXPECT_EQ(XPLMGetDatai(XPLMFindDataRef("test/int")), -7);
    EXPECT_EQ(XPLMGetDatai(XPLMFindDataRef("test/zero")), 0);
    EXPECT_EQ(XPLMGetDatad(XPLMFindDataRef("test/double")), 0.1);
    EXPECT_EQ(Floats(), (std::vector<float>{0.0f, 2.5f, 0.0f}));
    char bytes[4];
    XPLMGetDatab(XPLMFindDataRef("test/bytes"), bytes, 0, 4);
    EXPECT_EQ(std::string(bytes, 4), std::string("N1\0\0", 4));
    EXPECT_EQ(XPLMGetDatai(XPLMFindDataRef("test/readonly")), 9);  // not the sim's to restore
    EXPECT_EQ(XPLMGetDatai(XPLMFindDataRef("sim/time/paused")), 1);
    EXPECT_FLOAT_EQ(XPLMGetDataf(XPLMFindDataRef("sim/time/total_flight_time_sec")), 0.15f);
    RunFrames(2);  // paused again: the flight time stays
    EXPECT_FLOAT_EQ(XPLMGetDataf(XPLMFindDataRef("sim/time/total_flight_time_sec")), 0.15f);
    EXPECT_NE(LogText().find("xpsim: situation loaded from " + xpsim::SystemPath() +
                             "Output/situations/test.sit (4 datarefs)\n"),
              std::string::npos);

    // A replay is a file of its own kind; relative paths may climb out of the simulator folder.
    std::string error;
    ASSERT_TRUE(xpsim::PrepareRoot(root_ + "/inner", error)) << error;
    xpsim::StartLog();
    ASSERT_EQ(XPLMSaveDataFile(xplm_DataFile_ReplayMovie, "../replay.smo"), 1);
    EXPECT_EQ(simtest::ReadFile(root_ + "/replay.smo").rfind("xpsim replay 1\nflight-time 0.15000000000000002\n", 0),
              0u);
    EXPECT_EQ(XPLMLoadDataFile(xplm_DataFile_Situation, "../replay.smo"), 0);
    EXPECT_EQ(XPLMLoadDataFile(xplm_DataFile_ReplayMovie, "../replay.smo"), 1);
    EXPECT_EQ(XPLMLoadDataFile(xplm_DataFile_ReplayMovie, nullptr), 1);  // clears the replay
    EXPECT_NE(LogText().find("xpsim: the replay is cleared\n"), std::string::npos);
}

TEST_F(sim_DataFiles, MissingMalformedAndAbsoluteFilesAnswerZeroAndChangeNothing) {
    Set("test/int", "5");
    const std::string valid = "xpsim situation 1\nflight-time 2\npaused 0\n";
    const std::pair<std::string, std::string> cases[] = {
        {"xpsim situation 2\n", "is not an xpsim situation file"},
        {valid + "test/int\tint\tfive\n", "line 4: 'five' is not a value of type int for test/int"},
        {valid + "test/floats\tfloat[3]\t1,2\n", "line 4: '1,2' is not a value of type float[3] for test/floats"},
        {valid + "test/int 5\n", "line 4: expected a dataref name, type and value separated by tabs"},
        {"xpsim situation 1\npaused 0\n", "lacks its flight-time or paused line"},
        {"xpsim situation 1\nflight-time 1\npaused 2\n", "line 3: paused must be 0 or 1, not '2'"},
    };
    for (const auto& entry : cases) {
        simtest::WriteFile(root_ + "/bad.sit", entry.first);
        EXPECT_EQ(XPLMLoadDataFile(xplm_DataFile_Situation, "bad.sit"), 0) << entry.second;
        EXPECT_NE(LogText().find("xpsim: XPLMLoadDataFile: " + xpsim::SystemPath() + "bad.sit " + entry.second + "\n"),
                  std::string::npos)
            << entry.second;
    }
    EXPECT_EQ(XPLMGetDatai(XPLMFindDataRef("test/int")), 5);

    // Datarefs this simulator lacks or types differently are left out, the rest is loaded.
    simtest::WriteFile(root_ + "/other.sit", valid + "test/gone\tint\t1\ntest/double\tint\t1\ntest/zero\tint\t3\n");
    EXPECT_EQ(XPLMLoadDataFile(xplm_DataFile_Situation, "other.sit"), 1);
    EXPECT_EQ(XPLMGetDatai(XPLMFindDataRef("test/zero")), 3);
    EXPECT_EQ(XPLMGetDatai(XPLMFindDataRef("test/int")), 0);

    EXPECT_EQ(XPLMLoadDataFile(xplm_DataFile_Situation, "none.sit"), 0);
    EXPECT_EQ(XPLMSaveDataFile(xplm_DataFile_Situation, "no/such/folder/x.sit"), 0);
    EXPECT_EQ(XPLMSaveDataFile(xplm_DataFile_Situation, "/tmp/x.sit"), 0);
    EXPECT_EQ(XPLMSaveDataFile(3, "x.sit"), 0);
    EXPECT_EQ(XPLMLoadDataFile(xplm_DataFile_Situation, nullptr), 0);
    const std::string log = LogText();
    const std::string system = xpsim::SystemPath();
    for (const std::string& line : std::vector<std::string>{
             "XPLMLoadDataFile: test/gone is not a writable dataref of this type here; left out",
             "XPLMLoadDataFile: test/double is not a writable dataref of this type here; left out",
             "XPLMLoadDataFile: cannot read " + system + "none.sit: No such file or directory",
             "XPLMSaveDataFile: cannot write " + system + "no/such/folder/x.sit: No such file or directory",
             "XPLMSaveDataFile: '/tmp/x.sit' is an absolute path; data file paths are relative to the X-System "
             "folder",
             "XPLMSaveDataFile: unknown data file type 3", "XPLMLoadDataFile: no file path"})
        EXPECT_NE(log.find("xpsim: " + line + "\n"), std::string::npos) << line;
}
