// The script module XPLMScenery: terrain probes, scenery objects (loaded, drawn, unloaded, looked up
// in the library, loaded in the background) and its constants. Every SDK function here is newer than
// SDK 1.02 and reached through the entries found at start.
#include "XPLMScenery.h"

#include <iterator>
#include <vector>

#include "BindingModules.h"
#include "BindingSupport.h"
#include "CV_ScriptTable.h"
#include "CallbackDispatch.h"
#include "CallbackRegistry.h"
#include "Paths.h"
#include "SdkDetect.h"

namespace {

const char* const kModule = "XPLMScenery";
// A draw location is x, y, z, pitch, heading and roll.
constexpr Py_ssize_t kLocationItems = 6;

// Installed in this order, each under its SDK name.
const CV_IntConstant XPLMSceneryConstants[] = {
    // Probe types.
    {"xplm_ProbeY", 0},
    // Probe results.
    {"xplm_ProbeHitTerrain", 0},
    {"xplm_ProbeError", 1},
    {"xplm_ProbeMissed", 2},
};

// ---------------------------------------------------------------- probes

PyObject* PY_XPLMCreateProbe(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMCreateProbe);
    return CV_CallSdk(XPLMCreateProbe_ptr, kModule, "XPLMCreateProbe", args);
}

PyObject* PY_XPLMDestroyProbe(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMDestroyProbe);
    return CV_CallSdk(XPLMDestroyProbe_ptr, kModule, "XPLMDestroyProbe", args);
}

// The probe's eleven fields are appended to the script's list in the structure's order, whatever
// the list already holds.
PyObject* PY_XPLMProbeTerrainXYZ(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMProbeTerrainXYZ);
    XPLMProbeRef probe = nullptr;
    float x = 0, y = 0, z = 0;
    PyObject* info = nullptr;
    if (!PyArg_ParseTuple(args, "O&fffO", CV_PointerArg, &probe, &x, &y, &z, &info) || !CV_CheckOutputList(info))
        return nullptr;
    XPLMProbeInfo_t result{};
    result.structSize = sizeof(XPLMProbeInfo_t);
    XPLMProbeResult answer = xplm_ProbeError;
    CV_SDK_GUARD(kModule, "XPLMProbeTerrainXYZ", CV_IntResult(0),
                 answer = XPLMProbeTerrainXYZ_ptr(probe, x, y, z, &result));
    if (info != Py_None) {
        const float fields[] = {result.locationX, result.locationY, result.locationZ,
                                result.normalX,   result.normalY,   result.normalZ,
                                result.velocityX, result.velocityY, result.velocityZ};
        if (!CV_AppendOutput(info, CV_IntResult(result.structSize))) return nullptr;
        for (float field : fields)
            if (!CV_AppendOutput(info, PyFloat_FromDouble(field))) return nullptr;
        if (!CV_AppendOutput(info, CV_IntResult(result.is_wet))) return nullptr;
    }
    return CV_IntResult(answer);
}

// ---------------------------------------------------------------- objects

// Gated on XPLMCreateWindowEx, another function of the same SDK level, as scripts have always seen it.
PyObject* PY_XPLMLoadObject(PyObject* self, PyObject* args) {
    if (XPLMCreateWindowEx_ptr == nullptr || XPLMLoadObject_ptr == nullptr) {
        CV_ReportNotSupported(kModule, "XPLMLoadObject", CV_SdkLevel::Sdk200);
        return CV_IntResult(0);
    }
    const char* path = nullptr;
    if (!PyArg_ParseTuple(args, "s", &path)) return nullptr;
    XPLMObjectRef object = nullptr;
    CV_SDK_GUARD(kModule, "XPLMLoadObject", CV_IntResult(0), object = XPLMLoadObject_ptr(path));
    return CV_HandleResult(object);
}

