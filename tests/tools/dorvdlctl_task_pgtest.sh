#!/usr/bin/env bash
# Tests of the group "task" of dorvdlctl, in the private server that runs this script.
. "$(dirname "$0")/../support/dorvdlctl_test.sh"

# listed ARGUMENT...: the ids that `task list` prints, in order.
listed() {
  listed_keys task_id task list "$@"
}

# Two users' tasks in different states, with the ids 1 to 6.
some_tasks() {
  query "INSERT INTO download_queue (username, filename, url, status, task_flags, total_size,
      current_size, current_rate, waiting_until_time) VALUES
    ('alice', 'movie 100%', '',          2, 4,    1000000, 500000, 1000, 0),
    ('alice', '',  'http://host/a.iso',  1, 512,  0,       0,      0,    1000),
    ('Bob',   'Movie b',    '',          2, 1024, 1000000, 900000, 1000, 0),
    ('Bob',   'music',      '',          5, 2,    1000000, 1000000, 0,   2000),
    ('alice', 'broken',     '',        102, 4,    1000000, 100000, 2000, 0),
    ('alice', 'music',      '',         11, 6,    1000000, 0,      0,    1001)"
}

test_add_takes_urls_and_prints_the_ids() {
  expect_run 0 --user alice task add http://host/a 'magnet:?xt=urn:x' --destination video
  expect_equal "$output" $'1\n2'
  expect_equal "$messages" ''
  expect_equal "$(query "SELECT username, url, filename, status, task_flags, destination,
      created_time BETWEEN extract(epoch FROM now()) - 60 AND extract(epoch FROM now()) + 1, file_oid
    FROM download_queue ORDER BY task_id")" "alice|http://host/a||1|512|video|t|0
alice|magnet:?xt=urn:x||1|4|video|t|0"
}

test_add_stores_files_under_their_own_names() {
  printf torrent >"$scratch/Ä b.TORRENT"
  printf nzb >"$scratch/c.nzb"
  expect_run 0 --user alice --json task add "$scratch/Ä b.TORRENT" "$scratch/c.nzb" --paused
  expect_equal "$(json "doc->0->>'filename' || ' ' || (doc->0->>'username')")" 'Ä b.TORRENT alice'
  expect_equal "$(query "SELECT filename, status, task_flags, convert_from(lo_get(file_oid), 'UTF8')
    FROM download_queue ORDER BY task_id")" $'Ä b.TORRENT|3|4|torrent\nc.nzb|3|2|nzb'
}

test_add_takes_a_name_for_one_task_only() {
  expect_run 0 --user alice task add --filename mine http://host/a
  expect_equal "$(query 'SELECT filename FROM download_queue')" mine
  refused 2 "--filename names one task" --user alice task add --filename mine http://a http://b
}

test_add_adds_nothing_when_one_source_is_bad() {
  refused 1 "gopher://x: neither a URL" --user alice task add http://host/a gopher://x
  refused 1 "$scratch/missing.nzb: no such file" --user alice task add http://a "$scratch/missing.nzb"
  mkdir "$scratch/folder.torrent"
  refused 1 "$scratch/folder.torrent: no such file" --user alice task add "$scratch/folder.torrent"
  refused 2 "a new task needs an owner" task add http://host/a
  refused 2 "SOURCE is required" --user alice task add
  expect_equal "$(query 'SELECT count(*) FROM download_queue')" 0
}

test_add_adds_nothing_when_the_database_refuses_one() {
  query "ALTER TABLE download_queue ADD CHECK (url <> 'http://b')"
  refused 1 "no task was added" --user alice task add http://a http://b
  expect_equal "$(query 'SELECT count(*) FROM download_queue')" 0
}

