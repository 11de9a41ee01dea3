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

// ---------------------------------------------------------------- draw callbacks and key sniffers

// A registration the simulator accepted is held under its record. An unregistration that the
// simulator did not carry out (another phase or side than registered) still takes the record out
// of the list, as scripts expect, but the record stays while the simulator keeps calling with it.
PyObject* PY_XPLMRegisterDrawCallback(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callable = nullptr;
    int phase = 0, wantsBefore = 0;
    void* refcon = nullptr;
    if (!PyArg_ParseTuple(args, "OOiiO&", &scriptId, &callable, &phase, &wantsBefore, CV_PointerArg, &refcon))
        return nullptr;

    _CallbackList* entry = CVTestTable->AddCallback(&DrawCallbackList, scriptId, nullptr, callable, refcon);
    int result = 0;
    CV_SDK_GUARD(kModule, "XPLMRegisterDrawCallback", CV_IntResult(0),
                 result = XPLMRegisterDrawCallback(CV_DrawCallback, phase, wantsBefore, entry));
    if (result) CV_Hold(&DrawCallbackList, entry, entry);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMRegisterDrawCallback",
                              CV_FormatText("pScriptId = %lx, inPhase = %d, inWantsBefore = %d, inRefcon = %ld\n",
                                            CV_Hex(scriptId), phase, wantsBefore, CV_Dec(refcon)),
                              {DrawCallbackList});
    return CV_IntResult(result);
}

PyObject* PY_XPLMUnregisterDrawCallback(PyObject* self, PyObject* args) {
    const char* const function = "XPLMUnregisterDrawCallback";
    PyObject *scriptId = nullptr, *callable = nullptr;
    int phase = 0, wantsBefore = 0;
    void* refcon = nullptr;
    if (!PyArg_ParseTuple(args, "OOiiO&", &scriptId, &callable, &phase, &wantsBefore, CV_PointerArg, &refcon))
        return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    int index = 0, result = 0;
    _CallbackList* entry = CVTestTable->FindCallback(DrawCallbackList, scriptId, callable, refcon, nullptr, &index);
    if (!CV_Unregister(kModule, function, &DrawCallbackList, entry, index, scriptName, CV_MatchedBy::Refcon, [&] {
            result = XPLMUnregisterDrawCallback(CV_DrawCallback, phase, wantsBefore, entry);
            if (result) CV_Release(&DrawCallbackList, entry);
        }))
        return CV_IntResult(0);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace(function,
                              CV_FormatText("pScriptId = %lx, Script Name = %s, inPhase = %d, inWantsBefore = %d, "
                                            "inRefcon = %ld\n",
                                            CV_Hex(scriptId), scriptName, phase, wantsBefore, CV_Dec(refcon)),
                              {DrawCallbackList});
    return CV_IntResult(result);
}

PyObject* PY_XPLMRegisterKeySniffer(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callable = nullptr;
    int beforeWindows = 0;
    void* refcon = nullptr;
    if (!PyArg_ParseTuple(args, "OOiO&", &scriptId, &callable, &beforeWindows, CV_PointerArg, &refcon)) return nullptr;

    _CallbackList* entry = CVTestTable->AddCallback(&KeySnifferCallbackList, scriptId, nullptr, callable, refcon);
    int result = 0;
    CV_SDK_GUARD(kModule, "XPLMRegisterKeySniffer", CV_IntResult(0),
                 result = XPLMRegisterKeySniffer(CV_KeySnifferCallback, beforeWindows, entry));
    if (result) CV_Hold(&KeySnifferCallbackList, entry, entry);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMRegisterKeySniffer",
                              CV_FormatText("pScriptId = %lx, inBeforeWindows = %d, inRefcon = %ld\n", CV_Hex(scriptId),
                                            beforeWindows, CV_Dec(refcon)),
                              {KeySnifferCallbackList});
    return CV_IntResult(result);
}

