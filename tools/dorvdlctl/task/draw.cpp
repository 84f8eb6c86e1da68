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

// "-" when unknown, under the conditions of the order "timeleft" and for a size below 0. The
// columns hold whatever numbers other programs wrote, so no step may overflow.
std::string TimeLeft(const record::proto::Task& task) {
  constexpr int kHardlyMoving = 512;
  const std::int64_t total = task.total_size();
  const std::int64_t rate = task.current_rate();
  if (task.status() != record::kStatusDownloading || total <= 0 || rate < kHardlyMoving) {
    return "-";
  }
  const std::int64_t missing = total - std::clamp<std::int64_t>(task.current_size(), 0, total);
  return Duration(missing / rate + (missing % rate == 0 ? 0 : 1));
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
