#include <dorvdl/record/notification.h>
#include <gtest/gtest.h>

#include <string>

namespace dorvdl::record {
namespace {

int TypeOf(const std::string& type) {
  proto::Notification message;
  message.set_type(type);
  return Notification(message).getType();
}

TEST(NotificationTest, EachTypeHasANumber) {
  EXPECT_EQ(TypeOf("complete"), 0);
  EXPECT_EQ(TypeOf("failed"), 1);
  EXPECT_EQ(TypeOf("captcha"), 2);
}

TEST(NotificationTest, AnyOtherTextIsNoType) {
  for (const char* const type : {"", "Complete", "FAILED", "complete ", "complet", "0"}) {
    EXPECT_EQ(TypeOf(type), -1) << type;
  }
  EXPECT_EQ(TypeOf(std::string("failed\0", 7)), -1);
  EXPECT_EQ(Notification().getType(), -1);
}

}  // namespace
}  // namespace dorvdl::record
