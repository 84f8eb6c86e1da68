// Runs part of a test in a process of its own: switching ids, or anything else that a process
// cannot take back, then ends with the child.
#ifndef TESTS_SUPPORT_CHILD_H_
#define TESTS_SUPPORT_CHILD_H_

#include <functional>
#include <string>

namespace test_support {

// Forks, calls `body` in the child and returns the text it returned. Failed expectations in the
// child are printed there; they, an exception that leaves `body` and a crash fail the calling test,
// too. The child leaves without running destructors of static objects or exit handlers.
std::string RunInChild(const std::function<std::string()>& body);

}  // namespace test_support

#endif  // TESTS_SUPPORT_CHILD_H_
