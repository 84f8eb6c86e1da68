// What a switch of ids did, as text: a child process makes it, the test compares it.
#ifndef TESTS_SUPPORT_SWITCH_REPORT_H_
#define TESTS_SUPPORT_SWITCH_REPORT_H_

#include <string>
#include <vector>

#include "support/syslog_capture.h"

namespace test_support {

// One line each: the calls made, the log lines, `error` as "errno N" and `ids` (of CurrentIds()).
std::string Report(const std::vector<std::string>& calls, const std::vector<LogLine>& lines,
                   int error, const std::string& ids);

// The same of what this process did since its last report, with its ids now.
std::string ReportSwitch(int error);

}  // namespace test_support

#endif  // TESTS_SUPPORT_SWITCH_REPORT_H_
