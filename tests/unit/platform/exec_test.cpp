#include <dorv/exec.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <future>
#include <string>
#include <thread>
#include <utility>

#include "support/child.h"

namespace {

int Shell(const char* script) { return VLIBCExec("/bin/sh", "-c", script, nullptr, nullptr); }

// Handles SIGCHLD so for the lifetime of the object.
class ChildSignal {
 public:
  explicit ChildSignal(void (*handler)(int), int flags = 0) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    EXPECT_EQ(sigaction(SIGCHLD, &action, &before_), 0);
  }
  ~ChildSignal() { sigaction(SIGCHLD, &before_, nullptr); }
  ChildSignal(const ChildSignal&) = delete;
  ChildSignal& operator=(const ChildSignal&) = delete;

 private:
  struct sigaction before_ {};
};

void ReapEverything(int /*signal*/) {
  const int error = errno;
  while (waitpid(-1, nullptr, WNOHANG) > 0) {
  }
  errno = error;
}

// Whether the file /proc/self/status of a program that is run has such a line.
bool StatusHas(const char* pattern) {
  return VLIBCExec("/bin/grep", "-qE", pattern, "/proc/self/status", nullptr) == 0;
}

TEST(ExecTest, GivesTheExitStatus) {
  EXPECT_EQ(Shell("exit 0"), 0);
  EXPECT_EQ(Shell("exit 1"), 1);
  EXPECT_EQ(Shell("exit 255"), 255);
}

TEST(ExecTest, PassesUpToFourArgumentsAsTheyAre) {
  EXPECT_EQ(VLIBCExec("/usr/bin/test", "$HOME * ;", "=", "$HOME * ;", nullptr), 0);
  EXPECT_EQ(VLIBCExec("/bin/sh", "-c", "exit $#", "name", "one"), 1);
}

TEST(ExecTest, ANullArgumentEndsTheList) {
  EXPECT_EQ(VLIBCExec("/usr/bin/test", "", nullptr, "=", ""), 1);
  EXPECT_EQ(VLIBCExec("/bin/true", nullptr, nullptr, nullptr, nullptr), 0);
}

TEST(ExecTest, FailsWhenTheProgramCannotBeRun) {
  EXPECT_EQ(VLIBCExec("/nonexistent", nullptr, nullptr, nullptr, nullptr), -1);
  EXPECT_EQ(VLIBCExec("/etc/passwd", nullptr, nullptr, nullptr, nullptr), -1);
  EXPECT_EQ(VLIBCExec("true", nullptr, nullptr, nullptr, nullptr), -1);  // PATH is not searched
}

TEST(ExecTest, FailsWhenTheProgramDiesByASignal) {
  EXPECT_EQ(Shell("kill -9 $$"), -1);
  EXPECT_EQ(VLIBCExecl("/bin/sh", 187, "-c", "kill -9 $$", nullptr), -1);
}

TEST(ExecTest, SharesTheCallersStreams) {
  int ends[2] = {};
  ASSERT_EQ(pipe(ends), 0);
  const int output = dup(STDOUT_FILENO);
  dup2(ends[1], STDOUT_FILENO);
  EXPECT_EQ(Shell("echo hello"), 0);
  dup2(output, STDOUT_FILENO);
  char text[6] = {};
  EXPECT_EQ(read(ends[0], text, 5), 5);
  EXPECT_STREQ(text, "hello");
  for (const int file : {ends[0], ends[1], output}) {
    close(file);
  }
}

TEST(ExecTest, WaitsThroughSignals) {
  struct sigaction before {
  }, handler{};
  static volatile sig_atomic_t signals = 0;
  handler.sa_handler = [](int) { signals = signals + 1; };  // without SA_RESTART
  ASSERT_EQ(sigaction(SIGALRM, &handler, &before), 0);
  const itimerval often{{0, 20000}, {0, 20000}};
  const itimerval never{};
  setitimer(ITIMER_REAL, &often, nullptr);
  EXPECT_EQ(Shell("sleep 0.2; exit 7"), 7);
  setitimer(ITIMER_REAL, &never, nullptr);
  sigaction(SIGALRM, &before, nullptr);
  EXPECT_GT(signals, 0);
}

