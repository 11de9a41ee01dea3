// The script module XPLMDisplay: drawing callbacks, key sniffers, hot keys, the screen and mouse
// queries, and windows whose callbacks are a script's methods.
//
// Every registration records the script's callable in its callback list and hands the simulator
// the plugin's trampoline with the record (for windows: the window's key record of five records) as
// refcon, so that a callback reaches the script without any search.
//
// Unregistrations find their records by the scripts' rules, which can pick another registration's
// record (two hot keys or two windows sharing one method) or, for windows, another window's key
// record. The lists follow those rules exactly. The memory behind them does not: a record or key
// record taken out of its list is freed only once the simulator can no longer call with it, so a
// trampoline never reads freed memory.
#include <Python.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "BindingModules.h"
#include "BindingSupport.h"
#include "CV_ScriptTable.h"
#include "CallbackDispatch.h"
#include "CallbackRegistry.h"
#include "Paths.h"
#include "SdkDetect.h"
#include "XPLMDisplay.h"

namespace {

const char* const kModule = "XPLMDisplay";

// Installed in this order, each under its SDK name.
const CV_IntConstant XPLMDisplayConstants[] = {
    // Drawing phases.
    {"xplm_Phase_FirstScene", 0},
    {"xplm_Phase_Terrain", 5},
    {"xplm_Phase_Airports", 10},
    {"xplm_Phase_Vectors", 15},
    {"xplm_Phase_Objects", 20},
    {"xplm_Phase_Airplanes", 25},
    {"xplm_Phase_LastScene", 30},
    {"xplm_Phase_FirstCockpit", 35},
    {"xplm_Phase_Panel", 40},
    {"xplm_Phase_Gauges", 45},
    {"xplm_Phase_Window", 50},
    {"xplm_Phase_LastCockpit", 55},
    // Mouse status.
    {"xplm_MouseDown", 1},
    {"xplm_MouseDrag", 2},
    {"xplm_MouseUp", 3},
    // Cursor status.
    {"xplm_CursorDefault", 0},
    {"xplm_CursorHidden", 1},
    {"xplm_CursorArrow", 2},
    {"xplm_CursorCustom", 3},
};

PyObject* IntResult(long value) { return PyLong_FromLong(value); }

template <typename T>
bool RemoveValue(std::vector<T>& values, const T& value) {
    auto it = std::find(values.begin(), values.end(), value);
    if (it == values.end()) return false;
    values.erase(it);
    return true;
}

// ---------------------------------------------------------------- out arguments

template <typename T>
T* OutPointer(PyObject* out, T* storage) {
    return out == Py_None ? nullptr : storage;
}

// ---------------------------------------------------------------- draw callbacks and key sniffers

// Registrations the simulator accepted and still calls. An unregistration that the simulator did
// not carry out (another phase or side than registered) still takes the record out of the list, as
// scripts expect, but leaves it allocated, since the simulator keeps calling with it.
std::vector<_CallbackList*> gDrawCallbacksHeld;
std::vector<_CallbackList*> gKeySniffersHeld;

// Deletes a record that an unregistration found, or only takes it out of the list while the
// simulator still holds it.
void RetireRecord(CV_CallbackVector* list, _CallbackList* entry, int index, bool stillHeld) {
    if (stillHeld)
        CV_TakeOutOfList(list, entry, index);
    else
        CVTestTable->DeleteCallback(list, entry, index);
}

PyObject* PY_XPLMRegisterDrawCallback(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callable = nullptr, *refconObject = nullptr;
    int phase = 0, wantsBefore = 0;
    if (!PyArg_ParseTuple(args, "OOiiO", &scriptId, &callable, &phase, &wantsBefore, &refconObject)) return nullptr;
    void* refcon = nullptr;
    if (!CV_PointerWord(refconObject, &refcon)) return nullptr;

    _CallbackList* entry = CVTestTable->AddCallback(&DrawCallbackList, scriptId, nullptr, callable, refcon);
    int result = 0;
    CV_SDK_GUARD(kModule, "XPLMRegisterDrawCallback", IntResult(0),
                 result = XPLMRegisterDrawCallback(CV_DrawCallback, phase, wantsBefore, entry));
    if (result) gDrawCallbacksHeld.push_back(entry);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMRegisterDrawCallback",
                              CV_FormatText("pScriptId = %lx, inPhase = %d, inWantsBefore = %d, inRefcon = %ld\n",
                                            CV_Hex(scriptId), phase, wantsBefore, CV_Dec(refcon)),
                              {{"DrawCallbackList", DrawCallbackList.size()}});
    return IntResult(result);
}

