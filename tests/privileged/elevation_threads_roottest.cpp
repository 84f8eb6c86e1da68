// Several threads that switch ids at once: each finds the ids that it asked for while it has them,
// and the process keeps its own.
#include <dorvdl/util/privilege.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "support/child.h"
#include "support/identity.h"

namespace dorvdl::util {
namespace {

using test_support::BecomeIds;
using test_support::CurrentIds;
using test_support::RunInChild;

constexpr uid_t kNobody = 65534;
constexpr char kOwnIds[] = "uids 0 65534 0, gids 0 65534 0";

void BecomeNobody() { BecomeIds({0, kNobody, 0}, {0, kNobody, 0}); }

bool IsRoot() { return geteuid() == 0 && getegid() == 0; }

// Calls `body` in that many threads, so many times in each.
void InThreads(int threads, int times, const std::function<void()>& body) {
  std::vector<std::thread> running;
  for (int i = 0; i < threads; ++i) {
    running.emplace_back([&] {
      for (int time = 0; time < times; ++time) {
        body();
      }
    });
  }
  for (std::thread& thread : running) {
    thread.join();
  }
}

class ElevationThreadsTest : public testing::TestWithParam<int> {};

TEST_P(ElevationThreadsTest, AGuardHasItsIdsUntilItsEndAndThenTheyAreBack) {
  const std::string ids = RunInChild([] {
    BecomeNobody();
    std::atomic<int> wrong = 0;
    InThreads(GetParam(), 1000 / GetParam(), [&wrong] {
      IF_RUN_AS(0, 0) { wrong += IsRoot() ? 0 : 1; }
      else {
        ++wrong;
      }
    });
    EXPECT_EQ(wrong, 0);
    return CurrentIds();
  });
  EXPECT_EQ(ids, kOwnIds);
}

TEST_P(ElevationThreadsTest, ACriticalSectionHasItsIdsUntilItsEndAndThenTheyAreBack) {
  const std::string ids = RunInChild([] {
    BecomeNobody();
    std::atomic<int> wrong = 0;
    InThreads(GetParam(), 400 / GetParam(), [&wrong] {
      ENTERCriticalSection;
      wrong += IsRoot() ? 0 : 1;
      IF_RUN_AS(kNobody, kNobody) { wrong += geteuid() == kNobody ? 0 : 1; }
      wrong += IsRoot() ? 0 : 1;
      LEAVECriticalSection;
    });
    EXPECT_EQ(wrong, 0);
    return CurrentIds();
  });
  EXPECT_EQ(ids, kOwnIds);
}

INSTANTIATE_TEST_SUITE_P(Elevation, ElevationThreadsTest, testing::Values(2, 8),
                         testing::PrintToStringParamName());

// Whether another thread gets its turn to switch within a time that is long for that.
bool AnotherThreadMaySwitch() {
  std::promise<void> switched;
  std::thread other([&switched] {
    IF_RUN_AS(0, 0) { switched.set_value(); }
  });
  const bool done =
      switched.get_future().wait_for(std::chrono::seconds(5)) == std::future_status::ready;
  done ? other.join() : other.detach();
  return done;
}

TEST(IdLockTest, AlsoWhereNothingHasToBeSwitchedTheOthersWait) {
  RunInChild([] {
    std::atomic<bool> has_ended = false;
    std::thread other;
    IF_RUN_AS(0, 0) {
      std::promise<void> started;
      other = std::thread([&] {
        started.set_value();
        IF_RUN_AS(0, 0) { EXPECT_TRUE(has_ended); }
      });
      started.get_future().wait();
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
      has_ended = true;
    }
    other.join();
    return std::string();
  });
}

TEST(IdLockTest, ASectionThatIsNotLeftLetsTheOthersGoOnAtTheEndOfItsBlock) {
  RunInChild([] {
    { ENTERCriticalSection; }
    EXPECT_TRUE(AnotherThreadMaySwitch());
    return std::string();
  });
}

TEST(IdLockTest, AfterLeavingTheOthersGoOnBeforeTheEndOfTheBlock) {
  RunInChild([] {
    ENTERCriticalSection;
    LEAVECriticalSection;
    EXPECT_TRUE(AnotherThreadMaySwitch());
    return std::string();
  });
}

TEST(IdLockTest, AChildThatIsForkedDuringASwitchOfAnotherThreadMaySwitch) {
  RunInChild([] {
    std::promise<void> holding;
    std::promise<void> forked;
    std::thread holder([&] {
      IF_RUN_AS(0, 0) {
        holding.set_value();
        forked.get_future().wait();
      }
    });
    holding.get_future().wait();
    RunInChild([] {
      alarm(10);
      IF_RUN_AS(0, 0) { EXPECT_TRUE(IsRoot()); }
      EXPECT_TRUE(AnotherThreadMaySwitch());
      return std::string();
    });
    forked.set_value();
    holder.join();
    return std::string();
  });
}

TEST(IdLockTest, AChildThatIsForkedDuringItsOwnSwitchEndsIt) {
  const std::string ids = RunInChild([] {
    BecomeNobody();
    pid_t child = -1;
    IF_RUN_AS(0, 0) { child = fork(); }
    if (child == 0) {
      alarm(10);
      _exit(CurrentIds() == kOwnIds && AnotherThreadMaySwitch() ? 0 : 1);
    }
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(AnotherThreadMaySwitch());
    return CurrentIds();
  });
  EXPECT_EQ(ids, kOwnIds);
}

}  // namespace
}  // namespace dorvdl::util
