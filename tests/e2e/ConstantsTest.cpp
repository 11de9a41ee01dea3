// The constant tables as a script sees them: how many integer constants each module carries, per
// family, in which order, and the values this plugin fixes.
#include <gtest/gtest.h>

#include "SimHarness.h"

namespace {

const char* const kConstantsScript = R"PY(
import importlib

MODULES = ['XPLMDefs', 'XPLMDataAccess', 'XPLMCamera', 'XPLMDisplay', 'XPLMGraphics', 'XPLMMenus',
           'XPLMNavigation', 'XPLMPlanes', 'XPLMPlugin', 'XPLMUtilities', 'XPLMScenery', 'XPWidgetDefs',
           'XPStandardWidgets', 'XPUIGraphics', 'XPWidgetUtils', 'XPLMProcessing', 'XPWidgets']

def constants(name):
    module = importlib.import_module(name)
    return [(n, v) for n, v in vars(module).items() if not n.startswith('__') and type(v) is int]

def family(name, *prefixes):
    return [(n, v) for n, v in constants(name) if n.startswith(prefixes)]

class Corvelle:
    def XPluginStart(self):
        for name in MODULES:
            print('count', name, len(constants(name)))
        for name, prefixes in [('XPLMDefs', ('XPLM_KEY_',)), ('XPLMDefs', ('XPLM_VK_',)),
                               ('XPLMDisplay', ('xplm_Phase_',)), ('XPLMGraphics', ('xplmFont_',)),
                               ('XPLMNavigation', ('xplm_Nav_',)), ('XPLMUtilities', ('xplm_key_',)),
                               ('XPLMUtilities', ('xplm_joy_',)), ('XPLMUtilities', ('xplm_Host_',)),
                               ('XPLMUtilities', ('xplm_Language_',)), ('XPWidgetDefs', ('xpProperty_',)),
                               ('XPWidgetDefs', ('xpMode_',)), ('XPWidgetDefs', ('xpMsg_',)),
                               ('XPStandardWidgets', ('xpWidgetClass_',)), ('XPStandardWidgets', ('xpProperty_',)),
                               ('XPStandardWidgets', ('xpMsg_',)), ('XPUIGraphics', ('xpWindow_',)),
                               ('XPUIGraphics', ('xpElement_',)), ('XPUIGraphics', ('xpTrack_',))]:
            print('family', name, prefixes[0], len(family(name, *prefixes)))

        # Key and joystick commands are numbered by position, in table order.
        print('keys numbered', [v for n, v in family('XPLMUtilities', 'xplm_key_')] == list(range(95)))
        print('joys numbered', [v for n, v in family('XPLMUtilities', 'xplm_joy_')] == list(range(95)))
        print('first and last keys', family('XPLMUtilities', 'xplm_key_')[0], family('XPLMUtilities', 'xplm_key_')[-1])
        print('first and last joys', family('XPLMUtilities', 'xplm_joy_')[0], family('XPLMUtilities', 'xplm_joy_')[-1])

        import XPLMDefs, XPLMUtilities, XPLMScenery, XPLMNavigation, XPStandardWidgets, XPUIGraphics
        import XPWidgetDefs, XPWidgetUtils
        d = XPLMDefs
        print('F keys', d.XPLM_VK_F10, d.XPLM_VK_F19, d.XPLM_VK_F20, d.XPLM_VK_F21, d.XPLM_VK_F24,
              d.XPLM_VK_F20 == d.XPLM_VK_F10)
        print('defs', d.XPLM_NO_PLUGIN_ID, d.XPLM_PLUGIN_XPLANE, d.kXPLM_Version, d.xplm_UpFlag,
              d.XPLM_KEY_DECIMAL, d.XPLM_VK_BACK, d.XPLM_VK_HELP, d.XPLM_VK_Z, d.XPLM_VK_NUMPAD_EQ)
        print('maxima', XPLMUtilities.xplm_key_max, XPLMUtilities.xplm_joy_max, XPLMUtilities.xplm_key_tranID,
              XPLMUtilities.xplm_joy_lanlights, XPLMUtilities.xplm_Host_XAuto, XPLMUtilities.xplm_Language_Korean)
        print('probe', XPLMScenery.xplm_ProbeY, XPLMScenery.xplm_ProbeHitTerrain, XPLMScenery.xplm_ProbeMissed)
        print('nav', XPLMNavigation.xplm_Nav_LatLon, XPLMNavigation.XPLM_NAV_NOT_FOUND)
        s = XPStandardWidgets
        print('standard widgets', s.xpILSGlideScope, s.xp_Airport, s.xpWayPoint, s.xpMessage_CloseButtonPushed,
              s.xpProperty_MainWindowType, s.xpProperty_ProgressMax, s.xpMsg_ScrollBarSliderPositionChanged)
        print('ui graphics', XPUIGraphics.xpWindow_ListView, XPUIGraphics.xpElement_TextField,
              XPUIGraphics.xpElement_WindowDragBarSmooth, XPUIGraphics.xpTrack_Progress)
        print('widget defs', XPWidgetDefs.xpProperty_UserStart, XPWidgetDefs.xpMsg_CursorAdjust,
              XPWidgetDefs.xpMsg_UserStart, XPWidgetDefs.xpWidgetClass_None)
        print('widget utils', XPWidgetUtils.NO_PARENT, XPWidgetUtils.PARAM_PARENT)
        print('XPLMDefs callables', [n for n in dir(XPLMDefs) if callable(getattr(XPLMDefs, n))])
        return 'Constants', 'test.constants', 'Constant tables'

