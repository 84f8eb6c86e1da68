// How the examples say that something failed.
#ifndef EXAMPLES_TELL_H_
#define EXAMPLES_TELL_H_

#include <dorvdl/control/controller.h>

#include <iostream>
#include <string>

// Says on stderr that @p what, and what the controller's last operation failed with. Returns the
// exit status to end with.
inline int Tell(const std::string& what, const dorvdl::control::Controller& controller) {
  const dorvdbquery::Failure& failure = controller.failure();
  std::cerr << what;
  if (!failure.message.empty()) {
    std::cerr << ": " << failure.message;
  }
  if (!failure.sqlstate.empty()) {
    std::cerr << " (" << failure.sqlstate << ')';
  }
  std::cerr << '\n';
  return 1;
}

// Says how a program is called.
inline int TellUsage(const std::string& arguments) {
  std::cerr << "usage: " << arguments << '\n';
  return 2;
}

#endif  // EXAMPLES_TELL_H_
