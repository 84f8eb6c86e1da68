// The rows of a table that the acting user may reach.
#ifndef DORVDLCTL_RECORD_ROWS_H_
#define DORVDLCTL_RECORD_ROWS_H_

#include <dorvdl/dbquery/condition.h>

#include <type_traits>
#include <vector>

#include "record/kind.h"
#include "record/missing.h"
#include "work.h"

namespace dorvdl::ctl {

inline control::option::common::ListOption& CommonPart(
    control::option::common::ListOption& option) {
  return option;
}

template <typename Option>
control::option::common::ListOption& CommonPart(Option& option) {
  return option.common;
}

// One shape for all tables: those of users restrict themselves, and the others are restricted to
// what belongs to the user's feeds or tasks. Failures are left for the work's commit to tell.
template <typename KindType>
class Rows {
 public:
  using Accessor = typename KindType::Accessor;
  using Key = typename KindType::Key;
  using Option = typename KindType::Option;
  using Record = typename KindType::Record;

  Rows(Work& work, const KindType& kind)
      : work_(work), kind_(kind), table_(work.Use<Accessor>()), scope_(ScopeOf(work, kind)) {}

  Record Get(const Key& key) {
    if constexpr (kActsForUser<Accessor>) {
      return table_.Get(key);
    } else {
      return generic().Get(key, scope_);
    }
  }

  // The record; throws Failure when there is none.
  Record GetExisting(const Key& key) {
    Record record = Get(key);
    if (!record.IsValid()) {
      work_.Commit();  // complains when the reading failed
      throw Missing(kind_.noun, std::vector<Key>{key}, work_.user());
    }
    return record;
  }

  std::vector<Record> List(Option& option) {
    if constexpr (kActsForUser<Accessor>) {
      return table_.List(option);
    } else {
      return generic().List(CommonPart(option), ConditionOf(option) && scope_);
    }
  }

  int Count(const Option& option) {
    if constexpr (kActsForUser<Accessor>) {
      return table_.Count(option);
    } else {
      return generic().Count(ConditionOf(option) && scope_);
    }
  }

  void Create(Record& record) { table_.Create(record); }

  void Update(const Record& changes) {
    if constexpr (kActsForUser<Accessor>) {
      table_.Update(changes);
    } else {
      generic().Update(changes, scope_);
    }
  }

  void Delete(const std::vector<Key>& keys) {
    if constexpr (kActsForUser<Accessor>) {
      table_.Delete(keys);
    } else {
      generic().Delete(keys, scope_);
    }
  }

 private:
  using Condition = dorvdbquery::Condition;

  // The operations that take a condition, which the accessor may hide.
  db::DBOperator<Record>& generic() { return table_; }

  static Condition ScopeOf(Work& work, const KindType& kind) {
    return kind.parent == nullptr ? Condition::Null() : BelongsToOwn(work, *kind.parent);
  }

  Condition ConditionOf(const Option& option) {
    if constexpr (std::is_same_v<Option, control::option::common::ListOption>) {
      return Condition::Null();
    } else {
      return table_.GetCondition(option);
    }
  }

  Work& work_;
  const KindType& kind_;
  Accessor table_;
  const Condition scope_;
};

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RECORD_ROWS_H_
