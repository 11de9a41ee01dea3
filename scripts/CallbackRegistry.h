// The callback registry: one list per callback kind, tying each registration to its script,
// callable and refcon.
//
// The simulator calls plain functions with one opaque refcon, so every registration appends a small
// record to the list of its kind and hands the simulator the address of that record's
// `_CallbackList` as refcon. The trampolines (CallbackDispatch.h) get it back and reach the script's
// callable without any search. The list operations are members of CV_ScriptTable (see the
// "Callback lists" section of CV_ScriptTable.h); they use no state of the table, the list is always
// an argument.
#pragma once

#include <Python.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

// The four words of one registration, in this order, followed by the bookkeeping that keeps a
// leftover record from ever reaching a later interpreter.
struct _CallbackRecord {
    PyObject* scriptId = nullptr;  // the registering script's Corvelle instance (identity only)
    void* sdkHandle = nullptr;     // what the SDK returned for the registration; 0 until updated
    PyObject* callable = nullptr;  // the script's Python callable
    void* refcon = nullptr;        // the script's own refcon, an integer value
    unsigned generation = 0;       // the interpreter generation the record was made in
    bool holdsReference = false;   // a reference on the callable is held while registered
    bool inert = false;            // taken back by the script while the simulator still holds it: never called
    std::shared_ptr<const int> scriptEnabled;  // the script's enabled flag in the script table; null: not there
};

// One registered callback of any kind except widgets. The list stores the address of this object,
// which is also the refcon the simulator receives; it never moves while registered.
struct _CallbackList {
    _CallbackRecord* record = nullptr;
};

// One widget a script created, with its widget function once one is attached.
struct _WidgetCallbackListEntry {
    PyObject* scriptId = nullptr;  // null for XPCreateWidget widgets until XPAddWidgetCallback
    void* widgetId = nullptr;      // the simulator's widget handle
    PyObject* callable = nullptr;  // the widget function; null until one is attached
    int isRoot = 0;                // inIsRoot of the widget's creation
    void* container = nullptr;     // the parent given at creation
    unsigned generation = 0;
    bool holdsReference = false;
    std::shared_ptr<const int> scriptEnabled;  // as in _CallbackRecord
};

typedef std::vector<_CallbackList*> CV_CallbackVector;
typedef std::vector<_WidgetCallbackListEntry*> CV_WidgetCallbackVector;

// Refcon blocks: registrations that give the simulator several callbacks with one refcon hand it a
// block of `_CallbackList*` slots instead; a slot is null when the script gave no callable for it.
// A block is a `new _CallbackList*[n]` array; its lists hold the address of its first slot.
typedef std::vector<_CallbackList**> CV_BlockVector;

// Data accessor blocks: one read block (getters) and one write block (setters) per registration.
enum {
    CV_AccessorIntSlot = 0,
    CV_AccessorFloatSlot = 1,
    CV_AccessorDoubleSlot = 2,
    CV_AccessorIntArraySlot = 3,
    CV_AccessorFloatArraySlot = 4,
    CV_AccessorByteArraySlot = 5,
    CV_AccessorBlockSlots = 6
};

// Window key records: one per window, shared by its five callbacks.
enum {
    CV_WindowDrawSlot = 0,
    CV_WindowMouseClickSlot = 1,
    CV_WindowKeySlot = 2,
    CV_WindowCursorStatusSlot = 3,
    CV_WindowMouseWheelSlot = 4,
    CV_WindowBlockSlots = 5
};

// ---------------------------------------------------------------- the lists

extern CV_CallbackVector FlightLoopCallbackList;
extern CV_CallbackVector GetDataiCallbackList, SetDataiCallbackList;
extern CV_CallbackVector GetDatafCallbackList, SetDatafCallbackList;
extern CV_CallbackVector GetDatadCallbackList, SetDatadCallbackList;
extern CV_CallbackVector GetDataviCallbackList, SetDataviCallbackList;
extern CV_CallbackVector GetDatavfCallbackList, SetDatavfCallbackList;
extern CV_CallbackVector GetDatabCallbackList, SetDatabCallbackList;
extern CV_CallbackVector SharedDataCallbackList;
extern CV_CallbackVector CameraCallbackList;
extern CV_CallbackVector DrawCallbackList;
extern CV_CallbackVector KeySnifferCallbackList;
extern CV_CallbackVector HotKeyCallbackList;
extern CV_CallbackVector DrawWindowCallbackList, MouseClickCallbackList, KeyCallbackList;
extern CV_CallbackVector CursorStatusCallbackList, MouseWheelCallbackList;
extern CV_CallbackVector MenuCallbackList;
extern CV_CallbackVector FeatureEnumeratorCallbackList;
extern CV_CallbackVector CommandCallbackList;
extern CV_CallbackVector ErrorCallbackList;
extern CV_CallbackVector PlanesAvailableCallbackList;
extern CV_CallbackVector LibraryEnumeratorCallbackList;
extern CV_CallbackVector ObjectLoadedCallbackList;
extern CV_WidgetCallbackVector WidgetCallbackList;

extern CV_BlockVector GetDataMemoryPointerList, SetDataMemoryPointerList;
extern CV_BlockVector DrawWindowMemoryPointerList;

// The record that takes a widget's messages: the widget's first record in WidgetCallbackList, or
// null. The simulator gives a widget function no refcon, so the records are indexed by widget id;
// the index follows the registry's changes to the list and is built again after any other.
_WidgetCallbackListEntry* CV_WidgetRecord(const void* widgetId);

