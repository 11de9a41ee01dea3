// XPUIGraphics: drawing the simulator's user interface elements.
//
// Nothing is drawn headless, so the drawing functions do nothing. The dimension functions answer
// fixed sizes (see the README), and the track metrics lay a track out the way widget code expects:
// buttons as long as the track is thick at both ends of a scroll bar, a thumb as long as the track is
// thick, and the pages on either side of the thumb sharing the rest by the value.
#include "XPUIGraphics.h"

#include <algorithm>
#include <cstdlib>

namespace {

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

}  // namespace

void XPDrawWindow(int, int, int, int, XPWindowStyle) {}

void XPGetWindowDefaultDimensions(XPWindowStyle inStyle, int* outWidth, int* outHeight) {
    const Size size = WindowSize(inStyle);
    if (outWidth) *outWidth = size.width;
    if (outHeight) *outHeight = size.height;
}

void XPDrawElement(int, int, int, int, XPElementStyle, int) {}

void XPGetElementDefaultDimensions(XPElementStyle inStyle, int* outWidth, int* outHeight, int* outCanBeLit) {
    const Size size = ElementSize(inStyle);
    if (outWidth) *outWidth = size.width;
    if (outHeight) *outHeight = size.height;
    if (outCanBeLit) *outCanBeLit = size.canBeLit;
}

void XPDrawTrack(int, int, int, int, int, int, int, XPTrackStyle, int) {}

void XPGetTrackDefaultDimensions(XPTrackStyle inStyle, int* outWidth, int* outCanBeLit) {
    if (outWidth) *outWidth = inStyle == xpTrack_Progress ? 10 : inStyle == xpTrack_Slider ? 12 : 16;
    if (outCanBeLit) *outCanBeLit = inStyle == xpTrack_Progress ? 0 : 1;
}

void XPGetTrackMetrics(int inX1, int inY1, int inX2, int inY2, int inMin, int inMax, int inValue,
                       XPTrackStyle inTrackStyle, int* outIsVertical, int* outDownBtnSize, int* outDownPageSize,
                       int* outThumbSize, int* outUpPageSize, int* outUpBtnSize) {
    const int width = std::abs(inX2 - inX1);
    const int height = std::abs(inY2 - inY1);
    const bool vertical = height > width;
    const int length = vertical ? height : width;
    const int thickness = vertical ? width : height;
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
