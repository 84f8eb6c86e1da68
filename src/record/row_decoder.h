// Rows of the server's answer, decoded straight into a record's message.
#ifndef SRC_RECORD_ROW_DECODER_H_
#define SRC_RECORD_ROW_DECODER_H_

#include <dorvdl/dbquery/row_target.h>

#include <functional>
#include <utility>
#include <vector>

#include "record/column_table.h"

namespace dorvdl::record {

// Does what ColumnTable::FromValues() does, failures included, without a search by name and an
// allocation per column and row.
class RowDecoder : public dorvdbquery::RowTarget {
 public:
  // What the next row is decoded into; asked for once per row.
  using Destination = std::function<MessageLite&()>;

  // The table must outlive this object.
  RowDecoder(const ColumnTable& table, Destination destination)
      : table_(table), destination_(std::move(destination)) {}

  void Describe(const dorvdbquery::ResultRow& row) override;
  void Read(const dorvdbquery::ResultRow& row) override;

 private:
  // Where a column stands in the answer.
  struct Source {
    int position;           // -1 when the answer lacks the column
    bool type_is_readable;  // as the type of the column's field
  };

  static void ReadColumn(const Column& column, const Source& source,
                         const dorvdbquery::ResultRow& row, MessageLite& message);

  const ColumnTable& table_;
  const Destination destination_;
  std::vector<Source> sources_;
};

}  // namespace dorvdl::record

#endif  // SRC_RECORD_ROW_DECODER_H_
