// The script module XPLMProcessing.
#include "BindingModules.h"
#include "BindingSupport.h"

namespace {

PyMethodDef XPLMProcessingMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef XPLMProcessingModule = {PyModuleDef_HEAD_INIT, "XPLMProcessing", nullptr, -1, XPLMProcessingMethods};

}  // namespace

PyObject* initXPLMProcessing() { return CV_CreateModule(&XPLMProcessingModule); }