// ---------------------------------------------------------------- interpreter generations

// Records outlive the interpreter when a script forgets to unregister: the simulator keeps calling
// the trampoline with the old record, whose script and callable belonged to a finalised
// interpreter. Every start of the interpreter begins a new generation; records are stamped with the
// generation they were made in, and the dispatchers treat a record of an older generation like one
// whose script is gone.
extern unsigned CV_InterpreterGeneration;
// Call once per start of the interpreter, right after it is initialised, before any script runs.
void CV_BeginInterpreterGeneration();

// True when the record belongs to the running interpreter (and so may be called).
inline bool CV_IsCurrentGeneration(unsigned generation) {
    return generation == CV_InterpreterGeneration && Py_IsInitialized();
}

// ---------------------------------------------------------------- records the simulator still holds

// A record leaves its list when the script's unregistration says so, but the simulator may still
// call through it: an unregistration the simulator refused (another drawing phase than the one
// registered), a record that another registration still reaches (two hot keys, menus or windows
// sharing one method leave one registration's handle in the other's record), a refcon block taken
// out by position rather than by owner (accessor and window blocks). So every registration the
// simulator accepted is held, under its list and its key (the SDK's handle, or the record itself
// where the SDK gives none), with what it calls through; what is retired from a list is freed as
// soon as no held registration reaches it, and not before.

// The simulator holds registration `key` of `list` and calls through `record` and/or the blocks
// (`slots` records each). Holding the same list and key again replaces what it reaches.
void CV_Hold(const void* list, const void* key, _CallbackList* record,
             std::initializer_list<_CallbackList**> blocks = {}, int slots = 0);
// The simulator let go of the registration: frees whatever was retired and is now out of reach.
void CV_Release(const void* list, const void* key);
bool CV_IsHeld(const void* list, const void* key);
// The `which`-th block the registration reaches, or null.
_CallbackList** CV_HeldBlock(const void* list, const void* key, size_t which = 0);
// True when a registration of `list` reaches the block.
bool CV_BlockIsHeld(const void* list, _CallbackList** block);

// Takes a record out of its list (at index when it is there, else wherever it is) and frees it,
// at once when nothing held reaches it, else as soon as nothing does.
void CV_RetireRecord(CV_CallbackVector* list, _CallbackList* entry, int index);
// Takes the block at `index` out of a block list (an index past the end falls back to `own`, else
// the last block) and frees it once nothing held reaches it. Returns the block taken out.
_CallbackList** CV_RetireBlock(CV_BlockVector* list, int index, _CallbackList** own);
// Frees whatever was retired and is out of reach.
void CV_FreeRetired();
// How many retired records and blocks wait for the simulator to let go of them.
size_t CV_RetiredCount();

// ---------------------------------------------------------------- the end of an interpreter

// Drops the registry's reference on every callable of the running interpreter, wherever its record
// is (its list, or retired while the simulator holds it), so that nothing a stopped script made
// stays alive. The records stay as they are for the integrity check and the simulator, which may still call them;
// dispatch never reaches a record of a stopped interpreter. Call after the scripts stopped and
// before the interpreter is finalised.
void CV_DropInterpreterReferences();

// ---------------------------------------------------------------- integrity check

// Every callback list, in the order the integrity check reports them, with the name its size line
// shows and the name of its check. Exactly one of the three list pointers is set.
struct CV_ListEntry {
    const char* name;   // "FlightLoopCallbackList"
    const char* check;  // "CV_CheckFlightLoopCallbacks"
    CV_CallbackVector* callbacks;
    CV_BlockVector* blocks;
    CV_WidgetCallbackVector* widgets;
    size_t Size() const;
};
extern const CV_ListEntry CV_CallbackLists[34];
// The table's entry of a list, or null.
const CV_ListEntry* CV_FindList(const void* list);

// Reports registrations that scripts left behind, list by list in the table's order: callback
// lists name the scripts of their records and are emptied (without freeing: the simulator may still
// hold the records as refcons); block lists only report.
void CV_CheckAllCallbacks();

// ---------------------------------------------------------------- debug trace of registrations

// With DEBUG:DebugCallbacks set, every registering and unregistering binding writes, after doing
// its work: the SDK function's name, its own detail lines, the size line of each list it touched
// ("<name> size = %d"), and the function's name again.
struct CV_ListSize {
    CV_ListSize(const char* listName, size_t listSize) : name(listName), size(listSize) {}
    // A list by its table name.
    CV_ListSize(const CV_CallbackVector& list);
    CV_ListSize(const CV_WidgetCallbackVector& list);
    const char* name;  // the list name as the size line shows it
    size_t size;
};
void CV_DebugCallbackTrace(const char* function, const std::string& details, const std::vector<CV_ListSize>& sizes);
// The size lines of `count` lists that follow each other in the table, from `first` on.
std::vector<CV_ListSize> CV_ListSizes(const CV_CallbackVector& first, size_t count);
// printf into a std::string, for the detail lines.
std::string CV_FormatText(const char* format, ...) __attribute__((format(printf, 1, 2)));
// A script id, handle or pointer for "%lx": the full value, never cut to 32 bits.
inline unsigned long CV_Hex(const void* p) { return static_cast<unsigned long>(reinterpret_cast<uintptr_t>(p)); }
// A refcon word for "%ld": the integer the script gave.
inline long CV_Dec(const void* p) { return static_cast<long>(reinterpret_cast<intptr_t>(p)); }
