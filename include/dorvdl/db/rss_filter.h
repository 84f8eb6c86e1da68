/// @file
/// The table of RSS filters.
#ifndef DORVDL_DB_RSS_FILTER_H_
#define DORVDL_DB_RSS_FILTER_H_

#include <dorvdl/control/option/rss_filter.h>
#include <dorvdl/db/operator.h>
#include <dorvdl/record/rss_filter.h>
#include <dorvdl/util/export.h>

#include <string>
#include <vector>

namespace dorvdl::db {

extern template class DORVDL_EXPORT DBOperator<record::RssFilter>;

/// The download rules of the RSS feeds. They belong to feeds; there is no restriction to a user.
class DORVDL_EXPORT RssFilter : public DBOperator<record::RssFilter> {
 public:
  explicit RssFilter(DBSession& session);

  const char* GetTableName() override;
  const char* GetPrimaryKeyName() override;

  /// The criteria of @p option; null when none is set. Its paging and order take no part.
  dorvdbquery::Condition GetCondition(const control::option::rss_filter::ListOption& option) const;

  /// The number of matching filters; -1 on failure (logged).
  int Count(const control::option::rss_filter::ListOption& option);

  /// The matching filters, paged and ordered by @p option; empty on failure (logged).
  std::vector<record::RssFilter> List(const control::option::rss_filter::ListOption& option);

  /// Whether @p subject matches the LIKE pattern @p pattern in any case ("%" and "_" are its
  /// wildcards), as the list of items tests it. False on failure (logged).
  ///
  /// @param subject  a text, or exactly one SQL string literal ('it''s'), which stands for the text
  ///                 that it denotes. It never becomes a part of the statement.
  bool TestLike(const std::string& subject, const std::string& pattern);

  /// Whether @p subject matches the POSIX regular expression @p pattern; case counts. False on
  /// failure (logged), as for a pattern that is no regular expression. A pattern that backtracks
  /// badly runs until the server's own `statement_timeout` ends it. @p subject is as for
  /// TestLike().
  bool TestRegexp(const std::string& subject, const std::string& pattern);
};

}  // namespace dorvdl::db

#endif  // DORVDL_DB_RSS_FILTER_H_
