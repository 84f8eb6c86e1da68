#include <dorvdl/record/task.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "support/syslog_capture.h"

namespace dorvdl::record {
namespace {

using test_support::kError;
using test_support::LogLine;
using test_support::TakeLog;

Task WithFlags(int flags, int status = 0) {
  proto::Task message;
  message.set_task_flags(flags);
  message.set_status(status);
  return Task(message);
}

Task WithExtraData(const std::string& text) {
  Task task;
  task.mutable_proto().set_extra_data(text);
  return task;
}

TEST(TaskTest, SelectFieldsAreTheColumnsInTableOrder) {
  const std::vector<std::string> expected = {"task_id",
                                             "username",
                                             "pid",
                                             "url",
                                             "filename",
                                             "status",
                                             "created_time",
                                             "started_time",
                                             "total_size",
                                             "current_size",
                                             "current_rate",
                                             "total_peers",
                                             "connected_peers",
                                             "total_pieces",
                                             "downloaded_pieces",
                                             "available_pieces",
                                             "upload_rate",
                                             "total_upload",
                                             "seeding_ratio",
                                             "seeding_interval",
                                             "seeding_elapsed",
                                             "task_flags",
                                             "seeders",
                                             "leechers",
                                             "destination",
                                             "unzip_password",
                                             "unzip_progress",
                                             "given_filename",
                                             "referer",
                                             "cookie_path",
                                             "thumbnail_status",
                                             "extra_data",
                                             "completed_time",
                                             "waiting_until_time",
                                             "file_oid"};
  EXPECT_EQ(Task::GetSelectFields(), expected);
}

TEST(TaskTest, TheTypeIsThatOfTheFirstFlag) {
  const std::vector<std::pair<int, const char*>> single = {
      {0x4, "bt"},         {0x2, "nzb"},         {0x200, "http"}, {0x400, "https"},
      {0x800, "ftp"},      {0x10, "ftps"},       {0x20, "sftp"},  {0x80, "emule"},
      {0x1000, "thunder"}, {0x2000, "flashget"}, {0x4000, "qqdl"}};
  int all_after = 0x7EB6;
  for (const auto& [flag, type] : single) {
    EXPECT_EQ(WithFlags(flag).GetTaskType(), type);
    EXPECT_EQ(WithFlags(all_after).GetTaskType(), type) << "with every flag that is tested later";
    all_after &= ~flag;
  }
  EXPECT_EQ(WithFlags(0x4 | 0x200).GetTaskType(), "bt");
  EXPECT_EQ(WithFlags(0x2 | 0x4).GetTaskType(), "bt");
}

TEST(TaskTest, ATaskWithoutAKnownFlagHasAnUnknownType) {
  EXPECT_EQ(Task().GetTaskType(), "unknown");
  EXPECT_EQ(WithFlags(0x1 | 0x8 | 0x40 | 0x100).GetTaskType(), "unknown");
}

TEST(TaskTest, TheFlagOfAUrlIsThatOfItsPrefix) {
  EXPECT_EQ(Task::GetFlagByURL("http://host/a"), 0x200);
  EXPECT_EQ(Task::GetFlagByURL("https://host/a"), 0x400);
  EXPECT_EQ(Task::GetFlagByURL("magnet:?xt=urn:btih:0"), 0x4);
  EXPECT_EQ(Task::GetFlagByURL("ed2k://|file|"), 0x80);
  EXPECT_EQ(Task::GetFlagByURL("ftp://host/a"), 0x800);
  EXPECT_EQ(Task::GetFlagByURL("ftps://host/a"), 0x10);
  EXPECT_EQ(Task::GetFlagByURL("sftp://host/a"), 0x20);
  EXPECT_EQ(Task::GetFlagByURL("thunder://QUFo"), 0x1000);
  EXPECT_EQ(Task::GetFlagByURL("flashget://W0Z"), 0x2000);
  EXPECT_EQ(Task::GetFlagByURL("qqdl://aHR0"), 0x4000);
}

TEST(TaskTest, OtherUrlsHaveNoFlag) {
  for (const char* url : {"", "HTTP://host/a", "Magnet:?xt=0", "magnet:xt", "http:/host",
                          " http://a", "file:///a", "xhttp://a"}) {
    EXPECT_EQ(Task::GetFlagByURL(url), 0) << url;
  }
}

TEST(TaskTest, AFlagIsOnWhenAnyOfItsBitsIs) {
  EXPECT_TRUE(WithFlags(0x4).IsFlagOn(0x6));
  EXPECT_FALSE(WithFlags(0x4).IsFlagOn(0x2));
  EXPECT_FALSE(WithFlags(0x4).IsFlagOn(0));
  EXPECT_FALSE(Task().IsFlagOn(-1));
}

TEST(TaskTest, PredicatesHoldForExactlyTheirStatuses) {
  const std::vector<int> complete = {4, 5, 7, 8};
  const std::vector<int> active = {2, 7, 8};
  const std::vector<int> active_torrent = {2, 6, 7, 8};
  const auto contains = [](const std::vector<int>& codes, int status) {
    return std::find(codes.begin(), codes.end(), status) != codes.end();
  };
  for (int status = -1; status <= 131; ++status) {
    EXPECT_EQ(WithFlags(0, status).IsCompleteTask(), contains(complete, status)) << status;
    EXPECT_EQ(WithFlags(0, status).IsDownloadTaskActive(), contains(active, status)) << status;
    EXPECT_EQ(WithFlags(0x4, status).IsActiveTorrent(), contains(active_torrent, status)) << status;
    EXPECT_FALSE(WithFlags(0x7EB6 & ~0x4, status).IsActiveTorrent()) << status;
  }
}

TEST(TaskTest, ExtraDataIsStoredAsCompactText) {
  Task task;
  Json::Value value;
  value["b"] = "ü";
  value["a"] = 1;
  task.set_extra_data(value);
  EXPECT_EQ(task.proto().extra_data(), "{\"a\":1,\"b\":\"ü\"}");
  task.set_extra_data(Json::Value("say \"x\""));
  EXPECT_EQ(task.proto().extra_data(), "\"say \\\"x\\\"\"");
  task.set_extra_data(Json::Value("ü\\\n"));
  EXPECT_EQ(task.proto().extra_data(), "\"ü\\\\\\n\"");
  task.set_extra_data(Json::Value(Json::Int64(1) << 40));
  EXPECT_EQ(task.proto().extra_data(), "1099511627776");
  task.set_extra_data(Json::Value());
  EXPECT_EQ(task.proto().extra_data(), "null");
}

TEST(TaskTest, ExtraDataDropsItsQuotesAndEveryBackslash) {
  EXPECT_EQ(WithExtraData("\"{\\\"a\\\":[1,2]}\"").extra_data()["a"][1], 2);
  EXPECT_EQ(WithExtraData("\"{\\\"path\\\":\\\"C:\\\\\\\\dir\\\"}\"").extra_data()["path"],
            "C:dir");
  EXPECT_EQ(WithExtraData("\"{\\\"a\\\":1 /* why */}\"").extra_data()["a"], 1);
}

TEST(TaskTest, ExtraDataShorterThanThreeCharactersIsNull) {
  for (const char* text : {"", "1", "{}", "\"\""}) {
    TakeLog();
    EXPECT_TRUE(WithExtraData(text).extra_data().isNull()) << text;
    EXPECT_EQ(TakeLog(), std::vector<LogLine>{}) << text;
  }
}

TEST(TaskTest, ExtraDataThatIsNoJsonIsLoggedAndGivesWhatTheParserLeft) {
  const std::vector<LogLine> logged = {{kError, "record/task", "Failed to parse extra_data"}};
  TakeLog();
  EXPECT_TRUE(WithExtraData("\"nonsense\"").extra_data().isNull());
  EXPECT_EQ(TakeLog(), logged);
  EXPECT_EQ(WithExtraData("\"{\\\"a\\\":1,\\\"b\\\":}\"").extra_data()["a"], 1);
  EXPECT_EQ(TakeLog(), logged);
  EXPECT_EQ(WithExtraData("\"[1,]\"").extra_data()[0], 1);
  EXPECT_EQ(TakeLog(), logged) << "a trailing comma is no JSON";
  WithExtraData("\"\xef\xbb\xbf{}\"").extra_data();
  EXPECT_EQ(TakeLog(), logged) << "a byte order mark";
  WithExtraData("\"" + std::string(5000, '[') + "\"").extra_data();
  EXPECT_EQ(TakeLog(), logged) << "nested too deeply";
}

TEST(TaskTest, ToJsonEmptiesTheValueAndWritesNothing) {
  Task task;
  task.set_primary_key(1);
  Json::Value object;
  object["a"] = 1;
  task.ToJson(object);
  EXPECT_EQ(object, Json::Value(Json::objectValue));
  for (Json::Value other : {Json::Value("text"), Json::Value(7), Json::Value()}) {
    task.ToJson(other);
    EXPECT_TRUE(other.isNull());
  }
}

}  // namespace
}  // namespace dorvdl::record
