#include <dorvdl/record/task_status.h>

#include <algorithm>
#include <iostream>
#include <memory>

#include "rendering/message_json.h"
#include "rendering/status_word.h"
#include "rendering/table.h"
#include "rendering/units.h"
#include "task/commands.h"
#include "task/common.h"
#include "task/criteria.h"

namespace dorvdl::ctl {
namespace {

using control::option::task::ListOption;

// "-" when unknown, under the conditions of the order "timeleft".
std::string TimeLeft(const record::proto::Task& task) {
  constexpr int kHardlyMoving = 512;
  if (task.status() != record::kStatusDownloading || task.total_size() == 0 ||
      task.current_rate() < kHardlyMoving) {
    return "-";
  }
  const std::int64_t missing = std::max<std::int64_t>(task.total_size() - task.current_size(), 0);
  return Duration((missing + task.current_rate() - 1) / task.current_rate());
}

void PrintTable(const std::vector<record::Task>& tasks, bool with_user) {
  std::vector<Column> columns = {{"ID", Alignment::kRight}};
  if (with_user) {
    columns.push_back({"USER"});
  }
  columns.insert(columns.end(), {{"NAME", Alignment::kLeft, true},
                                 {"STATUS"},
                                 {"PROGRESS"},
                                 {"SIZE", Alignment::kRight},
                                 {"RATE", Alignment::kRight},
                                 {"TIME LEFT", Alignment::kRight}});
  Table table(columns);
  for (const record::Task& task : tasks) {
    const record::proto::Task& fields = task.proto();
    std::vector<std::string> cells = {std::to_string(fields.task_id())};
    if (with_user) {
      cells.push_back(fields.username());
    }
    // A task that came from a URL has no name before the download has begun.
    cells.insert(cells.end(), {fields.filename().empty() ? fields.url() : fields.filename(),
                               StatusWord(fields.status()),
                               ProgressBar(Percent(fields.current_size(), fields.total_size())),
                               fields.total_size() == 0 ? "-" : Size(fields.total_size()),
                               Rate(fields.current_rate()), TimeLeft(fields)});
    table.Add(cells);
  }
  table.Print(std::cout, TerminalWidth());
}

void PrintJson(const std::vector<record::Task>& tasks) {
  Json::Value list(Json::arrayValue);
  for (const record::Task& task : tasks) {
    list.append(TaskToJson(task));
  }
  std::cout << JsonText(list) << '\n';
}

void List(const ListOption& option, const GlobalOptions& global) {
  Work work(global);
  const std::vector<record::Task> tasks = work.tasks().List(option);
  work.Commit();
  if (global.json) {
    PrintJson(tasks);
  } else {
    PrintTable(tasks, global.user.empty());
  }
}

}  // namespace

void AddTaskList(CLI::App& group, const GlobalOptions& global) {
  const auto option = std::make_shared<ListOption>();
  CLI::App& command = *group.add_subcommand("list", "List tasks");
  AddCriteria(command, *option);
  AddOrderAndPage(command, option->common);
  command.footer(
      "A task is listed when it meets all criteria. The order is that of the ids by default.\n"
      "\nExamples:\n"
      "  dorvdlctl --user alice task list --status downloading --sort-by timeleft\n"
      "  dorvdlctl task list --status failed --type bt --type nzb --json");
  command.callback([option, &global] { List(*option, global); });
}

}  // namespace dorvdl::ctl
