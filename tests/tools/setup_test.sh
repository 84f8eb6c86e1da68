#!/usr/bin/env bash
# Tests of scripts/setup-common and of what the scripts that source it do first.
. "$(dirname "$0")/../support/script_test.sh"

# answer STATUS...: a dpkg-query and an apt-get of the test's own; the first prints these lines, the
# second fails.
answer() {
  mkdir -p "$scratch/bin"
  printf '#!/bin/sh\nprintf "%%s\\n" %s\n' "$*" >"$scratch/bin/dpkg-query"
  printf '#!/bin/sh\nexit 100\n' >"$scratch/bin/apt-get"
  chmod +x "$scratch"/bin/*
  PATH=$scratch/bin:$PATH
}

installed() {
  bash -c '. "$1/scripts/setup-common" && installed some-package' bash "$checkout"
}

test_a_package_is_installed_when_it_is_so_for_an_architecture() {
  answer installed
  expect_status 0 installed
  answer config-files installed
  expect_status 0 installed
}

test_other_states_are_not_installed() {
  local state
  for state in not-installed half-installed config-files; do
    answer "$state"
    expect_status 1 installed
  done
}

test_a_package_that_cannot_be_had_is_done_without_only_when_it_is_optional() {
  answer not-installed
  expect_status 1 bash -c '. "$1/scripts/setup-common" && need_packages some-package' bash "$checkout"
  expect_status 0 bash -c '. "$1/scripts/setup-common" && want_packages some-package' bash "$checkout"
  expect_contains "$output" "some-package cannot be had"
}

test_help_comes_before_any_package() {
  answer not-installed
  expect_status 0 "$checkout/scripts/test" --help
  expect_contains "$output" "usage: scripts/test [--preset"
}

test_a_wrong_call_is_told_from_a_failure() {
  local call
  for call in 'test --preset' 'test --preset none' 'demo --fast' 'check-floors --fast' bare-debian \
    'bare-debian /nowhere'; do
    # shellcheck disable=SC2086
    expect_status 2 "$checkout"/scripts/$call
    expect_contains "$output" "usage: "
  done
}

run_test "$@"