PyObject* PY_XPLMUnregisterDrawCallback(PyObject* self, PyObject* args) {
    const char* const function = "XPLMUnregisterDrawCallback";
    PyObject *scriptId = nullptr, *callable = nullptr, *refconObject = nullptr;
    int phase = 0, wantsBefore = 0;
    if (!PyArg_ParseTuple(args, "OOiiO", &scriptId, &callable, &phase, &wantsBefore, &refconObject)) return nullptr;
    void* refcon = nullptr;
    if (!CV_PointerWord(refconObject, &refcon)) return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    int found = 0, index = 0, result = 0;
    _CallbackList* entry = CVTestTable->FindCallback(DrawCallbackList, scriptId, callable, refcon, &found, &index);
    if (found) {
        CV_SDK_GUARD(kModule, function, IntResult(0),
                     result = XPLMUnregisterDrawCallback(CV_DrawCallback, phase, wantsBefore, entry));
        if (result) RemoveValue(gDrawCallbacksHeld, entry);
        const bool held = std::find(gDrawCallbacksHeld.begin(), gDrawCallbacksHeld.end(), entry) !=
                          gDrawCallbacksHeld.end();
        RetireRecord(&DrawCallbackList, entry, index, held);
    } else {
        PrintExceptionf(kModule, function,
                        CV_MSG_UNKNOWN_CALLBACK_AND_REFCON,
                        scriptName);
    }

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace(function,
                              CV_FormatText("pScriptId = %lx, Script Name = %s, inPhase = %d, inWantsBefore = %d, "
                                            "inRefcon = %ld\n",
                                            CV_Hex(scriptId), scriptName, phase, wantsBefore, CV_Dec(refcon)),
                              {{"DrawCallbackList", DrawCallbackList.size()}});
    return IntResult(result);
}

PyObject* PY_XPLMRegisterKeySniffer(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callable = nullptr, *refconObject = nullptr;
    int beforeWindows = 0;
    if (!PyArg_ParseTuple(args, "OOiO", &scriptId, &callable, &beforeWindows, &refconObject)) return nullptr;
    void* refcon = nullptr;
    if (!CV_PointerWord(refconObject, &refcon)) return nullptr;

    _CallbackList* entry = CVTestTable->AddCallback(&KeySnifferCallbackList, scriptId, nullptr, callable, refcon);
    int result = 0;
    CV_SDK_GUARD(kModule, "XPLMRegisterKeySniffer", IntResult(0),
                 result = XPLMRegisterKeySniffer(CV_KeySnifferCallback, beforeWindows, entry));
    if (result) gKeySniffersHeld.push_back(entry);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMRegisterKeySniffer",
                              CV_FormatText("pScriptId = %lx, inBeforeWindows = %d, inRefcon = %ld\n", CV_Hex(scriptId),
                                            beforeWindows, CV_Dec(refcon)),
                              {{"KeySnifferCallbackList", KeySnifferCallbackList.size()}});
    return IntResult(result);
}

PyObject* PY_XPLMUnregisterKeySniffer(PyObject* self, PyObject* args) {
    const char* const function = "XPLMUnregisterKeySniffer";
    PyObject *scriptId = nullptr, *callable = nullptr, *refconObject = nullptr;
    int beforeWindows = 0;
    if (!PyArg_ParseTuple(args, "OOiO", &scriptId, &callable, &beforeWindows, &refconObject)) return nullptr;
    void* refcon = nullptr;
    if (!CV_PointerWord(refconObject, &refcon)) return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    int found = 0, index = 0, result = 0;
    _CallbackList* entry = CVTestTable->FindCallback(KeySnifferCallbackList, scriptId, callable, refcon, &found, &index);
    if (found) {
        CV_SDK_GUARD(kModule, function, IntResult(0),
                     result = XPLMUnregisterKeySniffer(CV_KeySnifferCallback, beforeWindows, entry));
        if (result) RemoveValue(gKeySniffersHeld, entry);
        const bool held =
            std::find(gKeySniffersHeld.begin(), gKeySniffersHeld.end(), entry) != gKeySniffersHeld.end();
        RetireRecord(&KeySnifferCallbackList, entry, index, held);
    } else {
        PrintExceptionf(kModule, function,
                        CV_MSG_UNKNOWN_CALLBACK_AND_REFCON,
                        scriptName);
    }

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace(function,
                              CV_FormatText("pScriptId = %lx, Script Name = %s, inBeforeWindows = %d, inRefcon = %ld\n",
                                            CV_Hex(scriptId), scriptName, beforeWindows, CV_Dec(refcon)),
                              {{"KeySnifferCallbackList", KeySnifferCallbackList.size()}});
    return IntResult(result);
}

// ---------------------------------------------------------------- screen and mouse

PyObject* PY_XPLMGetScreenSize(PyObject* self, PyObject* args) {
    PyObject *outWidth = nullptr, *outHeight = nullptr;
    if (!PyArg_ParseTuple(args, "OO", &outWidth, &outHeight)) return nullptr;
    if (!CV_CheckOutputList(outWidth) || !CV_CheckOutputList(outHeight)) return nullptr;
    int width = 0, height = 0;
    CV_SDK_GUARD(kModule, "XPLMGetScreenSize", IntResult(0),
                 XPLMGetScreenSize(OutPointer(outWidth, &width), OutPointer(outHeight, &height)));
    if (!CV_StoreOutput(outWidth, PyLong_FromLong(width)) || !CV_StoreOutput(outHeight, PyLong_FromLong(height))) return nullptr;
    return IntResult(1);
}

PyObject* PY_XPLMGetMouseLocation(PyObject* self, PyObject* args) {
    PyObject *outX = nullptr, *outY = nullptr;
    if (!PyArg_ParseTuple(args, "OO", &outX, &outY)) return nullptr;
    if (!CV_CheckOutputList(outX) || !CV_CheckOutputList(outY)) return nullptr;
    int x = 0, y = 0;
    CV_SDK_GUARD(kModule, "XPLMGetMouseLocation", IntResult(0),
                 XPLMGetMouseLocation(OutPointer(outX, &x), OutPointer(outY, &y)));
    if (!CV_StoreOutput(outX, PyLong_FromLong(x)) || !CV_StoreOutput(outY, PyLong_FromLong(y))) return nullptr;
    return IntResult(1);
}

