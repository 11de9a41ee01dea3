// The interface colours of the panel's own widgets.
#include "PanelColours.h"

#include <GL/gl.h>

#include "XPLMDataAccess.h"

float gAlphaLevel = 1.0f;

namespace {

const char* const kXPlaneColorNames[CV_ColourCount] = {
    "sim/graphics/colors/menu_dark_rgb",    "sim/graphics/colors/menu_bkgnd_rgb",
    "sim/graphics/colors/menu_hilite_rgb",  "sim/graphics/colors/menu_lite_rgb",
    "sim/graphics/colors/menu_text_rgb",    "sim/graphics/colors/menu_text_disabled_rgb",
    "sim/graphics/colors/subtitle_text_rgb", "sim/graphics/colors/tab_front_rgb",
    "sim/graphics/colors/tab_back_rgb",     "sim/graphics/colors/caption_text_rgb",
    "sim/graphics/colors/list_text_rgb",    "sim/graphics/colors/glass_text_rgb",
};

const float kBackupColors[CV_ColourCount][3] = {
    {33.0f / 256, 41.0f / 256, 44.0f / 256},
    {53.0f / 256, 64.0f / 256, 68.0f / 256},
    {65.0f / 256, 83.0f / 256, 89.0f / 256},
    {65.0f / 256, 83.0f / 256, 89.0f / 256},
    {0.8f, 0.8f, 0.8f},
    {0.4f, 0.4f, 0.4f},
    {0.0f, 0.0f, 0.0f},
    {0.0f, 0.0f, 0.0f},
    {0.0f, 0.0f, 0.0f},
    {0.0f, 0.0f, 0.0f},
    {0.0f, 0.0f, 0.0f},
    {0.0f, 0.0f, 0.0f},
};

bool gColorRefsFound = false;
XPLMDataRef gColorRefs[CV_ColourCount] = {nullptr};

bool gLightLevelFound = false;
XPLMDataRef gLightLevel[3] = {nullptr};

void FindColorRefs() {
    if (gColorRefsFound) return;
    gColorRefsFound = true;
    for (int i = 0; i < CV_ColourCount; ++i) gColorRefs[i] = XPLMFindDataRef(kXPlaneColorNames[i]);
}

void FindLightLevel() {
    if (gLightLevelFound) return;
    gLightLevelFound = true;
    gLightLevel[0] = XPLMFindDataRef("sim/graphics/misc/cockpit_light_level_r");
    gLightLevel[1] = XPLMFindDataRef("sim/graphics/misc/cockpit_light_level_g");
    gLightLevel[2] = XPLMFindDataRef("sim/graphics/misc/cockpit_light_level_b");
}

}  // namespace

void SetAlphaLevels(float alpha) { gAlphaLevel = alpha; }

void CV_BackupColour(int colorIndex, float rgbOut[3]) {
    for (int i = 0; i < 3; ++i)
        rgbOut[i] = colorIndex >= 0 && colorIndex < CV_ColourCount ? kBackupColors[colorIndex][i] : 0.0f;
}

void SetupAmbientColor(int colorIndex, float* rgbOut) {
    FindColorRefs();
    float local[3] = {0.0f, 0.0f, 0.0f};
    float* rgb = rgbOut != nullptr ? rgbOut : local;
    const bool known = colorIndex >= 0 && colorIndex < CV_ColourCount;
    if (known && gColorRefs[colorIndex] != nullptr) {
        float read[3] = {0.0f, 0.0f, 0.0f};
        XPLMGetDatavf(gColorRefs[colorIndex], read, 0, 3);
        for (int i = 0; i < 3; ++i) rgb[i] = read[i];
    } else {
        FindLightLevel();
        CV_BackupColour(colorIndex, rgb);
        for (int i = 0; i < 3; ++i) rgb[i] *= gLightLevel[i] != nullptr ? XPLMGetDataf(gLightLevel[i]) : 0.0f;
    }
    if (rgbOut == nullptr) {
        const GLfloat colour[4] = {rgb[0], rgb[1], rgb[2], gAlphaLevel};
        glColor4fv(colour);
    }
}

void CV_ForgetAmbientColours() {
    gColorRefsFound = false;
    gLightLevelFound = false;
    for (XPLMDataRef& ref : gColorRefs) ref = nullptr;
    for (XPLMDataRef& ref : gLightLevel) ref = nullptr;
    gAlphaLevel = 1.0f;
}
