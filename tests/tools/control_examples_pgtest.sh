#!/usr/bin/env bash
# Tests of the programs in examples/ that show one control each, in the private server that runs this
# script.
. "$(dirname "$0")/../support/examples_test.sh"

test_feed_subscribes_once() {
  query "INSERT INTO rss_feed (username, title, last_update)
    VALUES ('alice', 'a', 1), ('bob', 'b', 1)"
  prints 0 $'1 a\n3 http://host/ (not read yet)' feed_example alice http://host/
  prints 0 $'1 a\n3 http://host/ (not read yet)' feed_example alice http://host/
  prints 0 $'2 b\n4 http://host/ (not read yet)' feed_example bob http://host/
}

test_filter_keeps_a_pattern_that_picks_something() {
  two_feeds
  prints 0 $'picks The SHOW 1\nis filter 3' filter_example alice 1 like '%show%' 'The SHOW 1' news
  prints 0 $'picks show 1\nis filter 4' filter_example alice 1 regex 'w [0-9]' 'show 1' Show
  prints 0 'picks nothing' filter_example alice 1 regex Show 'The SHOW 1'
  expect_equal "$(query "SELECT match, is_regex, enable FROM rss_filter WHERE id > 2 ORDER BY id")" \
    $'%show%|0|1\nw [0-9]|1|1'
}

test_filter_refuses_what_is_no_pattern_and_what_is_not_the_users() {
  two_feeds
  prints 1 'the pattern cannot be tried (2201B)' filter_example alice 1 regex '(' show
  prints 1 $'picks show\nthe filter cannot be kept: what the row would belong to is not the user\'s' \
    filter_example alice 2 like '%' show
  expect_equal "$(query "SELECT count(*) FROM rss_filter")" 2
}

test_item_adds_what_is_not_known() {
  two_feeds
  query "INSERT INTO rss_item (feed_id, url) VALUES (1, 'http://host/1'), (2, 'http://host/2')"
  prints 0 '2 new items' item_example 1 <<<$'http://host/1 seen\nhttp://host/2 Show 2\nhttp://host/3'
  expect_equal "$(query "SELECT url, title FROM rss_item WHERE id > 2 ORDER BY id")" \
    $'http://host/2|Show 2\nhttp://host/3|http://host/3'
  expect_equal "$(query "SELECT string_agg((last_update > 0)::text, ',' ORDER BY id) FROM rss_feed")" \
    true,false
}

test_item_adds_nothing_when_one_fails() {
  two_feeds
  query "ALTER TABLE rss_item ADD CHECK (title <> 'bad')"
  expect_status 1 item_example 1 <<<$'http://host/1 good\nhttp://host/2 bad'
  expect_contains "$output" 'the feed is not read: new row for relation "rss_item" violates'
  expect_equal "$(query "SELECT count(*) FROM rss_item")" 0
}

test_thumbnail_replaces_the_pictures_of_a_file() {
  query "INSERT INTO thumbnail (task_id, file_index, thumbnail_filename)
    VALUES (1, 0, 'first'), (1, 3, 'before'), (2, 3, 'of another task')"
  prints 0 $'file 0\nfile 3' thumbnail_example 1 3 a.jpg b.jpg
  expect_equal "$(query "SELECT thumbnail_filename, thumbnail_index, thumbnail_second FROM thumbnail
    WHERE task_id = 1 AND file_index = 3 ORDER BY thumbnail_id")" $'a.jpg|0|0\nb.jpg|1|10'
  prints 0 'file 0' thumbnail_example 1 3
  expect_equal "$(query "SELECT count(*) FROM thumbnail")" 2
}

test_thumbnail_keeps_the_old_pictures_when_a_new_one_fails() {
  query "INSERT INTO thumbnail (task_id, file_index, thumbnail_filename) VALUES (1, 3, 'before');
    ALTER TABLE thumbnail ADD CHECK (thumbnail_index < 1)"
  expect_status 1 thumbnail_example 1 3 a.jpg b.jpg
  expect_contains "$output" 'the pictures are not stored: new row for relation'
  expect_equal "$(query "SELECT thumbnail_filename FROM thumbnail")" before
}

