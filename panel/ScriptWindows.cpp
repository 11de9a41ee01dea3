// The script administration and script information windows.
#include "ScriptWindows.h"

#include <algorithm>
#include <cstdio>

#include "CV_ScriptTable.h"
#include "CallbackRegistry.h"
#include "ControlPanel.h"
#include "PluginEntry.h"
#include "XPStandardWidgets.h"
#include "XPWidgets.h"

std::vector<PyObject*> ScriptId;
int NumberOfScriptIds = 0;
int MaxScreenNumber = 0;
int ScriptAdminScreenNumber = 0;
int ScriptInfoScreenNumber = 0;

XPWidgetID ScriptAdminWidget = nullptr;
XPWidgetID ScriptAdminPrevious = nullptr, ScriptAdminNext = nullptr;
XPWidgetID ScriptAdminCaption[2] = {nullptr, nullptr};
XPWidgetID ScriptAdminEdit[CV_ScriptsPerPage] = {nullptr};
XPWidgetID ScriptAdminCheckBox[CV_ScriptsPerPage] = {nullptr};
XPWidgetID ScriptInfoWidget = nullptr;
XPWidgetID ScriptInfoRefresh = nullptr, ScriptInfoPrevious = nullptr, ScriptInfoNext = nullptr;
XPWidgetID NameText[CV_ScriptsPerPage] = {nullptr};
XPWidgetID SignatureText[CV_ScriptsPerPage] = {nullptr};
XPWidgetID DescriptionText[CV_ScriptsPerPage] = {nullptr};

namespace {

// A window its close box hid. It stays (hidden) until the next window of its kind is built or the
// plugin stops, so that nothing is destroyed from inside its own message.
XPWidgetID ClosedScriptAdmin = nullptr;
XPWidgetID ClosedScriptInfo = nullptr;

XPWidgetID Create(int left, int top, int right, int bottom, const char* descriptor, XPWidgetID container,
                  XPWidgetClass widgetClass, int visible = 1) {
    return XPCreateWidget(left, top, right, bottom, visible, descriptor, container == nullptr ? 1 : 0, container,
                          widgetClass);
}

XPWidgetID PushButton(int left, int top, int right, int bottom, const char* label, XPWidgetID container,
                      int visible = 1) {
    XPWidgetID button = Create(left, top, right, bottom, label, container, xpWidgetClass_Button, visible);
    XPSetWidgetProperty(button, xpProperty_ButtonType, xpPushButton);
    XPSetWidgetProperty(button, xpProperty_ButtonBehavior, xpButtonBehaviorPushButton);
    return button;
}

void Enable(XPWidgetID widget, bool enabled) { XPSetWidgetProperty(widget, xpProperty_Enabled, enabled ? 1 : 0); }

int Count() { return static_cast<int>(ScriptId.size()); }

// The page, kept within the pages there are now (the scripts may have changed since it was chosen).
int ClampPage(int& page) {
    page = std::clamp(page, 0, MaxScreenNumber);
    return page;
}

// Previous / Next: the page moves by one within the pages, and the window shows it.
bool Page(XPWidgetID button, XPWidgetID previous, XPWidgetID next, int& page) {
    if (button == previous) {
        page = std::max(page - 1, 0);
    } else if (button == next) {
        page = std::min(page + 1, MaxScreenNumber);
    } else {
        return false;
    }
    return true;
}

void Destroy(XPWidgetID& window) {
    if (window != nullptr) XPDestroyWidget(window, 1);
    window = nullptr;
}

void ForgetAdmin() {
    ScriptAdminWidget = ScriptAdminPrevious = ScriptAdminNext = nullptr;
    ScriptAdminCaption[0] = ScriptAdminCaption[1] = nullptr;
    std::fill(std::begin(ScriptAdminEdit), std::end(ScriptAdminEdit), nullptr);
    std::fill(std::begin(ScriptAdminCheckBox), std::end(ScriptAdminCheckBox), nullptr);
}

void ForgetInfo() {
    ScriptInfoWidget = ScriptInfoRefresh = ScriptInfoPrevious = ScriptInfoNext = nullptr;
    std::fill(std::begin(NameText), std::end(NameText), nullptr);
    std::fill(std::begin(SignatureText), std::end(SignatureText), nullptr);
    std::fill(std::begin(DescriptionText), std::end(DescriptionText), nullptr);
}

// Whether a script id is still in the table (the scripts may have been reloaded meanwhile).
bool InTable(PyObject* id) {
    if (CVTestTable == nullptr || CVTestTable->GetScriptsReleased()) return false;
    for (int i = 0; i < CVTestTable->GetScriptTableSize(); ++i)
        if (CVTestTable->GetScriptId(i) == id) return true;
    return false;
}

void ScriptBoxesChanged() {
    const int count = Count();
    for (int row = 0; row < CV_ScriptsPerPage; ++row) {
        const long long index = static_cast<long long>(ScriptAdminScreenNumber) * CV_ScriptsPerPage + row;
        if (index >= count) continue;
        PyObject* id = ScriptId[index];
        if (!InTable(id)) continue;
        const bool checked = XPGetWidgetProperty(ScriptAdminCheckBox[row], xpProperty_ButtonState, nullptr) != 0;
        const int enabled = CVTestTable->GetScriptEnabledStatus(id);
        if (checked) {
            CVTestTable->SetScriptEnabledStatus(id, 1);
            if (enabled == 0) CallXPluginEnable(id);
        } else {
            if (enabled == 1) CallXPluginDisable(id, 1);
            CVTestTable->SetScriptEnabledStatus(id, 0);
        }
    }
}

}  // namespace

