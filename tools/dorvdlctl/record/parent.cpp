#include "record/parent.h"

#include <dorvdl/db/download_queue.h>
#include <dorvdl/db/rss_feed.h>

#include "record/missing.h"

namespace dorvdl::ctl {
namespace {

using dorvdbquery::Condition;

template <typename Accessor>
bool Exists(Work& work, std::int32_t id) {
  return work.Use<Accessor>().Get(id).IsValid();
}

std::vector<int> FeedIds(Work& work) { return work.Use<db::RssFeed>().ListId({}); }

std::vector<int> TaskIds(Work& work) {
  auto tasks = work.Use<db::DownloadQueue>();
  int id = 0;
  dorvdbquery::SelectQuery query(work.session(), tasks.GetTableName());
  query.SelectField<int>(tasks.GetPrimaryKeyName(), id);
  query.Where(tasks.GetUserCondition());
  std::vector<int> ids;
  query.ExecuteWithoutPreFetch();  // a failure leaves no rows, and makes the commit fail
  while (query.Fetch()) {
    ids.push_back(id);
  }
  return ids;
}

}  // namespace

const Parent& FeedParent() {
  static const Parent parent = {"feed", "feed_id", &Exists<db::RssFeed>, &FeedIds};
  return parent;
}

const Parent& TaskParent() {
  static const Parent parent = {"task", "task_id", &Exists<db::DownloadQueue>, &TaskIds};
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

Condition BelongsToOwn(Work& work, const Parent& parent) {
  return work.user().empty() ? Condition::Null()
                             : Condition::In<int>(parent.column, parent.ids(work));
}

}  // namespace dorvdl::ctl
