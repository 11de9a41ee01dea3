// The callback registry: the lists, their operations, and the integrity check run at shutdown.
#include "CallbackRegistry.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "CV_ScriptTable.h"
#include "LogFiles.h"
#include "ScriptLoader.h"

CV_CallbackVector FlightLoopCallbackList;
CV_CallbackVector GetDataiCallbackList, SetDataiCallbackList;
CV_CallbackVector GetDatafCallbackList, SetDatafCallbackList;
CV_CallbackVector GetDatadCallbackList, SetDatadCallbackList;
CV_CallbackVector GetDataviCallbackList, SetDataviCallbackList;
CV_CallbackVector GetDatavfCallbackList, SetDatavfCallbackList;
CV_CallbackVector GetDatabCallbackList, SetDatabCallbackList;
CV_CallbackVector SharedDataCallbackList;
CV_CallbackVector CameraCallbackList;
CV_CallbackVector DrawCallbackList;
CV_CallbackVector KeySnifferCallbackList;
CV_CallbackVector HotKeyCallbackList;
CV_CallbackVector DrawWindowCallbackList, MouseClickCallbackList, KeyCallbackList;
CV_CallbackVector CursorStatusCallbackList, MouseWheelCallbackList;
CV_CallbackVector MenuCallbackList;
CV_CallbackVector FeatureEnumeratorCallbackList;
CV_CallbackVector CommandCallbackList;
CV_CallbackVector ErrorCallbackList;
CV_CallbackVector PlanesAvailableCallbackList;
CV_CallbackVector LibraryEnumeratorCallbackList;
CV_CallbackVector ObjectLoadedCallbackList;
CV_WidgetCallbackVector WidgetCallbackList;

CV_BlockVector GetDataMemoryPointerList, SetDataMemoryPointerList;
CV_BlockVector DrawWindowMemoryPointerList;

unsigned CV_InterpreterGeneration = 0;

void CV_BeginInterpreterGeneration() { ++CV_InterpreterGeneration; }

namespace {

// Registered callables are kept alive by the registry while registered: a script that passes a
// freshly made bound method (self.Callback without storing it) would otherwise leave the record
// pointing at a dead object. Matching stays by identity, so the script still unregisters with the
// object it registered. References are only taken and dropped inside the interpreter they belong to.
bool HoldCallable(PyObject* callable) {
    if (callable == nullptr || !Py_IsInitialized()) return false;
    Py_INCREF(callable);
    return true;
}

void ReleaseCallable(PyObject* callable, bool holds, unsigned generation) {
    if (holds && callable != nullptr && CV_IsCurrentGeneration(generation)) Py_DECREF(callable);
}

// Takes the element out of the list: at index when it is there, else wherever it is. A freed
// record must never stay in a list, whatever index the caller kept.
template <typename T>
void EraseElement(std::vector<T*>* list, T* element, int index) {
    if (index >= 0 && static_cast<size_t>(index) < list->size() && (*list)[index] == element) {
        list->erase(list->begin() + index);
        return;
    }
    auto it = std::find(list->begin(), list->end(), element);
    if (it != list->end()) list->erase(it);
}

template <typename T, typename Match>
T* FindFirst(const std::vector<T*>& list, int* found, int* index, Match match) {
    for (size_t i = 0; i < list.size(); ++i) {
        T* element = list[i];
        if (element != nullptr && match(element)) {
            if (found) *found = 1;
            if (index) *index = static_cast<int>(i);
            return element;
        }
    }
    if (found) *found = 0;
    return nullptr;
}

void FreeWidgetEntry(_WidgetCallbackListEntry* entry) {
    PyObject* callable = entry->callable;
    const bool holds = entry->holdsReference;
    const unsigned generation = entry->generation;
    delete entry;
    ReleaseCallable(callable, holds, generation);
}

// The check of one callback list: its size, the script of every record, the mismatch line; then
// the list is emptied. The records are not freed, since the simulator may still call with them.
void CheckCallbackList(CV_CallbackVector& list, const char* name) {
    if (list.empty()) return;
    CV_WriteToLogf("%s size = %d\n", name, static_cast<int>(list.size()));
    for (_CallbackList* entry : list) {
        _CallbackRecord* record = entry ? entry->record : nullptr;
        if (record != nullptr && record->scriptId != nullptr) WriteScriptInfo(record->scriptId);
    }
    CV_WriteToLog("Mismatch of callback creation and destruction.\n");
    list.clear();
}

// Refcon block lists only report; the blocks stay where they are.
void CheckBlockList(const CV_BlockVector& list, const char* name) {
    if (list.empty()) return;
    CV_WriteToLogf("%s size = %d\n", name, static_cast<int>(list.size()));
    CV_WriteToLogf("Mismatch of %s creation and destruction.\n", name);
}

}  // namespace

