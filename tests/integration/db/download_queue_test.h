// What the tests of the download queue's accessor have in common.
#ifndef TESTS_INTEGRATION_DB_DOWNLOAD_QUEUE_TEST_H_
#define TESTS_INTEGRATION_DB_DOWNLOAD_QUEUE_TEST_H_

#include <dorvdl/db/download_queue.h>

#include <string>

#include "integration/db/table_test.h"

namespace dorvdl::db {

class DownloadQueueTest : public TableTest {
 protected:
  // Columns and values as in INSERT; returns the id.
  int Insert(const std::string& columns, const std::string& values) {
    return std::stoi(raw_.Value("INSERT INTO download_queue (" + columns + ") VALUES (" + values +
                                ") RETURNING task_id"));
  }

  DownloadQueue QueueOf(const std::string& user) { return {Session(), user}; }

  // The file names that a list gives, in its order.
  Rows Names(const control::option::task::ListOption& option, const std::string& user = "") {
    Rows names;
    for (const record::Task& task : QueueOf(user).List(option)) {
      names.push_back(task.proto().filename());
    }
    return names;
  }
};

}  // namespace dorvdl::db

#endif  // TESTS_INTEGRATION_DB_DOWNLOAD_QUEUE_TEST_H_
