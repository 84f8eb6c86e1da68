#include <dorvdl/control/thumbnail_control.h>
#include <dorvdl/db/thumbnail.h>

#include "control/shared_table_control_impl.h"

namespace dorvdl::control {

template class SharedTableControl<interface::ThumbnailInterface, db::Thumbnail, record::Thumbnail>;

std::vector<record::Thumbnail> ThumbnailControl::List(const option::thumbnail::ListOption& option) {
  return OnTable<db::Thumbnail>(controller_, [&](auto& table) { return table.List(option); });
}

std::vector<int> ThumbnailControl::ListFileIndexByTaskID(int task_id) {
  return OnTable<db::Thumbnail>(controller_,
                                [&](auto& table) { return table.ListFileIndexByTaskID(task_id); });
}

int ThumbnailControl::Count(const option::thumbnail::ListOption& option) {
  return OnTable<db::Thumbnail>(
      controller_, [&](auto& table) { return table.Count(option); }, kNoCount);
}

}  // namespace dorvdl::control
