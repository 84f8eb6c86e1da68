// The operator's transfer of files: an import reads as root, an export writes as the caller.
#include <dorvdl/control/controller.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>

#include "integration/db/own_records.h"
#include "support/child.h"
#include "support/database.h"
#include "support/identity.h"
#include "support/syslog_capture.h"
#include "support/temporary_folder.h"

namespace dorvdl::db {
namespace {

using test_support::BecomeIds;
using test_support::CurrentIds;
using test_support::kAuthCritical;
using test_support::kAuthError;
using test_support::kError;
using test_support::LogLine;
using test_support::RefuseIdCall;
using test_support::RunInChild;
using test_support::TakeIdCalls;
using test_support::TakeLog;
using Calls = std::vector<std::string>;
using Lines = std::vector<LogLine>;

constexpr char kIds[] = "uids 0 1000 2000, gids 0 1000 2000";
const Calls kSwitches{"setresuid(-1, 0, -1)", "setresgid(-1, 0, -1)",
                      "setresuid(-1, 0, -1)",  // to root
                      "setresgid(-1, 1000, -1)", "setresuid(-1, 1000, -1)"};
const LogLine kNotSwitched{kError, "db/operator", "Failed to set privilege"};

class LargeObjectElevationTest : public test_support::DatabaseTest {
 protected:
  LargeObjectElevationTest() {
    // Root's own file, in a folder that everyone may enter.
    folder_.Write("private", "content");
    chmod(folder_.Path("private").c_str(), 0600);
    chmod(folder_.Path("").c_str(), 0755);
  }

  // Runs the body in a child that is not root, with a connection.
  void RunAsUser(const std::function<void()>& body) {
    RunInChild([&] {
      BecomeIds({0, 1000, 2000}, {0, 1000, 2000});
      controller_.db_session();
      TakeIdCalls();
      TakeLog();
      body();
      return std::string();
    });
  }

  Notes<Note> Table() { return Notes<Note>(controller_.db_session()); }

  std::string StoredObjects() { return raw_.Value("SELECT count(*) FROM pg_largeobject_metadata"); }

