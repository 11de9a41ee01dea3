// Bringing the interpreter and the scripts up and down.
#include <dlfcn.h>
#include <sys/stat.h>

#include <cstring>
#include <string>

#include "BindingModules.h"
#include "BrindleVCUtilities.h"
#include "CallbackDispatch.h"
#include "CallbackRegistry.h"
#include "LogFiles.h"
#include "Paths.h"
#include "PluginEntry.h"
#include "PythonErrors.h"
#include "ScriptLoader.h"
#include "ScriptThreads.h"
#include "XPLMDataAccess.h"
#include "XPLMUtilities.h"

char gCV_PythonPath[512] = {0};
const char CV_CreditText[] = "by the Corvelle developers";

namespace {

// Extension modules in the standard library expect the interpreter's symbols to be global; the
// simulator loads plugins privately, so the interpreter library is promoted once.
void MakePythonSymbolsGlobal() {
    static bool done = false;
    if (done) return;
    done = true;
    Dl_info info;
    if (dladdr(reinterpret_cast<void*>(&Py_InitializeEx), &info) && info.dli_fname)
        dlopen(info.dli_fname, RTLD_NOW | RTLD_GLOBAL | RTLD_NOLOAD);
}

// A path placed between single quotes in Python source.
std::string QuotedForPython(const std::string& path) {
    std::string quoted;
    for (char c : path) {
        if (c == '\\' || c == '\'') quoted += '\\';
        quoted += c;
    }
    return quoted;
}

bool FolderExists(const char* simFolderPath) {
    char posix[1024];
    if (CV_ConvertPath(simFolderPath, posix, sizeof posix) != 0) return false;
    struct stat st;
    return stat(posix, &st) == 0 && S_ISDIR(st.st_mode);
}

}  // namespace

void StartPython(int enableScripts) {
    if (CVTestTable == nullptr || CVTestTable->GetPythonRunState() == 1) return;
    CV_OutputFileEnabled = 1;
    CV_FindLogFiles();

    CV_WriteToLog("+++ LOGGING STARTED +++\n");
    CV_WriteToLogf("%s %s %s\n", "Corvelle", CorvelleVersionNumber, CV_CreditText);

    std::string iniSimPath = CV_SimPath({"Resources", "plugins", "Corvelle", "Corvelle.ini"});
    if (CV_ConvertPath(iniSimPath.c_str(), CV_PluginDataFile, sizeof CV_PluginDataFile) != 0) {
        CV_WriteToLog("Unable to convert PluginDataFile path\n");
        CV_CopyText(CV_PluginDataFile, sizeof CV_PluginDataFile, iniSimPath.c_str());
    }
    CV_WriteToLog(CV_GetINIFileValues() ? "Corvelle.ini file found\n" : "Corvelle.ini file not found\n");

    CV_WriteToLog("Before Py_Initialize()\n");
    MakePythonSymbolsGlobal();
    if (!Py_IsInitialized()) Py_InitializeEx(0);
    CV_BeginInterpreterGeneration();
    CV_WriteToLog("After Py_Initialize()\n");
    CV_WriteToLogf("Python Version %s running on the %s platform\n", Py_GetVersion(), Py_GetPlatform());
    CV_WriteToLog("Before Modules Init\n");

    char systemPath[1024] = {0};
    XPLMGetSystemPath(systemPath);
    systemPath[sizeof systemPath - 1] = '\0';
    const char separator = CV_Separator();
    const std::string scriptsFolder = CV_JoinPath(systemPath, separator, {"Resources", "plugins", "PythonScripts", ""});
    const std::string scriptsPosix = CV_ScriptsPosixPath(systemPath, separator);

    // The virtual-camera items are published before any module exists, so that BrindleVCUtilities
    // finds them when it is created.
    CV_ShareVirtualCameraItems();

    initBrindleInternalModule();
    std::string setup;
    setup += "import sys\n";
    setup += "sys.path.append('" + QuotedForPython(scriptsPosix) + "')\n";
    setup += "import BrindleInternalModule\n";
    setup += "class StdoutCatcher:\n";
    setup += "\tdef write(self, str):\n";
    setup += "\t\tBrindleInternalModule.PrintStdout(str)\n";
    setup += "\tdef flush(self):\n";
    setup += "\t\tpass\n";
    setup += "class StderrCatcher:\n";
    setup += "\tdef write(self, str):\n";
    setup += "\t\tBrindleInternalModule.PrintStderr(str)\n";
    setup += "\tdef flush(self):\n";
    setup += "\t\tpass\n";
    setup += "sys.stdout = StdoutCatcher()\n";
    setup += "sys.stderr = StderrCatcher()\n";
    // os._exit and os.abort would end the simulator's process on the spot. In the simulator's own
    // process they raise SystemExit instead, which is printed like any error and never obeyed; a
    // process a script forked still ends as it asks.
    setup += "import os, posix\n";
    setup += "def _CV_Refuse(name, end):\n";
    setup += "\tsimulator = os.getpid()\n";
    setup += "\tdef refused(*args):\n";
    setup += "\t\tif os.getpid() != simulator:\n";
    setup += "\t\t\tend(*args)\n";
    setup += "\t\traise SystemExit('%s(%s) refused: a script cannot end the simulator' % (name, ', '.join(map(repr, args))))\n";
    setup += "\treturn refused\n";
    setup += "os._exit = posix._exit = _CV_Refuse('os._exit', posix._exit)\n";
    setup += "os.abort = posix.abort = _CV_Refuse('os.abort', posix.abort)\n";
    setup += "del _CV_Refuse\n";
    PyRun_SimpleString(setup.c_str());

    CV_WriteToLog("Using path below for script path\n");
    CV_WriteToLog(scriptsPosix.c_str());
    CV_WriteToLog("\n");

    CV_InitScriptModules(scriptsPosix.c_str());

    CV_WriteToLog("After Modules Init\n");
    CV_WriteToLog("Searching for Standard Scripts\n");

    if (!FolderExists(scriptsFolder.c_str())) {
        XPLMDebugString("\n*** CORVELLE ERROR ***\n");
        XPLMDebugString("Path :- ");
        XPLMDebugString(scriptsFolder.c_str());
        XPLMDebugString(" does not exist.\n");
        XPLMDebugString("You will need to create a folder called PythonScripts under the plugins folder\n");
        XPLMDebugString("*** CORVELLE ERROR ***\n\n");
        SetErrorText();
        return;
    }

    int count = GetScriptFiles(scriptsFolder.c_str());
    for (int i = 0; i < count; ++i) {
        if (LoadScript(TestText[i], CV_StandardScript))
            CV_WriteToLogf("Script '%s.py' successfully loaded.\n", TestText[i]);
    }

    const int size = CVTestTable->GetScriptTableSize();
    for (int i = 0; i < size; ++i) {
        PyObject* id = CVTestTable->GetScriptId(i);
        if (CVTestTable->GetScriptType(id) == CV_StandardScript && CallXPluginStart(id, CV_StandardScript) &&
            enableScripts == 1)
            CallXPluginEnable(id);
    }

    CVTestTable->AddScriptsToWidgets(CVTestTable->GetScriptTableSize());
    CVTestTable->SetPythonRunState(1);
}

