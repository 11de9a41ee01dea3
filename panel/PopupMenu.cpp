// The popup button and its menu window.
#include "PopupMenu.h"

#include <GL/gl.h>

#include <algorithm>

#include "ListBox.h"
#include "PanelColours.h"
#include "PanelState.h"
#include "XPLMGraphics.h"
#include "XPLMUtilities.h"
#include "XPUIGraphics.h"
#include "XPWidgetUtils.h"
#include "XPWidgets.h"

namespace {

const size_t kDescriptorLimit = 4095;
const int kItemHeight = 12;
const int kSeparatorHeight = 2;
// A column ends once its items reach this far below the menu's top.
const int kColumnDepth = 718;
// The menu stays this far inside the screen's edges (the top keeps clear of the menu bar).
const int kScreenMargin = 10;
const int kTopMargin = 30;

// Menus open now. A menu leaves the list before its callback is called and is freed after.
std::vector<CV_PopupMenu_t*> gOpenMenus;

// The simulator's version and the basic font's width, read at the first draw of a button.
bool gButtonMetricsRead = false;
int gSimulatorVersion = 0;
int gButtonCharWidth = 0;

int SimulatorVersion() {
    int xplane = 0, xplm = 0;
    XPLMHostApplicationID host = 0;
    XPLMGetVersions(&xplane, &xplm, &host);
    return xplane;
}

void FontSize(XPLMFontID font, int& width, int& height) {
    width = 0;
    height = 0;
    XPLMGetFontDimensions(font, &width, &height, nullptr);
    if (width <= 0) width = 1;
}

void DrawColourLine(int colour, int x1, int y1, int x2, int y2) {
    SetupAmbientColor(colour, nullptr);
    glVertex2i(x1, y1);
    glVertex2i(x2, y2);
}

void CloseMenu(CV_PopupMenu_t* menu) {
    gOpenMenus.erase(std::remove(gOpenMenus.begin(), gOpenMenus.end(), menu), gOpenMenus.end());
    if (menu->window != nullptr) XPLMDestroyWindow(menu->window);
    delete menu;
}

bool IsOpen(const CV_PopupMenu_t* menu) {
    return std::find(gOpenMenus.begin(), gOpenMenus.end(), menu) != gOpenMenus.end();
}

void DrawMenu(XPLMWindowID window, void* refcon) {
    auto* menu = static_cast<CV_PopupMenu_t*>(refcon);
    if (!IsOpen(menu)) return;
    int mouseX = 0, mouseY = 0;
    XPLMGetMouseLocation(&mouseX, &mouseY);
    const int hovered = XPItemForHeight(menu, mouseX, mouseY);
    XPLMSetGraphicsState(0, 0, 0, 0, 0, 0, 0);

    for (int x : menu->columnStarts) {
        glBegin(GL_LINES);
        DrawColourLine(CV_Colour_MenuDark, menu->left + x - 1, menu->top, menu->left + x - 1, menu->bottom);
        DrawColourLine(CV_Colour_MenuLite, menu->left + x, menu->top, menu->left + x, menu->bottom);
        glEnd();
    }

    int version = SimulatorVersion();
    for (size_t i = 0; i < menu->items.size(); ++i) {
        const int left = menu->left + menu->itemLeft[i];
        const int right = menu->left + menu->itemRight[i];
        const int top = menu->top + menu->itemTop[i];
        const int bottom = menu->top + menu->itemBottom[i];
        const bool enabled = menu->itemEnabled[i];
        const bool lit = enabled && hovered == static_cast<int>(i);
        XPDrawElement(left, bottom, right, top, lit ? xpElement_PushButtonLit : xpElement_PushButton, 0);
        if (!enabled && menu->items[i] == "-") {
            glBegin(GL_LINES);
            DrawColourLine(CV_Colour_MenuLite, left, top - 1, right, top - 1);
            DrawColourLine(CV_Colour_MenuDark, left, top, right, top);
            glEnd();
            continue;
        }
        if (lit) {
            SetAlphaLevels(0.25f);
            XPLMSetGraphicsState(0, 0, 0, 0, 1, 0, 0);
            SetupAmbientColor(CV_Colour_MenuHilite, nullptr);
            SetAlphaLevels(1.0f);
            glBegin(GL_QUADS);
            glVertex2i(left, top);
            glVertex2i(right, top);
            glVertex2i(right, bottom);
            glVertex2i(left, bottom);
            glEnd();
        }
        float colour[3];
        SetupAmbientColor(enabled ? CV_Colour_MenuText : CV_Colour_MenuTextDisabled, colour);
        std::vector<char> text(menu->items[i].begin(), menu->items[i].end());
        text.push_back('\0');
        XPLMDrawString(colour, left + 18, bottom + (version > 9399 ? 5 : 2), text.data(), nullptr, xplmFont_Menus);
    }
}

void MenuKey(XPLMWindowID, char, XPLMKeyFlags, char, void*, int) {}

int MenuClick(XPLMWindowID window, int x, int y, XPLMMouseStatus status, void* refcon) {
    auto* menu = static_cast<CV_PopupMenu_t*>(refcon);
    if (status != xplm_MouseUp || !IsOpen(menu)) return 1;
    int item = XPItemForHeight(menu, x, y);
    if (item >= 0 && !menu->itemEnabled[item]) item = -1;
    // Out of the list first: whatever the callback does, the menu is closed once, here.
    gOpenMenus.erase(std::remove(gOpenMenus.begin(), gOpenMenus.end(), menu), gOpenMenus.end());
    if (menu->callback != nullptr) menu->callback(item, menu->reference);
    XPLMDestroyWindow(window);
    delete menu;
    return 1;
}

}  // namespace

