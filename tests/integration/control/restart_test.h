// What the tests of the restarts have in common.
#ifndef TESTS_INTEGRATION_CONTROL_RESTART_TEST_H_
#define TESTS_INTEGRATION_CONTROL_RESTART_TEST_H_

#include <dorvdl/control/captcha_control.h>
#include <dorvdl/control/controller.h>
#include <dorvdl/control/file_hosting_control.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "support/database.h"
#include "support/syslog_capture.h"

namespace dorvdl::control {

using Ids = std::vector<int>;
using Lines = std::vector<test_support::LogLine>;
using Rows = std::vector<std::string>;

// What a program's own control does in place of restarting a task.
struct Override {
  bool operator()(int task_id) {
    seen.push_back(task_id);
    return instead(task_id);
  }

  Ids seen;
  std::function<bool(int)> instead = [](int) { return false; };
};

// Each restart: the status of its tasks, its control with the two operations, and a program's own
// control that overrides the first.
struct Captcha {
  static constexpr int kStatus = 15;
  using Control = CaptchaControl;
  static bool One(interface::CaptchaInterface& captchas, int task_id) {
    return captchas.RestartCaptchaTask(task_id);
  }
  static bool All(interface::CaptchaInterface& captchas) {
    return captchas.RestartAllCaptchaTask();
  }
  struct Overridden : CaptchaControl {
    using CaptchaControl::CaptchaControl;
    bool RestartCaptchaTask(int task_id) override { return restart(task_id); }
    Override restart;
  };
};
struct FileHosting {
  static constexpr int kStatus = 9;
  using Control = FileHostingControl;
  static bool One(interface::FileHostingInterface& hosts, int task_id) {
    return hosts.RestartHostWaitingTask(task_id);
  }
  static bool All(interface::FileHostingInterface& hosts) {
    return hosts.RestartAllHostWaitingTask();
  }
  struct Overridden : FileHostingControl {
    using FileHostingControl::FileHostingControl;
    bool RestartHostWaitingTask(int task_id) override { return restart(task_id); }
    Override restart;
  };
};

// A control with tasks, whose plug-ins have attributes.
template <typename Control>
class RestartTest : public test_support::DatabaseTest {
 protected:
  RestartTest() {
    controller_.db_session();
    test_support::TakeLog();
  }
  void TearDown() override {
    if (refuses_) {
      raw_.Run("DROP FUNCTION refuse CASCADE");  // and its triggers
    }
  }

  void InsertTask(int id, int status, const std::string& user = "alice") {
    raw_.Run(
        "INSERT INTO download_queue (task_id, status, username, filename, extra_data, "
        "waiting_until_time, started_time) VALUES (" +
        std::to_string(id) + ", " + std::to_string(status) + ", '" + user +
        "', 'name', '{\"a\": 1}', 77, 88)");
  }

  void InsertPlugin(int task_id) {
    raw_.Run("INSERT INTO task_plugin VALUES (" + std::to_string(task_id) +
             ", '[\"p\"]', 'plugin', 'type', 3, '{\"kept\": true}', '{\"r\": 1}', '[2]', 44)");
  }

  void InsertTaskWithPlugin(int id, int status, const std::string& user = "alice") {
    InsertTask(id, status, user);
    InsertPlugin(id);
  }

  // The tasks' statuses and the plug-ins' attributes, each in the order of the ids.
  Rows Statuses() { return raw_.Run("SELECT status FROM download_queue ORDER BY task_id"); }
  Rows Attributes() { return raw_.Run("SELECT attributes FROM task_plugin ORDER BY task_id"); }

  // All columns but the one that a restart writes.
  Rows OtherTaskColumns() {
    return raw_.Run("SELECT to_jsonb(t) - 'status' FROM download_queue t ORDER BY task_id");
  }
  Rows OtherPluginColumns() {
    return raw_.Run("SELECT to_jsonb(p) - 'attributes' FROM task_plugin p ORDER BY task_id");
  }

  // Changes whenever a row is written, be it with what it held before.
  std::string Versions() {
    return raw_.Value(
        "SELECT string_agg(v, ' ') FROM (SELECT tableoid || ':' || ctid || xmin v FROM "
        "download_queue UNION ALL SELECT tableoid || ':' || ctid || xmin FROM task_plugin "
        "ORDER BY 1) versions");
  }

  // Lets every update of the table's row with this id fail from now on.
  void RefuseUpdates(const std::string& table, int task_id) {
    refuses_ = true;
    raw_.Run(
        "CREATE FUNCTION refuse() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN "
        "RAISE EXCEPTION 'refused'; END $$;"
        "CREATE TRIGGER refuse BEFORE UPDATE ON " +
        table + " FOR EACH ROW WHEN (OLD.task_id = " + std::to_string(task_id) +
        ") EXECUTE FUNCTION refuse()");
  }

  // The only line about a statement that RefuseUpdates() has let fail.
  static Lines Refused(const std::string& statement) {
    return {{test_support::kError, "dbquery/query",
             "Failed to execute statement: [P0001] refused: " + statement}};
  }

  Controller controller_;
  Control control_{controller_};

 private:
  bool refuses_ = false;
};

// What the restarts send.
constexpr char kUpdateTask[] = "UPDATE \"download_queue\" SET \"status\" = $1 WHERE task_id = $2";
constexpr char kUpdatePlugin[] =
    "UPDATE \"task_plugin\" SET \"task_id\" = $1, \"attributes\" = $2 WHERE task_id = $3";

}  // namespace dorvdl::control

#endif  // TESTS_INTEGRATION_CONTROL_RESTART_TEST_H_
