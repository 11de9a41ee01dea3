// XPLMDataAccess from a script's side: finding datarefs, typed reads and writes through the
// simulator, the sequence rules of the array and byte functions, and out-of-range arguments.
//
// Datarefs used (all from tests/data/DataRefs.txt):
//   sim/cockpit/radios/nav1_freq_hz   int, writable
//   sim/flightmodel/position/psi      float, writable
//   sim/flightmodel/position/local_x  double, writable
//   sim/flightmodel/position/latitude double, read-only
//   sim/flightmodel/position/q        float[4], writable
//   sim/cockpit2/EFIS/EFIS_page       int[6], writable
//   sim/test/four_ints                int[4], writable: added to the test's own DataRefs.txt, since the
//                                     simulator's list has no four-element int array
//   sim/aircraft/view/acf_tailnum     byte[40], writable
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "SimHarness.h"

namespace {

// A script whose XPluginStart runs `start` and whose XPluginEnable runs `enable` (both indented by
// eight spaces). `attempt` prints a call's result, or the exception it raised.
std::string DataScript(const std::string& start, const std::string& enable = "        pass\n") {
    return "from XPLMDataAccess import *\n"
           "\n"
           "def attempt(label, call):\n"
           "    try:\n"
           "        print(label, repr(call()))\n"
           "    except Exception as error:\n"
           "        print(label, type(error).__name__, str(error))\n"
           "\n"
           "INT = XPLMFindDataRef('sim/cockpit/radios/nav1_freq_hz')\n"
           "FLOAT = XPLMFindDataRef('sim/flightmodel/position/psi')\n"
           "DOUBLE = XPLMFindDataRef('sim/flightmodel/position/local_x')\n"
           "READONLY = XPLMFindDataRef('sim/flightmodel/position/latitude')\n"
           "QUAT = XPLMFindDataRef('sim/flightmodel/position/q')\n"
           "EFIS = XPLMFindDataRef('sim/cockpit2/EFIS/EFIS_page')\n"
           "TAIL = XPLMFindDataRef('sim/aircraft/view/acf_tailnum')\n"
           "\n"
           "class Corvelle:\n"
           "    def XPluginStart(self):\n" +
           start +
           "        print('start done')\n"
           "        return 'DataAccess', 'test.dataaccess', 'Data access test'\n"
           "    def XPluginEnable(self):\n" +
           enable +
           "        return 1\n"
           "    def XPluginDisable(self):\n"
           "        pass\n"
           "    def XPluginStop(self):\n"
           "        pass\n"
           "    def XPluginReceiveMessage(self, who, message, param):\n"
           "        pass\n";
}

const std::string kReport = "Module - XPLMDataAccess, Function - ";

}  // namespace

