// The log lines of statements that failed. Writing them allocates nothing.
#ifndef SRC_DBQUERY_FAILURE_LOG_H_
#define SRC_DBQUERY_FAILURE_LOG_H_

#include <libpq-fe.h>

namespace dorvdbquery {

// Logs at error level, from "dbquery/query", that the server refused @p statement: SQLSTATE, the
// server's primary message and the statement's text with its placeholders. Never the message's
// detail and never a value; the messages of class 22 (data exceptions) quote the input and are
// left out. @p result may be null when there was no answer.
void LogFailedStatement(const PGresult* result, const char* statement);

// Why nothing is sent on a session that is gone or never had a connection.
inline constexpr char kNoConnection[] = "the session has no connection";

// Logs at error level, from "dbquery/query", why a statement was not sent.
void LogUnsentStatement(const char* reason);

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_FAILURE_LOG_H_
