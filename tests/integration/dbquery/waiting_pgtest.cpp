// Limits on waiting for a server that nobody answers for.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <map>

#include "integration/dbquery/query_test.h"
#include "support/environment.h"
#include "support/temporary_folder.h"

namespace dorvdbquery {
namespace {

using test_support::Environment;
using Settings = std::map<std::string, std::string>;

class WaitingTest : public QueryTest {
 protected:
  // The limits that a new connection is under, as libpq has them.
  static Settings Limits() {
    Settings limits;
    const Session session = Connect();
    PQconninfoOption* const options = PQconninfo(test_support::ConnectionOf(session));
    for (const PQconninfoOption* option = options; option->keyword != nullptr; ++option) {
      const std::string name = option->keyword;
      if (name == "connect_timeout" || name == "tcp_user_timeout" ||
          name.rfind("keepalives", 0) == 0) {
        limits[name] = option->val != nullptr ? option->val : "";
      }
    }
    PQconninfoFree(options);
    return limits;
  }

  const Settings defaults_{{"connect_timeout", "10"}, {"keepalives", "1"},
                           {"keepalives_idle", "30"}, {"keepalives_interval", "10"},
                           {"keepalives_count", "3"}, {"tcp_user_timeout", "60000"}};
  test_support::TemporaryFolder folder_;
};

TEST_F(WaitingTest, TheLibraryHasLimitsOfItsOwn) {
  Settings limits = Limits();
  limits["keepalives"] = "1";  // which is libpq's own default, told or not
  EXPECT_EQ(limits, defaults_);
}

TEST_F(WaitingTest, TheEnvironmentDecidesWhatItSets) {
  const Environment timeout("PGCONNECT_TIMEOUT", "7");
  EXPECT_EQ(Limits()["connect_timeout"], "7");
  EXPECT_EQ(Limits()["tcp_user_timeout"], "60000");
}

TEST_F(WaitingTest, ALimitThatTheEnvironmentTakesAwayStaysAway) {
  const Environment timeout("PGCONNECT_TIMEOUT", "0");
  EXPECT_EQ(Limits()["connect_timeout"], "0");
}

TEST_F(WaitingTest, TheServiceFileDecidesWhatItSets) {
  const Environment file("PGSERVICEFILE",
                         folder_.Write("services",
                                       "[nas]\ntcp_user_timeout=1500\nkeepalives_idle=5\n"
                                       "keepalives_interval=2\nkeepalives_count=9\n"));
  const Environment service("PGSERVICE", "nas");
  const Settings limits = Limits();
  EXPECT_EQ(limits.at("connect_timeout"), "10");
  EXPECT_EQ(limits.at("tcp_user_timeout"), "1500");
  EXPECT_EQ(limits.at("keepalives_idle"), "5");
  EXPECT_EQ(limits.at("keepalives_interval"), "2");
  EXPECT_EQ(limits.at("keepalives_count"), "9");
}

// Something listens where the server should, and never says a word.
TEST_F(WaitingTest, OpeningEndsByItselfWhenNobodyAnswers) {
  const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = folder_.Path(".s.PGSQL.") + std::getenv("PGPORT");
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(listen(listener, 5), 0);
  const Environment host("PGHOST", folder_.Path("."));
  alarm(60);
  try {
    Connect();
    ADD_FAILURE() << "a connection to nobody was opened";
  } catch (const soci::soci_error& error) {
    EXPECT_NE(std::string(error.what()).find("timeout expired"), std::string::npos) << error.what();
  }
  alarm(0);
  close(listener);
}

}  // namespace
}  // namespace dorvdbquery
