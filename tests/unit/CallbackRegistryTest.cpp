// The callback registry's list operations and its shutdown integrity check.
//
// Script ids and callables are only compared by identity here, so plain addresses stand in for
// them (no interpreter runs in these tests). The log goes where the plugin writes it: into
// Resources/plugins/PythonScripts under the simulator's system path, which the simulator library
// takes from the working directory until a folder is prepared; each test works in its own folder.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "CV_ScriptTable.h"
#include "CallbackRegistry.h"
#include "XPLMUtilities.h"

namespace fs = std::filesystem;

namespace {

PyObject* Obj(uintptr_t n) { return reinterpret_cast<PyObject*>(n); }
void* Ptr(uintptr_t n) { return reinterpret_cast<void*>(n); }

class CallbackRegistryTest : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/corvelle-registry-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        root_ = pattern;
        previous_ = fs::current_path();
        fs::create_directories(root_ + "/Resources/plugins/PythonScripts");
        fs::current_path(root_);
        char systemPath[1024] = {0};
        XPLMGetSystemPath(systemPath);
        ASSERT_EQ(std::string(systemPath), fs::canonical(root_).string() + "/");
        CVTestTable = new CV_ScriptTable();
        ClearAllLists();
    }
    void TearDown() override {
        ClearAllLists();
        delete CVTestTable;
        CVTestTable = nullptr;
        fs::current_path(previous_);
        std::error_code ec;
        fs::remove_all(root_, ec);
    }
    static void ClearAllLists() {
        for (const CV_ListEntry& e : CV_CallbackLists) {
            if (e.callbacks) e.callbacks->clear();
            if (e.blocks) e.blocks->clear();
            if (e.widgets) e.widgets->clear();
        }
    }
    std::string Log() const {
        std::ifstream in(root_ + "/Resources/plugins/PythonScripts/CorvelleLog.txt");
        std::stringstream ss;
        ss << in.rdbuf();
        return ss.str();
    }
    void AddScript(PyObject* id, const char* name) {
        CVTestTable->AddScriptId(id, name, CV_StandardScript);
        CVTestTable->SetScriptDescriptions(id, name, "sig", "desc", CV_StandardScript);
    }

    std::string root_;
    fs::path previous_;
};

TEST_F(CallbackRegistryTest, FindMatchesFirstRecordByEachKeyAndReportsMisses) {
    CV_ScriptTable& t = *CVTestTable;
    CV_CallbackVector* list = &DrawCallbackList;
    _CallbackList* a = t.AddCallback(list, Obj(0x100), nullptr, Obj(0x200), Ptr(7));
    _CallbackList* b = t.AddCallback(list, Obj(0x101), nullptr, Obj(0x200), Ptr(7));
    _CallbackList* c = t.AddCallback(list, Obj(0x100), nullptr, Obj(0x201), Ptr(8));
    ASSERT_EQ(list->size(), 3u);
    EXPECT_EQ(a->record->scriptId, Obj(0x100));
    EXPECT_EQ(a->record->sdkHandle, nullptr);
    EXPECT_EQ(a->record->callable, Obj(0x200));
    EXPECT_EQ(a->record->refcon, Ptr(7));

    int found = -1, index = -1;
    EXPECT_EQ(t.FindCallback(*list, Obj(0x101), Obj(0x200), Ptr(7), &found, &index), b);
    EXPECT_EQ(found, 1);
    EXPECT_EQ(index, 1);

    // A different refcon, callable or script finds nothing and leaves the index alone.
    index = 42;
    EXPECT_EQ(t.FindCallback(*list, Obj(0x100), Obj(0x200), Ptr(8), &found, &index), nullptr);
    EXPECT_EQ(found, 0);
    EXPECT_EQ(index, 42);
    EXPECT_EQ(t.FindCallback(*list, Obj(0x102), Obj(0x200), Ptr(7), &found, &index), nullptr);
    EXPECT_EQ(index, 42);

    // By callable and refcon, whatever the script: the first of a and b.
    EXPECT_EQ(t.FindCallback(*list, static_cast<void*>(Obj(0x200)), Ptr(7), &found, &index, 0), a);
    EXPECT_EQ(index, 0);

    // Handles: zero until updated; the update goes to the first record of that script and callable.
    EXPECT_EQ(t.FindCallback(*list, Obj(0x100), static_cast<void*>(nullptr), &found, &index), a);
    EXPECT_EQ(t.UpdateCallback(list, Obj(0x100), Obj(0x201), Ptr(0xABC)), 1);
    EXPECT_EQ(c->record->sdkHandle, Ptr(0xABC));
    EXPECT_EQ(t.FindCallback(*list, Obj(0x100), Ptr(0xABC), &found, &index), c);
    EXPECT_EQ(index, 2);
    EXPECT_EQ(t.FindCallback(*list, Obj(0x101), Ptr(0xABC), &found, &index), nullptr);
    EXPECT_EQ(found, 0);
    EXPECT_EQ(t.UpdateCallback(list, Obj(0x101), Obj(0x201), Ptr(0xDEF)), 0);
    EXPECT_EQ(c->record->sdkHandle, Ptr(0xABC));
}

