// The screen: the frame's list of painted items, made into pixels with Cairo when someone looks.
#include "world/Screen.h"

#include <cairo.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <memory>

#include "XPLMDisplay.h"
#include "world/DataRefs.h"
#include "world/Drawing.h"
#include "world/Graphics.h"
#include "world/Windows.h"
#include "world/World.h"

namespace xpsim {
namespace {

// A frame paints at most this many items and points; the rest is dropped (noted once a run), so a
// plugin that draws without end cannot exhaust memory.
constexpr size_t kMostItems = 200000;
constexpr size_t kMostPoints = 4000000;

struct Item {
    enum Kind { Fill, Stroke, Points, Ellipse, Text };
    Kind kind = Fill;
    std::vector<ScreenPoint> points;  // Ellipse: the box's corners; Text: the lower left
    bool closed = false;
    bool filled = false;
    double width = 1.0;  // line width, point size
    Rgba colour;
    Blend blend = Blend::Opaque;
    int font = 0;
    std::string text;
};

struct Surface {
    cairo_surface_t* surface = nullptr;
    ~Surface() {
        if (surface != nullptr) cairo_surface_destroy(surface);
    }
};

struct ScreenState {
    int width = kDefaultScreenWidth;
    int height = kDefaultScreenHeight;
    std::vector<Item> items;
    size_t points = 0;
    bool overflowNoted = false;
    int phase = -1;  // the drawing phase now drawn; -1 outside the frame's phases
    // The pixels of the first `rendered` items, while they are still those of this frame.
    std::shared_ptr<Surface> pixels;
    size_t rendered = 0;
};

ScreenState& screen() {
    static ScreenState s;
    return s;
}

float Clamp01(float v) { return std::isnan(v) ? 0.0f : std::fmin(1.0f, std::fmax(0.0f, v)); }

bool Admit(size_t points) {
    ScreenState& s = screen();
    if (s.items.size() < kMostItems && s.points + points <= kMostPoints) {
        s.points += points;
        return true;
    }
    if (!s.overflowNoted) {
        s.overflowNoted = true;
        Note("frame " + std::to_string(FrameNumber()) + " paints more than " + std::to_string(kMostItems) +
             " items or " + std::to_string(kMostPoints) + " points; the rest of such frames is not painted");
    }
    return false;
}

// Coordinates are kept within reach of Cairo's fixed-point numbers: a point farther off the screen is
// pulled in to this distance (a shape reaching that far is cut there).
constexpr double kFarthest = 1e6;

void Add(Item item) {
    if (!Admit(item.points.size())) return;
    for (ScreenPoint& p : item.points) {
        p.x = std::isfinite(p.x) ? std::fmin(kFarthest, std::fmax(-kFarthest, p.x)) : 0.0;
        p.y = std::isfinite(p.y) ? std::fmin(kFarthest, std::fmax(-kFarthest, p.y)) : 0.0;
    }
    item.width = std::isfinite(item.width) ? std::fmin(64.0, item.width) : 1.0;
    screen().items.push_back(std::move(item));
}

// ------------------------------------------------------------------ rendering

// Cairo's y runs down from the top.
double CairoY(double y) { return screen().height - y; }

void SetSource(cairo_t* cr, const Item& item) {
    const Rgba& c = item.colour;
    switch (item.blend) {
        case Blend::Opaque:
            cairo_set_operator(cr, CAIRO_OPERATOR_OVER);
            cairo_set_source_rgb(cr, Clamp01(c.r), Clamp01(c.g), Clamp01(c.b));
            break;
        case Blend::Alpha:
            cairo_set_operator(cr, CAIRO_OPERATOR_OVER);
            cairo_set_source_rgba(cr, Clamp01(c.r), Clamp01(c.g), Clamp01(c.b), Clamp01(c.a));
            break;
        case Blend::Additive:
            cairo_set_operator(cr, CAIRO_OPERATOR_ADD);
            cairo_set_source_rgba(cr, Clamp01(c.r), Clamp01(c.g), Clamp01(c.b), Clamp01(c.a));
            break;
        case Blend::Premultiplied: {
            // Cairo's sources are not premultiplied: the colour divided by alpha, then OVER.
            const float a = Clamp01(c.a);
            cairo_set_operator(cr, CAIRO_OPERATOR_OVER);
            if (a <= 0.0f) {
                cairo_set_operator(cr, CAIRO_OPERATOR_ADD);
                cairo_set_source_rgb(cr, Clamp01(c.r), Clamp01(c.g), Clamp01(c.b));
            } else {
                cairo_set_source_rgba(cr, std::fmin(1.0f, Clamp01(c.r) / a), std::fmin(1.0f, Clamp01(c.g) / a),
                                      std::fmin(1.0f, Clamp01(c.b) / a), a);
            }
            break;
        }
    }
}

void Path(cairo_t* cr, const std::vector<ScreenPoint>& points, bool closed) {
    cairo_new_path(cr);
    for (size_t i = 0; i < points.size(); ++i) {
        if (i == 0)
            cairo_move_to(cr, points[i].x, CairoY(points[i].y));
        else
            cairo_line_to(cr, points[i].x, CairoY(points[i].y));
    }
    if (closed) cairo_close_path(cr);
}

// The length of the UTF-8 character starting at text[i] (1 for a byte that starts none).
size_t CharacterLength(const char* text, size_t size, size_t i) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    size_t length = c >= 0xf0 && c < 0xf5 ? 4 : c >= 0xe0 ? 3 : c >= 0xc2 && c < 0xe0 ? 2 : 1;
    if (c < 0x80 || length == 1 || i + length > size) return 1;
    for (size_t k = 1; k < length; ++k) {
        if ((static_cast<unsigned char>(text[i + k]) & 0xc0) != 0x80) return 1;
    }
    return length;
}

// Digits-only fonts show what instruments show; other characters stay blank.
bool ShownInDigitFont(unsigned char c) { return (c >= '0' && c <= '9') || std::strchr(" +-.,:/", c) != nullptr; }

void RenderText(cairo_t* cr, const Item& item) {
    FontMetrics font;
    if (!FindFont(item.font, font)) return;
    // The proportional font's glyphs come from the proportional face, so that they suit their cells.
    cairo_select_font_face(cr, item.font == xplmFont_Proportional ? "sans-serif" : "monospace", CAIRO_FONT_SLANT_NORMAL,
                           item.font == xplmFont_Metal ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    // A monospaced glyph is about 0.6 em wide: the largest size whose glyphs fit the cell.
    const double size = std::min(font.charHeight * 0.95, font.charWidth / 0.6);
    cairo_set_font_size(cr, size);
    cairo_font_extents_t extents;
    cairo_font_extents(cr, &extents);
    const double baseline = item.points[0].y + std::ceil(extents.descent) - 1.0;
    double x = item.points[0].x;
    const char* text = item.text.data();
    const size_t count = item.text.size();
    for (size_t i = 0; i < count;) {
        const size_t length = CharacterLength(text, count, i);
        double cells = 0;
        for (size_t k = 0; k < length; ++k) {
            const unsigned char c = static_cast<unsigned char>(text[i + k]);
            cells += item.font == xplmFont_Proportional ? ProportionalWidth(c) : font.charWidth;
        }
        const unsigned char first = static_cast<unsigned char>(text[i]);
        const bool printable = length > 1 || (first > 0x20 && first < 0x7f);
        if (printable && (!font.digitsOnly || ShownInDigitFont(first))) {
            const std::string glyph(text + i, length);
            cairo_text_extents_t glyphExtents;
            cairo_text_extents(cr, glyph.c_str(), &glyphExtents);
            cairo_move_to(cr, x + (cells - glyphExtents.x_advance) / 2.0, CairoY(baseline));
            cairo_show_text(cr, glyph.c_str());
        }
        x += cells;
        i += length;
    }
}

void Render(cairo_t* cr, const Item& item) {
    SetSource(cr, item);
    switch (item.kind) {
        case Item::Fill:
            Path(cr, item.points, true);
            cairo_fill(cr);
            break;
        case Item::Stroke:
            Path(cr, item.points, item.closed);
            cairo_set_line_width(cr, std::max(1.0, item.width));
            cairo_stroke(cr);
            break;
        case Item::Points: {
            const double half = std::max(1.0, item.width) / 2.0;
            cairo_new_path(cr);
            for (const ScreenPoint& p : item.points)
                cairo_rectangle(cr, p.x - half, CairoY(p.y) - half, 2 * half, 2 * half);
            cairo_fill(cr);
            break;
        }
        case Item::Ellipse: {
            const double left = item.points[0].x, bottom = item.points[0].y;
            const double right = item.points[1].x, top = item.points[1].y;
            const double w = right - left, h = top - bottom;
            if (w <= 0 || h <= 0) break;
            cairo_new_path(cr);
            cairo_save(cr);
            cairo_translate(cr, left + w / 2, CairoY(bottom + h / 2));
            cairo_scale(cr, w / 2, h / 2);
            cairo_arc(cr, 0, 0, 1, 0, 2 * M_PI);
            cairo_restore(cr);
            if (item.filled) {
                cairo_fill(cr);
            } else {
                cairo_set_line_width(cr, std::max(1.0, item.width));
                cairo_stroke(cr);
            }
            break;
        }
        case Item::Text:
            cairo_set_operator(cr, CAIRO_OPERATOR_OVER);
            cairo_set_antialias(cr, CAIRO_ANTIALIAS_GRAY);
            RenderText(cr, item);
            cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
            break;
    }
}

// The frame's pixels so far; null when Cairo cannot make a surface.
cairo_surface_t* Pixels() {
    ScreenState& s = screen();
    if (s.pixels == nullptr || s.rendered > s.items.size()) {
        auto fresh = std::make_shared<Surface>();
        fresh->surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, s.width, s.height);
        if (cairo_surface_status(fresh->surface) != CAIRO_STATUS_SUCCESS) return nullptr;
        cairo_t* cr = cairo_create(fresh->surface);
        cairo_set_source_rgb(cr, ((kScreenBackground >> 16) & 0xff) / 255.0, ((kScreenBackground >> 8) & 0xff) / 255.0,
                             (kScreenBackground & 0xff) / 255.0);
        cairo_paint(cr);
        cairo_destroy(cr);
        s.pixels = fresh;
        s.rendered = 0;
    }
    if (s.rendered < s.items.size()) {
        cairo_t* cr = cairo_create(s.pixels->surface);
        cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
        cairo_set_line_cap(cr, CAIRO_LINE_CAP_SQUARE);
        cairo_set_line_join(cr, CAIRO_LINE_JOIN_MITER);
        for (; s.rendered < s.items.size(); ++s.rendered) Render(cr, s.items[s.rendered]);
        cairo_destroy(cr);
        cairo_surface_flush(s.pixels->surface);
    }
    return s.pixels->surface;
}

void SetDataRefToSize(const char* name, int value) {
    DataRefRecord* ref = FindDataRefRecord(name);
    if (ref != nullptr && ref->kind == DataRefRecord::Builtin && (ref->types & xplmType_Int))
        WriteInt(*ref, value, name, true);
}

}  // namespace

