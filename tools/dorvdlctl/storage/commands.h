// The commands on the space that downloads take, which need no database.
#ifndef DORVDLCTL_STORAGE_COMMANDS_H_
#define DORVDLCTL_STORAGE_COMMANDS_H_

#include <CLI/CLI.hpp>

#include "global_options.h"

namespace dorvdl::ctl {

// Each adds its command to @p app. @p global must outlive it.
void AddSpace(CLI::App& app, const GlobalOptions& global);
void AddQuota(CLI::App& app, const GlobalOptions& global);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_STORAGE_COMMANDS_H_
