// What a script pays for the plugin's relay, each beside a baseline measured in the same run:
// - one flight loop dispatch (trampoline, record, tuple, call, result) against a bare PyObject_Call
//   of the same bound method with the same arguments;
// - one XPLMGetDataf call from Python against a trivial C function called the same way;
// - one flight loop dispatch into the last of 100 and of 256 loaded scripts against the same with
//   one script loaded (the cost must not grow with the number of scripts).
#include <benchmark/benchmark.h>

#include <Python.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "BindingModules.h"
#include "CV_ScriptTable.h"
#include "CallbackDispatch.h"
#include "CallbackRegistry.h"
#include "world/DataRefs.h"
#include "world/World.h"

namespace {

PyObject* gMain = nullptr;
PyObject* gLoop = nullptr;           // the script's bound method
PyObject* gLoopArgs = nullptr;       // (since last call, since last loop, counter, refcon)
_CallbackList* gLoopEntry = nullptr;
PyObject* gCallMany = nullptr;       // a Python loop calling f(arg) n times
PyObject* gGetDataf = nullptr;
PyObject* gTrivial = nullptr;
PyObject* gDataRef = nullptr;

PyObject* Trivial(PyObject*, PyObject* args) {
    PyObject* handle = nullptr;
    if (!PyArg_ParseTuple(args, "O", &handle)) return nullptr;
    return PyFloat_FromDouble(0.0);
}
PyMethodDef gTrivialDef = {"trivial", Trivial, METH_VARARGS, "Returns 0.0."};

PyObject* MainAttr(const char* name) {
    PyObject* value = PyObject_GetAttrString(gMain, name);
    if (value == nullptr) {
        PyErr_Print();
        std::abort();
    }
    return value;
}

void SetUpWorld() {
    char dir[] = "/tmp/corvelle-bench-XXXXXX";
    if (mkdtemp(dir) == nullptr) std::abort();
    std::string error;
    if (!xpsim::PrepareRoot(dir, error) || !xpsim::SetSdkLevel(210) || !xpsim::InstallLibraryLink(error)) {
        fprintf(stderr, "bench: %s\n", error.c_str());
        std::abort();
    }
    std::filesystem::copy_file(std::string(TEST_DATA_DIR) + "/DataRefs.txt",
                               std::string(dir) + "/Resources/plugins/DataRefs.txt");
    xpsim::StartLog();
    xpsim::LoadStandardDataRefs();

    CVTestTable = new CV_ScriptTable();
    Py_InitializeEx(0);
    CV_BeginInterpreterGeneration();
    CV_InitScriptModules((std::string(dir) + "/Resources/plugins/PythonScripts").c_str());
    PyRun_SimpleString(
        "class Corvelle:\n"
        "    def Loop(self, since, sinceLoop, counter, refcon):\n"
        "        return 1.0\n"
        "script = Corvelle()\n"
        "loop = script.Loop\n"
        "import XPLMDataAccess\n"
        "ref = XPLMDataAccess.XPLMFindDataRef('sim/aircraft/view/acf_Vso')\n"
        "getDataf = XPLMDataAccess.XPLMGetDataf\n"
        "def callMany(f, arg, n):\n"
        "    for _ in range(n):\n"
        "        f(arg)\n");
    gMain = PyImport_AddModule("__main__");
    PyObject* script = MainAttr("script");
    CVTestTable->AddScriptId(script, "CV_Bench", CV_StandardScript);
    gLoop = MainAttr("loop");
    gLoopEntry = CVTestTable->AddCallback(&FlightLoopCallbackList, script, nullptr, gLoop, nullptr);
    gLoopArgs = Py_BuildValue("(ffiO)", 0.05, 0.05, 1, PyLong_FromLong(0));
    gCallMany = MainAttr("callMany");
    gGetDataf = MainAttr("getDataf");
    gDataRef = MainAttr("ref");
    gTrivial = PyCFunction_New(&gTrivialDef, nullptr);
}

void BM_FlightLoopDispatch(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(CV_FlightLoopCallback(0.05f, 0.05f, 1, gLoopEntry));
}
BENCHMARK(BM_FlightLoopDispatch);

void BM_FlightLoopBaseline_PyObjectCall(benchmark::State& state) {
    for (auto _ : state) {
        PyObject* result = PyObject_Call(gLoop, gLoopArgs, nullptr);
        benchmark::DoNotOptimize(result);
        Py_XDECREF(result);
    }
}
BENCHMARK(BM_FlightLoopBaseline_PyObjectCall);

// The table filled to `scripts` entries (the bench script last), then one dispatch a round.
void BM_FlightLoopDispatchAmongScripts(benchmark::State& state) {
    static std::vector<PyObject*> others;
    PyObject* script = PyObject_GetAttrString(gLoop, "__self__");
    CVTestTable->ClearScriptTable();
    while (static_cast<int>(others.size()) < state.range(0) - 1) others.push_back(PyLong_FromLong(others.size()));
    for (int i = 0; i < state.range(0) - 1; ++i) CVTestTable->AddScriptId(others[i], "CV_Other", CV_StandardScript);
    CVTestTable->AddScriptId(script, "CV_Bench", CV_StandardScript);
    _CallbackList* entry = CVTestTable->AddCallback(nullptr, script, nullptr, gLoop, nullptr);
    for (auto _ : state) benchmark::DoNotOptimize(CV_FlightLoopCallback(0.05f, 0.05f, 1, entry));
    CVTestTable->DeleteCallback(nullptr, entry, -1);
    Py_DECREF(script);
}
BENCHMARK(BM_FlightLoopDispatchAmongScripts)->Arg(1)->Arg(100)->Arg(256);

// Calls f(arg) 1000 times from a Python loop (arg: the dataref, or 1.5); the reported time is per call.
void CallFromPython(benchmark::State& state, PyObject* function, PyObject* arg = nullptr) {
    const int kCalls = 1000;
    PyObject* args = Py_BuildValue("(OOi)", function, arg ? arg : gDataRef, kCalls);
    for (auto _ : state) {
        PyObject* result = PyObject_Call(gCallMany, args, nullptr);
        if (result == nullptr) {
            PyErr_Print();
            state.SkipWithError("Python call failed");
            break;
        }
        Py_DECREF(result);
    }
    Py_DECREF(args);
    state.SetItemsProcessed(state.iterations() * kCalls);
    state.counters["ns_per_call"] = benchmark::Counter(static_cast<double>(state.iterations()) * kCalls,
                                                       benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_GetDatafFromPython(benchmark::State& state) { CallFromPython(state, gGetDataf); }
BENCHMARK(BM_GetDatafFromPython);

void BM_GetDatafBaseline_TrivialCFunction(benchmark::State& state) { CallFromPython(state, gTrivial); }
BENCHMARK(BM_GetDatafBaseline_TrivialCFunction);

// abs(1.5): a one-argument builtin that returns a new float, the interpreter's own cheapest call.
void BM_GetDatafBaseline_Abs(benchmark::State& state) {
    PyObject* builtins = PyEval_GetBuiltins();
    PyObject* number = PyFloat_FromDouble(1.5);
    CallFromPython(state, PyDict_GetItemString(builtins, "abs"), number);
    Py_DECREF(number);
}
BENCHMARK(BM_GetDatafBaseline_Abs);

// Keeps each benchmark's time so that the ratios can be printed after the run.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) times[run.benchmark_name()] = run.GetAdjustedCPUTime();
        ConsoleReporter::ReportRuns(runs);
    }
    std::map<std::string, double> times;
};

}  // namespace

int main(int argc, char** argv) {
    SetUpWorld();
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    auto ratio = [&](const char* measured, const char* baseline) {
        auto m = reporter.times.find(measured), b = reporter.times.find(baseline);
        if (m == reporter.times.end() || b == reporter.times.end() || b->second <= 0) return;
        printf("%-40s %.2fx  (%s / %s)\n", measured, m->second / b->second, measured, baseline);
    };
    printf("\nRatios of CPU time against the baselines measured in this run:\n");
    ratio("BM_FlightLoopDispatch", "BM_FlightLoopBaseline_PyObjectCall");
    ratio("BM_GetDatafFromPython", "BM_GetDatafBaseline_TrivialCFunction");
    ratio("BM_GetDatafFromPython", "BM_GetDatafBaseline_Abs");
    ratio("BM_FlightLoopDispatchAmongScripts/100", "BM_FlightLoopDispatchAmongScripts/1");
    ratio("BM_FlightLoopDispatchAmongScripts/256", "BM_FlightLoopDispatchAmongScripts/1");
    return 0;
}
