// Widgets: the widget trees, their messages, keyboard focus and the mouse.
//
// A widget handle (XPWidgetID) is the address of its record. Records live until ResetWorld, so a
// destroyed widget's handle is never given to another widget and is reported as stale. Geometry is
// in global screen coordinates, like windows'; moving a widget does not move its children (the
// standard windows keep theirs in place with XPUFixedLayout).
//
// Each root widget lives in a window of the window system, opened with it and kept at its geometry
// and visibility; the window is the root's owner's, so it stacks, draws and takes the mouse like any
// plugin window. Drawing the window paints the tree: xpMsg_Paint to each visible widget, parents
// before children, and when a widget does not handle the paint, xpMsg_Draw to it and then the paint
// of its children, back to front. A mouse down goes to the deepest visible widget under the point
// and up its parents until one takes it (handles the message); the taker gets the drags and the up.
// When no widget takes a down, the window lets it through to the windows below. The wheel
// (xpMsg_MouseWheel) and the cursor (xpMsg_CursorAdjust) go up the chain from the widget under the
// point. Keys go to the widget with keyboard focus and up its chain (xpMsg_KeyPress); a key no widget
// takes travels on as if no window had focus.
//
// Every message runs in the context of the widget's owner (the plugin that created it), whoever
// sends it. A widget's callbacks get a message newest first.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "XPWidgetDefs.h"
#include "world/Export.h"

namespace xpsim {

struct WindowRecord;

// The class of widgets made with XPCreateCustomWidget.
constexpr XPWidgetClass kCustomClass = -1;

struct WidgetRecord {
    int number = 0;  // 1, 2, ... in creation order, for the log
    int owner = 0;
    int left = 0, top = 0, right = 0, bottom = 0;
    bool visible = false;
    bool root = false;
    bool destroying = false;  // its xpMsg_Destroy is under way
    bool dead = false;
    XPWidgetClass widgetClass = kCustomClass;
    std::string descriptor;
    WidgetRecord* parent = nullptr;
    std::vector<WidgetRecord*> children;  // back to front
    std::map<XPWidgetPropertyID, intptr_t> properties;
    std::vector<XPWidgetFunc_t> callbacks;  // oldest first
    WindowRecord* window = nullptr;          // a root's window
    // The part of a standard widget the mouse pressed (0: none), and where the press was.
    int pressedPart = 0;
    int pressX = 0, pressY = 0;
};

// ------------------------------------------------------------------ control interface

// Live widgets.
XPSIM_API int WidgetCount();
// The window a live root widget lives in; null for any other handle.
XPSIM_API void* WidgetWindow(const void* widget);

// ------------------------------------------------------------------ inside the library

// The record of a handle, or null for anything that is not a live widget, with the reason in `what`.
WidgetRecord* WidgetFromHandle(const void* handle, std::string& what);
std::string DescribeWidget(const WidgetRecord& widget);

// Makes a widget with one callback and sends it xpMsg_Create; a root gets its window. The container
// (null: none) is not checked here.
WidgetRecord* CreateWidget(int left, int top, int right, int bottom, bool visible, const char* descriptor,
                           bool root, WidgetRecord* container, XPWidgetClass widgetClass, XPWidgetFunc_t callback);
void DestroyWidget(WidgetRecord& widget, bool destroyChildren);
// Sends a message in a dispatch mode; 1 when it was handled. `function` names the SDK function on
// whose behalf it is sent, for reports.
int SendMessage(WidgetRecord& widget, XPWidgetMessage message, XPDispatchMode mode, intptr_t param1,
                intptr_t param2, const char* function);
// False with the reason when the container is the widget or inside it.
bool PlaceWithin(WidgetRecord& widget, WidgetRecord* container, std::string& problem);
void SetWidgetVisible(WidgetRecord& widget, bool visible);
// Visible itself, its parents visible, and in a rooted tree.
bool WidgetIsVisible(const WidgetRecord& widget);
WidgetRecord* FindRoot(WidgetRecord& widget);
void BringRootToFront(WidgetRecord& widget);
bool RootIsInFront(WidgetRecord& widget);
void SetWidgetGeometry(WidgetRecord& widget, int left, int top, int right, int bottom, const char* function);
void ExposedGeometry(const WidgetRecord& widget, int& left, int& top, int& right, int& bottom);
bool WidgetContains(const WidgetRecord& widget, int x, int y);
WidgetRecord* WidgetAt(WidgetRecord& container, int x, int y, bool recursive, bool visibleOnly);
void SetDescriptor(WidgetRecord& widget, const std::string& text, const char* function);
void SetProperty(WidgetRecord& widget, XPWidgetPropertyID property, intptr_t value, const char* function);
bool GetProperty(const WidgetRecord& widget, XPWidgetPropertyID property, intptr_t& value);
// Offers keyboard focus to a widget (null: the simulator); returns the widget that has focus after.
WidgetRecord* SetKeyboardFocus(WidgetRecord* widget);
void LoseKeyboardFocus(WidgetRecord& widget);
WidgetRecord* FocusedWidget();
// Adds a callback that gets messages before the others, and sends it xpMsg_Create with 1.
void AddCallback(WidgetRecord& widget, XPWidgetFunc_t callback);

// The standard classes' widget functions (XPStandardWidgets.cpp); null for other classes.
XPWidgetFunc_t StandardClassFunction(XPWidgetClass widgetClass);

// Removes a plugin's widgets without calling it; returns how many there were.
int ForgetWidgetsOf(int plugin);
void ResetWidgets();

}  // namespace xpsim
