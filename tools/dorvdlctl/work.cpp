#include "work.h"

#include <dorvdl/dbquery/select_query.h>

#include <string>

#include "outcome.h"

namespace dorvdl::ctl {
namespace {

constexpr int kKnownVersion = DORVDLCTL_SCHEMA_VERSION;

void JudgeSchema(dorvdbquery::Session& session) {
  int version = 0;
  dorvdbquery::SelectQuery query(session, "schema_version");
  query.SelectField<int>("coalesce(max(version), 0)", version);
  if (!query.Execute() || version == 0) {
    throw Failure(
        "the database has no schema that can be read; apply-schema makes one (details are in the "
        "system log)");
  }
  if (version > kKnownVersion) {
    throw Failure("the database's schema is at version " + std::to_string(version) +
                  ", newer than version " + std::to_string(kKnownVersion) +
                  ", the newest that this dorvdlctl knows");
  }
}

std::shared_ptr<db::DBSession> Connect() {
  std::shared_ptr<db::DBSession> session;
  try {
    session = std::make_shared<db::DBSession>();
  } catch (const soci::soci_error& error) {
    throw Failure(error.what());
  }
  JudgeSchema(session->session());
  return session;
}

}  // namespace

Work::Work(const GlobalOptions& global)
    : session_(Connect()), user_(global.user), transaction_(session_->session()) {}

control::Controller Work::NewController() const {
  control::Controller controller(session_);
  controller.set_username(user_);
  return controller;
}

void Work::Commit(const std::string& complaint) {
  if (!transaction_.Commit()) {
    throw Failure(complaint + "; details are in the system log");
  }
}

}  // namespace dorvdl::ctl