// ---------------------------------------------------------------- callback records

_CallbackList* CV_ScriptTable::AddCallback(CV_CallbackVector* list, PyObject* scriptId, void* sdkHandle,
                                           PyObject* callable, void* refcon) {
    _CallbackRecord* record = new _CallbackRecord;
    record->scriptId = scriptId;
    record->sdkHandle = sdkHandle;
    record->callable = callable;
    record->refcon = refcon;
    record->generation = CV_InterpreterGeneration;
    record->holdsReference = HoldCallable(callable);
    _CallbackList* entry = new _CallbackList;
    entry->record = record;
    if (list) list->push_back(entry);
    return entry;
}

_CallbackList* CV_ScriptTable::FindCallback(CV_CallbackVector list, PyObject* scriptId, PyObject* callable,
                                            void* refcon, int* found, int* index) {
    return FindFirst(list, found, index, [&](_CallbackList* e) {
        return e->record && e->record->scriptId == scriptId && e->record->callable == callable &&
               e->record->refcon == refcon;
    });
}

_CallbackList* CV_ScriptTable::FindCallback(CV_CallbackVector list, PyObject* scriptId, void* sdkHandle, int* found,
                                            int* index) {
    return FindFirst(list, found, index, [&](_CallbackList* e) {
        return e->record && e->record->scriptId == scriptId && e->record->sdkHandle == sdkHandle;
    });
}

_CallbackList* CV_ScriptTable::FindCallback(CV_CallbackVector list, void* callable, void* refcon, int* found,
                                            int* index, int unused) {
    (void)unused;
    return FindFirst(list, found, index, [&](_CallbackList* e) {
        return e->record && static_cast<void*>(e->record->callable) == callable && e->record->refcon == refcon;
    });
}

int CV_ScriptTable::UpdateCallback(CV_CallbackVector* list, PyObject* scriptId, PyObject* callable, void* sdkHandle) {
    if (list == nullptr) return 0;
    for (_CallbackList* e : *list) {
        if (e && e->record && e->record->scriptId == scriptId && e->record->callable == callable) {
            e->record->sdkHandle = sdkHandle;
            return 1;
        }
    }
    return 0;
}

void CV_ScriptTable::DeleteCallback(CV_CallbackVector* list, _CallbackList* entry, int index) {
    if (entry == nullptr) return;
    if (list) EraseElement(list, entry, index);
    _CallbackRecord* record = entry->record;
    delete entry;
    if (record == nullptr) return;
    PyObject* callable = record->callable;
    const bool holds = record->holdsReference;
    const unsigned generation = record->generation;
    delete record;
    // Last, since dropping the reference may run script code.
    ReleaseCallable(callable, holds, generation);
}

// ---------------------------------------------------------------- widget records

_WidgetCallbackListEntry* CV_ScriptTable::AddWidgetCallback(CV_WidgetCallbackVector* list, PyObject* scriptId,
                                                            void* widgetId, PyObject* callable, int isRoot,
                                                            void* container) {
    _WidgetCallbackListEntry* entry = new _WidgetCallbackListEntry;
    entry->scriptId = scriptId;
    entry->widgetId = widgetId;
    entry->callable = callable;
    entry->isRoot = isRoot;
    entry->container = container;
    entry->generation = CV_InterpreterGeneration;
    entry->holdsReference = HoldCallable(callable);
    if (list) list->push_back(entry);
    return entry;
}

_WidgetCallbackListEntry* CV_ScriptTable::FindWidgetCallback(CV_WidgetCallbackVector list, PyObject* scriptId,
                                                             void* widgetId, int* found, int* index) {
    return FindFirst(list, found, index,
                     [&](_WidgetCallbackListEntry* e) { return e->scriptId == scriptId && e->widgetId == widgetId; });
}

_WidgetCallbackListEntry* CV_ScriptTable::FindWidgetCallback(CV_WidgetCallbackVector list, void* widgetId, int* found,
                                                             int* index) {
    return FindFirst(list, found, index, [&](_WidgetCallbackListEntry* e) { return e->widgetId == widgetId; });
}

int CV_ScriptTable::UpdateWidgetCallback(CV_WidgetCallbackVector* list, PyObject* scriptId, void* widgetId,
                                         PyObject* callable) {
    if (list == nullptr) return 0;
    for (_WidgetCallbackListEntry* e : *list) {
        if (e == nullptr || e->widgetId != widgetId) continue;
        PyObject* oldCallable = e->callable;
        const bool oldHolds = e->holdsReference;
        const unsigned oldGeneration = e->generation;
        e->scriptId = scriptId;
        e->callable = callable;
        // The entry now belongs to the running interpreter, whatever made the widget.
        e->generation = CV_InterpreterGeneration;
        e->holdsReference = HoldCallable(callable);
        ReleaseCallable(oldCallable, oldHolds, oldGeneration);
        return 1;
    }
    return 0;
}