PyObject* PY_XPLMUnregisterKeySniffer(PyObject* self, PyObject* args) {
    const char* const function = "XPLMUnregisterKeySniffer";
    PyObject *scriptId = nullptr, *callable = nullptr;
    int beforeWindows = 0;
    void* refcon = nullptr;
    if (!PyArg_ParseTuple(args, "OOiO&", &scriptId, &callable, &beforeWindows, CV_PointerArg, &refcon)) return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    int index = 0, result = 0;
    _CallbackList* entry =
        CVTestTable->FindCallback(KeySnifferCallbackList, scriptId, callable, refcon, nullptr, &index);
    if (!CV_Unregister(kModule, function, &KeySnifferCallbackList, entry, index, scriptName, CV_MatchedBy::Refcon, [&] {
            result = XPLMUnregisterKeySniffer(CV_KeySnifferCallback, beforeWindows, entry);
            if (result) CV_Release(&KeySnifferCallbackList, entry);
        }))
        return CV_IntResult(0);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace(function,
                              CV_FormatText("pScriptId = %lx, Script Name = %s, inBeforeWindows = %d, inRefcon = %ld\n",
                                            CV_Hex(scriptId), scriptName, beforeWindows, CV_Dec(refcon)),
                              {KeySnifferCallbackList});
    return CV_IntResult(result);
}

// ---------------------------------------------------------------- screen and mouse

// XPLMGetScreenSize and XPLMGetMouseLocation: two ints into two output arguments. Scripts ask every
// frame, so the arguments come as a vector.
template <void (*Sdk)(int*, int*)>
PyObject* GetTwoInts(PyObject* const* args, Py_ssize_t count, const char* function) {
    PyObject *outFirst = nullptr, *outSecond = nullptr;
    if (!CV_ParseArgs(args, count, &outFirst, &outSecond)) return nullptr;
    if (!CV_CheckOutputList(outFirst) || !CV_CheckOutputList(outSecond)) return nullptr;
    int first = 0, second = 0;
    CV_SDK_GUARD(kModule, function, CV_IntResult(0),
                 Sdk(CV_OutPointer(outFirst, &first), CV_OutPointer(outSecond, &second)));
    if (!CV_StoreOutput(outFirst, PyLong_FromLong(first)) || !CV_StoreOutput(outSecond, PyLong_FromLong(second)))
        return nullptr;
    return CV_IntResult(1);
}

PyObject* PY_XPLMGetScreenSize(PyObject*, PyObject* const* args, Py_ssize_t count) {
    return GetTwoInts<XPLMGetScreenSize>(args, count, "XPLMGetScreenSize");
}
PyObject* PY_XPLMGetMouseLocation(PyObject*, PyObject* const* args, Py_ssize_t count) {
    return GetTwoInts<XPLMGetMouseLocation>(args, count, "XPLMGetMouseLocation");
}

// ---------------------------------------------------------------- hot keys

// A hot key is held under its id with the record it calls back with. After two registrations with
// one method the record that holds a hot key's id is not the one the simulator calls for it; a
// record is freed only when no registered hot key calls with it.
PyObject* PY_XPLMRegisterHotKey(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callable = nullptr;
    unsigned char virtualKey = 0;
    int flags = 0;
    const char* description = nullptr;
    void* refcon = nullptr;
    if (!PyArg_ParseTuple(args, "ObisOO&", &scriptId, &virtualKey, &flags, &description, &callable, CV_PointerArg,
                          &refcon))
        return nullptr;

    _CallbackList* entry = CVTestTable->AddCallback(&HotKeyCallbackList, scriptId, nullptr, callable, refcon);
    XPLMHotKeyID hotKey = nullptr;
    CV_SDK_GUARD(
        kModule, "XPLMRegisterHotKey", CV_IntResult(0),
        hotKey = XPLMRegisterHotKey(static_cast<char>(virtualKey), flags, description, CV_HotKeyCallback, entry));
    if (hotKey != nullptr) CV_Hold(&HotKeyCallbackList, hotKey, entry);
    CVTestTable->UpdateCallback(&HotKeyCallbackList, scriptId, callable, hotKey);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMRegisterHotKey",
                              CV_FormatText("pScriptId = %lx, inVirtualKey = %d, inFlags = %d, inDescription = %s, "
                                            "inRefcon = %ld\n",
                                            CV_Hex(scriptId), virtualKey, flags, description, CV_Dec(refcon)),
                              {HotKeyCallbackList});
    return CV_HandleResult(hotKey);
}

