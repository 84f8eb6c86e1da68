// Storing files that change while they are read.
#include <gtest/gtest.h>

#include <fstream>

#include "integration/dbquery/large_object_test.h"

namespace dorvdbquery {
namespace {

using test_support::TakeLog;

class ChangingFileTest : public LargeObjectTest {
 protected:
  // Stores the file "in" of this size, which gets another one meanwhile.
  unsigned ImportResized(std::size_t size, std::size_t later_size) {
    const std::string path = folder_.Write("in", Content(size));
    return Interrupt([&] { return session_.ClientSideLOImport(path); },
                     [&] { std::filesystem::resize_file(path, later_size); });
  }

  std::string Exported(unsigned oid) {
    EXPECT_TRUE(session_.ClientSideLOExport(oid, folder_.Path("out")));
    return folder_.Read("out");
  }

  test_support::LogLine Shortened() const {
    return FileFailure("Failed to read file [" + folder_.Path("in") + "]: it has become shorter");
  }
};

TEST_F(ChangingFileTest, OneThatGrowsIsStoredUpToItsFormerSize) {
  for (const std::size_t size : {0U, 1U, 256U << 10U, 300U << 10U}) {
    const unsigned oid = ImportResized(size, 1 << 20);
    ASSERT_NE(oid, 0U);
    EXPECT_EQ(Exported(oid), Content(size));
  }
  EXPECT_EQ(TakeLog(), Lines{});
}

TEST_F(ChangingFileTest, OneThatShrinksIsNotStored) {
  for (const std::size_t size : {0U, 256U << 10U, (300U << 10U) - 1}) {
    EXPECT_EQ(ImportResized(300 << 10, size), 0U);
    EXPECT_EQ(TakeLog(), Lines{Shortened()});
  }
  EXPECT_EQ(StoredObjects(), "0");
  EXPECT_TRUE(IsIdle());
}

TEST_F(ChangingFileTest, OneThatShrinksLeavesTheTransactionUsable) {
  DefaultTransaction transaction(session_);
  EXPECT_EQ(ImportResized(2, 1), 0U);
  EXPECT_EQ(TakeLog(), Lines{Shortened()});
  EXPECT_TRUE(Insert(1));
  EXPECT_TRUE(transaction.Commit());
  EXPECT_EQ(Stored(), Rows{"1"});
  EXPECT_EQ(StoredObjects(), "0");
}

}  // namespace
}  // namespace dorvdbquery
