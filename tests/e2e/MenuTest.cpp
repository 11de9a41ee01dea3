// Menus end to end: scripts build menus with XPLMMenus, the events file picks their items by path
// (`menu Plugins/<menu>/<item>`), and the handler receives the menu and item refcons.
#include <gtest/gtest.h>

#include <string>

#include "SimHarness.h"

namespace {

std::string Script(const std::string& name, const std::string& start, const std::string& enable,
                   const std::string& stop, const std::string& methods) {
    return EntryPointScript("import builtins\n"
                            "from XPLMMenus import *\n",
                            name, start, enable, stop, methods);
}

const std::string kHandler = "    def Handler(self, menuRef, itemRef):\n"
                             "        print('picked', menuRef, itemRef)\n";

// A submenu 'Demo Tools' in the plugins menu with the items First (10), Second (20), a separator
// and Third (-3).
const std::string kBuildMenu =
    "        self.handler = self.Handler\n"
    "        plugins = XPLMFindPluginsMenu()\n"
    "        self.item = XPLMAppendMenuItem(plugins, 'Demo Tools', 0, 1)\n"
    "        self.menu = XPLMCreateMenu(self, 'Demo Tools', plugins, self.item, self.handler, 5)\n"
    "        print('items', [XPLMAppendMenuItem(self.menu, 'First', 10, 1),\n"
    "                        XPLMAppendMenuItem(self.menu, 'Second', 20, 1),\n"
    "                        XPLMAppendMenuSeparator(self.menu),\n"
    "                        XPLMAppendMenuItem(self.menu, 'Third', -3, 1)])\n";

TEST(Menu, PickedItemsReachTheHandlerWithBothRefcons) {
    SimFolder sim;
    sim.writeScript("CV_Menus.py",
                    Script("Menus", kBuildMenu,
                           "        print('check', XPLMCheckMenuItem(self.menu, 0, xplm_Menu_Checked),\n"
                           "              XPLMCheckMenuItemState(self.menu, 0), XPLMCheckMenuItemState(self.menu, 1))\n"
                           "        print('disable', XPLMEnableMenuItem(self.menu, 3, 0))\n"
                           "        print('rename', XPLMSetMenuItemName(self.menu, 1, 'Renamed', 1))\n",
                           "        print('destroy', XPLMDestroyMenu(self, self.menu))\n",
                           "    def Handler(self, menuRef, itemRef):\n"
                           "        print('picked', menuRef, itemRef)\n"
                           "        if itemRef == 20 and not hasattr(self, 'removed'):\n"
                           "            self.removed = XPLMRemoveMenuItem(self.menu, 0)\n"
                           "            print('removed', self.removed)\n"));
    const std::string events = sim.writeEvents(
        "0.5 menu Plugins/Demo Tools/First\n"
        "0.6 menu Plugins/Demo Tools/Renamed   # removes First, so Renamed moves to index 0\n"
        "0.7 menu Plugins/Demo Tools/Second    # renamed: no longer there\n"
        "0.8 menu Plugins/Demo Tools/Third     # disabled\n"
        "0.9 menu Plugins/Demo Tools/First     # removed\n"
        "1.0 menu Plugins/Demo Tools/Renamed\n");
    SimRun run = sim.run({"--seconds", "1.5", "--events", events});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(),
              "items [0, 1, 1, 3]\n"
              "check 1 2 0\n"
              "disable 1\n"
              "rename 1\n"
              "picked 5 10\n"
              "picked 5 20\n"
              "removed 1\n"
              "picked 5 20\n"
              "destroy 1\n");
    const std::string simLog = sim.simLog();
    EXPECT_TRUE(InOrder(simLog, {"menu 'Plugins/Demo Tools' has no item 'Second'",
                                 "'Plugins/Demo Tools/Third' is disabled",
                                 "menu 'Plugins/Demo Tools' has no item 'First'"}))
        << simLog;
    EXPECT_EQ(CountOf(sim.log(), "Error"), 0u) << sim.log();
}

