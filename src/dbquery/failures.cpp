#include "dbquery/failures.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <new>
#include <string_view>

namespace dorvdbquery {
namespace {

bool IsOfClass(std::string_view sqlstate, std::string_view code_class) {
  return sqlstate.substr(0, 2) == code_class;
}

template <std::size_t kSize>
bool IsAmong(std::string_view sqlstate, const std::string_view (&codes)[kSize]) {
  return std::find(std::begin(codes), std::end(codes), sqlstate) != std::end(codes);
}

// The server is going away, has crashed, or does not take connections yet.
constexpr std::string_view kGoingAway[] = {"57P01", "57P02", "57P03"};

// Serialization failure, deadlock, lock not available, query cancelled (also by a timeout).
constexpr std::string_view kWorthAnotherTry[] = {"40001", "40P01", "55P03", "57014"};

Failure::Kind KindOf(std::string_view sqlstate) {
  if (IsOfClass(sqlstate, "08") || IsAmong(sqlstate, kGoingAway)) {
    return Failure::Kind::kConnection;
  }
  return IsAmong(sqlstate, kWorthAnotherTry) ? Failure::Kind::kRetry : Failure::Kind::kServer;
}

}  // namespace

Failure FailureOf(const PGresult* answer) noexcept {
  const char* const sqlstate = PQresultErrorField(answer, PG_DIAG_SQLSTATE);
  if (sqlstate == nullptr) {
    return OwnFailure(Failure::Kind::kConnection, kLostConnection);
  }
  const char* const message = PQresultErrorField(answer, PG_DIAG_MESSAGE_PRIMARY);
  const bool quotes_values = IsOfClass(sqlstate, "22") || IsOfClass(sqlstate, "P0");
  Failure failure =
      OwnFailure(KindOf(sqlstate), message == nullptr || quotes_values ? "" : message);
  failure.sqlstate = sqlstate;  // five characters need no memory of their own
  return failure;
}

Failure OwnFailure(Failure::Kind kind, const char* message) noexcept {
  Failure failure;
  failure.kind = kind;
  try {
    failure.message = message;
  } catch (const std::bad_alloc&) {
  }
  return failure;
}

void Remember(const Failure& from, Failure& to) noexcept {
  if (&from != &to) {
    to = OwnFailure(from.kind, from.message.c_str());
    to.sqlstate = from.sqlstate;
  }
}

bool LeavesOutcomeOpen(const PGresult* answer) {
  const char* const sqlstate = PQresultErrorField(answer, PG_DIAG_SQLSTATE);
  if (sqlstate == nullptr || IsOfClass(sqlstate, "08") || sqlstate == std::string_view("40003")) {
    return true;
  }
  // A server that goes away says so before it commits or does not say it at all. Any other farewell
  // is not its own.
  const char* const severity = PQresultErrorField(answer, PG_DIAG_SEVERITY_NONLOCALIZED);
  const bool is_farewell = severity != nullptr && std::strcmp(severity, "ERROR") != 0;
  return is_farewell && !IsAmong(sqlstate, kGoingAway);
}

}  // namespace dorvdbquery
