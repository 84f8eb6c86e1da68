// One run of one statement: the SOCI statement with its bindings, sent in a single round trip.
#ifndef SRC_DBQUERY_EXECUTION_H_
#define SRC_DBQUERY_EXECUTION_H_

#include <dorvdl/dbquery/sql_text.h>
#include <libpq-fe.h>
#include <soci/soci.h>

#include <functional>
#include <vector>

namespace dorvdbquery {

// The statement is a one-time query: parsed, bound and executed in one round trip, where SOCI's
// usual way takes three (prepare, execute, deallocate). Keeping statements prepared means keeping
// objects of this class per session and text, and binding anew.
class Execution {
 public:
  using Target = std::function<void(soci::statement&)>;

  // The session must outlive this object.
  Execution(soci::session& session, SqlText sql, const std::vector<Target>& targets);
  Execution(const Execution&) = delete;
  Execution& operator=(const Execution&) = delete;

  // Sends the statement; reads the first row when asked to. Throws what SOCI throws:
  // postgresql_soci_error for a database error, anything else for a row that cannot be read.
  void Run(bool read_first_row);

  // Reads the next row into the targets.
  bool Fetch();

  // The server's answer; null before Run() and when the connection broke.
  const PGresult* result();

  const std::string& text() const { return sql_.text(); }

 private:
  const SqlText sql_;  // owns the values that the statement points to, so it comes first
  soci::statement statement_;
};

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_EXECUTION_H_