TEST_F(CallbackRegistryTest, DuplicatesNeedTwoDeletesAndLaterIndexesMoveDown) {
    CV_ScriptTable& t = *CVTestTable;
    CV_CallbackVector* list = &FlightLoopCallbackList;
    _CallbackList* first = t.AddCallback(list, Obj(1), nullptr, Obj(2), Ptr(0));
    _CallbackList* second = t.AddCallback(list, Obj(1), nullptr, Obj(2), Ptr(0));
    _CallbackList* other = t.AddCallback(list, Obj(9), nullptr, Obj(3), Ptr(5));
    _CallbackList* last = t.AddCallback(list, Obj(9), nullptr, Obj(4), Ptr(5));

    int found = 0, index = -1;
    ASSERT_EQ(t.FindCallback(*list, Obj(1), Obj(2), Ptr(0), &found, &index), first);
    ASSERT_EQ(index, 0);
    int otherIndex = -1;
    ASSERT_EQ(t.FindCallback(*list, Obj(9), Obj(3), Ptr(5), &found, &otherIndex), other);
    ASSERT_EQ(otherIndex, 2);

    t.DeleteCallback(list, first, index);
    ASSERT_EQ(list->size(), 3u);
    EXPECT_EQ(t.FindCallback(*list, Obj(1), Obj(2), Ptr(0), &found, &index), second);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(t.FindCallback(*list, Obj(9), Obj(3), Ptr(5), &found, &index), other);
    EXPECT_EQ(index, 1);

    // The index kept from before the delete now points at `last`; deleting `other` with it must
    // still take `other` out (its record is freed) and leave `last` in place.
    t.DeleteCallback(list, other, otherIndex);
    ASSERT_EQ(list->size(), 2u);
    EXPECT_EQ((*list)[0], second);
    EXPECT_EQ((*list)[1], last);

    t.DeleteCallback(list, second, 0);
    ASSERT_EQ(list->size(), 1u);
    EXPECT_EQ(t.FindCallback(*list, Obj(1), Obj(2), Ptr(0), &found, &index), nullptr);
    EXPECT_EQ(found, 0);
}

