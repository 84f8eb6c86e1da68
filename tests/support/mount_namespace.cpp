#include "support/mount_namespace.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace test_support {
namespace {

namespace fs = std::filesystem;

void Check(int result, const std::string& what) {
  if (result < 0) {
    throw std::system_error(errno, std::generic_category(), what);
  }
}

void Mount(const std::string& source, const std::string& target, unsigned long flags,
           const std::string& options = "") {
  Check(mount(source.c_str(), target.c_str(), "tmpfs", flags, options.c_str()), "mount " + target);
}

// Shows one entry of the folder as it was at the same name in the folder as it is now.
void ShowEntry(const fs::directory_entry& entry, const fs::path& folder) {
  const fs::path target = folder / entry.path().filename();
  if (entry.is_symlink()) {
    fs::copy_symlink(entry.path(), target);
    return;
  }
  if (entry.is_directory()) {
    fs::create_directory(target);
  } else {
    std::ofstream{target};
  }
  Mount(entry.path(), target, MS_BIND | MS_REC);
}

}  // namespace

void EnterMountNamespace() {
  Check(unshare(CLONE_NEWNS), "unshare the mount namespace (are you root?)");
  Mount("none", "/", MS_REC | MS_PRIVATE);
}

void MakeExtendable(const std::string& folder) {
  const int before = open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  Check(before, "open " + folder);
  Mount("tmpfs", folder, 0, "mode=0755");
  for (const auto& entry : fs::directory_iterator("/proc/self/fd/" + std::to_string(before))) {
    ShowEntry(entry, folder);
  }
  close(before);
}

void MountTmpfs(const std::string& folder, std::size_t bytes) {
  Mount("tmpfs", folder, 0, "mode=0755,size=" + std::to_string(bytes));
}

void MakeReadOnly(const std::string& folder) { Mount("tmpfs", folder, MS_REMOUNT | MS_RDONLY); }

void ReplaceFile(const std::string& file, const std::string& content) {
  std::string name = (fs::temp_directory_path() / "XXXXXX").string();
  const int copy = mkstemp(name.data());
  Check(copy, "create " + name);
  const auto written = write(copy, content.data(), content.size());
  close(copy);
  fs::permissions(name, fs::perms(0644));
  Check(written == static_cast<ssize_t>(content.size()) ? 0 : -1, "write " + name);
  umount2(file.c_str(), MNT_DETACH);  // nothing can be mounted on an earlier replacement
  Mount(name, file, MS_BIND);
  fs::remove(name);
}

void EnterPlatformNamespace() {
  EnterMountNamespace();
  for (const char* const folder : {"/usr", "/var/lib", "/var/spool"}) {
    MakeExtendable(folder);
  }
  ReplaceFile("/etc/passwd",
              "root:x:0:0::/root:/bin/sh\n"
              "alice:x:2001:2001::/:/bin/sh\n"
              "bob:x:2002:2002::/:/bin/sh\n"
              "Tarnwick:x:2003:2003::/:/usr/sbin/nologin\n");
  setenv("LC_ALL", "C", 1);
}

}  // namespace test_support
