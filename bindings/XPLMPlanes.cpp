// The script module XPLMPlanes: the user's aircraft, the other aircraft and taking control of them,
// with the planes-available callback of XPLMAcquirePlanes; and its constants.
#include "XPLMPlanes.h"

#include <iterator>
#include <string>
#include <vector>

#include "BindingModules.h"
#include "BindingSupport.h"
#include "CV_ScriptTable.h"
#include "CallbackDispatch.h"
#include "CallbackRegistry.h"
#include "NativePaths.h"
#include "Paths.h"

namespace {

const char* const kModule = "XPLMPlanes";
// The size of each text buffer handed to XPLMGetNthAircraftModel (the SDK asks for 256 and 512).
constexpr size_t kTextBufferSize = 1024;
// A draw state is the structure size followed by its ten floats.
constexpr Py_ssize_t kDrawStateItems = 11;

// Installed in this order, each under its SDK name.
const CV_IntConstant XPLMPlanesConstants[] = {
    // The user's own aircraft.
    {"XPLM_USER_AIRCRAFT", 0},
};

// XPLMSetUsersAircraft and XPLMPlaceUserAtAirport: one text, answered with 1.
template <void (*Sdk)(const char*)>
PyObject* TakeText(PyObject* args, const char* function) {
    const char* text = nullptr;
    if (!PyArg_ParseTuple(args, "s", &text)) return nullptr;
    CV_SDK_GUARD(kModule, function, CV_IntResult(0), Sdk(text));
    return CV_IntResult(1);
}

PyObject* PY_XPLMSetUsersAircraft(PyObject* self, PyObject* args) {
    return TakeText<XPLMSetUsersAircraft>(args, "XPLMSetUsersAircraft");
}

PyObject* PY_XPLMPlaceUserAtAirport(PyObject* self, PyObject* args) {
    return TakeText<XPLMPlaceUserAtAirport>(args, "XPLMPlaceUserAtAirport");
}

PyObject* PY_XPLMCountAircraft(PyObject* self, PyObject* args) {
    int total = 0, active = 0;
    XPLMPluginID controller = 0;
    CV_SDK_GUARD(kModule, "XPLMCountAircraft", Py_BuildValue("(iii)", 0, 0, 0),
                 XPLMCountAircraft(&total, &active, &controller));
    return Py_BuildValue("(iii)", total, active, controller);
}

// The file name and path of an aircraft slot's model. The plain form gives the path as Python opens
// it; the native-path form (scriptId set) applies the script's native-paths wish and gives both
// texts as the simulator wrote them.
PyObject* AircraftModel(int index, PyObject* scriptId) {
    char fileName[kTextBufferSize] = {};
    char path[kTextBufferSize] = {};
    char separator = '/';
    CV_SDK_GUARD(kModule, "XPLMGetNthAircraftModel", Py_BuildValue("(ss)", "", ""),
                 CV_NativePathsCall nativePaths(scriptId);
                 XPLMGetNthAircraftModel(index, fileName, path); if (scriptId == nullptr) separator = CV_Separator());
    fileName[kTextBufferSize - 1] = '\0';
    path[kTextBufferSize - 1] = '\0';
    CV_PyRef name(CV_TextResult(fileName));
    CV_PyRef where(scriptId != nullptr ? CV_TextResult(path) : CV_TextResult(CV_PosixPath(path, separator)));
    if (!name || !where) return nullptr;
    return PyTuple_Pack(2, name.get(), where.get());
}

PyObject* PY_XPLMGetNthAircraftModel(PyObject* self, PyObject* args) {
    int index = 0;
    if (!PyArg_ParseTuple(args, "i", &index)) return nullptr;
    return AircraftModel(index, nullptr);
}

PyObject* PY_XPLMGetNthAircraftModel_NP(PyObject* self, PyObject* args) {
    PyObject* scriptId = nullptr;
    int index = 0;
    if (!PyArg_ParseTuple(args, "Oi", &scriptId, &index)) return nullptr;
    return AircraftModel(index, scriptId);
}

// The script's aircraft paths as the SDK's array: one text per item, an empty string as a null
// entry, and a terminating null after the last item so the simulator never reads past the array.
// The texts stay owned by the items of `items`. False with the Python error set.
bool AircraftArray(PyObject* list, CV_PyRef& items, std::vector<char*>& array) {
    static const char* const kExpected = "XPLMAcquirePlanes expects a list of aircraft paths";
    // A lone path is a sequence of characters too, but never what the script meant.
    if (PyUnicode_Check(list)) {
        PyErr_SetString(PyExc_TypeError, kExpected);
        return false;
    }
    items = CV_PyRef(CV_SequenceItems(list, kExpected));
    if (!items) return false;
    const Py_ssize_t count = PySequence_Fast_GET_SIZE(items.get());
    PyObject** item = PySequence_Fast_ITEMS(items.get());
    array.assign(static_cast<size_t>(count) + 1, nullptr);
    for (Py_ssize_t i = 0; i < count; ++i) {
        Py_ssize_t length = 0;
        const char* text = PyUnicode_AsUTF8AndSize(item[i], &length);
        if (text == nullptr) return false;
        array[static_cast<size_t>(i)] = length == 0 ? nullptr : const_cast<char*>(text);
    }
    return true;
}

// Registration: the record stays in the list whatever the simulator answers. When the planes are
// taken (answer 0) the simulator keeps the record as the refcon of the callback it will make once
// they are free, so the record is held until that call.
PyObject* PY_XPLMAcquirePlanes(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *list = nullptr, *callable = nullptr;
    void* refcon = nullptr;
    if (!PyArg_ParseTuple(args, "OOOO&", &scriptId, &list, &callable, CV_PointerArg, &refcon)) return nullptr;
    CV_PyRef items;
    std::vector<char*> aircraft;
    if (!AircraftArray(list, items, aircraft)) return nullptr;

    _CallbackList* entry = CVTestTable->AddCallback(&PlanesAvailableCallbackList, scriptId, nullptr, callable, refcon);
    int result = 0;
    CV_SDK_GUARD(kModule, "XPLMAcquirePlanes", CV_IntResult(0),
                 result = XPLMAcquirePlanes(aircraft.data(), CV_PlanesAvailableCallback, entry));
    if (result == 0) CV_Hold(&PlanesAvailableCallbackList, entry, entry);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMAcquirePlanes",
                              CV_FormatText("pScriptId = %lx, inRefcon = %ld\n", CV_Hex(scriptId), CV_Dec(refcon)),
                              {PlanesAvailableCallbackList});
    return CV_IntResult(result);
}

