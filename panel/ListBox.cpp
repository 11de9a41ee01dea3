// The list box widget: its items, its drawing, the mouse on its lines and scroll bar, and the
// command properties its owner sets.
#include "ListBox.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "CV_ScriptTable.h"
#include "PanelColours.h"
#include "PanelState.h"
#include "XPLMGraphics.h"
#include "XPUIGraphics.h"
#include "XPWidgetUtils.h"
#include "XPWidgets.h"

namespace {

// Longest descriptor the box reads, and the line buffer an item is drawn from.
const size_t kDescriptorLimit = 65535;
const size_t kLineBufferSize = 512;

// One shared drag offset for every list box: set when a thumb drag begins, reset by every new box.
int ScrollBarSlop = 0;

CV_ListBoxData_t* DataOf(XPWidgetID widget) {
    return reinterpret_cast<CV_ListBoxData_t*>(XPGetWidgetProperty(widget, xpProperty_ListBoxData, nullptr));
}

int Prop(XPWidgetID widget, XPWidgetPropertyID property) {
    return static_cast<int>(XPGetWidgetProperty(widget, property, nullptr));
}

int Count(const CV_ListBoxData_t* data) { return data ? static_cast<int>(data->items.size()) : 0; }

// Position and maximum follow the item count, so the first item is at the top again.
void ShowFromTheTop(XPWidgetID widget, const CV_ListBoxData_t* data) {
    XPSetWidgetProperty(widget, xpProperty_ListBoxScrollPosition, Count(data));
    XPSetWidgetProperty(widget, xpProperty_ListBoxScrollMax, Count(data));
}

// Takes a command property: true (and resets it) when it was set.
bool TakeCommand(XPWidgetID widget, XPWidgetPropertyID property) {
    if (XPGetWidgetProperty(widget, property, nullptr) == 0) return false;
    XPSetWidgetProperty(widget, property, 0);
    return true;
}

int CharacterWidth() {
    int width = 0;
    XPLMGetFontDimensions(xplmFont_Basic, &width, nullptr, nullptr);
    return width > 0 ? width : 1;
}

void Draw(XPWidgetID widget, const CV_ListBoxData_t* data, int left, int top, int right, int bottom) {
    const int minimum = Prop(widget, xpProperty_ListBoxScrollMin);
    const int maximum = Prop(widget, xpProperty_ListBoxScrollMax);
    const int position = Prop(widget, xpProperty_ListBoxScrollPosition);
    const int selection = Prop(widget, xpProperty_ListBoxSelection);
    const int lines = Prop(widget, xpProperty_ListBoxVisibleLines);
    const int listRight = right - CV_ListBoxScrollBarWidth;

    XPDrawWindow(left, bottom, listRight, top, xpWindow_ListView);
    XPDrawTrack(listRight, bottom, right, top, minimum, maximum, position, xpTrack_ScrollBar, 0);

    XPLMSetGraphicsState(0, 1, 0, 0, 0, 0, 0);
    XPLMBindTexture2d(XPLMGetTexture(xplm_Tex_GeneralInterface), 0);
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    XPLMSetGraphicsState(0, 0, 0, 0, 0, 0, 0);

    const int count = Count(data);
    const long long first = static_cast<long long>(maximum) - position;
    const size_t characters = static_cast<size_t>(std::max(0, listRight - left) / CharacterWidth());
    // Only rows that show an item are visited, whatever the properties say.
    for (long long row = std::max(0LL, -first); row < lines && first + row < count; ++row) {
        const long long index = first + row;
        const int y = static_cast<int>(top - static_cast<long long>(CV_ListBoxLineHeight) * row);
        if (index == selection) {
            SetAlphaLevels(0.25f);
            XPLMSetGraphicsState(0, 0, 0, 0, 1, 0, 0);
            SetupAmbientColor(CV_Colour_MenuHilite, nullptr);
            SetAlphaLevels(1.0f);
            glBegin(GL_QUADS);
            glVertex2i(left, y);
            glVertex2i(listRight, y);
            glVertex2i(listRight, y - CV_ListBoxLineHeight);
            glVertex2i(left, y - CV_ListBoxLineHeight);
            glEnd();
        }
        float colour[3];
        SetupAmbientColor(CV_Colour_ListText, colour);
        char line[kLineBufferSize];
        CV_CopyText(line, sizeof line, data->items[index].c_str());
        if (characters < sizeof line) line[characters] = '\0';
        XPLMDrawString(colour, left, y - 10, line, nullptr, xplmFont_Basic);
    }
}

// The scroll bar at the box's right edge: where its parts lie along the track, and the track's
// ends along its length.
struct ScrollBar {
    int vertical = 0, downButton = 0, downPage = 0, thumb = 0, upPage = 0, upButton = 0;
    int minimum = 0, maximum = 0, low = 0, high = 0;
};

ScrollBar Bar(XPWidgetID widget, int barLeft, int top, int right, int bottom, int position) {
    ScrollBar bar;
    bar.minimum = Prop(widget, xpProperty_ListBoxScrollMin);
    bar.maximum = Prop(widget, xpProperty_ListBoxScrollMax);
    XPGetTrackMetrics(barLeft, bottom, right, top, bar.minimum, bar.maximum, position, xpTrack_ScrollBar,
                      &bar.vertical, &bar.downButton, &bar.downPage, &bar.thumb, &bar.upPage, &bar.upButton);
    bar.low = bar.vertical ? bottom : barLeft;
    bar.high = bar.vertical ? top : right;
    return bar;
}

void MouseDown(XPWidgetID widget, const CV_ListBoxData_t* data, const XPMouseState_t& mouse, int left, int top,
               int right, int bottom) {
    const int listRight = right - CV_ListBoxScrollBarWidth;
    int position = Prop(widget, xpProperty_ListBoxScrollPosition);
    const int count = Count(data);
    if (mouse.x >= left && mouse.x <= listRight && mouse.y >= bottom && mouse.y <= top && count > 0) {
        const int row = CV_ListBoxHitRow(*data, mouse.x - left, top - mouse.y);
        if (row >= 0) {
            const long long candidate =
                static_cast<long long>(Prop(widget, xpProperty_ListBoxScrollMax)) - position + row;
            if (candidate >= 0 && candidate < count)
                XPSetWidgetProperty(widget, xpProperty_ListBoxSelection, static_cast<intptr_t>(candidate));
        }
        return;
    }
    if (mouse.x < listRight || mouse.x > right || mouse.y < bottom || mouse.y > top) return;

    const ScrollBar bar = Bar(widget, listRight, top, right, bottom, position);
    const CV_ScrollClick click = CV_ListBoxScrollClick(
        bar.low, bar.high, bar.vertical ? mouse.y : mouse.x, position, bar.minimum, bar.maximum,
        Prop(widget, xpProperty_ListBoxPageAmount), bar.downButton, bar.downPage, bar.thumb, bar.upPage, bar.upButton);
    if (click.thumb) ScrollBarSlop = click.slop;
    XPSetWidgetProperty(widget, xpProperty_ListBoxThumbDragging, click.thumb ? 1 : 0);
    if (click.position != position) XPSetWidgetProperty(widget, xpProperty_ListBoxScrollPosition, click.position);
}

void MouseDrag(XPWidgetID widget, const XPMouseState_t& mouse, int top, int right, int bottom) {
    const int barLeft = right - CV_ListBoxScrollBarWidth;
    if (mouse.x < barLeft || mouse.x > right || mouse.y < bottom || mouse.y > top) return;
    if (Prop(widget, xpProperty_ListBoxThumbDragging) == 0) return;
    const int position = Prop(widget, xpProperty_ListBoxScrollPosition);
    const ScrollBar bar = Bar(widget, barLeft, top, right, bottom, position);
    const int moved = CV_ListBoxThumbPosition(bar.low, bar.high, bar.vertical ? mouse.y : mouse.x, ScrollBarSlop,
                                              position, bar.minimum, bar.maximum, bar.downButton, bar.thumb,
                                              bar.upButton);
    XPSetWidgetProperty(widget, xpProperty_ListBoxScrollPosition, moved);
}

void MouseUp(XPWidgetID widget, const CV_ListBoxData_t* data, const XPMouseState_t& mouse, int left, int top,
             int right, int bottom) {
    const int listRight = right - CV_ListBoxScrollBarWidth;
    if (mouse.x >= listRight && mouse.x <= right && mouse.y >= bottom && mouse.y <= top)
        XPSetWidgetProperty(widget, xpProperty_ListBoxThumbDragging, 0);
    if (mouse.x >= left && mouse.x <= listRight && mouse.y >= bottom && mouse.y <= top && Count(data) > 0) {
        const int selection = Prop(widget, xpProperty_ListBoxSelection);
        const bool valid = selection >= 0 && selection < Count(data);
        XPSetWidgetDescriptor(widget, valid ? data->items[selection].c_str() : "");
        XPSendMessageToWidget(widget, xpMsg_ListBoxSelectionMade, xpMode_UpChain, reinterpret_cast<intptr_t>(widget),
                              selection);
    }
}

void PropertyChanged(XPWidgetID widget, CV_ListBoxData_t* data, int width) {
    if (data == nullptr) return;
    if (TakeCommand(widget, xpProperty_ListBoxAddItem)) {
        CV_ListBoxAddItem(data, CV_GetDescriptor(widget, kDescriptorLimit).c_str(), width);
        ShowFromTheTop(widget, data);
    }
    if (TakeCommand(widget, xpProperty_ListBoxRefill)) {
        const std::string text = CV_GetDescriptor(widget, kDescriptorLimit);
        CV_ListBoxClear(data);
        CV_ListBoxFillWithData(data, text.c_str(), width);
        ShowFromTheTop(widget, data);
    }
    if (TakeCommand(widget, xpProperty_ListBoxClear)) {
        XPSetWidgetProperty(widget, xpProperty_ListBoxSelection, 0);
        CV_ListBoxClear(data);
        ShowFromTheTop(widget, data);
    }
    if (TakeCommand(widget, xpProperty_ListBoxInsertItem)) {
        CV_ListBoxInsertItem(data, CV_GetDescriptor(widget, kDescriptorLimit).c_str(), width,
                             Prop(widget, xpProperty_ListBoxSelection));
    }
    if (TakeCommand(widget, xpProperty_ListBoxDeleteItem)) {
        const int selection = Prop(widget, xpProperty_ListBoxSelection);
        if (Count(data) > 0 && selection >= 0 && selection < Count(data)) CV_ListBoxDeleteItem(data, selection);
    }
}

}  // namespace

