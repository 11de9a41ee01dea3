// Creating the script-facing modules in their fixed order.
#include "BindingModules.h"

#include "CV_ScriptTable.h"
#include "PluginEntry.h"

void CV_InitScriptModules(const char* scriptsPosixPath) {
    initBrindleUtilities();
    initXPLMDefs();
    initXPLMCamera();
    initXPLMDataAccess();
    initXPLMDisplay();
    initXPLMGraphics();
    initXPLMMenus();
    initXPLMNavigation();
    initXPLMProcessing();
    initXPLMUtilities();
    initXPLMPlanes();
    initXPLMPlugin();
    initXPLMScenery();
    initXPWidgetDefs();
    initXPWidgets();
    initXPStandardWidgets();
    initXPUIGraphics();
    initXPWidgetUtils();
    initPythonScriptMessaging();
    CV_CopyText(gCV_PythonPath, sizeof gCV_PythonPath, scriptsPosixPath);
    initBrindleVCUtilities();
}
