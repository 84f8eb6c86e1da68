// Where a task's files are, with stand-ins for the file system and the platform.
#include <dorvdl/record/task.h>
#include <gtest/gtest.h>

#include "support/file_calls.h"
#include "support/recording_platform.h"
#include "support/syslog_capture.h"

namespace dorvdl::record {
namespace {

using test_support::kError;
using test_support::LogLine;
using test_support::TakeLog;
using Calls = std::vector<std::string>;

class TaskPathsTest : public testing::Test {
 protected:
  TaskPathsTest() {
    platform_.exec = 1;  // the volume is writable
    TakeLog();
  }

  static Task TaskWith(int id, int flags) {
    Task task;
    task.set_primary_key(id);
    task.mutable_proto().set_task_flags(flags);
    return task;
  }

  test_support::FileCalls files_;
  test_support::RecordingPlatform platform_;
};

TEST_F(TaskPathsTest, ATorrentIsNamedSo) {
  EXPECT_EQ(TaskWith(17, 0x4).GetSourceFilePath(), "/volume1/download/17/17.torrent");
  EXPECT_EQ(TaskWith(17, 0x4 | 0x2).GetSourceFilePath(), "/volume1/download/17/17.torrent");
  EXPECT_EQ(files_.readlink_size, 4096U);
}

TEST_F(TaskPathsTest, EverythingElseIsNamedAsNzb) {
  EXPECT_EQ(TaskWith(17, 0x2).GetSourceFilePath(), "/volume1/download/17/17.nzb");
  EXPECT_EQ(TaskWith(17, 0x200).GetSourceFilePath(), "/volume1/download/17/17.nzb");
  EXPECT_EQ(Task().GetSourceFilePath(), "/volume1/download/0/0.nzb");
}

TEST_F(TaskPathsTest, ALongPathIsCutTo1023Bytes) {
  files_.target = "/" + std::string(1019, 'd');
  EXPECT_EQ(TaskWith(17, 0x4).GetSourceFilePath(), files_.target + "/17");
  files_.target = "/" + std::string(4095, 'd');
  EXPECT_EQ(TaskWith(17, 0x4).GetSourceFilePath(), files_.target.substr(0, 1023));
}

TEST_F(TaskPathsTest, WithoutADownloadFolderThePathIsEmptyAndLogged) {
  platform_.exec = 0;
  EXPECT_EQ(TaskWith(17, 0x4).GetSourceFilePath(), "");
  EXPECT_EQ(TakeLog(), (std::vector<LogLine>{{kError, "record/task", "GetTmpDownloadDir failed"}}));
}

TEST_F(TaskPathsTest, TheDestinationIsResolvedForTheTasksUser) {
  platform_.real_share_path = "/volume1/video/new";
  Task task = TaskWith(17, 0);
  task.mutable_proto().set_destination("video/new");
  task.mutable_proto().set_username("alice");
  EXPECT_EQ(task.GetDestRealPath(), "/volume1/video/new");
  EXPECT_EQ(platform_.TakeCalls(), Calls{"GetRealPathFromSharePath(\"video/new\", \"alice\")"});
  EXPECT_EQ(TakeLog(), std::vector<LogLine>{});
}

TEST_F(TaskPathsTest, ADestinationWithoutAccessIsEmptyAndLogged) {
  Task task = TaskWith(17, 0);
  task.mutable_proto().set_destination("100%s");
  EXPECT_EQ(task.GetDestRealPath(), "");
  EXPECT_EQ(TakeLog(),
            (std::vector<LogLine>{{kError, "record/task",
                                   "Failed to get real path of destination[100%s] of task[17]"}}));
}

TEST_F(TaskPathsTest, ANulInTheDestinationIsNotHandedToThePlatform) {
  platform_.real_share_path = "/volume1/video";
  Task task = TaskWith(17, 0);
  task.mutable_proto().set_destination(std::string("video\0x", 7));
  EXPECT_EQ(task.GetDestRealPath(), "");
  task.mutable_proto().set_destination("video");
  task.mutable_proto().set_username(std::string("a\0b", 3));
  EXPECT_EQ(task.GetDestRealPath(), "");
  EXPECT_EQ(platform_.TakeCalls(), Calls{});
  EXPECT_EQ(TakeLog().size(), 2U);
}

}  // namespace
}  // namespace dorvdl::record
