// The control panel's shared texts and the display and print line sinks.
#include "PanelState.h"

#include <cstring>

#include "XPWidgets.h"

char szPopupText[4096] = {0};
char ScriptName[256] = {0};
XPWidgetID CorvellePopup = nullptr;

std::string gCV_PendingDisplayText;
std::string gCV_PendingPrintText;

namespace {

const size_t kWrapColumn = 45;
const size_t kPendingLimit = 64999;
// The popup's current-item property.
const XPWidgetPropertyID kPopupCurrentItem = 1800;

// Cuts `first` at the wrap column and returns the remainder, following the wrap rule.
std::string SplitAtWrapColumn(std::string& first) {
    if (first.size() < kWrapColumn + 1) return std::string();
    std::string rest;
    if (first[kWrapColumn] == ' ') {
        rest = first.substr(kWrapColumn);
        first.resize(kWrapColumn);
        return rest;
    }
    size_t k = kWrapColumn;
    while (k > 0 && first[k] != ' ') --k;
    if (k > 0) {
        rest = first.substr(k + 1);
        first.resize(k);
    } else {
        rest = first.substr(kWrapColumn);
        first.resize(kWrapColumn);
    }
    return rest;
}

void AddItem(const char* text, size_t workSize, size_t pieceSize, std::string& pending) {
    if (text == nullptr || text[0] == '\0') return;
    std::string line(text, strnlen(text, workSize - 1));
    std::string a, b, c;
    CV_WrapLine(line, pieceSize, a, b, c);
    // The list boxes come with the panel; until then lines wait in the pending text.
    if (pending.size() > kPendingLimit) return;
    for (const std::string* piece : {&a, &b, &c}) {
        if (piece->empty()) continue;
        pending += *piece;
        pending += ';';
    }
}

}  // namespace

void CV_WrapLine(const std::string& line, size_t pieceSize, std::string& a, std::string& b, std::string& c) {
    a = line;
    b = SplitAtWrapColumn(a);
    if (pieceSize > 0 && b.size() > pieceSize - 1) b.resize(pieceSize - 1);
    c = SplitAtWrapColumn(b);
    if (pieceSize > 0 && c.size() > pieceSize - 1) c.resize(pieceSize - 1);
}

void AddDisplayItem(const char* text) { AddItem(text, 256, 256, gCV_PendingDisplayText); }

void AddPrintItem(const char* text) { AddItem(text, 65536, 32768, gCV_PendingPrintText); }

void CV_UpdateScriptPopup() {
    if (CorvellePopup == nullptr) return;
    XPSetWidgetDescriptor(CorvellePopup, szPopupText);
    XPSetWidgetProperty(CorvellePopup, kPopupCurrentItem, 0);
}

void ClearDisplay() { gCV_PendingDisplayText.clear(); }

void ClearPrint() { gCV_PendingPrintText.clear(); }
