// Reading the rows that the acting user may reach: one shape for all kinds of records. Failures are
// left for the work's commit to tell.
#ifndef DORVDLCTL_RECORD_ROWS_H_
#define DORVDLCTL_RECORD_ROWS_H_

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

template <typename KindType>
std::vector<typename KindType::Record> ListRows(Work& work, const KindType& /*kind*/,
                                                const typename KindType::Option& option) {
  auto control = work.Use<typename KindType::Control>();
  if constexpr (KindType::kHasCriteria) {
    return control.List(option);
  } else {
    return control.ListAll(option);
  }
}

template <typename KindType>
int CountRows(Work& work, const KindType& /*kind*/, const typename KindType::Option& option) {
  auto control = work.Use<typename KindType::Control>();
  if constexpr (KindType::kHasCriteria) {
    return control.Count(option);
  } else {
    return control.Count();
  }
}

template <typename KindType>
typename KindType::Record GetRow(Work& work, const KindType& /*kind*/,
                                 const typename KindType::Key& key) {
  return work.Use<typename KindType::Control>().Get(key);
}

// The record; throws Failure when there is none.
template <typename KindType>
typename KindType::Record GetExisting(Work& work, const KindType& kind,
                                      const typename KindType::Key& key) {
  auto record = GetRow(work, kind, key);
  if (!record.IsValid()) {
    work.Commit();  // complains when the reading failed
    throw Missing(kind.noun, std::vector{key}, work.user());
  }
  return record;
}

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RECORD_ROWS_H_
