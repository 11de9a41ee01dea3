// The dataref dump: every dataref's value as text (`--dump-datarefs`), including plugins' accessors
// that answer hostile sizes and counts.
#include <algorithm>
#include <climits>
#include <string>

#include "SimTestSupport.h"
#include "XPLMDataAccess.h"
#include "XPLMPlugin.h"
#include "world/DataRefDump.h"

namespace {

using simtest::ReadFile;

std::string gReaders;

double ReadDouble(void*) {
    gReaders += "double by " + std::to_string(XPLMGetMyID()) + ";";
    return 0.1;
}
int ReadIntWrongly(void*) { return 99; }
// An array accessor that claims everything: a size far beyond the dump's cut, and more elements
// copied than it was asked for.
int ReadHugeArray(void*, int* out, int, int max) {
    if (out == nullptr) return INT_MAX;
    for (int i = 0; i < 3 && i < max; ++i) out[i] = -i;
    return max + 1000;
}
int ReadNegativeSize(void*, float*, int, int) { return -5; }

XPLMDataRef Accessor(const char* name, XPLMDataTypeID types, XPLMGetDatai_f readInt, XPLMGetDatad_f readDouble,
                     XPLMGetDatavi_f readInts, XPLMGetDatavf_f readFloats) {
    return XPLMRegisterDataAccessor(name, types, 0, readInt, nullptr, nullptr, nullptr, readDouble, nullptr, readInts,
                                    nullptr, readFloats, nullptr, nullptr, nullptr, nullptr, nullptr);
}

bool HasLine(const std::string& text, const std::string& line) {
    return text.rfind(line + "\n", 0) == 0 || text.find("\n" + line + "\n") != std::string::npos;
}

class sim_DataRefDump : public simtest::WorldTest {};

}  // namespace

TEST_F(sim_DataRefDump, WritesEveryTypeInItsShortestFormAndCutsWhatAccessorsClaim) {
    simtest::WriteFile(root_ + "/Resources/plugins/DataRefs.txt",
                       "2 1041 Mon Oct  5 23:29:08 2015\n"
                       "test/int\tint\ty\n"
                       "test/float\tfloat\ty\n"
                       "test/double\tdouble\tn\n"
                       "test/ints\tint[3]\ty\n"
                       "test/floats\tfloat[2]\ty\n"
                       "test/bytes\tbyte[4]\ty\n"
                       "test/untouched\tfloat[2]\ty\n");
    xpsim::LoadStandardDataRefs();
    const std::pair<const char*, const char*> writes[] = {
        {"test/int", "-7"},      {"test/float", "0.1"},         {"test/double", "47.449889123"},
        {"test/ints", "1,-2,3"}, {"test/floats", "1.5,-1e-30"}, {"test/bytes", "AB"}};
    for (const auto& [name, value] : writes) {
        std::string error;
        ASSERT_TRUE(xpsim::SetDataRefFromText(name, value, error)) << error;
    }

    const int owner = simtest::AddEnabledPlugin("/p/owner.xpl", simtest::StartAsPlugin);
    XPLMDataRef gone = nullptr;
    {
        xpsim::PluginContext context(owner);
        // int|double: the double is read, through the accessor, in the owner's context.
        Accessor("test/plugin/both", xplmType_Int | xplmType_Double, ReadIntWrongly, ReadDouble, nullptr, nullptr);
        Accessor("test/plugin/huge", xplmType_IntArray, nullptr, nullptr, ReadHugeArray, nullptr);
        Accessor("test/plugin/negative", xplmType_FloatArray, nullptr, nullptr, nullptr, ReadNegativeSize);
        gone = Accessor("test/plugin/gone", xplmType_Int, ReadIntWrongly, nullptr, nullptr, nullptr);
        XPLMUnregisterDataAccessor(gone);
        XPLMShareData("test/shared", xplmType_Float, nullptr, nullptr);
    }
    gReaders.clear();
    const std::string text = xpsim::DataRefDumpText();

    // The file's datarefs come first, in its order.
    EXPECT_EQ(text.rfind("test/int\tint\t-7\n"
                         "test/float\tfloat\t0.1\n"
                         "test/double\tdouble\t47.449889123\n"
                         "test/ints\tint[3]\t1,-2,3\n"
                         "test/floats\tfloat[2]\t1.5,-1e-30\n"
                         "test/bytes\tbyte[4]\t65,66,0,0\n"
                         "test/untouched\tfloat[2]\t0,0\n",
                         0),
              0u)
        << text;
    EXPECT_TRUE(HasLine(text, "sim/time/paused\tint\t0")) << text;
    EXPECT_TRUE(HasLine(text, "test/plugin/both\tdouble\t0.1")) << text;
    EXPECT_EQ(gReaders, "double by " + std::to_string(owner) + ";");
    EXPECT_TRUE(HasLine(text, "test/plugin/negative\tfloat[0]\t")) << text;
    EXPECT_TRUE(HasLine(text, "test/shared\tfloat\t0")) << text;
    EXPECT_EQ(text.find("test/plugin/gone"), std::string::npos);

    // The array that claims INT_MAX elements is cut to the dump's limit, and its count to the size.
    const size_t huge = text.find("test/plugin/huge\tint[" + std::to_string(xpsim::kMaxDumpElements) + "]\t0,-1,-2,0,");
    ASSERT_NE(huge, std::string::npos) << text.substr(0, 2000);
    const std::string line = text.substr(huge, text.find('\n', huge) - huge);
    EXPECT_EQ(std::count(line.begin(), line.end(), ','), xpsim::kMaxDumpElements - 1);
}

TEST_F(sim_DataRefDump, TheProgramWritesItAfterTheLastFrameAndNotesAFileItCannotWrite) {
    const std::string root = root_ + "/sim";
    const auto run = simtest::RunXpsim({"run", "--root", root, "--frames", "3", "--dump-datarefs", "values.txt"});
    ASSERT_EQ(run.status, 0) << run.err;
    const std::string dump = ReadFile(root + "/values.txt");
    EXPECT_TRUE(HasLine(dump, "sim/time/total_running_time_sec\tfloat\t0.15")) << dump;
    EXPECT_TRUE(HasLine(dump, "sim/time/framerate_period\tfloat\t0.05")) << dump;
    const std::string log = ReadFile(root + "/Log.txt");
    const size_t written = log.find("xpsim: datarefs written to " + simtest::RealPath(root) + "/values.txt\n");
    EXPECT_NE(written, std::string::npos) << log;
    EXPECT_LT(written, log.find("xpsim: run complete"));

    const auto lost = simtest::RunXpsim({"run", "--root", root, "--frames", "1", "--dump-datarefs", "no/such/x.txt"});
    EXPECT_EQ(lost.status, 0) << lost.err;
    EXPECT_NE(ReadFile(root + "/Log.txt")
                  .find("xpsim: --dump-datarefs: cannot write the dataref dump to " + simtest::RealPath(root) +
                        "/no/such/x.txt: No such file or directory\n"),
              std::string::npos);

    const auto bad = simtest::RunXpsim({"run", "--root", root, "--dump-datarefs"});
    EXPECT_EQ(bad.status, 2);
    EXPECT_EQ(bad.err.rfind("xpsim: --dump-datarefs needs a value\n", 0), 0u) << bad.err;
}
