#include <dorv/volume.h>
#include <fcntl.h>
#include <libmount.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "file.h"

namespace {

// The id of the mount that an open file lives on, as /proc/self/fdinfo has it; -1 on failure.
int ReadMountId(const dorv::File& file) {
  char name[sizeof("/proc/self/fdinfo/-2147483648")];
  std::snprintf(name, sizeof(name), "/proc/self/fdinfo/%d", file.get());
  int id = -1;
  if (std::FILE* const info = std::fopen(name, "re"); info != nullptr) {
    constexpr char kLabel[] = "mnt_id:";
    constexpr std::size_t kLabelLength = sizeof(kLabel) - 1;
    for (char line[256]; id < 0 && std::fgets(line, sizeof(line), info) != nullptr;) {
      if (std::strncmp(line, kLabel, kLabelLength) == 0) {
        id = std::atoi(line + kLabelLength);
      }
    }
    std::fclose(info);
  }
  return id;
}

// The id of the mount that @p path lives on, as the mount table numbers it; -1 on failure. The
// kernel is asked, not the path's text compared: a mount can lie hidden below a later one. Kernels
// before 5.8 tell it in /proc only, which is closed to a process that has changed its ids.
int MountId(const char* path) {
  const dorv::File file(open(path, O_PATH | O_CLOEXEC));
  if (!file) {
    return -1;
  }
  struct statx info {};
  const bool is_told = statx(file.get(), "", AT_EMPTY_PATH, STATX_MNT_ID, &info) == 0 &&
                       (info.stx_mask & STATX_MNT_ID) != 0;
  return is_told ? static_cast<int>(info.stx_mnt_id) : ReadMountId(file);
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
