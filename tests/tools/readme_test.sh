#!/usr/bin/env bash
# The README shows code that is compiled and run, and commands that a campaign types.
. "$(dirname "$0")/../support/script_test.sh"

test_the_smallest_program_is_the_example() {
  diff <(sed -n "/^\`\`\`cpp$/,/^\`\`\`$/p" "$checkout/README.md" | sed "1d;\$d") "$checkout/examples/queue.cpp"
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
