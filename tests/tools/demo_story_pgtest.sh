#!/usr/bin/env bash
# Tests of scripts/demo-story, in the private server that runs this script.
. "$(dirname "$0")/../support/script_test.sh"

test_the_story_comes_to_its_end() {
  expect_status 0 "$checkout/tools/with-package-paths" "$checkout/scripts/demo-story"
  expect_contains "$output" "inbox"
  expect_contains "$output" "== Done"
}

test_the_story_does_without_the_packages_paths() {
  expect_status 0 "$checkout/scripts/demo-story"
  expect_contains "$output" "left out"
  expect_contains "$output" "== Done"
}

test_the_story_fails_when_a_step_does_not_do_what_it_says() {
  mkdir "$scratch/bin"
  cat >"$scratch/bin/dorvdlctl" <<TEXT
#!/bin/sh
case "\$*" in
  *export*) printf other >copy.torrent ;;
  *) exec "$(command -v dorvdlctl)" "\$@" ;;
esac
TEXT
  chmod +x "$scratch/bin/dorvdlctl"
  PATH=$scratch/bin:$PATH expect_status 1 "$checkout/tools/with-package-paths" \
    "$checkout/scripts/demo-story"
  expect_contains "$output" "garden.torrent copy.torrent differ"
}

run_test "$@"
