// The keyboard: key sniffers, hot keys, the way a key stroke travels, and the simulator's own keys.
//
// Every key message (a press carries xplm_DownFlag, a release xplm_UpFlag, both carry the modifier
// flags) goes, until someone takes it:
//   1. to the key sniffers registered before the windows, in registration order (a sniffer
//      answering 0 takes the key);
//   2. to the window with keyboard focus, which takes every key;
//   3. to the key sniffers registered after the windows;
//   4. to the hot keys on that virtual key and modifiers (a hot key registered with xplm_UpFlag
//      fires on the release, any other on the press); every match fires, and they take the key;
//   5. to the simulator itself: the press of P without modifiers runs sim/operation/pause_toggle;
//      other presses are noted in Log.txt.
// Sniffers and hot keys registered while a key travels take part from the next message on; those
// removed meanwhile are not called again.
#pragma once

#include <string>

#include "XPLMDisplay.h"
#include "world/Export.h"

namespace xpsim {

// A key as the user strikes it: the character it types, its virtual key (an XPLM_VK_ code, 0 when
// it has none) and the modifier flags (xplm_ShiftFlag, xplm_OptionAltFlag, xplm_ControlFlag).
struct KeyStroke {
    char character = 0;
    int virtualKey = 0;
    int modifiers = 0;
};

// The modifier bits of XPLMKeyFlags.
constexpr int kModifierFlags = xplm_ShiftFlag | xplm_OptionAltFlag | xplm_ControlFlag;

// ------------------------------------------------------------------ control interface

// Presses and releases a key: two messages, each through the whole chain.
XPSIM_API void PressKey(const KeyStroke& key);
// Sends one key message through the chain.
XPSIM_API void SendKey(char character, XPLMKeyFlags flags, int virtualKey);

// Reads a key as the events file writes it: modifiers joined by "+" (shift, ctrl, alt), then one
// character or an XPLM_VK_ name: "a", "A" (shift and a), "shift+3" ("#"), "ctrl+XPLM_VK_RETURN".
// Characters are typed as on a US keyboard, so capitals and shifted symbols bring the shift flag.
XPSIM_API bool ParseKey(const std::string& text, KeyStroke& key, std::string& error);
// The key that types a character, and the character a virtual key types, with these modifiers.
XPSIM_API KeyStroke KeyForCharacter(unsigned char character, int modifiers);
XPSIM_API KeyStroke KeyForVirtualKey(int virtualKey, int modifiers);
// The code of a name such as "XPLM_VK_RETURN", or -1; the name of a code, or null.
XPSIM_API int VirtualKeyCode(const std::string& name);
XPSIM_API const char* VirtualKeyName(int virtualKey);
// "'A' (XPLM_VK_A, shift+down)", for the log.
XPSIM_API std::string DescribeKey(char character, XPLMKeyFlags flags, int virtualKey);

// ------------------------------------------------------------------ inside the library

struct HotKeyRecord {
    int owner = 0;
    char virtualKey = 0;
    XPLMKeyFlags flags = 0;
    std::string description;
    XPLMHotKey_f callback = nullptr;
    void* refcon = nullptr;
    bool dead = false;
};

int RegisterKeySniffer(XPLMKeySniffer_f callback, int beforeWindows, void* refcon);
int UnregisterKeySniffer(XPLMKeySniffer_f callback, int beforeWindows, void* refcon);

HotKeyRecord* RegisterHotKey(char virtualKey, XPLMKeyFlags flags, const char* description,
                             XPLMHotKey_f callback, void* refcon);
// The record of a handle, or null with the reason in `what`.
HotKeyRecord* HotKeyFromHandle(const void* handle, std::string& what);
void UnregisterHotKey(HotKeyRecord& hotKey);
int HotKeyCount();
HotKeyRecord* NthHotKey(int index);

// The simulator's own handling of a key message nobody took (also XPLMSimulateKeyPress's).
void SimHandlesKey(char character, XPLMKeyFlags flags, int virtualKey);
// The SDK's description of a virtual key: its name without the XPLM_VK_ prefix, or "unknown".
const char* VirtualKeyDescription(int virtualKey);

int ForgetKeySniffersOf(int plugin);
int ForgetHotKeysOf(int plugin);
void ResetKeys();

}  // namespace xpsim
