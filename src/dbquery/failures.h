// Failures, made and copied also when memory is short: then without their message.
#ifndef SRC_DBQUERY_FAILURES_H_
#define SRC_DBQUERY_FAILURES_H_

#include <dorvdl/dbquery/failure.h>
#include <libpq-fe.h>

namespace dorvdbquery {

// What is said of a connection on which a failure was reported that the server did not send.
inline constexpr char kLostConnection[] = "the connection to the server is lost";

// The failure that @p answer tells of; null, or an answer without SQLSTATE, is a lost connection.
Failure FailureOf(const PGresult* answer) noexcept;

// One of the library's own, in its own words.
Failure OwnFailure(Failure::Kind kind, const char* message) noexcept;

// Copies @p from to @p to.
void Remember(const Failure& from, Failure& to) noexcept;

// Whether @p answer, a failed one to a COMMIT, leaves open whether it has been done: there is none,
// or it is not from the server that has the transaction (a pooler in between has lost it).
bool LeavesOutcomeOpen(const PGresult* answer);

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_FAILURES_H_
