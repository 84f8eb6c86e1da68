#!/usr/bin/env bash
# Tests of tools/apply-schema, in the private server that runs this script.
. "$(dirname "$0")/../support/script_test.sh"

query() {
  psql -XAtq -U Tarnwick -d download -c "$1"
}

# schema_file NAME STATEMENT: a file of a schema folder of the test's own.
schema_file() {
  mkdir -p "$scratch/schema"
  echo "$2" >"$scratch/schema/$1.sql"
}

apply() {
  "$checkout/tools/apply-schema" "$@"
}

test_applying_twice_is_harmless() {
  local versions
  versions=$(query 'TABLE schema_version')
  query "INSERT INTO download_queue (filename) VALUES ('kept')"
  expect_status 0 apply
  expect_equal "$output" "up to date"
  expect_equal "$(query 'TABLE schema_version')" "$versions"
  expect_equal "$(query 'SELECT filename FROM download_queue')" kept
}

test_records_each_file_with_its_number_name_and_time() {
  local expected='' file
  for file in "$checkout"/schema/*.sql; do
    file=$(basename "$file" .sql)
    expected+="$((10#${file%%_*}))|$file|t"$'\n'
  done
  expect_equal "$(query "SELECT version, name, applied_at BETWEEN extract(epoch FROM now()) - 600
    AND extract(epoch FROM now()) FROM schema_version ORDER BY version")" "${expected%$'\n'}"
}

test_a_newer_database_is_refused_and_left_alone() {
  query "INSERT INTO schema_version (version, name) VALUES (9999, '9999_later')"
  schema_file 9998_next 'CREATE TABLE next (id integer);'
  expect_status 1 apply --schema "$scratch/schema"
  expect_contains "$output" \
    "the database is at version 9999, newer than the newest file known here (9998)"
  expect_equal "$(query "SELECT to_regclass('next') IS NULL")" t
}

test_files_are_applied_in_order_and_only_once() {
  schema_file 9001_first 'CREATE TABLE first (id integer);'
  expect_status 0 apply --schema "$scratch/schema"
  schema_file 9002_second 'ALTER TABLE first ADD COLUMN name text;'
  schema_file 9003_third 'ALTER TABLE first RENAME COLUMN name TO title;'
  expect_status 0 apply --schema "$scratch/schema"
  expect_equal "$output" $'applied 9002_second\napplied 9003_third\nup to date'
}

test_a_failing_file_leaves_no_trace_and_stops_the_rest() {
  schema_file 9001_good 'CREATE TABLE good (id integer);'
  schema_file 9002_bad 'CREATE TABLE bad (id integer); SELECT 1 FROM missing;'
  schema_file 9003_after 'CREATE TABLE after (id integer);'
  expect_status 1 apply --schema "$scratch/schema"
  expect_contains "$output" 'relation "missing" does not exist'
  expect_equal "$(query "SELECT to_regclass('good') IS NULL, to_regclass('bad') IS NULL,
    to_regclass('after') IS NULL, max(version) FROM schema_version")" 'f|t|t|9001'
}

test_a_file_takes_the_time_that_it_needs() {
  query "ALTER ROLE \"Tarnwick\" SET statement_timeout = '100ms'"
  schema_file 9001_slow 'SELECT pg_sleep(0.3) \g /dev/null'
  expect_status 0 apply --schema "$scratch/schema"
}

test_runs_at_the_same_time_wait_for_each_other() {
  local run runs=()
  schema_file 9001_slow 'SELECT pg_sleep(0.3) \g /dev/null
CREATE TABLE slow (id integer);'
  for run in 1 2 3; do
    apply --schema "$scratch/schema" >"$scratch/$run" 2>&1 &
    runs+=($!)
  done
  for run in "${runs[@]}"; do
    wait "$run" || fail "$(cat "$scratch"/[123])"
  done
  expect_equal "$(cat "$scratch"/[123] | sort | uniq -c | xargs)" '1 applied 9001_slow 3 up to date'
}

test_misnamed_and_doubled_files_are_refused() {
  schema_file extra 'SELECT 1;'
  expect_status 1 apply --schema "$scratch/schema"
  expect_contains "$output" "not named NNNN_name.sql: extra.sql"
  rm "$scratch/schema/extra.sql"
  schema_file 9001_one 'SELECT 1;'
  schema_file 9001_other 'SELECT 1;'
  expect_status 1 apply --schema "$scratch/schema"
  expect_contains "$output" "two files carry the number of 9001_other.sql"
}

# An update that touches an index, or finds no room on its page, is no "HOT" one.
test_progress_updates_of_the_queue_touch_no_index() {
  query "INSERT INTO download_queue (username, status, task_flags, total_size, extra_data)
    SELECT 'user' || n % 7, 1 + n % 5, 4, 1000000, repeat('x', 200) FROM generate_series(1, 500) n"
  for _ in 1 2 3; do
    query "UPDATE download_queue SET current_size = current_size + 1000, current_rate = 100,
      connected_peers = 3, downloaded_pieces = 5, upload_rate = 2, total_upload = 7
      WHERE task_id % 20 = 0"
  done
  expect_equal "$(query "SELECT pg_stat_force_next_flush(); SELECT n_tup_upd, n_tup_hot_upd
    FROM pg_stat_user_tables WHERE relname = 'download_queue'" | tail -n 1)" '75|75'
}

# What a client may rely on: three types, a key that is made when none is given, defaults.
test_columns_are_plain_and_have_defaults() {
  local table=download_queue
  expect_equal "$(query "SELECT string_agg(DISTINCT data_type, ',' ORDER BY data_type)
    FROM information_schema.columns WHERE table_schema = 'public'")" 'bigint,integer,text'
  query "INSERT INTO $table DEFAULT VALUES"
  expect_equal "$(query "SELECT string_agg(coalesce(value, 'NULL'), ',') FROM $table,
    json_each_text(row_to_json($table))")" \
    '1,,0,,,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,,,0,,,,0,NULL,0,0,0'
}

test_wrong_calls_are_told_apart() {
  expect_status 2 apply --schema
  expect_status 2 apply --nonsense x
  expect_status 1 apply --database missing
  expect_contains "$output" 'database "missing" does not exist'
}

run_test "$@"