PyObject* PY_XPLMUnregisterHotKey(PyObject* self, PyObject* args) {
    const char* const function = "XPLMUnregisterHotKey";
    PyObject* scriptId = nullptr;
    XPLMHotKeyID hotKey = nullptr;
    if (!PyArg_ParseTuple(args, "OO&", &scriptId, CV_PointerArg, &hotKey)) return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    int index = 0;
    _CallbackList* entry = CVTestTable->FindCallback(HotKeyCallbackList, scriptId, hotKey, nullptr, &index);
    if (!CV_Unregister(kModule, function, &HotKeyCallbackList, entry, index, scriptName, CV_MatchedBy::Handle, [&] {
            XPLMUnregisterHotKey(hotKey);
            CV_Release(&HotKeyCallbackList, hotKey);
        }))
        return CV_IntResult(0);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace(function,
                              CV_FormatText("pScriptId = %lx, Script Name = %s, HotKeyID = %lx\n", CV_Hex(scriptId),
                                            scriptName, CV_Hex(hotKey)),
                              {HotKeyCallbackList});
    return CV_IntResult(1);
}

PyObject* PY_XPLMCountHotKeys(PyObject* self, PyObject* args) {
    if (!PyArg_ParseTuple(args, "")) return nullptr;
    int count = 0;
    CV_SDK_GUARD(kModule, "XPLMCountHotKeys", CV_IntResult(0), count = XPLMCountHotKeys());
    return CV_IntResult(count);
}

PyObject* PY_XPLMGetNthHotKey(PyObject* self, PyObject* args) {
    int index = 0;
    if (!PyArg_ParseTuple(args, "i", &index)) return nullptr;
    XPLMHotKeyID hotKey = nullptr;
    CV_SDK_GUARD(kModule, "XPLMGetNthHotKey", CV_IntResult(0), hotKey = XPLMGetNthHotKey(index));
    return CV_HandleResult(hotKey);
}

PyObject* PY_XPLMGetHotKeyInfo(PyObject* self, PyObject* args) {
    PyObject *outVirtualKey = nullptr, *outFlags = nullptr, *outDescription = nullptr, *outPlugin = nullptr;
    XPLMHotKeyID hotKey = nullptr;
    if (!PyArg_ParseTuple(args, "O&OOOO", CV_PointerArg, &hotKey, &outVirtualKey, &outFlags, &outDescription,
                          &outPlugin))
        return nullptr;
    for (PyObject* out : {outVirtualKey, outFlags, outDescription, outPlugin})
        if (!CV_CheckOutputList(out)) return nullptr;

    char virtualKey = 0;
    XPLMKeyFlags flags = 0;
    char description[1024] = {0};
    XPLMPluginID plugin = 0;
    CV_SDK_GUARD(kModule, "XPLMGetHotKeyInfo", CV_IntResult(0),
                 XPLMGetHotKeyInfo(hotKey, CV_OutPointer(outVirtualKey, &virtualKey), CV_OutPointer(outFlags, &flags),
                                   CV_OutPointer(outDescription, description), CV_OutPointer(outPlugin, &plugin)));
    if (!CV_StoreOutput(outVirtualKey, PyLong_FromLong(static_cast<signed char>(virtualKey))) ||
        !CV_StoreOutput(outFlags, PyLong_FromLong(flags)) ||
        !CV_StoreOutput(outDescription, CV_BufferText(description, sizeof description - 1)) ||
        !CV_StoreOutput(outPlugin, PyLong_FromLong(plugin)))
        return nullptr;
    return CV_IntResult(1);
}

// The hot key comes as a plain integer here, unlike in the other hot key functions: a
// pointer-sized one, so that the ids the other functions give are accepted.
PyObject* PY_XPLMSetHotKeyCombination(PyObject* self, PyObject* args) {
    Py_ssize_t hotKey = 0;
    unsigned char virtualKey = 0;
    int flags = 0;
    if (!PyArg_ParseTuple(args, "nbi", &hotKey, &virtualKey, &flags)) return nullptr;
    CV_SDK_GUARD(
        kModule, "XPLMSetHotKeyCombination", CV_IntResult(0),
        XPLMSetHotKeyCombination(reinterpret_cast<XPLMHotKeyID>(hotKey), static_cast<char>(virtualKey), flags));
    return CV_IntResult(1);
}

// ---------------------------------------------------------------- windows

// The five handler lists follow each other in the table in the order windows search and trace
// them: draw, key, mouse click, cursor, mouse wheel.
constexpr size_t kWindowListCount = 5;
// XPLMCreateWindow's windows have only the first three: draw, key and mouse click.
constexpr size_t kOldWindowListCount = 3;

