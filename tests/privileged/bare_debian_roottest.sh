#!/usr/bin/env bash
# Tests of scripts/bare-debian, with a Debian of a few programs that needs no archive.
# shellcheck source=../support/script_test.sh
. "$(dirname "$0")/../support/script_test.sh"

# A mmdebstrap of the test's own, and an apt that knows an archive; what they are told is kept.
stand_in() {
  mkdir bin tmp
  cat >bin/mmdebstrap <<STAND_IN
#!/bin/bash
cat >"$scratch/sources"
root=\${*: -2:1}
mkdir -p "\$root"/{dev,proc,root,tmp}
for program in bash cat ls sleep; do
  program=\$(type -P "\$program")
  cp -L --parents "\$program" \$(ldd "\$program" | grep -o '/[^ ]*') "\$root"
done 2>/dev/null
STAND_IN
  cat >bin/apt-get <<'STAND_IN'
#!/bin/sh
printf 'deb http://archive.example/debian/ %s main\n' bookworm trixie bookworm
STAND_IN
  chmod +x bin/*
  PATH=$scratch/bin:$PATH
}

# in_debian STATUS LINE...: has a script of these lines run there.
in_debian() {
  printf '%s\n' "${@:2}" >script
  TMPDIR=$scratch/tmp expect_status "$1" "$checkout/scripts/bare-debian" script
  expect_equal "$(ls -A tmp)" ''
}

test_runs_the_script_as_root_in_the_checkouts_copy() {
  stand_in
  in_debian 0 'echo "in $PWD, as $EUID"' 'ls' 'ls /'
  expect_contains "$output" 'in /root/libdorvdlcore, as 0'
  expect_contains "$output" README.md
  [[ $output != *$'\n'home$'\n'* ]] || fail "the machine's own root was shown"
  expect_equal "$(<sources)" 'deb http://archive.example/debian/ bookworm main'
}

test_ends_with_the_first_command_that_fails() {
  stand_in
  in_debian 3 '(exit 3)' 'echo went on'
  [[ $output != *$'\nwent on'* ]] || fail "$output"
}

test_what_the_script_leaves_running_ends_with_it() {
  stand_in
  in_debian 0 'sleep 54321 &' '[[ $! ]]'
  ! grep -lzxF 54321 /proc/[0-9]*/cmdline || fail "still running"
}

test_an_unknown_archive_is_a_failure() {
  stand_in
  printf '#!/bin/sh\n' >bin/apt-get
  in_debian 1 'echo started'
  expect_contains "$output" 'apt knows no archive of Debian 12'
}

run_test "$@"
