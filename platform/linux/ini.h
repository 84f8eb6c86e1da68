// Files in INI form: texts by key, in sections.
#ifndef DORV_LINUX_INI_H_
#define DORV_LINUX_INI_H_

#include <functional>
#include <map>
#include <string>

namespace dorv {

using Texts = std::map<std::string, std::string, std::less<>>;

// The texts of each section; those above the first section are under the empty name.
using Sections = std::map<std::string, Texts, std::less<>>;

// Reads a file. Throws std::system_error, whose text names the path: as ReadFile() does, and with
// EBADMSG when the content is malformed or cut short: empty, or with a last line that has no end.
Sections ReadIni(const std::string& path);

}  // namespace dorv

#endif  // DORV_LINUX_INI_H_
