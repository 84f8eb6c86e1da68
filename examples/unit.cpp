// A daemon's report: writes how far a user's running downloads have come, of all of them or of
// none.
//
// usage: unit USER [one-by-one]
//
// "one-by-one" writes the same without a unit. To see what the unit saves, run it both ways for a
// user with a few hundred tasks in status 2, on a server whose commits reach the disk
// (tools/private-server run --durable).
#include <dorvdl/control/task_control.h>
#include <dorvdl/control/unit.h>
#include <dorvdl/record/task_status.h>

#include <chrono>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "tell.h"

namespace {

namespace control = dorvdl::control;
namespace record = dorvdl::record;
using Tasks = std::vector<record::Task>;

// The key, and what changes: another MiB has arrived.
record::Task Progress(const record::Task& task) {
  record::Task progress;
  progress.set_primary_key(task.primary_key());
  progress.mutable_proto().set_current_size(task.proto().current_size() + (1 << 20));
  return progress;
}

int ReportInOneUnit(control::Controller& controller, const Tasks& running) {
  // [unit]
  control::Unit unit(controller);
  control::TaskControl tasks(controller);
  for (const record::Task& task : running) {
    if (!tasks.Update(Progress(task))) {
      break;  // the unit has failed with it
    }
  }
  switch (unit.Commit()) {
    case control::Unit::Outcome::kCommitted:
      std::cout << running.size() << " changes are committed\n";
      return 0;
    case control::Unit::Outcome::kRolledBack:
      return Tell("nothing has changed", controller);
    case control::Unit::Outcome::kUnknown:  // the next report looks at what is there
      return Tell("all has changed or nothing", controller);
  }
  // [unit]
  return 1;
}

int ReportOneByOne(control::Controller& controller, const Tasks& running) {
  control::TaskControl tasks(controller);
  for (const record::Task& task : running) {
    if (!tasks.Update(Progress(task))) {
      return Tell("some have changed, others have not", controller);
    }
  }
  std::cout << running.size() << " changes are made\n";
  return 0;
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc < 2) {
    return TellUsage("unit USER [one-by-one]");
  }
  auto controller = control::Controller::ForUser(argv[1]);
  control::option::task::ListOption option;
  option.status = std::vector<std::int32_t>{record::kStatusDownloading};
  const Tasks running = control::TaskControl(controller).List(option);
  if (controller.failure()) {
    return Tell("the tasks cannot be listed", controller);
  }
  const bool one_by_one = argc > 2 && argv[2] == std::string("one-by-one");
  const auto start = std::chrono::steady_clock::now();
  const int status = (one_by_one ? ReportOneByOne : ReportInOneUnit)(controller, running);
  const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
  std::cout << time.count() << " ms\n";
  return status;
} catch (const std::exception& error) {  // no connection, or a row that cannot be read
  std::cerr << "unit: " << error.what() << '\n';
  return 1;
}
