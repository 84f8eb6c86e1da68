#!/usr/bin/env bash
# What is installed for a deployment, applied: to a root of the test's own, with the programs of the
# folder PREFIX, in the private server that runs this script.
# shellcheck source=../support/script_test.sh
. "$(dirname "$0")/../support/script_test.sh"

PATH=$PREFIX/bin:$PATH

# Makes `root`, as it is after the two commands; the files are where they are found with the prefix
# /usr/local. Numbers of users are that root's own.
deploy() {
  root=$scratch/root
  mkdir -p "$root/etc" "$root/usr/local/lib"
  cp -r "$PREFIX"/lib/*.d "$root/usr/local/lib"
  systemd-sysusers --root="$root" dorvdlcore.conf
  systemd-tmpfiles --root="$root" --create dorvdlcore.conf
  package_user=$(sed -n 's/^Tarnwick:x:\([0-9]*\):.*/\1/p' "$root/etc/passwd")
  package_group=$(sed -n 's/^Tarnwick:x:\([0-9]*\):.*/\1/p' "$root/etc/group")
}

test_each_folder_has_its_owner_and_mode() {
  deploy
  cd root || exit
  expect_equal "$(stat -c '%a %u %g %n' var/spool/tarnwick{,/notifications} var/lib/tarnwick/users \
    var/services{,/share} usr/dorv/bin usr/dorv/dorvman/webman/3rdparty/Tarnwick)" "\
755 0 0 var/spool/tarnwick
700 $package_user $package_group var/spool/tarnwick/notifications
755 0 0 var/lib/tarnwick/users
755 0 0 var/services
755 0 0 var/services/share
755 0 0 usr/dorv/bin
755 0 0 usr/dorv/dorvman/webman/3rdparty/Tarnwick"
}

test_what_is_there_already_stays() {
  mkdir -p root/usr/dorv/bin root/usr/dorv/dorvman/webman/3rdparty/Tarnwick/texts root/var/services
  ln -s /elsewhere root/usr/dorv/bin/dorvfstool
  ln -s /volume root/var/services/download
  deploy
  deploy
  expect_equal "$(readlink root/usr/dorv/bin/dorvfstool root/var/services/download)" $'/elsewhere\n/volume'
  [[ ! -L root/usr/dorv/dorvman/webman/3rdparty/Tarnwick/texts ]] || fail "the texts were replaced"
}

# Shows the deployed root's folders in place of the machine's, and its user.
enter() {
  local folder
  for folder in /usr/dorv /var/services /var/spool/tarnwick /var/lib/tarnwick; do
    mount --bind "$root$folder" "$folder"
  done
  grep ^Tarnwick: "$root/etc/passwd" >>/etc/passwd
}

test_programs_work_in_the_deployed_folders() {
  if [[ ${DORVDL_PACKAGE_PATHS-} != here ]]; then
    "$checkout/tools/with-package-paths" "$0" "${FUNCNAME[0]}"
    return
  fi
  deploy
  mkdir download
  ln -s "$scratch/download" root/var/services/download
  echo 'language=de' >root/var/lib/tarnwick/users/alice
  enter
  expect_status 0 dorvdlctl space
  expect_contains "$output" "$scratch/download"
  expect_status 0 dorvdlctl --user alice task add https://example.org/disk.iso
  expect_status 0 dorvdlctl task notify "$output" complete
  expect_equal "$(stat -c '%a %u' root/var/spool/tarnwick/notifications/*)" "600 $package_user"
  expect_status 0 dorvdlctl notification inbox
  expect_contains "$output" 'Download abgeschlossen'
}

test_apply_schema_is_in_the_path_and_finds_the_schema() {
  expect_status 0 apply-schema --help
  psql -Xq -U Tarnwick -d download -c 'DROP OWNED BY "Tarnwick"'
  expect_status 0 apply-schema
  expect_contains "$output" "applied 0001_download_queue"
}

run_test "$@"
