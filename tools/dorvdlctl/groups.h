// The groups of commands, and the commands that stand alone.
#ifndef DORVDLCTL_GROUPS_H_
#define DORVDLCTL_GROUPS_H_

#include <CLI/CLI.hpp>

#include "global_options.h"

namespace dorvdl::ctl {

// Each adds a group to @p app. @p global must outlive it.
void AddTaskCommands(CLI::App& app, const GlobalOptions& global);
void AddFeedCommands(CLI::App& app, const GlobalOptions& global);
void AddFilterCommands(CLI::App& app, const GlobalOptions& global);
void AddItemCommands(CLI::App& app, const GlobalOptions& global);
void AddThumbnailCommands(CLI::App& app, const GlobalOptions& global);
void AddPluginCommands(CLI::App& app, const GlobalOptions& global);
void AddNotificationCommands(CLI::App& app, const GlobalOptions& global);
void AddSettingCommands(CLI::App& app, const GlobalOptions& global);

// The same for the commands on the space that downloads take, which need no database.
void AddSpace(CLI::App& app, const GlobalOptions& global);
void AddQuota(CLI::App& app, const GlobalOptions& global);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_GROUPS_H_
