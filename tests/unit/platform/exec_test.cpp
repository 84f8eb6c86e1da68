#include <dorv/exec.h>
#include <gtest/gtest.h>
#include <sys/time.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <utility>

namespace {

int Shell(const char* script) { return VLIBCExec("/bin/sh", "-c", script, nullptr, nullptr); }

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
