// The screen: what the frame's 2-d drawing looks like, as pixels a person can look at.
//
// The screen has the simulator's size (1024 x 768 unless the program is told otherwise), origin at the
// bottom left, y up, as the SDK's window coordinates. Each frame it starts as a plain background; then
// everything drawn in the 2-d drawing phases lands on it in drawing order: strings and numbers
// (XPLMDrawString, XPLMDrawNumber), dark boxes, the SDK's user-interface art (XPDrawWindow,
// XPDrawElement, XPDrawTrack), the standard widgets' look and the plugins' own OpenGL primitives
// (sim/OpenGL.cpp). Whatever is drawn is also named in the frame's drawing record (world/Drawing.h).
//
// The frame keeps a list of what was painted; the pixels are made from it with Cairo only when
// someone looks (a screenshot, ScreenPixel), so that frames nobody looks at cost next to nothing.
// Shapes are painted without anti-aliasing, as flat fills and strokes with the blending the plugin
// asked for; text is Cairo's monospaced font, one character per cell of the SDK's metrics, so text
// lands exactly where plugins measured it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "world/Export.h"

namespace xpsim {

constexpr int kDefaultScreenWidth = 1024;
constexpr int kDefaultScreenHeight = 768;
// The screen's sides, each.
constexpr int kMinScreenSide = 64;
constexpr int kMaxScreenSide = 8192;

// The plain background every frame starts from (0xRRGGBB).
constexpr uint32_t kScreenBackground = 0x3a4a5c;

// ------------------------------------------------------------------ control interface

// Sets the screen's size (each side kMinScreenSide to kMaxScreenSide); false and unchanged otherwise.
// The mouse moves to the middle of the new screen, and the datarefs sim/graphics/view/window_width and
// window_height (when DataRefs.txt has them) answer the new size.
XPSIM_API bool SetScreenSize(int width, int height);
XPSIM_API int ScreenWidth();
XPSIM_API int ScreenHeight();
// Writes the screen size into sim/graphics/view/window_width and window_height where they exist.
XPSIM_API void PublishScreenSize();

// The colour of the pixel at a screen point (origin bottom left) as the frame so far drew it, 0xRRGGBB;
// 0 for a point off the screen.
XPSIM_API uint32_t ScreenPixel(int x, int y);
// Writes the screen as the frame so far drew it to a PNG file; false with a message when it cannot.
XPSIM_API bool WriteScreenshot(const std::string& path, std::string& error);
// How many things the frame painted so far.
XPSIM_API size_t ScreenItemCount();

// ------------------------------------------------------------------ inside the library

struct Rgba {
    float r = 0, g = 0, b = 0, a = 1;
};

// How a shape mixes with what is under it: opaque (GL_BLEND off), alpha blending
// (GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA), additive (GL_ONE, GL_ONE; GL_SRC_ALPHA, GL_ONE) or
// premultiplied (GL_ONE, GL_ONE_MINUS_SRC_ALPHA).
enum class Blend { Opaque, Alpha, Additive, Premultiplied };

struct ScreenPoint {
    double x = 0, y = 0;
};

// Painting, in screen coordinates. Each adds one item to the frame's list; nothing is recorded.
void PaintRect(double left, double bottom, double right, double top, Rgba colour, Blend blend);
void PaintPolygon(const std::vector<ScreenPoint>& points, Rgba colour, Blend blend);
// A polyline of `width` pixels; closed joins the last point to the first.
void PaintPolyline(const std::vector<ScreenPoint>& points, bool closed, double width, Rgba colour, Blend blend);
// Squares of `size` pixels centred on the points.
void PaintPoints(const std::vector<ScreenPoint>& points, double size, Rgba colour, Blend blend);
void PaintEllipse(double left, double bottom, double right, double top, bool filled, double width, Rgba colour,
                  Blend blend);
// Text in a font's cells: each byte takes the width the font measures for it (a UTF-8 character takes
// the cells of its bytes and is drawn once across them); the text's lower left is (x, y).
void PaintText(double x, double y, const char* text, size_t size, int font, Rgba colour);

// Shades of the user interface's art, 0xRRGGBB.
Rgba Colour(uint32_t rgb, float alpha = 1.0f);

// Empties the frame's list; called as each frame begins.
void ClearScreen();
// Back to the default size and an empty frame; the GL state goes back to its start.
void ResetScreen();
// The OpenGL state plugins set and the GL calls xpsim takes (sim/OpenGL.cpp).
void ResetOpenGL();
// XPLMSetGraphicsState switches blending and texturing as the simulator's GL does.
void SetGlBlending(bool enabled);
// Whether GL blending is on: the one record of it, which XPLMSetGraphicsState reports too.
bool GlBlending();
void SetGlTexturing(bool enabled);
// At the start of each drawing phase the modelview is the sim's again; a primitive left open is dropped.
void ResetGlForPhase();
// The drawing phase now being drawn (the frame's 2-d phases paint the screen; the 3-d phases only
// record), and the start of each phase (the sim sets its matrices up afresh).
void BeginDrawingPhase(int phase);
bool DrawingOnScreen();

}  // namespace xpsim
