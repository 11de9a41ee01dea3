// The simulated world: folder, SDK level, log, time and calling context.
#include "world/World.h"

#include <dlfcn.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <vector>

#include "world/Aircraft.h"
#include "world/Camera.h"
#include "world/Commands.h"
#include "world/DataRefs.h"
#include "world/Drawing.h"
#include "world/Graphics.h"
#include "world/Keys.h"
#include "world/Menus.h"
#include "world/Navigation.h"
#include "world/Objects.h"
#include "world/Plugins.h"
#include "world/Position.h"
#include "world/SceneryLibrary.h"
#include "world/Scheduler.h"
#include "world/Screen.h"
#include "world/Terrain.h"
#include "world/Widgets.h"
#include "world/Windows.h"

namespace xpsim {
namespace {

// Paths relative to the system folder.
const char* const kAircraftFolder = "Aircraft/General Aviation/Cessna 172SP/";
const char* const kAircraftFile = "Cessna_172SP.acf";
const char* const kPrefsFile = "Output/preferences/Set X-Plane.prf";

struct WorldState {
    std::string root;  // absolute, trailing "/"; empty until PrepareRoot
    int sdkLevel = 210;
    double fps = 20.0;
    int frame = 0;
    double flightTime = 0.0;
    bool logStarted = false;
    int currentPlugin = kSimId;
    int callDepth = 0;
    bool inErrorCallback = false;
    std::map<int, void (*)(const char*)> errorCallbacks;
};

WorldState& state() {
    static WorldState s;
    return s;
}

std::string WorkingDirectory() {
    char buffer[PATH_MAX];
    if (getcwd(buffer, sizeof buffer) == nullptr) return "/";
    std::string dir = buffer;
    if (dir.empty() || dir.back() != '/') dir += '/';
    return dir;
}

bool IsDirectory(const std::string& path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// mkdir -p: creates every missing folder along the path.
bool MakeFolders(const std::string& path, std::string& error) {
    std::string partial;
    size_t pos = 0;
    while (pos <= path.size()) {
        size_t next = path.find('/', pos);
        if (next == std::string::npos) next = path.size();
        partial = path.substr(0, next);
        pos = next + 1;
        if (partial.empty()) continue;
        if (IsDirectory(partial)) continue;
        if (mkdir(partial.c_str(), 0755) != 0 && errno != EEXIST) {
            error = "cannot create folder " + partial + ": " + std::strerror(errno);
            return false;
        }
        if (!IsDirectory(partial)) {
            error = partial + " exists and is not a folder";
            return false;
        }
    }
    return true;
}

bool WriteFileIfMissing(const std::string& path, const std::string& content, std::string& error) {
    struct stat st;
    if (stat(path.c_str(), &st) == 0) return true;
    FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) {
        error = "cannot create " + path + ": " + std::strerror(errno);
        return false;
    }
    std::fwrite(content.data(), 1, content.size(), file);
    std::fclose(file);
    return true;
}

}  // namespace

// ------------------------------------------------------------------ the simulator folder

bool PrepareRoot(const std::string& dir, std::string& error) {
    if (dir.empty()) {
        error = "the root folder is empty";
        return false;
    }
    if (!MakeFolders(dir, error)) return false;
    char resolved[PATH_MAX];
    if (realpath(dir.c_str(), resolved) == nullptr) {
        error = "cannot resolve " + dir + ": " + std::strerror(errno);
        return false;
    }
    std::string root = resolved;
    if (root.empty() || root.back() != '/') root += '/';
    if (access(root.c_str(), W_OK | X_OK) != 0) {
        error = "the root folder " + root + " is not writable";
        return false;
    }
    if (!MakeFolders(root + "Resources/plugins", error)) return false;
    if (!MakeFolders(root + "Output/preferences", error)) return false;
    if (!MakeFolders(root + kAircraftFolder, error)) return false;
    if (!WriteFileIfMissing(root + kAircraftFolder + kAircraftFile,
                            "I\n1000 Version\nACF\n\nP acf/_name Cessna 172SP\n", error))
        return false;
    state().root = root;
    return true;
}

std::string SystemPath() {
    return state().root.empty() ? WorkingDirectory() : state().root;
}

std::string PluginsFolder() { return SystemPath() + "Resources/plugins/"; }

std::string PrefsFilePath() { return SystemPath() + kPrefsFile; }

std::string UserAircraftFolder() { return SystemPath() + kAircraftFolder; }

std::string UserAircraftFile() { return kAircraftFile; }

// ------------------------------------------------------------------ SDK level

bool SetSdkLevel(int level) {
    if (level != 102 && level != 200 && level != 210) return false;
    state().sdkLevel = level;
    return true;
}

int SdkLevel() { return state().sdkLevel; }

std::string SdkLevelText() {
    switch (state().sdkLevel) {
        case 102: return "1.02";
        case 200: return "2.00";
        default: return "2.10";
    }
}

std::string LibraryPath() {
    Dl_info info;
    if (dladdr(reinterpret_cast<void*>(&LibraryPath), &info) == 0 || info.dli_fname == nullptr)
        return "";
    char resolved[PATH_MAX];
    if (realpath(info.dli_fname, resolved) == nullptr) return info.dli_fname;
    return resolved;
}

bool InstallLibraryLink(std::string& error) {
    const std::string link = PluginsFolder() + "XPLM_64.so";
    struct stat st;
    if (lstat(link.c_str(), &st) == 0) {
        if (!S_ISLNK(st.st_mode)) {
            error = link + " exists and is not the link xpsim makes; remove it";
            return false;
        }
        if (unlink(link.c_str()) != 0) {
            error = "cannot remove " + link + ": " + std::strerror(errno);
            return false;
        }
    }
    if (state().sdkLevel < 200) return true;
    const std::string target = LibraryPath();
    if (target.empty()) {
        error = "cannot find the file XPLM_64.so was loaded from";
        return false;
    }
    if (symlink(target.c_str(), link.c_str()) != 0) {
        error = "cannot link " + link + " to " + target + ": " + std::strerror(errno);
        return false;
    }
    return true;
}

// ------------------------------------------------------------------ log

std::string LogPath() { return SystemPath() + "Log.txt"; }

void StartLog() {
    WorldState& s = state();
    FILE* file = std::fopen(LogPath().c_str(), "wb");
    if (file == nullptr) {
        std::fprintf(stderr, "xpsim: cannot create %s: %s\n", LogPath().c_str(), std::strerror(errno));
        s.logStarted = false;
        return;
    }
    s.logStarted = true;
    const std::string header = "xpsim: headless X-Plane 10.41, SDK " + SdkLevelText() + "\n";
    std::fwrite(header.data(), 1, header.size(), file);
    std::fclose(file);
}

void AppendToLog(const std::string& text) {
    if (!state().logStarted) {
        std::fwrite(text.data(), 1, text.size(), stderr);
        return;
    }
    // Opened and closed on every write, so that the file is complete whenever a plugin or a test
    // reads it, and a crashing plugin loses nothing.
    FILE* file = std::fopen(LogPath().c_str(), "ab");
    if (file == nullptr) return;
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
}

void Note(const std::string& text) { AppendToLog("xpsim: " + text + "\n"); }

void ReportMisuse(const char* function, const std::string& what) {
    const std::string message = std::string(function) + ": " + what;
    Note(message);
    WorldState& s = state();
    if (s.inErrorCallback) return;  // an error inside the error callback is only logged
    auto found = s.errorCallbacks.find(s.currentPlugin);
    if (found == s.errorCallbacks.end() || found->second == nullptr) return;
    s.inErrorCallback = true;
    {
        PluginContext context(s.currentPlugin);
        found->second(message.c_str());
    }
    s.inErrorCallback = false;
}

void SetErrorCallback(int plugin, void (*callback)(const char*)) {
    if (callback == nullptr)
        state().errorCallbacks.erase(plugin);
    else
        state().errorCallbacks[plugin] = callback;
}

bool CopyOut(char* out, size_t size, const std::string& text) {
    if (out == nullptr || size == 0) return false;
    const size_t count = std::min(text.size(), size - 1);
    std::memcpy(out, text.data(), count);
    out[count] = '\0';
    return count == text.size();
}

// ------------------------------------------------------------------ time

bool SetFrameRate(double fps) {
    if (!(fps > 0.0) || !std::isfinite(fps) || fps > 10000.0) return false;
    state().fps = fps;
    return true;
}

double FrameRate() { return state().fps; }

void BeginFrame() {
    WorldState& s = state();
    s.frame++;
    ClearDrawing();
    if (!SimPaused()) s.flightTime += 1.0 / s.fps;
    UpdateTimeDataRefs();
}

int FrameNumber() { return state().frame; }

double SimTime() { return state().frame / state().fps; }

double FlightTime() { return state().flightTime; }

void SetFlightTime(double seconds) {
    state().flightTime = seconds;
    UpdateTimeDataRefs();
}

// ------------------------------------------------------------------ calling context

int CurrentPlugin() { return state().currentPlugin; }

int PluginCallDepth() { return state().callDepth; }

PluginContext::PluginContext(int plugin) : saved_(state().currentPlugin) {
    state().currentPlugin = plugin;
    state().callDepth++;
}

PluginContext::~PluginContext() {
    state().currentPlugin = saved_;
    state().callDepth--;
}

// ------------------------------------------------------------------ whole world

void ResetWorld() {
    ResetScreen();  // first: the windows' mouse starts in the middle of the default screen
    ResetScheduler();
    ResetCamera();
    ResetNavigation();
    ResetTerrain();
    ResetObjects();
    ResetSceneryLibrary();
    ResetWidgets();
    ResetWindows();
    ResetKeys();
    ResetCommands();
    ResetMenus();
    ResetPlugins();
    ResetDataRefs();
    ResetPosition();
    ResetAircraft();
    ClearDrawing();
    ResetGraphics();
    WorldState& s = state();
    s.root.clear();
    s.sdkLevel = 210;
    s.fps = 20.0;
    s.frame = 0;
    s.flightTime = 0.0;
    s.logStarted = false;
    s.currentPlugin = kSimId;
    s.callDepth = 0;
    s.inErrorCallback = false;
    s.errorCallbacks.clear();
}

void ForgetPlugin(int plugin) {
    std::vector<std::string> left;
    auto count = [&left](int n, const char* one, const char* many) {
        if (n > 0) left.push_back(std::to_string(n) + " " + (n == 1 ? one : many));
    };
    count(ForgetFlightLoopsOf(plugin), "flight loop", "flight loops");
    count(ForgetDrawCallbacksOf(plugin), "draw callback", "draw callbacks");
    count(ForgetCameraOf(plugin), "camera control", "camera controls");
    // Widgets first: their windows go with them.
    count(ForgetWidgetsOf(plugin), "widget", "widgets");
    count(ForgetWindowsOf(plugin), "window", "windows");
    count(ForgetKeySniffersOf(plugin), "key sniffer", "key sniffers");
    count(ForgetHotKeysOf(plugin), "hot key", "hot keys");
    count(ForgetCommandHandlersOf(plugin), "command handler", "command handlers");
    count(ForgetMenusOf(plugin), "menu", "menus");
    count(ForgetAccessorsOf(plugin), "data accessor", "data accessors");
    count(ForgetSharedDataOf(plugin), "shared data registration", "shared data registrations");
    count(ForgetProbesOf(plugin), "terrain probe", "terrain probes");
    count(ForgetObjectsOf(plugin), "object", "objects");
    ForgetFeaturesOf(plugin);
    state().errorCallbacks.erase(plugin);
    if (left.empty()) return;
    std::string text = "plugin " + std::to_string(plugin) + " left registered: ";
    for (size_t i = 0; i < left.size(); ++i) text += (i ? ", " : "") + left[i];
    Note(text + "; removed");
}

}  // namespace xpsim
