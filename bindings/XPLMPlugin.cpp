// The script module XPLMPlugin: the simulator's plugins (finding, inspecting, enabling, messages)
// and the SDK's features, which are kept per script. The simulator's features are listed once when
// the module is created; XPLMEnableFeature records a script's wish in the script table instead of
// switching the simulator, and the `_NP` functions apply the native-paths wish around each SDK call.
#include "XPLMPlugin.h"

#include <climits>
#include <iterator>

#include "BindingModules.h"
#include "BindingSupport.h"
#include "CV_ScriptTable.h"
#include "CallbackDispatch.h"
#include "CallbackRegistry.h"
#include "NativePaths.h"
#include "Paths.h"
#include "SdkDetect.h"

int CV_NativePathsFeatureId = -1;

namespace {

const char* const kModule = "XPLMPlugin";
const char* const kNativePaths = "XPLM_USE_NATIVE_PATHS";
// The size of each text buffer handed to XPLMGetPluginInfo.
const size_t kInfoBufferSize = 1024;

// Installed in this order, each under its SDK name.
const CV_IntConstant XPLMPluginConstants[] = {
    // Messages the simulator sends to every plugin.
    {"XPLM_MSG_PLANE_CRASHED", 101},
    {"XPLM_MSG_PLANE_LOADED", 102},
    {"XPLM_MSG_AIRPORT_LOADED", 103},
    {"XPLM_MSG_SCENERY_LOADED", 104},
    {"XPLM_MSG_AIRPLANE_COUNT_CHANGED", 105},
    {"XPLM_MSG_PLANE_UNLOADED", 106},
    {"XPLM_MSG_WILL_WRITE_PREFS", 107},
    {"XPLM_MSG_LIVERY_LOADED", 108},
};

// Ids of the simulator's features, in the order it enumerates them, counted over every creation
// of the module.
int gCV_FeatureCounter = 0;

// The feature collector handed to the simulator when the module is created.
void CV_FeatureEnum(const char* inFeature, void* inRef) {
    if (CVTestTable == nullptr || inFeature == nullptr) return;
    CVTestTable->AddFeature(gCV_FeatureCounter, inFeature);
    ++gCV_FeatureCounter;
    CVTestTable->SetNumberOfFeatures(gCV_FeatureCounter);
}

// ---------------------------------------------------------------- plugins

CV_PLAIN_BINDING(kModule, XPLMGetMyID)

CV_PLAIN_BINDING(kModule, XPLMCountPlugins)

CV_PLAIN_BINDING(kModule, XPLMGetNthPlugin)

PyObject* PY_XPLMFindPluginByPath(PyObject* self, PyObject* args) {
    const char* path = nullptr;
    if (!PyArg_ParseTuple(args, "s", &path)) return nullptr;
    XPLMPluginID id = XPLM_NO_PLUGIN_ID;
    CV_SDK_GUARD(kModule, "XPLMFindPluginByPath", CV_IntResult(0), id = XPLMFindPluginByPath(path));
    return CV_IntResult(id);
}

PyObject* PY_XPLMFindPluginByPath_NP(PyObject* self, PyObject* args) {
    PyObject* scriptId = nullptr;
    const char* path = nullptr;
    if (!PyArg_ParseTuple(args, "Os", &scriptId, &path)) return nullptr;
    XPLMPluginID id = XPLM_NO_PLUGIN_ID;
    CV_SDK_GUARD(kModule, "XPLMFindPluginByPath", CV_IntResult(0), CV_NativePathsCall nativePaths(scriptId);
                 id = XPLMFindPluginByPath(path));
    return CV_IntResult(id);
}

PyObject* PY_XPLMFindPluginBySignature(PyObject* self, PyObject* args) {
    const char* signature = nullptr;
    if (!PyArg_ParseTuple(args, "s", &signature)) return nullptr;
    XPLMPluginID id = XPLM_NO_PLUGIN_ID;
    CV_SDK_GUARD(kModule, "XPLMFindPluginBySignature", CV_IntResult(0), id = XPLMFindPluginBySignature(signature));
    return CV_IntResult(id);
}

// XPLMGetPluginInfo and its native-path variant: `scriptId` is null for the plain function.
PyObject* GetPluginInfo(PyObject* scriptId, int plugin, PyObject* outs[4]) {
    for (int i = 0; i < 4; ++i)
        if (!CV_CheckOutputList(outs[i])) return nullptr;
    char texts[4][kInfoBufferSize] = {};
    char* buffers[4];
    for (int i = 0; i < 4; ++i) buffers[i] = outs[i] == Py_None ? nullptr : texts[i];
    CV_SDK_GUARD(kModule, "XPLMGetPluginInfo", CV_IntResult(0), CV_NativePathsCall nativePaths(scriptId);
                 XPLMGetPluginInfo(plugin, buffers[0], buffers[1], buffers[2], buffers[3]));
    for (int i = 0; i < 4; ++i)
        if (buffers[i] != nullptr && !CV_StoreOutput(outs[i], CV_BufferText(texts[i], kInfoBufferSize - 1)))
            return nullptr;
    return CV_IntResult(1);
}

PyObject* PY_XPLMGetPluginInfo(PyObject* self, PyObject* args) {
    int plugin = 0;
    PyObject* outs[4] = {nullptr, nullptr, nullptr, nullptr};
    if (!PyArg_ParseTuple(args, "iOOOO", &plugin, &outs[0], &outs[1], &outs[2], &outs[3])) return nullptr;
    return GetPluginInfo(nullptr, plugin, outs);
}

PyObject* PY_XPLMGetPluginInfo_NP(PyObject* self, PyObject* args) {
    PyObject* scriptId = nullptr;
    int plugin = 0;
    PyObject* outs[4] = {nullptr, nullptr, nullptr, nullptr};
    if (!PyArg_ParseTuple(args, "OiOOOO", &scriptId, &plugin, &outs[0], &outs[1], &outs[2], &outs[3]))
        return nullptr;
    return GetPluginInfo(scriptId, plugin, outs);
}

CV_PLAIN_BINDING(kModule, XPLMIsPluginEnabled)

CV_PLAIN_BINDING(kModule, XPLMEnablePlugin)

CV_PLAIN_BINDING(kModule, XPLMDisablePlugin)

PyObject* PY_XPLMReloadPlugins(PyObject* self, PyObject* args) {
    if (!CV_Guarded(
            kModule, "XPLMReloadPlugins", [] { XPLMReloadPlugins(); }, CV_FUNCTION_ERROR))
        return CV_IntResult(0);
    return CV_IntResult(1);
}

PyObject* PY_XPLMSendMessageToPlugin(PyObject* self, PyObject* args) {
    int plugin = 0;
    long message = 0;
    PyObject* parameter = nullptr;
    if (!PyArg_ParseTuple(args, "ilO", &plugin, &message, &parameter)) return nullptr;

    // An int travels as a pointer-sized value, a text as a pointer to its bytes (valid for the
    // length of the call, which is when the receiver reads it). Anything else, and a value that
    // fits neither the message's int nor a pointer, is refused.
    void* param = nullptr;
    bool usable = true;
    if (PyLong_Check(parameter)) {
        param = PyLong_AsVoidPtr(parameter);
        usable = !(param == nullptr && PyErr_Occurred());
    } else if (PyUnicode_Check(parameter)) {
        const char* text = PyUnicode_AsUTF8(parameter);
        usable = text != nullptr;
        param = const_cast<char*>(text);
    } else if (PyBytes_Check(parameter)) {
        param = PyBytes_AS_STRING(parameter);
    } else if (PyByteArray_Check(parameter)) {
        param = PyByteArray_AS_STRING(parameter);
    } else {
        usable = false;
    }
    if (message < INT_MIN || message > INT_MAX) usable = false;
    if (!usable) {
        PyErr_Clear();
        PrintException(kModule, "XPLMSendMessageToPlugin", "Parameter Error");
        return CV_IntResult(0);
    }
    CV_SDK_GUARD(kModule, "XPLMSendMessageToPlugin", CV_IntResult(0),
                 XPLMSendMessageToPlugin(plugin, static_cast<int>(message), param));
    return CV_IntResult(1);
}

// ---------------------------------------------------------------- features

PyObject* PY_XPLMHasFeature(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMHasFeature);
    const char* feature = nullptr;
    if (!PyArg_ParseTuple(args, "s", &feature)) return nullptr;
    int result = 0;
    CV_SDK_GUARD(kModule, "XPLMHasFeature", CV_IntResult(0), result = XPLMHasFeature_ptr(feature));
    return CV_IntResult(result);
}

