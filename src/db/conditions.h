// Conditions that several tables build alike.
#ifndef SRC_DB_CONDITIONS_H_
#define SRC_DB_CONDITIONS_H_

#include <dorvdl/dbquery/condition.h>
#include <dorvdl/util/to_lower.h>
#include <dorvdl/util/wrapper.h>

#include <boost/optional.hpp>
#include <string>

namespace dorvdl::db {

// That a row's "username" is @p user, compared without regard to case; null for an empty name.
inline dorvdbquery::Condition BelongsTo(const std::string& user) {
  return user.empty() ? dorvdbquery::Condition::Null()
                      : dorvdbquery::Condition::ConditionFactory<std::string>(
                            util::Wrapper::Lower("username"), "=", util::ToLower(user));
}

// The comparison `expression op *criterion`; null when the criterion is unset.
template <typename T>
dorvdbquery::Condition WhenSet(const std::string& expression, const std::string& op,
                               const boost::optional<T>& criterion) {
  return criterion ? dorvdbquery::Condition::ConditionFactory<T>(expression, op, *criterion)
                   : dorvdbquery::Condition::Null();
}

// The negation of the comparison; null when the criterion is unset.
template <typename T>
dorvdbquery::Condition NotWhenSet(const std::string& expression, const std::string& op,
                                  const boost::optional<T>& criterion) {
  return criterion ? !WhenSet(expression, op, criterion) : dorvdbquery::Condition::Null();
}

}  // namespace dorvdl::db

#endif  // SRC_DB_CONDITIONS_H_
