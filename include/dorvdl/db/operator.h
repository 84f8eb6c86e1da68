/// @file
/// Create, read, update, delete, count and list over one table, for any record type.
#ifndef DORVDL_DB_OPERATOR_H_
#define DORVDL_DB_OPERATOR_H_

#include <dorvdl/control/option/common.h>
#include <dorvdl/db/bounds.h>
#include <dorvdl/db/session.h>
#include <dorvdl/dbquery/condition.h>
#include <dorvdl/dbquery/delete_query.h>
#include <dorvdl/dbquery/insert_query.h>
#include <dorvdl/dbquery/select_query.h>
#include <dorvdl/dbquery/update_query.h>
#include <dorvdl/record/message_record.h>
#include <dorvdl/util/log.h>
#include <dorvdl/util/privilege.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

namespace dorvdl::db {

/// The generic operations on the table of one record type. A table class derives from it and names
/// the table and its key column.
///
/// @tparam Record  a class derived from `record::RecordBase`, default-made and copyable.
///
/// Every operation on rows is one statement in one round trip. An extra condition restricts the
/// rows that an operation reaches; `dorvdbquery::Condition::Null()` restricts nothing. Database
/// errors come back as the results named below, after a log line of the query builder; what cannot
/// be read into a record is thrown (`soci::soci_error`, `std::bad_cast`) and leaves the session
/// usable.
///
/// An operator is a short-lived value. It keeps a share of its session's connection and goes on
/// with that when the session object is gone.
template <typename Record>
class DBOperator {
 public:
  using Condition = dorvdbquery::Condition;

  explicit DBOperator(DBSession& session) : session_(session), connection_(session.share()) {}
  virtual ~DBOperator() = default;

  /// The table's name, a plain identifier.
  virtual const char* GetTableName() = 0;
  /// The name of the table's integer key column, a plain identifier.
  virtual const char* GetPrimaryKeyName() = 0;

  /// The session that this operator was made with. Lives as long as this object.
  dorvdbquery::Session& GetSession() { return *connection_; }

  /// Bounds this accessor to @p user, which is not empty; one that acts for a user is made with the
  /// same. From now on it reaches only rows that belong to that user, by their owner or by their
  /// parent, and writes none that would not: Create() and Update() are refused then (logged) for
  /// what Bounds says. Statements stay one each. For the library's own records only; programs get
  /// it by control::Controller::ForUser().
  void BindTo(const std::string& user);

  /// The number of rows that meet @p condition; -1 on failure (logged).
  int Count(const Condition& condition);

  /// Inserts the present fields of @p record and, on success, writes the row's key into it. An
  /// object of a class derived from the record gives its own columns (`GetInsertFields()`) and, by
  /// name, its own values (`soci_ToBase()`).
  bool Create(Record& record);

  /// Deletes the rows whose key is among @p ids and that meet @p condition. Reaching none is a
  /// success.
  bool Delete(const std::vector<int>& ids, const Condition& condition);

  /// Deletes every row whose key is @p key or less, whoever's it is. Keys only grow, so these are
  /// the rows created up to that one, but not the rows that a reader of that one has seen: a row
  /// gets its key before it is committed, so one with a smaller key may show up later, and be
  /// deleted unseen. Who must not lose any deletes by the keys read.
  bool DeleteEarlierThan(int key);

  /// The row with this key that meets @p condition; a default record (not valid) when there is none
  /// or the query failed.
  Record Get(int key, const Condition& condition);

  /// The rows that meet @p condition, paged and ordered by @p option. Empty on failure (logged).
  /// Without a `sort_by`, and among rows that are equal in it, the order is the database's own and
  /// may differ from page to page.
  std::vector<Record> List(const control::option::common::ListOption& option,
                           const Condition& condition);

  /// Writes the present fields of @p record to the row with its key that meets @p condition.
  /// Reaching no row is a success; a record with nothing but its key is false.
  bool Update(const Record& record, const Condition& condition);

  /// Stores the regular file at @p path as a large object and returns its id; 0 on failure
  /// (logged). The process's effective ids are root's until the whole file is stored, for it may be
  /// readable by root only: no other thread may switch ids, or should act for a user, meanwhile.
  unsigned LoImport(const std::string& path);

  /// Writes the large object @p oid to @p path, with the caller's own ids: unlike the import, which
  /// reads what only root may read, this must not write where the caller could not.
  bool LoExport(int oid, const std::string& path);

 protected:
  bool is_bound() const { return bounds_.has_value(); }

