// The commands on preview pictures.
#ifndef DORVDLCTL_THUMBNAIL_COMMANDS_H_
#define DORVDLCTL_THUMBNAIL_COMMANDS_H_

#include <CLI/CLI.hpp>

#include "global_options.h"

namespace dorvdl::ctl {

// Adds the group "thumbnail". @p global must outlive @p app.
void AddThumbnailCommands(CLI::App& app, const GlobalOptions& global);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_THUMBNAIL_COMMANDS_H_
