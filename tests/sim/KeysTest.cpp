// The keyboard: the way a key travels, key sniffers, hot keys, the simulator's own keys and the
// legacy key strokes and buttons.
#include <vector>

#include "SimTestSupport.h"
#include "XPLMDisplay.h"
#include "XPLMPlugin.h"
#include "XPLMUtilities.h"
#include "world/Keys.h"
#include "world/Windows.h"

namespace {

using simtest::LogText;

class sim_Keys : public simtest::WorldTest {};

std::vector<std::string> gCalls;
char kS1[] = "S1", kS2[] = "S2", kS3[] = "S3", kH[] = "H";
std::string gTaker;             // the sniffer that answers 0
bool gUnregisterSecond = false;  // the first sniffer removes the second one

std::string In() { return " in " + std::to_string(XPLMGetMyID()); }

std::string KeyText(char key, XPLMKeyFlags flags, char virtualKey) {
    char text[64];
    std::snprintf(text, sizeof text, "%d %d 0x%02X", key, flags, static_cast<unsigned char>(virtualKey));
    return text;
}

int Second(char key, XPLMKeyFlags flags, char virtualKey, void* refcon);

int Sniff(char key, XPLMKeyFlags flags, char virtualKey, void* refcon) {
    const std::string name = static_cast<const char*>(refcon);
    gCalls.push_back(name + " " + KeyText(key, flags, virtualKey) + In());
    if (gUnregisterSecond && name == "S1") {
        gUnregisterSecond = false;
        EXPECT_EQ(XPLMUnregisterKeySniffer(Second, 1, kS2), 1);
    }
    return name == gTaker ? 0 : 1;
}

int Second(char key, XPLMKeyFlags flags, char virtualKey, void* refcon) { return Sniff(key, flags, virtualKey, refcon); }

void WindowKey(XPLMWindowID, char key, XPLMKeyFlags flags, char virtualKey, void*, int losingFocus) {
    gCalls.push_back(losingFocus ? "W loses focus" : "W " + KeyText(key, flags, virtualKey));
}

void DrawNothing(XPLMWindowID, void*) {}

XPLMHotKeyID gSelf = nullptr;
void Hot(void* refcon) {
    gCalls.push_back(std::string("hot key ") + static_cast<const char*>(refcon) + In());
    if (gSelf != nullptr) {
        XPLMUnregisterHotKey(gSelf);
        gSelf = nullptr;
    }
}

void RecordError(const char* message) { gCalls.push_back(std::string("error") + In() + ": " + message); }

void Press(const char* text) {
    xpsim::KeyStroke key;
    std::string error;
    ASSERT_TRUE(xpsim::ParseKey(text, key, error)) << error;
    xpsim::PressKey(key);
}

}  // namespace

