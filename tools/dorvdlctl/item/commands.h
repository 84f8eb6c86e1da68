// The commands on RSS items.
#ifndef DORVDLCTL_ITEM_COMMANDS_H_
#define DORVDLCTL_ITEM_COMMANDS_H_

#include <CLI/CLI.hpp>

#include "global_options.h"

namespace dorvdl::ctl {

// Adds the group "item". @p global must outlive @p app.
void AddItemCommands(CLI::App& app, const GlobalOptions& global);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_ITEM_COMMANDS_H_
