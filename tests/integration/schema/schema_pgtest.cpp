// The schema that the records are made for, to the last column.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/database.h"

namespace {

using Rows = std::vector<std::string>;

// What is said of a column: type, whether it may be NULL, default, whether it counts by itself.
const std::map<std::string, std::string> kKinds{
    {"counter", "integer|NO|NULL|BY DEFAULT"},
    {"key", "integer|NO|NULL|NULL"},
    {"name", "text|NO|NULL|NULL"},
    {"integer", "integer|YES|0|NULL"},
    {"bigint", "bigint|YES|0|NULL"},
    {"text", "text|YES|''::text|NULL"},
    {"json", "text|YES|NULL|NULL"},
    {"of-view-integer", "integer|YES|NULL|NULL"},
    {"of-view-bigint", "bigint|YES|NULL|NULL"},
    {"of-view-text", "text|YES|NULL|NULL"},
};

// A table or view, and its columns in their order, each after its kind.
struct Relation {
  const char* name;
  const char* columns;
};

const Relation kRelations[] = {
    {"download_queue",
     "counter task_id text username integer pid text url text filename integer status "
     "integer created_time integer started_time bigint total_size bigint current_size "
     "integer current_rate integer total_peers integer connected_peers integer total_pieces "
     "integer downloaded_pieces integer available_pieces integer upload_rate bigint total_upload "
     "integer seeding_ratio integer seeding_interval integer seeding_elapsed integer task_flags "
     "integer seeders integer leechers text destination text unzip_password integer unzip_progress "
     "text given_filename text referer text cookie_path integer thumbnail_status json extra_data "
     "integer completed_time integer waiting_until_time integer file_oid"},
    {"rss_feed",
     "counter id text username text title text url integer last_update integer is_updating"},
    {"rss_item",
     "counter id integer feed_id text title text url text link integer date bigint size "
     "integer is_new"},
    {"rss_filter",
     "counter id integer feed_id text name text match text not_match text destination "
     "integer enable integer is_regex"},
    {"thumbnail",
     "counter thumbnail_id integer task_id integer file_index integer thumbnail_index "
     "integer thumbnail_second text thumbnail_filename bigint create_time"},
    {"task_plugin",
     "key task_id json process text current_plugin text current_type integer current_status "
     "json attributes json response json result integer pid"},
    {"notification", "counter id integer task_id text type bigint create_time"},
    {"user_setting",
     "name username integer uid text share_folder integer user_disabled "
     "integer delete_watchtorrent text watchfolder integer enable_watchffolder"},
    {"test_filter_view", "of-view-integer one"},
    {"notification_view",
     "of-view-integer id of-view-integer task_id of-view-text type of-view-bigint create_time"},
};

class SchemaTest : public test_support::DatabaseTest {};

TEST_F(SchemaTest, EveryTableAndViewHasExactlyItsColumns) {
  for (const Relation& relation : kRelations) {
    Rows expected;
    std::istringstream columns(relation.columns);
    std::string kind, column;
    while (columns >> kind >> column) {
      expected.push_back(column + "|" + kKinds.at(kind));
    }
    EXPECT_EQ(raw_.Run("SELECT column_name, data_type, is_nullable, column_default, "
                       "identity_generation FROM information_schema.columns WHERE table_schema = "
                       "'public' AND table_name = '" +
                       std::string(relation.name) + "' ORDER BY ordinal_position"),
              expected)
        << relation.name;
  }
}

TEST_F(SchemaTest, ThereIsNothingBesideThem) {
  Rows expected{"schema_version"};
  for (const Relation& relation : kRelations) {
    expected.emplace_back(relation.name);
  }
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(raw_.Run("SELECT relname FROM pg_class WHERE relnamespace = 'public'::regnamespace "
                     "AND relkind IN ('r', 'v', 'm', 'p', 'f') ORDER BY relname COLLATE \"C\""),
            expected);
}

// Every record can be created, updated and deleted on its own.
TEST_F(SchemaTest, KeysAreTheOnlyConstraints) {
  EXPECT_EQ(raw_.Run("SELECT conrelid::regclass, pg_get_constraintdef(oid) FROM pg_constraint "
                     "WHERE connamespace = 'public'::regnamespace AND "
                     "conrelid <> 'schema_version'::regclass "
                     "ORDER BY conrelid::regclass::text COLLATE \"C\""),
            (Rows{"download_queue|PRIMARY KEY (task_id)", "notification|PRIMARY KEY (id)",
                  "rss_feed|PRIMARY KEY (id)", "rss_filter|PRIMARY KEY (id)",
                  "rss_item|PRIMARY KEY (id)", "task_plugin|PRIMARY KEY (task_id)",
                  "thumbnail|PRIMARY KEY (thumbnail_id)", "user_setting|PRIMARY KEY (username)"}));
  EXPECT_EQ(raw_.Run("SELECT tgname FROM pg_trigger"), Rows{});
  EXPECT_EQ(raw_.Value("SELECT count(*) FROM pg_rules WHERE schemaname = 'public'"), "0");
}

TEST_F(SchemaTest, TheFilterTestsViewHasOneRow) {
  EXPECT_EQ(raw_.Run("SELECT one FROM test_filter_view"), Rows{"1"});
}

TEST_F(SchemaTest, TheNotificationViewShowsTheWholeTable) {
  raw_.Run("INSERT INTO notification VALUES (1, 2, 'captcha', 3), (4, 5, NULL, NULL)");
  EXPECT_EQ(raw_.Run("SELECT * FROM notification_view ORDER BY id"),
            (Rows{"1|2|captcha|3", "4|5|NULL|NULL"}));
}

TEST_F(SchemaTest, OtherColumnsThanKeysAreIndexedLikeThis) {
  EXPECT_EQ(raw_.Run("SELECT regexp_replace(indexdef, '^CREATE INDEX (\\w+) ON public.(\\w+) "
                     "USING ', '\\1: \\2 ') FROM pg_indexes WHERE schemaname = 'public' AND "
                     "tablename <> 'download_queue' AND indexname NOT LIKE '%_pkey' "
                     "ORDER BY indexname COLLATE \"C\""),
            (Rows{"rss_feed_user: rss_feed btree (lower(username), id)",
                  "rss_filter_feed: rss_filter btree (feed_id)",
                  "rss_item_feed: rss_item btree (feed_id, date DESC)",
                  "rss_item_feed_new: rss_item btree (feed_id, date DESC) WHERE (is_new = 1)",
                  "rss_item_title: rss_item gin (title gin_trgm_ops)",
                  "thumbnail_task: thumbnail btree (task_id, file_index)"}));
}

}  // namespace