// ---------------------------------------------------------------- hot keys

// The hot keys the simulator holds, each with the record it calls back with. After two
// registrations with one method the record that holds a hot key's id is not the one the simulator
// calls for it; a record is freed only when no registered hot key calls with it.
std::vector<std::pair<XPLMHotKeyID, _CallbackList*>> gHotKeys;

bool HotKeyRecordInUse(const _CallbackList* entry) {
    for (const auto& hotKey : gHotKeys)
        if (hotKey.second == entry) return true;
    return false;
}

PyObject* PY_XPLMRegisterHotKey(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callable = nullptr, *refconObject = nullptr;
    unsigned char virtualKey = 0;
    int flags = 0;
    const char* description = nullptr;
    if (!PyArg_ParseTuple(args, "ObisOO", &scriptId, &virtualKey, &flags, &description, &callable, &refconObject))
        return nullptr;
    void* refcon = nullptr;
    if (!CV_PointerWord(refconObject, &refcon)) return nullptr;

    _CallbackList* entry = CVTestTable->AddCallback(&HotKeyCallbackList, scriptId, nullptr, callable, refcon);
    XPLMHotKeyID hotKey = nullptr;
    CV_SDK_GUARD(kModule, "XPLMRegisterHotKey", IntResult(0),
                 hotKey = XPLMRegisterHotKey(static_cast<char>(virtualKey), flags, description, CV_HotKeyCallback,
                                             entry));
    if (hotKey != nullptr) gHotKeys.emplace_back(hotKey, entry);
    CVTestTable->UpdateCallback(&HotKeyCallbackList, scriptId, callable, hotKey);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMRegisterHotKey",
                              CV_FormatText("pScriptId = %lx, inVirtualKey = %d, inFlags = %d, inDescription = %s, "
                                            "inRefcon = %ld\n",
                                            CV_Hex(scriptId), virtualKey, flags, description, CV_Dec(refcon)),
                              {{"HotKeyCallbackList", HotKeyCallbackList.size()}});
    return PyLong_FromVoidPtr(hotKey);
}

PyObject* PY_XPLMUnregisterHotKey(PyObject* self, PyObject* args) {
    const char* const function = "XPLMUnregisterHotKey";
    PyObject *scriptId = nullptr, *idObject = nullptr;
    void* hotKey = nullptr;
    if (!PyArg_ParseTuple(args, "OO", &scriptId, &idObject) || !CV_PointerWord(idObject, &hotKey)) return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    int found = 0, index = 0;
    _CallbackList* entry = CVTestTable->FindCallback(HotKeyCallbackList, scriptId, hotKey, &found, &index);
    if (found) {
        CV_SDK_GUARD(kModule, function, IntResult(0), XPLMUnregisterHotKey(hotKey));
        gHotKeys.erase(std::remove_if(gHotKeys.begin(), gHotKeys.end(),
                                      [&](const std::pair<XPLMHotKeyID, _CallbackList*>& h) { return h.first == hotKey; }),
                       gHotKeys.end());
        RetireRecord(&HotKeyCallbackList, entry, index, HotKeyRecordInUse(entry));
    } else {
        PrintExceptionf(kModule, function, CV_MSG_UNKNOWN_CALLBACK, scriptName);
    }

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace(function,
                              CV_FormatText("pScriptId = %lx, Script Name = %s, HotKeyID = %lx\n", CV_Hex(scriptId),
                                            scriptName, CV_Hex(hotKey)),
                              {{"HotKeyCallbackList", HotKeyCallbackList.size()}});
    return IntResult(1);
}

PyObject* PY_XPLMCountHotKeys(PyObject* self, PyObject* args) {
    if (!PyArg_ParseTuple(args, "")) return nullptr;
    int count = 0;
    CV_SDK_GUARD(kModule, "XPLMCountHotKeys", IntResult(0), count = XPLMCountHotKeys());
    return IntResult(count);
}

PyObject* PY_XPLMGetNthHotKey(PyObject* self, PyObject* args) {
    int index = 0;
    if (!PyArg_ParseTuple(args, "i", &index)) return nullptr;
    XPLMHotKeyID hotKey = nullptr;
    CV_SDK_GUARD(kModule, "XPLMGetNthHotKey", IntResult(0), hotKey = XPLMGetNthHotKey(index));
    return PyLong_FromVoidPtr(hotKey);
}

