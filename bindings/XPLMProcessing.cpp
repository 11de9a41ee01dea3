// The script module XPLMProcessing: simulator time, classic flight loop callbacks and, where the
// simulator offers SDK 2.10, flight loop objects. Every flight loop of every script is recorded in
// FlightLoopCallbackList and called through the one trampoline CV_FlightLoopCallback.
#include "XPLMProcessing.h"

#include "BindingModules.h"
#include "BindingSupport.h"
#include "CV_ScriptTable.h"
#include "CallbackDispatch.h"
#include "CallbackRegistry.h"
#include "LogFiles.h"
#include "Paths.h"
#include "SdkDetect.h"

namespace {

const char* const kModule = "XPLMProcessing";
const char* const kNotSupported = "Not supported in SDK 1.02 or SDK 2.00";

PyObject* IntResult(long value) { return PyLong_FromLong(value); }

// A script's refcon as the integer word it is recorded as. False with the Python error set when
// the object is not an integer.
bool RefconWord(PyObject* object, void** refcon) {
    *refcon = PyLong_AsVoidPtr(object);
    return !(*refcon == nullptr && PyErr_Occurred());
}

// The classic registration of (script, callable, refcon). Flight loop objects share the list and
// may share these keys, but they carry their flight loop id as handle and must only go through
// XPLMDestroyFlightLoop: handing one to XPLMUnregisterFlightLoopCallback would free a record the
// simulator still calls with.
_CallbackList* FindClassicFlightLoop(PyObject* scriptId, PyObject* callable, void* refcon, int* found, int* index) {
    CV_CallbackVector classic;
    std::vector<int> positions;
    for (size_t i = 0; i < FlightLoopCallbackList.size(); ++i) {
        _CallbackList* e = FlightLoopCallbackList[i];
        if (e && e->record && e->record->sdkHandle == nullptr) {
            classic.push_back(e);
            positions.push_back(static_cast<int>(i));
        }
    }
    int at = 0;
    _CallbackList* entry = CVTestTable->FindCallback(classic, scriptId, callable, refcon, found, &at);
    if (entry != nullptr) *index = positions[at];
    return entry;
}

PyObject* PY_XPLMGetElapsedTime(PyObject* self, PyObject* args) {
    float elapsed = 0.0f;
    CV_SDK_GUARD(kModule, "XPLMGetElapsedTime", PyFloat_FromDouble(0.0), elapsed = XPLMGetElapsedTime());
    return PyFloat_FromDouble(elapsed);
}

PyObject* PY_XPLMGetCycleNumber(PyObject* self, PyObject* args) {
    int cycle = 0;
    CV_SDK_GUARD(kModule, "XPLMGetCycleNumber", IntResult(0), cycle = XPLMGetCycleNumber());
    return PyLong_FromLong(cycle);
}

PyObject* PY_XPLMRegisterFlightLoopCallback(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callable = nullptr, *refconObject = nullptr;
    float interval = 0.0f;
    if (!PyArg_ParseTuple(args, "OOfO", &scriptId, &callable, &interval, &refconObject)) return nullptr;
    void* refcon = nullptr;
    if (!RefconWord(refconObject, &refcon)) return nullptr;

    _CallbackList* entry = CVTestTable->AddCallback(&FlightLoopCallbackList, scriptId, nullptr, callable, refcon);
    try {
        XPLMRegisterFlightLoopCallback(CV_FlightLoopCallback, interval, entry);
    } catch (...) {
        CVTestTable->DeleteCallback(&FlightLoopCallbackList, entry, static_cast<int>(FlightLoopCallbackList.size()) - 1);
        PrintException(kModule, "XPLMRegisterFlightLoopCallback", "Parameter Error");
        return IntResult(0);
    }

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMRegisterFlightLoopCallback",
                              CV_FormatText("pScriptId = %lx, Interval = %f, inRefcon = %ld\n", CV_Hex(scriptId),
                                            static_cast<double>(interval), CV_Dec(refcon)),
                              {{"FlightLoopCallbackList", FlightLoopCallbackList.size()}});
    return IntResult(1);
}

PyObject* PY_XPLMUnregisterFlightLoopCallback(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callable = nullptr, *refconObject = nullptr;
    if (!PyArg_ParseTuple(args, "OOO", &scriptId, &callable, &refconObject)) return nullptr;
    void* refcon = nullptr;
    if (!RefconWord(refconObject, &refcon)) return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    int found = 0, index = 0;
    _CallbackList* entry = FindClassicFlightLoop(scriptId, callable, refcon, &found, &index);
    if (found) {
        CV_SDK_GUARD(kModule, "XPLMUnregisterFlightLoopCallback", IntResult(0),
                     XPLMUnregisterFlightLoopCallback(CV_FlightLoopCallback, entry));
        CVTestTable->DeleteCallback(&FlightLoopCallbackList, entry, index);
    } else {
        PrintExceptionf(kModule, "XPLMUnregisterFlightLoopCallback",
                        CV_MSG_UNKNOWN_CALLBACK_AND_REFCON,
                        scriptName);
    }

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMUnregisterFlightLoopCallback",
                              CV_FormatText("pScriptId = %lx, Script Name = %s, inRefcon = %ld\n", CV_Hex(scriptId),
                                            scriptName, CV_Dec(refcon)),
                              {{"FlightLoopCallbackList", FlightLoopCallbackList.size()}});
    return IntResult(1);
}

