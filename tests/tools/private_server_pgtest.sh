#!/usr/bin/env bash
# Tests of tools/private-server.
. "$(dirname "$0")/../support/script_test.sh"

private_server=$checkout/tools/private-server
# The real psql: Debian's wrapper is a Perl script, which minds differing ids.
psql=$(printf '%s\n' /usr/lib/postgresql/*/bin/psql | sort -V | tail -n 1)
refusal='FATAL:  Peer authentication failed for user'

start() {
  eval "$("$private_server" start --owner $$)"
}

query() {
  "$psql" -XAtq -U Tarnwick -d download -c "$1"
}

# What is left of the servers below a folder: open files, working folders, and commands that carry
# it in their environment.
traces() {
  find /proc/[0-9]*/cwd /proc/[0-9]*/fd -lname "$1*" 2>/dev/null || true
  grep -lzF -f <(echo "$1") /proc/[0-9]*/environ 2>/dev/null || true
}

# gone FOLDER KEEPER: neither the folder is left, nor the keeper, nor anything else of the server.
gone() {
  [[ ! -e $1 && ! -e /proc/$2 && ! $(traces "$1") ]]
}

# run_in_background WRAPPER...: `private-server run` of a command that stays, behind the wrapper
# given; sets `starter` to the pid of the first process, `folder` and `keeper` to the server's.
run_in_background() {
  "$@" "$private_server" run -- bash -c \
    'echo "$DORVDL_PRIVATE_SERVER" >'"$scratch"'/new && mv '"$scratch"'/new '"$scratch"'/folder
     setsid setpriv --reuid=1000 --regid=1000 --clear-groups sleep 1000 & sleep 1000' &
  starter=$!
  eventually test -e "$scratch/folder"
  folder=$(cat "$scratch/folder")
  keeper=$(cat "$folder/keeper")
  [[ $(traces "$folder") ]] || fail "no trace of a running server"
}

test_a_session_that_has_not_elevated_is_refused() {
  start
  expect_status 2 setpriv --euid=1000 "$psql" -U Tarnwick -d download -c 'SELECT 1'
  expect_contains "$output" "$refusal \"Tarnwick\""
  expect_status 2 setpriv --reuid=1000 --regid=1000 --clear-groups \
    "$psql" -U Tarnwick -d download -c 'SELECT 1'
  expect_contains "$output" "$refusal \"Tarnwick\""
}

test_root_is_accepted_also_with_another_real_id() {
  start
  expect_equal "$(query 'SELECT current_user, current_database()')" 'Tarnwick|download'
  expect_status 0 setpriv --ruid=1000 "$psql" -XAtq -U Tarnwick -d download -c 'SELECT current_user'
  expect_equal "$output" Tarnwick
}

test_only_the_servers_own_user_is_its_superuser() {
  start
  expect_status 2 "$psql" -U postgres -d download -c 'SELECT 1'
  expect_contains "$output" "$refusal \"postgres\""
  local as_postgres=(setpriv --reuid=postgres --regid=postgres --clear-groups "$psql" -XAtq)
  expect_status 2 "${as_postgres[@]}" -U Tarnwick -d download -c 'SELECT 1'
  expect_contains "$output" "$refusal \"Tarnwick\""
  expect_status 0 "${as_postgres[@]}" -U postgres -d download -c 'SHOW is_superuser'
  expect_equal "$output" on
}

test_many_at_once_do_not_clash() {
  local n runs=()
  for n in 1 2 3; do
    "$private_server" run -- bash -c "
      '$psql' -XAtq -U Tarnwick -d download -c 'CREATE TABLE mine AS SELECT $n AS n'
      touch '$scratch/ready$n'
      until [[ -e '$scratch/ready1' && -e '$scratch/ready2' && -e '$scratch/ready3' ]]; do sleep 0.02; done
      '$psql' -XAtq -U Tarnwick -d download -c 'SELECT n FROM mine'" >"$scratch/$n" 2>&1 &
    runs+=($!)
  done
  for n in "${runs[@]}"; do wait "$n"; done
  expect_equal "$(cat "$scratch/1" "$scratch/2" "$scratch/3" | xargs)" '1 2 3'
}

test_run_ends_with_the_commands_status_and_leaves_nothing() {
  mkdir "$scratch/tmp"
  expect_status 7 env TMPDIR="$scratch/tmp" "$private_server" run -- bash -c \
    'sleep 1000 & echo "$DORVDL_PRIVATE_SERVER" "$(cat "$DORVDL_PRIVATE_SERVER/keeper")"; exit 7'
  expect_contains "$output" "$scratch/tmp/"
  read -r folder keeper <<<"$output"
  expect_equal "$(ls "$scratch/tmp")" ''
  eventually gone "$folder" "$keeper"
}

test_the_callers_settings_do_not_disturb() {
  expect_status 0 env PGHOST=/nowhere PGPORT=1 PGUSER=joe PGDATABASE=none PGDATA=/nowhere \
    PGOPTIONS='-c nonsense=1' PGSERVICE=none PGPASSFILE=/nowhere TMPDIR=relative LANG=tlh \
    "$private_server" run -- bash -c \
    "echo \${!PG@}; '$psql' -XAtq -U Tarnwick -d download -c 'SHOW server_encoding'"
  expect_equal "$output" $'PGHOST PGPORT\nUTF8'
}

