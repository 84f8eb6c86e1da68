// What a session holds besides its public face; shared by the sources of this layer.
#ifndef SRC_DBQUERY_SESSION_STATE_H_
#define SRC_DBQUERY_SESSION_STATE_H_

#include <soci/postgresql/soci-postgresql.h>
#include <soci/soci.h>

namespace dorvdbquery {

struct SessionState {
  soci::session session;

  int savepoints = 0;     // how many were made, to name the next one
  int failed_begins = 0;  // transactions that could not begin and are still in scope

  // libpq's connection. The back end is known to be PostgreSQL's, and SOCI gives no other way
  // (dynamic_cast to its type does not link).
  PGconn* connection() {
    return static_cast<soci::postgresql_session_backend*>(session.get_backend())->conn_;
  }
};

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_SESSION_STATE_H_