void ExpectStatuses() {
  for (int time = 0; time < 5; ++time) {
    EXPECT_EQ(Shell("exit 7"), 7);
    EXPECT_EQ(Shell("kill -9 $$"), -1);
    EXPECT_EQ(VLIBCExec("/nonexistent", nullptr, nullptr, nullptr, nullptr), -1);
    EXPECT_EQ(VLIBCExecl("/bin/true", 187, nullptr), 0);
    EXPECT_EQ(VLIBCExecl("/bin/false", 187, nullptr), -1);
  }
}

TEST(ExecTest, GivesTheStatusAlsoWhereEndedChildrenAreIgnored) {
  {
    const ChildSignal ignored(SIG_IGN);
    ExpectStatuses();
  }
  const ChildSignal not_kept(SIG_DFL, SA_NOCLDWAIT);
  ExpectStatuses();
}

TEST(ExecTest, GivesTheStatusAlsoWhereAHandlerReapsEveryChild) {
  const ChildSignal reaping(&ReapEverything);
  ExpectStatuses();
}

TEST(ExecTest, GivesTheStatusAlsoWhereAThreadReapsEveryChild) {
  std::atomic<bool> done = false;
  std::thread reaper([&done] {
    while (!done) {
      if (waitpid(-1, nullptr, 0) < 0) {
        std::this_thread::yield();
      }
    }
  });
  ExpectStatuses();
  done = true;
  reaper.join();
}

