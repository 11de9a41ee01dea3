// XPLMPlugin: finding plugins, enabling and disabling them, messages, reload and SDK features.
#include "XPLMPlugin.h"

#include <limits.h>
#include <stdlib.h>

#include <string>

#include "world/Plugins.h"
#include "world/World.h"

namespace {

// The SDK's buffer size for each of XPLMGetPluginInfo's texts.
constexpr size_t kInfoBufferSize = 256;

std::string Resolved(const char* path) {
    char resolved[PATH_MAX];
    return realpath(path, resolved) ? std::string(resolved) : std::string(path);
}

}  // namespace

XPLMPluginID XPLMGetMyID(void) { return xpsim::CurrentPlugin(); }

int XPLMCountPlugins(void) { return int(xpsim::PluginIds().size()); }

XPLMPluginID XPLMGetNthPlugin(int inIndex) {
    const auto ids = xpsim::PluginIds();
    if (inIndex < 0 || size_t(inIndex) >= ids.size()) {
        xpsim::ReportMisuse("XPLMGetNthPlugin", "index " + std::to_string(inIndex) + " is not below " +
                                                    std::to_string(ids.size()));
        return XPLM_NO_PLUGIN_ID;
    }
    return ids[size_t(inIndex)];
}

XPLMPluginID XPLMFindPluginByPath(const char* inPath) {
    if (inPath == nullptr) {
        xpsim::ReportMisuse("XPLMFindPluginByPath", "null path");
        return XPLM_NO_PLUGIN_ID;
    }
    const std::string wanted = Resolved(inPath);
    for (int id : xpsim::PluginIds()) {
        const xpsim::PluginRecord* plugin = xpsim::FindPlugin(id);
        if (plugin->path == wanted || plugin->path == inPath) return id;
    }
    return XPLM_NO_PLUGIN_ID;
}

XPLMPluginID XPLMFindPluginBySignature(const char* inSignature) {
    if (inSignature == nullptr) {
        xpsim::ReportMisuse("XPLMFindPluginBySignature", "null signature");
        return XPLM_NO_PLUGIN_ID;
    }
    const int id = xpsim::FindPluginIdBySignature(inSignature);
    return id < 0 ? XPLM_NO_PLUGIN_ID : id;
}

void XPLMGetPluginInfo(XPLMPluginID inPlugin, char* outName, char* outFilePath, char* outSignature,
                       char* outDescription) {
    const xpsim::PluginRecord* plugin = xpsim::FindPlugin(inPlugin);
    if (plugin == nullptr) {
        xpsim::ReportMisuse("XPLMGetPluginInfo", "no plugin with id " + std::to_string(inPlugin));
        for (char* out : {outName, outFilePath, outSignature, outDescription}) {
            if (out) out[0] = '\0';
        }
        return;
    }
    if (outName) xpsim::CopyOut(outName, kInfoBufferSize, plugin->name);
    if (outFilePath) xpsim::CopyOut(outFilePath, kInfoBufferSize, plugin->path);
    if (outSignature) xpsim::CopyOut(outSignature, kInfoBufferSize, plugin->signature);
    if (outDescription) xpsim::CopyOut(outDescription, kInfoBufferSize, plugin->description);
}

int XPLMIsPluginEnabled(XPLMPluginID inPluginID) {
    const xpsim::PluginRecord* plugin = xpsim::FindPlugin(inPluginID);
    return plugin != nullptr && plugin->enabled ? 1 : 0;
}

int XPLMEnablePlugin(XPLMPluginID inPluginID) {
    if (xpsim::FindPlugin(inPluginID) == nullptr) {
        xpsim::ReportMisuse("XPLMEnablePlugin", "no plugin with id " + std::to_string(inPluginID));
        return 0;
    }
    return xpsim::EnablePlugin(inPluginID) ? 1 : 0;
}

void XPLMDisablePlugin(XPLMPluginID inPluginID) {
    if (xpsim::FindPlugin(inPluginID) == nullptr) {
        xpsim::ReportMisuse("XPLMDisablePlugin", "no plugin with id " + std::to_string(inPluginID));
        return;
    }
    xpsim::DisablePlugin(inPluginID);
}

void XPLMReloadPlugins(void) {
    // Plugins are on the call stack now; the reload happens at the end of the frame.
    xpsim::Note("plugin " + std::to_string(xpsim::CurrentPlugin()) + " asked for a reload of all plugins");
    xpsim::RequestReload();
}

void XPLMSendMessageToPlugin(XPLMPluginID inPlugin, int inMessage, void* inParam) {
    const int from = xpsim::CurrentPlugin();
    if (inPlugin == XPLM_NO_PLUGIN_ID) {
        // A broadcast reaches every enabled plugin with a message function, in load order.
        for (int id : xpsim::PluginIds()) xpsim::DeliverMessage(id, from, inMessage, inParam);
        return;
    }
    if (inPlugin == XPLM_PLUGIN_XPLANE) return;  // the simulator itself takes no plugin messages
    if (xpsim::FindPlugin(inPlugin) == nullptr) {
        xpsim::ReportMisuse("XPLMSendMessageToPlugin", "no plugin with id " + std::to_string(inPlugin));
        return;
    }
    xpsim::DeliverMessage(inPlugin, from, inMessage, inParam);
}

int XPLMHasFeature(const char* inFeature) {
    if (inFeature == nullptr) {
        xpsim::ReportMisuse("XPLMHasFeature", "null feature name");
        return 0;
    }
    return xpsim::HasFeature(inFeature) ? 1 : 0;
}

int XPLMIsFeatureEnabled(const char* inFeature) {
    if (inFeature == nullptr || !xpsim::HasFeature(inFeature)) {
        xpsim::ReportMisuse("XPLMIsFeatureEnabled",
                            std::string("unknown feature ") + (inFeature ? inFeature : "(null)"));
        return 0;
    }
    return xpsim::IsFeatureEnabled(xpsim::CurrentPlugin(), inFeature) ? 1 : 0;
}

void XPLMEnableFeature(const char* inFeature, int inEnable) {
    if (inFeature == nullptr || !xpsim::HasFeature(inFeature)) {
        xpsim::ReportMisuse("XPLMEnableFeature", std::string("unknown feature ") + (inFeature ? inFeature : "(null)"));
        return;
    }
    xpsim::EnableFeature(xpsim::CurrentPlugin(), inFeature, inEnable != 0);
}

void XPLMEnumerateFeatures(XPLMFeatureEnumerator_f inEnumerator, void* inRef) {
    if (inEnumerator == nullptr) {
        xpsim::ReportMisuse("XPLMEnumerateFeatures", "no enumerator");
        return;
    }
    const auto names = xpsim::FeatureNames();
    for (const auto& name : names) inEnumerator(name.c_str(), inRef);
}
