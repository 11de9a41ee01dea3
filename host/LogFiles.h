// The plugin's two text files in the PythonScripts folder and the capture of the interpreter's
// standard output and standard error.
#pragma once

#include <Python.h>

// Gate of the script output file: 0 writes nothing to CorvelleOutput.txt.
extern int CV_OutputFileEnabled;

// Appends text to CorvelleLog.txt.
// Finds the log and output files' paths on the main thread, for the lines that scripts' own threads
// write later (they may not ask the simulator for paths).
void CV_FindLogFiles();
int CV_WriteToLog(const char* text);
// Appends text to CorvelleOutput.txt when the output file is enabled.
int CV_WriteToLog2(const char* text);
// Formats into a 4096-byte line (cut to fit) and appends it to the log.
int CV_WriteToLogf(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Creates the module BrindleInternalModule that the stdout/stderr catchers call.
PyObject* initBrindleInternalModule();

// Writes the folder of the user's aircraft, with a trailing separator, into dst (255 bytes).
void GetFilePath(char* dst);

// The text of a captured write as it goes to the print list: line feeds removed, cut to 4095 bytes.
// Empty when nothing is left.
void CV_StripLineFeeds(const char* text, char* out, size_t outSize);
