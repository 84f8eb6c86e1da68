#include <dorvdl/control/unit.h>

#include "control/operation.h"
#include "dbquery/failures.h"
#include "dbquery/unit_transaction.h"

namespace dorvdl::control {

namespace {

using Ending = dorvdbquery::UnitTransaction::Outcome;

Unit::Outcome OutcomeOf(Ending ending) {
  switch (ending) {
    case Ending::kCommitted:
      return Unit::Outcome::kCommitted;
    case Ending::kUnknown:
      return Unit::Outcome::kUnknown;
    case Ending::kRolledBack:
      break;
  }
  return Unit::Outcome::kRolledBack;
}

}  // namespace

Unit::Unit(Controller& controller)
    : controller_(controller),
      session_((controller.db_session(), controller.db_session_)),
      transaction_(std::make_unique<dorvdbquery::UnitTransaction>(session_->session())) {
  ++controller_.units_;
}

Unit::~Unit() {
  transaction_.reset();
  if (!outcome_) {
    --controller_.units_;
  }
}

bool Unit::failed() const {
  return outcome_ ? *outcome_ != Outcome::kCommitted : transaction_->HasFailed();
}

Unit::Outcome Unit::Commit() {
  if (!outcome_) {
    outcome_ = OutcomeOf(transaction_->End());
    --controller_.units_;
    dorvdbquery::Remember(transaction_->failure(), failure_);
    transaction_.reset();  // one that could not begin refuses all that follows while it lives
  }
  if (*outcome_ != Outcome::kCommitted) {
    dorvdbquery::Remember(failure_, controller_.failure_);
    if (controller_.operation_ != nullptr) {
      controller_.operation_->Keep(failure_);
    }
  }
  return *outcome_;
}

}  // namespace dorvdl::control
