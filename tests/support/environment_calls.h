// Stand-ins for the calls with which the library shows a time and names a user in the environment,
// to make them fail. Only for programs that ask for them, see tests/CMakeLists.txt.
#ifndef TESTS_SUPPORT_ENVIRONMENT_CALLS_H_
#define TESTS_SUPPORT_ENVIRONMENT_CALLS_H_

namespace test_support {

// While an object lives the calls do as it says; else, and where it says nothing, they are the real
// ones. One at a time. Not for several threads at once.
struct EnvironmentCalls {
  EnvironmentCalls();
  ~EnvironmentCalls();
  EnvironmentCalls(const EnvironmentCalls&) = delete;
  EnvironmentCalls& operator=(const EnvironmentCalls&) = delete;

  int setenv_error = 0;        // an error number makes setenv() fail
  bool asctime_fails = false;  // asctime() returns null
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_ENVIRONMENT_CALLS_H_
