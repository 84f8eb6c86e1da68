#!/usr/bin/env bash
# Tests of examples/list_request.cpp, in the private server that runs this script.
. "$(dirname "$0")/../support/examples_test.sh"

# request STATUS KIND USER REQUEST: hands the request, a message in protobuf's text form, to the
# handler; leaves its streams in `output` and the file "messages".
request() {
  local status=0
  protoc -I "$checkout/proto" --encode="dorvdl.rpc.proto.$2.ListRequest" \
    "$checkout/proto/dorvdl/proto/list_request/$2.proto" <<<"$4" >bytes
  output=$(list_request_example "$2" "$3" <bytes 2>messages) || status=$?
  ((status == $1)) || fail "exit status $status instead of $1: $output"$'\n'"$(<messages)"
}

# answers STATUS KIND USER REQUEST ANSWER
answers() {
  request "${@:1:4}"
  expect_equal "$output" "$5"
}

refusal() {
  printf '{"error":"%s","success":false}' "$1"
}

empty='{"items":[],"success":true,"total":0}'
failed=$(refusal 'the list cannot be made')

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
  answers 0 rss_item alice 'feed_id: 11 title_like: "x"' "$empty"
}

test_list_request_shows_all_of_the_users_when_no_parent_is_named() {
  two_users
  answers 0 rss_filter bob '' '{"items":[{"destination":"","enable":true,"feed_id":12,"id":22,"is_regex":false,"match":"b","name":"","not_match":""}],"success":true,"total":1}'
  answers 0 thumbnail bob 'file_index: 3' '{"items":[{"create_time":0,"file_index":3,"task_id":62,"thumbnail_filename":"","thumbnail_id":82,"thumbnail_index":0,"thumbnail_second":0}],"success":true,"total":1}'
  request 0 rss_item alice 'common { limit: 1 }'
  expect_contains "$output" '}],"success":true,"total":3}'
}

test_list_request_keeps_the_rows_of_others() {
  two_users
  answers 0 rss_filter bob 'feed_id: 11' "$empty"
  answers 0 rss_item bob 'feed_id: 11' "$empty"
  answers 0 thumbnail bob 'task_id: 61' "$empty"
  local kind
  for kind in task rss_feed rss_filter rss_item thumbnail; do
    answers 0 "$kind" carol '' "$empty"
    answers 1 "$kind" '' '' "$failed"
    expect_contains "$(<messages)" "list_request: a user's controller has no user"
  done
}

test_list_request_refuses_what_is_no_request() {
  expect_status 1 list_request_example rss_feed alice < <(printf '\x0a\xff')
  expect_equal "$output" "$(refusal 'these bytes are no list request')"
  answers 1 common alice '' "$(refusal 'no such kind of rows')"
}

test_list_request_tells_a_failed_list_from_an_empty_one() {
  two_users
  answers 1 rss_item alice 'feed_id: 11 title_regex: "("' "$failed"
  expect_equal "$(<messages)" 'list_request (2201B)'
  answers 1 task alice 'common { sort_by: "no_column" }' "$failed"
  answers 1 task alice 'common { sort_by: "no column" }' "$failed"
  answers 1 task alice 'filename: "a\000b"' "$failed"
  query "ALTER TABLE rss_feed RENAME TO elsewhere"
  answers 1 rss_item alice 'feed_id: 11' "$failed"
  expect_equal "$(<messages)" 'list_request: relation "rss_feed" does not exist (42P01)'
}

test_list_request_says_nothing_about_the_server() {
  export PGPORT=1
  local answer
  answer=$(list_request_example task alice 2>messages </dev/null) && fail "succeeded"
  expect_equal "$answer" "$(refusal 'the database cannot be used')"
  expect_contains "$(<messages)" "list_request: "
}

run_test "$@"
