// XPStandardWidgets: the standard widget classes' widget functions.
//
// The header declares only the classes' messages and properties; their behaviour lives here, behind
// XPGetWidgetClassFunc, and works through the SDK's own functions, so that a plugin's callbacks on a
// standard widget see the same messages the simulator's widgets send. A widget gets its class's
// properties when it is created (or when a class function is added to it), without messages.
//
// xpMsg_Draw draws the class's look from the widget's state (then the widget library paints the
// children): a `widget` line in the frame's drawing record naming the class and the state a person
// sees, the SDK's art through XPDrawWindow, XPDrawElement and XPDrawTrack (their own `ui-...` lines),
// and the widget's text as `string` lines, all painted on the screen in the 2-d phases:
//
//   widget number=3 class=xpWidgetClass_Button left=20 top=60 right=100 bottom=40 type=xpPushButton
//       behavior=xpButtonBehaviorPushButton state=0 hilited=0 enabled=1 "OK"      (one line)
//
// The standard widgets use fixed metrics: a main window's title bar is its top 20 pixels and its
// close boxes the 16-pixel squares 4 pixels in from its top corners; a text field's text starts 3
// pixels in, and a click puts the caret at the end of the text; a scroll bar is laid out by
// XPGetTrackMetrics.
#include "XPStandardWidgets.h"

#include <algorithm>
#include <climits>
#include <initializer_list>
#include <string>
#include <utility>

#include "XPLMDefs.h"
#include "XPUIGraphics.h"
#include "XPWidgetUtils.h"
#include "XPWidgets.h"
#include "world/Drawing.h"
#include "world/Graphics.h"
#include "world/Screen.h"
#include "world/Widgets.h"

