// Menus.
#include "world/Menus.h"

#include <algorithm>
#include <memory>
#include <unordered_set>

#include "world/Plugins.h"
#include "world/World.h"

namespace xpsim {
namespace {

struct MenuBar {
    std::unique_ptr<MenuRecord> plugins;
    std::vector<std::unique_ptr<MenuRecord>> menus;  // every live plugin menu, in creation order
    std::unordered_set<const void*> handles;
};

MenuBar& bar() {
    static MenuBar b;
    return b;
}

// Finds the item of `menu` that the front of `rest` names. Item names may contain "/", so an item
// matches when `rest` is its name or starts with its name followed by "/".
int MatchItem(const MenuRecord& menu, const std::string& rest, size_t& consumed) {
    for (size_t i = 0; i < menu.items.size(); ++i) {
        const MenuItem& item = menu.items[i];
        if (item.separator) continue;
        const std::string& name = item.name;
        if (rest == name || (rest.size() > name.size() && rest.compare(0, name.size(), name) == 0 &&
                             rest[name.size()] == '/')) {
            consumed = name.size();
            return int(i);
        }
    }
    return -1;
}

void Describe(const MenuRecord& menu, const std::string& prefix, std::vector<std::string>& lines,
              int depth) {
    if (depth > 32) return;  // a menu hung below itself
    for (const MenuItem& item : menu.items) {
        if (item.separator) {
            lines.push_back(prefix + "-");
            continue;
        }
        const std::string path = prefix + item.name;
        std::string state = item.enabled ? "enabled" : "disabled";
        if (item.check == xplm_Menu_Unchecked) state += ", unchecked";
        if (item.check == xplm_Menu_Checked) state += ", checked";
        if (item.submenu) state += ", submenu";
        lines.push_back(path + " [" + state + "]");
        if (item.submenu) Describe(*item.submenu, path + "/", lines, depth + 1);
    }
}

}  // namespace

MenuRecord* PluginsMenu() {
    MenuBar& b = bar();
    if (!b.plugins) {
        b.plugins = std::make_unique<MenuRecord>();
        b.plugins->name = "Plugins";
        b.plugins->owner = kSimId;
        b.plugins->topLevel = true;
        b.handles.insert(b.plugins.get());
    }
    return b.plugins.get();
}

MenuRecord* MenuFromHandle(const void* handle) {
    if (handle == nullptr || bar().handles.count(handle) == 0) return nullptr;
    return static_cast<MenuRecord*>(const_cast<void*>(handle));
}

MenuRecord* CreateMenu(const std::string& name, MenuRecord* parent, int parentItem,
                       XPLMMenuHandler_f handler, void* menuRef) {
    auto menu = std::make_unique<MenuRecord>();
    menu->name = name;
    menu->owner = CurrentPlugin();
    menu->handler = handler;
    menu->menuRef = menuRef;
    MenuRecord* raw = menu.get();
    if (parent == nullptr) {
        menu->topLevel = true;
    } else {
        MenuItem& item = parent->items[size_t(parentItem)];
        DetachSubmenu(item);
        item.submenu = raw;
        menu->parent = parent;
    }
    bar().menus.push_back(std::move(menu));
    bar().handles.insert(raw);
    return raw;
}

void DetachSubmenu(MenuItem& item) {
    if (item.submenu != nullptr) item.submenu->parent = nullptr;
    item.submenu = nullptr;
}

void DestroyMenu(MenuRecord* menu) {
    MenuBar& b = bar();
    if (menu == nullptr || menu == b.plugins.get()) return;
    if (menu->parent != nullptr) {
        for (MenuItem& item : menu->parent->items) {
            if (item.submenu == menu) item.submenu = nullptr;
        }
    }
    for (MenuItem& item : menu->items) DetachSubmenu(item);
    b.handles.erase(menu);
    b.menus.erase(std::remove_if(b.menus.begin(), b.menus.end(),
                                 [menu](const std::unique_ptr<MenuRecord>& m) { return m.get() == menu; }),
                  b.menus.end());
}

int ForgetMenusOf(int plugin) {
    MenuBar& b = bar();
    std::vector<MenuRecord*> owned;
    for (auto& menu : b.menus) {
        if (menu->owner == plugin) owned.push_back(menu.get());
    }
    for (MenuRecord* menu : owned) DestroyMenu(menu);
    // Items the plugin appended to other menus (typically its entry in the plugins menu) go too.
    std::vector<MenuRecord*> remaining;
    if (b.plugins) remaining.push_back(b.plugins.get());
    for (auto& menu : b.menus) remaining.push_back(menu.get());
    for (MenuRecord* menu : remaining) {
        auto& items = menu->items;
        for (MenuItem& item : items) {
            if (item.owner == plugin) DetachSubmenu(item);
        }
        items.erase(std::remove_if(items.begin(), items.end(),
                                   [plugin](const MenuItem& item) { return item.owner == plugin; }),
                    items.end());
    }
    return int(owned.size());
}

void ResetMenus() { bar() = MenuBar(); }

bool PickMenuPath(const std::string& path, std::string& error) {
    const size_t slash = path.find('/');
    const std::string top = path.substr(0, slash);
    MenuRecord* menu = nullptr;
    if (top == "Plugins") {
        menu = PluginsMenu();
    } else {
        for (auto& candidate : bar().menus) {
            if (candidate->topLevel && candidate->name == top) {
                menu = candidate.get();
                break;
            }
        }
    }
    if (menu == nullptr) {
        error = "no menu named '" + top + "' in the menu bar";
        return false;
    }
    if (slash == std::string::npos || slash + 1 >= path.size()) {
        error = "'" + path + "' names a menu, not a menu item";
        return false;
    }
    std::string rest = path.substr(slash + 1);
    std::string walked = top;
    for (int depth = 0; depth < 64; ++depth) {
        size_t consumed = 0;
        const int index = MatchItem(*menu, rest, consumed);
        if (index < 0) {
            error = "menu '" + walked + "' has no item '" + rest.substr(0, rest.find('/')) + "'";
            return false;
        }
        MenuItem& item = menu->items[size_t(index)];
        walked += "/" + item.name;
        if (consumed < rest.size()) {
            if (item.submenu == nullptr) {
                error = "'" + walked + "' has no submenu";
                return false;
            }
            menu = item.submenu;
            rest = rest.substr(consumed + 1);
            continue;
        }
        if (item.submenu != nullptr) {
            error = "'" + walked + "' opens a submenu; pick one of its items";
            return false;
        }
        if (!item.enabled) {
            error = "'" + walked + "' is disabled";
            return false;
        }
        if (menu->handler == nullptr) return true;  // the menu takes no picks
        if (!PluginMayBeCalled(menu->owner)) {
            error = "'" + walked + "' belongs to disabled plugin " + std::to_string(menu->owner);
            return false;
        }
        XPLMMenuHandler_f handler = menu->handler;
        void* menuRef = menu->menuRef;
        void* itemRef = item.itemRef;
        PluginContext context(menu->owner);
        handler(menuRef, itemRef);
        return true;
    }
    error = "menu path '" + path + "' is too deep";
    return false;
}

std::vector<std::string> DescribeMenuTree() {
    std::vector<std::string> lines;
    Describe(*PluginsMenu(), "Plugins/", lines, 0);
    for (auto& menu : bar().menus) {
        if (menu->topLevel) Describe(*menu, menu->name + "/", lines, 0);
    }
    return lines;
}

}  // namespace xpsim
