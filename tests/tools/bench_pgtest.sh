#!/usr/bin/env bash
# Tests of bench/run. What the numbers are is no concern of theirs.
. "$(dirname "$0")/../support/script_test.sh"

# run_short ARGUMENT...: a short run of the program as it is built, whose numbers are left in the
# scratch folder.
run_short() {
  local program
  program=$(command -v controls_bench) || { echo "controls_bench is not built" && exit 77; }
  ln -sf "$program" controls_bench
  expect_status 0 "$checkout/bench/run" --short --program "$scratch/controls_bench" "$@"
}

# has_row OPERATION RATIOS [HOT]: the table in `output` has this row, with ratios to libpq (r) or none
# (-) of the peers in the order of the columns, and numbers elsewhere.
has_row() {
  local number='[1-9][0-9]*' ratio='[0-9]+\.[0-9][0-9]' ratios='' i
  for ((i = 0; i < ${#2}; ++i)); do
    if [[ ${2:i:1} == r ]]; then ratios+=" $ratio"; else ratios+=" -"; fi
  done
  local row="^$1 $number $number$ratios $number $number $ratio $number $number $number/$number ${3:--}$"
  grep -Ex "$row" <(tr -s ' ' <<<"$output") >"$scratch/row" ||
    fail "no such row: $row"$'\n'"$output"
}

# The rows that have trips.
number_of_rows() {
  grep -cE ' [0-9]+/[0-9]+ ' <<<"$output"
}

test_a_short_run_measures_all_operations_of_all_peers() {
  run_short
  expect_contains "$output" 'ours params   soci rowset   pqxx pqxx-names'
  has_row list/50 rrrrrr
  has_row list/1000 rrrrrr
  has_row get rrr-rr
  local operation
  for operation in count create/8 create/34 items/1000 search/title; do
    has_row "$operation" rrr---
  done
  for operation in update/3 update/6 updates/200 updates/200-unit; do
    has_row "$operation" rrr--- '[0-9]+'
  done
  has_row import/1MiB rr---- '[0-9]+'
  has_row export/1MiB rr----
  expect_equal "$(number_of_rows)" 14
  [[ -s controls_bench.json ]] || fail "no numbers are left"
}

test_arguments_are_the_benchmarks() {
  run_short --benchmark_filter='^get/(ours|prepared)/'
  has_row get r-----
  expect_equal "$(number_of_rows)" 1
}

test_the_program_refuses_any_other_database() {
  command -v controls_bench || exit 77
  expect_status 1 env -u DORVDL_PRIVATE_SERVER controls_bench
  expect_equal "$output" 'controls_bench: changes the database: run it by bench/run'
  expect_status 2 controls_bench --nonsense
}

test_explains_itself() {
  expect_status 0 "$checkout/bench/run" --help
  local peer
  for peer in ours params soci rowset pqxx pqxx-names; do
    grep -E "^  $peer +" <<<"$output" || fail "does not explain $peer"
  done
  expect_status 2 "$checkout/bench/run" --program "$scratch/missing"
  expect_contains "$output" '--program needs a program'
}

run_test "$@"
