// Checks of what stands on the command line.
#ifndef DORVDLCTL_ARGUMENT_H_
#define DORVDLCTL_ARGUMENT_H_

#include <CLI/CLI.hpp>
#include <cstdint>

namespace dorvdl::ctl {

// For options of type int32: a decimal number, @p least or greater. (CLI11's own conversion, which
// comes after the check, would read 010 as 8; so leading zeros are refused.)
CLI::Validator NumberFrom(std::int32_t least);

// For options that take text.
CLI::Validator Utf8Text();

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_ARGUMENT_H_