test_a_password_comes_from_a_file_and_is_never_printed() {
  echo secret1 >"$scratch/password"
  expect_run 0 --user alice --json task add http://a --password-file "$scratch/password"
  [[ $output$messages != *secret1* && $output != *unzip_password* ]] || fail "printed: $output"
  expect_run 0 --user alice task add http://b --password-file - <<<$'secret1\nmore'
  expect_equal "$(query 'SELECT DISTINCT unzip_password FROM download_queue')" secret1
  local command
  for command in 'show 1' 'show 1 --json' list 'list --json'; do
    # shellcheck disable=SC2086  # words of a command
    expect_run 0 task $command
    [[ $output != *secret1* ]] || fail "printed by $command: $output"
  done
  expect_run 0 task show 1 --json
  expect_equal "$(json "doc ? 'unzip_password'")" f
  expect_run 0 task show 1
  expect_contains "$output" $'\nunzip_password      (set)\n'
}

test_a_password_is_not_taken_from_the_command_line() {
  some_tasks
  refused 2 "every process sees a command line" task set 1 unzip_password=secret
  expect_run 0 task set 1 --password-file - <<<changed
  expect_equal "$(query 'SELECT unzip_password FROM download_queue WHERE task_id = 1')" changed
  refused 1 "no password can be read" task set 1 --password-file "$scratch/missing"
  refused 1 "no password can be read" task set 1 --password-file - </dev/null
}

