// Callback dispatch: trampolines and the dispatchers that call into the scripts.
//
// Most of these run every frame (flight loops, drawing, windows, widgets, accessors, command
// handlers), so a dispatcher builds no tuple and parses no format: it makes the script's arguments
// directly, calls by vectorcall and reads the result as the interpreter's "i", "f" or "d" would.
#include "CallbackDispatch.h"

#include <Python.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <iterator>
#include <type_traits>

#include "CV_ScriptTable.h"
#include "CallbackRegistry.h"
#include "LogFiles.h"
#include "PythonErrors.h"
#include "PythonRef.h"

namespace {

// What a dispatcher may do with the record behind a refcon.
enum class Reach {
    Skip,        // no record, an inert record, or its script is missing or disabled
    LeftBehind,  // a record of an earlier interpreter: nothing is taken from it
    NoCallable,  // the record has no callable
    Call,
};

struct Target {
    PyObject* callable = nullptr;
    void* refcon = nullptr;
};

// Reads the record behind a refcon: one or two pointer dereferences and the script's enabled flag,
// which the record shares with the script table, so no script is looked up.
// Nothing is taken from a record whose interpreter has gone, so a leftover registration of an
// earlier run never touches Python objects.
Reach Resolve(const _CallbackList* entry, Target& target) {
    const _CallbackRecord* record = entry ? entry->record : nullptr;
    if (record == nullptr) return Reach::Skip;
    if (!CV_IsCurrentGeneration(record->generation)) return Reach::LeftBehind;
    if (record->inert || record->scriptId == nullptr || record->scriptEnabled == nullptr || *record->scriptEnabled == 0)
        return Reach::Skip;
    if (record->callable == nullptr) return Reach::NoCallable;
    target.callable = record->callable;
    target.refcon = record->refcon;
    return Reach::Call;
}

// The slot of a refcon block (data accessors, windows); null when the block or the slot is empty.
const _CallbackList* Slot(void* block, int slot) {
    _CallbackList** slots = static_cast<_CallbackList**>(block);
    return slots ? slots[slot] : nullptr;
}

void CannotFind(const char* line) {
    CV_PrintPythonError();
    CV_WriteToLog(line);
}

// ---- the script's arguments, each a new reference (null with the error set when it cannot be made)

// A float argument of a kind that runs every frame for every script (the flight loops' times). The
// object comes back here after the call when the script kept no reference to it, and the next call
// writes its value into it instead of making a new one: the object is the plugin's alone then, so
// no script can see it change. One spare object at most.
class FloatArgument {
public:
    PyObject* Make(double value) {
        PyObject* spare = spare_;
        spare_ = nullptr;
        if (spare == nullptr) return PyFloat_FromDouble(value);
        reinterpret_cast<PyFloatObject*>(spare)->ob_fval = value;
        return spare;
    }
    // Takes back a reference that Make gave.
    void TakeBack(PyObject* object) {
        if (object != nullptr && spare_ == nullptr && Py_REFCNT(object) == 1 && PyFloat_CheckExact(object))
            spare_ = object;
        else
            Py_XDECREF(object);
    }
    void Release() { Py_CLEAR(spare_); }
    void Forget() { spare_ = nullptr; }

private:
    PyObject* spare_ = nullptr;
};

// What dispatch keeps for the running interpreter, so that the arguments of per-frame callbacks are
// not made anew each time: the interpreter's small ints, the ints of the handles callbacks pass
// (the windows, widgets and commands are few and come again and again; an int never changes, so a
// shared one is as good as a new one) and the flight loops' spare floats. Released when the scripts
// stop (CV_ReleaseDispatchObjects); what a later interpreter finds of an earlier one is forgotten
// unreleased, since that interpreter is gone.
struct Kept {
    static constexpr long kLeastInt = -5, kMostInt = 256;  // the interpreter's own shared ints
    struct Made {
        const void* handle;
        PyObject* object;
    };
    PyObject* ints[kMostInt - kLeastInt + 1] = {};
    Made handles[64] = {};
    FloatArgument sinceLastCall, sinceLastLoop;
    unsigned generation = 0;

