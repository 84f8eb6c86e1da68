// Telling a task's owner what has become of it.
#include <dorv/cgi.h>
#include <dorv/notification.h>
#include <dorv/user.h>
#include <dorvdl/record/task.h>
#include <dorvdl/record/task_status.h>
#include <dorvdl/util/log.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <initializer_list>
#include <locale>
#include <memory>

#include "util/id_lock.h"
#include "util/text.h"

namespace dorvdl::record {
namespace {

// The log knows the task record as one source, whichever of its files a line comes from.
#define LOG_TASK_ERROR(...) DORVDL_LOG_AS("record/task", LOG_ERR, __VA_ARGS__)

constexpr char kApplication[] = "Tarnwick";
constexpr char kTextFolder[] = "/usr/dorv/dorvman/webman/3rdparty/Tarnwick";

struct Placeholder {
  const char* key;
  const std::string& value;
};

// The protocol's name in upper case, as the global locale has it.
std::string ShownType(const Task& task) {
  std::string type = task.GetTaskType();
  try {
    const std::locale locale;
    std::transform(type.begin(), type.end(), type.begin(),
                   [&locale](char letter) { return std::toupper(letter, locale); });
  } catch (const std::exception& error) {  // the locale cannot tell
    LOG_TASK_ERROR("Failed to convert to upper case [%s]", error.what());
  }
  return type;
}

// ShownType() for the events that mean to leave an unknown type out. They compare after the
// conversion, so the word does not match: an unknown type goes out in capitals, and that is what
// templates get, so the order has to stay.
std::string ShownTypeUnlessUnknown(const Task& task) {
  std::string type = ShownType(task);
  if (type == "unknown") {
    type.clear();
  }
  return type;
}

// As asctime() shows it, its newline included: the templates end their line with it.
std::string ShownTime(int seconds) {
  const std::time_t time = seconds;
  const std::tm* const local = std::localtime(&time);
  const char* const text = local == nullptr ? nullptr : std::asctime(local);
  return text == nullptr ? "" : text;
}

// Names the user in the environment, where the platform looks for whose language to use.
bool SetEnvironmentUser(const std::string& user) {
  if (util::HasNul(user)) {
    errno = EINVAL;
    return false;
  }
  return setenv("USERNAME", user.c_str(), 1) == 0;
}

// What the status means, in the user's language; empty when it cannot be loaded.
std::string StatusMessage(const std::string& user, int status) {
  // Another thread that opens a connection, which happens under this lock, reads the environment;
  // and one that tells another user's failure would change whose language this one gets.
  const util::IdLock lock;
  DorvCgiContext context = {};
  // Harmless for a zeroed context, so it may also follow a failure before the first call.
  const std::unique_ptr<DorvCgiContext, decltype(&DorvCgiFree)> release(&context, &DorvCgiFree);
  if (!SetEnvironmentUser(user)) {
    LOG_TASK_ERROR("Failed to setenv [%m]");
    return "";
  }
  if (DorvCgiInit(kTextFolder, &context) == 0) {
    LOG_TASK_ERROR("Failed to do init dorvcgi");
    return "";
  }
  if (!HasStatusName(status)) {
    LOG_TASK_ERROR("Failed to get section and key [%d]", status);
  }
  const StatusName name = GetStatusName(status);
  if (DorvCgiLoadText(&context, name.section, 0) == 0) {
    LOG_TASK_ERROR("Failed to load text");
    return "";
  }
  return DorvCgiGetText(&context, name.key, "");
}

// Adds the pairs to the map in their order, up to the first that is refused, as is a value of which
// the platform would see only the part before a NUL. Each may move the map, or lose it.
bool Fill(VLIBSZHASH*& hash, std::initializer_list<Placeholder> placeholders) {
  return std::all_of(
      placeholders.begin(), placeholders.end(), [&hash](const Placeholder& placeholder) {
        return !util::HasNul(placeholder.value) &&
               VLIBCSzHashSetValue(&hash, placeholder.key, placeholder.value.c_str()) != -1;
      });
}

// Sends @p event with these placeholders.
bool Send(const char* event, const std::string& user,
          std::initializer_list<Placeholder> placeholders) {
  std::size_t bytes = 1;
  for (const Placeholder& placeholder : placeholders) {
    bytes += placeholder.value.size();
  }
  const int size = static_cast<int>(bytes);
  VLIBSZHASH* hash = VLIBCSzHashAlloc(size);
  bool sent = false;
  if (hash == nullptr) {
    LOG_TASK_ERROR("Failed to do VLIBCSzHashAlloc(%d)", size);
  } else if (!Fill(hash, placeholders)) {
    LOG_TASK_ERROR("Failed to set hash value");
  } else {
    sent = SendNotification(event, user, hash);
  }
  // On purpose the wrong way round: only a null handle is ever passed, for which the call does
  // nothing, and a map that was made is left alone, as it always has been. To release it would be a
  // change that platforms have not seen.
  if (hash == nullptr) {
    VLIBCSzHashFree(hash);
  }
  return sent;
}

}  // namespace

bool SendNotification(const std::string& event, const std::string& user, VLIBSZHASH* hash) {
  constexpr int kNameSize = 493;  // bytes, as the platform is always given them
  char real_name[kNameSize] = {};
  if (util::HasNul(user) || VLIBUserRealNameGet(user.c_str(), real_name, kNameSize) != 0) {
    LOG_TASK_ERROR("Failed to get real name for %s", user.c_str());
    return false;
  }
  const int error = util::HasNul(event)
                        ? EINVAL
                        : DORVSendPersonalNotifiction(event.c_str(), real_name, kApplication, hash);
  if (error != 0) {
    LOG_TASK_ERROR("Failed to send notification event for user [%s], ret=%d", real_name, error);
    return false;
  }
  return true;
}

bool Task::SendNotificationComplete(int created_time) const {
  const std::string type = ShownTypeUnlessUnknown(*this);
  const std::string time = ShownTime(created_time);
  return Send("DownloadCompleted", proto().username(),
              {{"%DLTYPE%", type},
               {"%FILENAME%", proto().filename()},
               {"%SHARE%", proto().destination()},
               {"%CREATEDTIME%", time}});
}

bool Task::SendNotificationCaptcha(int created_time) const {
  const std::string type = ShownType(*this);
  const std::string time = ShownTime(created_time);
  return Send("DownloadCaptchaNeeded", proto().username(),
              {{"%DLTYPE%", type}, {"%FILENAME%", proto().filename()}, {"%CREATEDTIME%", time}});
}

bool Task::SendNotificationFailed(int created_time) const {
  const std::string type = ShownTypeUnlessUnknown(*this);
  const std::string time = ShownTime(created_time);
  const std::string message = StatusMessage(proto().username(), proto().status());
  return Send("DownloadFailed", proto().username(),
              {{"%DLTYPE%", type},
               {"%FILENAME%", proto().filename()},
               {"%MESSAGE%", message},
               {"%CREATEDTIME%", time}});
}

}  // namespace dorvdl::record
