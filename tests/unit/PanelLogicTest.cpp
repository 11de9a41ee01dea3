// The control panel's logic: the 45-column wrap and the pending lists, the list box's items,
// hit rows and scroll arithmetic, the popup menu's layout, and the script windows' pages and
// captions (built in xpsim's widget system inside this process, with plain addresses standing in
// for script instances).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CV_ScriptTable.h"
#include "ControlPanel.h"
#include "ListBox.h"
#include "PanelState.h"
#include "PopupMenu.h"
#include "ScriptWindows.h"
#include "XPStandardWidgets.h"
#include "XPWidgets.h"

namespace {

struct Wrap {
    std::string line;
    std::string a, b, c;
};

std::string Repeat(char c, size_t n) { return std::string(n, c); }

}  // namespace

TEST(PanelLines, WrapAtFortyFiveColumnsIntoThreePieces) {
    const std::string fox = "the quick brown fox jumps over the lazy dog and keeps running far away";
    const std::vector<Wrap> cases = {
        {Repeat('x', 100), Repeat('x', 45), Repeat('x', 45), Repeat('x', 10)},
        {Repeat('a', 45) + " tail", Repeat('a', 45), " tail", ""},  // the space at index 45 starts the second piece
        {fox, "the quick brown fox jumps over the lazy dog", "and keeps running far away", ""},
        {Repeat('y', 200), Repeat('y', 45), Repeat('y', 45), Repeat('y', 110)},  // the third piece is not wrapped
        {" " + Repeat('z', 60), " " + Repeat('z', 44), Repeat('z', 16), ""},  // a space only at index 0 is no break
        {Repeat('w', 45), Repeat('w', 45), "", ""},
        {"", "", "", ""},
    };
    for (const Wrap& w : cases) {
        std::string a, b, c;
        CV_WrapLine(w.line, 32768, a, b, c);
        EXPECT_EQ(a, w.a) << w.line;
        EXPECT_EQ(b, w.b) << w.line;
        EXPECT_EQ(c, w.c) << w.line;
    }
    // The pieces never outgrow their buffers, however long the line.
    std::string a, b, c;
    CV_WrapLine(Repeat('q', 100000), 256, a, b, c);
    EXPECT_EQ(a.size(), 45u);
    EXPECT_EQ(b.size(), 45u);
    EXPECT_EQ(c.size(), 255u - 45u);
}

TEST(PanelLines, PendingTextsCollectPiecesUpToTheirLimits) {
    CV_ResetPanelState();
    AddPrintItem(Repeat('z', 100).c_str());
    AddPrintItem("");
    AddPrintItem(nullptr);
    EXPECT_EQ(gCV_PendingPrintText, Repeat('z', 45) + ";" + Repeat('z', 45) + ";" + Repeat('z', 10) + ";");
    // Without the panel, clearing leaves the pending lines.
    ClearPrint();
    ClearDisplay();
    EXPECT_EQ(gCV_PendingPrintText.size(), 103u);

    // A display line is cut to its 255-byte work buffer before the wrap.
    AddDisplayItem(Repeat('d', 300).c_str());
    EXPECT_EQ(gCV_PendingDisplayText, Repeat('d', 45) + ";" + Repeat('d', 45) + ";" + Repeat('d', 165) + ";");

    // Beyond 64999 pending bytes lines are dropped; below it, a huge line adds only what fits in the
    // 65535-byte pending text, whole pieces only.
    gCV_PendingPrintText.assign(65000, 'q');
    AddPrintItem("lost");
    EXPECT_EQ(gCV_PendingPrintText.size(), 65000u);
    gCV_PendingPrintText.assign(64990, 'q');
    AddPrintItem(Repeat('h', 100000).c_str());
    EXPECT_EQ(gCV_PendingPrintText, Repeat('q', 64990) + Repeat('h', 45) + ";" + Repeat('h', 45) + ";");
    gCV_PendingPrintText.assign(30000, 'q');
    AddPrintItem(Repeat('h', 100000).c_str());
    EXPECT_EQ(gCV_PendingPrintText.size(), 30000u + 46 + 46 + 32768 - 45);
    EXPECT_LE(gCV_PendingPrintText.size(), size_t(CV_PendingCapacity));
    CV_ResetPanelState();
    EXPECT_TRUE(gCV_PendingPrintText.empty());
    EXPECT_TRUE(gCV_PendingDisplayText.empty());
}

