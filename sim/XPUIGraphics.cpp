// XPUIGraphics: drawing the simulator's user interface elements.
//
// The drawing functions paint xpsim's own flat rendering of the simulator's art on the screen (in the
// 2-d phases) and name what they drew in the frame's drawing record:
//
//   ui-window style=xpWindow_MainWindow left=10 top=300 right=310 bottom=100
//   ui-element style=xpElement_PushButton lit=1 left=20 top=60 right=100 bottom=40
//   ui-track style=xpTrack_ScrollBar lit=0 min=0 max=100 value=25 left=20 top=36 right=220 bottom=20
//
// The rectangle is normalised (left <= right, bottom <= top) whichever corners were given. Like the
// XPLMGraphics drawing functions they draw only while the sim draws; a call at any other time, or
// with a style the SDK does not name, is reported and draws nothing.
//
// The dimension functions answer fixed sizes (see the README), and the track metrics lay a track out
// the way widget code expects: buttons as long as the track is thick at both ends of a scroll bar, a
// thumb as long as the track is thick, and the pages on either side of the thumb sharing the rest by
// the value.
#include "XPUIGraphics.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "world/Drawing.h"
#include "world/Screen.h"
#include "world/World.h"

namespace {

using xpsim::Blend;
using xpsim::Rgba;
using xpsim::ScreenPoint;

struct Size {
    int width, height, canBeLit;
};

Size WindowSize(XPWindowStyle style) {
    switch (style) {
        case xpWindow_Help: return {200, 100, 0};
        case xpWindow_MainWindow: return {300, 200, 0};
        default: return {100, 100, 0};  // sub window, screen, list view
    }
}

Size ElementSize(XPElementStyle style) {
    switch (style) {
        case xpElement_TextField:
        case xpElement_TextFieldMiddle: return {100, 20, 0};
        case xpElement_CheckBox:
        case xpElement_CheckBoxLit: return {16, 16, 1};
        case xpElement_WindowCloseBox:
        case xpElement_WindowCloseBoxPressed: return {16, 16, 0};
        case xpElement_PushButton:
        case xpElement_PushButtonLit: return {80, 20, 1};
        case xpElement_CopyButtons:
        case xpElement_CopyButtonsWithEditingGrid: return {32, 16, 1};
        case xpElement_EditingGrid: return {16, 16, 1};
        case xpElement_ScrollBar: return {16, 16, 1};
        case xpElement_Zoomer: return {16, 16, 1};
        case xpElement_LittleDownArrow:
        case xpElement_LittleUpArrow: return {12, 12, 1};
        case xpElement_WindowDragBar:
        case xpElement_WindowDragBarSmooth: return {100, 18, 0};
        default: return {16, 16, 0};  // map icons
    }
}

// ------------------------------------------------------------------ the art

// The user interface's shades.
constexpr uint32_t kEdgeDark = 0x2c3034;
constexpr uint32_t kEdgeLight = 0xf0f0ec;
constexpr uint32_t kMetal = 0xd4d6d8;     // buttons, thumbs
constexpr uint32_t kLit = 0xf2d67a;       // lit buttons and thumbs
constexpr uint32_t kWindowBody = 0xb8bcc0;
constexpr uint32_t kTitleBar = 0x9aa6b2;
constexpr uint32_t kSunken = 0xa4a8ac;
constexpr uint32_t kGroove = 0x7c8288;
constexpr uint32_t kMark = 0x1c1c1c;

struct Box {
    double left, bottom, right, top;
    double Width() const { return right - left; }
    double Height() const { return top - bottom; }
    double CentreX() const { return (left + right) / 2; }
    double CentreY() const { return (bottom + top) / 2; }
};

Box Normalised(int x1, int y1, int x2, int y2) {
    return {double(std::min(x1, x2)), double(std::min(y1, y2)), double(std::max(x1, x2)), double(std::max(y1, y2))};
}

// The largest square centred in a box, shrunk by `inset` on every side.
Box Square(const Box& box, double inset = 0) {
    const double side = std::max(0.0, std::min(box.Width(), box.Height()) - 2 * inset);
    return {box.CentreX() - side / 2, box.CentreY() - side / 2, box.CentreX() + side / 2, box.CentreY() + side / 2};
}

void Fill(const Box& box, uint32_t rgb) {
    xpsim::PaintRect(box.left, box.bottom, box.right, box.top, xpsim::Colour(rgb), Blend::Opaque);
}

// A one-pixel outline just inside the box.
void Outline(const Box& box, uint32_t rgb) {
    if (box.Width() < 1 || box.Height() < 1) return;
    xpsim::PaintPolyline({{box.left + 0.5, box.bottom + 0.5},
                          {box.right - 0.5, box.bottom + 0.5},
                          {box.right - 0.5, box.top - 0.5},
                          {box.left + 0.5, box.top - 0.5}},
                         true, 1.0, xpsim::Colour(rgb), Blend::Opaque);
}

// A raised (or, sunken, a recessed) box: light top and left edges, dark bottom and right ones.
void Bevel(const Box& box, bool sunken) {
    if (box.Width() < 2 || box.Height() < 2) return;
    const Rgba light = xpsim::Colour(sunken ? 0x6c7074 : kEdgeLight);
    const Rgba dark = xpsim::Colour(sunken ? 0xe4e6e8 : 0x6c7074);
    xpsim::PaintPolyline(
        {{box.left + 1.5, box.bottom + 1.5}, {box.left + 1.5, box.top - 1.5}, {box.right - 1.5, box.top - 1.5}}, false,
        1.0, light, Blend::Opaque);
    xpsim::PaintPolyline(
        {{box.right - 1.5, box.top - 1.5}, {box.right - 1.5, box.bottom + 1.5}, {box.left + 1.5, box.bottom + 1.5}},
        false, 1.0, dark, Blend::Opaque);
}

void Line(double x1, double y1, double x2, double y2, uint32_t rgb, double width = 1.0) {
    xpsim::PaintPolyline({{x1, y1}, {x2, y2}}, false, width, xpsim::Colour(rgb), Blend::Opaque);
}

void Polygon(const std::vector<ScreenPoint>& points, uint32_t rgb) {
    xpsim::PaintPolygon(points, xpsim::Colour(rgb), Blend::Opaque);
}

void Ellipse(const Box& box, bool filled, uint32_t rgb, double width = 1.0) {
    xpsim::PaintEllipse(box.left, box.bottom, box.right, box.top, filled, width, xpsim::Colour(rgb), Blend::Opaque);
}

// A triangle pointing up or down, filling the middle of a box.
void Arrow(const Box& box, bool up, uint32_t rgb) {
    const Box s = Square(box, std::max(2.0, std::min(box.Width(), box.Height()) / 4));
    if (up)
        Polygon({{s.left, s.bottom}, {s.right, s.bottom}, {s.CentreX(), s.top}}, rgb);
    else
        Polygon({{s.left, s.top}, {s.right, s.top}, {s.CentreX(), s.bottom}}, rgb);
}

// A triangle pointing left or right.
void SideArrow(const Box& box, bool right, uint32_t rgb) {
    const Box s = Square(box, std::max(2.0, std::min(box.Width(), box.Height()) / 4));
    if (right)
        Polygon({{s.left, s.bottom}, {s.left, s.top}, {s.right, s.CentreY()}}, rgb);
    else
        Polygon({{s.right, s.bottom}, {s.right, s.top}, {s.left, s.CentreY()}}, rgb);
}

void Cross(const Box& box, uint32_t rgb, double width) {
    Line(box.left, box.bottom, box.right, box.top, rgb, width);
    Line(box.left, box.top, box.right, box.bottom, rgb, width);
}

// A regular polygon of `sides` corners inscribed in a square box.
std::vector<ScreenPoint> Regular(const Box& box, int sides, double turn) {
    std::vector<ScreenPoint> points;
    const double r = std::min(box.Width(), box.Height()) / 2;
    for (int i = 0; i < sides; ++i) {
        const double a = turn + 2 * M_PI * i / sides;
        points.push_back({box.CentreX() + r * std::cos(a), box.CentreY() + r * std::sin(a)});
    }
    return points;
}

const char* WindowStyleName(XPWindowStyle style) {
    switch (style) {
        case xpWindow_Help: return "xpWindow_Help";
        case xpWindow_MainWindow: return "xpWindow_MainWindow";
        case xpWindow_SubWindow: return "xpWindow_SubWindow";
        case xpWindow_Screen: return "xpWindow_Screen";
        case xpWindow_ListView: return "xpWindow_ListView";
        default: return nullptr;
    }
}

const char* ElementStyleName(XPElementStyle style) {
    switch (style) {
        case xpElement_TextField: return "xpElement_TextField";
        case xpElement_CheckBox: return "xpElement_CheckBox";
        case xpElement_CheckBoxLit: return "xpElement_CheckBoxLit";
        case xpElement_WindowCloseBox: return "xpElement_WindowCloseBox";
        case xpElement_WindowCloseBoxPressed: return "xpElement_WindowCloseBoxPressed";
        case xpElement_PushButton: return "xpElement_PushButton";
        case xpElement_PushButtonLit: return "xpElement_PushButtonLit";
        case xpElement_OilPlatform: return "xpElement_OilPlatform";
        case xpElement_OilPlatformSmall: return "xpElement_OilPlatformSmall";
        case xpElement_Ship: return "xpElement_Ship";
        case xpElement_ILSGlideScope: return "xpElement_ILSGlideScope";
        case xpElement_MarkerLeft: return "xpElement_MarkerLeft";
        case xpElement_Airport: return "xpElement_Airport";
        case xpElement_Waypoint: return "xpElement_Waypoint";
        case xpElement_NDB: return "xpElement_NDB";
        case xpElement_VOR: return "xpElement_VOR";
        case xpElement_RadioTower: return "xpElement_RadioTower";
        case xpElement_AircraftCarrier: return "xpElement_AircraftCarrier";
        case xpElement_Fire: return "xpElement_Fire";
        case xpElement_MarkerRight: return "xpElement_MarkerRight";
        case xpElement_CustomObject: return "xpElement_CustomObject";
        case xpElement_CoolingTower: return "xpElement_CoolingTower";
        case xpElement_SmokeStack: return "xpElement_SmokeStack";
        case xpElement_Building: return "xpElement_Building";
        case xpElement_PowerLine: return "xpElement_PowerLine";
        case xpElement_CopyButtons: return "xpElement_CopyButtons";
        case xpElement_CopyButtonsWithEditingGrid: return "xpElement_CopyButtonsWithEditingGrid";
        case xpElement_EditingGrid: return "xpElement_EditingGrid";
        case xpElement_ScrollBar: return "xpElement_ScrollBar";
        case xpElement_VORWithCompassRose: return "xpElement_VORWithCompassRose";
        case xpElement_Zoomer: return "xpElement_Zoomer";
        case xpElement_TextFieldMiddle: return "xpElement_TextFieldMiddle";
        case xpElement_LittleDownArrow: return "xpElement_LittleDownArrow";
        case xpElement_LittleUpArrow: return "xpElement_LittleUpArrow";
        case xpElement_WindowDragBar: return "xpElement_WindowDragBar";
        case xpElement_WindowDragBarSmooth: return "xpElement_WindowDragBarSmooth";
        default: return nullptr;
    }
}

const char* TrackStyleName(XPTrackStyle style) {
    switch (style) {
        case xpTrack_ScrollBar: return "xpTrack_ScrollBar";
        case xpTrack_Slider: return "xpTrack_Slider";
        case xpTrack_Progress: return "xpTrack_Progress";
        default: return nullptr;
    }
}

std::string Rectangle(const Box& box) {
    return "left=" + std::to_string(int(box.left)) + " top=" + std::to_string(int(box.top)) +
           " right=" + std::to_string(int(box.right)) + " bottom=" + std::to_string(int(box.bottom));
}

// The checks every UI drawing function makes; false (reported) when it draws nothing.
bool MayDraw(const char* function, const char* styleName, int style) {
    if (!xpsim::InDrawing()) {
        xpsim::ReportMisuse(function, "called while the sim is not drawing (outside a draw callback or window); "
                                      "nothing is drawn");
        return false;
    }
    if (styleName == nullptr) {
        xpsim::ReportMisuse(function, "no style " + std::to_string(style) + "; nothing is drawn");
        return false;
    }
    return true;
}

void PaintWindow(const Box& box, XPWindowStyle style) {
    switch (style) {
        case xpWindow_Help:
            Fill(box, 0xf4eec4);
            Outline(box, 0x6c6440);
            break;
        case xpWindow_MainWindow: {
            Fill(box, kWindowBody);
            const double bar = std::min(box.Height(), 20.0);
            Fill({box.left, box.top - bar, box.right, box.top}, kTitleBar);
            Line(box.left, box.top - bar + 0.5, box.right, box.top - bar + 0.5, 0x6c7074);
            Bevel(box, false);
            Outline(box, kEdgeDark);
            break;
        }
        case xpWindow_SubWindow:
            Fill(box, kSunken);
            Bevel(box, true);
            Outline(box, 0x6c7074);
            break;
        case xpWindow_Screen:
            Fill(box, 0x1c2430);
            Outline(box, 0x0c1014);
            break;
        case xpWindow_ListView:
            Fill(box, 0xf4f4f0);
            Outline(box, 0x6c7074);
            break;
        default:
            break;
    }
}

void PaintButton(const Box& box, bool lit) {
    Fill(box, lit ? kLit : kMetal);
    Bevel(box, lit);
    Outline(box, 0x3c4044);
}

// Map icons: flat shapes in a square in the middle of the box.
void PaintIcon(const Box& box, XPElementStyle style) {
    const Box s = Square(box, 1);
    const double w = s.Width();
    if (w <= 0) return;
    auto at = [&](double fx, double fy) { return ScreenPoint{s.left + fx * w, s.bottom + fy * w}; };
    switch (style) {
        case xpElement_OilPlatform:
        case xpElement_OilPlatformSmall: {
            const Box deck = style == xpElement_OilPlatform
                                 ? Box{at(0.2, 0.4).x, at(0.2, 0.4).y, at(0.8, 0.8).x, at(0.8, 0.8).y}
                                 : Box{at(0.3, 0.45).x, at(0.3, 0.45).y, at(0.7, 0.75).x, at(0.7, 0.75).y};
            Fill(deck, 0x605040);
            Line(deck.left + 1, deck.bottom, s.left + 0.15 * w, s.bottom, 0x605040, 2);
            Line(deck.right - 1, deck.bottom, s.left + 0.85 * w, s.bottom, 0x605040, 2);
            break;
        }
        case xpElement_Ship:
            Polygon({at(0.05, 0.45), at(0.95, 0.45), at(0.8, 0.2), at(0.2, 0.2)}, 0x2050a0);
            Fill({at(0.4, 0.45).x, at(0.4, 0.45).y, at(0.6, 0.7).x, at(0.6, 0.7).y}, 0x2050a0);
            break;
        case xpElement_ILSGlideScope:
            Polygon({at(0.1, 0.5), at(0.95, 0.8), at(0.95, 0.2)}, 0x20a040);
            break;
        case xpElement_MarkerLeft:
        case xpElement_MarkerRight: {
            const bool left = style == xpElement_MarkerLeft;
            Ellipse({left ? s.left : s.left + 0.3 * w, s.bottom + 0.3 * w, left ? s.left + 0.7 * w : s.right,
                     s.top - 0.3 * w},
                    true, 0x3060c0);
            break;
        }
        case xpElement_Airport:
            Ellipse(s, false, 0x3060c0, 2);
            Line(at(0.25, 0.25).x, at(0.25, 0.25).y, at(0.75, 0.75).x, at(0.75, 0.75).y, 0x3060c0, 2);
            break;
        case xpElement_Waypoint:
            Polygon({at(0.5, 0.95), at(0.95, 0.1), at(0.05, 0.1)}, 0x20a0c0);
            break;
        case xpElement_NDB:
            for (const ScreenPoint& p : Regular(s, 12, 0))
                xpsim::PaintPoints({p}, 2, xpsim::Colour(0x8c4c9c), Blend::Opaque);
            Ellipse(Square(s, w * 0.35), true, 0x8c4c9c);
            break;
        case xpElement_VOR:
        case xpElement_VORWithCompassRose:
            if (style == xpElement_VORWithCompassRose) {
                Ellipse(s, false, 0x2060a0);
                for (const ScreenPoint& p : Regular(s, 8, 0))
                    Line(s.CentreX() + (p.x - s.CentreX()) * 0.8, s.CentreY() + (p.y - s.CentreY()) * 0.8, p.x, p.y,
                         0x2060a0);
            }
            xpsim::PaintPolyline(Regular(Square(s, w * 0.2), 6, 0), true, 2, xpsim::Colour(0x2060a0), Blend::Opaque);
            break;
        case xpElement_RadioTower:
            xpsim::PaintPolyline({at(0.2, 0.05), at(0.5, 0.95), at(0.8, 0.05)}, false, 2, xpsim::Colour(0xc03020),
                                 Blend::Opaque);
            Line(at(0.33, 0.4).x, at(0.33, 0.4).y, at(0.67, 0.4).x, at(0.67, 0.4).y, 0xc03020);
            break;
        case xpElement_AircraftCarrier:
            Polygon({at(0.02, 0.35), at(0.9, 0.35), at(0.98, 0.5), at(0.9, 0.65), at(0.02, 0.65)}, 0x606870);
            break;
        case xpElement_Fire:
            Polygon({at(0.5, 0.95), at(0.8, 0.4), at(0.65, 0.05), at(0.35, 0.05), at(0.2, 0.4)}, 0xe06010);
            Polygon({at(0.5, 0.6), at(0.62, 0.3), at(0.5, 0.1), at(0.38, 0.3)}, 0xf8d040);
            break;
        case xpElement_CustomObject:
            Polygon({at(0.5, 0.95), at(0.95, 0.5), at(0.5, 0.05), at(0.05, 0.5)}, 0x808080);
            break;
        case xpElement_CoolingTower:
            Polygon({at(0.15, 0.05), at(0.85, 0.05), at(0.7, 0.9), at(0.3, 0.9)}, 0xa0a0a0);
            break;
        case xpElement_SmokeStack:
            Fill({at(0.4, 0.05).x, at(0.4, 0.05).y, at(0.6, 0.95).x, at(0.6, 0.95).y}, 0x806050);
            break;
        case xpElement_Building:
            Fill({at(0.2, 0.05).x, at(0.2, 0.05).y, at(0.8, 0.6).x, at(0.8, 0.6).y}, 0x907860);
            Polygon({at(0.1, 0.6), at(0.9, 0.6), at(0.5, 0.9)}, 0x907860);
            break;
        case xpElement_PowerLine:
            Line(at(0.05, 0.8).x, at(0.05, 0.8).y, at(0.95, 0.8).x, at(0.95, 0.8).y, 0x404040);
            Line(at(0.2, 0.05).x, at(0.2, 0.05).y, at(0.2, 0.9).x, at(0.2, 0.9).y, 0x404040, 2);
            Line(at(0.8, 0.05).x, at(0.8, 0.05).y, at(0.8, 0.9).x, at(0.8, 0.9).y, 0x404040, 2);
            break;
        default:
            break;
    }
}

void PaintElement(const Box& box, XPElementStyle style, bool lit) {
    switch (style) {
        case xpElement_TextField:
        case xpElement_TextFieldMiddle:
            Fill(box, 0xffffff);
            Bevel(box, true);
            Outline(box, 0x3c4044);
            break;
        case xpElement_CheckBox:
        case xpElement_CheckBoxLit: {
            const Box s = Square(box);
            Fill(s, 0xffffff);
            Outline(s, 0x3c4044);
            // The lit check box is the checked one.
            if (style == xpElement_CheckBoxLit || lit) {
                const Box m = Square(s, std::max(2.0, s.Width() / 5));
                xpsim::PaintPolyline({{m.left, m.CentreY()}, {m.left + m.Width() * 0.4, m.bottom}, {m.right, m.top}},
                                     false, 2, xpsim::Colour(kMark), Blend::Opaque);
            }
            break;
        }
        case xpElement_WindowCloseBox:
        case xpElement_WindowCloseBoxPressed: {
            const Box s = Square(box);
            const bool pressed = style == xpElement_WindowCloseBoxPressed;
            Fill(s, pressed ? 0x8c9096 : 0xc8ccd0);
            Bevel(s, pressed);
            Outline(s, 0x3c4044);
            Cross(Square(s, std::max(3.0, s.Width() / 4)), kMark, 2);
            break;
        }
        case xpElement_PushButton:
        case xpElement_PushButtonLit:
            PaintButton(box, lit || style == xpElement_PushButtonLit);
            break;
        case xpElement_LittleDownArrow:
        case xpElement_LittleUpArrow:
            PaintButton(box, lit);
            Arrow(box, style == xpElement_LittleUpArrow, kMark);
            break;
        case xpElement_WindowDragBar:
        case xpElement_WindowDragBarSmooth:
            Fill(box, kTitleBar);
            Outline(box, 0x6c7074);
            if (style == xpElement_WindowDragBar) {
                for (int i = 1; i <= 3; ++i) {
                    const double y = box.bottom + box.Height() * i / 4;
                    Line(box.left + 4, std::floor(y) + 0.5, box.right - 4, std::floor(y) + 0.5, 0x6c7074);
                }
            }
            break;
        case xpElement_CopyButtons:
        case xpElement_CopyButtonsWithEditingGrid: {
            const Box half1 = {box.left, box.bottom, box.CentreX(), box.top};
            const Box half2 = {box.CentreX(), box.bottom, box.right, box.top};
            PaintButton(half1, lit);
            PaintButton(half2, lit);
            SideArrow(half1, false, kMark);
            SideArrow(half2, true, kMark);
            if (style == xpElement_CopyButtonsWithEditingGrid) Outline(box, kEdgeDark);
            break;
        }
        case xpElement_EditingGrid:
            Fill(box, lit ? kLit : 0xffffff);
            for (int i = 1; i < 3; ++i) {
                const double x = std::floor(box.left + box.Width() * i / 3) + 0.5;
                const double y = std::floor(box.bottom + box.Height() * i / 3) + 0.5;
                Line(x, box.bottom, x, box.top, 0x8c9096);
                Line(box.left, y, box.right, y, 0x8c9096);
            }
            Outline(box, 0x3c4044);
            break;
        case xpElement_ScrollBar: {
            Fill(box, kGroove);
            const Box thumb = Square(box, 2);
            PaintButton(thumb, lit);
            Outline(box, 0x3c4044);
            break;
        }
        case xpElement_Zoomer: {
            const Box s = Square(box);
            const Box lens = {s.left, s.bottom + s.Height() * 0.35, s.left + s.Width() * 0.65, s.top};
            Ellipse(lens, true, lit ? kLit : 0xffffff);
            Ellipse(lens, false, kMark, 2);
            Line(lens.right - lens.Width() * 0.15, lens.bottom + lens.Height() * 0.15, s.right, s.bottom, kMark, 2);
            break;
        }
        default:
            PaintIcon(box, style);
            break;
    }
}

void PaintTrack(const Box& box, int min, int max, int value, XPTrackStyle style, bool lit) {
    int vertical = 0, downButton = 0, downPage = 0, thumb = 0, upPage = 0, upButton = 0;
    XPGetTrackMetrics(int(box.left), int(box.bottom), int(box.right), int(box.top), min, max, value, style, &vertical,
                      &downButton, &downPage, &thumb, &upPage, &upButton);
    // A part of the track from `start` to `end` pixels from its down end: the left of a horizontal track,
    // the top of a vertical one.
    auto part = [&](double start, double end) -> Box {
        if (vertical) return {box.left, box.top - end, box.right, box.top - start};
        return {box.left + start, box.bottom, box.left + end, box.top};
    };
    switch (style) {
        case xpTrack_ScrollBar: {
            Fill(box, kGroove);
            Outline(box, 0x3c4044);
            const Box down = part(0, downButton), up = part(downButton + downPage + thumb + upPage,
                                                            downButton + downPage + thumb + upPage + upButton);
            PaintButton(down, false);
            PaintButton(up, false);
            if (vertical) {
                Arrow(down, true, kMark);
                Arrow(up, false, kMark);
            } else {
                SideArrow(down, false, kMark);
                SideArrow(up, true, kMark);
            }
            PaintButton(part(downButton + downPage, downButton + downPage + thumb), lit);
            break;
        }
        case xpTrack_Slider: {
            const double groove = 2;
            if (vertical)
                Fill({box.CentreX() - groove, box.bottom, box.CentreX() + groove, box.top}, kGroove);
            else
                Fill({box.left, box.CentreY() - groove, box.right, box.CentreY() + groove}, kGroove);
            PaintButton(part(downPage, downPage + thumb), lit);
            break;
        }
        case xpTrack_Progress: {
            Fill(box, 0x3c4450);
            // A vertical progress bar fills from the bottom, a horizontal one from the left.
            const long long lo = std::min(min, max), hi = std::max(min, max);
            const long long v = std::clamp<long long>(value, lo, hi);
            const double length = vertical ? box.Height() : box.Width();
            const double filled = hi > lo ? std::floor(length * double(v - lo) / double(hi - lo)) : 0;
            if (filled > 0) {
                if (vertical)
                    Fill({box.left, box.bottom, box.right, box.bottom + filled}, 0x4ca04c);
                else
                    Fill({box.left, box.bottom, box.left + filled, box.top}, 0x4ca04c);
            }
            Outline(box, 0x3c4044);
            break;
        }
        default:
            break;
    }
}

}  // namespace

