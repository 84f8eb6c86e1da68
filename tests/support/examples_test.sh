# For the tests of the programs in examples/, which source this.
# shellcheck shell=bash
. "$(dirname "${BASH_SOURCE[0]}")/script_test.sh"

query() {
  psql -XAtq -v ON_ERROR_STOP=1 -U Tarnwick -d download -c "$1"
}

# prints STATUS TEXT COMMAND...: TEXT is all that comes, on both streams.
prints() {
  expect_status "$1" "${@:3}"
  expect_equal "$output" "$2"
}

# A feed of alice (1) and one of bob (2), each with a filter.
two_feeds() {
  query "INSERT INTO rss_feed (username) VALUES ('alice'), ('bob');
    INSERT INTO rss_filter (feed_id, match) VALUES (1, 'hers'), (2, 'his')"
}
