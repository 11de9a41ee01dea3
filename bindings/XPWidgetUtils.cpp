// The script module XPWidgetUtils and its constants.
#include "BindingModules.h"
#include "BindingSupport.h"

#include <iterator>

namespace {

// Installed in this order, each under its SDK name.
const CV_IntConstant XPWidgetUtilsConstants[] = {
    // Parent markers of widget creation tables.
    {"NO_PARENT", -1},
    {"PARAM_PARENT", -2},
};

PyMethodDef XPWidgetUtilsMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPWidgetUtilsModule = {PyModuleDef_HEAD_INIT, "XPWidgetUtils", nullptr, -1, XPWidgetUtilsMethods};

}  // namespace

PyObject* initXPWidgetUtils() {
    return CV_CreateModule(&XPWidgetUtilsModule, XPWidgetUtilsConstants, std::size(XPWidgetUtilsConstants));
}
