#!/usr/bin/env bash
# Tests of tools/with-package-paths.
. "$(dirname "$0")/../support/script_test.sh"

with_paths() {
  "$checkout/tools/with-package-paths" "$@"
}

test_the_paths_are_there_for_the_command_only() {
  expect_status 0 with_paths sh -c \
    'cd /var/services/download && touch file && ls /usr/dorv/bin/dorvfstool /var/lib/tarnwick/users &&
     [ -f /usr/dorv/dorvman/webman/3rdparty/Tarnwick/texts/en/strings ] && id -u alice bob'
  expect_contains "$output" 2002
  [[ ! -e /usr/dorv/bin/dorvfstool && ! -e /var/services/download ]] || fail "the paths are still there"
}

test_what_was_there_is_still_to_be_seen() {
  expect_status 0 with_paths ls /usr /var /var/lib /var/spool
  local entry
  for entry in /usr/* /var/* /var/lib/* /var/spool/*; do
    expect_contains "$output" "$(basename "$entry")"
  done
}

test_the_commands_status_is_handed_on_and_nothing_is_left() {
  mkdir tmp
  TMPDIR=$scratch/tmp expect_status 7 with_paths sh -c 'exit 7'
  expect_equal "$(ls -A tmp)" ''
}

test_a_wrong_call_is_told_from_a_command_that_fails() {
  expect_status 125 with_paths
  PATH=/usr/bin:/bin expect_status 125 with_paths true
  expect_contains "$output" "there is no dorvfstool in PATH"
  expect_status 0 with_paths --help
}

run_test "$@"
