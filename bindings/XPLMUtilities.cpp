// The script module XPLMUtilities: speech, key and button commands, paths and directory listings
// (each also in a native-path variant, `_NP`), versions and language, the simulator's log, error
// callbacks, symbols, data files, and the command system. Command handlers and error callbacks are
// recorded in CommandCallbackList and ErrorCallbackList; the simulator knows only the plugin's own
// error callback, which relays every error to every script's callback.
#include "XPLMUtilities.h"

#include <climits>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string>
#include <unordered_map>
#include <vector>

#include "BindingModules.h"
#include "BindingSupport.h"
#include "CV_ScriptTable.h"
#include "CallbackDispatch.h"
#include "CallbackRegistry.h"
#include "NativePaths.h"
#include "Paths.h"
#include "SdkDetect.h"

namespace {

const char* const kModule = "XPLMUtilities";
// The size of the buffers handed to XPLMGetSystemPath and XPLMGetPrefsPath.
const size_t kPathBufferSize = 1024;
// Limits on what a script may ask XPLMGetDirectoryContents to allocate.
const long kMaxFileNameBufSize = 16L * 1024 * 1024;
const long kMaxIndexCount = 1024L * 1024;

// Installed in this order, each under its SDK name.
const CV_IntConstant XPLMUtilitiesConstants[] = {
    // Key commands, numbered by position.
    {"xplm_key_pause", 0},
    {"xplm_key_revthrust", 1},
    {"xplm_key_jettison", 2},
    {"xplm_key_brakesreg", 3},
    {"xplm_key_brakesmax", 4},
    {"xplm_key_gear", 5},
    {"xplm_key_timedn", 6},
    {"xplm_key_timeup", 7},
    {"xplm_key_fadec", 8},
    {"xplm_key_otto_dis", 9},
    {"xplm_key_otto_atr", 10},
    {"xplm_key_otto_asi", 11},
    {"xplm_key_otto_hdg", 12},
    {"xplm_key_otto_gps", 13},
    {"xplm_key_otto_lev", 14},
    {"xplm_key_otto_hnav", 15},
    {"xplm_key_otto_alt", 16},
    {"xplm_key_otto_vvi", 17},
    {"xplm_key_otto_vnav", 18},
    {"xplm_key_otto_nav1", 19},
    {"xplm_key_otto_nav2", 20},
    {"xplm_key_targ_dn", 21},
    {"xplm_key_targ_up", 22},
    {"xplm_key_hdgdn", 23},
    {"xplm_key_hdgup", 24},
    {"xplm_key_barodn", 25},
    {"xplm_key_baroup", 26},
    {"xplm_key_obs1dn", 27},
    {"xplm_key_obs1up", 28},
    {"xplm_key_obs2dn", 29},
    {"xplm_key_obs2up", 30},
    {"xplm_key_com1_1", 31},
    {"xplm_key_com1_2", 32},
    {"xplm_key_com1_3", 33},
    {"xplm_key_com1_4", 34},
    {"xplm_key_nav1_1", 35},
    {"xplm_key_nav1_2", 36},
    {"xplm_key_nav1_3", 37},
    {"xplm_key_nav1_4", 38},
    {"xplm_key_com2_1", 39},
    {"xplm_key_com2_2", 40},
    {"xplm_key_com2_3", 41},
    {"xplm_key_com2_4", 42},
    {"xplm_key_nav2_1", 43},
    {"xplm_key_nav2_2", 44},
    {"xplm_key_nav2_3", 45},
    {"xplm_key_nav2_4", 46},
    {"xplm_key_adf_1", 47},
    {"xplm_key_adf_2", 48},
    {"xplm_key_adf_3", 49},
    {"xplm_key_adf_4", 50},
    {"xplm_key_adf_5", 51},
    {"xplm_key_adf_6", 52},
    {"xplm_key_transpon_1", 53},
    {"xplm_key_transpon_2", 54},
    {"xplm_key_transpon_3", 55},
    {"xplm_key_transpon_4", 56},
    {"xplm_key_transpon_5", 57},
    {"xplm_key_transpon_6", 58},
    {"xplm_key_transpon_7", 59},
    {"xplm_key_transpon_8", 60},
    {"xplm_key_flapsup", 61},
    {"xplm_key_flapsdn", 62},
    {"xplm_key_cheatoff", 63},
    {"xplm_key_cheaton", 64},
    {"xplm_key_sbrkoff", 65},
    {"xplm_key_sbrkon", 66},
    {"xplm_key_ailtrimL", 67},
    {"xplm_key_ailtrimR", 68},
    {"xplm_key_rudtrimL", 69},
    {"xplm_key_rudtrimR", 70},
    {"xplm_key_elvtrimD", 71},
    {"xplm_key_elvtrimU", 72},
    {"xplm_key_forward", 73},
    {"xplm_key_down", 74},
    {"xplm_key_left", 75},
    {"xplm_key_right", 76},
    {"xplm_key_back", 77},
    {"xplm_key_tower", 78},
    {"xplm_key_runway", 79},
    {"xplm_key_chase", 80},
    {"xplm_key_free1", 81},
    {"xplm_key_free2", 82},
    {"xplm_key_spot", 83},
    {"xplm_key_fullscrn1", 84},
    {"xplm_key_fullscrn2", 85},
    {"xplm_key_tanspan", 86},
    {"xplm_key_smoke", 87},
    {"xplm_key_map", 88},
    {"xplm_key_zoomin", 89},
    {"xplm_key_zoomout", 90},
    {"xplm_key_cycledump", 91},
    {"xplm_key_replay", 92},
    {"xplm_key_tranID", 93},
    {"xplm_key_max", 94},
    // Joystick button commands, numbered by position.
    {"xplm_joy_nothing", 0},
    {"xplm_joy_start_all", 1},
    {"xplm_joy_start_0", 2},
    {"xplm_joy_start_1", 3},
    {"xplm_joy_start_2", 4},
    {"xplm_joy_start_3", 5},
    {"xplm_joy_start_4", 6},
    {"xplm_joy_start_5", 7},
    {"xplm_joy_start_6", 8},
    {"xplm_joy_start_7", 9},
    {"xplm_joy_throt_up", 10},
    {"xplm_joy_throt_dn", 11},
    {"xplm_joy_prop_up", 12},
    {"xplm_joy_prop_dn", 13},
    {"xplm_joy_mixt_up", 14},
    {"xplm_joy_mixt_dn", 15},
    {"xplm_joy_carb_tog", 16},
    {"xplm_joy_carb_on", 17},
    {"xplm_joy_carb_off", 18},
    {"xplm_joy_trev", 19},
    {"xplm_joy_trm_up", 20},
    {"xplm_joy_trm_dn", 21},
    {"xplm_joy_rot_trm_up", 22},
    {"xplm_joy_rot_trm_dn", 23},
    {"xplm_joy_rud_lft", 24},
    {"xplm_joy_rud_cntr", 25},
    {"xplm_joy_rud_rgt", 26},
    {"xplm_joy_ail_lft", 27},
    {"xplm_joy_ail_cntr", 28},
    {"xplm_joy_ail_rgt", 29},
    {"xplm_joy_B_rud_lft", 30},
    {"xplm_joy_B_rud_rgt", 31},
    {"xplm_joy_look_up", 32},
    {"xplm_joy_look_dn", 33},
    {"xplm_joy_look_lft", 34},
    {"xplm_joy_look_rgt", 35},
    {"xplm_joy_glance_l", 36},
    {"xplm_joy_glance_r", 37},
    {"xplm_joy_v_fnh", 38},
    {"xplm_joy_v_fwh", 39},
    {"xplm_joy_v_tra", 40},
    {"xplm_joy_v_twr", 41},
    {"xplm_joy_v_run", 42},
    {"xplm_joy_v_cha", 43},
    {"xplm_joy_v_fr1", 44},
    {"xplm_joy_v_fr2", 45},
    {"xplm_joy_v_spo", 46},
    {"xplm_joy_flapsup", 47},
    {"xplm_joy_flapsdn", 48},
    {"xplm_joy_vctswpfwd", 49},
    {"xplm_joy_vctswpaft", 50},
    {"xplm_joy_gear_tog", 51},
    {"xplm_joy_gear_up", 52},
    {"xplm_joy_gear_down", 53},
    {"xplm_joy_lft_brake", 54},
    {"xplm_joy_rgt_brake", 55},
    {"xplm_joy_brakesREG", 56},
    {"xplm_joy_brakesMAX", 57},
    {"xplm_joy_speedbrake", 58},
    {"xplm_joy_ott_dis", 59},
    {"xplm_joy_ott_atr", 60},
    {"xplm_joy_ott_asi", 61},
    {"xplm_joy_ott_hdg", 62},
    {"xplm_joy_ott_alt", 63},
    {"xplm_joy_ott_vvi", 64},
    {"xplm_joy_tim_start", 65},
    {"xplm_joy_tim_reset", 66},
    {"xplm_joy_ecam_up", 67},
    {"xplm_joy_ecam_dn", 68},
    {"xplm_joy_fadec", 69},
    {"xplm_joy_yaw_damp", 70},
    {"xplm_joy_art_stab", 71},
    {"xplm_joy_chute", 72},
    {"xplm_joy_JATO", 73},
    {"xplm_joy_arrest", 74},
    {"xplm_joy_jettison", 75},
    {"xplm_joy_fuel_dump", 76},
    {"xplm_joy_puffsmoke", 77},
    {"xplm_joy_prerotate", 78},
    {"xplm_joy_UL_prerot", 79},
    {"xplm_joy_UL_collec", 80},
    {"xplm_joy_TOGA", 81},
    {"xplm_joy_shutdown", 82},
    {"xplm_joy_con_atc", 83},
    {"xplm_joy_fail_now", 84},
    {"xplm_joy_pause", 85},
    {"xplm_joy_rock_up", 86},
    {"xplm_joy_rock_dn", 87},
    {"xplm_joy_rock_lft", 88},
    {"xplm_joy_rock_rgt", 89},
    {"xplm_joy_rock_for", 90},
    {"xplm_joy_rock_aft", 91},
    {"xplm_joy_idle_hilo", 92},
    {"xplm_joy_lanlights", 93},
    {"xplm_joy_max", 94},
    // Host applications.
    {"xplm_Host_Unknown", 0},
    {"xplm_Host_XPlane", 1},
    {"xplm_Host_PlaneMaker", 2},
    {"xplm_Host_WorldMaker", 3},
    {"xplm_Host_Briefer", 4},
    {"xplm_Host_PartMaker", 5},
    {"xplm_Host_YoungsMod", 6},
    {"xplm_Host_XAuto", 7},
    // Languages.
    {"xplm_Language_Unknown", 0},
    {"xplm_Language_English", 1},
    {"xplm_Language_French", 2},
    {"xplm_Language_German", 3},
    {"xplm_Language_Italian", 4},
    {"xplm_Language_Spanish", 5},
    {"xplm_Language_Korean", 6},
    // Data file types.
    {"xplm_DataFile_Situation", 1},
    {"xplm_DataFile_ReplayMovie", 2},
    // Command phases.
    {"xplm_CommandBegin", 0},
    {"xplm_CommandContinue", 1},
    {"xplm_CommandEnd", 2},
};

PyObject* EmptyText() { return CV_TextResult("", 0); }
PyObject* TwoEmptyTexts() { return Py_BuildValue("(ss)", "", ""); }

// ---------------------------------------------------------------- speech, keys and buttons

PyObject* PY_XPLMSpeakString(PyObject* self, PyObject* args) {
    const char* text = nullptr;
    if (!PyArg_ParseTuple(args, "s", &text)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMSpeakString", CV_IntResult(0), XPLMSpeakString(text));
    return CV_IntResult(1);
}

CV_PLAIN_BINDING(kModule, XPLMCommandKeyStroke)

CV_PLAIN_BINDING(kModule, XPLMCommandButtonPress)

CV_PLAIN_BINDING(kModule, XPLMCommandButtonRelease)

PyObject* PY_XPLMGetVirtualKeyDescription(PyObject* self, PyObject* args) {
    unsigned char virtualKey = 0;
    if (!PyArg_ParseTuple(args, "b", &virtualKey)) return nullptr;
    const char* description = nullptr;
    CV_SDK_GUARD(kModule, "XPLMGetVirtualKeyDescription", EmptyText(),
                 description = XPLMGetVirtualKeyDescription(static_cast<char>(virtualKey)));
    return CV_TextResult(description);
}

PyObject* PY_XPLMReloadScenery(PyObject* self, PyObject* args) {
    if (!CV_Guarded(
            kModule, "XPLMReloadScenery", [] { XPLMReloadScenery(); }, CV_FUNCTION_ERROR))
        return CV_IntResult(0);
    return CV_IntResult(1);
}

// ---------------------------------------------------------------- paths

typedef void (*PathGetter)(char*);

// XPLMGetSystemPath and XPLMGetPrefsPath: the plain functions give the POSIX form, the native-path
// variants (scriptId not null) what the simulator gave.
PyObject* GetPath(const char* function, PathGetter getter, PyObject* scriptId) {
    char buffer[kPathBufferSize] = {};
    char separator = '/';
    CV_SDK_GUARD(kModule, function, EmptyText(), CV_NativePathsCall nativePaths(scriptId); getter(buffer);
                 if (scriptId == nullptr) separator = CV_Separator());
    buffer[kPathBufferSize - 1] = '\0';
    if (scriptId != nullptr) return CV_TextResult(buffer);
    return CV_TextResult(CV_PosixPath(buffer, separator));
}

PyObject* PY_XPLMGetSystemPath(PyObject* self, PyObject* args) {
    return GetPath("XPLMGetSystemPath", XPLMGetSystemPath, nullptr);
}

PyObject* PY_XPLMGetPrefsPath(PyObject* self, PyObject* args) {
    return GetPath("XPLMGetPrefsPath", XPLMGetPrefsPath, nullptr);
}

PyObject* PY_XPLMGetSystemPath_NP(PyObject* self, PyObject* args) {
    PyObject* scriptId = nullptr;
    if (!PyArg_ParseTuple(args, "O", &scriptId)) return nullptr;
    return GetPath("XPLMGetSystemPath", XPLMGetSystemPath, scriptId);
}

PyObject* PY_XPLMGetPrefsPath_NP(PyObject* self, PyObject* args) {
    PyObject* scriptId = nullptr;
    if (!PyArg_ParseTuple(args, "O", &scriptId)) return nullptr;
    return GetPath("XPLMGetPrefsPath", XPLMGetPrefsPath, scriptId);
}

PyObject* PY_XPLMGetDirectorySeparator(PyObject* self, PyObject* args) {
    const char* separator = nullptr;
    CV_SDK_GUARD(kModule, "XPLMGetDirectorySeparator", EmptyText(), separator = XPLMGetDirectorySeparator());
    return CV_TextResult(separator);
}

PyObject* PY_XPLMGetDirectorySeparator_NP(PyObject* self, PyObject* args) {
    PyObject* scriptId = nullptr;
    if (!PyArg_ParseTuple(args, "O", &scriptId)) return nullptr;
    const char* separator = nullptr;
    CV_SDK_GUARD(kModule, "XPLMGetDirectorySeparator", EmptyText(), CV_NativePathsCall nativePaths(scriptId);
                 separator = XPLMGetDirectorySeparator());
    return CV_TextResult(separator);
}

// XPLMExtractFileAndPath and its native-path variant (scriptId not null). The SDK splits a copy of
// the script's path: it returns the file part and cuts the copy to the folder part. The plain
// function hands the simulator the path in its own form; the folder part comes back in that form.
PyObject* ExtractFileAndPath(const char* fullPath, PyObject* scriptId) {
    std::string path = fullPath;
    std::vector<char> buffer;
    const char* file = nullptr;
    CV_SDK_GUARD(kModule, "XPLMExtractFileAndPath", TwoEmptyTexts(),
                 if (scriptId == nullptr) path = CV_PathToSimForm(path, CV_Separator());
                 buffer.assign(path.begin(), path.end()); buffer.push_back('\0');
                 CV_NativePathsCall nativePaths(scriptId); file = XPLMExtractFileAndPath(buffer.data()));
    buffer.back() = '\0';
    return Py_BuildValue("(NN)", CV_TextResult(file), CV_TextResult(buffer.data()));
}

PyObject* PY_XPLMExtractFileAndPath(PyObject* self, PyObject* args) {
    const char* fullPath = nullptr;
    if (!PyArg_ParseTuple(args, "s", &fullPath)) return nullptr;
    return ExtractFileAndPath(fullPath, nullptr);
}

PyObject* PY_XPLMExtractFileAndPath_NP(PyObject* self, PyObject* args) {
    PyObject* scriptId = nullptr;
    const char* fullPath = nullptr;
    if (!PyArg_ParseTuple(args, "Os", &scriptId, &fullPath)) return nullptr;
    return ExtractFileAndPath(fullPath, scriptId);
}

// XPLMGetDirectoryContents and its native-path variant, whose arguments start with the script id.
PyObject* GetDirectoryContents(PyObject* args, bool nativePaths) {
    const char* function = "XPLMGetDirectoryContents";
    const char* folder = nullptr;
    long firstReturn = 0, nameBufSize = 0, indexCount = 0;
    PyObject *scriptId = nullptr, *outNames = nullptr, *outIndices = nullptr, *outTotal = nullptr,
             *outReturned = nullptr;
    if (!nativePaths) {
        if (!PyArg_ParseTuple(args, "slOlOlOO", &folder, &firstReturn, &outNames, &nameBufSize, &outIndices,
                              &indexCount, &outTotal, &outReturned))
            return nullptr;
    } else if (!PyArg_ParseTuple(args, "OslOlOlOO", &scriptId, &folder, &firstReturn, &outNames, &nameBufSize,
                                 &outIndices, &indexCount, &outTotal, &outReturned)) {
        return nullptr;
    }
    for (PyObject* out : {outNames, outIndices, outTotal, outReturned})
        if (!CV_CheckOutputList(out)) return nullptr;

    // What the script asks for is allocated here, so it is bounded here.
    if (firstReturn < 0 || firstReturn > INT_MAX) {
        PrintExceptionf(kModule, function, "inFirstReturn %ld is outside 0 to %d", firstReturn, INT_MAX);
        return Py_BuildValue("(i)", 0);
    }
    if (nameBufSize < 0 || nameBufSize > kMaxFileNameBufSize) {
        PrintExceptionf(kModule, function, "inFileNameBufSize %ld is outside 0 to %ld", nameBufSize,
                        kMaxFileNameBufSize);
        return Py_BuildValue("(i)", 0);
    }
    if (indexCount < 0 || indexCount > kMaxIndexCount) {
        PrintExceptionf(kModule, function, "inIndexCount %ld is outside 0 to %ld", indexCount, kMaxIndexCount);
        return Py_BuildValue("(i)", 0);
    }

    // One byte more than the SDK is told, so the names always end inside the buffer; one index
    // entry (a pointer) per index the script asked for.
    std::vector<char> names(static_cast<size_t>(nameBufSize) + 1, '\0');
    std::vector<char*> indices(static_cast<size_t>(indexCount), nullptr);
    int total = 0, returned = 0;
    int* totalPointer = outTotal == Py_None ? nullptr : &total;
    int* returnedPointer = outReturned == Py_None ? nullptr : &returned;
    int result = 0;
    CV_SDK_GUARD(
        kModule, function, CV_IntResult(0), CV_NativePathsCall nativePathsCall(scriptId);
        result = XPLMGetDirectoryContents(folder, static_cast<int>(firstReturn), names.data(),
                                          static_cast<int>(nameBufSize), indices.empty() ? nullptr : indices.data(),
                                          static_cast<int>(indexCount), totalPointer, returnedPointer));
    names.back() = '\0';

    // outFileNames gets the buffer as one text, so only its first name; outIndices every name
    // returned. Without outReturnedFiles the number returned is unknown, and taken as none.
    if (outNames != Py_None && !CV_AppendOutput(outNames, CV_TextResult(names.data()))) return nullptr;
    if (outIndices != Py_None) {
        for (const std::string& name :
             CV_NamesFromIndices(names.data(), names.size(), indices.data(), static_cast<int>(indices.size()),
                                 returnedPointer ? returned : 0))
            if (!CV_AppendOutput(outIndices, CV_TextResult(name))) return nullptr;
    }
    if (!CV_StoreOutput(outTotal, CV_IntResult(total)) || !CV_StoreOutput(outReturned, CV_IntResult(returned)))
        return nullptr;
    return Py_BuildValue("(i)", result);
}

PyObject* PY_XPLMGetDirectoryContents(PyObject* self, PyObject* args) { return GetDirectoryContents(args, false); }

PyObject* PY_XPLMGetDirectoryContents_NP(PyObject* self, PyObject* args) { return GetDirectoryContents(args, true); }

// ---------------------------------------------------------------- versions, language, log

CV_PLAIN_BINDING(kModule, XPLMInitialized)

PyObject* PY_XPLMGetVersions(PyObject* self, PyObject* args) {
    int xplaneVersion = 0, xplmVersion = 0;
    XPLMHostApplicationID host = xplm_Host_Unknown;
    CV_SDK_GUARD(kModule, "XPLMGetVersions", Py_BuildValue("(iii)", 0, 0, 0),
                 XPLMGetVersions(&xplaneVersion, &xplmVersion, &host));
    return Py_BuildValue("(iii)", xplaneVersion, xplmVersion, host);
}

CV_PLAIN_BINDING(kModule, XPLMGetLanguage)

PyObject* PY_XPLMDebugString(PyObject* self, PyObject* args) {
    const char* text = nullptr;
    if (!PyArg_ParseTuple(args, "s", &text)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMDebugString", CV_IntResult(0), XPLMDebugString(text));
    return CV_IntResult(1);
}

// ---------------------------------------------------------------- error callbacks

PyObject* PY_XPLMSetErrorCallback(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callback = nullptr;
    if (!PyArg_ParseTuple(args, "OO", &scriptId, &callback)) return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    int found = 0, index = 0;
    _CallbackList* entry = CVTestTable->FindCallback(ErrorCallbackList, scriptId, nullptr, &found, &index);
    if (Py_IS_TYPE(callback, &PyMethod_Type)) {
        // One error callback per script: a second method leaves the first in place.
        if (!found) CVTestTable->AddCallback(&ErrorCallbackList, scriptId, nullptr, callback, nullptr);
    } else if (found) {
        CVTestTable->DeleteCallback(&ErrorCallbackList, entry, index);
    } else {
        CV_ReportUnknownCallback(kModule, "XPLMSetErrorCallback", scriptName, CV_MatchedBy::Handle);
    }

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMSetErrorCallback",
                              CV_FormatText("pScriptId = %lx, Script Name = %s, TempCallback = %lx\n", CV_Hex(scriptId),
                                            scriptName, CV_Hex(callback)),
                              {ErrorCallbackList});
    return CV_IntResult(1);
}

PyObject* PY_CV_RemoveErrorCallback(PyObject* self, PyObject* args) {
    PyObject *scriptId = nullptr, *callback = nullptr;
    if (!PyArg_ParseTuple(args, "OO", &scriptId, &callback)) return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    if (Py_IS_TYPE(callback, &PyMethod_Type)) {
        int index = 0;
        _CallbackList* entry = CVTestTable->FindCallback(ErrorCallbackList, scriptId, nullptr, nullptr, &index);
        CV_Unregister(kModule, "CV_RemoveErrorCallback", &ErrorCallbackList, entry, index, scriptName,
                      CV_MatchedBy::Refcon, [] {});
    }

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("CV_RemoveErrorCallback",
                              CV_FormatText("pScriptId = %lx, Script Name = %s\n", CV_Hex(scriptId), scriptName),
                              {ErrorCallbackList});
    return CV_IntResult(1);
}

// ---------------------------------------------------------------- symbols and data files

PyObject* PY_XPLMFindSymbol(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMFindSymbol);
    const char* name = nullptr;
    if (!PyArg_ParseTuple(args, "s", &name)) return nullptr;
    void* symbol = nullptr;
    CV_SDK_GUARD(kModule, "XPLMFindSymbol", CV_IntResult(0), symbol = XPLMFindSymbol_ptr(name));
    return CV_HandleResult(symbol);
}

// XPLMLoadDataFile and XPLMSaveDataFile: a file type and a path, and the SDK's answer.
PyObject* DataFile(PyObject* args, const char* function, int (*sdk)(XPLMDataFileType, const char*)) {
    int fileType = 0;
    const char* path = nullptr;
    if (!PyArg_ParseTuple(args, "is", &fileType, &path)) return nullptr;
    int result = 0;
    CV_SDK_GUARD(kModule, function, CV_IntResult(0), result = sdk(fileType, path));
    return CV_IntResult(result);
}

PyObject* PY_XPLMLoadDataFile(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMLoadDataFile);
    return DataFile(args, "XPLMLoadDataFile", XPLMLoadDataFile_ptr);
}