void CV_ScriptTable::DeleteWidgetCallback(CV_WidgetCallbackVector* list, _WidgetCallbackListEntry* entry, int index) {
    if (entry == nullptr) return;
    if (list) EraseElement(list, entry, index);
    FreeWidgetEntry(entry);
}

void CV_ScriptTable::DeleteWidgetChildCallbacks(CV_WidgetCallbackVector* list, PyObject* scriptId, void* container) {
    (void)scriptId;
    if (list == nullptr) return;
    // Nothing reaches a widget record except through this list (the widget trampoline searches it
    // by widget id), so the children's records are freed as they are taken out.
    std::vector<_WidgetCallbackListEntry*> removed;
    for (size_t i = 0; i < list->size();) {
        _WidgetCallbackListEntry* e = (*list)[i];
        if (e != nullptr && e->container == container) {
            list->erase(list->begin() + i);
            removed.push_back(e);
        } else {
            ++i;
        }
    }
    for (_WidgetCallbackListEntry* e : removed) FreeWidgetEntry(e);
}

// ---------------------------------------------------------------- integrity check

void CV_CheckCameraCallbacks() { CheckCallbackList(CameraCallbackList, "CameraCallbackList"); }
void CV_CheckSharedDataCallbacks() { CheckCallbackList(SharedDataCallbackList, "SharedDataCallbackList"); }
void CV_CheckGetDataiCallbacks() { CheckCallbackList(GetDataiCallbackList, "GetDataiCallbackList"); }
void CV_CheckSetDataiCallbacks() { CheckCallbackList(SetDataiCallbackList, "SetDataiCallbackList"); }
void CV_CheckGetDatafCallbacks() { CheckCallbackList(GetDatafCallbackList, "GetDatafCallbackList"); }
void CV_CheckSetDatafCallbacks() { CheckCallbackList(SetDatafCallbackList, "SetDatafCallbackList"); }
void CV_CheckGetDatadCallbacks() { CheckCallbackList(GetDatadCallbackList, "GetDatadCallbackList"); }
void CV_CheckSetDatadCallbacks() { CheckCallbackList(SetDatadCallbackList, "SetDatadCallbackList"); }
void CV_CheckGetDataviCallbacks() { CheckCallbackList(GetDataviCallbackList, "GetDataviCallbackList"); }
void CV_CheckSetDataviCallbacks() { CheckCallbackList(SetDataviCallbackList, "SetDataviCallbackList"); }
void CV_CheckGetDatavfCallbacks() { CheckCallbackList(GetDatavfCallbackList, "GetDatavfCallbackList"); }
void CV_CheckSetDatavfCallbacks() { CheckCallbackList(SetDatavfCallbackList, "SetDatavfCallbackList"); }
void CV_CheckGetDatabCallbacks() { CheckCallbackList(GetDatabCallbackList, "GetDatabCallbackList"); }
void CV_CheckSetDatabCallbacks() { CheckCallbackList(SetDatabCallbackList, "SetDatabCallbackList"); }
void CV_CheckGetDataMemoryPointerList() { CheckBlockList(GetDataMemoryPointerList, "GetDataMemoryPointerList"); }
void CV_CheckSetDataMemoryPointerList() { CheckBlockList(SetDataMemoryPointerList, "SetDataMemoryPointerList"); }
void CV_CheckKeySnifferCallbacks() { CheckCallbackList(KeySnifferCallbackList, "KeySnifferCallbackList"); }
void CV_CheckHotKeyCallbacks() { CheckCallbackList(HotKeyCallbackList, "HotKeyCallbackList"); }
void CV_CheckDrawWindowCallbacks() { CheckCallbackList(DrawWindowCallbackList, "DrawWindowCallbackList"); }
void CV_CheckKeyCallbacks() { CheckCallbackList(KeyCallbackList, "KeyCallbackList"); }
void CV_CheckMouseClickCallbacks() { CheckCallbackList(MouseClickCallbackList, "MouseClickCallbackList"); }
void CV_CheckCursorStatusCallbacks() { CheckCallbackList(CursorStatusCallbackList, "CursorStatusCallbackList"); }
void CV_CheckMouseWheelCallbacks() { CheckCallbackList(MouseWheelCallbackList, "MouseWheelCallbackList"); }
void CV_CheckDrawWindowMemoryPointerList() { CheckBlockList(DrawWindowMemoryPointerList, "DrawWindowMemoryPointerList"); }
void CV_CheckDrawCallbacks() { CheckCallbackList(DrawCallbackList, "DrawCallbackList"); }
void CV_CheckMenuCallbacks() { CheckCallbackList(MenuCallbackList, "MenuCallbackList"); }
void CV_CheckPlanesAvailableCallbacks() { CheckCallbackList(PlanesAvailableCallbackList, "PlanesAvailableCallbackList"); }
void CV_CheckFeatureEnumeratorCallbacks() {
    CheckCallbackList(FeatureEnumeratorCallbackList, "FeatureEnumeratorCallbackList");
}
void CV_CheckFlightLoopCallbacks() { CheckCallbackList(FlightLoopCallbackList, "FlightLoopCallbackList"); }
void CV_CheckLibraryEnumeratorCallbacks() {
    CheckCallbackList(LibraryEnumeratorCallbackList, "LibraryEnumeratorCallbackList");
}
void CV_CheckObjectLoadedCallbacks() { CheckCallbackList(ObjectLoadedCallbackList, "ObjectLoadedCallbackList"); }
void CV_CheckCommandCallbacks() { CheckCallbackList(CommandCallbackList, "CommandCallbackList"); }
void CV_CheckErrorCallbacks() { CheckCallbackList(ErrorCallbackList, "ErrorCallbackList"); }

