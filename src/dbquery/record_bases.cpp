#include <dorvdl/dbquery/insertable.h>
#include <dorvdl/dbquery/updatable.h>

namespace dorvdbquery {

Updatable::~Updatable() = default;
Insertable::~Insertable() = default;

}  // namespace dorvdbquery