PyObject* PY_XPLMSaveDataFile(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMSaveDataFile);
    return DataFile(args, "XPLMSaveDataFile", XPLMSaveDataFile_ptr);
}

// ---------------------------------------------------------------- commands

PyObject* PY_XPLMFindCommand(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMFindCommand);
    const char* name = nullptr;
    if (!PyArg_ParseTuple(args, "s", &name)) return nullptr;
    XPLMCommandRef command = nullptr;
    CV_SDK_GUARD(kModule, "XPLMFindCommand", CV_IntResult(0), command = XPLMFindCommand_ptr(name));
    return CV_HandleResult(command);
}

// XPLMCommandBegin, XPLMCommandEnd and XPLMCommandOnce: one command ref, no result.
PyObject* RunCommand(PyObject* args, const char* function, void (*run)(XPLMCommandRef)) {
    XPLMCommandRef command = nullptr;
    if (!PyArg_ParseTuple(args, "O&", CV_PointerArg, &command)) return nullptr;
    CV_SDK_GUARD(kModule, function, CV_IntResult(0), run(command));
    return CV_IntResult(1);
}

PyObject* PY_XPLMCommandBegin(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMCommandBegin);
    return RunCommand(args, "XPLMCommandBegin", XPLMCommandBegin_ptr);
}

