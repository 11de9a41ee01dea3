// The script module XPWidgets: creating, destroying, arranging and querying widgets, and giving
// them widget functions that are a script's methods.
//
// The simulator calls a widget function with the widget id and no refcon, so every widget a script
// creates is recorded in WidgetCallbackList (script, widget, function, is-root flag, container) and
// the plugin's one trampoline, CV_WidgetCallback, finds the record by widget id. Plain widgets are
// recorded too, with no script and no function, so that XPAddWidgetCallback can find them later and
// destroying their container can remove them.
//
// The trampoline reaches records only through the list, so a record is freed as it is taken out.
// Destroying a widget takes out every record of a widget the simulator destroyed with it: a record
// left behind for a dead handle would otherwise catch the messages of a later widget that the
// simulator gives the same address.
#include <Python.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "BindingModules.h"
#include "BindingSupport.h"
#include "CV_ScriptTable.h"
#include "CallbackDispatch.h"
#include "CallbackRegistry.h"
#include "Paths.h"
#include "WidgetMessages.h"
#include "XPWidgets.h"

namespace {

const char* const kModule = "XPWidgets";

// A long index or flag narrowed to the SDK's int; values out of its range become -1, which no
// widget accepts as an index.
int NarrowToInt(long value) {
    return (value < INT32_MIN || value > INT32_MAX) ? -1 : static_cast<int>(value);
}

// ---------------------------------------------------------------- recording widgets

PyObject* PY_XPCreateWidget(PyObject* self, PyObject* args) {
    int left = 0, top = 0, right = 0, bottom = 0, visible = 0, isRoot = 0, widgetClass = 0;
    const char* descriptor = nullptr;
    XPWidgetID container = nullptr;
    if (!PyArg_ParseTuple(args, "iiiiisiO&i", &left, &top, &right, &bottom, &visible, &descriptor, &isRoot,
                          CV_PointerArg, &container, &widgetClass))
        return nullptr;

    XPWidgetID widget = nullptr;
    CV_SDK_GUARD(
        kModule, "XPCreateWidget", CV_IntResult(0),
        widget = XPCreateWidget(left, top, right, bottom, visible, descriptor, isRoot, container, widgetClass));
    // A refused creation made no widget: there is nothing to route messages to.
    if (widget != nullptr)
        CVTestTable->AddWidgetCallback(&WidgetCallbackList, nullptr, widget, nullptr, isRoot, container);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPCreateWidget",
                              CV_FormatText("outWidgetID = %lx, inIsRoot = %d, inContainer = %lx\n", CV_Hex(widget),
                                            isRoot, CV_Hex(container)),
                              {WidgetCallbackList});
    return CV_HandleResult(widget);
}

PyObject* PY_XPCreateCustomWidget(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callable = nullptr;
    int left = 0, top = 0, right = 0, bottom = 0, visible = 0, isRoot = 0;
    const char* descriptor = nullptr;
    // The container is a widget handle like every other (the integer the script holds).
    XPWidgetID container = nullptr;
    if (!PyArg_ParseTuple(args, "OiiiiisiO&O", &scriptId, &left, &top, &right, &bottom, &visible, &descriptor, &isRoot,
                          CV_PointerArg, &container, &callable))
        return nullptr;

    XPWidgetID widget = nullptr;
    CV_SDK_GUARD(kModule, "XPCreateCustomWidget", CV_IntResult(0),
                 widget = XPCreateCustomWidget(left, top, right, bottom, visible, descriptor, isRoot, container,
                                               CV_WidgetCallback));
    if (widget != nullptr) {
        CVTestTable->AddWidgetCallback(&WidgetCallbackList, scriptId, widget, callable, isRoot, container);
        // The simulator's own create message came before the record existed; this one reaches the
        // script's function.
        CV_SDK_GUARD(kModule, "XPCreateCustomWidget", CV_IntResult(0),
                     XPSendMessageToWidget(widget, xpMsg_Create, xpMode_Once, 1, 0));
    }

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPCreateCustomWidget",
                              CV_FormatText("pScriptId = %lx, outWidgetID = %lx, inIsRoot = %d, inContainer = %lx\n",
                                            CV_Hex(scriptId), CV_Hex(widget), isRoot, CV_Hex(container)),
                              {WidgetCallbackList});
    return CV_HandleResult(widget);
}

