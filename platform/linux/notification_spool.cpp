#include <dorv/notification_spool.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <boost/algorithm/string/predicate.hpp>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

#include "account.h"
#include "fail.h"
#include "file.h"
#include "kept_notification.h"
#include "log.h"
#include "spool.h"

namespace dorv {
namespace {

using dorvdl::common::KeptNotification;

constexpr char kLogSource[] = "platform/notification_spool";
constexpr char kSpool[] = DORV_NOTIFICATION_SPOOL;
constexpr char kEnding[] = ".json";
constexpr int kSpoolFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

// Throws unless the folder was opened and is such as the public header says: in another's folder
// notifications could be read, and a link could make them land anywhere.
void CheckSpool(const File& folder) {
  struct stat info {};
  if (!folder || fstat(folder.get(), &info) != 0) {
    Fail(errno, kSpool);
  }
  const auto package = FindAccount(DORV_PACKAGE_USER);
  const bool is_ours =
      info.st_uid == 0 || info.st_uid == geteuid() || (package && info.st_uid == package->uid);
  if (!is_ours || (info.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
    Fail(EPERM, kSpool);
  }
}

// Gives a file or folder that root has made to whom it is for; others cannot and need not.
bool GiveTo(const File& made, uid_t user, gid_t group) {
  return geteuid() != 0 || fchown(made.get(), user, group) == 0;
}

// Makes the folder when only it is missing; true when it did.
bool MakeSpool() {
  const bool is_new = mkdir(kSpool, 0700) == 0;
  if (!is_new && errno != EEXIST) {
    Fail(errno, kSpool);
  }
  return is_new;
}

void GiveToPackage(const File& folder) {
  const auto package = FindAccount(DORV_PACKAGE_USER);
  if (package && !GiveTo(folder, package->uid, package->group)) {
    Fail(errno, kSpool);
  }
}

// A new name for the notification of that moment. Times have the same width, so that names sort by
// them; process and number tell those of one moment apart.
std::string NewName(const timespec& now) {
  static std::atomic<unsigned> number;
  char name[80];
  std::snprintf(name, sizeof(name), "%012lld.%09ld-%d-%u", static_cast<long long>(now.tv_sec),
                now.tv_nsec, getpid(), number++);
  return name + std::string(kEnding);
}

bool WriteAll(int file, const std::string& content) {
  for (std::size_t done = 0; done < content.size();) {
    const ssize_t count = write(file, content.data() + done, content.size() - done);
    if (count < 0 && errno != EINTR) {
      return false;
    }
    done += count < 0 ? 0 : static_cast<std::size_t>(count);
  }
  return true;
}

// Makes a file of the folder's owner appear in it as a whole and for good; otherwise throws, and
// there is none.
void WriteDurably(const File& folder, const std::string& name, const std::string& content) {
  struct stat owner {};
  if (fstat(folder.get(), &owner) != 0) {
    Fail(errno, kSpool);
  }
  const std::string temporary = "." + name;
  const File file(
      openat(folder.get(), temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!file) {
    Fail(errno, temporary);
  }
  const auto take_back = [&folder](const std::string& written) {
    const int error = errno;
    unlinkat(folder.get(), written.c_str(), 0);
    Fail(error, written);
  };
  if (!GiveTo(file, owner.st_uid, owner.st_gid) || !WriteAll(file.get(), content) ||
      fsync(file.get()) != 0 ||
      renameat(folder.get(), temporary.c_str(), folder.get(), name.c_str()) != 0) {
    take_back(temporary);
  }
  if (fsync(folder.get()) != 0) {
    take_back(name);
  }
}

std::vector<std::string> NamesInSpool() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(kSpool)) {
    const std::string name = entry.path().filename();
    if (name.front() != '.' && boost::algorithm::ends_with(name, kEnding)) {
      names.push_back(name);
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

// A notification of the spool; none, after a line in the log, when the file is not to be read.
std::optional<KeptNotification> Read(const File& folder, const std::string& name) {
  try {
    return FromJson(ReadFile(name, folder.get()));
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    DORV_LOG("Failed to read notification [%s]: %s", name.c_str(), error.what());
    return std::nullopt;
  }
}

}  // namespace

void Keep(KeptNotification notification) {
  const bool is_new = MakeSpool();
  const File folder(open(kSpool, kSpoolFlags));
  CheckSpool(folder);
  if (is_new) {
    GiveToPackage(folder);
  }
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  notification.created = now.tv_sec;
  WriteDurably(folder, NewName(now), ToJson(notification));
}

}  // namespace dorv

namespace dorvdl::common {

std::optional<std::vector<KeptNotification>> ListKeptNotifications() {
  std::vector<KeptNotification> notifications;
  const dorv::File folder(open(dorv::kSpool, dorv::kSpoolFlags));
  if (!folder && errno == ENOENT) {
    return notifications;
  }
  try {
    dorv::CheckSpool(folder);
    for (const std::string& name : dorv::NamesInSpool()) {
      if (auto notification = dorv::Read(folder, name)) {
        notifications.push_back(*std::move(notification));
      }
    }
  } catch (const std::system_error& error) {
    errno = error.code().value();
    return std::nullopt;
  }
  return notifications;
}

}  // namespace dorvdl::common
