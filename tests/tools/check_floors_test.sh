#!/usr/bin/env bash
# Tests of scripts/check-floors.
. "$(dirname "$0")/../support/script_test.sh"

check_floors=$checkout/scripts/check-floors

# plant FILE INCLUDE: a file of a checkout in the scratch folder whose second line is that include.
plant() {
  mkdir -p "$scratch/$(dirname "$1")"
  printf '// A file.\n#include %s\n' "$2" >"$scratch/$1"
}

test_this_checkout_keeps_to_its_floors() {
  expect_status 0 "$check_floors" "$checkout"
}

test_names_an_include_that_points_up() {
  plant include/dorvdl/dbquery/session.h '<dorvdl/db/session.h>'
  plant src/control/option/task.cpp '<dorvdl/file.h>'
  expect_status 1 "$check_floors" "$scratch"
  expect_equal "$output" "include/dorvdl/dbquery/session.h:2: floor 2 includes floor 6: <dorvdl/db/session.h>
src/control/option/task.cpp:2: floor 3 includes floor 4: <dorvdl/file.h>"
}

test_finds_private_headers_beside_and_from_the_root_of_src() {
  plant src/record/columns.h '<string>'
  plant src/util/a.cpp '"record/columns.h"'
  plant src/util/b.cpp '"../record/columns.h"'
  expect_status 1 "$check_floors" "$scratch"
  expect_equal "$output" "src/util/a.cpp:2: floor 1 includes floor 5: \"record/columns.h\"
src/util/b.cpp:2: floor 1 includes floor 5: \"../record/columns.h\""
}

test_allows_the_own_floor_and_those_below() {
  plant src/record/columns.h '<dorvdl/proto/record.pb.h>'
  plant src/record/task.cpp '"columns.h"'
  plant src/db/operator.cpp '<dorvdl/control/option/common.h>'
  plant src/util/privilege.cpp '<dorv/credentials.h>'
  plant src/file.cpp '<dorvdl/util/log.h>'
  plant tools/ctl/main.cpp '<dorvdl/control/controller.h>'
  expect_status 0 "$check_floors" "$scratch"
}

test_keeps_the_library_out_of_the_platform() {
  plant platform/linux/share_path.cpp '<dorvdl/util/log.h>'
  expect_status 1 "$check_floors" "$scratch"
  expect_contains "$output" "platform/linux/share_path.cpp:2: "
}

test_keeps_programs_out_of_private_headers() {
  plant src/record/columns.h '<string>'
  plant tools/ctl/main.cpp '"record/columns.h"'
  plant bench/list.cpp '"../src/record/columns.h"'
  expect_status 1 "$check_floors" "$scratch"
  expect_contains "$output" "tools/ctl/main.cpp:2: "
  expect_contains "$output" "bench/list.cpp:2: "
}

test_refuses_a_folder_without_a_floor() {
  plant src/misc/helper.cpp '<dorvdl/util/log.h>'
  expect_status 1 "$check_floors" "$scratch"
  expect_contains "$output" "src/misc/helper.cpp:2: "
}

run_test "$@"
