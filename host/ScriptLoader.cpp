// Script discovery and loading.
#include "ScriptLoader.h"

#include <cstring>
#include <vector>

#include "LogFiles.h"
#include "PanelState.h"
#include "PythonErrors.h"
#include "XPLMUtilities.h"

char TestText[CV_MAX_SCRIPT_SLOTS][CV_SCRIPT_SLOT_SIZE];

namespace {

bool HasScriptMarker(const std::string& name) {
    return name.find("CV_") != std::string::npos || name.find("cv_") != std::string::npos;
}

std::string CutToSlot(const std::string& name) {
    return name.size() < CV_SCRIPT_SLOT_SIZE ? name : name.substr(0, CV_SCRIPT_SLOT_SIZE - 1);
}

}  // namespace

std::vector<std::string> CV_SelectScriptFiles(const std::vector<std::string>& listing, size_t maxNames) {
    std::vector<std::string> picked;
    // Source files: the extension runs from the last dot.
    for (const std::string& name : listing) {
        if (picked.size() >= maxNames) return picked;
        size_t dot = name.rfind('.');
        if (dot == std::string::npos || name.compare(dot, std::string::npos, ".py") != 0) continue;
        if (!HasScriptMarker(name)) continue;
        picked.push_back(CutToSlot(name.substr(0, dot)));
    }
    // Compiled files: the extension runs from the first dot, and a file is skipped when any name
    // picked so far occurs inside it, so CV_a.pyc beside CV_a.py gives one script.
    for (const std::string& name : listing) {
        if (picked.size() >= maxNames) return picked;
        size_t dot = name.find('.');
        if (dot == std::string::npos || name.compare(dot, std::string::npos, ".pyc") != 0) continue;
        if (!HasScriptMarker(name)) continue;
        bool covered = false;
        for (const std::string& p : picked) {
            if (name.find(p) != std::string::npos) {
                covered = true;
                break;
            }
        }
        if (!covered) picked.push_back(CutToSlot(name.substr(0, dot)));
    }
    return picked;
}

int GetScriptFiles(const char* folderPath) {
    static char names[4096];
    static char* indices[4096];
    int total = 0;
    int returned = 0;
    memset(names, 0, sizeof names);
    memset(indices, 0, sizeof indices);
    XPLMGetDirectoryContents(folderPath, 0, names, sizeof names, indices, 4096, &total, &returned);

    std::vector<std::string> listing;
    if (returned < 0) returned = 0;
    if (returned > 4096) returned = 4096;
    for (int i = 0; i < returned; ++i) {
        const char* n = indices[i];
        // Only names that lie inside our buffer are trusted.
        if (n == nullptr || n < names || n >= names + sizeof names) continue;
        listing.emplace_back(n, strnlen(n, names + sizeof names - n));
    }

    memset(TestText, 0, sizeof TestText);
    std::vector<std::string> picked = CV_SelectScriptFiles(listing, CV_MAX_SCRIPT_SLOTS);
    for (size_t i = 0; i < picked.size(); ++i) CV_CopyText(TestText[i], CV_SCRIPT_SLOT_SIZE, picked[i].c_str());
    return static_cast<int>(picked.size());
}

namespace {
// The modules of the running scripts, released at the stop.
std::vector<PyObject*> gScriptModules;
}  // namespace

int LoadScript(const char* moduleName, TypeOfScript type) {
    PyObject* nameObject = PyUnicode_DecodeUTF8(moduleName, strlen(moduleName), "replace");
    if (nameObject == nullptr) {
        CV_PrintPythonError();
        CV_WriteToLogf("'%s' failed to load\n", moduleName);
        return 0;
    }
    PyObject* module = PyImport_Import(nameObject);
    Py_DECREF(nameObject);
    if (module == nullptr) {
        CV_PrintPythonError();
        CV_WriteToLogf("'%s' failed to load\n", moduleName);
        return 0;
    }
    PyObject* scriptClass = PyObject_GetAttrString(module, "Corvelle");
    if (scriptClass == nullptr) {
        // The missing attribute is reported by our own line, not as a Python error.
        PyErr_Clear();
        Py_DECREF(module);
        CV_WriteToLog("Corvelle Class Missing\n");
        return 0;
    }
    PyObject* args = PyTuple_New(0);
    PyObject* instance = args ? PyObject_Call(scriptClass, args, nullptr) : nullptr;
    Py_XDECREF(args);
    Py_DECREF(scriptClass);  // the instance keeps its class
    if (instance != nullptr) {
        // The table owns the instance reference; the module stays referenced until the stop, so
        // that a script taking itself out of sys.modules still has its globals.
        CVTestTable->AddScriptId(instance, moduleName, type);
        gScriptModules.push_back(module);
        return 1;
    }
    Py_DECREF(module);
    CV_PrintPythonError();
    CV_WriteToLog("Corvelle Call failed\n");
    return 0;
}

void CV_ReleaseScriptModules() {
    std::vector<PyObject*> modules;
    modules.swap(gScriptModules);
    for (PyObject* module : modules) Py_DECREF(module);
}

void WriteScriptInfo(PyObject* scriptId) {
    char name[256] = {0}, signature[256] = {0}, description[256] = {0};
    if (CVTestTable) CVTestTable->GetScriptDescriptions(scriptId, name, signature, description);
    CV_WriteToLogf("Script '%s.py.'\n", name);
}

void SetErrorText() {
    CV_CopyText(szPopupText, sizeof szPopupText, "PythonScripts Directory Error;");
    CV_CopyText(ScriptName, sizeof ScriptName, "PythonScripts Directory Error");
}
