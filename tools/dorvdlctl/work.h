// What a command does with the database.
#ifndef DORVDLCTL_WORK_H_
#define DORVDLCTL_WORK_H_

#include <dorvdl/control/controller.h>
#include <dorvdl/db/session.h>
#include <dorvdl/dbquery/transaction.h>

#include <memory>
#include <string>
#include <type_traits>

#include "global_options.h"

namespace dorvdl::ctl {

// True for the accessors that act for a user, and so reach that user's rows only.
template <typename Table>
inline constexpr bool kActsForUser =
    std::is_constructible_v<Table, db::DBSession&, const std::string&>;

// What a work may complain of.
inline constexpr char kOperationFailed[] = "the database operation failed";
inline constexpr char kPatternFailed[] =
    "the pattern could not be tried: it is no valid one, or the database failed";

// A connection and one transaction on it, in which a command does all it does: nothing stays of a
// command that fails half-way. The transaction also tells a failure from an empty result, which
// looks the same in what the operations return. (Hence accessors and no controls: a controller
// would replace a connection that is lost half-way, and what is left of the command would last
// outside the transaction.)
class Work {
 public:
  // Connects, and refuses a database whose schema this tool does not know; throws Failure. @p
  // global must outlive the work.
  explicit Work(const GlobalOptions& global);

  // The user of the options; empty for all users.
  const std::string& user() const { return user_; }

  dorvdbquery::Session& session() { return session_->session(); }

  // A table's accessor, which acts for user() where the table has owners.
  template <typename Table>
  Table Use() {
    if constexpr (kActsForUser<Table>) {
      return Table(*session_, user_);
    } else {
      return Table(*session_);
    }
  }

  // A controller on the work's connection that acts for user(): for the operations that only
  // controls have and that may be repeated. Once the connection is lost, what they do lasts though
  // the work fails.
  control::Controller NewController() const;

  // Ends the work; throws Failure, with @p complaint, unless every statement has succeeded.
  void Commit(const std::string& complaint = kOperationFailed);

 private:
  const std::shared_ptr<db::DBSession> session_;
  const std::string& user_;
  dorvdbquery::DefaultTransaction transaction_;
};

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_WORK_H_
