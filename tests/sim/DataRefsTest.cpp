// Datarefs through the exported SDK functions: DataRefs.txt, typed reads and writes, accessors and
// shared data.
#include <cstring>
#include <vector>

#include "SimTestSupport.h"
#include "XPLMDataAccess.h"
#include "XPLMPlugin.h"
#include "XPLMUtilities.h"

namespace {

using simtest::LogText;

class sim_DataRefs : public simtest::WorldTest {
protected:
    void SetUp() override {
        WorldTest::SetUp();
        simtest::WriteFile(root_ + "/Resources/plugins/DataRefs.txt",
                           "2 1041 Mon Oct  5 23:29:08 2015\n"
                           "\n"
                           "test/int\tint\ty\tunit\tAn int.\n"
                           "test/float\tfloat\ty\n"
                           "test/double\tdouble\tn\tfeet\tRead-only.\r\n"
                           "test/ints\tint[4]\ty\n"
                           "test/floats\tfloat[2][3]\ty\n"
                           "test/bytes\tbyte[8]\ty\tstring\tText.\n"
                           "test/ro_ints\tint[3]\tn\n"
                           "bad/type\tquad\ty\n"
                           "test/int\tfloat\ty\n"
                           "bad/writable\tint\tmaybe\n");
        count_ = xpsim::LoadStandardDataRefs();
    }

    int count_ = 0;
};

std::vector<std::string> gCalls;

void RecordError(const char* message) {
    gCalls.push_back("error in " + std::to_string(XPLMGetMyID()) + ": " + message);
}

}  // namespace

TEST_F(sim_DataRefs, LoadsTypesSizesAndWritabilityAndReportsBadLines) {
    // Seven from the file plus the four time and eight position datarefs xpsim always drives.
    EXPECT_EQ(count_, 19);
    const std::string log = LogText();
    EXPECT_NE(log.find("xpsim: DataRefs.txt line 10: unknown type 'quad'\n"), std::string::npos);
    EXPECT_NE(log.find("xpsim: DataRefs.txt line 11: test/int is listed twice; the first entry is kept\n"),
              std::string::npos);
    EXPECT_NE(log.find("xpsim: DataRefs.txt line 12: writability must be y or n, not 'maybe'\n"), std::string::npos);

    const std::pair<const char*, XPLMDataTypeID> types[] = {
        {"test/int", xplmType_Int},          {"test/float", xplmType_Float},
        {"test/double", xplmType_Double},    {"test/ints", xplmType_IntArray},
        {"test/floats", xplmType_FloatArray}, {"test/bytes", xplmType_Data},
        {"sim/time/total_running_time_sec", xplmType_Float}, {"sim/time/paused", xplmType_Int}};
    for (const auto& entry : types) {
        XPLMDataRef ref = XPLMFindDataRef(entry.first);
        ASSERT_NE(ref, nullptr) << entry.first;
        EXPECT_EQ(XPLMGetDataRefTypes(ref), entry.second) << entry.first;
        EXPECT_EQ(XPLMIsDataRefGood(ref), 1);
    }
    EXPECT_EQ(XPLMFindDataRef("bad/type"), nullptr);
    EXPECT_EQ(XPLMCanWriteDataRef(XPLMFindDataRef("test/int")), 1);
    EXPECT_EQ(XPLMCanWriteDataRef(XPLMFindDataRef("test/double")), 0);
    // A null buffer answers the size, whatever the offset and maximum.
    EXPECT_EQ(XPLMGetDatavf(XPLMFindDataRef("test/floats"), nullptr, 99, -5), 6);
    EXPECT_EQ(XPLMGetDatab(XPLMFindDataRef("test/bytes"), nullptr, 0, 0), 8);

    // The project's copy of the simulator's file loads completely.
    xpsim::ResetWorld();
    EXPECT_EQ(xpsim::LoadDataRefsFile(std::string(TEST_DATA_DIR) + "/DataRefs.txt"), 4056);
    XPLMDataRef airfoil = XPLMFindDataRef("sim/airfoils/afl_cl");
    EXPECT_EQ(XPLMGetDataRefTypes(airfoil), xplmType_FloatArray);
    EXPECT_EQ(XPLMGetDatavf(airfoil, nullptr, 0, 0), 56 * 2 * 2 * 721);
}

