// The controls' operations beside the same work by libpq alone, on one connection. Changes the
// database, so it works with a private server only; bench/run starts one.
#include <benchmark/benchmark.h>
#include <dorvdl/control/task_control.h>
#include <dorvdl/util/to_lower.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "item_bench.h"
#include "measure.h"
#include "raw_tasks.h"

namespace bench {
namespace {

using dorvdl::control::Controller;
using dorvdl::control::TaskControl;
using dorvdl::db::DBSession;
using dorvdl::record::Task;
using ListOption = dorvdl::control::option::task::ListOption;

// The tasks of five users; theirs lie mixed in the table, as they come in when all of them are
// busy.
constexpr char kTasks[] = R"(
  INSERT INTO download_queue (
    username, pid, url, filename, status, created_time, started_time, total_size, current_size,
    current_rate, total_peers, connected_peers, total_pieces, downloaded_pieces, available_pieces,
    task_flags, seeders, leechers, destination, extra_data)
  SELECT
    name, 1000 + n % 20, 'https://mirror.example.org/pub/' || md5(n::text) || '/part.' || n,
    left('Lecture ' || n || ' on ' || md5(name || n) || md5(n || name), 30 + n % 31),
    1 + n % 8, 1700000000 + n, 1700000100 + n, 700000000 + 12345::bigint * n, 100000 * n,
    900000 + n, 40 + n % 50, n % 40, 1400, n % 1400, 1400,
    4, 20 + n % 20, 20, 'downloads/lectures',
    CASE WHEN n % 10 = 0 THEN '{"category":"lectures","priority":' || n % 3 || '}' END
  FROM (VALUES ('Alma', 50), ('Bruno', 1000), ('Clara', 20000), ('Dora', 300), ('Emil', 3000))
         AS users (name, tasks), generate_series(1, tasks) AS n
  ORDER BY n)";

// One person's tasks, by the library and by libpq alone.
struct User {
  User(const std::shared_ptr<DBSession>& session, const std::string& name)
      : controller(session),
        ours(controller),
        raw(Connection(*session), dorvdl::util::ToLower(name)) {
    controller.set_username(name);
    for (const RawTasks::Task& task : raw.List()) {
      ids.push_back(task.task_id());
    }
  }

  // The tasks in turn.
  int NextId() { return ids[turn++ % ids.size()]; }

  // What the program that downloads a task writes of it every few seconds; of the tasks in turn.
  Task NextProgress() {
    Task progress;
    progress.mutable_proto().set_task_id(NextId());
    const int moment = static_cast<int>(turn);
    progress.mutable_proto().set_current_size(1'000'000'000LL + moment * 4096LL);
    progress.mutable_proto().set_current_rate(500'000 + moment % 100'000);
    progress.mutable_proto().set_connected_peers(moment % 60);
    progress.mutable_proto().set_downloaded_pieces(moment % 1400);
    progress.mutable_proto().set_upload_rate(moment % 50'000);
    progress.mutable_proto().set_total_upload(moment * 1024LL);
    return progress;
  }

  Controller controller;
  TaskControl ours;
  RawTasks raw;
  std::vector<int> ids;
  std::size_t turn = 0;
};

Task NewTask() {
  RawTasks::Task task;
  task.set_username("Dora");
  task.set_url("https://mirror.example.org/pub/8f14e45fceea167a5a36dedd4bea2543/part.7");
  task.set_filename("Lecture 7 on 8f14e45fceea167a5a36dedd4bea2543");
  task.set_status(1);
  task.set_created_time(1700000000);
  task.set_total_size(700'000'000);
  task.set_task_flags(4);
  task.set_destination("downloads/lectures");
  task.set_extra_data(R"({"category":"lectures","priority":1})");
  return Task(task);
}

// Both sides must have done the same work: all they read is the same but for the quoting.
void CheckSameTasks(User& user) {
  std::vector<Task> ours = user.ours.List(ListOption());
  std::vector<RawTasks::Task> raw = user.raw.List();
  Check(!raw.empty() && ours.size() == raw.size());
  for (std::size_t i = 0; i < raw.size(); ++i) {
    ours[i].mutable_proto().clear_extra_data();
    raw[i].clear_extra_data();
    Check(ours[i].proto().SerializeAsString() == raw[i].SerializeAsString());
  }
}

void MeasureList(PGconn* connection, const std::string& name, User& user) {
  CheckSameTasks(user);
  Measure(connection, name + "/ours", [&] { Check(!user.ours.List(ListOption()).empty()); });
  Measure(connection, name + "/raw", [&] { Check(!user.raw.List().empty()); });
}

void MeasureTasks(const std::shared_ptr<DBSession>& session) {
  PGconn* const connection = Connection(*session);
  Run(connection, kTasks);
  Run(connection, "VACUUM ANALYZE download_queue");
  static User alma(session, "Alma");
  static User bruno(session, "Bruno");
  static User clara(session, "Clara");
  static User dora(session, "Dora");

  MeasureList(connection, "list/50", alma);
  MeasureList(connection, "list/1000", bruno);
  MeasureList(connection, "list/20000", clara);
  Measure(connection, "get/ours", [] { Check(bruno.ours.Get(bruno.NextId()).IsValid()); });
  Measure(connection, "get/raw", [] { Check(bruno.raw.Get(bruno.NextId()).has_task_id()); });
  Measure(connection, "update/ours", [] { Check(bruno.ours.Update(bruno.NextProgress())); });
  Measure(connection, "update/raw", [] { bruno.raw.Update(bruno.NextProgress().proto()); });
  static const Task new_task = NewTask();
  Measure(connection, "create/ours", [] {
    Task task = new_task;
    Check(dora.ours.Create(task, ""));
  });
  Measure(connection, "create/raw", [] {
    RawTasks::Task task = new_task.proto();
    dora.raw.Create(task);
  });
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 2;
  }
  if (std::getenv("DORVDL_PRIVATE_SERVER") == nullptr) {
    bench::Die("changes the database: run it by bench/run");
  }
  const auto session = std::make_shared<dorvdl::db::DBSession>();
  bench::MeasureTasks(session);
  bench::MeasureItems(session);
  benchmark::RunSpecifiedBenchmarks();
}
