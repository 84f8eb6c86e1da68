#include "record/parent.h"

#include <dorvdl/control/rss_feed_control.h>
#include <dorvdl/control/task_control.h>

#include <vector>

#include "record/missing.h"

namespace dorvdl::ctl {
namespace {

template <typename Control>
bool Exists(Work& work, std::int32_t id) {
  return work.Use<Control>().Get(id).IsValid();
}

}  // namespace

const Parent& FeedParent() {
  static const Parent parent = {"feed", "feed_id", &Exists<control::RssFeedControl>};
  return parent;
}

const Parent& TaskParent() {
  static const Parent parent = {"task", "task_id", &Exists<control::TaskControl>};
  return parent;
}

void RequireParent(Work& work, const Parent& parent, std::int32_t id) {
  if (!parent.exists(work, id)) {
    work.Commit();  // complains when the reading failed
    throw Missing(parent.noun, std::vector{id}, work.user());
  }
}

void RequireOwnParent(Work& work, const Parent& parent, std::int32_t id) {
  if (!work.user().empty()) {
    RequireParent(work, parent, id);
  }
}

bool NamesParent(const Parent& parent, const google::protobuf::Message& message) {
  const auto* const field = message.GetDescriptor()->FindFieldByName(parent.column);
  return message.GetReflection()->HasField(message, field);
}

std::int32_t ParentOf(const Parent& parent, const google::protobuf::Message& message) {
  const auto* const field = message.GetDescriptor()->FindFieldByName(parent.column);
  return message.GetReflection()->GetInt32(message, field);
}

}  // namespace dorvdl::ctl
