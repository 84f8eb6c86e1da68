#include "rendering/status_word.h"

#include <dorvdl/record/task_status.h>
#include <gtest/gtest.h>

#include <string>

namespace dorvdl::ctl {
namespace {

TEST(StatusWordTest, EveryStatusWithANameOfItsOwnHasAWord) {
  const std::string general = record::GetStatusName(record::kStatusError).key;
  for (int status = 0; status < 200; ++status) {
    const bool named =
        record::GetStatusName(status).key != general || status == record::kStatusError;
    EXPECT_EQ(StatusWord(status) != std::to_string(status), named) << status;
  }
}

TEST(StatusWordTest, AWordStandsForEveryStatusThatIsCalledSo) {
  EXPECT_EQ(StatusesCalled("downloading"), (std::vector<int>{2}));
  EXPECT_EQ(StatusesCalled("waiting"), (std::vector<int>{1, 11, 12}));
  EXPECT_EQ(StatusesCalled("Waiting"), std::vector<int>{});
  EXPECT_EQ(StatusesCalled(""), std::vector<int>{});
}

TEST(StatusWordTest, FailedStandsForEveryError) {
  const std::vector<int> failed = StatusesCalled("failed");
  ASSERT_EQ(failed.size(), 30U);
  EXPECT_EQ(failed.front(), 101);
  EXPECT_EQ(failed.back(), 130);
}

}  // namespace
}  // namespace dorvdl::ctl