    // The table of the running interpreter.
    Kept& Current() {
        if (__builtin_expect(generation != CV_InterpreterGeneration, 0)) Renew();
        return *this;
    }
    __attribute__((noinline)) void Renew() {
        std::fill(std::begin(ints), std::end(ints), nullptr);
        std::fill(std::begin(handles), std::end(handles), Made{nullptr, nullptr});
        sinceLastCall.Forget();
        sinceLastLoop.Forget();
        generation = CV_InterpreterGeneration;
    }
    void Release() {
        if (generation != CV_InterpreterGeneration || !Py_IsInitialized()) return;
        for (PyObject*& object : ints) Py_CLEAR(object);
        for (Made& made : handles) {
            Py_CLEAR(made.object);
            made.handle = nullptr;
        }
        sinceLastCall.Release();
        sinceLastLoop.Release();
    }
};
Kept gKept;

PyObject* Int(long value) {
    if (value < Kept::kLeastInt || value > Kept::kMostInt) return PyLong_FromLong(value);
    PyObject*& object = gKept.Current().ints[value - Kept::kLeastInt];
    if (object == nullptr) object = PyLong_FromLong(value);  // the table keeps this reference
    Py_XINCREF(object);
    return object;
}
PyObject* Float(double value) { return PyFloat_FromDouble(value); }
// An SDK handle in full, so that it equals what the SDK function that made it gave the script.
PyObject* Handle(const void* handle) {
    // Small values (a widget message's parameters are mostly 0) are small ints.
    if (reinterpret_cast<uintptr_t>(handle) <= static_cast<uintptr_t>(Kept::kMostInt))
        return Int(static_cast<long>(reinterpret_cast<uintptr_t>(handle)));
    Kept::Made& made = gKept.Current().handles[(reinterpret_cast<uintptr_t>(handle) * 0x9E3779B97F4A7C15u) >> 58];
    if (made.object == nullptr || made.handle != handle) {
        PyObject* object = PyLong_FromVoidPtr(const_cast<void*>(handle));
        if (object == nullptr) return nullptr;
        Py_XDECREF(made.object);
        made = Kept::Made{handle, object};
    }
    Py_INCREF(made.object);
    return made.object;
}
// The script's refcon as it goes back to the script.
PyObject* RefconObject(void* refcon) { return Int(static_cast<long>(reinterpret_cast<intptr_t>(refcon))); }
// A text from the simulator as a str; invalid UTF-8 is replaced rather than refused.
PyObject* TextObject(const char* text) {
    if (text == nullptr) Py_RETURN_NONE;
    return PyUnicode_DecodeUTF8(text, static_cast<Py_ssize_t>(strlen(text)), "replace");
}

// Calls the script with the arguments, which are released here. The call is a vectorcall that leaves
// the slot before the arguments free, so a bound method is called without copying them. The callable
// is held for the length of the call, since the script may unregister the very callback that is
// running. Null with the error set when an argument could not be made (nothing is called then) or
// the call failed.
template <typename... Arguments>
__attribute__((always_inline)) inline PyObject* CallScript(PyObject* callable, Arguments... made) {
    static_assert((std::is_same_v<Arguments, PyObject*> && ...), "the arguments are Python objects");
    PyObject* argv[1 + sizeof...(Arguments)] = {nullptr, made...};
    PyObject* result = nullptr;
    if (((made != nullptr) && ...)) {
        Py_INCREF(callable);
        result =
            PyObject_Vectorcall(callable, argv + 1, sizeof...(Arguments) | PY_VECTORCALL_ARGUMENTS_OFFSET, nullptr);
        Py_DECREF(callable);
    }
    for (PyObject* argument : argv) Py_XDECREF(argument);
    return result;
}

// Reads and releases the script's result as the interpreter's argument parser reads "i", "f" and
// "d"; a result that does not convert leaves *value as it was, and the conversion error is dropped.
void ReadResult(PyObject* result, int* value) {
    const long number = PyLong_AsLong(result);
    if ((number == -1 && PyErr_Occurred()) || number > INT_MAX || number < INT_MIN)
        PyErr_Clear();
    else
        *value = static_cast<int>(number);
    Py_DECREF(result);
}

void ReadResult(PyObject* result, double* value) {
    const double number = PyFloat_CheckExact(result) ? PyFloat_AS_DOUBLE(result) : PyFloat_AsDouble(result);
    if (number == -1.0 && PyErr_Occurred())
        PyErr_Clear();
    else
        *value = number;
    Py_DECREF(result);
}

void ReadResult(PyObject* result, float* value) {
    double number = *value;
    ReadResult(result, &number);
    *value = static_cast<float>(number);
}

// The common path of the kinds whose SDK callback returns nothing: 0 when the script was not
// reached, else 1. `call(target)` calls the script.
template <typename Call>
int CallWithoutResult(const _CallbackList* entry, const char* missingLine, Call call) {
    Target t;
    switch (Resolve(entry, t)) {
        case Reach::Skip:
        case Reach::LeftBehind: return 0;
        case Reach::NoCallable: CannotFind(missingLine); return 1;
        case Reach::Call: break;
    }
    PyObject* result = call(t);
    if (result == nullptr) {
        CV_PrintPythonError();
        return 1;
    }
    Py_DECREF(result);
    return 1;
}

// What a dispatcher answers the simulator when it has no answer of the script's.
template <typename T>
struct Answers {
    T notCalled;   // Reach::Skip; also a result that does not convert
    T noCallable;  // Reach::NoCallable
    T failed;      // the script's call raised
    T leftBehind;  // Reach::LeftBehind
};
// 0 when the script was not reached, else 1 (scalar getters).
template <typename T>
constexpr Answers<T> kOneOnceReached{T(0), T(1), T(1), T(0)};
// 0 whatever happened (window mouse and cursor handlers).
constexpr Answers<int> kAlwaysZero{0, 0, 0, 0};
// A registration that a script left behind when its interpreter stopped answers so that the
// simulator carries on as if it were not there: no suppressed drawing phase, no eaten key (draw
// callbacks and key sniffers, otherwise as kOneOnceReached), no stopped command (command handlers,
// otherwise 0).
constexpr Answers<int> kDrawOrKey{0, 1, 1, 1};
constexpr Answers<int> kCommand{0, 0, 0, 1};

// The common path of the kinds that answer the simulator with the script's result.
template <typename T, typename Call>
T CallWithResult(const _CallbackList* entry, const char* missingLine, const Answers<T>& answers, Call call) {
    Target t;
    switch (Resolve(entry, t)) {
        case Reach::Skip: return answers.notCalled;
        case Reach::LeftBehind: return answers.leftBehind;
        case Reach::NoCallable: CannotFind(missingLine); return answers.noCallable;
        case Reach::Call: break;
    }
    PyObject* result = call(t);
    if (result == nullptr) {
        CV_PrintPythonError();
        return answers.failed;
    }
    T value = answers.notCalled;
    ReadResult(result, &value);
    return value;
}

PyObject* RefconOnly(const Target& t) { return CallScript(t.callable, RefconObject(t.refcon)); }

// ---- array accessors

long ItemAsLong(PyObject* item) {
    long v = PyLong_AsLong(item);
    if (v == -1 && PyErr_Occurred()) {
        PyErr_Clear();
        return 0;
    }
    return v;
}

double ItemAsDouble(PyObject* item) {
    double v = PyFloat_AsDouble(item);
    if (v == -1.0 && PyErr_Occurred()) {
        PyErr_Clear();
        return 0.0;
    }
    return v;
}

// Calls an array getter. With a buffer the script fills a new list; without one (a size query) it
// is given None. The count it returns is capped by the maximum. `fill` copies the list into the
// simulator's buffer and may lower the count further; it never writes past the maximum.
template <typename Fill>
int CallArrayGetter(const _CallbackList* entry, bool haveBuffer, int inOffset, int inMax, const char* missingLine,
                    Fill fill) {
    Target t;
    switch (Resolve(entry, t)) {
        case Reach::Skip:
        case Reach::LeftBehind: return 0;
        case Reach::NoCallable: CannotFind(missingLine); return 1;
        case Reach::Call: break;
    }
    PyObject* list = nullptr;
    if (haveBuffer) {
        list = PyList_New(0);
        if (list == nullptr) {
            CV_PrintPythonError();
            return 1;
        }
    }
    PyObject* given = list ? list : Py_None;
    Py_INCREF(given);  // the call releases its arguments; the list is read after it
    PyObject* result = CallScript(t.callable, RefconObject(t.refcon), given, Int(inOffset), Int(inMax));
    if (result == nullptr) {
        Py_XDECREF(list);
        CV_PrintPythonError();
        return 1;
    }
    int count = 0;
    ReadResult(result, &count);
    int n = std::max(0, std::min(count, inMax));
    if (list != nullptr) {
        n = fill(list, n, std::max(0, inMax));
        Py_DECREF(list);
    }
    return n;
}

// Items 0 .. n-1 of the list into the buffer; a list shorter than the count gives fewer items.
// Converting an item may run the script's code (__index__, __float__), which may change the list:
// the items are read from a copy of it.
template <typename T, typename Convert>
int FillFromItems(PyObject* list, int n, T* out, Convert convert) {
    CV_PyRef items(PyList_AsTuple(list));
    if (!items) {
        PyErr_Clear();
        return 0;
    }
    n = std::min<Py_ssize_t>(n, PyTuple_GET_SIZE(items.get()));
    for (int i = 0; i < n; ++i) out[i] = static_cast<T>(convert(PyTuple_GET_ITEM(items.get(), i)));
    return n;
}

// A list of count values from the simulator's buffer, or None without one.
template <typename T, typename Make>
PyObject* ListFromBuffer(const T* values, int count, Make make) {
    if (values == nullptr) Py_RETURN_NONE;
    if (count < 0) count = 0;
    PyObject* list = PyList_New(count);
    if (list == nullptr) return nullptr;
    for (int i = 0; i < count; ++i) {
        PyObject* item = make(values[i]);
        if (item == nullptr) {
            Py_DECREF(list);
            return nullptr;
        }
        PyList_SET_ITEM(list, i, item);
    }
    return list;
}

template <typename T, typename Make>
int CallArraySetter(const _CallbackList* entry, const T* values, int inOffset, int inCount, const char* missingLine,
                    Make make) {
    return CallWithoutResult(entry, missingLine, [&](const Target& t) {
        PyObject* list = ListFromBuffer(values, inCount, make);
        if (list == nullptr) return static_cast<PyObject*>(nullptr);
        return CallScript(t.callable, RefconObject(t.refcon), list, Int(inOffset), Int(inCount));
    });
}

PyObject* IntItem(int v) { return PyLong_FromLong(v); }
PyObject* FloatItem(float v) { return PyFloat_FromDouble(v); }
PyObject* ByteItem(char v) { return PyLong_FromLong(static_cast<signed char>(v)); }

}  // namespace