void CV_CheckWidgetCallbacks() {
    if (WidgetCallbackList.empty()) return;
    CV_WriteToLogf("WidgetCallbackList size = %d\n", static_cast<int>(WidgetCallbackList.size()));
    for (_WidgetCallbackListEntry* e : WidgetCallbackList)
        if (e != nullptr && e->scriptId != nullptr) WriteScriptInfo(e->scriptId);
    CV_WriteToLog("Mismatch of callback creation and destruction.\n");
    WidgetCallbackList.clear();
}

void CV_CheckAllCallbacks() {
    CV_WriteToLog("\n*** Checking Integrity of Callbacks Started. ***\n");
    CV_CheckCameraCallbacks();
    CV_CheckSharedDataCallbacks();
    CV_CheckGetDataiCallbacks();
    CV_CheckSetDataiCallbacks();
    CV_CheckGetDatafCallbacks();
    CV_CheckSetDatafCallbacks();
    CV_CheckGetDatadCallbacks();
    CV_CheckSetDatadCallbacks();
    CV_CheckGetDataviCallbacks();
    CV_CheckSetDataviCallbacks();
    CV_CheckGetDatavfCallbacks();
    CV_CheckSetDatavfCallbacks();
    CV_CheckGetDatabCallbacks();
    CV_CheckSetDatabCallbacks();
    CV_CheckGetDataMemoryPointerList();
    CV_CheckSetDataMemoryPointerList();
    CV_CheckKeySnifferCallbacks();
    CV_CheckHotKeyCallbacks();
    CV_CheckDrawWindowCallbacks();
    CV_CheckKeyCallbacks();
    CV_CheckMouseClickCallbacks();
    CV_CheckCursorStatusCallbacks();
    CV_CheckMouseWheelCallbacks();
    CV_CheckDrawWindowMemoryPointerList();
    CV_CheckDrawCallbacks();
    CV_CheckMenuCallbacks();
    CV_CheckPlanesAvailableCallbacks();
    CV_CheckFeatureEnumeratorCallbacks();
    CV_CheckFlightLoopCallbacks();
    CV_CheckLibraryEnumeratorCallbacks();
    CV_CheckObjectLoadedCallbacks();
    CV_CheckCommandCallbacks();
    CV_CheckErrorCallbacks();
    CV_CheckWidgetCallbacks();
    CV_WriteToLog("*** Checking Integrity of Callbacks Finished. ***\n\n");
}

// ---------------------------------------------------------------- debug trace

std::string CV_FormatText(const char* format, ...) {
    char text[4096];
    va_list ap;
    va_start(ap, format);
    vsnprintf(text, sizeof text, format, ap);
    va_end(ap);
    return text;
}

void CV_DebugCallbackTrace(const char* function, const std::string& details, std::initializer_list<CV_ListSize> sizes) {
    CV_WriteToLogf("%s\n", function);
    CV_WriteToLog(details.c_str());
    for (const CV_ListSize& s : sizes) CV_WriteToLogf("%s size = %d\n", s.name, static_cast<int>(s.size));
    CV_WriteToLogf("%s\n", function);
}

void CV_TakeOutOfList(CV_CallbackVector* list, _CallbackList* entry, int index) {
    if (index >= 0 && static_cast<size_t>(index) < list->size() && (*list)[index] == entry) {
        list->erase(list->begin() + index);
        return;
    }
    auto it = std::find(list->begin(), list->end(), entry);
    if (it != list->end()) list->erase(it);
}
