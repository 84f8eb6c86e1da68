// Options of `list` that say which records are wanted, and in which order.
#ifndef DORVDLCTL_RECORD_CRITERION_H_
#define DORVDLCTL_RECORD_CRITERION_H_

#include <dorvdl/control/option/common.h>

#include <CLI/CLI.hpp>
#include <boost/optional.hpp>
#include <cstdint>
#include <string>

#include "record/kind.h"

namespace dorvdl::ctl {

// Each adds an option to @p command that sets @p criterion, which must outlive the command: a text,
// or a number from @p least on.
CLI::Option& AddTextCriterion(CLI::App& command, const std::string& name,
                              const std::string& description,
                              boost::optional<std::string>& criterion);
CLI::Option& AddNumberCriterion(CLI::App& command, const std::string& name,
                                const std::string& description, std::int32_t least,
                                boost::optional<std::int32_t>& criterion);

// Adds --sort-by, --descending, --limit and --offset. The order is that of the keys by default.
void AddOrderAndPage(CLI::App& command, const Description& kind,
                     control::option::common::ListOption& option);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RECORD_CRITERION_H_