void TraceWindowLists(const char* function, const std::string& details, size_t lists = kWindowListCount) {
    CV_DebugCallbackTrace(function, details, CV_ListSizes(DrawWindowCallbackList, lists));
}

// An open window is held under its id with two key records: its own, and the refcon the simulator
// currently calls it with (the same unless the script set another). Handler records and key records
// that destructions take out by the scripts' rules (a handler record found by script and window may
// be another window's after two windows share a method; the key record goes by position) stay
// allocated while an open window reaches them.
void HoldWindow(XPLMWindowID window, _CallbackList** keyRecord, _CallbackList** refcon) {
    CV_Hold(&DrawWindowMemoryPointerList, window, nullptr, {keyRecord, refcon}, CV_WindowBlockSlots);
}

// A handler is recorded only when it is a bound method; anything else leaves its slot empty.
_CallbackList* RecordHandler(CV_CallbackVector* list, PyObject* scriptId, PyObject* handler, void* refcon) {
    if (!Py_IS_TYPE(handler, &PyMethod_Type)) return nullptr;
    return CVTestTable->AddCallback(list, scriptId, nullptr, handler, refcon);
}

// Records a window's handlers (null for a handler the window does not have) and makes its key
// record, in the slot order the trampolines read.
struct WindowHandlers {
    PyObject *draw, *key, *mouse, *cursor, *wheel;
};
_CallbackList** RecordWindow(PyObject* scriptId, const WindowHandlers& h, void* refcon) {
    _CallbackList** keyRecord = new _CallbackList*[CV_WindowBlockSlots]();
    keyRecord[CV_WindowDrawSlot] = RecordHandler(&DrawWindowCallbackList, scriptId, h.draw, refcon);
    keyRecord[CV_WindowKeySlot] = RecordHandler(&KeyCallbackList, scriptId, h.key, refcon);
    keyRecord[CV_WindowMouseClickSlot] = RecordHandler(&MouseClickCallbackList, scriptId, h.mouse, refcon);
    if (h.cursor)
        keyRecord[CV_WindowCursorStatusSlot] = RecordHandler(&CursorStatusCallbackList, scriptId, h.cursor, refcon);
    if (h.wheel) keyRecord[CV_WindowMouseWheelSlot] = RecordHandler(&MouseWheelCallbackList, scriptId, h.wheel, refcon);
    DrawWindowMemoryPointerList.push_back(keyRecord);
    return keyRecord;
}

// Once the simulator made the window: hold it and give the handler records its id.
void WindowMade(PyObject* scriptId, XPLMWindowID window, _CallbackList** keyRecord, const WindowHandlers& h) {
    if (window != nullptr) HoldWindow(window, keyRecord, keyRecord);
    const std::pair<int, PyObject*> slots[kWindowListCount] = {{CV_WindowDrawSlot, h.draw},
                                                               {CV_WindowKeySlot, h.key},
                                                               {CV_WindowMouseClickSlot, h.mouse},
                                                               {CV_WindowCursorStatusSlot, h.cursor},
                                                               {CV_WindowMouseWheelSlot, h.wheel}};
    const CV_ListEntry* lists = CV_FindList(&DrawWindowCallbackList);
    for (size_t i = 0; i < kWindowListCount; ++i)
        if (keyRecord[slots[i].first] != nullptr)
            CVTestTable->UpdateCallback(lists[i].callbacks, scriptId, slots[i].second, window);
}

PyObject* PY_XPLMCreateWindow(PyObject* self, PyObject* args) {
    PyObject* scriptId = nullptr;
    WindowHandlers h{};
    int left = 0, top = 0, right = 0, bottom = 0, isVisible = 0;
    void* refcon = nullptr;
    if (!PyArg_ParseTuple(args, "OiiiiiOOOO&", &scriptId, &left, &top, &right, &bottom, &isVisible, &h.draw, &h.key,
                          &h.mouse, CV_PointerArg, &refcon))
        return nullptr;

    _CallbackList** keyRecord = RecordWindow(scriptId, h, refcon);
    XPLMWindowID window = nullptr;
    CV_SDK_GUARD(kModule, "XPLMCreateWindow", CV_IntResult(0),
                 window = XPLMCreateWindow(left, top, right, bottom, isVisible, CV_DrawWindowCallback, CV_KeyCallback,
                                           CV_MouseClickCallback, keyRecord));
    WindowMade(scriptId, window, keyRecord, h);

    if (gCV_DebugCallbacks)
        TraceWindowLists(
            "XPLMCreateWindow",
            CV_FormatText("pScriptId = %lx, Left = %d, Top = %d, Right = %d, Bottom = %d, "
                          "IsVisible = %d, Refcon = %ld, WindowID = %lx\n",
                          CV_Hex(scriptId), left, top, right, bottom, isVisible, CV_Dec(refcon), CV_Hex(window)),
            kOldWindowListCount);
    return CV_HandleResult(window);
}