// ---------------------------------------------------------------- flight loops

float CallUserFlightLoopCallback(float inElapsedSinceLastCall, float inElapsedTimeSinceLastFlightLoop, int inCounter,
                                 void* inRefcon) {
    // A flight loop object made without a record has nothing to call, nor has a record left behind:
    // neither is scheduled again.
    if (inRefcon == nullptr) return 0.0f;
    Target t;
    switch (Resolve(static_cast<const _CallbackList*>(inRefcon), t)) {
        case Reach::Skip: return 1.0f;
        case Reach::LeftBehind: return 0.0f;
        case Reach::NoCallable: CannotFind("Cannot find method FlightLoopCallback\n"); return 1.0f;
        case Reach::Call: break;
    }
    Kept& kept = gKept.Current();
    PyObject* since = kept.sinceLastCall.Make(inElapsedSinceLastCall);
    PyObject* sinceLoop = kept.sinceLastLoop.Make(inElapsedTimeSinceLastFlightLoop);
    Py_XINCREF(since);  // kept past the call, to be used again
    Py_XINCREF(sinceLoop);
    PyObject* result = CallScript(t.callable, since, sinceLoop, Int(inCounter), RefconObject(t.refcon));
    kept.sinceLastCall.TakeBack(since);
    kept.sinceLastLoop.TakeBack(sinceLoop);
    if (result == nullptr) {
        CV_PrintPythonError();
        return 1.0f;
    }
    // Read as Python's float() would; a result that does not convert keeps the default.
    float value = 1.0f;
    ReadResult(result, &value);
    return value;
}

