// Rows of the server's answer, decoded straight into a record's message.
#ifndef SRC_RECORD_ROW_DECODER_H_
#define SRC_RECORD_ROW_DECODER_H_

#include <dorvdl/dbquery/row_target.h>

#include <vector>

#include "record/column_table.h"

namespace dorvdl::record {

// Does what ColumnTable::FromValues() does, failures included, without a search by name and an
// allocation per column and row.
class RowDecoder : public dorvdbquery::RowTarget {
 public:
  // Both must outlive this object.
  RowDecoder(const ColumnTable& table, MessageLite& message) : table_(table), message_(message) {}

  void Describe(const dorvdbquery::ResultRow& row) override;
  void Read(const dorvdbquery::ResultRow& row) override;

 private:
  // Where a column stands in the answer.
  struct Source {
    int position;           // -1 when the answer lacks the column
    bool type_is_readable;  // as the type of the column's field
  };

  void ReadColumn(const Column& column, const Source& source, const dorvdbquery::ResultRow& row);

  const ColumnTable& table_;
  MessageLite& message_;
  std::vector<Source> sources_;
};

}  // namespace dorvdl::record

#endif  // SRC_RECORD_ROW_DECODER_H_