PyObject* PY_XPAddWidgetCallback(PyObject* self, PyObject* args) {
    const char* const function = "XPAddWidgetCallback";
    PyObject *scriptId = nullptr, *callable = nullptr;
    XPWidgetID widget = nullptr;
    if (!PyArg_ParseTuple(args, "OO&O", &scriptId, CV_PointerArg, &widget, &callable)) return nullptr;

    int found = 0, index = 0;
    CVTestTable->FindWidgetCallback(WidgetCallbackList, widget, &found, &index);
    if (found) {
        CVTestTable->UpdateWidgetCallback(&WidgetCallbackList, scriptId, widget, callable);
    } else {
        char scriptName[256];
        CV_GetScriptNameForMessages(scriptId, scriptName);
        PrintExceptionf(kModule, function, "Script '%s.py' XPAddWidgetCallback Error.", scriptName);
    }
    CV_SDK_GUARD(kModule, function, CV_IntResult(0), XPAddWidgetCallback(widget, CV_WidgetCallback));

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace(function,
                              CV_FormatText("pScriptId = %lx, inWidgetID = %lx\n", CV_Hex(scriptId), CV_Hex(widget)),
                              {WidgetCallbackList});
    return CV_IntResult(1);
}

// The widget and, when its children go with it, every widget below it: what a destruction ends.
// Bounded, so that a tree the SDK reports wrongly can not keep the walk going.
std::vector<XPWidgetID> WidgetsEndedBy(XPWidgetID widget, bool withChildren) {
    const size_t kMostWidgets = 100000;
    std::vector<XPWidgetID> ended{widget};
    if (!withChildren) return ended;
    for (size_t next = 0; next < ended.size() && ended.size() < kMostWidgets; ++next) {
        const int count = XPCountChildWidgets(ended[next]);
        for (int i = 0; i < count && ended.size() < kMostWidgets; ++i) {
            XPWidgetID child = XPGetNthChildWidget(ended[next], i);
            if (child != nullptr && std::find(ended.begin(), ended.end(), child) == ended.end()) ended.push_back(child);
        }
    }
    return ended;
}

// Frees and takes out every record of a widget that no longer exists.
void ForgetEndedWidgets(const std::vector<XPWidgetID>& ended) {
    for (size_t i = 0; i < WidgetCallbackList.size();) {
        _WidgetCallbackListEntry* entry = WidgetCallbackList[i];
        if (entry != nullptr && std::find(ended.begin(), ended.end(), entry->widgetId) != ended.end())
            CVTestTable->DeleteWidgetCallback(&WidgetCallbackList, entry, static_cast<int>(i));
        else
            ++i;
    }
}

PyObject* PY_XPDestroyWidget(PyObject* self, PyObject* args) {
    const char* const function = "XPDestroyWidget";
    PyObject* scriptId = nullptr;
    int destroyChildren = 0;
    XPWidgetID widget = nullptr;
    if (!PyArg_ParseTuple(args, "OO&i", &scriptId, CV_PointerArg, &widget, &destroyChildren)) return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);

    XPWidgetID parent = nullptr;
    std::vector<XPWidgetID> ended;
    CV_SDK_GUARD(kModule, function, CV_IntResult(0), parent = XPGetParentWidget(widget);
                 ended = WidgetsEndedBy(widget, destroyChildren != 0));
    int found = 0, index = 0;
    CVTestTable->FindWidgetCallback(WidgetCallbackList, scriptId, widget, &found, &index);

    // The widgets' functions get their destroy messages from inside this call, through the records
    // that are still in the list; they may change the list meanwhile.
    CV_SDK_GUARD(kModule, function, CV_IntResult(0), XPDestroyWidget(widget, destroyChildren));

    if (found) {
        int again = 0;
        _WidgetCallbackListEntry* entry =
            CVTestTable->FindWidgetCallback(WidgetCallbackList, scriptId, widget, &again, &index);
        if (again) CVTestTable->DeleteWidgetCallback(&WidgetCallbackList, entry, index);
        // Direct children lose their records whether or not they were destroyed with it.
        CVTestTable->DeleteWidgetChildCallbacks(&WidgetCallbackList, scriptId, widget);
    } else if (parent == nullptr) {
        CV_ReportUnknownCallback(kModule, function, scriptName, CV_MatchedBy::Handle);
    }
    ForgetEndedWidgets(ended);

    if (gCV_DebugCallbacks) {
        const std::string details = CV_FormatText("pScriptId = %lx, Script Name = %s, inWidgetID = %lx\n",
                                                  CV_Hex(scriptId), scriptName, CV_Hex(widget));
        if (found || parent == nullptr)
            CV_DebugCallbackTrace(function, details, {WidgetCallbackList});
        else
            CV_DebugCallbackTrace(function, details, {});
    }
    return CV_IntResult(1);
}

// ---------------------------------------------------------------- messages and the tree