void CV_ListBoxAddItem(CV_ListBoxData_t* data, const char* text, int width) {
    if (data == nullptr) return;
    data->items.emplace_back(text ? text : "");
    data->itemLeft.push_back(0);
    data->itemRight.push_back(width);
}

std::vector<std::string> CV_SplitItems(const char* text) {
    std::vector<std::string> pieces;
    if (text == nullptr) return pieces;
    const char* rest = text;
    while (*rest != '\0') {
        const char* separator = std::strchr(rest, ';');
        if (separator == nullptr) {
            pieces.emplace_back(rest);
            break;
        }
        pieces.emplace_back(rest, separator - rest);
        rest = separator + 1;
    }
    return pieces;
}

void CV_ListBoxFillWithData(CV_ListBoxData_t* data, const char* text, int width) {
    for (const std::string& piece : CV_SplitItems(text)) CV_ListBoxAddItem(data, piece.c_str(), width);
}

void CV_ListBoxInsertItem(CV_ListBoxData_t* data, const char* text, int width, int index) {
    if (data == nullptr) return;
    const size_t at = static_cast<size_t>(std::clamp(index, 0, static_cast<int>(data->items.size())));
    data->items.insert(data->items.begin() + at, text ? text : "");
    data->itemLeft.insert(data->itemLeft.begin() + at, 0);
    data->itemRight.insert(data->itemRight.begin() + at, width);
}

