// Files that are written as a whole or not at all.
#ifndef SRC_DBQUERY_REPLACED_FILE_H_
#define SRC_DBQUERY_REPLACED_FILE_H_

#include <string>

#include "dbquery/file_place.h"
#include "dbquery/local_file.h"

namespace dorvdbquery {

// A file that takes another's place, owner and permissions once it is complete: it is written
// beside the target under a name of its own and renamed at the end. Destroyed before that it leaves
// nothing behind.
//
// An open file that has lost its name (/proc/self/fd/N of one that was removed, or never had one)
// has no place to take. It is written itself, and has any content until that is complete.
class ReplacedFile : public LocalFile {
 public:
  // Not open when @p target exists and is no regular file, leads elsewhere by another user's links
  // (see FindPlace()), or when its folder cannot be written.
  explicit ReplacedFile(const std::string& target);
  ~ReplacedFile();
  ReplacedFile(ReplacedFile&&) = delete;
  ReplacedFile& operator=(ReplacedFile&&) = delete;

  // Puts the file in the target's place; false on failure.
  bool Replace();

 private:
  void OpenItself();
  void CreateBeside();
  bool Complete();

  FilePlace place_;
  std::string temporary_;  // its name until it is complete; empty when there is none
};

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_REPLACED_FILE_H_