PyObject* PY_XPLMCommandEnd(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMCommandEnd);
    return RunCommand(args, "XPLMCommandEnd", XPLMCommandEnd_ptr);
}

PyObject* PY_XPLMCommandOnce(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMCommandOnce);
    return RunCommand(args, "XPLMCommandOnce", XPLMCommandOnce_ptr);
}

PyObject* PY_XPLMCreateCommand(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMCreateCommand);
    const char *name = nullptr, *description = nullptr;
    if (!PyArg_ParseTuple(args, "ss", &name, &description)) return nullptr;
    XPLMCommandRef command = nullptr;
    CV_SDK_GUARD(kModule, "XPLMCreateCommand", CV_IntResult(0), command = XPLMCreateCommand_ptr(name, description));
    return CV_HandleResult(command);
}

// What the simulator was told for each command handler record it holds: the command and the phase
// it runs in. Scripts find their record by handler and refcon alone, but the simulator lets go of a
// registration only when it is given the same command and phase; a record unregistered with others
// leaves its list and stays held, so the simulator's calls never reach freed memory.
struct CommandRegistration {
    XPLMCommandRef command;
    int before;
};
std::unordered_map<const _CallbackList*, CommandRegistration> gCV_CommandRegistrations;

PyObject* PY_XPLMRegisterCommandHandler(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMRegisterCommandHandler);
    PyObject *scriptId = nullptr, *handler = nullptr;
    int before = 0;
    void *command = nullptr, *refcon = nullptr;
    if (!PyArg_ParseTuple(args, "OO&OiO&", &scriptId, CV_PointerArg, &command, &handler, &before, CV_PointerArg,
                          &refcon))
        return nullptr;

    _CallbackList* entry = CVTestTable->AddCallback(&CommandCallbackList, scriptId, nullptr, handler, refcon);
    if (!CV_Guarded(kModule, "XPLMRegisterCommandHandler",
                    [&] { XPLMRegisterCommandHandler_ptr(command, CV_CommandCallback, before, entry); })) {
        CVTestTable->DeleteCallback(&CommandCallbackList, entry, -1);
        return CV_IntResult(0);
    }
    gCV_CommandRegistrations[entry] = CommandRegistration{command, before};
    CV_Hold(&CommandCallbackList, entry, entry);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace("XPLMRegisterCommandHandler",
                              CV_FormatText("pScriptId = %lx, inCommand = %ld, inBefore = %d, inRefcon = %ld\n",
                                            CV_Hex(scriptId), CV_Dec(command), before, CV_Dec(refcon)),
                              {CommandCallbackList});
    return CV_IntResult(1);
}

