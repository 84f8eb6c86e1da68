/// @file
/// Transactions that roll back unless they are committed.
#ifndef DORVDL_DBQUERY_TRANSACTION_H_
#define DORVDL_DBQUERY_TRANSACTION_H_

#include <dorvdl/dbquery/session.h>
#include <dorvdl/util/export.h>

#include <string>

namespace dorvdbquery {

/// A scope whose statements happen as a whole or not at all. Made inside an open transaction it is
/// a savepoint of that one. Scopes on one session must nest.
class DORVDL_EXPORT Transaction {
 public:
  /// Rolls back unless Commit() was called. A rollback that fails is logged; nothing is thrown.
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  /// Makes the scope's changes last. False when they did not: a statement in the scope had failed,
  /// the begin had, the server turned the commit into a rollback, or the connection is lost (then
  /// the outcome is unknown). Whatever the result, the scope is over; a second call is false.
  bool Commit();

 protected:
  /// Never throws. When the begin fails that is logged, every statement on the session fails for
  /// as long as this object lives, and Commit() is false.
  explicit Transaction(Session& session);

 private:
  void Rollback();

  SessionState* const state_;
  std::string savepoint_;  // empty for the outermost transaction
  bool begun_ = false;
  bool open_ = false;
};

/// A transaction with the server's default isolation.
class DORVDL_EXPORT DefaultTransaction : public Transaction {
 public:
  explicit DefaultTransaction(Session& session) : Transaction(session) {}
};

}  // namespace dorvdbquery

#endif  // DORVDL_DBQUERY_TRANSACTION_H_
