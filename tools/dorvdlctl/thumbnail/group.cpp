#include <dorvdl/control/thumbnail_control.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "groups.h"
#include "help.h"
#include "record/commands.h"

namespace dorvdl::ctl {
namespace {

using control::option::thumbnail::ListOption;
using ThumbnailKind = Kind<control::ThumbnailControl, ListOption>;

void AddCriteria(CLI::App& command, ListOption& option) {
  AddNumberCriterion(command, "--task", "Only thumbnails of the task with this id", 1,
                     option.task_id)
      .type_name("ID");
  AddNumberCriterion(command, "--file", "Only thumbnails of the task's file with this index", 0,
                     option.file_index)
      .type_name("INDEX");
}

const ThumbnailKind& Thumbnails() {
  static const ThumbnailKind thumbnails = [] {
    ThumbnailKind kind;
    kind.noun = "thumbnail";
    kind.title = "Thumbnails of the tasks' videos";
    kind.key = "thumbnail_id";
    kind.listed = {"thumbnail_id",     "task_id",     "file_index",        "thumbnail_index",
                   "thumbnail_second", "create_time", "thumbnail_filename"};
    kind.shrinking = "thumbnail_filename";
    kind.parent = &TaskParent();
    kind.add_criteria = &AddCriteria;
    kind.notes = {{"thumbnail_second", "of the video"}, {"create_time", "seconds since 1970"}};
    kind.help.list = {"", {"thumbnail list --task 7 --file 0"}};
    kind.help.show = {"", {"thumbnail show 4 --json"}};
    kind.help.add = {"", {"thumbnail add task_id=7 file_index=0 thumbnail_filename=a.jpg"}};
    kind.help.set = {"", {"thumbnail set 4 thumbnail_second=90"}};
    kind.help.remove = {"", {"thumbnail remove 4"}};
    return kind;
  }();
  return thumbnails;
}

void PrintFiles(std::int32_t task_id, const GlobalOptions& global) {
  Work work(global);
  RequireOwnParent(work, TaskParent(), task_id);
  std::vector<int> indexes = work.Use<control::ThumbnailControl>().ListFileIndexByTaskID(task_id);
  work.Commit();
  std::sort(indexes.begin(), indexes.end());
  PrintNumbers(indexes, global);
}

void AddFiles(CLI::App& group, const GlobalOptions& global) {
  const auto task_id = std::make_shared<std::int32_t>();
  CLI::App& command =
      *group.add_subcommand("files", "List the indexes of the files that have thumbnails");
  AddId(command, "TASK", "The task's id", *task_id);
  command.footer(Footer({"", {"thumbnail files 7"}}));
  command.callback([task_id, &global] { PrintFiles(*task_id, global); });
}

}  // namespace

void AddThumbnailCommands(CLI::App& app, const GlobalOptions& global) {
  AddFiles(AddRecordGroup(app, Thumbnails(), global), global);
}

}  // namespace dorvdl::ctl