TEST_F(sim_DataRefs, ArrayReadsAndWritesHonourOffsetsAndBounds) {
    XPLMDataRef ints = XPLMFindDataRef("test/ints");
    int values[6] = {1, 2, 3, 4, 5, 6};
    int out[8];

    // Never written: zeros.
    std::fill(std::begin(out), std::end(out), -1);
    EXPECT_EQ(XPLMGetDatavi(ints, out, 0, 8), 4);
    EXPECT_EQ(std::vector<int>(out, out + 5), (std::vector<int>{0, 0, 0, 0, -1}));

    XPLMSetDatavi(ints, values, 0, 6);  // only four fit
    XPLMSetDatavi(ints, values + 4, 1, 2);
    std::fill(std::begin(out), std::end(out), -1);
    EXPECT_EQ(XPLMGetDatavi(ints, out, 0, 8), 4);
    EXPECT_EQ(std::vector<int>(out, out + 5), (std::vector<int>{1, 5, 6, 4, -1}));
    std::fill(std::begin(out), std::end(out), -1);
    EXPECT_EQ(XPLMGetDatavi(ints, out, 2, 10), 2);
    EXPECT_EQ(std::vector<int>(out, out + 3), (std::vector<int>{6, 4, -1}));
    EXPECT_EQ(XPLMGetDatavi(ints, out, 1, 1), 1);
    EXPECT_EQ(out[0], 5);
    // An offset at or past the end copies nothing.
    out[0] = -7;
    EXPECT_EQ(XPLMGetDatavi(ints, out, 4, 3), 0);
    XPLMSetDatavi(ints, values, 4, 1);
    EXPECT_EQ(out[0], -7);
    EXPECT_EQ(XPLMGetDatavi(ints, out, 0, 0), 0);

    float floats[7] = {0.5f, 1.5f, 2.5f, 3.5f, 4.5f, 5.5f, 6.5f};
    float fout[6] = {};
    XPLMDataRef floatArray = XPLMFindDataRef("test/floats");
    XPLMSetDatavf(floatArray, floats, 3, 7);
    EXPECT_EQ(XPLMGetDatavf(floatArray, fout, 0, 6), 6);
    EXPECT_EQ(std::vector<float>(fout, fout + 6), (std::vector<float>{0, 0, 0, 0.5f, 1.5f, 2.5f}));

    XPLMDataRef bytes = XPLMFindDataRef("test/bytes");
    XPLMSetDatab(bytes, const_cast<char*>("ABCDEFGHIJ"), 0, 10);
    char text[8] = {};
    EXPECT_EQ(XPLMGetDatab(bytes, text, 6, 5), 2);
    EXPECT_EQ(std::string(text, 2), "GH");

    // Writes to a read-only array are ignored and reported.
    XPLMDataRef readOnly = XPLMFindDataRef("test/ro_ints");
    XPLMSetDatavi(readOnly, values, 0, 3);
    EXPECT_EQ(XPLMGetDatavi(readOnly, out, 0, 3), 3);
    EXPECT_EQ(out[0], 0);
    EXPECT_NE(LogText().find("xpsim: XPLMSetDatavi: test/ro_ints is read-only; the write is ignored\n"),
              std::string::npos);

    // Negative offsets and counts are misuse: nothing copied, reported.
    EXPECT_EQ(XPLMGetDatavi(ints, out, -1, 2), 0);
    XPLMSetDatavi(ints, values, 0, -3);
    EXPECT_NE(LogText().find("xpsim: XPLMGetDatavi: negative offset or count (-1, 2) for test/ints\n"),
              std::string::npos);
    EXPECT_NE(LogText().find("xpsim: XPLMSetDatavi: negative offset or count (0, -3) for test/ints\n"),
              std::string::npos);
}

