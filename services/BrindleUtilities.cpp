// BrindleUtilities: lets scripts write to the control panel's display and print lists. The
// bindings' error reporter lives here too, beside the print list it writes to.
#include <cstdio>

#include "BindingModules.h"
#include "BindingSupport.h"
#include "LogFiles.h"
#include "PanelState.h"

void PrintException(const char* module, const char* function, const char* message) {
    char line[4096];
    snprintf(line, sizeof line, "Module - %s, Function - %s, Error = %s\n", module, function, message);
    AddPrintItem(line);
    CV_WriteToLog(line);
}

namespace {

PyObject* PY_BrindleDisplay(PyObject* self, PyObject* args) {
    const char* text = nullptr;
    if (!PyArg_ParseTuple(args, "s", &text)) return nullptr;
    AddDisplayItem(text);
    return PyLong_FromLong(0);
}

PyObject* PY_BrindleClearDisplay(PyObject* self, PyObject* args) {
    ClearDisplay();
    return PyLong_FromLong(0);
}

PyObject* PY_BrindlePrint(PyObject* self, PyObject* args) {
    const char* text = nullptr;
    if (!PyArg_ParseTuple(args, "s", &text)) return nullptr;
    AddPrintItem(text);
    return PyLong_FromLong(0);
}

PyObject* PY_BrindleClearPrint(PyObject* self, PyObject* args) {
    ClearPrint();
    return PyLong_FromLong(0);
}

PyMethodDef BrindleUtilitiesMethods[] = {
    {"BrindleDisplay", PY_BrindleDisplay, METH_VARARGS, "Sends Text to the Pseudo Display."},
    {"BrindleClearDisplay", PY_BrindleClearDisplay, METH_VARARGS, "Clear Display."},
    {"BrindlePrint", PY_BrindlePrint, METH_VARARGS, "Sends Text to the Pseudo Print."},
    {"BrindleClearPrint", PY_BrindleClearPrint, METH_VARARGS, "Clear Printer."},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

PyObject* initBrindleUtilities() { return CV_CreateModule("BrindleUtilities", BrindleUtilitiesMethods); }
