// The password for unpacking, which several of the commands on tasks take.
#ifndef DORVDLCTL_TASK_PASSWORD_H_
#define DORVDLCTL_TASK_PASSWORD_H_

#include <CLI/CLI.hpp>
#include <string>

namespace dorvdl::ctl {

// Adds --password-file.
void AddPasswordFile(CLI::App& command, std::string& path);

// The first line of the file at @p path, of the standard input for "-": a secret does not belong on
// a command line, where every process sees it. Throws Failure.
std::string ReadPassword(const std::string& path);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_TASK_PASSWORD_H_
