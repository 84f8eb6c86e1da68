// One run of one statement, sent in a single round trip, and the reading of its rows.
#ifndef SRC_DBQUERY_EXECUTION_H_
#define SRC_DBQUERY_EXECUTION_H_

#include <dorvdl/dbquery/sql_text.h>
#include <libpq-fe.h>
#include <soci/soci.h>

#include <functional>
#include <string>
#include <vector>

#include "dbquery/session_state.h"

namespace dorvdbquery {

// The statement is sent past SOCI, whose way takes three round trips (prepare, execute,
// deallocate), copies each value, cuts it at an embedded NUL and puts it into the text of
// exceptions. SOCI's statement is there for the targets: it is handed the answer, and reads the
// rows into them.
class Execution {
 public:
  using Target = std::function<void(soci::statement&)>;

  // The state must outlive the calls of Run() and Fetch(), not this object.
  Execution(SessionState& state, SqlText sql, const std::vector<Target>& targets);
  Execution(const Execution&) = delete;
  Execution& operator=(const Execution&) = delete;

  // Sends the statement and reads no row; false when it has failed. Throws what SOCI throws when
  // rows such as the answer's cannot be read into the targets.
  bool Run(SessionState& state);

  // Reads the next row into the targets; false when there is none. Whatever this throws is about
  // the row, a postgresql_soci_error as well: a target's conversion may have asked a server itself.
  bool Fetch();

  // The server's answer; null before Run() and when there was none.
  const PGresult* result();

  const std::string& text() const { return sql_.text(); }

 private:
  const SqlText sql_;
  soci::statement statement_;
};

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_EXECUTION_H_