PyObject* PY_XPLMGetHotKeyInfo(PyObject* self, PyObject* args) {
    PyObject *idObject = nullptr, *outVirtualKey = nullptr, *outFlags = nullptr, *outDescription = nullptr,
             *outPlugin = nullptr;
    void* hotKey = nullptr;
    if (!PyArg_ParseTuple(args, "OOOOO", &idObject, &outVirtualKey, &outFlags, &outDescription, &outPlugin) ||
        !CV_PointerWord(idObject, &hotKey))
        return nullptr;
    if (!CV_CheckOutputList(outVirtualKey) || !CV_CheckOutputList(outFlags) || !CV_CheckOutputList(outDescription) ||
        !CV_CheckOutputList(outPlugin))
        return nullptr;

    char virtualKey = 0;
    XPLMKeyFlags flags = 0;
    char description[1024] = {0};
    XPLMPluginID plugin = 0;
    CV_SDK_GUARD(kModule, "XPLMGetHotKeyInfo", IntResult(0),
                 XPLMGetHotKeyInfo(hotKey, OutPointer(outVirtualKey, &virtualKey), OutPointer(outFlags, &flags),
                                   OutPointer(outDescription, description), OutPointer(outPlugin, &plugin)));
    description[sizeof description - 1] = '\0';
    const size_t length = strnlen(description, sizeof description);
    if (!CV_StoreOutput(outVirtualKey, PyLong_FromLong(static_cast<signed char>(virtualKey))) ||
        !CV_StoreOutput(outFlags, PyLong_FromLong(flags)) ||
        !CV_StoreOutput(outDescription,
                  PyUnicode_DecodeUTF8(description, static_cast<Py_ssize_t>(length), "replace")) ||
        !CV_StoreOutput(outPlugin, PyLong_FromLong(plugin)))
        return nullptr;
    return IntResult(1);
}

// The hot key comes as a plain integer here, unlike in the other hot key functions: a
// pointer-sized one, so that the ids the other functions give are accepted.
PyObject* PY_XPLMSetHotKeyCombination(PyObject* self, PyObject* args) {
    Py_ssize_t hotKey = 0;
    unsigned char virtualKey = 0;
    int flags = 0;
    if (!PyArg_ParseTuple(args, "nbi", &hotKey, &virtualKey, &flags)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMSetHotKeyCombination", IntResult(0),
                 XPLMSetHotKeyCombination(reinterpret_cast<XPLMHotKeyID>(hotKey), static_cast<char>(virtualKey),
                                          flags));
    return IntResult(1);
}

// ---------------------------------------------------------------- windows

// The five handler lists in the order windows are searched and traced: draw, key, mouse click,
// cursor, mouse wheel, with the slot of the key record each handler sits in.
struct WindowHandlerList {
    CV_CallbackVector* list;
    const char* name;
    int slot;
};
const WindowHandlerList kWindowLists[5] = {
    {&DrawWindowCallbackList, "DrawWindowCallbackList", CV_WindowDrawSlot},
    {&KeyCallbackList, "KeyCallbackList", CV_WindowKeySlot},
    {&MouseClickCallbackList, "MouseClickCallbackList", CV_WindowMouseClickSlot},
    {&CursorStatusCallbackList, "CursorStatusCallbackList", CV_WindowCursorStatusSlot},
    {&MouseWheelCallbackList, "MouseWheelCallbackList", CV_WindowMouseWheelSlot},
};

void TraceWindowLists(const char* function, const std::string& details) {
    CV_DebugCallbackTrace(function, details,
                          {{"DrawWindowCallbackList", DrawWindowCallbackList.size()},
                           {"KeyCallbackList", KeyCallbackList.size()},
                           {"MouseClickCallbackList", MouseClickCallbackList.size()},
                           {"CursorStatusCallbackList", CursorStatusCallbackList.size()},
                           {"MouseWheelCallbackList", MouseWheelCallbackList.size()}});
}

// The windows scripts created that are still open: each with its own key record and the refcon the
// simulator currently calls it with (the key record unless the script set another). Those key
// records, and the handler records in their slots, are in use: they stay allocated whatever the
// lists say. Whatever else is taken out of a list waits in the detached lists until it is no
// longer in use, then is freed.
struct ScriptWindow {
    XPLMWindowID id;
    _CallbackList** keyRecord;
    _CallbackList** refcon;
};
std::vector<ScriptWindow> gScriptWindows;
std::vector<_CallbackList*> gDetachedHandlers;
std::vector<_CallbackList**> gDetachedKeyRecords;

bool KeyRecordInUse(_CallbackList** keyRecord) {
    if (keyRecord == nullptr) return false;
    for (const ScriptWindow& w : gScriptWindows)
        if (w.keyRecord == keyRecord || w.refcon == keyRecord) return true;
    return false;
}

bool HandlerInUse(const _CallbackList* entry) {
    for (const ScriptWindow& w : gScriptWindows) {
        for (_CallbackList** keyRecord : {w.keyRecord, w.refcon}) {
            if (keyRecord == nullptr) continue;
            for (int slot = 0; slot < CV_WindowBlockSlots; ++slot)
                if (keyRecord[slot] == entry) return true;
        }
    }
    return false;
}

void ReleaseDetachedWindowRecords() {
    for (size_t i = 0; i < gDetachedHandlers.size();) {
        if (HandlerInUse(gDetachedHandlers[i])) {
            ++i;
            continue;
        }
        _CallbackList* entry = gDetachedHandlers[i];
        gDetachedHandlers.erase(gDetachedHandlers.begin() + i);
        CVTestTable->DeleteCallback(nullptr, entry, -1);
    }
    for (size_t i = 0; i < gDetachedKeyRecords.size();) {
        if (KeyRecordInUse(gDetachedKeyRecords[i])) {
            ++i;
            continue;
        }
        delete[] gDetachedKeyRecords[i];
        gDetachedKeyRecords.erase(gDetachedKeyRecords.begin() + i);
    }
}

// A handler is recorded only when it is a bound method; anything else leaves its slot empty.
_CallbackList* RecordHandler(CV_CallbackVector* list, PyObject* scriptId, PyObject* handler, void* refcon) {
    if (!Py_IS_TYPE(handler, &PyMethod_Type)) return nullptr;
    return CVTestTable->AddCallback(list, scriptId, nullptr, handler, refcon);
}

