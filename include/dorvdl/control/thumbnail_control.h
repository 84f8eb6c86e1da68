/// @file
/// Preview pictures, for the programs that use the library.
#ifndef DORVDL_CONTROL_THUMBNAIL_CONTROL_H_
#define DORVDL_CONTROL_THUMBNAIL_CONTROL_H_

#include <dorvdl/control/interface/thumbnail_interface.h>
#include <dorvdl/control/shared_table_control.h>
#include <dorvdl/util/export.h>

#include <vector>

namespace dorvdl::db {
class Thumbnail;
}

namespace dorvdl::control {

extern template class DORVDL_EXPORT
    SharedTableControl<interface::ThumbnailInterface, db::Thumbnail, record::Thumbnail>;

/// The preview pictures of the tasks' videos. The acting user plays no part, but on
/// a user's controller.
class DORVDL_EXPORT ThumbnailControl
    : public SharedTableControl<interface::ThumbnailInterface, db::Thumbnail, record::Thumbnail> {
 public:
  using SharedTableControl::SharedTableControl;

  /// The thumbnails that meet @p option, in its order; empty on failure (logged).
  std::vector<record::Thumbnail> List(const option::thumbnail::ListOption& option) override;

  /// The indexes of the task's files that have thumbnails, each once; empty on failure (logged).
  std::vector<int> ListFileIndexByTaskID(int task_id) override;

  /// The number of thumbnails that meet @p option; -1 on failure (logged).
  [[nodiscard]] int Count(const option::thumbnail::ListOption& option);
};

}  // namespace dorvdl::control

#endif  // DORVDL_CONTROL_THUMBNAIL_CONTROL_H_
