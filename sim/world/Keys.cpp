// Key sniffers, hot keys and the way a key stroke travels.
#include "world/Keys.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <unordered_set>
#include <vector>

#include "XPLMDefs.h"
#include "world/Commands.h"
#include "world/Plugins.h"
#include "world/Windows.h"
#include "world/World.h"

namespace xpsim {
namespace {

// Every virtual key the SDK names.
#define XPSIM_VIRTUAL_KEYS(VK)                                                                         \
    VK(BACK) VK(TAB) VK(CLEAR) VK(RETURN) VK(ESCAPE) VK(SPACE) VK(PRIOR) VK(NEXT)                      \
    VK(END) VK(HOME) VK(LEFT) VK(UP) VK(RIGHT) VK(DOWN) VK(SELECT) VK(PRINT)                           \
    VK(EXECUTE) VK(SNAPSHOT) VK(INSERT) VK(DELETE) VK(HELP) VK(0) VK(1) VK(2)                          \
    VK(3) VK(4) VK(5) VK(6) VK(7) VK(8) VK(9) VK(A)                                                    \
    VK(B) VK(C) VK(D) VK(E) VK(F) VK(G) VK(H) VK(I)                                                    \
    VK(J) VK(K) VK(L) VK(M) VK(N) VK(O) VK(P) VK(Q)                                                    \
    VK(R) VK(S) VK(T) VK(U) VK(V) VK(W) VK(X) VK(Y)                                                    \
    VK(Z) VK(NUMPAD0) VK(NUMPAD1) VK(NUMPAD2) VK(NUMPAD3) VK(NUMPAD4) VK(NUMPAD5) VK(NUMPAD6)          \
    VK(NUMPAD7) VK(NUMPAD8) VK(NUMPAD9) VK(MULTIPLY) VK(ADD) VK(SEPARATOR) VK(SUBTRACT) VK(DECIMAL)    \
    VK(DIVIDE) VK(F1) VK(F2) VK(F3) VK(F4) VK(F5) VK(F6) VK(F7)                                        \
    VK(F8) VK(F9) VK(F10) VK(F11) VK(F12) VK(F13) VK(F14) VK(F15)                                      \
    VK(F16) VK(F17) VK(F18) VK(F19) VK(F20) VK(F21) VK(F22) VK(F23)                                    \
    VK(F24) VK(EQUAL) VK(MINUS) VK(RBRACE) VK(LBRACE) VK(QUOTE) VK(SEMICOLON) VK(BACKSLASH)            \
    VK(COMMA) VK(SLASH) VK(PERIOD) VK(BACKQUOTE) VK(ENTER) VK(NUMPAD_ENT) VK(NUMPAD_EQ)

struct VirtualKeyEntry {
    const char* name;
    int code;
};

#define XPSIM_VK_ENTRY(name) {"XPLM_VK_" #name, XPLM_VK_##name},
const VirtualKeyEntry kVirtualKeys[] = {XPSIM_VIRTUAL_KEYS(XPSIM_VK_ENTRY)};
#undef XPSIM_VK_ENTRY

constexpr size_t kPrefixLength = 8;  // "XPLM_VK_"

// Punctuation on a US keyboard: the character without and with shift, and the key.
struct Punctuation {
    char plain;
    char shifted;
    int virtualKey;
};
const Punctuation kPunctuation[] = {
    {'-', '_', XPLM_VK_MINUS},     {'=', '+', XPLM_VK_EQUAL},     {'[', '{', XPLM_VK_LBRACE},
    {']', '}', XPLM_VK_RBRACE},    {';', ':', XPLM_VK_SEMICOLON}, {'\'', '"', XPLM_VK_QUOTE},
    {',', '<', XPLM_VK_COMMA},     {'.', '>', XPLM_VK_PERIOD},    {'/', '?', XPLM_VK_SLASH},
    {'\\', '|', XPLM_VK_BACKSLASH}, {'`', '~', XPLM_VK_BACKQUOTE}};
// The shifted digits, from 0 to 9.
const char kShiftedDigits[] = ")!@#$%^&*(";

// Keys that type a character whatever the shift key does.
struct FixedCharacter {
    int virtualKey;
    char character;
};
const FixedCharacter kFixedCharacters[] = {
    {XPLM_VK_SPACE, ' '},          {XPLM_VK_RETURN, XPLM_KEY_RETURN}, {XPLM_VK_ENTER, XPLM_KEY_RETURN},
    {XPLM_VK_NUMPAD_ENT, XPLM_KEY_RETURN}, {XPLM_VK_TAB, XPLM_KEY_TAB},  {XPLM_VK_ESCAPE, XPLM_KEY_ESCAPE},
    {XPLM_VK_BACK, XPLM_KEY_DELETE}, {XPLM_VK_LEFT, XPLM_KEY_LEFT},     {XPLM_VK_RIGHT, XPLM_KEY_RIGHT},
    {XPLM_VK_UP, XPLM_KEY_UP},     {XPLM_VK_DOWN, XPLM_KEY_DOWN},     {XPLM_VK_MULTIPLY, '*'},
    {XPLM_VK_ADD, '+'},            {XPLM_VK_SUBTRACT, '-'},           {XPLM_VK_DECIMAL, '.'},
    {XPLM_VK_DIVIDE, '/'},         {XPLM_VK_NUMPAD_EQ, '='}};

struct Sniffer {
    int plugin = 0;
    XPLMKeySniffer_f callback = nullptr;
    bool before = false;
    void* refcon = nullptr;
    bool dead = false;
};

struct Keyboard {
    std::vector<std::unique_ptr<Sniffer>> sniffers;        // registration order
    std::vector<std::unique_ptr<HotKeyRecord>> hotKeys;    // every hot key since the last reset
    std::unordered_set<const void*> hotKeyHandles;
    std::vector<HotKeyRecord*> liveHotKeys;                // registration order
    int dispatching = 0;  // nesting of key messages; removed sniffers are swept when it is 0
};

Keyboard& keyboard() {
    static Keyboard k;
    return k;
}

void SweepSniffers() {
    Keyboard& k = keyboard();
    if (k.dispatching > 0) return;
    k.sniffers.erase(std::remove_if(k.sniffers.begin(), k.sniffers.end(),
                                    [](const std::unique_ptr<Sniffer>& s) { return s->dead; }),
                     k.sniffers.end());
}

// Calls the sniffers of one side; false when one of them took the key.
bool RunSniffers(bool before, char character, XPLMKeyFlags flags, char virtualKey) {
    std::vector<Sniffer*> order;
    for (auto& sniffer : keyboard().sniffers) {
        if (sniffer->before == before) order.push_back(sniffer.get());
    }
    for (Sniffer* sniffer : order) {
        if (sniffer->dead || !PluginMayBeCalled(sniffer->plugin)) continue;
        int passOn;
        {
            PluginContext context(sniffer->plugin);
            passOn = sniffer->callback(character, flags, virtualKey, sniffer->refcon);
        }
        if (passOn == 0) return false;
    }
    return true;
}

bool HotKeyMatches(const HotKeyRecord& hotKey, XPLMKeyFlags flags, int virtualKey) {
    if ((static_cast<unsigned char>(hotKey.virtualKey)) != virtualKey) return false;
    if ((hotKey.flags & kModifierFlags) != (flags & kModifierFlags)) return false;
    const bool onRelease = (hotKey.flags & xplm_UpFlag) != 0;
    return onRelease ? (flags & xplm_UpFlag) != 0 : (flags & xplm_DownFlag) != 0;
}

// Fires every hot key on this key; false when there is none.
bool RunHotKeys(XPLMKeyFlags flags, int virtualKey) {
    const std::vector<HotKeyRecord*> order = keyboard().liveHotKeys;
    bool matched = false;
    for (HotKeyRecord* hotKey : order) {
        if (hotKey->dead || !HotKeyMatches(*hotKey, flags, virtualKey)) continue;
        matched = true;
        if (!PluginMayBeCalled(hotKey->owner)) continue;
        PluginContext context(hotKey->owner);
        hotKey->callback(hotKey->refcon);
    }
    return matched;
}

std::string FlagsText(XPLMKeyFlags flags) {
    std::string text;
    if (flags & xplm_ShiftFlag) text += "shift+";
    if (flags & xplm_OptionAltFlag) text += "alt+";
    if (flags & xplm_ControlFlag) text += "ctrl+";
    if (flags & xplm_DownFlag) text += "down+";
    if (flags & xplm_UpFlag) text += "up+";
    if (text.empty()) return "no flags";
    text.pop_back();
    return text;
}

}  // namespace

// ------------------------------------------------------------------ control interface

void PressKey(const KeyStroke& key) {
    const int modifiers = key.modifiers & kModifierFlags;
    SendKey(key.character, modifiers | xplm_DownFlag, key.virtualKey);
    SendKey(key.character, modifiers | xplm_UpFlag, key.virtualKey);
}

void SendKey(char character, XPLMKeyFlags flags, int virtualKey) {
    Keyboard& k = keyboard();
    const char vkey = static_cast<char>(virtualKey);
    const int code = virtualKey & 0xFF;
    k.dispatching++;
    const bool reachesSim = RunSniffers(true, character, flags, vkey) &&
                            !KeyToFocusedWindow(character, flags, vkey) &&
                            RunSniffers(false, character, flags, vkey) && !RunHotKeys(flags, code);
    k.dispatching--;
    SweepSniffers();
    if (reachesSim) SimHandlesKey(character, flags, code);
}

bool ParseKey(const std::string& text, KeyStroke& key, std::string& error) {
    int modifiers = 0;
    std::string rest = text;
    for (size_t plus = rest.find('+'); plus != std::string::npos && plus > 0 && plus + 1 < rest.size();
         plus = rest.find('+')) {
        const std::string word = rest.substr(0, plus);
        if (word == "shift") modifiers |= xplm_ShiftFlag;
        else if (word == "ctrl") modifiers |= xplm_ControlFlag;
        else if (word == "alt") modifiers |= xplm_OptionAltFlag;
        else {
            error = "unknown modifier '" + word + "' (shift, ctrl, alt)";
            return false;
        }
        rest = rest.substr(plus + 1);
    }
    if (rest.size() == 1) {
        key = KeyForCharacter(static_cast<unsigned char>(rest[0]), modifiers);
        return true;
    }
    const int code = VirtualKeyCode(rest);
    if (code < 0) {
        error = "unknown key '" + rest + "' (a character or an XPLM_VK_ name)";
        return false;
    }
    key = KeyForVirtualKey(code, modifiers);
    return true;
}

KeyStroke KeyForCharacter(unsigned char c, int modifiers) {
    KeyStroke key;
    key.character = static_cast<char>(c);
    key.modifiers = modifiers & kModifierFlags;
    const bool shift = (key.modifiers & xplm_ShiftFlag) != 0;
    if (c >= 'a' && c <= 'z') {
        key.virtualKey = XPLM_VK_A + (c - 'a');
        if (shift) key.character = static_cast<char>(c - 'a' + 'A');
    } else if (c >= 'A' && c <= 'Z') {
        key.virtualKey = XPLM_VK_A + (c - 'A');
        key.modifiers |= xplm_ShiftFlag;
    } else if (c >= '0' && c <= '9') {
        key.virtualKey = XPLM_VK_0 + (c - '0');
        if (shift) key.character = kShiftedDigits[c - '0'];
    } else if (const char* digit = c ? std::strchr(kShiftedDigits, c) : nullptr) {
        key.virtualKey = XPLM_VK_0 + int(digit - kShiftedDigits);
        key.modifiers |= xplm_ShiftFlag;
    } else {
        for (const auto& p : kPunctuation) {
            if (c == static_cast<unsigned char>(p.plain)) {
                key.virtualKey = p.virtualKey;
                if (shift) key.character = p.shifted;
                return key;
            }
            if (c == static_cast<unsigned char>(p.shifted)) {
                key.virtualKey = p.virtualKey;
                key.modifiers |= xplm_ShiftFlag;
                return key;
            }
        }
        for (const auto& f : kFixedCharacters) {
            if (c == static_cast<unsigned char>(f.character)) {
                key.virtualKey = f.virtualKey;
                return key;
            }
        }
    }
    return key;
}

KeyStroke KeyForVirtualKey(int virtualKey, int modifiers) {
    KeyStroke key;
    key.virtualKey = virtualKey;
    key.modifiers = modifiers & kModifierFlags;
    const bool shift = (key.modifiers & xplm_ShiftFlag) != 0;
    if (virtualKey >= XPLM_VK_A && virtualKey <= XPLM_VK_Z) {
        key.character = static_cast<char>((shift ? 'A' : 'a') + (virtualKey - XPLM_VK_A));
    } else if (virtualKey >= XPLM_VK_0 && virtualKey <= XPLM_VK_9) {
        key.character = shift ? kShiftedDigits[virtualKey - XPLM_VK_0] : static_cast<char>(virtualKey);
    } else if (virtualKey >= XPLM_VK_NUMPAD0 && virtualKey <= XPLM_VK_NUMPAD9) {
        key.character = static_cast<char>('0' + (virtualKey - XPLM_VK_NUMPAD0));
    } else {
        for (const auto& p : kPunctuation) {
            if (p.virtualKey == virtualKey) key.character = shift ? p.shifted : p.plain;
        }
        for (const auto& f : kFixedCharacters) {
            if (f.virtualKey == virtualKey) key.character = f.character;
        }
    }
    return key;
}

int VirtualKeyCode(const std::string& name) {
    for (const auto& key : kVirtualKeys) {
        if (name == key.name) return key.code;
    }
    return -1;
}

const char* VirtualKeyName(int virtualKey) {
    for (const auto& key : kVirtualKeys) {
        if (key.code == virtualKey) return key.name;
    }
    return nullptr;
}

std::string DescribeKey(char character, XPLMKeyFlags flags, int virtualKey) {
    const unsigned char c = static_cast<unsigned char>(character);
    std::string text;
    if (c >= 32 && c < 127)
        text = std::string("'") + character + "' ";
    else if (c != 0)
        text = "char " + std::to_string(c) + " ";
    const char* name = VirtualKeyName(virtualKey & 0xFF);
    text += "(" + std::string(name ? name : "no virtual key") + ", " + FlagsText(flags) + ")";
    return text;
}

// ------------------------------------------------------------------ key sniffers

int RegisterKeySniffer(XPLMKeySniffer_f callback, int beforeWindows, void* refcon) {
    if (callback == nullptr) {
        ReportMisuse("XPLMRegisterKeySniffer", "no callback");
        return 0;
    }
    auto sniffer = std::make_unique<Sniffer>();
    sniffer->plugin = CurrentPlugin();
    sniffer->callback = callback;
    sniffer->before = beforeWindows != 0;
    sniffer->refcon = refcon;
    keyboard().sniffers.push_back(std::move(sniffer));
    return 1;
}

int UnregisterKeySniffer(XPLMKeySniffer_f callback, int beforeWindows, void* refcon) {
    for (auto& sniffer : keyboard().sniffers) {
        if (!sniffer->dead && sniffer->callback == callback && sniffer->before == (beforeWindows != 0) &&
            sniffer->refcon == refcon) {
            sniffer->dead = true;
            SweepSniffers();
            return 1;
        }
    }
    ReportMisuse("XPLMUnregisterKeySniffer", "no key sniffer with this callback, side and refcon");
    return 0;
}

int ForgetKeySniffersOf(int plugin) {
    int count = 0;
    for (auto& sniffer : keyboard().sniffers) {
        if (!sniffer->dead && sniffer->plugin == plugin) {
            sniffer->dead = true;
            ++count;
        }
    }
    SweepSniffers();
    return count;
}

// ------------------------------------------------------------------ hot keys

HotKeyRecord* RegisterHotKey(char virtualKey, XPLMKeyFlags flags, const char* description,
                             XPLMHotKey_f callback, void* refcon) {
    if (callback == nullptr) {
        ReportMisuse("XPLMRegisterHotKey", "no callback");
        return nullptr;
    }
    Keyboard& k = keyboard();
    auto hotKey = std::make_unique<HotKeyRecord>();
    hotKey->owner = CurrentPlugin();
    hotKey->virtualKey = virtualKey;
    hotKey->flags = flags;
    hotKey->description = description ? description : "";
    hotKey->callback = callback;
    hotKey->refcon = refcon;
    HotKeyRecord* raw = hotKey.get();
    k.hotKeys.push_back(std::move(hotKey));
    k.hotKeyHandles.insert(raw);
    k.liveHotKeys.push_back(raw);
    return raw;
}

HotKeyRecord* HotKeyFromHandle(const void* handle, std::string& what) {
    if (handle == nullptr || keyboard().hotKeyHandles.count(handle) == 0) {
        char text[64];
        std::snprintf(text, sizeof text, "%p is not a hot key", handle);
        what = text;
        return nullptr;
    }
    auto* hotKey = static_cast<HotKeyRecord*>(const_cast<void*>(handle));
    if (hotKey->dead) {
        what = "the hot key '" + hotKey->description + "' was unregistered";
        return nullptr;
    }
    return hotKey;
}

void UnregisterHotKey(HotKeyRecord& hotKey) {
    auto& live = keyboard().liveHotKeys;
    hotKey.dead = true;
    live.erase(std::remove(live.begin(), live.end(), &hotKey), live.end());
}

int HotKeyCount() { return int(keyboard().liveHotKeys.size()); }

HotKeyRecord* NthHotKey(int index) {
    const auto& live = keyboard().liveHotKeys;
    if (index < 0 || size_t(index) >= live.size()) return nullptr;
    return live[size_t(index)];
}

int ForgetHotKeysOf(int plugin) {
    const std::vector<HotKeyRecord*> live = keyboard().liveHotKeys;
    int count = 0;
    for (HotKeyRecord* hotKey : live) {
        if (hotKey->owner != plugin) continue;
        UnregisterHotKey(*hotKey);
        ++count;
    }
    return count;
}

// ------------------------------------------------------------------ the simulator's keys

void SimHandlesKey(char character, XPLMKeyFlags flags, int virtualKey) {
    if (!(flags & xplm_DownFlag)) return;
    const std::string text = "the sim gets key " + DescribeKey(character, flags, virtualKey);
    if (virtualKey == XPLM_VK_P && (flags & kModifierFlags) == 0) {
        Note(text + ": sim/operation/pause_toggle");
        std::string error;
        RunCommandByName("sim/operation/pause_toggle", CommandRun::Once, error);
        return;
    }
    Note(text);
}

const char* VirtualKeyDescription(int virtualKey) {
    const char* name = VirtualKeyName(virtualKey);
    return name ? name + kPrefixLength : "unknown";
}

void ResetKeys() { keyboard() = Keyboard(); }

}  // namespace xpsim