int CV_LastPage(int count) { return (count - 1) / CV_ScriptsPerPage; }

const char* CV_ScriptKindWord(int kind) {
    switch (kind) {
        case 0: return "None";
        case 1: return "Standard";
        case 2: return "Aircraft";
        default: return "Unknown";
    }
}

void GetScriptIds() {
    ScriptId.clear();
    if (CVTestTable != nullptr && !CVTestTable->GetScriptsReleased()) {
        for (int i = 0; i < CVTestTable->GetScriptTableSize(); ++i)
            if (PyObject* id = CVTestTable->GetScriptId(i)) ScriptId.push_back(id);
    }
    // Rows are read from ScriptId, so its size is the count the pages are made of.
    NumberOfScriptIds = Count();
    MaxScreenNumber = CV_LastPage(NumberOfScriptIds);
}

// ------------------------------------------------------------------ administration

void CreateScriptAdmin(int left, int top, int width, int height) {
    Destroy(ClosedScriptAdmin);
    if (ScriptAdminWidget != nullptr) Destroy(ScriptAdminWidget);
    const int right = left + width;
    const int bottom = top - height;
    const int centre = left + width / 2;
    XPWidgetID window = Create(left, top, right, bottom, "Enable / Disable Scripts", nullptr, xpWidgetClass_MainWindow);
    ScriptAdminWidget = window;
    XPSetWidgetProperty(window, xpProperty_MainWindowHasCloseBoxes, 1);
    XPWidgetID well = Create(left + 12, top - 32, right - 12, bottom + 15, "", window, xpWidgetClass_SubWindow);
    XPSetWidgetProperty(well, xpProperty_SubWindowType, xpSubWindowStyle_SubWindow);
    ScriptAdminCaption[0] = Create(left + 20, top - 38, left + 310, top - 54, "Script Name", window, xpWidgetClass_Caption);
    ScriptAdminCaption[1] = Create(left + 229, top - 38, left + 325, top - 54, "Enabled", window, xpWidgetClass_Caption);
    ScriptAdminPrevious = PushButton(centre - 75, bottom + 43, centre - 6, bottom + 21, "Previous", window);
    ScriptAdminNext = PushButton(centre + 5, bottom + 43, centre + 75, bottom + 21, "Next", window);
    for (int row = 0; row < CV_ScriptsPerPage; ++row) {
        const int step = 25 * row;
        XPWidgetID field = Create(left + 20, top - 61 - step, left + 254, top - 81 - step, "", window,
                                  xpWidgetClass_TextField);
        XPSetWidgetProperty(field, xpProperty_TextFieldType, xpTextEntryField);
        Enable(field, false);
        ScriptAdminEdit[row] = field;
        XPWidgetID box = Create(left + 256, top - 60 - step, left + 278, top - 82 - step, "", window,
                                xpWidgetClass_Button);
        XPSetWidgetProperty(box, xpProperty_ButtonType, xpRadioButton);
        XPSetWidgetProperty(box, xpProperty_ButtonBehavior, xpButtonBehaviorCheckBox);
        XPSetWidgetProperty(box, xpProperty_ButtonState, 1);
        ScriptAdminCheckBox[row] = box;
    }
    RefreshScriptAdmin();
    XPAddWidgetCallback(window, ScriptAdminHandler);
}

