// The plugin's own entry in the plugins menu and the control panel behind it: a main window with
// the display and print lists, the buttons that start, stop and reload the scripts and reload the
// simulator's plugins, the output-file check box and the script chooser.
#pragma once

#include "XPLMMenus.h"
#include "XPWidgetDefs.h"

// 1 while a window of its kind has been built and not closed: the control panel, script
// administration and script information windows.
extern int CV_MenuItem1;
extern int CV_MenuItem2;
extern int CV_MenuItem3;

// The panel's widgets (the list boxes and the popup are in PanelState.h); null until it is built.
extern XPWidgetID CorvelleWidget;
extern XPWidgetID CorvelleWindow;
extern XPWidgetID StartPythonButton;
extern XPWidgetID StopPythonButton;
extern XPWidgetID EnableOutputFileCheckBox;
extern XPWidgetID EnableOutputFileText;
extern XPWidgetID ReLoadScripts;
extern XPWidgetID ClearLB;
extern XPWidgetID ReloadPlugins;
extern XPWidgetID ScriptInfo;
// The index of the script chosen in the popup.
extern int curItem;

// Builds the control menu; the panel's windows are made on first use. `text`, when not empty, is
// the print list's first line.
void SetupWidgets(const char* text);
// Destroys the menu and every window of the panel.
void DestroyWidgets();
void CorvelleMenuHandler(void* menuRef, void* itemRef);
// Builds the control panel at (left, top) with the given size.
void CreateCorvelle(int left, int top, int width, int height);
int CorvelleHandler(XPWidgetMessage message, XPWidgetID widget, intptr_t param1, intptr_t param2);
