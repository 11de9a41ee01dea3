// What a script pays for the plugin's relay, each beside a baseline measured in the same run:
// - one flight loop dispatch (trampoline, record, tuple, call, result) against a bare PyObject_Call
//   of the same bound method with the same arguments;
// - one XPLMGetDataf call from Python against a trivial C function called the same way.
#include <benchmark/benchmark.h>

#include <Python.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <string>

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

// Calls f(arg) 1000 times from a Python loop; the reported time is per call.
void CallFromPython(benchmark::State& state, PyObject* function) {
    const int kCalls = 1000;
    PyObject* args = Py_BuildValue("(OOi)", function, gDataRef, kCalls);
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
        printf("%-28s %.2fx  (%s / %s)\n", measured, m->second / b->second, measured, baseline);
    };
    printf("\nRatios of CPU time against the baselines measured in this run:\n");
    ratio("BM_FlightLoopDispatch", "BM_FlightLoopBaseline_PyObjectCall");
    ratio("BM_GetDatafFromPython", "BM_GetDatafBaseline_TrivialCFunction");
    return 0;
}
