// The commands on the users' settings.
#ifndef DORVDLCTL_SETTING_COMMANDS_H_
#define DORVDLCTL_SETTING_COMMANDS_H_

#include <CLI/CLI.hpp>

#include "global_options.h"

namespace dorvdl::ctl {

// Adds the group "setting". @p global must outlive @p app.
void AddSettingCommands(CLI::App& app, const GlobalOptions& global);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_SETTING_COMMANDS_H_
