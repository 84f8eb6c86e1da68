#!/usr/bin/env bash
# Tests of the group "item" of dorvdlctl, in the private server that runs this script.
. "$(dirname "$0")/../support/dorvdlctl_test.sh"

# A feed of alice (1) and one of bob (2), each with items.
some_items() {
  query "INSERT INTO rss_feed (username) VALUES ('alice'), ('bob')"
  query "INSERT INTO rss_item (feed_id, title, url, date, size, is_new) VALUES
    (1, 'Film.One.1080p', 'http://1', 1000, 5000000000, 1),
    (1, 'Film.Two.cam',   'http://2', 3000, 0, 0),
    (2, 'Show.S01E07',    'http://3', 2000, 10, 1),
    (1, 'film.three',     'http://4', 2000, 10, 1)"
}

# listed ARGUMENT...: the ids that `item list` prints, in order.
listed() {
  listed_keys id item list "$@"
}

test_an_item_is_added_shown_changed_and_removed() {
  query "INSERT INTO rss_feed (username) VALUES ('alice')"
  expect_run 0 --user alice item add feed_id=1 'title=Ä film' size=9223372036854775807 is_new=1
  expect_run 0 item set 1 link=http://page date=86400
  expect_equal "$(query 'TABLE rss_item')" '1|1|Ä film||http://page|86400|9223372036854775807|1'
  expect_run 0 item show 1 --json
  expect_equal "$(json "doc->>'size' || (doc->>'is_new')")" 9223372036854775807true
  TZ=UTC expect_run 0 item show 1
  expect_contains "$output" $'date                1970-01-02 00:00:00 +0000\nsize                8.0 EiB (9223372036854775807 bytes)\nis_new              yes'
  expect_run 0 item remove 1
  refused 3 'no item 1' item remove 1
}

test_list_shows_a_table() {
  some_items
  TZ=UTC expect_run 0 item list --limit 2
  expect_equal "$output" \
'ID  FEED ID  TITLE                                DATE     SIZE  IS NEW
 1        1  Film.One.1080p  1970-01-01 00:16:40 +0000  4.7 GiB  yes
 2        1  Film.Two.cam    1970-01-01 00:50:00 +0000      0 B  no'
}

test_titles_cannot_steer_the_terminal() {
  query "INSERT INTO rss_item (title) VALUES (E'a\\x1b[2J\\nb')"
  expect_run 0 item list
  expect_contains "$output" 'a\x1b[2J\nb'
  expect_run 0 item show 1
  expect_contains "$output" 'title               a\x1b[2J\nb'
}

test_criteria() {
  some_items
  expect_equal "$(listed)" '1 2 3 4'
  expect_equal "$(listed --feed 1)" '1 2 4'
  expect_equal "$(listed --new)" '1 3 4'
  expect_equal "$(listed --seen)" '2'
  expect_equal "$(listed --like 'film%')" '1 2 4'
  expect_equal "$(listed --like 'film%' --not-like '%CAM')" '1 4'
  expect_equal "$(listed --regex '^Film')" '1 2'
  expect_equal "$(listed --not-regex 'S[0-9]+E[0-9]+' --new)" '1 4'
  expect_equal "$(listed --url http://3)" '3'
  expect_equal "$(listed --date 2000 --sort-by id --descending)" '4 3'
  expect_equal "$(listed --like "%' OR true --")" ''
  refused 2 '--new excludes --seen' item list --new --seen
  refused 2 '--feed: "0" is no whole number' item list --feed 0
}

test_a_pattern_that_is_none_is_told_from_other_failures() {
  some_items
  refused 1 'the pattern could not be tried' item list --regex '('
  refused 1 'the pattern could not be tried' item list --not-regex '*' --count
  refused 1 'the pattern could not be tried' item list --like \\
  query 'ALTER TABLE rss_item RENAME TO other'
  refused 1 'the database operation failed: relation "rss_item" does not exist (42P01)' item list --like a
}

test_a_count_is_that_of_all_pages() {
  some_items
  expect_run 0 item list --feed 1 --new --limit 1 --count
  expect_equal "$output" 2
}

