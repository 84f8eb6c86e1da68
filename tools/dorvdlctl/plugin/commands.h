// The commands on the states of plug-ins.
#ifndef DORVDLCTL_PLUGIN_COMMANDS_H_
#define DORVDLCTL_PLUGIN_COMMANDS_H_

#include <CLI/CLI.hpp>

#include "global_options.h"

namespace dorvdl::ctl {

// Adds the group "plugin". @p global must outlive @p app.
void AddPluginCommands(CLI::App& app, const GlobalOptions& global);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_PLUGIN_COMMANDS_H_
