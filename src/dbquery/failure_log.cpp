#include "dbquery/failure_log.h"

#include <dorvdl/util/log.h>

#include <cstring>

#include "dbquery/failures.h"

namespace dorvdbquery {
namespace {

// The log knows failed statements under this name, whichever class they were made by.
constexpr char kLogSource[] = "dbquery/query";

}  // namespace

void LogFailedStatement(const PGresult* result, const char* statement) {
  const char* sqlstate = PQresultErrorField(result, PG_DIAG_SQLSTATE);
  const char* message = PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY);
  if (sqlstate == nullptr) {
    sqlstate = "08006";
    message = kLostConnection;
  } else if (std::strncmp(sqlstate, "22", 2) == 0) {
    message = "invalid value";
  }
  DORVDL_LOG_AS(kLogSource, LOG_ERR, "Failed to execute statement: [%s] %s: %s", sqlstate,
                message != nullptr ? message : "", statement);
}

void LogUnsentStatement(const char* reason) {
  DORVDL_LOG_AS(kLogSource, LOG_ERR, "Failed to execute statement: %s", reason);
}

}  // namespace dorvdbquery
