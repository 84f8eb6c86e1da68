#include <dorv/volume.h>
#include <fcntl.h>
#include <libmount.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <string>

namespace {

// The id of the mount that @p path lives on, as the mount table numbers it; -1 on failure. The
// kernel is asked, not the path's text compared: a mount can lie hidden below a later one.
int MountId(const char* path) {
  const int file = open(path, O_PATH | O_CLOEXEC);
  if (file < 0) {
    return -1;
  }
  int id = -1;
  std::ifstream info("/proc/self/fdinfo/" + std::to_string(file));
  for (std::string word; info >> word && word != "mnt_id:";) {
  }
  info >> id;
  close(file);
  return info ? id : -1;
}

template <std::size_t kSize>
bool Copy(char (&to)[kSize], const char* from) {
  const int length = std::snprintf(to, kSize, "%s", from);
  return length >= 0 && static_cast<std::size_t>(length) < kSize;
}

}  // namespace

int VolumePathParseEx(const char* path, DorvVolumeInfo* info) {
  const int id = MountId(path);
  if (id < 0) {
    return -1;
  }
  const std::unique_ptr<libmnt_table, decltype(&mnt_unref_table)> table(
      mnt_new_table_from_file("/proc/self/mountinfo"), &mnt_unref_table);
  const std::unique_ptr<libmnt_iter, decltype(&mnt_free_iter)> position(
      mnt_new_iter(MNT_ITER_FORWARD), &mnt_free_iter);
  if (!table || !position) {
    return -1;
  }
  for (libmnt_fs* mount = nullptr; mnt_table_next_fs(table.get(), position.get(), &mount) == 0;) {
    if (mnt_fs_get_id(mount) == id) {
      const char* const device = mnt_fs_get_source(mount);
      const bool fits = Copy(info->path, mnt_fs_get_target(mount)) &&
                        Copy(info->device, device != nullptr ? device : "");
      return fits ? 0 : -1;
    }
  }
  return -1;
}
