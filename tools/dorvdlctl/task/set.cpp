#include <memory>

#include "task/commands.h"
#include "task/common.h"
#include "task/field.h"

namespace dorvdl::ctl {
namespace {

struct Arguments {
  std::int32_t id = 0;
  std::vector<std::string> assignments;
  std::string password_file;
};

// A task with the key and what is to be changed, nothing else: a task that was read must not be
// written back.
record::Task Changes(const Arguments& arguments) {
  record::Task changes;
  changes.set_primary_key(arguments.id);
  for (const std::string& assignment : arguments.assignments) {
    Assign(assignment, changes);
  }
  if (!arguments.password_file.empty()) {
    changes.mutable_proto().set_unzip_password(ReadPassword(arguments.password_file));
  }
  return changes;
}

void Set(const Arguments& arguments, const GlobalOptions& global) {
  if (arguments.assignments.empty() && arguments.password_file.empty()) {
    throw WrongUsage("nothing to set: give KEY=VALUE");
  }
  const record::Task changes = Changes(arguments);
  Work work(global);
  GetTask(work, arguments.id, global);
  work.tasks().Update(changes);  // a failure makes the commit fail
  work.Commit();
}

}  // namespace

void AddTaskSet(CLI::App& group, const GlobalOptions& global) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App& command = *group.add_subcommand("set", "Change columns of a task");
  AddTaskId(command, arguments->id);
  command
      .add_option("KEY=VALUE", arguments->assignments,
                  "A column and its new value: a text or decimal number, JSON for extra_data")
      ->type_name("");
  AddPasswordFile(command, arguments->password_file);
  command.footer(
      "Only the columns named are written. `task show` names them all.\n"
      "\nExample: dorvdlctl task set 7 status=2 current_size=1048576 'extra_data={\"tries\":1}'");
  command.callback([arguments, &global] { Set(*arguments, global); });
}

}  // namespace dorvdl::ctl