// The sequence of XPLMCreateWindowEx: left, top, right, bottom, visible, then the draw, key, mouse
// click, cursor and mouse wheel handlers, then the refcon.
enum { kWindowExItems = 11 };

PyObject* PY_XPLMCreateWindowEx(PyObject* self, PyObject* args) {
    const char* const function = "XPLMCreateWindowEx";
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMCreateWindowEx);
    PyObject *scriptId = nullptr, *parameters = nullptr;
    if (!PyArg_ParseTuple(args, "OO", &scriptId, &parameters)) return nullptr;
    if (!PySequence_Check(parameters)) {
        PyErr_SetString(PyExc_TypeError, "expected sequence");
        return nullptr;
    }
    CV_PyRef items[kWindowExItems];
    for (int i = 0; i < kWindowExItems; ++i) {
        items[i].reset(PySequence_GetItem(parameters, i));
        if (!items[i]) return nullptr;
    }
    long geometry[5] = {};
    for (int i = 0; i < 5; ++i) {
        geometry[i] = PyLong_AsLong(items[i].get());
        if (geometry[i] == -1 && PyErr_Occurred()) return nullptr;
    }
    void* refcon = nullptr;
    if (!CV_PointerWord(items[10].get(), &refcon)) return nullptr;
    const WindowHandlers h{items[5].get(), items[6].get(), items[7].get(), items[8].get(), items[9].get()};
    _CallbackList** keyRecord = RecordWindow(scriptId, h, refcon);

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
    CV_SDK_GUARD(kModule, function, CV_IntResult(0), window = XPLMCreateWindowEx_ptr(&params));
    WindowMade(scriptId, window, keyRecord, h);

    if (gCV_DebugCallbacks)
        TraceWindowLists(function,
                         CV_FormatText("pScriptId = %lx, left = %d, top = %d, right = %d, bottom = %d, visible = %d, "
                                       "Refcon = %ld, WindowID = %lx\n",
                                       CV_Hex(scriptId), params.left, params.top, params.right, params.bottom,
                                       params.visible, CV_Dec(refcon), CV_Hex(window)) +
                             CV_FormatText("pDrawWindowCB = %lx\n", CV_Hex(keyRecord)));
    return CV_HandleResult(window);
}

PyObject* PY_XPLMDestroyWindow(PyObject* self, PyObject* args) {
    const char* const function = "XPLMDestroyWindow";
    PyObject* scriptId = nullptr;
    XPLMWindowID window = nullptr;
    if (!PyArg_ParseTuple(args, "OO&", &scriptId, CV_PointerArg, &window)) return nullptr;

    // One index for all five searches: a search that finds nothing leaves it as it was, so it ends
    // as the position of the last handler record found.
    const CV_ListEntry* lists = CV_FindList(&DrawWindowCallbackList);
    int index = 0;
    for (size_t i = 0; i < kWindowListCount; ++i) {
        int found = 0;
        _CallbackList* entry = CVTestTable->FindCallback(*lists[i].callbacks, scriptId, window, &found, &index);
        if (found) CV_RetireRecord(lists[i].callbacks, entry, index);
    }

    _CallbackList** ownKeyRecord = CV_HeldBlock(&DrawWindowMemoryPointerList, window, 0);
    CV_SDK_GUARD(kModule, function, CV_IntResult(0), XPLMDestroyWindow(window));
    CV_Release(&DrawWindowMemoryPointerList, window);

    // The key record removed is the one at the position of the last handler found, which need not
    // be this window's own.
    _CallbackList** removed = nullptr;
    if (DrawWindowMemoryPointerList.empty())
        PrintException(kModule, function, "List Empty Error");
    else
        removed = CV_RetireBlock(&DrawWindowMemoryPointerList, index, ownKeyRecord);

    if (gCV_DebugCallbacks) {
        char scriptName[256];
        CV_GetScriptNameForMessages(scriptId, scriptName);
        TraceWindowLists(function, CV_FormatText("pScriptId = %lx, Script Name = %s, inWindowID = %lx\n",
                                                 CV_Hex(scriptId), scriptName, CV_Hex(window)) +
                                       CV_FormatText("pDrawWindowCB = %lx\n", CV_Hex(removed)));
    }
    return CV_IntResult(1);
}