TEST(ListBoxItems, SplittingInsertingDeletingAndHitRows) {
    using Items = std::vector<std::string>;
    EXPECT_EQ(CV_SplitItems("a;;b"), (Items{"a", "", "b"}));
    EXPECT_EQ(CV_SplitItems("a;b;"), (Items{"a", "b"}));
    EXPECT_EQ(CV_SplitItems(";"), (Items{""}));
    EXPECT_TRUE(CV_SplitItems("").empty());
    EXPECT_TRUE(CV_SplitItems(nullptr).empty());

    CV_ListBoxData_t data;
    CV_ListBoxFillWithData(&data, "a;b;c", 290);
    CV_ListBoxInsertItem(&data, "first", 100, 0);
    CV_ListBoxInsertItem(&data, "last", 100, 99);  // past the end: appended
    CV_ListBoxInsertItem(&data, "before", 100, -3);
    CV_ListBoxDeleteItem(&data, 2);
    CV_ListBoxDeleteItem(&data, 6);  // no such item
    CV_ListBoxDeleteItem(&data, -1);
    EXPECT_EQ(data.items, (Items{"before", "first", "b", "c", "last"}));
    EXPECT_EQ(data.itemLeft, (std::vector<int>{0, 0, 0, 0, 0}));
    EXPECT_EQ(data.itemRight, (std::vector<int>{100, 100, 290, 290, 100}));

    // Rows are 12 pixels from the top; an item's span is [0, right).
    EXPECT_EQ(CV_ListBoxHitRow(data, 0, 0), 0);
    EXPECT_EQ(CV_ListBoxHitRow(data, 99, 11), 0);
    EXPECT_EQ(CV_ListBoxHitRow(data, 100, 11), -1);
    EXPECT_EQ(CV_ListBoxHitRow(data, 200, 36), 3);
    EXPECT_EQ(CV_ListBoxHitRow(data, 5, 60), -1);  // below the last item
    EXPECT_EQ(CV_ListBoxHitRow(data, -1, 5), -1);
    CV_ListBoxClear(&data);
    EXPECT_TRUE(data.items.empty() && data.itemLeft.empty() && data.itemRight.empty());
    CV_ListBoxAddItem(nullptr, "x", 1);  // no record: nothing happens
}

TEST(ListBoxScrolling, ClicksOnTheBarAndThumbDrags) {
    // A bar from 0 to 120 with 20-pixel buttons and thumb; 30 items, page 10.
    struct Click {
        int position, downPage, upPage, at;
        int expected;
        bool thumb;
        int slop;
    };
    const std::vector<Click> clicks = {
        {30, 60, 0, 100, 30, false, 0},  // above the thumb at the top: page up, capped at the maximum
        {30, 60, 0, 50, 20, false, 0},   // below the thumb: page down
        {30, 60, 0, 110, 30, false, 0},  // the up button at the maximum leaves the position
        {30, 60, 0, 10, 29, false, 0},   // the down button
        {30, 60, 0, 85, 30, true, 5},    // the thumb: caught, 5 pixels below its centre
        {15, 30, 30, 90, 25, false, 0},
        {15, 30, 30, 30, 5, false, 0},
        {15, 30, 30, 60, 15, true, 0},
        {3, 0, 60, 15, 2, false, 0},
        {0, 0, 60, 15, 0, false, 0},  // floored at the minimum
    };
    for (const Click& c : clicks) {
        const CV_ScrollClick result =
            CV_ListBoxScrollClick(0, 120, c.at, c.position, 0, 30, 10, 20, c.downPage, 20, c.upPage, 20);
        EXPECT_EQ(result.position, c.expected) << c.position << " at " << c.at;
        EXPECT_EQ(result.thumb, c.thumb) << c.position << " at " << c.at;
        if (c.thumb) {
            EXPECT_EQ(result.slop, c.slop);
        }
    }
    // Thumb drags: the thumb's centre between 30 and 90 maps to 0 to 30, rounded and kept in range.
    EXPECT_EQ(CV_ListBoxThumbPosition(0, 120, 60, 0, 7, 0, 30, 20, 20, 20), 15);
    EXPECT_EQ(CV_ListBoxThumbPosition(0, 120, 61, 0, 7, 0, 30, 20, 20, 20), 16);
    EXPECT_EQ(CV_ListBoxThumbPosition(0, 120, 55, 5, 7, 0, 30, 20, 20, 20), 15);
    EXPECT_EQ(CV_ListBoxThumbPosition(0, 120, 119, 0, 7, 0, 30, 20, 20, 20), 30);
    EXPECT_EQ(CV_ListBoxThumbPosition(0, 120, 0, 0, 7, 0, 30, 20, 20, 20), 0);
    // No room for the thumb to travel: the position stays.
    EXPECT_EQ(CV_ListBoxThumbPosition(0, 40, 20, 0, 7, 0, 30, 10, 20, 10), 7);
}

