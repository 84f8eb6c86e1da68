// What a command does with the database.
#ifndef DORVDLCTL_WORK_H_
#define DORVDLCTL_WORK_H_

#include <dorvdl/control/controller.h>
#include <dorvdl/control/unit.h>

#include <string>

#include "global_options.h"

namespace dorvdl::ctl {

// A controller and one unit of work on it, in which a command does all it does: nothing stays of a
// command that fails half-way. With a user the controller is that user's, so what a command reaches
// is for the library to say. The unit also tells a failure from an empty result, which looks the
// same in what the operations return.
class Work {
 public:
  // Connects, and refuses a database whose schema is another than this tool knows; throws Failure.
  explicit Work(const GlobalOptions& global);

  // The user of the options; empty for all users.
  const std::string& user() const { return controller_.username(); }

  // A new control, which must not outlive the work.
  template <typename Control>
  Control Use() {
    return Control(controller_);
  }

  // Ends the work; throws Failure unless every operation has succeeded, with @p complaint in place
  // of a general one.
  void Commit(const std::string& complaint = "");

 private:
  void RequireSchema();

  control::Controller controller_;
  control::Unit unit_;
};

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_WORK_H_