TEST_F(sim_DataRefs, ScalarsWrongTypesAndBadHandlesAreReportedNotFatal) {
    gCalls.clear();
    XPLMSetErrorCallback(RecordError);
    XPLMDataRef i = XPLMFindDataRef("test/int");
    XPLMDataRef d = XPLMFindDataRef("test/double");
    XPLMSetDatai(i, -42);
    EXPECT_EQ(XPLMGetDatai(i), -42);
    EXPECT_EQ(XPLMGetDataf(i), 0.0f);
    XPLMSetDatad(d, 3.25);
    EXPECT_EQ(XPLMGetDatad(d), 0.0);
    EXPECT_EQ(XPLMGetDatai(reinterpret_cast<XPLMDataRef>(0x1234)), 0);
    XPLMSetDataf(nullptr, 1.0f);
    EXPECT_EQ(gCalls, (std::vector<std::string>{
                          "error in 0: XPLMGetDataf: test/int is int, not float",
                          "error in 0: XPLMSetDatad: test/double is read-only; the write is ignored",
                          "error in 0: XPLMGetDatai: 0x1234 is not a dataref",
                          "error in 0: XPLMSetDataf: (nil) is not a dataref"}));
    EXPECT_NE(LogText().find("xpsim: XPLMGetDataf: test/int is int, not float\n"), std::string::npos);
}

namespace {

int gStoredInt = 0;
int ReadStored(void* refcon) {
    gCalls.push_back("read by " + std::to_string(XPLMGetMyID()) + " refcon " + static_cast<const char*>(refcon));
    return gStoredInt;
}
void WriteStored(void* refcon, int value) {
    gCalls.push_back("write by " + std::to_string(XPLMGetMyID()) + " refcon " + static_cast<const char*>(refcon));
    gStoredInt = value;
}

XPLMDataRef RegisterStored() {
    return XPLMRegisterDataAccessor("test/plugin/int", xplmType_Int, 1, ReadStored, WriteStored, nullptr, nullptr,
                                    nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                    const_cast<char*>("r"), const_cast<char*>("w"));
}

}  // namespace

TEST_F(sim_DataRefs, AccessorsAreCalledInTheOwningPluginsContext) {
    gCalls.clear();
    const int owner = simtest::AddEnabledPlugin("/p/owner.xpl", simtest::StartAsPlugin);
    XPLMDataRef ref;
    {
        xpsim::PluginContext context(owner);
        ref = RegisterStored();
    }
    ASSERT_NE(ref, nullptr);
    EXPECT_EQ(XPLMFindDataRef("test/plugin/int"), ref);
    XPLMSetDatai(ref, 17);
    EXPECT_EQ(XPLMGetDatai(ref), 17);
    EXPECT_EQ(XPLMGetDataf(ref), 0.0f);  // not a float dataref: the accessor is not asked
    EXPECT_EQ(gCalls, (std::vector<std::string>{"write by 1 refcon w", "read by 1 refcon r"}));

    // Another plugin cannot take the name, nor unregister it.
    EXPECT_EQ(RegisterStored(), nullptr);
    XPLMUnregisterDataAccessor(ref);
    EXPECT_EQ(XPLMIsDataRefGood(ref), 1);

    {
        xpsim::PluginContext context(owner);
        XPLMUnregisterDataAccessor(ref);
    }
    EXPECT_EQ(XPLMIsDataRefGood(ref), 0);
    EXPECT_EQ(XPLMGetDatai(ref), 0);
    // Registering the name again revives the same handle.
    {
        xpsim::PluginContext context(owner);
        EXPECT_EQ(RegisterStored(), ref);
    }
    EXPECT_EQ(XPLMGetDatai(ref), 17);
    // The simulator's own datarefs cannot be taken over.
    EXPECT_EQ(XPLMRegisterDataAccessor("test/int", xplmType_Int, 1, ReadStored, nullptr, nullptr, nullptr,
                                       nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                       nullptr, nullptr),
              nullptr);
}

namespace {

void SharedChanged(void* refcon) {
    gCalls.push_back(std::string(static_cast<const char*>(refcon)) + " notified in " +
                     std::to_string(XPLMGetMyID()) + ", value " +
                     std::to_string(XPLMGetDatai(XPLMFindDataRef("test/shared"))));
}

}  // namespace