// ---------------------------------------------------------------- drawing, keys, hot keys

int CallUserDrawCallback(XPLMDrawingPhase inPhase, int inIsBefore, void* inRefcon) {
    return CallWithResult(
        static_cast<const _CallbackList*>(inRefcon), "Cannot find method DrawCallback\n", kDrawOrKey,
        [&](const Target& t) { return CallScript(t.callable, Int(inPhase), Int(inIsBefore), RefconObject(t.refcon)); });
}

int CallUserKeySnifferCallback(char inChar, XPLMKeyFlags inFlags, char inVirtualKey, void* inRefcon) {
    return CallWithResult(static_cast<const _CallbackList*>(inRefcon), "Cannot find method KeySnifferCallback\n",
                          kDrawOrKey, [&](const Target& t) {
                              return CallScript(t.callable, Int(inChar), Int(inFlags),
                                                Int(static_cast<unsigned char>(inVirtualKey)), RefconObject(t.refcon));
                          });
}

int CallUserHotKeyCallback(void* inRefcon) {
    return CallWithoutResult(static_cast<const _CallbackList*>(inRefcon), "Cannot find method HotKeyCallback\n",
                             RefconOnly);
}

// ---------------------------------------------------------------- windows

int CallUserDrawWindowCallback(XPLMWindowID inWindowID, void* inRefcon) {
    return CallWithoutResult(
        Slot(inRefcon, CV_WindowDrawSlot), "Cannot find method DrawWindowCallback\n",
        [&](const Target& t) { return CallScript(t.callable, Handle(inWindowID), RefconObject(t.refcon)); });
}

int CallUserKeyCallback(XPLMWindowID inWindowID, char inKey, XPLMKeyFlags inFlags, char inVirtualKey, void* inRefcon,
                        int losingFocus) {
    // Unlike a key sniffer's, the window's virtual key goes to the script as a signed char.
    return CallWithoutResult(Slot(inRefcon, CV_WindowKeySlot), "Cannot find method KeyCallback\n",
                             [&](const Target& t) {
                                 return CallScript(t.callable, Handle(inWindowID), Int(inKey), Int(inFlags),
                                                   Int(inVirtualKey), RefconObject(t.refcon), Int(losingFocus));
                             });
}

int CallUserMouseClickCallback(XPLMWindowID inWindowID, int x, int y, XPLMMouseStatus inMouse, void* inRefcon) {
    return CallWithResult(Slot(inRefcon, CV_WindowMouseClickSlot), "Cannot find method MouseClickCallback\n",
                          kAlwaysZero, [&](const Target& t) {
                              return CallScript(t.callable, Handle(inWindowID), Int(x), Int(y), Int(inMouse),
                                                RefconObject(t.refcon));
                          });
}

XPLMCursorStatus CallUserCursorStatusCallback(XPLMWindowID inWindowID, int x, int y, void* inRefcon) {
    return CallWithResult(Slot(inRefcon, CV_WindowCursorStatusSlot), "Cannot find method CursorStatusCallback\n",
                          kAlwaysZero, [&](const Target& t) {
                              return CallScript(t.callable, Handle(inWindowID), Int(x), Int(y), RefconObject(t.refcon));
                          });
}

