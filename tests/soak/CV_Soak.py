# A script of the kind people write while they learn: it registers one of everything, holds a
# megabyte of its own state, and never takes anything back at its stop. The soak run reloads it
# many times; at each start it prints the process's resident memory, so that growth shows.
import os

from XPLMDataAccess import *
from XPLMDisplay import *
from XPLMMenus import *
from XPLMProcessing import *
from XPLMUtilities import *
from XPLMCamera import *
from XPWidgets import *
from XPWidgetDefs import *
from XPStandardWidgets import *


def ResidentKilobytes():
    with open('/proc/self/statm') as f:
        pages = int(f.read().split()[1])
    return pages * os.sysconf('SC_PAGE_SIZE') // 1024


class Corvelle:
    def XPluginStart(self):
        # Touched pages, so that they count as resident while the instance lives.
        self.state = bytes(range(256)) * 4096
        print('soak rss', ResidentKilobytes())
        # Bound methods made on the spot and never stored, as scripts often pass them.
        XPLMRegisterFlightLoopCallback(self, self.Loop, 1.0, 0)
        XPLMCreateFlightLoop(self, [1, self.Loop, 1])
        XPLMRegisterDrawCallback(self, self.Draw, xplm_Phase_Window, 0, 0)
        XPLMRegisterKeySniffer(self, self.Sniff, 0, 0)
        XPLMRegisterHotKey(self, XPLM_VK_F9, 0, 'Soak hot key', self.Hot, 0)
        XPLMCreateWindowEx(self, [10, 60, 60, 10, 1, self.Draw, self.Key, self.Mouse, self.Cursor, self.Wheel, 0])
        # Two windows that share their handlers, both destroyed: their records stay in the lists.
        handlers = [self.Draw, self.Key, self.Mouse]
        for left in (100, 200):
            XPLMDestroyWindow(self, XPLMCreateWindow(self, left, 60, left + 50, 10, 1, *handlers, 0))
        plugins = XPLMFindPluginsMenu()
        item = XPLMAppendMenuItem(plugins, 'Soak', 0, 1)
        XPLMCreateMenu(self, 'Soak', plugins, item, self.Menu, 0)
        XPLMRegisterDataAccessor(self, 'soak/value', xplmType_Int, 1, self.Get, self.Set,
                                 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0)
        XPLMShareData(self, 'soak/shared', xplmType_Int, self.Shared, 0)
        XPLMRegisterCommandHandler(self, XPLMCreateCommand('soak/command', 'Soak'), self.Command, 1, 0)
        widget = XPCreateWidget(300, 300, 400, 200, 1, 'Soak', 1, 0, xpWidgetClass_MainWindow)
        XPAddWidgetCallback(self, widget, self.Widget)
        XPCreateCustomWidget(self, 300, 180, 400, 100, 1, 'Custom', 1, 0, self.Widget)
        XPLMSetErrorCallback(self, self.Error)
        return 'Soak', 'corvelle.test.soak', 'Leaves everything behind'

    def XPluginStop(self):
        pass

    def XPluginEnable(self):
        return 1

    def XPluginDisable(self):
        pass

    def XPluginReceiveMessage(self, sender, message, param):
        pass

    def Loop(self, since, elapsed, counter, refcon):
        return 1.0

    def Draw(self, *args):
        return 1

    def Sniff(self, *args):
        return 1

    def Hot(self, refcon):
        pass

    def Key(self, *args):
        pass

    def Mouse(self, *args):
        return 0

    def Cursor(self, *args):
        return 0

    def Wheel(self, *args):
        return 0

    def Menu(self, menuRef, itemRef):
        pass

    def Get(self, refcon):
        return len(self.state)

    def Set(self, refcon, value):
        pass

    def Shared(self, refcon):
        pass

    def Command(self, command, phase, refcon):
        return 1

    def Widget(self, message, widget, param1, param2):
        return 0

    def Error(self, message):
        pass