TEST(Menu, RemoveMenuItemIsRefusedBelowSdk210) {
    SimFolder sim;
    sim.writeScript("CV_OldMenus.py",
                    Script("OldMenus", kBuildMenu, "        print('remove', XPLMRemoveMenuItem(self.menu, 0))\n", "",
                           kHandler));
    const std::string events = sim.writeEvents("0.5 menu Plugins/Demo Tools/First\n");
    SimRun run = sim.run({"--sdk", "2.00", "--seconds", "1", "--events", events});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    // The item stays where it was.
    EXPECT_EQ(sim.output(), "items [0, 1, 1, 3]\nremove 0\npicked 5 10\n");
    EXPECT_NE(sim.log().find("Module - XPLMMenus, Function - XPLMRemoveMenuItem, Error = Not supported in SDK 1.02 or "
                             "SDK 2.00\n"),
              std::string::npos)
        << sim.log();
}

TEST(Menu, OnlyTheCreatingScriptDestroysAMenuAndSharedHandlersKeepWorking) {
    SimFolder sim;
    sim.writeFile("Resources/plugins/Corvelle/Corvelle.ini", "[DEBUG]\nDebugCallbacks=1\n");
    // The owner makes three top-level menus with one handler: the update after each creation puts
    // the new menu's id into the first record, so destroying the third menu removes the first
    // menu's record from the list. The first menu must keep working all the same.
    sim.writeScript("CV_A_Owner.py",
                    Script("Owner",
                           "        self.handler = self.Handler\n"
                           "        self.menus = []\n"
                           "        for n, name in enumerate(['One', 'Two', 'Three']):\n"
                           "            menu = XPLMCreateMenu(self, name, 0, 0, self.handler, n + 1)\n"
                           "            XPLMAppendMenuItem(menu, 'Go', 100 + n, 0)\n"
                           "            self.menus.append(menu)\n"
                           "        builtins.ownerMenus = self.menus\n",
                           "        print('owner destroys Three', XPLMDestroyMenu(self, self.menus[2]))\n"
                           "        print('ids', ' '.join('%x' % m for m in self.menus))\n",
                           "        for menu in self.menus:\n"
                           "            print('owner destroys', XPLMDestroyMenu(self, menu))\n",
                           kHandler));
    sim.writeScript("CV_B_Intruder.py",
                    Script("Intruder", "",
                           "        print('intruder destroys', XPLMDestroyMenu(self, builtins.ownerMenus[1]))\n", "",
                           ""));
    const std::string events = sim.writeEvents("0.5 menu One/Go\n"
                                               "0.6 menu Two/Go\n"
                                               "0.7 menu Three/Go\n");
    SimRun run = sim.run({"--seconds", "1", "--events", events});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    const std::string out = sim.output();
    EXPECT_TRUE(InOrder(out, {"owner destroys Three 1\n", "ids ", "intruder destroys 1\n", "picked 1 100\n",
                              "picked 2 101\n", "owner destroys 1\nowner destroys 1\nowner destroys 1\n"}))
        << out;
    EXPECT_EQ(CountOf(out, "picked"), 2u) << out;
    EXPECT_NE(sim.simLog().find("no menu named 'Three' in the menu bar"), std::string::npos) << sim.simLog();

    const std::string log = sim.log();
    const size_t idsAt = out.find("ids ") + 4;
    const std::string ids = out.substr(idsAt, out.find('\n', idsAt) - idsAt);
    const std::string one = ids.substr(0, ids.find(' '));
    const std::string two = ids.substr(ids.find(' ') + 1, ids.rfind(' ') - ids.find(' ') - 1);
    const std::string three = ids.substr(ids.rfind(' ') + 1);
    EXPECT_TRUE(InOrder(log, {"XPLMCreateMenu\npScriptId = ", ", inName = One, inParentMenu = 0, inParentItem = 0, "
                              "inMenuRef = 1\nMenuCallbackList size = 1\nXPLMCreateMenu\n",
                              ", inName = Three, inParentMenu = 0, inParentItem = 0, inMenuRef = 3\n"
                              "MenuCallbackList size = 3\nXPLMCreateMenu\n",
                              "Script Name = Owner, inMenuID = " + three + "\nMenuCallbackList size = 2\n",
                              "Module - XPLMMenus, Function - XPLMDestroyMenu, Error = Script 'Intruder.py' was "
                              "unregistering a callback that does not exist.\n",
                              "Script Name = Intruder, inMenuID = " + two + "\nMenuCallbackList size = 2\n"}))
        << log;
    // At stop none of the three is found: the first record went with Three, and the records of Two
    // and Three never held an id, since every creation's id went into the first record.
    EXPECT_EQ(CountOf(log, "Error = Script 'Owner.py' was unregistering a callback that does not exist.\n"), 3u) << log;
}

