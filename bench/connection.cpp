#include "connection.h"

#include <soci/postgresql/soci-postgresql.h>
#include <soci/soci.h>

#include <cstdlib>
#include <iostream>

namespace bench {

void Die(const std::string& why) {
  std::cerr << "controls_bench: " << why << '\n';
  std::exit(1);
}

void Check(bool good) {
  if (!good) {
    Die("an operation failed");
  }
}

Result Checked(PGconn* connection, PGresult* answer) {
  const ExecStatusType status = PQresultStatus(answer);
  if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK) {
    Die(PQerrorMessage(connection));
  }
  return {answer, &PQclear};
}

Connection::Connection()
    : session_(std::make_shared<dorvdl::db::DBSession>()),
      connection_(static_cast<soci::postgresql_session_backend*>(soci().get_backend())->conn_) {}

std::string Connection::Options() const {
  const std::unique_ptr<PQconninfoOption, decltype(&PQconninfoFree)> options(
      PQconninfo(connection_), &PQconninfoFree);
  std::string text;
  for (const PQconninfoOption* option = options.get(); option->keyword != nullptr; ++option) {
    if (option->val != nullptr && *option->val != '\0') {
      text.append(option->keyword).append("='").append(option->val).append("' ");
    }
  }
  return text;
}

void Connection::Trace(std::FILE* file) {
  if (file != nullptr) {
    PQtrace(connection_, file);
  } else {
    PQuntrace(connection_);
  }
}

std::vector<double> Connection::Run(const std::string& statements) {
  const Result result = Checked(connection_, PQexec(connection_, statements.c_str()));
  std::vector<double> numbers;
  for (int column = 0; PQntuples(result.get()) > 0 && column < PQnfields(result.get()); ++column) {
    numbers.push_back(std::atof(PQgetvalue(result.get(), 0, column)));
  }
  return numbers;
}

}  // namespace bench
