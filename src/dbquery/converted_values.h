// The column values that a record's own conversion gives.
#ifndef SRC_DBQUERY_CONVERTED_VALUES_H_
#define SRC_DBQUERY_CONVERTED_VALUES_H_

#include <dorvdl/dbquery/parameter.h>
#include <soci/soci.h>

#include <string>

namespace dorvdbquery {

// A `soci::values` that a conversion fills and whose content can be taken out by name. SOCI frees
// such content only through a statement, so one without placeholders is used up at the end.
class ConvertedValues {
 public:
  // The session must be connected and outlive this object.
  explicit ConvertedValues(soci::session& session) : session_(session) {}
  ~ConvertedValues();
  ConvertedValues(const ConvertedValues&) = delete;
  ConvertedValues& operator=(const ConvertedValues&) = delete;

  soci::values& values() { return values_; }

  // The value set under @p name, whatever text or number type it was set with. Throws soci_error
  // when there is none.
  Parameter Get(const std::string& name) const;

 private:
  soci::session& session_;
  soci::values values_;
};

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_CONVERTED_VALUES_H_
