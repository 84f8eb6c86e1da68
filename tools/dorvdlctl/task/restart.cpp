// The commands that put parked tasks back into the queue.
#include <dorvdl/control/captcha_control.h>
#include <dorvdl/control/file_hosting_control.h>

#include <memory>
#include <string>
#include <vector>

#include "argument.h"
#include "outcome.h"
#include "record/print.h"
#include "record/rows.h"
#include "task/commands.h"
#include "task/kind.h"
#include "work.h"

namespace dorvdl::ctl {
namespace {

// What tells the two restarts apart: their operations, and what a single one that fails means for a
// task that exists.
struct Captcha : control::CaptchaControl {
  using CaptchaControl::CaptchaControl;
  static constexpr char kComplaint[] = " could not be restarted; details are in the system log";
  bool RestartOne(int id) { return RestartCaptchaTask(id); }
  void RestartAll() { RestartAllCaptchaTask(); }

  // The restart of all tasks calls this one for each; it alone knows which it has restarted.
  bool RestartCaptchaTask(int id) override {
    const bool restarted = CaptchaControl::RestartCaptchaTask(id);
    if (restarted) {
      ids.push_back(id);
    }
    return restarted;
  }

  std::vector<int> ids;
};

struct FileHost : control::FileHostingControl {
  using FileHostingControl::FileHostingControl;
  static constexpr char kComplaint[] = " does not wait for a file host";
  bool RestartOne(int id) { return RestartHostWaitingTask(id); }
  void RestartAll() { RestartAllHostWaitingTask(); }

  bool RestartHostWaitingTask(int id) override {
    const bool restarted = FileHostingControl::RestartHostWaitingTask(id);
    if (restarted) {
      ids.push_back(id);
    }
    return restarted;
  }

  std::vector<int> ids;
};

struct Arguments {
  std::int32_t id = 0;
  bool all = false;
};

template <typename Restart>
void RestartOne(std::int32_t id, const GlobalOptions& global) {
  Work work(global);
  control::Controller controller = work.NewController();
  if (!Restart(controller).RestartOne(id)) {
    Rows(work, Tasks()).GetExisting(id);
    throw Failure("task " + std::to_string(id) + Restart::kComplaint);
  }
  work.Commit();
}

template <typename Restart>
void RestartAll(const GlobalOptions& global) {
  Work work(global);
  control::Controller controller = work.NewController();
  Restart restart(controller);
  restart.RestartAll();
  work.Commit();
  PrintNumbers(restart.ids, global);
}

template <typename Restart>
CLI::App& AddRestart(CLI::App& group, const GlobalOptions& global, const std::string& name,
                     const std::string& waiting) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App& command =
      *group.add_subcommand(name, "Put tasks that wait for " + waiting + " back into the queue");
  CLI::Option* const id = command.add_option("ID", arguments->id, "The task's task_id")
                              ->type_name("")
                              ->check(NumberFrom(1));
  CLI::Option* const all = command.add_flag(
      "--all", arguments->all,
      "All tasks that wait for " + waiting + "; prints the ids of those restarted");
  id->excludes(all)->option_text(" ");
  command.callback([arguments, &global] {
    if (arguments->all) {
      RestartAll<Restart>(global);
    } else if (arguments->id != 0) {
      RestartOne<Restart>(arguments->id, global);
    } else {
      throw WrongUsage("give the ID of a task, or --all");
    }
  });
  return command;
}

}  // namespace

void AddTaskRestart(CLI::App& group, const GlobalOptions& global) {
  CLI::App& restart = *group.add_subcommand("restart", "Put parked tasks back into the queue");
  restart.require_subcommand(1);
  AddRestart<Captcha>(restart, global, "captcha", "a captcha")
      .footer(
          "The task is waiting (status 1) then, and what its plug-in kept in `attributes` is\n"
          "cleared. A single task is restarted whatever its status: the user's word counts.\n"
          "\nExample: dorvdlctl task restart captcha 7");
  AddRestart<FileHost>(restart, global, "host", "a file host")
      .footer(
          "The task is waiting (status 1) then. With --all, what the plug-ins kept in\n"
          "`attributes` is cleared, too; a single task's plug-in goes on with what it kept.\n"
          "\nExample: dorvdlctl --user alice task restart host --all");
}

}  // namespace dorvdl::ctl