// One location from a script sequence of six numbers. False with the Python error set.
bool Location(PyObject* item, XPLMDrawInfo_t& location) {
    CV_PyRef numbers(
        CV_SequenceItems(item, "XPLMDrawObjects expects each location as (x, y, z, pitch, heading, roll)"));
    if (!numbers) return false;
    if (PySequence_Fast_GET_SIZE(numbers.get()) != kLocationItems) {
        PyErr_SetString(PyExc_TypeError, "XPLMDrawObjects expects each location as (x, y, z, pitch, heading, roll)");
        return false;
    }
    float* fields[] = {&location.x, &location.y, &location.z, &location.pitch, &location.heading, &location.roll};
    PyObject** value = PySequence_Fast_ITEMS(numbers.get());
    for (size_t i = 0; i < std::size(fields); ++i) {
        const double number = PyFloat_AsDouble(value[i]);
        if (number == -1.0 && PyErr_Occurred()) return false;
        *fields[i] = static_cast<float>(number);
    }
    location.structSize = sizeof(XPLMDrawInfo_t);
    return true;
}

PyObject* PY_XPLMDrawObjects(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMDrawObjects);
    XPLMObjectRef object = nullptr;
    int count = 0, lighting = 0, earthRelative = 0;
    PyObject* sequence = nullptr;
    if (!PyArg_ParseTuple(args, "O&iOii", CV_PointerArg, &object, &count, &sequence, &lighting, &earthRelative))
        return nullptr;
    CV_PyRef items(CV_SequenceItems(sequence, "XPLMDrawObjects expects a sequence of locations"));
    if (!items) return nullptr;
    const Py_ssize_t length = PySequence_Fast_GET_SIZE(items.get());
    if (length == 0 || length != count) {
        PrintException(kModule, "XPLMDrawObjects", "Parameter Error - List empty or not equal to count");
        return CV_IntResult(0);
    }
    std::vector<XPLMDrawInfo_t> locations(static_cast<size_t>(length));
    for (Py_ssize_t i = 0; i < length; ++i)
        if (!Location(PySequence_Fast_GET_ITEM(items.get(), i), locations[static_cast<size_t>(i)])) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMDrawObjects", CV_IntResult(0),
                 XPLMDrawObjects_ptr(object, count, locations.data(), lighting, earthRelative));
    return CV_IntResult(1);
}

PyObject* PY_XPLMUnloadObject(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMUnloadObject);
    return CV_CallSdk(XPLMUnloadObject_ptr, kModule, "XPLMUnloadObject", args);
}

// ---------------------------------------------------------------- the library

// One lookup per (enumerator, refcon): the simulator calls the script once per object file during
// the call, and a repeated call finds the record and answers 0 without asking again.
PyObject* PY_XPLMLookupObjects(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMLookupObjects);
    PyObject *scriptId = nullptr, *callable = nullptr;
    const char* path = nullptr;
    float latitude = 0, longitude = 0;
    void* refcon = nullptr;
    if (!PyArg_ParseTuple(args, "OsffOO&", &scriptId, &path, &latitude, &longitude, &callable, CV_PointerArg,
                          &refcon))
        return nullptr;

    int count = 0;
    if (!CV_RegisterOnce(kModule, "XPLMLookupObjects", &LibraryEnumeratorCallbackList, scriptId, callable, refcon,
                         [&](_CallbackList* entry) {
                             count = XPLMLookupObjects_ptr(path, latitude, longitude, CV_LibraryEnumeratorCallback,
                                                           entry);
                         }))
        return CV_IntResult(0);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMLookupObjects",
                              CV_FormatText("pScriptId = %lx, inPath = %s, inLatitude = %f, inLongitude = %f, "
                                            "inRefcon = %ld\n",
                                            CV_Hex(scriptId), path, latitude, longitude, CV_Dec(refcon)),
                              {LibraryEnumeratorCallbackList});
    return CV_IntResult(count);
}

// Reports under XPLMPlugin, the module scripts have always seen this report come from.
PyObject* PY_CV_RemoveLookupObjects(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callable = nullptr;
    void* refcon = nullptr;
    if (!PyArg_ParseTuple(args, "OOO&", &scriptId, &callable, CV_PointerArg, &refcon)) return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    CV_RemoveOnce("XPLMPlugin", "CV_RemoveLookupObjects", &LibraryEnumeratorCallbackList, scriptId, callable, refcon,
                  scriptName);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("CV_RemoveLookupObjects",
                              CV_FormatText("pScriptId = %lx, Script Name = %s, inRefcon = %ld\n", CV_Hex(scriptId),
                                            scriptName, CV_Dec(refcon)),
                              {LibraryEnumeratorCallbackList});
    return CV_IntResult(1);
}

