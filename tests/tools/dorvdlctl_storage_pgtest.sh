#!/usr/bin/env bash
# Tests of the commands of dorvdlctl that look at the machine: space, quota, task clean, task notify and
# notification inbox; among the package's paths, in the private server that runs this script.
. "$(dirname "$0")/../support/dorvdlctl_test.sh"

# Each test runs among the package's paths, on a machine of its own so to speak.
if [[ ! ${among_package_paths-} ]]; then
  among_package_paths=1 exec "$checkout/tools/with-package-paths" "$0" "$@"
fi

readonly folder=/var/services/download

# A task of alice (1) and one of bob (2), which has failed for want of space.
some_tasks() {
  query "INSERT INTO download_queue (username, filename, destination, task_flags, status, created_time)
    VALUES ('alice', 'film.mkv', 'video', 4, 5, 86400), ('bob', 'lectures.nzb', 'home', 2, 105, 86400)"
}

test_space_is_shown() {
  local target
  target=$(readlink "$folder")
  expect_run 0 --json space
  expect_equal "$(json "doc - 'free'")" \
    "{\"enough\": true, \"folder\": \"$target\", \"volume\": \"$target\"}"
  expect_equal "$(json "(doc->>'free')::bigint")" 16777216
  expect_run 0 space
  expect_contains "$output" "free                16.0 MiB"
  expect_contains "$output" "enough              yes"
}

test_too_little_space_is_an_answer() {
  mount -o remount,size=1020k "$folder/."
  expect_run 0 space
  expect_contains "$output" "enough              no"
}

test_without_a_usable_folder_there_is_no_space() {
  mount -o remount,ro "$folder/."
  refused 1 'there is no download folder that can be used' space
  rm "$folder"
  refused 1 'there is no download folder that can be used' space
  refused 1 'there is no download folder that can be used' task clean 7
  refused 1 'there is no download folder that can be used' quota alice 1
}

test_a_quota_is_asked_for() {
  expect_run 0 quota alice 18446744073709551615
  expect_equal "$output" enough
  expect_run 0 --json quota alice 0 --path /
  expect_equal "$output" true
  refused 1 'this machine has no user mallory' quota mallory 5
  refused 1 'the quota of alice does not allow 5 bytes more at /nowhere, or cannot be asked for' \
    quota alice 5 --path /nowhere
  local bytes
  for bytes in -1 18446744073709551616 1k ''; do
    refused 2 "\"$bytes\" is no number of bytes" quota alice "$bytes"
  done
}

test_clean_removes_the_folders_of_tasks() {
  some_tasks
  mkdir -p $folder/{1,2,12}/deep
  touch $folder/{1,2}/file "$folder/1 2"
  expect_run 0 task clean 1 77
  expect_equal "$(cd $folder && echo *)" '1 2 12 2'
  refused 3 'no task 2 of user alice' --user alice task clean 2
  expect_equal "$(cd $folder && echo *)" '1 2 12 2'
  expect_run 0 --user Bob task clean 2
  expect_equal "$(cd $folder && echo *)" '1 2 12'
  expect_equal "$(query 'SELECT count(*) FROM download_queue')" 2
  refused 2 '' task clean 0
  refused 2 '' task clean ../etc
}

test_when_one_task_is_anothers_nothing_is_cleaned() {
  some_tasks
  mkdir $folder/1
  refused 3 'no task 2 of user alice' --user alice task clean 1 2
  [[ -d $folder/1 ]] || fail "the user's own was removed"
}

test_notifications_reach_the_inbox_in_the_users_language() {
  some_tasks
  expect_run 0 task notify 1 complete
  expect_equal "$output$messages" ''
  expect_run 0 task notify 2 failed
  TZ=UTC expect_run 0 --json notification inbox
  expect_equal "$(json "jsonb_array_length(doc)")" 2
  expect_equal "$(json "doc->0->>'user'")" alice
  expect_equal "$(json "doc->0->>'title'")" 'Download complete'
  expect_equal "$(json "doc->0->'placeholders'->>'%SHARE%'")" video
  expect_equal "$(json "doc->1->>'event'")" DownloadFailed
  expect_equal "$(json "doc->1->>'title'")" 'Download fehlgeschlagen'
  expect_run 0 --user ALICE notification inbox
  expect_contains "$output" 'film.mkv (BT)'
  [[ $output != *lectures* ]] || fail "a notification of another user was shown"
}

test_the_inbox_is_empty_at_first_and_kept_from_others() {
  expect_run 0 notification inbox --json
  expect_equal "$output" '[]'
  mkdir -m 0755 /var/spool/tarnwick/notifications
  refused 1 'the notifications cannot be read: Operation not permitted' notification inbox
}

test_a_notification_that_cannot_be_sent_is_a_failure() {
  some_tasks
  query "INSERT INTO download_queue (username) VALUES ('mallory')"
  refused 1 'the notification was not sent' task notify 3 complete
  expect_run 1 --verbose task notify 3 complete
  expect_contains "$messages" 'dorvdlctl: record/task:'
  refused 3 'no task 1 of user bob' --user bob task notify 1 complete
  refused 2 '' task notify 1 finished
  rm -r /usr/dorv/dorvman
  refused 1 'the notification was not sent' task notify 1 captcha
}

test_each_command_explains_itself() {
  local command
  for command in space quota 'task clean' 'task notify' 'notification inbox'; do
    # shellcheck disable=SC2086  # two words
    help_of $command
  done
}

run_test "$@"
