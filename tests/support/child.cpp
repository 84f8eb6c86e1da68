#include "support/child.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <stdexcept>

namespace test_support {
namespace {

bool WriteAll(int fd, const std::string& text) {
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t written = write(fd, text.data() + done, text.size() - done);
    if (written < 0 && errno != EINTR) {
      return false;
    }
    done += written < 0 ? 0 : static_cast<std::size_t>(written);
  }
  return true;
}

std::string ReadAll(int fd) {
  std::string text;
  std::array<char, 4096> part{};
  for (ssize_t count = 0; (count = read(fd, part.data(), part.size())) != 0;) {
    if (count > 0) {
      text.append(part.data(), static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      throw std::runtime_error("reading from the child failed");
    }
  }
  return text;
}

[[noreturn]] void Child(const std::function<std::string()>& body, int fd) {
  bool good = false;
  try {
    good = WriteAll(fd, body()) && !testing::Test::HasFailure();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "exception in the child: %s\n", error.what());
  } catch (...) {
    std::fprintf(stderr, "exception in the child\n");
  }
  std::fflush(nullptr);
  _exit(good ? 0 : 1);  // a leak check would end a process without privileges as a failure
}

}  // namespace

std::string RunInChild(const std::function<std::string()>& body) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) {
    throw std::runtime_error("pipe failed");
  }
  std::fflush(nullptr);  // or the child would print it again
  const pid_t child = fork();
  if (child < 0) {
    throw std::runtime_error("fork failed");
  }
  if (child == 0) {
    close(ends[0]);
    Child(body, ends[1]);
  }
  close(ends[1]);
  std::string text = ReadAll(ends[0]);
  close(ends[0]);
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0)
      << "the child ended with wait status " << status << " after reporting:\n"
      << text;
  return text;
}

}  // namespace test_support
