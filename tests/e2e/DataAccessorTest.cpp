// Data accessors and shared data end to end: scripts publish their own datarefs through
// XPLMRegisterDataAccessor, other scripts and the simulator read and write them, and scripts
// subscribe to shared data. The registry is observed through the DebugCallbacks trace and the
// CheckCallbacks report; the test build runs under AddressSanitizer, so a trampoline reaching a
// freed block ends xpsim and fails the run.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "SimHarness.h"

namespace {

// A script whose class Corvelle runs `start` in XPluginStart and `enable` in XPluginEnable (both
// indented by eight spaces), `stop` in XPluginStop, with further methods.
std::string Script(const std::string& name, const std::string& start, const std::string& enable,
                   const std::string& stop, const std::string& methods = "") {
    return EntryPointScript("from XPLMDataAccess import *\n"
                            "from XPLMProcessing import *\n",
                            name, start, enable, stop, methods);
}

// The twelve size lines of an accessor trace, from the sizes in argument order.
std::string SizeLines(const std::vector<int>& sizes) {
    static const char* names[12] = {"GetDataiCallbackList",  "SetDataiCallbackList",  "GetDatafCallbackList",
                                    "SetDatafCallbackList",  "GetDatadCallbackList",  "SetDatadCallbackList",
                                    "GetDataviCallbackList", "SetDataviCallbackList", "GetDatavfCallbackList",
                                    "SetDatavfCallbackList", "GetDatabCallbackList",  "SetDatabCallbackList"};
    std::string text;
    for (int i = 0; i < 12; ++i) text += std::string(names[i]) + " size = " + std::to_string(sizes[i]) + "\n";
    return text;
}

const std::string kDebugIni = "[DEBUG]\nDebugCallbacks=1\nCheckCallbacks=1\n";

TEST(DataAccessor, RegistrationRecordsOnlyBoundMethodsAndTracesTheBlocks) {
    SimFolder sim;
    sim.writeFile("Resources/plugins/Corvelle/Corvelle.ini", kDebugIni);
    sim.writeScript("CV_Owner.py",
                    "def plain(refcon):\n"
                    "    return 99\n" +
                        Script("Owner",
                               "        self.value = 5\n"
                               "        self.get = self.GetInt\n"
                               "        self.set = self.SetInt\n"
                               // Int and float offered, but only the int accessors given.
                               "        self.ref = XPLMRegisterDataAccessor(self, 'test/owner/int', 3, 1, self.get, "
                               "self.set, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, -7, 8)\n"
                               "        self.plain = XPLMRegisterDataAccessor(self, 'test/owner/plain', 1, 0, plain, "
                               "None, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0)\n",
                               "        print('ref', type(self.ref).__name__, self.ref != 0, "
                               "XPLMFindDataRef('test/owner/int') == self.ref)\n"
                               "        print('types', XPLMGetDataRefTypes(self.ref), XPLMCanWriteDataRef(self.ref))\n"
                               "        print('int', XPLMGetDatai(self.ref), 'float', XPLMGetDataf(self.ref))\n"
                               "        XPLMSetDatai(self.ref, 40)\n"
                               "        print('after set', XPLMGetDatai(self.ref))\n"
                               "        print('plain', XPLMGetDatai(self.plain))\n"
                               "        for args in [(self, 'test/bad', 1, 0, self.get),\n"
                               "                     (self, 'test/bad', 1, 0) + (0,) * 12 + ('read', 0)]:\n"
                               "            try:\n"
                               "                XPLMRegisterDataAccessor(*args)\n"
                               "            except TypeError:\n"
                               "                print('TypeError')\n",
                               "",
                               "    def GetInt(self, refcon):\n"
                               "        return self.value + refcon\n"
                               "    def SetInt(self, refcon, value):\n"
                               "        print('setter', refcon, value)\n"
                               "        self.value = value\n"));
    SimRun run = sim.run({"--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    // The getter and setter receive their own refcons; the float read finds an empty slot and
    // gives 0 without calling the script, as does the plain function's accessor.
    EXPECT_EQ(sim.output(),
              "ref int True True\n"
              "types 3 1\n"
              "int -2 float 0.0\n"
              "setter 8 40\n"
              "after set 33\n"
              "plain 0\n"
              "TypeError\n"
              "TypeError\n");

    const std::string log = sim.log();
    const std::string id = Between(log, "XPLMRegisterDataAccessor\npScriptId = ", ",");
    ASSERT_GT(id.size(), 8u) << log;
    const std::string dataRef = Between(log, "inWriteRefcon = 8, DataRef = ", "\n");
    const std::string readBlock = Between(log, "pDataAccessorGetCB = ", "\n");
    const std::string writeBlock = Between(log, "pDataAccessorSetCB = ", "\n");
    ASSERT_GT(dataRef.size(), 8u) << log;
    ASSERT_GT(readBlock.size(), 8u) << log;
    ASSERT_GT(writeBlock.size(), 8u) << log;
    EXPECT_NE(readBlock, writeBlock);
    // Exactly two records, one in each int list.
    EXPECT_NE(log.find("XPLMRegisterDataAccessor\n"
                       "pScriptId = " + id + ", inDataName = test/owner/int, inDataType = 3, inIsWritable = 1, "
                       "inReadRefcon = -7, inWriteRefcon = 8, DataRef = " + dataRef + "\n"
                       "pDataAccessorGetCB = " + readBlock + "\n"
                       "pDataAccessorSetCB = " + writeBlock + "\n" +
                       SizeLines({1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}) + "XPLMRegisterDataAccessor\n"),
              std::string::npos)
        << log;
    // The plain function is not recorded: the second registration leaves the lists as they were.
    EXPECT_NE(log.find("inDataName = test/owner/plain, inDataType = 1, inIsWritable = 0, inReadRefcon = 0, "
                       "inWriteRefcon = 0, DataRef = "),
              std::string::npos);
    EXPECT_EQ(CountOf(log, SizeLines({1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}) + "XPLMRegisterDataAccessor\n"), 2u) << log;
    // Nothing was unregistered: two records and two blocks in each block list are left over.
    EXPECT_NE(log.find("*** Checking Integrity of Callbacks Started. ***\n"
                       "GetDataiCallbackList size = 1\n"
                       "Script 'Owner.py.'\n"
                       "Mismatch of callback creation and destruction.\n"
                       "SetDataiCallbackList size = 1\n"
                       "Script 'Owner.py.'\n"
                       "Mismatch of callback creation and destruction.\n"
                       "GetDataMemoryPointerList size = 2\n"
                       "Mismatch of GetDataMemoryPointerList creation and destruction.\n"
                       "SetDataMemoryPointerList size = 2\n"
                       "Mismatch of SetDataMemoryPointerList creation and destruction.\n"
                       "*** Checking Integrity of Callbacks Finished. ***\n"),
              std::string::npos)
        << log;
}

TEST(DataAccessor, OtherScriptsAndTheSimulatorReadAndWriteThroughTheScript) {
    SimFolder sim;
    sim.writeScript("CV_A_Owner.py",
                    Script("Owner",
                           "        self.value = 1\n"
                           "        self.get, self.set = self.GetInt, self.SetInt\n"
                           "        self.ref = XPLMRegisterDataAccessor(self, 'test/owner/int', xplmType_Int, 1, "
                           "self.get, self.set, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 100, 200)\n",
                           "",
                           "        print('owner sees', self.value, XPLMUnregisterDataAccessor(self, self.ref))\n",
                           "    def GetInt(self, refcon):\n"
                           "        return self.value\n"
                           "    def SetInt(self, refcon, value):\n"
                           "        print('set', refcon, value)\n"
                           "        self.value = value\n"));
    sim.writeScript("CV_B_Reader.py",
                    Script("Reader", "",
                           "        ref = XPLMFindDataRef('test/owner/int')\n"
                           "        print('reader', XPLMGetDatai(ref))\n"
                           "        XPLMSetDatai(ref, 17)\n"
                           "        print('reader', XPLMGetDatai(ref))\n",
                           ""));
    const std::string events = sim.writeEvents("0.5 set test/owner/int 23\n");
    SimRun run = sim.run({"--seconds", "1", "--events", events});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(), "reader 1\nset 200 17\nreader 17\nset 200 23\nowner sees 23 1\n");
    EXPECT_EQ(CountOf(sim.log(), "Error"), 0u) << sim.log();
}

// An array getter fills a list that the plugin then converts item by item; an item whose conversion
// empties the list leaves the reader with the items the list held when the getter returned.
TEST(DataAccessor, AnArrayGetterWhoseListIsEmptiedWhileReadGivesTheItemsItHeld) {
    setenv("PYTHONMALLOC", "malloc_debug", 1);  // a freed list is then the sanitizer's to see
    SimFolder sim;
    sim.writeScript("CV_Ints.py",
                    Script("Ints",
                           "        self.get = self.GetInts\n"
                           "        self.ref = XPLMRegisterDataAccessor(self, 'test/ints', xplmType_IntArray, 0, 0, 0, "
                           "0, 0, 0, 0, self.get, 0, 0, 0, 0, 0, 0, 0)\n",
                           "        out = []\n"
                           "        print('read', XPLMGetDatavi(self.ref, out, 0, 4), out)\n",
                           "        XPLMUnregisterDataAccessor(self, self.ref)\n",
                           "    class Emptier:\n"
                           "        def __index__(self):\n"
                           "            self.victim.clear()\n"
                           "            return 7\n"
                           "    def GetInts(self, refcon, values, offset, count):\n"
                           "        if values is not None:\n"
                           "            emptier = self.Emptier()\n"
                           "            emptier.victim = values\n"
                           "            values.extend([1, emptier, 3, 4])\n"
                           "        return 4\n"));
    SimRun run = sim.run({"--frames", "1"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(), "read 4 [1, 7, 3, 4]\n");
}

TEST(DataAccessor, UnregistrationFollowsTheMemoryPointerIndexRuleWithoutFreeingLiveBlocks) {
    SimFolder sim;
    sim.writeFile("Resources/plugins/Corvelle/Corvelle.ini", kDebugIni);
    // A float accessor, then two int accessors: unregistering the last one removes the block at
    // the position of its int record (1), which is the first int accessor's block. Then two
    // accessors that share one getter method: the second registration's handle lands in the first
    // one's record.
    sim.writeScript("CV_Rules.py",
                    Script("Rules",
                           // Three bound method objects: each registration has a getter of its own.
                           "        self.ga, self.gb, self.gc = self.Get, self.Get, self.Get\n"
                           "        self.shared = self.Shared\n"
                           "        R = XPLMRegisterDataAccessor\n"
                           "        self.a = R(self, 'test/rules/a', xplmType_Float, 0, 0, 0, self.ga, 0, 0, 0, 0, 0, "
                           "0, 0, 0, 0, 1, 0)\n"
                           "        self.b = R(self, 'test/rules/b', xplmType_Int, 0, self.gb, 0, 0, 0, 0, 0, 0, 0, 0, "
                           "0, 0, 0, 2, 0)\n"
                           "        self.c = R(self, 'test/rules/c', xplmType_Int, 0, self.gc, 0, 0, 0, 0, 0, 0, 0, 0, "
                           "0, 0, 0, 3, 0)\n",
                           "        U = XPLMUnregisterDataAccessor\n"
                           "        print('c', U(self, self.c), XPLMGetDatai(self.b), XPLMGetDataf(self.a))\n"
                           "        print('b', U(self, self.b), XPLMGetDataf(self.a))\n"
                           "        print('a', U(self, self.a))\n"
                           "        print('empty', U(self, self.a))\n"
                           "        R = XPLMRegisterDataAccessor\n"
                           "        self.d = R(self, 'test/rules/d', xplmType_Int, 0, self.shared, 0, 0, 0, 0, 0, 0, 0, "
                           "0, 0, 0, 0, 4, 0)\n"
                           "        self.e = R(self, 'test/rules/e', xplmType_Int, 0, self.shared, 0, 0, 0, 0, 0, 0, 0, "
                           "0, 0, 0, 0, 5, 0)\n"
                           "        print('e', U(self, self.e), XPLMGetDatai(self.d))\n"
                           "        print('d', U(self, self.d))\n",
                           "",
                           "    def Get(self, refcon):\n"
                           "        return refcon * 10\n"
                           "    def Shared(self, refcon):\n"
                           "        return refcon * 100\n"));
    SimRun run = sim.run({"--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    // Every accessor still answers through its own getter after another one's block was removed.
    EXPECT_EQ(sim.output(),
              "c 1 20 10.0\n"
              "b 1 10.0\n"
              "a 1\n"
              "empty 1\n"
              "e 1 400\n"
              "d 1\n");

    const std::string log = sim.log();
    // The read blocks in registration order: a, b, c.
    std::vector<std::string> blocks;
    for (size_t pos = log.find("XPLMRegisterDataAccessor\n"); pos != std::string::npos && blocks.size() < 3;
         pos = log.find("XPLMRegisterDataAccessor\n", log.find("XPLMRegisterDataAccessor\n", pos + 1) + 1))
        blocks.push_back(Between(log, "pDataAccessorGetCB = ", "\n", pos));
    ASSERT_EQ(blocks.size(), 3u) << log;
    // c (int record at 1) takes b's block; b (int record at 0) takes a's; a (float record at 0)
    // takes the one left, c's.
    std::vector<std::string> removed;
    for (size_t pos = log.find("XPLMUnregisterDataAccessor\npScriptId"); pos != std::string::npos;
         pos = log.find("XPLMUnregisterDataAccessor\npScriptId", pos + 1))
        removed.push_back(Between(log, "pDataAccessorGetCB = ", "\n", pos));
    ASSERT_EQ(removed.size(), 6u) << log;
    EXPECT_EQ(removed[0], blocks[1]);
    EXPECT_EQ(removed[1], blocks[0]);
    EXPECT_EQ(removed[2], blocks[2]);
    EXPECT_EQ(removed[3], "0");
    EXPECT_EQ(CountOf(log, "Module - XPLMDataAccess, Function - XPLMUnregisterDataAccessor, Error = GetData List "
                           "Empty Error\n"),
              2u)
        << log;
    EXPECT_NE(log.find("Module - XPLMDataAccess, Function - XPLMUnregisterDataAccessor, Error = GetData List Empty "
                       "Error\n"
                       "Module - XPLMDataAccess, Function - XPLMUnregisterDataAccessor, Error = GetData List Empty "
                       "Error\n"
                       "XPLMUnregisterDataAccessor\n"),
              std::string::npos);
    EXPECT_NE(log.find("pDataAccessorGetCB = 0\npDataAccessorSetCB = 0\n" + SizeLines({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0})),
              std::string::npos)
        << log;
    // Unregistering e took d's record (it held e's handle); d then found nothing of its own, so e's
    // record is what is left at stop.
    EXPECT_NE(log.find("*** Checking Integrity of Callbacks Started. ***\n"
                       "GetDataiCallbackList size = 1\n"
                       "Script 'Rules.py.'\n"
                       "Mismatch of callback creation and destruction.\n"
                       "*** Checking Integrity of Callbacks Finished. ***\n"),
              std::string::npos)
        << log;
}

TEST(DataAccessor, SharedDataNotifiesEachSubscriberAndUnsharingNeedsTheSameRefcon) {
    SimFolder sim;
    sim.writeFile("Resources/plugins/Corvelle/Corvelle.ini", "[DEBUG]\nDebugCallbacks=1\n");
    const std::string methods = "    def Changed(self, refcon):\n"
                                "        print(self.name, 'notified', refcon, XPLMGetDatai(XPLMFindDataRef('test/shared/value')))\n";
    sim.writeScript("CV_A_First.py",
                    Script("First",
                           "        self.name = 'first'\n"
                           "        self.cb = self.Changed\n"
                           "        print('first shares', XPLMShareData(self, 'test/shared/value', xplmType_Int, self.cb, 1))\n"
                           "        print('conflict', XPLMShareData(self, 'test/shared/value', xplmType_Float, self.cb, 2))\n",
                           "        print('wrong refcon', XPLMUnshareData(self, 'test/shared/value', xplmType_Int, self.cb, 9))\n"
                           "        XPLMSetDatai(XPLMFindDataRef('test/shared/value'), 5)\n",
                           "        print('first unshares', XPLMUnshareData(self, 'test/shared/value', xplmType_Int, self.cb, 1))\n",
                           methods));
    sim.writeScript("CV_B_Second.py",
                    Script("Second",
                           "        self.name = 'second'\n"
                           "        self.cb = self.Changed\n"
                           "        print('second shares', XPLMShareData(self, 'test/shared/value', xplmType_Int, self.cb, 3))\n",
                           "",
                           "",
                           methods));
    const std::string events = sim.writeEvents("0.5 set test/shared/value 6\n");
    SimRun run = sim.run({"--seconds", "1", "--events", events});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    // Both scripts live in the one plugin, so a script's own write notifies neither of them; the
    // simulator's write notifies both, each with its own refcon. The refused share is never called.
    EXPECT_EQ(sim.output(),
              "first shares 1\n"
              "conflict 0\n"
              "second shares 1\n"
              "wrong refcon 0\n"
              "first notified 1 6\n"
              "second notified 3 6\n"
              "first unshares 1\n");
    const std::string log = sim.log();
    EXPECT_NE(log.find("Module - XPLMDataAccess, Function - XPLMUnshareData, Error = Script 'First.py' was "
                       "unregistering a callback and refcon that does not exist, check refcon matches the one that "
                       "was used in registering.\n"),
              std::string::npos)
        << log;
    // Each script has its own entry; the refused share keeps its entry too.
    EXPECT_TRUE(InOrder(log, {"XPLMShareData\npScriptId = ", ", inDataName = test/shared/value, inDataType = 1, "
                              "inNotificationRefcon = 1\nSharedDataCallbackList size = 1\nXPLMShareData\n",
                              "inDataType = 2, inNotificationRefcon = 2\nSharedDataCallbackList size = 2\n",
                              "inDataType = 1, inNotificationRefcon = 3\nSharedDataCallbackList size = 3\n",
                              "Script Name = First, inDataName = test/shared/value, inDataType = 1, "
                              "inNotificationRefcon = 9\nSharedDataCallbackList size = 3\nXPLMUnshareData\n",
                              "Script Name = First, inDataName = test/shared/value, inDataType = 1, "
                              "inNotificationRefcon = 1\nSharedDataCallbackList size = 2\nXPLMUnshareData\n"}))
        << log;
}

}  // namespace
