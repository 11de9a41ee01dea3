// What a script pays for the SDK functions it calls every frame. Each row is timed three ways, in a
// loop of the same calls: through the plugin's binding from Python, through the bench's `receive`
// from Python (what the interpreter itself spends on the same call with the same arguments), and
// the SDK function called directly from C++ (its own time, which the ratios take off).
#include <benchmark/benchmark.h>

#include <Python.h>

#include <string>

#include "BenchWorld.h"
#include "XPLMDataAccess.h"
#include "XPLMDisplay.h"
#include "XPLMGraphics.h"
#include "XPWidgets.h"
#include "world/Drawing.h"
#include "world/World.h"

namespace {

XPLMDataRef gRef = nullptr, gArray = nullptr;
XPLMWindowID gWindow = nullptr;
XPWidgetID gWidget = nullptr;
float gColour[3] = {1.0f, 1.0f, 1.0f};

// The drawing functions draw only while the sim draws, and the frame's drawing record grows with
// every call: each round of a drawing row runs in a new frame.
void NewFrame() { xpsim::BeginFrame(); }

struct BindingRow {
    const char* name;        // the row: BM_<name>, BM_<name>_Receive, BM_<name>_Sdk
    const char* function;    // the binding, as the bench script names it
    const char* expression;  // one call, with the function as `f`
    void (*native)(int n);   // n direct calls of the SDK function
    bool drawing;            // called while the sim draws
};

const BindingRow kRows[] = {
    {"GetDataf", "XPLMDataAccess.XPLMGetDataf", "f(ref)",
     [](int n) {
         for (int i = 0; i < n; ++i) benchmark::DoNotOptimize(XPLMGetDataf(gRef));
     },
     false},
    {"FindDataRef", "XPLMDataAccess.XPLMFindDataRef", "f('sim/aircraft/view/acf_Vso')",
     [](int n) {
         for (int i = 0; i < n; ++i) benchmark::DoNotOptimize(XPLMFindDataRef("sim/aircraft/view/acf_Vso"));
     },
     false},
    {"GetDatavf", "XPLMDataAccess.XPLMGetDatavf", "f(array, [], 0, 8)",
     [](int n) {
         float values[9];
         for (int i = 0; i < n; ++i) benchmark::DoNotOptimize(XPLMGetDatavf(gArray, values, 0, 8));
     },
     false},
    {"SetDatavf", "XPLMDataAccess.XPLMSetDatavf", "f(array, eight, 0, 8)",
     [](int n) {
         float values[8] = {2, 3, 2, 3, 2, 3, 2, 3};
         for (int i = 0; i < n; ++i) XPLMSetDatavf(gArray, values, 0, 8);
     },
     false},
    // An empty text: the simulator's own time (formatting what it draws) would drown the binding's.
    {"DrawString", "XPLMGraphics.XPLMDrawString", "f(colour, 10, 20, '', 0, 0)",
     [](int n) {
         char text[] = "";
         for (int i = 0; i < n; ++i) XPLMDrawString(gColour, 10, 20, text, nullptr, 0);
     },
     true},
    {"SetGraphicsState", "XPLMGraphics.XPLMSetGraphicsState", "f(0, 1, 0, 0, 1, 0, 0)",
     [](int n) {
         for (int i = 0; i < n; ++i) XPLMSetGraphicsState(0, 1, 0, 0, 1, 0, 0);
     },
     true},
    {"GetWindowGeometry", "XPLMDisplay.XPLMGetWindowGeometry", "f(window, [], [], [], [])",
     [](int n) {
         int l, t, r, b;
         for (int i = 0; i < n; ++i) XPLMGetWindowGeometry(gWindow, &l, &t, &r, &b);
     },
     false},
    {"GetMouseLocation", "XPLMDisplay.XPLMGetMouseLocation", "f([], [])",
     [](int n) {
         int x, y;
         for (int i = 0; i < n; ++i) XPLMGetMouseLocation(&x, &y);
     },
     false},
    {"GetWidgetGeometry", "XPWidgets.XPGetWidgetGeometry", "f(widget, [], [], [], [])",
     [](int n) {
         int l, t, r, b;
         for (int i = 0; i < n; ++i) XPGetWidgetGeometry(gWidget, &l, &t, &r, &b);
     },
     false},
    {"GetWidgetProperty", "XPWidgets.XPGetWidgetProperty", "f(widget, 1100, None)",
     [](int n) {
         for (int i = 0; i < n; ++i) benchmark::DoNotOptimize(XPGetWidgetProperty(gWidget, 1100, nullptr));
     },
     false},
    {"SetWidgetProperty", "XPWidgets.XPSetWidgetProperty", "f(widget, 1100, 0)",
     [](int n) {
         for (int i = 0; i < n; ++i) XPSetWidgetProperty(gWidget, 1100, 0);
     },
     false},
    {"GetWidgetDescriptor", "XPWidgets.XPGetWidgetDescriptor", "f(widget, [], 100)",
     [](int n) {
         char text[101];
         for (int i = 0; i < n; ++i) benchmark::DoNotOptimize(XPGetWidgetDescriptor(gWidget, text, 100));
     },
     false},
};

void* Handle(const char* name) {
    PyObject* object = BenchObject(name);
    void* handle = PyLong_AsVoidPtr(object);
    Py_DECREF(object);
    return handle;
}

// The timed loop of `expression` (single quotes written as \') with the bench script's `function`
// as f.
PyObject* LoopOf(const std::string& function, const std::string& expression) {
    RunPython("_loop = loopOf(" + function + ", '" + expression + "')\n");
    return BenchObject("_loop");
}

void TimePython(benchmark::State& state, PyObject* loop, bool drawing) {
    if (!drawing) return TimePythonLoop(state, loop);
    xpsim::DrawingScope scope;
    TimePythonLoop(state, loop, NewFrame);
}

void TimeNative(benchmark::State& state, void (*native)(int), bool drawing) {
    if (!drawing) return TimeNativeLoop(state, native);
    xpsim::DrawingScope scope;
    TimeNativeLoop(state, native, NewFrame);
}

}  // namespace

