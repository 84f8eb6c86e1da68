#include <dorv/exec.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <initializer_list>

namespace {

constexpr std::size_t kMostArguments = 64;

// The exit status of a program; -1 when it could not be run or died by a signal. @p arguments
// begins with the program and ends with a null pointer.
int Run(const char* const* arguments, const posix_spawn_file_actions_t* files) {
  pid_t child = 0;
  // posix_spawn() takes the pointers as char* for C's sake; it changes nothing behind them.
  if (posix_spawn(&child, arguments[0], files, nullptr, const_cast<char* const*>(arguments),
                  environ) != 0) {
    return -1;
  }
  int status = 0;
  pid_t ended = 0;
  do {
    ended = waitpid(child, &status, 0);
  } while (ended == -1 && errno == EINTR);
  return ended == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
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
