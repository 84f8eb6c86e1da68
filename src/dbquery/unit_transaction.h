// The transaction of a unit of work.
#ifndef SRC_DBQUERY_UNIT_TRANSACTION_H_
#define SRC_DBQUERY_UNIT_TRANSACTION_H_

#include <dorvdl/dbquery/transaction.h>

namespace dorvdbquery {

// A scope that fails with any operation in it, also with one that has rolled back to a savepoint of
// its own, and tells how it ended. READ COMMITTED when it is the outermost.
class UnitTransaction : public Transaction {
 public:
  explicit UnitTransaction(Session& session) : Transaction(session, Kind::kOfOperations) {}

  using Transaction::End;
  using Transaction::FailOperations;
  using Transaction::failure;
  using Transaction::HasFailed;
  using Transaction::Outcome;
};

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_UNIT_TRANSACTION_H_
