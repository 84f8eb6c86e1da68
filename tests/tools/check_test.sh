#!/usr/bin/env bash
# Tests of scripts/check and scripts/check-tidy, on checkouts of their own.
. "$(dirname "$0")/../support/script_test.sh"

# A commit hook may have started these tests, and its git variables name another checkout.
unset "${!GIT_@}"

# plant FILE LINE...: makes a file of the checkout in the scratch folder.
plant() {
  mkdir -p "$(dirname "$1")"
  printf '%s\n' "${@:2}" >"$1"
}

# A checkout with this one's scripts and settings and a source that nothing is wrong with.
make_checkout() {
  cp -r "$checkout"/scripts "$checkout"/.clang-format "$checkout"/.clang-tidy "$checkout"/.shellcheckrc .
  plant include/dorvdl/util/one.h '#pragma once' 'constexpr int kOne = 1;'
  plant src/util/one.cpp '#include <dorvdl/util/one.h>' '' 'int One() { return kOne; }'
  git init -q -b main
  git config user.name Somebody
  git config user.email somebody@example.org
  commit
}

commit() {
  git add -A
  git commit -q -m 'A change'
}

# What a build of the preset "dev" leaves for clang-tidy. Not one of the checkout's files.
make_compile_database() {
  echo /build/ >.git/info/exclude
  plant build/dev/compile_commands.json "[{\"directory\": \"$PWD\", \"file\": \"$PWD/src/util/one.cpp\"," \
    '"command": "c++ -std=c++17 -Iinclude -c src/util/one.cpp"}]'
}

# expect_finding FILE:LINE ARGUMENT...: scripts/check, so called, names that place.
expect_finding() {
  expect_status 1 scripts/check "${@:2}"
  expect_contains "$output" "$1:"
}

test_has_nothing_to_say_about_a_clean_tree() {
  make_checkout
  expect_status 0 scripts/check
  expect_equal "$output" ""
}

test_names_a_source_of_another_layout() {
  make_checkout
  plant src/util/two.cpp 'int Two() {' 'return 2;' '}'
  expect_finding src/util/two.cpp:1
}

test_names_an_include_that_points_up() {
  make_checkout
  plant src/util/two.cpp '#include <dorvdl/db/session.h>'
  expect_finding src/util/two.cpp:1
}

test_names_a_mistake_in_a_shell_script_whatever_it_is_called() {
  make_checkout
  plant tools/posix '#!/bin/sh' 'echo $1'
  plant tools/bash '#!/usr/bin/env bash' 'echo $1'
  plant tools/sourced '# For others to source.' '# shellcheck shell=bash' 'echo $1'
  plant tools/bare.sh 'echo 1'
  expect_finding tools/posix:2
  expect_contains "$output" tools/bash:2:
  expect_contains "$output" tools/sourced:3:
  expect_contains "$output" tools/bare.sh:1:
}

test_takes_nothing_else_for_a_shell_script() {
  make_checkout
  plant tools/python '#!/usr/bin/env python3' 'print($1)'
  plant text.md 'A script:' '' '#!/bin/sh' 'echo $1'
  plant build/dev/generated.sh '#!/bin/sh' 'echo $1'
  head -c 1000 /dev/urandom >binary
  expect_status 0 scripts/check
  expect_equal "$output" ""
}

test_checks_what_differs_from_a_commit_only() {
  make_checkout
  plant old.sh '#!/bin/sh' 'echo $1'
  commit
  plant committed.sh '#!/bin/sh' 'echo $1'
  commit
  git rm -q src/util/one.cpp
  rm include/dorvdl/util/one.h
  plant 'new one.sh' '#!/bin/sh' 'echo $1'
  expect_finding committed.sh:2 --since HEAD~
  expect_contains "$output" 'new one.sh:2:'
  [[ $output != *old* ]] || fail "$output"
  expect_finding 'new one.sh:2' --since HEAD
  [[ $output != *committed* ]] || fail "$output"
}

test_checks_what_is_staged_as_it_would_be_committed() {
  make_checkout
  plant script.sh '#!/bin/sh' 'echo $1'
  expect_status 0 scripts/check --staged
  git add script.sh
  plant script.sh '#!/bin/sh' 'echo "$1"'
  expect_finding script.sh:2 --staged
  git add script.sh
  plant script.sh '#!/bin/sh' 'echo $1'
  expect_status 0 scripts/check --staged
}

test_serves_as_a_commit_hook() {
  make_checkout
  local install
  install=$(sed -n 's/^    \(git config .*\)/\1/p' "$checkout/CONTRIBUTING.md")
  expect_contains "$install" hooks
  eval "$install"
  plant src/util/two.cpp 'int  Two() { return 2; }'
  git add -A
  expect_status 1 git commit -m 'A source of another layout'
  expect_contains "$output" src/util/two.cpp:1:
  clang-format -i src/util/two.cpp
  git add -A
  expect_status 0 git commit -m 'A source'
}

test_names_what_clang_tidy_finds_in_what_has_changed() {
  make_checkout
  make_compile_database
  plant src/util/one.cpp '#include <dorvdl/util/one.h>' '' 'int* One() { return 0; }'
  expect_finding src/util/one.cpp:3 --since HEAD
  expect_contains "$output" modernize-use-nullptr
  expect_finding src/util/one.cpp:3 --all
  commit
  expect_status 0 scripts/check --since HEAD
  expect_equal "$output" ""
}

test_gives_clang_tidy_what_includes_a_header_that_has_changed() {
  make_checkout
  make_compile_database
  plant src/util/inner.h '#include <dorvdl/util/one.h>'
  plant src/util/one.cpp '#include "inner.h"' '' 'int One() { return kOne; }'
  commit
  plant include/dorvdl/util/one.h '#pragma once' 'constexpr int* kOne = 0;'
  expect_finding include/dorvdl/util/one.h:2 --since HEAD
  expect_contains "$output" modernize-use-nullptr
}

test_says_what_clang_tidy_lacks() {
  make_checkout
  plant src/util/two.cpp 'int Two() { return 2; }'
  expect_status 1 scripts/check --since HEAD
  expect_contains "$output" "cmake --preset dev"
}

test_tells_a_wrong_call_from_a_finding() {
  local call
  for call in --since '--since no-such-commit' '--staged --all' --unknown src/file.cpp; do
    # shellcheck disable=SC2086
    expect_status 2 "$checkout/scripts/check" $call
    expect_contains "$output" "usage: scripts/check"
  done
  expect_status 2 "$checkout/scripts/check-tidy"
  expect_contains "$output" "usage: check-tidy"
  expect_status 0 "$checkout/scripts/check" --help
  expect_status 0 "$checkout/scripts/check-tidy" --help
}

run_test "$@"
