#!/usr/bin/env bash
# Tests of the programs in examples/ that show what holds for all controls, in the private server that
# runs this script.
. "$(dirname "$0")/../support/examples_test.sh"

# in_background COMMAND...: its streams go to the file "said", its process is `background`.
in_background() {
  "$@" &>said &
  background=$!
}

# expect_end STATUS: the status of what runs in the background; leaves what it said in `output`.
expect_end() {
  local status=0
  wait "$background" || status=$?
  output=$(<said)
  ((status == $1)) || fail "exit status $status instead of $1: $output"
}

# hold_table NAME: somebody else locks the table, until let_go.
hold_table() {
  coproc holder { psql -XAtq -U Tarnwick -d download; }
  local answer
  echo "BEGIN; LOCK TABLE $1; SELECT 'locked';" >&"${holder[1]}"
  read -r answer <&"${holder[0]}"
  expect_equal "$answer" locked
}
let_go() {
  echo 'COMMIT; SELECT 1;' >&"${holder[1]}"
  read -r _ <&"${holder[0]}"
}

# Whether one connection waits for the table.
one_waits() {
  [[ $(query "SELECT count(*) FROM pg_stat_activity WHERE wait_event_type = 'Lock'") == 1 ]]
}

test_queue_creates_and_lists_a_task() {
  before=$(date +%s)
  prints 0 '1 https https://example.org/disk.iso' queue_example
  expect_equal "$(query "SELECT username, status, created_time BETWEEN $before AND $before + 60
    FROM download_queue")" 'alice|1|t'
}

test_queue_says_why_it_failed() {
  query "ALTER TABLE download_queue RENAME TO elsewhere"
  prints 1 'failed: relation "download_queue" does not exist' queue_example
}

test_each_says_that_the_server_is_gone() {
  export PGPORT=1
  local example
  for example in queue 'unit alice' 'failure x' 'user alice 1' 'feed alice http://host/' \
    'filter alice 1 like % x' 'item 1' 'thumbnail 1 0' 'plugin active' notification \
    'captcha alice 1' host_wait 'pool 1 alice' scheduler; do
    # shellcheck disable=SC2086 # its words are a name and arguments
    set -- $example
    expect_status 1 "$1_example" "${@:2}" </dev/null
    expect_contains "$output" 'connection to server'
  done
}

# running N: as many tasks of alice that are being downloaded.
running() {
  query "INSERT INTO download_queue (username, status) SELECT 'alice', 2 FROM generate_series(1, $1)"
}

# The sizes that tasks have.
sizes() {
  query "SELECT DISTINCT current_size FROM download_queue"
}

test_unit_commits_all_changes() {
  running 20
  expect_status 0 unit_example alice
  expect_contains "$output" '20 changes are committed'
  expect_equal "$(sizes)" 1048576
  expect_status 0 unit_example alice one-by-one
  expect_contains "$output" '20 changes are made'
  expect_equal "$(sizes)" 2097152
}

# on_update WHEN STATEMENT: runs when the task 2 is changed; WHEN names the kind of trigger.
on_update() {
  query "CREATE FUNCTION trouble() RETURNS trigger LANGUAGE plpgsql AS \$\$
      BEGIN $2; RETURN new; END \$\$;
    CREATE $1 FOR EACH ROW WHEN (new.task_id = 2) EXECUTE FUNCTION trouble()"
}

test_unit_rolls_all_changes_back() {
  running 3
  on_update 'TRIGGER trouble BEFORE UPDATE ON download_queue' "RAISE 'no' USING ERRCODE = 'XX001'"
  expect_status 1 unit_example alice
  expect_contains "$output" 'nothing has changed: no (XX001)'
  expect_equal "$(sizes)" 0
  expect_status 1 unit_example alice one-by-one
  expect_contains "$output" 'some have changed, others have not: no (XX001)'
}

test_unit_knows_when_the_answer_to_the_commit_was_lost() {
  running 3
  on_update 'CONSTRAINT TRIGGER trouble AFTER UPDATE ON download_queue DEFERRABLE INITIALLY DEFERRED' \
    'PERFORM pg_sleep(30)'
  in_background unit_example alice
  committing() {
    pid=$(query "SELECT pid FROM pg_stat_activity WHERE query = 'COMMIT' AND state = 'active'")
    [[ $pid ]]
  }
  eventually committing
  kill -KILL "$pid"
  expect_end 1
  expect_contains "$output" 'all has changed or nothing'
}

some_items() {
  query "INSERT INTO rss_item (title) VALUES ('a'), ('b'), ('ab')"
}

test_failure_tells_an_empty_list_from_a_failed_one() {
  some_items
  prints 0 $'2 found\n1 a\n3 ab' failure_example a
  prints 0 '0 found' failure_example x
  prints 1 'this is no regular expression (2201B)' failure_example '('
  query "ALTER TABLE rss_item RENAME TO elsewhere"
  prints 1 'the search failed: relation "rss_item" does not exist (42P01)' failure_example a
}

test_failure_tries_again_what_may_pass() {
  some_items
  hold_table rss_item
  export PGOPTIONS='-c lock_timeout=50ms'
  prints 1 'the search failed: canceling statement due to lock timeout (55P03)' failure_example a
  in_background failure_example a
  has_failed_once() {
    [[ $(query "SELECT count(*) FROM pg_stat_activity
      WHERE state = 'idle' AND query LIKE 'SELECT%rss_item%'") == 1 ]]
  }
  eventually has_failed_once
  let_go
  expect_end 0
  expect_equal "$output" $'2 found\n1 a\n3 ab'
}

test_failure_opens_another_connection_when_one_is_lost() {
  some_items
  query "CREATE SEQUENCE tries;
    CREATE FUNCTION may_pass() RETURNS boolean LANGUAGE plpgsql AS \$\$
      BEGIN IF nextval('tries') = 1 THEN PERFORM pg_terminate_backend(pg_backend_pid()); END IF;
      RETURN true; END \$\$;
    ALTER TABLE rss_item RENAME TO stored;
    CREATE VIEW rss_item AS SELECT * FROM stored WHERE may_pass()"
  prints 0 $'2 found\n1 a\n3 ab' failure_example a
}

test_user_reaches_nothing_of_others() {
  two_feeds
  prints 0 $'2 filters\n1 hers\n3 new' user_example alice 1 new
  prints 0 '0 filters' user_example alice 2
  prints 1 "the filter cannot be added: what the row would belong to is not the user's" \
    user_example alice 2 new
  prints 1 "the filters cannot be listed: a user's controller has no user" user_example '' 1
  expect_equal "$(query "SELECT count(*) FROM rss_filter WHERE feed_id = 2")" 1
}

test_pool_serves_more_threads_than_it_has_connections() {
  query "INSERT INTO download_queue (username) VALUES ('alice'), ('bob'), ('alice')"
  prints 0 $'2 connections\n200 2 tasks\n200 1 tasks\n200 0 tasks\n200 2 tasks\n200 1 tasks' \
    pool_example 2 alice bob carol alice bob
}

test_pool_turns_away_whom_it_has_no_connection_for() {
  hold_table download_queue
  in_background pool_example 1 alice alice
  eventually one_waits
  sleep 2  # longer than it waits for a connection
  let_go
  expect_end 1
  expect_equal "$(sort <<<"$output")" $'1 connections\n200 0 tasks\n503 all connections are in use'
}

test_pool_says_what_failed() {
  query "ALTER TABLE download_queue RENAME TO elsewhere"
  prints 1 $'1 connections
the tasks of alice cannot be counted: relation "download_queue" does not exist (42P01)\n500 failed' pool_example 1 alice
}

run_test "$@"
