// What a command does with the database.
#ifndef DORVDLCTL_WORK_H_
#define DORVDLCTL_WORK_H_

#include <dorvdl/db/download_queue.h>
#include <dorvdl/db/session.h>
#include <dorvdl/dbquery/transaction.h>

#include <memory>

#include "global_options.h"

namespace dorvdl::ctl {

// A connection and one transaction on it, in which a command does all it does: nothing stays of a
// command that fails half-way. The transaction also tells a failure from an empty result, which
// looks the same in what the operations return. (Hence no controller: it would replace a connection
// that is lost half-way, and what is left of the command would last outside the transaction.)
class Work {
 public:
  // Connects, and refuses a database whose schema this tool does not know.
  // Throws Failure.
  explicit Work(const GlobalOptions& global);

  // Acts for the user of the options.
  db::DownloadQueue& tasks() { return tasks_; }

  // Ends the work; throws Failure unless every statement has succeeded.
  void Commit();

 private:
  const std::unique_ptr<db::DBSession> session_;
  dorvdbquery::DefaultTransaction transaction_;
  db::DownloadQueue tasks_;
};

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_WORK_H_