void RefreshScriptAdmin() {
    if (ScriptAdminWidget == nullptr) return;
    GetScriptIds();
    const int count = Count();
    const int page = ClampPage(ScriptAdminScreenNumber);
    XPSetWidgetDescriptor(ScriptAdminCaption[0], count == 0 ? "You do not have any Scripts." : "Script Name");
    XPSetWidgetDescriptor(ScriptAdminCaption[1], count == 0 ? "" : "Enabled");
    for (int row = 0; row < CV_ScriptsPerPage; ++row) {
        const long long index = static_cast<long long>(page) * CV_ScriptsPerPage + row;
        const bool used = index < count;
        if (used) {
            char name[256] = {0}, signature[256] = {0}, description[256] = {0};
            CVTestTable->GetScriptDescriptions(ScriptId[index], name, signature, description);
            XPSetWidgetDescriptor(ScriptAdminEdit[row], name);
            XPSetWidgetProperty(ScriptAdminCheckBox[row], xpProperty_ButtonState,
                                CVTestTable->GetScriptEnabledStatus(ScriptId[index]));
        } else {
            XPSetWidgetDescriptor(ScriptAdminEdit[row], "");
            XPSetWidgetProperty(ScriptAdminCheckBox[row], xpProperty_ButtonState, 0);
        }
        Enable(ScriptAdminCheckBox[row], used);
    }
    Enable(ScriptAdminPrevious, page != 0);
    Enable(ScriptAdminNext, page != MaxScreenNumber);
}

int ScriptAdminHandler(XPWidgetMessage message, XPWidgetID widget, intptr_t param1, intptr_t param2) {
    switch (message) {
        case xpMessage_CloseButtonPushed:
            if (CV_MenuItem2 == 1 && widget == ScriptAdminWidget) {
                XPHideWidget(widget);
                CV_MenuItem2 = 0;
                ClosedScriptAdmin = widget;
                ForgetAdmin();
            }
            return 1;
        case xpMsg_PushButtonPressed:
            if (widget != ScriptAdminWidget ||
                !Page(reinterpret_cast<XPWidgetID>(param1), ScriptAdminPrevious, ScriptAdminNext,
                      ScriptAdminScreenNumber))
                return 0;
            RefreshScriptAdmin();
            return 1;
        case xpMsg_ButtonStateChanged:
            if (widget != ScriptAdminWidget) return 0;
            ScriptBoxesChanged();
            if (CV_MenuItem2) RefreshScriptInfo();
            return 0;
        default:
            return 0;
    }
}

void CV_ShowScriptAdmin() {
    if (ScriptAdminWidget != nullptr && !XPIsWidgetVisible(ScriptAdminWidget)) XPShowWidget(ScriptAdminWidget);
}

// ------------------------------------------------------------------ information

void CreateScriptInfo(int left, int top, int width, int height) {
    Destroy(ClosedScriptInfo);
    if (ScriptInfoWidget != nullptr) Destroy(ScriptInfoWidget);
    const int right = left + width;
    const int bottom = top - height;
    const int centre = left + width / 2;
    XPWidgetID window = Create(left, top, right, bottom, "Script Information", nullptr, xpWidgetClass_MainWindow);
    ScriptInfoWidget = window;
    XPSetWidgetProperty(window, xpProperty_MainWindowHasCloseBoxes, 1);
    XPWidgetID outer = Create(left + 12, top - 31, right - 12, bottom + 12, "", window, xpWidgetClass_SubWindow);
    XPSetWidgetProperty(outer, xpProperty_SubWindowType, xpSubWindowStyle_SubWindow);
    XPWidgetID list = Create(left + 21, top - 41, right - 21, bottom + 49, "", window, xpWidgetClass_SubWindow);
    XPSetWidgetProperty(list, xpProperty_SubWindowType, xpSubWindowStyle_ListView);
    ScriptInfoRefresh = PushButton(centre - 140, bottom + 67, centre - 70, bottom + 45, "Refresh", window, 0);
    ScriptInfoPrevious = PushButton(centre - 75, bottom + 41, centre - 5, bottom + 19, "Previous", window);
    ScriptInfoNext = PushButton(centre + 5, bottom + 41, centre + 75, bottom + 19, "Next", window);
    for (int row = 0; row < CV_ScriptsPerPage; ++row) {
        const int y = top - 45 - 45 * row;
        NameText[row] = Create(left + 30, y, left + 318, y - 20, "", window, xpWidgetClass_Caption);
        SignatureText[row] = Create(left + 75, y - 12, left + 310, y - 32, "", window, xpWidgetClass_Caption);
        DescriptionText[row] = Create(left + 75, y - 24, left + 310, y - 44, "", window, xpWidgetClass_Caption);
        for (XPWidgetID caption : {NameText[row], SignatureText[row], DescriptionText[row]})
            XPSetWidgetProperty(caption, xpProperty_CaptionLit, 1);
    }
    RefreshScriptInfo();
    XPAddWidgetCallback(window, ScriptInfoHandler);
}

