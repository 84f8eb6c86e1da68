#include <dorvdl/db/download_queue.h>
#include <dorvdl/dbquery/transaction.h>
#include <dorvdl/util/log.h>

#include <boost/algorithm/string/predicate.hpp>
#include <cstdint>
#include <locale>
#include <optional>

#include "db/conditions.h"

namespace dorvdl::db {
namespace {

using dorvdbquery::Condition;
using dorvdbquery::OrderExpression;
using dorvdbquery::SelectQuery;
using ListOption = control::option::task::ListOption;

// Percent of the data that has arrived.
constexpr OrderExpression kProgress(
    "CASE WHEN total_size = 0 THEN 0 ELSE ((current_size::float/total_size::float)*100) END");

// Seconds until all data has arrived; unknown for a task that is not downloading, whose size is
// unknown, or that hardly moves (less than 512 bytes per second).
constexpr OrderExpression kTimeLeft(
    "CASE WHEN (total_size = 0 or (current_rate < 512 and status = 2) or status != 2) THEN NULL "
    "ELSE ((total_size::float-current_size::float)/current_rate::float) END");

// The columns of a task as a select list. Never destroyed: static objects may list tasks in their
// destructors.
const std::string& TaskColumns() {
  static const auto& columns = *new std::string(
      dorvdbquery::SqlText().AppendIdentifiers(record::Task::GetSelectFields()).text());
  return columns;
}

void ApplyOrder(const ListOption& option, SelectQuery::Order order, SelectQuery& query) {
  const auto is = [&option](const char* name) {
    return boost::iequals(*option.common.sort_by, name, std::locale::classic());
  };
  if (!option.common.sort_by) {
    query.OrderBy("task_id", SelectQuery::kAscending);
  } else if (is("progress")) {
    query.OrderBy(kProgress, order);
    query.OrderBy("task_id", SelectQuery::kAscending);
  } else if (is("timeleft")) {
    query.OrderBy(kTimeLeft, order);
    query.OrderBy("status", order);
  } else {
    query.OrderBy(*option.common.sort_by, order);
  }
}

// Puts a task's `file_oid` back as it was, unless told to leave it.
class FileOidKeeper {
 public:
  explicit FileOidKeeper(record::proto::Task& task) : task_(&task) {
    if (task.has_file_oid()) {
      before_ = task.file_oid();
    }
  }
  ~FileOidKeeper() {
    if (task_ != nullptr) {
      before_ ? task_->set_file_oid(*before_) : task_->clear_file_oid();
    }
  }
  FileOidKeeper(const FileOidKeeper&) = delete;
  FileOidKeeper& operator=(const FileOidKeeper&) = delete;

  void LeaveAsItIs() { task_ = nullptr; }

 private:
  record::proto::Task* task_;
  std::optional<std::int32_t> before_;
};

}  // namespace

template class DBOperator<record::Task>;

DownloadQueue::DownloadQueue(DBSession& session, const std::string& user)
    : DBOperator(session), user_(user) {}

const char* DownloadQueue::GetTableName() { return "download_queue"; }

const char* DownloadQueue::GetPrimaryKeyName() { return "task_id"; }

Condition DownloadQueue::GetUserCondition() const { return BelongsTo(user_); }

Condition DownloadQueue::GetCondition(const ListOption& option) const {
  Condition condition = GetUserCondition();
  if (option.filename) {
    condition = condition && Condition::HasSubstring("filename", *option.filename);
  }
  condition = condition && WhenSet("waiting_until_time", ">", option.waiting_until_time);
  if (option.task_flags) {
    // The mask is a part of the text, as the column is; being a number it can do no harm there. A
    // negative one reads as an operator "&-", so the list fails: no flag has that bit.
    const std::string bits = "(task_flags&" + std::to_string(*option.task_flags) + ")";
    const char* const op = option.exclude_task_flags.value_or(false) ? "=" : "!=";
    condition = condition && Condition::ConditionFactory<int>(bits, op, 0);
  }
  if (option.status && !option.status->empty()) {
    const Condition listed = Condition::In<int>("status", *option.status);
    condition = condition && (option.exclude_status.value_or(false) ? !listed : listed);
  }
  return condition;
}

std::vector<record::Task> DownloadQueue::List(const ListOption& option) {
  std::vector<record::Task> tasks;
  SelectQuery query(GetSession(), GetTableName());
  query.SelectFields(TaskColumns());
  ApplyPaging(option.common, query);
  ApplyOrder(option, Direction(option.common), query);
  query.Where(GetCondition(option));
  if (!ReadAll(query, tasks)) {
    DORVDL_LOG(LOG_ERR, "Failed to execute list operation");
  }
  return tasks;
}

int DownloadQueue::Count(const ListOption& option) {
  return DBOperator::Count(GetCondition(option));
}

record::Task DownloadQueue::Get(int task_id) {
  return DBOperator::Get(task_id, GetUserCondition());
}

bool DownloadQueue::Update(const record::Task& task) {
  return DBOperator::Update(task, GetUserCondition());
}

bool DownloadQueue::Delete(const std::vector<int>& task_ids) {
  return DBOperator::Delete(task_ids, GetUserCondition());
}

bool DownloadQueue::DeleteEarlierThan(int task_id) {
  return DeleteUpTo(task_id, GetUserCondition());
}

bool DownloadQueue::Create(record::Task& task, const std::string& source_path) {
  // One statement is a transaction already. Within another it is a scope of its own, so that a
  // refused one leaves what is around it usable.
  if (source_path.empty() && !GetSession().InTransaction()) {
    return DBOperator::Create(task);
  }
  return CreateInScope(task, source_path);
}

bool DownloadQueue::CreateInScope(record::Task& task, const std::string& source_path) {
  dorvdbquery::DefaultTransaction transaction(GetSession());
  if (IsRefused(task)) {
    return false;  // before a file is read as root
  }
  FileOidKeeper file_oid(task.mutable_proto());
  if (!source_path.empty()) {
    const unsigned oid = DBOperator::LoImport(source_path);
    if (oid == 0) {
      return false;
    }
    GiveFile(oid, task);
  }
  const std::optional<int> key = Insert(task);
  if (!key || !transaction.Commit()) {
    return false;
  }
  file_oid.LeaveAsItIs();
  Complete(task, *key);
  return true;
}

bool DownloadQueue::LoImport(int task_id, const std::string& path) {
  dorvdbquery::DefaultTransaction transaction(GetSession());
  const unsigned oid = DBOperator::LoImport(path);
  if (oid == 0) {
    return false;
  }
  record::Task task;
  task.mutable_proto().set_task_id(task_id);
  GiveFile(oid, task);
  const long long rows = UpdateRows(task, GetUserCondition());
  if (rows == 0) {
    // An update that reaches no row succeeds elsewhere; here it would leave a file that no task
    // has.
    GetSession().Fail({dorvdbquery::Failure::Kind::kRefused, "", "there is no such task"});
  }
  return rows > 0 && transaction.Commit();
}

void DownloadQueue::GiveFile(unsigned oid, record::Task& task) {
  task.mutable_proto().set_file_oid(static_cast<int>(oid));  // bit for bit
  Grant(dorvdbquery::ToParameter(task.proto().file_oid()));
}

bool DownloadQueue::LoExport(int task_id, const std::string& path) {
  const record::Task task = Get(task_id);
  return task.IsValid() && task.proto().file_oid() != 0 &&
         DBOperator::LoExport(task.proto().file_oid(), path);
}

}  // namespace dorvdl::db
