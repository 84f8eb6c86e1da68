// Records in the destructors of static objects, which run when what the library made for itself
// during the program's run may be gone.
#include <dorvdl/record/plugin.h>
#include <dorvdl/record/rss_feed.h>
#include <dorvdl/record/task.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <functional>

namespace dorvdl::record {
namespace {

// Made before any record is used, so destroyed after whatever that made.
struct AtTheEnd {
  ~AtTheEnd() {
    if (body) {
      body();
    }
  }
  std::function<void()> body;
} at_the_end;

// What a record can do; ends the process when something is not as it should be.
void UseRecords() {
  Task task;
  task.set_primary_key(7);
  task.mutable_proto().set_url("u");
  task.set_extra_data(Json::Value("x"));
  Plugin plugin;
  plugin.set_attributes(Json::Value(1.5));
  RssFeed feed;
  feed.set_primary_key(3);
  Json::Value json;
  feed.ToJson(json);
  const bool good = Task::GetSelectFields().size() == 35 && task.primary_key() == 7 &&
                    task.GetInsertFields().size() == 3 && task.proto().extra_data() == "\"x\"" &&
                    plugin.attributes() == 1.5 && json["id"] == 3;
  if (!good) {
    _exit(1);
  }
}

TEST(StaticObjectsDeathTest, RecordsWorkInTheirDestructors) {
  EXPECT_EXIT(
      {
        UseRecords();
        at_the_end.body = [] {
          UseRecords();
          _exit(42);
        };
        std::exit(0);
      },
      testing::ExitedWithCode(42), "");
}

}  // namespace
}  // namespace dorvdl::record