void XPDrawWindow(int inX1, int inY1, int inX2, int inY2, XPWindowStyle inStyle) {
    const char* name = WindowStyleName(inStyle);
    if (!MayDraw("XPDrawWindow", name, inStyle)) return;
    const Box box = Normalised(inX1, inY1, inX2, inY2);
    xpsim::RecordDrawing(std::string("ui-window style=") + name + " " + Rectangle(box));
    if (xpsim::DrawingOnScreen()) PaintWindow(box, inStyle);
}

void XPDrawElement(int inX1, int inY1, int inX2, int inY2, XPElementStyle inStyle, int inLit) {
    const char* name = ElementStyleName(inStyle);
    if (!MayDraw("XPDrawElement", name, inStyle)) return;
    const Box box = Normalised(inX1, inY1, inX2, inY2);
    int canBeLit = 0;
    XPGetElementDefaultDimensions(inStyle, nullptr, nullptr, &canBeLit);
    const bool lit = inLit != 0 && canBeLit != 0;
    xpsim::RecordDrawing(std::string("ui-element style=") + name + " lit=" + (lit ? "1" : "0") + " " + Rectangle(box));
    if (xpsim::DrawingOnScreen()) PaintElement(box, inStyle, lit);
}

void XPDrawTrack(int inX1, int inY1, int inX2, int inY2, int inMin, int inMax, int inValue, XPTrackStyle inTrackStyle,
                 int inLit) {
    const char* name = TrackStyleName(inTrackStyle);
    if (!MayDraw("XPDrawTrack", name, inTrackStyle)) return;
    const Box box = Normalised(inX1, inY1, inX2, inY2);
    const bool lit = inLit != 0 && inTrackStyle != xpTrack_Progress;
    xpsim::RecordDrawing(std::string("ui-track style=") + name + " lit=" + (lit ? "1" : "0") + " min=" +
                         std::to_string(inMin) + " max=" + std::to_string(inMax) + " value=" + std::to_string(inValue) +
                         " " + Rectangle(box));
    if (xpsim::DrawingOnScreen()) PaintTrack(box, inMin, inMax, inValue, inTrackStyle, lit);
}

