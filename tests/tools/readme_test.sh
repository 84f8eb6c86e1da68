#!/usr/bin/env bash
# The README shows code that is compiled and run.
. "$(dirname "$0")/../support/script_test.sh"

test_the_smallest_program_is_the_example() {
  diff <(sed -n "/^\`\`\`cpp$/,/^\`\`\`$/p" "$checkout/README.md" | sed "1d;\$d") "$checkout/examples/queue.cpp"
}

run_test "$@"
