// The register of loaded scripts: one entry per script instance, the run state of the Python side,
// and the list of SDK features the simulator offers with a per-script switch for each.
#pragma once

#include <Python.h>

#include <memory>
#include <string>
#include <vector>

#include "CallbackRegistry.h"

// Kind of a loaded script. Standard scripts come from the PythonScripts folder.
typedef int TypeOfScript;
enum { CV_StandardScript = 1 };

// One loaded script.
struct _CV_ScriptEntry {
    PyObject* scriptId = nullptr;  // the script's Corvelle instance; the table holds its reference
    // 1 enabled, 0 disabled by the user. Shared with the script's callback records, which read it on
    // every dispatch without looking the script up; set to 0 when the script leaves the table.
    std::shared_ptr<int> enabled = std::make_shared<int>(1);
    int reserved1 = 0;             // copied with the entry, otherwise unused
    int reserved2 = 0;
    std::string moduleName;        // file name without extension
    std::string name;              // the three texts returned by the script's XPluginStart
    std::string signature;
    std::string description;
    TypeOfScript type = 0;
    std::vector<int> features;     // one enable switch per SDK feature, indexed by feature id
};

// One SDK feature the simulator reported.
struct _CV_FeaturesListEntry {
    int featureId = 0;
    char featureName[292] = {0};  // at most 291 characters and the terminating zero
};

class CV_ScriptTable {
public:
    CV_ScriptTable() = default;

    // Run state and counts.
    int GetPythonRunState() const { return runState; }
    void SetPythonRunState(int state) { runState = state; }
    int GetScriptTableSize() const { return static_cast<int>(entries.size()); }
    int GetNumberOfFeatures() const { return numberOfFeatures; }
    void SetNumberOfFeatures(int count) { numberOfFeatures = count; }
    int GetNumberOfWidgetScriptUsers() const { return numberOfWidgetScriptUsers; }
    // 1 once the scripts have stopped and the table's instance references are released: the ids
    // are then only compared, never handed to Python. Cleared with the table.
    int GetScriptsReleased() const { return scriptsReleased; }
    void SetScriptsReleased(int released) { scriptsReleased = released; }

    // Entries. Lookups by script id compare identity and act on the first match.
    void AddScriptId(PyObject* scriptId, const char* moduleName, TypeOfScript type);
    void RemoveScriptId(PyObject* scriptId, TypeOfScript type);
    void ClearScriptTable();
    PyObject* GetScriptId(int index) const;
    void SetScriptId(int index, PyObject* scriptId);
    const char* GetScriptName(int index) const;
    TypeOfScript GetScriptType(PyObject* scriptId) const;
    int GetScriptEnabledStatus(PyObject* scriptId) const;
    // The script's enabled flag for a callback record; null for an id that is not in the table.
    std::shared_ptr<const int> GetScriptEnabledFlag(PyObject* scriptId) const;
    int SetScriptEnabledStatus(PyObject* scriptId, int enabled);
    PyObject* GetScriptIdFromSignature(const char* signature) const;
    PyObject* GetScriptIdFromModuleName(const char* moduleName) const;
    void SetScriptDescriptions(PyObject* scriptId, const char* name, const char* signature,
                               const char* description, TypeOfScript type);
    // Copies the texts into 256-byte buffers (cut to fit); outType may be null.
    void GetScriptDescriptions(PyObject* scriptId, char* outName, char* outSignature,
                               char* outDescription, TypeOfScript* outType = nullptr) const;

    // Features.
    void AddFeature(int featureId, const char* name);
    int GetFeatureIdFromFeatureName(const char* name) const;
    void SetFeatureEnable(PyObject* scriptId, int featureId, int value);
    int IsFeatureEnabled(PyObject* scriptId, int featureId) const;

    // Control panel support: refills the name slots and the script chooser's texts.
    void AddScriptsToWidgets(int count);
    // Rewrites ":" and "\" separators to "/" in place.
    static void ChangeSeparatorToDefault(char* path);

    // ------------------------------------------------------------ callback lists
    // Implemented in CallbackRegistry.cpp. None of these uses the table's own state: the list is
    // always an argument. The Find operations only read the list; Add, Update and Delete act on the
    // global list they are given. Matching is by identity (script ids, callables)
    // and by value (handles, refcons); the first match in list order wins.

    // Appends a new record (script id, handle, callable, refcon) and returns it; no duplicate check.
    _CallbackList* AddCallback(CV_CallbackVector* list, PyObject* scriptId, void* sdkHandle, PyObject* callable,
                               void* refcon);
    // By script, callable and refcon. On a match *found = 1 and *index = its position; otherwise
    // *found = 0, *index is left as it was, and the result is null.
    _CallbackList* FindCallback(const CV_CallbackVector& list, PyObject* scriptId, PyObject* callable, void* refcon,
                                int* found, int* index);
    // By script and SDK handle.
    _CallbackList* FindCallback(const CV_CallbackVector& list, PyObject* scriptId, void* sdkHandle, int* found,
                                int* index);
    // By callable and refcon, whatever the script; the last argument is not used.
    _CallbackList* FindCallback(const CV_CallbackVector& list, void* callable, void* refcon, int* found, int* index,
                                int unused);
    // Stores the handle in the first record of this script and callable; 1 if one was updated.
    int UpdateCallback(CV_CallbackVector* list, PyObject* scriptId, PyObject* callable, void* sdkHandle);
    // Frees the record and erases the element at index (the index a Find returned).
    void DeleteCallback(CV_CallbackVector* list, _CallbackList* entry, int index);

    _WidgetCallbackListEntry* AddWidgetCallback(CV_WidgetCallbackVector* list, PyObject* scriptId, void* widgetId,
                                                PyObject* callable, int isRoot, void* container);
    // By script and widget.
    _WidgetCallbackListEntry* FindWidgetCallback(const CV_WidgetCallbackVector& list, PyObject* scriptId,
                                                 void* widgetId, int* found, int* index);
    // By widget, whatever the script.
    _WidgetCallbackListEntry* FindWidgetCallback(const CV_WidgetCallbackVector& list, void* widgetId, int* found,
                                                 int* index);
    // Attaches script and callable to the first entry of the widget; 1 if one was updated.
    int UpdateWidgetCallback(CV_WidgetCallbackVector* list, PyObject* scriptId, void* widgetId, PyObject* callable);
    void DeleteWidgetCallback(CV_WidgetCallbackVector* list, _WidgetCallbackListEntry* entry, int index);
    // Removes every entry whose container is the given widget (the script id is not used).
    void DeleteWidgetChildCallbacks(CV_WidgetCallbackVector* list, PyObject* scriptId, void* container);

private:
    const _CV_ScriptEntry* Find(PyObject* scriptId) const;
    _CV_ScriptEntry* Find(PyObject* scriptId);

    std::vector<_CV_ScriptEntry> entries;
    int numberOfWidgetScriptUsers = 0;
    int runState = 0;
    int scriptsReleased = 0;
    int numberOfFeatures = 0;
    std::vector<_CV_FeaturesListEntry> features;
};

// The one script table, alive from XPluginStart to XPluginStop.
extern CV_ScriptTable* CVTestTable;

// Copies src into a buffer of size bytes, always terminated, cut to fit.
void CV_CopyText(char* dst, size_t size, const char* src);
