// The graphics the SDK offers headless: the OpenGL state plugins set through the simulator, the
// textures they bind and generate, the simulator's fonts and the text, numbers and boxes they draw.
//
// The state and the texture bindings are kept as the simulator's cache of them would be; what is drawn
// goes to the frame's drawing record (world/Drawing.h), one line per thing drawn, and onto the screen
// (world/Screen.h) in the 2-d phases, and only while the sim draws (InDrawing): a drawing function
// called from a flight loop, a menu handler or XPluginStart draws nothing and is reported.
//
// Fonts: every XPLMFontID has a fixed character width and height. The monospaced fonts draw every
// byte at the character width; xplmFont_Proportional has a width per character (ProportionalWidth)
// whose digits are as wide as the font's reported width, as are the bytes the table does not name,
// and whose printable ASCII characters average that width (rounded to a whole pixel). Texts are
// counted in bytes, as the SDK counts them.
#pragma once

#include <string>

#include "XPLMGraphics.h"
#include "world/Export.h"

namespace xpsim {

// ------------------------------------------------------------------ control interface

// Texture units 0 to kTextureUnits - 1 exist; XPLMSetGraphicsState enables 0 to kTextureUnits.
constexpr int kTextureUnits = 4;
// The simulator's own textures (XPLMGetTexture): xplm_Tex_GeneralInterface, xplm_Tex_AircraftPaint and
// xplm_Tex_AircraftLiteMap are these numbers plus 0, 1 and 2. Generated numbers start at
// kFirstGeneratedTexture, so they never meet the simulator's.
constexpr int kFirstSimTexture = 1;
constexpr int kFirstGeneratedTexture = 1000;

// The state XPLMSetGraphicsState last set (everything off and no texture units at the start). The
// switches are 0 or 1.
struct GraphicsState {
    int fog = 0;
    int textureUnits = 0;
    int lighting = 0;
    int alphaTesting = 0;
    int alphaBlending = 0;
    int depthTesting = 0;
    int depthWriting = 0;
};
XPSIM_API GraphicsState CurrentGraphicsState();
// The texture bound to a unit (0, none, at the start); 0 for a unit that does not exist.
XPSIM_API int BoundTexture(int unit);
// How many texture numbers XPLMGenerateTextureNumbers has handed out in this run.
XPSIM_API int GeneratedTextureCount();

// A font's metrics; false for an id that is no XPLMFontID.
struct FontMetrics {
    const char* name;  // the SDK's name, "xplmFont_Basic"
    int charWidth;
    int charHeight;
    int digitsOnly;
};
XPSIM_API bool FindFont(int font, FontMetrics& metrics);
// The width of one byte in xplmFont_Proportional.
XPSIM_API int ProportionalWidth(unsigned char c);

// ------------------------------------------------------------------ inside the library

void SetGraphicsState(int fog, int textureUnits, int lighting, int alphaTesting, int alphaBlending,
                      int depthTesting, int depthWriting);
void BindTexture2d(int texture, int unit);
void GenerateTextureNumbers(int* out, int count);
int GetTexture(XPLMTextureID texture);

// The dark box is black at this opacity.
constexpr float kDarkBoxAlpha = 0.5f;

void DrawTranslucentDarkBox(int left, int top, int right, int bottom);
// Draws one line of text for xpsim's own art (the widgets' look): recorded as a string and painted,
// without the checks a plugin's call gets.
void DrawText(const float* rgb, int x, int y, const char* text, size_t size, XPLMFontID font);
void DrawString(const float* rgb, int x, int y, const char* text, const int* wrapWidth, XPLMFontID font);
void DrawNumber(const float* rgb, int x, int y, double value, int digits, int decimals, int showSign,
                XPLMFontID font);
void GetFontDimensions(XPLMFontID font, int* charWidth, int* charHeight, int* digitsOnly);
float MeasureString(XPLMFontID font, const char* text, int numChars);

// The text XPLMDrawNumber draws; false when the digits or decimals are out of range.
bool FormatNumber(double value, int digits, int decimals, int showSign, std::string& text);

void ResetGraphics();

}  // namespace xpsim
