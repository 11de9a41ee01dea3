// The script module XPLMNavigation and its constants.
#include "BindingModules.h"
#include "BindingSupport.h"

#include <iterator>

namespace {

// Installed in this order, each under its SDK name.
const CV_IntConstant XPLMNavigationConstants[] = {
    // Navaid types.
    {"xplm_Nav_Unknown", 0},
    {"xplm_Nav_Airport", 1},
    {"xplm_Nav_NDB", 2},
    {"xplm_Nav_VOR", 4},
    {"xplm_Nav_ILS", 8},
    {"xplm_Nav_Localizer", 16},
    {"xplm_Nav_GlideSlope", 32},
    {"xplm_Nav_OuterMarker", 64},
    {"xplm_Nav_MiddleMarker", 128},
    {"xplm_Nav_InnerMarker", 256},
    {"xplm_Nav_Fix", 512},
    {"xplm_Nav_DME", 1024},
    {"xplm_Nav_LatLon", 2048},
    // The navaid reference of a failed lookup.
    {"XPLM_NAV_NOT_FOUND", -1},
};

PyMethodDef XPLMNavigationMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

PyObject* initXPLMNavigation() {
    return CV_CreateModule("XPLMNavigation", XPLMNavigationMethods, XPLMNavigationConstants);
}