// The separator line around the usage help of a changed call: 115 dashes.
void WriteSeparator() {
    CV_WriteToLog("-------------------------------------------------------------------------------------------------"
                  "------------------\n");
}

PyObject* PY_XPLMSetFlightLoopCallbackInterval(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callable = nullptr, *refconObject = nullptr;
    float interval = 0.0f;
    int relativeToNow = 0;
    if (!PyArg_ParseTuple(args, "OOfiO", &scriptId, &callable, &interval, &relativeToNow, &refconObject)) {
        // Scripts written for the old four-argument form land here; the parse error still reaches them.
        WriteSeparator();
        PrintException(kModule, "XPLMSetFlightLoopCallbackInterval", "Wrong number of parameters Error");
        WriteSeparator();
        CV_WriteToLog("This changed from Version 2.66.01 onwards as the original syntax was incorrect.\n");
        CV_WriteToLog("Usage Syntax :- XPLMSetFlightLoopCallbackInterval(self, FlightLoopCallbackPointer, Interval, "
                      "RelativeToNow, RefCon)\n");
        CV_WriteToLog("Usage Example :- XPLMSetFlightLoopCallbackInterval(self, self.ExampleFlightLoopCB, 3.0, 1, 0)\n");
        WriteSeparator();
        return nullptr;
    }
    void* refcon = nullptr;
    if (!RefconWord(refconObject, &refcon)) return nullptr;

    int found = 0, index = 0;
    _CallbackList* entry = FindClassicFlightLoop(scriptId, callable, refcon, &found, &index);
    if (found) {
        CV_SDK_GUARD(kModule, "XPLMSetFlightLoopCallbackInterval", IntResult(0),
                     XPLMSetFlightLoopCallbackInterval(CV_FlightLoopCallback, interval, relativeToNow, entry));
    } else {
        char scriptName[256];
        CV_GetScriptNameForMessages(scriptId, scriptName);
        PrintExceptionf(kModule, "XPLMSetFlightLoopCallbackInterval",
                        "Script '%s.py' was trying to set a callback and refcon that does not exist, check refcon "
                        "matches the one that was used in registering.",
                        scriptName);
    }
    return IntResult(1);
}

PyObject* PY_XPLMCreateFlightLoop(PyObject* self, PyObject* args) {
    if (XPLMCreateFlightLoop_ptr == nullptr) {
        PrintException(kModule, "XPLMCreateFlightLoop", kNotSupported);
        return IntResult(0);
    }
    PyObject *scriptId = nullptr, *parameters = nullptr;
    if (!PyArg_ParseTuple(args, "OO", &scriptId, &parameters)) return nullptr;

    // The parameter sequence: [phase, callable, refcon].
    PyObject* items[3] = {nullptr, nullptr, nullptr};
    for (int i = 0; i < 3; ++i) {
        items[i] = PySequence_GetItem(parameters, i);
        if (items[i] == nullptr) {
            for (int j = 0; j < i; ++j) Py_DECREF(items[j]);
            return nullptr;
        }
    }
    const long phase = PyLong_AsLong(items[0]);
    PyObject* callable = items[1];
    void* refcon = nullptr;
    const bool converted = !(phase == -1 && PyErr_Occurred()) && RefconWord(items[2], &refcon);
    Py_DECREF(items[0]);
    Py_DECREF(items[2]);
    if (!converted) {
        Py_DECREF(callable);
        return nullptr;
    }

    // Only a bound method gets a record; any other callable makes a flight loop without one, which
    // the trampoline never schedules again.
    _CallbackList* entry = nullptr;
    if (Py_IS_TYPE(callable, &PyMethod_Type))
        entry = CVTestTable->AddCallback(&FlightLoopCallbackList, scriptId, nullptr, callable, refcon);

    XPLMCreateFlightLoop_t params;
    params.structSize = sizeof params;
    params.phase = static_cast<XPLMFlightLoopPhaseType>(phase);
    params.callbackFunc = CV_FlightLoopCallback;
    params.refcon = entry;

    XPLMFlightLoopID flightLoopId = nullptr;
    try {
        flightLoopId = XPLMCreateFlightLoop_ptr(&params);
    } catch (...) {
        if (entry) CVTestTable->DeleteCallback(&FlightLoopCallbackList, entry, -1);
        Py_DECREF(callable);
        PrintException(kModule, "XPLMCreateFlightLoop", "Parameter Error");
        return IntResult(0);
    }
    // The id goes into this registration's own record; a search by script and callable could find
    // another registration of the same method.
    if (entry) entry->record->sdkHandle = flightLoopId;

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMCreateFlightLoop",
                              CV_FormatText("pScriptId = %lx, phase = %ld, Refcon = %ld, FlightLoopID = %lx\n",
                                            CV_Hex(scriptId), phase, CV_Dec(refcon), CV_Hex(flightLoopId)),
                              {{"FlightLoopCallbackList", FlightLoopCallbackList.size()}});
    Py_DECREF(callable);
    return PyLong_FromVoidPtr(flightLoopId);
}

