// Widget trees, messages, keyboard focus and the mouse.
#include "world/Widgets.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <memory>
#include <unordered_set>

#include "XPLMDisplay.h"
#include "world/Windows.h"
#include "world/World.h"

namespace xpsim {
namespace {

struct WidgetSystem {
    std::vector<std::unique_ptr<WidgetRecord>> records;  // every widget since the last reset
    std::unordered_set<const void*> handles;             // the records above, live or destroyed
    int live = 0;
    int nextNumber = 1;
    WidgetRecord* focus = nullptr;
    WidgetRecord* mouseTaker = nullptr;  // took the current mouse down
    int messageDepth = 0;                // messages being delivered, nested
    bool movingWindowFocus = false;      // the widget system itself moves the windows' keyboard focus
};

// Callbacks that answer a message by sending another, for ever, would exhaust the stack.
constexpr int kMaxMessageDepth = 64;

WidgetSystem& widgets() {
    static WidgetSystem w;
    return w;
}

bool Alive(const WidgetRecord* widget) { return widget != nullptr && !widget->dead; }

WindowRecord* LiveWindow(const WidgetRecord& widget) {
    return widget.window != nullptr && !widget.window->dead ? widget.window : nullptr;
}

// Sends a message to one widget's callbacks, newest first, until one handles it (all of them when
// `all`; only the newest when `once`).
int Deliver(WidgetRecord& widget, XPWidgetMessage message, intptr_t param1, intptr_t param2, bool all, bool once,
            const char* function) {
    WidgetSystem& w = widgets();
    if (w.messageDepth >= kMaxMessageDepth) {
        ReportMisuse(function, "messages nested " + std::to_string(kMaxMessageDepth) + " deep; message " +
                                   std::to_string(message) + " to " + DescribeWidget(widget) + " is not sent");
        return 0;
    }
    // Callbacks added meanwhile get the next message.
    const std::vector<XPWidgetFunc_t> callbacks(widget.callbacks.rbegin(), widget.callbacks.rend());
    int handled = 0;
    for (XPWidgetFunc_t callback : callbacks) {
        if (widget.dead) break;
        int result;
        w.messageDepth++;
        {
            PluginContext context(widget.owner);
            result = callback(message, &widget, param1, param2);
        }
        w.messageDepth--;
        if (once) return result != 0 ? 1 : 0;
        if (result != 0) {
            handled = 1;
            if (!all) break;
        }
    }
    return handled;
}

int SendRecursive(WidgetRecord& widget, XPWidgetMessage message, intptr_t param1, intptr_t param2,
                  const char* function) {
    int handled = Deliver(widget, message, param1, param2, false, false, function);
    const std::vector<WidgetRecord*> children = widget.children;
    for (WidgetRecord* child : children) {
        if (Alive(child) && child->parent == &widget)
            handled |= SendRecursive(*child, message, param1, param2, function);
    }
    return handled;
}

void Detach(WidgetRecord& widget) {
    WidgetRecord* parent = widget.parent;
    if (parent == nullptr) return;
    auto& siblings = parent->children;
    siblings.erase(std::remove(siblings.begin(), siblings.end(), &widget), siblings.end());
    widget.parent = nullptr;
}

// Gives the windows' keyboard focus to a widget window, or to the sim, without the window that loses
// it telling its widgets.
void MoveWindowFocus(WindowRecord* window) {
    WidgetSystem& w = widgets();
    const bool saved = w.movingWindowFocus;
    w.movingWindowFocus = true;
    TakeKeyboardFocus(window);
    w.movingWindowFocus = saved;
}

// A widget window has the windows' keyboard focus.
bool WidgetWindowHasFocus() {
    WindowRecord* window = static_cast<WindowRecord*>(KeyboardFocus());
    return window != nullptr && window->takesKey != nullptr;
}

void Paint(WidgetRecord& widget) {
    if (!widget.visible || widget.dead) return;
    if (Deliver(widget, xpMsg_Paint, 0, 0, false, false, "widget drawing") != 0 || widget.dead) return;
    Deliver(widget, xpMsg_Draw, 0, 0, false, false, "widget drawing");
    const std::vector<WidgetRecord*> children = widget.children;
    for (WidgetRecord* child : children) {
        if (Alive(child) && child->parent == &widget) Paint(*child);
    }
}

// ------------------------------------------------------------------ a root's window

WidgetRecord* RootOf(void* refcon) {
    auto* root = static_cast<WidgetRecord*>(refcon);
    return Alive(root) ? root : nullptr;
}

void WindowDraw(XPLMWindowID, void* refcon) {
    if (WidgetRecord* root = RootOf(refcon)) Paint(*root);
}

int WindowClick(XPLMWindowID, int x, int y, XPLMMouseStatus status, void* refcon) {
    WidgetSystem& w = widgets();
    XPMouseState_t state = {x, y, 0, 0};
    const intptr_t param = reinterpret_cast<intptr_t>(&state);
    if (status == xplm_MouseDown) {
        w.mouseTaker = nullptr;
        WidgetRecord* root = RootOf(refcon);
        WidgetRecord* target = root ? WidgetAt(*root, x, y, true, true) : nullptr;
        for (WidgetRecord* widget = target; Alive(widget); widget = widget->parent) {
            if (Deliver(*widget, xpMsg_MouseDown, param, 0, false, false, "the mouse") != 0) {
                if (Alive(widget)) w.mouseTaker = widget;
                return 1;
            }
        }
        return 0;
    }
    WidgetRecord* taker = w.mouseTaker;
    if (status == xplm_MouseUp) w.mouseTaker = nullptr;
    if (Alive(taker))
        Deliver(*taker, status == xplm_MouseUp ? xpMsg_MouseUp : xpMsg_MouseDrag, param, 0, false, false,
                "the mouse");
    return 1;
}

int WindowWheel(XPLMWindowID, int x, int y, int wheel, int clicks, void* refcon) {
    WidgetRecord* root = RootOf(refcon);
    WidgetRecord* target = root ? WidgetAt(*root, x, y, true, true) : nullptr;
    if (target == nullptr) return 0;
    XPMouseState_t state = {x, y, wheel, clicks};
    return SendMessage(*target, xpMsg_MouseWheel, xpMode_UpChain, reinterpret_cast<intptr_t>(&state), 0,
                       "the mouse wheel");
}

XPLMCursorStatus WindowCursor(XPLMWindowID, int x, int y, void* refcon) {
    WidgetRecord* root = RootOf(refcon);
    WidgetRecord* target = root ? WidgetAt(*root, x, y, true, true) : nullptr;
    if (target == nullptr) return xplm_CursorDefault;
    XPMouseState_t state = {x, y, 0, 0};
    XPLMCursorStatus status = xplm_CursorDefault;
    if (SendMessage(*target, xpMsg_CursorAdjust, xpMode_UpChain, reinterpret_cast<intptr_t>(&state),
                    reinterpret_cast<intptr_t>(&status), "the cursor") == 0)
        return xplm_CursorDefault;
    return status;
}

void WindowKey(XPLMWindowID, char, XPLMKeyFlags, char, void* refcon, int losingFocus) {
    // Only the loss of focus arrives here; keys arrive through WindowTakesKey.
    WidgetSystem& w = widgets();
    if (!losingFocus || w.movingWindowFocus) return;
    // A plugin gave the keyboard to another window or to the sim: the focused widget of this tree
    // loses focus.
    WidgetRecord* focus = w.focus;
    auto* root = static_cast<WidgetRecord*>(refcon);
    if (!Alive(focus) || FindRoot(*focus) != root) return;
    w.focus = nullptr;
    Deliver(*focus, xpMsg_KeyLoseFocus, 0, 0, false, false, "XPLMTakeKeyboardFocus");
}

bool WindowTakesKey(WindowRecord& window, char key, XPLMKeyFlags flags, char virtualKey) {
    WidgetRecord* focus = widgets().focus;
    if (!Alive(focus) || FindRoot(*focus) == nullptr || FindRoot(*focus)->window != &window) return false;
    XPKeyState_t state = {key, flags, virtualKey};
    return SendMessage(*focus, xpMsg_KeyPress, xpMode_UpChain, reinterpret_cast<intptr_t>(&state), 0,
                       "the keyboard") != 0;
}

void OpenWindow(WidgetRecord& root) {
    WindowRecord params;
    params.left = root.left;
    params.top = root.top;
    params.right = root.right;
    params.bottom = root.bottom;
    params.visible = root.visible;
    params.modern = true;
    params.draw = WindowDraw;
    params.click = WindowClick;
    params.key = WindowKey;
    params.cursor = WindowCursor;
    params.wheel = WindowWheel;
    params.refcon = &root;
    params.takesKey = WindowTakesKey;
    root.window = CreateWindow(params);
    root.window->owner = root.owner;
}

// Marks a widget dead and lets go of everything that points at it.
void Bury(WidgetRecord& widget) {
    WidgetSystem& w = widgets();
    Detach(widget);
    for (WidgetRecord* child : widget.children) child->parent = nullptr;  // orphaned
    widget.children.clear();
    widget.dead = true;
    w.live--;
    if (w.focus == &widget) w.focus = nullptr;
    if (w.mouseTaker == &widget) w.mouseTaker = nullptr;
    if (WindowRecord* window = LiveWindow(widget)) DestroyWindow(*window);
}

void Destroy(WidgetRecord& widget, bool destroyChildren, bool partOfParent) {
    if (widget.dead || widget.destroying) return;
    widget.destroying = true;
    if (destroyChildren) {
        const std::vector<WidgetRecord*> children = widget.children;
        for (WidgetRecord* child : children) {
            if (Alive(child) && child->parent == &widget) Destroy(*child, true, true);
        }
    }
    Deliver(widget, xpMsg_Destroy, partOfParent ? 1 : 0, 0, true, false, "XPDestroyWidget");
    WidgetRecord* parent = widget.parent;
    Bury(widget);
    // The parent hears of it unless it goes too.
    if (!partOfParent && Alive(parent) && !parent->destroying)
        Deliver(*parent, xpMsg_LoseChild, reinterpret_cast<intptr_t>(&widget), 0, false, false, "XPDestroyWidget");
}

}  // namespace

// ------------------------------------------------------------------ control interface

int WidgetCount() { return widgets().live; }

void* WidgetWindow(const void* handle) {
    std::string ignored;
    WidgetRecord* widget = WidgetFromHandle(handle, ignored);
    return widget != nullptr ? LiveWindow(*widget) : nullptr;
}

// ------------------------------------------------------------------ widgets

WidgetRecord* WidgetFromHandle(const void* handle, std::string& what) {
    WidgetSystem& w = widgets();
    if (handle == nullptr || w.handles.count(handle) == 0) {
        char text[64];
        std::snprintf(text, sizeof text, "%p is not a widget", handle);
        what = text;
        return nullptr;
    }
    auto* widget = static_cast<WidgetRecord*>(const_cast<void*>(handle));
    if (widget->dead) {
        what = DescribeWidget(*widget) + " was destroyed";
        return nullptr;
    }
    return widget;
}

std::string DescribeWidget(const WidgetRecord& widget) {
    return "widget " + std::to_string(widget.number) + " (plugin " + std::to_string(widget.owner) + ")";
}

WidgetRecord* CreateWidget(int left, int top, int right, int bottom, bool visible, const char* descriptor,
                           bool root, WidgetRecord* container, XPWidgetClass widgetClass, XPWidgetFunc_t callback) {
    WidgetSystem& w = widgets();
    auto record = std::make_unique<WidgetRecord>();
    WidgetRecord* widget = record.get();
    widget->number = w.nextNumber++;
    widget->owner = CurrentPlugin();
    widget->left = left;
    widget->top = top;
    widget->right = right;
    widget->bottom = bottom;
    widget->visible = visible;
    widget->root = root;
    widget->widgetClass = widgetClass;
    widget->descriptor = descriptor ? descriptor : "";
    widget->callbacks.push_back(callback);
    w.records.push_back(std::move(record));
    w.handles.insert(widget);
    w.live++;
    if (root) OpenWindow(*widget);
    Deliver(*widget, xpMsg_Create, 0, 0, false, false, "XPCreateWidget");
    if (container != nullptr && Alive(widget) && Alive(container)) {
        std::string ignored;
        PlaceWithin(*widget, container, ignored);
    }
    return widget;
}

void DestroyWidget(WidgetRecord& widget, bool destroyChildren) { Destroy(widget, destroyChildren, false); }

int SendMessage(WidgetRecord& widget, XPWidgetMessage message, XPDispatchMode mode, intptr_t param1,
                intptr_t param2, const char* function) {
    switch (mode) {
        case xpMode_Direct:
            return Deliver(widget, message, param1, param2, false, false, function);
        case xpMode_UpChain:
            for (WidgetRecord* target = &widget; Alive(target); target = target->parent) {
                if (Deliver(*target, message, param1, param2, false, false, function) != 0) return 1;
            }
            return 0;
        case xpMode_Recursive:
            return SendRecursive(widget, message, param1, param2, function);
        case xpMode_DirectAllCallbacks:
            return Deliver(widget, message, param1, param2, true, false, function);
        case xpMode_Once:
            return Deliver(widget, message, param1, param2, false, true, function);
        default:
            ReportMisuse(function, std::to_string(mode) + " is not a dispatch mode");
            return 0;
    }
}

bool PlaceWithin(WidgetRecord& widget, WidgetRecord* container, std::string& problem) {
    for (WidgetRecord* up = container; up != nullptr; up = up->parent) {
        if (up == &widget) {
            problem = DescribeWidget(*container) + (container == &widget ? " is the widget itself" : " is inside it");
            return false;
        }
    }
    WidgetRecord* old = widget.parent;
    if (old == container && container != nullptr) {
        // Placing a widget within its own parent brings it in front of its siblings.
        auto& siblings = container->children;
        siblings.erase(std::remove(siblings.begin(), siblings.end(), &widget), siblings.end());
        siblings.push_back(&widget);
        return true;
    }
    Detach(widget);
    if (Alive(old)) Deliver(*old, xpMsg_LoseChild, reinterpret_cast<intptr_t>(&widget), 0, false, false, "XPPlaceWidgetWithin");
    if (container == nullptr || !Alive(container) || widget.dead) return true;
    container->children.push_back(&widget);
    widget.parent = container;
    Deliver(widget, xpMsg_AcceptParent, reinterpret_cast<intptr_t>(container), 0, false, false, "XPPlaceWidgetWithin");
    if (Alive(container))
        Deliver(*container, xpMsg_AcceptChild, reinterpret_cast<intptr_t>(&widget), 0, false, false, "XPPlaceWidgetWithin");
    return true;
}

void SetWidgetVisible(WidgetRecord& widget, bool visible) {
    if (widget.visible == visible) return;
    widget.visible = visible;
    if (WindowRecord* window = LiveWindow(widget)) SetWindowVisible(*window, visible);
    SendMessage(widget, visible ? xpMsg_Shown : xpMsg_Hidden, xpMode_UpChain, reinterpret_cast<intptr_t>(&widget), 0,
                visible ? "XPShowWidget" : "XPHideWidget");
}

bool WidgetIsVisible(const WidgetRecord& widget) {
    const WidgetRecord* top = &widget;
    for (const WidgetRecord* up = &widget; up != nullptr; up = up->parent) {
        if (!up->visible) return false;
        top = up;
    }
    return top->root;
}

WidgetRecord* FindRoot(WidgetRecord& widget) {
    WidgetRecord* top = &widget;
    while (top->parent != nullptr) top = top->parent;
    return top->root ? top : nullptr;
}

void BringRootToFront(WidgetRecord& widget) {
    WidgetRecord* root = FindRoot(widget);
    if (root == nullptr) return;
    if (WindowRecord* window = LiveWindow(*root)) BringToFront(*window);
}

bool RootIsInFront(WidgetRecord& widget) {
    WidgetRecord* root = FindRoot(widget);
    WindowRecord* window = root ? LiveWindow(*root) : nullptr;
    return window != nullptr && IsInFront(*window);
}

void SetWidgetGeometry(WidgetRecord& widget, int left, int top, int right, int bottom, const char* function) {
    // Edges may lie anywhere in the int range: the change is worked out in long long and each of its
    // fields stops at the end of the int range.
    auto cut = [](long long value) { return int(std::clamp<long long>(value, INT_MIN, INT_MAX)); };
    XPWidgetGeometryChange_t change;
    change.dx = cut((long long)left - widget.left);
    change.dy = cut((long long)top - widget.top);
    change.dwidth = cut(((long long)right - left) - ((long long)widget.right - widget.left));
    change.dheight = cut(((long long)top - bottom) - ((long long)widget.top - widget.bottom));
    if (change.dx == 0 && change.dy == 0 && change.dwidth == 0 && change.dheight == 0 && right == widget.right &&
        bottom == widget.bottom)
        return;
    widget.left = left;
    widget.top = top;
    widget.right = right;
    widget.bottom = bottom;
    if (WindowRecord* window = LiveWindow(widget)) {
        window->left = left;
        window->top = top;
        window->right = right;
        window->bottom = bottom;
    }
    SendMessage(widget, xpMsg_Reshape, xpMode_UpChain, reinterpret_cast<intptr_t>(&widget),
                reinterpret_cast<intptr_t>(&change), function);
}

void ExposedGeometry(const WidgetRecord& widget, int& left, int& top, int& right, int& bottom) {
    left = widget.left;
    top = widget.top;
    right = widget.right;
    bottom = widget.bottom;
    for (const WidgetRecord* up = widget.parent; up != nullptr; up = up->parent) {
        left = std::max(left, up->left);
        top = std::min(top, up->top);
        right = std::min(right, up->right);
        bottom = std::max(bottom, up->bottom);
    }
}

bool WidgetContains(const WidgetRecord& widget, int x, int y) {
    return x >= widget.left && x <= widget.right && y >= widget.bottom && y <= widget.top;
}

WidgetRecord* WidgetAt(WidgetRecord& container, int x, int y, bool recursive, bool visibleOnly) {
    if (visibleOnly && !container.visible) return nullptr;
    int left, top, right, bottom;
    ExposedGeometry(container, left, top, right, bottom);
    if (x < left || x > right || y < bottom || y > top) return nullptr;
    for (auto it = container.children.rbegin(); it != container.children.rend(); ++it) {
        WidgetRecord* child = *it;
        if (visibleOnly && !child->visible) continue;
        int cl, ct, cr, cb;
        ExposedGeometry(*child, cl, ct, cr, cb);
        if (x < cl || x > cr || y < cb || y > ct) continue;
        return recursive ? WidgetAt(*child, x, y, true, visibleOnly) : child;
    }
    return &container;
}

void SetDescriptor(WidgetRecord& widget, const std::string& text, const char* function) {
    widget.descriptor = text;
    Deliver(widget, xpMsg_DescriptorChanged, 0, 0, false, false, function);
}

void SetProperty(WidgetRecord& widget, XPWidgetPropertyID property, intptr_t value, const char* function) {
    widget.properties[property] = value;
    Deliver(widget, xpMsg_PropertyChanged, property, value, false, false, function);
}

bool GetProperty(const WidgetRecord& widget, XPWidgetPropertyID property, intptr_t& value) {
    auto found = widget.properties.find(property);
    if (found == widget.properties.end()) {
        value = 0;
        return false;
    }
    value = found->second;
    return true;
}

// ------------------------------------------------------------------ keyboard focus

WidgetRecord* SetKeyboardFocus(WidgetRecord* widget) {
    WidgetSystem& w = widgets();
    if (widget == w.focus) return w.focus;
    if (widget == nullptr) {
        WidgetRecord* losing = w.focus;
        w.focus = nullptr;
        if (Alive(losing)) Deliver(*losing, xpMsg_KeyLoseFocus, 0, 0, false, false, "XPSetKeyboardFocus");
        if (w.focus == nullptr && WidgetWindowHasFocus()) MoveWindowFocus(nullptr);
        return w.focus;
    }
    if (Deliver(*widget, xpMsg_KeyTakeFocus, 0, 0, false, false, "XPSetKeyboardFocus") == 0 || widget->dead)
        return w.focus;
    WidgetRecord* losing = w.focus;
    w.focus = widget;
    WidgetRecord* root = FindRoot(*widget);
    if (root != nullptr && LiveWindow(*root) != nullptr) MoveWindowFocus(root->window);
    if (Alive(losing) && losing != widget)
        Deliver(*losing, xpMsg_KeyLoseFocus, 1, 0, false, false, "XPSetKeyboardFocus");
    return w.focus;
}

void LoseKeyboardFocus(WidgetRecord& widget) {
    WidgetSystem& w = widgets();
    if (w.focus != &widget) return;
    WidgetRecord* taker = nullptr;
    for (WidgetRecord* up = widget.parent; Alive(up); up = up->parent) {
        if (Deliver(*up, xpMsg_KeyTakeFocus, 1, 0, false, false, "XPLoseKeyboardFocus") != 0 && Alive(up)) {
            taker = up;
            break;
        }
    }
    w.focus = taker;
    if (taker == nullptr && WidgetWindowHasFocus()) MoveWindowFocus(nullptr);
    if (Alive(&widget)) Deliver(widget, xpMsg_KeyLoseFocus, taker ? 1 : 0, 0, false, false, "XPLoseKeyboardFocus");
}

WidgetRecord* FocusedWidget() { return Alive(widgets().focus) ? widgets().focus : nullptr; }

void AddCallback(WidgetRecord& widget, XPWidgetFunc_t callback) {
    widget.callbacks.push_back(callback);
    if (widget.dead || widgets().messageDepth >= kMaxMessageDepth) return;
    widgets().messageDepth++;
    {
        PluginContext context(widget.owner);
        callback(xpMsg_Create, &widget, 1, 0);
    }
    widgets().messageDepth--;
}

// ------------------------------------------------------------------ whole world

int ForgetWidgetsOf(int plugin) {
    WidgetSystem& w = widgets();
    int count = 0;
    for (auto& record : w.records) {
        if (record->dead || record->owner != plugin) continue;
        Bury(*record);
        ++count;
    }
    return count;
}

void ResetWidgets() { widgets() = WidgetSystem(); }

}  // namespace xpsim