  control::Controller controller_;
  test_support::TemporaryFolder folder_;
};

TEST_F(LargeObjectElevationTest, AnImportReadsWhatOnlyRootMayRead) {
  RunAsUser([this] {
    EXPECT_FALSE(std::ifstream(folder_.Path("private")).is_open());
    EXPECT_NE(Table().LoImport(folder_.Path("private")), 0U);
    EXPECT_EQ(TakeIdCalls(), kSwitches);
    EXPECT_EQ(CurrentIds(), kIds);
    EXPECT_EQ(TakeLog(), Lines{}) << "the guard logs failures only";
  });
  EXPECT_EQ(StoredObjects(), "1");
}

TEST_F(LargeObjectElevationTest, AFailedImportGivesTheIdsBack) {
  folder_.MakeFifo("fifo");
  RunAsUser([this] {
    for (const char* const name : {"missing", "fifo", ""}) {
      EXPECT_EQ(Table().LoImport(folder_.Path(name)), 0U);
      EXPECT_EQ(TakeIdCalls(), kSwitches);
      EXPECT_EQ(CurrentIds(), kIds);
      EXPECT_EQ(TakeLog().size(), 1U);
    }
  });
}

TEST_F(LargeObjectElevationTest, AnImportOnALostConnectionGivesTheIdsBack) {
  RunAsUser([this] {
    Notes<Note> table = Table();
    test_support::TerminateOtherSessions(raw_);
    EXPECT_EQ(table.LoImport(folder_.Path("private")), 0U);
    EXPECT_EQ(TakeIdCalls(), kSwitches);
    EXPECT_EQ(CurrentIds(), kIds);
  });
}

TEST_F(LargeObjectElevationTest, ARefusedSwitchStopsTheImport) {
  const std::vector<Calls> made{
      {"setresuid(-1, 0, -1)"},
      {"setresuid(-1, 0, -1)", "setresgid(-1, 0, -1)", "setresuid(-1, 1000, -1)"},
      {"setresuid(-1, 0, -1)", "setresgid(-1, 0, -1)", "setresuid(-1, 0, -1)",
       "setresgid(-1, 1000, -1)", "setresuid(-1, 1000, -1)"}};
  for (std::size_t refused = 1; refused <= made.size(); ++refused) {
    RunAsUser([&] {
      RefuseIdCall(static_cast<int>(refused), EAGAIN);
      auto table = Table();
      EXPECT_EQ(table.LoImport(folder_.Path("private")), 0U);
      EXPECT_EQ(table.GetSession().failure().kind, dorvdbquery::Failure::Kind::kLocal);
      EXPECT_EQ(TakeIdCalls(), made[refused - 1]) << refused;
      EXPECT_EQ(TakeLog(),
                (Lines{{kAuthError, "db/operator", "ERROR: IF_RUN_AS(0, 0)"}, kNotSwitched}));
      EXPECT_EQ(CurrentIds(), kIds);
    });
  }
  EXPECT_EQ(StoredObjects(), "0");
}

TEST_F(LargeObjectElevationTest, AFailedRestoreIsLoggedAndTheImportStands) {
  RunAsUser([this] {
    RefuseIdCall(4, EAGAIN);
    EXPECT_NE(Table().LoImport(folder_.Path("private")), 0U);
    EXPECT_EQ(TakeLog(), (Lines{{kAuthCritical, "db/operator", "ERROR: ~IF_RUN_AS(1000, 1000)"}}));
  });
  EXPECT_EQ(StoredObjects(), "1");
}

TEST_F(LargeObjectElevationTest, AnExportWritesWithTheCallersIds) {
  const int oid = std::stoi(raw_.Value("SELECT lo_from_bytea(0, 'content')"));
  ASSERT_EQ(mkdir(folder_.Path("mine").c_str(), 0700), 0);
  ASSERT_EQ(chown(folder_.Path("mine").c_str(), 1000, 1000), 0);
  RunAsUser([&] {
    EXPECT_TRUE(Table().LoExport(oid, folder_.Path("mine/out")));
    EXPECT_EQ(TakeLog(), Lines{});
    EXPECT_FALSE(Table().LoExport(oid, folder_.Path("out")));
    EXPECT_FALSE(Table().LoExport(oid, folder_.Path("private")));
    EXPECT_EQ(TakeLog().size(), 2U);
    EXPECT_EQ(TakeIdCalls(), Calls{});
  });
  struct stat status {};
  ASSERT_EQ(stat(folder_.Path("mine/out").c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 1000U);
  EXPECT_EQ(status.st_gid, 1000U);
  EXPECT_EQ(folder_.Read("mine/out"), "content");
  EXPECT_EQ(folder_.Read("private"), "content");
  EXPECT_FALSE(folder_.Exists("out"));
}

TEST_F(LargeObjectElevationTest, AnExportTakesTheLow32BitsOfASignedId) {
  raw_.Run("SELECT lo_from_bytea(4294967294, 'high')");
  EXPECT_TRUE(Table().LoExport(-2, folder_.Path("out")));
  EXPECT_EQ(folder_.Read("out"), "high");
  EXPECT_FALSE(Table().LoExport(0, folder_.Path("none")));
  EXPECT_FALSE(folder_.Exists("none"));
}

TEST_F(LargeObjectElevationTest, OrdinaryOperationsSwitchNothing) {
  raw_.Run(
      "DROP TABLE IF EXISTS note; CREATE TABLE note (id integer GENERATED BY DEFAULT AS "
      "IDENTITY PRIMARY KEY, text text, size bigint)");
  RunAsUser([this] {
    Note note(std::nullopt, "x");
    EXPECT_TRUE(Table().Create(note));
    EXPECT_TRUE(Table().Get(note.primary_key(), Notes<Note>::Condition::Null()).IsValid());
    EXPECT_TRUE(Table().Delete({1}, Notes<Note>::Condition::Null()));
    EXPECT_EQ(TakeIdCalls(), Calls{});
    EXPECT_EQ(TakeLog(), Lines{});
  });
}

}  // namespace
}  // namespace dorvdl::db
