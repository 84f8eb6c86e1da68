// Where a path leads.
#ifndef SRC_DBQUERY_FILE_PLACE_H_
#define SRC_DBQUERY_FILE_PLACE_H_

#include <optional>
#include <string>

#include "dbquery/descriptor.h"

namespace dorvdbquery {

// A name in a folder. Whatever becomes of the path later on, what is done by these two is done in
// that folder.
struct FilePlace {
  Descriptor folder;  // not open for an open file that has lost its name
  std::string name;   // without a slash
  Descriptor entry;   // what is there, as O_PATH; not open when nothing is
};

// Follows @p path. A path that ends in a link to nothing leads to that link.
//
// Links of the process's effective user and of root are followed anywhere. Any other user's could
// have been put there, even while this looks, to lead elsewhere: they are followed only to what
// belongs to that user, who can do there without us what we do. Nothing when they lead elsewhere,
// or the path cannot be followed; errno says why.
std::optional<FilePlace> FindPlace(const std::string& path);

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_FILE_PLACE_H_
