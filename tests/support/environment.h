// Variables of the environment, for as long as a test needs them.
#ifndef TESTS_SUPPORT_ENVIRONMENT_H_
#define TESTS_SUPPORT_ENVIRONMENT_H_

#include <cstdlib>
#include <optional>
#include <string>

namespace test_support {

// Sets a variable while it lives.
class Environment {
 public:
  Environment(const char* name, const std::string& value) : name_(name) {
    if (const char* const old = std::getenv(name)) {
      old_ = old;
    }
    setenv(name, value.c_str(), 1);
  }
  ~Environment() { old_ ? setenv(name_, old_->c_str(), 1) : unsetenv(name_); }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

 private:
  const char* name_;
  std::optional<std::string> old_;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_ENVIRONMENT_H_