namespace {

using xpsim::WidgetRecord;

constexpr int kTitleBarHeight = 20;
constexpr int kCloseBoxSize = 16;
constexpr int kCloseBoxInset = 4;

// Parts of a standard widget that a mouse down can press (WidgetRecord::pressedPart).
enum Part { kNoPart = 0, kButtonPart, kCloseBoxPart, kDownButton, kDownPage, kThumb, kUpPage, kUpButton };

WidgetRecord* Record(XPWidgetID id) {
    std::string ignored;
    return xpsim::WidgetFromHandle(id, ignored);
}

const XPMouseState_t* Mouse(intptr_t param) { return reinterpret_cast<const XPMouseState_t*>(param); }

intptr_t Property(XPWidgetID id, XPWidgetPropertyID property) { return XPGetWidgetProperty(id, property, nullptr); }

// Gives a widget the properties its class starts with, keeping those it has.
void Defaults(WidgetRecord& widget, std::initializer_list<std::pair<XPWidgetPropertyID, intptr_t>> defaults) {
    for (const auto& entry : defaults) widget.properties.emplace(entry.first, entry.second);
}

// A widget without xpProperty_Enabled is enabled.
bool Enabled(XPWidgetID id) {
    int exists = 0;
    const intptr_t value = XPGetWidgetProperty(id, xpProperty_Enabled, &exists);
    return exists == 0 || value != 0;
}

// ------------------------------------------------------------------ the look

constexpr int kTextInset = 3;
const float kBlack[3] = {0.0f, 0.0f, 0.0f};
const float kWhite[3] = {1.0f, 1.0f, 1.0f};
const float kGreyed[3] = {0.42f, 0.42f, 0.42f};

const char* Named(intptr_t value, std::initializer_list<std::pair<intptr_t, const char*>> names) {
    for (const auto& entry : names) {
        if (entry.first == value) return entry.second;
    }
    return nullptr;
}

// A property's value by its SDK name, or as a number when it has none.
std::string NameOr(intptr_t value, const char* name) { return name != nullptr ? name : std::to_string(value); }

std::string Geometry(const WidgetRecord& widget) {
    return "left=" + std::to_string(widget.left) + " top=" + std::to_string(widget.top) +
           " right=" + std::to_string(widget.right) + " bottom=" + std::to_string(widget.bottom);
}

// The `widget` record line: class, geometry, the class's fields, the text a person reads.
void RecordLook(const WidgetRecord& widget, const char* className, const std::string& fields, const std::string& text) {
    xpsim::RecordDrawing("widget number=" + std::to_string(widget.number) + " class=" + className + " " +
                         Geometry(widget) + (fields.empty() ? "" : " " + fields) + " " +
                         xpsim::QuoteForRecord(text.data(), text.size()));
}

int FontOf(XPWidgetID id) {
    const intptr_t font = Property(id, xpProperty_Font);
    xpsim::FontMetrics metrics;
    return xpsim::FindFont(int(font), metrics) ? int(font) : xplmFont_Basic;
}

int CharHeight(int font) {
    xpsim::FontMetrics metrics;
    return xpsim::FindFont(font, metrics) ? metrics.charHeight : 12;
}

int TextWidth(int font, const std::string& text) {
    return int(xpsim::MeasureString(font, text.c_str(), int(std::min<size_t>(text.size(), 65536))));
}

// One line of text with its lower left at (x, y), or centred in the widget's width.
void Text(const std::string& text, int x, int y, const float* rgb, int font = xplmFont_Basic) {
    if (!text.empty()) xpsim::DrawText(rgb, x, y, text.data(), text.size(), font);
}

// Widget geometry may be anything an int holds: the look computes in long long and draws at ints cut
// to the int range.
int Cut(long long value) { return int(std::clamp<long long>(value, INT_MIN, INT_MAX)); }

// The y that centres a line of the font in the widget's height.
int MiddleY(const WidgetRecord& widget, int font) {
    return Cut(widget.bottom + ((long long)widget.top - widget.bottom - CharHeight(font)) / 2);
}

// ------------------------------------------------------------------ windows

bool InCloseBox(const WidgetRecord& widget, int x, int y) {
    const long long top = (long long)widget.top - kCloseBoxInset;
    if (y > top || y < top - kCloseBoxSize) return false;
    const long long leftBox = (long long)widget.left + kCloseBoxInset;
    const long long rightBox = (long long)widget.right - kCloseBoxInset;
    return (x >= leftBox && x <= leftBox + kCloseBoxSize) || (x <= rightBox && x >= rightBox - kCloseBoxSize);
}

int DragByTitleBar(XPWidgetMessage message, XPWidgetID id, intptr_t param1, const WidgetRecord& widget) {
    return XPUDragWidget(message, id, param1, 0, widget.left, widget.top, widget.right,
                         Cut((long long)widget.top - kTitleBarHeight));
}

int MainWindow(XPWidgetMessage message, XPWidgetID id, intptr_t param1, intptr_t param2) {
    WidgetRecord* widget = Record(id);
    if (widget == nullptr) return 0;
    switch (message) {
        case xpMsg_Create:
            Defaults(*widget, {{xpProperty_MainWindowType, xpMainWindowStyle_MainWindow},
                               {xpProperty_MainWindowHasCloseBoxes, 0}});
            return 1;
        case xpMsg_Draw: {
            if (!xpsim::InDrawing()) return 1;  // sent outside the sim's drawing: nothing to draw on
            const intptr_t type = Property(id, xpProperty_MainWindowType);
            const bool closeBoxes = Property(id, xpProperty_MainWindowHasCloseBoxes) != 0;
            RecordLook(
                *widget, "xpWidgetClass_MainWindow",
                "type=" +
                    NameOr(type, Named(type, {{xpMainWindowStyle_MainWindow, "xpMainWindowStyle_MainWindow"},
                                              {xpMainWindowStyle_Translucent, "xpMainWindowStyle_Translucent"}})) +
                    " closeboxes=" + (closeBoxes ? "1" : "0"),
                widget->descriptor);
            // The translucent style is the simulator's dark box; the standard one its window art.
            if (type == xpMainWindowStyle_Translucent)
                XPLMDrawTranslucentDarkBox(widget->left, widget->top, widget->right, widget->bottom);
            else
                XPDrawWindow(widget->left, widget->bottom, widget->right, widget->top, xpWindow_MainWindow);
            const long long left = widget->left, right = widget->right, top = widget->top;
            long long titleX = left + 8;
            if (closeBoxes) {
                const long long boxTop = top - kCloseBoxInset;
                const XPElementStyle box = widget->pressedPart == kCloseBoxPart ? xpElement_WindowCloseBoxPressed
                                                                                 : xpElement_WindowCloseBox;
                XPDrawElement(Cut(left + kCloseBoxInset), Cut(boxTop - kCloseBoxSize),
                              Cut(left + kCloseBoxInset + kCloseBoxSize), Cut(boxTop), box, 0);
                XPDrawElement(Cut(right - kCloseBoxInset - kCloseBoxSize), Cut(boxTop - kCloseBoxSize),
                              Cut(right - kCloseBoxInset), Cut(boxTop), box, 0);
                titleX = left + kCloseBoxInset + kCloseBoxSize + 6;
            }
            Text(widget->descriptor, Cut(titleX),
                 Cut(top - kTitleBarHeight + (kTitleBarHeight - CharHeight(xplmFont_Basic)) / 2),
                 type == xpMainWindowStyle_Translucent ? kWhite : kBlack);
            return 1;
        }
        case xpMsg_Reshape:
            return XPUFixedLayout(message, id, param1, param2);
        case xpMsg_MouseDown: {
            if (param1 == 0) return 0;
            const XPMouseState_t* mouse = Mouse(param1);
            XPUSelectIfNeeded(message, id, param1, param2, 0);
            widget->pressedPart = kNoPart;
            if (Property(id, xpProperty_MainWindowHasCloseBoxes) != 0 && InCloseBox(*widget, mouse->x, mouse->y)) {
                widget->pressedPart = kCloseBoxPart;
                return 1;
            }
            DragByTitleBar(message, id, param1, *widget);
            return 1;  // the window's background takes the click
        }
        case xpMsg_MouseDrag:
        case xpMsg_MouseUp: {
            if (param1 == 0) return 0;
            const XPMouseState_t* mouse = Mouse(param1);
            if (widget->pressedPart == kCloseBoxPart) {
                if (message == xpMsg_MouseUp) {
                    widget->pressedPart = kNoPart;
                    if (InCloseBox(*widget, mouse->x, mouse->y))
                        XPSendMessageToWidget(id, xpMessage_CloseButtonPushed, xpMode_UpChain,
                                              reinterpret_cast<intptr_t>(id), 0);
                }
                return 1;
            }
            DragByTitleBar(message, id, param1, *widget);
            return 1;
        }
        default:
            return 0;
    }
}

int SubWindow(XPWidgetMessage message, XPWidgetID id, intptr_t param1, intptr_t param2) {
    WidgetRecord* widget = Record(id);
    if (widget == nullptr) return 0;
    switch (message) {
        case xpMsg_Create:
            Defaults(*widget, {{xpProperty_SubWindowType, xpSubWindowStyle_SubWindow}});
            return 1;
        case xpMsg_Draw: {
            if (!xpsim::InDrawing()) return 1;  // sent outside the sim's drawing: nothing to draw on
            const intptr_t type = Property(id, xpProperty_SubWindowType);
            const char* name = Named(type, {{xpSubWindowStyle_SubWindow, "xpSubWindowStyle_SubWindow"},
                                            {xpSubWindowStyle_Screen, "xpSubWindowStyle_Screen"},
                                            {xpSubWindowStyle_ListView, "xpSubWindowStyle_ListView"}});
            RecordLook(*widget, "xpWidgetClass_SubWindow", "type=" + NameOr(type, name), widget->descriptor);
            const XPWindowStyle style = type == xpSubWindowStyle_Screen     ? xpWindow_Screen
                                        : type == xpSubWindowStyle_ListView ? xpWindow_ListView
                                                                            : xpWindow_SubWindow;
            XPDrawWindow(widget->left, widget->bottom, widget->right, widget->top, style);
            return 1;
        }
        case xpMsg_Reshape:
            return XPUFixedLayout(message, id, param1, param2);
        default:
            return 0;
    }
}

// ------------------------------------------------------------------ buttons

void Press(XPWidgetID id) {
    const intptr_t self = reinterpret_cast<intptr_t>(id);
    switch (Property(id, xpProperty_ButtonBehavior)) {
        case xpButtonBehaviorCheckBox: {
            const intptr_t state = Property(id, xpProperty_ButtonState) != 0 ? 0 : 1;
            XPSetWidgetProperty(id, xpProperty_ButtonState, state);
            XPSendMessageToWidget(id, xpMsg_ButtonStateChanged, xpMode_UpChain, self, state);
            break;
        }
        case xpButtonBehaviorRadioButton:
            if (Property(id, xpProperty_ButtonState) != 0) break;
            XPSetWidgetProperty(id, xpProperty_ButtonState, 1);
            XPSendMessageToWidget(id, xpMsg_ButtonStateChanged, xpMode_UpChain, self, 1);
            break;
        default:
            XPSendMessageToWidget(id, xpMsg_PushButtonPressed, xpMode_UpChain, self, 0);
            break;
    }
}

// A button's look by its type: a push button is the push-button art with its text in the middle
// (lit while pressed, and while on for a check box or radio button); a radio-button-type button is a
// square check box (check-box behaviour, checked while on) or a round radio button (dot while on),
// as tall as the button at most, at its left, without text; the close box and the little arrows are
// their elements.
void DrawButton(XPWidgetID id, WidgetRecord& widget) {
    if (!xpsim::InDrawing()) return;  // sent outside the sim's drawing: nothing to draw on
    const intptr_t type = Property(id, xpProperty_ButtonType);
    const intptr_t behavior = Property(id, xpProperty_ButtonBehavior);
    const bool on = Property(id, xpProperty_ButtonState) != 0;
    const bool hilited = Property(id, xpProperty_Hilited) != 0;
    const bool enabled = Enabled(id);
    const char* typeName = Named(type, {{xpPushButton, "xpPushButton"},
                                        {xpRadioButton, "xpRadioButton"},
                                        {xpWindowCloseBox, "xpWindowCloseBox"},
                                        {xpLittleDownArrow, "xpLittleDownArrow"},
                                        {xpLittleUpArrow, "xpLittleUpArrow"}});
    const char* behaviorName = Named(behavior, {{xpButtonBehaviorPushButton, "xpButtonBehaviorPushButton"},
                                                {xpButtonBehaviorCheckBox, "xpButtonBehaviorCheckBox"},
                                                {xpButtonBehaviorRadioButton, "xpButtonBehaviorRadioButton"}});
    const bool pushLook = typeName == nullptr || type == xpPushButton;
    RecordLook(widget, "xpWidgetClass_Button",
               "type=" + NameOr(type, typeName) + " behavior=" + NameOr(behavior, behaviorName) + " state=" +
                   (on ? "1" : "0") + " hilited=" + (hilited ? "1" : "0") + " enabled=" + (enabled ? "1" : "0"),
               pushLook ? widget.descriptor : "");
    const int left = widget.left, bottom = widget.bottom, right = widget.right, top = widget.top;
    switch (type) {
        case xpRadioButton: {
            const int side = int(std::max(0LL, std::min({16LL, (long long)top - bottom, (long long)right - left})));
            const int boxBottom = Cut(bottom + ((long long)top - bottom - side) / 2);
            if (behavior == xpButtonBehaviorRadioButton) {
                // The SDK has no element for a round button: it is painted here, and named by the widget line.
                if (!xpsim::DrawingOnScreen()) return;
                const xpsim::Rgba white = xpsim::Colour(0xffffff), dark = xpsim::Colour(0x3c4044);
                const double l = left, b = boxBottom, r = l + side, t = b + side;
                xpsim::PaintEllipse(l, b, r, t, true, 1, white, xpsim::Blend::Opaque);
                xpsim::PaintEllipse(l + 0.5, b + 0.5, r - 0.5, t - 0.5, false, 1, dark, xpsim::Blend::Opaque);
                if (on) {
                    const double inset = side / 4.0;
                    xpsim::PaintEllipse(l + inset, b + inset, r - inset, t - inset, true, 1, xpsim::Colour(0x1c1c1c),
                                        xpsim::Blend::Opaque);
                }
            } else {
                XPDrawElement(left, boxBottom, Cut((long long)left + side), Cut((long long)boxBottom + side),
                              on ? xpElement_CheckBoxLit : xpElement_CheckBox, hilited);
            }
            return;
        }
        case xpWindowCloseBox:
            XPDrawElement(left, bottom, right, top,
                          hilited ? xpElement_WindowCloseBoxPressed : xpElement_WindowCloseBox, 0);
            return;
        case xpLittleDownArrow:
        case xpLittleUpArrow:
            XPDrawElement(left, bottom, right, top,
                          type == xpLittleUpArrow ? xpElement_LittleUpArrow : xpElement_LittleDownArrow, hilited);
            return;
        default: {
            const bool lit = hilited || (behavior != xpButtonBehaviorPushButton && on);
            XPDrawElement(left, bottom, right, top, lit ? xpElement_PushButtonLit : xpElement_PushButton, lit);
            const int width = TextWidth(xplmFont_Basic, widget.descriptor);
            Text(widget.descriptor, Cut(left + ((long long)right - left - width) / 2), MiddleY(widget, xplmFont_Basic),
                 enabled ? kBlack : kGreyed);
            return;
        }
    }
}

int Button(XPWidgetMessage message, XPWidgetID id, intptr_t param1, intptr_t) {
    WidgetRecord* widget = Record(id);
    if (widget == nullptr) return 0;
    switch (message) {
        case xpMsg_Create:
            Defaults(*widget, {{xpProperty_ButtonType, xpPushButton},
                               {xpProperty_ButtonBehavior, xpButtonBehaviorPushButton},
                               {xpProperty_ButtonState, 0}});
            return 1;
        case xpMsg_Draw:
            DrawButton(id, *widget);
            return 1;
        case xpMsg_MouseDown:
            if (!Enabled(id)) return 0;
            widget->pressedPart = kButtonPart;
            XPSetWidgetProperty(id, xpProperty_Hilited, 1);
            return 1;
        case xpMsg_MouseDrag:
            if (widget->pressedPart == kButtonPart && param1 != 0) {
                const bool inside = xpsim::WidgetContains(*widget, Mouse(param1)->x, Mouse(param1)->y);
                if ((Property(id, xpProperty_Hilited) != 0) != inside)
                    XPSetWidgetProperty(id, xpProperty_Hilited, inside);
            }
            return 1;
        case xpMsg_MouseUp: {
            if (widget->pressedPart != kButtonPart || param1 == 0) return 1;
            widget->pressedPart = kNoPart;
            if (Property(id, xpProperty_Hilited) != 0) XPSetWidgetProperty(id, xpProperty_Hilited, 0);
            // Released over the button: it is pushed.
            if (xpsim::WidgetContains(*widget, Mouse(param1)->x, Mouse(param1)->y)) Press(id);
            return 1;
        }
        default:
            return 0;
    }
}

// ------------------------------------------------------------------ text fields

bool EditingKey(int virtualKey) {
    return virtualKey == XPLM_VK_BACK || virtualKey == XPLM_VK_DELETE || virtualKey == XPLM_VK_LEFT ||
           virtualKey == XPLM_VK_RIGHT || virtualKey == XPLM_VK_HOME || virtualKey == XPLM_VK_END;
}

void SetSelection(XPWidgetID id, intptr_t start, intptr_t end) {
    if (Property(id, xpProperty_EditFieldSelStart) != start)
        XPSetWidgetProperty(id, xpProperty_EditFieldSelStart, start);
    if (Property(id, xpProperty_EditFieldSelEnd) != end) XPSetWidgetProperty(id, xpProperty_EditFieldSelEnd, end);
}

// Edits the text by a key message; 0 for keys a text field has no use for (Return, Tab, Escape,
// control and alt combinations), which go on up the chain.
int TypeKey(XPWidgetID id, WidgetRecord& widget, const XPKeyState_t& key) {
    const int virtualKey = static_cast<unsigned char>(key.vkey);
    const unsigned char character = static_cast<unsigned char>(key.key);
    if ((key.flags & (xplm_ControlFlag | xplm_OptionAltFlag)) != 0) return 0;
    const bool printable = character >= 32 && character < 127 && !EditingKey(virtualKey);
    if (!printable && !EditingKey(virtualKey)) return 0;
    if ((key.flags & xplm_UpFlag) != 0) return 1;  // the release of a key the field used
    std::string text = widget.descriptor;
    const intptr_t length = intptr_t(text.size());
    intptr_t start = std::clamp<intptr_t>(Property(id, xpProperty_EditFieldSelStart), 0, length);
    intptr_t end = std::clamp<intptr_t>(Property(id, xpProperty_EditFieldSelEnd), 0, length);
    if (start > end) std::swap(start, end);
    intptr_t caret = start;
    bool changed = false;
    switch (virtualKey) {
        case XPLM_VK_BACK:
        case XPLM_VK_DELETE:
            if (start < end) {
                text.erase(size_t(start), size_t(end - start));
                changed = true;
            } else if (virtualKey == XPLM_VK_BACK && start > 0) {
                text.erase(size_t(start - 1), 1);
                caret = start - 1;
                changed = true;
            } else if (virtualKey == XPLM_VK_DELETE && start < length) {
                text.erase(size_t(start), 1);
                changed = true;
            }
            break;
        case XPLM_VK_LEFT: caret = start < end ? start : std::max<intptr_t>(0, start - 1); break;
        case XPLM_VK_RIGHT: caret = start < end ? end : std::min(length, end + 1); break;
        case XPLM_VK_HOME: caret = 0; break;
        case XPLM_VK_END: caret = length; break;
        default: {
            const intptr_t limit = Property(id, xpProperty_MaxCharacters);
            if (limit > 0 && length - (end - start) + 1 > limit) return 1;  // full: the key is eaten
            text.replace(size_t(start), size_t(end - start), 1, char(character));
            caret = start + 1;
            changed = true;
            break;
        }
    }
    if (changed) XPSetWidgetDescriptor(id, text.c_str());
    SetSelection(id, caret, caret);
    if (changed)
        XPSendMessageToWidget(id, xpMsg_TextFieldChanged, xpMode_UpChain, reinterpret_cast<intptr_t>(id), 0);
    return 1;
}

// A text field: the text-field art (a dark box for the translucent type, nothing for the transparent
// one), its text from the scroll position on, 3 pixels in and cut where it would leave the field
// (stars in password mode), and, while it has the keyboard, the selection behind the text or the caret
// as a one-pixel line.
void DrawTextField(XPWidgetID id, WidgetRecord& widget) {
    if (!xpsim::InDrawing()) return;
    const intptr_t type = Property(id, xpProperty_TextFieldType);
    const bool password = Property(id, xpProperty_PasswordMode) != 0;
    const bool enabled = Enabled(id);
    const bool focused = xpsim::FocusedWidget() == &widget;
    const int font = FontOf(id);
    const intptr_t length = intptr_t(widget.descriptor.size());
    intptr_t start = std::clamp<intptr_t>(Property(id, xpProperty_EditFieldSelStart), 0, length);
    intptr_t end = std::clamp<intptr_t>(Property(id, xpProperty_EditFieldSelEnd), 0, length);
    if (start > end) std::swap(start, end);
    const intptr_t scroll = std::clamp<intptr_t>(Property(id, xpProperty_ScrollPosition), 0, length);
    const std::string shown = password ? std::string(size_t(length), '*') : widget.descriptor;
    // What fits from the scroll position on.
    const long long room = (long long)widget.right - widget.left - 2 * kTextInset;
    size_t count = 0;
    while (scroll + intptr_t(count) < length &&
           TextWidth(font, shown.substr(size_t(scroll), count + 1)) <= room)
        ++count;
    const std::string visible = shown.substr(size_t(scroll), count);
    const char* typeName = Named(type, {{xpTextEntryField, "xpTextEntryField"},
                                        {xpTextTransparent, "xpTextTransparent"},
                                        {xpTextTranslucent, "xpTextTranslucent"}});
    std::string fields = "type=" + NameOr(type, typeName) + " enabled=" + (enabled ? "1" : "0") +
                         " focus=" + (focused ? "1" : "0");
    if (focused) fields += " selection=" + std::to_string(start) + "," + std::to_string(end);
    RecordLook(widget, "xpWidgetClass_TextField", fields, visible);
    if (type == xpTextTranslucent)
        XPLMDrawTranslucentDarkBox(widget.left, widget.top, widget.right, widget.bottom);
    else if (type != xpTextTransparent)
        XPDrawElement(widget.left, widget.bottom, widget.right, widget.top, xpElement_TextField, 0);
    const int x = Cut((long long)widget.left + kTextInset);
    const int y = MiddleY(widget, font);
    auto xAt = [&](intptr_t index) {
        const intptr_t from = std::min(std::max(index, scroll), scroll + intptr_t(count));
        return (long long)x + TextWidth(font, shown.substr(size_t(scroll), size_t(from - scroll)));
    };
    const bool light = type == xpTextTranslucent;
    if (focused && start < end && xpsim::DrawingOnScreen())
        xpsim::PaintRect(double(xAt(start)), widget.bottom + 2.0, double(xAt(end)), widget.top - 2.0,
                         xpsim::Colour(light ? 0x4060a0 : 0xa8c8f0), xpsim::Blend::Opaque);
    Text(visible, x, y, !enabled ? kGreyed : light ? kWhite : kBlack, font);
    if (focused && start == end && start >= scroll && start <= scroll + intptr_t(count) && xpsim::DrawingOnScreen()) {
        const double caret = double(xAt(start)) + 0.5;
        xpsim::PaintPolyline({{caret, widget.bottom + 3.0}, {caret, widget.top - 3.0}}, false, 1,
                             xpsim::Colour(light ? 0xffffff : 0x000000), xpsim::Blend::Opaque);
    }
}

int TextField(XPWidgetMessage message, XPWidgetID id, intptr_t param1, intptr_t) {
    WidgetRecord* widget = Record(id);
    if (widget == nullptr) return 0;
    switch (message) {
        case xpMsg_Create:
            Defaults(*widget, {{xpProperty_EditFieldSelStart, 0},
                               {xpProperty_EditFieldSelEnd, 0},
                               {xpProperty_EditFieldSelDragStart, 0},
                               {xpProperty_TextFieldType, xpTextEntryField},
                               {xpProperty_PasswordMode, 0},
                               {xpProperty_MaxCharacters, 0},
                               {xpProperty_ScrollPosition, 0},
                               {xpProperty_Font, 0},
                               {xpProperty_ActiveEditSide, 0}});
            return 1;
        case xpMsg_Draw:
            DrawTextField(id, *widget);
            return 1;
        case xpMsg_MouseDown: {
            if (!Enabled(id)) return 0;
            if (XPSetKeyboardFocus(id) == id) {
                const intptr_t length = intptr_t(widget->descriptor.size());
                SetSelection(id, length, length);
            }
            return 1;
        }
        case xpMsg_MouseDrag:
        case xpMsg_MouseUp:
            return 1;
        case xpMsg_KeyTakeFocus:
            return Enabled(id) ? 1 : 0;
        case xpMsg_KeyLoseFocus:
            return 1;
        case xpMsg_KeyPress:
            return param1 != 0 ? TypeKey(id, *widget, *reinterpret_cast<const XPKeyState_t*>(param1)) : 0;
        default:
            return 0;
    }
}

// ------------------------------------------------------------------ scroll bars

struct Track {
    bool vertical;
    int button, downPage, thumb, upPage;
    intptr_t lo, hi;
    int Free() const { return downPage + upPage; }
};

Track Measure(XPWidgetID id, const WidgetRecord& widget) {
    Track track;
    const intptr_t min = Property(id, xpProperty_ScrollBarMin), max = Property(id, xpProperty_ScrollBarMax);
    track.lo = std::min(min, max);
    track.hi = std::max(min, max);
    const XPTrackStyle style =
        Property(id, xpProperty_ScrollBarType) == xpScrollBarTypeSlider ? xpTrack_Slider : xpTrack_ScrollBar;
    int vertical = 0, upButton = 0;
    // The SDK measures a track in ints: a range or position beyond them is drawn at the int range's ends.
    XPGetTrackMetrics(widget.left, widget.bottom, widget.right, widget.top, Cut(min), Cut(max),
                      Cut(Property(id, xpProperty_ScrollBarSliderPosition)), style, &vertical, &track.button,
                      &track.downPage, &track.thumb, &track.upPage, &upButton);
    track.vertical = vertical != 0;
    return track;
}

// How far a point lies along the track from its "down" end: the left of a horizontal bar, the top of
// a vertical one.
long long Along(const Track& track, const WidgetRecord& widget, const XPMouseState_t& mouse) {
    return track.vertical ? (long long)widget.top - mouse.y : (long long)mouse.x - widget.left;
}

// A position moved by a step, stopping at the ends of the type rather than wrapping; MoveSlider keeps
// it within the bar's range.
long long Stepped(long long position, long long step) {
    long long result;
    if (__builtin_add_overflow(position, step, &result)) return step > 0 ? LLONG_MAX : LLONG_MIN;
    return result;
}

void MoveSlider(XPWidgetID id, const Track& track, long long position) {
    const intptr_t value = intptr_t(std::clamp<long long>(position, track.lo, track.hi));
    if (value == Property(id, xpProperty_ScrollBarSliderPosition)) return;
    XPSetWidgetProperty(id, xpProperty_ScrollBarSliderPosition, value);
    XPSendMessageToWidget(id, xpMsg_ScrollBarSliderPositionChanged, xpMode_UpChain, reinterpret_cast<intptr_t>(id), 0);
}

// The position whose thumb starts `offset` pixels past the down button. The range may span the whole
// of intptr_t: the scaling is done in 128 bits.
long long PositionAt(const Track& track, long long offset) {
    if (track.Free() <= 0) return track.lo;
    const __int128 span = (__int128)track.hi - track.lo;
    const __int128 clamped = std::clamp<long long>(offset, 0, track.Free());
    return (long long)(track.lo + (clamped * span + track.Free() / 2) / track.Free());
}

int ScrollBar(XPWidgetMessage message, XPWidgetID id, intptr_t param1, intptr_t) {
    WidgetRecord* widget = Record(id);
    if (widget == nullptr) return 0;
    switch (message) {
        case xpMsg_Create:
            Defaults(*widget, {{xpProperty_ScrollBarSliderPosition, 0},
                               {xpProperty_ScrollBarMin, 0},
                               {xpProperty_ScrollBarMax, 100},
                               {xpProperty_ScrollBarPageAmount, 10},
                               {xpProperty_ScrollBarType, xpScrollBarTypeScrollBar},
                               {xpProperty_ScrollBarSlop, 0}});
            return 1;
        case xpMsg_Draw: {
            if (!xpsim::InDrawing()) return 1;  // sent outside the sim's drawing: nothing to draw on
            const bool slider = Property(id, xpProperty_ScrollBarType) == xpScrollBarTypeSlider;
            const intptr_t min = Property(id, xpProperty_ScrollBarMin), max = Property(id, xpProperty_ScrollBarMax);
            const intptr_t position = Property(id, xpProperty_ScrollBarSliderPosition);
            RecordLook(*widget, "xpWidgetClass_ScrollBar",
                       std::string("type=") + (slider ? "xpScrollBarTypeSlider" : "xpScrollBarTypeScrollBar") +
                           " min=" + std::to_string(min) + " max=" + std::to_string(max) +
                           " position=" + std::to_string(position),
                       "");
            XPDrawTrack(widget->left, widget->bottom, widget->right, widget->top, Cut(min), Cut(max), Cut(position),
                        slider ? xpTrack_Slider : xpTrack_ScrollBar, widget->pressedPart != kNoPart);
            return 1;
        }
        case xpMsg_PropertyChanged: {
            // The position stays within the range, whoever sets what.
            if (param1 != xpProperty_ScrollBarSliderPosition && param1 != xpProperty_ScrollBarMin &&
                param1 != xpProperty_ScrollBarMax)
                return 0;
            const Track track = Measure(id, *widget);
            intptr_t& position = widget->properties[xpProperty_ScrollBarSliderPosition];
            position = std::clamp(position, track.lo, track.hi);
            return 0;
        }
        case xpMsg_MouseDown: {
            if (!Enabled(id) || param1 == 0) return 0;
            const Track track = Measure(id, *widget);
            const intptr_t position = Property(id, xpProperty_ScrollBarSliderPosition);
            const intptr_t page = std::max<intptr_t>(1, Property(id, xpProperty_ScrollBarPageAmount));
            const long long along = Along(track, *widget, *Mouse(param1));
            const int thumbStart = track.button + track.downPage;
            widget->pressedPart = kNoPart;
            if (Property(id, xpProperty_ScrollBarType) == xpScrollBarTypeSlider) {
                // A slider's knob jumps to the point and follows the mouse.
                widget->pressedPart = kThumb;
                widget->pressX = track.thumb / 2;
                MoveSlider(id, track, PositionAt(track, along - track.thumb / 2));
            } else if (along < track.button) {
                widget->pressedPart = kDownButton;
                MoveSlider(id, track, Stepped(position, -1));
            } else if (along < thumbStart) {
                widget->pressedPart = kDownPage;
                MoveSlider(id, track, Stepped(position, -page));
            } else if (along < thumbStart + track.thumb) {
                widget->pressedPart = kThumb;
                widget->pressX = int(along - thumbStart);  // where the thumb is held
            } else if (along < thumbStart + track.thumb + track.upPage) {
                widget->pressedPart = kUpPage;
                MoveSlider(id, track, Stepped(position, page));
            } else {
                widget->pressedPart = kUpButton;
                MoveSlider(id, track, Stepped(position, 1));
            }
            return 1;
        }
        case xpMsg_MouseDrag:
        case xpMsg_MouseUp:
            if (widget->pressedPart == kThumb && param1 != 0) {
                const Track track = Measure(id, *widget);
                MoveSlider(id, track,
                           PositionAt(track, Along(track, *widget, *Mouse(param1)) - widget->pressX - track.button));
            }
            if (message == xpMsg_MouseUp) widget->pressedPart = kNoPart;
            return 1;
        case xpMsg_MouseWheel: {
            if (!Enabled(id) || param1 == 0) return 0;
            const Track track = Measure(id, *widget);
            // The wheel turned up moves towards the top of a vertical bar, right on a horizontal one.
            const long long delta = Mouse(param1)->delta;
            MoveSlider(id, track,
                       Stepped(Property(id, xpProperty_ScrollBarSliderPosition), track.vertical ? -delta : delta));
            return 1;
        }
        default:
            return 0;
    }
}

// ------------------------------------------------------------------ the rest

// A caption is its text at its left, in the middle of its height: black, or white when lit.
int Caption(XPWidgetMessage message, XPWidgetID id, intptr_t, intptr_t) {
    WidgetRecord* widget = Record(id);
    if (widget == nullptr) return 0;
    if (message == xpMsg_Create) {
        Defaults(*widget, {{xpProperty_CaptionLit, 0}});
        return 1;
    }
    if (message != xpMsg_Draw) return 0;
    if (!xpsim::InDrawing()) return 1;
    const bool lit = Property(id, xpProperty_CaptionLit) != 0;
    const bool enabled = Enabled(id);
    RecordLook(*widget, "xpWidgetClass_Caption", std::string("lit=") + (lit ? "1" : "0"), widget->descriptor);
    Text(widget->descriptor, widget->left, MiddleY(*widget, xplmFont_Basic),
         !enabled ? kGreyed
         : lit    ? kWhite
                  : kBlack);
    return 1;
}

// General graphics: the map icon's element over the widget.
int GeneralGraphics(XPWidgetMessage message, XPWidgetID id, intptr_t, intptr_t) {
    WidgetRecord* widget = Record(id);
    if (widget == nullptr) return 0;
    if (message == xpMsg_Create) {
        Defaults(*widget, {{xpProperty_GeneralGraphicsType, xpShip}});
        return 1;
    }
    if (message != xpMsg_Draw) return 0;
    if (!xpsim::InDrawing()) return 1;
    static const std::pair<intptr_t, XPElementStyle> kIcons[] = {
        {xpShip, xpElement_Ship},
        {xpILSGlideScope, xpElement_ILSGlideScope},
        {xpMarkerLeft, xpElement_MarkerLeft},
        {xp_Airport, xpElement_Airport},
        {xpNDB, xpElement_NDB},
        {xpVOR, xpElement_VOR},
        {xpRadioTower, xpElement_RadioTower},
        {xpAircraftCarrier, xpElement_AircraftCarrier},
        {xpFire, xpElement_Fire},
        {xpMarkerRight, xpElement_MarkerRight},
        {xpCustomObject, xpElement_CustomObject},
        {xpCoolingTower, xpElement_CoolingTower},
        {xpSmokeStack, xpElement_SmokeStack},
        {xpBuilding, xpElement_Building},
        {xpPowerLine, xpElement_PowerLine},
        {xpVORWithCompassRose, xpElement_VORWithCompassRose},
        {xpOilPlatform, xpElement_OilPlatform},
        {xpOilPlatformSmall, xpElement_OilPlatformSmall},
        {xpWayPoint, xpElement_Waypoint},
    };
    const intptr_t icon = Property(id, xpProperty_GeneralGraphicsType);
    RecordLook(*widget, "xpWidgetClass_GeneralGraphics", "icon=" + std::to_string(icon), widget->descriptor);
    for (const auto& entry : kIcons) {
        if (entry.first == icon)
            XPDrawElement(widget->left, widget->bottom, widget->right, widget->top, entry.second, 0);
    }
    return 1;
}

// A progress bar: the progress track.
int Progress(XPWidgetMessage message, XPWidgetID id, intptr_t, intptr_t) {
    WidgetRecord* widget = Record(id);
    if (widget == nullptr) return 0;
    if (message == xpMsg_Create) {
        Defaults(*widget,
                 {{xpProperty_ProgressPosition, 0}, {xpProperty_ProgressMin, 0}, {xpProperty_ProgressMax, 100}});
        return 1;
    }
    if (message != xpMsg_Draw) return 0;
    if (!xpsim::InDrawing()) return 1;
    const intptr_t min = Property(id, xpProperty_ProgressMin), max = Property(id, xpProperty_ProgressMax);
    const intptr_t position = Property(id, xpProperty_ProgressPosition);
    RecordLook(*widget, "xpWidgetClass_Progress",
               "min=" + std::to_string(min) + " max=" + std::to_string(max) + " position=" + std::to_string(position),
               "");
    XPDrawTrack(widget->left, widget->bottom, widget->right, widget->top, Cut(min), Cut(max), Cut(position),
                xpTrack_Progress, 0);
    return 1;
}

}  // namespace

namespace xpsim {

XPWidgetFunc_t StandardClassFunction(XPWidgetClass widgetClass) {
    switch (widgetClass) {
        case xpWidgetClass_MainWindow: return MainWindow;
        case xpWidgetClass_SubWindow: return SubWindow;
        case xpWidgetClass_Button: return Button;
        case xpWidgetClass_TextField: return TextField;
        case xpWidgetClass_ScrollBar: return ScrollBar;
        case xpWidgetClass_Caption: return Caption;
        case xpWidgetClass_GeneralGraphics: return GeneralGraphics;
        case xpWidgetClass_Progress: return Progress;
        default: return nullptr;
    }
}

}  // namespace xpsim
