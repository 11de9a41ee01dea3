// Callback dispatch: trampolines and the dispatchers that call into the scripts.
#include "CallbackDispatch.h"

#include <Python.h>

#include <algorithm>
#include <cstring>

#include "CV_ScriptTable.h"
#include "CallbackRegistry.h"
#include "LogFiles.h"
#include "PythonErrors.h"
#include "PythonRef.h"

namespace {

// What a dispatcher may do with the record behind a refcon.
enum class Reach {
    Skip,        // no record, an inert record or one of an earlier interpreter, or its script is missing or disabled
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
    if (record == nullptr || record->inert || !CV_IsCurrentGeneration(record->generation)) return Reach::Skip;
    if (record->scriptId == nullptr || record->scriptEnabled == nullptr || *record->scriptEnabled == 0)
        return Reach::Skip;
    if (record->callable == nullptr) return Reach::NoCallable;
    target.callable = record->callable;
    target.refcon = record->refcon;
    return Reach::Call;
}

// A registration that a script left behind when its interpreter stopped. The kinds whose default
// answer would hold the simulator back (a draw callback suppressing a phase, a key sniffer eating
// every key, a command handler stopping its command, a flight loop asked again every second)
// answer such a record so that the simulator carries on as if it were not there.
bool LeftBehind(const _CallbackList* entry) {
    return entry != nullptr && entry->record != nullptr && !CV_IsCurrentGeneration(entry->record->generation);
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

// The script's refcon as it goes back to the script.
PyObject* RefconObject(void* refcon) { return PyLong_FromLong(static_cast<long>(reinterpret_cast<intptr_t>(refcon))); }

// A text from the simulator as a str; invalid UTF-8 is replaced rather than refused.
PyObject* TextObject(const char* text) {
    if (text == nullptr) Py_RETURN_NONE;
    return PyUnicode_DecodeUTF8(text, static_cast<Py_ssize_t>(strlen(text)), "replace");
}

// Calls the script with the tuple (released here). The callable is held for the length of the
// call, since the script may unregister the very callback that is running. Null with a pending
// error when the tuple could not be built or the call failed.
PyObject* CallScript(PyObject* callable, PyObject* args) {
    if (args == nullptr) return nullptr;
    Py_INCREF(callable);
    PyObject* result = PyObject_CallObject(callable, args);
    Py_DECREF(callable);
    Py_DECREF(args);
    return result;
}

// Converts and releases the script's result; a result that does not convert leaves *value as it
// was, and the conversion error is dropped.
template <typename T>
void ParseResult(PyObject* result, const char* format, T* value) {
    if (!PyArg_Parse(result, format, value)) PyErr_Clear();
    Py_DECREF(result);
}

// The common path of the kinds whose SDK callback returns nothing: 0 when the script was not
// reached, else 1.
int CallWithoutResult(const _CallbackList* entry, const char* missingLine, PyObject* (*buildArgs)(const Target&, const void*),
                      const void* context) {
    Target t;
    switch (Resolve(entry, t)) {
        case Reach::Skip: return 0;
        case Reach::NoCallable: CannotFind(missingLine); return 1;
        case Reach::Call: break;
    }
    PyObject* result = CallScript(t.callable, buildArgs(t, context));
    if (result == nullptr) {
        CV_PrintPythonError();
        return 1;
    }
    Py_DECREF(result);
    return 1;
}

// What a dispatcher answers the simulator when it has no answer of the script's: a result that
// does not convert also leaves `notCalled`.
template <typename T>
struct Answers {
    T notCalled;   // Reach::Skip
    T noCallable;  // Reach::NoCallable
    T failed;      // the script's call raised
};
// 0 when the script was not reached, else 1 (draw callbacks, key sniffers, scalar getters).
template <typename T>
constexpr Answers<T> kOneOnceReached{T(0), T(1), T(1)};
// 0 whatever happened (window mouse and cursor handlers, command handlers).
constexpr Answers<int> kAlwaysZero{0, 0, 0};

// The common path of the kinds whose result is parsed with one format.
template <typename T>
T CallWithResult(const _CallbackList* entry, const char* missingLine, const Answers<T>& answers, const char* format,
                 PyObject* args_if_called(const Target&, const void*), const void* context) {
    Target t;
    switch (Resolve(entry, t)) {
        case Reach::Skip: return answers.notCalled;
        case Reach::NoCallable: CannotFind(missingLine); return answers.noCallable;
        case Reach::Call: break;
    }
    PyObject* result = CallScript(t.callable, args_if_called(t, context));
    if (result == nullptr) {
        CV_PrintPythonError();
        return answers.failed;
    }
    T value = answers.notCalled;
    ParseResult(result, format, &value);
    return value;
}

PyObject* RefconOnly(const Target& t, const void*) { return Py_BuildValue("(N)", RefconObject(t.refcon)); }

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
        case Reach::Skip: return 0;
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
    PyObject* args = Py_BuildValue("(NOii)", RefconObject(t.refcon), list ? list : Py_None, inOffset, inMax);
    PyObject* result = CallScript(t.callable, args);
    if (result == nullptr) {
        Py_XDECREF(list);
        CV_PrintPythonError();
        return 1;
    }
    int count = 0;
    ParseResult(result, "i", &count);
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
    Target t;
    switch (Resolve(entry, t)) {
        case Reach::Skip: return 0;
        case Reach::NoCallable: CannotFind(missingLine); return 1;
        case Reach::Call: break;
    }
    PyObject* list = ListFromBuffer(values, inCount, make);
    PyObject* args = list ? Py_BuildValue("(NNii)", RefconObject(t.refcon), list, inOffset, inCount) : nullptr;
    PyObject* result = CallScript(t.callable, args);
    if (result == nullptr) {
        CV_PrintPythonError();
        return 1;
    }
    Py_DECREF(result);
    return 1;
}

PyObject* IntItem(int v) { return PyLong_FromLong(v); }
PyObject* FloatItem(float v) { return PyFloat_FromDouble(v); }
PyObject* ByteItem(char v) { return PyLong_FromLong(static_cast<signed char>(v)); }

}  // namespace