int CallUserMouseWheelCallback(XPLMWindowID inWindowID, int x, int y, int wheel, int clicks, void* inRefcon) {
    return CallWithResult(Slot(inRefcon, CV_WindowMouseWheelSlot), "Cannot find method MouseWheelCallback\n",
                          kAlwaysZero, [&](const Target& t) {
                              return CallScript(t.callable, Handle(inWindowID), Int(x), Int(y), Int(wheel), Int(clicks),
                                                RefconObject(t.refcon));
                          });
}

// ---------------------------------------------------------------- menus, commands, errors

int CallUserMenuCallback(void* inMenuRef, void* inItemRef) {
    // The item refcon is the script's own integer, given back as it was given.
    return CallWithoutResult(
        static_cast<const _CallbackList*>(inMenuRef), "Cannot find method UserMenuCallback\n",
        [&](const Target& t) { return CallScript(t.callable, RefconObject(t.refcon), RefconObject(inItemRef)); });
}

int CallUserCommandCallback(XPLMCommandRef inCommand, XPLMCommandPhase inPhase, void* inRefcon) {
    return CallWithResult(static_cast<const _CallbackList*>(inRefcon), "Cannot find method CommandCallback\n", kCommand,
                          [&](const Target& t) {
                              return CallScript(t.callable, Handle(inCommand), Int(inPhase), RefconObject(t.refcon));
                          });
}

int CallUserErrorCallback(const char* inMessage, void* inRefcon) {
    Target t;
    switch (Resolve(static_cast<const _CallbackList*>(inRefcon), t)) {
        case Reach::Skip:
        case Reach::LeftBehind: return 0;
        case Reach::NoCallable: CannotFind("Cannot find method CommandCallback\n"); return 0;
        case Reach::Call: break;
    }
    PyObject* result = CallScript(t.callable, TextObject(inMessage));
    if (result == nullptr) CV_PrintPythonError();
    Py_XDECREF(result);
    return 0;
}

void CV_DispatchErrorCallbacks(const char* message) {
    if (ErrorCallbackList.empty()) return;
    // An error callback may unregister itself or another one; each registration still in the list
    // when its turn comes is called once.
    const CV_CallbackVector snapshot = ErrorCallbackList;
    for (_CallbackList* entry : snapshot) {
        if (std::find(ErrorCallbackList.begin(), ErrorCallbackList.end(), entry) == ErrorCallbackList.end()) continue;
        CallUserErrorCallback(message, entry);
    }
}

// ---------------------------------------------------------------- planes, shared data, features, scenery

int CallUserPlanesAvailableCallback(void* inRefcon) {
    return CallWithoutResult(static_cast<const _CallbackList*>(inRefcon),
                             "Cannot find method UserPlanesAvailableCallback\n", RefconOnly);
}

int CallUserSharedDataCallback(void* inRefcon) {
    return CallWithoutResult(static_cast<const _CallbackList*>(inRefcon), "Cannot find method UserSharedDataCallback\n",
                             RefconOnly);
}

int CallUserFeatureEnumeratorCallback(const char* inFeature, void* inRef) {
    return CallWithoutResult(
        static_cast<const _CallbackList*>(inRef), "Cannot find method FeatureEnumeratorCallback\n",
        [&](const Target& t) { return CallScript(t.callable, TextObject(inFeature), RefconObject(t.refcon)); });
}

int CallUserLibraryEnumeratorCallback(const char* inFilePath, void* inRef) {
    return CallWithoutResult(
        static_cast<const _CallbackList*>(inRef), "Cannot find method LibraryEnumeratorCallback\n",
        [&](const Target& t) { return CallScript(t.callable, TextObject(inFilePath), RefconObject(t.refcon)); });
}

int CallUserObjectLoadedCallback(XPLMObjectRef inObject, void* inRefcon) {
    return CallWithoutResult(
        static_cast<const _CallbackList*>(inRefcon), "Cannot find method ObjectLoadedCallback\n",
        [&](const Target& t) { return CallScript(t.callable, Handle(inObject), RefconObject(t.refcon)); });
}

// ---------------------------------------------------------------- camera