void CV_ListBoxDeleteItem(CV_ListBoxData_t* data, int index) {
    if (data == nullptr || index < 0 || index >= static_cast<int>(data->items.size())) return;
    data->items.erase(data->items.begin() + index);
    data->itemLeft.erase(data->itemLeft.begin() + index);
    data->itemRight.erase(data->itemRight.begin() + index);
}

void CV_ListBoxClear(CV_ListBoxData_t* data) {
    if (data == nullptr) return;
    data->items.clear();
    data->itemLeft.clear();
    data->itemRight.clear();
}

int CV_ListBoxHitRow(const CV_ListBoxData_t& data, int dx, int dy) {
    const long long band = static_cast<long long>(CV_ListBoxLineHeight);
    for (size_t k = 0; k < data.items.size(); ++k) {
        const bool inSpan = data.itemLeft[k] <= dx && dx < data.itemRight[k];
        const bool inBand = band * static_cast<long long>(k) <= dy && dy < band * static_cast<long long>(k + 1);
        if (inSpan && inBand) return static_cast<int>(k);
    }
    return -1;
}

CV_ScrollClick CV_ListBoxScrollClick(int low, int high, int at, int position, int minimum, int maximum, int page,
                                     int downButton, int downPage, int thumb, int upPage, int upButton) {
    // Sums in 64 bits: the metrics and values come from properties anyone may set.
    const long long b = low, t = high, y = at;
    auto within = [y](long long from, long long to) { return y >= from && y <= to; };
    const long long up = std::min<long long>(static_cast<long long>(position) + page, maximum);
    const long long down = std::max<long long>(static_cast<long long>(position) - page, minimum);
    CV_ScrollClick click{position, false, 0};
    if (within(b + downButton + downPage + thumb, t - upButton)) {
        click.position = static_cast<int>(up);
    } else if (within(b + downButton, t - upButton - upPage - thumb)) {
        click.position = static_cast<int>(down);
    } else if (within(t - upButton, t)) {
        click.position = static_cast<int>(std::min<long long>(static_cast<long long>(position) + 1, maximum));
    } else if (within(b, b + downButton)) {
        click.position = static_cast<int>(std::max<long long>(static_cast<long long>(position) - 1, minimum));
    } else if (within(b + downButton + downPage, t - upButton - upPage)) {
        click.thumb = true;
        click.slop = static_cast<int>(b + downButton + downPage + thumb / 2 - y);
    }
    return click;
}