// The window functions that take a window id and four int output arguments, or four ints.
// A window's geometry is read and set every frame: the arguments come as a vector.
PyObject* PY_XPLMGetWindowGeometry(PyObject*, PyObject* const* args, Py_ssize_t count) {
    PyObject* outs[4] = {};
    XPLMWindowID window = nullptr;
    if (!CV_ParseArgs(args, count, CV_Handle(&window), &outs[0], &outs[1], &outs[2], &outs[3])) return nullptr;
    for (PyObject* out : outs)
        if (!CV_CheckOutputList(out)) return nullptr;
    int values[4] = {};
    CV_SDK_GUARD(kModule, "XPLMGetWindowGeometry", CV_IntResult(0),
                 XPLMGetWindowGeometry(window, CV_OutPointer(outs[0], &values[0]), CV_OutPointer(outs[1], &values[1]),
                                       CV_OutPointer(outs[2], &values[2]), CV_OutPointer(outs[3], &values[3])));
    for (int i = 0; i < 4; ++i)
        if (!CV_StoreOutput(outs[i], PyLong_FromLong(values[i]))) return nullptr;
    return CV_IntResult(1);
}

PyObject* PY_XPLMSetWindowGeometry(PyObject*, PyObject* const* args, Py_ssize_t count) {
    int left = 0, top = 0, right = 0, bottom = 0;
    XPLMWindowID window = nullptr;
    if (!CV_ParseArgs(args, count, CV_Handle(&window), &left, &top, &right, &bottom)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMSetWindowGeometry", CV_IntResult(0),
                 XPLMSetWindowGeometry(window, left, top, right, bottom));
    return CV_IntResult(1);
}

CV_PLAIN_BINDING(kModule, XPLMGetWindowIsVisible)

