// The script-facing modules and the order in which a start of the interpreter creates them.
#pragma once

#include <Python.h>

PyObject* initBrindleUtilities();
PyObject* initXPLMDefs();
PyObject* initXPLMCamera();
PyObject* initXPLMDataAccess();
PyObject* initXPLMDisplay();
PyObject* initXPLMGraphics();
PyObject* initXPLMMenus();
PyObject* initXPLMNavigation();
PyObject* initXPLMProcessing();
PyObject* initXPLMUtilities();
PyObject* initXPLMPlanes();
PyObject* initXPLMPlugin();
PyObject* initXPLMScenery();
PyObject* initXPWidgetDefs();
PyObject* initXPWidgets();
PyObject* initXPStandardWidgets();
PyObject* initXPUIGraphics();
PyObject* initXPWidgetUtils();
PyObject* initPythonScriptMessaging();
PyObject* initBrindleVCUtilities();

// Creates every module in its fixed order; the scripts path is recorded just before the
// virtual-camera utilities, which are created last.
void CV_InitScriptModules(const char* scriptsPosixPath);