TEST(ExecTest, EveryThreadGetsTheStatusOfItsOwnProgram) {
  const ChildSignal reaping(&ReapEverything);
  std::array<std::thread, 8> threads;
  for (std::size_t number = 0; number < threads.size(); ++number) {
    threads[number] = std::thread([number] {
      const std::string script = "exit " + std::to_string(number);
      for (int time = 0; time < 5; ++time) {
        EXPECT_EQ(Shell(script.c_str()), static_cast<int>(number));
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

TEST(ExecTest, LeavesTheCallerItsOtherChildrenAndTheHandlingOfSigchld) {
  const ChildSignal handled(&ReapEverything, SA_RESTART);
  sigset_t blocked;
  sigset_t before;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGCHLD);
  ASSERT_EQ(pthread_sigmask(SIG_BLOCK, &blocked, &before), 0);
  const pid_t child = fork();
  if (child == 0) {
    _exit(5);
  }
  EXPECT_EQ(Shell("exit 7"), 7);
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(WEXITSTATUS(status), 5);
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);

  sigset_t mask;
  pthread_sigmask(SIG_SETMASK, &before, &mask);
  EXPECT_EQ(sigismember(&mask, SIGCHLD), 1);
  EXPECT_EQ(sigismember(&mask, SIGTERM), 0);
  struct sigaction action {};
  sigaction(SIGCHLD, nullptr, &action);
  EXPECT_EQ(action.sa_handler, &ReapEverything);
}

TEST(ExecTest, TheProgramStartsWithNothingBlockedAndSigchldAsUsual) {
  const ChildSignal ignored(SIG_IGN);
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  ASSERT_EQ(pthread_sigmask(SIG_SETMASK, &all, &before), 0);
  EXPECT_TRUE(StatusHas("^SigBlk:\\s*0+$"));
  EXPECT_TRUE(StatusHas("^SigIgn:\\s*[0-9a-f]*[02468ace][0-9a-f]{4}$"));  // without bit 16
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

// A program that runs until the object's end.
class RunningProgram {
 public:
  RunningProgram() {
    EXPECT_EQ(pipe(started_), 0);
    EXPECT_EQ(pipe(go_on_), 0);
    runner_ = std::thread([this] {
      const std::string script = "echo >&" + std::to_string(started_[1]) + "; read line <&" +
                                 std::to_string(go_on_[0]) + "; exit 7";
      EXPECT_EQ(Shell(script.c_str()), 7);
    });
    char line = 0;
    EXPECT_EQ(read(started_[0], &line, 1), 1);
  }
  ~RunningProgram() {
    EXPECT_EQ(write(go_on_[1], "\n", 1), 1);
    runner_.join();
    for (const int file : {started_[0], started_[1], go_on_[0], go_on_[1]}) {
      close(file);
    }
  }
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

 private:
  int started_[2] = {};
  int go_on_[2] = {};
  std::thread runner_;
};

TEST(ExecTest, WhatTheCallerClosesIsClosedWhileAProgramRuns) {
  int ends[2] = {};
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  {
    const RunningProgram program;
    close(ends[1]);
    pollfd end{ends[0], POLLIN, 0};
    EXPECT_EQ(poll(&end, 1, 10000), 1);
  }
  close(ends[0]);
}

TEST(ExecTest, IdsCanBeChangedWhileAProgramRuns) {
  std::future<int> changed;
  const RunningProgram program;
  changed = std::async(std::launch::async, [] { return setresuid(-1U, -1U, -1U); });
  EXPECT_EQ(changed.wait_for(std::chrono::seconds(10)), std::future_status::ready);
}

TEST(ExecTest, WorksWhereTheCallerHasClosedItsStreams) {
  test_support::RunInChild([] {
    const int errors = dup(STDERR_FILENO);
    for (const int stream : {0, 1, 2}) {
      close(stream);
    }
    const int status = Shell("exit 7");
    const int sees_streams = Shell("[ -e /proc/$$/fd/0 ] || [ -e /proc/$$/fd/1 ]");
    const int detached =
        VLIBCExecl("/bin/sh", 187, "-c", "[ /proc/$$/fd/2 -ef /dev/null ]", nullptr);
    dup2(errors, STDERR_FILENO);
    EXPECT_EQ(status, 7);
    EXPECT_EQ(sees_streams, 1);
    EXPECT_EQ(detached, 0);
    return "";
  });
}

TEST(ExeclTest, ZeroIsSuccessAndAnyOtherStatusAFailure) {
  EXPECT_EQ(VLIBCExecl("/bin/sh", 187, "-c", "exit 0", nullptr), 0);
  EXPECT_EQ(VLIBCExecl("/bin/sh", 187, "-c", "exit 1", nullptr), -1);
  EXPECT_EQ(VLIBCExecl("/bin/sh", 187, "-c", "exit 3", nullptr), -1);
  EXPECT_EQ(VLIBCExecl("/nonexistent", 187, "x", nullptr), -1);
}

TEST(ExeclTest, TakesArgumentsAndAnyOptionWord) {
  for (const int options : {0, 187, 251, -1}) {
    EXPECT_EQ(VLIBCExecl("/bin/true", options, nullptr), 0);
    EXPECT_EQ(VLIBCExecl("/bin/sh", options, "-c", "test \"$*\" = '1 2 3 4 5 6 7 8 9'", "name", "1",
                         "2", "3", "4", "5", "6", "7", "8", "9", nullptr),
              0);
  }
}

// Runs a program with as many arguments as the list has entries.
template <std::size_t... kIndex>
int RunWithArguments(std::index_sequence<kIndex...> /*arguments*/) {
  constexpr const char* kArguments[] = {(static_cast<void>(kIndex), "x")...};
  return VLIBCExecl("/bin/true", 187, kArguments[kIndex]..., nullptr);
}

TEST(ExeclTest, TakesUpTo64Arguments) {
  EXPECT_EQ(RunWithArguments(std::make_index_sequence<64>()), 0);
  EXPECT_EQ(RunWithArguments(std::make_index_sequence<65>()), -1);
}

TEST(ExeclTest, TheStandardStreamsAreDevNull) {
  int ends[2] = {};
  ASSERT_EQ(pipe(ends), 0);
  int before[3] = {};
  for (const int stream : {0, 1, 2}) {
    before[stream] = dup(stream);
    dup2(ends[stream == 0 ? 0 : 1], stream);
  }
  const int result =
      VLIBCExecl("/bin/sh", 187, "-c",
                 "for n in 0 1 2; do test /proc/$$/fd/$n -ef /dev/null || exit 1; done", nullptr);
  for (const int stream : {0, 1, 2}) {
    dup2(before[stream], stream);
    close(before[stream]);
  }
  close(ends[0]);
  close(ends[1]);
  EXPECT_EQ(result, 0);
}

}  // namespace
