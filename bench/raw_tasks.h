// The peer that the library is measured against: its task operations by libpq alone, written out by
// hand for this one table.
#ifndef BENCH_RAW_TASKS_H_
#define BENCH_RAW_TASKS_H_

#include <dorvdl/proto/record.pb.h>
#include <libpq-fe.h>

#include <string>
#include <vector>

namespace bench {

// Sends the statements that the library sends, in as many round trips, and fills the same messages.
// One thing it leaves out: `extra_data` is stored as it comes, while the library quotes it as JSON.
// Ends the program on any error.
class RawTasks {
 public:
  using Task = dorvdl::record::proto::Task;

  // The connection must outlive this object. The name of the acting user is in lower case.
  RawTasks(PGconn* connection, std::string user);

  std::vector<Task> List();
  Task Get(int id);

  // Writes the fields of a progress report: the two sizes, two rates, peers and pieces.
  void Update(const Task& task);

  // Inserts the fields that a program gives a new task, and sets its id.
  void Create(Task& task);

 private:
  PGconn* connection_;
  std::string user_;
};

}  // namespace bench

#endif  // BENCH_RAW_TASKS_H_
