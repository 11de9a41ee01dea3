// The script module XPLMPlanes and its constants.
#include "BindingModules.h"
#include "BindingSupport.h"

#include <iterator>

namespace {

// Installed in this order, each under its SDK name.
const CV_IntConstant XPLMPlanesConstants[] = {
    // The user's own aircraft.
    {"XPLM_USER_AIRCRAFT", 0},
};

PyMethodDef XPLMPlanesMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

PyObject* initXPLMPlanes() { return CV_CreateModule("XPLMPlanes", XPLMPlanesMethods, XPLMPlanesConstants); }
