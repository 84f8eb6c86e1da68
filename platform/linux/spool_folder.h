// The folder in which notifications are kept: who may use it, and whose it is. Its path, owner and
// mode are those of the public header.
#ifndef DORV_LINUX_SPOOL_FOLDER_H_
#define DORV_LINUX_SPOOL_FOLDER_H_

#include <sys/types.h>

#include <string>
#include <vector>

#include "file.h"

namespace dorv {

// Opens the folder. Throws std::system_error when it cannot be opened, or is not such as it has to
// be: in another's folder notifications could be read, and a link could make them land anywhere.
//
// To keep a notification, it is made when only it is missing, and belongs to the package's user
// where root opens it and there is this user. To read, it is negative when it is missing.
File OpenSpoolToKeep();
File OpenSpoolToRead();

// The names of all that lies in the folder, in any order. Throws std::system_error.
std::vector<std::string> NamesIn(const File& spool);

// Gives a file or folder that root has made to whom it is for; others cannot and need not.
bool GiveTo(const File& made, uid_t user, gid_t group);

}  // namespace dorv

#endif  // DORV_LINUX_SPOOL_FOLDER_H_
