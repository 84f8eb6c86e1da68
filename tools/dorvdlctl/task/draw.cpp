#include <dorvdl/record/task_status.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "rendering/status_word.h"
#include "rendering/units.h"
#include "task/kind.h"

namespace dorvdl::ctl {
namespace {

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

}  // namespace

Table DrawTasks(const std::vector<record::Task>& tasks, bool with_user) {
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
  return table;
}

}  // namespace dorvdl::ctl
