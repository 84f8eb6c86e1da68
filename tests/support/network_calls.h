// Stand-ins for the calls by which a connection is read, written and waited for, to make them fail.
// Only for programs that ask for them, see tests/CMakeLists.txt.
#ifndef TESTS_SUPPORT_NETWORK_CALLS_H_
#define TESTS_SUPPORT_NETWORK_CALLS_H_

#include <string>

namespace test_support {

// What is to fail: the calls of this name, with this error number.
struct NetworkFault {
  std::string call;  // "recv", "send" or "poll"
  int error;
};

// While an object lives one call of the process fails: the nth of those that the fault names,
// counted from 1, and none when n is 0. All others are the real ones. One object at a time. Not for
// several threads at once.
class NetworkCalls {
 public:
  NetworkCalls(const NetworkFault& fault, int nth);
  ~NetworkCalls();
  NetworkCalls(const NetworkCalls&) = delete;
  NetworkCalls& operator=(const NetworkCalls&) = delete;

  // Whether the call was made, and so has failed.
  bool HasFailed() const { return nth_ > 0 && made_ >= nth_; }

  // Counts a call; true, with errno set, when it is the one that fails.
  bool Fails(const char* call);

 private:
  const NetworkFault fault_;
  const int nth_;
  int made_ = 0;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_NETWORK_CALLS_H_
