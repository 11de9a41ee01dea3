// The dispatchers, called the way the simulator calls the trampolines, with records made by the
// registry and real Python callables: results and defaults, the bounds of every copy into the
// simulator's buffers, the camera write-back, and records left over from an earlier interpreter.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "CV_ScriptTable.h"
#include "CallbackDispatch.h"
#include "CallbackRegistry.h"

namespace fs = std::filesystem;

namespace {

const char* kScript = R"(
import sys, io
sys.stderr = io.StringIO()
calls = []
class Script:
    def __init__(self):
        self.result = 0.5
        self.items = []
        self.count = 0
    def loop(self, sinceCall, sinceLoop, counter, refcon):
        calls.append(('loop', counter, refcon))
        return self.result
    def boom(self, *args):
        calls.append(('boom',))
        raise ValueError('boom')
    def getter(self, refcon, values, offset, maximum):
        calls.append(('get', values is None, offset, maximum))
        if values is None:
            return self.count
        values.extend(self.items)
        return self.count
    def setter(self, refcon, values, offset, count):
        calls.append(('set', values, offset, count))
    def camera(self, position, losing, refcon):
        calls.append(('camera', position if position == 0 else list(position), losing, refcon))
        if self.result == 'move':
            position[0] = 42.0
            position[6] = 2.0
        elif self.result == 'shrink':
            del position[2:]
            position[0] = 'not a number'
        return 1
    def widget(self, message, widget, p1, p2):
        calls.append(('widget', message, widget, p1, p2))
        return self.result
    def error(self, message):
        calls.append(('error', id(self), message))
s = Script()
t = Script()
)";

class CallbackDispatchTest : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/corvelle-dispatch-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        root_ = pattern;
        previous_ = fs::current_path();
        fs::create_directories(root_ + "/Resources/plugins/PythonScripts");
        fs::current_path(root_);
        if (!Py_IsInitialized()) Py_InitializeEx(0);
        CV_BeginInterpreterGeneration();
        main_ = PyModule_GetDict(PyImport_AddModule("__main__"));
        ASSERT_EQ(PyRun_SimpleString(kScript), 0);
        s_ = PyDict_GetItemString(main_, "s");
        t_ = PyDict_GetItemString(main_, "t");
        CVTestTable = new CV_ScriptTable();
        CVTestTable->AddScriptId(s_, "CV_s", CV_StandardScript);
        CVTestTable->AddScriptId(t_, "CV_t", CV_StandardScript);
    }
    void TearDown() override {
        FlightLoopCallbackList.clear();
        CameraCallbackList.clear();
        ErrorCallbackList.clear();
        WidgetCallbackList.clear();
        GetDataviCallbackList.clear();
        GetDatavfCallbackList.clear();
        GetDatabCallbackList.clear();
        SetDataviCallbackList.clear();
        SetDatabCallbackList.clear();
        for (PyObject* m : methods_) Py_DECREF(m);
        // Stopped as the plugin stops it, so that every test starts with a fresh interpreter.
        Py_FinalizeEx();
        delete CVTestTable;
        CVTestTable = nullptr;
        fs::current_path(previous_);
        std::error_code ec;
        fs::remove_all(root_, ec);
    }
    // A bound method of a script object; the fixture keeps it for the test's length.
    PyObject* Method(PyObject* script, const char* name) {
        PyObject* m = PyObject_GetAttrString(script, name);
        EXPECT_NE(m, nullptr);
        methods_.push_back(m);
        return m;
    }
    std::string Eval(const char* expression) {
        PyObject* value = PyRun_String(expression, Py_eval_input, main_, main_);
        EXPECT_NE(value, nullptr);
        if (value == nullptr) {
            PyErr_Clear();
            return "<error>";
        }
        PyObject* text = PyObject_Repr(value);
        std::string out = text ? PyUnicode_AsUTF8(text) : "<repr error>";
        Py_XDECREF(text);
        Py_DECREF(value);
        return out;
    }
    void Run(const char* code) { ASSERT_EQ(PyRun_SimpleString(code), 0); }
    std::string Log() const {
        std::ifstream in(root_ + "/Resources/plugins/PythonScripts/CorvelleLog.txt");
        std::stringstream ss;
        ss << in.rdbuf();
        return ss.str();
    }

    std::string root_;
    fs::path previous_;
    PyObject* main_ = nullptr;
    PyObject* s_ = nullptr;
    PyObject* t_ = nullptr;
    std::vector<PyObject*> methods_;
};

