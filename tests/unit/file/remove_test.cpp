// RemoveTaskTemp.
#include <dorvdl/file.h>

#include "unit/file/file_test.h"

namespace test_support {
namespace {

class RemoveTaskTempTest : public FileTest {};

TEST_F(RemoveTaskTempTest, RunsRmWithoutAShell) {
  EXPECT_EQ(RemoveTaskTemp("/volume1/download/17", 0), 0);
  EXPECT_EQ(RemoveTaskTemp("/a b/$(id); *", 0), 0);
  EXPECT_EQ(platform_.TakeCalls(),
            (Calls{"VLIBCExecl(\"/bin/rm\", 187, \"-rf\", \"/volume1/download/17\", nullptr)",
                   "VLIBCExecl(\"/bin/rm\", 187, \"-rf\", \"/a b/$(id); *\", nullptr)"}));
  EXPECT_EQ(TakeLog(), Log());
}

TEST_F(RemoveTaskTempTest, AnyFlagButZeroSelectsTheOtherOptionWord) {
  for (const int flag : {1, -1, 64}) {
    EXPECT_EQ(RemoveTaskTemp("/x", flag), 0);
    EXPECT_EQ(platform_.TakeCalls(),
              Calls{"VLIBCExecl(\"/bin/rm\", 251, \"-rf\", \"/x\", nullptr)"});
  }
}

TEST_F(RemoveTaskTempTest, AnyOtherAnswerThanZeroIsAFailure) {
  for (const int answer : {-1, 1, 256}) {
    platform_.execl = answer;
    EXPECT_EQ(RemoveTaskTemp("/volume1/17", 0), -1);
    EXPECT_EQ(TakeLog(), Log{Error("Failed to remove path [/volume1/17]")});
  }
}

}  // namespace
}  // namespace test_support
