// What the tests of a user's controller have in common: two users' rows, and those of nobody.
#ifndef TESTS_INTEGRATION_CONTROL_USER_CONTROLLER_TEST_H_
#define TESTS_INTEGRATION_CONTROL_USER_CONTROLLER_TEST_H_

#include <dorvdl/control/controller.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/database.h"
#include "support/syslog_capture.h"

namespace dorvdl::control {

// Of each kind Alice has the row 1, Bob the row 2, and 3 belongs to a feed or task that is gone, as
// 4 does, whose parent is NULL.
inline constexpr char kRows[] =
    "INSERT INTO rss_feed (id, username, url) VALUES (1, 'Alice', 'u'), (2, 'bob', 'u');"
    "INSERT INTO rss_filter (id, feed_id, name) VALUES (1, 1, 'n'), (2, 2, 'n'), (3, 9, 'n'), "
    "(4, NULL, 'n');"
    "INSERT INTO rss_item (id, feed_id, title, is_new) VALUES (1, 1, 't', 1), (2, 2, 't', 1), "
    "(3, 9, 't', 1), (4, NULL, 't', 1);"
    "INSERT INTO download_queue (task_id, username, status, filename) VALUES (1, 'ALICE', 15, "
    "'f'), "
    "(2, 'bob', 15, 'f');"
    "INSERT INTO thumbnail (thumbnail_id, task_id, file_index) VALUES (1, 1, 5), (2, 2, 6), "
    "(3, 9, 7), (4, NULL, 8);"
    "INSERT INTO task_plugin (task_id, pid, attributes) VALUES (1, 7, '1'), (2, 8, '1'), "
    "(9, 9, '1');"
    "INSERT INTO notification (id, task_id, type) VALUES (1, 1, 'a'), (2, 2, 'b'), (3, 9, 'c'), "
    "(4, NULL, 'd');"
    "SELECT setval(pg_get_serial_sequence('rss_feed', 'id'), 10), "
    "setval(pg_get_serial_sequence('rss_filter', 'id'), 10), "
    "setval(pg_get_serial_sequence('rss_item', 'id'), 10), "
    "setval(pg_get_serial_sequence('download_queue', 'task_id'), 10), "
    "setval(pg_get_serial_sequence('thumbnail', 'thumbnail_id'), 10), "
    "setval(pg_get_serial_sequence('notification', 'id'), 10)";

// All that is not Alice's, a line per table.
inline constexpr char kForeign[] =
    "SELECT string_agg(t::text, ' ' ORDER BY id) FROM rss_feed t WHERE username = 'bob' UNION ALL "
    "SELECT string_agg(t::text, ' ' ORDER BY id) FROM rss_filter t "
    "WHERE feed_id IS DISTINCT FROM 1 UNION ALL "
    "SELECT string_agg(t::text, ' ' ORDER BY id) FROM rss_item t "
    "WHERE feed_id IS DISTINCT FROM 1 UNION ALL "
    "SELECT string_agg(t::text, ' ' ORDER BY task_id) FROM download_queue t "
    "WHERE username = 'bob' UNION ALL "
    "SELECT string_agg(t::text, ' ' ORDER BY thumbnail_id) FROM thumbnail t "
    "WHERE task_id IS DISTINCT FROM 1 UNION ALL "
    "SELECT string_agg(t::text, ' ' ORDER BY task_id) FROM task_plugin t "
    "WHERE task_id <> 1 UNION ALL "
    "SELECT string_agg(t::text, ' ' ORDER BY id) FROM notification t "
    "WHERE task_id IS DISTINCT FROM 1";

class UserControllerTest : public test_support::DatabaseTest {
 protected:
  UserControllerTest() {
    raw_.Run(kRows);
    foreign_ = raw_.Run(kForeign);
    test_support::TakeLog();
  }
  ~UserControllerTest() override {
    EXPECT_EQ(raw_.Run(kForeign), foreign_) << "a row that is not Alice's has changed";
  }

  void ExpectRefused() {
    EXPECT_EQ(controller_.failure().kind, dorvdbquery::Failure::Kind::kRefused);
    EXPECT_NE(controller_.failure().message, "");
  }
  void ExpectAnswer() { EXPECT_FALSE(controller_.failure()) << controller_.failure().message; }

  Controller controller_ = Controller::ForUser("alice");

 private:
  std::vector<std::string> foreign_;
};

// An update of the record with a key.
template <typename Record>
Record Change(int key) {
  Record record;
  record.set_primary_key(key);
  return record;
}

}  // namespace dorvdl::control

#endif  // TESTS_INTEGRATION_CONTROL_USER_CONTROLLER_TEST_H_
