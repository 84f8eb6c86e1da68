#include <dorv/notification_spool.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <boost/algorithm/string/predicate.hpp>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <new>
#include <system_error>
#include <utility>

#include "fail.h"
#include "file.h"
#include "kept_notification.h"
#include "log.h"
#include "spool.h"
#include "spool_folder.h"

namespace dorv {
namespace {

using dorvdl::common::KeptNotification;

constexpr char kLogSource[] = "platform/notification_spool";
constexpr char kEnding[] = ".json";

// Notifications of more bytes are neither kept nor read.
constexpr std::size_t kMostBytes = 1048576;

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
    Fail(errno, "spool folder");
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

// The names of the notifications in the order of their times.
std::vector<std::string> NamesOfNotifications(const File& folder) {
  std::vector<std::string> names = NamesIn(folder);
  const auto is_other = [](const std::string& name) {
    return name.front() == '.' || !boost::algorithm::ends_with(name, kEnding);
  };
  names.erase(std::remove_if(names.begin(), names.end(), is_other), names.end());
  std::sort(names.begin(), names.end());
  return names;
}

// A notification of the spool; none, after a line in the log, when the file is not to be read.
std::optional<KeptNotification> Read(const File& folder, const std::string& name) {
  try {
    return FromJson(ReadFileOf(folder, name, kMostBytes));
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    DORV_LOG("Failed to read notification [%s]: %s", name.c_str(), error.what());
    return std::nullopt;
  }
}

}  // namespace

void Keep(KeptNotification notification) {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  notification.created = now.tv_sec;
  const std::string json = ToJson(notification);
  if (json.size() > kMostBytes) {
    Fail(EMSGSIZE, "notification of " + std::to_string(json.size()) + " bytes");
  }
  const File folder = OpenSpoolToKeep();
  WriteDurably(folder, NewName(now), json);
}

}  // namespace dorv

namespace dorvdl::common {

std::optional<std::vector<KeptNotification>> ListKeptNotifications() {
  std::vector<KeptNotification> notifications;
  try {
    const dorv::File folder = dorv::OpenSpoolToRead();
    if (!folder) {
      return notifications;
    }
    for (const std::string& name : dorv::NamesOfNotifications(folder)) {
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