TEST(DataAccess, FindDataRefHandlesTypesAndTheMethodTable) {
    SimFolder sim;
    sim.writeScript("CV_Find.py", DataScript(
        "        print('missing', XPLMFindDataRef('sim/no/such/dataref'))\n"
        "        print('handle', type(INT).__name__, INT != 0, XPLMFindDataRef('sim/cockpit/radios/nav1_freq_hz') == INT)\n"
        "        print('writable', XPLMCanWriteDataRef(INT), XPLMCanWriteDataRef(READONLY))\n"
        "        print('types', [XPLMGetDataRefTypes(h) for h in (INT, FLOAT, DOUBLE, QUAT, EFIS, TAIL)])\n"
        "        attempt('None handle', lambda: type(XPLMGetDatai(None)))\n"
        "        attempt('int name', lambda: XPLMFindDataRef(5))\n"
        "        import XPLMDataAccess\n"
        "        for name in sorted(n for n in dir(XPLMDataAccess) if callable(getattr(XPLMDataAccess, n))):\n"
        "            print('method', name, getattr(XPLMDataAccess, name).__doc__)\n"));
    SimRun run = sim.run({"--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;

    const std::string out = sim.output();
    EXPECT_TRUE(InOrder(out, {"missing None\n",
                              "handle int True True\n",
                              "writable 1 0\n",
                              "types [1, 2, 4, 8, 16, 32]\n",
                              "None handle TypeError ",
                              "int name TypeError ",
                              "method XPLMCanWriteDataRef Test for writable Dataref.\n"
                              "method XPLMFindDataRef Find Dataref.\n"
                              "method XPLMGetDataRefTypes Get the Dataref Type.\n"
                              "method XPLMGetDatab Get Byte Array Dataref.\n"
                              "method XPLMGetDatad Get Double Dataref.\n"
                              "method XPLMGetDataf Get Float Dataref.\n"
                              "method XPLMGetDatai Get Integer Dataref.\n"
                              "method XPLMGetDatavf Get Float Array Dataref.\n"
                              "method XPLMGetDatavi Get Integer Array Dataref.\n"
                              "method XPLMRegisterDataAccessor Register data accessor.\n"
                              "method XPLMSetDatab Set Byte Array Dataref.\n"
                              "method XPLMSetDatad Set Double Dataref.\n"
                              "method XPLMSetDataf Set Float Dataref.\n"
                              "method XPLMSetDatai Set Integer Dataref.\n"
                              "method XPLMSetDatavf Set Float Array Dataref.\n"
                              "method XPLMSetDatavi Set Integer Array Dataref.\n"
                              "method XPLMShareData Share Data.\n"
                              "method XPLMUnregisterDataAccessor Unregister data accessor.\n"
                              "method XPLMUnshareData Unshare Data.\n"
                              "start done\n"}))
        << out;
    EXPECT_EQ(CountOf(out, "method "), 19u) << out;

    // Every failed lookup is reported once, with the name; nothing else is reported.
    const std::string log = sim.log();
    EXPECT_EQ(CountOf(log, kReport + "XPLMFindDataRef, Error = DataRef [sim/no/such/dataref] not found, "
                                     "check that DataRef string is correct\n"),
              1u)
        << log;
    EXPECT_EQ(CountOf(log, "Module - "), 1u) << log;
}

TEST(DataAccess, ScalarsRoundTripThroughTheSimulator) {
    SimFolder sim;
    sim.writeScript("CV_Scalars.py", DataScript(
        "        print('set', XPLMSetDatai(INT, 11030), XPLMSetDataf(FLOAT, 123.5), XPLMSetDatad(DOUBLE, 1234567.125))\n"
        "        attempt('int from str', lambda: XPLMSetDatai(INT, 'abc'))\n"
        "        attempt('int from float', lambda: XPLMSetDatai(INT, 1.5))\n"
        "        print('float precision', XPLMSetDataf(FLOAT, 0.1), XPLMGetDataf(FLOAT) == 0.1, abs(XPLMGetDataf(FLOAT) - 0.1) < 1e-7)\n"
        "        XPLMSetDataf(FLOAT, 123.5)\n",
        // Read back in a later entry point, so the values come from the simulator.
        "        print('get', repr((XPLMGetDatai(INT), XPLMGetDataf(FLOAT), XPLMGetDatad(DOUBLE))))\n"));
    SimRun run = sim.run({"--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;

    const std::string out = sim.output();
    EXPECT_TRUE(InOrder(out, {"set 1 1 1\n",
                              "int from str TypeError ",
                              "int from float TypeError ",
                              "float precision 1 False True\n",
                              "start done\n",
                              "get (11030, 123.5, 1234567.125)\n"}))
        << out;
    // A refused argument is the interpreter's parse error only: no report.
    EXPECT_EQ(CountOf(sim.log(), "Module - "), 0u) << sim.log();
}

// The functions scripts call every frame (dataref access, drawing, window and widget geometry and
// properties) convert their arguments directly; each mistake raises exactly what the interpreter's
// own argument parsing raises for it, and calls made right give what they always gave.
TEST(DataAccess, PerFrameArgumentMistakesRaiseTheInterpretersErrors) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"XPLMGetDataf()", "TypeError function takes exactly 1 argument (0 given)"},
        {"XPLMGetDataf(FLOAT, 1)", "TypeError function takes exactly 1 argument (2 given)"},
        {"XPLMGetDataf('x')", "TypeError an integer is required"},
        {"XPLMGetDatai(None)", "TypeError an integer is required"},
        {"XPLMGetDatad(2**70)", "OverflowError Python int too large to convert to C unsigned long"},
        {"XPLMSetDatai(INT)", "TypeError function takes exactly 2 arguments (1 given)"},
        {"XPLMSetDatai(INT, 1.5)", "TypeError 'float' object cannot be interpreted as an integer"},
        {"XPLMSetDatai(INT, 2**40)", "OverflowError signed integer is greater than maximum"},
        {"XPLMSetDatai(INT, -2**40)", "OverflowError signed integer is less than minimum"},
        {"XPLMSetDatai(INT, 2**70)", "OverflowError Python int too large to convert to C long"},
        {"XPLMSetDataf(FLOAT, 'a')", "TypeError must be real number, not str"},
        {"XPLMSetDataf(FLOAT, 2**2000)", "OverflowError int too large to convert to float"},
        {"XPLMSetDatad(DOUBLE, None)", "TypeError must be real number, not NoneType"},
        {"(XPLMSetDatai(INT, True), XPLMGetDatai(INT))", "(1, 1)"},
        {"XPLMFindDataRef()", "TypeError function takes exactly 1 argument (0 given)"},
        {"XPLMFindDataRef(None)", "TypeError argument 1 must be str, not None"},
        {"XPLMFindDataRef(b'sim/test/four_ints')", "TypeError argument 1 must be str, not bytes"},
        {"XPLMFindDataRef('sim/test' + chr(0))", "ValueError embedded null character"},
        {"XPLMGetDatavf(QUAT, [], 0)", "TypeError function takes exactly 4 arguments (3 given)"},
        {"XPLMGetDatavf('q', [], 0, 4)", "TypeError an integer is required"},
        {"XPLMGetDatavf(QUAT, [], 0.5, 4)", "TypeError 'float' object cannot be interpreted as an integer"},
        {"XPLMGetDatavi(EFIS, (), 0, 6)", "TypeError expected sequence"},
        {"XPLMGetDatab(TAIL, None, 0, 2**40)", "OverflowError signed integer is greater than maximum"},
        {"XPLMSetDatavf(QUAT, [1.0], 0, '1')", "TypeError 'str' object cannot be interpreted as an integer"},
        {"XPLMSetDatavi(EFIS, 5, 0, 1)", "TypeError expected sequence"},
        {"XPLMSetDatab(TAIL, ['x'], 0)", "TypeError function takes exactly 4 arguments (3 given)"},
        {"(lambda v=[]: (XPLMSetDatavf(QUAT, (0.5, 1.5), 1, 2), XPLMGetDatavf(QUAT, v, 0, 4), v))()",
         "(1, 4, [0.0, 0.5, 1.5, 0.0])"},
        {"XPLMDrawString((1.0, 1.0), 10, 10, 'x', 0, 0)", "TypeError argument 1 must be sequence of length 3, not 2"},
        {"XPLMDrawString(5, 10, 10, 'x', 0, 0)", "TypeError argument 1 must be 3-item sequence, not int"},
        {"XPLMDrawString(b'abc', 10, 10, 'x', 0, 0)", "TypeError argument 1 must be 3-item sequence, not bytes"},
        {"XPLMDrawString((1.0, 'a', 1.0), 10, 10, 'x', 0, 0)", "TypeError must be real number, not str"},
        {"XPLMDrawString([1, 1, 1], 10, 10, None, 0, 0)", "TypeError argument 4 must be str, not None"},
        {"XPLMDrawString((1, 1, 1), 10, 10, 'x', 0)", "TypeError function takes exactly 6 arguments (5 given)"},
        {"XPLMDrawNumber((1.0, 1.0, 1.0), 10, 10, 'x', 5, 2, 1, 0)", "TypeError must be real number, not str"},
        {"XPLMDrawNumber('abc', 10, 10, 1.0, 5, 2, 1, 0)", "TypeError must be real number, not str"},
        {"XPLMSetGraphicsState(0, 1, 0, 0, 1, 0)", "TypeError function takes exactly 7 arguments (6 given)"},
        {"XPLMBindTexture2d(1.5, 0)", "TypeError 'float' object cannot be interpreted as an integer"},
        {"XPLMDrawTranslucentDarkBox(0, 0, 0, None)",
         "TypeError 'NoneType' object cannot be interpreted as an integer"},
        {"XPLMWorldToLocal(1.0, 2.0, 'x')", "TypeError must be real number, not str"},
        {"len(XPLMLocalToWorld(0.0, 0.0, 0.0))", "3"},
        {"XPLMMeasureString(0, None, 1)", "TypeError argument 2 must be str, not None"},
        {"XPLMGetWindowGeometry(0, [], [], [])", "TypeError function takes exactly 5 arguments (4 given)"},
        {"XPLMGetWindowGeometry(0, [], (), [], [])", "TypeError expected sequence"},
        {"XPLMSetWindowGeometry(0, 0, 0, 0, 0.5)", "TypeError 'float' object cannot be interpreted as an integer"},
        {"XPLMGetMouseLocation([])", "TypeError function takes exactly 2 arguments (1 given)"},
        {"XPLMGetScreenSize(1, [])", "TypeError expected sequence"},
        {"(lambda w=[], h=[]: (XPLMGetScreenSize(w, h), w, h))()", "(1, [1024], [768])"},
        {"XPDrawWindow(0, 0, 10, 10)", "TypeError function takes exactly 5 arguments (4 given)"},
        {"XPDrawElement(0, 0, 10, 10, 'a', 0)", "TypeError 'str' object cannot be interpreted as an integer"},
        {"XPDrawTrack(0, 0, 10, 10, 0, 10, 5, 0)", "TypeError function takes exactly 9 arguments (8 given)"},
        {"XPGetTrackMetrics(0, 0, 10, 100, 0, 10, 5)", "TypeError function takes exactly 8 arguments (7 given)"},
        {"XPGetTrackMetrics(0, 0, 10, 100, 0, 10, 5, 0)", "(1, 10, 35, 10, 35, 10)"},
        {"XPGetWidgetGeometry(W, [], [], [])", "TypeError function takes exactly 5 arguments (4 given)"},
        {"XPGetWidgetGeometry('w', [], [], [], [])", "TypeError an integer is required"},
        {"(lambda l=[], t=[]: (XPGetWidgetGeometry(W, l, t, None, []), l, t))()", "(1, [0], [100])"},
        {"XPSetWidgetGeometry(W, 0, 0, 0, '0')", "TypeError 'str' object cannot be interpreted as an integer"},
        {"XPGetWidgetDescriptor(W, [], None)", "TypeError 'NoneType' object cannot be interpreted as an integer"},
        {"XPGetWidgetDescriptor(W, {}, 10)", "TypeError expected sequence"},
        {"XPSetWidgetDescriptor(W, 5)", "TypeError argument 2 must be str, not int"},
        {"(lambda d=[]: (XPSetWidgetDescriptor(W, 'Table'), XPGetWidgetDescriptor(W, d, 3), d))()", "(1, 5, ['Tab'])"},
        {"XPGetWidgetProperty(W, 'p', None)", "TypeError 'str' object cannot be interpreted as an integer"},
        {"XPSetWidgetProperty(W, 1100, 1.5)", "TypeError an integer is required"},
        {"(lambda e=[]: (XPSetWidgetProperty(W, 1100, 1), XPGetWidgetProperty(W, 1100, e), e))()", "(1, 1, [1])"},
        {"[XPSetWidgetProperty(W, 1100, v) and XPGetWidgetProperty(W, 1100, None) for v in (-5, 2**40, -2**40, 2**62, "
         "2**64 - 1)]",
         "[-5, 1099511627776, -1099511627776, 4611686018427387904, -1]"},
        {"XPSetWidgetProperty(W, 1100, 2**64)", "OverflowError Python int too large to convert to C unsigned long"},
        {"XPSetWidgetProperty(W, 1100, -2**63 - 1)", "OverflowError Python int too large to convert to C long"},
        {"(XPSetWidgetGeometry(W, -7, 100, 2**20, 0), (lambda l=[], r=[]: (XPGetWidgetGeometry(W, l, None, r, None), "
         "l, "
         "r))())",
         "(1, (1, [-7], [1048576]))"},
    };
    std::string start = "        W = XPCreateWidget(0, 100, 100, 0, 1, 'W', 1, 0, 1)\n", expected;
    for (const auto& [call, answer] : cases) {
        start += "        attempt(\"" + call + "\", lambda: " + call + ")\n";
        expected += call + " " + answer + "\n";
    }
    start += "        XPDestroyWidget(self, W, 1)\n";
    SimFolder sim;
    const std::string imports =
        "from XPLMGraphics import *\nfrom XPLMDisplay import *\nfrom XPUIGraphics import *\nfrom XPWidgets import *\n";
    sim.writeScript("CV_Mistakes.py", imports + DataScript(start));
    ASSERT_EQ(sim.run({"--frames", "1"}).exitCode, 0);
    EXPECT_EQ(sim.output(), expected + "start done\n");
}

TEST(DataAccess, IntAndFloatArrays) {
    SimFolder sim;
    sim.writeScript("CV_Arrays.py", DataScript(
        "        FOUR = XPLMFindDataRef('sim/test/four_ints')\n"
        "        XPLMSetDatavi(FOUR, [1, 2, 3, 4], 0, 4)\n"
        "        out = []\n"
        "        print('four', XPLMGetDatavi(FOUR, out, 2, 3), out)\n"
        "        print('size', XPLMGetDatavi(EFIS, None, 0, 0), XPLMGetDatavf(QUAT, None, 0, 0))\n"
        "        print('set', XPLMSetDatavi(EFIS, [10, 11, 12, 13, 14, 15], 0, 6))\n"
        "        out = ['keep']\n"
        "        print('tail', XPLMGetDatavi(EFIS, out, 4, 3), out)\n"
        "        out = []\n"
        "        print('middle', XPLMGetDatavi(EFIS, out, 2, 3), out)\n"
        "        print('count from the script', XPLMSetDatavi(EFIS, (7, 8, 9), 1, 2))\n"
        "        attempt('float item', lambda: XPLMSetDatavi(EFIS, [1, 2.5], 0, 2))\n"
        "        attempt('str item', lambda: XPLMSetDatavi(EFIS, ['1', 2], 0, 2))\n"
        "        attempt('not a sequence', lambda: XPLMSetDatavi(EFIS, 5, 0, 1))\n"
        "        attempt('tuple to fill', lambda: XPLMGetDatavi(EFIS, (), 0, 1))\n"
        "        attempt('ints as floats', lambda: XPLMSetDatavf(QUAT, [1, 2], 0, 2))\n"
        "        print('floats', XPLMSetDatavf(QUAT, [0.5, -1.25], 1, 2))\n",
        "        out = []\n"
        "        print('ints now', XPLMGetDatavi(EFIS, out, 0, 6), out)\n"
        "        out = []\n"
        "        print('floats now', XPLMGetDatavf(QUAT, out, 0, 10), out)\n"));
    sim.writeFile("Resources/plugins/DataRefs.txt", sim.read("Resources/plugins/DataRefs.txt") +
                                                        "sim/test/four_ints\tint[4]\ty\t???\tFour ints for tests\n");
    SimRun run = sim.run({"--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;

    const std::string out = sim.output();
    EXPECT_TRUE(InOrder(out, {"four 2 [3, 4]\n",
                              "size 6 4\n",
                              "set 1\n",
                              "tail 2 ['keep', 14, 15]\n",
                              "middle 3 [12, 13, 14]\n",
                              "count from the script 1\n",
                              "float item TypeError expected sequence of integers\n",
                              "str item TypeError expected sequence of integers\n",
                              "not a sequence TypeError expected sequence\n",
                              "tuple to fill TypeError expected sequence\n",
                              "ints as floats TypeError expected sequence of floats\n",
                              "floats 1\n",
                              "start done\n",
                              // Refused sequences wrote nothing; the partial write wrote two.
                              "ints now 6 [10, 7, 8, 13, 14, 15]\n",
                              "floats now 4 [0.0, 0.5, -1.25, 0.0]\n"}))
        << out;
    EXPECT_EQ(CountOf(sim.log(), "Module - "), 0u) << sim.log();
}

TEST(DataAccess, ByteArraysFromOneStringOrSeveralInts) {
    SimFolder sim;
    sim.writeScript("CV_Bytes.py", DataScript(
        "        def read(offset=0, maximum=40):\n"
        "            out = []\n"
        "            n = XPLMGetDatab(TAIL, out, offset, maximum)\n"
        "            return n, out\n"
        "        print('size', XPLMGetDatab(TAIL, None, 0, 0))\n"
        "        print('ints', XPLMSetDatab(TAIL, [88] * 12, 0, 12), read())\n"
        "        print('string', XPLMSetDatab(TAIL, ['abc'], 0, 10), read(), read(10, 5))\n"
        "        print('one int', XPLMSetDatab(TAIL, [65], 0, 1), read(), read(1, 39))\n"
        "        print('bytes item', XPLMSetDatab(TAIL, [b'hi'], 0, 2), read())\n"
        "        print('bytes object', XPLMSetDatab(TAIL, b'AB', 0, 2), read())\n"
        "        print('bytearray item', XPLMSetDatab(TAIL, [bytearray(b'xyz')], 3, 3), read())\n"
        "        print('mixed', XPLMSetDatab(TAIL, [0x41, 'z', 0x43, -1, 0x145], 0, 5), ascii(read(0, 5)), ascii(read(2, 3)))\n"
        "        print('utf8', XPLMSetDatab(TAIL, ['\\u00e9t\\u00e9'], 0, 40), ascii(read()))\n"
        "        attempt('empty', lambda: XPLMSetDatab(TAIL, [], 0, 1))\n"
        "        attempt('not a sequence', lambda: XPLMSetDatab(TAIL, 5, 0, 1))\n"
        "        attempt('tuple to fill', lambda: XPLMGetDatab(TAIL, (), 0, 1))\n"));
    SimRun run = sim.run({"--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;

    const std::string out = sim.output();
    EXPECT_TRUE(InOrder(out, {"size 40\n",
                              "ints 1 (40, ['XXXXXXXXXXXX'])\n",
                              // The string, then zeros up to the count; bytes past the count stay.
                              "string 1 (40, ['abc']) (5, ['XX'])\n",
                              // A one-item list holding an int writes a zero byte.
                              "one int 1 (40, ['']) (39, ['bc'])\n",
                              // A string as long as the count gets no terminator.
                              "bytes item 1 (40, ['hic'])\n",
                              "bytes object 1 (40, ['ABc'])\n",
                              "bytearray item 1 (40, ['ABcxyz'])\n",
                              // Items that are not ints give zero bytes; ints give their low byte.
                              "mixed 1 (5, ['A']) (3, ['C\\ufffdE'])\n",
                              "utf8 1 (40, ['\\xe9t\\xe9'])\n",
                              "empty TypeError expected sequence of bytes\n",
                              "not a sequence TypeError expected sequence\n",
                              "tuple to fill TypeError expected sequence\n",
                              "start done\n"}))
        << out;
    EXPECT_EQ(CountOf(sim.log(), "Module - "), 0u) << sim.log();
}

TEST(DataAccess, OutOfRangeCountsAndOffsetsAreContained) {
    SimFolder sim;
    sim.writeScript("CV_Range.py", DataScript(
        "        BIG = 2**31 - 1\n"
        "        out = []\n"
        "        print('huge maximum', XPLMGetDatavi(EFIS, out, 0, BIG), len(out))\n"
        "        out = []\n"
        "        print('huge offset', XPLMGetDatavi(EFIS, out, BIG, 3), out)\n"
        "        print('negative offset', XPLMGetDatavi(EFIS, out, -1, 3), out)\n"
        "        print('negative maximum', XPLMGetDatavf(QUAT, out, 0, -5), out)\n"
        "        print('size query ignores them', XPLMGetDatavi(EFIS, None, -1, -1), XPLMGetDatab(TAIL, None, -7, -7))\n"
        "        print('count beyond the sequence', XPLMSetDatavi(EFIS, [1, 2], 0, BIG))\n"
        "        out = []\n"
        "        XPLMGetDatavi(EFIS, out, 0, 6)\n"
        "        print('ints', out)\n"
        "        print('negative set offset', XPLMSetDatavi(EFIS, [5], -3, 1))\n"
        "        print('negative set count', XPLMSetDatavf(QUAT, [1.0], 0, -1))\n"
        "        attempt('int beyond long', lambda: XPLMSetDatavi(EFIS, [2**100], 0, 1))\n"
        "        print('float beyond float', XPLMSetDatavf(QUAT, [1e300, -1e300], 0, 2))\n"
        "        out = []\n"
        "        XPLMGetDatavf(QUAT, out, 0, 2)\n"
        "        print('floats', out)\n"
        "        print('long string', XPLMSetDatab(TAIL, ['x' * 10000], 0, 100000))\n"
        "        out = []\n"
        "        print('read all', XPLMGetDatab(TAIL, out, 0, BIG), out == ['x' * 40])\n"
        "        print('long list', XPLMSetDatab(TAIL, list(range(65, 91)) * 400, 0, 10000))\n"
        "        out = []\n"
        "        XPLMGetDatab(TAIL, out, 0, 40)\n"
        "        print('bytes', out)\n"
        "        print('negative byte offset', XPLMSetDatab(TAIL, ['abc'], -1, 3))\n"
        "        print('negative byte count', XPLMSetDatab(TAIL, ['abc'], 0, -1))\n"
        "        out = []\n"
        "        print('negative read offset', XPLMGetDatab(TAIL, out, -5, 10), out)\n"
        "        print('offset past the end', XPLMGetDatab(TAIL, out, BIG, 10), out)\n"
        "        print('null handle', XPLMGetDatai(0), XPLMGetDatavi(0, None, 0, 0), XPLMSetDatab(0, ['a'], 0, 1))\n"
        "        attempt('handle too large', lambda: XPLMGetDatai(2**70))\n"));
    SimRun run = sim.run({"--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;

    const std::string out = sim.output();
    EXPECT_TRUE(InOrder(out, {"huge maximum 6 6\n",
                              "huge offset 0 []\n",
                              "negative offset 0 []\n",
                              "negative maximum 0 []\n",
                              "size query ignores them 6 40\n",
                              "count beyond the sequence 1\n",
                              "ints [1, 2, 0, 0, 0, 0]\n",
                              "negative set offset 0\n",
                              "negative set count 0\n",
                              "int beyond long TypeError expected sequence of integers\n",
                              "float beyond float 1\n",
                              "floats [inf, -inf]\n",
                              "long string 1\n",
                              "read all 40 True\n",
                              "long list 1\n",
                              "bytes ['ABCDEFGHIJKLMNOPQRSTUVWXYZABCDEFGHIJKLMN']\n",
                              "negative byte offset 0\n",
                              "negative byte count 0\n",
                              "negative read offset 0 []\n",
                              "offset past the end 0 ['']\n",
                              "null handle 0 0 1\n",
                              "handle too large OverflowError ",
                              "start done\n"}))
        << out;

    // Each negative offset, count or maximum is reported by the function it was given to, in order.
    const std::string log = sim.log();
    EXPECT_TRUE(InOrder(log, {kReport + "XPLMGetDatavi, Error = Parameter Error\n",
                              kReport + "XPLMGetDatavf, Error = Parameter Error\n",
                              kReport + "XPLMSetDatavi, Error = Parameter Error\n",
                              kReport + "XPLMSetDatavf, Error = Parameter Error\n",
                              kReport + "XPLMSetDatab, Error = Parameter Error\n",
                              kReport + "XPLMSetDatab, Error = Parameter Error\n",
                              kReport + "XPLMGetDatab, Error = Parameter Error\n"}))
        << log;
    EXPECT_EQ(CountOf(log, "Module - "), 7u) << log;
    // None of them reached the simulator.
    EXPECT_EQ(sim.simLog().find("negative offset or count"), std::string::npos) << sim.simLog();
}
