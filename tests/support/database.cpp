#include "support/database.h"

#include <cstdlib>
#include <iostream>
#include <memory>

namespace test_support {
namespace {

using Result = std::unique_ptr<PGresult, decltype(&PQclear)>;

[[noreturn]] void Die(const std::string& why) {
  std::cerr << why << '\n';
  std::abort();
}

std::string ServerFolder() {
  const char* const folder = std::getenv("DORVDL_PRIVATE_SERVER");
  if (folder == nullptr) {
    Die("This test changes the database: run it by tools/private-server run -- PROGRAM");
  }
  return folder;
}

void ServerCommand(const std::string& command) {
  const std::string line =
      "'" DORVDL_TEST_SOURCE_DIR "/tools/private-server' " + command + " '" + ServerFolder() + "'";
  if (std::system(line.c_str()) != 0) {
    Die("failed: " + line);
  }
}

void DropNotice(void*, const PGresult*) {}

}  // namespace

RawConnection::RawConnection() {
  ServerFolder();
  connection_ = PQconnectdb("user=Tarnwick dbname=download application_name=test");
  if (PQstatus(connection_) != CONNECTION_OK) {
    Die(PQerrorMessage(connection_));
  }
  PQsetNoticeReceiver(connection_, DropNotice, nullptr);
}

RawConnection::~RawConnection() { PQfinish(connection_); }

std::vector<std::string> RawConnection::Run(const std::string& sql) {
  const Result result(PQexec(connection_, sql.c_str()), &PQclear);
  const ExecStatusType status = PQresultStatus(result.get());
  if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK) {
    Die(sql + "\n" + PQerrorMessage(connection_));
  }
  std::vector<std::string> rows;
  for (int row = 0; row < PQntuples(result.get()); ++row) {
    std::string text;
    for (int column = 0; column < PQnfields(result.get()); ++column) {
      text += column == 0 ? "" : "|";
      text += PQgetisnull(result.get(), row, column) != 0 ? "NULL"
                                                          : PQgetvalue(result.get(), row, column);
    }
    rows.push_back(text);
  }
  return rows;
}

std::string RawConnection::Value(const std::string& sql) {
  const std::vector<std::string> rows = Run(sql);
  if (rows.size() != 1) {
    Die(sql + "\ngave " + std::to_string(rows.size()) + " rows");
  }
  return rows[0];
}

DatabaseTest::DatabaseTest() {
  raw_.Run(
      "TRUNCATE download_queue, rss_feed, rss_item, rss_filter, thumbnail, task_plugin, "
      "notification,"
      " user_setting RESTART IDENTITY;"
      "SELECT lo_unlink(oid) FROM pg_largeobject_metadata");
}

void HaltServer() { ServerCommand("halt"); }

void ResumeServer() { ServerCommand("resume"); }

void TerminateOtherSessions(RawConnection& raw) {
  raw.Run(
      "SELECT pg_terminate_backend(pid, 10000) FROM pg_stat_activity "
      "WHERE datname = current_database() AND pid <> pg_backend_pid() "
      "AND backend_type = 'client backend'");
}

}  // namespace test_support