PyObject* PY_XPLMUnregisterCommandHandler(PyObject* self, PyObject* args) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMUnregisterCommandHandler);
    PyObject *scriptId = nullptr, *handler = nullptr;
    int before = 0;
    void *command = nullptr, *refcon = nullptr;
    if (!PyArg_ParseTuple(args, "OO&OiO&", &scriptId, CV_PointerArg, &command, &handler, &before, CV_PointerArg,
                          &refcon))
        return nullptr;

    char scriptName[256];
    CV_GetScriptNameForMessages(scriptId, scriptName);
    int found = 0, index = 0;
    _CallbackList* entry = CVTestTable->FindCallback(CommandCallbackList, scriptId, handler, refcon, &found, &index);
    if (!CV_Unregister(kModule, "XPLMUnregisterCommandHandler", &CommandCallbackList, entry, index, scriptName,
                       CV_MatchedBy::Refcon, [&] {
                           XPLMUnregisterCommandHandler_ptr(command, CV_CommandCallback, before, entry);
                           auto registration = gCV_CommandRegistrations.find(entry);
                           if (registration != gCV_CommandRegistrations.end() &&
                               registration->second.command == command && registration->second.before == before) {
                               gCV_CommandRegistrations.erase(registration);
                               CV_Release(&CommandCallbackList, entry);
                           }
                       }))
        return CV_IntResult(0);

    if (gCV_DebugCallbacks)
        CV_DebugCallbackTrace(
            "XPLMUnregisterCommandHandler",
            CV_FormatText("pScriptId = %lx, Script Name = %s, inCommand = %ld, inBefore = %d, inRefcon = %ld\n",
                          CV_Hex(scriptId), scriptName, CV_Dec(command), before, CV_Dec(refcon)),
            {CommandCallbackList});
    return CV_IntResult(1);
}

