/// @file
/// What the assignments of an UPDATE are taken from.
#ifndef DORVDL_DBQUERY_UPDATABLE_H_
#define DORVDL_DBQUERY_UPDATABLE_H_

#include <dorvdl/util/export.h>

namespace dorvdbquery {

class UpdateQuery;

/// What can be written by an UPDATE.
class DORVDL_EXPORT Updatable {
 public:
  /// Adds the assignments of what is to be written to @p query.
  virtual void BindUpdateField(UpdateQuery& query) const = 0;
  virtual ~Updatable();
};

}  // namespace dorvdbquery

#endif  // DORVDL_DBQUERY_UPDATABLE_H_
