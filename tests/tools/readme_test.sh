#!/usr/bin/env bash
# The README shows code that is compiled and run, and commands that a campaign types.
. "$(dirname "$0")/../support/script_test.sh"

# snippet FILE [NAME]: the file, or the part of it between two lines "// [NAME]", moved to the left as
# far as they are indented.
snippet() {
  if (($# == 1)); then
    cat "$checkout/$1"
  else
    awk -v mark="// [$2]" '{ text = $0; sub(/^ */, "", text) }
      text == mark { indent = length($0) - length(text); inside = !inside; next }
      inside { print substr($0, indent + 1) }' "$checkout/$1"
  fi
}

# The README's code with the line above each, which names where it is from; and what that has.
shown_code() {
  awk '/^```cpp$/ { print above; inside = 1 } inside { print } /^```$/ { inside = 0 } { above = $0 }' \
    "$checkout/README.md"
}
code_of_the_examples() {
  local file name
  sed -nE 's/^<!-- (examples\/[a-z_]+\.cpp)( \[([a-z]+)\])? -->$/\1 \3/p' "$checkout/README.md" |
    while read -r file name; do
      printf '<!-- %s -->\n```cpp\n' "$file${name:+ [$name]}"
      snippet "$file" ${name:+"$name"}
      echo '```'
    done
}

test_the_code_is_that_of_the_examples() {
  diff <(code_of_the_examples) <(shown_code)
  expect_contains "$(shown_code)" '<!-- examples/queue.cpp -->'
}

test_each_marked_part_of_an_example_is_shown() {
  local file mark
  while IFS=: read -r file mark; do
    grep -qxF "<!-- $file ${mark##*// } -->" "$checkout/README.md" || fail "not shown: $file $mark"
  done < <(cd "$checkout" && grep -Eo '^ *// \[[a-z]+\]$' examples/*.cpp)
}

test_each_example_is_named() {
  local file
  for file in "$checkout"/examples/*.cpp; do
    grep -q -e "^| \`${file##*/}\` |" -e "^<!-- examples/${file##*/} -->" "$checkout/README.md" ||
      fail "not named: $file"
  done
}

test_each_command_is_typed_by_the_campaign() {
  local commands shown
  commands=$("$checkout/scripts/readme-commands")
  bash -n <<<"$commands"
  shown=$(sed -n '/^```sh$/,/^```$/{/^```/!p}' "$checkout/README.md" | grep -v '^scripts/\(demo\|test\) ')
  expect_equal "$commands" "$shown"
  expect_contains "$commands" $'\ndorvdlctl space'
}

test_installs_what_the_build_and_the_server_need() {
  local needed installed
  # shellcheck disable=SC2016  # expanded there
  needed=$(bash -c '. "$1/scripts/setup-common" && echo "${library_packages[@]} ${server_packages[@]}"' \
    bash "$checkout")
  installed=$("$checkout/scripts/readme-commands" | sed ':more; /\\$/{N; s/\\\n *//; b more}' |
    sed -n 's/^apt-get install --yes --no-install-recommends //p')
  expect_equal "$installed" "$needed systemd"
}

run_test "$@"
