// The script module XPLMGraphics.
#include "BindingModules.h"
#include "BindingSupport.h"

namespace {

PyMethodDef XPLMGraphicsMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMGraphicsModule = {PyModuleDef_HEAD_INIT, "XPLMGraphics", nullptr, -1, XPLMGraphicsMethods};

}  // namespace

PyObject* initXPLMGraphics() { return CV_CreateModule(&XPLMGraphicsModule); }