int CV_ListBoxThumbPosition(int low, int high, int at, int slop, int position, int minimum, int maximum,
                            int downButton, int thumb, int upButton) {
    const long long half = thumb / 2;
    const long long lo = static_cast<long long>(low) + downButton + half;
    const long long hi = static_cast<long long>(high) - upButton - half;
    if (hi <= lo) return position;
    const double ratio = static_cast<double>(static_cast<long long>(at) + slop - lo) / static_cast<double>(hi - lo);
    const double wanted = std::round(ratio * maximum);
    return static_cast<int>(std::clamp(wanted, static_cast<double>(minimum), static_cast<double>(std::max(minimum, maximum))));
}

XPWidgetID CV_CreateListBox(int left, int top, int right, int bottom, int visible, const char* descriptor,
                            XPWidgetID container) {
    return XPCreateCustomWidget(left, top, right, bottom, visible, descriptor ? descriptor : "", 0, container,
                                CV_ListBoxProc);
}

int CV_ListBoxProc(XPWidgetMessage message, XPWidgetID widget, intptr_t param1, intptr_t param2) {
    if (XPUSelectIfNeeded(message, widget, param1, param2, 1)) return 1;
    int left = 0, top = 0, right = 0, bottom = 0;
    XPGetWidgetGeometry(widget, &left, &top, &right, &bottom);
    CV_ListBoxData_t* data = DataOf(widget);
    const int width = right - left - CV_ListBoxScrollBarWidth;
    const XPMouseState_t* mouse = reinterpret_cast<const XPMouseState_t*>(param1);

    switch (message) {
        case xpMsg_Create: {
            if (data == nullptr) {
                data = new CV_ListBoxData_t();
                CV_ListBoxFillWithData(data, CV_GetDescriptor(widget, kDescriptorLimit).c_str(), width);
            }
            XPSetWidgetProperty(widget, xpProperty_ListBoxData, reinterpret_cast<intptr_t>(data));
            XPSetWidgetProperty(widget, xpProperty_ListBoxSelection, 0);
            ScrollBarSlop = 0;
            const int lines = (top - bottom) / CV_ListBoxLineHeight;
            XPSetWidgetProperty(widget, xpProperty_ListBoxScrollPosition, Count(data));
            XPSetWidgetProperty(widget, xpProperty_ListBoxScrollMin, 0);
            XPSetWidgetProperty(widget, xpProperty_ListBoxScrollMax, Count(data));
            XPSetWidgetProperty(widget, xpProperty_ListBoxPageAmount, lines);
            XPSetWidgetProperty(widget, xpProperty_ListBoxVisibleLines, lines);
            XPSetWidgetProperty(widget, xpProperty_ListBoxThumbDragging, 0);
            return 1;
        }
        case xpMsg_Destroy:
            // The items go with the box; the property is cleared first so no later message finds them.
            XPSetWidgetProperty(widget, xpProperty_ListBoxData, 0);
            delete data;
            return 0;
        case xpMsg_Draw:
            Draw(widget, data, left, top, right, bottom);
            return 1;
        case xpMsg_MouseDown:
            if (mouse != nullptr) MouseDown(widget, data, *mouse, left, top, right, bottom);
            return 1;
        case xpMsg_MouseDrag:
            if (mouse != nullptr) MouseDrag(widget, *mouse, top, right, bottom);
            return 1;
        case xpMsg_MouseUp:
            if (mouse != nullptr) MouseUp(widget, data, *mouse, left, top, right, bottom);
            return 1;
        case xpMsg_DescriptorChanged:
            return 1;
        case xpMsg_PropertyChanged:
            PropertyChanged(widget, data, width);
            return 1;
        default:
            return 0;
    }
}
