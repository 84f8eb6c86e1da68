#!/usr/bin/env bash
# Tests of what holds for all commands of dorvdlctl, in the private server that runs this script.
. "$(dirname "$0")/../support/dorvdlctl_test.sh"

test_help_and_version_go_to_the_output() {
  expect_run 0 --help
  expect_contains "$output" "Usage: dorvdlctl [OPTIONS] COMMAND"
  expect_contains "$output" $'Exit status:\n  0  done\n'
  [[ ! $output =~ [^$'\n']{81} ]] || fail "wider than 80 columns: ${BASH_REMATCH[0]}"
  expect_equal "$messages" ''
  expect_run 0 --version
  expect_contains "$output" "dorvdlctl 0."
}

# commands_in GROUP...: the commands that the help of a group lists; those of the program for none.
commands_in() {
  expect_run 0 "$@" --help
  sed -n '/^Commands:/,/^$/s/^  \([a-z-]*\) .*/\1/p' <<<"$output" | paste -sd ' '
}

test_each_command_explains_itself() {
  local line group command
  while read -r line; do
    read -ra group <<<"${line%%:*}"
    expect_equal "${group[*]}: $(commands_in "${group[@]}")" "$line"
    for command in ${line#*: }; do
      [[ -n $(commands_in "${group[@]}" "$command") ]] || help_of "${group[@]}" "$command"
    done
  done <<'TEXT'
: task feed filter item thumbnail plugin notification setting space quota
task: add list show set remove import export restart clean notify
task restart: captcha host
feed: list show add set remove
filter: list show add set remove test
item: list show add set remove import seen unseen clear
thumbnail: list show add set remove files
plugin: list show add set remove active
notification: list show add set remove view clear-until inbox
setting: list show add set remove
TEXT
}

test_help_names_the_default_order() {
  expect_run 0 thumbnail list --help
  expect_contains "$output" 'default: thumbnail_id'
}

test_wrong_usage_exits_with_2() {
  refused 2 "A subcommand is required"
  refused 2 "A subcommand is required" task
  refused 2 "not understood: tsak" tsak list
  refused 2 "not understood: nonsense" task nonsense
  refused 2 "The following argument" task list --nonsense
  refused 2 "--user: must not be empty" --user '' task list
  refused 2 "--user: not UTF-8" --user $'\xff' task list
  refused 2 "ID is required" task show
  refused 2 'ID: "0" is no whole number' task show 0
  refused 2 'ID: "010" is no whole number' task show 010
  refused 2 'ID: "4294967297" is no whole number' task show 4294967297
  expect_contains "$messages" "Run with --help"
}

test_global_options_stand_before_or_behind() {
  query "INSERT INTO download_queue (username) VALUES ('Bob')"
  expect_run 0 --user bob --json task show 1
  local before=$output
  expect_run 0 task show 1 --json --user bob
  expect_equal "$output" "$before"
}

test_messages_cannot_steer_the_terminal() {
  refused 1 '\x1b[2Jx: neither a URL' --user alice task add $'\e[2Jx'
}

test_a_newer_schema_is_refused() {
  query "INSERT INTO schema_version (version, name) VALUES (9999, '9999_later')"
  refused 1 "the database's schema is at version 9999, newer than version" task list
  refused 1 "the database's schema is at version 9999" --user alice task add http://a
  expect_equal "$(query 'SELECT count(*) FROM download_queue')" 0
}

test_an_older_schema_is_refused() {
  local known
  known=$(query 'SELECT max(version) FROM schema_version')
  query 'DELETE FROM schema_version WHERE version > 2'
  refused 1 "the schema is at version 2, this dorvdlctl needs $known: run apply-schema" task list
  refused 1 'the schema is at version 2' --user alice task add http://a
  expect_equal "$(query 'SELECT count(*) FROM download_queue')" 0
}

test_the_newest_schema_of_this_checkout_is_known() {
  local files=("$checkout"/schema/*.sql) newest
  newest=$(basename "${files[-1]}")
  newest=$((10#${newest%%_*}))
  query 'DELETE FROM schema_version'
  query "INSERT INTO schema_version (version, name) VALUES ($newest, 'newest')"
  expect_run 0 task list
  query "UPDATE schema_version SET version = version + 1"
  refused 1 "the database's schema is at version $((newest + 1))" task list
}

test_a_database_without_a_schema_is_refused() {
  query 'DELETE FROM schema_version'
  refused 1 "the database has no schema: run apply-schema" task list
  query 'DROP TABLE schema_version'
  refused 1 "the database has no schema: run apply-schema" task list
}

test_a_schema_that_cannot_be_read_is_no_missing_one() {
  query 'REVOKE ALL ON schema_version FROM "Tarnwick"'
  refused 1 'the database operation failed: permission denied for table schema_version (42501)' task list
}

test_a_server_that_is_down_is_one_clear_message() {
  PGHOST=$scratch refused 5 "" task list
  expect_contains "$messages" "connection to server on socket \"$scratch/.s.PGSQL.$PGPORT\" failed"
  expect_equal "$(wc -l <<<"$messages")" 1
  PGPORT=1 expect_run 5 --json task list
  expect_equal "$output" ''
  tells_programs unreachable ''
  expect_contains "$messages" '.s.PGSQL.1" failed: '
}

# run_as_nobody STATUS ARGUMENT...: like expect_run, as a user of no rank, whom a copy of the program
# stands open to.
run_as_nobody() {
  local libraries
  mapfile -t libraries < <(ldd "$(command -v dorvdlctl)" | awk '$1 ~ /^libdorv/ { print $3 }')
  mkdir -p "$scratch/open"
  cp "$(command -v dorvdlctl)" "${libraries[@]}" "$scratch/open"
  expect_status "$1" setpriv --reuid=nobody --regid=nogroup --clear-groups \
    env LD_LIBRARY_PATH="$scratch/open" "$scratch/open/dorvdlctl" "${@:2}"
}

test_who_is_turned_away_is_told_to_be_root() {
  run_as_nobody 5 task list
  expect_contains "$output" 'failed: FATAL: Peer authentication failed for user "Tarnwick"; run as root'
  expect_equal "$(wc -l <<<"$output")" 1
  PGPORT=1 run_as_nobody 5 task list
  [[ $output != *'run as root'* ]] || fail "a server that is down is nothing that root could help"
}

test_wrong_usage_is_told_without_a_server() {
  PGHOST=$scratch refused 2 'ID: "x" is no whole number' task show x
  PGHOST=$scratch refused 2 'a task has no column "x"' task set 1 x=1
}

test_the_server_says_why() {
  query 'ALTER TABLE download_queue RENAME COLUMN filename TO other'
  refused 1 'the database operation failed: column "filename" does not exist (42703)' task list
  refused_for_programs 1 server 42703 task list
  expect_equal "$messages" 'the database operation failed: column "filename" does not exist (42703)'
}

test_values_are_never_in_a_message() {
  query 'ALTER TABLE rss_feed ADD CHECK (title::integer > 5)'
  refused 1 'the database operation failed (22P02)' --user alice feed add title=secret1
  [[ $messages != *secret1* ]] || fail "printed: $messages"
  refused 1 'the database operation failed: ' --user alice feed add title=3
  expect_contains "$messages" 'violates check constraint "rss_feed_title_check" (23514)'
  expect_run 1 --verbose --user alice feed add title=secret1
  [[ $messages != *secret1* ]] || fail "printed: $messages"
}

test_verbose_shows_what_is_logged() {
  query 'ALTER TABLE rss_feed RENAME TO other'
  expect_run 1 feed list
  expect_equal "$(wc -l <<<"$messages")" 1
  local options
  for options in '--verbose feed list' 'feed list --verbose'; do
    # shellcheck disable=SC2086  # words of a command
    expect_run 1 $options
    expect_equal "$output" ''
    expect_contains "$messages" 'dorvdlctl: dbquery/query:'
    expect_contains "$messages" '[42P01] relation "rss_feed" does not exist: SELECT * FROM "rss_feed"'
    expect_equal "${messages##*$'\n'}" \
      'dorvdlctl: the database operation failed: relation "rss_feed" does not exist (42P01)'
  done
  expect_run 1 --verbose --json feed list
  messages=${messages##*$'\n'} tells_programs server 42P01
}

test_programs_are_told_why() {
  query "INSERT INTO download_queue (username) VALUES ('alice')"
  refused_for_programs 2 usage '' task show x
  expect_contains "$messages" 'ID: "x" is no whole number'
  refused_for_programs 2 usage '' task show 1 --nonsense
  refused_for_programs 2 usage '' --user
  refused_for_programs 2 usage '' task set 1 nonsense=1
  refused_for_programs 3 not-found '' task show 9
  expect_equal "$messages" 'no task 9'
  refused_for_programs 4 refused '' --user alice task set 1 username=bob
  expect_equal "$messages" 'refused: the row would belong to another user'
  refused_for_programs 1 failed '' --user alice task add $'\e[2Jx'
  expect_contains "$messages" '\x1b[2Jx: neither a URL'
  query 'ALTER TABLE download_queue RENAME TO other'
  refused_for_programs 1 server 42P01 task list
  query 'CREATE VIEW download_queue AS SELECT * FROM other WHERE pg_sleep(10) IS NOT NULL'
  PGOPTIONS='-c statement_timeout=100' refused_for_programs 1 retry 57014 task list
}

test_a_plain_refusal_stays_plain_behind_two_dashes() {
  refused 1 '--json: neither a URL' --user alice task add -- --json
}

# The server breaks down in the midst of the commit.
test_a_commit_that_is_not_answered_is_neither_done_nor_failed() {
  setpriv --reuid=postgres --regid=postgres --clear-groups psql -XAtq -U postgres -d download <<'SQL'
CREATE FUNCTION break_down() RETURNS trigger LANGUAGE plpgsql SECURITY DEFINER AS $$
BEGIN COPY notification FROM PROGRAM 'kill -KILL $PPID'; RETURN NULL; END $$;
GRANT CREATE ON SCHEMA public TO postgres;
CREATE CONSTRAINT TRIGGER break_down AFTER INSERT ON rss_feed DEFERRABLE INITIALLY DEFERRED
  FOR EACH ROW EXECUTE FUNCTION break_down();
SQL
  refused 5 'it is not known whether this was done: ' --user alice feed add title=News
}

test_output_that_cannot_be_written_is_a_failure() {
  expect_status 1 bash -c 'dorvdlctl task list >/dev/full'
  expect_equal "$output" "dorvdlctl: the output could not be written"
}

run_test "$@"
