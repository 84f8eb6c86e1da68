#include "rendering/complaint.h"

#include <boost/algorithm/string/trim.hpp>

#include "rendering/text.h"

namespace dorvdl::ctl {
namespace {

using Kind = dorvdbquery::Failure::Kind;

// A regular expression or a LIKE pattern that is none.
bool IsAboutPattern(const std::string& sqlstate) {
  return sqlstate == "2201B" || sqlstate == "22025";
}

std::string GeneralComplaint(const dorvdbquery::Failure& failure) {
  if (IsAboutPattern(failure.sqlstate)) {
    return "the pattern could not be tried: it is no valid one";
  }
  return failure.kind == Kind::kRefused ? "refused" : "the database operation failed";
}

Reason ReasonOf(Kind kind) {
  switch (kind) {
    case Kind::kRefused:
      return Reason::kRefused;
    case Kind::kConnection:
      return Reason::kUnreachable;
    case Kind::kRetry:
      return Reason::kRetry;
    case Kind::kServer:
      return Reason::kServer;
    case Kind::kLocal:
    case Kind::kNone:
      break;
  }
  return Reason::kFailed;
}

// Whether the server has answered, and turned away who connects: in any language it names the role
// then. Most servers take peers of the system by their ids, and the tool's role for root only.
bool IsTurnedAway(const std::string& words) { return words.find("Tarnwick") != std::string::npos; }

const char* WordFor(Reason reason) {
  switch (reason) {
    case Reason::kNotFound:
      return "not-found";
    case Reason::kRefused:
      return "refused";
    case Reason::kUnreachable:
      return "unreachable";
    case Reason::kUsage:
      return "usage";
    case Reason::kRetry:
      return "retry";
    case Reason::kServer:
      return "server";
    case Reason::kFailed:
      break;
  }
  return "failed";
}

}  // namespace

Failure DatabaseFailure(const std::string& complaint, const dorvdbquery::Failure& failure) {
  std::string message = complaint.empty() ? GeneralComplaint(failure) : complaint;
  if (!failure.message.empty()) {
    message += ": " + failure.message;
  }
  if (!failure.sqlstate.empty()) {
    message += " (" + failure.sqlstate + ")";
  }
  return Failure(message, ReasonOf(failure.kind), failure.sqlstate);
}

Failure ConnectionFailure(const std::string& words, bool is_root) {
  const std::string message = boost::algorithm::trim_right_copy(words);
  return Failure(!is_root && IsTurnedAway(words) ? message + "; run as root" : message,
                 Reason::kUnreachable);
}

ExitStatus StatusOf(const Failure& failure) {
  switch (failure.reason()) {
    case Reason::kNotFound:
      return kNotFound;
    case Reason::kRefused:
      return kRefused;
    case Reason::kUnreachable:
      return kUnreachable;
    case Reason::kUsage:
      return kWrongUsage;
    case Reason::kRetry:
    case Reason::kServer:
    case Reason::kFailed:
      break;
  }
  return kFailed;
}

Json::Value FailureToJson(const Failure& failure) {
  Json::Value error;
  error["kind"] = WordFor(failure.reason());
  error["message"] = failure.what();
  if (!failure.sqlstate().empty()) {
    error["sqlstate"] = failure.sqlstate();
  }
  Json::Value json;
  json["error"] = error;
  return json;
}

}  // namespace dorvdl::ctl