PyObject* PY_XPSendMessageToWidget(PyObject* self, PyObject* args) {
    int message = 0, mode = 0;
    XPWidgetID widget = nullptr;
    void *param1 = nullptr, *param2 = nullptr;
    if (!PyArg_ParseTuple(args, "O&iiO&O&", CV_PointerArg, &widget, &message, &mode, CV_PointerArg, &param1,
                          CV_PointerArg, &param2))
        return nullptr;
    const CV_WidgetMessageParams params(message, reinterpret_cast<intptr_t>(param1),
                                        reinterpret_cast<intptr_t>(param2));
    if (!params.Usable()) {
        CV_ReportUnusableMessage(kModule, "XPSendMessageToWidget");
        return CV_IntResult(0);
    }
    int handled = 0;
    CV_SDK_GUARD(kModule, "XPSendMessageToWidget", CV_IntResult(0),
                 handled = XPSendMessageToWidget(widget, message, mode, params.Param1(), params.Param2()));
    params.CopyBack();
    return CV_IntResult(handled);
}

PyObject* PY_XPPlaceWidgetWithin(PyObject* self, PyObject* args) {
    XPWidgetID widget = nullptr;
    XPWidgetID container = nullptr;
    if (!PyArg_ParseTuple(args, "O&O&", CV_PointerArg, &widget, CV_PointerArg, &container)) return nullptr;
    CV_SDK_GUARD(kModule, "XPPlaceWidgetWithin", CV_IntResult(0), XPPlaceWidgetWithin(widget, container));
    return CV_IntResult(1);
}

CV_PLAIN_BINDING(kModule, XPCountChildWidgets)

PyObject* PY_XPGetNthChildWidget(PyObject* self, PyObject* args) {
    long index = 0;
    XPWidgetID widget = nullptr;
    if (!PyArg_ParseTuple(args, "O&l", CV_PointerArg, &widget, &index)) return nullptr;
    XPWidgetID child = nullptr;
    CV_SDK_GUARD(kModule, "XPGetNthChildWidget", CV_IntResult(0),
                 child = XPGetNthChildWidget(widget, NarrowToInt(index)));
    return CV_HandleResult(child);
}

CV_PLAIN_BINDING(kModule, XPGetParentWidget)
CV_PLAIN_BINDING(kModule, XPShowWidget)
CV_PLAIN_BINDING(kModule, XPHideWidget)
CV_PLAIN_BINDING(kModule, XPIsWidgetVisible)
CV_PLAIN_BINDING(kModule, XPFindRootWidget)
CV_PLAIN_BINDING(kModule, XPBringRootWidgetToFront)
CV_PLAIN_BINDING(kModule, XPIsWidgetInFront)

// ---------------------------------------------------------------- geometry

// Custom widgets read and set geometry, descriptors and properties every frame: these functions take
// their arguments as vectors and convert them directly.

template <void (*Sdk)(XPWidgetID, int*, int*, int*, int*)>
PyObject* GetGeometry(PyObject* const* args, Py_ssize_t count, const char* function) {
    PyObject* outs[4] = {nullptr, nullptr, nullptr, nullptr};
    XPWidgetID widget = nullptr;
    if (!CV_ParseArgs(args, count, CV_Handle(&widget), &outs[0], &outs[1], &outs[2], &outs[3])) return nullptr;
    for (PyObject* out : outs)
        if (!CV_CheckOutputList(out)) return nullptr;
    int values[4] = {0, 0, 0, 0};
    CV_SDK_GUARD(kModule, function, CV_IntResult(0),
                 Sdk(widget, CV_OutPointer(outs[0], &values[0]), CV_OutPointer(outs[1], &values[1]),
                     CV_OutPointer(outs[2], &values[2]), CV_OutPointer(outs[3], &values[3])));
    for (int i = 0; i < 4; ++i)
        if (!CV_StoreOutput(outs[i], PyLong_FromLong(values[i]))) return nullptr;
    return CV_IntResult(1);
}

PyObject* PY_XPGetWidgetGeometry(PyObject*, PyObject* const* args, Py_ssize_t count) {
    return GetGeometry<XPGetWidgetGeometry>(args, count, "XPGetWidgetGeometry");
}
PyObject* PY_XPGetWidgetExposedGeometry(PyObject*, PyObject* const* args, Py_ssize_t count) {
    return GetGeometry<XPGetWidgetExposedGeometry>(args, count, "XPGetWidgetExposedGeometry");
}

