#include "dbquery/result_row.h"

namespace dorvdbquery {
namespace {

// Ids of the server's built-in types, fixed for good in its catalogue.
enum TypeId : Oid {
  kBool = 16,
  kBytea = 17,
  kChar = 18,
  kName = 19,
  kInt8 = 20,
  kInt2 = 21,
  kInt4 = 23,
  kText = 25,
  kOid = 26,
  kJson = 114,
  kXml = 142,
  kBpchar = 1042,
  kVarchar = 1043,
  kNumeric = 1700,
  kCstring = 2275,
  kUuid = 2950,
};

}  // namespace

int ResultRow::Find(std::string_view name, int hint) const {
  const int columns = PQnfields(result_);
  if (hint < columns && name == PQfname(result_, hint)) {
    return hint;
  }
  for (int column = 0; column < columns; ++column) {
    if (name == PQfname(result_, column)) {
      return column;
    }
  }
  return -1;
}

ValueKind ResultRow::Kind(int column) const {
  switch (PQftype(result_, column)) {
    case kBool:
    case kInt2:
    case kInt4:
    case kOid:
      return ValueKind::kInt;
    case kInt8:
      return ValueKind::kBigint;
    case kBytea:
    case kChar:
    case kName:
    case kText:
    case kJson:
    case kXml:
    case kBpchar:
    case kVarchar:
    case kCstring:
    case kUuid:
      return ValueKind::kText;
    case kNumeric:
      return ValueKind::kOther;
    default:
      // Of the other types those of varying length (jsonb, arrays ...) count as text.
      return PQfsize(result_, column) == -1 ? ValueKind::kText : ValueKind::kOther;
  }
}

}  // namespace dorvdbquery
