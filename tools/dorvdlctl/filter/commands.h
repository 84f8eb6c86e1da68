// The commands on RSS filters.
#ifndef DORVDLCTL_FILTER_COMMANDS_H_
#define DORVDLCTL_FILTER_COMMANDS_H_

#include <CLI/CLI.hpp>

#include "global_options.h"

namespace dorvdl::ctl {

// Adds the group "filter". @p global must outlive @p app.
void AddFilterCommands(CLI::App& app, const GlobalOptions& global);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_FILTER_COMMANDS_H_
