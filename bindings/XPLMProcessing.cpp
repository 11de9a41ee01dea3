// The script module XPLMProcessing: simulator time, classic flight loop callbacks and, where the
// simulator offers SDK 2.10, flight loop objects. Every flight loop of every script is recorded in
// FlightLoopCallbackList and called through the one trampoline CV_FlightLoopCallback.
#include "XPLMProcessing.h"

#include "BindingModules.h"
#include "BindingSupport.h"
#include "CV_ScriptTable.h"
#include "CallbackDispatch.h"
#include "CallbackRegistry.h"
#include "Paths.h"
#include "SdkDetect.h"

namespace {

const char* const kModule = "XPLMProcessing";

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

CV_PLAIN_BINDING(kModule, XPLMGetCycleNumber)

PyObject* PY_XPLMRegisterFlightLoopCallback(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callable = nullptr;
    float interval = 0.0f;
    void* refcon = nullptr;
    if (!PyArg_ParseTuple(args, "OOfO&", &scriptId, &callable, &interval, CV_PointerArg, &refcon)) return nullptr;

    _CallbackList* entry = CVTestTable->AddCallback(&FlightLoopCallbackList, scriptId, nullptr, callable, refcon);
    // The simulator did not take a record whose registration threw: it must not stay behind.
    if (!CV_Guarded(kModule, "XPLMRegisterFlightLoopCallback",
                    [&] { XPLMRegisterFlightLoopCallback(CV_FlightLoopCallback, interval, entry); })) {
        CVTestTable->DeleteCallback(&FlightLoopCallbackList, entry, -1);
        return CV_IntResult(0);
    }

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMRegisterFlightLoopCallback",
                              CV_FormatText("pScriptId = %lx, Interval = %f, inRefcon = %ld\n", CV_Hex(scriptId),
                                            static_cast<double>(interval), CV_Dec(refcon)),
                              {FlightLoopCallbackList});
    return CV_IntResult(1);
}

PyObject* PY_XPLMUnregisterFlightLoopCallback(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callable = nullptr;
    void* refcon = nullptr;
    if (!PyArg_ParseTuple(args, "OOO&", &scriptId, &callable, CV_PointerArg, &refcon)) return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    int found = 0, index = 0;
    _CallbackList* entry = FindClassicFlightLoop(scriptId, callable, refcon, &found, &index);
    if (!CV_Unregister(kModule, "XPLMUnregisterFlightLoopCallback", &FlightLoopCallbackList, entry, index, scriptName,
                       CV_MatchedBy::Refcon, [&] { XPLMUnregisterFlightLoopCallback(CV_FlightLoopCallback, entry); }))
        return CV_IntResult(0);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMUnregisterFlightLoopCallback",
                              CV_FormatText("pScriptId = %lx, Script Name = %s, inRefcon = %ld\n", CV_Hex(scriptId),
                                            scriptName, CV_Dec(refcon)),
                              {FlightLoopCallbackList});
    return CV_IntResult(1);
}

PyObject* PY_XPLMSetFlightLoopCallbackInterval(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callable = nullptr, *refconObject = nullptr;
    float interval = 0.0f;
    int relativeToNow = 0;
    if (!PyArg_ParseTuple(args, "OOfiO", &scriptId, &callable, &interval, &relativeToNow, &refconObject)) {
        // Scripts written for the old four-argument form land here; the parse error still reaches them.
        static const char* const kUsage[] = {
            "This changed from Version 2.66.01 onwards as the original syntax was incorrect.\n",
            "Usage Syntax :- XPLMSetFlightLoopCallbackInterval(self, FlightLoopCallbackPointer, Interval, "
            "RelativeToNow, RefCon)\n",
            "Usage Example :- XPLMSetFlightLoopCallbackInterval(self, self.ExampleFlightLoopCB, 3.0, 1, 0)\n"};
        CV_ReportChangedCall(kModule, "XPLMSetFlightLoopCallbackInterval", kUsage);
        return nullptr;
    }
    void* refcon = nullptr;
    if (!CV_PointerWord(refconObject, &refcon)) return nullptr;

    int found = 0, index = 0;
    _CallbackList* entry = FindClassicFlightLoop(scriptId, callable, refcon, &found, &index);
    if (found) {
        CV_SDK_GUARD(kModule, "XPLMSetFlightLoopCallbackInterval", CV_IntResult(0),
                     XPLMSetFlightLoopCallbackInterval(CV_FlightLoopCallback, interval, relativeToNow, entry));
    } else {
        char scriptName[256];
        CV_GetScriptNameForMessages(scriptId, scriptName);
        PrintExceptionf(kModule, "XPLMSetFlightLoopCallbackInterval",
                        "Script '%s.py' was trying to set a callback and refcon that does not exist, check refcon "
                        "matches the one that was used in registering.",
                        scriptName);
    }
    return CV_IntResult(1);
}

