// The control menu and the control panel's main window.
#include "ControlPanel.h"

#include <cstdio>
#include <cstring>

#include "CV_ScriptTable.h"
#include "CallbackRegistry.h"
#include "ListBox.h"
#include "LogFiles.h"
#include "PanelColours.h"
#include "PanelState.h"
#include "PluginEntry.h"
#include "PopupMenu.h"
#include "ScriptLoader.h"
#include "ScriptWindows.h"
#include "XPLMPlugin.h"
#include "XPStandardWidgets.h"
#include "XPWidgets.h"

int CV_MenuItem1 = 0;
int CV_MenuItem2 = 0;
int CV_MenuItem3 = 0;

XPWidgetID CorvelleWidget = nullptr;
XPWidgetID CorvelleWindow = nullptr;
XPWidgetID StartPythonButton = nullptr;
XPWidgetID StopPythonButton = nullptr;
XPWidgetID EnableOutputFileCheckBox = nullptr;
XPWidgetID EnableOutputFileText = nullptr;
XPWidgetID ReLoadScripts = nullptr;
XPWidgetID ClearLB = nullptr;
XPWidgetID ReloadPlugins = nullptr;
XPWidgetID ScriptInfo = nullptr;
int curItem = 0;

namespace {

// The menu items' references: the handler tells the items apart by these texts.
const char kControlPanel[] = "ControlPanel";
const char kScriptEnableDisable[] = "ScriptEnableDisable";
const char kScriptInformation[] = "ScriptInformation";
const char kDirectoryError[] = "PythonScripts Directory Error;";

XPLMMenuID CorvelleMenu = nullptr;
int CorvelleMenuItem = -1;

XPWidgetID Child(int left, int top, int right, int bottom, const char* descriptor, XPWidgetClass widgetClass) {
    return XPCreateWidget(left, top, right, bottom, 1, descriptor, 0, CorvelleWidget, widgetClass);
}

XPWidgetID PushButton(int left, int top, int right, int bottom, const char* label) {
    XPWidgetID button = Child(left, top, right, bottom, label, xpWidgetClass_Button);
    XPSetWidgetProperty(button, xpProperty_ButtonType, xpPushButton);
    XPSetWidgetProperty(button, xpProperty_ButtonBehavior, xpButtonBehaviorPushButton);
    return button;
}

void Enable(XPWidgetID widget, int enabled) { XPSetWidgetProperty(widget, xpProperty_Enabled, enabled); }

void Print(const char* text) { AddPrintItem(text); }

void StartFromThePanel() {
    Print("Starting Python");
    StartPython(1);
    XPSetWidgetDescriptor(CorvellePopup, ScriptName);
    CV_RefreshScriptWindows();
}

void StopFromThePanel() {
    Print("Stopping Python");
    StopPython(1);
    Print("Python Stopped");
    CV_RefreshScriptWindows();
}

// The chosen script's details, printed to the print list.
void PrintScriptInfo() {
    PyObject* scriptId = nullptr;
    // The chooser may list more scripts than there are name slots; those have no slot to name them.
    if (curItem >= 0 && curItem < CV_MAX_SCRIPT_SLOTS && CVTestTable != nullptr) {
        char module[CV_SCRIPT_SLOT_SIZE];
        CV_CopyText(module, sizeof module, TestText[curItem]);
        scriptId = CVTestTable->GetScriptIdFromModuleName(module);
    }
    if (scriptId != nullptr) {
        char name[256] = {0}, signature[256] = {0}, description[256] = {0};
        TypeOfScript type = 0;
        CVTestTable->GetScriptDescriptions(scriptId, name, signature, description, &type);
        char line[512];
        Print("Script Information");
        Print("");
        snprintf(line, sizeof line, "Script Id :- %lx", CV_Hex(scriptId));
        Print(line);
        snprintf(line, sizeof line, "Name :- %s", name);
        Print(line);
        snprintf(line, sizeof line, "Signature :- %s", signature);
        Print(line);
        snprintf(line, sizeof line, "Description :- %s", description);
        Print(line);
        snprintf(line, sizeof line, "Script Type :- %d", type);
        Print(line);
    } else if (strcmp(szPopupText, kDirectoryError) == 0) {
        Print("PythonScripts Directory Error");
        Print("Check that the PythonScripts Directory exists");
    } else {
        Print("Script Not Loaded");
    }
    Print("");
}

int PushButtonPressed(XPWidgetID button) {
    if (button == ReloadPlugins) {
        XPLMReloadPlugins();
    } else if (button == StartPythonButton) {
        StartFromThePanel();
        Enable(StartPythonButton, 0);
        Enable(StopPythonButton, 1);
        Enable(ReLoadScripts, 1);
        Print("Python Started");
    } else if (button == StopPythonButton) {
        Enable(StartPythonButton, 1);
        Enable(StopPythonButton, 0);
        Enable(ReLoadScripts, 0);
        StopFromThePanel();
    } else if (button == ReLoadScripts) {
        Enable(StopPythonButton, 0);
        Enable(ReLoadScripts, 0);
        StopFromThePanel();
        StartFromThePanel();
        Enable(StopPythonButton, 1);
        Enable(ReLoadScripts, 1);
        Print("Python Started");
    } else if (button == ClearLB) {
        XPSetWidgetProperty(CorvelleDisplayConsole, xpProperty_ListBoxClear, 1);
        XPSetWidgetProperty(CorvellePrintConsole, xpProperty_ListBoxClear, 1);
    } else if (button == ScriptInfo) {
        PrintScriptInfo();
    } else {
        return 0;
    }
    return 1;
}

void DestroyPanel() {
    if (CV_MenuItem1 && CorvelleWidget != nullptr) XPDestroyWidget(CorvelleWidget, 1);
    CV_MenuItem1 = 0;
    CorvelleWidget = CorvelleWindow = nullptr;
    StartPythonButton = StopPythonButton = EnableOutputFileCheckBox = EnableOutputFileText = nullptr;
    ReLoadScripts = ClearLB = ReloadPlugins = ScriptInfo = nullptr;
    curItem = 0;
}

}  // namespace

