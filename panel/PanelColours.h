// The simulator's interface colours as the panel's own widgets (list box, popup menu) draw them.
#pragma once

// The colour indices: the simulator's interface colours in this order.
enum {
    CV_Colour_MenuDark = 0,
    CV_Colour_MenuBackground,
    CV_Colour_MenuHilite,
    CV_Colour_MenuLite,
    CV_Colour_MenuText,
    CV_Colour_MenuTextDisabled,
    CV_Colour_SubtitleText,
    CV_Colour_TabFront,
    CV_Colour_TabBack,
    CV_Colour_CaptionText,
    CV_Colour_ListText,
    CV_Colour_GlassText,
    CV_ColourCount
};

// The alpha that SetupAmbientColor gives the current drawing colour (1.0 at the start).
extern float gAlphaLevel;
void SetAlphaLevels(float alpha);

// Reads colour `colorIndex` (0 to 11) from the simulator's colour datarefs, or, where the simulator
// lacks one, the backup colour scaled by the cockpit light level. With rgbOut the colour is written
// there; with a null rgbOut it becomes the current OpenGL colour, with alpha gAlphaLevel. An index
// outside 0 to 11 gives black.
void SetupAmbientColor(int colorIndex, float* rgbOut);

// The backup colour of an index, before the light level is applied (black outside 0 to 11).
void CV_BackupColour(int colorIndex, float rgbOut[3]);

// Forgets the looked-up datarefs, so that the next SetupAmbientColor looks them up again (the plugin
// stopping; a later start may meet another simulator's datarefs).
void CV_ForgetAmbientColours();