PyObject* PY_XPSetWidgetGeometry(PyObject*, PyObject* const* args, Py_ssize_t count) {
    int left = 0, top = 0, right = 0, bottom = 0;
    XPWidgetID widget = nullptr;
    if (!CV_ParseArgs(args, count, CV_Handle(&widget), &left, &top, &right, &bottom)) return nullptr;
    CV_SDK_GUARD(kModule, "XPSetWidgetGeometry", CV_IntResult(0),
                 XPSetWidgetGeometry(widget, left, top, right, bottom));
    return CV_IntResult(1);
}

PyObject* PY_XPGetWidgetForLocation(PyObject* self, PyObject* args) {
    int x = 0, y = 0;
    long recursive = 0, visibleOnly = 0;
    XPWidgetID container = nullptr;
    if (!PyArg_ParseTuple(args, "O&iill", CV_PointerArg, &container, &x, &y, &recursive, &visibleOnly)) return nullptr;
    XPWidgetID found = nullptr;
    CV_SDK_GUARD(kModule, "XPGetWidgetForLocation", CV_IntResult(0),
                 found = XPGetWidgetForLocation(container, x, y, recursive != 0, visibleOnly != 0));
    return CV_HandleResult(found);
}

// ---------------------------------------------------------------- descriptor and properties

PyObject* PY_XPSetWidgetDescriptor(PyObject*, PyObject* const* args, Py_ssize_t count) {
    const char* text = nullptr;
    XPWidgetID widget = nullptr;
    if (!CV_ParseArgs(args, count, CV_Handle(&widget), &text)) return nullptr;
    CV_SDK_GUARD(kModule, "XPSetWidgetDescriptor", CV_IntResult(0), XPSetWidgetDescriptor(widget, text));
    return CV_IntResult(1);
}

PyObject* PY_XPGetWidgetDescriptor(PyObject*, PyObject* const* args, Py_ssize_t count) {
    PyObject* out = nullptr;
    int maximum = 0;
    XPWidgetID widget = nullptr;
    if (!CV_ParseArgs(args, count, CV_Handle(&widget), &out, &maximum)) return nullptr;
    if (!CV_CheckOutputList(out)) return nullptr;
    if (maximum < 0) maximum = 0;
    // One byte more than the SDK may fill, so the text always ends.
    CV_Buffer<char> buffer(out == Py_None ? 0 : static_cast<size_t>(maximum) + 1);
    if (!buffer) return PyErr_NoMemory();
    int length = 0;
    CV_SDK_GUARD(kModule, "XPGetWidgetDescriptor", Py_BuildValue("(is)", 0, ""),
                 length = XPGetWidgetDescriptor(widget, out == Py_None ? nullptr : buffer.get(), maximum));
    if (out != Py_None && !CV_AppendOutput(out, CV_BufferText(buffer.get(), static_cast<size_t>(maximum))))
        return nullptr;
    return CV_IntResult(length);
}

PyObject* PY_XPSetWidgetProperty(PyObject*, PyObject* const* args, Py_ssize_t count) {
    int property = 0;
    XPWidgetID widget = nullptr;
    void* value = nullptr;
    if (!CV_ParseArgs(args, count, CV_Handle(&widget), &property, CV_Handle(&value))) return nullptr;
    CV_SDK_GUARD(kModule, "XPSetWidgetProperty", CV_IntResult(0),
                 XPSetWidgetProperty(widget, property, reinterpret_cast<intptr_t>(value)));
    return CV_IntResult(1);
}

PyObject* PY_XPGetWidgetProperty(PyObject*, PyObject* const* args, Py_ssize_t count) {
    PyObject* outExists = nullptr;
    int property = 0;
    XPWidgetID widget = nullptr;
    if (!CV_ParseArgs(args, count, CV_Handle(&widget), &property, &outExists)) return nullptr;
    if (!CV_CheckOutputList(outExists)) return nullptr;
    int exists = 0;
    intptr_t value = 0;
    CV_SDK_GUARD(kModule, "XPGetWidgetProperty", CV_IntResult(0),
                 value = XPGetWidgetProperty(widget, property, CV_OutPointer(outExists, &exists)));
    if (!CV_StoreOutput(outExists, PyLong_FromLong(exists))) return nullptr;
    return PyLong_FromSsize_t(static_cast<Py_ssize_t>(value));
}

// ---------------------------------------------------------------- keyboard focus and classes

CV_PLAIN_BINDING(kModule, XPSetKeyboardFocus)
CV_PLAIN_BINDING(kModule, XPLoseKeyboardFocus)

PyObject* PY_XPGetWidgetWithFocus(PyObject* self, PyObject* args) {
    XPWidgetID widget = nullptr;
    if (!CV_Guarded(
            kModule, "XPGetWidgetWithFocus", [&] { widget = XPGetWidgetWithFocus(); }, CV_FUNCTION_ERROR))
        return CV_IntResult(0);
    return CV_HandleResult(widget);
}