TEST_F(CallbackRegistryTest, WidgetRecordsAreFoundUpdatedAndChildrenRemovedInOnePass) {
    CV_ScriptTable& t = *CVTestTable;
    CV_WidgetCallbackVector* list = &WidgetCallbackList;
    void* root = Ptr(0x10);
    _WidgetCallbackListEntry* main = t.AddWidgetCallback(list, nullptr, root, nullptr, 1, nullptr);
    t.AddWidgetCallback(list, nullptr, Ptr(0x11), nullptr, 0, root);
    t.AddWidgetCallback(list, nullptr, Ptr(0x12), nullptr, 0, root);
    _WidgetCallbackListEntry* grandchild = t.AddWidgetCallback(list, nullptr, Ptr(0x13), nullptr, 0, Ptr(0x12));
    t.AddWidgetCallback(list, nullptr, Ptr(0x14), nullptr, 0, root);
    _WidgetCallbackListEntry* stranger = t.AddWidgetCallback(list, Obj(0x77), Ptr(0x15), Obj(0x88), 1, nullptr);
    EXPECT_EQ(main->isRoot, 1);
    EXPECT_EQ(stranger->container, nullptr);

    int found = 0, index = -1;
    EXPECT_EQ(t.FindWidgetCallback(*list, root, &found, &index), main);
    EXPECT_EQ(index, 0);
    // A widget made by XPCreateWidget has no script until a function is attached.
    EXPECT_EQ(t.FindWidgetCallback(*list, Obj(0x77), root, &found, &index), nullptr);
    EXPECT_EQ(found, 0);
    EXPECT_EQ(t.UpdateWidgetCallback(list, Obj(0x77), root, Obj(0x99)), 1);
    EXPECT_EQ(main->scriptId, Obj(0x77));
    EXPECT_EQ(main->callable, Obj(0x99));
    EXPECT_EQ(t.FindWidgetCallback(*list, Obj(0x77), root, &found, &index), main);
    EXPECT_EQ(t.UpdateWidgetCallback(list, Obj(0x77), Ptr(0x404), Obj(0x99)), 0);

    // A container without children changes nothing.
    t.DeleteWidgetChildCallbacks(list, nullptr, Ptr(0x15));
    EXPECT_EQ(list->size(), 6u);
    // Three direct children, two of them adjacent, go in one pass; the grandchild stays.
    t.DeleteWidgetChildCallbacks(list, nullptr, root);
    ASSERT_EQ(list->size(), 3u);
    EXPECT_EQ((*list)[0], main);
    EXPECT_EQ((*list)[1], grandchild);
    EXPECT_EQ((*list)[2], stranger);

    ASSERT_EQ(t.FindWidgetCallback(*list, Obj(0x77), Ptr(0x15), &found, &index), stranger);
    t.DeleteWidgetCallback(list, stranger, index);
    EXPECT_EQ(list->size(), 2u);
    EXPECT_EQ(t.FindWidgetCallback(*list, Ptr(0x15), &found, &index), nullptr);
}

TEST_F(CallbackRegistryTest, IntegrityCheckReportsLeftoversInListOrderAndEmptiesCallbackLists) {
    CV_ScriptTable& t = *CVTestTable;
    PyObject* radio = Obj(0x5000);
    PyObject* camera = Obj(0x6000);
    AddScript(radio, "Radio");
    AddScript(camera, "Camera");

    // Registered in an order unlike the check's, to see the check impose its own.
    t.AddWidgetCallback(&WidgetCallbackList, nullptr, Ptr(1), nullptr, 1, nullptr);
    t.AddWidgetCallback(&WidgetCallbackList, radio, Ptr(2), Obj(3), 1, nullptr);
    t.AddCallback(&FlightLoopCallbackList, radio, nullptr, Obj(10), Ptr(0));
    t.AddCallback(&FlightLoopCallbackList, camera, nullptr, Obj(11), Ptr(0));
    t.AddCallback(&CameraCallbackList, camera, nullptr, Obj(12), Ptr(0));
    t.AddCallback(&ErrorCallbackList, nullptr, nullptr, Obj(13), Ptr(0));
    _CallbackList* block[CV_AccessorBlockSlots] = {};
    SetDataMemoryPointerList.push_back(block);

    CV_CheckAllCallbacks();

    EXPECT_EQ(Log(),
              "\n*** Checking Integrity of Callbacks Started. ***\n"
              "CameraCallbackList size = 1\n"
              "Script 'Camera.py.'\n"
              "Mismatch of callback creation and destruction.\n"
              "SetDataMemoryPointerList size = 1\n"
              "Mismatch of SetDataMemoryPointerList creation and destruction.\n"
              "FlightLoopCallbackList size = 2\n"
              "Script 'Radio.py.'\n"
              "Script 'Camera.py.'\n"
              "Mismatch of callback creation and destruction.\n"
              "ErrorCallbackList size = 1\n"
              "Mismatch of callback creation and destruction.\n"
              "WidgetCallbackList size = 2\n"
              "Script 'Radio.py.'\n"
              "Mismatch of callback creation and destruction.\n"
              "*** Checking Integrity of Callbacks Finished. ***\n\n");
    EXPECT_TRUE(CameraCallbackList.empty());
    EXPECT_TRUE(FlightLoopCallbackList.empty());
    EXPECT_TRUE(ErrorCallbackList.empty());
    EXPECT_TRUE(WidgetCallbackList.empty());
    // Refcon blocks are only reported.
    EXPECT_EQ(SetDataMemoryPointerList.size(), 1u);
}