test_plugin_notes_what_its_supervisor_sees() {
  prints 0 '' plugin_example begin 7 unzip 123
  prints 0 '' plugin_example begin 8 par2 124
  prints 0 $'task 7: unzip as process 123, begun 1 times\ntask 8: par2 as process 124, begun 1 times' \
    plugin_example active
  prints 0 '' plugin_example end 7
  prints 0 '' plugin_example begin 8 par2 125
  prints 0 'task 8: par2 as process 125, begun 2 times' plugin_example active
  query "ALTER TABLE task_plugin RENAME COLUMN pid TO process_id"
  prints 1 "the plug-in's state cannot be written: column \"pid\" of relation \"task_plugin\" does \
not exist (42703)" plugin_example end 8
}

test_notification_delivers_and_deletes_what_it_has_read() {
  query "INSERT INTO download_queue (username, filename) VALUES ('alice', 'one'), ('nobody here', 'two');
    INSERT INTO notification (task_id, type) VALUES (1, 'complete'), (1, 'captcha'), (2, 'complete'),
      (9, 'complete'), (1, 'of no kind')"
  prints 1 '4 of 5 are done' "$checkout/tools/with-package-paths" notification_example
  expect_equal "$(query "SELECT id FROM notification")" 3
  query "DELETE FROM download_queue WHERE task_id = 2"
  prints 0 '1 of 1 are done' notification_example
  query "ALTER TABLE notification RENAME TO elsewhere; DROP VIEW notification_view"
  prints 1 'the notifications cannot be listed: relation "notification_view" does not exist (42P01)' \
    notification_example
}

# parked STATUS: a task of alice in it, with notes of its plug-in.
parked() {
  query "INSERT INTO download_queue (username, status) VALUES ('alice', $1);
    INSERT INTO task_plugin (task_id, attributes) SELECT max(task_id), '{}' FROM download_queue"
}

test_captcha_restarts_what_waits_for_one() {
  parked 15
  parked 5
  prints 1 'there is no such task' captcha_example bob 1
  prints 0 'task 1 waits for a worker' captcha_example alice 1
  prints 1 'the task waits for no captcha' captcha_example alice 1
  prints 1 'the task waits for no captcha' captcha_example alice 2
  expect_equal "$(query "SELECT status, attributes FROM download_queue JOIN task_plugin USING (task_id)
    ORDER BY task_id")" $'1|null\n5|{}'
}

test_captcha_changes_nothing_when_the_plugins_row_cannot_be_written() {
  parked 15
  query "ALTER TABLE task_plugin RENAME TO elsewhere"
  prints 1 'the task is not restarted: relation "task_plugin" does not exist (42P01)' \
    captcha_example alice 1
  expect_equal "$(query "SELECT status FROM download_queue")" 15
}

test_host_wait_restarts_what_is_due() {
  query "INSERT INTO download_queue (username, status, waiting_until_time) VALUES
    ('alice', 9, 1), ('alice', 9, 2147483647), ('bob', 9, 0), ('bob', 3, 1)"
  prints 0 $'task 1 waits for a worker\ntask 3 waits for a worker' host_wait_example
  prints 0 '' host_wait_example
  expect_equal "$(query "SELECT string_agg(status::text, ',' ORDER BY task_id) FROM download_queue")" \
    1,9,1,3
}

test_host_wait_goes_on_after_a_task_that_it_cannot_restart() {
  query "INSERT INTO download_queue (status, seeders) VALUES (9, 1), (9, 0);
    ALTER TABLE download_queue ADD CONSTRAINT kept CHECK (seeders = 0 OR status = 9)"
  prints 1 'a task is not restarted: new row for relation "download_queue" violates check constraint "kept" (23514)
task 2 waits for a worker' host_wait_example
}

run_test "$@"
