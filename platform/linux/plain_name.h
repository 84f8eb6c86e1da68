// Names from outside that become parts of paths.
#ifndef DORV_LINUX_PLAIN_NAME_H_
#define DORV_LINUX_PLAIN_NAME_H_

#include <algorithm>
#include <string_view>

namespace dorv {

// Whether a name can be used as a file's without leading elsewhere or being hidden: it is not
// empty, does not begin with a dot and has no slash or control character.
inline bool IsPlainName(std::string_view name) {
  return !name.empty() && name.front() != '.' &&
         std::none_of(name.begin(), name.end(), [](unsigned char letter) {
           return letter == '/' || letter < 0x20 || letter == 0x7f;
         });
}

}  // namespace dorv

#endif  // DORV_LINUX_PLAIN_NAME_H_
