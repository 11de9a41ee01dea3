// What one callback from the simulator into a script costs (the trampoline, the record, the
// arguments, the call and the result), each kind beside a PyObject_Vectorcall of the same bound
// method with its arguments made beforehand; and how that cost holds with many scripts or widgets.
#include <benchmark/benchmark.h>

#include <Python.h>

#include <cstdint>
#include <vector>

#include "BenchWorld.h"
#include "CV_ScriptTable.h"
#include "CallbackDispatch.h"
#include "CallbackRegistry.h"

namespace {

void* Fake(uintptr_t value) { return reinterpret_cast<void*>(value); }

// The bench script's object, entered in the script table (again, after a row that refilled it).
PyObject* BenchScript() {
    static PyObject* script = BenchObject("script");
    CVTestTable->AddScriptId(script, "CV_Bench", CV_StandardScript);
    return script;
}

// A bound method of the bench script's object (a new reference).
PyObject* Method(const char* name) { return PyObject_GetAttrString(BenchScript(), name); }

// A record of `list` for the bench script's method; the record holds its own reference.
_CallbackList* Record(CV_CallbackVector* list, const char* name) {
    PyObject* method = Method(name);
    _CallbackList* entry = CVTestTable->AddCallback(list, BenchScript(), nullptr, method, nullptr);
    Py_DECREF(method);
    return entry;
}

// A refcon block with the record in one slot.
_CallbackList** Block(int slots, int slot, _CallbackList* entry) {
    _CallbackList** block = new _CallbackList*[slots]();
    block[slot] = entry;
    return block;
}

// The baseline: the same bound method called with arguments made once.
void VectorcallBaseline(benchmark::State& state, const char* name, std::vector<PyObject*> args) {
    PyObject* method = Method(name);
    for (auto _ : state) {
        PyObject* result = PyObject_Vectorcall(method, args.data(), args.size(), nullptr);
        benchmark::DoNotOptimize(result);
        Py_XDECREF(result);
    }
    for (PyObject* arg : args) Py_DECREF(arg);
    Py_DECREF(method);
}

// ---------------------------------------------------------------- one callback of each kind

void BM_FlightLoop(benchmark::State& state) {
    _CallbackList* entry = Record(&FlightLoopCallbackList, "Loop");
    for (auto _ : state) benchmark::DoNotOptimize(CV_FlightLoopCallback(0.05f, 0.05f, 1, entry));
    CVTestTable->DeleteCallback(&FlightLoopCallbackList, entry, -1);
}
BENCHMARK(BM_FlightLoop);
void BM_FlightLoop_Vectorcall(benchmark::State& state) {
    VectorcallBaseline(state, "Loop",
                       {PyFloat_FromDouble(0.05), PyFloat_FromDouble(0.05), PyLong_FromLong(1), PyLong_FromLong(0)});
}
BENCHMARK(BM_FlightLoop_Vectorcall);

void BM_DrawCallback(benchmark::State& state) {
    _CallbackList* entry = Record(&DrawCallbackList, "Draw");
    for (auto _ : state) benchmark::DoNotOptimize(CV_DrawCallback(xplm_Phase_Window, 0, entry));
    CVTestTable->DeleteCallback(&DrawCallbackList, entry, -1);
}
BENCHMARK(BM_DrawCallback);
void BM_DrawCallback_Vectorcall(benchmark::State& state) {
    VectorcallBaseline(state, "Draw", {PyLong_FromLong(xplm_Phase_Window), PyLong_FromLong(0), PyLong_FromLong(0)});
}
BENCHMARK(BM_DrawCallback_Vectorcall);

void BM_WindowDraw(benchmark::State& state) {
    _CallbackList* entry = Record(&DrawWindowCallbackList, "DrawWindow");
    _CallbackList** block = Block(CV_WindowBlockSlots, CV_WindowDrawSlot, entry);
    for (auto _ : state) CV_DrawWindowCallback(Fake(0x5000), block);
    CVTestTable->DeleteCallback(&DrawWindowCallbackList, entry, -1);
    delete[] block;
}
BENCHMARK(BM_WindowDraw);
void BM_WindowDraw_Vectorcall(benchmark::State& state) {
    VectorcallBaseline(state, "DrawWindow", {PyLong_FromVoidPtr(Fake(0x5000)), PyLong_FromLong(0)});
}
BENCHMARK(BM_WindowDraw_Vectorcall);

void BM_AccessorGetFloat(benchmark::State& state) {
    _CallbackList* entry = Record(&GetDatafCallbackList, "GetFloat");
    _CallbackList** block = Block(CV_AccessorBlockSlots, CV_AccessorFloatSlot, entry);
    for (auto _ : state) benchmark::DoNotOptimize(CV_GetDataf_Callback(block));
    CVTestTable->DeleteCallback(&GetDatafCallbackList, entry, -1);
    delete[] block;
}
BENCHMARK(BM_AccessorGetFloat);
void BM_AccessorGetFloat_Vectorcall(benchmark::State& state) {
    VectorcallBaseline(state, "GetFloat", {PyLong_FromLong(0)});
}
BENCHMARK(BM_AccessorGetFloat_Vectorcall);

void BM_CommandHandler(benchmark::State& state) {
    _CallbackList* entry = Record(&CommandCallbackList, "Command");
    for (auto _ : state) benchmark::DoNotOptimize(CV_CommandCallback(Fake(0x6000), xplm_CommandContinue, entry));
    CVTestTable->DeleteCallback(&CommandCallbackList, entry, -1);
}
BENCHMARK(BM_CommandHandler);
void BM_CommandHandler_Vectorcall(benchmark::State& state) {
    VectorcallBaseline(state, "Command",
                       {PyLong_FromVoidPtr(Fake(0x6000)), PyLong_FromLong(xplm_CommandContinue), PyLong_FromLong(0)});
}
BENCHMARK(BM_CommandHandler_Vectorcall);

// A widget message to the last of `range` widgets that scripts made.
void BM_WidgetMessage(benchmark::State& state) {
    PyObject* method = Method("Widget");
    std::vector<_WidgetCallbackListEntry*> widgets;
    for (int i = 0; i < state.range(0); ++i)
        widgets.push_back(CVTestTable->AddWidgetCallback(&WidgetCallbackList, BenchScript(), Fake(0x10000 + 16 * i),
                                                         method, 0, nullptr));
    void* last = widgets.back()->widgetId;
    for (auto _ : state) benchmark::DoNotOptimize(CV_WidgetCallback(xpMsg_Draw, last, 0, 0));
    for (_WidgetCallbackListEntry* entry : widgets) CVTestTable->DeleteWidgetCallback(&WidgetCallbackList, entry, -1);
    Py_DECREF(method);
}
BENCHMARK(BM_WidgetMessage)->Arg(1)->Arg(200);
void BM_WidgetMessage_Vectorcall(benchmark::State& state) {
    VectorcallBaseline(
        state, "Widget",
        {PyLong_FromLong(xpMsg_Draw), PyLong_FromVoidPtr(Fake(0x10000)), PyLong_FromLong(0), PyLong_FromLong(0)});
}
BENCHMARK(BM_WidgetMessage_Vectorcall);

// ---------------------------------------------------------------- many scripts

// The table filled to `range` entries (the bench script last), then its flight loop a round.
void BM_FlightLoopAmongScripts(benchmark::State& state) {
    static std::vector<PyObject*> others;
    CVTestTable->ClearScriptTable();
    while (static_cast<int>(others.size()) < state.range(0) - 1) others.push_back(PyLong_FromLong(others.size()));
    for (int i = 0; i < state.range(0) - 1; ++i) CVTestTable->AddScriptId(others[i], "CV_Other", CV_StandardScript);
    _CallbackList* entry = Record(&FlightLoopCallbackList, "Loop");
    for (auto _ : state) benchmark::DoNotOptimize(CV_FlightLoopCallback(0.05f, 0.05f, 1, entry));
    CVTestTable->DeleteCallback(&FlightLoopCallbackList, entry, -1);
}
BENCHMARK(BM_FlightLoopAmongScripts)->Arg(1)->Arg(100)->Arg(256);

// 256 scripts in the table, each with its flight loop; a round calls one of the first ten scripts'
// loops (range 0) or of the last ten's (range 1), in turn.
void BM_FlightLoopOf256Scripts(benchmark::State& state) {
    PyObject* scripts = BenchObject("scripts");
    CVTestTable->ClearScriptTable();
    for (Py_ssize_t i = 0; i < PyList_GET_SIZE(scripts); ++i)
        CVTestTable->AddScriptId(PyList_GET_ITEM(scripts, i), "CV_Script", CV_StandardScript);
    std::vector<_CallbackList*> loops;
    for (Py_ssize_t i = 0; i < PyList_GET_SIZE(scripts); ++i) {
        PyObject* script = PyList_GET_ITEM(scripts, i);
        PyObject* loop = PyObject_GetAttrString(script, "Loop");
        loops.push_back(CVTestTable->AddCallback(&FlightLoopCallbackList, script, nullptr, loop, nullptr));
        Py_DECREF(loop);
    }
    const size_t first = state.range(0) == 0 ? 0 : loops.size() - 10;
    size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(CV_FlightLoopCallback(0.05f, 0.05f, 1, loops[first + next]));
        next = next == 9 ? 0 : next + 1;
    }
    for (_CallbackList* entry : loops) CVTestTable->DeleteCallback(&FlightLoopCallbackList, entry, -1);
    Py_DECREF(scripts);
}
BENCHMARK(BM_FlightLoopOf256Scripts)->Arg(0)->Arg(1);

}  // namespace
