// The control panel's scrolling text list: a custom widget with a list-view well, a 20-pixel
// vertical scroll bar on its right, one 12-pixel line per item and a highlighted selection. Its
// owner drives it through the command properties below (set one to 1 with the text in the
// descriptor); a release on an item sends xpMsg_ListBoxSelectionMade up the chain.
#pragma once

#include <string>
#include <vector>

#include "XPWidgetDefs.h"

enum {
    xpProperty_ListBoxSelection = 1900,       // index of the selected item
    xpProperty_ListBoxAddItem = 1901,         // command: append the descriptor as an item
    xpProperty_ListBoxRefill = 1902,          // command: items = the descriptor split at ";"
    xpProperty_ListBoxClear = 1903,           // command: remove every item
    xpProperty_ListBoxInsertItem = 1904,      // command: insert the descriptor before the selection
    xpProperty_ListBoxDeleteItem = 1905,      // command: delete the selected item
    xpProperty_ListBoxData = 1906,            // the box's CV_ListBoxData_t
    xpProperty_ListBoxVisibleLines = 1907,    // lines that fit: height / 12
    xpProperty_ListBoxThumbDragging = 1908,   // 1 while the thumb is dragged
    xpProperty_ListBoxScrollMin = 1909,       // always 0
    xpProperty_ListBoxScrollMax = 1910,       // the item count at the last count update
    xpProperty_ListBoxScrollPosition = 1911,  // the maximum shows the first item at the top
    xpProperty_ListBoxPageAmount = 1912,      // lines moved by a page click
};

// Sent up the chain from a release on the list: param1 the list box, param2 the selection.
enum { xpMsg_ListBoxSelectionMade = 1900 };

// Height of one line, width of the scroll bar.
enum { CV_ListBoxLineHeight = 12, CV_ListBoxScrollBarWidth = 20 };

// The items of one list box: three arrays of equal length. Each item's clickable span runs from
// itemLeft to itemRight, relative to the box's left edge.
struct CV_ListBoxData_t {
    std::vector<std::string> items;
    std::vector<int> itemLeft;
    std::vector<int> itemRight;
};

// The pieces of a ";"-separated text: "a;;b" gives a, an empty piece and b; a trailing ";" adds
// nothing; an empty text gives none.
std::vector<std::string> CV_SplitItems(const char* text);

// Splits text at ";" and appends each piece with the span (0, width): "a;;b" gives a, an empty
// item and b; a trailing ";" adds nothing; an empty text adds nothing.
void CV_ListBoxFillWithData(CV_ListBoxData_t* data, const char* text, int width);
void CV_ListBoxAddItem(CV_ListBoxData_t* data, const char* text, int width);
// Inserts before position index (an index outside 0 to the count appends at the nearer end).
void CV_ListBoxInsertItem(CV_ListBoxData_t* data, const char* text, int width, int index);
// Erases position index; nothing for an index outside the items.
void CV_ListBoxDeleteItem(CV_ListBoxData_t* data, int index);
void CV_ListBoxClear(CV_ListBoxData_t* data);

// The row k (from 0) whose item span holds dx (the mouse's distance from the box's left edge) and
// whose 12-pixel band holds dy (its distance below the box's top), among the first `count` rows;
// -1 if none.
int CV_ListBoxHitRow(const CV_ListBoxData_t& data, int dx, int dy);

// What a mouse down at `at` (measured along the scroll bar, from `low`, its bottom or left end, to
// `high`) does, given the track metrics: the new position and whether the thumb was caught.
struct CV_ScrollClick {
    int position;
    bool thumb;
    int slop;  // the distance from the mouse to the thumb's centre, when the thumb was caught
};
CV_ScrollClick CV_ListBoxScrollClick(int low, int high, int at, int position, int minimum, int maximum, int page,
                                     int downButton, int downPage, int thumb, int upPage, int upButton);
// The position a thumb drag to `at` gives (rounded, kept within minimum and maximum); `position`
// when the track has no room to move the thumb.
int CV_ListBoxThumbPosition(int low, int high, int at, int slop, int position, int minimum, int maximum,
                            int downButton, int thumb, int upButton);

// Creates a list box (a custom widget, not a root) whose items are the descriptor split at ";".
XPWidgetID CV_CreateListBox(int left, int top, int right, int bottom, int visible, const char* descriptor,
                            XPWidgetID container);
int CV_ListBoxProc(XPWidgetMessage message, XPWidgetID widget, intptr_t param1, intptr_t param2);
