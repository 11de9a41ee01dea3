# Windows and menus: open a window, draw into it, react to the mouse and the keyboard, and drive it
# from a menu of your own.
#
# A window is a rectangle of the screen (origin at the bottom left, in pixels) whose callbacks are
# methods of your script:
#   draw         (self, inWindowID, inRefcon)                                   every frame it is visible
#   key          (self, inWindowID, inKey, inFlags, inVirtualKey, inRefcon, losingFocus)
#   mouse click  (self, inWindowID, x, y, inMouse, inRefcon)       return 1 to take the click
#   cursor       (self, inWindowID, x, y, inRefcon)                return an xplm_Cursor... value
#   mouse wheel  (self, inWindowID, x, y, wheel, clicks, inRefcon) return 1 to take the wheel
# Only bound methods (self.Something) are wired up; give 0 or None for a callback you do not want.
# Keep the methods on self and destroy the window when your script stops.
#
# A menu lives in the Plugins menu: append an item for it to the Plugins menu, then create the menu
# on that item. Its handler (self, inMenuRef, inItemRef) gets the menu's refcon and the refcon of
# the item that was picked.
#
# Run it with `make demo`: examples/demo-events.txt clicks into the window, types into it, and
# hides and shows it again from the menu. The output goes to CorvelleOutput.txt.

from XPLMDefs import *
from XPLMDisplay import *
from XPLMGraphics import *
from XPLMMenus import *

# Item refcons of the demo's menu: they tell the handler which item was picked.
SHOW_ITEM = 1
HIDE_ITEM = 2
REPORT_ITEM = 3


