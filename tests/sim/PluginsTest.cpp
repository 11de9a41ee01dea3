// The plugin table, calling contexts, messages and menus, with plugins whose entry points live in
// this test program.
#include <cstdint>
#include <cstdio>
#include <vector>

#include "SimTestSupport.h"
#include "XPLMDataAccess.h"
#include "XPLMDisplay.h"
#include "XPLMMenus.h"
#include "XPLMPlugin.h"
#include "XPLMProcessing.h"
#include "XPLMUtilities.h"
#include "world/Menus.h"

namespace {

using simtest::LogText;

class sim_Plugins : public simtest::WorldTest {};

std::vector<std::string> gCalls;

void Record(const std::string& what) { gCalls.push_back(what + " in " + std::to_string(XPLMGetMyID())); }

int Start(char* name, char* signature, char* description) {
    Record("start");
    const int id = XPLMGetMyID();
    std::snprintf(name, 256, "Name%d", id);
    std::snprintf(signature, 256, "sig.%d", id);
    std::snprintf(description, 256, "Plugin %d.", id);
    return 1;
}
int Refuse(char*, char*, char*) {
    Record("refuse");
    return 0;
}
int Enable() {
    Record("enable");
    return 1;
}
int EnableNo() {
    Record("enable-no");
    return 0;
}
void Disable() { Record("disable"); }
void Stop() { Record("stop"); }
void Receive(int from, int message, void* param) {
    Record("message " + std::to_string(from) + " " + std::to_string(message) + " " +
           std::to_string(reinterpret_cast<intptr_t>(param)));
}

int Add(const char* path, int (*start)(char*, char*, char*), int (*enable)()) {
    xpsim::PluginEntryPoints entry;
    entry.start = start;
    entry.stop = Stop;
    entry.enable = enable;
    entry.disable = Disable;
    entry.receiveMessage = Receive;
    return xpsim::AddPlugin(path, nullptr, entry);
}

}  // namespace

TEST_F(sim_Plugins, LifecycleIdsInfoAndMessages) {
    gCalls.clear();
    const int a = Add("/p/a.xpl", Start, Enable);
    const int refused = Add("/p/r.xpl", Refuse, Enable);
    const int b = Add("/p/b.xpl", Start, EnableNo);
    EXPECT_EQ(a, 1);
    EXPECT_EQ(refused, 2);
    EXPECT_EQ(b, 3);
    EXPECT_TRUE(xpsim::StartPlugin(a));
    EXPECT_FALSE(xpsim::StartPlugin(refused));
    xpsim::RemovePlugin(refused);
    EXPECT_TRUE(xpsim::StartPlugin(b));
    EXPECT_TRUE(xpsim::EnablePlugin(a));
    EXPECT_FALSE(xpsim::EnablePlugin(b));

    EXPECT_EQ(XPLMCountPlugins(), 2);
    EXPECT_EQ(XPLMGetNthPlugin(0), 1);
    EXPECT_EQ(XPLMGetNthPlugin(1), 3);
    EXPECT_EQ(XPLMGetNthPlugin(2), XPLM_NO_PLUGIN_ID);
    EXPECT_EQ(XPLMFindPluginBySignature("sig.3"), 3);
    EXPECT_EQ(XPLMFindPluginBySignature("sig.2"), XPLM_NO_PLUGIN_ID);
    EXPECT_EQ(XPLMFindPluginByPath("/p/b.xpl"), 3);
    char name[256], path[256], signature[256], description[256];
    XPLMGetPluginInfo(3, name, path, signature, description);
    EXPECT_STREQ(name, "Name3");
    EXPECT_STREQ(path, "/p/b.xpl");
    EXPECT_STREQ(signature, "sig.3");
    EXPECT_STREQ(description, "Plugin 3.");
    EXPECT_EQ(XPLMIsPluginEnabled(1), 1);
    EXPECT_EQ(XPLMIsPluginEnabled(3), 0);

    {
        xpsim::PluginContext context(a);
        XPLMSendMessageToPlugin(XPLM_NO_PLUGIN_ID, 99, reinterpret_cast<void*>(5));  // only enabled plugins
        XPLMSendMessageToPlugin(b, 98, nullptr);
        EXPECT_EQ(XPLMEnablePlugin(b), 0);
    }
    EXPECT_TRUE(xpsim::DeliverMessage(a, xpsim::kSimId, 0x8000000, reinterpret_cast<void*>(-7)));
    xpsim::DisablePlugin(a);
    xpsim::StopPlugin(a);
    xpsim::StopPlugin(b);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"start in 1", "refuse in 2", "start in 3", "enable in 1",
                                                "enable-no in 3", "message 1 99 5 in 1", "enable-no in 3",
                                                "message 0 134217728 -7 in 1", "disable in 1", "stop in 1",
                                                "stop in 3"}));
    const std::string log = LogText();
    EXPECT_NE(log.find("Loaded: /p/a.xpl (sig.1).\nxpsim: /p/r.xpl refused to start (XPluginStart returned 0)\n"
                       "Loaded: /p/b.xpl (sig.3).\nxpsim: plugin 3 (sig.3) stays disabled (XPluginEnable returned 0)\n"),
              std::string::npos);
}

