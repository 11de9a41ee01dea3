// The script module XPWidgetUtils: building dialogs from tables, and the layout and behaviour
// helpers that widget functions call; and its constants.
#include <Python.h>

#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

#include "BindingModules.h"
#include "BindingSupport.h"
#include "WidgetMessages.h"
#include "XPWidgetUtils.h"
#include "XPWidgets.h"

namespace {

// Installed in this order, each under its SDK name.
const CV_IntConstant XPWidgetUtilsConstants[] = {
    // Parent markers of widget creation tables.
    {"NO_PARENT", -1},
    {"PARAM_PARENT", -2},
};

const char* const kModule = "XPWidgetUtils";

PyObject* PY_XPUMoveWidgetBy(PyObject* self, PyObject* args) {
    int dx = 0, dy = 0;
    XPWidgetID widget = nullptr;
    if (!PyArg_ParseTuple(args, "O&ii", CV_PointerArg, &widget, &dx, &dy)) return nullptr;
    CV_SDK_GUARD(kModule, "XPUMoveWidgetBy", CV_IntResult(0), XPUMoveWidgetBy(widget, dx, dy));
    return CV_IntResult(1);
}

PyObject* PY_XPUFixedLayout(PyObject* self, PyObject* args) {
    int message = 0;
    long param1 = 0, param2 = 0;
    XPWidgetID widget = nullptr;
    if (!PyArg_ParseTuple(args, "iO&ll", &message, CV_PointerArg, &widget, &param1, &param2)) return nullptr;
    const CV_WidgetMessageParams params(message, param1, param2);
    if (!params.Usable()) {
        CV_ReportUnusableMessage(kModule, "XPUFixedLayout");
        return CV_IntResult(0);
    }
    int handled = 0;
    CV_SDK_GUARD(kModule, "XPUFixedLayout", CV_IntResult(0),
                 handled = XPUFixedLayout(message, widget, params.Param1(), params.Param2()));
    params.CopyBack();
    return CV_IntResult(handled);
}

// XPUSelectIfNeeded and XPUDefocusKeyboard: a message, its widget and parameters, and an eat-click flag.
template <int (*Sdk)(XPWidgetMessage, XPWidgetID, intptr_t, intptr_t, int)>
PyObject* MessageHelper(PyObject* args, const char* function) {
    int message = 0, eatClick = 0;
    long param1 = 0, param2 = 0;
    XPWidgetID widget = nullptr;
    if (!PyArg_ParseTuple(args, "iO&lli", &message, CV_PointerArg, &widget, &param1, &param2, &eatClick))
        return nullptr;
    const CV_WidgetMessageParams params(message, param1, param2);
    if (!params.Usable()) {
        CV_ReportUnusableMessage(kModule, function);
        return CV_IntResult(0);
    }
    int handled = 0;
    CV_SDK_GUARD(kModule, function, CV_IntResult(0),
                 handled = Sdk(message, widget, params.Param1(), params.Param2(), eatClick));
    params.CopyBack();
    return CV_IntResult(handled);
}

PyObject* PY_XPUSelectIfNeeded(PyObject* self, PyObject* args) {
    return MessageHelper<XPUSelectIfNeeded>(args, "XPUSelectIfNeeded");
}
PyObject* PY_XPUDefocusKeyboard(PyObject* self, PyObject* args) {
    return MessageHelper<XPUDefocusKeyboard>(args, "XPUDefocusKeyboard");
}

// The script gives only the left edge of the drag area; its top, right and bottom are the widget's
// own, so the area runs from that left edge across the rest of the widget.
PyObject* PY_XPUDragWidget(PyObject* self, PyObject* args) {
    int message = 0, left = 0;
    long param1 = 0, param2 = 0;
    XPWidgetID widget = nullptr;
    if (!PyArg_ParseTuple(args, "iO&lli", &message, CV_PointerArg, &widget, &param1, &param2, &left)) return nullptr;
    const CV_WidgetMessageParams params(message, param1, param2);
    if (!params.Usable()) {
        CV_ReportUnusableMessage(kModule, "XPUDragWidget");
        return CV_IntResult(0);
    }
    int handled = 0;
    CV_SDK_GUARD(kModule, "XPUDragWidget", CV_IntResult(0), int top = 0; int right = 0; int bottom = 0;
                 XPGetWidgetGeometry(widget, nullptr, &top, &right, &bottom);
                 handled = XPUDragWidget(message, widget, params.Param1(), params.Param2(), left, top, right, bottom));
    params.CopyBack();
    return CV_IntResult(handled);
}

// One row of a widget table as the script wrote it: [left, top, right, bottom, visible, descriptor,
// is-root, container index, widget class], a list.
bool ReadDefinition(PyObject* item, int number, int count, XPWidgetCreate_t* definition, std::string* descriptor) {
    if (!PyList_Check(item) || PyList_GET_SIZE(item) < 9) {
        PyErr_Format(PyExc_TypeError, "expected a list of 9 items for widget definition %d", number);
        return false;
    }
    int values[9] = {0};
    for (int field = 0; field < 9; ++field) {
        if (field == 5) continue;
        PyObject* value = PyList_GET_ITEM(item, field);
        if (!PyLong_Check(value)) {
            PyErr_Format(PyExc_TypeError, "expected an integer for item %d of widget definition %d", field, number);
            return false;
        }
        const long wide = PyLong_AsLong(value);
        if (wide == -1 && PyErr_Occurred()) return false;
        if (wide < INT32_MIN || wide > INT32_MAX) {
            PyErr_Format(PyExc_OverflowError, "item %d of widget definition %d is too large", field, number);
            return false;
        }
        values[field] = static_cast<int>(wide);
    }
    PyObject* text = PyList_GET_ITEM(item, 5);
    if (!PyUnicode_Check(text)) {
        PyErr_Format(PyExc_TypeError, "expected a string for item 5 of widget definition %d", number);
        return false;
    }
    Py_ssize_t size = 0;
    const char* utf8 = PyUnicode_AsUTF8AndSize(text, &size);
    if (utf8 == nullptr) return false;
    descriptor->assign(utf8, static_cast<size_t>(size));
    const int container = values[7];
    // The SDK takes a container index as an index into the handles it is filling.
    if (container != NO_PARENT && container != PARAM_PARENT && (container < 0 || container >= count)) {
        PyErr_Format(PyExc_ValueError, "widget definition %d: container index %d is not in the table", number,
                     container);
        return false;
    }
    *definition = XPWidgetCreate_t{values[0], values[1], values[2], values[3], values[4], nullptr,
                                   values[6], container,  values[8]};
    return true;
}

PyObject* PY_XPUCreateWidgets(PyObject* self, PyObject* args) {
    PyObject *table = nullptr, *outWidgets = nullptr;
    long count = 0;
    XPWidgetID parent = nullptr;
    if (!PyArg_ParseTuple(args, "OlO&O", &table, &count, CV_PointerArg, &parent, &outWidgets)) return nullptr;
    if (!PyList_Check(table)) {
        PyErr_SetString(PyExc_TypeError, "expected sequence");
        return nullptr;
    }
    if (!CV_CheckOutputList(outWidgets)) return nullptr;
    if (count < 0) count = 0;
    if (count > PyList_GET_SIZE(table)) {
        PyErr_Format(PyExc_ValueError, "%ld widget definitions asked for, %zd given", count, PyList_GET_SIZE(table));
        return nullptr;
    }
    // Everything is read and copied before the SDK runs: creating widgets sends messages that may
    // run script code, which could change the table under the SDK.
    std::vector<XPWidgetCreate_t> definitions(static_cast<size_t>(count));
    std::vector<std::string> descriptors(static_cast<size_t>(count));
    for (long i = 0; i < count; ++i)
        if (!ReadDefinition(PyList_GET_ITEM(table, i), static_cast<int>(i), static_cast<int>(count), &definitions[i],
                            &descriptors[i]))
            return nullptr;
    for (long i = 0; i < count; ++i) definitions[i].descriptor = descriptors[i].c_str();

    std::vector<XPWidgetID> widgets(static_cast<size_t>(count), nullptr);
    CV_SDK_GUARD(kModule, "XPUCreateWidgets", Py_BuildValue("(i)", 0),
                 if (count > 0) XPUCreateWidgets(definitions.data(), static_cast<int>(count), parent, widgets.data()));
    if (outWidgets != Py_None)
        for (XPWidgetID widget : widgets)
            if (!CV_AppendOutput(outWidgets, CV_HandleResult(widget))) return nullptr;
    return Py_BuildValue("(i)", 1);
}

PyMethodDef XPWidgetUtilsMethods[] = {
    {"XPUCreateWidgets", PY_XPUCreateWidgets, METH_VARARGS, "Create Widgets."},
    {"XPUMoveWidgetBy", PY_XPUMoveWidgetBy, METH_VARARGS, "Move Widget By."},
    {"XPUFixedLayout", PY_XPUFixedLayout, METH_VARARGS, "Fixed Layout."},
    {"XPUSelectIfNeeded", PY_XPUSelectIfNeeded, METH_VARARGS, "Select If Needed."},
    {"XPUDefocusKeyboard", PY_XPUDefocusKeyboard, METH_VARARGS, "Defocus Keyboard."},
    {"XPUDragWidget", PY_XPUDragWidget, METH_VARARGS, "Drag Widget."},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

PyObject* initXPWidgetUtils() { return CV_CreateModule("XPWidgetUtils", XPWidgetUtilsMethods, XPWidgetUtilsConstants); }