void* Refcon(long n) { return reinterpret_cast<void*>(n); }

TEST_F(CallbackDispatchTest, FlightLoopResultsAndDefaults) {
    CV_ScriptTable& table = *CVTestTable;
    _CallbackList* loop = table.AddCallback(&FlightLoopCallbackList, s_, nullptr, Method(s_, "loop"), Refcon(-5));
    EXPECT_FLOAT_EQ(CV_FlightLoopCallback(0.05f, 0.05f, 3, loop), 0.5f);
    EXPECT_EQ(Eval("calls"), "[('loop', 3, -5)]");

    // A result that is no number leaves the default.
    Run("s.result = None");
    EXPECT_FLOAT_EQ(CV_FlightLoopCallback(0.05f, 0.05f, 4, loop), 1.0f);
    Run("s.result = -1");
    EXPECT_FLOAT_EQ(CV_FlightLoopCallback(0.05f, 0.05f, 5, loop), -1.0f);

    // A disabled script, or one no longer in the table, is not called.
    Run("calls.clear()");
    table.SetScriptEnabledStatus(s_, 0);
    EXPECT_FLOAT_EQ(CV_FlightLoopCallback(0.05f, 0.05f, 6, loop), 1.0f);
    table.SetScriptEnabledStatus(s_, 1);
    _CallbackList* stranger = table.AddCallback(&FlightLoopCallbackList, main_, nullptr, Method(s_, "loop"), Refcon(0));
    EXPECT_FLOAT_EQ(CV_FlightLoopCallback(0.05f, 0.05f, 7, stranger), 1.0f);
    EXPECT_EQ(Eval("calls"), "[]");

    // An exception is printed once per call and gives 1.0.
    _CallbackList* boom = table.AddCallback(&FlightLoopCallbackList, s_, nullptr, Method(s_, "boom"), Refcon(0));
    EXPECT_FLOAT_EQ(CV_FlightLoopCallback(0.05f, 0.05f, 8, boom), 1.0f);
    EXPECT_FLOAT_EQ(CV_FlightLoopCallback(0.05f, 0.05f, 9, boom), 1.0f);
    EXPECT_EQ(Eval("sys.stderr.getvalue().count('ValueError: boom')"), "2");
    EXPECT_EQ(PyErr_Occurred(), nullptr);

    // A record without a callable is logged.
    _CallbackList* empty = table.AddCallback(&FlightLoopCallbackList, s_, nullptr, nullptr, Refcon(0));
    EXPECT_FLOAT_EQ(CV_FlightLoopCallback(0.05f, 0.05f, 10, empty), 1.0f);
    EXPECT_EQ(Log(), "Cannot find method FlightLoopCallback\n");

    // A flight loop object made without a record is not scheduled again.
    EXPECT_FLOAT_EQ(CV_FlightLoopCallback(0.05f, 0.05f, 11, nullptr), 0.0f);
}

