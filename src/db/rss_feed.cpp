#include <dorvdl/db/rss_feed.h>

#include <utility>

#include "db/conditions.h"
#include "db/distinct.h"

namespace dorvdl::db {
namespace {

using dorvdbquery::Condition;
using ListOption = control::option::rss_feed::ListOption;

}  // namespace

template class DBOperator<record::RssFeed>;

RssFeed::RssFeed(DBSession& session, const std::string& user) : DBOperator(session), user_(&user) {}

RssFeed::RssFeed(DBSession& session, std::string&& user)
    : DBOperator(session), kept_user_(std::move(user)) {}

const char* RssFeed::GetTableName() { return "rss_feed"; }

const char* RssFeed::GetPrimaryKeyName() { return "id"; }

Condition RssFeed::GetUserCondition() const { return BelongsTo(user()); }

Condition RssFeed::GetCondition(const ListOption& option) const {
  return GetUserCondition() && WhenSet("url", "=", option.url);
}

int RssFeed::Count(const ListOption& option) { return DBOperator::Count(GetCondition(option)); }

std::vector<record::RssFeed> RssFeed::List(const ListOption& option) {
  return DBOperator::List(option.common, GetCondition(option));
}

record::RssFeed RssFeed::Get(int id) { return DBOperator::Get(id, GetUserCondition()); }

bool RssFeed::Update(const record::RssFeed& feed) {
  return DBOperator::Update(feed, GetUserCondition());
}

bool RssFeed::Delete(const std::vector<int>& ids) {
  return DBOperator::Delete(ids, GetUserCondition());
}

bool RssFeed::DeleteEarlierThan(int id) { return DeleteUpTo(id, GetUserCondition()); }

std::vector<int> RssFeed::ListId(const ListOption& option) {
  std::vector<int> ids;
  dorvdbquery::SelectQuery query(GetSession(), GetTableName());
  ApplyPaging(option.common, query);
  // Neither the criteria nor the order of the option, which differs from List() and Count() on
  // purpose: keep it so.
  query.Where(GetUserCondition());
  if (!ReadDistinct(query, GetPrimaryKeyName(), ids)) {
    DORVDL_LOG(LOG_ERR, "Failed to execute list operation");
  }
  return ids;
}

}  // namespace dorvdl::db