PyObject* PY_XPLMCreateFlightLoop(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk210, XPLMCreateFlightLoop);
    PyObject *scriptId = nullptr, *parameters = nullptr;
    if (!PyArg_ParseTuple(args, "OO", &scriptId, &parameters)) return nullptr;

    // The parameter sequence: [phase, callable, refcon].
    CV_PyRef items[3];
    for (int i = 0; i < 3; ++i) {
        items[i].reset(PySequence_GetItem(parameters, i));
        if (!items[i]) return nullptr;
    }
    const long phase = PyLong_AsLong(items[0].get());
    PyObject* callable = items[1].get();
    void* refcon = nullptr;
    if ((phase == -1 && PyErr_Occurred()) || !CV_PointerWord(items[2].get(), &refcon)) return nullptr;

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
    if (!CV_Guarded(kModule, "XPLMCreateFlightLoop", [&] { flightLoopId = XPLMCreateFlightLoop_ptr(&params); })) {
        if (entry) CVTestTable->DeleteCallback(&FlightLoopCallbackList, entry, -1);
        return CV_IntResult(0);
    }
    // The id goes into this registration's own record; a search by script and callable could find
    // another registration of the same method.
    if (entry) entry->record->sdkHandle = flightLoopId;

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMCreateFlightLoop",
                              CV_FormatText("pScriptId = %lx, phase = %ld, Refcon = %ld, FlightLoopID = %lx\n",
                                            CV_Hex(scriptId), phase, CV_Dec(refcon), CV_Hex(flightLoopId)),
                              {FlightLoopCallbackList});
    return CV_HandleResult(flightLoopId);
}

PyObject* PY_XPLMDestroyFlightLoop(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk210, XPLMDestroyFlightLoop);
    PyObject* scriptId = nullptr;
    XPLMFlightLoopID flightLoopId = nullptr;
    if (!PyArg_ParseTuple(args, "OO&", &scriptId, CV_PointerArg, &flightLoopId)) return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    int index = 0;
    // Classic registrations have handle 0; an id of 0 must never match one of them.
    _CallbackList* entry = flightLoopId == nullptr ? nullptr
                                                   : CVTestTable->FindCallback(FlightLoopCallbackList, scriptId,
                                                                               flightLoopId, nullptr, &index);
    if (!CV_Unregister(kModule, "XPLMDestroyFlightLoop", &FlightLoopCallbackList, entry, index, scriptName,
                       CV_MatchedBy::Handle, [&] { XPLMDestroyFlightLoop_ptr(flightLoopId); }))
        return CV_IntResult(0);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMDestroyFlightLoop",
                              CV_FormatText("pScriptId = %lx, Script Name = %s, inFlightLoopID = %lx\n",
                                            CV_Hex(scriptId), scriptName, CV_Hex(flightLoopId)),
                              {FlightLoopCallbackList});
    return CV_IntResult(1);
}

PyObject* PY_XPLMScheduleFlightLoop(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk210, XPLMScheduleFlightLoop);
    PyObject* scriptId = nullptr;
    XPLMFlightLoopID flightLoopId = nullptr;
    float interval = 0.0f;
    int relativeToNow = 0;
    if (!PyArg_ParseTuple(args, "OO&fi", &scriptId, CV_PointerArg, &flightLoopId, &interval, &relativeToNow))
        return nullptr;
    CV_SDK_GUARD(kModule, "XPLMScheduleFlightLoop", CV_IntResult(0),
                 XPLMScheduleFlightLoop_ptr(flightLoopId, interval, relativeToNow));
    return CV_IntResult(1);
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

}  // namespace

PyObject* initXPLMProcessing() { return CV_CreateModule("XPLMProcessing", XPLMProcessingMethods); }