void SetupWidgets(const char* text) {
    CV_ResetPanelState();
    if (text != nullptr && text[0] != '\0') AddPrintItem(text);
    XPLMMenuID plugins = XPLMFindPluginsMenu();
    CorvelleMenuItem = XPLMAppendMenuItem(plugins, "Corvelle", nullptr, 1);
    CorvelleMenu = XPLMCreateMenu("Corvelle", plugins, CorvelleMenuItem, CorvelleMenuHandler, nullptr);
    XPLMAppendMenuItem(CorvelleMenu, "Control Panel", const_cast<char*>(kControlPanel), 1);
    XPLMAppendMenuItem(CorvelleMenu, "Script Enable / Disable", const_cast<char*>(kScriptEnableDisable), 1);
    XPLMAppendMenuItem(CorvelleMenu, "Script Information", const_cast<char*>(kScriptInformation), 1);
    CV_MenuItem1 = CV_MenuItem2 = CV_MenuItem3 = 0;
}

void DestroyWidgets() {
    CV_CloseOpenPopups();
    if (CorvelleMenu != nullptr) XPLMDestroyMenu(CorvelleMenu);
    CorvelleMenu = nullptr;
    CorvelleMenuItem = -1;
    DestroyPanel();
    CV_DestroyScriptWindows();
    CV_ResetPanelState();
    CV_ForgetAmbientColours();
}

void CorvelleMenuHandler(void* menuRef, void* itemRef) {
    const char* item = static_cast<const char*>(itemRef);
    if (item == nullptr) return;
    if (strcmp(item, kControlPanel) == 0) {
        if (!CV_MenuItem1) {
            CreateCorvelle(500, 650, 450, 550);
            CV_MenuItem1 = 1;
        } else if (!XPIsWidgetVisible(CorvelleWidget)) {
            XPShowWidget(CorvelleWidget);
        }
    } else if (strcmp(item, kScriptEnableDisable) == 0) {
        if (!CV_MenuItem2) {
            ScriptAdminScreenNumber = 0;
            CreateScriptAdmin(200, 550, 294, 305);
            CV_MenuItem2 = 1;
        } else {
            CV_ShowScriptAdmin();
        }
    } else if (strcmp(item, kScriptInformation) == 0) {
        if (!CV_MenuItem3) {
            ScriptInfoScreenNumber = 0;
            CreateScriptInfo(290, 680, 417, 476);
            CV_MenuItem3 = 1;
        } else {
            CV_ShowScriptInfo();
        }
    }
}

