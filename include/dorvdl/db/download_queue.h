/// @file
/// The table of download tasks.
#ifndef DORVDL_DB_DOWNLOAD_QUEUE_H_
#define DORVDL_DB_DOWNLOAD_QUEUE_H_

#include <dorvdl/control/option/task.h>
#include <dorvdl/db/operator.h>
#include <dorvdl/record/task.h>
#include <dorvdl/util/export.h>

#include <string>
#include <vector>

namespace dorvdl::db {

extern template class DORVDL_EXPORT DBOperator<record::Task>;

/// The download queue as one user sees it: every operation but Create() reaches only the tasks of
/// that user, whose name is compared without regard to case. With an empty user name it reaches the
/// tasks of all users.
class DORVDL_EXPORT DownloadQueue : public DBOperator<record::Task> {
 public:
  /// @param user  copied.
  DownloadQueue(DBSession& session, const std::string& user);

  const char* GetTableName() override;
  const char* GetPrimaryKeyName() override;

  /// The condition that a row belongs to the user; null for an empty user name.
  dorvdbquery::Condition GetUserCondition() const;

  /// GetUserCondition() and the criteria of @p option. Its paging and order take no part.
  dorvdbquery::Condition GetCondition(const control::option::task::ListOption& option) const;

  /// The matching tasks, paged and ordered by @p option: by "task_id" ascending when no `sort_by`
  /// is set; "progress" (percent) and "timeleft" (seconds, unknown when not downloading) are
  /// computed orders, their names in any case; anything else must be a column. Empty on failure
  /// (logged).
  std::vector<record::Task> List(const control::option::task::ListOption& option);

  /// The number of matching tasks; -1 on failure (logged).
  int Count(const control::option::task::ListOption& option);

  /// The task; not valid when this user has none with this id.
  record::Task Get(int task_id);

  /// Writes the present fields of @p task to the task with its id. True also when this user has
  /// none with this id, and nothing is written then; false when only the key is present.
  bool Update(const record::Task& task);

  /// Deletes this user's tasks with these ids. Reaching none is a success.
  bool Delete(const std::vector<int>& task_ids);

  /// Deletes this user's tasks whose id is @p task_id or less. (Called through the operator, it
  /// deletes everybody's.) Reaching none is a success.
  bool DeleteEarlierThan(int task_id);

  /// Inserts @p task, whoever its owner is, and sets its id. When @p source_path is not empty, the
  /// regular file there is stored in the database first, read as root (see LoImport()), and its
  /// large-object id becomes the task's `file_oid`. On failure nothing is stored and @p task is as
  /// it was. Without a source file, and outside of any transaction, it is one statement. A task of
  /// a derived class is inserted as DBOperator's Create() does it, its `file_oid`
  /// set before its hooks are asked.
  bool Create(record::Task& task, const std::string& source_path);

  /// Stores the regular file at @p path, read as root, as the task's source file. The process's
  /// effective ids are root's until the whole file is stored: no other thread may switch ids, or
  /// should act for a user, meanwhile. False, with nothing stored, when the file cannot be read or
  /// this user has no such task. The large object that the task had before stays in the database.
  bool LoImport(int task_id, const std::string& path);

  /// Writes the task's stored source file to @p path; false when this user has no such task, when
  /// it has no stored file, or when writing fails.
  bool LoExport(int task_id, const std::string& path);

 private:
  bool CreateInScope(record::Task& task, const std::string& source_path);
  // Makes the stored file @p oid, which this call has stored, that of @p task.
  void GiveFile(unsigned oid, record::Task& task);

  const std::string user_;  // also of what was moved from, which would reach everybody's tasks
};

}  // namespace dorvdl::db

#endif  // DORVDL_DB_DOWNLOAD_QUEUE_H_
