// The host program's run: preparing the simulator folder, loading and starting plugins, running the
// frames with their events, reloading plugins on request, and stopping everything at the end.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "host/Events.h"
#include "host/Options.h"

namespace xpsim {

// The plugin files to load: the --plugin files in the order given, then every
// Resources/plugins/*/lin_x64/*.xpl in sorted order; each file once (by its resolved path), given as
// its absolute path. Missing --plugin files are reported in the log and left out.
std::vector<std::string> DiscoverPlugins(const std::vector<std::string>& explicitPlugins);

// Opens a plugin file (RTLD_NOW | RTLD_LOCAL) and enters it in the plugin table; returns its id, or
// -1 when it cannot be opened or lacks an entry point (reported in the log).
int OpenPlugin(const std::string& path);

// Loads every plugin, calls XPluginStart on each in load order (dropping those that refuse), then
// XPluginEnable on each.
void StartPlugins(const std::vector<std::string>& explicitPlugins);
// XPluginDisable on every enabled plugin, then XPluginStop on every plugin, then closes them all.
void StopPlugins();

// Applies one event now (in the current frame).
void ApplyEvent(const Event& event);

// The whole `xpsim run`: returns the exit status; problems that prevent the run go to `err`.
int RunSimulation(const Options& options, std::ostream& err);

}  // namespace xpsim