namespace {

void Handler(void* menuRef, void* itemRef) {
    Record(std::string("pick ") + static_cast<const char*>(menuRef) + " " + static_cast<const char*>(itemRef));
}

}  // namespace

TEST_F(sim_Plugins, MenuItemsArePickedByPathInTheOwnersContext) {
    gCalls.clear();
    const int a = simtest::AddEnabledPlugin("/p/a.xpl", simtest::StartAsPlugin);
    XPLMMenuID menu, sub;
    {
        xpsim::PluginContext context(a);
        XPLMMenuID plugins = XPLMFindPluginsMenu();
        const int item = XPLMAppendMenuItem(plugins, "Alpha", nullptr, 1);
        EXPECT_EQ(item, 0);
        menu = XPLMCreateMenu("Alpha", plugins, item, Handler, const_cast<char*>("alpha"));
        EXPECT_EQ(XPLMAppendMenuItem(menu, "One", const_cast<char*>("1"), 1), 0);
        XPLMAppendMenuItem(menu, "Two/Half", const_cast<char*>("2"), 1);
        XPLMAppendMenuSeparator(menu);
        XPLMAppendMenuItem(menu, "Three", const_cast<char*>("3"), 1);
        XPLMAppendMenuItem(menu, "Four", const_cast<char*>("4"), 1);
        EXPECT_EQ(XPLMAppendMenuItem(menu, "Sub", nullptr, 1), 5);
        sub = XPLMCreateMenu("Sub", menu, 5, Handler, const_cast<char*>("sub"));
        XPLMAppendMenuItem(sub, "Deep", const_cast<char*>("deep"), 1);
        XPLMEnableMenuItem(menu, 3, 0);
        XPLMCheckMenuItem(menu, 4, xplm_Menu_Checked);
    }
    EXPECT_EQ(xpsim::DescribeMenuTree(),
              (std::vector<std::string>{"Plugins/Alpha [enabled, submenu]", "Plugins/Alpha/One [enabled]",
                                        "Plugins/Alpha/Two/Half [enabled]", "Plugins/Alpha/-",
                                        "Plugins/Alpha/Three [disabled]", "Plugins/Alpha/Four [enabled, checked]",
                                        "Plugins/Alpha/Sub [enabled, submenu]", "Plugins/Alpha/Sub/Deep [enabled]"}));
    XPLMMenuCheck check = xplm_Menu_NoCheck;
    XPLMCheckMenuItemState(menu, 4, &check);
    EXPECT_EQ(check, xplm_Menu_Checked);

    std::string error;
    EXPECT_TRUE(xpsim::PickMenuPath("Plugins/Alpha/One", error)) << error;
    EXPECT_TRUE(xpsim::PickMenuPath("Plugins/Alpha/Two/Half", error)) << error;
    EXPECT_TRUE(xpsim::PickMenuPath("Plugins/Alpha/Sub/Deep", error)) << error;
    EXPECT_EQ(gCalls, (std::vector<std::string>{"pick alpha 1 in 1", "pick alpha 2 in 1", "pick sub deep in 1"}));
    const std::pair<const char*, const char*> failures[] = {
        {"Plugins/Alpha/Three", "'Plugins/Alpha/Three' is disabled"},
        {"Plugins/Alpha/Sub", "'Plugins/Alpha/Sub' opens a submenu; pick one of its items"},
        {"Plugins/Alpha/One/More", "'Plugins/Alpha/One' has no submenu"},
        {"Plugins/Beta/X", "menu 'Plugins' has no item 'Beta'"},
        {"Tools/X", "no menu named 'Tools' in the menu bar"}};
    for (const auto& failure : failures) {
        EXPECT_FALSE(xpsim::PickMenuPath(failure.first, error)) << failure.first;
        EXPECT_EQ(error, failure.second);
    }

    // Removing an item moves the later ones up; bad indexes are reported.
    XPLMRemoveMenuItem(menu, 1);
    XPLMCheckMenuItemState(menu, 3, &check);
    EXPECT_EQ(check, xplm_Menu_Checked);
    EXPECT_FALSE(xpsim::PickMenuPath("Plugins/Alpha/Two/Half", error));
    XPLMCheckMenuItem(menu, 99, xplm_Menu_Checked);
    EXPECT_NE(LogText().find("xpsim: XPLMCheckMenuItem: menu 'Alpha' has no item 99\n"), std::string::npos);
    EXPECT_EQ(XPLMAppendMenuItem(reinterpret_cast<XPLMMenuID>(0x10), "X", nullptr, 1), -1);

    // A disabled plugin's menus take no picks.
    xpsim::DisablePlugin(a);
    EXPECT_FALSE(xpsim::PickMenuPath("Plugins/Alpha/One", error));
    EXPECT_EQ(error, "'Plugins/Alpha/One' belongs to disabled plugin 1");
}