void CV_PopupCurrentItem(const std::string& itemsText, int index, int& start, int& length) {
    size_t at = 0;
    for (int skipped = 0; skipped < index && at < itemsText.size(); ++skipped) {
        const size_t separator = itemsText.find(';', at);
        at = separator == std::string::npos ? itemsText.size() : separator + 1;
    }
    const size_t end = std::min(itemsText.find(';', at), itemsText.size());
    start = static_cast<int>(at);
    length = static_cast<int>(end - at);
}

void CV_LayoutPopupMenu(CV_PopupMenu_t& menu, const char* itemsText, int currentItem, int buttonLeft, int buttonTop,
                        int charWidth, int screenWidth, int screenHeight) {
    const long long rightLimit = static_cast<long long>(screenWidth) - kScreenMargin;
    const long long topLimit = static_cast<long long>(screenHeight) - kTopMargin;
    if (currentItem < 0) currentItem = 0;
    std::vector<int> heights;
    size_t longest = 0;
    for (const std::string& piece : CV_SplitItems(itemsText)) {
        if (piece == "-") {
            menu.items.push_back(piece);
            menu.itemEnabled.push_back(false);
            heights.push_back(kSeparatorHeight);
        } else if (!piece.empty() && piece[0] == '(') {
            menu.items.push_back(piece.substr(1));
            menu.itemEnabled.push_back(false);
            heights.push_back(kItemHeight);
        } else {
            menu.items.push_back(piece);
            menu.itemEnabled.push_back(true);
            heights.push_back(kItemHeight);
        }
        longest = std::max(longest, menu.items.back().size());
    }
    // The item text is at most a descriptor long, so the sizes stay far from overflowing.
    const long long columnWidth = static_cast<long long>(longest) * std::max(charWidth, 1) + 35;

    long long x = 0, y = 0, lowest = 0, currentX = 0, currentY = 0;
    for (size_t i = 0; i < menu.items.size(); ++i) {
        if (static_cast<int>(i) == currentItem) {
            currentX = x;
            currentY = y;
        }
        menu.itemLeft.push_back(static_cast<int>(x));
        menu.itemRight.push_back(static_cast<int>(x + columnWidth));
        menu.itemTop.push_back(static_cast<int>(y));
        menu.itemBottom.push_back(static_cast<int>(y - heights[i]));
        y -= heights[i];
        lowest = std::min(lowest, y);
        if (y < -kColumnDepth) {
            y = 0;
            x += columnWidth;
            menu.columnStarts.push_back(static_cast<int>(x));
        }
    }
    if (y == 0 && !menu.columnStarts.empty()) menu.columnStarts.pop_back();
    const long long columns = static_cast<long long>(menu.columnStarts.size()) + 1;

    long long left = buttonLeft - currentX;
    long long top = buttonTop - currentY;
    long long right = left + columnWidth * columns;
    long long bottom = top + lowest - currentY;
    if (right > rightLimit) {
        left -= right - rightLimit;
        right = rightLimit;
    }
    if (left < kScreenMargin) {
        right += kScreenMargin - left;
        left = kScreenMargin;
    }
    if (bottom < kScreenMargin) {
        top += kScreenMargin - bottom;
        bottom = kScreenMargin;
    }
    if (top > topLimit) {
        bottom -= top - topLimit;
        top = topLimit;
    }
    auto narrow = [](long long v) { return static_cast<int>(std::clamp<long long>(v, -1000000000, 1000000000)); };
    menu.left = narrow(left);
    menu.top = narrow(top);
    menu.right = narrow(right);
    menu.bottom = narrow(bottom);
}

