/// @file
/// The library's one kind of database connection.
#ifndef DORVDL_DB_SESSION_H_
#define DORVDL_DB_SESSION_H_

#include <dorvdl/dbquery/session.h>
#include <dorvdl/util/export.h>

#include <memory>

namespace dorvdl::db {

/// A connection to the database "download" under the role "Tarnwick". Shared by the controller and
/// whoever else keeps a pointer to it; belongs to one thread at a time.
class DORVDL_EXPORT DBSession {
 public:
  /// Opens the connection with the process's effective ids briefly switched to root; both steps are
  /// logged. When the switch fails the connection is tried with the ids as they are. Whether the
  /// connection is usable is not tested.
  ///
  /// Changes process-wide state for its duration (dorvdl/util/privilege.h): no other thread may
  /// switch ids, or should act for a user, meanwhile. When nobody answers, that is until the limits
  /// on waiting end it (dorvdl/dbquery/session.h).
  ///
  /// @throws soci::soci_error when the connection cannot be opened; the ids are restored before.
  DBSession();
  ~DBSession();

  /// The query builder's session. Lives as long as this object, and longer where share() was kept.
  dorvdbquery::Session& session() { return *session_; }

  /// A share of the session for whoever has to go on with it when this object is gone. The
  /// connection closes with its last holder.
  const std::shared_ptr<dorvdbquery::Session>& share() const { return session_; }

 private:
  friend class SessionPool;

  explicit DBSession(std::shared_ptr<dorvdbquery::Session> session);

  std::shared_ptr<dorvdbquery::Session> session_;
};

}  // namespace dorvdl::db

#endif  // DORVDL_DB_SESSION_H_