void XPGetWindowDefaultDimensions(XPWindowStyle inStyle, int* outWidth, int* outHeight) {
    const Size size = WindowSize(inStyle);
    if (outWidth) *outWidth = size.width;
    if (outHeight) *outHeight = size.height;
}

void XPGetElementDefaultDimensions(XPElementStyle inStyle, int* outWidth, int* outHeight, int* outCanBeLit) {
    const Size size = ElementSize(inStyle);
    if (outWidth) *outWidth = size.width;
    if (outHeight) *outHeight = size.height;
    if (outCanBeLit) *outCanBeLit = size.canBeLit;
}

void XPGetTrackDefaultDimensions(XPTrackStyle inStyle, int* outWidth, int* outCanBeLit) {
    if (outWidth) *outWidth = inStyle == xpTrack_Progress ? 10 : inStyle == xpTrack_Slider ? 12 : 16;
    if (outCanBeLit) *outCanBeLit = inStyle == xpTrack_Progress ? 0 : 1;
}

void XPGetTrackMetrics(int inX1, int inY1, int inX2, int inY2, int inMin, int inMax, int inValue,
                       XPTrackStyle inTrackStyle, int* outIsVertical, int* outDownBtnSize, int* outDownPageSize,
                       int* outThumbSize, int* outUpPageSize, int* outUpBtnSize) {
    // In long long: the corners may be as far apart as int allows.
    const long long width = std::min<long long>(std::llabs((long long)inX2 - inX1), INT_MAX);
    const long long height = std::min<long long>(std::llabs((long long)inY2 - inY1), INT_MAX);
    const bool vertical = height > width;
    const int length = int(vertical ? height : width);
    const int thickness = int(vertical ? width : height);
    int button = 0, thumb = 0;
    if (inTrackStyle == xpTrack_ScrollBar) {
        button = std::min(thickness, length / 3);
        thumb = std::min(thickness, length - 2 * button);
    } else if (inTrackStyle == xpTrack_Slider) {
        thumb = std::min(thickness, length);
    }
    const int free = std::max(0, length - 2 * button - thumb);
    const long long lo = std::min(inMin, inMax), hi = std::max(inMin, inMax);
    const long long value = std::clamp<long long>(inValue, lo, hi);
    const int downPage = hi > lo ? int(free * (value - lo) / (hi - lo)) : 0;
    if (outIsVertical) *outIsVertical = vertical ? 1 : 0;
    if (outDownBtnSize) *outDownBtnSize = button;
    if (outDownPageSize) *outDownPageSize = downPage;
    if (outThumbSize) *outThumbSize = thumb;
    if (outUpPageSize) *outUpPageSize = free - downPage;
    if (outUpBtnSize) *outUpBtnSize = button;
}