test_list_shows_a_table() {
  some_tasks
  expect_run 0 --user ALICE task list
  expect_equal "$output" \
"ID  NAME               STATUS       PROGRESS                SIZE       RATE  TIME LEFT
 1  movie 100%         downloading  [#####-----]  50%  976.6 KiB   1000 B/s     8m 20s
 2  http://host/a.iso  waiting      [----------]   0%          -          -          -
 5  broken             broken-link  [#---------]  10%  976.6 KiB  2.0 KiB/s          -
 6  music              waiting      [----------]   0%  976.6 KiB          -          -"
  expect_equal "$messages" ''
  expect_run 0 task list --limit 1
  expect_equal "${output%%$'\n'*}" \
    "ID  USER   NAME        STATUS       PROGRESS                SIZE      RATE  TIME LEFT"
}

test_the_time_left_is_never_negative() {
  query "INSERT INTO download_queue (status, total_size, current_size, current_rate) VALUES
    (2, 1000000, 2000000, 1000),
    (2, 1000000, -9223372036854775808, 1000),
    (2, -1000000, -2000000, 1000),
    (2, -9223372036854775808, 1, 1000),
    (2, 9223372036854775807, 0, 1000),
    (2, 1000000, 0, -1000)"
  expect_run 0 task list
  expect_equal "$(sed '1d; s/.*  //' <<<"$output")" $'0s\n16m 40s\n-\n-\n106751991167d 7h\n-'
}

test_an_empty_list_is_no_failure() {
  expect_run 0 task list
  expect_equal "$output" "ID  USER  NAME  STATUS  PROGRESS  SIZE  RATE  TIME LEFT"
  expect_run 0 task list --json
  expect_equal "$output" '[]'
  some_tasks
  expect_equal "$(listed --offset 6)" ''
}

test_a_failure_is_no_empty_result() {
  query 'ALTER TABLE download_queue RENAME COLUMN task_id TO other'
  refused 1 "the database operation failed" task list
  refused_for_programs 1 server 42703 task list
  refused 1 "the database operation failed" task show 1
  refused 1 "the database operation failed" task remove 1
}

test_filters() {
  some_tasks
  expect_equal "$(listed --name ovie)" '1 3'
  expect_equal "$(listed --name '0%')" '1'
  expect_equal "$(listed --status 2 --status 5)" '1 3 4'
  expect_equal "$(listed --status waiting)" '2 6'
  expect_equal "$(listed --status failed)" '5'
  expect_equal "$(listed --not-status 2 --not-status waiting)" '4 5'
  expect_equal "$(listed --type bt --type http)" '1 2 5 6'
  expect_equal "$(listed --not-type bt --not-type http)" '3 4'
  expect_equal "$(listed --waiting-after 1000)" '4 6'
  expect_equal "$(listed --user alice --type nzb --status waiting)" '6'
}

test_orders_and_pages() {
  some_tasks
  expect_equal "$(listed)" '1 2 3 4 5 6'
  expect_equal "$(listed --descending)" '6 5 4 3 2 1'
  expect_equal "$(listed --sort-by progress)" '2 6 5 1 3 4'
  expect_equal "$(listed --sort-by PROGRESS --descending --limit 3)" '4 3 1'
  expect_equal "$(listed --sort-by timeleft --limit 2)" '3 1'
  expect_equal "$(listed --descending --sort-by task_id --offset 1 --limit 2)" '5 4'
  expect_equal "$(listed --sort-by Filename --user bob --descending)" '4 3'
  expect_equal "$(listed --limit 0)" ''
}

test_wrong_criteria_are_refused() {
  refused 2 '--sort-by: "nonsense" is neither' task list --sort-by nonsense
  refused 2 '--status: "nonsense" is no status' task list --status nonsense
  refused 2 '--type: nonsense not in' task list --type nonsense
  refused 2 '--limit: "-1" is no whole number' task list --limit -1
  refused 2 '--offset: "2147483648" is no whole number' task list --offset 2147483648
  refused 2 '--status excludes --not-status' task list --status 1 --not-status 2
  refused 2 '--type excludes --not-type' task list --type bt --not-type nzb
}

test_json_numbers_keep_all_their_digits() {
  query "INSERT INTO download_queue (total_size, current_size, file_oid)
    VALUES (9223372036854775807, 9007199254740993, -1)"
  expect_run 0 task show 1 --json
  expect_equal "$(json "jsonb_typeof(doc->'total_size') || ' ' || (doc->>'total_size')")" \
    'number 9223372036854775807'
  expect_equal "$(json "doc->>'current_size'")" 9007199254740993
  expect_equal "$(json "doc->>'file_oid'")" -1
  expect_equal "$(json '(SELECT count(*) FROM jsonb_object_keys(doc))')" 34  # all but the password
}

test_names_cannot_steer_the_terminal() {
  query "INSERT INTO download_queue (username, filename) VALUES
    ('u', E'a\\x1b[2J\\u009b\\nb'), ('u', '日本'), ('u', E'e\\u0301')"
  expect_run 0 --user u task list
  expect_equal "$(cut -c 1-27 <<<"$output" | sed -n 2p)" ' 1  a\x1b[2J\u{9b}\nb  0   '
  expect_equal "$(sed -n 3p <<<"$output")" \
    ' 2  日本               0       [----------]   0%     -     -          -'
  expect_equal "$(sed -n 4p <<<"$output")" \
    $' 3  e\u0301                  0       [----------]   0%     -     -          -'
  expect_run 0 task show 1
  expect_contains "$output" 'a\x1b[2J\u{9b}\nb'
  expect_run 0 task list --json
  expect_contains "$output" 'a\u001b[2J\u009b\nb'
  expect_equal "$(json "doc->0->>'filename'")" $'a\x1b[2J\u009b\nb'
}

test_show_is_readable() {
  query "INSERT INTO download_queue (username, status, total_size, total_upload, created_time,
      task_flags, file_oid, extra_data, current_rate)
    VALUES ('alice', 105, 1610612736, 10, 86400, 4, -1, '{\"a\": 1}', 2048)"
  TZ=UTC expect_run 0 task show 1
  local line
  for line in 'username            alice' 'status              105 (disk-full)' \
    'total_size          1.5 GiB (1610612736 bytes)' 'total_upload        10 B' \
    'created_time        1970-01-02 00:00:00 +0000' 'started_time        -' \
    'task_flags          4 (bt)' 'file_oid            4294967295' 'extra_data          {"a":1}' \
    'current_rate        2.0 KiB/s' unzip_password; do
    expect_contains $'\n'"$output"$'\n' $'\n'"$line"$'\n'
  done
  expect_equal "$(wc -l <<<"$output")" 35
}

test_set_writes_the_named_columns_only() {
  some_tasks
  local before
  before=$(query "SELECT to_jsonb(q) - 'status' - 'total_size' - 'filename' FROM download_queue q
    WHERE task_id = 1")
  expect_run 0 task set 1 status=3 total_size=9223372036854775807 'filename=a = "b\"'
  expect_equal "$output$messages" ''
  expect_equal "$(query 'SELECT status, total_size, filename FROM download_queue WHERE task_id = 1')" \
    '3|9223372036854775807|a = "b\"'
  expect_equal "$(query "SELECT to_jsonb(q) - 'status' - 'total_size' - 'filename'
    FROM download_queue q WHERE task_id = 1")" "$before"
  expect_equal "$(query 'SELECT count(*) FROM download_queue WHERE status = 3')" 1
}

test_set_reaches_the_ends_of_the_ranges() {
  some_tasks
  expect_run 0 task set 1 pid=-2147483648 current_size=-9223372036854775808 url=
  expect_equal "$(query 'SELECT pid, current_size, url FROM download_queue WHERE task_id = 1')" \
    '-2147483648|-9223372036854775808|'
  local value
  for value in 2147483648 -2147483649 1.5 0x10 '' ' 1' 1k +1; do
    refused 2 "pid: \"$value\" is no whole number of 32 bits" task set 1 "pid=$value"
  done
  refused 2 'total_size: "9223372036854775808" is no' task set 1 total_size=9223372036854775808
}

test_set_refuses_what_cannot_be_set() {
  some_tasks
  refused 2 'a task has no column "nonsense"' task set 1 status=3 nonsense=1
  refused 2 'task_id is the key' task set 1 task_id=9
  refused 2 '"status" is not of the form KEY=VALUE' task set 1 status
  refused 2 'nothing to set' task set 1
  refused 2 'filename: not UTF-8' task set 1 $'filename=\xff'
  refused 3 'no task 99' task set 99 status=3
  expect_equal "$(query 'SELECT count(*) FROM download_queue WHERE status = 3')" 0
}

test_extra_data_reads_back_as_it_was_set() {
  some_tasks
  local value
  for value in '{"a": [1, "zwei", {"drei": null}], "ü": 1.5}' '"text"' 7 true null '{}' '[]'; do
    expect_run 0 task set 1 "extra_data=$value"
    expect_equal "$(query 'SELECT extra_data FROM download_queue WHERE task_id = 1')" "$value"
    expect_run 0 task show 1 --json
    expect_equal "$(json "doc->'extra_data' = '$value'::jsonb")" t
  done
  for value in '{"a":' '{"a":1} x' '' '[1,]' "$(printf '[%.0s' {1..2000})"; do
    refused 2 'extra_data: no JSON text' task set 1 "extra_data=$value"
  done
  for value in '{"a": "b\"c"}' '"b\\c"' '"\u00fc"' $'{"a":\n1}'; do
    refused 2 'extra_data: not to be kept' task set 1 "extra_data=$value"
  done
}

test_remove_names_the_missing_and_removes_the_rest() {
  some_tasks
  expect_run 0 task remove 1
  expect_equal "$output$messages" ''
  refused 3 'no tasks 77, 1' task remove 77 2 1 3
  expect_equal "$(listed)" '4 5 6'
  refused 3 'no task 4 of user alice' --user alice task remove 4 5
  expect_equal "$(listed)" '4 6'
}

# Reading task 1 ends the session, as a server that goes down would.
test_nothing_is_done_after_the_connection_is_lost() {
  some_tasks
  query 'ALTER TABLE download_queue RENAME TO kept'
  query 'CREATE VIEW download_queue AS SELECT * FROM kept
    WHERE task_id <> 1 OR pg_terminate_backend(pg_backend_pid())'
  refused 5 "the database operation failed" task remove 1 2
  expect_equal "$(query 'SELECT count(*) FROM kept')" 6
}

test_no_task_is_restarted_after_the_connection_is_lost() {
  parked_tasks
  query 'CREATE FUNCTION hang_up() RETURNS trigger LANGUAGE plpgsql AS
    $$ BEGIN PERFORM pg_terminate_backend(pg_backend_pid()); RETURN new; END $$'
  query 'CREATE TRIGGER hang_up BEFORE UPDATE ON task_plugin
    FOR EACH ROW WHEN (old.task_id IN (1, 3)) EXECUTE FUNCTION hang_up()'
  refused 5 'the database operation failed' task restart captcha --all
  refused 5 'the database operation failed' task restart captcha 1
  refused 5 'the database operation failed' task restart host --all
  expect_equal "$(parked)" '15+ 15+ 9+ 9+ 2+'
}

test_users_are_kept_apart() {
  some_tasks
  query "UPDATE download_queue SET file_oid = lo_from_bytea(0, 'x') WHERE task_id = 3"
  echo torrent >"$scratch/a.torrent"
  expect_equal "$(listed --user Alice)" '1 2 5 6'
  expect_equal "$(listed --user bob)" '3 4'
  local before
  before=$(query 'SELECT q FROM download_queue q WHERE task_id = 3')
  refused 3 'no task 3 of user alice' --user alice task show 3
  refused 3 'no task 3 of user alice' --user alice task set 3 status=3
  refused 3 'no task 3 of user alice' --user alice task remove 3
  refused 3 'no task 3 of user alice' --user alice task import 3 "$scratch/a.torrent"
  refused 3 'no task 3 of user alice' --user alice task export 3 "$scratch/stolen"
  expect_equal "$(query 'SELECT q FROM download_queue q WHERE task_id = 3')" "$before"
  [[ ! -e $scratch/stolen ]] || fail "exported all the same"
}

test_a_user_cannot_take_what_is_anothers() {
  some_tasks
  query "UPDATE download_queue SET file_oid = lo_from_bytea(0, 'x') WHERE task_id = 3"
  local before
  before=$(query 'SELECT q FROM download_queue q WHERE task_id = 1')
  refused 4 "refused: a column of the row is not for its user to write" \
    --user alice task set 1 file_oid="$(query 'SELECT file_oid FROM download_queue WHERE task_id = 3')"
  refused 4 'refused: the row would belong to another user' --user alice task set 1 username=bob
  expect_equal "$(query 'SELECT q FROM download_queue q WHERE task_id = 1')" "$before"
}

test_a_file_comes_out_as_it_went_in() {
  head -c 1000000 /dev/urandom >"$scratch/a.torrent"
  head -c 3000 /dev/urandom >"$scratch/b.torrent"
  expect_run 0 --user alice task add "$scratch/a.torrent"
  expect_run 0 task export 1 "$scratch/out"
  cmp "$scratch/a.torrent" "$scratch/out" || fail "the export differs"
  expect_run 0 --user alice task import 1 "$scratch/b.torrent"
  expect_run 0 task export 1 "$scratch/out"
  expect_equal "$output$messages" ''
  cmp "$scratch/b.torrent" "$scratch/out" || fail "the export of the import differs"
}

test_a_file_named_like_a_command_is_a_file() {
  cd "$scratch" || return
  echo torrent >list
  some_tasks
  expect_run 0 task import 1 list
  expect_run 0 task export 1 show
  cmp list show || fail "the export differs"
}

test_files_that_cannot_be_had_are_failures() {
  some_tasks
  refused 1 'no file is stored with task 1' task export 1 "$scratch/out"
  refused 1 "$scratch/missing could not be stored: Failed to open file: No such file" \
    task import 1 "$scratch/missing"
  refused 1 "/dev/zero could not be stored: Failed to open file: not a regular file" task import 1 /dev/zero
  refused_for_programs 1 failed '' task import 1 ''
  echo torrent >"$scratch/a"
  expect_run 0 task import 1 "$scratch/a"
  refused 1 "$scratch/no/out could not be written: Failed to create file: No such file" \
    task export 1 "$scratch/no/out"
  refused 1 'could not be written' task export 1 ''
  query 'SELECT lo_unlink(file_oid) FROM download_queue WHERE task_id = 1' >"$scratch/unlinked"
  refused_for_programs 1 server 42704 task export 1 "$scratch/out"
  [[ ! -e $scratch/out ]] || fail "a file was left"
}

# Tasks of alice and bob that wait for a captcha (1, 2) or a file host (3, 4), and one that does for
# neither (5); all with what their plug-ins keep.
parked_tasks() {
  query "INSERT INTO download_queue (username, status) VALUES
    ('alice', 15), ('bob', 15), ('alice', 9), ('bob', 9), ('alice', 2)"
  query "INSERT INTO task_plugin (task_id, attributes) SELECT task_id, '{}' FROM download_queue"
}

# parked: the status of each task, and whether its plug-in keeps something.
parked() {
  query "SELECT string_agg(status || CASE attributes WHEN 'null' THEN '-' ELSE '+' END, ' '
    ORDER BY task_id) FROM download_queue JOIN task_plugin USING (task_id)"
}

test_a_captcha_restart_clears_what_the_plugin_kept() {
  parked_tasks
  expect_run 0 --user alice task restart captcha 1
  expect_equal "$output$messages" ''
  expect_equal "$(parked)" '1- 15+ 9+ 9+ 2+'
  expect_run 0 task restart captcha 5
  expect_equal "$(parked)" '1- 15+ 9+ 9+ 1-'
}

test_a_host_restart_leaves_what_the_plugin_kept() {
  parked_tasks
  expect_run 0 task restart host 3
  expect_equal "$output$messages" ''
  expect_equal "$(parked)" '15+ 15+ 1+ 9+ 2+'
  refused 1 'task 5 does not wait for a file host' task restart host 5
  refused 1 'task 1 does not wait for a file host' task restart host 1
}

test_all_parked_tasks_are_restarted_and_named() {
  parked_tasks
  expect_run 0 task restart captcha --all
  expect_equal "$output" $'1\n2'
  expect_run 0 --json task restart host --all
  expect_equal "$(json "doc = '[3, 4]'")" t
  expect_equal "$(parked)" '1- 1- 1- 1- 2+'
  expect_run 0 task restart host --all
  expect_equal "$output" ''
  expect_run 0 --json task restart captcha --all
  expect_equal "$output" '[]'
}

test_restarts_keep_users_apart() {
  parked_tasks
  refused 3 'no task 2 of user alice' --user alice task restart captcha 2
  refused 3 'no task 4 of user alice' --user alice task restart host 4
  expect_run 0 --user alice task restart captcha --all
  expect_equal "$output" 1
  expect_run 0 --user alice task restart host --all
  expect_equal "$output" 3
  expect_equal "$(parked)" '1- 15+ 1- 9+ 2+'
}

test_a_restart_needs_a_task_or_all() {
  local kind
  for kind in captcha host; do
    refused 2 'give the ID of a task, or --all' task restart "$kind"
    refused 2 'ID excludes --all' task restart "$kind" 1 --all
    refused 2 'ID: "0" is no whole number' task restart "$kind" 0
    refused 3 'no task 9' task restart "$kind" 9
  done
}

test_a_restart_that_fails_changes_nothing() {
  parked_tasks
  query 'ALTER TABLE task_plugin RENAME COLUMN attributes TO other'
  refused 1 'the database operation failed' task restart captcha 1
  refused 1 'the database operation failed' task restart captcha --all
  refused 1 'the database operation failed' task restart host --all
  expect_equal "$(query 'SELECT count(*) FROM download_queue WHERE status IN (9, 15)')" 4
}

test_a_count_is_that_of_all_pages() {
  some_tasks
  expect_run 0 task list --count --status 2 --limit 1
  expect_equal "$output" 2
}

run_test "$@"