TEST_F(sim_DataRefs, SharedDataNotifiesEveryOtherSharerInItsContext) {
    gCalls.clear();
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    const int two = simtest::AddEnabledPlugin("/p/two.xpl", simtest::StartAsPlugin);
    char a[] = "a", b[] = "b";
    {
        xpsim::PluginContext context(one);
        EXPECT_EQ(XPLMShareData("test/shared", xplmType_Int, SharedChanged, a), 1);
    }
    {
        xpsim::PluginContext context(two);
        EXPECT_EQ(XPLMShareData("test/shared", xplmType_Float, SharedChanged, b), 0);
        EXPECT_EQ(XPLMShareData("test/shared", xplmType_Int, SharedChanged, b), 1);
    }
    EXPECT_EQ(XPLMShareData("test/int", xplmType_Int, SharedChanged, a), 0);  // not shared data

    XPLMDataRef ref = XPLMFindDataRef("test/shared");
    ASSERT_NE(ref, nullptr);
    EXPECT_EQ(XPLMGetDataRefTypes(ref), xplmType_Int);
    EXPECT_EQ(XPLMCanWriteDataRef(ref), 1);
    {
        xpsim::PluginContext context(one);
        XPLMSetDatai(ref, 7);  // the writer is not told
    }
    std::string error;
    ASSERT_TRUE(xpsim::SetDataRefFromText("test/shared", "9", error)) << error;  // the sim writes: all are told
    EXPECT_EQ(gCalls, (std::vector<std::string>{"b notified in 2, value 7", "a notified in 1, value 9",
                                                "b notified in 2, value 9"}));

    gCalls.clear();
    {
        xpsim::PluginContext context(two);
        EXPECT_EQ(XPLMUnshareData("test/shared", xplmType_Int, SharedChanged, a), 0);  // refcon differs
        EXPECT_EQ(XPLMUnshareData("test/shared", xplmType_Int, SharedChanged, b), 1);
        EXPECT_EQ(XPLMUnshareData("test/shared", xplmType_Int, SharedChanged, b), 0);
        XPLMSetDatai(ref, 11);
    }
    EXPECT_EQ(gCalls, (std::vector<std::string>{"a notified in 1, value 11"}));
}

TEST_F(sim_DataRefs, SetEventsWriteEachTypeAsTheSimulator) {
    std::string error;
    EXPECT_TRUE(xpsim::SetDataRefFromText("test/int", "-12", error)) << error;
    EXPECT_EQ(XPLMGetDatai(XPLMFindDataRef("test/int")), -12);
    EXPECT_TRUE(xpsim::SetDataRefFromText("test/double", "2.5e3", error)) << error;  // the sim may write read-only
    EXPECT_EQ(XPLMGetDatad(XPLMFindDataRef("test/double")), 2500.0);
    EXPECT_TRUE(xpsim::SetDataRefFromText("test/ints", "4, 5,6", error)) << error;
    int out[4];
    XPLMGetDatavi(XPLMFindDataRef("test/ints"), out, 0, 4);
    EXPECT_EQ(std::vector<int>(out, out + 4), (std::vector<int>{4, 5, 6, 0}));
    EXPECT_TRUE(xpsim::SetDataRefFromText("test/bytes", "N172", error)) << error;
    char text[8];
    EXPECT_EQ(XPLMGetDatab(XPLMFindDataRef("test/bytes"), text, 0, 8), 8);
    EXPECT_EQ(std::string(text), "N172");

    EXPECT_FALSE(xpsim::SetDataRefFromText("test/nothing", "1", error));
    EXPECT_EQ(error, "no dataref named test/nothing");
    EXPECT_FALSE(xpsim::SetDataRefFromText("test/int", "1.5", error));
    EXPECT_EQ(error, "'1.5' is not an integer for test/int");
    EXPECT_FALSE(xpsim::SetDataRefFromText("test/ints", "1,,2", error));
    EXPECT_EQ(error, "'' is not an integer for test/ints");
}
