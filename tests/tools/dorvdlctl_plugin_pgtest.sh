#!/usr/bin/env bash
# Tests of the group "plugin" of dorvdlctl, in the private server that runs this script.
. "$(dirname "$0")/../support/dorvdlctl_test.sh"

# Tasks of alice (1, 3) and bob (2), each with a plug-in's state; two of those run.
some_plugins() {
  query "INSERT INTO download_queue (username) VALUES ('alice'), ('bob'), ('alice')"
  query "INSERT INTO task_plugin (task_id, current_plugin, pid, attributes) VALUES
    (1, 'unzip', 100, '{\"a\": [1, \"ü\"]}'), (2, 'captcha', 200, NULL), (3, 'done', -1, 'no json')"
}

# listed COMMAND ARGUMENT...: the task ids that `plugin COMMAND` prints, in order.
listed() {
  listed_keys task_id plugin "$@"
}

test_a_state_is_added_shown_changed_and_removed() {
  query "INSERT INTO download_queue (username) VALUES ('alice')"
  expect_run 0 --user alice plugin add 1 pid=7 current_plugin=unzip 'process={"step": 1}'
  expect_equal "$output" 1
  refused 1 'plug-in 1 exists already' plugin add 1
  expect_run 0 plugin set 1 'result=["ä", null]' pid=0
  expect_equal "$(query 'TABLE task_plugin')" '1|{"step": 1}|unzip||0|||["ä", null]|0'
  expect_run 0 plugin show 1 --json
  expect_equal "$(json "doc->'process' = '{\"step\": 1}' AND doc->'result' = '[\"ä\", null]'
    AND doc->'attributes' = 'null'")" t
  expect_run 0 plugin show 1
  expect_contains "$output" $'process             {"step":1}\ncurrent_plugin      unzip'
  expect_run 0 plugin remove 1
  refused 3 'no plug-in 1' plugin show 1
  refused 3 'no task 9' plugin add 9
  refused 2 'TASK is required' plugin add
}

test_text_that_is_no_json_is_refused() {
  some_plugins
  local column
  for column in process attributes response result; do
    refused 2 "$column: no JSON text" plugin set 1 "$column={"
    refused 2 "$column: no JSON text" plugin set 1 "$column="
  done
  refused 2 'task_id is the key' plugin set 1 task_id=2
  expect_equal "$(query 'SELECT attributes FROM task_plugin WHERE task_id = 1')" '{"a": [1, "ü"]}'
}

test_stored_text_that_is_no_json_shows_as_null() {
  some_plugins
  expect_run 0 plugin show 3 --json
  expect_equal "$(json "doc->'attributes'")" null
}

test_lists() {
  some_plugins
  expect_equal "$(listed list)" '1 2 3'
  expect_equal "$(listed list --sort-by current_plugin --limit 2)" '2 3'
  expect_equal "$(listed active --user alice)" '1'
  expect_run 0 plugin active --user bob
  expect_equal "$output" \
'TASK ID  PID  CURRENT PLUGIN  CURRENT TYPE  CURRENT STATUS
      2  200  captcha                                    0'
  expect_run 0 plugin active --json
  expect_equal "$(json "jsonb_array_length(doc)")" 2
}

test_users_reach_the_states_of_their_tasks() {
  some_plugins
  expect_equal "$(listed list --user ALICE)" '1 3'
  refused 3 'no plug-in 2 of user alice' --user alice plugin show 2
  refused 3 'no plug-in 2 of user alice' --user alice plugin set 2 pid=1
  refused 3 'no plug-in 2 of user alice' --user alice plugin remove 2
  expect_run 0 --user alice plugin list --count
  expect_equal "$output" 2
  expect_equal "$(query 'SELECT pid FROM task_plugin WHERE task_id = 2')" 200
  query 'DELETE FROM task_plugin WHERE task_id = 2'
  refused 3 'no task 2 of user alice' --user alice plugin add 2
  expect_equal "$(query 'SELECT count(*) FROM task_plugin WHERE task_id = 2')" 0
  expect_run 0 --user alice plugin set 1 pid=0
  expect_run 0 --user alice plugin remove 1
  expect_equal "$(listed list)" 3
}

test_the_state_of_a_task_that_is_gone_can_be_changed() {
  some_plugins
  query 'DELETE FROM download_queue'
  expect_run 0 plugin set 1 pid=0
  expect_run 0 plugin remove 1
  expect_equal "$(listed list)" '2 3'
}

run_test "$@"