int CallUserCameraControlCallback(XPLMCameraPosition_t* outCameraPosition, int inIsLosingControl, void* inRefcon) {
    Target t;
    switch (Resolve(static_cast<const _CallbackList*>(inRefcon), t)) {
        case Reach::Skip:
        case Reach::LeftBehind: return 0;
        case Reach::NoCallable: CannotFind("Cannot find function UserCameraControlCallback\n"); return 0;
        case Reach::Call: break;
    }
    // The position's fields in the order the script's list holds them.
    float* position[7] = {};
    if (outCameraPosition != nullptr) {
        XPLMCameraPosition_t* c = outCameraPosition;
        float* fields[7] = {&c->x, &c->y, &c->z, &c->pitch, &c->heading, &c->roll, &c->zoom};
        std::copy(fields, fields + 7, position);
    }

    // The list is kept past the call: the script moves the camera by assigning its items. When the
    // simulator is taking control away there is no position to offer, and the script gets 0.
    PyObject* list = nullptr;
    PyObject* result = nullptr;
    if (outCameraPosition == nullptr) {
        result = CallScript(t.callable, Int(0), Int(inIsLosingControl), RefconObject(t.refcon));
    } else {
        list = PyList_New(7);
        for (int i = 0; list != nullptr && i < 7; ++i) {
            PyObject* item = PyFloat_FromDouble(*position[i]);
            if (item == nullptr)
                Py_CLEAR(list);
            else
                PyList_SET_ITEM(list, i, item);
        }
        if (list != nullptr) {
            Py_INCREF(list);
            result = CallScript(t.callable, list, Int(inIsLosingControl), RefconObject(t.refcon));
        }
    }
    if (result == nullptr) {
        Py_XDECREF(list);
        CV_PrintPythonError();
        CV_WriteToLog("UserCameraControlCallback Call failed\n");
        return 0;
    }
    int value = 0;
    ReadResult(result, &value);

    if (list != nullptr) {
        // Items the script removed or made unconvertible leave their field as it was; converting one
        // may run the script's code, which may change the list, so a copy is read.
        CV_PyRef items(PyList_AsTuple(list));
        if (!items) PyErr_Clear();
        const Py_ssize_t size = items ? PyTuple_GET_SIZE(items.get()) : 0;
        for (Py_ssize_t i = 0; i < 7 && i < size; ++i) {
            double v = PyFloat_AsDouble(PyTuple_GET_ITEM(items.get(), i));
            if (v == -1.0 && PyErr_Occurred()) {
                PyErr_Clear();
                continue;
            }
            *position[i] = static_cast<float>(v);
        }
        Py_DECREF(list);
    }
    return value;
}

// ---------------------------------------------------------------- widgets

int CallUserWidgetCallback(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t inParam1, intptr_t inParam2) {
    if (CVTestTable == nullptr) return 0;
    const _WidgetCallbackListEntry* entry = CV_WidgetRecord(inWidget);
    if (entry == nullptr) return 1;
    if (!CV_IsCurrentGeneration(entry->generation) || entry->scriptId == nullptr || entry->scriptEnabled == nullptr ||
        *entry->scriptEnabled == 0)
        return 0;
    if (entry->callable == nullptr) {
        CannotFind("Cannot find method UserWidgetCallback\n");
        return 1;
    }
    // The widget function may destroy its own widget, which frees the entry: nothing is read from it
    // after the call.
    PyObject* result = CallScript(entry->callable, Int(inMessage), Handle(inWidget),
                                  Handle(reinterpret_cast<void*>(inParam1)), Handle(reinterpret_cast<void*>(inParam2)));
    if (result == nullptr) {
        // A failing widget function counts as having handled the message; its error is not shown.
        PyErr_Clear();
        return 1;
    }
    int value = 0;
    ReadResult(result, &value);
    return value;
}

// ---------------------------------------------------------------- data accessors

int CallUserGetDatai_Callback(void* inRefcon) {
    const _CallbackList* entry = Slot(inRefcon, CV_AccessorIntSlot);
    if (entry == nullptr) return 0;
    return CallWithResult(entry, "Cannot find method UserGetDataiCallback\n", kOneOnceReached<int>, RefconOnly);
}

float CallUserGetDataf_Callback(void* inRefcon) {
    const _CallbackList* entry = Slot(inRefcon, CV_AccessorFloatSlot);
    if (entry == nullptr) return 0.0f;
    return CallWithResult(entry, "Cannot find method UserGetDataf_Callback\n", kOneOnceReached<float>, RefconOnly);
}

double CallUserGetDatad_Callback(void* inRefcon) {
    const _CallbackList* entry = Slot(inRefcon, CV_AccessorDoubleSlot);
    if (entry == nullptr) return 0.0;
    // The double getter reports a missing callable with the float getter's line.
    return CallWithResult(entry, "Cannot find method UserGetDataf_Callback\n", kOneOnceReached<double>, RefconOnly);
}

int CallUserSetDatai_Callback(void* inRefcon, int inValue) {
    const _CallbackList* entry = Slot(inRefcon, CV_AccessorIntSlot);
    if (entry == nullptr) return 0;
    return CallWithoutResult(entry, "Cannot find method UserSetDatai_Callback\n", [&](const Target& t) {
        return CallScript(t.callable, RefconObject(t.refcon), Int(inValue));
    });
}

int CallUserSetDataf_Callback(void* inRefcon, float inValue) {
    const _CallbackList* entry = Slot(inRefcon, CV_AccessorFloatSlot);
    if (entry == nullptr) return 0;
    return CallWithoutResult(entry, "Cannot find method UserSetDataf_Callback\n", [&](const Target& t) {
        return CallScript(t.callable, RefconObject(t.refcon), Float(inValue));
    });
}

int CallUserSetDatad_Callback(void* inRefcon, double inValue) {
    const _CallbackList* entry = Slot(inRefcon, CV_AccessorDoubleSlot);
    if (entry == nullptr) return 0;
    return CallWithoutResult(entry, "Cannot find method UserSetDatad_Callback\n", [&](const Target& t) {
        return CallScript(t.callable, RefconObject(t.refcon), Float(inValue));
    });
}

