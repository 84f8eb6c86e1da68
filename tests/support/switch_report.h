// What a switch of ids did, as text: a child process makes it, the test compares it.
#ifndef TESTS_SUPPORT_SWITCH_REPORT_H_
#define TESTS_SUPPORT_SWITCH_REPORT_H_

#include <string>
#include <vector>

#include "support/identity.h"
#include "support/syslog_capture.h"

namespace test_support {

// The calls that change ids, and the log lines, of a switch or of some steps of one.
struct Switch {
  std::vector<std::string> calls;
  std::vector<LogLine> lines;
};

// One after the other.
Switch operator+(Switch first, const Switch& then);

// One line each: the calls, the log lines, `error` as "errno N" and `ids` (of CurrentIds()).
std::string Report(const Switch& made, int error, const std::string& ids);

// The same of what this process did since its last report, with its ids now.
std::string ReportSwitch(int error);

// The steps of ENTERCriticalSection and LEAVECriticalSection in a process whose ids are these, none
// of the effective ones root's, each as `log_source` logs it.
struct SwitchSteps {
  SwitchSteps(const std::string& log_source, const UserIds& users, const GroupIds& groups);

  // A call that is refused; the reason is that of EAGAIN, unless it says otherwise.
  Switch Refused(const std::string& call,
                 const std::string& reason = "Resource temporarily unavailable") const;

  std::string source;
  Switch group_to_root, user_to_root, entered, not_entered;
  Switch user_stays_root, group_back, user_back, left, not_left;

  // All that a process does that may become root: to root, and back.
  Switch to_root, back;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_SWITCH_REPORT_H_
