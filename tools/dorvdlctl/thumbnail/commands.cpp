#include "thumbnail/commands.h"

#include <dorvdl/control/option/thumbnail.h>
#include <dorvdl/db/thumbnail.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <vector>

#include "record/commands.h"

namespace dorvdl::ctl {
namespace {

using control::option::thumbnail::ListOption;
using ThumbnailKind = Kind<db::Thumbnail, ListOption>;

void AddCriteria(CLI::App& command, ListOption& option) {
  AddNumberCriterion(command, "--task", "Only pictures of the task with this id", 1, option.task_id)
      .type_name("ID");
  AddNumberCriterion(command, "--file", "Only pictures of the task's file with this index", 0,
                     option.file_index)
      .type_name("INDEX");
}

const ThumbnailKind& Thumbnails() {
  static const ThumbnailKind thumbnails = [] {
    ThumbnailKind kind;
    kind.noun = "thumbnail";
    kind.title = "Preview pictures of the tasks' videos";
    kind.key = "thumbnail_id";
    kind.listed = {"thumbnail_id",     "task_id",     "file_index",        "thumbnail_index",
                   "thumbnail_second", "create_time", "thumbnail_filename"};
    kind.shrinking = "thumbnail_filename";
    kind.parent = &TaskParent();
    kind.add_criteria = &AddCriteria;
    kind.footers.list = "Example: dorvdlctl thumbnail list --task 7 --file 0";
    kind.footers.show = "Example: dorvdlctl thumbnail show 4 --json";
    kind.footers.add =
        "Columns: task_id, file_index, thumbnail_index, thumbnail_second (of the video),\n"
        "thumbnail_filename, create_time (seconds since 1970).\n"
        "\nExample: dorvdlctl thumbnail add task_id=7 file_index=0 thumbnail_filename=7_0.jpg";
    kind.footers.set =
        "Only the columns named are written: task_id, file_index, thumbnail_index,\n"
        "thumbnail_second, thumbnail_filename, create_time.\n"
        "\nExample: dorvdlctl thumbnail set 4 thumbnail_second=90";
    kind.footers.remove = "\nExample: dorvdlctl thumbnail remove 4";
    return kind;
  }();
  return thumbnails;
}

void PrintFiles(std::int32_t task_id, const GlobalOptions& global) {
  Work work(global);
  RequireOwnParent(work, TaskParent(), task_id);
  std::vector<int> indexes = work.Use<db::Thumbnail>().ListFileIndexByTaskID(task_id);
  work.Commit();
  std::sort(indexes.begin(), indexes.end());
  PrintNumbers(indexes, global);
}

void AddFiles(CLI::App& group, const GlobalOptions& global) {
  const auto task_id = std::make_shared<std::int32_t>();
  CLI::App& command =
      *group.add_subcommand("files", "List the indexes of a task's files that have pictures");
  command.add_option("TASK", *task_id, "The task's id")
      ->type_name("")
      ->required()
      ->check(KeyCheck(*task_id));
  command.footer("Example: dorvdlctl thumbnail files 7");
  command.callback([task_id, &global] { PrintFiles(*task_id, global); });
}

}  // namespace

void AddThumbnailCommands(CLI::App& app, const GlobalOptions& global) {
  AddFiles(AddRecordGroup(app, Thumbnails(), global), global);
}

}  // namespace dorvdl::ctl
