// How a run of the tool ends.
#ifndef DORVDLCTL_OUTCOME_H_
#define DORVDLCTL_OUTCOME_H_

#include <stdexcept>

namespace dorvdl::ctl {

enum ExitStatus : int { kDone = 0, kFailed = 1, kWrongUsage = 2 };

// An operation failed; ends the tool with kFailed and the message.
class Failure : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The command line makes no sense; ends the tool with kWrongUsage and the message.
class WrongUsage : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_OUTCOME_H_
