// Threads that open connections at once, each its own, in a process that is not root meanwhile.
#include <dorvdl/control/controller.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "support/child.h"
#include "support/database.h"
#include "support/identity.h"

namespace dorvdl::db {
namespace {

class ConcurrentOpenTest : public test_support::DatabaseTest,
                           public testing::WithParamInterface<int> {};

TEST_P(ConcurrentOpenTest, TheIdsAreTheProcesssOwnAfterwards) {
  constexpr int kConnections = 400;
  test_support::RunInChild([] {
    test_support::BecomeIds({0, 65534, 0}, {0, 65534, 0});
    for (int opened = 0; opened < kConnections; opened += GetParam()) {
      std::vector<std::thread> threads;
      for (int i = 0; i < GetParam(); ++i) {
        threads.emplace_back([] {
          control::Controller controller;
          EXPECT_TRUE(controller.db_session().session().Good());
        });
      }
      for (std::thread& thread : threads) {
        thread.join();
      }
      EXPECT_EQ(test_support::CurrentIds(), "uids 0 65534 0, gids 0 65534 0");
    }
    return std::string();
  });
}

INSTANTIATE_TEST_SUITE_P(Threads, ConcurrentOpenTest, testing::Values(2, 8),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace dorvdl::db
