#!/usr/bin/env bash
# Tests of examples/scheduler.cpp, in the private server that runs this script.
. "$(dirname "$0")/../support/examples_test.sh"

# feed ID OWNER: one whose address is of no interest.
feed() {
  query "INSERT INTO rss_feed (id, username, url) VALUES ($1, '$2', 'https://host/feed')"
}

# filter FEED MATCH NOT_MATCH IS_REGEX: downloads to the folder dN, N being its id.
filter() {
  query "INSERT INTO rss_filter (feed_id, match, not_match, is_regex, enable, destination)
    VALUES ($1, '$2', '$3', $4, 1, 'd' || currval('rss_filter_id_seq'))"
}

# items FEED TITLE...: new ones, with a URL of their number in the table.
items() {
  local title
  for title in "${@:2}"; do
    query "INSERT INTO rss_item (feed_id, title, is_new, url)
      VALUES ($1, '$title', 1, 'https://host/' || currval('rss_item_id_seq'))"
  done
}

# The titles of the items that are new.
new_items() {
  query "SELECT coalesce(string_agg(title, ',' ORDER BY id), '') FROM rss_item WHERE is_new = 1"
}

# scheduler_prints STATUS LINE...
scheduler_prints() {
  expect_status "$1" scheduler_example
  expect_equal "$output" "$(printf '%s\n' "${@:2}")"
}

test_scheduler_creates_a_task_of_the_feeds_owner_for_each_item_picked() {
  feed 1 alice
  feed 2 Bob
  filter 1 show sample 0
  filter 2 '^Show [0-9]+$' '' 1
  items 1 'The SHOW 1' 'show 2 (Sample)' 'news'
  items 2 'Show 3' 'show 4'
  before=$(date +%s)
  scheduler_prints 0 '1 alice https https://host/1 -> d1' '2 Bob https https://host/4 -> d2'
  expect_equal "$(query "SELECT task_id, username, url, destination, status, task_flags,
    created_time BETWEEN $before AND $before + 60 FROM download_queue ORDER BY task_id")" \
    $'1|alice|https://host/1|d1|1|1024|t\n2|Bob|https://host/4|d2|1|1024|t'
  expect_equal "$(query "SELECT every(last_update BETWEEN $before AND $before + 60) FROM rss_feed")" t
  expect_equal "$(new_items)" ''
  scheduler_prints 0 ''
}

test_scheduler_gives_an_item_to_the_first_filter_that_picks_it() {
  feed 1 alice
  filter 1 show '' 0
  filter 1 '' '' 1
  items 1 'show' 'news'
  scheduler_prints 0 '1 alice https https://host/1 -> d1' '2 alice https https://host/2 -> d2'
}

test_scheduler_leaves_out_what_is_disabled_seen_of_another_feed_or_no_address() {
  feed 1 alice
  feed 2 bob
  filter 1 '' '' 0
  filter 2 '' '' 0
  query "UPDATE rss_filter SET enable = 0 WHERE id = 2"
  items 1 'seen' 'no address' 'new'
  items 2 'of bob'
  query "UPDATE rss_item SET is_new = 0 WHERE title = 'seen'"
  query "UPDATE rss_item SET url = 'page.html' WHERE title = 'no address'"
  scheduler_prints 0 '1 alice https https://host/3 -> d1'
  expect_equal "$(new_items)" ''
}

test_scheduler_skips_a_filter_that_is_no_regular_expression_and_keeps_its_items() {
  feed 1 alice
  filter 1 '(' '' 1
  filter 1 show '' 0
  items 1 'show' 'news'
  scheduler_prints 0 'filter 1 cannot be applied (see system log)' \
    '1 alice https https://host/1 -> d2'
  expect_equal "$(new_items)" 'news'
  query "UPDATE rss_filter SET match = '.' WHERE id = 1"
  scheduler_prints 0 '2 alice https https://host/2 -> d1'
}

test_scheduler_leaves_a_feed_that_is_being_read_to_the_next_run() {
  feed 1 alice
  filter 1 '' '' 0
  items 1 'show'
  query "UPDATE rss_feed SET is_updating = 1"
  scheduler_prints 0 ''
  expect_equal "$(query "SELECT last_update FROM rss_feed"),$(new_items)" '0,show'
  query "UPDATE rss_feed SET is_updating = 0"
  scheduler_prints 0 '1 alice https https://host/1 -> d1'
}

# on_second_task STATEMENT: the database runs it when a feed's second task is created.
on_second_task() {
  query "CREATE OR REPLACE FUNCTION trouble() RETURNS trigger LANGUAGE plpgsql AS \$\$
      BEGIN $1; RETURN new; END \$\$;
    CREATE OR REPLACE TRIGGER trouble BEFORE INSERT ON download_queue
      FOR EACH ROW WHEN (new.url = 'https://host/2') EXECUTE FUNCTION trouble()"
}

test_scheduler_keeps_nothing_of_a_filter_that_fails_half_way() {
  feed 1 alice
  filter 1 '' '' 0
  items 1 'a' 'b' 'c'
  on_second_task "RAISE 'no'"
  scheduler_prints 0 'filter 1 cannot be applied (see system log)'
  expect_equal "$(query "SELECT count(*) FROM download_queue"),$(new_items)" '0,a,b,c'
}

test_scheduler_keeps_nothing_of_a_feed_when_the_connection_is_lost() {
  feed 1 alice
  filter 1 'a' '' 0
  filter 1 '' '' 0
  items 1 'a' 'b'
  on_second_task "PERFORM pg_terminate_backend(pg_backend_pid())"
  expect_status 1 scheduler_example
  expect_equal "$(query "SELECT count(*) FROM download_queue"),$(new_items)" '0,a,b'
  query "DROP TRIGGER trouble ON download_queue"
  expect_status 0 scheduler_example
  expect_equal "$(query "SELECT string_agg(url, ',' ORDER BY url) FROM download_queue")" \
    'https://host/1,https://host/2'
}

test_schedulers_that_run_at_once_share_the_work() {
  feed 1 alice
  filter 1 '' '' 0
  items 1 'a' 'b'
  on_second_task "PERFORM pg_sleep(0.5)"
  scheduler_example >first &
  scheduler_example >second
  wait $!
  expect_equal "$(query "SELECT count(*) FROM download_queue")" 2
  expect_equal "$(cat first second | wc -l)" 2
}

test_scheduler_fails_without_its_tables() {
  query "ALTER TABLE rss_feed RENAME TO elsewhere"
  scheduler_prints 1 ''
}

run_test "$@"
