// Which criterion travels in which field, kind by kind.
#include <dorvdl/proto/list_request/common.pb.h>
#include <dorvdl/proto/list_request/rss_feed.pb.h>
#include <dorvdl/proto/list_request/rss_filter.pb.h>
#include <dorvdl/proto/list_request/rss_item.pb.h>
#include <dorvdl/proto/list_request/task.pb.h>
#include <dorvdl/proto/list_request/thumbnail.pb.h>
#include <google/protobuf/text_format.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "unit/control_option/criteria.h"

namespace dorvdl::control::option {
namespace {

template <typename Message>
Message Parse(const std::string& text) {
  Message message;
  EXPECT_TRUE(google::protobuf::TextFormat::ParseFromString(text, &message)) << text;
  return message;
}

// The request that `option` writes over one that says something else, as text.
template <typename Request, typename Option>
std::string Written(const Option& option, Request request = {}) {
  option.toProto(request);
  return request.ShortDebugString();
}

TEST(CommonFieldsTest, AreWrittenUnderTheirNames) {
  common::ListOption option;
  option.offset = 20;
  option.limit = 10;
  option.sort_by = "filename";
  option.ascending = false;
  EXPECT_EQ(Written<rpc::proto::common::ListRequest>(option),
            R"(offset: 20 limit: 10 sort_by: "filename" ascending: false)");
}

TEST(CommonFieldsTest, AreReadEachOnItsOwn) {
  common::ListOption option;
  option.fromProto(Parse<rpc::proto::common::ListRequest>(R"(limit: 10 ascending: true)"));
  EXPECT_EQ(option.limit, 10);
  EXPECT_EQ(option.ascending, true);
  EXPECT_EQ(CountOfSetCriteria(option), 2);
}

TEST(CommonFieldsTest, UnusedIsNeitherReadNorWritten) {
  const auto request = Parse<rpc::proto::common::ListRequest>("offset: 1 unused: 7");
  common::ListOption option;
  option.fromProto(request);
  EXPECT_EQ(CountOfSetCriteria(option), 1);
  EXPECT_EQ(Written(option, request), "offset: 1");
}

TEST(TaskFieldsTest, AreWrittenUnderTheirNames) {
  task::ListOption option;
  option.common.offset = 1;
  option.filename = "linux";
  option.task_flags = 0x4;
  option.waiting_until_time = 1700000000;
  option.status = std::vector<int>{5, 1, 5};
  option.exclude_task_flags = true;
  option.exclude_status = false;
  EXPECT_EQ(Written<rpc::proto::task::ListRequest>(option),
            R"(common { offset: 1 } task_flags: 4 filename: "linux" )"
            R"(waiting_until_time: 1700000000 status: 5 status: 1 status: 5 )"
            R"(exclude_task_flags: true exclude_status: false)");
}

TEST(TaskFieldsTest, StatusIsReadInOrder) {
  task::ListOption option;
  option.status = std::vector<int>{9};
  option.fromProto(Parse<rpc::proto::task::ListRequest>("status: 101 status: 0 status: 101"));
  EXPECT_EQ(option.status.value(), (std::vector<int>{101, 0, 101}));
  EXPECT_EQ(CountOfSetCriteria(option), 1);
}

TEST(TaskFieldsTest, AnEmptyStatusIsWrittenAsNoneAndReadAsUnset) {
  task::ListOption option;
  option.status.emplace();
  const auto before = Parse<rpc::proto::task::ListRequest>("status: 1");
  EXPECT_EQ(Written(option, before), "common { }");

  option.fromProto(Parse<rpc::proto::task::ListRequest>("common { }"));
  EXPECT_FALSE(option.status.has_value());
}

TEST(RssFeedFieldsTest, AreWrittenUnderTheirNames) {
  rss_feed::ListOption option;
  option.common.limit = 2;
  option.url = "http://example.org/feed";
  EXPECT_EQ(Written<rpc::proto::rss_feed::ListRequest>(option),
            R"(common { limit: 2 } url: "http://example.org/feed")");
}

TEST(RssFilterFieldsTest, AreWrittenUnderTheirNames) {
  rss_filter::ListOption option;
  option.common.sort_by = "id";
  option.feed_id = -3;
  EXPECT_EQ(Written<rpc::proto::rss_filter::ListRequest>(option),
            R"(common { sort_by: "id" } feed_id: -3)");
}

TEST(RssItemFieldsTest, AreWrittenUnderTheirNames) {
  rss_item::ListOption option;
  option.common.ascending = true;
  option.feed_id = 3;
  option.is_new = false;
  option.title_like = "%a%";
  option.title_not_like = "%b%";
  option.title_regex = "^c";
  option.title_not_regex = "^d";
  option.url = "e";
  option.date = 1700000000;
  EXPECT_EQ(Written<rpc::proto::rss_item::ListRequest>(option),
            R"(common { ascending: true } feed_id: 3 is_new: false title_like: "%a%" )"
            R"(title_not_like: "%b%" title_regex: "^c" title_not_regex: "^d" url: "e" )"
            R"(date: 1700000000)");
}

TEST(ThumbnailFieldsTest, AreWrittenUnderTheirNames) {
  thumbnail::ListOption option;
  option.task_id = 17;
  option.file_index = 0;
  EXPECT_EQ(Written<rpc::proto::thumbnail::ListRequest>(option),
            "common { } task_id: 17 file_index: 0");
}

}  // namespace
}  // namespace dorvdl::control::option
