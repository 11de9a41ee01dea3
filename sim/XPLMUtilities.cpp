// XPLMUtilities: paths, directory listing, data files, versions, the log, error callbacks, symbol
// lookup, simulated keys and commands.
#include "XPLMUtilities.h"

#include <dirent.h>
#include <dlfcn.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "world/Commands.h"
#include "world/DataFiles.h"
#include "world/Keys.h"
#include "world/SceneryLibrary.h"
#include "world/Terrain.h"
#include "world/World.h"

namespace {

// The SDK's buffer size for XPLMGetSystemPath and XPLMGetPrefsPath.
constexpr size_t kPathBufferSize = 512;

// The functions SDK 2.10 added; a 2.00 simulator does not have them.
const char* const kAddedIn210[] = {"XPLMRemoveMenuItem", "XPLMCreateFlightLoop", "XPLMDestroyFlightLoop",
                                   "XPLMScheduleFlightLoop", "XPLMLoadObjectAsync"};

void CopyPath(const char* function, char* out, const std::string& path) {
    if (out == nullptr) {
        xpsim::ReportMisuse(function, "null buffer");
        return;
    }
    if (!xpsim::CopyOut(out, kPathBufferSize, path))
        xpsim::Note(std::string(function) + ": the path is longer than 511 bytes and was cut");
}

// The command behind a handle; reports anything that is not one.
xpsim::CommandRecord* Command(XPLMCommandRef ref, const char* function) {
    xpsim::CommandRecord* command = xpsim::CommandFromHandle(ref);
    if (command == nullptr) {
        char text[64];
        std::snprintf(text, sizeof text, "%p is not a command", ref);
        xpsim::ReportMisuse(function, text);
    }
    return command;
}

}  // namespace

// ------------------------------------------------------------------ file utilities

void XPLMGetSystemPath(char* outSystemPath) { CopyPath("XPLMGetSystemPath", outSystemPath, xpsim::SystemPath()); }

void XPLMGetPrefsPath(char* outPrefsPath) { CopyPath("XPLMGetPrefsPath", outPrefsPath, xpsim::PrefsFilePath()); }

const char* XPLMGetDirectorySeparator(void) { return "/"; }

char* XPLMExtractFileAndPath(char* inFullPath) {
    if (inFullPath == nullptr) {
        xpsim::ReportMisuse("XPLMExtractFileAndPath", "null path");
        return nullptr;
    }
    // The folder stays in the buffer, cut at the last separator; the file name follows it.
    char* separator = std::strrchr(inFullPath, '/');
    if (separator == nullptr) return inFullPath;
    *separator = '\0';
    return separator + 1;
}

int XPLMGetDirectoryContents(const char* inDirectoryPath, int inFirstReturn, char* outFileNames,
                             int inFileNameBufSize, char** outIndices, int inIndexCount, int* outTotalFiles,
                             int* outReturnedFiles) {
    const char* const function = "XPLMGetDirectoryContents";
    if (outTotalFiles) *outTotalFiles = 0;
    if (outReturnedFiles) *outReturnedFiles = 0;
    if (outFileNames != nullptr && inFileNameBufSize > 0) outFileNames[0] = '\0';
    if (outIndices != nullptr && inIndexCount > 0) outIndices[0] = nullptr;
    if (inDirectoryPath == nullptr) {
        xpsim::ReportMisuse(function, "null folder path");
        return 0;
    }
    if (outFileNames == nullptr || inFileNameBufSize <= 0) {
        xpsim::ReportMisuse(function, "no name buffer");
        return 0;
    }
    if (inFirstReturn < 0 || inIndexCount < 0) {
        xpsim::ReportMisuse(function, "negative first index or index count");
        return 0;
    }
    DIR* dir = opendir(inDirectoryPath);
    if (dir == nullptr) return 0;
    std::vector<std::string> names;
    while (dirent* entry = readdir(dir)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") names.push_back(name);
    }
    closedir(dir);
    // Sorted, so that every listing of the same folder comes in the same order.
    std::sort(names.begin(), names.end());
    if (outTotalFiles) *outTotalFiles = int(names.size());

    // Each name takes its length plus a terminator, and one byte stays for the closing empty string;
    // each index takes a slot, and one slot stays for the closing null.
    size_t used = 0;
    int returned = 0;
    bool everything = true;
    const size_t bufferSize = size_t(inFileNameBufSize);
    for (size_t i = size_t(inFirstReturn); i < names.size(); ++i) {
        const std::string& name = names[i];
        if (used + name.size() + 2 > bufferSize ||
            (outIndices != nullptr && returned + 2 > inIndexCount)) {
            everything = false;
            break;
        }
        std::memcpy(outFileNames + used, name.c_str(), name.size() + 1);
        if (outIndices != nullptr) outIndices[returned] = outFileNames + used;
        used += name.size() + 1;
        ++returned;
    }
    outFileNames[used] = '\0';
    if (outIndices != nullptr && returned < inIndexCount) outIndices[returned] = nullptr;
    if (outReturnedFiles) *outReturnedFiles = returned;
    return everything ? 1 : 0;
}

// ------------------------------------------------------------------ versions, log, errors

int XPLMInitialized(void) { return 1; }

void XPLMGetVersions(int* outXPlaneVersion, int* outXPLMVersion, XPLMHostApplicationID* outHostID) {
    if (outXPlaneVersion) *outXPlaneVersion = xpsim::kXPlaneVersion;
    if (outXPLMVersion) *outXPLMVersion = xpsim::SdkLevel();
    if (outHostID) *outHostID = xplm_Host_XPlane;
}

XPLMLanguageCode XPLMGetLanguage(void) { return xplm_Language_English; }