void RefreshScriptInfo() {
    if (ScriptInfoWidget == nullptr) return;
    GetScriptIds();
    const int count = Count();
    const int page = ClampPage(ScriptInfoScreenNumber);
    for (int row = 0; row < CV_ScriptsPerPage; ++row) {
        const long long index = static_cast<long long>(page) * CV_ScriptsPerPage + row;
        if (index >= count) {
            XPSetWidgetDescriptor(NameText[row], "");
            XPSetWidgetDescriptor(SignatureText[row], "");
            XPSetWidgetDescriptor(DescriptionText[row], "");
            continue;
        }
        PyObject* id = ScriptId[index];
        char name[256] = {0}, signature[256] = {0}, description[256] = {0};
        TypeOfScript kind = 0;
        CVTestTable->GetScriptDescriptions(id, name, signature, description, &kind);
        const char* state = CVTestTable->GetScriptEnabledStatus(id) == 1 ? "Enabled" : "Disabled";
        // Scripts that share a signature show the id of the first of them.
        PyObject* shown = CVTestTable->GetScriptIdFromSignature(signature);
        char line[1024];
        snprintf(line, sizeof line, "(%lx) %s (%s) [%s Type Script]", CV_Hex(shown != nullptr ? shown : id), name,
                 state, CV_ScriptKindWord(kind));
        XPSetWidgetDescriptor(NameText[row], line);
        snprintf(line, sizeof line, "Signature: %s", signature);
        XPSetWidgetDescriptor(SignatureText[row], line);
        XPSetWidgetDescriptor(DescriptionText[row], description);
    }
    if (count == 0) XPSetWidgetDescriptor(NameText[0], "You do not have any Scripts installed.");
    Enable(ScriptInfoPrevious, page != 0);
    Enable(ScriptInfoNext, page != MaxScreenNumber);
}

int ScriptInfoHandler(XPWidgetMessage message, XPWidgetID widget, intptr_t param1, intptr_t param2) {
    switch (message) {
        case xpMessage_CloseButtonPushed:
            if (CV_MenuItem3 == 1 && widget == ScriptInfoWidget) {
                XPHideWidget(widget);
                CV_MenuItem3 = 0;
                ClosedScriptInfo = widget;
                ForgetInfo();
            }
            return 1;
        case xpMsg_PushButtonPressed: {
            if (widget != ScriptInfoWidget) return 0;
            XPWidgetID button = reinterpret_cast<XPWidgetID>(param1);
            if (button != ScriptInfoRefresh &&
                !Page(button, ScriptInfoPrevious, ScriptInfoNext, ScriptInfoScreenNumber))
                return 0;
            RefreshScriptInfo();
            return 1;
        }
        default:
            return 0;
    }
}

void CV_ShowScriptInfo() {
    if (ScriptInfoWidget != nullptr && !XPIsWidgetVisible(ScriptInfoWidget)) XPShowWidget(ScriptInfoWidget);
}

// ------------------------------------------------------------------ both

void CV_RefreshScriptWindows() {
    RefreshScriptAdmin();
    RefreshScriptInfo();
}

void CV_DestroyScriptWindows() {
    Destroy(ClosedScriptAdmin);
    Destroy(ClosedScriptInfo);
    if (ScriptAdminWidget != nullptr) XPDestroyWidget(ScriptAdminWidget, 1);
    if (ScriptInfoWidget != nullptr) XPDestroyWidget(ScriptInfoWidget, 1);
    ForgetAdmin();
    ForgetInfo();
    CV_MenuItem2 = CV_MenuItem3 = 0;
    ScriptId.clear();
    NumberOfScriptIds = MaxScreenNumber = 0;
    ScriptAdminScreenNumber = ScriptInfoScreenNumber = 0;
}
