#include <dorv/exec.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstddef>
#include <initializer_list>

namespace {

constexpr std::size_t kMostArguments = 64;

// The exit status of a child; -1 when it died by a signal.
int StatusOf(pid_t child) {
  int status = 0;
  pid_t ended = 0;
  do {
    ended = waitpid(child, &status, 0);
  } while (ended == -1 && errno == EINTR);
  return ended == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// The helper's work: runs the program and writes its status into the pipe @p answer. All signals
// are blocked here, so that no handler of the caller's runs in this copy of it.
[[noreturn]] void Help(const char* const* arguments, const posix_spawn_file_actions_t* files,
                       int answer) {
  struct sigaction usual {};
  usual.sa_handler = SIG_DFL;
  sigaction(SIGCHLD, &usual, nullptr);
  sigset_t none;
  sigemptyset(&none);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
  pid_t program = 0;
  // posix_spawn() takes the pointers as char* for C's sake; it changes nothing behind them.
  const bool runs = posix_spawn(&program, arguments[0], files, &attributes,
                                const_cast<char* const*>(arguments), environ) == 0;
  // What the caller closes while the program runs must not stay open here.
  dup2(answer, 0);
  closefrom(1);
  const int status = runs ? StatusOf(program) : -1;
  const bool written = write(0, &status, sizeof(status)) == sizeof(status);
  _exit(written ? 0 : 1);
}

// The exit status of a program; -1 when it could not be run or died by a signal. @p arguments
// begins with the program and ends with a null pointer.
//
// The status of a child is lost to a process that ignores SIGCHLD, or in which a handler or another
// thread collects every child; how it handles the signal concerns all its threads and is not to be
// changed here. So a helper, which handles it as usual, waits for the program and tells the status
// through a pipe: who collects the helper does not matter. It is a plain copy of the process: one
// that shared its memory, as vfork() makes, would hold this thread up as long as the program runs,
// and with it every thread that changes ids (setresuid() waits for all of them). The handlers of
// fork() are left out, for they may wait for locks.
int Run(const char* const* arguments, const posix_spawn_file_actions_t* files) {
  int ends[2] = {};
  if (pipe2(ends, O_CLOEXEC) != 0) {
    return -1;
  }
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  const pid_t helper = _Fork();
  if (helper == 0) {
    Help(arguments, files, ends[1]);
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  close(ends[1]);
  int status = -1;
  ssize_t count = 0;
  do {
    count = read(ends[0], &status, sizeof(status));
  } while (count == -1 && errno == EINTR);
  close(ends[0]);
  if (helper > 0) {
    StatusOf(helper);
  }
  return count == sizeof(status) ? status : -1;
}

// Runs with the standard streams on /dev/null.
int RunDetached(const char* const* arguments) {
  posix_spawn_file_actions_t files;
  if (posix_spawn_file_actions_init(&files) != 0) {
    return -1;
  }
  bool ready = true;
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    ready = ready && posix_spawn_file_actions_addopen(&files, stream, "/dev/null", O_RDWR, 0) == 0;
  }
  const int status = ready ? Run(arguments, &files) : -1;
  posix_spawn_file_actions_destroy(&files);
  return status;
}

}  // namespace

int VLIBCExec(const char* program, const char* a1, const char* a2, const char* a3, const char* a4) {
  const char* const arguments[] = {program, a1, a2, a3, a4, nullptr};
  return Run(arguments, nullptr);
}

int VLIBCExecl(const char* program, int /*options*/, const char* arg, ...) {
  const char* arguments[1 + kMostArguments + 1] = {program};  // null pointers after the program
  std::size_t count = 0;
  const char* next = arg;
  va_list rest;
  va_start(rest, arg);
  while (next != nullptr && count < kMostArguments) {
    arguments[++count] = next;
    next = va_arg(rest, const char*);
  }
  va_end(rest);
  return next == nullptr && RunDetached(arguments) == 0 ? 0 : -1;
}
