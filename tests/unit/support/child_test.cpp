#include "support/child.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <csignal>
#include <stdexcept>
#include <string>

namespace test_support {
namespace {

TEST(RunInChildTest, ReturnsTheTextOfTheChildAndLeavesThisProcessAlone) {
  static int calls = 0;
  const std::string text(100000, 'x');  // more than a pipe holds
  EXPECT_EQ(RunInChild([&text] {
              ++calls;
              return text + std::to_string(calls);
            }),
            text + "1");
  EXPECT_EQ(calls, 0);
}

TEST(RunInChildTest, AnExceptionInTheChildFailsTheTest) {
  EXPECT_NONFATAL_FAILURE(RunInChild([]() -> std::string { throw std::runtime_error("thrown"); }),
                          "the child ended with wait status 256");
}

TEST(RunInChildTest, ACrashOfTheChildFailsTheTest) {
  EXPECT_NONFATAL_FAILURE(RunInChild([] {
                            std::raise(SIGKILL);
                            return std::string();
                          }),
                          "the child ended with wait status 9");
}

}  // namespace
}  // namespace test_support
