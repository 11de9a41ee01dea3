// XPLMMenus: the plugins menu, plugin menus and their items.
#include "XPLMMenus.h"

#include <cstdio>
#include <string>

#include "world/Menus.h"
#include "world/World.h"

namespace {

xpsim::MenuRecord* Menu(XPLMMenuID id, const char* function) {
    xpsim::MenuRecord* menu = xpsim::MenuFromHandle(id);
    if (menu == nullptr) {
        char text[64];
        std::snprintf(text, sizeof text, "%p is not a menu", id);
        xpsim::ReportMisuse(function, text);
    }
    return menu;
}

// The item at `index`, or null (reported) when the menu or the index is bad.
xpsim::MenuItem* Item(XPLMMenuID id, int index, const char* function) {
    xpsim::MenuRecord* menu = Menu(id, function);
    if (menu == nullptr) return nullptr;
    if (index < 0 || size_t(index) >= menu->items.size()) {
        xpsim::ReportMisuse(function, "menu '" + menu->name + "' has no item " + std::to_string(index));
        return nullptr;
    }
    return &menu->items[size_t(index)];
}

}  // namespace

XPLMMenuID XPLMFindPluginsMenu(void) { return xpsim::PluginsMenu(); }

XPLMMenuID XPLMCreateMenu(const char* inName, XPLMMenuID inParentMenu, int inParentItem, XPLMMenuHandler_f inHandler,
                          void* inMenuRef) {
    const char* const function = "XPLMCreateMenu";
    xpsim::MenuRecord* parent = nullptr;
    if (inParentMenu != nullptr) {
        if (Item(inParentMenu, inParentItem, function) == nullptr) return nullptr;
        parent = xpsim::MenuFromHandle(inParentMenu);
    }
    return xpsim::CreateMenu(inName ? inName : "", parent, inParentItem, inHandler, inMenuRef);
}

void XPLMDestroyMenu(XPLMMenuID inMenuID) {
    xpsim::MenuRecord* menu = Menu(inMenuID, "XPLMDestroyMenu");
    if (menu == nullptr) return;
    if (menu == xpsim::PluginsMenu()) {
        xpsim::ReportMisuse("XPLMDestroyMenu", "the plugins menu belongs to the simulator");
        return;
    }
    xpsim::DestroyMenu(menu);
}

void XPLMClearAllMenuItems(XPLMMenuID inMenuID) {
    xpsim::MenuRecord* menu = Menu(inMenuID, "XPLMClearAllMenuItems");
    if (menu == nullptr) return;
    for (auto& item : menu->items) xpsim::DetachSubmenu(item);
    menu->items.clear();
}

int XPLMAppendMenuItem(XPLMMenuID inMenu, const char* inItemName, void* inItemRef, int inForceEnglish) {
    xpsim::MenuRecord* menu = Menu(inMenu, "XPLMAppendMenuItem");
    if (menu == nullptr) return -1;
    if (inItemName == nullptr) {
        xpsim::ReportMisuse("XPLMAppendMenuItem", "null item name");
        return -1;
    }
    xpsim::MenuItem item;
    item.name = inItemName;
    item.itemRef = inItemRef;
    item.owner = xpsim::CurrentPlugin();
    menu->items.push_back(item);
    return int(menu->items.size()) - 1;
}

void XPLMAppendMenuSeparator(XPLMMenuID inMenu) {
    xpsim::MenuRecord* menu = Menu(inMenu, "XPLMAppendMenuSeparator");
    if (menu == nullptr) return;
    xpsim::MenuItem item;
    item.separator = true;
    item.owner = xpsim::CurrentPlugin();
    menu->items.push_back(item);
}

void XPLMSetMenuItemName(XPLMMenuID inMenu, int inIndex, const char* inItemName, int inForceEnglish) {
    xpsim::MenuItem* item = Item(inMenu, inIndex, "XPLMSetMenuItemName");
    if (item == nullptr) return;
    if (inItemName == nullptr) {
        xpsim::ReportMisuse("XPLMSetMenuItemName", "null item name");
        return;
    }
    item->name = inItemName;
}

void XPLMCheckMenuItem(XPLMMenuID inMenu, int index, XPLMMenuCheck inCheck) {
    xpsim::MenuItem* item = Item(inMenu, index, "XPLMCheckMenuItem");
    if (item == nullptr) return;
    if (inCheck < xplm_Menu_NoCheck || inCheck > xplm_Menu_Checked) {
        xpsim::ReportMisuse("XPLMCheckMenuItem", "unknown check state " + std::to_string(inCheck));
        return;
    }
    item->check = inCheck;
}

void XPLMCheckMenuItemState(XPLMMenuID inMenu, int index, XPLMMenuCheck* outCheck) {
    if (outCheck == nullptr) {
        xpsim::ReportMisuse("XPLMCheckMenuItemState", "null result pointer");
        return;
    }
    xpsim::MenuItem* item = Item(inMenu, index, "XPLMCheckMenuItemState");
    *outCheck = item ? item->check : xplm_Menu_NoCheck;
}

void XPLMEnableMenuItem(XPLMMenuID inMenu, int index, int enabled) {
    xpsim::MenuItem* item = Item(inMenu, index, "XPLMEnableMenuItem");
    if (item != nullptr) item->enabled = enabled != 0;
}

void XPLMRemoveMenuItem(XPLMMenuID inMenu, int inIndex) {
    xpsim::MenuItem* item = Item(inMenu, inIndex, "XPLMRemoveMenuItem");
    if (item == nullptr) return;
    xpsim::DetachSubmenu(*item);
    auto& items = xpsim::MenuFromHandle(inMenu)->items;
    items.erase(items.begin() + inIndex);
}
