// The script module XPWidgetDefs: its constants, and three decoders that turn a widget message's
// parameter into the values of the structure it points to.
#include <Python.h>

#include <iterator>

#include "BindingModules.h"
#include "BindingSupport.h"
#include "WidgetMessages.h"
#include "XPWidgetDefs.h"

namespace {

// Installed in this order, each under its SDK name.
const CV_IntConstant XPWidgetDefsConstants[] = {
    // Widget properties.
    {"xpProperty_Refcon", 0},
    {"xpProperty_Dragging", 1},
    {"xpProperty_DragXOff", 2},
    {"xpProperty_DragYOff", 3},
    {"xpProperty_Hilited", 4},
    {"xpProperty_Object", 5},
    {"xpProperty_Clip", 6},
    {"xpProperty_Enabled", 7},
    {"xpProperty_UserStart", 10000},
    // Message dispatch modes.
    {"xpMode_Direct", 0},
    {"xpMode_UpChain", 1},
    {"xpMode_Recursive", 2},
    {"xpMode_DirectAllCallbacks", 3},
    {"xpMode_Once", 4},
    // The widget class of no class.
    {"xpWidgetClass_None", 0},
    // Widget messages.
    {"xpMsg_None", 0},
    {"xpMsg_Create", 1},
    {"xpMsg_Destroy", 2},
    {"xpMsg_Paint", 3},
    {"xpMsg_Draw", 4},
    {"xpMsg_KeyPress", 5},
    {"xpMsg_KeyTakeFocus", 6},
    {"xpMsg_KeyLoseFocus", 7},
    {"xpMsg_MouseDown", 8},
    {"xpMsg_MouseDrag", 9},
    {"xpMsg_MouseUp", 10},
    {"xpMsg_Reshape", 11},
    {"xpMsg_ExposedChanged", 12},
    {"xpMsg_AcceptChild", 13},
    {"xpMsg_LoseChild", 14},
    {"xpMsg_AcceptParent", 15},
    {"xpMsg_Shown", 16},
    {"xpMsg_Hidden", 17},
    {"xpMsg_DescriptorChanged", 18},
    {"xpMsg_PropertyChanged", 19},
    {"xpMsg_MouseWheel", 20},
    {"xpMsg_CursorAdjust", 21},
    {"xpMsg_UserStart", 10000},
};

const char* const kModule = "XPWidgetDefs";

// Reads the structure behind a message parameter; an address that can not be read is reported and
// gives the failure value.
template <typename T>
bool ReadParameter(PyObject* args, const char* function, T* out) {
    long parameter = 0;
    if (!PyArg_ParseTuple(args, "l", &parameter)) return false;
    if (CV_CopyFromAddress(static_cast<intptr_t>(parameter), out, sizeof(T))) return true;
    PrintException(kModule, function, "Parameter Error");
    return false;
}

PyObject* PY_CV_GetMouseState(PyObject* self, PyObject* args) {
    XPMouseState_t state{};
    if (!ReadParameter(args, "CV_GetMouseState", &state)) return PyErr_Occurred() ? nullptr : PyLong_FromLong(0);
    return Py_BuildValue("(iiii)", state.x, state.y, state.button, state.delta);
}

PyObject* PY_CV_GetKeyState(PyObject* self, PyObject* args) {
    XPKeyState_t state{};
    if (!ReadParameter(args, "CV_GetKeyState", &state)) return PyErr_Occurred() ? nullptr : PyLong_FromLong(0);
    // The key and the virtual key are single signed bytes.
    return Py_BuildValue("(iii)", static_cast<int>(static_cast<signed char>(state.key)), static_cast<int>(state.flags),
                         static_cast<int>(static_cast<signed char>(state.vkey)));
}

PyObject* PY_CV_GetWidgetGeometryChange(PyObject* self, PyObject* args) {
    XPWidgetGeometryChange_t change{};
    if (!ReadParameter(args, "CV_GetWidgetGeometryChange", &change))
        return PyErr_Occurred() ? nullptr : PyLong_FromLong(0);
    return Py_BuildValue("(iiii)", change.dx, change.dy, change.dwidth, change.dheight);
}

PyMethodDef XPWidgetDefsMethods[] = {
    {"CV_GetMouseState", PY_CV_GetMouseState, METH_VARARGS, "Get Mouse State."},
    {"CV_GetKeyState", PY_CV_GetKeyState, METH_VARARGS, "Get Key State."},
    {"CV_GetWidgetGeometryChange", PY_CV_GetWidgetGeometryChange, METH_VARARGS, "Get Widget Geometry Change."},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

PyObject* initXPWidgetDefs() { return CV_CreateModule("XPWidgetDefs", XPWidgetDefsMethods, XPWidgetDefsConstants); }