// ------------------------------------------------------------------ control interface

bool SetScreenSize(int width, int height) {
    if (width < kMinScreenSide || width > kMaxScreenSide || height < kMinScreenSide || height > kMaxScreenSide)
        return false;
    ScreenState& s = screen();
    s.width = width;
    s.height = height;
    s.pixels.reset();
    CentreMouse();
    PublishScreenSize();
    return true;
}

int ScreenWidth() { return screen().width; }

int ScreenHeight() { return screen().height; }

void PublishScreenSize() {
    SetDataRefToSize("sim/graphics/view/window_width", screen().width);
    SetDataRefToSize("sim/graphics/view/window_height", screen().height);
}

uint32_t ScreenPixel(int x, int y) {
    ScreenState& s = screen();
    if (x < 0 || y < 0 || x >= s.width || y >= s.height) return 0;
    cairo_surface_t* surface = Pixels();
    if (surface == nullptr) return 0;
    const unsigned char* data = cairo_image_surface_get_data(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    const int row = s.height - 1 - y;
    uint32_t pixel;
    std::memcpy(&pixel, data + size_t(row) * size_t(stride) + size_t(x) * 4, 4);
    return pixel & 0xffffff;
}

bool WriteScreenshot(const std::string& path, std::string& error) {
    cairo_surface_t* surface = Pixels();
    if (surface == nullptr) {
        error = "cannot make the screen's pixels";
        return false;
    }
    // Cairo reports a file it cannot open only as a write error; open it first for a clear reason.
    FILE* probe = std::fopen(path.c_str(), "wb");
    if (probe == nullptr) {
        error = "cannot write " + path + ": " + std::strerror(errno);
        return false;
    }
    std::fclose(probe);
    const cairo_status_t status = cairo_surface_write_to_png(surface, path.c_str());
    if (status != CAIRO_STATUS_SUCCESS) {
        error = "cannot write " + path + ": " + cairo_status_to_string(status);
        return false;
    }
    return true;
}

size_t ScreenItemCount() { return screen().items.size(); }

// ------------------------------------------------------------------ painting

Rgba Colour(uint32_t rgb, float alpha) {
    Rgba c;
    c.r = ((rgb >> 16) & 0xff) / 255.0f;
    c.g = ((rgb >> 8) & 0xff) / 255.0f;
    c.b = (rgb & 0xff) / 255.0f;
    c.a = alpha;
    return c;
}

void PaintRect(double left, double bottom, double right, double top, Rgba colour, Blend blend) {
    if (left > right) std::swap(left, right);
    if (bottom > top) std::swap(bottom, top);
    PaintPolygon({{left, bottom}, {right, bottom}, {right, top}, {left, top}}, colour, blend);
}

void PaintPolygon(const std::vector<ScreenPoint>& points, Rgba colour, Blend blend) {
    if (points.size() < 3) return;
    Item item;
    item.kind = Item::Fill;
    item.points = points;
    item.colour = colour;
    item.blend = blend;
    Add(std::move(item));
}

void PaintPolyline(const std::vector<ScreenPoint>& points, bool closed, double width, Rgba colour, Blend blend) {
    if (points.size() < 2) return;
    Item item;
    item.kind = Item::Stroke;
    item.points = points;
    item.closed = closed;
    item.width = width;
    item.colour = colour;
    item.blend = blend;
    Add(std::move(item));
}

void PaintPoints(const std::vector<ScreenPoint>& points, double size, Rgba colour, Blend blend) {
    if (points.empty()) return;
    Item item;
    item.kind = Item::Points;
    item.points = points;
    item.width = size;
    item.colour = colour;
    item.blend = blend;
    Add(std::move(item));
}

void PaintEllipse(double left, double bottom, double right, double top, bool filled, double width, Rgba colour,
                  Blend blend) {
    Item item;
    item.kind = Item::Ellipse;
    item.points = {{std::min(left, right), std::min(bottom, top)}, {std::max(left, right), std::max(bottom, top)}};
    item.filled = filled;
    item.width = width;
    item.colour = colour;
    item.blend = blend;
    Add(std::move(item));
}

void PaintText(double x, double y, const char* text, size_t size, int font, Rgba colour) {
    FontMetrics metrics;
    if (text == nullptr || size == 0 || !FindFont(font, metrics)) return;
    Item item;
    item.kind = Item::Text;
    item.points = {{x, y}};
    item.text.assign(text, size);
    item.font = font;
    item.colour = colour;
    item.blend = Blend::Alpha;
    Add(std::move(item));
}

// ------------------------------------------------------------------ frames

void ClearScreen() {
    ScreenState& s = screen();
    s.items.clear();
    s.points = 0;
    s.rendered = 0;
    s.pixels.reset();
}

void ResetScreen() {
    ScreenState& s = screen();
    s = ScreenState();
    ResetOpenGL();
}

void BeginDrawingPhase(int phase) {
    screen().phase = phase;
    ResetGlForPhase();
}

bool DrawingOnScreen() {
    // Outside the frame's phases (a test drawing in a DrawingScope of its own) the drawing is 2-d.
    const int phase = screen().phase;
    return InDrawing() && (phase < 0 || (phase >= xplm_Phase_FirstCockpit && phase <= xplm_Phase_LastCockpit));
}

}  // namespace xpsim