TEST(Menu, WrongArgumentsRaiseOrAreReportedAndTheMethodTableIsComplete) {
    SimFolder sim;
    sim.writeScript("CV_BadMenus.py",
                    Script("BadMenus", "",
                           "        def attempt(label, call):\n"
                           "            try:\n"
                           "                print(label, call())\n"
                           "            except Exception as error:\n"
                           "                print(label, type(error).__name__)\n"
                           "        h = self.Handler\n"
                           "        attempt('name', lambda: XPLMCreateMenu(self, 5, 0, 0, h, 0))\n"
                           "        attempt('parent', lambda: XPLMCreateMenu(self, 'x', 'parent', 0, h, 0))\n"
                           "        attempt('item ref', lambda: XPLMAppendMenuItem(XPLMFindPluginsMenu(), 'x', 'r', 0))\n"
                           "        attempt('unknown menu', lambda: XPLMAppendMenuItem(12345, 'x', 0, 0))\n"
                           "        attempt('state', lambda: XPLMCheckMenuItemState(12345, 0))\n"
                           "        attempt('index', lambda: XPLMCheckMenuItem(XPLMFindPluginsMenu(), 99, 2))\n"
                           "        attempt('destroy', lambda: XPLMDestroyMenu(self, 12345))\n"
                           "        attempt('extra', lambda: XPLMFindPluginsMenu(1))\n"
                           "        import XPLMMenus\n"
                           "        for name in sorted(n for n in dir(XPLMMenus) if callable(getattr(XPLMMenus, n))):\n"
                           "            print(name, getattr(XPLMMenus, name).__doc__)\n",
                           "", kHandler));
    SimRun run = sim.run({"--frames", "2"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;
    EXPECT_EQ(sim.output(),
              "name TypeError\n"
              "parent TypeError\n"
              "item ref TypeError\n"
              "unknown menu -1\n"
              "state 0\n"
              "index 1\n"
              "destroy 1\n"
              "extra TypeError\n"
              "XPLMAppendMenuItem Append Menu Item.\n"
              "XPLMAppendMenuSeparator Append Menu Separator.\n"
              "XPLMCheckMenuItem Check Menu Item.\n"
              "XPLMCheckMenuItemState Check Menu Item State.\n"
              "XPLMClearAllMenuItems Clear All Menu Items.\n"
              "XPLMCreateMenu Create Menu.\n"
              "XPLMDestroyMenu Destroy Menu.\n"
              "XPLMEnableMenuItem Enable Menu Item.\n"
              "XPLMFindPluginsMenu Find Plugins Menu.\n"
              "XPLMRemoveMenuItem Remove Menu Item.\n"
              "XPLMSetMenuItemName Set Menu Item Name.\n");
    EXPECT_TRUE(InOrder(sim.simLog(), {"xpsim: XPLMAppendMenuItem: ", "xpsim: XPLMCheckMenuItemState: ",
                            "xpsim: XPLMCheckMenuItem: menu 'Plugins' has no item 99"}))
        << sim.simLog();
    EXPECT_NE(sim.log().find("Module - XPLMMenus, Function - XPLMDestroyMenu, Error = Script 'BadMenus.py' was "
                             "unregistering a callback that does not exist.\n"),
              std::string::npos);
}

}  // namespace
