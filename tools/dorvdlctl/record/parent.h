// What records belong to that have no owner of their own: through it they belong to a user.
#ifndef DORVDLCTL_RECORD_PARENT_H_
#define DORVDLCTL_RECORD_PARENT_H_

#include <google/protobuf/message.h>

#include <cstdint>
#include <string>

#include "work.h"

namespace dorvdl::ctl {

struct Parent {
  std::string noun;
  std::string column;  // where the records name their parent
  bool (*exists)(Work& work, std::int32_t id);
};

const Parent& FeedParent();
const Parent& TaskParent();

// Throws Failure unless the acting user has a @p parent with this id. (The library keeps records
// from the parents of others. It does not ask for one when it acts for all users, and its refusal
// names none.)
void RequireParent(Work& work, const Parent& parent, std::int32_t id);

// The same only when there is an acting user: without one, what belongs to a parent that is gone
// can be reached, too.
void RequireOwnParent(Work& work, const Parent& parent, std::int32_t id);

// Whether @p message names a parent.
bool NamesParent(const Parent& parent, const google::protobuf::Message& message);

// The id of the parent that @p message names; 0 when it names none.
std::int32_t ParentOf(const Parent& parent, const google::protobuf::Message& message);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_RECORD_PARENT_H_
