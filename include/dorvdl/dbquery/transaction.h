/// @file
/// Transactions that roll back unless they are committed.
#ifndef DORVDL_DBQUERY_TRANSACTION_H_
#define DORVDL_DBQUERY_TRANSACTION_H_

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
  bool Commit();

 protected:
  /// Never throws. When the begin fails that is logged, every statement on the session fails for
  /// as long as this object lives, and Commit() is false.
  explicit Transaction(Session& session);

 private:
  friend struct SessionState;

  void Rollback();
  void Leave(SessionState& state);

  const std::weak_ptr<SessionState> state_;
  Transaction* outer_ = nullptr;
  int savepoint_ = 0;  // its number; 0 for the outermost transaction
  bool has_begun_ = false;
  bool is_open_ = false;
  bool has_failed_ = false;  // by what was refused; what the server refuses it remembers itself
};

/// A transaction with the server's default isolation.
class DORVDL_EXPORT DefaultTransaction : public Transaction {
 public:
  explicit DefaultTransaction(Session& session) : Transaction(session) {}
};

}  // namespace dorvdbquery

#endif  // DORVDL_DBQUERY_TRANSACTION_H_