// ---------------------------------------------------------------- loading in the background

// Gated on XPLMLookupObjects, as scripts have always seen it; a simulator with SDK 2.00 passes that
// gate but lacks the asynchronous entry, and gets the same report instead of a call. The simulator
// keeps the record as the refcon of its one completion call, so the record is held until then.
PyObject* PY_XPLMLoadObjectAsync(PyObject* self, PyObject* args) {
    if (XPLMLookupObjects_ptr == nullptr || XPLMLoadObjectAsync_ptr == nullptr) {
        CV_ReportNotSupported(kModule, "XPLMLoadObjectAsync", CV_SdkLevel::Sdk210);
        return CV_IntResult(0);
    }
    PyObject *scriptId = nullptr, *callable = nullptr;
    const char* path = nullptr;
    void* refcon = nullptr;
    if (!PyArg_ParseTuple(args, "OsOO&", &scriptId, &path, &callable, CV_PointerArg, &refcon)) return nullptr;

    if (!CV_RegisterOnce(kModule, "XPLMLoadObjectAsync", &ObjectLoadedCallbackList, scriptId, callable, refcon,
                         [&](_CallbackList* entry) {
                             XPLMLoadObjectAsync_ptr(path, CV_ObjectLoadedCallback, entry);
                             CV_Hold(&ObjectLoadedCallbackList, entry, entry);
                         }))
        return CV_IntResult(0);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMLoadObjectAsync",
                              CV_FormatText("pScriptId = %lx, inPath = %s, inRefcon = %ld\n", CV_Hex(scriptId), path,
                                            CV_Dec(refcon)),
                              {ObjectLoadedCallbackList});
    return CV_IntResult(1);
}

// Takes out the script's first record, whichever callback it holds.
PyObject* PY_CV_RemoveObjectLoadedCallback(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callable = nullptr;
    if (!PyArg_ParseTuple(args, "OO", &scriptId, &callable)) return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    if (Py_IS_TYPE(callable, &PyMethod_Type)) {
        int index = 0;
        _CallbackList* entry = CVTestTable->FindCallback(ObjectLoadedCallbackList, scriptId, nullptr, nullptr, &index);
        // A load still under way keeps the record until it completes, without calling the script.
        CV_Unregister(kModule, "CV_RemoveObjectLoadedCallback", &ObjectLoadedCallbackList, entry, index, scriptName,
                      CV_MatchedBy::Refcon, [&] { entry->record->inert = true; });
    }

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace(
            "CV_RemoveObjectLoadedCallback",
            CV_FormatText("pScriptId = %lx, Script Name = %s\n", CV_Hex(scriptId), scriptName),
            {ObjectLoadedCallbackList});
    return CV_IntResult(1);
}

PyMethodDef XPLMSceneryMethods[] = {
    {"XPLMCreateProbe", PY_XPLMCreateProbe, METH_VARARGS, "Creates a probe."},
    {"XPLMDestroyProbe", PY_XPLMDestroyProbe, METH_VARARGS, "Destroys a probe."},
    {"XPLMProbeTerrainXYZ", PY_XPLMProbeTerrainXYZ, METH_VARARGS, "Probes the Terrain."},
    {"XPLMLoadObject", PY_XPLMLoadObject, METH_VARARGS, "Load an Object."},
    {"XPLMDrawObjects", PY_XPLMDrawObjects, METH_VARARGS, "Draw Objects."},
    {"XPLMUnloadObject", PY_XPLMUnloadObject, METH_VARARGS, "Unload an Object."},
    {"XPLMLookupObjects", PY_XPLMLookupObjects, METH_VARARGS, "Look up Objects."},
    {"CV_RemoveLookupObjects", PY_CV_RemoveLookupObjects, METH_VARARGS, "Remove Look up Objects."},
    {"XPLMLoadObjectAsync", PY_XPLMLoadObjectAsync, METH_VARARGS, "Load an Object Async."},
    {"CV_RemoveObjectLoadedCallback", PY_CV_RemoveObjectLoadedCallback, METH_VARARGS, "Remove Object."},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

PyObject* initXPLMScenery() { return CV_CreateModule("XPLMScenery", XPLMSceneryMethods, XPLMSceneryConstants); }
