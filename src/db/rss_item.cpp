#include <dorvdl/db/rss_item.h>

#include "db/conditions.h"

namespace dorvdl::db {
namespace {

using dorvdbquery::Condition;
using ListOption = control::option::rss_item::ListOption;

}  // namespace

template class DBOperator<record::RssItem>;

RssItem::RssItem(DBSession& session) : DBOperator(session) {}

const char* RssItem::GetTableName() { return "rss_item"; }

const char* RssItem::GetPrimaryKeyName() { return "id"; }

Condition RssItem::GetCondition(const ListOption& option) const {
  return WhenSet("feed_id", "=", option.feed_id) && WhenSet("is_new", "=", option.is_new) &&
         WhenSet("title", "ILIKE", option.title_like) &&
         NotWhenSet("title", "ILIKE", option.title_not_like) &&
         WhenSet("title", "~", option.title_regex) &&
         NotWhenSet("title", "~", option.title_not_regex) && WhenSet("url", "=", option.url) &&
         WhenSet("date", "=", option.date);
}

int RssItem::Count(const ListOption& option) { return DBOperator::Count(GetCondition(option)); }

std::vector<record::RssItem> RssItem::List(const ListOption& option) {
  return DBOperator::List(option.common, GetCondition(option));
}

bool RssItem::DeleteByFeedId(int feed_id) {
  dorvdbquery::DeleteQuery query(GetSession(), GetTableName());
  query.Where(Within(Condition::ConditionFactory<int>("feed_id", "=", feed_id)));
  return query.Execute();
}

bool RssItem::UpdateAllNew(int feed_id, bool is_new) {
  dorvdbquery::UpdateQuery query(GetSession(), GetTableName());
  query.SetFactory<int>("is_new", is_new ? 1 : 0);
  query.Where(Within(Condition::ConditionFactory<int>("feed_id", "=", feed_id)));
  return query.Execute();
}

}  // namespace dorvdl::db