class Corvelle:
    def XPluginStart(self):
        self.Name = "WindowDemo"
        self.Sig = "corvelle.examples.windowdemo"
        self.Desc = "A window that counts its frames, echoes keys and is driven from a menu."
        self.DrawCount = 0
        self.KeysTyped = ""

        # The window's callbacks, kept on self: Corvelle finds them again by these very objects.
        self.DrawWindowCB = self.DrawWindow
        self.KeyCB = self.Key
        self.MouseClickCB = self.MouseClick
        self.CursorCB = self.Cursor
        self.MouseWheelCB = self.MouseWheel

        # XPLMCreateWindowEx takes one list: left, top, right, bottom, visible, the draw, key, mouse
        # click, cursor and mouse wheel callbacks, and the refcon. Simulators older than SDK 2.00 do
        # not have it and answer 0; XPLMCreateWindow (draw, key and mouse click only) works everywhere.
        self.WindowID = XPLMCreateWindowEx(self, [100, 400, 400, 200, 1,
                                                  self.DrawWindowCB, self.KeyCB, self.MouseClickCB,
                                                  self.CursorCB, self.MouseWheelCB, 0])
        if not self.WindowID:
            self.WindowID = XPLMCreateWindow(self, 100, 400, 400, 200, 1,
                                             self.DrawWindowCB, self.KeyCB, self.MouseClickCB, 0)

        # A submenu "Window Demo" in the Plugins menu, with three items.
        self.MenuHandlerCB = self.MenuHandler
        pluginsMenu = XPLMFindPluginsMenu()
        self.PluginsItem = XPLMAppendMenuItem(pluginsMenu, "Window Demo", 0, 1)
        self.MenuID = XPLMCreateMenu(self, "Window Demo", pluginsMenu, self.PluginsItem, self.MenuHandlerCB, 0)
        XPLMAppendMenuItem(self.MenuID, "Show Window", SHOW_ITEM, 1)
        XPLMAppendMenuItem(self.MenuID, "Hide Window", HIDE_ITEM, 1)
        XPLMAppendMenuSeparator(self.MenuID)
        XPLMAppendMenuItem(self.MenuID, "Report", REPORT_ITEM, 1)
        self.UpdateMenu()
        return self.Name, self.Sig, self.Desc

    def XPluginStop(self):
        # Undo what XPluginStart did, with the same ids.
        XPLMDestroyWindow(self, self.WindowID)
        XPLMDestroyMenu(self, self.MenuID)
        print("WindowDemo: %d frames drawn, keys typed: '%s'" % (self.DrawCount, self.KeysTyped))

    def XPluginEnable(self):
        return 1

    def XPluginDisable(self):
        pass

    def XPluginReceiveMessage(self, inFromWho, inMessage, inParam):
        pass

    def DrawWindow(self, inWindowID, inRefcon):
        # Called every frame while the window is visible: the window is what this draws, here a dark
        # box with the keys typed so far. The demo also counts its frames and reports every 40th (two
        # seconds at 20 frames per second).
        self.DrawCount += 1
        left: list[int] = []
        top: list[int] = []
        right: list[int] = []
        bottom: list[int] = []
        XPLMGetWindowGeometry(inWindowID, left, top, right, bottom)
        XPLMDrawTranslucentDarkBox(left[0], top[0], right[0], bottom[0])
        XPLMDrawString((1.0, 1.0, 1.0), left[0] + 10, top[0] - 20, "Window Demo", 0, xplmFont_Basic)
        XPLMDrawString((0.6, 0.9, 1.0), left[0] + 10, top[0] - 44, "Keys typed: " + self.KeysTyped, 0,
                       xplmFont_Basic)
        XPLMDrawString((0.6, 1.0, 0.6), left[0] + 10, top[0] - 64, "Frames drawn:", 0, xplmFont_Basic)
        XPLMDrawNumber((0.6, 1.0, 0.6), left[0] + 108, top[0] - 64, self.DrawCount, 4, 0, 0, xplmFont_Basic)
        if self.DrawCount % 40 == 0:
            print("WindowDemo: frame %d, window at left %d top %d right %d bottom %d"
                  % (self.DrawCount, left[0], top[0], right[0], bottom[0]))

    def Key(self, inWindowID, inKey, inFlags, inVirtualKey, inRefcon, losingFocus):
        if losingFocus:
            print("WindowDemo: the window lost the keyboard focus")
            return
        # Every key arrives twice, pressed (xplm_DownFlag) and released (xplm_UpFlag). inKey is the
        # character's code.
        if inFlags & xplm_DownFlag:
            self.KeysTyped += chr(inKey & 0xFF)
            print("WindowDemo: key '%s' (virtual key %d) pressed in the window" % (chr(inKey & 0xFF), inVirtualKey))

    def MouseClick(self, inWindowID, x, y, inMouse, inRefcon):
        # A window does not get keys by itself: a click into it asks for the keyboard focus.
        if inMouse == xplm_MouseDown:
            print("WindowDemo: mouse down at %d, %d" % (x, y))
            XPLMTakeKeyboardFocus(inWindowID)
        return 1

    def Cursor(self, inWindowID, x, y, inRefcon):
        return xplm_CursorArrow

    def MouseWheel(self, inWindowID, x, y, wheel, clicks, inRefcon):
        print("WindowDemo: wheel turned by %d at %d, %d" % (clicks, x, y))
        return 1

    def MenuHandler(self, inMenuRef, inItemRef):
        if inItemRef == SHOW_ITEM:
            XPLMSetWindowIsVisible(self.WindowID, 1)
            print("WindowDemo: window shown")
        elif inItemRef == HIDE_ITEM:
            XPLMSetWindowIsVisible(self.WindowID, 0)
            print("WindowDemo: window hidden after %d frames" % self.DrawCount)
        elif inItemRef == REPORT_ITEM:
            print("WindowDemo: %d frames drawn so far" % self.DrawCount)
        self.UpdateMenu()

    def UpdateMenu(self):
        # Only the item that makes sense is enabled; the item of the window's state is checked.
        visible = XPLMGetWindowIsVisible(self.WindowID)
        XPLMEnableMenuItem(self.MenuID, 0, 0 if visible else 1)
        XPLMEnableMenuItem(self.MenuID, 1, 1 if visible else 0)
        XPLMCheckMenuItem(self.MenuID, 0, xplm_Menu_Checked if visible else xplm_Menu_Unchecked)
