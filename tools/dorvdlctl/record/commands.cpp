#include "record/commands.h"

namespace dorvdl::ctl {

CLI::App& AddGroup(CLI::App& app, const Description& kind) {
  CLI::App& group = *app.add_subcommand(kind.GroupName(), kind.title);
  group.require_subcommand(1);
  return group;
}

void AddAssignments(CLI::App& command, std::vector<std::string>& assignments) {
  command
      .add_option("KEY=VALUE", assignments,
                  "A column and its value: a text, a decimal number, yes or no, or JSON, "
                  "whatever the column holds")
      ->type_name("");
}

std::string ColumnList(const Description& kind) {
  std::string list;
  for (const std::string& column : kind.columns) {
    if (column == kind.key) {
      continue;
    }
    list.append(list.empty() ? "" : ", ").append(column);
    const auto note = kind.notes.find(column);
    if (note != kind.notes.end()) {
      list.append(" (").append(note->second).append(")");
    }
  }
  return list;
}

}  // namespace dorvdl::ctl
