// The script module XPUIGraphics: drawing the simulator's stock window, element and track art,
// and its constants.
#include <Python.h>

#include <iterator>

#include "BindingModules.h"
#include "BindingSupport.h"
#include "XPUIGraphics.h"

namespace {

// Installed in this order, each under its SDK name.
const CV_IntConstant XPUIGraphicsConstants[] = {
    // Window styles.
    {"xpWindow_Help", 0},
    {"xpWindow_MainWindow", 1},
    {"xpWindow_SubWindow", 2},
    {"xpWindow_Screen", 4},
    {"xpWindow_ListView", 5},
    // Element styles.
    {"xpElement_TextField", 6},
    {"xpElement_CheckBox", 9},
    {"xpElement_CheckBoxLit", 10},
    {"xpElement_WindowCloseBox", 14},
    {"xpElement_WindowCloseBoxPressed", 15},
    {"xpElement_PushButton", 16},
    {"xpElement_PushButtonLit", 17},
    {"xpElement_OilPlatform", 24},
    {"xpElement_OilPlatformSmall", 25},
    {"xpElement_Ship", 26},
    {"xpElement_ILSGlideScope", 27},
    {"xpElement_MarkerLeft", 28},
    {"xpElement_Airport", 29},
    {"xpElement_Waypoint", 30},
    {"xpElement_NDB", 31},
    {"xpElement_VOR", 32},
    {"xpElement_RadioTower", 33},
    {"xpElement_AircraftCarrier", 34},
    {"xpElement_Fire", 35},
    {"xpElement_MarkerRight", 36},
    {"xpElement_CustomObject", 37},
    {"xpElement_CoolingTower", 38},
    {"xpElement_SmokeStack", 39},
    {"xpElement_Building", 40},
    {"xpElement_PowerLine", 41},
    {"xpElement_CopyButtons", 45},
    {"xpElement_CopyButtonsWithEditingGrid", 46},
    {"xpElement_EditingGrid", 47},
    {"xpElement_ScrollBar", 48},
    {"xpElement_VORWithCompassRose", 49},
    {"xpElement_Zoomer", 51},
    {"xpElement_TextFieldMiddle", 52},
    {"xpElement_LittleDownArrow", 53},
    {"xpElement_LittleUpArrow", 54},
    {"xpElement_WindowDragBar", 61},
    {"xpElement_WindowDragBarSmooth", 62},
    // Track styles.
    {"xpTrack_ScrollBar", 0},
    {"xpTrack_Slider", 1},
    {"xpTrack_Progress", 2},
};

const char* const kModule = "XPUIGraphics";

// The drawing functions and the track metrics run every frame: they take their arguments as vectors
// and convert them directly.

PyObject* PY_XPDrawWindow(PyObject*, PyObject* const* args, Py_ssize_t count) {
    int left = 0, bottom = 0, right = 0, top = 0, style = 0;
    if (!CV_ParseArgs(args, count, &left, &bottom, &right, &top, &style)) return nullptr;
    if (!CV_Guarded(
            kModule, "XPDrawWindow", [&] { XPDrawWindow(left, bottom, right, top, style); }, CV_FUNCTION_ERROR))
        return CV_IntResult(0);
    return CV_IntResult(1);
}

PyObject* PY_XPGetWindowDefaultDimensions(PyObject* self, PyObject* args) {
    int style = 0;
    PyObject *outWidth = nullptr, *outHeight = nullptr;
    if (!PyArg_ParseTuple(args, "iOO", &style, &outWidth, &outHeight)) return nullptr;
    if (!CV_CheckOutputList(outWidth) || !CV_CheckOutputList(outHeight)) return nullptr;
    int width = 0, height = 0;
    if (!CV_Guarded(
            kModule, "XPGetWindowDefaultDimensions",
            [&] {
                XPGetWindowDefaultDimensions(style, CV_OutPointer(outWidth, &width), CV_OutPointer(outHeight, &height));
            },
            CV_FUNCTION_ERROR))
        return CV_IntResult(0);
    if (!CV_StoreOutput(outWidth, PyLong_FromLong(width)) || !CV_StoreOutput(outHeight, PyLong_FromLong(height)))
        return nullptr;
    return CV_IntResult(1);
}

PyObject* PY_XPDrawElement(PyObject*, PyObject* const* args, Py_ssize_t count) {
    int left = 0, bottom = 0, right = 0, top = 0, style = 0, lit = 0;
    if (!CV_ParseArgs(args, count, &left, &bottom, &right, &top, &style, &lit)) return nullptr;
    if (!CV_Guarded(
            kModule, "XPDrawElement", [&] { XPDrawElement(left, bottom, right, top, style, lit); }, CV_FUNCTION_ERROR))
        return CV_IntResult(0);
    return CV_IntResult(1);
}

PyObject* PY_XPGetElementDefaultDimensions(PyObject* self, PyObject* args) {
    int style = 0;
    PyObject *outWidth = nullptr, *outHeight = nullptr, *outCanBeLit = nullptr;
    if (!PyArg_ParseTuple(args, "iOOO", &style, &outWidth, &outHeight, &outCanBeLit)) return nullptr;
    if (!CV_CheckOutputList(outWidth) || !CV_CheckOutputList(outHeight) || !CV_CheckOutputList(outCanBeLit))
        return nullptr;
    int width = 0, height = 0, canBeLit = 0;
    if (!CV_Guarded(
            kModule, "XPGetElementDefaultDimensions",
            [&] {
                XPGetElementDefaultDimensions(style, CV_OutPointer(outWidth, &width), CV_OutPointer(outHeight, &height),
                                              CV_OutPointer(outCanBeLit, &canBeLit));
            },
            CV_FUNCTION_ERROR))
        return CV_IntResult(0);
    if (!CV_StoreOutput(outWidth, PyLong_FromLong(width)) || !CV_StoreOutput(outHeight, PyLong_FromLong(height)) ||
        !CV_StoreOutput(outCanBeLit, PyLong_FromLong(canBeLit)))
        return nullptr;
    return CV_IntResult(1);
}

PyObject* PY_XPDrawTrack(PyObject*, PyObject* const* args, Py_ssize_t count) {
    int left = 0, bottom = 0, right = 0, top = 0, minimum = 0, maximum = 0, value = 0, style = 0, lit = 0;
    if (!CV_ParseArgs(args, count, &left, &bottom, &right, &top, &minimum, &maximum, &value, &style, &lit))
        return nullptr;
    if (!CV_Guarded(
            kModule, "XPDrawTrack", [&] { XPDrawTrack(left, bottom, right, top, minimum, maximum, value, style, lit); },
            CV_FUNCTION_ERROR))
        return CV_IntResult(0);
    return CV_IntResult(1);
}

PyObject* PY_XPGetTrackDefaultDimensions(PyObject* self, PyObject* args) {
    int style = 0;
    if (!PyArg_ParseTuple(args, "i", &style)) return nullptr;
    int width = 0, canBeLit = 0;
    if (!CV_Guarded(
            kModule, "XPGetTrackDefaultDimensions", [&] { XPGetTrackDefaultDimensions(style, &width, &canBeLit); },
            CV_FUNCTION_ERROR))
        return Py_BuildValue("(ii)", 0, 0);
    return Py_BuildValue("(ii)", width, canBeLit);
}

PyObject* PY_XPGetTrackMetrics(PyObject*, PyObject* const* args, Py_ssize_t count) {
    int left = 0, bottom = 0, right = 0, top = 0, minimum = 0, maximum = 0, value = 0, style = 0;
    if (!CV_ParseArgs(args, count, &left, &bottom, &right, &top, &minimum, &maximum, &value, &style)) return nullptr;
    int isVertical = 0, downButton = 0, downPage = 0, thumb = 0, upPage = 0, upButton = 0;
    if (!CV_Guarded(
            kModule, "XPGetTrackMetrics",
            [&] {
                XPGetTrackMetrics(left, bottom, right, top, minimum, maximum, value, style, &isVertical, &downButton,
                                  &downPage, &thumb, &upPage, &upButton);
            },
            CV_FUNCTION_ERROR))
        return CV_IntResult(0);
    const int metrics[6] = {isVertical, downButton, downPage, thumb, upPage, upButton};
    CV_PyRef tuple(PyTuple_New(6));
    for (int i = 0; tuple && i < 6; ++i) {
        PyObject* item = PyLong_FromLong(metrics[i]);
        if (item == nullptr) return nullptr;
        PyTuple_SET_ITEM(tuple.get(), i, item);
    }
    return tuple.release();
}

PyMethodDef XPUIGraphicsMethods[] = {
    {"XPDrawWindow", CV_FASTCALL(PY_XPDrawWindow), METH_FASTCALL, "Draw Window."},
    {"XPGetWindowDefaultDimensions", PY_XPGetWindowDefaultDimensions, METH_VARARGS, "Get Window Default Dimensions."},
    {"XPDrawElement", CV_FASTCALL(PY_XPDrawElement), METH_FASTCALL, "Draw Element."},
    {"XPGetElementDefaultDimensions", PY_XPGetElementDefaultDimensions, METH_VARARGS,
     "Get Element Default Dimensions."},
    {"XPDrawTrack", CV_FASTCALL(PY_XPDrawTrack), METH_FASTCALL, "Draw Track."},
    {"XPGetTrackDefaultDimensions", PY_XPGetTrackDefaultDimensions, METH_VARARGS, "Get Track Default Dimensions."},
    {"XPGetTrackMetrics", CV_FASTCALL(PY_XPGetTrackMetrics), METH_FASTCALL, "Get Track Metrics."},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

PyObject* initXPUIGraphics() { return CV_CreateModule("XPUIGraphics", XPUIGraphicsMethods, XPUIGraphicsConstants); }