TEST_F(CallbackDispatchTest, RecordsOfAnEarlierInterpreterAreNeverCalled) {
    CV_ScriptTable& table = *CVTestTable;
    PyObject* loopMethod = PyObject_GetAttrString(s_, "loop");
    ASSERT_NE(loopMethod, nullptr);
    const Py_ssize_t before = Py_REFCNT(loopMethod);
    _CallbackList* loop = table.AddCallback(&FlightLoopCallbackList, s_, nullptr, loopMethod, Refcon(1));
    // The registry keeps the callable alive while registered, so the script may drop its own.
    EXPECT_EQ(Py_REFCNT(loopMethod), before + 1);
    Py_DECREF(loopMethod);
    EXPECT_FLOAT_EQ(CV_FlightLoopCallback(0.05f, 0.05f, 1, loop), 0.5f);

    _CallbackList* kept = table.AddCallback(&FlightLoopCallbackList, s_, nullptr, Method(s_, "loop"), Refcon(2));
    CV_BeginInterpreterGeneration();
    Run("calls.clear()");
    // Not called, and no longer scheduled.
    EXPECT_FLOAT_EQ(CV_FlightLoopCallback(0.05f, 0.05f, 2, kept), 0.0f);
    EXPECT_EQ(Eval("calls"), "[]");

    // Deleting a record of this interpreter drops the registry's reference again.
    PyObject* fresh = Method(s_, "loop");
    const Py_ssize_t freshBefore = Py_REFCNT(fresh);
    _CallbackList* entry = table.AddCallback(&FlightLoopCallbackList, s_, nullptr, fresh, Refcon(3));
    EXPECT_EQ(Py_REFCNT(fresh), freshBefore + 1);
    table.DeleteCallback(&FlightLoopCallbackList, entry, static_cast<int>(FlightLoopCallbackList.size()) - 1);
    EXPECT_EQ(Py_REFCNT(fresh), freshBefore);
}

TEST_F(CallbackDispatchTest, ArrayGettersNeverWritePastTheBufferOrTheList) {
    CV_ScriptTable& table = *CVTestTable;
    _CallbackList* ints[CV_AccessorBlockSlots] = {};
    _CallbackList* floats[CV_AccessorBlockSlots] = {};
    ints[CV_AccessorIntArraySlot] = table.AddCallback(&GetDataviCallbackList, s_, nullptr, Method(s_, "getter"), Refcon(1));
    floats[CV_AccessorFloatArraySlot] =
        table.AddCallback(&GetDatavfCallbackList, s_, nullptr, Method(s_, "getter"), Refcon(1));

    int buffer[6];
    std::fill(buffer, buffer + 6, -7);
    Run("s.items = list(range(100, 110)); s.count = 10");
    EXPECT_EQ(CV_GetDatavi_Callback(ints, buffer, 2, 4), 4);
    EXPECT_EQ(std::vector<int>(buffer, buffer + 6), (std::vector<int>{100, 101, 102, 103, -7, -7}));
    EXPECT_EQ(Eval("calls[-1]"), "('get', False, 2, 4)");

    // Fewer items than the count the script claims: only the items there are.
    std::fill(buffer, buffer + 6, -7);
    Run("s.items = [1, 2]; s.count = 5");
    EXPECT_EQ(CV_GetDatavi_Callback(ints, buffer, 0, 6), 2);
    EXPECT_EQ(std::vector<int>(buffer, buffer + 6), (std::vector<int>{1, 2, -7, -7, -7, -7}));

    // A size query: None for the list, the count capped by the maximum.
    Run("s.count = 20");
    EXPECT_EQ(CV_GetDatavi_Callback(ints, nullptr, 0, 8), 8);
    EXPECT_EQ(Eval("calls[-1]"), "('get', True, 0, 8)");
    Run("s.count = -3");
    EXPECT_EQ(CV_GetDatavi_Callback(ints, nullptr, 0, 8), 0);

    float values[3] = {9.0f, 9.0f, 9.0f};
    Run("s.items = ['x', 2.5]; s.count = 2");
    EXPECT_EQ(CV_GetDatavf_Callback(floats, values, 0, 2), 2);
    EXPECT_FLOAT_EQ(values[0], 0.0f);
    EXPECT_FLOAT_EQ(values[1], 2.5f);
    EXPECT_FLOAT_EQ(values[2], 9.0f);
    EXPECT_EQ(PyErr_Occurred(), nullptr);

    // A block without a callable for the type answers 0 without calling anything.
    Run("calls.clear()");
    EXPECT_EQ(CV_GetDatavi_Callback(floats, buffer, 0, 6), 0);
    EXPECT_EQ(Eval("calls"), "[]");
}

