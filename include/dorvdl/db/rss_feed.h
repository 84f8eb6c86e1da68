/// @file
/// The table of RSS feeds.
#ifndef DORVDL_DB_RSS_FEED_H_
#define DORVDL_DB_RSS_FEED_H_

#include <dorvdl/control/option/rss_feed.h>
#include <dorvdl/db/operator.h>
#include <dorvdl/record/rss_feed.h>
#include <dorvdl/util/export.h>

#include <string>
#include <vector>

namespace dorvdl::db {

extern template class DORVDL_EXPORT DBOperator<record::RssFeed>;

/// The RSS feeds as one user sees them: every operation but Create() reaches only the feeds of that
/// user, whose name is compared without regard to case. With an empty user name it reaches the
/// feeds of all users. Create() inserts the feed as it is: its owner is its own `username`.
class DORVDL_EXPORT RssFeed : public DBOperator<record::RssFeed> {
 public:
  /// @param user  a variable is not copied: it must outlive this object, and a later change to it
  ///              changes whose feeds every later operation reaches. A temporary is kept by this
  ///              object, and by each copy of it.
  RssFeed(DBSession& session, const std::string& user);
  RssFeed(DBSession& session, std::string&& user);
  RssFeed(DBSession& session, const std::string&& user) : RssFeed(session, std::string(user)) {}

  const char* GetTableName() override;
  const char* GetPrimaryKeyName() override;

  /// The condition that a row belongs to the user; null for an empty user name.
  dorvdbquery::Condition GetUserCondition() const;

  /// GetUserCondition() and the criteria of @p option. Its paging and order take no part.
  dorvdbquery::Condition GetCondition(const control::option::rss_feed::ListOption& option) const;

  /// The number of matching feeds; -1 on failure (logged).
  int Count(const control::option::rss_feed::ListOption& option);

  /// The matching feeds, paged and ordered by @p option; empty on failure (logged).
  std::vector<record::RssFeed> List(const control::option::rss_feed::ListOption& option);

  /// The feed; not valid when this user has none with this id.
  record::RssFeed Get(int id);

  /// Writes the present fields of @p feed to the feed with its id. True also when this user has
  /// none with this id, and nothing is written then; false when only the key is present.
  bool Update(const record::RssFeed& feed);

  /// Deletes this user's feeds with these ids. Reaching none is a success.
  bool Delete(const std::vector<int>& ids);

  /// Deletes this user's feeds whose id is @p id or less. (Called through the operator, it deletes
  /// everybody's.) Reaching none is a success.
  bool DeleteEarlierThan(int id);

  /// The ids of this user's feeds, in the database's order, paged by @p option. Its `url` and its
  /// order take no part. Empty on failure (logged).
  std::vector<int> ListId(const control::option::rss_feed::ListOption& option);

 private:
  const std::string& user() const { return user_ != nullptr ? *user_ : kept_user_; }

  const std::string* const user_ = nullptr;  // null when the name is kept
  const std::string kept_user_;  // constant: without its name a moved-from object would reach all
};

}  // namespace dorvdl::db

#endif  // DORVDL_DB_RSS_FEED_H_