TEST_F(CallbackRegistryTest, IntegrityCheckWithNothingLeftWritesOnlyItsFrame) {
    CV_CheckAllCallbacks();
    EXPECT_EQ(Log(),
              "\n*** Checking Integrity of Callbacks Started. ***\n"
              "*** Checking Integrity of Callbacks Finished. ***\n\n");
}

TEST_F(CallbackRegistryTest, EveryListIsCheckedInItsPlace) {
    CV_ScriptTable& t = *CVTestTable;
    // The report order of the check, pinned once; every size line must follow it.
    std::string order;
    for (const CV_ListEntry& e : CV_CallbackLists) order += std::string(e.name) + " ";
    EXPECT_EQ(order,
              "CameraCallbackList SharedDataCallbackList GetDataiCallbackList SetDataiCallbackList "
              "GetDatafCallbackList SetDatafCallbackList GetDatadCallbackList SetDatadCallbackList "
              "GetDataviCallbackList SetDataviCallbackList GetDatavfCallbackList SetDatavfCallbackList "
              "GetDatabCallbackList SetDatabCallbackList GetDataMemoryPointerList SetDataMemoryPointerList "
              "KeySnifferCallbackList HotKeyCallbackList DrawWindowCallbackList KeyCallbackList "
              "MouseClickCallbackList CursorStatusCallbackList MouseWheelCallbackList DrawWindowMemoryPointerList "
              "DrawCallbackList MenuCallbackList PlanesAvailableCallbackList FeatureEnumeratorCallbackList "
              "FlightLoopCallbackList LibraryEnumeratorCallbackList ObjectLoadedCallbackList CommandCallbackList "
              "ErrorCallbackList WidgetCallbackList ");

    // One leftover in every list: callback lists end in the common mismatch line and are emptied,
    // block lists name themselves and keep their blocks.
    _CallbackList* block[CV_WindowBlockSlots] = {};
    std::string expected = "\n*** Checking Integrity of Callbacks Started. ***\n";
    for (const CV_ListEntry& e : CV_CallbackLists) {
        if (e.callbacks) t.AddCallback(e.callbacks, nullptr, nullptr, Obj(1), Ptr(0));
        if (e.blocks) e.blocks->push_back(block);
        if (e.widgets) t.AddWidgetCallback(e.widgets, nullptr, Ptr(1), nullptr, 1, nullptr);
        EXPECT_EQ(CV_FindList(e.callbacks ? static_cast<const void*>(e.callbacks)
                              : e.blocks  ? static_cast<const void*>(e.blocks)
                                          : e.widgets),
                  &e);
        expected += std::string(e.name) + " size = 1\n";
        expected += e.blocks ? "Mismatch of " + std::string(e.name) + " creation and destruction.\n"
                             : std::string("Mismatch of callback creation and destruction.\n");
    }
    expected += "*** Checking Integrity of Callbacks Finished. ***\n\n";
    CV_CheckAllCallbacks();
    EXPECT_EQ(Log(), expected);
    for (const CV_ListEntry& e : CV_CallbackLists) EXPECT_EQ(e.Size(), e.blocks ? 1u : 0u) << e.name;
}

