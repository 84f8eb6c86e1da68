// What a plug-in and its supervisor know of each other: the plug-in notes that it runs on a task,
// or has ended, and how often it has begun; the supervisor lists those that run.
//
// usage: plugin begin TASK_ID NAME PID | plugin end TASK_ID | plugin active
#include <dorvdl/control/plugin_control.h>
#include <json/value.h>

#include <exception>
#include <iostream>
#include <string>

#include "tell.h"

namespace {

namespace control = dorvdl::control;
namespace record = dorvdl::record;

int Begin(control::Controller& controller, int task_id, const std::string& name, int pid) {
  control::PluginControl plugins(controller);
  const record::Plugin before = plugins.Get(task_id);
  if (controller.failure()) {
    return Tell("the plug-in's state cannot be read", controller);
  }
  Json::Value attributes = before.attributes();  // null for one that is not valid, too
  attributes["begun"] = attributes["begun"].asInt() + 1;

  record::Plugin state;  // the task's one row
  state.set_primary_key(task_id);
  state.mutable_proto().set_current_plugin(name);
  state.mutable_proto().set_pid(pid);
  state.set_attributes(attributes);
  const bool good = before.IsValid() ? plugins.Update(state) : plugins.Create(state);
  return good ? 0 : Tell("the plug-in's state cannot be written", controller);
}

int End(control::Controller& controller, int task_id) {
  record::Plugin state;
  state.set_primary_key(task_id);
  state.mutable_proto().set_pid(0);
  const bool good = control::PluginControl(controller).Update(state);
  return good ? 0 : Tell("the plug-in's state cannot be written", controller);
}

int ShowActive(control::Controller& controller) {
  const auto active = control::PluginControl(controller).ListActivePlugin();
  if (controller.failure()) {
    return Tell("the plug-ins cannot be listed", controller);
  }
  for (const record::Plugin& plugin : active) {
    std::cout << "task " << plugin.primary_key() << ": " << plugin.proto().current_plugin()
              << " as process " << plugin.proto().pid() << ", begun "
              << plugin.attributes()["begun"].asInt() << " times\n";
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) try {
  control::Controller controller;  // both work for all users
  const std::string word = argc > 1 ? argv[1] : "";
  if (word == "begin" && argc == 5) {
    return Begin(controller, std::stoi(argv[2]), argv[3], std::stoi(argv[4]));
  }
  if (word == "end" && argc == 3) {
    return End(controller, std::stoi(argv[2]));
  }
  if (word == "active") {
    return ShowActive(controller);
  }
  return TellUsage("plugin begin TASK_ID NAME PID | plugin end TASK_ID | plugin active");
} catch (const std::exception& error) {  // no connection, or no number
  std::cerr << "plugin: " << error.what() << '\n';
  return 1;
}
