// The control panel's texts and line lists that the rest of the plugin writes to, whether or not
// the panel is open: the script chooser's texts and the display and print lists.
#pragma once

#include <string>

#include "XPWidgetDefs.h"

// Script chooser: the popup's item text ("name;name;...") and the popup button's text.
extern char szPopupText[4096];
extern char ScriptName[256];
// The script chooser popup widget; null while the panel has not been built.
extern XPWidgetID CorvellePopup;

// Lines waiting for the panel's list boxes, each piece followed by ";".
extern std::string gCV_PendingDisplayText;
extern std::string gCV_PendingPrintText;

// Adds one line to the display or print list, wrapped at 45 columns into at most three pieces.
void AddDisplayItem(const char* text);
void AddPrintItem(const char* text);

// Splits a line into at most three pieces at 45 columns, preferring the last space before the cut.
// pieceSize bounds the second and third pieces (including their terminating zero).
void CV_WrapLine(const std::string& line, size_t pieceSize, std::string& a, std::string& b, std::string& c);

// Shows szPopupText in the script chooser popup and selects its first item, when the popup exists.
void CV_UpdateScriptPopup();

// Empty the display or the print list.
void ClearDisplay();
void ClearPrint();
