// Windows, the mouse and keyboard focus.
#include "world/Windows.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <unordered_set>
#include <vector>

#include "world/Drawing.h"
#include "world/Plugins.h"
#include "world/Screen.h"
#include "world/World.h"

namespace xpsim {
namespace {

struct WindowSystem {
    std::vector<std::unique_ptr<WindowRecord>> records;  // every window since the last reset
    std::unordered_set<const void*> handles;             // the records above, live or destroyed
    std::vector<WindowRecord*> stack;                    // live windows, back to front
    WindowRecord* focus = nullptr;
    WindowRecord* mouseTaker = nullptr;  // took the current mouse down
    int mouseX = ScreenWidth() / 2;
    int mouseY = ScreenHeight() / 2;
    XPLMCursorStatus cursor = xplm_CursorDefault;
    int nextNumber = 1;
    int focusDepth = 0;  // focus changes made from losing-focus callbacks, nested
};

// Windows that take focus back whenever they lose it would pass it to and fro for ever.
constexpr int kMaxFocusDepth = 16;

WindowSystem& windows() {
    static WindowSystem w;
    return w;
}

std::string Describe(const WindowRecord& window) {
    return "window " + std::to_string(window.number) + " (plugin " + std::to_string(window.owner) + ")";
}

// May the window be drawn or given input? A disabled plugin's windows are left alone.
bool Active(const WindowRecord* window) {
    return window != nullptr && !window->dead && PluginMayBeCalled(window->owner);
}

bool Contains(const WindowRecord& window, int x, int y) {
    return x >= window.left && x <= window.right && y >= window.bottom && y <= window.top;
}

// The visible windows of enabled plugins under a point, front to back.
std::vector<WindowRecord*> WindowsAt(int x, int y) {
    std::vector<WindowRecord*> found;
    const auto& stack = windows().stack;
    for (auto it = stack.rbegin(); it != stack.rend(); ++it) {
        if ((*it)->visible && Active(*it) && Contains(**it, x, y)) found.push_back(*it);
    }
    return found;
}

std::string Point(int x, int y) { return "(" + std::to_string(x) + ", " + std::to_string(y) + ")"; }

const char* CursorName(XPLMCursorStatus status) {
    switch (status) {
        case xplm_CursorHidden: return "xplm_CursorHidden";
        case xplm_CursorArrow: return "xplm_CursorArrow";
        case xplm_CursorCustom: return "xplm_CursorCustom";
        default: return "xplm_CursorDefault";
    }
}

}  // namespace

// ------------------------------------------------------------------ control interface

void MouseDown(int x, int y) {
    WindowSystem& w = windows();
    if (w.mouseTaker != nullptr) MouseUp(x, y);  // a gesture left open ends where the new one starts
    MoveMouse(x, y);
    for (WindowRecord* window : WindowsAt(x, y)) {
        // An earlier callback may have destroyed or hidden this one.
        if (!Active(window) || !window->visible || window->click == nullptr) continue;
        int taken;
        {
            PluginContext context(window->owner);
            taken = window->click(window, x, y, xplm_MouseDown, window->refcon);
        }
        if (taken != 0) {
            if (!window->dead) w.mouseTaker = window;
            return;
        }
    }
    Note("mouse down at " + Point(x, y) + " reaches the sim");
}

void MouseDrag(int x, int y) {
    MoveMouse(x, y);
    WindowRecord* taker = windows().mouseTaker;
    if (!Active(taker) || taker->click == nullptr) return;
    PluginContext context(taker->owner);
    taker->click(taker, x, y, xplm_MouseDrag, taker->refcon);
}

void MouseUp(int x, int y) {
    MoveMouse(x, y);
    WindowRecord* taker = windows().mouseTaker;
    windows().mouseTaker = nullptr;
    if (!Active(taker) || taker->click == nullptr) return;
    PluginContext context(taker->owner);
    taker->click(taker, x, y, xplm_MouseUp, taker->refcon);
}

void Click(int x, int y) {
    MouseDown(x, y);
    MouseUp(x, y);
}

void Drag(int x1, int y1, int x2, int y2) {
    MouseDown(x1, y1);
    MouseDrag(x2, y2);
    MouseUp(x2, y2);
}

void Wheel(int x, int y, int clicks, int axis) {
    MoveMouse(x, y);
    for (WindowRecord* window : WindowsAt(x, y)) {
        if (!Active(window) || !window->visible || window->wheel == nullptr) continue;
        int taken;
        {
            PluginContext context(window->owner);
            taken = window->wheel(window, x, y, axis, clicks, window->refcon);
        }
        if (taken != 0) return;
    }
    Note("mouse wheel at " + Point(x, y) + " reaches the sim");
}

void MoveMouse(int x, int y) {
    windows().mouseX = x;
    windows().mouseY = y;
}

void CentreMouse() { MoveMouse(ScreenWidth() / 2, ScreenHeight() / 2); }

void MouseLocation(int& x, int& y) {
    x = windows().mouseX;
    y = windows().mouseY;
}

XPLMCursorStatus CursorStatus() { return windows().cursor; }

int WindowCount() { return int(windows().stack.size()); }

XPLMWindowID KeyboardFocus() { return windows().focus; }

// ------------------------------------------------------------------ windows

WindowRecord* WindowFromHandle(const void* handle, std::string& what) {
    WindowSystem& w = windows();
    if (handle == nullptr || w.handles.count(handle) == 0) {
        char text[64];
        std::snprintf(text, sizeof text, "%p is not a window", handle);
        what = text;
        return nullptr;
    }
    auto* window = static_cast<WindowRecord*>(const_cast<void*>(handle));
    if (window->dead) {
        what = Describe(*window) + " was destroyed";
        return nullptr;
    }
    return window;
}

WindowRecord* CreateWindow(const WindowRecord& params) {
    WindowSystem& w = windows();
    auto window = std::make_unique<WindowRecord>(params);
    window->number = w.nextNumber++;
    window->owner = CurrentPlugin();
    window->dead = false;
    WindowRecord* raw = window.get();
    w.records.push_back(std::move(window));
    w.handles.insert(raw);
    w.stack.push_back(raw);  // a new window opens in front
    return raw;
}

void DestroyWindow(WindowRecord& window) {
    WindowSystem& w = windows();
    window.dead = true;
    w.stack.erase(std::remove(w.stack.begin(), w.stack.end(), &window), w.stack.end());
    // A destroyed window is not told that it loses focus or the mouse.
    if (w.focus == &window) w.focus = nullptr;
    if (w.mouseTaker == &window) w.mouseTaker = nullptr;
}

void SetWindowVisible(WindowRecord& window, bool visible) { window.visible = visible; }

void BringToFront(WindowRecord& window) {
    auto& stack = windows().stack;
    stack.erase(std::remove(stack.begin(), stack.end(), &window), stack.end());
    stack.push_back(&window);
}

bool IsInFront(const WindowRecord& window) {
    const auto& stack = windows().stack;
    for (auto it = stack.rbegin(); it != stack.rend(); ++it) {
        if ((*it)->visible) return *it == &window;
    }
    return false;
}

void TakeKeyboardFocus(WindowRecord* window) {
    WindowSystem& w = windows();
    WindowRecord* losing = w.focus;
    if (losing == window) return;
    if (w.focusDepth >= kMaxFocusDepth) {
        ReportMisuse("XPLMTakeKeyboardFocus", "focus changes nested " + std::to_string(kMaxFocusDepth) +
                                                  " deep in losing-focus callbacks; this one is ignored");
        return;
    }
    w.focus = window;
    // The window losing focus is told which window takes it (null: the simulator).
    if (!Active(losing) || losing->key == nullptr) return;
    w.focusDepth++;
    {
        PluginContext context(losing->owner);
        losing->key(window, 0, 0, 0, losing->refcon, 1);
    }
    w.focusDepth--;
}

bool KeyToFocusedWindow(char key, XPLMKeyFlags flags, char virtualKey) {
    WindowRecord* window = windows().focus;
    if (!Active(window)) return false;
    if (window->takesKey != nullptr) {
        PluginContext context(window->owner);
        return window->takesKey(*window, key, flags, virtualKey);
    }
    if (window->key == nullptr) return false;
    PluginContext context(window->owner);
    window->key(window, key, flags, virtualKey, window->refcon, 0);
    return true;
}

// ------------------------------------------------------------------ each frame

void DrawWindows() {
    // Windows opened while drawing are drawn from the next frame on.
    const std::vector<WindowRecord*> order = windows().stack;
    for (WindowRecord* window : order) {
        if (!Active(window) || !window->visible) continue;
        // SDK 2.10 windows have no frame of the simulator's: the record names the window, and what the
        // screen shows of it is what its draw callback draws.
        RecordDrawing("window number=" + std::to_string(window->number) + " plugin=" + std::to_string(window->owner) +
                      " left=" + std::to_string(window->left) + " top=" + std::to_string(window->top) +
                      " right=" + std::to_string(window->right) + " bottom=" + std::to_string(window->bottom));
        PluginContext context(window->owner);
        window->draw(window, window->refcon);
    }
}

void UpdateCursor() {
    WindowSystem& w = windows();
    const std::vector<WindowRecord*> under = WindowsAt(w.mouseX, w.mouseY);
    WindowRecord* window = under.empty() ? nullptr : under.front();
    XPLMCursorStatus status = xplm_CursorDefault;
    if (window != nullptr && window->cursor != nullptr) {
        {
            PluginContext context(window->owner);
            status = window->cursor(window, w.mouseX, w.mouseY, window->refcon);
            if (status < xplm_CursorDefault || status > xplm_CursorCustom) {
                ReportMisuse("cursor callback result", Describe(*window) + " answered " +
                                                           std::to_string(status) +
                                                           ", not an XPLMCursorStatus");
                status = xplm_CursorDefault;
            }
        }
    }
    if (status == w.cursor) return;
    w.cursor = status;
    if (status == xplm_CursorDefault)
        Note("the cursor is the sim's own again");
    else
        Note(std::string("the cursor over ") + Describe(*window) + " is " + CursorName(status));
}

// ------------------------------------------------------------------ whole world

int ForgetWindowsOf(int plugin) {
    const std::vector<WindowRecord*> live = windows().stack;
    int count = 0;
    for (WindowRecord* window : live) {
        if (window->owner != plugin) continue;
        DestroyWindow(*window);
        ++count;
    }
    return count;
}

void ResetWindows() { windows() = WindowSystem(); }

}  // namespace xpsim