test_users_reach_the_items_of_their_feeds() {
  some_items
  query "INSERT INTO rss_item (feed_id, title) VALUES (9, 'of a feed that is gone')"
  expect_equal "$(listed --user alice)" '1 2 4'
  expect_equal "$(listed --user Bob)" '3'
  expect_equal "$(listed)" '1 2 3 4 5'
  refused 3 'no item 3 of user alice' --user alice item show 3
  refused 3 'no item 3 of user alice' --user alice item set 3 title=x
  refused 3 'no item 3 of user alice' --user alice item remove 3
  refused 3 'no feed 2 of user alice' --user alice item add feed_id=2 title=x
  refused 3 'no feed 2 of user alice' --user alice item set 1 feed_id=2
  refused 3 'no feed 2 of user alice' --user alice item seen 2
  refused 3 'no feed 2 of user alice' --user alice item unseen 2
  refused 3 'no feed 2 of user alice' --user alice item clear 2
  refused 3 'no feed 2 of user alice' --user alice item import 2 - <<<'{"title": "x"}'
  expect_equal "$(query "SELECT title, feed_id, is_new FROM rss_item WHERE id IN (1, 3) ORDER BY id")" \
    $'Film.One.1080p|1|1\nShow.S01E07|2|1'
  expect_run 0 --user alice item list --count
  expect_equal "$output" 3
}

test_all_items_of_a_feed_are_marked_or_removed() {
  some_items
  expect_run 0 --user alice item seen 1
  expect_equal "$output$messages" ''
  expect_equal "$(listed --new)" '3'
  expect_run 0 item unseen 1
  expect_equal "$(listed --new)" '1 2 3 4'
  refused 3 'no feed 9' item seen 9
  refused 3 'no feed 9' item unseen 9
  expect_run 0 item clear 1
  expect_equal "$(listed)" '3'
  query "DELETE FROM rss_feed"
  expect_run 0 item clear 2
  expect_equal "$(listed)" ''
}

test_import_takes_a_line_per_item() {
  query "INSERT INTO rss_feed (username) VALUES ('alice')"
  cat >"$scratch/items" <<'TEXT'
{"title": "Ä \"quoted\" \u00fc", "size": 9223372036854775807, "is_new": true}
{"is_new": false, "date": 86400, "url": "http://x", "link": "http://page", "feed_id": 7}
TEXT
  expect_run 0 --user alice item import 1 "$scratch/items"
  expect_equal "$output" '2 items added'
  expect_run 0 item import 1 - --json <<<'{}'
  expect_equal "$output" 1
  expect_equal "$(query 'TABLE rss_item ORDER BY id')" '1|1|Ä "quoted" ü|||0|9223372036854775807|1
2|1||http://x|http://page|86400|0|0
3|1||||0|0|0'
}

test_import_adds_nothing_when_a_text_cannot_be_sent() {
  query "INSERT INTO rss_feed (username) VALUES ('alice')"
  refused 4 'no item was added: a text value has an embedded NUL' item import 1 - \
    <<<$'{"title": "a"}\n{"title": "b\\u0000"}\n{"title": "c"}'
  expect_equal "$(query 'SELECT count(*) FROM rss_item')" 0
}

test_import_adds_nothing_when_one_line_is_bad() {
  query "INSERT INTO rss_feed (username) VALUES ('alice')"
  local line
  while read -r line; do
    printf '{"title": "good"}\n%s\n' "${line%% => *}" >"$scratch/items"
    refused 1 "$scratch/items:2: ${line##* => }" item import 1 "$scratch/items"
  done <<'TEXT'
{"titel": "x"} => an item has no column "titel"
{"title": => no JSON object
["title"] => no JSON object
{"size": 1.5} => size: "1.5" is no whole number of 64 bits
{"date": 2147483648} => date: "2147483648" is no whole number of 32 bits
{"is_new": "maybe"} => is_new: "maybe" is neither yes nor no
{"title": null} => title: neither a text nor
{"title": ["x"]} => title: neither a text nor
{"id": 5} => id is the key
TEXT
  refused 1 "no items can be read from $scratch/missing" item import 1 "$scratch/missing"
  refused 1 'no items can be read from -' item import 1 - </dev/null
  refused 3 'no feed 9' item import 9 - <<<'{}'
  query "ALTER TABLE rss_item ADD CHECK (title <> 'b')"
  refused 1 'no item was added' item import 1 - <<<$'{"title": "a"}\n{"title": "b"}\n{"title": "c"}'
  expect_equal "$(query 'SELECT count(*) FROM rss_item')" 0
}

run_test "$@"
