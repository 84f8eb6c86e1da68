// What a command does with the database.
#ifndef DORVDLCTL_WORK_H_
#define DORVDLCTL_WORK_H_

#include <dorvdl/control/controller.h>
#include <dorvdl/dbquery/transaction.h>

#include <memory>

#include "global_options.h"

namespace dorvdl::ctl {

// A connection and one transaction on it, in which a command does all it does: nothing stays of a
// command that fails half-way. The transaction also tells a failure from an empty result, which
// looks the same in what the controls return.
class Work {
 public:
  // Connects, and refuses a database whose schema this tool does not know.
  // Throws Failure.
  explicit Work(const GlobalOptions& global);

  // Acts for the user of the options.
  control::Controller& controller() { return controller_; }

  // Ends the work; throws Failure unless every statement has succeeded.
  void Commit();

 private:
  const std::shared_ptr<db::DBSession> session_;  // outlives the transaction, even a lost one
  control::Controller controller_;
  dorvdbquery::DefaultTransaction transaction_;
};

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_WORK_H_
