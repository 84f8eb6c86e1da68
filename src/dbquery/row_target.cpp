#include <dorvdl/dbquery/row_target.h>

namespace dorvdbquery {

RowTarget::~RowTarget() = default;

}  // namespace dorvdbquery
