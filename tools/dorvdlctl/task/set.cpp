#include <memory>

#include "help.h"
#include "record/commands.h"
#include "task/commands.h"
#include "task/kind.h"
#include "task/password.h"

namespace dorvdl::ctl {
namespace {

struct Arguments : AssignmentArguments<TaskKind> {
  std::string password_file;
};

// Writes a task with the key and what is to be changed, nothing else: a task that was read must not
// be written back.
void Set(const Arguments& arguments, const GlobalOptions& global) {
  if (arguments.assignments.empty() && arguments.password_file.empty()) {
    throw WrongUsage("nothing to set: give KEY=VALUE");
  }
  record::Task changes = arguments.Carry(Tasks());
  changes.set_primary_key(arguments.key);
  if (!arguments.password_file.empty()) {
    changes.mutable_proto().set_unzip_password(ReadPassword(arguments.password_file));
  }
  Change(Tasks(), arguments.key, changes, global);
}

}  // namespace

void AddTaskSet(CLI::App& group, const GlobalOptions& global) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App& command = *group.add_subcommand("set", "Change columns of one task");
  AddKey(command, Tasks(), arguments->key);
  AddAssignments(command, arguments->assignments);
  AddPasswordFile(command, arguments->password_file);
  command.footer(Footer({"Only the columns named are written. `task show` names them all.",
                         {"task set 7 status=2 'extra_data={\"tries\":1}'"}}));
  command.callback([arguments, &global] { Set(*arguments, global); });
}

}  // namespace dorvdl::ctl