PyObject* PY_XPLMDestroyFlightLoop(PyObject* self, PyObject* args) {
    if (XPLMDestroyFlightLoop_ptr == nullptr) {
        PrintException(kModule, "XPLMDestroyFlightLoop", kNotSupported);
        return IntResult(0);
    }
    PyObject *scriptId = nullptr, *idObject = nullptr;
    if (!PyArg_ParseTuple(args, "OO", &scriptId, &idObject)) return nullptr;
    void* flightLoopId = PyLong_AsVoidPtr(idObject);
    if (flightLoopId == nullptr && PyErr_Occurred()) return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    int found = 0, index = 0;
    // Classic registrations have handle 0; an id of 0 must never match one of them.
    _CallbackList* entry = flightLoopId == nullptr
                               ? nullptr
                               : CVTestTable->FindCallback(FlightLoopCallbackList, scriptId, flightLoopId, &found, &index);
    if (entry != nullptr) {
        CV_SDK_GUARD(kModule, "XPLMDestroyFlightLoop", IntResult(0), XPLMDestroyFlightLoop_ptr(flightLoopId));
        CVTestTable->DeleteCallback(&FlightLoopCallbackList, entry, index);
    } else {
        PrintExceptionf(kModule, "XPLMDestroyFlightLoop", CV_MSG_UNKNOWN_CALLBACK,
                        scriptName);
    }

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMDestroyFlightLoop",
                              CV_FormatText("pScriptId = %lx, Script Name = %s, inFlightLoopID = %lx\n", CV_Hex(scriptId),
                                            scriptName, CV_Hex(flightLoopId)),
                              {{"FlightLoopCallbackList", FlightLoopCallbackList.size()}});
    return IntResult(1);
}

PyObject* PY_XPLMScheduleFlightLoop(PyObject* self, PyObject* args) {
    if (XPLMScheduleFlightLoop_ptr == nullptr) {
        PrintException(kModule, "XPLMScheduleFlightLoop", kNotSupported);
        return IntResult(0);
    }
    PyObject *scriptId = nullptr, *idObject = nullptr;
    float interval = 0.0f;
    int relativeToNow = 0;
    if (!PyArg_ParseTuple(args, "OOfi", &scriptId, &idObject, &interval, &relativeToNow)) return nullptr;
    void* flightLoopId = PyLong_AsVoidPtr(idObject);
    if (flightLoopId == nullptr && PyErr_Occurred()) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMScheduleFlightLoop", IntResult(0),
                 XPLMScheduleFlightLoop_ptr(flightLoopId, interval, relativeToNow));
    return IntResult(1);
}

PyMethodDef XPLMProcessingMethods[] = {
    {"XPLMGetElapsedTime", PY_XPLMGetElapsedTime, METH_VARARGS, "Get Elapsed Time."},
    {"XPLMGetCycleNumber", PY_XPLMGetCycleNumber, METH_VARARGS, "Get Cycle Number."},
    {"XPLMRegisterFlightLoopCallback", PY_XPLMRegisterFlightLoopCallback, METH_VARARGS,
     "Register Flight Loop Callback."},
    {"XPLMUnregisterFlightLoopCallback", PY_XPLMUnregisterFlightLoopCallback, METH_VARARGS,
     "Unregister Flight Loop Callback."},
    {"XPLMSetFlightLoopCallbackInterval", PY_XPLMSetFlightLoopCallbackInterval, METH_VARARGS,
     "Set Flight Loop Callback Interval."},
    {"XPLMCreateFlightLoop", PY_XPLMCreateFlightLoop, METH_VARARGS, "Create Flight Loop Callback."},
    {"XPLMDestroyFlightLoop", PY_XPLMDestroyFlightLoop, METH_VARARGS, "Destroy Flight Loop Callback."},
    {"XPLMScheduleFlightLoop", PY_XPLMScheduleFlightLoop, METH_VARARGS, "Schedule Flight Loop Callback."},
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMProcessingModule = {PyModuleDef_HEAD_INIT, "XPLMProcessing", nullptr, -1, XPLMProcessingMethods};

}  // namespace

PyObject* initXPLMProcessing() { return CV_CreateModule(&XPLMProcessingModule); }
