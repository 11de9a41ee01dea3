// Printing a pending Python error without ever letting it end the simulator.
#pragma once

#include <Python.h>

// Prints the pending Python error, if any, to the interpreter's standard error (which the console
// capture routes to the log). A pending SystemExit, from a script calling sys.exit(), is printed
// like any other exception instead of ending the process.
void CV_PrintPythonError();
