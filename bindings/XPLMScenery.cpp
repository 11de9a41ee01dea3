// The script module XPLMScenery and its constants.
#include "BindingModules.h"
#include "BindingSupport.h"

#include <iterator>

namespace {

// Installed in this order, each under its SDK name.
const CV_IntConstant XPLMSceneryConstants[] = {
    // Probe types.
    {"xplm_ProbeY", 0},
    // Probe results.
    {"xplm_ProbeHitTerrain", 0},
    {"xplm_ProbeError", 1},
    {"xplm_ProbeMissed", 2},
};

PyMethodDef XPLMSceneryMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

PyObject* initXPLMScenery() { return CV_CreateModule("XPLMScenery", XPLMSceneryMethods, XPLMSceneryConstants); }
