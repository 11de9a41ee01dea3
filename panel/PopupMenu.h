// The popup button: a custom widget showing the current item of a ";"-separated item list (its
// descriptor). A click opens a menu of every item in a temporary full-screen window; picking an
// item makes it current and sends xpMsg_PopupNewItemPicked up the chain. An item that begins with
// "(" is shown disabled, an item that is exactly "-" is a separator line.
#pragma once

#include <string>
#include <vector>

#include "XPLMDisplay.h"
#include "XPWidgetDefs.h"

enum {
    xpProperty_PopupCurrentItem = 1800,  // index of the current item
    xpProperty_PopupItemStart = 1898,    // where the current item's text begins in the descriptor
    xpProperty_PopupItemLength = 1899,   // the current item's length
};

// Sent up the chain when an item was picked: param1 the button, param2 the item.
enum { xpMsg_PopupNewItemPicked = 1800 };

// Told the picked item (-1: none) and the reference given to XPPickPopup.
typedef void (*CV_PopupPick_f)(int item, void* reference);

// The screen the menu covers and keeps inside when the simulator does not tell its size.
enum { CV_PopupScreenWidth = 1024, CV_PopupScreenHeight = 768 };

// One open menu. Item rectangles are relative to the menu's left and top.
struct CV_PopupMenu_t {
    XPLMWindowID window = nullptr;
    std::vector<std::string> items;
    std::vector<bool> itemEnabled;
    std::vector<int> itemLeft, itemRight, itemBottom, itemTop;
    std::vector<int> columnStarts;  // the x offset of every column after the first
    int left = 0, top = 0, right = 0, bottom = 0;
    CV_PopupPick_f callback = nullptr;
    void* reference = nullptr;
};

// Lays the items of `itemsText` out in columns for a button at (buttonLeft, buttonTop), with the
// current item over the button, and places the menu on the screen: at least 10 pixels in from its
// left, right and bottom edges and 30 from its top. charWidth is the menus font's.
void CV_LayoutPopupMenu(CV_PopupMenu_t& menu, const char* itemsText, int currentItem, int buttonLeft, int buttonTop,
                        int charWidth, int screenWidth = CV_PopupScreenWidth,
                        int screenHeight = CV_PopupScreenHeight);
// Where the current item's text lies in the item text: skips `index` ";"-terminated items.
void CV_PopupCurrentItem(const std::string& itemsText, int index, int& start, int& length);

// The first item whose rectangle holds the screen point; -1 if none.
int XPItemForHeight(const CV_PopupMenu_t* menu, int x, int y);
// Opens the menu; the callback hears of the pick (or -1) at the next mouse release.
void XPPickPopup(int left, int top, const char* itemsText, int currentItem, CV_PopupPick_f callback,
                 void* reference);
// Closes every open menu without telling its callback (the plugin stopping).
void CV_CloseOpenPopups();

// Creates a popup button (a custom widget, not a root) with the items of itemsText.
XPWidgetID CV_CreatePopup(int left, int top, int right, int bottom, int visible, const char* itemsText,
                          XPWidgetID container);
int CV_PopupButtonProc(XPWidgetMessage message, XPWidgetID widget, intptr_t param1, intptr_t param2);
// The button's pick callback: makes the item current and tells the button's parents.
void CV_PopupWidgetProc(int item, void* reference);