int CallUserGetDatavi_Callback(void* inRefcon, int* outValues, int inOffset, int inMax) {
    const _CallbackList* entry = Slot(inRefcon, CV_AccessorIntArraySlot);
    if (entry == nullptr) return 0;
    return CallArrayGetter(entry, outValues != nullptr, inOffset, inMax, "Cannot find method UserGetDatavi_Callback\n",
                           [&](PyObject* list, int n, int) { return FillFromItems(list, n, outValues, ItemAsLong); });
}

int CallUserGetDatavf_Callback(void* inRefcon, float* outValues, int inOffset, int inMax) {
    const _CallbackList* entry = Slot(inRefcon, CV_AccessorFloatArraySlot);
    if (entry == nullptr) return 0;
    return CallArrayGetter(entry, outValues != nullptr, inOffset, inMax, "Cannot find method UserGetDatavf_Callback\n",
                           [&](PyObject* list, int n, int) { return FillFromItems(list, n, outValues, ItemAsDouble); });
}

int CallUserGetDatab_Callback(void* inRefcon, void* outValue, int inOffset, int inMaxLength) {
    const _CallbackList* entry = Slot(inRefcon, CV_AccessorByteArraySlot);
    if (entry == nullptr) return 0;
    char* out = static_cast<char*>(outValue);
    return CallArrayGetter(
        entry, out != nullptr, inOffset, inMaxLength, "Cannot find method UserGetDatab_Callback\n",
        [&](PyObject* list, int n, int max) {
            PyObject* first = PyList_GET_SIZE(list) > 0 ? PyList_GET_ITEM(list, 0) : nullptr;
            const char* text = nullptr;
            Py_ssize_t length = 0;
            if (first != nullptr && PyUnicode_Check(first)) {
                text = PyUnicode_AsUTF8AndSize(first, &length);
                if (text == nullptr) {
                    PyErr_Clear();
                    text = "";
                    length = 0;
                }
            } else if (first != nullptr && PyBytes_Check(first)) {
                text = PyBytes_AS_STRING(first);
                length = PyBytes_GET_SIZE(first);
            } else if (first != nullptr && PyByteArray_Check(first)) {
                text = PyByteArray_AS_STRING(first);
                length = PyByteArray_GET_SIZE(first);
            }
            if (text != nullptr) {
                // A text is copied as a C string, with its terminator when the buffer has room for it.
                const size_t chars = strnlen(text, static_cast<size_t>(length));
                const size_t copied = std::min(chars, static_cast<size_t>(max));
                memcpy(out, text, copied);
                size_t written = copied;
                if (copied < static_cast<size_t>(max)) out[written++] = '\0';
                return std::min(n, static_cast<int>(written));
            }
            return FillFromItems(list, n, out, [](PyObject* item) { return static_cast<char>(ItemAsLong(item)); });
        });
}

int CallUserSetDatavi_Callback(void* inRefcon, int* inValues, int inOffset, int inCount) {
    const _CallbackList* entry = Slot(inRefcon, CV_AccessorIntArraySlot);
    if (entry == nullptr) return 0;
    return CallArraySetter(entry, inValues, inOffset, inCount, "Cannot find method UserSetDatavi_Callback\n", IntItem);
}

int CallUserSetDatavf_Callback(void* inRefcon, float* inValues, int inOffset, int inCount) {
    const _CallbackList* entry = Slot(inRefcon, CV_AccessorFloatArraySlot);
    if (entry == nullptr) return 0;
    return CallArraySetter(entry, inValues, inOffset, inCount, "Cannot find method UserSetDatavf_Callback\n", FloatItem);
}

int CallUserSetDatab_Callback(void* inRefcon, void* inValue, int inOffset, int inLength) {
    const _CallbackList* entry = Slot(inRefcon, CV_AccessorByteArraySlot);
    if (entry == nullptr) return 0;
    return CallArraySetter(entry, static_cast<const char*>(inValue), inOffset, inLength,
                           "Cannot find method UserSetDatab_Callback\n", ByteItem);
}

void CV_ReleaseDispatchObjects() { gKept.Release(); }

// ---------------------------------------------------------------- trampolines