    def XPluginStop(self):
        pass
    def XPluginEnable(self):
        return 1
    def XPluginDisable(self):
        pass
    def XPluginReceiveMessage(self, who, message, param):
        pass
)PY";

}  // namespace

TEST(Constants, CountsOrderAndFixedValues) {
    SimFolder sim;
    sim.writeScript("CV_Constants.py", kConstantsScript);
    SimRun run = sim.run({"--frames", "1"});
    ASSERT_EQ(run.exitCode, 0) << run.stderrText;

    const std::string out = sim.output();
    EXPECT_TRUE(InOrder(out, {"count XPLMDefs 138\n",
                              "count XPLMDataAccess 7\n",
                              "count XPLMCamera 2\n",
                              "count XPLMDisplay 19\n",
                              "count XPLMGraphics 22\n",
                              "count XPLMMenus 3\n",
                              "count XPLMNavigation 14\n",
                              "count XPLMPlanes 1\n",
                              "count XPLMPlugin 8\n",
                              "count XPLMUtilities 210\n",
                              "count XPLMScenery 4\n",
                              "count XPWidgetDefs 38\n",
                              "count XPStandardWidgets 76\n",
                              "count XPUIGraphics 44\n",
                              "count XPWidgetUtils 2\n",
                              "count XPLMProcessing 0\n",
                              "count XPWidgets 0\n"}))
        << out;
    EXPECT_TRUE(InOrder(out, {"family XPLMDefs XPLM_KEY_ 19\n",
                              "family XPLMDefs XPLM_VK_ 111\n",
                              "family XPLMDisplay xplm_Phase_ 12\n",
                              "family XPLMGraphics xplmFont_ 19\n",
                              "family XPLMNavigation xplm_Nav_ 13\n",
                              "family XPLMUtilities xplm_key_ 95\n",
                              "family XPLMUtilities xplm_joy_ 95\n",
                              "family XPLMUtilities xplm_Host_ 8\n",
                              "family XPLMUtilities xplm_Language_ 7\n",
                              "family XPWidgetDefs xpProperty_ 9\n",
                              "family XPWidgetDefs xpMode_ 5\n",
                              "family XPWidgetDefs xpMsg_ 23\n",
                              "family XPStandardWidgets xpWidgetClass_ 8\n",
                              "family XPStandardWidgets xpProperty_ 26\n",
                              "family XPStandardWidgets xpMsg_ 4\n",
                              "family XPUIGraphics xpWindow_ 5\n",
                              "family XPUIGraphics xpElement_ 36\n",
                              "family XPUIGraphics xpTrack_ 3\n"}))
        << out;
    EXPECT_TRUE(InOrder(out, {"keys numbered True\n",
                              "joys numbered True\n",
                              "first and last keys ('xplm_key_pause', 0) ('xplm_key_max', 94)\n",
                              "first and last joys ('xplm_joy_nothing', 0) ('xplm_joy_max', 94)\n",
                              // F20 carries F10's value on purpose; its neighbours do not.
                              "F keys 121 130 121 132 135 True\n",
                              "defs -1 0 210 16 46 8 47 90 189\n",
                              "maxima 94 94 93 93 7 6\n",
                              "probe 0 0 2\n",
                              "nav 2048 -1\n",
                              "standard widgets 5 7 23 1200 1100 1802 1500\n",
                              "ui graphics 5 6 62 2\n",
                              "widget defs 10000 21 10000 0\n",
                              "widget utils -1 -2\n",
                              "XPLMDefs callables []\n"}))
        << out;
    EXPECT_EQ(sim.log().find("Traceback"), std::string::npos) << sim.log();
}
