#!/usr/bin/env bash
# Tests of the programs in examples/, in the private server that runs this script.
. "$(dirname "$0")/../support/script_test.sh"

query() {
  psql -XAtq -v ON_ERROR_STOP=1 -U Tarnwick -d download -c "$1"
}

test_queue_creates_and_lists_a_task() {
  expect_status 0 queue_example
  expect_equal "$output" "1 https https://example.org/disk.iso"
}

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

# request STATUS KIND USER REQUEST: hands the request, a message in protobuf's text form, to the
# handler.
request() {
  protoc -I "$checkout/proto" --encode="dorvdl.rpc.proto.$2.ListRequest" \
    "$checkout/proto/dorvdl/proto/list_request/$2.proto" <<<"$4" >bytes
  expect_status "$1" list_request_example "$2" "$3" <bytes
}

# answers STATUS KIND USER REQUEST ANSWER
answers() {
  request "${@:1:4}"
  expect_equal "$output" "$5"
}

refusal() {
  printf '{"error":"%s","success":false}' "$1"
}

not_yours=$(refusal 'the request must name a feed or task of the user')

# Two users, each with a row of every kind; the ids of bob's end in 2.
two_users() {
  query "INSERT INTO rss_feed (id, username, title, last_update) VALUES
      (11, 'Alice', 'Äpfel', 7), (12, 'bob', 'B', 0);
    INSERT INTO rss_filter (id, feed_id, match, enable) VALUES (21, 11, 'a', 1), (22, 12, 'b', 1);
    INSERT INTO rss_item (id, feed_id, title, size, is_new) VALUES
      (31, 11, 'one', 5000000000, 1), (41, 11, 'two', 1, 0), (51, 11, 'tee', 2, 1),
      (32, 12, 'one', 1, 1);
    INSERT INTO download_queue (task_id, username, status, total_size, unzip_password) VALUES
      (61, 'Alice', 2, 5000000000, 'secret'), (71, 'Alice', 5, 0, ''), (62, 'bob', 2, 0, '');
    INSERT INTO thumbnail (thumbnail_id, task_id, file_index, create_time) VALUES
      (81, 61, 3, 5000000000), (82, 62, 3, 0)"
}

test_list_request_shows_each_kind() {
  two_users
  answers 0 rss_feed alice '' '{"items":[{"id":11,"is_updating":false,"last_update":7,"title":"Äpfel","url":"","username":"Alice"}],"success":true,"total":1}'
  answers 0 rss_filter alice 'feed_id: 11' '{"items":[{"destination":"","enable":true,"feed_id":11,"id":21,"is_regex":false,"match":"a","name":"","not_match":""}],"success":true,"total":1}'
  answers 0 rss_item alice 'feed_id: 11 is_new: true common { sort_by: "id" limit: 1 }' \
    '{"items":[{"date":0,"feed_id":11,"id":31,"is_new":true,"link":"","size":5000000000,"title":"one","url":""}],"success":true,"total":2}'
  answers 0 thumbnail alice 'task_id: 61' '{"items":[{"create_time":5000000000,"file_index":3,"task_id":61,"thumbnail_filename":"","thumbnail_id":81,"thumbnail_index":0,"thumbnail_second":0}],"success":true,"total":1}'
  request 0 task alice 'status: 5 exclude_status: true'
  expect_contains "$output" '"status":2,"task_flags":0,"task_id":61,'
  expect_contains "$output" '"total_size":"5000000000"'
  expect_contains "$output" '}],"success":true,"total":1}'
}

test_list_request_shows_no_password() {
  two_users
  request 0 task alice ''
  expect_contains "$output" '"total":2}'
  [[ $output != *secret* && $output != *unzip_password* ]] || fail "$output"
}

test_list_request_shows_an_empty_list() {
  two_users
  answers 0 rss_item alice 'feed_id: 11 title_like: "x"' '{"items":[],"success":true,"total":0}'
}

test_list_request_keeps_the_rows_of_others() {
  two_users
  local kind
  for kind in rss_filter rss_item; do
    answers 1 "$kind" bob 'feed_id: 11' "$not_yours"
    answers 1 "$kind" bob '' "$not_yours"
  done
  answers 1 thumbnail bob 'task_id: 61' "$not_yours"
  answers 1 thumbnail bob 'file_index: 3' "$not_yours"
  answers 0 task carol '' '{"items":[],"success":true,"total":0}'
  answers 0 rss_feed carol '' '{"items":[],"success":true,"total":0}'
  answers 1 task '' '' "$(refusal 'no user is named')"
}

test_list_request_refuses_what_is_no_request() {
  expect_status 1 list_request_example rss_feed alice < <(printf '\x0a\xff')
  expect_equal "$output" "$(refusal 'these bytes are no list request')"
  answers 1 common alice '' "$(refusal 'no such kind of rows')"
}

test_list_request_tells_a_failed_list_from_an_empty_one() {
  two_users
  local failed
  failed=$(refusal 'the database refused; the system log says why')
  answers 1 rss_item alice 'feed_id: 11 title_regex: "("' "$failed"
  answers 1 task alice 'common { sort_by: "no_column" }' "$failed"
  answers 1 task alice 'common { sort_by: "no column" }' "$failed"
  answers 1 task alice 'filename: "a\000b"' "$failed"
  query "ALTER TABLE rss_feed RENAME TO elsewhere"
  answers 1 rss_item alice 'feed_id: 11' "$failed"
}

test_list_request_says_nothing_about_the_server() {
  export PGPORT=1
  local answer
  answer=$(list_request_example task alice 2>messages </dev/null) && fail "succeeded"
  expect_equal "$answer" "$(refusal 'the database cannot be used')"
  expect_contains "$(<messages)" "list_request: "
}

run_test "$@"
