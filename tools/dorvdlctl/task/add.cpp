#include <dorvdl/record/task_status.h>

#include <ctime>
#include <iostream>
#include <memory>

#include "argument.h"
#include "help.h"
#include "outcome.h"
#include "record/print.h"
#include "task/commands.h"
#include "task/kind.h"
#include "task/password.h"
#include "task/source.h"
#include "work.h"

namespace dorvdl::ctl {
namespace {

struct Arguments {
  std::vector<std::string> sources;
  std::string destination;
  std::string filename;
  std::string password_file;
  bool paused = false;
};

std::vector<NewTask> NewTasks(const Arguments& arguments) {
  const std::string password =
      arguments.password_file.empty() ? "" : ReadPassword(arguments.password_file);
  std::vector<NewTask> created;
  for (const std::string& source : arguments.sources) {
    record::proto::Task& message = created.emplace_back(TaskFrom(source)).task.mutable_proto();
    message.set_status(arguments.paused ? record::kStatusPaused : record::kStatusWaiting);
    message.set_created_time(static_cast<int>(std::time(nullptr)));
    if (!arguments.destination.empty()) {
      message.set_destination(arguments.destination);
    }
    if (!arguments.filename.empty()) {
      message.set_filename(arguments.filename);
    }
    if (!password.empty()) {
      message.set_unzip_password(password);
    }
  }
  return created;
}

void Print(const std::vector<NewTask>& created, const GlobalOptions& global) {
  Json::Value list(Json::arrayValue);
  for (const NewTask& one : created) {
    list.append(WithoutSecrets(TaskToJson(one.task)));
    if (!global.json) {
      std::cout << one.task.primary_key() << '\n';
    }
  }
  if (global.json) {
    PrintJson(list);
  }
}

void Add(const Arguments& arguments, const GlobalOptions& global) {
  if (global.user.empty()) {
    throw WrongUsage("a new task needs an owner: give --user");
  }
  if (!arguments.filename.empty() && arguments.sources.size() > 1) {
    throw WrongUsage("--filename names one task, not several");
  }
  std::vector<NewTask> created = NewTasks(arguments);
  Work work(global);
  auto tasks = work.Use<control::TaskControl>();
  for (NewTask& one : created) {
    if (!tasks.Create(one.task, one.source_path)) {
      break;  // the commit complains
    }
  }
  work.Commit("no task was added");
  Print(created, global);
}

}  // namespace

void AddTaskAdd(CLI::App& group, const GlobalOptions& global) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App& command = *group.add_subcommand("add", "Add tasks and print their ids");
  command
      .add_option("SOURCE", arguments->sources,
                  "A URL (http, https, ftp, ftps, sftp, magnet, ed2k, thunder, flashget, "
                  "qqdl), or a file that ends in .torrent or .nzb and is stored with the task")
      ->type_name("")
      ->required();
  command
      .add_option("--destination", arguments->destination,
                  "Where the download goes, as a shared-folder path")
      ->type_name("FOLDER")
      ->check(Utf8Text());
  command
      .add_option("--filename", arguments->filename,
                  "Name of the download; default for a file: its own name")
      ->type_name("NAME")
      ->check(Utf8Text());
  AddPasswordFile(command, arguments->password_file);
  command.add_flag("--paused", arguments->paused, "Add the tasks as paused, not as waiting");
  command.footer(
      Footer({"The tasks belong to the user given by --user. When one source is no good, none is "
              "added.",
              {"--user alice task add --paused https://example.org/film.mkv"}}));
  command.callback([arguments, &global] { Add(*arguments, global); });
}

}  // namespace dorvdl::ctl
