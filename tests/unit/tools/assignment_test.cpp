#include "reading/assignment.h"

#include <dorvdl/proto/record.pb.h>
#include <gtest/gtest.h>

#include "outcome.h"
#include "rendering/text.h"

namespace dorvdl::ctl {
namespace {

class AssignmentTest : public testing::Test {
 protected:
  AssignmentTest() { UseUtf8(); }

  void Set(const std::string& assignment) { Assign(kind_, assignment, item_); }

  // What is said against the assignment.
  std::string Complaint(const std::string& assignment) {
    try {
      Set(assignment);
    } catch (const WrongUsage& error) {
      return error.what();
    }
    return "";
  }

  Assignable kind_{"item", "id", nullptr};
  record::proto::RssItem item_;
};

TEST_F(AssignmentTest, SetsFieldsOfEveryType) {
  Set("title=a = b");
  Set("date=-2147483648");
  Set("size=9223372036854775807");
  Set("is_new=yes");
  EXPECT_EQ(item_.title(), "a = b");
  EXPECT_EQ(item_.date(), -2147483647 - 1);
  EXPECT_EQ(item_.size(), 9223372036854775807);
  EXPECT_TRUE(item_.is_new());
}

TEST_F(AssignmentTest, AnEmptyTextAndAZeroArePresent) {
  Set("title=");
  Set("date=0");
  Set("is_new=no");
  EXPECT_TRUE(item_.has_title() && item_.has_date() && item_.has_is_new());
  EXPECT_FALSE(item_.has_link() || item_.has_size() || item_.has_id());
}

TEST_F(AssignmentTest, TruthValuesHaveThreeSpellings) {
  for (const char* const value : {"yes", "true", "1"}) {
    AssignColumn(kind_, "is_new", value, item_);
    EXPECT_TRUE(item_.is_new()) << value;
    item_.set_is_new(false);
  }
  for (const char* const value : {"no", "false", "0"}) {
    item_.set_is_new(true);
    AssignColumn(kind_, "is_new", value, item_);
    EXPECT_FALSE(item_.is_new()) << value;
  }
  EXPECT_EQ(Complaint("is_new=TRUE"), "is_new: \"TRUE\" is neither yes nor no");
}

TEST_F(AssignmentTest, WhatCannotBeSetIsToldAndLeavesTheMessageAlone) {
  EXPECT_EQ(Complaint("titel=x"), "an item has no column \"titel\"");
  EXPECT_EQ(Complaint("id=1"), "id is the key and cannot be set");
  EXPECT_EQ(Complaint("title"), "\"title\" is not of the form KEY=VALUE");
  EXPECT_EQ(Complaint("title=\xff"), "title: not UTF-8");
  EXPECT_EQ(Complaint("date=2147483648"), "date: \"2147483648\" is no whole number of 32 bits");
  EXPECT_EQ(Complaint("size=1.5"), "size: \"1.5\" is no whole number of 64 bits");
  EXPECT_EQ(item_.ByteSizeLong(), 0U);
}

TEST_F(AssignmentTest, TheKindMayRefuseAValue) {
  kind_.check = [](const std::string& column, const std::string& value) {
    throw WrongUsage(column + " is not to be " + value);
  };
  EXPECT_EQ(Complaint("title=x"), "title is not to be x");
  EXPECT_FALSE(item_.has_title());
}

}  // namespace
}  // namespace dorvdl::ctl
