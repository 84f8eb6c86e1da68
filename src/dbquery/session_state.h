// What a session holds besides its public face; shared by the sources of this layer.
#ifndef SRC_DBQUERY_SESSION_STATE_H_
#define SRC_DBQUERY_SESSION_STATE_H_

#include <dorvdl/dbquery/failure.h>
#include <soci/postgresql/soci-postgresql.h>
#include <soci/soci.h>

#include <memory>
#include <utility>

namespace dorvdbquery {

class FailureKeeper;
class Transaction;

// Statements and transactions refer to it weakly, so that they fail, and touch nothing, once the
// session is gone.
struct SessionState {
  explicit SessionState(std::unique_ptr<soci::session> open) : session(std::move(open)) {}

  // By pointer, for SOCI's sessions cannot be moved, and a pooled connection passes from one state
  // to the next. Never null while anything can reach the state.
  std::unique_ptr<soci::session> session;

  Transaction* innermost = nullptr;  // the scope that statements are in; null outside of any
  int savepoints = 0;                // how many were made, to name the next one
  int failed_begins = 0;             // transactions that could not begin and are still in scope

  // What the last statement, large-object call or transaction command failed with.
  Failure failure;
  FailureKeeper* keeper = nullptr;  // who wants to know of the first one; null when nobody does

  // That libpq has lost its place in the conversation: it has reported a failure that the server
  // did not send, so an answer may still arrive, which would be taken for the next statement's.
  bool is_broken = false;

  // libpq's connection. The back end is known to be PostgreSQL's, and SOCI gives no other way
  // (dynamic_cast to its type does not link).
  PGconn* connection() const {
    return static_cast<soci::postgresql_session_backend*>(session->get_backend())->conn_;
  }

  // Whether the connection is usable, as far as can be told without a round trip.
  bool IsGood() const;

  // Whether libpq is busy with something that the library has not begun: a program has used its
  // connection itself.
  bool IsInTheMiddle() const;

  // Why nothing may be sent that belongs to the innermost scope; null when it may be. A broken or
  // lost connection is no reason of these: that is a failed statement, not a refused one.
  const char* Refusal() const;

  // Notes a failure, for those who ask what something failed with. What the library has refused
  // fails the innermost scope, if there is one, for it is missing there as much as what the server
  // refuses to do; that the server remembers itself.
  void Note(const Failure& failure) noexcept;

  // Marks the session as broken and hangs up, so that the server rolls back and lets go of its
  // locks whoever still holds the session.
  void Break();
};

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_SESSION_STATE_H_
