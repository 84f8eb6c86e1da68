#include <dorvdl/control/notification_control.h>

#include <memory>

#include "groups.h"
#include "help.h"
#include "notification/inbox.h"
#include "record/commands.h"

namespace dorvdl::ctl {
namespace {

using NotificationKind = Kind<control::NotificationControl>;

const NotificationKind& Notifications() {
  static const NotificationKind notifications = [] {
    NotificationKind kind;
    kind.noun = "notification";
    kind.title = "Notifications about tasks that wait to be delivered";
    kind.key = "id";
    kind.listed = {"id", "task_id", "type", "create_time"};
    kind.parent = &TaskParent();
    kind.notes = {{"type", "complete, failed or captcha"}, {"create_time", "seconds since 1970"}};
    kind.help.list = {"", {"notification list --limit 10"}};
    kind.help.show = {"", {"notification show 9 --json"}};
    kind.help.add = {"", {"notification add task_id=7 type=complete"}};
    kind.help.set = {"", {"notification set 9 type=failed"}};
    kind.help.remove = {"", {"notification remove 9"}};
    return kind;
  }();
  return notifications;
}

void ClearUntil(std::int32_t id, const GlobalOptions& global) {
  Work work(global);
  work.Use<control::NotificationControl>().DeleteEarlierThan(id);
  work.Commit();
}

void AddClearUntil(CLI::App& group, const GlobalOptions& global) {
  const auto id = std::make_shared<std::int32_t>();
  CLI::App& command =
      *group.add_subcommand("clear-until", "Remove all notifications up to and with one");
  AddKey(command, Notifications(), *id);
  command.footer(Footer(
      {"Removes every notification whose id is ID or less; without --user those of all users.",
       {"--user alice notification clear-until 9"}}));
  command.callback([id, &global] { ClearUntil(*id, global); });
}

}  // namespace

void AddNotificationCommands(CLI::App& app, const GlobalOptions& global) {
  CLI::App& group = AddRecordGroup(app, Notifications(), global);
  AddFixedList(group, Notifications(), global, "view",
               "List the notifications as their deliverer reads them",
               &control::NotificationControl::ListFromView)
      .footer(Footer({"Lists the view notification_view, which a deployment may define for itself.",
                      {"notification view"}}));
  AddClearUntil(group, global);
  AddNotificationInbox(group, global);
}

}  // namespace dorvdl::ctl