namespace {

int gLoops = 0;
float CountLoop(float, float, int, void*) {
    ++gLoops;
    return -1.0f;
}
int NoDraw(XPLMDrawingPhase, int, void*) { return 1; }
int ReadZero(void*) { return 0; }
void Changed(void*) { Record("changed"); }
void OnError(const char* message) { Record(std::string("error: ") + message); }

}  // namespace

TEST_F(sim_Plugins, DisabledPluginsGetNoCallbacksAndRemovalClearsRegistrations) {
    gCalls.clear();
    gLoops = 0;
    const int a = simtest::AddEnabledPlugin("/p/a.xpl", simtest::StartAsPlugin);
    XPLMDataRef accessor;
    {
        xpsim::PluginContext context(a);
        XPLMSetErrorCallback(OnError);
        XPLMRegisterFlightLoopCallback(CountLoop, -1.0f, nullptr);
        XPLMRegisterDrawCallback(NoDraw, xplm_Phase_Window, 1, nullptr);
        XPLMMenuID plugins = XPLMFindPluginsMenu();
        XPLMCreateMenu("A", plugins, XPLMAppendMenuItem(plugins, "A", nullptr, 1), nullptr, nullptr);
        accessor = XPLMRegisterDataAccessor("test/a/value", xplmType_Int, 0, ReadZero, nullptr, nullptr, nullptr,
                                            nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                            nullptr, nullptr);
        XPLMShareData("test/a/shared", xplmType_Float, Changed, nullptr);
        XPLMGetDatai(nullptr);  // misuse by the plugin reaches its error callback
    }
    XPLMGetDatai(nullptr);  // the sim's own misuse does not
    RunFrames(2);
    EXPECT_EQ(gLoops, 2);

    xpsim::DisablePlugin(a);
    std::string error;
    ASSERT_TRUE(xpsim::SetDataRefFromText("test/a/shared", "1.5", error)) << error;
    RunFrames(3);
    EXPECT_EQ(gLoops, 2);
    EXPECT_TRUE(xpsim::EnablePlugin(a));
    RunFrames(1);
    EXPECT_EQ(gLoops, 3);
    EXPECT_EQ(gCalls, (std::vector<std::string>{"error: XPLMGetDatai: (nil) is not a dataref in 1"}));

    xpsim::RemovePlugin(a);
    EXPECT_EQ(xpsim::FlightLoopCount(), 0);
    EXPECT_TRUE(xpsim::DescribeMenuTree().empty());
    EXPECT_EQ(XPLMIsDataRefGood(accessor), 0);
    EXPECT_NE(LogText().find("xpsim: plugin 1 left registered: 1 flight loop, 1 draw callback, 1 menu, "
                             "1 data accessor, 1 shared data registration; removed\n"),
              std::string::npos);
    RunFrames(2);
    EXPECT_EQ(gLoops, 3);
}
