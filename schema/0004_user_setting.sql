-- The download settings of each user. Booleans are integers, and only 1 is true. The last column is
-- spelt so on purpose: other programs know it by this name.
CREATE TABLE user_setting (
  username            text PRIMARY KEY,
  uid                 integer DEFAULT 0,
  share_folder        text    DEFAULT '',
  user_disabled       integer DEFAULT 0,
  delete_watchtorrent integer DEFAULT 0,
  watchfolder         text    DEFAULT '',
  enable_watchffolder integer DEFAULT 0
);
