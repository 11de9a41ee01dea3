// The script module XPWidgetUtils.
#include "BindingModules.h"
#include "BindingSupport.h"

namespace {

PyMethodDef XPWidgetUtilsMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPWidgetUtilsModule = {PyModuleDef_HEAD_INIT, "XPWidgetUtils", nullptr, -1, XPWidgetUtilsMethods};

}  // namespace

PyObject* initXPWidgetUtils() { return CV_CreateModule(&XPWidgetUtilsModule); }
