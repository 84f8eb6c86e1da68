// What the commands that every group on records has do.
#ifndef DORVDLCTL_RECORD_OPERATIONS_H_
#define DORVDLCTL_RECORD_OPERATIONS_H_

#include <iostream>
#include <vector>

#include "global_options.h"
#include "outcome.h"
#include "record/kind.h"
#include "record/missing.h"
#include "record/parent.h"
#include "record/print.h"
#include "record/rows.h"
#include "work.h"

namespace dorvdl::ctl {

// Lists the rows that meet @p option, or tells their number.
template <typename KindType>
void List(const KindType& kind, const typename KindType::Option& option, bool count_only,
          const GlobalOptions& global) {
  Work work(global);
  if (count_only) {
    const int count = CountRows(work, kind, option);
    work.Commit();
    std::cout << count << '\n';
    return;
  }
  const auto records = ListRows(work, kind, option);
  work.Commit();
  Print(kind, records, global);
}

template <typename KindType>
void Show(const KindType& kind, const typename KindType::Key& key, const GlobalOptions& global) {
  Work work(global);
  const auto record = GetExisting(work, kind, key);
  work.Commit();
  Print(kind, record, global);
}

// Writes the present columns of @p changes, which carries the key, to an existing row.
template <typename KindType>
void Change(const KindType& kind, const typename KindType::Key& key,
            const typename KindType::Record& changes, const GlobalOptions& global) {
  Work work(global);
  GetExisting(work, kind, key);
  // A key that names the parent does not change: there the parent may be gone.
  if (kind.parent != nullptr && kind.parent->column != kind.key &&
      NamesParent(*kind.parent, changes.proto())) {
    RequireParent(work, *kind.parent, ParentOf(*kind.parent, changes.proto()));
  }
  work.Use<typename KindType::Control>().Update(changes);
  work.Commit();
}

// Inserts @p record, which carries @p key where the kind's keys are given.
template <typename KindType>
void Insert(const KindType& kind, const typename KindType::Key& key,
            typename KindType::Record record, const GlobalOptions& global) {
  Work work(global);
  if (kind.parent != nullptr) {
    RequireParent(work, *kind.parent, ParentOf(*kind.parent, record.proto()));
  }
  if (kind.key_is_given && GetRow(work, kind, key).IsValid()) {
    throw Failure(kind.noun + " " + KeyText(key) + " exists already");
  }
  work.Use<typename KindType::Control>().Create(record);
  work.Commit();
  if (global.json) {
    Print(kind, record, global);
  } else {
    std::cout << kind.to_json(record)[kind.key].asString() << '\n';
  }
}

template <typename KindType>
void Remove(const KindType& kind, const std::vector<typename KindType::Key>& keys,
            const GlobalOptions& global) {
  using Keys = std::vector<typename KindType::Key>;
  Work work(global);
  Keys found;
  Keys missing;
  for (const auto& key : keys) {
    (GetRow(work, kind, key).IsValid() ? found : missing).push_back(key);
  }
  if (!found.empty()) {
    work.Use<typename KindType::Control>().Delete(found);
  }
  work.Commit();
  if (!missing.empty()) {
    throw Missing(kind.noun, missing, global.user);
  }
}

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RECORD_OPERATIONS_H_
