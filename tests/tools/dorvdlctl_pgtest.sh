#!/usr/bin/env bash
# Tests of what holds for all commands of dorvdlctl, in the private server that runs this script.
. "$(dirname "$0")/../support/dorvdlctl_test.sh"

test_help_and_version_go_to_the_output() {
  expect_run 0 --help
  expect_contains "$output" "Usage: dorvdlctl [OPTIONS] COMMAND"
  expect_contains "$output" "Exit status: 0 done, 1 the operation failed, 2 wrong usage."
  expect_equal "$messages" ''
  expect_run 0 --version
  expect_contains "$output" "dorvdlctl 0."
}

# commands_in GROUP...: the commands that the help of a group lists; those of the program for none.
commands_in() {
  expect_run 0 "$@" --help
  sed -n '/^Commands:/,/^$/s/^  \([a-z-]*\) .*/\1/p' <<<"$output" | paste -sd ' '
}

test_each_command_explains_itself() {
  local line group command
  while read -r line; do
    read -ra group <<<"${line%%:*}"
    expect_equal "${group[*]}: $(commands_in "${group[@]}")" "$line"
    for command in ${line#*: }; do
      [[ -n $(commands_in "${group[@]}" "$command") ]] || help_of "${group[@]}" "$command"
    done
  done <<'TEXT'
: task feed filter item thumbnail plugin notification setting space quota
task: add list show set remove import export restart clean notify
task restart: captcha host
feed: list show add set remove
filter: list show add set remove test
item: list show add set remove import seen unseen clear
thumbnail: list show add set remove files
plugin: list show add set remove active
notification: list show add set remove view clear-until inbox
setting: list show add set remove
TEXT
}

test_help_names_the_default_order() {
  expect_run 0 thumbnail list --help
  expect_contains "$output" 'default: thumbnail_id'
}

test_wrong_usage_exits_with_2() {
  refused 2 "A subcommand is required"
  refused 2 "A subcommand is required" task
  refused 2 "not understood: tsak" tsak list
  refused 2 "not understood: nonsense" task nonsense
  refused 2 "The following argument" task list --nonsense
  refused 2 "--user: must not be empty" --user '' task list
  refused 2 "--user: not UTF-8" --user $'\xff' task list
  refused 2 "ID is required" task show
  refused 2 'ID: "0" is no whole number' task show 0
  refused 2 'ID: "010" is no whole number' task show 010
  refused 2 'ID: "4294967297" is no whole number' task show 4294967297
  expect_contains "$messages" "Run with --help"
}

test_global_options_stand_before_or_behind() {
  query "INSERT INTO download_queue (username) VALUES ('Bob')"
  expect_run 0 --user bob --json task show 1
  local before=$output
  expect_run 0 task show 1 --json --user bob
  expect_equal "$output" "$before"
}

test_messages_cannot_steer_the_terminal() {
  refused 1 '\x1b[2Jx: neither a URL' --user alice task add $'\e[2Jx'
}

test_a_newer_schema_is_refused() {
  query "INSERT INTO schema_version (version, name) VALUES (9999, '9999_later')"
  refused 1 "the database's schema is at version 9999, newer than version" task list
  refused 1 "the database's schema is at version 9999" --user alice task add http://a
  expect_equal "$(query 'SELECT count(*) FROM download_queue')" 0
}

test_the_newest_schema_of_this_checkout_is_known() {
  local files=("$checkout"/schema/*.sql) newest
  newest=$(basename "${files[-1]}")
  newest=$((10#${newest%%_*}))
  query 'DELETE FROM schema_version'
  query "INSERT INTO schema_version (version, name) VALUES ($newest, 'newest')"
  expect_run 0 task list
  query "UPDATE schema_version SET version = version + 1"
  refused 1 "the database's schema is at version $((newest + 1))" task list
}

test_a_database_without_a_schema_is_refused() {
  query 'DELETE FROM schema_version'
  refused 1 "the database has no schema that can be read" task list
  query 'DROP TABLE schema_version'
  refused 1 "the database has no schema that can be read" task list
}

test_a_server_that_is_down_is_one_clear_message() {
  PGHOST=$scratch refused 1 "" task list
  expect_contains "$messages" "connection to server on socket \"$scratch/.s.PGSQL.$PGPORT\" failed"
  expect_equal "$(wc -l <<<"$messages")" 1
}

test_wrong_usage_is_told_without_a_server() {
  PGHOST=$scratch refused 2 'ID: "x" is no whole number' task show x
  PGHOST=$scratch refused 2 'a task has no column "x"' task set 1 x=1
}

test_output_that_cannot_be_written_is_a_failure() {
  expect_status 1 bash -c 'dorvdlctl task list >/dev/full'
  expect_equal "$output" "dorvdlctl: the output could not be written"
}

run_test "$@"