PyObject* PY_XPLMCreateWindow(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *drawHandler = nullptr, *keyHandler = nullptr, *mouseHandler = nullptr,
             *refconObject = nullptr;
    int left = 0, top = 0, right = 0, bottom = 0, isVisible = 0;
    if (!PyArg_ParseTuple(args, "OiiiiiOOOO", &scriptId, &left, &top, &right, &bottom, &isVisible, &drawHandler,
                          &keyHandler, &mouseHandler, &refconObject))
        return nullptr;
    void* refcon = nullptr;
    if (!CV_PointerWord(refconObject, &refcon)) return nullptr;

    _CallbackList* draw = RecordHandler(&DrawWindowCallbackList, scriptId, drawHandler, refcon);
    _CallbackList* key = RecordHandler(&KeyCallbackList, scriptId, keyHandler, refcon);
    _CallbackList* mouse = RecordHandler(&MouseClickCallbackList, scriptId, mouseHandler, refcon);
    _CallbackList** keyRecord = new _CallbackList*[CV_WindowBlockSlots]();
    DrawWindowMemoryPointerList.push_back(keyRecord);
    keyRecord[CV_WindowDrawSlot] = draw;
    keyRecord[CV_WindowMouseClickSlot] = mouse;
    keyRecord[CV_WindowKeySlot] = key;

    XPLMWindowID window = nullptr;
    CV_SDK_GUARD(kModule, "XPLMCreateWindow", IntResult(0),
                 window = XPLMCreateWindow(left, top, right, bottom, isVisible, CV_DrawWindowCallback, CV_KeyCallback,
                                           CV_MouseClickCallback, keyRecord));
    if (window != nullptr) gScriptWindows.push_back({window, keyRecord, keyRecord});
    if (draw) CVTestTable->UpdateCallback(&DrawWindowCallbackList, scriptId, drawHandler, window);
    if (key) CVTestTable->UpdateCallback(&KeyCallbackList, scriptId, keyHandler, window);
    if (mouse) CVTestTable->UpdateCallback(&MouseClickCallbackList, scriptId, mouseHandler, window);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMCreateWindow",
                              CV_FormatText("pScriptId = %lx, Left = %d, Top = %d, Right = %d, Bottom = %d, "
                                            "IsVisible = %d, Refcon = %ld, WindowID = %lx\n",
                                            CV_Hex(scriptId), left, top, right, bottom, isVisible, CV_Dec(refcon),
                                            CV_Hex(window)),
                              {{"DrawWindowCallbackList", DrawWindowCallbackList.size()},
                               {"KeyCallbackList", KeyCallbackList.size()},
                               {"MouseClickCallbackList", MouseClickCallbackList.size()}});
    return PyLong_FromVoidPtr(window);
}

// The sequence of XPLMCreateWindowEx: left, top, right, bottom, visible, then the draw, key, mouse
// click, cursor and mouse wheel handlers, then the refcon.
enum { kWindowExItems = 11 };

