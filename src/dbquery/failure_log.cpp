#include "dbquery/failure_log.h"

#include <dorvdl/util/log.h>

namespace dorvdbquery {
namespace {

// The log knows failed statements under this name, whichever class they were made by.
constexpr char kLogSource[] = "dbquery/query";

}  // namespace

void LogFailedStatement(const PGresult* result, const std::string& statement) {
  const auto field = [result](int code) -> std::string {
    const char* const text = PQresultErrorField(result, code);
    return text != nullptr ? text : "";
  };
  std::string sqlstate = field(PG_DIAG_SQLSTATE);
  std::string message = field(PG_DIAG_MESSAGE_PRIMARY);
  if (sqlstate.empty()) {
    sqlstate = "08006";
    message = "the connection to the server is lost";
  } else if (sqlstate.compare(0, 2, "22") == 0) {
    message = "invalid value";
  }
  DORVDL_LOG_AS(kLogSource, LOG_ERR, "Failed to execute statement: [%s] %s: %s", sqlstate.c_str(),
                message.c_str(), statement.c_str());
}

void LogUnsentStatement(const std::string& reason) {
  DORVDL_LOG_AS(kLogSource, LOG_ERR, "Failed to execute statement: %s", reason.c_str());
}

}  // namespace dorvdbquery
