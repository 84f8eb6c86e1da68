/// @file
/// Decoding result rows without SOCI's dynamic rows in between.
#ifndef DORVDL_DBQUERY_ROW_TARGET_H_
#define DORVDL_DBQUERY_ROW_TARGET_H_

#include <dorvdl/util/export.h>

namespace dorvdbquery {

class ResultRow;

/// What a select's rows are decoded into, straight from the server's answer. For the library's own
/// records: what a row looks like is no part of the interface.
class DORVDL_EXPORT RowTarget {
 public:
  virtual ~RowTarget();

  /// Called once per execution, with its first row, before that row is read.
  virtual void Describe(const ResultRow& row) = 0;

  /// Called for each row. What it throws leaves the query's Execute() or Fetch().
  virtual void Read(const ResultRow& row) = 0;
};

}  // namespace dorvdbquery

#endif  // DORVDL_DBQUERY_ROW_TARGET_H_
