// Feeds as one user sees them.
#include <dorvdl/db/rss_feed.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

#include "integration/db/table_test.h"
#include "support/sql_matchers.h"

namespace dorvdl::db {
namespace {

using control::option::rss_feed::ListOption;
using test_support::kError;
using test_support::Show;
using test_support::TakeLog;

ListOption WithUrl(const std::string& url) {
  ListOption option;
  option.url = url;
  return option;
}

class RssFeedTest : public TableTest {
 protected:
  int Insert(const std::string& user, const std::string& url = "") {
    return std::stoi(raw_.Value("INSERT INTO rss_feed (username, url) VALUES ('" + user + "', '" +
                                url + "') RETURNING id"));
  }

  // The accessor refers to the name, so it is a member of the test.
  RssFeed FeedsOf(const std::string& user) {
    user_ = user;
    return {Session(), user_};
  }

  Ids Listed(const std::string& user, const ListOption& option = {}) {
    return KeysOf(FeedsOf(user).List(option));
  }

  Ids ListedIds(const std::string& user, const ListOption& option = {}) {
    Ids ids = FeedsOf(user).ListId(option);
    std::sort(ids.begin(), ids.end());  // they come in the database's order
    return ids;
  }

  static record::RssFeed Titled(int id, const std::string& title) {
    record::RssFeed feed;
    feed.set_primary_key(id);
    feed.mutable_proto().set_title(title);
    return feed;
  }

