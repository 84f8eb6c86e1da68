#include <dorvdl/util/log.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <vector>

#include "support/syslog_capture.h"

namespace dorvdl::util {
namespace {

using test_support::kError;
using test_support::LogLine;

TEST(SourceNameTest, StartsAtTheLayerAndHasNoEnding) {
  EXPECT_EQ(SourceName("/home/a/core/src/db/operator.cpp"), "db/operator");
  EXPECT_EQ(SourceName("src/file.cpp"), "file");
  EXPECT_EQ(SourceName("../include/dorvdl/db/operator.h"), "db/operator");
  EXPECT_EQ(SourceName("/usr/include/dorvdl/control/option/task.h"), "control/option/task");
}

TEST(SourceNameTest, TheLastSourceFolderCounts) {
  EXPECT_EQ(SourceName("/usr/src/core/src/record/task.cpp"), "record/task");
  EXPECT_EQ(SourceName("/usr/src/core/include/dorvdl/record/task.h"), "record/task");
}

TEST(SourceNameTest, IsTheBareFileNameElsewhere) {
  EXPECT_EQ(SourceName("/home/a/program.cpp"), "program");
  EXPECT_EQ(SourceName("program.cpp"), "program");
  EXPECT_EQ(SourceName("/home/mysrc/program.cpp"), "program");
  EXPECT_EQ(SourceName("/home/a/program"), "program");
}

TEST(LogTest, ALineHasPrioritySourceNumberAndText) {
  const int line = __LINE__;
  DORVDL_LOG(LOG_ERR, "Failed to find %s %d", "task", 5);
  DORVDL_LOG(LOG_INFO, "plain");
  EXPECT_EQ(test_support::TakeLog(),
            (std::vector<LogLine>{{kError, "log_test", "Failed to find task 5"},
                                  {6, "log_test", "plain"}}));
  EXPECT_EQ(test_support::TakenLineNumbers(), (std::vector<int>{line + 1, line + 2}));
}

TEST(LogTest, ALineHasUpToNineValues) {
  DORVDL_LOG(LOG_ERR, "%d%d%d%d%d%d%d%d%s", 1, 2, 3, 4, 5, 6, 7, 8, "9");
  EXPECT_EQ(test_support::TakeLog(), (std::vector<LogLine>{{kError, "log_test", "123456789"}}));
}

TEST(LogTest, KeepsErrnoForTheLineAndTheCaller) {
  errno = ENOENT;
  DORVDL_LOG(LOG_ERR, "%m");
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(test_support::TakeLog(),
            (std::vector<LogLine>{{kError, "log_test", "No such file or directory"}}));
}

}  // namespace
}  // namespace dorvdl::util
