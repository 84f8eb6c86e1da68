// Columns for which a NULL is an error, read in both ways.
#include <dorvdl/db/session.h>
#include <dorvdl/dbquery/select_query.h>
#include <dorvdl/proto/record.pb.h>
#include <gtest/gtest.h>
#include <soci/soci.h>

#include <memory>
#include <string>

#include "record/column_table.h"
#include "record/row_decoder.h"
#include "support/database.h"
#include "support/syslog_capture.h"

namespace dorvdl::record {
namespace {

using Message = proto::Task;

const ColumnTable& StrictColumns() {
  static const ColumnTable columns({
      DORVDL_COLUMN(pid),
      DORVDL_COLUMN(total_size),
      DORVDL_COLUMN(filename),
  });
  return columns;
}

// What SOCI fills through the column table.
struct StrictRow {
  Message message;
};

}  // namespace
}  // namespace dorvdl::record

template <>
struct soci::type_conversion<dorvdl::record::StrictRow> {
  using base_type = soci::values;
  static void from_base(const soci::values& values, soci::indicator,
                        dorvdl::record::StrictRow& row) {
    dorvdl::record::StrictColumns().FromValues(values, row.message);
  }
  static void to_base(const dorvdl::record::StrictRow&, soci::values&, soci::indicator&) {}
};

namespace dorvdl::record {
namespace {

class StrictColumnsTest : public test_support::DatabaseTest {
 protected:
  // Reads the only row in one of the ways; returns what was thrown, or "".
  std::string Read(bool by_decoder, Message& message) {
    dorvdbquery::SelectQuery query(session_.session(), "download_queue");
    StrictRow row;
    if (by_decoder) {
      query.IntoRow(std::make_shared<RowDecoder>(StrictColumns(),
                                                 [&message]() -> MessageLite& { return message; }));
    } else {
      query.Into(row);
    }
    std::string thrown;
    try {
      EXPECT_TRUE(query.Execute());
    } catch (const soci::soci_error& error) {
      thrown = error.what();
    }
    if (!by_decoder) {
      message = row.message;
    }
    return thrown;
  }

  db::DBSession session_;
};

TEST_F(StrictColumnsTest, ARowWithoutNullsIsRead) {
  raw_.Run("INSERT INTO download_queue (pid, total_size, filename) VALUES (7, 1099511627776, '')");
  for (const bool by_decoder : {false, true}) {
    Message message;
    EXPECT_EQ(Read(by_decoder, message), "");
    EXPECT_EQ(message.ShortDebugString(), "pid: 7 filename: \"\" total_size: 1099511627776");
  }
}

TEST_F(StrictColumnsTest, ANullIsAnErrorAndWhatWasReadBeforeStays) {
  const auto expect_kept = [this](const std::string& values, const std::string& kept) {
    raw_.Run(
        "TRUNCATE download_queue; "
        "INSERT INTO download_queue (pid, total_size, filename) VALUES (" +
        values + ")");
    for (const bool by_decoder : {false, true}) {
      Message message;
      EXPECT_EQ(Read(by_decoder, message), "Null value not allowed for this type") << values;
      EXPECT_EQ(message.ShortDebugString(), kept) << values;
    }
  };
  expect_kept("NULL, 1, 'a'", "");
  expect_kept("7, NULL, 'a'", "pid: 7");
  expect_kept("7, 1, NULL", "pid: 7 total_size: 1");
}

TEST_F(StrictColumnsTest, ARecordWithoutAKeyEndsTheProcessThatAsksForIt) {
  Message message;
  EXPECT_EXIT(StrictColumns().key(message), testing::KilledBySignal(SIGABRT), "");
  EXPECT_EXIT(StrictColumns().set_key(message, 1), testing::KilledBySignal(SIGABRT), "");
}

}  // namespace
}  // namespace dorvdl::record
