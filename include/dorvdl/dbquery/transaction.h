/// @file
/// Transactions that roll back unless they are committed.
#ifndef DORVDL_DBQUERY_TRANSACTION_H_
#define DORVDL_DBQUERY_TRANSACTION_H_

#include <dorvdl/dbquery/failure.h>
#include <dorvdl/dbquery/session.h>
#include <dorvdl/util/export.h>

#include <memory>

namespace dorvdbquery {

struct SessionState;

/// A scope whose statements happen as a whole or not at all. Made inside an open transaction it is
/// a savepoint of that one. Scopes on one session must nest. A scope whose session is gone fails:
/// it was rolled back with the connection.
class DORVDL_EXPORT Transaction {
 public:
  /// Rolls back unless Commit() was called. A rollback that fails is logged; nothing is thrown,
  /// also when memory is short.
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  /// Makes the scope's changes last. False when they did not: a statement in the scope had failed
  /// or was refused before it was sent, the begin had failed, the server turned the commit into a
  /// rollback, or the connection is lost (then the outcome is unknown). What failed in a scope
  /// inside this one that was rolled back does not count. Whatever the result, the scope is over; a
  /// second call is false.
  bool Commit() { return End() == Outcome::kCommitted; }

 protected:
  /// What makes a scope a failed one: its own statements, or whole operations, whatever becomes of
  /// the scopes inside them.
  enum class Kind { kOfStatements, kOfOperations };

  enum class Outcome { kCommitted, kRolledBack, kUnknown };

  /// Never throws. When the begin fails that is logged, every statement on the session fails for
  /// as long as this object lives, and Commit() is false.
  explicit Transaction(Session& session, Kind kind = Kind::kOfStatements);

  /// Commit() that tells a scope that was rolled back from one of which nobody knows, because the
  /// answer to the commit was lost. (A savepoint's is known: it is rolled back with what is around
  /// it.)
  Outcome End();

  /// Whether End() would roll back, as far as is known.
  bool HasFailed() const;

  /// The first thing that failed in the scope, its commit included; none as long as it is good.
  const Failure& failure() const { return failure_; }

  /// Fails the innermost scope of operations that is open on @p session, if there is one.
  static void FailOperations(const Session& session, const Failure& failure);

 private:
  friend struct SessionState;

  void Note(const Failure& failure) noexcept;
  void KeepFirst(const Failure& failure) noexcept;
  bool CanCommit(SessionState& state);
  Outcome SendCommit(SessionState& state);
  void Rollback();
  void Leave(SessionState& state);

  const std::weak_ptr<SessionState> state_;
  const Kind kind_;
  Failure failure_;
  Transaction* outer_ = nullptr;
  int savepoint_ = 0;  // its number; 0 for the outermost transaction
  bool has_begun_ = false;
  bool is_open_ = false;
  bool has_failed_ = false;  // by what the server does not know of; its own it remembers itself
};

/// A transaction with the server's default isolation.
class DORVDL_EXPORT DefaultTransaction : public Transaction {
 public:
  explicit DefaultTransaction(Session& session) : Transaction(session) {}
};

}  // namespace dorvdbquery

#endif  // DORVDL_DBQUERY_TRANSACTION_H_
