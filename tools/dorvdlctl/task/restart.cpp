// The commands that put parked tasks back into the queue.
#include <dorvdl/control/captcha_control.h>
#include <dorvdl/control/file_hosting_control.h>

#include <memory>
#include <string>
#include <vector>

#include "help.h"
#include "outcome.h"
#include "record/key.h"
#include "record/print.h"
#include "record/rows.h"
#include "task/commands.h"
#include "task/kind.h"
#include "work.h"

namespace dorvdl::ctl {
namespace {

// Notes which tasks have been restarted: the restart of all tasks calls that of one for each, and
// that one alone knows.
struct Restarted {
  bool Note(int id, bool restarted) {
    if (restarted) {
      ids.push_back(id);
    }
    return restarted;
  }

  std::vector<int> ids;
};

// What tells the two restarts apart: their operations, and what a single one that fails means for a
// task that exists.
struct Captcha : control::CaptchaControl, Restarted {
  using CaptchaControl::CaptchaControl;
  static constexpr char kComplaint[] = " could not be restarted";
  bool RestartOne(int id) { return RestartCaptchaTask(id); }
  void RestartAll() { RestartAllCaptchaTask(); }
  bool RestartCaptchaTask(int id) override {
    return Note(id, CaptchaControl::RestartCaptchaTask(id));
  }
};

struct FileHost : control::FileHostingControl, Restarted {
  using FileHostingControl::FileHostingControl;
  static constexpr char kComplaint[] = " does not wait for a file host";
  bool RestartOne(int id) { return RestartHostWaitingTask(id); }
  void RestartAll() { RestartAllHostWaitingTask(); }
  bool RestartHostWaitingTask(int id) override {
    return Note(id, FileHostingControl::RestartHostWaitingTask(id));
  }
};

struct Arguments {
  std::int32_t id = 0;
  bool all = false;
};

template <typename Restart>
void RestartOne(std::int32_t id, const GlobalOptions& global) {
  Work work(global);
  if (!work.Use<Restart>().RestartOne(id)) {
    GetExisting(work, Tasks(), id);
    work.Commit();  // complains when the restart failed
    throw Failure("task " + std::to_string(id) + Restart::kComplaint);
  }
  work.Commit();
}

template <typename Restart>
void RestartAll(const GlobalOptions& global) {
  Work work(global);
  auto restart = work.Use<Restart>();
  restart.RestartAll();
  work.Commit();
  PrintNumbers(restart.ids, global);
}

template <typename Restart>
CLI::App& AddRestart(CLI::App& group, const GlobalOptions& global, const std::string& name,
                     const std::string& waiting) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App& command =
      *group.add_subcommand(name, "Put tasks waiting for " + waiting + " back into the queue");
  CLI::Option& id = *AddKey(command, Tasks(), arguments->id).required(false);
  CLI::Option* const all = command.add_flag(
      "--all", arguments->all,
      "All tasks that wait for " + waiting + "; prints the ids of those restarted");
  id.excludes(all);
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
      .footer(Footer(
          {"The task is waiting (status 1) then, and what its plug-in kept in `attributes` is "
           "cleared. A single task is restarted whatever its status.",
           {"task restart captcha 7"}}));
  AddRestart<FileHost>(restart, global, "host", "a file host")
      .footer(Footer({"The task is waiting (status 1) then. With --all, what the plug-ins kept in "
                      "`attributes` is cleared, too; what a single task's plug-in kept stays.",
                      {"--user alice task restart host --all"}}));
}

}  // namespace dorvdl::ctl