PyObject* PY_XPLMCreateWindowEx(PyObject* self, PyObject* args) {
    const char* const function = "XPLMCreateWindowEx";
    if (XPLMCreateWindowEx_ptr == nullptr) {
        PrintException(kModule, function, "Not supported in SDK 1.02");
        return IntResult(0);
    }
    PyObject *scriptId = nullptr, *parameters = nullptr;
    if (!PyArg_ParseTuple(args, "OO", &scriptId, &parameters)) return nullptr;
    if (!PySequence_Check(parameters)) {
        PyErr_SetString(PyExc_TypeError, "expected sequence");
        return nullptr;
    }
    PyObject* items[kWindowExItems] = {};
    auto releaseItems = [&items]() {
        for (PyObject*& item : items) Py_CLEAR(item);
    };
    for (int i = 0; i < kWindowExItems; ++i) {
        items[i] = PySequence_GetItem(parameters, i);
        if (items[i] == nullptr) {
            releaseItems();
            return nullptr;
        }
    }
    long geometry[5] = {};
    for (int i = 0; i < 5; ++i) {
        geometry[i] = PyLong_AsLong(items[i]);
        if (geometry[i] == -1 && PyErr_Occurred()) {
            releaseItems();
            return nullptr;
        }
    }
    void* refcon = nullptr;
    if (!CV_PointerWord(items[10], &refcon)) {
        releaseItems();
        return nullptr;
    }
    PyObject* const drawHandler = items[5];
    PyObject* const keyHandler = items[6];
    PyObject* const mouseHandler = items[7];
    PyObject* const cursorHandler = items[8];
    PyObject* const wheelHandler = items[9];

    _CallbackList* draw = RecordHandler(&DrawWindowCallbackList, scriptId, drawHandler, refcon);
    _CallbackList* key = RecordHandler(&KeyCallbackList, scriptId, keyHandler, refcon);
    _CallbackList* mouse = RecordHandler(&MouseClickCallbackList, scriptId, mouseHandler, refcon);
    _CallbackList* cursor = RecordHandler(&CursorStatusCallbackList, scriptId, cursorHandler, refcon);
    _CallbackList* wheel = RecordHandler(&MouseWheelCallbackList, scriptId, wheelHandler, refcon);
    _CallbackList** keyRecord = new _CallbackList*[CV_WindowBlockSlots]();
    keyRecord[CV_WindowDrawSlot] = draw;
    keyRecord[CV_WindowMouseClickSlot] = mouse;
    keyRecord[CV_WindowKeySlot] = key;
    keyRecord[CV_WindowCursorStatusSlot] = cursor;
    keyRecord[CV_WindowMouseWheelSlot] = wheel;
    DrawWindowMemoryPointerList.push_back(keyRecord);

    // The SDK's structure takes the mouse click handler before the key handler.
    XPLMCreateWindow_t params;
    params.structSize = sizeof params;
    params.left = static_cast<int>(geometry[0]);
    params.top = static_cast<int>(geometry[1]);
    params.right = static_cast<int>(geometry[2]);
    params.bottom = static_cast<int>(geometry[3]);
    params.visible = static_cast<int>(geometry[4]);
    params.drawWindowFunc = CV_DrawWindowCallback;
    params.handleMouseClickFunc = CV_MouseClickCallback;
    params.handleKeyFunc = CV_KeyCallback;
    params.handleCursorFunc = CV_CursorStatusCallback;
    params.handleMouseWheelFunc = CV_MouseWheelCallback;
    params.refcon = keyRecord;

    XPLMWindowID window = nullptr;
    try {
        window = XPLMCreateWindowEx_ptr(&params);
    } catch (...) {
        releaseItems();
        PrintException(kModule, function, "Parameter Error");
        return IntResult(0);
    }
    if (window != nullptr) gScriptWindows.push_back({window, keyRecord, keyRecord});
    if (draw) CVTestTable->UpdateCallback(&DrawWindowCallbackList, scriptId, drawHandler, window);
    if (key) CVTestTable->UpdateCallback(&KeyCallbackList, scriptId, keyHandler, window);
    if (mouse) CVTestTable->UpdateCallback(&MouseClickCallbackList, scriptId, mouseHandler, window);
    if (cursor) CVTestTable->UpdateCallback(&CursorStatusCallbackList, scriptId, cursorHandler, window);
    if (wheel) CVTestTable->UpdateCallback(&MouseWheelCallbackList, scriptId, wheelHandler, window);

    if (gCV_DebugCallbacks)
        TraceWindowLists(function,
                         CV_FormatText("pScriptId = %lx, left = %d, top = %d, right = %d, bottom = %d, visible = %d, "
                                       "Refcon = %ld, WindowID = %lx\n",
                                       CV_Hex(scriptId), params.left, params.top, params.right, params.bottom,
                                       params.visible, CV_Dec(refcon), CV_Hex(window)) +
                             CV_FormatText("pDrawWindowCB = %lx\n", CV_Hex(keyRecord)));
    releaseItems();
    return PyLong_FromVoidPtr(window);
}

PyObject* PY_XPLMDestroyWindow(PyObject* self, PyObject* args) {
    const char* const function = "XPLMDestroyWindow";
    PyObject *scriptId = nullptr, *idObject = nullptr;
    void* window = nullptr;
    if (!PyArg_ParseTuple(args, "OO", &scriptId, &idObject) || !CV_PointerWord(idObject, &window)) return nullptr;

    // One index for all five searches: a search that finds nothing leaves it as it was, so it ends
    // as the position of the last handler record found.
    int index = 0;
    for (const WindowHandlerList& h : kWindowLists) {
        int found = 0;
        _CallbackList* entry = CVTestTable->FindCallback(*h.list, scriptId, window, &found, &index);
        if (!found) continue;
        CV_TakeOutOfList(h.list, entry, index);
        gDetachedHandlers.push_back(entry);
    }

    _CallbackList** ownKeyRecord = nullptr;
    for (const ScriptWindow& w : gScriptWindows)
        if (w.id == window) ownKeyRecord = w.keyRecord;
    try {
        XPLMDestroyWindow(window);
    } catch (...) {
        ReleaseDetachedWindowRecords();
        PrintException(kModule, function, "Parameter Error");
        return IntResult(0);
    }
    // The simulator no longer calls this window.
    gScriptWindows.erase(std::remove_if(gScriptWindows.begin(), gScriptWindows.end(),
                                        [&](const ScriptWindow& w) { return w.id == window; }),
                         gScriptWindows.end());

    // The key record removed is the one at the position of the last handler found, which need not
    // be this window's own. A position past the list's end falls back to the window's own record,
    // or the last one.
    _CallbackList** removed = nullptr;
    if (DrawWindowMemoryPointerList.empty()) {
        PrintException(kModule, function, "List Empty Error");
    } else {
        size_t at = static_cast<size_t>(std::max(index, 0));
        if (at >= DrawWindowMemoryPointerList.size()) {
            auto own = std::find(DrawWindowMemoryPointerList.begin(), DrawWindowMemoryPointerList.end(), ownKeyRecord);
            at = own != DrawWindowMemoryPointerList.end() ? static_cast<size_t>(own - DrawWindowMemoryPointerList.begin())
                                                          : DrawWindowMemoryPointerList.size() - 1;
        }
        removed = DrawWindowMemoryPointerList[at];
        DrawWindowMemoryPointerList.erase(DrawWindowMemoryPointerList.begin() + static_cast<long>(at));
        gDetachedKeyRecords.push_back(removed);
    }
    ReleaseDetachedWindowRecords();

    if (gCV_DebugCallbacks) {
        char scriptName[256];
        CV_GetScriptNameForMessages(scriptId, scriptName);
        TraceWindowLists(function, CV_FormatText("pScriptId = %lx, Script Name = %s, inWindowID = %lx\n",
                                                 CV_Hex(scriptId), scriptName, CV_Hex(window)) +
                                       CV_FormatText("pDrawWindowCB = %lx\n", CV_Hex(removed)));
    }
    return IntResult(1);
}

