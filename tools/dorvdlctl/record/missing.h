// What is said of records that do not exist.
#ifndef DORVDLCTL_RECORD_MISSING_H_
#define DORVDLCTL_RECORD_MISSING_H_

#include <cstdint>
#include <string>
#include <vector>

#include "outcome.h"

namespace dorvdl::ctl {

inline std::string KeyText(std::int32_t key) { return std::to_string(key); }
inline std::string KeyText(const std::string& key) { return key; }

// "no task 7" or "no tasks 7, 9", and of which user unless that is empty.
template <typename Key>
Failure Missing(const std::string& noun, const std::vector<Key>& keys, const std::string& user) {
  std::string message = "no " + noun + (keys.size() == 1 ? " " : "s ");
  for (std::size_t i = 0; i < keys.size(); ++i) {
    message.append(i == 0 ? "" : ", ").append(KeyText(keys[i]));
  }
  return Failure(user.empty() ? message : message + " of user " + user, Reason::kNotFound);
}

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RECORD_MISSING_H_
