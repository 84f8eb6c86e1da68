#!/usr/bin/env bash
# docs/task-states.md and its picture know every status that the header names.
. "$(dirname "$0")/../support/script_test.sh"

# "| CODE | `NAME` |" per enumerator, as a row of the page's tables begins.
rows_of_the_header() {
  sed -nE 's/^ *(kStatus[A-Za-z]+) = ([0-9]+),.*/| \2 | `\1` |/p' \
    "$checkout/include/dorvdl/record/task_status.h"
}

# The words of the picture's source and of the picture, a line each, in the order of the alphabet.
words_of_the_source() {
  sed -nE 's/.* label="([^"\]+.*)"[],].*/\1/p' "$checkout/docs/task-states.dot" |
    sed -E 's/",.*//; s/\\[nl]$//; s/\\n/\n/g' | sort
}
words_of_the_picture() {
  sed -nE 's/^<text [^>]*>(.*)<\/text>$/\1/p' "$checkout/docs/task-states.svg" |
    sed 's/&#45;/-/g' | sort
}

test_every_status_has_its_row() {
  rows_of_the_header >"$scratch/header"
  grep -oE '^\| [0-9]+ \| `kStatus[A-Za-z]+` \|' "$checkout/docs/task-states.md" >"$scratch/page"
  [[ -s $scratch/header ]] || fail "no status found in the header"
  diff "$scratch/header" "$scratch/page" || fail "the page names other statuses than the header"
}

test_every_live_status_is_in_the_picture() {
  local code name
  while read -r _ code _ name _; do
    ((code < 100)) || continue
    grep -q "^$code [a-z]" <(words_of_the_source) || fail "the picture lacks $code, $name"
  done < <(rows_of_the_header)
}

test_the_picture_is_drawn_from_its_source() {
  diff <(words_of_the_source) <(words_of_the_picture) || fail "docs/task-states.svg has to be redrawn"
}

run_test "$@"