  /// @p condition and, when this accessor is bound, that a row is the user's. Every statement of a
  /// table class that has a condition takes it from here.
  Condition Within(const Condition& condition) const {
    return is_bound() ? condition && bounds_->rows() : condition;
  }

  /// Lets the column that the bounds withhold, if there are any, be written with @p value.
  void Grant(dorvdbquery::Parameter value) {
    if (is_bound()) {
      bounds_->Grant(std::move(value));
    }
  }

  /// Whether Create() of @p record would be refused, of which nothing is sent; logs why.
  bool IsRefused(const Record& record);

  /// DeleteEarlierThan() of the rows that meet @p condition.
  bool DeleteUpTo(int key, const Condition& condition);

  /// Create() that leaves @p record as it is and returns the row's key; nothing on failure.
  std::optional<int> Insert(const Record& record);

  /// Writes into @p record what the row has got beyond it: its key, and its owner where the bounds
  /// have filled that in.
  void Complete(Record& record, int key) const;

  /// Update() that tells how many rows it reached; -1 on failure.
  long long UpdateRows(const Record& record, const Condition& condition);

  /// Sets the limit and the offset that @p option asks for.
  static void ApplyPaging(const control::option::common::ListOption& option,
                          dorvdbquery::SelectQuery& query);

  /// The direction that @p option asks for: ascending unless it says otherwise.
  static dorvdbquery::SelectQuery::Order Direction(
      const control::option::common::ListOption& option) {
    return option.ascending.value_or(true) ? dorvdbquery::SelectQuery::kAscending
                                           : dorvdbquery::SelectQuery::kDescending;
  }

  /// Runs @p query, whose rows are whole records, and appends each row to @p records; false when
  /// the execution failed.
  static bool ReadAll(dorvdbquery::SelectQuery& query, std::vector<Record>& records);

 private:
  // Makes the insert of Create(), within the bounds.
  void Describe(const Record& record, dorvdbquery::InsertQuery& query) const;

  Condition KeyIs(int key) {
    return Condition::ConditionFactory<int>(GetPrimaryKeyName(), "=", key);
  }

