// The commands on pending notifications.
#ifndef DORVDLCTL_NOTIFICATION_COMMANDS_H_
#define DORVDLCTL_NOTIFICATION_COMMANDS_H_

#include <CLI/CLI.hpp>

#include "global_options.h"

namespace dorvdl::ctl {

// Adds the group "notification". @p global must outlive @p app.
void AddNotificationCommands(CLI::App& app, const GlobalOptions& global);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_NOTIFICATION_COMMANDS_H_
