#!/usr/bin/env bash
# Tests of the group "notification" of dorvdlctl, in the private server that runs this script.
. "$(dirname "$0")/../support/dorvdlctl_test.sh"

# A task of alice (1) and one of bob (2), each with notifications.
some_notifications() {
  query "INSERT INTO download_queue (username) VALUES ('alice'), ('bob')"
  query "INSERT INTO notification (task_id, type, create_time) VALUES
    (1, 'complete', 86400), (2, 'failed', 0), (1, 'captcha', 0)"
}

# listed COMMAND ARGUMENT...: the ids that `notification COMMAND` prints, in order.
listed() {
  listed_keys id notification "$@"
}

test_a_notification_is_added_shown_changed_and_removed() {
  query "INSERT INTO download_queue (username) VALUES ('alice')"
  expect_run 0 --user alice notification add task_id=1 type=complete create_time=4102444800
  expect_equal "$output" 1
  expect_run 0 notification set 1 "type=it's"
  expect_equal "$(query 'TABLE notification')" "1|1|it's|4102444800"
  TZ=UTC expect_run 0 notification show 1
  expect_equal "$output" \
"id                  1
task_id             1
type                it's
create_time         2100-01-01 00:00:00 +0000"
  expect_run 0 notification remove 1
  refused 3 'no notification 1' notification show 1
  refused 2 'a new notification needs task_id=ID' notification add type=failed
  refused 3 'no task 9' notification add task_id=9
}

test_lists() {
  some_notifications
  TZ=UTC expect_run 0 notification list --limit 2
  expect_equal "$output" \
'ID  TASK ID  TYPE                    CREATE TIME
 1        1  complete  1970-01-02 00:00:00 +0000
 2        2  failed                            -'
  expect_equal "$(listed list --descending)" '3 2 1'
  expect_equal "$(listed view)" '1 2 3'
  query "CREATE OR REPLACE VIEW notification_view AS SELECT * FROM notification WHERE type <> 'failed'
    ORDER BY id DESC"
  expect_equal "$(listed view)" '1 3'
}

test_clear_until_removes_up_to_an_id() {
  some_notifications
  expect_run 0 notification clear-until 2
  expect_equal "$(listed list)" '3'
}

test_clear_until_leaves_the_notifications_of_others() {
  some_notifications
  expect_run 0 --user ALICE notification clear-until 2
  expect_equal "$output$messages" ''
  expect_equal "$(listed list)" '2 3'
}

test_users_reach_the_notifications_of_their_tasks() {
  some_notifications
  expect_equal "$(listed list --user ALICE)" '1 3'
  expect_equal "$(listed view --user bob)" '2'
  refused 3 'no notification 2 of user alice' --user alice notification show 2
  refused 3 'no notification 2 of user alice' --user alice notification set 2 type=x
  refused 3 'no notification 2 of user alice' --user alice notification remove 2
  refused 3 'no task 2 of user alice' --user alice notification add task_id=2
  refused 3 'no task 2 of user alice' --user alice notification set 1 task_id=2
  expect_run 0 --user alice notification list --count
  expect_equal "$output" 2
  expect_equal "$(query 'SELECT id, type FROM notification WHERE task_id = 2')" '2|failed'
  expect_run 0 --user alice notification remove 1
  query "DELETE FROM download_queue WHERE username = 'alice'"
  expect_equal "$(listed list --user alice)" ''
}

test_a_failure_is_no_empty_list() {
  query 'DROP VIEW notification_view'
  refused 1 'the database operation failed' notification view
}

run_test "$@"