  [[maybe_unused]] DBSession& session_;  // may be gone: what is used is the share
  std::shared_ptr<dorvdbquery::Session> connection_;
  std::optional<Bounds> bounds_;  // none when it reaches everybody's rows
};

template <typename Record>
void DBOperator<Record>::BindTo(const std::string& user) {
  if constexpr (record::kIsMessageRecord<Record>) {
    bounds_.emplace(Record::GetOwnership(), user);
  }
}

template <typename Record>
int DBOperator<Record>::Count(const Condition& condition) {
  int count = -1;
  dorvdbquery::SelectQuery query(GetSession(), GetTableName());
  query.SelectField<int>("COUNT(*)", count);
  query.Where(Within(condition));
  if (!query.Execute()) {
    // Capitalised unlike List()'s, on purpose: who watches the log knows both texts as they are.
    DORVDL_LOG(LOG_ERR, "Failed to execute Count operation");
    return -1;
  }
  return count;
}

template <typename Record>
bool DBOperator<Record>::Create(Record& record) {
  const std::optional<int> key = Insert(record);
  if (key) {
    Complete(record, *key);
  }
  return key.has_value();
}

template <typename Record>
bool DBOperator<Record>::Delete(const std::vector<int>& ids, const Condition& condition) {
  dorvdbquery::DeleteQuery query(GetSession(), GetTableName());
  query.Where(Within(Condition::In<int>(GetPrimaryKeyName(), ids) && condition));
  return query.Execute();
}

template <typename Record>
bool DBOperator<Record>::DeleteEarlierThan(int key) {
  return DeleteUpTo(key, Condition::Null());
}

template <typename Record>
Record DBOperator<Record>::Get(int key, const Condition& condition) {
  Record record;
  dorvdbquery::SelectQuery query(GetSession(), GetTableName());
  query.Where(Within(KeyIs(key) && condition));
  if constexpr (record::kIsMessageRecord<Record>) {
    query.IntoRow(record.RowTarget());
  } else {
    query.Into(record);
  }
  query.Execute();  // a failure leaves the record as invalid as a missing row does
  return record;
}

template <typename Record>
std::vector<Record> DBOperator<Record>::List(const control::option::common::ListOption& option,
                                             const Condition& condition) {
  std::vector<Record> records;
  dorvdbquery::SelectQuery query(GetSession(), GetTableName());
  ApplyPaging(option, query);
  if (option.sort_by) {
    query.OrderBy(*option.sort_by, Direction(option));
  }
  query.Where(Within(condition));
  if (!ReadAll(query, records)) {
    DORVDL_LOG(LOG_ERR, "Failed to execute list operation");
  }
  return records;
}

template <typename Record>
bool DBOperator<Record>::Update(const Record& record, const Condition& condition) {
  return UpdateRows(record, condition) >= 0;
}

template <typename Record>
unsigned DBOperator<Record>::LoImport(const std::string& path) {
  unsigned oid = 0;
  IF_RUN_AS(0, 0) { oid = GetSession().ClientSideLOImport(path); }
  else {
    DORVDL_LOG(LOG_ERR, "Failed to set privilege");
    GetSession().Fail({dorvdbquery::Failure::Kind::kLocal, "", "Failed to set privilege"});
  }
  return oid;
}

template <typename Record>
bool DBOperator<Record>::LoExport(int oid, const std::string& path) {
  return GetSession().ClientSideLOExport(static_cast<unsigned long long>(oid), path);
}

template <typename Record>
bool DBOperator<Record>::DeleteUpTo(int key, const Condition& condition) {
  dorvdbquery::DeleteQuery query(GetSession(), GetTableName());
  query.Where(
      Within(Condition::ConditionFactory<int>(GetPrimaryKeyName(), "<=", key) && condition));
  return query.Execute();
}

template <typename Record>
std::optional<int> DBOperator<Record>::Insert(const Record& record) {
  int key = 0;
  dorvdbquery::InsertQuery query(GetSession(), GetTableName());
  Describe(record, query);
  query.Returning(GetPrimaryKeyName(), key);
  return query.Execute() ? std::optional<int>(key) : std::nullopt;
}

template <typename Record>
void DBOperator<Record>::Complete(Record& record, int key) const {
  record.set_primary_key(key);
  if constexpr (record::kIsMessageRecord<Record>) {
    if (is_bound()) {
      bounds_->TellOwner(record.mutable_proto());
    }
  }
}

template <typename Record>
bool DBOperator<Record>::IsRefused(const Record& record) {
  if (!is_bound()) {
    return false;
  }
  dorvdbquery::InsertQuery query(GetSession(), GetTableName());
  Describe(record, query);
  // Only a refused statement can be executed for no more than its log line.
  return !query.Statement().refusal().empty() && !query.Execute();
}

template <typename Record>
void DBOperator<Record>::Describe(const Record& record, dorvdbquery::InsertQuery& query) const {
  query.SetInsertAll(record.GetInsertFields());
  bool has_its_values = false;
  if constexpr (record::kIsMessageRecord<Record>) {
    // An object of a derived class may have columns of its own, which only its hooks have values
    // for.
    has_its_values = typeid(record) == typeid(Record);
    if (has_its_values) {
      query.Values(record.InsertValues());
    }
  }
  if (!has_its_values) {
    query.Use(record);
  }
  if (is_bound()) {
    bounds_->Apply(query);
  }
}

template <typename Record>
long long DBOperator<Record>::UpdateRows(const Record& record, const Condition& condition) {
  dorvdbquery::UpdateQuery query(GetSession(), GetTableName());
  query.Where(Within(KeyIs(record.primary_key()) && condition));
  record.BindUpdateField(query);
  if (is_bound()) {
    bounds_->Apply(query, record.primary_key());
  }
  return query.Execute() ? query.AffectedRows() : -1;
}

template <typename Record>
void DBOperator<Record>::ApplyPaging(const control::option::common::ListOption& option,
                                     dorvdbquery::SelectQuery& query) {
  if (option.limit) {
    query.Limit(*option.limit);
  }
  if (option.offset) {
    query.Offset(*option.offset);
  }
}

template <typename Record>
bool DBOperator<Record>::ReadAll(dorvdbquery::SelectQuery& query, std::vector<Record>& records) {
  Record record;
  if constexpr (record::kIsMessageRecord<Record>) {
    query.IntoRow(Record::AppendingTarget(records));
  } else {
    query.Into(record);
  }
  if (!query.ExecuteWithoutPreFetch()) {
    return false;
  }
  records.reserve(static_cast<std::size_t>(query.RowCount()));
  while (query.Fetch()) {
    if constexpr (!record::kIsMessageRecord<Record>) {
      // A new record for the next row: hooks that skip a NULL must not find the value of this one.
      records.push_back(std::exchange(record, Record()));
    }
  }
  return true;
}

}  // namespace dorvdl::db

#endif  // DORVDL_DB_OPERATOR_H_
