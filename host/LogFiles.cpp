// Log and output files, and the console capture module.
#include "LogFiles.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>

#include "CV_ScriptTable.h"
#include "PanelState.h"
#include "Paths.h"
#include "ScriptThreads.h"
#include "XPLMPlanes.h"
#include "XPLMUtilities.h"

int CV_OutputFileEnabled = 1;

namespace {

// The path of a file in the PythonScripts folder. It is built on every call on the main thread, so
// the user may delete or move the file while the simulator runs; a script's own thread, which may
// not ask the simulator for its path, uses the path the main thread built last.
std::string ScriptsFilePath(const char* fileName) {
    static std::string lastLog, lastOutput;
    std::string& last = strcmp(fileName, "CorvelleLog.txt") == 0 ? lastLog : lastOutput;
    if (!CV_OnMainThread()) return last;
    std::string simPath = CV_SimPath({"Resources", "plugins", "PythonScripts", fileName});
    char path[255];
    if (CV_ConvertPath(simPath.c_str(), path, sizeof path) != 0) {
        XPLMDebugString("Corvelle - Unable to convert FilePath path\n");
        last = simPath;
    } else {
        last = path;
    }
    return last;
}

// Appends at most 4095 bytes of text to a file in the PythonScripts folder, opened and closed on
// every call so that the file is complete whatever happens next.
int AppendToScriptsFile(const char* fileName, const char* text) {
    char line[4096];
    CV_CopyText(line, sizeof line, text);
    const std::string path = ScriptsFilePath(fileName);
    if (path.empty()) return -1;
    FILE* f = fopen(path.c_str(), "at");
    if (f == nullptr) return -1;
    fputs(line, f);
    return fclose(f);
}

PyObject* PrintCaptured(PyObject* args, int (*writer)(const char*)) {
    const char* text = nullptr;
    if (!PyArg_ParseTuple(args, "s", &text)) return nullptr;
    writer(text);
    char item[4096];
    CV_StripLineFeeds(text, item, sizeof item);
    if (item[0] != '\0') AddPrintItem(item);
    Py_RETURN_NONE;
}

PyObject* PY_PrintStdout(PyObject* self, PyObject* args) { return PrintCaptured(args, CV_WriteToLog2); }
PyObject* PY_PrintStderr(PyObject* self, PyObject* args) { return PrintCaptured(args, CV_WriteToLog); }

PyMethodDef BrindleInternalModuleMethods[] = {
    {"PrintStdout", PY_PrintStdout, METH_VARARGS, "Prints to stdout"},
    {"PrintStderr", PY_PrintStderr, METH_VARARGS, "Prints to stderr"},
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef BrindleInternalModuleDef = {
    PyModuleDef_HEAD_INIT, "BrindleInternalModule", nullptr, -1, BrindleInternalModuleMethods,
    nullptr, nullptr, nullptr, nullptr,
};

}  // namespace

void CV_FindLogFiles() {
    ScriptsFilePath("CorvelleLog.txt");
    ScriptsFilePath("CorvelleOutput.txt");
}

int CV_WriteToLog(const char* text) { return AppendToScriptsFile("CorvelleLog.txt", text); }

int CV_WriteToLog2(const char* text) {
    if (!CV_OutputFileEnabled) return 0;
    return AppendToScriptsFile("CorvelleOutput.txt", text);
}

int CV_WriteToLogf(const char* format, ...) {
    char line[4096];
    va_list ap;
    va_start(ap, format);
    vsnprintf(line, sizeof line, format, ap);
    va_end(ap);
    return CV_WriteToLog(line);
}

void CV_StripLineFeeds(const char* text, char* out, size_t outSize) {
    if (outSize == 0) return;
    memset(out, 0, outSize);
    size_t j = 0;
    for (const char* p = text; p && *p && j + 1 < outSize; ++p)
        if (*p != '\n') out[j++] = *p;
}

PyObject* initBrindleInternalModule() {
    PyObject* module = PyModule_Create(&BrindleInternalModuleDef);
    if (module == nullptr) return nullptr;
    PyObject* modules = PyImport_GetModuleDict();
    if (PyDict_SetItemString(modules, "BrindleInternalModule", module) != 0) PyErr_Clear();
    PyObject* dict = PyModule_GetDict(module);
    if (PyDict_SetItemString(dict, "__builtins__", PyEval_GetBuiltins()) != 0) PyErr_Clear();
    Py_DECREF(module);  // sys.modules keeps it
    return module;
}

void GetFilePath(char* dst) {
    char fileName[256] = {0};
    char path[1024] = {0};
    XPLMGetNthAircraftModel(0, fileName, path);
    path[sizeof path - 1] = '\0';
    XPLMExtractFileAndPath(path);
    std::string folder = std::string(path) + XPLMGetDirectorySeparator();
    char converted[255];
    if (CV_ConvertPath(folder.c_str(), converted, sizeof converted) != 0) {
        XPLMDebugString("Corvelle - Unable to convert path\n");
        CV_CopyText(dst, 255, folder.c_str());
        return;
    }
    CV_CopyText(dst, 255, converted);
}
