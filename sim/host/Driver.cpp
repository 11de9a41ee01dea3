// The host program's run.
#include "host/Driver.h"

#include <dirent.h>
#include <dlfcn.h>
#include <limits.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <set>

#include "world/Aircraft.h"
#include "world/Commands.h"
#include "world/DataRefDump.h"
#include "world/DataRefs.h"
#include "world/Drawing.h"
#include "world/Keys.h"
#include "world/Menus.h"
#include "world/Plugins.h"
#include "world/Scheduler.h"
#include "world/Screen.h"
#include "world/Windows.h"
#include "world/World.h"

namespace xpsim {
namespace {

std::vector<std::string> SortedEntries(const std::string& folder) {
    std::vector<std::string> names;
    DIR* dir = opendir(folder.c_str());
    if (dir == nullptr) return names;
    while (dirent* entry = readdir(dir)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") names.push_back(name);
    }
    closedir(dir);
    std::sort(names.begin(), names.end());
    return names;
}

bool IsRegularFile(const std::string& path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

std::string Resolve(const std::string& path) {
    char resolved[PATH_MAX];
    if (realpath(path.c_str(), resolved) == nullptr) return "";
    return resolved;
}

std::string FormatTime(double seconds) {
    char text[64];
    std::snprintf(text, sizeof text, "%.2f s", seconds);
    return text;
}

// The draw-log events of the current frame, written when its drawing is done; and the files written
// in this run (the first write starts a file afresh, later ones add to it).
struct DrawLogs {
    std::vector<std::pair<int, std::string>> pending;  // events line, path
    std::set<std::string> written;
};

DrawLogs& drawLogs() {
    static DrawLogs logs;
    return logs;
}

// The screenshots of the current frame, written when its drawing is done: events line (0 for
// --screenshot), path.
std::vector<std::pair<int, std::string>>& pendingScreenshots() {
    static std::vector<std::pair<int, std::string>> shots;
    return shots;
}

std::string Where(int line) { return line > 0 ? "events line " + std::to_string(line) + ": " : "--screenshot: "; }

// A relative path is relative to the simulator folder.
std::string InRoot(const std::string& path) { return path.front() == '/' ? path : SystemPath() + path; }

void WriteDrawLogs() {
    DrawLogs& logs = drawLogs();
    for (const auto& [line, path] : logs.pending) {
        const bool fresh = logs.written.insert(path).second;
        std::string error;
        if (!WriteDrawingRecord(path, fresh, error)) Note("events line " + std::to_string(line) + ": " + error);
    }
    logs.pending.clear();
    for (const auto& [line, path] : pendingScreenshots()) {
        std::string error;
        if (WriteScreenshot(path, error))
            Note("screenshot of frame " + std::to_string(FrameNumber()) + " written to " + path);
        else
            Note(Where(line) + error);
    }
    pendingScreenshots().clear();
}

}  // namespace

std::vector<std::string> DiscoverPlugins(const std::vector<std::string>& explicitPlugins) {
    std::vector<std::string> candidates;
    for (const auto& path : explicitPlugins) {
        if (!IsRegularFile(path)) {
            Note("cannot load " + path + ": no such file");
            continue;
        }
        candidates.push_back(path);
    }
    const std::string folder = PluginsFolder();
    for (const auto& plugin : SortedEntries(folder)) {
        const std::string lin = folder + plugin + "/lin_x64/";
        for (const auto& file : SortedEntries(lin)) {
            if (file.size() > 4 && file.compare(file.size() - 4, 4, ".xpl") == 0 && IsRegularFile(lin + file))
                candidates.push_back(lin + file);
        }
    }
    std::vector<std::string> paths;
    std::set<std::string> seen;
    for (const auto& candidate : candidates) {
        const std::string resolved = Resolve(candidate);
        if (resolved.empty() || !seen.insert(resolved).second) continue;
        paths.push_back(resolved);
    }
    return paths;
}

int OpenPlugin(const std::string& path) {
    dlerror();
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* reason = dlerror();
        Note("cannot load " + path + ": " + (reason ? reason : "unknown reason"));
        return -1;
    }
    PluginEntryPoints entry;
    entry.start = reinterpret_cast<decltype(entry.start)>(dlsym(handle, "XPluginStart"));
    entry.stop = reinterpret_cast<decltype(entry.stop)>(dlsym(handle, "XPluginStop"));
    entry.enable = reinterpret_cast<decltype(entry.enable)>(dlsym(handle, "XPluginEnable"));
    entry.disable = reinterpret_cast<decltype(entry.disable)>(dlsym(handle, "XPluginDisable"));
    entry.receiveMessage = reinterpret_cast<decltype(entry.receiveMessage)>(dlsym(handle, "XPluginReceiveMessage"));
    std::string missing;
    if (!entry.start) missing += " XPluginStart";
    if (!entry.stop) missing += " XPluginStop";
    if (!entry.enable) missing += " XPluginEnable";
    if (!entry.disable) missing += " XPluginDisable";
    if (!entry.receiveMessage) missing += " XPluginReceiveMessage";
    if (!missing.empty()) {
        Note("cannot load " + path + ": missing entry point(s)" + missing);
        dlclose(handle);
        return -1;
    }
    return AddPlugin(path, handle, entry);
}

void StartPlugins(const std::vector<std::string>& explicitPlugins) {
    std::vector<int> started;
    for (const auto& path : DiscoverPlugins(explicitPlugins)) {
        const int id = OpenPlugin(path);
        if (id < 0) continue;
        if (StartPlugin(id)) {
            started.push_back(id);
        } else {
            void* handle = RemovePlugin(id);
            if (handle) dlclose(handle);
        }
    }
    for (int id : started) EnablePlugin(id);
}

void StopPlugins() {
    const std::vector<int> ids = PluginIds();
    for (int id : ids) DisablePlugin(id);
    for (int id : ids) StopPlugin(id);
    for (int id : ids) {
        void* handle = RemovePlugin(id);
        if (handle) dlclose(handle);
    }
}

void ApplyEvent(const Event& event) {
    Note(FormatTime(event.time) + " (frame " + std::to_string(FrameNumber()) + "): " + event.source);
    const std::string where = "events line " + std::to_string(event.line) + ": ";
    std::string error;
    switch (event.verb) {
        case EventVerb::Key:
            PressKey(event.key);
            break;
        case EventVerb::Type:
            // Each character as its own key stroke, typed as on a US keyboard.
            for (char c : event.text) PressKey(KeyForCharacter(static_cast<unsigned char>(c), 0));
            break;
        case EventVerb::Click:
            Click(event.x1, event.y1);
            break;
        case EventVerb::Move:
            MoveMouse(event.x1, event.y1);
            break;
        case EventVerb::Drag:
            Drag(event.x1, event.y1, event.x2, event.y2);
            break;
        case EventVerb::Wheel:
            Wheel(event.x1, event.y1, event.clicks, event.axis);
            break;
        case EventVerb::Command:
        case EventVerb::CommandBegin:
        case EventVerb::CommandEnd: {
            const CommandRun run = event.verb == EventVerb::Command        ? CommandRun::Once
                                   : event.verb == EventVerb::CommandBegin ? CommandRun::Begin
                                                                           : CommandRun::End;
            if (!RunCommandByName(event.text, run, error)) Note(where + error);
            break;
        }
        case EventVerb::Menu:
            if (!PickMenuPath(event.text, error)) Note(where + error);
            break;
        case EventVerb::Set:
            if (!SetDataRefFromText(event.text, event.value, error)) Note(where + error);
            break;
        case EventVerb::Message: {
            const int id = FindPluginIdBySignature(event.text);
            if (id < 0) {
                Note(where + "no plugin with signature " + event.text);
            } else if (!DeliverMessage(id, kSimId, event.message,
                                       reinterpret_cast<void*>(static_cast<intptr_t>(event.param)))) {
                Note(where + "plugin " + std::to_string(id) + " (" + event.text +
                     ") is disabled and gets no messages");
            }
            break;
        }
        case EventVerb::ReloadPlugins:
            RequestReload();
            break;
        case EventVerb::DrawLog:
            // Written at the end of the frame; a relative path is relative to the simulator folder.
            drawLogs().pending.emplace_back(event.line, InRoot(event.text));
            break;
        case EventVerb::Screenshot:
            // Written at the end of the frame, like draw-log.
            pendingScreenshots().emplace_back(event.line, InRoot(event.text));
            break;
    }
}

int RunSimulation(const Options& options, std::ostream& err) {
    // A bad events file stops the run before anything is touched.
    std::vector<Event> events;
    std::string error;
    if (!options.eventsFile.empty() && !LoadEventsFile(options.eventsFile, events, error)) {
        err << "xpsim: " << error << "\n";
        return 1;
    }
    // --screenshot options are screenshot events after the file's (in time order they mix with them).
    for (const auto& text : options.screenshots) {
        Event event;
        if (!ParseScreenshotOption(text, event, error)) {
            err << "xpsim: " << error << "\n";
            return 2;
        }
        events.push_back(event);
    }
    if (!SetSdkLevel(options.sdkLevel) || !SetFrameRate(options.fps) ||
        !SetScreenSize(options.screenWidth, options.screenHeight)) {
        err << "xpsim: bad SDK level, frame rate or screen size\n";
        return 2;
    }
    if (!PrepareRoot(options.root, error)) {
        err << "xpsim: cannot use " << options.root << " as the simulator folder: " << error << "\n";
        return 1;
    }
    if (!InstallLibraryLink(error)) {
        err << "xpsim: cannot use " << options.root << " as the simulator folder: " << error << "\n";
        return 1;
    }
    StartLog();
    char rate[32];
    std::snprintf(rate, sizeof rate, "%g", FrameRate());
    Note("system path " + SystemPath() + ", " + rate + " simulated frames per second");
    LoadStandardDataRefs();
    StartAircraft();
    PublishScreenSize();

    drawLogs() = DrawLogs();
    pendingScreenshots().clear();
    StartPlugins(options.plugins);
    // Once the plugins are enabled, the sim loads the user's aircraft and places it.
    SendStartMessages();
    const int frames = FramesToRun(options);
    std::vector<bool> applied(events.size(), false);
    for (int frame = 1; frame <= frames; ++frame) {
        BeginFrame();
        const double now = SimTime();
        for (size_t i = 0; i < events.size(); ++i) {
            if (applied[i] || events[i].time > now + 1e-9) continue;
            applied[i] = true;
            ApplyEvent(events[i]);
        }
        UpdateReferencePoint();
        RunFrameCallbacks();
        WriteDrawLogs();
        if (ReloadRequested()) {
            ClearReloadRequest();
            Note("reloading plugins at the end of frame " + std::to_string(FrameNumber()));
            StopPlugins();
            RestartPluginNumbering();
            StartPlugins(options.plugins);
        }
    }
    for (size_t i = 0; i < events.size(); ++i) {
        if (!applied[i])
            Note(Where(events[i].line) + FormatTime(events[i].time) + " is after the end of the run; not applied");
    }
    for (const auto& name : HeldCommands()) Note(name + " is still held at the end of the run");
    // The dump is written while the plugins still run, so that their accessors answer.
    if (!options.dumpDataRefs.empty()) {
        const std::string path = InRoot(options.dumpDataRefs);
        if (WriteDataRefDump(path, error))
            Note("datarefs written to " + path);
        else
            Note("--dump-datarefs: " + error);
    }
    StopPlugins();
    ClearReloadRequest();
    Note("run complete: " + std::to_string(FrameNumber()) + " frames, " + FormatTime(SimTime()));
    return 0;
}

}  // namespace xpsim
