#include <dorv/notification.h>

#include <cerrno>
#include <exception>
#include <map>
#include <string>
#include <system_error>
#include <utility>

#include "account.h"
#include "fail.h"
#include "hash_map.h"
#include "localised_texts.h"
#include "log.h"
#include "plain_name.h"
#include "spool.h"

namespace dorv {
namespace {

constexpr char kLogSource[] = "platform/notification";

using Placeholders = std::map<std::string, std::string>;

// Replaces each placeholder in a single pass, so that what a value contains is never taken for a
// placeholder. A percent sign that does not begin a known one is a plain character.
std::string FillIn(const std::string& text, const Placeholders& placeholders) {
  std::string filled;
  for (std::size_t position = 0; position < text.size();) {
    const std::size_t end =
        text[position] == '%' ? text.find('%', position + 1) : std::string::npos;
    const auto found = end != std::string::npos
                           ? placeholders.find(text.substr(position, end + 1 - position))
                           : placeholders.end();
    if (found != placeholders.end()) {
      filled += found->second;
      position = end + 1;
    } else {
      filled += text[position++];
    }
  }
  return filled;
}

void Send(const std::string& event, const std::string& user, const std::string& application,
          const Placeholders& placeholders) {
  for (const std::string& name : {event, user, application}) {
    if (!IsPlainName(name)) {
      Fail(EINVAL, "name of an event, user or application");
    }
  }
  const auto account = FindAccountInAnyCase(user);
  if (!account) {
    Fail(ESRCH, "user " + user);
  }
  Sections templates = ReadLocalisedTexts(std::string(DORV_APPLICATIONS) + "/" + application,
                                          "notifications", account->name);
  Texts& texts = templates[event];
  if (texts.count("title") == 0 || texts.count("message") == 0) {
    Fail(ENOENT, "template of event " + event);
  }
  dorvdl::common::KeptNotification notification;
  notification.event = event;
  notification.application = application;
  notification.user = account->name;
  notification.title = FillIn(texts["title"], placeholders);
  notification.message = FillIn(texts["message"], placeholders);
  notification.placeholders = placeholders;
  Keep(std::move(notification));
}

// Logs why a notification was not sent, and gives the error number.
int Report(int error, const std::exception& reason) {
  DORV_LOG("Failed to send a notification: %s", reason.what());
  return error;
}

}  // namespace
}  // namespace dorv

int DORVSendPersonalNotifiction(const char* event, const char* user, const char* application,
                                VLIBSZHASH* hash) {
  try {
    dorv::Send(event, user, application, hash != nullptr ? hash->pairs : dorv::Placeholders());
    return 0;
  } catch (const std::system_error& error) {
    return dorv::Report(error.code().value(), error);
  } catch (const std::exception& error) {  // memory is short
    return dorv::Report(ENOMEM, error);
  }
}
