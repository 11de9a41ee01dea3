// The plugin's life: the simulator's entry points, starting and stopping the interpreter, and the
// calls of each script's own entry points.
#pragma once

#include <Python.h>

#include "CV_ScriptTable.h"

// The version text, 2.67.07 followed by the SDK level found at start.
extern char CorvelleVersionNumber[256];
// The credit that follows the version in the log header and the control panel's title.
extern const char CV_CreditText[];
// POSIX path of the PythonScripts folder as appended to sys.path.
extern char gCV_PythonPath[512];

// Starts the interpreter and the scripts; enableScripts 1 also enables each started script.
void StartPython(int enableScripts);
// Stops the scripts and the interpreter; disableScripts 1 first disables each script.
void StopPython(int disableScripts);

int CallXPluginStart(PyObject* scriptId, TypeOfScript type);
int CallXPluginEnable(PyObject* scriptId);
int CallXPluginDisable(PyObject* scriptId, int checkEnabled);
int CallXPluginStop(PyObject* scriptId, int checkEnabled);
int CallXPluginReceiveMessage(PyObject* scriptId, int from, int message, void* param);

// Handed to the simulator's XPLMSetErrorCallback: passes each error to the scripts' error callbacks.
void CV_ErrorCallback(const char* message);
