#include <memory>

#include "argument.h"
#include "task/commands.h"
#include "task/common.h"

namespace dorvdl::ctl {
namespace {

void Remove(const std::vector<std::int32_t>& ids, const GlobalOptions& global) {
  Work work(global);
  std::vector<std::int32_t> found;
  std::vector<std::int32_t> missing;
  for (const std::int32_t id : ids) {
    (work.tasks().Get(id).IsValid() ? found : missing).push_back(id);
  }
  if (!found.empty()) {
    work.tasks().Delete(found);  // a failure makes the commit fail
  }
  work.Commit();
  if (!missing.empty()) {
    throw NoSuchTask(missing, global);
  }
}

}  // namespace

void AddTaskRemove(CLI::App& group, const GlobalOptions& global) {
  const auto ids = std::make_shared<std::vector<std::int32_t>>();
  CLI::App& command = *group.add_subcommand("remove", "Remove tasks");
  command.add_option("ID", *ids, "The tasks' ids")->type_name("")->required()->check(NumberFrom(1));
  command.footer("Tasks that do not exist are named; the others are removed all the same.");
  command.callback([ids, &global] { Remove(*ids, global); });
}

}  // namespace dorvdl::ctl
