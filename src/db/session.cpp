#include <dorv/credentials.h>
#include <dorvdl/db/session.h>
#include <dorvdl/util/privilege.h>

#include <utility>

namespace dorvdl::db {
namespace {

constexpr char kRole[] = "Tarnwick";
constexpr char kDatabase[] = "download";

}  // namespace

DBSession::DBSession() {
  ENTERCriticalSection;
  // Also when the switch to root has failed: the server, not this constructor, decides who may
  // connect.
  InitCredentialsByName(kRole, 1);
  try {
    session_ =
        std::make_shared<dorvdbquery::Session>(dorvdbquery::Session::PGSQL(kRole, kDatabase));
  } catch (...) {
    LEAVECriticalSection;
    throw;
  }
  LEAVECriticalSection;
}

DBSession::DBSession(std::shared_ptr<dorvdbquery::Session> session)
    : session_(std::move(session)) {}

DBSession::~DBSession() = default;

}  // namespace dorvdl::db