// ---------------------------------------------------------------- flight loops

float CallUserFlightLoopCallback(float inElapsedSinceLastCall, float inElapsedTimeSinceLastFlightLoop, int inCounter,
                                 void* inRefcon) {
    // A flight loop object made without a record has nothing to call: it is not scheduled again.
    if (inRefcon == nullptr || LeftBehind(static_cast<const _CallbackList*>(inRefcon))) return 0.0f;
    Target t;
    switch (Resolve(static_cast<const _CallbackList*>(inRefcon), t)) {
        case Reach::Skip: return 1.0f;
        case Reach::NoCallable: CannotFind("Cannot find method FlightLoopCallback\n"); return 1.0f;
        case Reach::Call: break;
    }
    // Flight loops run every frame: the four arguments go to the script by vectorcall, without a
    // tuple or a format string, and the result is read as Python's float() would.
    PyObject* argv[4] = {PyFloat_FromDouble(inElapsedSinceLastCall), PyFloat_FromDouble(inElapsedTimeSinceLastFlightLoop),
                         PyLong_FromLong(inCounter), RefconObject(t.refcon)};
    PyObject* result = nullptr;
    if (argv[0] && argv[1] && argv[2] && argv[3]) {
        Py_INCREF(t.callable);
        result = PyObject_Vectorcall(t.callable, argv, 4, nullptr);
        Py_DECREF(t.callable);
    }
    for (PyObject* arg : argv) Py_XDECREF(arg);
    if (result == nullptr) {
        CV_PrintPythonError();
        return 1.0f;
    }
    float value = 1.0f;
    const double seconds = PyFloat_AsDouble(result);
    if (seconds == -1.0 && PyErr_Occurred())
        PyErr_Clear();  // an unconvertible result keeps the default
    else
        value = static_cast<float>(seconds);
    Py_DECREF(result);
    return value;
}

