// The script module XPUIGraphics.
#include "BindingModules.h"
#include "BindingSupport.h"

namespace {

PyMethodDef XPUIGraphicsMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPUIGraphicsModule = {PyModuleDef_HEAD_INIT, "XPUIGraphics", nullptr, -1, XPUIGraphicsMethods};

}  // namespace

PyObject* initXPUIGraphics() { return CV_CreateModule(&XPUIGraphicsModule); }
