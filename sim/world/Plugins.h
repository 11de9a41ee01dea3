// The table of loaded plugins, their entry points, enabled state, messages and SDK features.
//
// The host program opens the plugin files and hands their entry points over (AddPlugin); from then
// on every call into a plugin goes through this table and runs in the plugin's context. Ids are given
// in load order from 1; 0 is the simulator itself.
#pragma once

#include <string>
#include <vector>

#include "world/Export.h"

namespace xpsim {

struct PluginEntryPoints {
    int (*start)(char* outName, char* outSignature, char* outDescription) = nullptr;
    void (*stop)() = nullptr;
    int (*enable)() = nullptr;
    void (*disable)() = nullptr;
    void (*receiveMessage)(int from, int message, void* param) = nullptr;
};

struct PluginRecord {
    int id = 0;
    std::string path;
    std::string name;
    std::string signature;
    std::string description;
    void* libraryHandle = nullptr;
    PluginEntryPoints entry;
    bool started = false;
    bool enabled = false;
};

// Enters a plugin in the table and returns its id.
XPSIM_API int AddPlugin(const std::string& path, void* libraryHandle, const PluginEntryPoints& entry);
// Calls XPluginStart with three zeroed 256-byte buffers and keeps name, signature and description.
// False when the plugin refused to start (returned 0).
XPSIM_API bool StartPlugin(int id);
// Calls XPluginEnable unless the plugin is enabled already; false when it answered 0.
XPSIM_API bool EnablePlugin(int id);
// Calls XPluginDisable when the plugin is enabled.
XPSIM_API void DisablePlugin(int id);
// Calls XPluginStop when the plugin was started.
XPSIM_API void StopPlugin(int id);
// Takes a plugin out of the table, removing every registration it left behind; returns the library
// handle for the caller to close.
XPSIM_API void* RemovePlugin(int id);
// Ids in load order.
XPSIM_API std::vector<int> PluginIds();
XPSIM_API const PluginRecord* FindPlugin(int id);
XPSIM_API int FindPluginIdBySignature(const std::string& signature);
// The next plugin added gets id 1 again (after every plugin was removed for a reload).
XPSIM_API void RestartPluginNumbering();
// Calls the XPluginReceiveMessage of plugin `to` in its context when it is enabled.
XPSIM_API bool DeliverMessage(int to, int from, int message, void* param);
// XPLMReloadPlugins asks for a reload; the host performs it at the end of the frame.
XPSIM_API bool ReloadRequested();
XPSIM_API void ClearReloadRequest();
XPSIM_API void RequestReload();

// May a callback registered by `plugin` be called now? True for enabled plugins and for the sim.
bool PluginMayBeCalled(int plugin);

// SDK features (XPLMHasFeature and its kin).
bool HasFeature(const std::string& feature);
bool IsFeatureEnabled(int plugin, const std::string& feature);
void EnableFeature(int plugin, const std::string& feature, bool enable);
const std::vector<std::string>& FeatureNames();
void ForgetFeaturesOf(int plugin);

void ResetPlugins();

}  // namespace xpsim
