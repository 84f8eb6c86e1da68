// What a session holds besides its public face; shared by the sources of this layer.
#ifndef SRC_DBQUERY_SESSION_STATE_H_
#define SRC_DBQUERY_SESSION_STATE_H_

#include <soci/postgresql/soci-postgresql.h>
#include <soci/soci.h>

namespace dorvdbquery {

class Transaction;

// Statements and transactions refer to it weakly, so that they fail, and touch nothing, once the
// session is gone.
struct SessionState {
  soci::session session;

  Transaction* innermost = nullptr;  // the scope that statements are in; null outside of any
  int savepoints = 0;                // how many were made, to name the next one
  int failed_begins = 0;             // transactions that could not begin and are still in scope

  // That libpq has lost its place in the conversation: it has reported a failure that the server
  // did not send, so an answer may still arrive, which would be taken for the next statement's.
  bool is_broken = false;

  // libpq's connection. The back end is known to be PostgreSQL's, and SOCI gives no other way
  // (dynamic_cast to its type does not link).
  PGconn* connection() const {
    // SOCI's interface lacks the const; nothing is changed.
    auto& open = const_cast<soci::session&>(session);
    return static_cast<soci::postgresql_session_backend*>(open.get_backend())->conn_;
  }

  // Why nothing may be sent that belongs to the innermost scope; null when it may be. A broken or
  // lost connection is no reason of these: that is a failed statement, not a refused one.
  const char* Refusal() const;

  // Makes the innermost scope, if there is one, a failed one: what the library refuses to send is
  // missing in it as much as what the server refuses to do.
  void FailScope() const;

  // Marks the session as broken and hangs up, so that the server rolls back and lets go of its
  // locks whoever still holds the session.
  void Break();
};

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_SESSION_STATE_H_
