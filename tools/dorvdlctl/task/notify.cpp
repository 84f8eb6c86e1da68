// The command that sends notifications about tasks.
#include <map>
#include <memory>
#include <string>

#include "help.h"
#include "outcome.h"
#include "record/key.h"
#include "record/rows.h"
#include "task/commands.h"
#include "task/kind.h"

namespace dorvdl::ctl {
namespace {

using Send = bool (record::Task::*)(int created_time) const;

const std::map<std::string, Send> kEvents = {
    {"complete", &record::Task::SendNotificationComplete},
    {"captcha", &record::Task::SendNotificationCaptcha},
    {"failed", &record::Task::SendNotificationFailed},
};

struct Arguments {
  std::int32_t id = 0;
  std::string event;
};

void Notify(const Arguments& arguments, const GlobalOptions& global) {
  Work work(global);
  const record::Task task = GetExisting(work, Tasks(), arguments.id);
  work.Commit();
  const Send send = kEvents.at(arguments.event);
  if (!(task.*send)(task.proto().created_time())) {
    throw Failure("the notification was not sent; --verbose shows why");
  }
}

}  // namespace

void AddTaskNotify(CLI::App& group, const GlobalOptions& global) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App& command = *group.add_subcommand("notify", "Tell a task's owner what became of it");
  AddKey(command, Tasks(), arguments->id);
  command.add_option("EVENT", arguments->event, "complete, captcha or failed")
      ->type_name("")
      ->required()
      ->check(CLI::IsMember(kEvents).description(""));
  command.footer(
      Footer({"The owner must be a user of this machine. The event need not fit the task's status; "
              "with failed, the notification says what the status means, in the owner's language.",
              {"task notify 7 failed"}}));
  command.callback([arguments, &global] { Notify(*arguments, global); });
}

}  // namespace dorvdl::ctl
