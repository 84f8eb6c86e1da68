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

# refused_for_programs STATUS KIND SQLSTATE ARGUMENT...: with --json, one object tells why; no code for
# an empty SQLSTATE. Leaves the message in `messages`.
refused_for_programs() {
  expect_run "$1" --json "${@:4}"
  expect_equal "$output" ''
  tells_programs "$2" "$3"
}

# tells_programs KIND SQLSTATE: the same of the last run.
tells_programs() {
  output=$messages
  expect_equal "$(wc -l <<<"$messages")" 1
  expect_equal "$(json "doc #- '{error,message}'")" \
    "{\"error\": {\"kind\": \"$1\"${2:+, \"sqlstate\": \"$2\"}}}"
  messages=$(json "doc->'error'->>'message'")
}

# json EXPRESSION: the value of an SQL expression on `doc`, the last output taken as JSON. (PostgreSQL
# keeps all digits of a number.)
json() {
  psql -XAtq -U Tarnwick -d download -v doc="$output" <<<"SELECT $1 FROM (SELECT :'doc'::jsonb AS doc) d"
}

# listed_keys KEY ARGUMENT...: runs dorvdlctl, which is to list records, and prints the values of
# their column KEY, in order.
listed_keys() {
  expect_run 0 --json "${@:2}"
  json "(SELECT coalesce(string_agg(record->>'$1', ' ' ORDER BY place), '')
    FROM jsonb_array_elements(doc) WITH ORDINALITY AS list (record, place))"
}

# help_of COMMAND...: the command explains itself, with an example, in 80 columns.
help_of() {
  expect_run 0 "$@" --help
  expect_contains "$output" "Usage: dorvdlctl $* [OPTIONS]"
  expect_contains "$output" "Example"
  [[ ! $output =~ [^$'\n']{81} ]] || fail "wider than 80 columns: ${BASH_REMATCH[0]}"
  expect_contains "$output" "Every command also takes --user NAME, --json, --verbose"
}
