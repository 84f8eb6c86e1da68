// Units of several threads and of several processes on the same rows: what gets in another's way is
// worth another try, nothing is lost and nothing done twice.
#include <dorvdl/control/task_control.h>
#include <dorvdl/control/unit.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <future>
#include <string>
#include <vector>

#include "support/database.h"
#include "support/syslog_capture.h"

namespace dorvdl::control {
namespace {

using dorvdbquery::Failure;

constexpr int kWorkers = 4;
constexpr int kUnits = 15;
constexpr int kTasks = 3;

class UnitsInCompanyTest : public test_support::DatabaseTest {
 protected:
  UnitsInCompanyTest() {
    raw_.Run("INSERT INTO download_queue (username) SELECT 'alice' FROM generate_series(1, 3)");
    test_support::TakeLog();
  }

  // Adds 1 to the size of each task in one unit, in an order of the worker's own; true when that is
  // done. What is read is read again in the next try.
  static bool AddOne(Controller& controller, int worker) {
    Unit unit(controller);
    TaskControl tasks(controller);
    for (int step = 0; step < kTasks; ++step) {
      const int id = 1 + (worker + step * (worker % 2 == 0 ? 1 : kTasks - 1)) % kTasks;
      // The row is locked before it is read, so that nobody changes it in between.
      record::Task locked;
      locked.set_primary_key(id);
      locked.mutable_proto().set_pid(worker);
      tasks.Update(locked);
      record::Task changed;
      changed.set_primary_key(id);
      changed.mutable_proto().set_current_size(tasks.Get(id).proto().current_size() + 1);
      tasks.Update(changed);
    }
    if (unit.Commit() == Unit::Outcome::kCommitted) {
      return true;
    }
    EXPECT_EQ(controller.failure().kind, Failure::Kind::kRetry) << controller.failure().message;
    return false;
  }

  static void Work(int worker) {
    auto controller = Controller::ForUser("alice");
    *controller.db_session().session().handle() << "SET lock_timeout = '20ms'";
    for (int done = 0; done < kUnits;) {
      done += AddOne(controller, worker) ? 1 : 0;
    }
  }

  void ExpectSizes(int expected) {
    EXPECT_EQ(raw_.Run("SELECT current_size FROM download_queue"),
              std::vector<std::string>(kTasks, std::to_string(expected)));
  }
};

TEST_F(UnitsInCompanyTest, ThreadsLoseNothing) {
  std::vector<std::future<void>> threads;
  threads.reserve(kWorkers);
  for (int worker = 0; worker < kWorkers; ++worker) {
    threads.push_back(std::async(std::launch::async, Work, worker));
  }
  for (std::future<void>& thread : threads) {
    thread.get();
  }
  ExpectSizes(kWorkers * kUnits);
}

TEST_F(UnitsInCompanyTest, ProcessesLoseNothingAlsoWhenOneIsKilled) {
  std::vector<pid_t> children;
  for (int worker = 0; worker < kWorkers; ++worker) {
    const pid_t child = fork();
    if (child == 0) {
      Work(worker);
      _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    children.push_back(child);
  }
  // One more that is killed in the middle of its unit, with rows locked.
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t victim = fork();
  if (victim == 0) {
    Controller controller;
    Unit unit(controller);
    record::Task task;
    task.set_primary_key(1);
    task.mutable_proto().set_current_size(1000000);
    const bool updated = TaskControl(controller).Update(task);
    _exit(write(ready[1], updated ? "y" : "n", 1) == 1 ? pause() : 1);
  }
  char answer = 0;
  EXPECT_EQ(read(ready[0], &answer, 1), 1);
  EXPECT_EQ(answer, 'y');
  kill(victim, SIGKILL);
  waitpid(victim, nullptr, 0);
  close(ready[0]);
  close(ready[1]);
  for (const pid_t child : children) {
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  ExpectSizes(kWorkers * kUnits);
}

}  // namespace
}  // namespace dorvdl::control
