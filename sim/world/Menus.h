// Menus: the simulator's plugins menu, plugin menus and submenus, and picking items by path.
//
// A menu handle (XPLMMenuID) is the address of its record; items are addressed by index as in the
// SDK, and removing an item moves the later ones down.
#pragma once

#include <string>
#include <vector>

#include "XPLMMenus.h"
#include "world/Export.h"

namespace xpsim {

struct MenuRecord;

struct MenuItem {
    std::string name;
    void* itemRef = nullptr;
    bool separator = false;
    bool enabled = true;
    XPLMMenuCheck check = xplm_Menu_NoCheck;
    int owner = 0;                  // the plugin that appended the item
    MenuRecord* submenu = nullptr;  // attached with XPLMCreateMenu
};

struct MenuRecord {
    std::string name;
    int owner = 0;
    XPLMMenuHandler_f handler = nullptr;
    void* menuRef = nullptr;
    MenuRecord* parent = nullptr;  // the menu whose item this menu hangs from
    bool topLevel = false;         // created without a parent (a menu of its own in the menu bar)
    std::vector<MenuItem> items;
};

// ------------------------------------------------------------------ control interface

// Picks a menu item by its path of names, "Plugins/Corvelle/Control Panel": the first name is
// "Plugins" (the plugins menu) or a top-level plugin menu, the others are item names. Calls the
// owning menu's handler with its menu refcon and the item's refcon, in the owning plugin's context.
// False with a message for an unknown path, a submenu, a separator or a disabled item.
XPSIM_API bool PickMenuPath(const std::string& path, std::string& error);
// Every menu item reachable from the menu bar, one line each: its path and its state in brackets
// ("Plugins/Corvelle/Control Panel [enabled]", "[disabled, checked]", separators as "-").
XPSIM_API std::vector<std::string> DescribeMenuTree();

// ------------------------------------------------------------------ inside the library

MenuRecord* PluginsMenu();
// The record of a handle, or null for anything that is not a live menu.
MenuRecord* MenuFromHandle(const void* handle);
MenuRecord* CreateMenu(const std::string& name, MenuRecord* parent, int parentItem,
                       XPLMMenuHandler_f handler, void* menuRef);
void DestroyMenu(MenuRecord* menu);
// Detaches the submenus of items that are going away.
void DetachSubmenu(MenuItem& item);
int ForgetMenusOf(int plugin);
void ResetMenus();

}  // namespace xpsim
