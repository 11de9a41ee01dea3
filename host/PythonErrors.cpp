// Printing pending Python errors safely.
#include "PythonErrors.h"

void CV_PrintPythonError() {
    if (!PyErr_Occurred()) return;
    if (PyErr_ExceptionMatches(PyExc_SystemExit)) {
        // PyErr_Print would exit the process for SystemExit; display the traceback instead.
        PyObject *type = nullptr, *value = nullptr, *traceback = nullptr;
        PyErr_Fetch(&type, &value, &traceback);
        PyErr_NormalizeException(&type, &value, &traceback);
        if (traceback && value) PyException_SetTraceback(value, traceback);
        PyErr_Display(type, value, traceback);
        Py_XDECREF(type);
        Py_XDECREF(value);
        Py_XDECREF(traceback);
        PyErr_Clear();
        return;
    }
    PyErr_Print();
}
