// Which records an answer holds.
#ifndef TESTS_SUPPORT_KEYS_OF_H_
#define TESTS_SUPPORT_KEYS_OF_H_

#include <vector>

namespace test_support {

// The keys of records, in their order.
template <typename Record>
std::vector<int> KeysOf(const std::vector<Record>& records) {
  std::vector<int> keys;
  keys.reserve(records.size());
  for (const Record& record : records) {
    keys.push_back(record.primary_key());
  }
  return keys;
}

}  // namespace test_support

#endif  // TESTS_SUPPORT_KEYS_OF_H_
