// A unit of many changes whose connection is cut at each of its statements: all of it happens or
// nothing, and the unit tells which, or that nobody can know.
#include <dorvdl/control/task_control.h>
#include <dorvdl/control/unit.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "support/connection.h"
#include "support/database.h"
#include "support/make_records.h"
#include "support/server_proxy.h"
#include "support/syslog_capture.h"

namespace dorvdl::control {
namespace {

using dorvdbquery::Failure;
using test_support::ServerProxy;
using test_support::TakeLog;
using Outcome = Unit::Outcome;

constexpr int kChanges = 50;

class LostUnitTest : public test_support::DatabaseTest {
 protected:
  // A change of one of three kinds, all of which a reader can count.
  static bool Change(Controller& controller, int number) {
    TaskControl tasks(controller);
    record::Task task = test_support::TaskOf("alice", "new");
    switch (number % 3) {
      case 0:
        return tasks.Create(task, "");
      case 1:
        return tasks.Update(test_support::Renaming(number, "new"));
      default:
        return tasks.Delete({number});
    }
  }

  void Fill() {
    raw_.Run(
        "TRUNCATE download_queue; INSERT INTO download_queue (task_id, url, filename) "
        "SELECT n, 'old', 'old' FROM generate_series(1, 100) AS n;"
        "SELECT setval(pg_get_serial_sequence('download_queue', 'task_id'), 1000)");
  }

  // How many changes have lasted.
  int Lasted() {
    // The server may still be at work on what was sent before the connection was cut.
    raw_.Run("BEGIN; LOCK TABLE download_queue IN ACCESS EXCLUSIVE MODE");
    const std::string lasted = raw_.Value(
        "SELECT count(*) FILTER (WHERE url = 'new') + count(*) FILTER (WHERE filename = "
        "'new') + 100 - count(*) FILTER (WHERE url = 'old') FROM download_queue");
    raw_.Run("COMMIT");
    return std::stoi(lasted);
  }

  // Runs the unit; @p before is called before each step: 0 is the begin, 1 to kChanges the changes,
  // then the commit.
  static Outcome Run(Controller& controller, const std::function<void(int step)>& before) {
    before(0);
    Unit unit(controller);
    bool good = !unit.failed();
    for (int number = 1; number <= kChanges; ++number) {
      before(number);
      good = Change(controller, number) && good;
      EXPECT_EQ(unit.failed(), !good) << "at change " << number;
    }
    before(kChanges + 1);
    return unit.Commit();
  }
};

TEST_F(LostUnitTest, WithoutAFaultAllChangesLast) {
  Fill();
  Controller controller;
  EXPECT_EQ(Run(controller, [](int) {}), Outcome::kCommitted);
  EXPECT_EQ(Lasted(), kChanges);
}

// How a connection is cut: the request does not arrive whole, or its answer does not.
struct Cut {
  const char* name;
  void (ServerProxy::*at)(long long);
  bool request_arrives;
};

class CutUnitTest : public LostUnitTest, public testing::WithParamInterface<Cut> {};

INSTANTIATE_TEST_SUITE_P(Cuts, CutUnitTest,
                         testing::Values(Cut{"Request", &ServerProxy::BreakAfterFromClient, false},
                                         Cut{"Answer", &ServerProxy::BreakAfterFromServer, true}),
                         [](const auto& cut) { return cut.param.name; });

TEST_P(CutUnitTest, AtEachStatementNothingLastsAndAtTheCommitNobodyKnows) {
  for (int fault = 0; fault <= kChanges + 1; ++fault) {
    SCOPED_TRACE("at step " + std::to_string(fault));
    Fill();
    ServerProxy proxy;
    Controller controller;
    controller.db_session();
    const Outcome outcome = Run(controller, [&](int step) {
      if (step == fault) {
        (proxy.*GetParam().at)(1);
      }
    });
    const bool at_commit = fault > kChanges;
    EXPECT_EQ(outcome, at_commit ? Outcome::kUnknown : Outcome::kRolledBack);
    EXPECT_EQ(controller.failure().kind, Failure::Kind::kConnection);
    EXPECT_EQ(Lasted(), at_commit && GetParam().request_arrives ? kChanges : 0);
    TakeLog();
  }
}

TEST_F(LostUnitTest, EndedByTheServerBeforeEachStatementItIsRolledBack) {
  for (int fault = 1; fault <= kChanges + 1; ++fault) {
    SCOPED_TRACE("before step " + std::to_string(fault));
    Fill();
    Controller controller;
    EXPECT_EQ(Run(controller,
                  [&](int step) {
                    if (step == fault) {
                      test_support::TerminateOtherSessions(raw_);
                    }
                  }),
              Outcome::kRolledBack);
    EXPECT_EQ(controller.failure().kind, Failure::Kind::kConnection);
    EXPECT_EQ(Lasted(), 0);
    EXPECT_TRUE(Change(controller, 3)) << "the next call opens another connection";
    TakeLog();
  }
}

TEST_F(LostUnitTest, OneInsideAnotherIsRolledBackWithItAlsoWhenItsOwnCommitIsLost) {
  Fill();
  ServerProxy proxy;
  Controller controller;
  Unit outer(controller);
  EXPECT_TRUE(Change(controller, 3));
  Unit inner(controller);
  EXPECT_TRUE(Change(controller, 6));
  proxy.BreakAfterFromServer(1);
  EXPECT_EQ(inner.Commit(), Outcome::kRolledBack);
  EXPECT_TRUE(outer.failed());
  EXPECT_EQ(outer.Commit(), Outcome::kRolledBack);
  EXPECT_EQ(controller.failure().kind, Failure::Kind::kConnection);
  EXPECT_EQ(Lasted(), 0);
}

}  // namespace
}  // namespace dorvdl::control
