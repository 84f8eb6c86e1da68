#include <dorvdl/proto/list_request/task.pb.h>
#include <dorvdl/util/to_lower.h>
#include <dorvdl/util/to_vector.h>
#include <dorvdl/util/wrapper.h>
#include <gtest/gtest.h>

namespace dorvdl::util {
namespace {

TEST(WrapperTest, WrapsAnArgumentInAFunction) {
  EXPECT_EQ(Wrapper::Wrap("upper", "name"), "upper(name)");
  EXPECT_EQ(Wrapper::Lower("username"), "lower(username)");
}

TEST(WrapperTest, AnEmptyArgumentStaysEmpty) {
  EXPECT_EQ(Wrapper::Wrap("upper", ""), "");
  EXPECT_EQ(Wrapper::Lower(""), "");
}

TEST(ToLowerTest, LowersAsciiAndLeavesTheOriginal) {
  const std::string text = "Alice_42 [Z]";
  EXPECT_EQ(ToLower(text), "alice_42 [z]");
  EXPECT_EQ(text, "Alice_42 [Z]");
  EXPECT_EQ(ToLower(""), "");
}

TEST(ToLowerTest, LowersUtf8InAnyProcessLocale) {
  EXPECT_EQ(ToLower("Ägir"), "ägir");
  EXPECT_EQ(ToLower("ÉMILE"), "émile");
  EXPECT_EQ(ToLower("ΣΊΣΥΦΟΣ"), "σίσυφοσ");  // letter by letter: no final sigma
  EXPECT_EQ(ToLower("日本語"), "日本語");
}

TEST(ToLowerTest, BytesThatAreNoUtf8PassUnchanged) {
  EXPECT_EQ(ToLower("\xffÄ\xc3"), "\xffä\xc3");
  EXPECT_EQ(ToLower(std::string("A\0Ä", 4)), std::string("a\0ä", 4));
}

TEST(ToVectorTest, CopiesInOrderWithOneAllocation) {
  rpc::proto::task::ListRequest request;
  for (const int status : {5, 1, 101}) {
    request.add_status(status);
  }
  const std::vector<int> statuses = ToVector(request.status());
  EXPECT_EQ(statuses, (std::vector<int>{5, 1, 101}));
  EXPECT_EQ(statuses.capacity(), 3U);
}

}  // namespace
}  // namespace dorvdl::util