// ---------------------------------------------------------------- drawing, keys, hot keys

namespace {
struct DrawArgs { int phase, isBefore; };
struct KeySnifferArgs { char key; int flags; char virtualKey; };
}  // namespace

int CallUserDrawCallback(XPLMDrawingPhase inPhase, int inIsBefore, void* inRefcon) {
    if (LeftBehind(static_cast<const _CallbackList*>(inRefcon))) return 1;
    DrawArgs a{inPhase, inIsBefore};
    return CallWithResult<int>(
        static_cast<const _CallbackList*>(inRefcon), "Cannot find method DrawCallback\n", kOneOnceReached<int>, "i",
        [](const Target& t, const void* c) {
            auto* a = static_cast<const DrawArgs*>(c);
            return Py_BuildValue("(iiN)", a->phase, a->isBefore, RefconObject(t.refcon));
        },
        &a);
}

int CallUserKeySnifferCallback(char inChar, XPLMKeyFlags inFlags, char inVirtualKey, void* inRefcon) {
    if (LeftBehind(static_cast<const _CallbackList*>(inRefcon))) return 1;
    KeySnifferArgs a{inChar, inFlags, inVirtualKey};
    return CallWithResult<int>(
        static_cast<const _CallbackList*>(inRefcon), "Cannot find method KeySnifferCallback\n", kOneOnceReached<int>,
        "i",
        [](const Target& t, const void* c) {
            auto* a = static_cast<const KeySnifferArgs*>(c);
            return Py_BuildValue("(biiN)", static_cast<int>(a->key), a->flags,
                                 static_cast<int>(static_cast<unsigned char>(a->virtualKey)), RefconObject(t.refcon));
        },
        &a);
}

int CallUserHotKeyCallback(void* inRefcon) {
    return CallWithoutResult(static_cast<const _CallbackList*>(inRefcon), "Cannot find method HotKeyCallback\n",
                             RefconOnly, nullptr);
}

// ---------------------------------------------------------------- windows

namespace {
struct WindowArgs {
    void* window;
    int x, y, a, b;  // mouse: status; wheel: wheel, clicks
};
struct WindowKeyArgs {
    void* window;
    char key;
    int flags;
    char virtualKey;
    int losingFocus;
};
}  // namespace

int CallUserDrawWindowCallback(XPLMWindowID inWindowID, void* inRefcon) {
    return CallWithoutResult(
        Slot(inRefcon, CV_WindowDrawSlot), "Cannot find method DrawWindowCallback\n",
        [](const Target& t, const void* w) {
            return Py_BuildValue("(NN)", PyLong_FromVoidPtr(const_cast<void*>(w)), RefconObject(t.refcon));
        },
        inWindowID);
}

int CallUserKeyCallback(XPLMWindowID inWindowID, char inKey, XPLMKeyFlags inFlags, char inVirtualKey, void* inRefcon,
                        int losingFocus) {
    WindowKeyArgs a{inWindowID, inKey, inFlags, inVirtualKey, losingFocus};
    return CallWithoutResult(
        Slot(inRefcon, CV_WindowKeySlot), "Cannot find method KeyCallback\n",
        [](const Target& t, const void* c) {
            auto* a = static_cast<const WindowKeyArgs*>(c);
            return Py_BuildValue("(NiiiNi)", PyLong_FromVoidPtr(a->window), static_cast<int>(a->key), a->flags,
                                 static_cast<int>(a->virtualKey), RefconObject(t.refcon), a->losingFocus);
        },
        &a);
}

int CallUserMouseClickCallback(XPLMWindowID inWindowID, int x, int y, XPLMMouseStatus inMouse, void* inRefcon) {
    WindowArgs a{inWindowID, x, y, inMouse, 0};
    return CallWithResult<int>(
        Slot(inRefcon, CV_WindowMouseClickSlot), "Cannot find method MouseClickCallback\n", kAlwaysZero, "i",
        [](const Target& t, const void* c) {
            auto* a = static_cast<const WindowArgs*>(c);
            return Py_BuildValue("(NiiiN)", PyLong_FromVoidPtr(a->window), a->x, a->y, a->a, RefconObject(t.refcon));
        },
        &a);
}

