# For the tests that are scripts, which source this: a script has functions test_NAME and ends with
# run_test "$@". Each runs as a process of its own, told the function's name; it passes when the
# function returns. It is called in a folder of its own, `scratch`, which every user can reach.
# shellcheck shell=bash
set -euo pipefail

checkout=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

# expect_equal ACTUAL EXPECTED
expect_equal() {
  [[ $1 == "$2" ]] || fail "got \"$1\" instead of \"$2\""
}

# expect_contains TEXT PART
expect_contains() {
  [[ $1 == *"$2"* ]] || fail "\"$1\" does not contain \"$2\""
}

# expect_status STATUS COMMAND...: the command's output, both streams, is left in `output`.
expect_status() {
  local status=0
  output=$("${@:2}" 2>&1) || status=$?
  ((status == $1)) || fail "exit status $status instead of $1 from: ${*:2}"$'\n'"$output"
}

# eventually COMMAND...: waits up to ten seconds until it succeeds.
eventually() {
  local tries
  for ((tries = 0; tries < 500; ++tries)); do
    "$@" && return
    sleep 0.02
  done
  fail "did not come true: $*"
}

run_test() {
  scratch=$(mktemp -d)
  chmod 755 "$scratch"
  trap 'rm -rf "$scratch"' EXIT
  cd "$scratch"
  [[ $(type -t "$1") == function ]] || fail "no such test: $1"
  "$1"
}
