#!/usr/bin/env bash
# Tests of the group "filter" of dorvdlctl, in the private server that runs this script.
. "$(dirname "$0")/../support/dorvdlctl_test.sh"

# A feed of alice (1) and one of bob (2), each with filters.
some_filters() {
  query "INSERT INTO rss_feed (username) VALUES ('alice'), ('bob')"
  query "INSERT INTO rss_filter (feed_id, name, match, not_match, enable, is_regex) VALUES
    (1, 'HD', '%1080p%', '%cam%', 1, 0), (2, 'Series', 'S[0-9]+', '', 1, 1), (1, 'off', '', '', 0, 0)"
}

# listed ARGUMENT...: the ids that `filter list` prints, in order.
listed() {
  listed_keys id filter list "$@"
}

test_a_filter_is_added_shown_changed_and_removed() {
  query "INSERT INTO rss_feed (username) VALUES ('alice')"
  expect_run 0 --user alice filter add feed_id=1 name=HD 'match=%1080p%' enable=yes is_regex=false
  expect_equal "$output" 1
  expect_run 0 filter set 1 'match=a=%b%' destination=video
  expect_equal "$(query 'TABLE rss_filter')" '1|1|HD|a=%b%||video|1|0'
  expect_run 0 filter show 1 --json
  expect_equal "$(json "doc->'enable' = 'true' AND doc->'is_regex' = 'false' AND doc->>'match' = 'a=%b%'")" t
  expect_run 0 filter show 1
  expect_contains "$output" $'\nenable              yes\nis_regex            no'
  expect_run 0 filter remove 1
  refused 3 'no filter 1' filter show 1
}

test_a_filter_belongs_to_a_feed_that_exists() {
  some_filters
  refused 2 'a new filter needs feed_id=ID' filter add name=x
  refused 3 'no feed 9' filter add feed_id=9
  refused 3 'no feed 2 of user alice' --user alice filter add feed_id=2
  refused 3 'no feed 2 of user alice' --user alice filter set 1 feed_id=2
  refused 3 'no feed 9' filter set 1 feed_id=9
  expect_equal "$(query 'SELECT feed_id FROM rss_filter ORDER BY id')" $'1\n2\n1'
}

test_users_reach_the_filters_of_their_feeds() {
  some_filters
  expect_equal "$(listed)" '1 2 3'
  expect_equal "$(listed --user ALICE)" '1 3'
  expect_equal "$(listed --user carol)" ''
  expect_equal "$(listed --user alice --feed 2)" ''
  expect_equal "$(listed --feed 1 --sort-by name --descending)" '3 1'
  refused 3 'no filter 2 of user alice' --user alice filter show 2
  refused 3 'no filter 2 of user alice' --user alice filter set 2 name=x
  refused 3 'no filters 2, 9 of user alice' --user alice filter remove 2 9
  expect_run 0 --user alice filter list --count
  expect_equal "$output" 2
  expect_equal "$(query 'SELECT name FROM rss_filter WHERE id = 2')" Series
  expect_run 0 --user alice filter set 1 feed_id=1 name=new
  query "DELETE FROM rss_feed WHERE username = 'alice'"
  expect_equal "$(listed --user alice)" ''
  expect_equal "$(listed)" '1 2 3'
}

test_like_patterns_match_the_whole_text_in_any_case() {
  expect_run 0 filter test 'Some.Film.1080p' '%FILM%'
  expect_equal "$output" matches
  expect_run 0 filter test 'Some.Film.1080p' 'film'
  expect_equal "$output" 'does not match'
  expect_run 0 filter test abc 'a_c' --json
  expect_equal "$output" true
}

test_regular_expressions_match_a_part_and_case_counts() {
  expect_run 0 filter test --regex 'Show S01E07' 'S[0-9]{2}E[0-9]{2}$'
  expect_equal "$output" matches
  expect_run 0 filter test --regex --json 'show s01e07' 'S[0-9]'
  expect_equal "$output" false
}

test_the_text_stands_for_itself() {
  local text
  for text in "it's" "'quoted'" "''" 'title' "'||version()||'" '1=1'; do
    expect_run 0 --json filter test "$text" "$text"
    expect_equal "$output" true
  done
  expect_run 0 --json filter test "'quoted'" quoted
  expect_equal "$output" false
  expect_run 0 --json filter test title ''
  expect_equal "$output" false
}

test_a_pattern_that_is_none_is_a_failure() {
  refused 1 'the pattern could not be tried: it is no valid one (2201B)' filter test --regex a '('
  refused_for_programs 1 server 2201B filter test --regex a '*'
  refused 1 'the pattern could not be tried: it is no valid one (22025)' filter test a \\
  refused 2 'PATTERN is required' filter test a
  refused 2 'TEXT: not UTF-8' filter test $'\xff' a
}

test_a_pattern_is_tried_for_any_user() {
  expect_run 0 --user carol filter test abc 'A%'
  expect_equal "$output" matches
}

run_test "$@"
