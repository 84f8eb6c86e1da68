/// @file
/// What the columns of an INSERT are taken from.
#ifndef DORVDL_DBQUERY_INSERTABLE_H_
#define DORVDL_DBQUERY_INSERTABLE_H_

#include <dorvdl/util/export.h>

#include <string>
#include <vector>

namespace dorvdbquery {

/// What can be written by an INSERT.
class DORVDL_EXPORT Insertable {
 public:
  /// The names of the columns to insert.
  virtual std::vector<std::string> GetInsertFields() const = 0;
  virtual ~Insertable();
};

}  // namespace dorvdbquery

#endif  // DORVDL_DBQUERY_INSERTABLE_H_
