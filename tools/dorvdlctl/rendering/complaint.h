// What is said when a run fails.
#ifndef DORVDLCTL_RENDERING_COMPLAINT_H_
#define DORVDLCTL_RENDERING_COMPLAINT_H_

#include <dorvdl/dbquery/failure.h>
#include <json/value.h>

#include <string>

#include "outcome.h"

namespace dorvdl::ctl {

// That something with the database failed: @p complaint, which may be empty, and why.
Failure DatabaseFailure(const std::string& complaint, const dorvdbquery::Failure& failure);

// That the connection cannot be opened, with libpq's @p words on it.
Failure ConnectionFailure(const std::string& words, bool is_root);

ExitStatus StatusOf(const Failure& failure);

// A failure for programs.
Json::Value FailureToJson(const Failure& failure);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RENDERING_COMPLAINT_H_
