// The script module BrindleVCUtilities.
#include "BindingModules.h"
#include "BindingSupport.h"

namespace {

PyMethodDef BrindleVCUtilitiesMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef BrindleVCUtilitiesModule = {PyModuleDef_HEAD_INIT, "BrindleVCUtilities", nullptr, -1, BrindleVCUtilitiesMethods};

}  // namespace

PyObject* initBrindleVCUtilities() { return CV_CreateModule(&BrindleVCUtilitiesModule); }
