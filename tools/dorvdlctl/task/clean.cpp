// The command that removes the temporary files of tasks.
#include <dorvdl/file.h>

#include <memory>
#include <string>
#include <vector>

#include "help.h"
#include "outcome.h"
#include "record/key.h"
#include "record/rows.h"
#include "storage/download_folder.h"
#include "task/commands.h"
#include "task/kind.h"

namespace dorvdl::ctl {
namespace {

// Throws Failure when one of the tasks is not the acting user's.
void RequireOwn(const std::vector<std::int32_t>& ids, const GlobalOptions& global) {
  Work work(global);
  for (const std::int32_t id : ids) {
    GetExisting(work, Tasks(), id);
  }
  work.Commit();
}

void Clean(const std::vector<std::int32_t>& ids, const GlobalOptions& global) {
  if (!global.user.empty()) {
    RequireOwn(ids, global);
  }
  const std::string folder = DownloadFolder();
  for (const std::int32_t id : ids) {
    const std::string path = folder + "/" + std::to_string(id);
    if (RemoveTaskTemp(path.c_str(), 0) != 0) {
      throw Failure(path + " could not be removed");
    }
  }
}

}  // namespace

void AddTaskClean(CLI::App& group, const GlobalOptions& global) {
  const auto ids = std::make_shared<std::vector<std::int32_t>>();
  CLI::App& command = *group.add_subcommand("clean", "Remove the temporary files of tasks");
  AddKeys(command, Tasks(), *ids);
  command.footer(Footer(
      {"Removes the tasks' folders in the temporary download folder and leaves the tasks "
       "themselves alone. Without --user the tasks may be gone; it is for no task that is being "
       "downloaded.",
       {"task clean 7 9"}}));
  command.callback([ids, &global] { Clean(*ids, global); });
}

}  // namespace dorvdl::ctl
