// Adding many RSS items at once.
#ifndef DORVDLCTL_ITEM_IMPORT_H_
#define DORVDLCTL_ITEM_IMPORT_H_

#include <CLI/CLI.hpp>

#include "global_options.h"

namespace dorvdl::ctl {

// Adds the command "import". @p global must outlive @p group.
void AddItemImport(CLI::App& group, const GlobalOptions& global);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_ITEM_IMPORT_H_
