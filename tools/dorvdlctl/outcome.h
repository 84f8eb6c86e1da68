// How a run of the tool ends.
#ifndef DORVDLCTL_OUTCOME_H_
#define DORVDLCTL_OUTCOME_H_

#include <stdexcept>
#include <string>

namespace dorvdl::ctl {

enum ExitStatus : int {
  kDone = 0,
  kFailed = 1,       // for any other reason than those below
  kWrongUsage = 2,   // the command line makes no sense
  kNotFound = 3,     // no such record; what else there was to do is done where the help says so
  kRefused = 4,      // by the library: what was to be written is not for the user, or for anybody
  kUnreachable = 5,  // no connection to the server, or it was lost
};

// Why a run failed, as programs are told. What the server has refused is worth another try, or not.
enum class Reason { kNotFound, kRefused, kUnreachable, kUsage, kRetry, kServer, kFailed };

// Ends the tool with the message and the status of the reason.
class Failure : public std::runtime_error {
 public:
  // @p sqlstate  the server's code; empty when there is none.
  explicit Failure(const std::string& message, Reason reason = Reason::kFailed,
                   const std::string& sqlstate = "")
      : runtime_error(message), reason_(reason), sqlstate_(sqlstate) {}

  Reason reason() const { return reason_; }
  const std::string& sqlstate() const { return sqlstate_; }

 private:
  Reason reason_;
  std::string sqlstate_;
};

class WrongUsage : public Failure {
 public:
  explicit WrongUsage(const std::string& message) : Failure(message, Reason::kUsage) {}
};

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_OUTCOME_H_