TEST_F(sim_Keys, AKeyTravelsSniffersFocusedWindowSniffersHotKeysThenTheSim) {
    gCalls.clear();
    gTaker.clear();
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    const int two = simtest::AddEnabledPlugin("/p/two.xpl", simtest::StartAsPlugin);
    XPLMWindowID window;
    {
        xpsim::PluginContext context(one);
        EXPECT_EQ(XPLMRegisterKeySniffer(Sniff, 0, kS3), 1);  // after the windows, though registered first
        EXPECT_EQ(XPLMRegisterKeySniffer(Sniff, 1, kS1), 1);
        window = XPLMCreateWindow(0, 10, 10, 0, 0, DrawNothing, WindowKey, nullptr, nullptr);
    }
    {
        xpsim::PluginContext context(two);
        EXPECT_EQ(XPLMRegisterKeySniffer(Second, 1, kS2), 1);
        ASSERT_NE(XPLMRegisterHotKey(XPLM_VK_A, xplm_DownFlag, "Hot A", Hot, kH), nullptr);
    }
    XPLMTakeKeyboardFocus(window);
    Press("a");  // the focused window takes it
    gTaker = "S2";
    Press("a");
    XPLMTakeKeyboardFocus(nullptr);
    gTaker.clear();
    Press("a");  // the hot key takes the press; the release reaches the sim
    gTaker = "S3";
    Press("a");
    EXPECT_EQ(gCalls, (std::vector<std::string>{
                          "S1 97 8 0x41 in 1", "S2 97 8 0x41 in 2", "W 97 8 0x41",
                          "S1 97 16 0x41 in 1", "S2 97 16 0x41 in 2", "W 97 16 0x41",
                          "S1 97 8 0x41 in 1", "S2 97 8 0x41 in 2", "S1 97 16 0x41 in 1", "S2 97 16 0x41 in 2",
                          "W loses focus",
                          "S1 97 8 0x41 in 1", "S2 97 8 0x41 in 2", "S3 97 8 0x41 in 1", "hot key H in 2",
                          "S1 97 16 0x41 in 1", "S2 97 16 0x41 in 2", "S3 97 16 0x41 in 1",
                          "S1 97 8 0x41 in 1", "S2 97 8 0x41 in 2", "S3 97 8 0x41 in 1",
                          "S1 97 16 0x41 in 1", "S2 97 16 0x41 in 2", "S3 97 16 0x41 in 1"}));
    EXPECT_EQ(LogText().find("the sim gets key"), std::string::npos);

    // A sniffer removed by an earlier one in the same message is not called; the sim gets the key.
    gCalls.clear();
    gTaker.clear();
    gUnregisterSecond = true;
    {
        xpsim::PluginContext context(one);
        xpsim::SendKey('b', xplm_DownFlag, XPLM_VK_B);
    }
    EXPECT_EQ(gCalls, (std::vector<std::string>{"S1 98 8 0x42 in 1", "S3 98 8 0x42 in 1"}));
    EXPECT_NE(LogText().find("xpsim: the sim gets key 'b' (XPLM_VK_B, down)\n"), std::string::npos);

    EXPECT_EQ(XPLMRegisterKeySniffer(nullptr, 1, nullptr), 0);
    EXPECT_EQ(XPLMUnregisterKeySniffer(Sniff, 1, kS3), 0);  // S3 is an after-windows sniffer
    xpsim::RemovePlugin(one);
    EXPECT_NE(LogText().find("xpsim: plugin 1 left registered: 1 window, 2 key sniffers; removed\n"),
              std::string::npos);
}

TEST_F(sim_Keys, KeysCarryTheCharacterVirtualKeyAndFlagsTheSdkDefines) {
    gCalls.clear();
    gTaker.clear();
    XPLMRegisterKeySniffer(Sniff, 1, kS1);
    Press("shift+a");
    Press("A");
    Press("shift+3");
    Press("ctrl+XPLM_VK_RETURN");
    Press("alt+XPLM_VK_F1");
    Press("=");  // a virtual key above 0x7F arrives as a negative char
    Press("XPLM_VK_NUMPAD7");
    EXPECT_EQ(gCalls, (std::vector<std::string>{
                          "S1 65 9 0x41 in 0", "S1 65 17 0x41 in 0", "S1 65 9 0x41 in 0", "S1 65 17 0x41 in 0",
                          "S1 35 9 0x33 in 0", "S1 35 17 0x33 in 0", "S1 13 12 0x0D in 0", "S1 13 20 0x0D in 0",
                          "S1 0 10 0x70 in 0", "S1 0 18 0x70 in 0", "S1 61 8 0xB0 in 0", "S1 61 16 0xB0 in 0",
                          "S1 55 8 0x67 in 0", "S1 55 16 0x67 in 0"}));
    EXPECT_NE(LogText().find("xpsim: the sim gets key char 13 (XPLM_VK_RETURN, ctrl+down)\n"
                             "xpsim: the sim gets key (XPLM_VK_F1, alt+down)\n"),
              std::string::npos);

    EXPECT_STREQ(XPLMGetVirtualKeyDescription(XPLM_VK_F1), "F1");
    EXPECT_STREQ(XPLMGetVirtualKeyDescription(static_cast<char>(XPLM_VK_NUMPAD_ENT)), "NUMPAD_ENT");
    EXPECT_STREQ(XPLMGetVirtualKeyDescription(0x01), "unknown");
}

