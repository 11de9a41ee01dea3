// The script module XPWidgets.
#include "BindingModules.h"
#include "BindingSupport.h"

namespace {

PyMethodDef XPWidgetsMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPWidgetsModule = {PyModuleDef_HEAD_INIT, "XPWidgets", nullptr, -1, XPWidgetsMethods};

}  // namespace

PyObject* initXPWidgets() { return CV_CreateModule(&XPWidgetsModule); }
