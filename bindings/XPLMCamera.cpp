// The script module XPLMCamera: taking over the simulator's camera, reading its position and asking
// who controls it. Every control request of every script is recorded in CameraCallbackList and
// called through the one trampoline CV_CameraControlCallback.
#include "XPLMCamera.h"

#include <iterator>

#include "BindingModules.h"
#include "BindingSupport.h"
#include "CV_ScriptTable.h"
#include "CallbackDispatch.h"
#include "CallbackRegistry.h"
#include "Paths.h"

namespace {

const char* const kModule = "XPLMCamera";

// Installed in this order, each under its SDK name.
const CV_IntConstant XPLMCameraConstants[] = {
    // How long a plugin keeps control of the camera.
    {"xplm_ControlCameraUntilViewChanges", 1},
    {"xplm_ControlCameraForever", 2},
};

// Each call adds a record, even when this or another script already controls the camera: the
// simulator tells the previous controller that it lost control, and its record stays until its
// script calls XPLMDontControlCamera.
PyObject* PY_XPLMControlCamera(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callable = nullptr;
    int howLong = 0;
    void* refcon = nullptr;
    if (!PyArg_ParseTuple(args, "OiOO&", &scriptId, &howLong, &callable, CV_PointerArg, &refcon)) return nullptr;

    _CallbackList* entry = CVTestTable->AddCallback(&CameraCallbackList, scriptId, nullptr, callable, refcon);
    if (!CV_Guarded(kModule, "XPLMControlCamera",
                    [&] { XPLMControlCamera(howLong, CV_CameraControlCallback, entry); })) {
        // The simulator did not take the record: it must not stay behind as a registration.
        CVTestTable->DeleteCallback(&CameraCallbackList, entry, -1);
        return CV_IntResult(0);
    }

    // The list's size line keeps the hot key wording on purpose: log readers search for it.
    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMControlCamera",
                              CV_FormatText("pScriptId = %lx, inHowLong = %d, inRefcon = %ld\n", CV_Hex(scriptId), howLong,
                                            CV_Dec(refcon)),
                              {{"HotKeysCallbackList", CameraCallbackList.size()}});
    return CV_IntResult(1);
}

PyObject* PY_XPLMDontControlCamera(PyObject* self, PyObject* args) {
    PyObject* scriptId = nullptr;
    if (!PyArg_ParseTuple(args, "O", &scriptId)) return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    // Camera records never get an SDK handle, so this is the script's first camera record.
    int index = 0;
    _CallbackList* entry =
        CVTestTable->FindCallback(CameraCallbackList, scriptId, static_cast<void*>(nullptr), nullptr, &index);
    if (!CV_Unregister(kModule, "XPLMDontControlCamera", &CameraCallbackList, entry, index, scriptName,
                       CV_MatchedBy::Handle, [] { XPLMDontControlCamera(); }))
        return CV_IntResult(0);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMDontControlCamera",
                              CV_FormatText("pScriptId = %lx, Script Name = %s\n", CV_Hex(scriptId), scriptName),
                              {CameraCallbackList});
    return CV_IntResult(1);
}

// Takes no arguments; whatever the script passes is ignored.
PyObject* PY_XPLMIsCameraBeingControlled(PyObject* self, PyObject* args) {
    XPLMCameraControlDuration howLong = 0;
    int controlled = 0;
    CV_SDK_GUARD(kModule, "XPLMIsCameraBeingControlled", CV_IntResult(0),
                 controlled = XPLMIsCameraBeingControlled(&howLong));
    return Py_BuildValue("ii", controlled, howLong);
}

// Appends x, y, z, pitch, heading, roll and zoom to the script's list, behind what it holds.
PyObject* PY_XPLMReadCameraPosition(PyObject* self, PyObject* args) {
    PyObject* list = nullptr;
    if (!PyArg_ParseTuple(args, "O", &list)) return nullptr;
    if (!PyList_Check(list)) {
        PyErr_SetString(PyExc_TypeError, "expected sequence");
        return nullptr;
    }
    XPLMCameraPosition_t position = {};
    CV_SDK_GUARD(kModule, "XPLMReadCameraPosition", Py_BuildValue("(i)", 0), XPLMReadCameraPosition(&position));
    const float values[7] = {position.x,       position.y,    position.z,   position.pitch,
                             position.heading, position.roll, position.zoom};
    for (float value : values) {
        if (!CV_AppendOutput(list, PyFloat_FromDouble(value))) return nullptr;
    }
    return Py_BuildValue("(i)", 1);
}

PyMethodDef XPLMCameraMethods[] = {
    {"XPLMControlCamera", PY_XPLMControlCamera, METH_VARARGS, "Control Camera."},
    {"XPLMDontControlCamera", PY_XPLMDontControlCamera, METH_VARARGS, "Dont Control Camera."},
    {"XPLMIsCameraBeingControlled", PY_XPLMIsCameraBeingControlled, METH_VARARGS, "Is the Camera being Controlledk."},
    {"XPLMReadCameraPosition", PY_XPLMReadCameraPosition, METH_VARARGS, "Read Camera Position."},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

PyObject* initXPLMCamera() { return CV_CreateModule("XPLMCamera", XPLMCameraMethods, XPLMCameraConstants); }
