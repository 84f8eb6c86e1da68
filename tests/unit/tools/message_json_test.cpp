#include "rendering/message_json.h"

#include <dorvdl/proto/list_request/common.pb.h>
#include <dorvdl/proto/record.pb.h>
#include <gtest/gtest.h>

namespace dorvdl::ctl {
namespace {

TEST(MessageJsonTest, PresentFieldsStandUnderTheirNames) {
  record::proto::Task task;
  task.set_task_id(0);
  task.set_filename("a");
  const Json::Value json = MessageToJson(task);
  EXPECT_EQ(json.getMemberNames(), (std::vector<std::string>{"filename", "task_id"}));
  EXPECT_EQ(json["task_id"], Json::Value(0));
}

TEST(MessageJsonTest, AnEmptyMessageIsAnEmptyObject) {
  EXPECT_EQ(CompactJsonText(MessageToJson(record::proto::Task())), "{}");
}

TEST(MessageJsonTest, GreatNumbersAreNumbers) {
  record::proto::Task task;
  task.set_total_size(9223372036854775807);
  task.set_file_oid(-1);
  EXPECT_EQ(CompactJsonText(MessageToJson(task)),
            R"({"file_oid":-1,"total_size":9223372036854775807})");
}

TEST(MessageJsonTest, TruthValuesStayTruthValues) {
  rpc::proto::common::ListRequest request;
  request.set_ascending(false);
  EXPECT_EQ(CompactJsonText(MessageToJson(request)), R"({"ascending":false})");
}

TEST(MessageJsonTest, TextStaysReadableButCannotSteerATerminal) {
  EXPECT_EQ(CompactJsonText(Json::Value("Ä日\u00a0")), "\"Ä日\u00a0\"");
  EXPECT_EQ(CompactJsonText(Json::Value("\x1b\x7f\u0080\u009f")), R"("\u001b\u007f\u0080\u009f")");
}

}  // namespace
}  // namespace dorvdl::ctl