TEST_F(sim_Keys, HotKeysMatchKeyAndModifiersAndCanBeRemapped) {
    gCalls.clear();
    gTaker.clear();
    const int one = simtest::AddEnabledPlugin("/p/one.xpl", simtest::StartAsPlugin);
    XPLMHotKeyID f1, equal;
    {
        xpsim::PluginContext context(one);
        XPLMSetErrorCallback(RecordError);
        f1 = XPLMRegisterHotKey(XPLM_VK_F1, xplm_DownFlag | xplm_ShiftFlag, "Toggle the panel", Hot, kH);
        equal = XPLMRegisterHotKey(static_cast<char>(XPLM_VK_EQUAL), xplm_UpFlag, nullptr, Hot, kS1);
        EXPECT_EQ(XPLMRegisterHotKey(XPLM_VK_F2, 0, "none", nullptr, nullptr), nullptr);
        EXPECT_EQ(XPLMGetNthHotKey(2), nullptr);
    }
    EXPECT_EQ(gCalls, (std::vector<std::string>{"error in 1: XPLMRegisterHotKey: no callback",
                                                "error in 1: XPLMGetNthHotKey: index 2 is not below 2"}));
    gCalls.clear();
    EXPECT_EQ(XPLMCountHotKeys(), 2);
    EXPECT_EQ(XPLMGetNthHotKey(0), f1);
    EXPECT_EQ(XPLMGetNthHotKey(1), equal);
    char key = 0;
    XPLMKeyFlags flags = 0;
    char description[512];
    XPLMPluginID owner = -5;
    XPLMGetHotKeyInfo(f1, &key, &flags, description, &owner);
    EXPECT_EQ(key, XPLM_VK_F1);
    EXPECT_EQ(flags, xplm_DownFlag | xplm_ShiftFlag);
    EXPECT_STREQ(description, "Toggle the panel");
    EXPECT_EQ(owner, one);

    Press("XPLM_VK_F1");        // without shift: the sim's
    Press("shift+XPLM_VK_F1");  // fires on the press
    Press("=");                 // fires on the release
    EXPECT_EQ(gCalls, (std::vector<std::string>{"hot key H in 1", "hot key S1 in 1"}));
    const std::string log = LogText();
    EXPECT_NE(log.find("xpsim: the sim gets key (XPLM_VK_F1, down)\n"), std::string::npos);
    EXPECT_NE(log.find("xpsim: the sim gets key '=' (XPLM_VK_EQUAL, down)\n"), std::string::npos);
    EXPECT_EQ(log.find("the sim gets key (XPLM_VK_F1, shift+down)"), std::string::npos);

    // Any plugin may remap a hot key; only its owner removes it.
    gCalls.clear();
    XPLMSetHotKeyCombination(f1, XPLM_VK_F2, xplm_DownFlag);
    Press("shift+XPLM_VK_F1");
    Press("XPLM_VK_F2");
    XPLMUnregisterHotKey(f1);
    EXPECT_EQ(XPLMCountHotKeys(), 2);
    {
        xpsim::PluginContext context(one);
        gSelf = f1;  // removes itself when it fires
    }
    Press("XPLM_VK_F2");
    Press("XPLM_VK_F2");
    EXPECT_EQ(XPLMCountHotKeys(), 1);
    {
        xpsim::PluginContext context(one);
        XPLMGetHotKeyInfo(f1, &key, &flags, description, &owner);
        XPLMUnregisterHotKey(reinterpret_cast<XPLMHotKeyID>(0x10));
    }
    EXPECT_EQ(owner, XPLM_NO_PLUGIN_ID);
    EXPECT_STREQ(description, "");
    EXPECT_EQ(gCalls, (std::vector<std::string>{
                          "hot key H in 1", "hot key H in 1",
                          "error in 1: XPLMGetHotKeyInfo: the hot key 'Toggle the panel' was unregistered",
                          "error in 1: XPLMUnregisterHotKey: 0x10 is not a hot key"}));
    EXPECT_NE(LogText().find("xpsim: XPLMUnregisterHotKey: the hot key 'Toggle the panel' belongs to plugin 1\n"),
              std::string::npos);
    xpsim::RemovePlugin(one);
    EXPECT_EQ(XPLMCountHotKeys(), 0);
}