int XPItemForHeight(const CV_PopupMenu_t* menu, int x, int y) {
    if (menu == nullptr) return -1;
    const long long dx = static_cast<long long>(x) - menu->left;
    const long long dy = static_cast<long long>(y) - menu->top;
    for (size_t i = 0; i < menu->items.size(); ++i) {
        if (menu->itemLeft[i] <= dx && dx < menu->itemRight[i] && menu->itemBottom[i] <= dy && dy < menu->itemTop[i])
            return static_cast<int>(i);
    }
    return -1;
}

void XPPickPopup(int left, int top, const char* itemsText, int currentItem, CV_PopupPick_f callback,
                 void* reference) {
    int charWidth = 0, charHeight = 0;
    FontSize(xplmFont_Menus, charWidth, charHeight);
    // The menu covers the whole screen, so that a click anywhere closes it.
    int screenWidth = 0, screenHeight = 0;
    XPLMGetScreenSize(&screenWidth, &screenHeight);
    if (screenWidth <= 0 || screenHeight <= 0) {
        screenWidth = CV_PopupScreenWidth;
        screenHeight = CV_PopupScreenHeight;
    }
    auto* menu = new CV_PopupMenu_t();
    gOpenMenus.push_back(menu);
    menu->window = XPLMCreateWindow(0, screenHeight, screenWidth, 0, 1, DrawMenu, MenuKey, MenuClick, menu);
    CV_LayoutPopupMenu(*menu, itemsText, currentItem, left, top, charWidth, screenWidth, screenHeight);
    menu->callback = callback;
    menu->reference = reference;
}

void CV_CloseOpenPopups() {
    while (!gOpenMenus.empty()) CloseMenu(gOpenMenus.back());
}

XPWidgetID CV_CreatePopup(int left, int top, int right, int bottom, int visible, const char* itemsText,
                          XPWidgetID container) {
    return XPCreateCustomWidget(left, top, right, bottom, visible, itemsText ? itemsText : "", 0, container,
                                CV_PopupButtonProc);
}

void CV_PopupWidgetProc(int item, void* reference) {
    if (item == -1) return;
    auto button = static_cast<XPWidgetID>(reference);
    XPSetWidgetProperty(button, xpProperty_PopupCurrentItem, item);
    XPSendMessageToWidget(button, xpMsg_PopupNewItemPicked, xpMode_UpChain, reinterpret_cast<intptr_t>(button), item);
}

