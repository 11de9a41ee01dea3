// The five entry points the simulator calls, and the calls of each script's entry points.
#include "PluginEntry.h"

#include <cstdio>
#include <cstring>

#include "CallbackDispatch.h"
#include "ControlPanel.h"
#include "LogFiles.h"
#include "Paths.h"
#include "PythonErrors.h"
#include "PythonRef.h"
#include "ScriptThreads.h"
#include "SdkDetect.h"
#include "XPLMDefs.h"
#include "XPLMUtilities.h"

char CorvelleVersionNumber[256] = {0};

namespace {

// The common pattern of a script entry-point call: skip disabled scripts when asked, find the
// method, call it with the arguments and hand a successful result to `useResult`. A missing
// method is logged; a failed call prints its Python error. The script's failure never reaches
// the simulator.
template <typename UseResult>
int CallScriptMethod(PyObject* scriptId, bool checkEnabled, const char* method, PyObject* argsObject,
                     UseResult useResult) {
    CV_PyRef args(argsObject);
    if (checkEnabled && !CVTestTable->GetScriptEnabledStatus(scriptId)) return 0;
    CV_PyRef callable(PyObject_GetAttrString(scriptId, method));
    if (!callable) {
        CV_PrintPythonError();
        CV_WriteToLogf("Cannot find method %s\n", method);
        return 1;
    }
    CV_PyRef result(args ? PyObject_Call(callable.get(), args.get(), nullptr) : nullptr);
    if (!result) {
        CV_PrintPythonError();
        return 1;
    }
    return useResult(result.get());
}

int IgnoreResult(PyObject*) { return 1; }

}  // namespace

int CallXPluginStart(PyObject* scriptId, TypeOfScript type) {
    return CallScriptMethod(scriptId, false, "XPluginStart", PyTuple_New(0), [&](PyObject* result) {
        const char *name = nullptr, *signature = nullptr, *description = nullptr;
        if (!PyTuple_Check(result) || !PyArg_ParseTuple(result, "sss", &name, &signature, &description)) {
            // An unusable result leaves the script unnamed; it is not printed.
            PyErr_Clear();
            return 0;
        }
        CVTestTable->SetScriptDescriptions(scriptId, name, signature, description, type);
        return 1;
    });
}

int CallXPluginEnable(PyObject* scriptId) {
    return CallScriptMethod(scriptId, true, "XPluginEnable", PyTuple_New(0), IgnoreResult);
}

int CallXPluginDisable(PyObject* scriptId, int checkEnabled) {
    return CallScriptMethod(scriptId, checkEnabled != 0, "XPluginDisable", PyTuple_New(0), IgnoreResult);
}

int CallXPluginStop(PyObject* scriptId, int checkEnabled) {
    return CallScriptMethod(scriptId, checkEnabled != 0, "XPluginStop", PyTuple_New(0), IgnoreResult);
}

int CallXPluginReceiveMessage(PyObject* scriptId, int from, int message, void* param) {
    PyObject* args = Py_BuildValue("(ilN)", from, static_cast<long>(message), PyLong_FromVoidPtr(param));
    return CallScriptMethod(scriptId, true, "XPluginReceiveMessage", args, IgnoreResult);
}

void CV_ErrorCallback(const char* message) { CV_DispatchErrorCallbacks(message); }

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription) {
    CV_SetMainThread();
    snprintf(CorvelleVersionNumber, sizeof CorvelleVersionNumber, "%d.%02d.%02d", 2, 67, 7);
    XPLMDebugString("CorvelleVersionNumber = ");
    XPLMDebugString(CorvelleVersionNumber);
    XPLMDebugString("\n");

    std::string xplmSimPath = CV_SimPath({"Resources", "plugins", "XPLM_64.so"});
    char xplmPath[512];
    if (CV_ConvertPath(xplmSimPath.c_str(), xplmPath, sizeof xplmPath) != 0) {
        XPLMDebugString("Quorlin - Unable to convert CV_XPLM_File path\n");
        CV_CopyText(xplmPath, sizeof xplmPath, xplmSimPath.c_str());
    }
    const char* suffix = " (SDK 1.02)";
    if (FoundSDK200(xplmPath)) {
        int xplaneVersion = 0, xplmVersion = 0;
        XPLMHostApplicationID host = 0;
        XPLMGetVersions(&xplaneVersion, &xplmVersion, &host);
        suffix = xplmVersion > 200 ? " (SDK 2.10)" : " (SDK 2.00)";
    }
    size_t used = strlen(CorvelleVersionNumber);
    snprintf(CorvelleVersionNumber + used, sizeof CorvelleVersionNumber - used, "%s", suffix);

    if (XPLMSetErrorCallback_ptr) XPLMSetErrorCallback_ptr(CV_ErrorCallback);

    CVTestTable = new CV_ScriptTable();
    CVTestTable->SetPythonRunState(0);
    SetupWidgets("");
    StartPython(0);

    CV_CopyText(outName, 256, "Corvelle");
    CV_CopyText(outSignature, 256, "brindle.projects.corvelle");
    CV_CopyText(outDescription, 256, "Corvelle Script Interface Plugin");
    return 1;
}

PLUGIN_API void XPluginStop(void) {
    if (CVTestTable == nullptr) return;
    StopPython(0);
    DestroyWidgets();
    delete CVTestTable;
    CVTestTable = nullptr;
    if (XPLMSetErrorCallback_ptr) XPLMSetErrorCallback_ptr(nullptr);
}

PLUGIN_API int XPluginEnable(void) {
    int result = 1;
    for (int i = 0; i < CVTestTable->GetScriptTableSize(); ++i)
        result = CallXPluginEnable(CVTestTable->GetScriptId(i));
    return result;
}

PLUGIN_API void XPluginDisable(void) {
    for (int i = 0; i < CVTestTable->GetScriptTableSize(); ++i) CallXPluginDisable(CVTestTable->GetScriptId(i), 1);
}

PLUGIN_API void XPluginReceiveMessage(XPLMPluginID inFromWho, int inMessage, void* inParam) {
    for (int i = 0; i < CVTestTable->GetScriptTableSize(); ++i)
        CallXPluginReceiveMessage(CVTestTable->GetScriptId(i), inFromWho, inMessage, inParam);
}
