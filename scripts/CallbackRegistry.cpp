// The callback registry: the lists, their operations, and the integrity check run at shutdown.
#include "CallbackRegistry.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <iterator>

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

// WidgetCallbackList by widget id: each widget's first record, so that a widget message reaches its
// record without a search. An open-addressed table, a power of two long and never more than half
// full. It describes the list as the registry last changed it; a change made any other way (the
// integrity check clearing the list) shows in the list's storage or size, and the table is built
// again at the next message.
class WidgetIndex {
public:
    _WidgetCallbackListEntry* Find(const void* widget) const {
        for (size_t at = Home(widget);; at = (at + 1) & (slots_.size() - 1)) {
            const Slot& slot = slots_[at];
            if (slot.entry == nullptr || slot.widget == widget) return slot.entry;
        }
    }
    // Adds the record unless its widget has one already; false when the table is too full for it.
    bool Add(_WidgetCallbackListEntry* entry) {
        if (2 * (used_ + 1) > slots_.size()) return false;
        size_t at = Home(entry->widgetId);
        while (slots_[at].entry != nullptr && slots_[at].widget != entry->widgetId) at = (at + 1) & (slots_.size() - 1);
        if (slots_[at].entry == nullptr) {
            slots_[at] = Slot{entry->widgetId, entry};
            ++used_;
        }
        return true;
    }
    void Build(const CV_WidgetCallbackVector& list) {
        size_t size = 16;
        while (size < 2 * (list.size() + 1)) size *= 2;
        slots_.assign(size, Slot{});
        shift_ = 64;
        for (size_t s = size; s > 1; s /= 2) --shift_;
        used_ = 0;
        for (_WidgetCallbackListEntry* e : list)
            if (e != nullptr) Add(e);
        Describe(list);
    }
    bool Describes(const CV_WidgetCallbackVector& list) const {
        return valid_ && storage_ == list.data() && size_ == list.size();
    }
    void Describe(const CV_WidgetCallbackVector& list) {
        storage_ = list.data();
        size_ = list.size();
        valid_ = true;
    }
    void Invalidate() { valid_ = false; }

private:
    struct Slot {
        const void* widget = nullptr;
        _WidgetCallbackListEntry* entry = nullptr;  // null: a free slot
    };
    size_t Home(const void* widget) const {
        return static_cast<size_t>((reinterpret_cast<uintptr_t>(widget) * 0x9E3779B97F4A7C15u) >> shift_);
    }
    std::vector<Slot> slots_ = std::vector<Slot>(16);
    unsigned shift_ = 60;
    size_t used_ = 0;
    const void* storage_ = nullptr;
    size_t size_ = 0;
    bool valid_ = false;
};
WidgetIndex gWidgetIndex;

void FreeWidgetEntry(_WidgetCallbackListEntry* entry) {
    PyObject* callable = entry->callable;
    const bool holds = entry->holdsReference;
    const unsigned generation = entry->generation;
    delete entry;
    ReleaseCallable(callable, holds, generation);
}

}  // namespace

// ---------------------------------------------------------------- callback records

