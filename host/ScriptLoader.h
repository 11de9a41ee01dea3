// Finding the script files in the PythonScripts folder, importing them and creating their
// Corvelle instances.
#pragma once

#include <string>
#include <vector>

#include "CV_ScriptTable.h"

enum { CV_MAX_SCRIPT_SLOTS = 256, CV_SCRIPT_SLOT_SIZE = 256 };

// Name slots: the selected script names (without extension), later the loaded module names.
extern char TestText[CV_MAX_SCRIPT_SLOTS][CV_SCRIPT_SLOT_SIZE];

// Picks script names out of a folder listing, in listing order: first the ".py" files whose name
// holds "CV_" or "cv_", then the compiled ".pyc" files not already covered by a picked name.
// At most maxNames names; each is cut to fit a name slot.
std::vector<std::string> CV_SelectScriptFiles(const std::vector<std::string>& listing, size_t maxNames);

// Lists the folder, fills TestText with the selected names and returns their count.
int GetScriptFiles(const char* folderPath);
// Imports the module, creates its Corvelle instance and enters it in the script table.
int LoadScript(const char* moduleName, TypeOfScript type);
// Lets go of the running scripts' modules, at the stop once the scripts are stopped.
void CV_ReleaseScriptModules();
// Logs which script the next error line is about.
void WriteScriptInfo(PyObject* scriptId);
// Marks the missing-scripts-folder state for the control panel.
void SetErrorText();
