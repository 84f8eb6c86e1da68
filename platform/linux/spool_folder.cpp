#include "spool_folder.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>

#include "account.h"
#include "fail.h"

namespace dorv {
namespace {

constexpr char kSpool[] = DORV_NOTIFICATION_SPOOL;
constexpr int kFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

using Package = std::optional<Account>;

Package FindPackage() { return FindAccount(DORV_PACKAGE_USER); }

struct stat InfoOf(const File& folder) {
  struct stat info {};
  if (fstat(folder.get(), &info) != 0) {
    Fail(errno, kSpool);
  }
  return info;
}

void Check(const File& folder, const Package& package) {
  const struct stat info = InfoOf(folder);
  const bool is_ours =
      info.st_uid == 0 || info.st_uid == geteuid() || (package && info.st_uid == package->uid);
  if (!is_ours || (info.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
    Fail(EPERM, kSpool);
  }
}

// Renames a folder, though not over another one. File systems that cannot promise this replace one
// that is still empty, and what another process is about to keep in that is refused.
bool Rename(const std::string& from, const char* to) {
  return renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to, RENAME_NOREPLACE) == 0 ||
         (errno == EINVAL && rename(from.c_str(), to) == 0);
}

// Makes the folder unless another process has. One that root makes appears as the package user's,
// so that this user never meets it as root's, whenever root stops.
void Make(const Package& package) {
  std::string name = kSpool + std::string(".XXXXXX");
  if (mkdtemp(name.data()) == nullptr) {
    Fail(errno, kSpool);
  }
  const File folder(open(name.c_str(), kFlags));
  const bool is_ready = folder && (!package || GiveTo(folder, package->uid, package->group));
  if (!is_ready || !Rename(name, kSpool)) {
    const int error = errno;
    rmdir(name.c_str());
    if (error != EEXIST && error != ENOTEMPTY) {
      Fail(error, kSpool);
    }
  }
}

// Hands a folder of root's over with all that lies in it: it may be older than the package's user.
// The folder comes last, so that nobody else is in it before.
void HandOver(const File& folder, const Account& package) {
  for (const std::string& name : NamesIn(folder)) {
    const bool given =
        fchownat(folder.get(), name.c_str(), package.uid, package.group, AT_SYMLINK_NOFOLLOW) == 0;
    if (!given && errno != ENOENT) {
      Fail(errno, name);
    }
  }
  if (fchown(folder.get(), package.uid, package.group) != 0) {
    Fail(errno, kSpool);
  }
}

}  // namespace

File OpenSpoolToKeep() {
  const Package package = FindPackage();
  int descriptor = open(kSpool, kFlags);
  if (descriptor < 0 && errno == ENOENT) {
    Make(package);
    descriptor = open(kSpool, kFlags);
  }
  if (descriptor < 0) {
    Fail(errno, kSpool);
  }
  File folder(descriptor);
  Check(folder, package);
  if (package && geteuid() == 0 && InfoOf(folder).st_uid == 0) {
    HandOver(folder, *package);
  }
  return folder;
}

File OpenSpoolToRead() {
  File folder(open(kSpool, kFlags));
  if (folder) {
    Check(folder, FindPackage());
  } else if (errno != ENOENT) {
    Fail(errno, kSpool);
  }
  return folder;
}

std::vector<std::string> NamesIn(const File& spool) {
  struct Close {
    void operator()(DIR* entries) const { closedir(entries); }
  };
  const int again = openat(spool.get(), ".", kFlags);  // with a position of its own
  const std::unique_ptr<DIR, Close> entries(again >= 0 ? fdopendir(again) : nullptr);
  if (!entries) {
    const int error = errno;
    close(again);
    Fail(error, kSpool);
  }
  std::vector<std::string> names;
  errno = 0;
  while (const dirent* const entry = readdir(entries.get())) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") {
      names.push_back(name);
    }
    errno = 0;
  }
  if (errno != 0) {
    Fail(errno, kSpool);
  }
  return names;
}

bool GiveTo(const File& made, uid_t user, gid_t group) {
  return geteuid() != 0 || fchown(made.get(), user, group) == 0;
}

}  // namespace dorv
