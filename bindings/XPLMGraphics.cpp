// The script module XPLMGraphics and its constants.
#include "BindingModules.h"
#include "BindingSupport.h"

#include <iterator>

namespace {

// Installed in this order, each under its SDK name.
const CV_IntConstant XPLMGraphicsConstants[] = {
    // Texture ids.
    {"xplm_Tex_GeneralInterface", 0},
    {"xplm_Tex_AircraftPaint", 1},
    {"xplm_Tex_AircraftLiteMap", 2},
    // Fonts.
    {"xplmFont_Basic", 0},
    {"xplmFont_Menus", 1},
    {"xplmFont_Metal", 2},
    {"xplmFont_Led", 3},
    {"xplmFont_LedWide", 4},
    {"xplmFont_PanelHUD", 5},
    {"xplmFont_PanelEFIS", 6},
    {"xplmFont_PanelGPS", 7},
    {"xplmFont_RadiosGA", 8},
    {"xplmFont_RadiosBC", 9},
    {"xplmFont_RadiosHM", 10},
    {"xplmFont_RadiosGANarrow", 11},
    {"xplmFont_RadiosBCNarrow", 12},
    {"xplmFont_RadiosHMNarrow", 13},
    {"xplmFont_Timer", 14},
    {"xplmFont_FullRound", 15},
    {"xplmFont_SmallRound", 16},
    {"xplmFont_Menus_Localized", 17},
    {"xplmFont_Proportional", 18},
};

PyMethodDef XPLMGraphicsMethods[] = {
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

PyObject* initXPLMGraphics() { return CV_CreateModule("XPLMGraphics", XPLMGraphicsMethods, XPLMGraphicsConstants); }