// Unregistration by script: without a record of the script the planes stay acquired.
PyObject* PY_XPLMReleasePlanes(PyObject* self, PyObject* args) {
    PyObject* scriptId = nullptr;
    if (!PyArg_ParseTuple(args, "O", &scriptId)) return nullptr;
    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    int index = 0;
    _CallbackList* entry = CVTestTable->FindCallback(PlanesAvailableCallbackList, scriptId, nullptr, nullptr, &index);
    CV_Unregister(kModule, "XPLMReleasePlanes", &PlanesAvailableCallbackList, entry, index, scriptName,
                  CV_MatchedBy::Handle, [&] {
                      XPLMReleasePlanes();
                      // A wait the simulator may still answer no longer reaches the script.
                      entry->record->inert = true;
                  });

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace(
            "XPLMReleasePlanes",
            CV_FormatText("pScriptId = %lx, Script Name = %s\n", CV_Hex(scriptId), scriptName),
            {PlanesAvailableCallbackList});
    return CV_IntResult(1);
}

CV_PLAIN_BINDING(kModule, XPLMSetActiveAircraftCount)

PyObject* PY_XPLMSetAircraftModel(PyObject* self, PyObject* args) {
    int index = 0;
    const char* path = nullptr;
    if (!PyArg_ParseTuple(args, "is", &index, &path)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMSetAircraftModel", CV_IntResult(0), XPLMSetAircraftModel(index, path));
    return CV_IntResult(1);
}

CV_PLAIN_BINDING(kModule, XPLMDisableAIForPlane)

// The draw state sequence: item 0 the structure size as the script gives it, then the ten floats
// in the structure's order. False with the Python error set.
bool DrawState(PyObject* sequence, XPLMPlaneDrawState_t& state) {
    CV_PyRef items(CV_SequenceItems(sequence, "XPLMDrawAircraft expects a draw state sequence of 11 items"));
    if (!items) return false;
    if (PySequence_Fast_GET_SIZE(items.get()) != kDrawStateItems) {
        PyErr_SetString(PyExc_TypeError, "XPLMDrawAircraft expects a draw state sequence of 11 items");
        return false;
    }
    PyObject** item = PySequence_Fast_ITEMS(items.get());
    const long size = PyLong_AsLong(item[0]);
    if (size == -1 && PyErr_Occurred()) return false;
    state.structSize = static_cast<int>(size);
    float* fields[] = {&state.gearPosition,    &state.flapRatio, &state.spoilerRatio, &state.speedBrakeRatio,
                       &state.slatRatio,       &state.wingSweep, &state.thrust,       &state.yokePitch,
                       &state.yokeHeading,     &state.yokeRoll};
    for (size_t i = 0; i < std::size(fields); ++i) {
        const double value = PyFloat_AsDouble(item[i + 1]);
        if (value == -1.0 && PyErr_Occurred()) return false;
        *fields[i] = static_cast<float>(value);
    }
    return true;
}

PyObject* PY_XPLMDrawAircraft(PyObject* self, PyObject* args) {
    int plane = 0, fullDraw = 0;
    float x = 0, y = 0, z = 0, pitch = 0, roll = 0, yaw = 0;
    PyObject* sequence = nullptr;
    if (!PyArg_ParseTuple(args, "iffffffiO", &plane, &x, &y, &z, &pitch, &roll, &yaw, &fullDraw, &sequence))
        return nullptr;
    XPLMPlaneDrawState_t state{};
    if (!DrawState(sequence, state)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMDrawAircraft", CV_IntResult(0),
                 XPLMDrawAircraft(plane, x, y, z, pitch, roll, yaw, fullDraw, &state));
    return CV_IntResult(1);
}

CV_PLAIN_BINDING(kModule, XPLMReinitUsersPlane)

PyMethodDef XPLMPlanesMethods[] = {
    {"XPLMSetUsersAircraft", PY_XPLMSetUsersAircraft, METH_VARARGS, "Set Users Aircraft."},
    {"XPLMPlaceUserAtAirport", PY_XPLMPlaceUserAtAirport, METH_VARARGS, "Place User At Airport."},
    {"XPLMCountAircraft", PY_XPLMCountAircraft, METH_VARARGS, "Count Aircraft."},
    {"XPLMGetNthAircraftModel", PY_XPLMGetNthAircraftModel, METH_VARARGS, "Get Nth Aircraft Model."},
    {"XPLMGetNthAircraftModel_NP", PY_XPLMGetNthAircraftModel_NP, METH_VARARGS,
     "Get Nth Aircraft Model using Native Paths."},
    {"XPLMAcquirePlanes", PY_XPLMAcquirePlanes, METH_VARARGS, "Acquire Planes."},
    {"XPLMReleasePlanes", PY_XPLMReleasePlanes, METH_VARARGS, "Release Planes."},
    {"XPLMSetActiveAircraftCount", PY_XPLMSetActiveAircraftCount, METH_VARARGS, "Set Active Aircraft Count."},
    {"XPLMSetAircraftModel", PY_XPLMSetAircraftModel, METH_VARARGS, "Set Aircraft Model."},
    {"XPLMDisableAIForPlane", PY_XPLMDisableAIForPlane, METH_VARARGS, "Disable AI For Plane."},
    {"XPLMDrawAircraft", PY_XPLMDrawAircraft, METH_VARARGS, "Draw Aircraft."},
    {"XPLMReinitUsersPlane", PY_XPLMReinitUsersPlane, METH_VARARGS, "Reinit Users Plane."},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

PyObject* initXPLMPlanes() { return CV_CreateModule("XPLMPlanes", XPLMPlanesMethods, XPLMPlanesConstants); }
