// Trying a filter's pattern.
#ifndef DORVDLCTL_FILTER_TEST_H_
#define DORVDLCTL_FILTER_TEST_H_

#include <CLI/CLI.hpp>

#include "global_options.h"

namespace dorvdl::ctl {

// Adds the command "test". @p global must outlive @p group.
void AddFilterTest(CLI::App& group, const GlobalOptions& global);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_FILTER_TEST_H_
