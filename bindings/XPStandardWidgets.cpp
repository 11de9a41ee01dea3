// The script module XPStandardWidgets.
#include "BindingModules.h"
#include "BindingSupport.h"

namespace {

PyMethodDef XPStandardWidgetsMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPStandardWidgetsModule = {PyModuleDef_HEAD_INIT, "XPStandardWidgets", nullptr, -1, XPStandardWidgetsMethods};

}  // namespace

PyObject* initXPStandardWidgets() { return CV_CreateModule(&XPStandardWidgetsModule); }
