// The command that asks for a user's disk quota.
#include <dorvdl/file.h>
#include <pwd.h>

#include <iostream>
#include <memory>
#include <string>

#include "argument.h"
#include "groups.h"
#include "help.h"
#include "outcome.h"
#include "reading/parse_number.h"
#include "record/print.h"
#include "storage/download_folder.h"

namespace dorvdl::ctl {
namespace {

struct Arguments {
  std::string user;
  std::string bytes;
  std::string path;
};

uid_t UserId(const std::string& user) {
  const passwd* const account = getpwnam(user.c_str());
  if (account == nullptr) {
    throw Failure("this machine has no user " + user);
  }
  return account->pw_uid;
}

void AskForQuota(const Arguments& arguments, const GlobalOptions& global) {
  unsigned long long bytes = 0;
  if (!ParseNumber(arguments.bytes, bytes)) {
    throw WrongUsage("\"" + arguments.bytes + "\" is no number of bytes");
  }
  const uid_t user = UserId(arguments.user);
  const std::string path = arguments.path.empty() ? DownloadFolder() : arguments.path;
  if (DORVDLQuotaCheck(user, path.c_str(), bytes) != 0) {
    throw Failure("the quota of " + arguments.user + " does not allow " + arguments.bytes +
                  " bytes more at " + path + ", or cannot be asked for");
  }
  if (global.json) {
    PrintJson(true);
  } else {
    std::cout << "enough\n";
  }
}

}  // namespace

void AddQuota(CLI::App& app, const GlobalOptions& global) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App& command = *app.add_subcommand("quota", "Ask whether a user's disk quota has room");
  command.add_option("USER", arguments->user, "A user of this machine")
      ->type_name("")
      ->required()
      ->check(Utf8Text());
  command.add_option("BYTES", arguments->bytes, "How many bytes more there are to be")
      ->type_name("")
      ->required();
  command
      .add_option("--path", arguments->path,
                  "Something on the volume in question; default: the download folder")
      ->type_name("PATH");
  command.footer(Footer(
      {"Prints \"enough\", in JSON true; anything else is a failure. Administrators, and users "
       "without a quota, always have enough. Needs to be run by root.",
       {"quota alice 1073741824 --path /volume1"}}));
  command.callback([arguments, &global] { AskForQuota(*arguments, global); });
}

}  // namespace dorvdl::ctl