void CreateCorvelle(int left, int top, int width, int height) {
    const int right = left + width;
    const int bottom = top - height;
    char title[768];
    snprintf(title, sizeof title, "%s %s %s", "Corvelle", CorvelleVersionNumber, CV_CreditText);
    CorvelleWidget = XPCreateWidget(left, top, right, bottom, 1, title, 1, nullptr, xpWidgetClass_MainWindow);
    XPSetWidgetProperty(CorvelleWidget, xpProperty_MainWindowHasCloseBoxes, 1);

    CorvelleWindow = Child(left + 50, top - 40, right - 50, bottom + 30, "", xpWidgetClass_SubWindow);
    XPSetWidgetProperty(CorvelleWindow, xpProperty_SubWindowType, xpSubWindowStyle_SubWindow);

    // The lines printed while the panel did not exist are its lists' first items.
    CorvelleDisplayConsole =
        CV_CreateListBox(left + 70, top - 50, right - 70, top - 200, 1, gCV_PendingDisplayText.c_str(), CorvelleWidget);
    CorvellePrintConsole =
        CV_CreateListBox(left + 70, top - 210, right - 70, top - 440, 1, gCV_PendingPrintText.c_str(), CorvelleWidget);
    gCV_PendingDisplayText.clear();
    gCV_PendingPrintText.clear();

    StartPythonButton = PushButton(left + 70, top - 455, left + 160, top - 477, " Start Python");
    StopPythonButton = PushButton(left + 170, top - 455, left + 260, top - 477, " Stop Python");
    EnableOutputFileCheckBox = Child(left + 270, top - 455, left + 292, top - 477, "", xpWidgetClass_Button);
    XPSetWidgetProperty(EnableOutputFileCheckBox, xpProperty_ButtonType, xpRadioButton);
    XPSetWidgetProperty(EnableOutputFileCheckBox, xpProperty_ButtonBehavior, xpButtonBehaviorCheckBox);
    XPSetWidgetProperty(EnableOutputFileCheckBox, xpProperty_ButtonState, 1);
    EnableOutputFileText =
        Child(left + 293, top - 455, left + 393, top - 477, "Enable Output File", xpWidgetClass_Caption);
    ReLoadScripts = PushButton(left + 70, top - 475, left + 160, top - 497, " Reload Scripts");
    ClearLB = PushButton(left + 170, top - 475, left + 260, top - 497, " Clear LB");
    ReloadPlugins = PushButton(left + 270, top - 475, left + 360, top - 497, " Reload Plugins");
    ScriptInfo = PushButton(left + 290, top - 495, left + 360, top - 517, " Script Info");
    CorvellePopup = CV_CreatePopup(left + 75, top - 495, left + 275, top - 517, 1, szPopupText, CorvelleWidget);
    XPSetWidgetProperty(CorvellePopup, xpProperty_PopupCurrentItem, 0);
    curItem = 0;

    Enable(StartPythonButton, 0);
    Enable(StopPythonButton, 1);
    Enable(ReLoadScripts, 1);
    XPAddWidgetCallback(CorvelleWidget, CorvelleHandler);
}

int CorvelleHandler(XPWidgetMessage message, XPWidgetID widget, intptr_t param1, intptr_t param2) {
    switch (message) {
        case xpMessage_CloseButtonPushed:
            if (CV_MenuItem1 == 1) XPHideWidget(CorvelleWidget);
            return 1;
        case xpMsg_ButtonStateChanged:
            if (reinterpret_cast<XPWidgetID>(param1) == EnableOutputFileCheckBox)
                CV_OutputFileEnabled =
                    static_cast<int>(XPGetWidgetProperty(EnableOutputFileCheckBox, xpProperty_ButtonState, nullptr));
            return 1;
        case xpMsg_PushButtonPressed:
            return PushButtonPressed(reinterpret_cast<XPWidgetID>(param1));
        case xpMsg_ListBoxSelectionMade:
            return 1;
        case xpMsg_PopupNewItemPicked:
            curItem = static_cast<int>(XPGetWidgetProperty(CorvellePopup, xpProperty_PopupCurrentItem, nullptr));
            return 1;
        default:
            return 0;
    }
}