XPLMCursorStatus CallUserCursorStatusCallback(XPLMWindowID inWindowID, int x, int y, void* inRefcon) {
    WindowArgs a{inWindowID, x, y, 0, 0};
    return CallWithResult<int>(
        Slot(inRefcon, CV_WindowCursorStatusSlot), "Cannot find method CursorStatusCallback\n", kAlwaysZero, "i",
        [](const Target& t, const void* c) {
            auto* a = static_cast<const WindowArgs*>(c);
            return Py_BuildValue("(NiiN)", PyLong_FromVoidPtr(a->window), a->x, a->y, RefconObject(t.refcon));
        },
        &a);
}

int CallUserMouseWheelCallback(XPLMWindowID inWindowID, int x, int y, int wheel, int clicks, void* inRefcon) {
    WindowArgs a{inWindowID, x, y, wheel, clicks};
    return CallWithResult<int>(
        Slot(inRefcon, CV_WindowMouseWheelSlot), "Cannot find method MouseWheelCallback\n", kAlwaysZero, "i",
        [](const Target& t, const void* c) {
            auto* a = static_cast<const WindowArgs*>(c);
            return Py_BuildValue("(NiiiiN)", PyLong_FromVoidPtr(a->window), a->x, a->y, a->a, a->b,
                                 RefconObject(t.refcon));
        },
        &a);
}

// ---------------------------------------------------------------- menus, commands, errors

int CallUserMenuCallback(void* inMenuRef, void* inItemRef) {
    return CallWithoutResult(
        static_cast<const _CallbackList*>(inMenuRef), "Cannot find method UserMenuCallback\n",
        [](const Target& t, const void* item) {
            // The item refcon is the script's own integer, given back as it was given.
            return Py_BuildValue("(NN)", RefconObject(t.refcon), RefconObject(const_cast<void*>(item)));
        },
        inItemRef);
}

namespace {
struct CommandArgs { void* command; int phase; };
}  // namespace

int CallUserCommandCallback(XPLMCommandRef inCommand, XPLMCommandPhase inPhase, void* inRefcon) {
    if (LeftBehind(static_cast<const _CallbackList*>(inRefcon))) return 1;
    CommandArgs a{inCommand, inPhase};
    return CallWithResult<int>(
        static_cast<const _CallbackList*>(inRefcon), "Cannot find method CommandCallback\n", kAlwaysZero, "i",
        [](const Target& t, const void* c) {
            auto* a = static_cast<const CommandArgs*>(c);
            // The command handle in full, so that it equals what XPLMFindCommand gave the script.
            return Py_BuildValue("(NiN)", PyLong_FromVoidPtr(a->command), a->phase, RefconObject(t.refcon));
        },
        &a);
}

int CallUserErrorCallback(const char* inMessage, void* inRefcon) {
    Target t;
    switch (Resolve(static_cast<const _CallbackList*>(inRefcon), t)) {
        case Reach::Skip: return 0;
        case Reach::NoCallable: CannotFind("Cannot find method CommandCallback\n"); return 0;
        case Reach::Call: break;
    }
    PyObject* result = CallScript(t.callable, Py_BuildValue("(N)", TextObject(inMessage)));
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
                             "Cannot find method UserPlanesAvailableCallback\n", RefconOnly, nullptr);
}

int CallUserSharedDataCallback(void* inRefcon) {
    return CallWithoutResult(static_cast<const _CallbackList*>(inRefcon), "Cannot find method UserSharedDataCallback\n",
                             RefconOnly, nullptr);
}

namespace {
PyObject* TextAndRefcon(const Target& t, const void* text) {
    return Py_BuildValue("(NN)", TextObject(static_cast<const char*>(text)), RefconObject(t.refcon));
}
}  // namespace

