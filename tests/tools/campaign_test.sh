#!/usr/bin/env bash
# Tests of scripts/campaign, with campaigns of their own.
. "$(dirname "$0")/../support/script_test.sh"

# campaign NAME LINE...: adds a campaign to a checkout in the scratch folder.
campaign() {
  [[ -d scripts ]] || cp -r "$checkout/scripts" .
  printf '%s\n' "${@:2}" >"scripts/campaigns/$1"
}

test_lists_each_campaign_with_its_first_line() {
  campaign sieve '# Sieves everything.' 'exit 1'
  expect_status 0 scripts/campaign --help
  expect_contains "$output" "  sieve      Sieves everything."
  expect_contains "$output" "  tsan       "
  expect_contains "$output" "  tidy       "
  expect_contains "$output" "  deployment "
}

test_runs_a_campaign_and_ends_as_it_does() {
  campaign good '# Good.' 'say "in ${PWD##*/}, minutes: ${minutes:-none}"'
  campaign bad '# Bad.' '(exit 3)' 'say "went on"'
  expect_status 0 scripts/campaign good
  expect_equal "$output" "== in ${scratch##*/}, minutes: none"
  expect_status 0 scripts/campaign good --minutes 90
  expect_equal "$output" "== in ${scratch##*/}, minutes: 90"
  expect_status 3 scripts/campaign bad
  expect_equal "$output" ""
}

test_repeats_until_the_time_is_up() {
  campaign tick '# Takes 50 seconds, says its clock.' 'SECONDS=1000' 'tick() { SECONDS=$((SECONDS + 50)); }' \
    'until_time_is_up tick'
  expect_status 0 scripts/campaign tick --minutes 2
  expect_equal "$output" $'== round 1\n== round 2\n== round 3'
}

test_ends_with_the_first_round_that_fails() {
  campaign third '# Fails at the third.' 'rounds=0' 'third() { ((++rounds < 3)) || return 5; }' \
    'until_time_is_up third'
  expect_status 5 scripts/campaign third --minutes 10
  expect_contains "$output" "round 3 failed"
}

test_tells_a_wrong_call_from_a_failure() {
  local call
  for call in '' no-such-name ../check --minutes 'tidy --minutes' 'tidy --minutes 0' 'tidy --minutes x' \
    'tsan --minutes 5 more' 'tsan more' 'tidy --minutes 5' 'deployment --minutes 5'; do
    # shellcheck disable=SC2086
    expect_status 2 "$checkout/scripts/campaign" $call
    expect_contains "$output" "usage: scripts/campaign"
  done
}

run_test "$@"