_CallbackList* CV_ScriptTable::AddCallback(CV_CallbackVector* list, PyObject* scriptId, void* sdkHandle,
                                           PyObject* callable, void* refcon) {
    _CallbackRecord* record = new _CallbackRecord;
    record->scriptId = scriptId;
    record->scriptEnabled = GetScriptEnabledFlag(scriptId);
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

_CallbackList* CV_ScriptTable::FindCallback(const CV_CallbackVector& list, PyObject* scriptId, PyObject* callable,
                                            void* refcon, int* found, int* index) {
    return FindFirst(list, found, index, [&](_CallbackList* e) {
        return e->record && e->record->scriptId == scriptId && e->record->callable == callable &&
               e->record->refcon == refcon;
    });
}

_CallbackList* CV_ScriptTable::FindCallback(const CV_CallbackVector& list, PyObject* scriptId, void* sdkHandle,
                                            int* found, int* index) {
    return FindFirst(list, found, index, [&](_CallbackList* e) {
        return e->record && e->record->scriptId == scriptId && e->record->sdkHandle == sdkHandle;
    });
}

_CallbackList* CV_ScriptTable::FindCallback(const CV_CallbackVector& list, void* callable, void* refcon, int* found,
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
    entry->scriptEnabled = GetScriptEnabledFlag(scriptId);
    entry->widgetId = widgetId;
    entry->callable = callable;
    entry->isRoot = isRoot;
    entry->container = container;
    entry->generation = CV_InterpreterGeneration;
    entry->holdsReference = HoldCallable(callable);
    if (list == nullptr) return entry;
    // A record added at the end is the first only of a widget that had none.
    const bool described = list == &WidgetCallbackList && gWidgetIndex.Describes(*list);
    list->push_back(entry);
    if (described && gWidgetIndex.Add(entry))
        gWidgetIndex.Describe(*list);
    else if (list == &WidgetCallbackList)
        gWidgetIndex.Invalidate();
    return entry;
}

_WidgetCallbackListEntry* CV_WidgetRecord(const void* widgetId) {
    if (!gWidgetIndex.Describes(WidgetCallbackList)) gWidgetIndex.Build(WidgetCallbackList);
    return gWidgetIndex.Find(widgetId);
}

_WidgetCallbackListEntry* CV_ScriptTable::FindWidgetCallback(const CV_WidgetCallbackVector& list, PyObject* scriptId,
                                                             void* widgetId, int* found, int* index) {
    return FindFirst(list, found, index,
                     [&](_WidgetCallbackListEntry* e) { return e->scriptId == scriptId && e->widgetId == widgetId; });
}

_WidgetCallbackListEntry* CV_ScriptTable::FindWidgetCallback(const CV_WidgetCallbackVector& list, void* widgetId,
                                                             int* found, int* index) {
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
        e->scriptEnabled = GetScriptEnabledFlag(scriptId);
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
    if (list == &WidgetCallbackList) gWidgetIndex.Invalidate();
    FreeWidgetEntry(entry);
}

void CV_ScriptTable::DeleteWidgetChildCallbacks(CV_WidgetCallbackVector* list, PyObject* scriptId, void* container) {
    (void)scriptId;
    if (list == nullptr) return;
    // Nothing reaches a widget record except through this list (the widget trampoline finds it by
    // widget id), so the children's records are freed as they are taken out.
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
    if (list == &WidgetCallbackList && !removed.empty()) gWidgetIndex.Invalidate();
    for (_WidgetCallbackListEntry* e : removed) FreeWidgetEntry(e);
}

// ---------------------------------------------------------------- the table of lists

#define CV_CALLBACKS(list, check) {#list, #check, &list, nullptr, nullptr}
#define CV_BLOCKS(list, check) {#list, #check, nullptr, &list, nullptr}

const CV_ListEntry CV_CallbackLists[34] = {
    CV_CALLBACKS(CameraCallbackList, CV_CheckCameraCallbacks),
    CV_CALLBACKS(SharedDataCallbackList, CV_CheckSharedDataCallbacks),
    CV_CALLBACKS(GetDataiCallbackList, CV_CheckGetDataiCallbacks),
    CV_CALLBACKS(SetDataiCallbackList, CV_CheckSetDataiCallbacks),
    CV_CALLBACKS(GetDatafCallbackList, CV_CheckGetDatafCallbacks),
    CV_CALLBACKS(SetDatafCallbackList, CV_CheckSetDatafCallbacks),
    CV_CALLBACKS(GetDatadCallbackList, CV_CheckGetDatadCallbacks),
    CV_CALLBACKS(SetDatadCallbackList, CV_CheckSetDatadCallbacks),
    CV_CALLBACKS(GetDataviCallbackList, CV_CheckGetDataviCallbacks),
    CV_CALLBACKS(SetDataviCallbackList, CV_CheckSetDataviCallbacks),
    CV_CALLBACKS(GetDatavfCallbackList, CV_CheckGetDatavfCallbacks),
    CV_CALLBACKS(SetDatavfCallbackList, CV_CheckSetDatavfCallbacks),
    CV_CALLBACKS(GetDatabCallbackList, CV_CheckGetDatabCallbacks),
    CV_CALLBACKS(SetDatabCallbackList, CV_CheckSetDatabCallbacks),
    CV_BLOCKS(GetDataMemoryPointerList, CV_CheckGetDataMemoryPointerList),
    CV_BLOCKS(SetDataMemoryPointerList, CV_CheckSetDataMemoryPointerList),
    CV_CALLBACKS(KeySnifferCallbackList, CV_CheckKeySnifferCallbacks),
    CV_CALLBACKS(HotKeyCallbackList, CV_CheckHotKeyCallbacks),
    CV_CALLBACKS(DrawWindowCallbackList, CV_CheckDrawWindowCallbacks),
    CV_CALLBACKS(KeyCallbackList, CV_CheckKeyCallbacks),
    CV_CALLBACKS(MouseClickCallbackList, CV_CheckMouseClickCallbacks),
    CV_CALLBACKS(CursorStatusCallbackList, CV_CheckCursorStatusCallbacks),
    CV_CALLBACKS(MouseWheelCallbackList, CV_CheckMouseWheelCallbacks),
    CV_BLOCKS(DrawWindowMemoryPointerList, CV_CheckDrawWindowMemoryPointerList),
    CV_CALLBACKS(DrawCallbackList, CV_CheckDrawCallbacks),
    CV_CALLBACKS(MenuCallbackList, CV_CheckMenuCallbacks),
    CV_CALLBACKS(PlanesAvailableCallbackList, CV_CheckPlanesAvailableCallbacks),
    CV_CALLBACKS(FeatureEnumeratorCallbackList, CV_CheckFeatureEnumeratorCallbacks),
    CV_CALLBACKS(FlightLoopCallbackList, CV_CheckFlightLoopCallbacks),
    CV_CALLBACKS(LibraryEnumeratorCallbackList, CV_CheckLibraryEnumeratorCallbacks),
    CV_CALLBACKS(ObjectLoadedCallbackList, CV_CheckObjectLoadedCallbacks),
    CV_CALLBACKS(CommandCallbackList, CV_CheckCommandCallbacks),
    CV_CALLBACKS(ErrorCallbackList, CV_CheckErrorCallbacks),
    {"WidgetCallbackList", "CV_CheckWidgetCallbacks", nullptr, nullptr, &WidgetCallbackList},
};

#undef CV_CALLBACKS
#undef CV_BLOCKS

size_t CV_ListEntry::Size() const {
    if (callbacks) return callbacks->size();
    if (blocks) return blocks->size();
    return widgets ? widgets->size() : 0;
}

const CV_ListEntry* CV_FindList(const void* list) {
    for (const CV_ListEntry& e : CV_CallbackLists)
        if (list == e.callbacks || list == e.blocks || list == e.widgets) return &e;
    return nullptr;
}

// ---------------------------------------------------------------- integrity check

void CV_CheckAllCallbacks() {
    CV_WriteToLog("\n*** Checking Integrity of Callbacks Started. ***\n");
    for (const CV_ListEntry& e : CV_CallbackLists) {
        if (e.Size() == 0) continue;
        CV_WriteToLogf("%s size = %d\n", e.name, static_cast<int>(e.Size()));
        if (e.blocks) {
            // Refcon block lists only report; the blocks stay where they are.
            CV_WriteToLogf("Mismatch of %s creation and destruction.\n", e.name);
            continue;
        }
        if (e.callbacks) {
            for (_CallbackList* entry : *e.callbacks) {
                _CallbackRecord* record = entry ? entry->record : nullptr;
                if (record != nullptr && record->scriptId != nullptr) WriteScriptInfo(record->scriptId);
            }
        } else {
            for (_WidgetCallbackListEntry* entry : *e.widgets)
                if (entry != nullptr && entry->scriptId != nullptr) WriteScriptInfo(entry->scriptId);
        }
        CV_WriteToLog("Mismatch of callback creation and destruction.\n");
        // The records are not freed: the simulator may still call with them.
        if (e.callbacks) e.callbacks->clear();
        if (e.widgets) e.widgets->clear();
    }
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

CV_ListSize::CV_ListSize(const CV_CallbackVector& list) : name(""), size(list.size()) {
    if (const CV_ListEntry* e = CV_FindList(&list)) name = e->name;
}

CV_ListSize::CV_ListSize(const CV_WidgetCallbackVector& list) : name(""), size(list.size()) {
    if (const CV_ListEntry* e = CV_FindList(&list)) name = e->name;
}

std::vector<CV_ListSize> CV_ListSizes(const CV_CallbackVector& first, size_t count) {
    std::vector<CV_ListSize> sizes;
    const CV_ListEntry* e = CV_FindList(&first);
    const CV_ListEntry* end = std::end(CV_CallbackLists);
    for (; e != nullptr && e != end && sizes.size() < count; ++e) sizes.emplace_back(e->name, e->Size());
    return sizes;
}

void CV_DebugCallbackTrace(const char* function, const std::string& details, const std::vector<CV_ListSize>& sizes) {
    CV_WriteToLogf("%s\n", function);
    CV_WriteToLog(details.c_str());
    for (const CV_ListSize& s : sizes) CV_WriteToLogf("%s size = %d\n", s.name, static_cast<int>(s.size));
    CV_WriteToLogf("%s\n", function);
}

// ---------------------------------------------------------------- records the simulator still holds

namespace {

struct HeldRegistration {
    const void* list;
    const void* key;
    _CallbackList* record;
    std::vector<_CallbackList**> blocks;
    int slots;
};
std::vector<HeldRegistration> gHeld;
std::vector<_CallbackList*> gRetiredRecords;
std::vector<_CallbackList**> gRetiredBlocks;

bool RecordReachable(const _CallbackList* entry) {
    for (const HeldRegistration& h : gHeld) {
        if (h.record == entry) return true;
        for (_CallbackList** block : h.blocks)
            for (int slot = 0; block != nullptr && slot < h.slots; ++slot)
                if (block[slot] == entry) return true;
    }
    return false;
}

bool BlockReachable(_CallbackList** block) {
    for (const HeldRegistration& h : gHeld)
        for (_CallbackList** b : h.blocks)
            if (b == block) return true;
    return false;
}

HeldRegistration* FindHeld(const void* list, const void* key) {
    for (HeldRegistration& h : gHeld)
        if (h.list == list && h.key == key) return &h;
    return nullptr;
}

}  // namespace

void CV_Hold(const void* list, const void* key, _CallbackList* record, std::initializer_list<_CallbackList**> blocks,
             int slots) {
    HeldRegistration held{list, key, record, blocks, slots};
    if (HeldRegistration* h = FindHeld(list, key))
        *h = std::move(held);
    else
        gHeld.push_back(std::move(held));
}

void CV_Release(const void* list, const void* key) {
    gHeld.erase(std::remove_if(gHeld.begin(), gHeld.end(),
                               [&](const HeldRegistration& h) { return h.list == list && h.key == key; }),
                gHeld.end());
    CV_FreeRetired();
}

bool CV_IsHeld(const void* list, const void* key) { return FindHeld(list, key) != nullptr; }

_CallbackList** CV_HeldBlock(const void* list, const void* key, size_t which) {
    const HeldRegistration* h = FindHeld(list, key);
    return h != nullptr && which < h->blocks.size() ? h->blocks[which] : nullptr;
}

bool CV_BlockIsHeld(const void* list, _CallbackList** block) {
    if (block == nullptr) return false;
    for (const HeldRegistration& h : gHeld)
        if (h.list == list && std::find(h.blocks.begin(), h.blocks.end(), block) != h.blocks.end()) return true;
    return false;
}

void CV_RetireRecord(CV_CallbackVector* list, _CallbackList* entry, int index) {
    if (entry == nullptr) return;
    EraseElement(list, entry, index);
    gRetiredRecords.push_back(entry);
    CV_FreeRetired();
}

_CallbackList** CV_RetireBlock(CV_BlockVector* list, int index, _CallbackList** own) {
    if (list->empty()) return nullptr;
    size_t at = static_cast<size_t>(std::max(index, 0));
    if (at >= list->size()) {
        auto found = std::find(list->begin(), list->end(), own);
        at = found != list->end() ? static_cast<size_t>(found - list->begin()) : list->size() - 1;
    }
    _CallbackList** block = (*list)[at];
    list->erase(list->begin() + static_cast<long>(at));
    gRetiredBlocks.push_back(block);
    CV_FreeRetired();
    return block;
}

void CV_FreeRetired() {
    // Everything to free leaves the retired lists first: freeing a record drops the reference on its
    // callable, which may run script code that registers or retires again.
    std::vector<_CallbackList*> records;
    for (size_t i = 0; i < gRetiredRecords.size();) {
        if (RecordReachable(gRetiredRecords[i])) {
            ++i;
            continue;
        }
        records.push_back(gRetiredRecords[i]);
        gRetiredRecords.erase(gRetiredRecords.begin() + static_cast<long>(i));
    }
    for (size_t i = 0; i < gRetiredBlocks.size();) {
        if (BlockReachable(gRetiredBlocks[i])) {
            ++i;
            continue;
        }
        delete[] gRetiredBlocks[i];
        gRetiredBlocks.erase(gRetiredBlocks.begin() + static_cast<long>(i));
    }
    for (_CallbackList* entry : records)
        if (CVTestTable != nullptr) CVTestTable->DeleteCallback(nullptr, entry, -1);
}

size_t CV_RetiredCount() { return gRetiredRecords.size() + gRetiredBlocks.size(); }

// ---------------------------------------------------------------- letting go of the interpreter


void CV_DropInterpreterReferences() {
    // A live record is in its list or retired (held registrations reach only records of those two
    // kinds). Blocks are not walked: a block that the index rule left in its list may name records
    // that are already gone. A record may be reached twice; its reference goes once.
    std::vector<PyObject*> callables;
    auto drop = [&](PyObject* callable, bool& holds, unsigned generation) {
        if (holds && callable != nullptr && CV_IsCurrentGeneration(generation)) callables.push_back(callable);
        holds = false;
    };
    auto dropRecord = [&](_CallbackList* entry) {
        if (entry != nullptr && entry->record != nullptr)
            drop(entry->record->callable, entry->record->holdsReference, entry->record->generation);
    };
    for (const CV_ListEntry& e : CV_CallbackLists) {
        if (e.callbacks)
            for (_CallbackList* entry : *e.callbacks) dropRecord(entry);
        if (e.widgets)
            for (_WidgetCallbackListEntry* w : *e.widgets)
                if (w != nullptr) drop(w->callable, w->holdsReference, w->generation);
    }
    for (_CallbackList* entry : gRetiredRecords) dropRecord(entry);
    // Last, since dropping a reference may run script code (a __del__) that registers or retires.
    for (PyObject* callable : callables) Py_DECREF(callable);
}
