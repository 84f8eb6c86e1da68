#!/usr/bin/env bash
# Tests of the group "thumbnail" of dorvdlctl, in the private server that runs this script.
. "$(dirname "$0")/../support/dorvdlctl_test.sh"

# A task of alice (1) and one of bob (2), each with pictures.
some_thumbnails() {
  query "INSERT INTO download_queue (username) VALUES ('alice'), ('bob')"
  query "INSERT INTO thumbnail (task_id, file_index, thumbnail_index, thumbnail_filename) VALUES
    (1, 10, 0, 'a.jpg'), (1, 10, 1, 'b.jpg'), (2, 0, 0, 'c.jpg'), (1, 2, 0, 'd.jpg')"
}

# listed ARGUMENT...: the ids that `thumbnail list` prints, in order.
listed() {
  listed_keys thumbnail_id thumbnail list "$@"
}

test_a_thumbnail_is_added_shown_changed_and_removed() {
  query "INSERT INTO download_queue (username) VALUES ('alice')"
  expect_run 0 --user alice thumbnail add task_id=1 file_index=3 create_time=4102444800
  expect_equal "$output" 1
  expect_run 0 thumbnail set 1 'thumbnail_filename=ä=b.jpg' thumbnail_second=90
  expect_equal "$(query 'TABLE thumbnail')" '1|1|3|0|90|ä=b.jpg|4102444800'
  TZ=UTC expect_run 0 thumbnail show 1
  expect_contains "$output" 'create_time         2100-01-01 00:00:00 +0000'
  expect_run 0 thumbnail show 1 --json
  expect_equal "$(json "doc->>'create_time'")" 4102444800
  expect_run 0 thumbnail remove 1
  refused 3 'no thumbnail 1' thumbnail remove 1
  refused 2 'a new thumbnail needs task_id=ID' thumbnail add file_index=3
  refused 3 'no task 9' thumbnail add task_id=9
}

test_criteria() {
  some_thumbnails
  expect_equal "$(listed)" '1 2 3 4'
  expect_equal "$(listed --task 1)" '1 2 4'
  expect_equal "$(listed --file 10 --descending)" '2 1'
  expect_equal "$(listed --task 2 --file 0)" '3'
  expect_run 0 thumbnail list --task 1 --count
  expect_equal "$output" 3
}

test_files_are_listed_once_and_in_order() {
  some_thumbnails
  expect_run 0 thumbnail files 1
  expect_equal "$output" $'2\n10'
  expect_run 0 --json --user alice thumbnail files 1
  expect_equal "$(json "doc = '[2, 10]'")" t
  expect_run 0 thumbnail files 9
  expect_equal "$output" ''
}

test_users_reach_the_thumbnails_of_their_tasks() {
  some_thumbnails
  expect_equal "$(listed --user ALICE)" '1 2 4'
  expect_equal "$(listed --user carol)" ''
  refused 3 'no thumbnail 3 of user alice' --user alice thumbnail show 3
  refused 3 'no thumbnail 3 of user alice' --user alice thumbnail set 3 file_index=1
  refused 3 'no thumbnail 3 of user alice' --user alice thumbnail remove 3
  refused 3 'no task 2 of user alice' --user alice thumbnail add task_id=2
  refused 3 'no task 2 of user alice' --user alice thumbnail files 2
  refused 3 'no task 2 of user alice' --user alice thumbnail set 1 task_id=2
  expect_run 0 --user alice thumbnail list --count
  expect_equal "$output" 3
  expect_equal "$(query 'SELECT thumbnail_id, file_index FROM thumbnail WHERE task_id = 2')" '3|0'
  expect_run 0 --user alice thumbnail remove 1
  query "DELETE FROM download_queue WHERE username = 'alice'"
  expect_equal "$(listed --user ALICE)" ''
  expect_equal "$(listed)" '2 3 4'
}

run_test "$@"