PyObject* PY_XPLMIsFeatureEnabled(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMIsFeatureEnabled);
    const char* feature = nullptr;
    if (!PyArg_ParseTuple(args, "s", &feature)) return nullptr;
    // The simulator's own state: the `_NP` functions leave native paths off between their calls.
    int result = 0;
    CV_SDK_GUARD(kModule, "XPLMIsFeatureEnabled", CV_IntResult(0), result = XPLMIsFeatureEnabled_ptr(feature));
    return CV_IntResult(result);
}

PyObject* PY_XPLMEnableFeature(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMEnableFeature);
    PyObject* scriptId = nullptr;
    const char* feature = nullptr;
    int enable = 0;
    if (!PyArg_ParseTuple(args, "Osi", &scriptId, &feature, &enable)) {
        // Scripts written for the SDK's two-argument form land here; the parse error still reaches them.
        static const char* const kUsage[] = {
            "This has changed from Version 2.0.0.1 as it has to handle native paths on a per script basis.\n",
            "Usage Syntax :- XPLMEnableFeature(self, inFeature, inEnable)\n",
            "Usage Example :- XPLMEnableFeature(self, \"XPLM_WANTS_REFLECTIONS\", 1)\n",
            "Usage Example :- XPLMEnableFeature(self, \"XPLM_USE_NATIVE_PATHS\", 1)\n"};
        CV_ReportChangedCall(kModule, "XPLMEnableFeature", kUsage);
        return nullptr;
    }
    const int featureId = CVTestTable->GetFeatureIdFromFeatureName(feature);
    if (featureId < 0) {
        PrintExceptionf(kModule, "XPLMEnableFeature", "Feature [%s] not supported", feature);
        return CV_IntResult(0);
    }
    // Only the script's wish is recorded; the simulator's switch is set around each `_NP` call.
    CVTestTable->SetFeatureEnable(scriptId, featureId, enable);
    return CV_IntResult(1);
}

