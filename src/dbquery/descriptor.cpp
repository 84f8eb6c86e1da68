#include "dbquery/descriptor.h"

#include <linux/magic.h>
#include <sys/vfs.h>

namespace dorvdbquery {

struct stat Descriptor::Status() const {
  struct stat status {};
  return fstat(number_, &status) == 0 ? status : (struct stat){};
}

bool Descriptor::IsOnProc() const {
  struct statfs system {};
  return fstatfs(number_, &system) == 0 && system.f_type == PROC_SUPER_MAGIC;
}

}  // namespace dorvdbquery
