#include "support/switch_report.h"

#include <sstream>

#include "support/identity.h"

namespace test_support {

std::string Report(const std::vector<std::string>& calls, const std::vector<LogLine>& lines,
                   int error, const std::string& ids) {
  std::ostringstream text;
  for (const std::string& call : calls) {
    text << call << '\n';
  }
  for (const LogLine& line : lines) {
    text << line << '\n';
  }
  text << "errno " << error << '\n' << ids << '\n';
  return text.str();
}

std::string ReportSwitch(int error) {
  return Report(TakeIdCalls(), TakeLog(), error, CurrentIds());
}

}  // namespace test_support
