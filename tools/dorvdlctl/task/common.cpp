#include "task/common.h"

#include <fstream>
#include <iostream>

#include "argument.h"
#include "rendering/message_json.h"
#include "rendering/text.h"

namespace dorvdl::ctl {

CLI::Option* AddTaskId(CLI::App& command, std::int32_t& id) {
  return command.add_option("ID", id, "The task's id")
      ->type_name("")
      ->required()
      ->check(NumberFrom(1));
}

void AddPasswordFile(CLI::App& command, std::string& path) {
  command
      .add_option("--password-file", path,
                  "Take the password for unpacking from the first line of FILE, or of the\n"
                  "standard input when FILE is -")
      ->type_name("FILE");
}

std::string ReadPassword(const std::string& path) {
  std::ifstream file;
  if (path != "-") {
    file.open(path);
  }
  std::string password;
  if (!std::getline(path == "-" ? std::cin : file, password) || password.empty()) {
    throw Failure("no password can be read from " + path);
  }
  if (!IsUtf8(password) || password.find('\0') != std::string::npos) {
    throw Failure("what " + path + " holds is no text");
  }
  return password;
}

Failure NoSuchTask(const std::vector<std::int32_t>& ids, const GlobalOptions& global) {
  std::string message = ids.size() == 1 ? "no task " : "no tasks ";
  for (std::size_t i = 0; i < ids.size(); ++i) {
    message.append(i == 0 ? "" : ", ").append(std::to_string(ids[i]));
  }
  if (!global.user.empty()) {
    message.append(" of user ").append(global.user);
  }
  return Failure(message);
}

record::Task GetTask(Work& work, std::int32_t id, const GlobalOptions& global) {
  record::Task task = work.tasks().Get(id);
  if (!task.IsValid()) {
    work.Commit();  // complains when the reading failed
    throw NoSuchTask({id}, global);
  }
  return task;
}

Json::Value TaskToJson(const record::Task& task) {
  Json::Value json = MessageToJson(task.proto());
  json.removeMember("unzip_password");
  if (task.proto().has_extra_data()) {
    json["extra_data"] = task.extra_data();
  }
  return json;
}

}  // namespace dorvdl::ctl
