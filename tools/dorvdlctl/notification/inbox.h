// The command that shows the notifications that have been sent.
#ifndef DORVDLCTL_NOTIFICATION_INBOX_H_
#define DORVDLCTL_NOTIFICATION_INBOX_H_

#include <CLI/CLI.hpp>

#include "global_options.h"

namespace dorvdl::ctl {

// Adds the command to @p group. @p global must outlive it.
void AddNotificationInbox(CLI::App& group, const GlobalOptions& global);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_NOTIFICATION_INBOX_H_