TEST_F(CallbackDispatchTest, ByteGetterCopiesTextOrItemsWithinTheMaximum) {
    CV_ScriptTable& table = *CVTestTable;
    _CallbackList* block[CV_AccessorBlockSlots] = {};
    block[CV_AccessorByteArraySlot] = table.AddCallback(&GetDatabCallbackList, s_, nullptr, Method(s_, "getter"), Refcon(1));

    char buffer[8];
    memset(buffer, '#', sizeof buffer);
    Run("s.items = ['longer than the room'] ; s.count = 20");
    EXPECT_EQ(CV_GetDatab_Callback(block, buffer, 0, 5), 5);
    EXPECT_EQ(std::string(buffer, 8), "longe###");

    memset(buffer, '#', sizeof buffer);
    Run("s.items = ['ab']; s.count = 2");
    EXPECT_EQ(CV_GetDatab_Callback(block, buffer, 0, 5), 2);
    EXPECT_EQ(std::string(buffer, 8), std::string("ab\0#####", 8));

    memset(buffer, '#', sizeof buffer);
    Run("s.items = [b'xy\\x00z']; s.count = 4");
    EXPECT_EQ(CV_GetDatab_Callback(block, buffer, 0, 6), 3);
    EXPECT_EQ(std::string(buffer, 8), std::string("xy\0#####", 8));

    // Items are stored as bytes; nothing is written at the maximum, one past the buffer's end.
    memset(buffer, '#', sizeof buffer);
    Run("s.items = [65, -1, 67, 68]; s.count = 4");
    EXPECT_EQ(CV_GetDatab_Callback(block, buffer, 0, 3), 3);
    EXPECT_EQ(std::string(buffer, 8), std::string("A\xff" "C#####", 8));
}

TEST_F(CallbackDispatchTest, ArraySettersPassExactlyTheValuesGiven) {
    CV_ScriptTable& table = *CVTestTable;
    _CallbackList* block[CV_AccessorBlockSlots] = {};
    block[CV_AccessorIntArraySlot] = table.AddCallback(&SetDataviCallbackList, s_, nullptr, Method(s_, "setter"), Refcon(4));
    block[CV_AccessorByteArraySlot] = table.AddCallback(&SetDatabCallbackList, s_, nullptr, Method(s_, "setter"), Refcon(4));
    int values[4] = {5, -6, 7, 8};
    CV_SetDatavi_Callback(block, values, 10, 3);
    EXPECT_EQ(Eval("calls[-1]"), "('set', [5, -6, 7], 10, 3)");
    CV_SetDatavi_Callback(block, nullptr, 0, 3);
    EXPECT_EQ(Eval("calls[-1]"), "('set', None, 0, 3)");
    char bytes[3] = {'a', static_cast<char>(0xFE), 0};
    CV_SetDatab_Callback(block, bytes, 1, 3);
    EXPECT_EQ(Eval("calls[-1]"), "('set', [97, -2, 0], 1, 3)");
}