PyMethodDef XPLMUtilitiesMethods[] = {
    {"XPLMSpeakString", PY_XPLMSpeakString, METH_VARARGS, "Speak and Display String."},
    {"XPLMCommandKeyStroke", PY_XPLMCommandKeyStroke, METH_VARARGS, "Send a Command Key."},
    {"XPLMCommandButtonPress", PY_XPLMCommandButtonPress, METH_VARARGS, "Send a Command Button Press."},
    {"XPLMCommandButtonRelease", PY_XPLMCommandButtonRelease, METH_VARARGS, "Send a Command Button Release."},
    {"XPLMGetVirtualKeyDescription", PY_XPLMGetVirtualKeyDescription, METH_VARARGS, "Get Virtual Key Description."},
    {"XPLMReloadScenery", PY_XPLMReloadScenery, METH_VARARGS, "Reload the Scenery."},
    {"XPLMGetSystemPath", PY_XPLMGetSystemPath, METH_VARARGS, "Get the XPlane System Path."},
    {"XPLMGetPrefsPath", PY_XPLMGetPrefsPath, METH_VARARGS, "Get the Xplane Pref Path."},
    {"XPLMGetDirectorySeparator", PY_XPLMGetDirectorySeparator, METH_VARARGS, "Get the OS Directory Separator."},
    {"XPLMExtractFileAndPath", PY_XPLMExtractFileAndPath, METH_VARARGS, "Extract File and Path."},
    {"XPLMGetDirectoryContents", PY_XPLMGetDirectoryContents, METH_VARARGS, "Get the Directory Contents."},
    {"XPLMGetSystemPath_NP", PY_XPLMGetSystemPath_NP, METH_VARARGS, "Get the XPlane System Path using Native Paths."},
    {"XPLMGetPrefsPath_NP", PY_XPLMGetPrefsPath_NP, METH_VARARGS, "Get the Xplane Pref Path using Native Paths."},
    {"XPLMGetDirectorySeparator_NP", PY_XPLMGetDirectorySeparator_NP, METH_VARARGS,
     "Get the OS Directory Separator using Native Paths."},
    {"XPLMExtractFileAndPath_NP", PY_XPLMExtractFileAndPath_NP, METH_VARARGS,
     "Extract File and Path using Native Paths."},
    {"XPLMGetDirectoryContents_NP", PY_XPLMGetDirectoryContents_NP, METH_VARARGS,
     "Get the Directory Contents using Native Paths."},
    {"XPLMInitialized", PY_XPLMInitialized, METH_VARARGS, "Is XPLM Initialized Properly."},
    {"XPLMGetVersions", PY_XPLMGetVersions, METH_VARARGS, "Get Xplane and XPLM Versions."},
    {"XPLMGetLanguage", PY_XPLMGetLanguage, METH_VARARGS, "Get Language."},
    {"XPLMDebugString", PY_XPLMDebugString, METH_VARARGS, "Write Debug String to Error.out."},
    {"XPLMSetErrorCallback", PY_XPLMSetErrorCallback, METH_VARARGS, "Set the callback for errors."},
    {"CV_RemoveErrorCallback", PY_CV_RemoveErrorCallback, METH_VARARGS, "Remove the callback for errors."},
    {"XPLMFindSymbol", PY_XPLMFindSymbol, METH_VARARGS, "Find symbol."},
    {"XPLMLoadDataFile", PY_XPLMLoadDataFile, METH_VARARGS, "Load Data File."},
    {"XPLMSaveDataFile", PY_XPLMSaveDataFile, METH_VARARGS, "Save Data File."},
    {"XPLMFindCommand", PY_XPLMFindCommand, METH_VARARGS, "Find the Command."},
    {"XPLMCommandBegin", PY_XPLMCommandBegin, METH_VARARGS, "Begin the Command."},
    {"XPLMCommandEnd", PY_XPLMCommandEnd, METH_VARARGS, "End the Command."},
    {"XPLMCommandOnce", PY_XPLMCommandOnce, METH_VARARGS, "Do Command Once."},
    {"XPLMCreateCommand", PY_XPLMCreateCommand, METH_VARARGS, "Create Commmand."},
    {"XPLMRegisterCommandHandler", PY_XPLMRegisterCommandHandler, METH_VARARGS, "Register the Command Callback."},
    {"XPLMUnregisterCommandHandler", PY_XPLMUnregisterCommandHandler, METH_VARARGS,
     "Unregister the Command Callback."},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

std::string CV_PathToSimForm(const std::string& path, char separator) {
    if (separator != ':') return path;
    std::string converted = path;
    for (char& c : converted)
        if (c == '/') c = ':';
    return converted;
}

std::vector<std::string> CV_NamesFromIndices(const char* buffer, size_t bufferSize, char* const* indices,
                                             int indexCount, int returned) {
    std::vector<std::string> names;
    if (buffer == nullptr || indices == nullptr || bufferSize == 0) return names;
    const int count = returned < 0 ? 0 : (returned > indexCount ? indexCount : returned);
    const uintptr_t start = reinterpret_cast<uintptr_t>(buffer);
    const uintptr_t end = start + bufferSize;
    for (int i = 0; i < count; ++i) {
        const uintptr_t at = reinterpret_cast<uintptr_t>(indices[i]);
        if (at < start || at >= end) break;
        const char* name = buffer + (at - start);
        names.emplace_back(name, strnlen(name, end - at));
    }
    return names;
}

PyObject* initXPLMUtilities() { return CV_CreateModule("XPLMUtilities", XPLMUtilitiesMethods, XPLMUtilitiesConstants); }
