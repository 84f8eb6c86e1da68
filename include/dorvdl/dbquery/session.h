/// @file
/// One connection to the database server.
#ifndef DORVDL_DBQUERY_SESSION_H_
#define DORVDL_DBQUERY_SESSION_H_

#include <dorvdl/dbquery/failure.h>
#include <dorvdl/util/export.h>

#include <memory>
#include <string>

namespace soci {
class session;
}

namespace dorvdbquery {

struct SessionState;

/// A connection to PostgreSQL. Movable, closed when destroyed. Belongs to one thread at a time, and
/// not to a forked child, which must leave it alone (docs/threads.md). Statements and transactions
/// made on it follow it when it is moved, and fail once it is gone.
///
/// A failure that the server did not send (no answer, a part of one, no memory for it) leaves it
/// open what the connection brings next. Such a session is broken for good: it is hung up, so that
/// the server rolls back, it is not Good(), and everything on it fails.
///
/// Waiting ends by itself when nobody is at the other end. Unless libpq's environment or service
/// file says otherwise an address has 10 seconds to let the connection be opened
/// (`connect_timeout`), and an open connection over TCP counts as lost when what was sent is not
/// acknowledged for 60 seconds (`tcp_user_timeout`) or when, after 30 seconds of silence, three
/// probes 10 seconds apart are not answered (`keepalives_idle` and its siblings). A server that
/// acknowledges and never answers is not among these: what it works at is limited by its own
/// `statement_timeout` only.
class DORVDL_EXPORT Session {
 public:
  /// A session without a connection: not Good(), and every statement on it fails.
  Session() noexcept;

  /// Connects as the role @p user to @p database. Host, port, TLS, service and fail-over list come
  /// from libpq's own environment: not for set-uid programs, unless they clear that first
  /// (README.md). Uses the process's effective ids for peer authentication.
  ///
  /// @throws soci::soci_error when the connection cannot be opened.
  static Session PGSQL(const std::string& user, const std::string& database);

  ~Session();
  Session(Session&&) noexcept;
  Session& operator=(Session&&) noexcept;

  /// True while the connection is usable, also inside a failed transaction. Notices a connection
  /// that the server has closed, without a round trip.
  bool Good() const;

  /// True while a transaction is open, also a failed one.
  bool InTransaction() const;

  /// What the last statement, large-object call or transaction command on this session failed with;
  /// none when it succeeded. A clean-up that succeeds (a rollback, a savepoint's release) leaves
  /// it. Changes with the next of them.
  const Failure& failure() const;

  /// Notes a failure of an operation that is no statement's own, so that failure() tells of it. One
  /// that was refused makes Transaction::Commit() false like a refused statement.
  void Fail(const Failure& failure);

  /// Stores the regular file at @p path as a new large object and returns its id, 0 on failure
  /// (logged). Opens a transaction of its own when none is open. The file is opened with the
  /// process's effective ids and read up to the size that it has then, however it grows; one that
  /// turns out shorter is a failure. Only files of /proc, whose size is not known, are read as far
  /// as they go.
  unsigned ClientSideLOImport(const std::string& path);

  /// Writes the large object whose id is the low 32 bits of @p oid to the file at @p path, which
  /// is replaced as a whole, its permissions kept, once all its content is on disk; nothing but a
  /// regular file is ever replaced. The file's folder must be writable. Opens a transaction of its
  /// own when none is open. Returns false on failure (logged), and then leaves what is at @p path
  /// as it was.
  ///
  /// Symbolic links of the process's effective user and of root are followed. Another user's are
  /// followed only into a folder that belongs to that user, so that nobody can have the export
  /// replace what they could not replace themselves.
  ///
  /// A file that has no name (any more), such as "/proc/self/fd/N" of one made by memfd_create() or
  /// of one that was removed, cannot be replaced: it is written itself and must be writable. On
  /// failure its content is then undefined, unless there is no such object.
  bool ClientSideLOExport(unsigned long long oid, const std::string& path);

  /// The SOCI session, for statements that the query builder does not cover; null without a
  /// connection. Never call reconnect() on it.
  soci::session* handle() const;

 private:
  friend class FailureKeeper;
  friend class Query;
  friend class RecycledSession;
  friend class Transaction;

  explicit Session(std::shared_ptr<SessionState> state) noexcept;

  std::shared_ptr<SessionState> state_;
};

}  // namespace dorvdbquery

#endif  // DORVDL_DBQUERY_SESSION_H_
