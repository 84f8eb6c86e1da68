// The texts of an application in the language of a user.
#ifndef DORV_LINUX_LOCALISED_TEXTS_H_
#define DORV_LINUX_LOCALISED_TEXTS_H_

#include <string>

#include "ini.h"

namespace dorv {

// Reads the file `<folder>/texts/<language>/<name>` in the first of the languages of @p user
// (LanguagesOf()) that has one, and adds from the English file what is missing there, key by key.
// Throws std::system_error as ReadIni() does: with ENOENT when there is none of these files, and
// otherwise when one of the two cannot be read.
Sections ReadLocalisedTexts(const std::string& folder, const std::string& name,
                            const std::string& user);

}  // namespace dorv

#endif  // DORV_LINUX_LOCALISED_TEXTS_H_
