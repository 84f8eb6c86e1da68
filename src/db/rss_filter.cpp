#include <dorvdl/db/rss_filter.h>

#include <optional>

#include "db/conditions.h"

namespace dorvdl::db {
namespace {

using dorvdbquery::Condition;
using ListOption = control::option::rss_filter::ListOption;

// The text that @p subject denotes when it is exactly one SQL string literal; else @p subject. Some
// callers quote their sample text for SQL, since it stands where a column does.
std::string TextOf(const std::string& subject) {
  if (subject.size() < 2 || subject.front() != '\'' || subject.back() != '\'') {
    return subject;
  }
  std::string text;
  for (std::size_t i = 1; i + 1 < subject.size(); ++i) {
    if (subject[i] == '\'' && (subject[++i] != '\'' || i + 1 == subject.size())) {
      return subject;  // the literal ends before the text does
    }
    text += subject[i];
  }
  return text;
}

// Whether the database finds that `subject op pattern`; nothing when it could not tell.
std::optional<bool> Matches(const dorvdbquery::Session& session, const std::string& subject,
                            const std::string& op, const std::string& pattern) {
  dorvdbquery::SelectQuery query(session, "test_filter_view");
  query.SelectFields("one");  // of any type and value: only whether there is a row counts
  query.Where(Condition::CompareTexts(TextOf(subject), op, pattern));
  if (!query.ExecuteWithoutPreFetch()) {
    return std::nullopt;
  }
  return query.RowCount() > 0;
}

}  // namespace

template class DBOperator<record::RssFilter>;

RssFilter::RssFilter(DBSession& session) : DBOperator(session) {}

const char* RssFilter::GetTableName() { return "rss_filter"; }

const char* RssFilter::GetPrimaryKeyName() { return "id"; }

Condition RssFilter::GetCondition(const ListOption& option) const {
  return WhenSet("feed_id", "=", option.feed_id);
}

int RssFilter::Count(const ListOption& option) { return DBOperator::Count(GetCondition(option)); }

std::vector<record::RssFilter> RssFilter::List(const ListOption& option) {
  return DBOperator::List(option.common, GetCondition(option));
}

bool RssFilter::TestLike(const std::string& subject, const std::string& pattern) {
  const std::optional<bool> matches = Matches(GetSession(), subject, "ILIKE", pattern);
  if (!matches) {
    DORVDL_LOG(LOG_ERR, "Failed to execute test ilike operation");
  }
  return matches.value_or(false);
}

bool RssFilter::TestRegexp(const std::string& subject, const std::string& pattern) {
  const std::optional<bool> matches = Matches(GetSession(), subject, "~", pattern);
  if (!matches) {
    DORVDL_LOG(LOG_ERR, "Failed to execute test regexp operation");
  }
  return matches.value_or(false);
}

}  // namespace dorvdl::db
