/// @file
/// The table of preview pictures.
#ifndef DORVDL_DB_THUMBNAIL_H_
#define DORVDL_DB_THUMBNAIL_H_

#include <dorvdl/control/option/thumbnail.h>
#include <dorvdl/db/operator.h>
#include <dorvdl/record/thumbnail.h>
#include <dorvdl/util/export.h>

#include <vector>

namespace dorvdl::db {

extern template class DORVDL_EXPORT DBOperator<record::Thumbnail>;

/// The preview pictures of the tasks' videos, without restriction to a user.
class DORVDL_EXPORT Thumbnail : public DBOperator<record::Thumbnail> {
 public:
  explicit Thumbnail(DBSession& session);

  const char* GetTableName() override;
  const char* GetPrimaryKeyName() override;

  /// The criteria of @p option; null when none is set. Its paging and order take no part.
  dorvdbquery::Condition GetCondition(const control::option::thumbnail::ListOption& option) const;

  /// The number of matching thumbnails; -1 on failure (logged).
  int Count(const control::option::thumbnail::ListOption& option);

  /// The matching thumbnails, paged and ordered by @p option; empty on failure (logged).
  std::vector<record::Thumbnail> List(const control::option::thumbnail::ListOption& option);

  /// The indexes of the task's files that have thumbnails, each once, in the database's order;
  /// empty on failure (logged).
  std::vector<int> ListFileIndexByTaskID(int task_id);
};

}  // namespace dorvdl::db

#endif  // DORVDL_DB_THUMBNAIL_H_