PyObject* PY_XPLMGetWindowGeometry(PyObject* self, PyObject* args) {
    PyObject *idObject = nullptr, *outLeft = nullptr, *outTop = nullptr, *outRight = nullptr, *outBottom = nullptr;
    void* window = nullptr;
    if (!PyArg_ParseTuple(args, "OOOOO", &idObject, &outLeft, &outTop, &outRight, &outBottom) ||
        !CV_PointerWord(idObject, &window))
        return nullptr;
    if (!CV_CheckOutputList(outLeft) || !CV_CheckOutputList(outTop) || !CV_CheckOutputList(outRight) ||
        !CV_CheckOutputList(outBottom))
        return nullptr;
    int left = 0, top = 0, right = 0, bottom = 0;
    CV_SDK_GUARD(kModule, "XPLMGetWindowGeometry", IntResult(0),
                 XPLMGetWindowGeometry(window, OutPointer(outLeft, &left), OutPointer(outTop, &top),
                                       OutPointer(outRight, &right), OutPointer(outBottom, &bottom)));
    if (!CV_StoreOutput(outLeft, PyLong_FromLong(left)) || !CV_StoreOutput(outTop, PyLong_FromLong(top)) ||
        !CV_StoreOutput(outRight, PyLong_FromLong(right)) || !CV_StoreOutput(outBottom, PyLong_FromLong(bottom)))
        return nullptr;
    return IntResult(1);
}

PyObject* PY_XPLMSetWindowGeometry(PyObject* self, PyObject* args) {
    PyObject* idObject = nullptr;
    int left = 0, top = 0, right = 0, bottom = 0;
    void* window = nullptr;
    if (!PyArg_ParseTuple(args, "Oiiii", &idObject, &left, &top, &right, &bottom) ||
        !CV_PointerWord(idObject, &window))
        return nullptr;
    CV_SDK_GUARD(kModule, "XPLMSetWindowGeometry", IntResult(0),
                 XPLMSetWindowGeometry(window, left, top, right, bottom));
    return IntResult(1);
}

PyObject* PY_XPLMGetWindowIsVisible(PyObject* self, PyObject* args) {
    PyObject* idObject = nullptr;
    void* window = nullptr;
    if (!PyArg_ParseTuple(args, "O", &idObject) || !CV_PointerWord(idObject, &window)) return nullptr;
    int visible = 0;
    CV_SDK_GUARD(kModule, "XPLMGetWindowIsVisible", IntResult(0), visible = XPLMGetWindowIsVisible(window));
    return IntResult(visible);
}

