#!/usr/bin/env bash
# The answers about disk quotas against those of a kernel that enforces them: the machine's own mostly
# does not, so a kernel that runs as a program does, with a disk of its own.
# shellcheck source=../support/script_test.sh
. "$(dirname "$0")/../support/script_test.sh"

readonly kSkipped=77

test_the_answers_are_the_kernels_own() {
  if ! command -v linux.uml; then
    echo "there is no user-mode kernel here"
    return $kSkipped
  fi
  truncate -s 32M disk
  PATH=$PATH:/usr/sbin mkfs.ext4 -q -F -O quota -E quotatype=usrquota disk
  local output
  output=$(timeout 50 quota_guest "$PWD/disk" 2>&1 </dev/null | tr -d "\r" || true)
  if [[ $output != *$'\nstarted\n'* ]]; then
    printf 'the user-mode kernel does not start here:\n%s\n' "$output"
    return $kSkipped
  fi
  expect_equal "$(grep ': answer ' <<<"$output")" "\
no quota: answer 1, the kernel allows it
hard limit, exactly enough: answer 1, the kernel allows it
hard limit, one byte short: answer 0, the kernel refuses it
another user: answer 1, the kernel allows it
soft limit exceeded for the first time: answer 1, the kernel allows it
soft limit within its time: answer 1, the kernel allows it
soft limit within its time, hard limit one byte short: answer 0, the kernel refuses it
soft limit after its time: answer 0, the kernel refuses it"
}

run_test "$@"
