#include "rendering/table.h"

#include <gtest/gtest.h>

#include <sstream>

#include "rendering/text.h"

namespace dorvdl::ctl {
namespace {

class TableTest : public testing::Test {
 protected:
  TableTest() : table_({{"ID", Alignment::kRight}, {"NAME", Alignment::kLeft, true}, {"STATUS"}}) {
    UseUtf8();
  }

  std::string Printed(int width = 0) const {
    std::ostringstream out;
    table_.Print(out, width);
    return out.str();
  }

  Table table_;
};

TEST_F(TableTest, TitlesAlone) { EXPECT_EQ(Printed(), "ID  NAME  STATUS\n"); }

TEST_F(TableTest, ColumnsAreAsWideAsTheirWidestCell) {
  table_.Add({"7", "a", "waiting"});
  table_.Add({"123", "longer", ""});
  EXPECT_EQ(Printed(),
            " ID  NAME    STATUS\n"
            "  7  a       waiting\n"
            "123  longer\n");
}

TEST_F(TableTest, WideCharactersAndEscapesKeepTheColumnsInLine) {
  table_.Add({"1", "日本", "x"});
  table_.Add({"2", "Ä", "x"});
  table_.Add({"3", "\x1b[2J", "x"});
  EXPECT_EQ(Printed(),
            "ID  NAME     STATUS\n"
            " 1  日本     x\n"
            " 2  Ä        x\n"
            " 3  \\x1b[2J  x\n");
}

TEST_F(TableTest, TheShrinkingColumnGivesWayInANarrowTerminal) {
  table_.Add({"1", "0123456789012345", "x"});
  EXPECT_EQ(Printed(26),
            "ID  NAME            STATUS\n"
            " 1  0123456789012…  x\n");
  EXPECT_EQ(Printed(1),  // it keeps a least width all the same
            "ID  NAME          STATUS\n"
            " 1  01234567890…  x\n");
  EXPECT_EQ(Printed(28), Printed());
}

}  // namespace
}  // namespace dorvdl::ctl
