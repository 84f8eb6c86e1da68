// What records belong to that have no owner of their own: through it they belong to a user.
#ifndef DORVDLCTL_RECORD_PARENT_H_
#define DORVDLCTL_RECORD_PARENT_H_

#include <dorvdl/dbquery/condition.h>
#include <google/protobuf/message.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "work.h"

namespace dorvdl::ctl {

struct Parent {
  std::string noun;
  std::string column;  // where the records name their parent
  bool (*exists)(Work& work, std::int32_t id);
  std::vector<int> (*ids)(Work& work);  // all of the acting user
};

const Parent& FeedParent();
const Parent& TaskParent();

// Throws Failure unless the acting user has a @p parent with this id.
void RequireParent(Work& work, const Parent& parent, std::int32_t id);

// The same only when there is an acting user: without one, what belongs to a parent that is gone
// can be reached, too.
void RequireOwnParent(Work& work, const Parent& parent, std::int32_t id);

// Whether @p message names a parent.
bool NamesParent(const Parent& parent, const google::protobuf::Message& message);

// The id of the parent that @p message names; 0 when it names none.
std::int32_t ParentOf(const Parent& parent, const google::protobuf::Message& message);

// Those of @p records whose parent is one of the acting user's; all of them for all users.
template <typename Record>
std::vector<Record> KeepOwn(Work& work, const Parent& parent, std::vector<Record> records) {
  if (!work.user().empty()) {
    const std::vector<int> ids = parent.ids(work);
    const std::unordered_set<int> own(ids.begin(), ids.end());
    const auto is_foreign = [&](const Record& record) {
      return own.count(ParentOf(parent, record.proto())) == 0;
    };
    records.erase(std::remove_if(records.begin(), records.end(), is_foreign), records.end());
  }
  return records;
}

// The condition that a record's parent is one of the acting user's; null for all users.
dorvdbquery::Condition BelongsToOwn(Work& work, const Parent& parent);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RECORD_PARENT_H_
