// Plugin windows: their z-order and drawing, the mouse (clicks, drags, the wheel and the cursor) and
// keyboard focus.
//
// A window handle (XPLMWindowID) is the address of its record. Records live until ResetWorld, so a
// destroyed window's handle is never given to another window and is reported as stale, not mistaken
// for a live one. Windows are stacked in creation order, the newest in front; visible windows are
// drawn back to front in the simulator's own drawing of xplm_Phase_Window.
//
// Mouse input goes to the topmost visible window that contains the point, edges included. A window
// whose click callback answers 0 (or that has none) lets the click through to the windows below it;
// the window that takes a mouse down gets the drags and the up that follow, wherever they are. The
// wheel goes down the same stack until a window's wheel callback answers 1. Clicks change neither
// the z-order nor the keyboard focus: a plugin calls XPLMBringWindowToFront and XPLMTakeKeyboardFocus
// itself, as the SDK asks.
#pragma once

#include <string>

#include "XPLMDisplay.h"
#include "world/Export.h"

namespace xpsim {

struct WindowRecord {
    int number = 0;  // 1, 2, ... in creation order, for the log
    int owner = 0;
    int left = 0, top = 0, right = 0, bottom = 0;
    bool visible = false;
    bool modern = false;  // created with XPLMCreateWindowEx: has cursor and wheel callbacks
    bool dead = false;
    XPLMDrawWindow_f draw = nullptr;
    XPLMHandleKey_f key = nullptr;
    XPLMHandleMouseClick_f click = nullptr;
    XPLMHandleCursor_f cursor = nullptr;
    XPLMHandleMouseWheel_f wheel = nullptr;
    void* refcon = nullptr;
    // Windows xpsim opens for itself (a root widget's window) answer whether they took a key; a key
    // they leave travels on as if no window had keyboard focus. Plugin windows take every key.
    bool (*takesKey)(WindowRecord& window, char key, XPLMKeyFlags flags, char virtualKey) = nullptr;
};

// ------------------------------------------------------------------ control interface

// The mouse as the user works it, at screen points (origin bottom left). Each moves the mouse there.
XPSIM_API void MouseDown(int x, int y);
XPSIM_API void MouseDrag(int x, int y);
XPSIM_API void MouseUp(int x, int y);
// Down and up at one point.
XPSIM_API void Click(int x, int y);
// Down at the first point, one drag message at the second, up at the second.
XPSIM_API void Drag(int x1, int y1, int x2, int y2);
// Turns a wheel (axis 0 vertical, 1 horizontal) by `clicks` over a point.
XPSIM_API void Wheel(int x, int y, int clicks, int axis);
// Moves the mouse without a click: no window or widget is told, but the mouse location and the
// cursor (asked once a frame) follow it.
XPSIM_API void MoveMouse(int x, int y);
// Where the mouse is; it starts in the middle of the screen (world/Screen.h).
XPSIM_API void MouseLocation(int& x, int& y);
// Puts the mouse in the middle of the screen.
void CentreMouse();
// The cursor status the window under the mouse last asked for (xplm_CursorDefault when none did).
XPSIM_API XPLMCursorStatus CursorStatus();
// Live windows, and the window with keyboard focus (null: the simulator has it).
XPSIM_API int WindowCount();
XPSIM_API XPLMWindowID KeyboardFocus();

// ------------------------------------------------------------------ inside the library

// The record of a handle, or null for anything that is not a live window; a destroyed window's
// handle is told apart in `what`.
WindowRecord* WindowFromHandle(const void* handle, std::string& what);
WindowRecord* CreateWindow(const WindowRecord& params);
void DestroyWindow(WindowRecord& window);
void SetWindowVisible(WindowRecord& window, bool visible);
void BringToFront(WindowRecord& window);
bool IsInFront(const WindowRecord& window);
// Gives keyboard focus to a window, or back to the simulator (null). The window losing it is told
// through its key callback.
void TakeKeyboardFocus(WindowRecord* window);
// Delivers a key to the window with keyboard focus; false when no window takes it.
bool KeyToFocusedWindow(char key, XPLMKeyFlags flags, char virtualKey);

// Draws the visible windows, back to front; called in the simulator's drawing of xplm_Phase_Window.
void DrawWindows();
// Asks the window under the mouse for the cursor; once a frame, after drawing.
void UpdateCursor();

int ForgetWindowsOf(int plugin);
void ResetWindows();

}  // namespace xpsim
