#include "work.h"

#include <dorvdl/dbquery/select_query.h>
#include <unistd.h>

#include <string>

#include "outcome.h"
#include "rendering/complaint.h"

namespace dorvdl::ctl {
namespace {

using control::Controller;
using control::Unit;

// The commands use tables of every version, so that of the newest schema file is needed, too.
constexpr int kKnownVersion = DORVDLCTL_SCHEMA_VERSION;

Unit Begin(Controller& controller) {
  try {
    return Unit(controller);
  } catch (const soci::soci_error& error) {
    throw ConnectionFailure(error.what(), geteuid() == 0);
  }
}

}  // namespace

Work::Work(const GlobalOptions& global)
    : controller_(global.user.empty() ? Controller() : Controller::ForUser(global.user)),
      unit_(Begin(controller_)) {
  RequireSchema();
}

void Work::RequireSchema() {
  constexpr char kNoSuchTable[] = "42P01";
  dorvdbquery::Session& session = controller_.db_session().session();
  int version = 0;
  dorvdbquery::SelectQuery query(session, "schema_version");
  query.SelectField<int>("coalesce(max(version), 0)", version);
  if (!query.Execute() && session.failure().sqlstate != kNoSuchTable) {
    Commit();  // complains
  }
  if (version == 0) {
    throw Failure("the database has no schema: run apply-schema");
  }
  if (version < kKnownVersion) {
    throw Failure("the schema is at version " + std::to_string(version) +
                  ", this dorvdlctl needs " + std::to_string(kKnownVersion) + ": run apply-schema");
  }
  if (version > kKnownVersion) {
    throw Failure("the database's schema is at version " + std::to_string(version) +
                  ", newer than version " + std::to_string(kKnownVersion) +
                  ", the newest that this dorvdlctl knows");
  }
}

void Work::Commit(const std::string& complaint) {
  switch (unit_.Commit()) {
    case Unit::Outcome::kCommitted:
      return;
    case Unit::Outcome::kRolledBack:
      throw DatabaseFailure(complaint, controller_.failure());
    case Unit::Outcome::kUnknown:
      throw DatabaseFailure("it is not known whether this was done", controller_.failure());
  }
}

}  // namespace dorvdl::ctl
