#include <dorvdl/util/to_lower.h>

#include <string>

#include "groups.h"
#include "help.h"
#include "outcome.h"
#include "record/commands.h"
#include "setting/table.h"

namespace dorvdl::ctl {
namespace {

using SettingKind = Kind<SettingTable, control::option::common::ListOption, std::string>;

void CheckOwner(record::UserSetting& setting, const GlobalOptions& global) {
  const std::string& owner = setting.proto().username();
  if (!global.user.empty() && util::ToLower(owner) != util::ToLower(global.user)) {
    throw WrongUsage("user " + global.user + " cannot add settings of user " + owner);
  }
}

const SettingKind& Settings() {
  static const SettingKind settings = [] {
    SettingKind kind;
    kind.noun = "setting";
    kind.title = "Download settings of the users, one per user";
    kind.key = "username";
    kind.key_label = "NAME";
    kind.key_is_given = true;
    kind.listed = {"username",
                   "uid",
                   "user_disabled",
                   "share_folder",
                   "delete_watchtorrent",
                   "watchfolder",
                   "enable_watchffolder"};
    kind.shrinking = "watchfolder";
    kind.complete = &CheckOwner;
    kind.notes = {{"enable_watchffolder", "spelt like this"}};
    kind.help.list = {"", {"setting list --sort-by uid"}};
    kind.help.show = {"NAME is written as in the table: here case counts.",
                      {"setting show alice --json"}};
    kind.help.add = {"", {"setting add alice uid=1026 share_folder=video"}};
    kind.help.set = {"", {"setting set alice user_disabled=yes"}};
    kind.help.remove = {"", {"setting remove alice"}};
    return kind;
  }();
  return settings;
}

}  // namespace

void AddSettingCommands(CLI::App& app, const GlobalOptions& global) {
  AddRecordGroup(app, Settings(), global);
}

}  // namespace dorvdl::ctl