PyObject* PY_XPLMEnumerateFeatures(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMEnumerateFeatures);
    PyObject *scriptId = nullptr, *callable = nullptr;
    void* refcon = nullptr;
    if (!PyArg_ParseTuple(args, "OOO&", &scriptId, &callable, CV_PointerArg, &refcon)) return nullptr;

    // One enumeration per (method, refcon): the simulator calls the script once per feature before
    // this call returns, and a repeated call finds the record and does nothing.
    if (!CV_RegisterOnce(kModule, "XPLMEnumerateFeatures", &FeatureEnumeratorCallbackList, scriptId, callable, refcon,
                         [](_CallbackList* entry) { XPLMEnumerateFeatures_ptr(CV_FeatureEnumeratorCallback, entry); }))
        return CV_IntResult(0);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMEnumerateFeatures",
                              CV_FormatText("pScriptId = %lx, inRefcon = %ld\n", CV_Hex(scriptId), CV_Dec(refcon)),
                              {FeatureEnumeratorCallbackList});
    return CV_IntResult(1);
}

PyObject* PY_CV_RemoveEnumerateFeatures(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callable = nullptr;
    void* refcon = nullptr;
    if (!PyArg_ParseTuple(args, "OOO&", &scriptId, &callable, CV_PointerArg, &refcon)) return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    CV_RemoveOnce(kModule, "CV_RemoveEnumerateFeatures", &FeatureEnumeratorCallbackList, scriptId, callable, refcon,
                  scriptName);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("CV_RemoveEnumerateFeatures",
                              CV_FormatText("pScriptId = %lx, Script Name = %s, inRefcon = %ld\n", CV_Hex(scriptId),
                                            scriptName, CV_Dec(refcon)),
                              {FeatureEnumeratorCallbackList});
    return CV_IntResult(1);
}

