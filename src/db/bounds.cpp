#include <dorvdl/db/bounds.h>

#include "db/conditions.h"

namespace dorvdl::db {
namespace {

using dorvdbquery::Condition;
using dorvdbquery::Parameter;

constexpr char kOtherOwner[] = "the row would belong to another user";
constexpr char kOtherKey[] = "the key of a user's row is the database's to give";
constexpr char kWithheld[] = "a column of the row is not for its user to write";
constexpr char kNoOwnParent[] = "what the row would belong to is not the user's";

Condition RowsOf(const record::Ownership& ownership, const std::string& user) {
  return ownership.HasParent() ? Condition::InRows(ownership.column, ownership.parent_table,
                                                   ownership.parent_key, BelongsTo(user))
                               : Condition::Null();
}

}  // namespace

Bounds::Bounds(const record::Ownership& ownership, const std::string& user)
    : ownership_(ownership), user_(user), rows_(RowsOf(ownership, user)) {}

Bounds::~Bounds() = default;

void Bounds::Apply(dorvdbquery::InsertQuery& query) const {
  if (!KeyIsParent() && query.Find(ownership_.key) != nullptr) {
    query.Refuse(kOtherKey);
  }
  const Parameter* const withheld = query.Find(ownership_.withheld);
  if (withheld != nullptr && *withheld != "0" && *withheld != granted_) {
    query.Refuse(kWithheld);
  }
  const Parameter* const value = query.Find(ownership_.column);
  if (ownership_.HasParent()) {
    DemandOwnParent(query, value == nullptr ? std::nullopt : *value);
  } else if (value == nullptr) {
    query.Add(ownership_.column, user_);
  } else if (!IsTheUser(*value)) {
    query.Refuse(kOtherOwner);
  }
}

void Bounds::Apply(dorvdbquery::UpdateQuery& query, int key) const {
  const Parameter* const new_key = query.Find(ownership_.key);
  if (!KeyIsParent() && new_key != nullptr && *new_key != std::to_string(key)) {
    // What still refers to a row that is gone would come to be the user's.
    query.Refuse(kOtherKey);
  }
  const Parameter* const withheld = query.Find(ownership_.withheld);
  if (withheld != nullptr && *withheld != granted_) {
    query.Refuse(kWithheld);
  }
  const Parameter* const value = query.Find(ownership_.column);
  if (value == nullptr) {
    return;
  }
  if (ownership_.HasParent()) {
    DemandOwnParent(query, *value);
  } else if (!IsTheUser(*value)) {
    query.Refuse(kOtherOwner);
  } else {
    query.Drop(ownership_.column);  // as it is written there, the name stays
  }
}

void Bounds::TellOwner(google::protobuf::Message& message) const {
  const auto* const field = message.GetDescriptor()->FindFieldByName(ownership_.column);
  const auto* const reflection = message.GetReflection();
  if (!ownership_.HasParent() && !reflection->HasField(message, field)) {
    reflection->SetString(&message, field, user_);
  }
}

bool Bounds::IsTheUser(const Parameter& name) const {
  return name && util::ToLower(*name) == util::ToLower(user_);
}

template <typename Query>
void Bounds::DemandOwnParent(Query& query, const Parameter& parent) const {
  if (!parent) {
    query.Refuse(kNoOwnParent);
    return;
  }
  const auto is_parent =
      Condition::ConditionFactory<std::string>(ownership_.parent_key, "=", *parent);
  query.OnlyWhen(Condition::HasRow(ownership_.parent_table, is_parent && BelongsTo(user_)),
                 kNoOwnParent);
}

}  // namespace dorvdl::db
