#include "notification/inbox.h"

#include <dorv/notification_spool.h>
#include <dorvdl/util/to_lower.h>

#include <algorithm>
#include <boost/algorithm/string/trim.hpp>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "help.h"
#include "outcome.h"
#include "record/print.h"
#include "rendering/table.h"
#include "rendering/units.h"

namespace dorvdl::ctl {
namespace {

using common::KeptNotification;

// The notifications of the user @p user, of all users when it is empty.
std::vector<KeptNotification> KeptFor(const std::string& user) {
  auto kept = common::ListKeptNotifications();
  if (!kept) {
    throw Failure(std::string("the notifications cannot be read: ") + std::strerror(errno));
  }
  const std::string wanted = util::ToLower(user);
  kept->erase(std::remove_if(kept->begin(), kept->end(),
                             [&wanted](const KeptNotification& notification) {
                               return !wanted.empty() && util::ToLower(notification.user) != wanted;
                             }),
              kept->end());
  return *std::move(kept);
}

Json::Value ToJson(const KeptNotification& notification) {
  Json::Value json;
  json["event"] = notification.event;
  json["application"] = notification.application;
  json["user"] = notification.user;
  json["title"] = notification.title;
  json["message"] = notification.message;
  json["created"] = Json::Int64(notification.created);
  json["placeholders"] = Json::objectValue;
  for (const auto& [key, value] : notification.placeholders) {
    json["placeholders"][key] = value;
  }
  return json;
}

void ShowInbox(const GlobalOptions& global) {
  Json::Value list(Json::arrayValue);
  Table table({{"USER"}, {"TIME"}, {"TITLE"}, {"MESSAGE", Alignment::kLeft, true}});
  for (const KeptNotification& notification : KeptFor(global.user)) {
    list.append(ToJson(notification));
    table.Add({notification.user, LocalTime(notification.created), notification.title,
               boost::trim_right_copy(notification.message)});
  }
  if (global.json) {
    PrintJson(list);
  } else {
    PrintTable(table);
  }
}

}  // namespace

void AddNotificationInbox(CLI::App& group, const GlobalOptions& global) {
  CLI::App& command = *group.add_subcommand("inbox", "Show the notifications that have been sent");
  command.footer(Footer(
      {"They are kept on this machine, in a folder of the user that sends them, and not in the "
       "database.",
       {"--user alice notification inbox"}}));
  command.callback([&global] { ShowInbox(global); });
}

}  // namespace dorvdl::ctl
