#include "control/operation.h"

#include <dorvdl/util/log.h>
#include <soci/soci.h>

#include <utility>

#include "dbquery/failures.h"
#include "dbquery/unit_transaction.h"

namespace dorvdl::control {

using dorvdbquery::Failure;

Operation::Operation(Controller& controller)
    : controller_(controller), outer_(std::exchange(controller.operation_, this)) {
  if (outer_ == nullptr && controller_.failure_) {
    controller_.failure_ = {};
  }
}

Operation::~Operation() {
  controller_.operation_ = outer_;
  if (!first_) {
    return;
  }
  if (controller_.db_session_ != nullptr) {
    dorvdbquery::UnitTransaction::FailOperations(controller_.db_session_->session(), first_);
  }
  if (outer_ != nullptr) {
    outer_->Keep(first_);
  }
  dorvdbquery::Remember(outer_ != nullptr ? outer_->first_ : first_, controller_.failure_);
}

void Operation::Keep(const Failure& failure) noexcept {
  if (!first_) {
    dorvdbquery::Remember(failure, first_);
  }
}

void Operation::Fail(Failure::Kind kind, const char* message) noexcept {
  if (!first_) {
    first_ = dorvdbquery::OwnFailure(kind, message);
  }
}

bool Operation::IsNobodys() {
  const std::string* const user = bound_user();
  if (user == nullptr || !user->empty()) {
    return false;
  }
  constexpr char kReason[] = "a user's controller has no user";
  DORVDL_LOG(LOG_ERR, "Failed to reach a table: %s", kReason);
  Fail(Failure::Kind::kRefused, kReason);
  return true;
}

db::DBSession& Operation::Open() {
  try {
    return controller_.db_session();
  } catch (const soci::soci_error& error) {
    // libpq's words about a server: no value was bound.
    Fail(Failure::Kind::kConnection, error.what());
    throw;
  }
}

const std::string* Operation::bound_user() const {
  return controller_.is_users_ ? &controller_.username_ : nullptr;
}

}  // namespace dorvdl::control