void StopPython(int disableScripts) {
    if (CVTestTable == nullptr || CVTestTable->GetPythonRunState() == 0) return;

    const int size = CVTestTable->GetScriptTableSize();
    for (int i = 0; i < size; ++i) {
        PyObject* id = CVTestTable->GetScriptId(i);
        if (disableScripts == 1) CallXPluginDisable(id, 0);
        CallXPluginStop(id, 0);
        // A stopped script receives nothing more, even from scripts that stop after it.
        CVTestTable->SetScriptEnabledStatus(id, 0);
    }
    // Threads the scripts left running must not hold the stop (the interpreter's shutdown waits
    // for them) nor outlive their interpreter.
    CV_EndScriptThreads();
    // The table's references to the instances go only now that every script has stopped, so a
    // script stopping later can never reach an instance that is already gone. The entries stay
    // (by identity only) for the callback check below; the ids are no longer handed to scripts.
    CVTestTable->SetScriptsReleased(1);
    for (int i = 0; i < size; ++i) Py_XDECREF(CVTestTable->GetScriptId(i));
    CV_ReleaseScriptModules();
    // Registrations the scripts left behind keep their records, but not the scripts' objects.
    CV_DropInterpreterReferences();
    // Nor does dispatch keep the ints and floats it reuses.
    CV_ReleaseDispatchObjects();

    PyRun_SimpleString("import sys\nsys.stdout = sys.__stdout__\nsys.stderr = sys.__stderr__\n");

    CV_WriteToLog("Before Py_Finalize()\n");
    Py_Finalize();
    CV_WriteToLog("After Py_Finalize()\n");

    if (gCV_CheckCallbacks) CV_CheckAllCallbacks();

    CVTestTable->ClearScriptTable();

    CV_UnshareVirtualCameraItems();

    CV_WriteToLog("--- LOGGING STOPPED ---\n\n");
    CVTestTable->SetPythonRunState(0);
}
