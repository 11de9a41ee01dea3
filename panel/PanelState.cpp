// The control panel's shared texts and the display and print line sinks.
#include "PanelState.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "ListBox.h"
#include "PopupMenu.h"
#include "ScriptThreads.h"
#include "XPWidgets.h"

char szPopupText[4096] = {0};
char ScriptName[256] = {0};
XPWidgetID CorvellePopup = nullptr;
XPWidgetID CorvelleDisplayConsole = nullptr;
XPWidgetID CorvellePrintConsole = nullptr;

std::string gCV_PendingDisplayText;
std::string gCV_PendingPrintText;

namespace {

const size_t kWrapColumn = 45;
const size_t kPendingLimit = 64999;

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

// workSize is the line's work buffer (the line is cut to fit it), pieceSize that of the second
// and third pieces.
void AddItem(const char* text, size_t workSize, size_t pieceSize, std::string& pending, XPWidgetID listBox) {
    if (text == nullptr || text[0] == '\0') return;
    std::string line(text, strnlen(text, workSize - 1));
    std::string a, b, c;
    CV_WrapLine(line, pieceSize, a, b, c);
    if (listBox == nullptr) {
        // The list boxes come with the panel; until then lines wait in the pending text, which
        // never grows past its capacity: a piece that does not fit is dropped with those after it.
        if (pending.size() > kPendingLimit) return;
        for (const std::string* piece : {&a, &b, &c}) {
            if (piece->empty()) continue;
            if (pending.size() + piece->size() + 1 > CV_PendingCapacity) break;
            pending += *piece;
            pending += ';';
        }
        return;
    }
    for (const std::string* piece : {&a, &b, &c}) {
        if (piece->empty()) continue;
        XPSetWidgetDescriptor(listBox, piece->c_str());
        XPSetWidgetProperty(listBox, xpProperty_ListBoxAddItem, 1);
    }
    // The box was filled with the pending text when it was made.
    if (!pending.empty()) pending.clear();
}

}  // namespace

void CV_WrapLine(const std::string& line, size_t pieceSize, std::string& a, std::string& b, std::string& c) {
    a = line;
    b = SplitAtWrapColumn(a);
    if (pieceSize > 0 && b.size() > pieceSize - 1) b.resize(pieceSize - 1);
    c = SplitAtWrapColumn(b);
    if (pieceSize > 0 && c.size() > pieceSize - 1) c.resize(pieceSize - 1);
}

namespace {

// A line from a script's own thread waits for the main thread, which alone may touch the widgets.
void AddItemOnMainThread(const char* text, size_t workSize, size_t pieceSize, std::string& pending,
                         XPWidgetID& listBox) {
    if (text == nullptr) return;
    if (!CV_OnMainThread()) {
        CV_OnMainThreadDo([line = std::string(text, strnlen(text, workSize)), workSize, pieceSize, &pending, &listBox] {
            AddItem(line.c_str(), workSize, pieceSize, pending, listBox);
        });
        return;
    }
    CV_RunDeferredWork();
    AddItem(text, workSize, pieceSize, pending, listBox);
}

}  // namespace

void AddDisplayItem(const char* text) {
    AddItemOnMainThread(text, 256, 256, gCV_PendingDisplayText, CorvelleDisplayConsole);
}

void AddPrintItem(const char* text) {
    AddItemOnMainThread(text, 65536, 32768, gCV_PendingPrintText, CorvellePrintConsole);
}

void CV_UpdateScriptPopup() {
    if (!CV_OnMainThread()) return CV_OnMainThreadDo(CV_UpdateScriptPopup);
    if (CorvellePopup == nullptr) return;
    XPSetWidgetDescriptor(CorvellePopup, szPopupText);
    XPSetWidgetProperty(CorvellePopup, xpProperty_PopupCurrentItem, 0);
}

void ClearDisplay() {
    if (!CV_OnMainThread()) return CV_OnMainThreadDo(ClearDisplay);
    if (CorvelleDisplayConsole != nullptr) XPSetWidgetProperty(CorvelleDisplayConsole, xpProperty_ListBoxClear, 1);
}

void ClearPrint() {
    if (!CV_OnMainThread()) return CV_OnMainThreadDo(ClearPrint);
    if (CorvellePrintConsole != nullptr) XPSetWidgetProperty(CorvellePrintConsole, xpProperty_ListBoxClear, 1);
}

std::string CV_GetDescriptor(XPWidgetID widget, size_t limit) {
    const int length = XPGetWidgetDescriptor(widget, nullptr, 0);
    if (length <= 0 || limit == 0) return std::string();
    const size_t size = std::min(static_cast<size_t>(length), limit);
    std::vector<char> buffer(size + 1, '\0');
    XPGetWidgetDescriptor(widget, buffer.data(), static_cast<int>(size));
    buffer[size] = '\0';
    return std::string(buffer.data(), strnlen(buffer.data(), size));
}

void CV_ResetPanelState() {
    gCV_PendingDisplayText.clear();
    gCV_PendingPrintText.clear();
    CorvellePopup = nullptr;
    CorvelleDisplayConsole = nullptr;
    CorvellePrintConsole = nullptr;
}
