#include "record/commands.h"

namespace dorvdl::ctl {

CLI::App& AddGroup(CLI::App& app, const Description& kind) {
  CLI::App& group = *app.add_subcommand(kind.noun, kind.title);
  group.require_subcommand(1);
  return group;
}

void AddAssignments(CLI::App& command, std::vector<std::string>& assignments) {
  command
      .add_option("KEY=VALUE", assignments,
                  "A column and its value: a text, a decimal number, yes or no, or JSON,\n"
                  "whatever the column holds")
      ->type_name("");
}

}  // namespace dorvdl::ctl