float CV_FlightLoopCallback(float inElapsedSinceLastCall, float inElapsedTimeSinceLastFlightLoop, int inCounter,
                            void* inRefcon) {
    return CallUserFlightLoopCallback(inElapsedSinceLastCall, inElapsedTimeSinceLastFlightLoop, inCounter, inRefcon);
}
int CV_DrawCallback(XPLMDrawingPhase inPhase, int inIsBefore, void* inRefcon) {
    return CallUserDrawCallback(inPhase, inIsBefore, inRefcon);
}
int CV_KeySnifferCallback(char inChar, XPLMKeyFlags inFlags, char inVirtualKey, void* inRefcon) {
    return CallUserKeySnifferCallback(inChar, inFlags, inVirtualKey, inRefcon);
}
void CV_HotKeyCallback(void* inRefcon) { CallUserHotKeyCallback(inRefcon); }
void CV_DrawWindowCallback(XPLMWindowID inWindowID, void* inRefcon) { CallUserDrawWindowCallback(inWindowID, inRefcon); }
void CV_KeyCallback(XPLMWindowID inWindowID, char inKey, XPLMKeyFlags inFlags, char inVirtualKey, void* inRefcon,
                    int losingFocus) {
    CallUserKeyCallback(inWindowID, inKey, inFlags, inVirtualKey, inRefcon, losingFocus);
}
int CV_MouseClickCallback(XPLMWindowID inWindowID, int x, int y, XPLMMouseStatus inMouse, void* inRefcon) {
    return CallUserMouseClickCallback(inWindowID, x, y, inMouse, inRefcon);
}
XPLMCursorStatus CV_CursorStatusCallback(XPLMWindowID inWindowID, int x, int y, void* inRefcon) {
    return CallUserCursorStatusCallback(inWindowID, x, y, inRefcon);
}
int CV_MouseWheelCallback(XPLMWindowID inWindowID, int x, int y, int wheel, int clicks, void* inRefcon) {
    return CallUserMouseWheelCallback(inWindowID, x, y, wheel, clicks, inRefcon);
}
void CV_MenuCallback(void* inMenuRef, void* inItemRef) { CallUserMenuCallback(inMenuRef, inItemRef); }
int CV_CommandCallback(XPLMCommandRef inCommand, XPLMCommandPhase inPhase, void* inRefcon) {
    return CallUserCommandCallback(inCommand, inPhase, inRefcon);
}
// The simulator calls these two once per registration and then lets go of the record.
void CV_PlanesAvailableCallback(void* inRefcon) {
    CallUserPlanesAvailableCallback(inRefcon);
    CV_Release(&PlanesAvailableCallbackList, inRefcon);
}
void CV_SharedDataCallback(void* inRefcon) { CallUserSharedDataCallback(inRefcon); }
void CV_FeatureEnumeratorCallback(const char* inFeature, void* inRef) { CallUserFeatureEnumeratorCallback(inFeature, inRef); }
void CV_LibraryEnumeratorCallback(const char* inFilePath, void* inRef) {
    CallUserLibraryEnumeratorCallback(inFilePath, inRef);
}
void CV_ObjectLoadedCallback(XPLMObjectRef inObject, void* inRefcon) {
    CallUserObjectLoadedCallback(inObject, inRefcon);
    CV_Release(&ObjectLoadedCallbackList, inRefcon);
}
int CV_CameraControlCallback(XPLMCameraPosition_t* outCameraPosition, int inIsLosingControl, void* inRefcon) {
    return CallUserCameraControlCallback(outCameraPosition, inIsLosingControl, inRefcon);
}
int CV_WidgetCallback(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t inParam1, intptr_t inParam2) {
    return CallUserWidgetCallback(inMessage, inWidget, inParam1, inParam2);
}
int CV_GetDatai_Callback(void* inRefcon) { return CallUserGetDatai_Callback(inRefcon); }
void CV_SetDatai_Callback(void* inRefcon, int inValue) { CallUserSetDatai_Callback(inRefcon, inValue); }
float CV_GetDataf_Callback(void* inRefcon) { return CallUserGetDataf_Callback(inRefcon); }
void CV_SetDataf_Callback(void* inRefcon, float inValue) { CallUserSetDataf_Callback(inRefcon, inValue); }
double CV_GetDatad_Callback(void* inRefcon) { return CallUserGetDatad_Callback(inRefcon); }
void CV_SetDatad_Callback(void* inRefcon, double inValue) { CallUserSetDatad_Callback(inRefcon, inValue); }
int CV_GetDatavi_Callback(void* inRefcon, int* outValues, int inOffset, int inMax) {
    return CallUserGetDatavi_Callback(inRefcon, outValues, inOffset, inMax);
}
void CV_SetDatavi_Callback(void* inRefcon, int* inValues, int inOffset, int inCount) {
    CallUserSetDatavi_Callback(inRefcon, inValues, inOffset, inCount);
}
int CV_GetDatavf_Callback(void* inRefcon, float* outValues, int inOffset, int inMax) {
    return CallUserGetDatavf_Callback(inRefcon, outValues, inOffset, inMax);
}
void CV_SetDatavf_Callback(void* inRefcon, float* inValues, int inOffset, int inCount) {
    CallUserSetDatavf_Callback(inRefcon, inValues, inOffset, inCount);
}
int CV_GetDatab_Callback(void* inRefcon, void* outValue, int inOffset, int inMaxLength) {
    return CallUserGetDatab_Callback(inRefcon, outValue, inOffset, inMaxLength);
}
void CV_SetDatab_Callback(void* inRefcon, void* inValue, int inOffset, int inLength) {
    CallUserSetDatab_Callback(inRefcon, inValue, inOffset, inLength);
}
