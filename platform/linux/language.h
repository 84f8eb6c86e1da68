// Which language a user reads.
#ifndef DORV_LINUX_LANGUAGE_H_
#define DORV_LINUX_LANGUAGE_H_

#include <string>
#include <vector>

namespace dorv {

// The languages in which a user is to be addressed, best first, as lower-case codes such as "de":
// that of the user's settings file, the locale's, English; the last is English in any case. The
// settings file is `<DORV_USER_SETTINGS>/<user>`, under the real name where @p user differs from
// one in case only, in INI form, with a line `language=de` at its top; one that cannot be read or
// understood counts as missing, and so does that of a user whose name is no plain file name.
std::vector<std::string> LanguagesOf(const std::string& user);

}  // namespace dorv

#endif  // DORV_LINUX_LANGUAGE_H_
