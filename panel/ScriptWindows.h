// The script administration window ("Enable / Disable Scripts": a check box per script) and the
// script information window (each script's id, name, state, kind, signature and description), both
// eight scripts a page with "Previous" and "Next".
#pragma once

#include <Python.h>

#include <vector>

#include "XPWidgetDefs.h"

enum { CV_ScriptsPerPage = 8 };

// The loaded scripts' ids in table order, read anew before every refresh, and the last page index.
extern std::vector<PyObject*> ScriptId;
extern int NumberOfScriptIds;
extern int MaxScreenNumber;
// The page each window shows; 0 whenever a window is built.
extern int ScriptAdminScreenNumber;
extern int ScriptInfoScreenNumber;

// The windows now open (null when none is, or after its close box hid it).
extern XPWidgetID ScriptAdminWidget;
extern XPWidgetID ScriptAdminPrevious, ScriptAdminNext;
extern XPWidgetID ScriptAdminCaption[2];
extern XPWidgetID ScriptAdminEdit[CV_ScriptsPerPage];
extern XPWidgetID ScriptAdminCheckBox[CV_ScriptsPerPage];
extern XPWidgetID ScriptInfoWidget;
extern XPWidgetID ScriptInfoRefresh, ScriptInfoPrevious, ScriptInfoNext;
extern XPWidgetID NameText[CV_ScriptsPerPage];
extern XPWidgetID SignatureText[CV_ScriptsPerPage];
extern XPWidgetID DescriptionText[CV_ScriptsPerPage];

// The last page index for a number of scripts: (count - 1) / 8, truncated toward zero.
int CV_LastPage(int count);
// "Standard" for kind 1, "Aircraft" for 2, "None" for 0, "Unknown" otherwise.
const char* CV_ScriptKindWord(int kind);

void GetScriptIds();

void CreateScriptAdmin(int left, int top, int width, int height);
void RefreshScriptAdmin();
int ScriptAdminHandler(XPWidgetMessage message, XPWidgetID widget, intptr_t param1, intptr_t param2);

void CreateScriptInfo(int left, int top, int width, int height);
void RefreshScriptInfo();
int ScriptInfoHandler(XPWidgetMessage message, XPWidgetID widget, intptr_t param1, intptr_t param2);

// Shows the open window again when something hid it.
void CV_ShowScriptAdmin();
void CV_ShowScriptInfo();
// Refreshes both windows (the scripts were started or stopped).
void CV_RefreshScriptWindows();
// Destroys both windows, with those hidden by their close boxes.
void CV_DestroyScriptWindows();