PyMethodDef XPLMPluginMethods[] = {
    {"XPLMGetMyID", PY_XPLMGetMyID, METH_VARARGS, "Get plugin ID."},
    {"XPLMCountPlugins", PY_XPLMCountPlugins, METH_VARARGS, "Count the number of plugins."},
    {"XPLMGetNthPlugin", PY_XPLMGetNthPlugin, METH_VARARGS, "Get the Nth plugins."},
    {"XPLMFindPluginByPath", PY_XPLMFindPluginByPath, METH_VARARGS, "Find plugin by path."},
    {"XPLMFindPluginByPath_NP", PY_XPLMFindPluginByPath_NP, METH_VARARGS, "Find plugin by path using Native Paths."},
    {"XPLMFindPluginBySignature", PY_XPLMFindPluginBySignature, METH_VARARGS, "Find plugin by signature."},
    {"XPLMGetPluginInfo", PY_XPLMGetPluginInfo, METH_VARARGS, "Get plugin info."},
    {"XPLMGetPluginInfo_NP", PY_XPLMGetPluginInfo_NP, METH_VARARGS, "Get plugin info using Native Paths."},
    {"XPLMIsPluginEnabled", PY_XPLMIsPluginEnabled, METH_VARARGS, "Is the plugin enabled."},
    {"XPLMEnablePlugin", PY_XPLMEnablePlugin, METH_VARARGS, "Enable the plugin."},
    {"XPLMDisablePlugin", PY_XPLMDisablePlugin, METH_VARARGS, "Disable the plugin."},
    {"XPLMReloadPlugins", PY_XPLMReloadPlugins, METH_VARARGS, "Extract File and Path."},
    {"XPLMSendMessageToPlugin", PY_XPLMSendMessageToPlugin, METH_VARARGS, "Send message to a plugin."},
    {"XPLMHasFeature", PY_XPLMHasFeature, METH_VARARGS, "Has the feature."},
    {"XPLMIsFeatureEnabled", PY_XPLMIsFeatureEnabled, METH_VARARGS, "Is the Feature enabled."},
    {"XPLMEnableFeature", PY_XPLMEnableFeature, METH_VARARGS, "Enable the Feature."},
    {"XPLMEnumerateFeatures", PY_XPLMEnumerateFeatures, METH_VARARGS, "Enumerate Features."},
    {"CV_RemoveEnumerateFeatures", PY_CV_RemoveEnumerateFeatures, METH_VARARGS, "Remove Enumerate Features."},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

CV_NativePathsCall::CV_NativePathsCall(PyObject* scriptId) {
    if (scriptId == nullptr || XPLMEnableFeature_ptr == nullptr || CV_NativePathsFeatureId < 0 ||
        CVTestTable == nullptr)
        return;
    const int wish = CVTestTable->IsFeatureEnabled(scriptId, CV_NativePathsFeatureId);
    try {
        XPLMEnableFeature_ptr(kNativePaths, wish);
    } catch (...) {
        // No destructor runs for an object whose constructor throws: leave the feature off here.
        try {
            XPLMEnableFeature_ptr(kNativePaths, 0);
        } catch (...) {
        }
        throw;
    }
    switched_ = true;
}

CV_NativePathsCall::~CV_NativePathsCall() {
    if (!switched_) return;
    try {
        XPLMEnableFeature_ptr(kNativePaths, 0);
    } catch (...) {
        PrintException(kModule, "XPLMEnableFeature", "Parameter Error");
    }
}

PyObject* initXPLMPlugin() {
    PyObject* module = CV_CreateModule("XPLMPlugin", XPLMPluginMethods, XPLMPluginConstants);
    // The simulator's features, listed once per creation of the module, before any script loads,
    // so that every script entry gets one switch per feature.
    if (XPLMEnumerateFeatures_ptr != nullptr && CVTestTable != nullptr)
        CV_Guarded(kModule, "XPLMEnumerateFeatures", [] { XPLMEnumerateFeatures_ptr(CV_FeatureEnum, nullptr); });
    CV_NativePathsFeatureId = CVTestTable ? CVTestTable->GetFeatureIdFromFeatureName(kNativePaths) : -1;
    return module;
}
