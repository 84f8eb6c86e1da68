#include "dbquery/failure_keeper.h"

#include "dbquery/failures.h"
#include "dbquery/session_state.h"

namespace dorvdbquery {

FailureKeeper::FailureKeeper(const Session& session, Failure& first)
    : state_(session.state_), first_(first) {
  if (const auto state = state_.lock()) {
    outer_ = state->keeper;
    state->keeper = this;
  } else {
    Keep(session.failure());  // what fails without a connection has nowhere to be noted
  }
}

FailureKeeper::~FailureKeeper() {
  if (const auto state = state_.lock()) {
    state->keeper = outer_;
  }
}

void FailureKeeper::Keep(const Failure& failure) noexcept {
  if (!first_) {
    Remember(failure, first_);
  }
}

}  // namespace dorvdbquery
