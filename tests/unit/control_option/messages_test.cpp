// The request messages as other programs know them: numbers, labels, types and names of the fields.
#include <dorvdl/proto/list_request/common.pb.h>
#include <dorvdl/proto/list_request/rss_feed.pb.h>
#include <dorvdl/proto/list_request/rss_filter.pb.h>
#include <dorvdl/proto/list_request/rss_item.pb.h>
#include <dorvdl/proto/list_request/task.pb.h>
#include <dorvdl/proto/list_request/thumbnail.pb.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace dorvdl::rpc::proto {
namespace {

using google::protobuf::FieldDescriptor;
using testing::ElementsAre;

constexpr const char* kCommonPart = "1 optional dorvdl.rpc.proto.common.ListRequest common";

// One line per field, in the order of declaration.
template <typename Message>
std::vector<std::string> Fields() {
  std::vector<std::string> fields;
  for (int i = 0; i < Message::descriptor()->field_count(); ++i) {
    const FieldDescriptor* field = Message::descriptor()->field(i);
    const std::string type =
        field->message_type() != nullptr ? field->message_type()->full_name() : field->type_name();
    fields.push_back(std::to_string(field->number()) +
                     (field->is_repeated() ? " repeated " : " optional ") + type + " " +
                     field->name());
    EXPECT_TRUE(field->is_repeated() || field->has_presence()) << fields.back();
  }
  return fields;
}

TEST(RequestMessagesTest, CommonFields) {
  EXPECT_EQ(common::ListRequest::descriptor()->full_name(), "dorvdl.rpc.proto.common.ListRequest");
  EXPECT_THAT(
      Fields<common::ListRequest>(),
      ElementsAre("1 optional int32 offset", "2 optional int32 limit", "3 optional int32 unused",
                  "4 optional string sort_by", "5 optional bool ascending"));
}

TEST(RequestMessagesTest, TaskFieldsHaveTheFlagsBeforeTheFileName) {
  EXPECT_EQ(task::ListRequest::descriptor()->full_name(), "dorvdl.rpc.proto.task.ListRequest");
  EXPECT_THAT(Fields<task::ListRequest>(),
              ElementsAre(kCommonPart, "2 optional int32 task_flags", "3 optional string filename",
                          "4 optional int32 waiting_until_time", "5 repeated int32 status",
                          "6 optional bool exclude_task_flags", "7 optional bool exclude_status"));
}

TEST(RequestMessagesTest, RssFeedFields) {
  EXPECT_EQ(rss_feed::ListRequest::descriptor()->full_name(),
            "dorvdl.rpc.proto.rss_feed.ListRequest");
  EXPECT_THAT(Fields<rss_feed::ListRequest>(), ElementsAre(kCommonPart, "2 optional string url"));
}

TEST(RequestMessagesTest, RssFilterFields) {
  EXPECT_EQ(rss_filter::ListRequest::descriptor()->full_name(),
            "dorvdl.rpc.proto.rss_filter.ListRequest");
  EXPECT_THAT(Fields<rss_filter::ListRequest>(),
              ElementsAre(kCommonPart, "2 optional int32 feed_id"));
}

TEST(RequestMessagesTest, RssItemFields) {
  EXPECT_EQ(rss_item::ListRequest::descriptor()->full_name(),
            "dorvdl.rpc.proto.rss_item.ListRequest");
  EXPECT_THAT(Fields<rss_item::ListRequest>(),
              ElementsAre(kCommonPart, "2 optional int32 feed_id", "3 optional bool is_new",
                          "4 optional string title_like", "5 optional string title_not_like",
                          "6 optional string title_regex", "7 optional string title_not_regex",
                          "8 optional string url", "9 optional int32 date"));
}

TEST(RequestMessagesTest, ThumbnailFields) {
  EXPECT_EQ(thumbnail::ListRequest::descriptor()->full_name(),
            "dorvdl.rpc.proto.thumbnail.ListRequest");
  EXPECT_THAT(Fields<thumbnail::ListRequest>(),
              ElementsAre(kCommonPart, "2 optional int32 task_id", "3 optional int32 file_index"));
}

}  // namespace
}  // namespace dorvdl::rpc::proto