namespace {

int Prop(XPWidgetID widget, XPWidgetPropertyID property) { return int(XPGetWidgetProperty(widget, property, nullptr)); }

void Mouse(XPWidgetID widget, XPWidgetMessage message, int x, int y) {
    XPMouseState_t state = {x, y, 0, 0};
    XPSendMessageToWidget(widget, message, xpMode_Direct, reinterpret_cast<intptr_t>(&state), 0);
}

void Click(XPWidgetID widget, int x, int y) {
    Mouse(widget, xpMsg_MouseDown, x, y);
    Mouse(widget, xpMsg_MouseUp, x, y);
}

void Command(XPWidgetID box, XPWidgetPropertyID command, const char* text = nullptr) {
    if (text) XPSetWidgetDescriptor(box, text);
    XPSetWidgetProperty(box, command, 1);
}

std::vector<std::pair<intptr_t, intptr_t>> gSelections;

int RecordSelections(XPWidgetMessage message, XPWidgetID, intptr_t param1, intptr_t param2) {
    if (message != xpMsg_ListBoxSelectionMade) return 0;
    gSelections.emplace_back(param1, param2);
    return 1;
}

}  // namespace

TEST(ListBoxWidget, CommandsSelectionAndScrollBar) {
    XPWidgetID root = XPCreateWidget(0, 300, 400, 0, 1, "", 1, nullptr, xpWidgetClass_MainWindow);
    XPAddWidgetCallback(root, RecordSelections);
    // 120 pixels high: 10 lines; the scroll bar is x 190 to 210.
    XPWidgetID box = CV_CreateListBox(10, 250, 210, 130, 1, "a;b;c", root);
    const auto* data = reinterpret_cast<const CV_ListBoxData_t*>(XPGetWidgetProperty(box, xpProperty_ListBoxData, nullptr));
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(data->items, (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(data->itemRight[0], 180);
    EXPECT_EQ(Prop(box, xpProperty_ListBoxVisibleLines), 10);
    EXPECT_EQ(Prop(box, xpProperty_ListBoxPageAmount), 10);
    EXPECT_EQ(Prop(box, xpProperty_ListBoxScrollPosition), 3);
    EXPECT_EQ(Prop(box, xpProperty_ListBoxScrollMax), 3);

    for (int i = 0; i < 12; ++i) Command(box, xpProperty_ListBoxAddItem, ("item " + std::to_string(i)).c_str());
    EXPECT_EQ(Prop(box, xpProperty_ListBoxAddItem), 0);  // commands reset themselves
    EXPECT_EQ(Prop(box, xpProperty_ListBoxScrollPosition), 15);
    EXPECT_EQ(Prop(box, xpProperty_ListBoxScrollMax), 15);

    // The fourth row; the release tells the parents and leaves the item's text in the descriptor.
    Click(box, 20, 209);
    EXPECT_EQ(Prop(box, xpProperty_ListBoxSelection), 3);
    ASSERT_EQ(gSelections.size(), 1u);
    EXPECT_EQ(gSelections[0], std::make_pair(reinterpret_cast<intptr_t>(box), intptr_t(3)));
    EXPECT_EQ(CV_GetDescriptor(box, 100), "item 0");

    // The up button at the maximum changes nothing, the down button scrolls by one.
    Click(box, 200, 245);
    EXPECT_EQ(Prop(box, xpProperty_ListBoxScrollPosition), 15);
    Click(box, 200, 135);
    EXPECT_EQ(Prop(box, xpProperty_ListBoxScrollPosition), 14);
    Click(box, 20, 245);
    EXPECT_EQ(Prop(box, xpProperty_ListBoxSelection), 1);
    EXPECT_EQ(gSelections.size(), 2u);  // bar clicks send nothing

    // The thumb (206 to 226 at position 14), held 4 pixels above its centre and dragged down by 30:
    // its centre at 186 is 26 of the 60 pixels it travels, 6.5 of 15, rounded to 7.
    Mouse(box, xpMsg_MouseDown, 200, 220);
    EXPECT_EQ(Prop(box, xpProperty_ListBoxThumbDragging), 1);
    Mouse(box, xpMsg_MouseDrag, 200, 190);
    EXPECT_EQ(Prop(box, xpProperty_ListBoxScrollPosition), 7);
    Mouse(box, xpMsg_MouseDrag, 300, 100);  // off the bar: not followed
    EXPECT_EQ(Prop(box, xpProperty_ListBoxScrollPosition), 7);
    Mouse(box, xpMsg_MouseUp, 200, 190);
    EXPECT_EQ(Prop(box, xpProperty_ListBoxThumbDragging), 0);

    // Refill, insert before the selection, delete it, clear.
    Command(box, xpProperty_ListBoxRefill, "x;y");
    EXPECT_EQ(data->items, (std::vector<std::string>{"x", "y"}));
    EXPECT_EQ(Prop(box, xpProperty_ListBoxScrollMax), 2);
    Command(box, xpProperty_ListBoxInsertItem, "w");
    EXPECT_EQ(data->items, (std::vector<std::string>{"x", "w", "y"}));
    EXPECT_EQ(Prop(box, xpProperty_ListBoxScrollMax), 2);  // the range is left as it was
    XPSetWidgetProperty(box, xpProperty_ListBoxSelection, 2);
    Command(box, xpProperty_ListBoxDeleteItem);
    EXPECT_EQ(data->items, (std::vector<std::string>{"x", "w"}));
    XPSetWidgetProperty(box, xpProperty_ListBoxSelection, 7);
    Command(box, xpProperty_ListBoxDeleteItem);  // no such item
    EXPECT_EQ(data->items.size(), 2u);
    Command(box, xpProperty_ListBoxClear);
    EXPECT_TRUE(data->items.empty());
    EXPECT_EQ(Prop(box, xpProperty_ListBoxSelection), 0);
    EXPECT_EQ(Prop(box, xpProperty_ListBoxScrollPosition), 0);
    // A release on an empty list sends nothing.
    Click(box, 20, 245);
    EXPECT_EQ(gSelections.size(), 2u);

    XPDestroyWidget(root, 1);
    gSelections.clear();
}

TEST(PopupMenuLayout, ItemsColumnsAndPlacement) {
    int start = -1, length = -1;
    CV_PopupCurrentItem("a;bb;ccc", 1, start, length);
    EXPECT_EQ(std::make_pair(start, length), std::make_pair(2, 2));
    CV_PopupCurrentItem("a;bb;ccc", 2, start, length);
    EXPECT_EQ(std::make_pair(start, length), std::make_pair(5, 3));
    CV_PopupCurrentItem("a;bb;ccc", 7, start, length);
    EXPECT_EQ(std::make_pair(start, length), std::make_pair(8, 0));
    CV_PopupCurrentItem("a;bb;", -1, start, length);
    EXPECT_EQ(std::make_pair(start, length), std::make_pair(0, 1));

    CV_PopupMenu_t menu;
    CV_LayoutPopupMenu(menu, "a;(bb);-;c", 0, 100, 500, 7);
    // Only the "(" goes: the rest of the text stays as it is.
    EXPECT_EQ(menu.items, (std::vector<std::string>{"a", "bb)", "-", "c"}));
    EXPECT_EQ(menu.itemEnabled, (std::vector<bool>{true, false, false, true}));
    EXPECT_EQ(menu.itemTop, (std::vector<int>{0, -12, -24, -26}));
    EXPECT_EQ(menu.itemBottom, (std::vector<int>{-12, -24, -26, -38}));
    EXPECT_EQ(menu.itemRight, (std::vector<int>{56, 56, 56, 56}));  // 3 characters of 7 pixels + 35
    EXPECT_TRUE(menu.columnStarts.empty());
    EXPECT_EQ(menu.left, 100);
    EXPECT_EQ(menu.top, 500);
    EXPECT_EQ(menu.right, 156);
    EXPECT_EQ(menu.bottom, 462);
    EXPECT_EQ(XPItemForHeight(&menu, 100, 499), 0);
    EXPECT_EQ(XPItemForHeight(&menu, 155, 477), 1);
    EXPECT_EQ(XPItemForHeight(&menu, 156, 477), -1);  // the right edge is outside
    EXPECT_EQ(XPItemForHeight(&menu, 120, 500), -1);  // so is the top
    EXPECT_EQ(XPItemForHeight(&menu, 120, 462), 3);
    EXPECT_EQ(XPItemForHeight(nullptr, 120, 462), -1);

    // The current item opens over the button.
    CV_PopupMenu_t current;
    CV_LayoutPopupMenu(current, "a;(bb);-;c", 3, 100, 500, 7);
    EXPECT_EQ(current.top + current.itemTop[3], 500);

    // 60 lines fill a column; a column left without items is dropped.
    auto items = [](int n) {
        std::string text;
        for (int i = 0; i < n; ++i) text += "item" + std::to_string(i) + ";";
        return text;
    };
    CV_PopupMenu_t two;
    CV_LayoutPopupMenu(two, items(70).c_str(), 0, 20, 730, 7);
    EXPECT_EQ(two.columnStarts, (std::vector<int>{6 * 7 + 35}));
    EXPECT_EQ(two.itemLeft[60], 77);
    EXPECT_EQ(two.itemTop[60], 0);
    CV_PopupMenu_t exact;
    CV_LayoutPopupMenu(exact, items(120).c_str(), 0, 20, 730, 7);
    EXPECT_EQ(exact.columnStarts.size(), 1u);
    EXPECT_EQ(exact.right - exact.left, 2 * (7 * 7 + 35));

    // The menu is kept inside 10 to 1014 and 10 to 738.
    CV_PopupMenu_t right;
    CV_LayoutPopupMenu(right, "wide item", 0, 1000, 400, 7);
    EXPECT_EQ(right.right, 1014);
    EXPECT_EQ(right.left, 1014 - (9 * 7 + 35));
    CV_PopupMenu_t low;
    CV_LayoutPopupMenu(low, "a;b;c", 0, 5, 20, 7);
    EXPECT_EQ(low.left, 10);
    EXPECT_EQ(low.bottom, 10);
    EXPECT_EQ(low.top, 46);
    CV_PopupMenu_t high;
    CV_LayoutPopupMenu(high, "a;b;c", 0, 100, 760, 7);
    EXPECT_EQ(high.top, 738);
    EXPECT_EQ(high.bottom, 702);
    // On a larger screen the bounds move with its edges.
    CV_PopupMenu_t large;
    CV_LayoutPopupMenu(large, "wide item", 0, 1500, 1100, 7, 1600, 1200);
    EXPECT_EQ(large.right, 1590);
    EXPECT_EQ(large.top, 1100);
    CV_PopupMenu_t tall;
    CV_LayoutPopupMenu(tall, "a", 0, 100, 1199, 7, 1600, 1200);
    EXPECT_EQ(tall.top, 1170);
}

// ------------------------------------------------------------------ the script windows

namespace {

PyObject* Id(uintptr_t n) { return reinterpret_cast<PyObject*>(n * 16); }

std::string Text(XPWidgetID widget) { return CV_GetDescriptor(widget, 4096); }

int Enabled(XPWidgetID widget) { return int(XPGetWidgetProperty(widget, xpProperty_Enabled, nullptr)); }

void Press(XPWidgetID button) {
    XPSendMessageToWidget(button, xpMsg_PushButtonPressed, xpMode_UpChain, reinterpret_cast<intptr_t>(button), 0);
}

// A table of `count` scripts; the first two share a signature, the third is disabled.
void FillTable(CV_ScriptTable& table, int count) {
    for (int i = 1; i <= count; ++i) {
        table.AddScriptId(Id(i), ("CV_s" + std::to_string(i)).c_str(), 1);
        const std::string sig = i <= 2 ? "same.sig" : "sig." + std::to_string(i);
        table.SetScriptDescriptions(Id(i), ("Script " + std::to_string(i)).c_str(), sig.c_str(),
                                    ("Number " + std::to_string(i)).c_str(), i == 4 ? 2 : 1);
    }
    if (count >= 3) table.SetScriptEnabledStatus(Id(3), 0);
}

std::string Hex(uintptr_t n) {
    char text[32];
    snprintf(text, sizeof text, "%lx", static_cast<unsigned long>(n * 16));
    return text;
}

}  // namespace

TEST(ScriptWindows, PagesAndWords) {
    EXPECT_EQ(CV_LastPage(0), 0);
    EXPECT_EQ(CV_LastPage(8), 0);
    EXPECT_EQ(CV_LastPage(9), 1);
    EXPECT_EQ(CV_LastPage(17), 2);
    EXPECT_STREQ(CV_ScriptKindWord(0), "None");
    EXPECT_STREQ(CV_ScriptKindWord(1), "Standard");
    EXPECT_STREQ(CV_ScriptKindWord(2), "Aircraft");
    EXPECT_STREQ(CV_ScriptKindWord(7), "Unknown");
}

TEST(ScriptWindows, InformationCaptionsAndPaging) {
    CV_ScriptTable table;
    FillTable(table, 9);
    CVTestTable = &table;
    ScriptInfoScreenNumber = 0;
    CreateScriptInfo(290, 680, 417, 476);
    CV_MenuItem3 = 1;
    ASSERT_NE(ScriptInfoWidget, nullptr);
    EXPECT_EQ(Text(ScriptInfoWidget), "Script Information");
    EXPECT_EQ(Text(NameText[0]), "(" + Hex(1) + ") Script 1 (Enabled) [Standard Type Script]");
    // Scripts that share a signature both show the first one's id.
    EXPECT_EQ(Text(NameText[1]), "(" + Hex(1) + ") Script 2 (Enabled) [Standard Type Script]");
    EXPECT_EQ(Text(NameText[2]), "(" + Hex(3) + ") Script 3 (Disabled) [Standard Type Script]");
    EXPECT_EQ(Text(NameText[3]), "(" + Hex(4) + ") Script 4 (Enabled) [Aircraft Type Script]");
    EXPECT_EQ(Text(SignatureText[4]), "Signature: sig.5");
    EXPECT_EQ(Text(DescriptionText[7]), "Number 8");
    EXPECT_EQ(Enabled(ScriptInfoPrevious), 0);
    EXPECT_EQ(Enabled(ScriptInfoNext), 1);
    EXPECT_EQ(XPIsWidgetVisible(ScriptInfoRefresh), 0);

    Press(ScriptInfoNext);
    EXPECT_EQ(ScriptInfoScreenNumber, 1);
    EXPECT_EQ(Text(NameText[0]), "(" + Hex(9) + ") Script 9 (Enabled) [Standard Type Script]");
    EXPECT_EQ(Text(NameText[1]), "");
    EXPECT_EQ(Text(DescriptionText[7]), "");
    EXPECT_EQ(Enabled(ScriptInfoPrevious), 1);
    EXPECT_EQ(Enabled(ScriptInfoNext), 0);
    Press(ScriptInfoNext);  // no page after the last
    EXPECT_EQ(ScriptInfoScreenNumber, 1);

    // The scripts stop: the window is refreshed onto the one page there is, without scripts.
    table.ClearScriptTable();
    CV_RefreshScriptWindows();
    EXPECT_EQ(ScriptInfoScreenNumber, 0);
    EXPECT_EQ(Text(NameText[0]), "You do not have any Scripts installed.");
    EXPECT_EQ(Text(SignatureText[0]), "");

    // The close box hides the window and lets the menu build a new one on page 0.
    XPWidgetID closed = ScriptInfoWidget;
    XPSendMessageToWidget(closed, xpMessage_CloseButtonPushed, xpMode_UpChain, reinterpret_cast<intptr_t>(closed), 0);
    EXPECT_EQ(CV_MenuItem3, 0);
    EXPECT_EQ(ScriptInfoWidget, nullptr);
    EXPECT_EQ(XPIsWidgetVisible(closed), 0);
    CV_DestroyScriptWindows();
    CVTestTable = nullptr;
}

TEST(ScriptWindows, AdministrationRowsAndPages) {
    CV_ScriptTable table;
    FillTable(table, 9);
    CVTestTable = &table;
    CreateScriptAdmin(200, 550, 294, 305);
    CV_MenuItem2 = 1;
    EXPECT_EQ(Text(ScriptAdminWidget), "Enable / Disable Scripts");
    EXPECT_EQ(Text(ScriptAdminCaption[0]), "Script Name");
    EXPECT_EQ(Text(ScriptAdminCaption[1]), "Enabled");
    EXPECT_EQ(Text(ScriptAdminEdit[2]), "Script 3");
    EXPECT_EQ(XPGetWidgetProperty(ScriptAdminCheckBox[2], xpProperty_ButtonState, nullptr), 0);
    EXPECT_EQ(XPGetWidgetProperty(ScriptAdminCheckBox[7], xpProperty_ButtonState, nullptr), 1);
    EXPECT_EQ(Enabled(ScriptAdminEdit[0]), 0);  // names are shown, not edited
    EXPECT_EQ(Enabled(ScriptAdminPrevious), 0);

    Press(ScriptAdminNext);
    EXPECT_EQ(Text(ScriptAdminEdit[0]), "Script 9");
    EXPECT_EQ(Enabled(ScriptAdminCheckBox[0]), 1);
    for (int row = 1; row < 8; ++row) {
        EXPECT_EQ(Text(ScriptAdminEdit[row]), "");
        EXPECT_EQ(XPGetWidgetProperty(ScriptAdminCheckBox[row], xpProperty_ButtonState, nullptr), 0);
        EXPECT_EQ(Enabled(ScriptAdminCheckBox[row]), 0);
    }
    EXPECT_EQ(Enabled(ScriptAdminNext), 0);
    Press(ScriptAdminPrevious);
    Press(ScriptAdminPrevious);
    EXPECT_EQ(ScriptAdminScreenNumber, 0);

    table.ClearScriptTable();
    RefreshScriptAdmin();
    EXPECT_EQ(Text(ScriptAdminCaption[0]), "You do not have any Scripts.");
    EXPECT_EQ(Text(ScriptAdminCaption[1]), "");
    EXPECT_EQ(Enabled(ScriptAdminCheckBox[0]), 0);
    CV_DestroyScriptWindows();
    EXPECT_EQ(ScriptAdminWidget, nullptr);
    CVTestTable = nullptr;
}
