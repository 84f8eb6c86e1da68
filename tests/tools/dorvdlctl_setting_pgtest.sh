#!/usr/bin/env bash
# Tests of the group "setting" of dorvdlctl, in the private server that runs this script.
. "$(dirname "$0")/../support/dorvdlctl_test.sh"

some_settings() {
  query "INSERT INTO user_setting VALUES ('alice', 1026, 'video', 0, 1, 'watch', 0),
    ('Bob', 1027, '', 1, 0, '', 1), ('it''s', 0, '', 0, 0, '', 0)"
}

# listed ARGUMENT...: the names that `setting list` prints, in order.
listed() {
  listed_keys username setting list "$@"
}

test_settings_are_added_shown_changed_and_removed() {
  expect_run 0 setting add "it's" uid=1026 user_disabled=yes
  expect_equal "$output" "it's"
  refused 1 "setting it's exists already" setting add "it's"
  expect_run 0 setting set "it's" share_folder=video enable_watchffolder=true
  expect_equal "$(query 'TABLE user_setting')" "it's|1026|video|1|0||1"
  expect_run 0 setting show "it's"
  expect_equal "$output" \
"username            it's
uid                 1026
share_folder        video
user_disabled       yes
delete_watchtorrent no
watchfolder
enable_watchffolder yes"
  expect_run 0 setting show "it's" --json
  expect_equal "$(json "doc->'user_disabled' = 'true' AND doc->'uid' = '1026'")" t
  expect_run 0 setting remove "it's"
  refused 3 "no setting it's" setting show "it's"
}

test_wrong_usage_is_refused() {
  refused 2 'NAME is required' setting show
  refused 2 'NAME: must not be empty' setting add ''
  refused 2 'NAME: not UTF-8' setting add $'\xff'
  refused 2 'username is the key' setting set alice username=bob
  refused 2 'a setting has no column "enable_watchfolder"' setting set alice enable_watchfolder=yes
}

test_lists() {
  some_settings
  expect_equal "$(listed)" "Bob alice it's"
  expect_equal "$(listed --sort-by uid --descending --limit 2)" 'Bob alice'
  expect_run 0 setting list --count
  expect_equal "$output" 3
  expect_run 0 setting list --user ALICE
  expect_equal "$output" \
'USERNAME   UID  USER DISABLED  SHARE FOLDER  DELETE WATCHTORRENT  WATCHFOLDER  ENABLE WATCHFFOLDER
alice     1026  no             video         yes                  watch        no'
}

test_users_reach_their_own_settings() {
  some_settings
  expect_equal "$(listed --user bob)" 'Bob'
  expect_run 0 --user bob setting set Bob uid=5
  refused 3 'no setting alice of user bob' --user bob setting show alice
  refused 3 'no setting alice of user bob' --user bob setting set alice uid=5
  refused 3 'no settings alice, carol of user bob' --user bob setting remove alice carol Bob
  refused 2 'user bob cannot add settings of user carol' --user bob setting add carol
  expect_run 0 --user CAROL setting add carol
  expect_equal "$(query 'SELECT username, uid FROM user_setting ORDER BY 1')" \
    $'alice|1026\ncarol|0\nit\'s|0'
}

test_names_are_no_statement_text() {
  some_settings
  refused 3 "no setting x' OR true --" setting remove "x' OR true --"
  expect_equal "$(query 'SELECT count(*) FROM user_setting')" 3
}

test_a_failure_is_no_empty_result() {
  query 'ALTER TABLE user_setting RENAME TO other'
  local command
  for command in list 'list --count' 'show alice' 'set alice uid=1' 'remove alice' 'add alice'; do
    # shellcheck disable=SC2086  # words of a command
    refused 1 'the database operation failed' setting $command
  done
}

run_test "$@"