PyObject* PY_XPGetWidgetClassFunc(PyObject* self, PyObject* args) {
    int widgetClass = 0;
    if (!PyArg_ParseTuple(args, "i", &widgetClass)) return nullptr;
    XPWidgetFunc_t classFunction = nullptr;
    if (!CV_Guarded(
            kModule, "XPGetWidgetClassFunc", [&] { classFunction = XPGetWidgetClassFunc(widgetClass); },
            CV_FUNCTION_ERROR))
        return CV_IntResult(0);
    return CV_HandleResult(reinterpret_cast<void*>(classFunction));
}

PyMethodDef XPWidgetsMethods[] = {
    {"XPCreateWidget", PY_XPCreateWidget, METH_VARARGS, "Create Widget."},
    {"XPCreateCustomWidget", PY_XPCreateCustomWidget, METH_VARARGS, "Create Custom Widget."},
    {"XPDestroyWidget", PY_XPDestroyWidget, METH_VARARGS, "Destroy Widget."},
    {"XPSendMessageToWidget", PY_XPSendMessageToWidget, METH_VARARGS, "Send Message To Widget."},
    {"XPPlaceWidgetWithin", PY_XPPlaceWidgetWithin, METH_VARARGS, "Place Widget Within."},
    {"XPCountChildWidgets", PY_XPCountChildWidgets, METH_VARARGS, "Count Child Widgets."},
    {"XPGetNthChildWidget", PY_XPGetNthChildWidget, METH_VARARGS, "Get Nth Child Widget."},
    {"XPGetParentWidget", PY_XPGetParentWidget, METH_VARARGS, "Get Parent Widget."},
    {"XPShowWidget", PY_XPShowWidget, METH_VARARGS, "Show Widget."},
    {"XPHideWidget", PY_XPHideWidget, METH_VARARGS, "Hide Widget."},
    {"XPIsWidgetVisible", PY_XPIsWidgetVisible, METH_VARARGS, "Is Widget Visible."},
    {"XPFindRootWidget", PY_XPFindRootWidget, METH_VARARGS, "Find Root Widget."},
    {"XPBringRootWidgetToFront", PY_XPBringRootWidgetToFront, METH_VARARGS, "Bring Root Widget To Front."},
    {"XPIsWidgetInFront", PY_XPIsWidgetInFront, METH_VARARGS, "Is Widget In Front."},
    {"XPGetWidgetGeometry", CV_FASTCALL(PY_XPGetWidgetGeometry), METH_FASTCALL, "Get Widget Geometry."},
    {"XPSetWidgetGeometry", CV_FASTCALL(PY_XPSetWidgetGeometry), METH_FASTCALL, "Set Widget Geometry."},
    {"XPGetWidgetForLocation", PY_XPGetWidgetForLocation, METH_VARARGS, "Get Widget For Location."},
    {"XPGetWidgetExposedGeometry", CV_FASTCALL(PY_XPGetWidgetExposedGeometry), METH_FASTCALL,
     "Get Widget Exposed Geometry."},
    {"XPSetWidgetDescriptor", CV_FASTCALL(PY_XPSetWidgetDescriptor), METH_FASTCALL, "Set Widget Descriptor."},
    {"XPGetWidgetDescriptor", CV_FASTCALL(PY_XPGetWidgetDescriptor), METH_FASTCALL, "Get Widget Descriptor."},
    {"XPSetWidgetProperty", CV_FASTCALL(PY_XPSetWidgetProperty), METH_FASTCALL, "Set Widget Property."},
    {"XPGetWidgetProperty", CV_FASTCALL(PY_XPGetWidgetProperty), METH_FASTCALL, "Get Widget Property."},
    {"XPSetKeyboardFocus", PY_XPSetKeyboardFocus, METH_VARARGS, "Set Keyboard Focus."},
    {"XPLoseKeyboardFocus", PY_XPLoseKeyboardFocus, METH_VARARGS, "Lose Keyboard Focus."},
    {"XPGetWidgetWithFocus", PY_XPGetWidgetWithFocus, METH_VARARGS, "Get Widget With Focus."},
    {"XPAddWidgetCallback", PY_XPAddWidgetCallback, METH_VARARGS, "Add Widget Callback."},
    {"XPGetWidgetClassFunc", PY_XPGetWidgetClassFunc, METH_VARARGS, "Get Widget Class Function."},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

PyObject* initXPWidgets() { return CV_CreateModule("XPWidgets", XPWidgetsMethods); }
