// Catches what the process writes to the system log, so that a test can compare whole lines.
#ifndef TESTS_SUPPORT_SYSLOG_CAPTURE_H_
#define TESTS_SUPPORT_SYSLOG_CAPTURE_H_

#include <ostream>
#include <string>
#include <vector>

namespace test_support {

// Priorities of the lines that the library writes: error under the process's default facility, and
// the levels under the authorisation facility.
constexpr int kError = 3;
constexpr int kAuthCritical = 34;
constexpr int kAuthError = 35;
constexpr int kAuthInfo = 38;
constexpr int kAuthDebug = 39;

// One line: its priority, its source ("db/operator"; the line number is cut off) and its text.
struct LogLine {
  int priority;
  std::string source;
  std::string text;

  bool operator==(const LogLine& other) const {
    return priority == other.priority && source == other.source && text == other.text;
  }
  friend std::ostream& operator<<(std::ostream& out, const LogLine& line) {
    return out << line.priority << ' ' << line.source << " \"" << line.text << '"';
  }
};

// The lines logged since the last call (or the start), each kept in order. Every call of syslog()
// in the process is caught, in any thread; nothing reaches the machine's log. A caught call leaves
// errno changed, so that whoever promises an errno has to keep it across the call.
std::vector<LogLine> TakeLog();

// The line numbers of the lines that the last TakeLog() returned, in the same order.
std::vector<int> TakenLineNumbers();

}  // namespace test_support

#endif  // TESTS_SUPPORT_SYSLOG_CAPTURE_H_
