// The plugin table.
#include "world/Plugins.h"

#include <algorithm>
#include <map>
#include <memory>
#include <set>

#include "world/Aircraft.h"
#include "world/World.h"

namespace xpsim {
namespace {

// XPluginStart's buffers, and the size the SDK promises for XPLMGetPluginInfo's buffers.
constexpr size_t kEntryBufferSize = 256;

struct PluginTable {
    std::vector<std::unique_ptr<PluginRecord>> plugins;
    int nextId = 1;
    bool reloadRequested = false;
    std::map<int, std::set<std::string>> enabledFeatures;
};

PluginTable& table() {
    static PluginTable t;
    return t;
}

PluginRecord* Find(int id) {
    for (auto& plugin : table().plugins) {
        if (plugin->id == id) return plugin.get();
    }
    return nullptr;
}

std::string Describe(const PluginRecord& plugin) {
    std::string text = "plugin " + std::to_string(plugin.id);
    if (!plugin.signature.empty()) text += " (" + plugin.signature + ")";
    return text;
}

}  // namespace

int AddPlugin(const std::string& path, void* libraryHandle, const PluginEntryPoints& entry) {
    auto plugin = std::make_unique<PluginRecord>();
    plugin->id = table().nextId++;
    plugin->path = path;
    plugin->libraryHandle = libraryHandle;
    plugin->entry = entry;
    const int id = plugin->id;
    table().plugins.push_back(std::move(plugin));
    return id;
}

bool StartPlugin(int id) {
    PluginRecord* plugin = Find(id);
    if (plugin == nullptr || plugin->started || plugin->entry.start == nullptr) return false;
    char name[kEntryBufferSize] = {0};
    char signature[kEntryBufferSize] = {0};
    char description[kEntryBufferSize] = {0};
    int result;
    {
        PluginContext context(id);
        result = plugin->entry.start(name, signature, description);
    }
    // The plugin may have written up to the end of a buffer without a terminator.
    name[kEntryBufferSize - 1] = signature[kEntryBufferSize - 1] = description[kEntryBufferSize - 1] = '\0';
    plugin = Find(id);  // the table may have changed during the call
    if (plugin == nullptr) return false;
    plugin->name = name;
    plugin->signature = signature;
    plugin->description = description;
    if (result == 0) {
        Note(plugin->path + " refused to start (XPluginStart returned 0)");
        return false;
    }
    plugin->started = true;
    AppendToLog("Loaded: " + plugin->path + " (" + plugin->signature + ").\n");
    return true;
}

bool EnablePlugin(int id) {
    PluginRecord* plugin = Find(id);
    if (plugin == nullptr || !plugin->started) return false;
    if (plugin->enabled) return true;
    int result;
    {
        PluginContext context(id);
        result = plugin->entry.enable ? plugin->entry.enable() : 0;
    }
    plugin = Find(id);
    if (plugin == nullptr) return false;
    plugin->enabled = result != 0;
    if (!plugin->enabled) Note(Describe(*plugin) + " stays disabled (XPluginEnable returned 0)");
    return plugin->enabled;
}

void DisablePlugin(int id) {
    PluginRecord* plugin = Find(id);
    if (plugin == nullptr || !plugin->enabled) return;
    // Marked disabled first, so that nothing reaches it from inside its own XPluginDisable.
    plugin->enabled = false;
    {
        PluginContext context(id);
        if (plugin->entry.disable) plugin->entry.disable();
    }
    // A disabled plugin loses the other aircraft it held, and stops waiting for them.
    ForgetPlanesOf(id);
}

void StopPlugin(int id) {
    PluginRecord* plugin = Find(id);
    if (plugin == nullptr || !plugin->started) return;
    plugin->started = false;
    PluginContext context(id);
    if (plugin->entry.stop) plugin->entry.stop();
}

void* RemovePlugin(int id) {
    ForgetPlanesOf(id);
    ForgetPlugin(id);
    auto& plugins = table().plugins;
    auto found = std::find_if(plugins.begin(), plugins.end(),
                              [id](const std::unique_ptr<PluginRecord>& p) { return p->id == id; });
    if (found == plugins.end()) return nullptr;
    void* handle = (*found)->libraryHandle;
    plugins.erase(found);
    return handle;
}

std::vector<int> PluginIds() {
    std::vector<int> ids;
    for (const auto& plugin : table().plugins) ids.push_back(plugin->id);
    return ids;
}

const PluginRecord* FindPlugin(int id) { return Find(id); }

int FindPluginIdBySignature(const std::string& signature) {
    for (const auto& plugin : table().plugins) {
        if (plugin->signature == signature) return plugin->id;
    }
    return -1;
}

void RestartPluginNumbering() { table().nextId = 1; }

bool DeliverMessage(int to, int from, int message, void* param) {
    PluginRecord* plugin = Find(to);
    if (plugin == nullptr || !plugin->enabled || plugin->entry.receiveMessage == nullptr) return false;
    PluginContext context(to);
    plugin->entry.receiveMessage(from, message, param);
    return true;
}

bool ReloadRequested() { return table().reloadRequested; }

void ClearReloadRequest() { table().reloadRequested = false; }

void RequestReload() { table().reloadRequested = true; }

bool PluginMayBeCalled(int plugin) {
    if (plugin == kSimId) return true;
    const PluginRecord* record = Find(plugin);
    return record != nullptr && record->enabled;
}

// ------------------------------------------------------------------ features

const std::vector<std::string>& FeatureNames() {
    // What X-Plane 10.41 offers; native paths arrived with the 2.10 SDK level.
    static const std::vector<std::string> k210 = {"XPLM_WANTS_REFLECTIONS", "XPLM_USE_NATIVE_PATHS"};
    static const std::vector<std::string> k200 = {"XPLM_WANTS_REFLECTIONS"};
    return SdkLevel() >= 210 ? k210 : k200;
}

bool HasFeature(const std::string& feature) {
    const auto& names = FeatureNames();
    return std::find(names.begin(), names.end(), feature) != names.end();
}

bool IsFeatureEnabled(int plugin, const std::string& feature) {
    auto found = table().enabledFeatures.find(plugin);
    return found != table().enabledFeatures.end() && found->second.count(feature) > 0;
}

void EnableFeature(int plugin, const std::string& feature, bool enable) {
    if (enable)
        table().enabledFeatures[plugin].insert(feature);
    else
        table().enabledFeatures[plugin].erase(feature);
}

void ForgetFeaturesOf(int plugin) { table().enabledFeatures.erase(plugin); }

void ResetPlugins() { table() = PluginTable(); }

}  // namespace xpsim
