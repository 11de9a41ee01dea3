// The script module XPWidgetDefs.
#include "BindingModules.h"
#include "BindingSupport.h"

namespace {

PyMethodDef XPWidgetDefsMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPWidgetDefsModule = {PyModuleDef_HEAD_INIT, "XPWidgetDefs", nullptr, -1, XPWidgetDefsMethods};

}  // namespace

PyObject* initXPWidgetDefs() { return CV_CreateModule(&XPWidgetDefsModule); }