TEST_F(CallbackDispatchTest, CameraMovesOnlyByTheListItemsTheScriptAssigns) {
    CV_ScriptTable& table = *CVTestTable;
    _CallbackList* entry = table.AddCallback(&CameraCallbackList, s_, nullptr, Method(s_, "camera"), Refcon(9));
    XPLMCameraPosition_t position = {1, 2, 3, 4, 5, 6, 7};

    Run("s.result = 'keep'");
    EXPECT_EQ(CV_CameraControlCallback(&position, 0, entry), 1);
    EXPECT_EQ(Eval("calls[-1]"), "('camera', [1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0], 0, 9)");
    EXPECT_FLOAT_EQ(position.x, 1.0f);
    EXPECT_FLOAT_EQ(position.zoom, 7.0f);

    Run("s.result = 'move'");
    EXPECT_EQ(CV_CameraControlCallback(&position, 0, entry), 1);
    EXPECT_FLOAT_EQ(position.x, 42.0f);
    EXPECT_FLOAT_EQ(position.y, 2.0f);
    EXPECT_FLOAT_EQ(position.zoom, 2.0f);

    // A list cut short, or holding something that is no number, leaves those fields alone.
    Run("s.result = 'shrink'");
    EXPECT_EQ(CV_CameraControlCallback(&position, 0, entry), 1);
    EXPECT_FLOAT_EQ(position.x, 42.0f);
    EXPECT_FLOAT_EQ(position.y, 2.0f);
    EXPECT_FLOAT_EQ(position.z, 3.0f);
    EXPECT_FLOAT_EQ(position.zoom, 2.0f);
    EXPECT_EQ(PyErr_Occurred(), nullptr);

    // Losing control: no position, a 0 in its place.
    Run("s.result = 'keep'");
    EXPECT_EQ(CV_CameraControlCallback(nullptr, 1, entry), 1);
    EXPECT_EQ(Eval("calls[-1]"), "('camera', 0, 1, 9)");

    _CallbackList* boom = table.AddCallback(&CameraCallbackList, s_, nullptr, Method(s_, "boom"), Refcon(9));
    EXPECT_EQ(CV_CameraControlCallback(&position, 0, boom), 0);
    EXPECT_EQ(Log(), "UserCameraControlCallback Call failed\n");
}

TEST_F(CallbackDispatchTest, WidgetMessagesFindTheirRecordByWidget) {
    CV_ScriptTable& table = *CVTestTable;
    void* widget = reinterpret_cast<void*>(0x7f0000001234);
    EXPECT_EQ(CV_WidgetCallback(5, widget, 1, 2), 1);  // no record: handled

    table.AddWidgetCallback(&WidgetCallbackList, nullptr, widget, nullptr, 1, nullptr);
    EXPECT_EQ(CV_WidgetCallback(5, widget, 1, 2), 0);  // no script yet

    table.UpdateWidgetCallback(&WidgetCallbackList, s_, widget, nullptr);
    EXPECT_EQ(CV_WidgetCallback(5, widget, 1, 2), 1);
    EXPECT_EQ(Log(), "Cannot find method UserWidgetCallback\n");

    table.UpdateWidgetCallback(&WidgetCallbackList, s_, widget, Method(s_, "widget"));
    Run("s.result = 0");
    EXPECT_EQ(CV_WidgetCallback(7, widget, -1, 3), 0);
    EXPECT_EQ(Eval("calls[-1]"), "('widget', 7, 139637976732212, 18446744073709551615, 3)");

    table.SetScriptEnabledStatus(s_, 0);
    EXPECT_EQ(CV_WidgetCallback(7, widget, 0, 0), 0);
    table.SetScriptEnabledStatus(s_, 1);

    // A failing widget function counts as handled and its error is not shown.
    table.UpdateWidgetCallback(&WidgetCallbackList, s_, widget, Method(s_, "boom"));
    EXPECT_EQ(CV_WidgetCallback(7, widget, 0, 0), 1);
    EXPECT_EQ(Eval("sys.stderr.getvalue()"), "''");
    EXPECT_EQ(PyErr_Occurred(), nullptr);
}

TEST_F(CallbackDispatchTest, EveryErrorCallbackGetsEveryMessageInOrder) {
    CV_ScriptTable& table = *CVTestTable;
    table.AddCallback(&ErrorCallbackList, t_, nullptr, Method(t_, "error"), Refcon(0));
    table.AddCallback(&ErrorCallbackList, s_, nullptr, Method(s_, "error"), Refcon(0));
    table.AddCallback(&ErrorCallbackList, s_, nullptr, nullptr, Refcon(0));
    CV_DispatchErrorCallbacks("bad \xff handle");
    EXPECT_EQ(Eval("[(c[0], c[1] == id(t), c[2]) for c in calls]"),
              "[('error', True, 'bad \xEF\xBF\xBD handle'), ('error', False, 'bad \xEF\xBF\xBD handle')]");
    EXPECT_EQ(Log(), "Cannot find method CommandCallback\n");
}

}  // namespace
