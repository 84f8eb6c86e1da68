/// @file
/// DELETE statements.
#ifndef DORVDL_DBQUERY_DELETE_QUERY_H_
#define DORVDL_DBQUERY_DELETE_QUERY_H_

#include <dorvdl/dbquery/query.h>
#include <dorvdl/util/export.h>

#include <string>

namespace dorvdbquery {

/// A DELETE. One that reaches no row is a success.
class DORVDL_EXPORT DeleteQuery : public ConditionalQuery {
 public:
  DeleteQuery(const Session& session, std::string table);
  ~DeleteQuery() override;

  SqlText Statement() const override;
};

}  // namespace dorvdbquery

#endif  // DORVDL_DBQUERY_DELETE_QUERY_H_
