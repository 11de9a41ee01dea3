// The control panel's texts and line lists that the rest of the plugin writes to, whether or not
// the panel is open: the script chooser's texts and the display and print lists.
#pragma once

#include <cstddef>
#include <string>

#include "XPWidgetDefs.h"

// Script chooser: the popup's item text ("name;name;...") and the popup button's text.
extern char szPopupText[4096];
extern char ScriptName[256];
// The script chooser popup widget; null while the panel has not been built.
extern XPWidgetID CorvellePopup;
// The panel's two list boxes; null while the panel has not been built.
extern XPWidgetID CorvelleDisplayConsole;
extern XPWidgetID CorvellePrintConsole;

// Lines waiting for the panel's list boxes, each piece followed by ";". They become the lists'
// first items when the panel is built. Each holds at most CV_PendingCapacity bytes.
extern std::string gCV_PendingDisplayText;
extern std::string gCV_PendingPrintText;
enum : size_t { CV_PendingCapacity = 65535 };

// Adds one line to the display or print list, wrapped at 45 columns into at most three pieces:
// straight into the list box when the panel exists, otherwise into the pending text (a line that
// arrives when the pending text is over 64999 bytes is dropped).
void AddDisplayItem(const char* text);
void AddPrintItem(const char* text);

// Splits a line into at most three pieces at 45 columns, preferring the last space before the cut.
// pieceSize bounds the second and third pieces (including their terminating zero).
void CV_WrapLine(const std::string& line, size_t pieceSize, std::string& a, std::string& b, std::string& c);

// Shows szPopupText in the script chooser popup and selects its first item, when the popup exists.
void CV_UpdateScriptPopup();

// Empty the display or the print list box, when the panel exists; pending lines stay.
void ClearDisplay();
void ClearPrint();

// A widget's descriptor, at most `limit` bytes of it.
std::string CV_GetDescriptor(XPWidgetID widget, size_t limit);

// Forgets the pending lines and the panel's widgets, as at the start of the plugin's life.
void CV_ResetPanelState();
