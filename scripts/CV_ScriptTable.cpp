// The script table: loaded scripts, run state and per-script SDK feature switches.
#include "CV_ScriptTable.h"

#include <cstring>

#include "PanelState.h"
#include "ScriptLoader.h"

CV_ScriptTable* CVTestTable = nullptr;

void CV_CopyText(char* dst, size_t size, const char* src) {
    if (dst == nullptr || size == 0) return;
    if (src == nullptr) src = "";
    size_t n = strnlen(src, size - 1);
    memcpy(dst, src, n);
    dst[n] = '\0';
}

const _CV_ScriptEntry* CV_ScriptTable::Find(PyObject* scriptId) const {
    for (const auto& e : entries)
        if (e.scriptId == scriptId) return &e;
    return nullptr;
}

_CV_ScriptEntry* CV_ScriptTable::Find(PyObject* scriptId) {
    for (auto& e : entries)
        if (e.scriptId == scriptId) return &e;
    return nullptr;
}

void CV_ScriptTable::AddScriptId(PyObject* scriptId, const char* moduleName, TypeOfScript type) {
    if (Find(scriptId) != nullptr) return;
    _CV_ScriptEntry entry;
    entry.scriptId = scriptId;
    entry.moduleName = moduleName ? moduleName : "";
    entry.type = type;
    entry.features.assign(numberOfFeatures > 0 ? numberOfFeatures : 0, 0);
    entries.push_back(entry);
    // Registrations a script made before it joined the table (from its constructor) reach its flag now.
    for (const CV_ListEntry& list : CV_CallbackLists) {
        if (list.callbacks)
            for (_CallbackList* e : *list.callbacks)
                if (e && e->record && e->record->scriptId == scriptId && !e->record->scriptEnabled)
                    e->record->scriptEnabled = entry.enabled;
        if (list.widgets)
            for (_WidgetCallbackListEntry* e : *list.widgets)
                if (e && e->scriptId == scriptId && !e->scriptEnabled) e->scriptEnabled = entry.enabled;
    }
}

void CV_ScriptTable::RemoveScriptId(PyObject* scriptId, TypeOfScript type) {
    for (auto it = entries.begin(); it != entries.end(); ++it) {
        if (it->scriptId == scriptId && it->type == type) {
            *it->enabled = 0;
            entries.erase(it);
            return;
        }
    }
}

void CV_ScriptTable::ClearScriptTable() {
    for (auto& e : entries) *e.enabled = 0;
    entries.clear();
    scriptsReleased = 0;
}

PyObject* CV_ScriptTable::GetScriptId(int index) const {
    if (index < 0 || index >= static_cast<int>(entries.size())) return nullptr;
    return entries[index].scriptId;
}

void CV_ScriptTable::SetScriptId(int index, PyObject* scriptId) {
    if (index < 0 || index >= static_cast<int>(entries.size())) return;
    entries[index].scriptId = scriptId;
}

const char* CV_ScriptTable::GetScriptName(int index) const {
    if (index < 0 || index >= static_cast<int>(entries.size())) return "";
    return entries[index].name.c_str();
}

TypeOfScript CV_ScriptTable::GetScriptType(PyObject* scriptId) const {
    const _CV_ScriptEntry* e = Find(scriptId);
    return e ? e->type : 0;
}

int CV_ScriptTable::GetScriptEnabledStatus(PyObject* scriptId) const {
    const _CV_ScriptEntry* e = Find(scriptId);
    return e ? *e->enabled : 0;
}

std::shared_ptr<const int> CV_ScriptTable::GetScriptEnabledFlag(PyObject* scriptId) const {
    const _CV_ScriptEntry* e = Find(scriptId);
    return e ? e->enabled : nullptr;
}

int CV_ScriptTable::SetScriptEnabledStatus(PyObject* scriptId, int enabled) {
    _CV_ScriptEntry* e = Find(scriptId);
    if (e == nullptr) return 0;
    int previous = *e->enabled;
    *e->enabled = enabled;
    return previous;
}

