// The threads of a web server: each answers one request, how many tasks its user has, on one of a
// few connections.
//
// usage: pool CONNECTIONS USER...
#include <dorvdl/control/task_control.h>
#include <dorvdl/db/session_pool.h>

#include <chrono>
#include <exception>
#include <functional>
#include <future>
#include <iostream>
#include <string>
#include <vector>

#include "tell.h"

namespace {

namespace control = dorvdl::control;
namespace db = dorvdl::db;

struct Answer {
  int status;
  std::string text;
};

// What a thread does. It has a controller of its own, and shares nothing with others but the pool.
Answer CountTasks(db::SessionPool& pool, const std::string& user) try {
  const auto session = pool.Take(std::chrono::seconds(1));  // goes back with its last pointer
  if (session == nullptr) {
    return {503, "all connections are in use"};
  }
  auto controller = control::Controller::ForUser(user, session);
  const int count = control::TaskControl(controller).Count({});
  if (count < 0) {
    Tell("the tasks of " + user + " cannot be counted", controller);
    return {500, "failed"};
  }
  return {200, std::to_string(count) + " tasks"};
} catch (const std::exception& error) {  // a connection that cannot be opened
  std::cerr << "pool: " << error.what() << '\n';
  return {500, "failed"};
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc < 3) {
    return TellUsage("pool CONNECTIONS USER...");
  }
  db::SessionPool pool(std::stoul(argv[1]));
  // Before there are threads: to open a connection makes the whole process root for a moment.
  std::cout << pool.Open() << " connections\n";

  const std::vector<std::string> users(argv + 2, argv + argc);
  std::vector<std::future<Answer>> answers;
  answers.reserve(users.size());
  for (const std::string& user : users) {
    answers.push_back(std::async(std::launch::async, CountTasks, std::ref(pool), user));
  }
  int status = 0;
  for (std::future<Answer>& coming : answers) {
    const Answer answer = coming.get();
    std::cout << answer.status << ' ' << answer.text << '\n';
    status = answer.status == 200 ? status : 1;
  }
  return status;
} catch (const std::exception& error) {  // no connection, or no number
  std::cerr << "pool: " << error.what() << '\n';
  return 1;
}