void XPLMDebugString(const char* inString) {
    if (inString == nullptr) {
        xpsim::ReportMisuse("XPLMDebugString", "null string");
        return;
    }
    const std::string text = inString;
    xpsim::AppendToLog(text);
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

void XPLMSetErrorCallback(XPLMError_f inCallback) { xpsim::SetErrorCallback(xpsim::CurrentPlugin(), inCallback); }

void* XPLMFindSymbol(const char* inString) {
    if (inString == nullptr) {
        xpsim::ReportMisuse("XPLMFindSymbol", "null name");
        return nullptr;
    }
    const std::string name = inString;
    if (xpsim::SdkLevel() < 200) return nullptr;
    if (xpsim::SdkLevel() < 210 &&
        std::find(std::begin(kAddedIn210), std::end(kAddedIn210), name) != std::end(kAddedIn210))
        return nullptr;
    // Only SDK functions: every one starts with "XP" (XPLM..., XP... widgets, XPU... utilities).
    if (name.compare(0, 2, "XP") != 0) return nullptr;
    Dl_info self;
    if (dladdr(reinterpret_cast<void*>(&XPLMFindSymbol), &self) == 0 || self.dli_fname == nullptr) return nullptr;
    void* library = dlopen(self.dli_fname, RTLD_NOW | RTLD_NOLOAD);
    if (library == nullptr) return nullptr;
    void* symbol = dlsym(library, inString);
    dlclose(library);
    // ... and only those defined here, not one of the same name in a library this one uses.
    Dl_info found;
    if (symbol == nullptr || dladdr(symbol, &found) == 0 || found.dli_fbase != self.dli_fbase) return nullptr;
    return symbol;
}

void XPLMSpeakString(const char* inString) {
    // There is no voice and no screen; what would be spoken goes to the log.
    if (inString == nullptr) {
        xpsim::ReportMisuse("XPLMSpeakString", "null string");
        return;
    }
    xpsim::Note(std::string("XPLMSpeakString: ") + inString);
}

// ------------------------------------------------------------------ data files

int XPLMLoadDataFile(XPLMDataFileType inFileType, const char* inFilePath) {
    return xpsim::LoadDataFile(inFileType, inFilePath);
}

int XPLMSaveDataFile(XPLMDataFileType inFileType, const char* inFilePath) {
    return xpsim::SaveDataFile(inFileType, inFilePath);
}

// ------------------------------------------------------------------ keys and buttons

void XPLMSimulateKeyPress(int inKeyType, int inKey) {
    // The key goes to the simulator only, not through the plugins' sniffers, windows and hot keys.
    const unsigned char character = static_cast<unsigned char>(inKey);
    const int virtualKey = xpsim::KeyForCharacter(character, 0).virtualKey;
    xpsim::Note("simulated key press " + xpsim::DescribeKey(char(character), inKeyType, virtualKey));
    xpsim::SimHandlesKey(char(character), inKeyType, virtualKey);
}

void XPLMCommandKeyStroke(XPLMCommandKeyID inKey) { xpsim::CommandKeyStroke(inKey); }

void XPLMCommandButtonPress(XPLMCommandButtonID inButton) { xpsim::CommandButton(inButton, true); }

void XPLMCommandButtonRelease(XPLMCommandButtonID inButton) { xpsim::CommandButton(inButton, false); }

const char* XPLMGetVirtualKeyDescription(char inVirtualKey) {
    return xpsim::VirtualKeyDescription(static_cast<unsigned char>(inVirtualKey));
}

// ------------------------------------------------------------------ commands

XPLMCommandRef XPLMFindCommand(const char* inName) {
    if (inName == nullptr) {
        xpsim::ReportMisuse("XPLMFindCommand", "null name");
        return nullptr;
    }
    return xpsim::FindCommand(inName);
}

XPLMCommandRef XPLMCreateCommand(const char* inName, const char* inDescription) {
    if (inName == nullptr || *inName == '\0') {
        xpsim::ReportMisuse("XPLMCreateCommand", "no command name");
        return nullptr;
    }
    return xpsim::CreateCommand(inName, inDescription ? inDescription : "");
}

void XPLMCommandBegin(XPLMCommandRef inCommand) {
    if (xpsim::CommandRecord* command = Command(inCommand, "XPLMCommandBegin"))
        xpsim::BeginCommand(*command, "XPLMCommandBegin");
}

void XPLMCommandEnd(XPLMCommandRef inCommand) {
    if (xpsim::CommandRecord* command = Command(inCommand, "XPLMCommandEnd"))
        xpsim::EndCommand(*command, "XPLMCommandEnd");
}

void XPLMCommandOnce(XPLMCommandRef inCommand) {
    if (xpsim::CommandRecord* command = Command(inCommand, "XPLMCommandOnce")) xpsim::RunCommandOnce(*command);
}

void XPLMRegisterCommandHandler(XPLMCommandRef inComand, XPLMCommandCallback_f inHandler, int inBefore,
                                void* inRefcon) {
    if (xpsim::CommandRecord* command = Command(inComand, "XPLMRegisterCommandHandler"))
        xpsim::RegisterCommandHandler(*command, inHandler, inBefore, inRefcon);
}

void XPLMUnregisterCommandHandler(XPLMCommandRef inComand, XPLMCommandCallback_f inHandler, int inBefore,
                                  void* inRefcon) {
    if (xpsim::CommandRecord* command = Command(inComand, "XPLMUnregisterCommandHandler"))
        xpsim::UnregisterCommandHandler(*command, inHandler, inBefore, inRefcon);
}

// ------------------------------------------------------------------ not yet simulated

// Reads the terrain file and the scenery packages' libraries again.
void XPLMReloadScenery(void) {
    xpsim::LoadTerrain();
    xpsim::LoadSceneryLibrary();
}
