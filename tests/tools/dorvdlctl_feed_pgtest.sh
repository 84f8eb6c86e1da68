#!/usr/bin/env bash
# Tests of the group "feed" of dorvdlctl, in the private server that runs this script.
. "$(dirname "$0")/../support/dorvdlctl_test.sh"

# Two users' feeds, with the ids 1 to 3.
some_feeds() {
  query "INSERT INTO rss_feed (username, title, url, last_update, is_updating) VALUES
    ('alice', 'News', 'http://a/rss', 86400, 1),
    ('Bob',   'Films', 'http://b/rss', 0, 0),
    ('alice', 'Books', 'http://c/rss', 172800, 2)"
}

# listed ARGUMENT...: the ids that `feed list` prints, in order.
listed() {
  listed_keys id feed list "$@"
}

test_add_makes_a_feed_of_the_acting_user() {
  expect_run 0 --user alice feed add title=News 'url=http://a/rss?x=1&y=2' is_updating=yes
  expect_equal "$output$messages" 1
  expect_run 0 feed add username=bob title=Films --json
  expect_equal "$(json "doc->>'id' || ' ' || (doc->>'username')")" '2 bob'
  expect_equal "$(query 'TABLE rss_feed ORDER BY id')" $'1|alice|News|http://a/rss?x=1&y=2|0|1
2|bob|Films||0|0'
}

test_a_new_feed_needs_one_owner() {
  refused 2 'a new feed needs one owner' feed add title=News
  refused 2 'a new feed needs one owner' --user alice feed add username=bob
  expect_equal "$(query 'SELECT count(*) FROM rss_feed')" 0
}

test_list_shows_a_table() {
  some_feeds
  TZ=UTC expect_run 0 feed list
  expect_equal "$output" \
'ID  USERNAME  TITLE  URL                         LAST UPDATE  IS UPDATING
 1  alice     News   http://a/rss  1970-01-02 00:00:00 +0000  yes
 2  Bob       Films  http://b/rss                          -  no
 3  alice     Books  http://c/rss  1970-01-03 00:00:00 +0000  no'
  expect_run 0 feed list --user bob
  expect_equal "$output" \
'ID  TITLE  URL           LAST UPDATE  IS UPDATING
 2  Films  http://b/rss            -  no'
}

test_list_takes_a_criterion_an_order_and_a_page() {
  some_feeds
  expect_equal "$(listed)" '1 2 3'
  expect_equal "$(listed --descending)" '3 2 1'
  expect_equal "$(listed --url http://b/rss)" '2'
  expect_equal "$(listed --url 'http://_/rss')" ''
  expect_equal "$(listed --sort-by TITLE --limit 2)" '3 2'
  expect_equal "$(listed --sort-by last_update --offset 1)" '1 3'
  refused 2 '--sort-by: "progress" is no column' feed list --sort-by progress
  refused 2 '--sort-by: "id; DROP TABLE rss_feed" is no column' feed list --sort-by 'id; DROP TABLE rss_feed'
}

test_a_count_is_that_of_all_pages() {
  some_feeds
  expect_run 0 feed list --count --limit 1
  expect_equal "$output" 3
  expect_run 0 --user alice --json feed list --count --url http://a/rss
  expect_equal "$output" 1
}

test_show_is_readable_and_json_has_types() {
  some_feeds
  TZ=UTC expect_run 0 feed show 1
  expect_equal "$output" \
'id                  1
username            alice
title               News
url                 http://a/rss
last_update         1970-01-02 00:00:00 +0000
is_updating         yes'
  expect_run 0 feed show 3 --json
  expect_equal "$(json "doc = '{\"id\": 3, \"username\": \"alice\", \"title\": \"Books\",
    \"url\": \"http://c/rss\", \"last_update\": 172800, \"is_updating\": false}'")" t
}

test_set_writes_the_named_columns_only() {
  some_feeds
  expect_run 0 feed set 1 "title=it's; DROP TABLE rss_feed" is_updating=no
  expect_equal "$output$messages" ''
  expect_equal "$(query 'SELECT * FROM rss_feed WHERE id = 1')" \
    "1|alice|it's; DROP TABLE rss_feed|http://a/rss|86400|0"
  expect_equal "$(query 'SELECT title FROM rss_feed WHERE id > 1 ORDER BY id')" $'Films\nBooks'
}

test_truth_values_have_several_spellings() {
  some_feeds
  local value
  for value in yes true 1; do
    expect_run 0 feed set 1 is_updating=no
    expect_run 0 feed set 1 is_updating=$value
    expect_equal "$(query 'SELECT is_updating FROM rss_feed WHERE id = 1')" 1
  done
  for value in no false 0; do
    expect_run 0 feed set 1 is_updating=yes
    expect_run 0 feed set 1 is_updating=$value
    expect_equal "$(query 'SELECT is_updating FROM rss_feed WHERE id = 1')" 0
  done
  for value in Yes 2 '' on; do
    refused 2 "is_updating: \"$value\" is neither yes nor no" feed set 1 is_updating="$value"
  done
}

test_wrong_usage_is_refused_without_a_server() {
  local command
  for command in add 'set 1'; do
    # shellcheck disable=SC2086  # words of a command
    PGHOST=$scratch refused 2 'a feed has no column "x"' --user alice feed $command x=1
    # shellcheck disable=SC2086
    PGHOST=$scratch refused 2 'id is the key' --user alice feed $command id=9
    # shellcheck disable=SC2086
    PGHOST=$scratch refused 2 'title: not UTF-8' --user alice feed $command $'title=\xff'
    # shellcheck disable=SC2086
    PGHOST=$scratch refused 2 'last_update: "soon" is no whole' --user alice feed $command last_update=soon
    # shellcheck disable=SC2086
    PGHOST=$scratch refused 2 '"title" is not of the form' --user alice feed $command title
  done
  PGHOST=$scratch refused 2 'nothing to set' feed set 1
  PGHOST=$scratch refused 2 'A subcommand is required' feed
  PGHOST=$scratch refused 2 'ID: "0" is no whole number' feed remove 0
}

test_users_are_kept_apart() {
  some_feeds
  expect_equal "$(listed --user ALICE)" '1 3'
  refused 3 'no feed 2 of user alice' --user alice feed show 2
  refused 3 'no feed 2 of user alice' --user alice feed set 2 title=x
  refused 3 'no feed 2 of user alice' --user alice feed remove 2 3
  expect_equal "$(query 'SELECT id, title FROM rss_feed ORDER BY id')" $'1|News\n2|Films'
  refused 4 'refused: the row would belong to another user' --user alice feed set 1 username=bob
  expect_run 0 --user ALICE feed set 1 username=alice title=new
  expect_equal "$(query 'SELECT username, title FROM rss_feed WHERE id = 1')" 'alice|new'
}

test_remove_names_the_missing_and_removes_the_rest() {
  some_feeds
  refused 3 'no feeds 77, 99' feed remove 77 2 99 1
  expect_equal "$(listed)" 3
}

test_a_failure_is_no_empty_result() {
  query 'ALTER TABLE rss_feed RENAME TO other'
  local command
  for command in list 'list --count' 'show 1' 'set 1 title=x' 'remove 1' 'add username=a'; do
    # shellcheck disable=SC2086  # words of a command
    refused 1 "the database operation failed" feed $command
  done
}

run_test "$@"
