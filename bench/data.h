// What the tables hold when the measuring begins.
#ifndef BENCH_DATA_H_
#define BENCH_DATA_H_

#include <cstddef>
#include <string>
#include <vector>

#include "connection.h"

namespace bench {

// A user and the number of their tasks.
struct User {
  std::string name;  // in lower case, while the table has it capitalised
  int tasks;
};

struct Data {
  std::vector<User> listed;  // those whose lists are measured
  int items;                 // RSS items, a thousand in each feed
  std::vector<int> files;    // the sizes of the files that are stored, in MiB
};

// All that is measured; or little, for a run that takes seconds.
Data WholeData();
Data ShortData();

// One user's tasks are read and updated one by one; another's are counted; a third gets the new
// ones.
constexpr char kWorker[] = "bruno";
constexpr char kIdler[] = "emil";
constexpr char kCreator[] = "dora";

constexpr int kFeed = 1;
constexpr char kPattern[] = "%quokka%";

// Fills the tables.
void Fill(Connection& database, const Data& data);

// The ids of the user's tasks.
std::vector<int> TasksOf(Connection& database, const std::string& user);

}  // namespace bench

#endif  // BENCH_DATA_H_