test_vanishes_when_run_is_killed() {
  run_in_background
  kill -KILL "$starter"
  eventually gone "$folder" "$keeper"
}

test_vanishes_when_the_parent_of_run_is_killed() {
  run_in_background bash -c '"$@"; exit' parent
  kill -KILL "$starter"
  eventually gone "$folder" "$keeper"
}

descendants() {
  local child children
  read -ra children <"/proc/$1/task/$1/children" || true
  for child in "${children[@]}"; do
    echo "$child"
    descendants "$child"
  done
}

# As ctest does when a test's time is up.
test_vanishes_when_run_is_killed_with_all_its_descendants() {
  run_in_background
  # shellcheck disable=SC2046
  kill -KILL "$starter" $(descendants "$starter")
  eventually gone "$folder" "$keeper"
}

test_vanishes_when_killed_while_it_is_set_up() {
  mkdir "$scratch/tmp"
  TMPDIR=$scratch/tmp "$private_server" run -- sleep 1000 2>"$scratch/errors" &
  is_there() { compgen -G "$scratch/tmp/*/data/base" >"$scratch/found"; }
  is_gone() { [[ ! $(ls "$scratch/tmp") && ! $(traces "$scratch/tmp") ]]; }
  eventually is_there
  kill -KILL $!
  eventually is_gone
}

test_vanishes_when_the_owner_of_a_started_one_is_killed() {
  sleep 1000 &
  eval "$("$private_server" start --owner $!)"
  keeper=$(cat "$DORVDL_PRIVATE_SERVER/keeper")
  kill -KILL $!
  eventually gone "$DORVDL_PRIVATE_SERVER" "$keeper"
}

test_a_started_one_serves_until_it_is_stopped() {
  start
  expect_equal "$(query 'SELECT 1')" 1
  keeper=$(cat "$DORVDL_PRIVATE_SERVER/keeper")
  "$private_server" stop "$DORVDL_PRIVATE_SERVER"
  eventually gone "$DORVDL_PRIVATE_SERVER" "$keeper"
}

test_a_halted_server_comes_back_with_its_data() {
  start
  query 'CREATE TABLE kept AS SELECT 42 AS n'
  "$private_server" halt "$DORVDL_PRIVATE_SERVER"
  expect_status 2 query 'SELECT 1'
  expect_contains "$output" "No such file or directory"
  "$private_server" resume "$DORVDL_PRIVATE_SERVER"
  expect_equal "$(query 'SELECT n FROM kept')" 42
}

test_a_restart_ends_every_session() {
  start
  query 'SELECT pg_sleep(1000)' 2>"$scratch/errors" &
  sleeps() { [[ $(query "SELECT pid FROM pg_stat_activity WHERE wait_event = 'PgSleep'") ]]; }
  eventually sleeps
  "$private_server" restart "$DORVDL_PRIVATE_SERVER"
  wait $! && fail "the session outlived the restart"
  expect_equal "$(query 'SELECT 1')" 1
}

test_commits_reach_the_disk_when_asked_to() {
  expect_status 0 "$private_server" run --durable -- "$psql" -XAtq -U Tarnwick -d download \
    -c 'SHOW fsync' -c 'SHOW full_page_writes'
  expect_equal "$output" $'on\non'
}

test_runs_on_the_processor_asked_for() {
  expect_status 0 "$private_server" run --cpu 0 -- bash -c \
    'taskset -cp "$(head -n 1 "$DORVDL_PRIVATE_SERVER/data/postmaster.pid")"'
  expect_equal "${output##*: }" 0
}

test_works_where_the_checkout_and_tmpdir_are_closed_to_others() {
  mkdir -m 700 "$scratch/closed"
  cp -r "$checkout/tools" "$checkout/schema" "$scratch/closed"
  expect_status 0 env -C "$scratch/closed" TMPDIR="$scratch/closed" \
    "$scratch/closed/tools/private-server" run -- \
    "$psql" -XAtq -U Tarnwick -d download -c 'SELECT count(*) FROM download_queue'
  expect_equal "$output" 0
}

test_another_callers_server_runs_as_the_caller() {
  cp -r "$checkout/tools" "$checkout/schema" "$scratch"
  expect_status 0 setpriv --reuid=nobody --regid=nogroup --clear-groups \
    "$scratch/tools/private-server" run -- \
    "$psql" -XAtq -U Tarnwick -d download -c "SELECT current_user"
  expect_equal "$output" Tarnwick
}

test_says_so_when_postgresql_is_missing() {
  expect_status 1 unshare --mount --propagation private bash -c \
    'mount -t tmpfs none /usr/lib/postgresql && exec "$@"' bash "$private_server" run -- true
  expect_equal "$output" \
    "private-server: no PostgreSQL server is installed (package postgresql-15)"
}

test_wrong_calls_exit_with_2() {
  expect_status 2 "$private_server"
  expect_status 2 "$private_server" nonsense
  expect_status 2 "$private_server" run
  expect_status 2 "$private_server" run --nonsense true
  expect_status 2 "$private_server" run --cpu one -- true
  expect_status 2 "$private_server" run --owner $$ -- true
  expect_status 2 "$private_server" start extra
  expect_status 2 "$private_server" stop
  expect_status 1 "$private_server" stop "$scratch"
  expect_contains "$output" "no private server's folder"
}

run_test "$@"