PyObject* PY_XPLMSetWindowIsVisible(PyObject* self, PyObject* args) {
    PyObject* idObject = nullptr;
    int visible = 0;
    void* window = nullptr;
    if (!PyArg_ParseTuple(args, "Oi", &idObject, &visible) || !CV_PointerWord(idObject, &window)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMSetWindowIsVisible", IntResult(0), XPLMSetWindowIsVisible(window, visible));
    return IntResult(1);
}

// A window's refcon is its key record, through which the trampolines reach the script's handlers.
PyObject* PY_XPLMGetWindowRefCon(PyObject* self, PyObject* args) {
    PyObject* idObject = nullptr;
    void* window = nullptr;
    if (!PyArg_ParseTuple(args, "O", &idObject) || !CV_PointerWord(idObject, &window)) return nullptr;
    void* refcon = nullptr;
    CV_SDK_GUARD(kModule, "XPLMGetWindowRefCon", IntResult(0), refcon = XPLMGetWindowRefCon(window));
    return PyLong_FromVoidPtr(refcon);
}

// Replacing a window's key record changes which handlers its callbacks reach. Any other value would
// send the trampolines to memory that is not a key record, so a script's window accepts only 0
// (its callbacks then do nothing) or the key record of a script window that is still open, as
// XPLMGetWindowRefCon gives it; other windows are left alone.
PyObject* PY_XPLMSetWindowRefCon(PyObject* self, PyObject* args) {
    const char* const function = "XPLMSetWindowRefCon";
    PyObject* idObject = nullptr;
    long refconValue = 0;
    void* window = nullptr;
    if (!PyArg_ParseTuple(args, "Ol", &idObject, &refconValue) || !CV_PointerWord(idObject, &window)) return nullptr;
    _CallbackList** refcon = reinterpret_cast<_CallbackList**>(static_cast<intptr_t>(refconValue));

    auto target = std::find_if(gScriptWindows.begin(), gScriptWindows.end(),
                               [&](const ScriptWindow& w) { return w.id == window; });
    if (target == gScriptWindows.end() || (refcon != nullptr && !KeyRecordInUse(refcon))) {
        PrintException(kModule, function,
                       "Only a script's own window can be given a refcon, and only 0 or the refcon of an open script "
                       "window from XPLMGetWindowRefCon.");
        return IntResult(0);
    }
    CV_SDK_GUARD(kModule, function, IntResult(0), XPLMSetWindowRefCon(window, refcon));
    target = std::find_if(gScriptWindows.begin(), gScriptWindows.end(),
                          [&](const ScriptWindow& w) { return w.id == window; });
    if (target != gScriptWindows.end()) target->refcon = refcon;
    ReleaseDetachedWindowRecords();
    return IntResult(1);
}

PyObject* PY_XPLMTakeKeyboardFocus(PyObject* self, PyObject* args) {
    PyObject* idObject = nullptr;
    void* window = nullptr;
    if (!PyArg_ParseTuple(args, "O", &idObject) || !CV_PointerWord(idObject, &window)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMTakeKeyboardFocus", IntResult(0), XPLMTakeKeyboardFocus(window));
    return IntResult(1);
}

PyObject* PY_XPLMBringWindowToFront(PyObject* self, PyObject* args) {
    PyObject* idObject = nullptr;
    void* window = nullptr;
    if (!PyArg_ParseTuple(args, "O", &idObject) || !CV_PointerWord(idObject, &window)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMBringWindowToFront", IntResult(0), XPLMBringWindowToFront(window));
    return IntResult(1);
}

PyObject* PY_XPLMIsWindowInFront(PyObject* self, PyObject* args) {
    PyObject* idObject = nullptr;
    void* window = nullptr;
    if (!PyArg_ParseTuple(args, "O", &idObject) || !CV_PointerWord(idObject, &window)) return nullptr;
    int inFront = 0;
    CV_SDK_GUARD(kModule, "XPLMIsWindowInFront", IntResult(0), inFront = XPLMIsWindowInFront(window));
    return IntResult(inFront);
}

// ---------------------------------------------------------------- the module

PyMethodDef XPLMDisplayMethods[] = {
    {"XPLMRegisterDrawCallback", PY_XPLMRegisterDrawCallback, METH_VARARGS, "Registers a Draw Call Back."},
    {"XPLMUnregisterDrawCallback", PY_XPLMUnregisterDrawCallback, METH_VARARGS, "Unregisters a Draw Call Back."},
    {"XPLMRegisterKeySniffer", PY_XPLMRegisterKeySniffer, METH_VARARGS, "Registers a Key Sniffer."},
    {"XPLMUnregisterKeySniffer", PY_XPLMUnregisterKeySniffer, METH_VARARGS, "Unregisters a Key Sniffer."},
    {"XPLMGetScreenSize", PY_XPLMGetScreenSize, METH_VARARGS, "Get Screen Size."},
    {"XPLMGetMouseLocation", PY_XPLMGetMouseLocation, METH_VARARGS, "Get Mouse Location."},
    {"XPLMRegisterHotKey", PY_XPLMRegisterHotKey, METH_VARARGS, "Register Hot Key."},
    {"XPLMUnregisterHotKey", PY_XPLMUnregisterHotKey, METH_VARARGS, "Unregister Hot Key."},
    {"XPLMCountHotKeys", PY_XPLMCountHotKeys, METH_VARARGS, "Count the Hot Keys."},
    {"XPLMGetNthHotKey", PY_XPLMGetNthHotKey, METH_VARARGS, "Get Nth Hot Key."},
    {"XPLMGetHotKeyInfo", PY_XPLMGetHotKeyInfo, METH_VARARGS, "Get Hot Key Info."},
    {"XPLMSetHotKeyCombination", PY_XPLMSetHotKeyCombination, METH_VARARGS, "Set the Hot Key Combination."},
    {"XPLMCreateWindow", PY_XPLMCreateWindow, METH_VARARGS, "Creates a window."},
    {"XPLMCreateWindowEx", PY_XPLMCreateWindowEx, METH_VARARGS, "Creates a window using a struct."},
    {"XPLMDestroyWindow", PY_XPLMDestroyWindow, METH_VARARGS, "Destroys a window."},
    {"XPLMGetWindowGeometry", PY_XPLMGetWindowGeometry, METH_VARARGS, "Get window geometry."},
    {"XPLMSetWindowGeometry", PY_XPLMSetWindowGeometry, METH_VARARGS, "Set window geometry."},
    {"XPLMGetWindowIsVisible", PY_XPLMGetWindowIsVisible, METH_VARARGS, "Get Window is Visible."},
    {"XPLMSetWindowIsVisible", PY_XPLMSetWindowIsVisible, METH_VARARGS, "Set Window is Visible."},
    {"XPLMGetWindowRefCon", PY_XPLMGetWindowRefCon, METH_VARARGS, "Get the Window RefCon."},
    {"XPLMSetWindowRefCon", PY_XPLMSetWindowRefCon, METH_VARARGS, "Set the Window RefCon."},
    {"XPLMTakeKeyboardFocus", PY_XPLMTakeKeyboardFocus, METH_VARARGS, "Take the Keyboard Focus."},
    {"XPLMBringWindowToFront", PY_XPLMBringWindowToFront, METH_VARARGS, "Bring Window to Front."},
    {"XPLMIsWindowInFront", PY_XPLMIsWindowInFront, METH_VARARGS, "Is the Window in Front."},
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMDisplayModule = {PyModuleDef_HEAD_INIT, "XPLMDisplay", nullptr, -1, XPLMDisplayMethods};

}  // namespace

PyObject* initXPLMDisplay() {
    return CV_CreateModule(&XPLMDisplayModule, XPLMDisplayConstants, std::size(XPLMDisplayConstants));
}