PyObject* PY_XPLMSetWindowIsVisible(PyObject* self, PyObject* args) {
    int visible = 0;
    XPLMWindowID window = nullptr;
    if (!PyArg_ParseTuple(args, "O&i", CV_PointerArg, &window, &visible)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMSetWindowIsVisible", CV_IntResult(0), XPLMSetWindowIsVisible(window, visible));
    return CV_IntResult(1);
}

// A window's refcon is its key record, through which the trampolines reach the script's handlers.
PyObject* PY_XPLMGetWindowRefCon(PyObject* self, PyObject* args) {
    XPLMWindowID window = nullptr;
    if (!PyArg_ParseTuple(args, "O&", CV_PointerArg, &window)) return nullptr;
    void* refcon = nullptr;
    CV_SDK_GUARD(kModule, "XPLMGetWindowRefCon", CV_IntResult(0), refcon = XPLMGetWindowRefCon(window));
    return CV_HandleResult(refcon);
}

// Replacing a window's key record changes which handlers its callbacks reach. Any other value would
// send the trampolines to memory that is not a key record, so a script's window accepts only 0
// (its callbacks then do nothing) or the key record of a script window that is still open, as
// XPLMGetWindowRefCon gives it; other windows are left alone.
PyObject* PY_XPLMSetWindowRefCon(PyObject* self, PyObject* args) {
    const char* const function = "XPLMSetWindowRefCon";
    long refconValue = 0;
    XPLMWindowID window = nullptr;
    if (!PyArg_ParseTuple(args, "O&l", CV_PointerArg, &window, &refconValue)) return nullptr;
    _CallbackList** refcon = reinterpret_cast<_CallbackList**>(static_cast<intptr_t>(refconValue));

    if (!CV_IsHeld(&DrawWindowMemoryPointerList, window) ||
        (refcon != nullptr && !CV_BlockIsHeld(&DrawWindowMemoryPointerList, refcon))) {
        PrintException(kModule, function,
                       "Only a script's own window can be given a refcon, and only 0 or the refcon of an open script "
                       "window from XPLMGetWindowRefCon.");
        return CV_IntResult(0);
    }
    CV_SDK_GUARD(kModule, function, CV_IntResult(0), XPLMSetWindowRefCon(window, refcon));
    // The window may have been destroyed from inside the call; only an open window is held again.
    if (_CallbackList** own = CV_HeldBlock(&DrawWindowMemoryPointerList, window, 0)) HoldWindow(window, own, refcon);
    CV_FreeRetired();
    return CV_IntResult(1);
}

CV_PLAIN_BINDING(kModule, XPLMTakeKeyboardFocus)
CV_PLAIN_BINDING(kModule, XPLMBringWindowToFront)
CV_PLAIN_BINDING(kModule, XPLMIsWindowInFront)

// ---------------------------------------------------------------- the module

PyMethodDef XPLMDisplayMethods[] = {
    {"XPLMRegisterDrawCallback", PY_XPLMRegisterDrawCallback, METH_VARARGS, "Registers a Draw Call Back."},
    {"XPLMUnregisterDrawCallback", PY_XPLMUnregisterDrawCallback, METH_VARARGS, "Unregisters a Draw Call Back."},
    {"XPLMRegisterKeySniffer", PY_XPLMRegisterKeySniffer, METH_VARARGS, "Registers a Key Sniffer."},
    {"XPLMUnregisterKeySniffer", PY_XPLMUnregisterKeySniffer, METH_VARARGS, "Unregisters a Key Sniffer."},
    {"XPLMGetScreenSize", CV_FASTCALL(PY_XPLMGetScreenSize), METH_FASTCALL, "Get Screen Size."},
    {"XPLMGetMouseLocation", CV_FASTCALL(PY_XPLMGetMouseLocation), METH_FASTCALL, "Get Mouse Location."},
    {"XPLMRegisterHotKey", PY_XPLMRegisterHotKey, METH_VARARGS, "Register Hot Key."},
    {"XPLMUnregisterHotKey", PY_XPLMUnregisterHotKey, METH_VARARGS, "Unregister Hot Key."},
    {"XPLMCountHotKeys", PY_XPLMCountHotKeys, METH_VARARGS, "Count the Hot Keys."},
    {"XPLMGetNthHotKey", PY_XPLMGetNthHotKey, METH_VARARGS, "Get Nth Hot Key."},
    {"XPLMGetHotKeyInfo", PY_XPLMGetHotKeyInfo, METH_VARARGS, "Get Hot Key Info."},
    {"XPLMSetHotKeyCombination", PY_XPLMSetHotKeyCombination, METH_VARARGS, "Set the Hot Key Combination."},
    {"XPLMCreateWindow", PY_XPLMCreateWindow, METH_VARARGS, "Creates a window."},
    {"XPLMCreateWindowEx", PY_XPLMCreateWindowEx, METH_VARARGS, "Creates a window using a struct."},
    {"XPLMDestroyWindow", PY_XPLMDestroyWindow, METH_VARARGS, "Destroys a window."},
    {"XPLMGetWindowGeometry", CV_FASTCALL(PY_XPLMGetWindowGeometry), METH_FASTCALL, "Get window geometry."},
    {"XPLMSetWindowGeometry", CV_FASTCALL(PY_XPLMSetWindowGeometry), METH_FASTCALL, "Set window geometry."},
    {"XPLMGetWindowIsVisible", PY_XPLMGetWindowIsVisible, METH_VARARGS, "Get Window is Visible."},
    {"XPLMSetWindowIsVisible", PY_XPLMSetWindowIsVisible, METH_VARARGS, "Set Window is Visible."},
    {"XPLMGetWindowRefCon", PY_XPLMGetWindowRefCon, METH_VARARGS, "Get the Window RefCon."},
    {"XPLMSetWindowRefCon", PY_XPLMSetWindowRefCon, METH_VARARGS, "Set the Window RefCon."},
    {"XPLMTakeKeyboardFocus", PY_XPLMTakeKeyboardFocus, METH_VARARGS, "Take the Keyboard Focus."},
    {"XPLMBringWindowToFront", PY_XPLMBringWindowToFront, METH_VARARGS, "Bring Window to Front."},
    {"XPLMIsWindowInFront", PY_XPLMIsWindowInFront, METH_VARARGS, "Is the Window in Front."},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

PyObject* initXPLMDisplay() { return CV_CreateModule("XPLMDisplay", XPLMDisplayMethods, XPLMDisplayConstants); }
