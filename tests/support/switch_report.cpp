#include "support/switch_report.h"

#include <sys/types.h>

#include <sstream>

namespace test_support {
namespace {

// A step from an effective id to another one, which are user or group ids as the letter says.
Switch Step(const std::string& source, char letter, const UserIds& ids, uid_t from, uid_t to) {
  const std::string name = std::string("setres") + letter + "id";
  const auto all = [&ids](uid_t effective) {
    return "(" + std::to_string(ids.real) + ", " + std::to_string(effective) + ", " +
           std::to_string(ids.saved) + ")";
  };
  Switch step{{name + "(-1, " + std::to_string(to) + ", -1)"}, {}};
  if (to == 0) {
    step.lines.push_back({kAuthInfo, source, "WARNING: " + step.calls[0]});
  }
  step.lines.push_back({kAuthDebug, source, name + ": " + all(from) + " -> " + all(to)});
  return step;
}

Switch Logged(int priority, const std::string& source, const std::string& text) {
  return {{}, {{priority, source, text}}};
}

}  // namespace

Switch operator+(Switch first, const Switch& then) {
  first.calls.insert(first.calls.end(), then.calls.begin(), then.calls.end());
  first.lines.insert(first.lines.end(), then.lines.begin(), then.lines.end());
  return first;
}

std::string Report(const Switch& made, int error, const std::string& ids) {
  std::ostringstream text;
  for (const std::string& call : made.calls) {
    text << call << '\n';
  }
  for (const LogLine& line : made.lines) {
    text << line << '\n';
  }
  text << "errno " << error << '\n' << ids << '\n';
  return text.str();
}

std::string ReportSwitch(int error) {
  return Report({TakeIdCalls(), TakeLog()}, error, CurrentIds());
}

SwitchSteps::SwitchSteps(const std::string& log_source, const UserIds& users,
                         const GroupIds& groups)
    : source(log_source) {
  const UserIds group_ids{groups.real, groups.effective, groups.saved};
  group_to_root = Step(source, 'g', group_ids, groups.effective, 0);
  user_to_root = Step(source, 'u', users, users.effective, 0);
  entered = Logged(kAuthInfo, source, "ENTERCriticalSection");
  not_entered = Logged(kAuthError, source, "ERROR: ENTERCriticalSection");
  user_stays_root = Step(source, 'u', users, 0, 0);
  group_back = Step(source, 'g', group_ids, 0, groups.effective);
  user_back = Step(source, 'u', users, 0, users.effective);
  left = Logged(kAuthInfo, source, "LEAVECriticalSection");
  not_left = Logged(kAuthError, source, "ERROR: LEAVECriticalSection");
  to_root = group_to_root + user_to_root + entered;
  back = user_stays_root + group_back + user_back + left;
}

Switch SwitchSteps::Refused(const std::string& call, const std::string& reason) const {
  return {{call}, {{kAuthError, source, "ERROR: " + call + " [" + reason + "]"}}};
}

}  // namespace test_support