PyObject* CV_ScriptTable::GetScriptIdFromSignature(const char* signature) const {
    if (signature == nullptr) return nullptr;
    for (const auto& e : entries)
        if (e.signature == signature) return e.scriptId;
    return nullptr;
}

PyObject* CV_ScriptTable::GetScriptIdFromModuleName(const char* moduleName) const {
    if (moduleName == nullptr) return nullptr;
    for (const auto& e : entries)
        if (e.moduleName == moduleName) return e.scriptId;
    return nullptr;
}

void CV_ScriptTable::SetScriptDescriptions(PyObject* scriptId, const char* name, const char* signature,
                                           const char* description, TypeOfScript type) {
    _CV_ScriptEntry* e = Find(scriptId);
    if (e == nullptr) return;
    e->name = name ? name : "";
    e->signature = signature ? signature : "";
    e->description = description ? description : "";
    e->type = type;
}

void CV_ScriptTable::GetScriptDescriptions(PyObject* scriptId, char* outName, char* outSignature,
                                           char* outDescription, TypeOfScript* outType) const {
    const _CV_ScriptEntry* e = Find(scriptId);
    if (e == nullptr) return;
    CV_CopyText(outName, 256, e->name.c_str());
    CV_CopyText(outSignature, 256, e->signature.c_str());
    CV_CopyText(outDescription, 256, e->description.c_str());
    if (outType) *outType = e->type;
}

void CV_ScriptTable::AddFeature(int featureId, const char* name) {
    _CV_FeaturesListEntry f;
    f.featureId = featureId;
    CV_CopyText(f.featureName, sizeof f.featureName, name);
    features.push_back(f);
}

int CV_ScriptTable::GetFeatureIdFromFeatureName(const char* name) const {
    if (name == nullptr) return -1;
    for (const auto& f : features)
        if (strcmp(f.featureName, name) == 0) return f.featureId;
    return -1;
}

void CV_ScriptTable::SetFeatureEnable(PyObject* scriptId, int featureId, int value) {
    _CV_ScriptEntry* e = Find(scriptId);
    if (e == nullptr || featureId < 0) return;
    if (static_cast<size_t>(featureId) >= e->features.size()) e->features.resize(featureId + 1, 0);
    e->features[featureId] = value;
}

int CV_ScriptTable::IsFeatureEnabled(PyObject* scriptId, int featureId) const {
    if (featureId == numberOfFeatures) return 0;
    const _CV_ScriptEntry* e = Find(scriptId);
    if (e == nullptr || featureId < 0 || static_cast<size_t>(featureId) >= e->features.size()) return 0;
    return e->features[featureId];
}

void CV_ScriptTable::AddScriptsToWidgets(int count) {
    szPopupText[0] = '\0';
    if (count != 0) {
        int slot = 0;
        for (const auto& e : entries) {
            if (slot < CV_MAX_SCRIPT_SLOTS) CV_CopyText(TestText[slot++], sizeof TestText[0], e.moduleName.c_str());
            size_t used = strlen(szPopupText);
            snprintf(szPopupText + used, sizeof szPopupText - used, "%s;", e.moduleName.c_str());
        }
        CV_CopyText(ScriptName, sizeof ScriptName, entries.empty() ? "" : entries[0].moduleName.c_str());
    } else {
        CV_CopyText(szPopupText, sizeof szPopupText, "No Scripts Found;");
        CV_CopyText(ScriptName, sizeof ScriptName, "No Scripts Found");
    }
    CV_UpdateScriptPopup();
}

void CV_ScriptTable::ChangeSeparatorToDefault(char* path) {
    if (path == nullptr) return;
    for (size_t i = 0; path[i] != '\0'; ++i) {
        if (path[i] == ':') {
            path[i] = '/';
        } else if (path[i] == '\\') {
            // A drive letter's backslash would be kept, but the colon before it has already become
            // "/" by the time the walk gets here, so in practice every backslash is rewritten.
            if (!(i == 2 && path[1] == ':')) path[i] = '/';
        }
    }
}