TEST_F(sim_Keys, TheSimsOwnKeysAndTheLegacyKeyStrokesAndButtons) {
    gCalls.clear();
    gTaker.clear();
    xpsim::LoadStandardDataRefs();
    XPLMRegisterKeySniffer(Sniff, 1, kS1);
    XPLMDataRef paused = XPLMFindDataRef("sim/time/paused");
    Press("p");
    EXPECT_EQ(XPLMGetDatai(paused), 1);
    Press("P");  // shift+P is not the pause key
    EXPECT_EQ(XPLMGetDatai(paused), 1);
    // A simulated key press goes to the sim alone.
    XPLMSimulateKeyPress(xplm_DownFlag, 'p');
    EXPECT_EQ(XPLMGetDatai(paused), 0);
    EXPECT_EQ(gCalls.size(), 4u);

    XPLMCommandKeyStroke(xplm_key_pause);
    EXPECT_EQ(XPLMGetDatai(paused), 1);
    XPLMCommandKeyStroke(xplm_key_tranID);
    XPLMCommandKeyStroke(xplm_key_max);
    XPLMCommandButtonPress(xplm_joy_gear_tog);
    XPLMCommandButtonRelease(xplm_joy_gear_tog);
    XPLMCommandButtonRelease(xplm_joy_gear_tog);
    XPLMCommandButtonPress(xplm_joy_pause);  // holds the pause toggle
    XPLMCommandButtonRelease(xplm_joy_pause);
    EXPECT_EQ(XPLMGetDatai(paused), 0);
    const std::string log = LogText();
    EXPECT_NE(log.find("xpsim: the sim gets key 'p' (XPLM_VK_P, down): sim/operation/pause_toggle\n"
                       "xpsim: sim/operation/pause_toggle: the sim is paused at frame 0\n"
                       "xpsim: the sim gets key 'P' (XPLM_VK_P, shift+down)\n"
                       "xpsim: simulated key press 'p' (XPLM_VK_P, down)\n"
                       "xpsim: the sim gets key 'p' (XPLM_VK_P, down): sim/operation/pause_toggle\n"
                       "xpsim: sim/operation/pause_toggle: the sim runs again from frame 0\n"
                       "xpsim: key stroke xplm_key_pause (0)\n"
                       "xpsim: sim/operation/pause_toggle: the sim is paused at frame 0\n"
                       "xpsim: key stroke xplm_key_tranID (93)\n"
                       "xpsim: XPLMCommandKeyStroke: no XPLMCommandKeyID 94\n"
                       "xpsim: button press xplm_joy_gear_tog (51)\n"
                       "xpsim: button release xplm_joy_gear_tog (51)\n"
                       "xpsim: XPLMCommandButtonRelease: xplm_joy_gear_tog (51) is not pressed\n"
                       "xpsim: button press xplm_joy_pause (85)\n"
                       "xpsim: sim/operation/pause_toggle: the sim runs again from frame 0\n"
                       "xpsim: button release xplm_joy_pause (85)\n"),
              std::string::npos)
        << log;
}
