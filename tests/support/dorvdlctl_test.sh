# For the tests of dorvdlctl, which source this.
# shellcheck shell=bash
. "$(dirname "${BASH_SOURCE[0]}")/script_test.sh"

query() {
  psql -XAtq -U Tarnwick -d download -c "$1"
}

# expect_run STATUS ARGUMENT...: runs dorvdlctl and leaves its streams in `output` and `messages`.
expect_run() {
  local status=0
  output=$(dorvdlctl "${@:2}" 2>"$scratch/messages") || status=$?
  messages=$(<"$scratch/messages")
  ((status == $1)) || fail "exit status $status instead of $1 from: ${*:2}"$'\n'"$output"$'\n'"$messages"
}

# refused STATUS MESSAGE ARGUMENT...: nothing but the message comes of it.
refused() {
  expect_run "$1" "${@:3}"
  expect_equal "$output" ''
  expect_contains "$messages" "dorvdlctl: $2"
}

# json EXPRESSION: the value of an SQL expression on `doc`, the last output taken as JSON. (PostgreSQL
# keeps all digits of a number.)
json() {
  psql -XAtq -U Tarnwick -d download -v doc="$output" <<<"SELECT $1 FROM (SELECT :'doc'::jsonb AS doc) d"
}

# help_of COMMAND...: the command explains itself, with an example.
help_of() {
  expect_run 0 "$@" --help
  expect_contains "$output" "Usage: dorvdlctl $* [OPTIONS]"
  expect_contains "$output" "Example"
  expect_contains "$output" "Every command also takes --user NAME and --json"
}
