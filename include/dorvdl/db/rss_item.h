/// @file
/// The table of RSS items.
#ifndef DORVDL_DB_RSS_ITEM_H_
#define DORVDL_DB_RSS_ITEM_H_

#include <dorvdl/control/option/rss_item.h>
#include <dorvdl/db/operator.h>
#include <dorvdl/record/rss_item.h>
#include <dorvdl/util/export.h>

#include <vector>

namespace dorvdl::db {

extern template class DORVDL_EXPORT DBOperator<record::RssItem>;

/// The items of the RSS feeds. They belong to feeds; there is no restriction to a user.
class DORVDL_EXPORT RssItem : public DBOperator<record::RssItem> {
 public:
  explicit RssItem(DBSession& session);

  const char* GetTableName() override;
  const char* GetPrimaryKeyName() override;

  /// The criteria of @p option in the order of its members; null when none is set. Its paging and
  /// order take no part.
  dorvdbquery::Condition GetCondition(const control::option::rss_item::ListOption& option) const;

  /// The number of matching items; -1 on failure (logged).
  int Count(const control::option::rss_item::ListOption& option);

  /// The matching items, paged and ordered by @p option; empty on failure (logged), as for a
  /// pattern that is no regular expression. A pattern that backtracks badly runs until the server's
  /// own `statement_timeout` ends it.
  std::vector<record::RssItem> List(const control::option::rss_item::ListOption& option);

  /// Deletes all items of the feed. A feed without items is a success.
  bool DeleteByFeedId(int feed_id);

  /// Marks all items of the feed as new or as seen. A feed without items is a success.
  bool UpdateAllNew(int feed_id, bool is_new);
};

}  // namespace dorvdl::db

#endif  // DORVDL_DB_RSS_ITEM_H_
