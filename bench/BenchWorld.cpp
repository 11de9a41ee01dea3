// The benchmarks' world: a simulator folder, the interpreter with every script module, and the bench
// script whose objects the rows call.
#include "BenchWorld.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "BindingModules.h"
#include "CV_ScriptTable.h"
#include "CallbackRegistry.h"
#include "world/DataRefs.h"
#include "world/World.h"

namespace {

PyObject* gMain = nullptr;
std::string gRoot;

// The baseline of the binding rows: a builtin that takes whatever it is given and answers 1, so that
// it costs what the interpreter itself spends on the same call with the same arguments.
PyObject* Receive(PyObject*, PyObject* const*, Py_ssize_t) { return PyLong_FromLong(1); }
PyMethodDef gReceiveDef = {"receive", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(Receive)),
                           METH_FASTCALL, "Takes any arguments and answers 1."};

// The bench script: the methods the dispatch rows call, the objects the binding rows pass, and
// `loopOf`, which makes the timed loops.
const char* const kBenchScript = R"(
import XPLMDataAccess, XPLMGraphics, XPLMDisplay, XPUIGraphics, XPWidgets, XPStandardWidgets

class Bench:
    def Loop(self, since, sinceLoop, counter, refcon):
        return 1.0
    def Draw(self, phase, before, refcon):
        return 1
    def DrawWindow(self, window, refcon):
        pass
    def Widget(self, message, widget, param1, param2):
        return 0
    def GetFloat(self, refcon):
        return 1.5
    def Command(self, command, phase, refcon):
        return 1

script = Bench()
scripts = [Bench() for _ in range(256)]

ref = XPLMDataAccess.XPLMFindDataRef('sim/aircraft/view/acf_Vso')
array = XPLMDataAccess.XPLMFindDataRef('sim/aircraft/prop/acf_num_blades')
eight = [2.0, 3.0, 2.0, 3.0, 2.0, 3.0, 2.0, 3.0]
colour = (1.0, 1.0, 1.0)
window = XPLMDisplay.XPLMCreateWindow(script, 100, 400, 300, 200, 1, script.DrawWindow, None, None, 0)
widget = XPWidgets.XPCreateWidget(100, 400, 300, 200, 1, 'Bench', 1, 0, XPStandardWidgets.xpWidgetClass_MainWindow)

def loopOf(f, expression):
    space = dict(globals())
    space['f'] = f
    exec('def loop(n):\n    for _ in range(n):\n        ' + expression + '\n', space)
    return space['loop']
)";

void Fail(const std::string& what) {
    fprintf(stderr, "bench: %s\n", what.c_str());
    if (PyErr_Occurred()) PyErr_Print();
    std::abort();
}

void PerCall(benchmark::State& state) {
    state.counters["ns_per_call"] = benchmark::Counter(static_cast<double>(state.iterations()) * kCallsPerRound,
                                                       benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

}  // namespace

void SetUpBenchWorld() {
    char dir[] = "/tmp/corvelle-bench-XXXXXX";
    if (mkdtemp(dir) == nullptr) Fail("no temporary folder");
    const std::string root = dir;
    gRoot = root;
    std::string error;
    if (!xpsim::PrepareRoot(root, error) || !xpsim::SetSdkLevel(210) || !xpsim::InstallLibraryLink(error)) Fail(error);
    std::filesystem::copy_file(std::string(TEST_DATA_DIR) + "/DataRefs.txt", root + "/Resources/plugins/DataRefs.txt");
    xpsim::StartLog();
    xpsim::LoadStandardDataRefs();

    CVTestTable = new CV_ScriptTable();
    Py_InitializeEx(0);
    CV_BeginInterpreterGeneration();
    CV_InitScriptModules((root + "/Resources/plugins/PythonScripts").c_str());
    gMain = PyImport_AddModule("__main__");
    PyObject* receive = PyCFunction_New(&gReceiveDef, nullptr);
    if (receive == nullptr || PyObject_SetAttrString(gMain, "receive", receive) != 0) Fail("no baseline function");
    Py_DECREF(receive);
    RunPython(kBenchScript);
}

void RemoveBenchFolder() {
    std::error_code ignored;
    if (!gRoot.empty()) std::filesystem::remove_all(gRoot, ignored);
}

PyObject* BenchObject(const char* name) {
    PyObject* value = PyObject_GetAttrString(gMain, name);
    if (value == nullptr) Fail(std::string("no ") + name + " in the bench script");
    return value;
}

void RunPython(const std::string& source) {
    PyObject* globals = PyModule_GetDict(gMain);
    PyObject* result = PyRun_String(source.c_str(), Py_file_input, globals, globals);
    if (result == nullptr) Fail("the bench script failed");
    Py_DECREF(result);
}

void TimePythonLoop(benchmark::State& state, PyObject* loop, void (*everyRound)()) {
    PyObject* count = PyLong_FromLong(kCallsPerRound);
    for (auto _ : state) {
        if (everyRound) everyRound();
        PyObject* result = PyObject_CallOneArg(loop, count);
        if (result == nullptr) {
            PyErr_Print();
            state.SkipWithError("the Python loop failed");
            break;
        }
        Py_DECREF(result);
    }
    Py_DECREF(count);
    PerCall(state);
}

void TimeNativeLoop(benchmark::State& state, void (*loop)(int n), void (*everyRound)()) {
    for (auto _ : state) {
        if (everyRound) everyRound();
        loop(kCallsPerRound);
    }
    PerCall(state);
}