void RegisterBindingBenchmarks() {
    gRef = Handle("ref");
    gArray = Handle("array");
    gWindow = Handle("window");
    gWidget = Handle("widget");
    for (const BindingRow& row : kRows) {
        std::string expression = row.expression;
        for (size_t at = expression.find('\''); at != std::string::npos; at = expression.find('\'', at + 2))
            expression.replace(at, 1, "\\'");
        PyObject* binding = LoopOf(row.function, expression);
        PyObject* receive = LoopOf("receive", expression);
        const bool drawing = row.drawing;
        void (*native)(int) = row.native;
        const std::string name = std::string("BM_") + row.name;
        benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& s) { TimePython(s, binding, drawing); });
        benchmark::RegisterBenchmark((name + "_Receive").c_str(),
                                     [=](benchmark::State& s) { TimePython(s, receive, drawing); });
        benchmark::RegisterBenchmark((name + "_Sdk").c_str(),
                                     [=](benchmark::State& s) { TimeNative(s, native, drawing); });
    }
    // The same XPLMGetDataf through ctypes against the simulator's library, as a script could call it
    // without the plugin; and abs(1.5), the interpreter's cheapest call that makes a float.
    RunPython(
        "import ctypes\n"
        "_library = ctypes.CDLL('" XPLM_LIBRARY
        "')\n"
        "ctypesGetDataf = _library.XPLMGetDataf\n"
        "ctypesGetDataf.restype = ctypes.c_float\n"
        "ctypesGetDataf.argtypes = [ctypes.c_void_p]\n");
    PyObject* ctypesLoop = LoopOf("ctypesGetDataf", "f(ref)");
    benchmark::RegisterBenchmark("BM_GetDataf_Ctypes", [=](benchmark::State& s) { TimePython(s, ctypesLoop, false); });
    PyObject* absLoop = LoopOf("abs", "f(1.5)");
    benchmark::RegisterBenchmark("BM_GetDataf_Abs", [=](benchmark::State& s) { TimePython(s, absLoop, false); });
}