  std::string user_;
};

TEST_F(RssFeedTest, TheUserConditionComparesInLowerCase) {
  EXPECT_TRUE(FeedsOf("").GetUserCondition().IsNull());
  EXPECT_EQ(Show(FeedsOf("Alice").GetUserCondition()), "lower(username) = $1 [$1=alice]");
}

TEST_F(RssFeedTest, TheConditionIsTheUserAndThenTheExactUrl) {
  ListOption option = WithUrl("http://X/%");
  option.common.sort_by = "url";
  option.common.limit = 1;
  EXPECT_EQ(Show(FeedsOf("bob").GetCondition(option)),
            "lower(username) = $1 AND url = $2 [$1=bob] [$2=http://X/%]");
  EXPECT_EQ(Show(FeedsOf("").GetCondition(option)), "url = $1 [$1=http://X/%]");
  EXPECT_EQ(Show(FeedsOf("bob").GetCondition({})), "lower(username) = $1 [$1=bob]");
  EXPECT_TRUE(FeedsOf("").GetCondition({}).IsNull());
}

TEST_F(RssFeedTest, AnEmptyUserNameReachesAllFeeds) {
  const int alices = Insert("alice");
  const int bobs = Insert("bob");
  RssFeed feeds = FeedsOf("");
  EXPECT_EQ(Listed(""), (Ids{alices, bobs}));
  EXPECT_EQ(ListedIds(""), (Ids{alices, bobs}));
  EXPECT_EQ(feeds.Count({}), 2);
  EXPECT_TRUE(feeds.Get(alices).IsValid());
  EXPECT_TRUE(feeds.Get(bobs).IsValid());
  EXPECT_TRUE(feeds.Update(Titled(bobs, "new")));
  EXPECT_EQ(raw_.Run("SELECT title FROM rss_feed ORDER BY id"), (Rows{"", "new"}));
  EXPECT_TRUE(feeds.Delete({alices, bobs}));
  EXPECT_EQ(raw_.Value("SELECT count(*) FROM rss_feed"), "0");
}

TEST_F(RssFeedTest, AUserReachesTheirOwnFeedsInAnyCase) {
  const int lower = Insert("alice");
  const int upper = Insert("ALICE");
  const int bobs = Insert("bob");
  RssFeed feeds = FeedsOf("Alice");
  EXPECT_EQ(Listed("Alice"), (Ids{lower, upper}));
  EXPECT_EQ(ListedIds("Alice"), (Ids{lower, upper}));
  EXPECT_EQ(feeds.Count({}), 2);
  EXPECT_TRUE(feeds.Get(upper).IsValid());
  EXPECT_TRUE(feeds.Update(Titled(lower, "mine")));
  EXPECT_EQ(raw_.Run("SELECT title FROM rss_feed ORDER BY id"), (Rows{"mine", "", ""}));
  EXPECT_TRUE(feeds.Delete({lower, upper, bobs}));
  EXPECT_EQ(raw_.Run("SELECT username FROM rss_feed"), Rows{"bob"});
}

TEST_F(RssFeedTest, AnotherUsersFeedIsNotFoundAndNotChanged) {
  const int bobs = Insert("bob");
  RssFeed feeds = FeedsOf("alice");
  EXPECT_FALSE(feeds.Get(bobs).IsValid());
  EXPECT_FALSE(feeds.Get(bobs).proto().has_username());
  EXPECT_TRUE(feeds.Update(Titled(bobs, "taken"))) << "an update that reaches no row succeeds";
  EXPECT_TRUE(feeds.Delete({bobs})) << "and so does such a deletion";
  EXPECT_EQ(raw_.Run("SELECT username, title FROM rss_feed"), Rows{"bob|"});
}

TEST_F(RssFeedTest, DeleteEarlierThanReachesTheUsersFeedsUpToTheId) {
  Insert("alice");
  const int bobs = Insert("bob");
  const int last = Insert("ALICE");
  const int later = Insert("alice");
  EXPECT_TRUE(FeedsOf("Alice").DeleteEarlierThan(last));
  EXPECT_EQ(Listed(""), (Ids{bobs, later}));
  RssFeed feeds(LostSession(), "alice");
  EXPECT_FALSE(feeds.DeleteEarlierThan(last));
  EXPECT_EQ(TakeLog(),
            Lines{Lost("DELETE FROM \"rss_feed\" WHERE id <= $1 AND lower(username) = $2")});
}

TEST_F(RssFeedTest, DeleteEarlierThanReachesAllFeedsWithoutAUserAndThroughTheOperator) {
  const int alices = Insert("alice");
  EXPECT_TRUE(FeedsOf("").DeleteEarlierThan(alices));
  EXPECT_EQ(Listed(""), Ids{});
  const int another = Insert("alice");
  RssFeed feeds = FeedsOf("bob");
  DBOperator<record::RssFeed>& table = feeds;
  EXPECT_TRUE(table.DeleteEarlierThan(another));
  EXPECT_EQ(Listed(""), Ids{});
}

TEST_F(RssFeedTest, UserNamesBeyondAsciiMatchAsTheDatabaseLowersThem) {
  const int agir = Insert("ägir");
  const int emile = Insert("ÉMILE");
  EXPECT_EQ(Listed("ÄGIR"), Ids{agir});
  EXPECT_EQ(Listed("Ägir"), Ids{agir});
  EXPECT_EQ(ListedIds("émile"), Ids{emile});
}

TEST_F(RssFeedTest, UrlsAreComparedExactly) {
  const int lower = Insert("alice", "http://x/a");
  Insert("alice", "http://x/A");
  Insert("bob", "http://x/a");
  EXPECT_EQ(Listed("alice", WithUrl("http://x/a")), Ids{lower});
  EXPECT_EQ(FeedsOf("").Count(WithUrl("http://x/a")), 2);
  EXPECT_EQ(Listed("", WithUrl("http://x/_")), Ids{});
  EXPECT_EQ(Listed("", WithUrl("' OR true --")), Ids{});
}

TEST_F(RssFeedTest, AListIsOrderedAndPaged) {
  Insert("alice", "b");
  const int second = Insert("alice", "a");
  Insert("alice", "c");
  ListOption option;
  option.common.sort_by = "url";
  option.common.limit = 1;
  EXPECT_EQ(Listed("alice", option), Ids{second});
  option.common.ascending = false;
  option.common.offset = 2;
  EXPECT_EQ(Listed("alice", option), Ids{second});
}

TEST_F(RssFeedTest, CreateStampsNoUser) {
  record::RssFeed feed;
  feed.mutable_proto().set_url("http://x");
  ASSERT_TRUE(FeedsOf("alice").Create(feed));
  EXPECT_FALSE(feed.proto().has_username());
  EXPECT_EQ(raw_.Run("SELECT id, username FROM rss_feed"),
            Rows{std::to_string(feed.primary_key()) + "|"});
  feed = {};
  feed.mutable_proto().set_username("bob");
  ASSERT_TRUE(FeedsOf("alice").Create(feed)) << "creating is not confined to the user";
  EXPECT_EQ(raw_.Value("SELECT count(*) FROM rss_feed WHERE username = 'bob'"), "1");
}

TEST_F(RssFeedTest, TheAccessorFollowsTheControllersUserName) {
  const int alices = Insert("alice");
  const int bobs = Insert("bob");
  controller_.set_username("alice");
  auto feeds = controller_.UseWithName<RssFeed>();
  EXPECT_EQ(KeysOf(feeds.List({})), Ids{alices});
  controller_.set_username("bob");
  EXPECT_EQ(KeysOf(feeds.List({})), Ids{bobs});
  EXPECT_EQ(feeds.ListId({}), Ids{bobs});
  EXPECT_FALSE(feeds.Get(alices).IsValid());
  controller_.set_username("");
  EXPECT_EQ(feeds.Count({}), 2);
}

// Converts to a name that nothing else holds.
struct Named {
  operator std::string() const { return "alice"; }
};

TEST_F(RssFeedTest, ATemporaryNameIsKept) {
  const std::string variable = "alice";
  const RssFeed of_literal(Session(), "alice");
  const RssFeed of_conversion(Session(), Named());
  const RssFeed of_constant(Session(), static_cast<const std::string&&>(variable));
  const RssFeed of_view(Session(), std::string(std::string_view(variable)));
  const RssFeed of_long(Session(), std::string(100, 'a'));
  for (const RssFeed* const feeds : {&of_literal, &of_conversion, &of_constant, &of_view}) {
    EXPECT_EQ(Show(feeds->GetUserCondition()), "lower(username) = $1 [$1=alice]");
  }
  EXPECT_EQ(Show(of_long.GetUserCondition()),
            "lower(username) = $1 [$1=" + std::string(100, 'a') + "]");
  const RssFeed of_nobody(Session(), {});
  EXPECT_TRUE(of_nobody.GetUserCondition().IsNull());
}

TEST_F(RssFeedTest, EachCopyKeepsATemporaryName) {
  for (const std::string& name : {std::string("alice"), std::string(100, 'a')}) {
    const std::string expected = "lower(username) = $1 [$1=" + name + "]";
    auto feeds = std::make_unique<RssFeed>(Session(), std::string(name));
    const RssFeed copy = *feeds;
    const RssFeed& original = *feeds;
    const RssFeed moved = std::move(*feeds);
    EXPECT_FALSE(original.GetUserCondition().IsNull()) << "nobody's feeds would be everybody's";
    feeds.reset();
    EXPECT_EQ(Show(copy.GetUserCondition()), expected);
    EXPECT_EQ(Show(moved.GetUserCondition()), expected);
  }
}

TEST_F(RssFeedTest, ACopyRefersToTheSameVariable) {
  auto feeds = std::make_unique<RssFeed>(FeedsOf("alice"));
  const RssFeed copy = *feeds;
  const RssFeed moved = std::move(*feeds);
  feeds.reset();
  user_ = "bob";
  EXPECT_EQ(Show(copy.GetUserCondition()), "lower(username) = $1 [$1=bob]");
  EXPECT_EQ(Show(moved.GetUserCondition()), "lower(username) = $1 [$1=bob]");
}

TEST_F(RssFeedTest, ListIdTakesNoUrlAndNoOrder) {
  const int first = Insert("alice", "b");
  const int second = Insert("alice", "a");
  ListOption option = WithUrl("no such");
  option.common.sort_by = "no_such_column; DROP TABLE rss_feed";
  option.common.ascending = false;
  EXPECT_EQ(ListedIds("alice", option), (Ids{first, second}));
}

TEST_F(RssFeedTest, ListIdIsPaged) {
  for (int i = 0; i < 5; ++i) {
    Insert("alice");
  }
  ListOption option;
  option.common.limit = 2;
  EXPECT_EQ(ListedIds("alice", option).size(), 2U);
  option.common.offset = 4;
  EXPECT_EQ(ListedIds("alice", option).size(), 1U);
  option.common.limit = boost::none;
  option.common.offset = 2;
  EXPECT_EQ(ListedIds("alice", option).size(), 3U);
  option.common.limit = 0;
  EXPECT_EQ(ListedIds("alice", option), Ids{});
}

TEST_F(RssFeedTest, AFailedListIdIsEmptyAndLogged) {
  ListOption option = WithUrl("ignored");
  option.common.sort_by = "url";
  option.common.limit = 2;
  option.common.offset = 1;
  user_ = "alice";
  RssFeed feeds(LostSession(), user_);
  EXPECT_EQ(feeds.ListId(option), Ids{});
  EXPECT_EQ(TakeLog(), (Lines{Lost("SELECT DISTINCT(id) FROM \"rss_feed\" WHERE lower(username) = "
                                   "$1 LIMIT $2 OFFSET $3"),
                              {kError, "db/rss_feed", "Failed to execute list operation"}}));
}

TEST_F(RssFeedTest, AUserNameWithAnEmbeddedNulReachesNothing) {
  const int id = Insert("alice");
  RssFeed feeds = FeedsOf(std::string("alice\0x", 7));
  EXPECT_EQ(feeds.ListId({}), Ids{});
  EXPECT_EQ(feeds.Count({}), -1);
  EXPECT_FALSE(feeds.Delete({id}));
  EXPECT_EQ(raw_.Value("SELECT count(*) FROM rss_feed"), "1");
}

}  // namespace
}  // namespace dorvdl::db
