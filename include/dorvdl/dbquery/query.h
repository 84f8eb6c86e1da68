/// @file
/// What all statements share: their table, their condition, and how they are run.
#ifndef DORVDL_DBQUERY_QUERY_H_
#define DORVDL_DBQUERY_QUERY_H_

#include <dorvdl/dbquery/condition.h>
#include <dorvdl/dbquery/session.h>
#include <dorvdl/dbquery/sql_text.h>
#include <dorvdl/util/export.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace soci {
class statement;
}

namespace dorvdbquery {

class Execution;
struct SessionState;

/// A statement on one table. Each execution is one round trip; once its session is gone all fail.
class DORVDL_EXPORT Query {
 public:
  virtual ~Query();
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;

  /// Runs the statement with its bindings; a select reads its first row into the bound targets and
  /// leaves them untouched when there is none. True on success. False on any database error, a lost
  /// connection included: one line is logged at error level with SQLSTATE, the server's message
  /// and the statement's text, never a value. False as well, with a line that says why, for what is
  /// not sent at all: more than a statement can carry (65535 values, 1 GiB), or what the statement
  /// itself refuses.
  ///
  /// @throws soci::soci_error (with the bare message) or std::bad_cast when a row cannot be read
  ///         into its target, and what a program's own conversion throws. Session, statement and
  ///         transaction stay usable.
  bool Execute();

  /// The statement's text and values as Execute() would send them; an empty text when there is
  /// nothing to send, which makes Execute() false. Needs no connection.
  virtual SqlText Statement() const = 0;

 protected:
  /// Adds the element that receives a result column or row to the statement being executed.
  using Target = std::function<void(soci::statement&)>;

  /// @param table  a plain identifier; anything else makes the execution fail.
  Query(const Session& session, std::string table);

  const std::string& table() const { return table_; }
  /// The session's connection; null when there is none.
  std::shared_ptr<SessionState> session() const { return session_.lock(); }

  void AddTarget(Target target) { targets_.push_back(std::move(target)); }

  /// Makes @p target the only one.
  void SetTarget(Target target) {
    targets_.clear();
    AddTarget(std::move(target));
  }

  /// Runs the statement without reading a row. Result and failures as for Execute().
  bool Run();

  /// Reads the next row of the last execution; false when there is none, and, after a line in the
  /// log, when the session is gone.
  bool FetchNext();

  /// Has the statement done only when @p demand is met, which Statement() builds in so that the
  /// answer has no row when it is not; the execution then fails like a refused one.
  ///
  /// @param refusal  why, for the log and the failure; quotes no input, and is never freed.
  void OnlyWhen(const Condition& demand, const char* refusal);

  /// What OnlyWhen() demands; null when nothing is.
  const Condition& demand() const { return demand_; }

  /// How many rows the last successful execution returned.
  int RowCount() const;

  /// How many rows the last successful execution inserted, changed or deleted.
  long long AffectedRows() const;

 private:
  const std::weak_ptr<SessionState> session_;
  std::string table_;
  std::vector<Target> targets_;
  Condition demand_ = Condition::Null();
  const char* demand_refusal_ = nullptr;
  std::unique_ptr<Execution> execution_;
};

/// A statement with a WHERE clause.
class DORVDL_EXPORT ConditionalQuery : public Query {
 public:
  ~ConditionalQuery() override;

  /// Restricts the statement to the rows that meet @p condition; replaces an earlier condition.
  void Where(const Condition& condition) { condition_ = condition; }

 protected:
  using Query::Query;

  /// Appends " WHERE ..." with the condition and @p further, unless both are null.
  void AppendWhere(SqlText& statement, const Condition& further = Condition::Null()) const;

 private:
  Condition condition_ = Condition::Null();
};

}  // namespace dorvdbquery

#endif  // DORVDL_DBQUERY_QUERY_H_