int CV_PopupButtonProc(XPWidgetMessage message, XPWidgetID widget, intptr_t param1, intptr_t param2) {
    if (XPUSelectIfNeeded(message, widget, param1, param2, 1)) return 1;
    if (message > xpMsg_PropertyChanged) return 0;
    int left = 0, top = 0, right = 0, bottom = 0;
    XPGetWidgetGeometry(widget, &left, &top, &right, &bottom);
    int charWidth = 0, charHeight = 0;
    FontSize(xplmFont_Basic, charWidth, charHeight);
    const int current = static_cast<int>(XPGetWidgetProperty(widget, xpProperty_PopupCurrentItem, nullptr));

    switch (message) {
        case xpMsg_PropertyChanged:
            if (param1 != xpProperty_PopupCurrentItem) return 1;
            [[fallthrough]];
        case xpMsg_Create:
        case xpMsg_DescriptorChanged: {
            int start = 0, length = 0;
            CV_PopupCurrentItem(CV_GetDescriptor(widget, kDescriptorLimit), current, start, length);
            XPSetWidgetProperty(widget, xpProperty_PopupItemStart, start);
            XPSetWidgetProperty(widget, xpProperty_PopupItemLength, length);
            XPSetWidgetProperty(widget, xpProperty_Enabled, 1);
            return 1;
        }
        case xpMsg_Destroy:
            // A menu still open for this button closes without a pick.
            for (CV_PopupMenu_t* menu : std::vector<CV_PopupMenu_t*>(gOpenMenus)) {
                if (menu->reference == widget && menu->callback == CV_PopupWidgetProc) CloseMenu(menu);
            }
            return 0;
        case xpMsg_Draw: {
            if (!gButtonMetricsRead) {
                gButtonMetricsRead = true;
                gSimulatorVersion = SimulatorVersion();
                gButtonCharWidth = charWidth;
            }
            const int middle = (top + bottom) / 2;
            if (gSimulatorVersion > 699)
                XPDrawElement(left - 4, middle - 13, right + 4, middle + 13, xpElement_PushButton, 0);
            else
                XPDrawElement(left + 2, bottom, right - 2, top, xpElement_WindowDragBarSmooth, 0);
            const std::string text = CV_GetDescriptor(widget, kDescriptorLimit);
            const long long start = XPGetWidgetProperty(widget, xpProperty_PopupItemStart, nullptr);
            long long length = XPGetWidgetProperty(widget, xpProperty_PopupItemLength, nullptr);
            const long long fits = std::max(0, right - left - 24) / std::max(gButtonCharWidth, 1);
            length = std::min(length, fits);
            std::string shown;
            if (start >= 0 && start <= static_cast<long long>(text.size()) && length > 0)
                shown = text.substr(static_cast<size_t>(start), static_cast<size_t>(length));
            if (!shown.empty() && shown[0] == '(') shown.erase(0, 1);
            const bool enabled = XPGetWidgetProperty(widget, xpProperty_Enabled, nullptr) != 0;
            float colour[3];
            SetupAmbientColor(enabled ? CV_Colour_MenuText : CV_Colour_MenuTextDisabled, colour);
            std::vector<char> buffer(shown.begin(), shown.end());
            buffer.push_back('\0');
            XPLMDrawString(colour, left + 4, middle - charHeight / 2 + 2, buffer.data(), nullptr, xplmFont_Basic);
            return 1;
        }
        case xpMsg_MouseDown: {
            if (XPGetWidgetProperty(widget, xpProperty_Enabled, nullptr) == 0) return 0;
            XPPickPopup(left, top, CV_GetDescriptor(widget, kDescriptorLimit).c_str(), current, CV_PopupWidgetProc,
                        widget);
            return 1;
        }
        default:
            return 0;
    }
}