// Records and blocks that leave their lists while the simulator still holds a registration that
// reaches them stay allocated (ASan reports a read of freed memory otherwise) until it lets go.
TEST_F(CallbackRegistryTest, RetiredRecordsAndBlocksLiveUntilNoHeldRegistrationReachesThem) {
    CV_ScriptTable& t = *CVTestTable;
    CV_CallbackVector& list = DrawWindowCallbackList;
    _CallbackList* first = t.AddCallback(&list, Obj(0x10), nullptr, Obj(0x20), Ptr(0));
    _CallbackList* second = t.AddCallback(&list, Obj(0x10), nullptr, Obj(0x20), Ptr(0));
    _CallbackList** blockA = new _CallbackList*[CV_WindowBlockSlots]();
    _CallbackList** blockB = new _CallbackList*[CV_WindowBlockSlots]();
    blockA[CV_WindowDrawSlot] = first;
    blockB[CV_WindowDrawSlot] = second;
    DrawWindowMemoryPointerList = {blockA, blockB};
    CV_Hold(&DrawWindowMemoryPointerList, Ptr(0xA), nullptr, {blockA, blockA}, CV_WindowBlockSlots);
    CV_Hold(&DrawWindowMemoryPointerList, Ptr(0xB), nullptr, {blockB, blockB}, CV_WindowBlockSlots);
    EXPECT_TRUE(CV_IsHeld(&DrawWindowMemoryPointerList, Ptr(0xA)));
    EXPECT_FALSE(CV_IsHeld(&MenuCallbackList, Ptr(0xA)));  // held per list
    EXPECT_EQ(CV_HeldBlock(&DrawWindowMemoryPointerList, Ptr(0xB), 1), blockB);
    EXPECT_EQ(CV_HeldBlock(&DrawWindowMemoryPointerList, Ptr(0xB), 2), nullptr);

    // Window B's destruction finds A's record first and takes A's block by position; both stay
    // while A is open, B's own pieces go as B lets go.
    const size_t before = CV_RetiredCount();
    CV_RetireRecord(&list, first, 0);
    EXPECT_EQ(list, CV_CallbackVector{second});
    CV_Release(&DrawWindowMemoryPointerList, Ptr(0xB));
    EXPECT_EQ(CV_RetireBlock(&DrawWindowMemoryPointerList, 0, blockB), blockA);
    EXPECT_EQ(DrawWindowMemoryPointerList, CV_BlockVector{blockB});
    EXPECT_EQ(CV_RetiredCount(), before + 2);
    EXPECT_EQ(first->record->scriptId, Obj(0x10));
    EXPECT_EQ(blockA[CV_WindowDrawSlot], first);
    EXPECT_TRUE(CV_BlockIsHeld(&DrawWindowMemoryPointerList, blockA));
    EXPECT_FALSE(CV_BlockIsHeld(&DrawWindowMemoryPointerList, blockB));

    // A's refcon switches to B's block: A's own block stays reachable, the switch keeps it held.
    CV_Hold(&DrawWindowMemoryPointerList, Ptr(0xA), nullptr, {blockA, blockB}, CV_WindowBlockSlots);
    EXPECT_TRUE(CV_BlockIsHeld(&DrawWindowMemoryPointerList, blockB));
    // A past-the-end position falls back to the caller's own block.
    EXPECT_EQ(CV_RetireBlock(&DrawWindowMemoryPointerList, 7, blockB), blockB);
    CV_RetireRecord(&list, second, 5);
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(CV_RetiredCount(), before + 4);
    CV_Release(&DrawWindowMemoryPointerList, Ptr(0xA));
    EXPECT_EQ(CV_RetiredCount(), before);
    EXPECT_EQ(CV_RetireBlock(&DrawWindowMemoryPointerList, 0, nullptr), nullptr);
}

TEST_F(CallbackRegistryTest, DebugTraceFramesDetailsAndSizeLinesWithTheFunctionName) {
    CV_DebugCallbackTrace("XPLMControlCamera",
                          CV_FormatText("pScriptId = %lx, inHowLong = %d, inRefcon = %ld\n",
                                        CV_Hex(Ptr(0x7f12345678ab)), 1, CV_Dec(Ptr(static_cast<uintptr_t>(-3)))),
                          {{"HotKeysCallbackList", 2}, {"CameraCallbackList", 0}});
    EXPECT_EQ(Log(),
              "XPLMControlCamera\n"
              "pScriptId = 7f12345678ab, inHowLong = 1, inRefcon = -3\n"
              "HotKeysCallbackList size = 2\n"
              "CameraCallbackList size = 0\n"
              "XPLMControlCamera\n");
}

}  // namespace
