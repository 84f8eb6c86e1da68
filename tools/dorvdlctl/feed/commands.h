// The commands on RSS feeds.
#ifndef DORVDLCTL_FEED_COMMANDS_H_
#define DORVDLCTL_FEED_COMMANDS_H_

#include <CLI/CLI.hpp>

#include "global_options.h"

namespace dorvdl::ctl {

// Adds the group "feed". @p global must outlive @p app.
void AddFeedCommands(CLI::App& app, const GlobalOptions& global);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_FEED_COMMANDS_H_