int CallUserFeatureEnumeratorCallback(const char* inFeature, void* inRef) {
    return CallWithoutResult(static_cast<const _CallbackList*>(inRef), "Cannot find method FeatureEnumeratorCallback\n",
                             TextAndRefcon, inFeature);
}

int CallUserLibraryEnumeratorCallback(const char* inFilePath, void* inRef) {
    return CallWithoutResult(static_cast<const _CallbackList*>(inRef), "Cannot find method LibraryEnumeratorCallback\n",
                             TextAndRefcon, inFilePath);
}

int CallUserObjectLoadedCallback(XPLMObjectRef inObject, void* inRefcon) {
    return CallWithoutResult(
        static_cast<const _CallbackList*>(inRefcon), "Cannot find method ObjectLoadedCallback\n",
        [](const Target& t, const void* object) {
            return Py_BuildValue("(NN)", PyLong_FromVoidPtr(const_cast<void*>(object)), RefconObject(t.refcon));
        },
        inObject);
}

// ---------------------------------------------------------------- camera

int CallUserCameraControlCallback(XPLMCameraPosition_t* outCameraPosition, int inIsLosingControl, void* inRefcon) {
    Target t;
    switch (Resolve(static_cast<const _CallbackList*>(inRefcon), t)) {
        case Reach::Skip: return 0;
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

    PyObject* args = nullptr;
    if (outCameraPosition == nullptr) {
        // The simulator is taking control away: there is no position to offer.
        args = Py_BuildValue("(liN)", 0L, inIsLosingControl, RefconObject(t.refcon));
    } else {
        PyObject* list = PyList_New(7);
        if (list != nullptr) {
            for (int i = 0; i < 7; ++i) {
                PyObject* item = PyFloat_FromDouble(*position[i]);
                if (item == nullptr) {
                    Py_CLEAR(list);
                    break;
                }
                PyList_SET_ITEM(list, i, item);
            }
        }
        if (list != nullptr) args = Py_BuildValue("(NiN)", list, inIsLosingControl, RefconObject(t.refcon));
    }
    if (args == nullptr) {
        CV_PrintPythonError();
        CV_WriteToLog("UserCameraControlCallback Call failed\n");
        return 0;
    }

    // The tuple is kept past the call: the script moves the camera by assigning the list's items.
    Py_INCREF(t.callable);
    PyObject* result = PyObject_CallObject(t.callable, args);
    Py_DECREF(t.callable);
    if (result == nullptr) {
        Py_DECREF(args);
        CV_PrintPythonError();
        CV_WriteToLog("UserCameraControlCallback Call failed\n");
        return 0;
    }
    int value = 0;
    ParseResult(result, "i", &value);

    if (outCameraPosition != nullptr) {
        PyObject* list = nullptr;
        int flag = 0;
        long refcon = 0;
        CV_PyRef items(PyArg_ParseTuple(args, "Oil", &list, &flag, &refcon) && PyList_Check(list) ? PyList_AsTuple(list)
                                                                                                  : nullptr);
        if (items) {
            // Items the script removed or made unconvertible leave their field as it was; converting
            // one may run the script's code, which may change the list, so a copy is read.
            const Py_ssize_t size = PyTuple_GET_SIZE(items.get());
            for (Py_ssize_t i = 0; i < 7 && i < size; ++i) {
                double v = PyFloat_AsDouble(PyTuple_GET_ITEM(items.get(), i));
                if (v == -1.0 && PyErr_Occurred()) {
                    PyErr_Clear();
                    continue;
                }
                *position[i] = static_cast<float>(v);
            }
        } else {
            PyErr_Clear();
            value = 0;
        }
    }
    Py_DECREF(args);
    return value;
}

// ---------------------------------------------------------------- widgets

int CallUserWidgetCallback(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t inParam1, intptr_t inParam2) {
    if (CVTestTable == nullptr) return 0;
    int found = 0, index = 0;
    const _WidgetCallbackListEntry* entry = CVTestTable->FindWidgetCallback(WidgetCallbackList, inWidget, &found, &index);
    if (!found || entry == nullptr) return 1;
    if (!CV_IsCurrentGeneration(entry->generation) || entry->scriptId == nullptr || entry->scriptEnabled == nullptr ||
        *entry->scriptEnabled == 0)
        return 0;
    if (entry->callable == nullptr) {
        CannotFind("Cannot find method UserWidgetCallback\n");
        return 1;
    }
    // The widget function may destroy its own widget, which frees the entry: take what is needed first.
    PyObject* callable = entry->callable;
    PyObject* args = Py_BuildValue("(iNNN)", inMessage, PyLong_FromVoidPtr(inWidget),
                                   PyLong_FromVoidPtr(reinterpret_cast<void*>(inParam1)),
                                   PyLong_FromVoidPtr(reinterpret_cast<void*>(inParam2)));
    PyObject* result = CallScript(callable, args);
    if (result == nullptr) {
        // A failing widget function counts as having handled the message; its error is not shown.
        PyErr_Clear();
        return 1;
    }
    int value = 0;
    ParseResult(result, "i", &value);
    return value;
}

// ---------------------------------------------------------------- data accessors

int CallUserGetDatai_Callback(void* inRefcon) {
    const _CallbackList* entry = Slot(inRefcon, CV_AccessorIntSlot);
    if (entry == nullptr) return 0;
    return CallWithResult<int>(entry, "Cannot find method UserGetDataiCallback\n", kOneOnceReached<int>, "i",
                               RefconOnly, nullptr);
}

float CallUserGetDataf_Callback(void* inRefcon) {
    const _CallbackList* entry = Slot(inRefcon, CV_AccessorFloatSlot);
    if (entry == nullptr) return 0.0f;
    return CallWithResult<float>(entry, "Cannot find method UserGetDataf_Callback\n", kOneOnceReached<float>, "f",
                                 RefconOnly, nullptr);
}

double CallUserGetDatad_Callback(void* inRefcon) {
    const _CallbackList* entry = Slot(inRefcon, CV_AccessorDoubleSlot);
    if (entry == nullptr) return 0.0;
    // The double getter reports a missing callable with the float getter's line.
    return CallWithResult<double>(entry, "Cannot find method UserGetDataf_Callback\n", kOneOnceReached<double>, "d",
                                  RefconOnly, nullptr);
}

int CallUserSetDatai_Callback(void* inRefcon, int inValue) {
    const _CallbackList* entry = Slot(inRefcon, CV_AccessorIntSlot);
    if (entry == nullptr) return 0;
    return CallWithoutResult(
        entry, "Cannot find method UserSetDatai_Callback\n",
        [](const Target& t, const void* v) {
            return Py_BuildValue("(Ni)", RefconObject(t.refcon), *static_cast<const int*>(v));
        },
        &inValue);
}

int CallUserSetDataf_Callback(void* inRefcon, float inValue) {
    const _CallbackList* entry = Slot(inRefcon, CV_AccessorFloatSlot);
    if (entry == nullptr) return 0;
    return CallWithoutResult(
        entry, "Cannot find method UserSetDataf_Callback\n",
        [](const Target& t, const void* v) {
            return Py_BuildValue("(Nf)", RefconObject(t.refcon), static_cast<double>(*static_cast<const float*>(v)));
        },
        &inValue);
}

int CallUserSetDatad_Callback(void* inRefcon, double inValue) {
    const _CallbackList* entry = Slot(inRefcon, CV_AccessorDoubleSlot);
    if (entry == nullptr) return 0;
    return CallWithoutResult(
        entry, "Cannot find method UserSetDatad_Callback\n",
        [](const Target& t, const void* v) {
            return Py_BuildValue("(Nd)", RefconObject(t.refcon), *static_cast<const double*>(v));
        },
        &inValue);
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
