// The simulated world that the SDK functions act on: the simulator folder, the SDK level on offer,
// the log, simulated time and the "current plugin" calling context.
//
// Everything here runs on one thread, like the simulator's main thread. Plugins are called only from
// the frame loop, from the host's lifecycle calls and input (menu picks, the mouse, keys, commands)
// and from SDK functions that call back (messages, shared data notifications, commands, keyboard
// focus), always through PluginContext so that XPLMGetMyID and the ownership of registrations are
// right.
#pragma once

#include <cstddef>
#include <string>

#include "world/Export.h"

namespace xpsim {

// The simulator's own plugin id (XPLM_PLUGIN_XPLANE).
constexpr int kSimId = 0;
// The X-Plane version xpsim reports (10.41).
constexpr int kXPlaneVersion = 1041;

// ------------------------------------------------------------------ the simulator folder

// Makes DIR an X-Plane-shaped folder where parts are missing (Resources/plugins/,
// Output/preferences/, the user aircraft) and makes it the system path. False with a message when the
// folder cannot be created or used.
XPSIM_API bool PrepareRoot(const std::string& dir, std::string& error);
// The absolute system path with a trailing "/". Until PrepareRoot, the working directory.
XPSIM_API std::string SystemPath();
// SystemPath() + "Resources/plugins/".
XPSIM_API std::string PluginsFolder();
// The preferences file, inside Output/preferences/.
XPSIM_API std::string PrefsFilePath();
// Folder (with trailing "/") and file name of the user's aircraft.
XPSIM_API std::string UserAircraftFolder();
XPSIM_API std::string UserAircraftFile();

// ------------------------------------------------------------------ SDK level

// 102, 200 or 210; false for anything else.
XPSIM_API bool SetSdkLevel(int level);
XPSIM_API int SdkLevel();
// "1.02", "2.00" or "2.10".
XPSIM_API std::string SdkLevelText();
// The file this library was loaded from.
XPSIM_API std::string LibraryPath();
// At 2.00 and 2.10 makes Resources/plugins/XPLM_64.so a link to LibraryPath(); at 1.02 removes the
// link so that nothing lies there. False with a message when a foreign file is in the way.
XPSIM_API bool InstallLibraryLink(std::string& error);

// ------------------------------------------------------------------ log

// DIR/Log.txt, created fresh with a first line naming xpsim and the SDK level.
XPSIM_API void StartLog();
XPSIM_API std::string LogPath();
// Appends text as it is to Log.txt (only to standard error before StartLog).
XPSIM_API void AppendToLog(const std::string& text);
// Appends "xpsim: " + text + "\n" to Log.txt.
XPSIM_API void Note(const std::string& text);
// A plugin misused the SDK: logs "xpsim: FUNCTION: WHAT" and tells the calling plugin's error
// callback "FUNCTION: WHAT" when it has one.
void ReportMisuse(const char* function, const std::string& what);
// Sets the calling plugin's error callback (XPLMSetErrorCallback); null removes it.
void SetErrorCallback(int plugin, void (*callback)(const char*));

// Copies text into a plugin's buffer of `size` bytes, always terminated; false when it was cut.
bool CopyOut(char* out, size_t size, const std::string& text);

// ------------------------------------------------------------------ time

// Simulated frames per second (default 20). Frame k happens at simulated time k / fps.
XPSIM_API bool SetFrameRate(double fps);
XPSIM_API double FrameRate();
// Starts the next frame: advances the frame counter and the time and updates the time datarefs.
XPSIM_API void BeginFrame();
// The number of the current frame, 0 before the first one.
XPSIM_API int FrameNumber();
// Simulated seconds since the start: FrameNumber() / FrameRate().
XPSIM_API double SimTime();
// Flight time stops while sim/time/paused is non-zero.
XPSIM_API double FlightTime();
// Sets the flight time, as loading a situation does.
void SetFlightTime(double seconds);

// ------------------------------------------------------------------ calling context

// The plugin on whose behalf the SDK is being called: the plugin xpsim last called into, or kSimId.
XPSIM_API int CurrentPlugin();
// How many calls into plugins are on the stack.
XPSIM_API int PluginCallDepth();

// Makes `plugin` the current plugin for the lifetime of the object.
class XPSIM_API PluginContext {
public:
    explicit PluginContext(int plugin);
    ~PluginContext();
    PluginContext(const PluginContext&) = delete;
    PluginContext& operator=(const PluginContext&) = delete;

private:
    int saved_;
};

// ------------------------------------------------------------------ whole world

// Forgets everything (plugins, datarefs, windows, keys, commands, menus, loops, navigation data and
// FMS, log, time); used between tests.
XPSIM_API void ResetWorld();
// Removes every registration a plugin left behind (flight loops, draw callbacks, widgets, windows, key
// sniffers, hot keys, command handlers, menus, accessors, shared data, error callback), as the
// simulator does when it unloads a plugin.
XPSIM_API void ForgetPlugin(int plugin);

}  // namespace xpsim
