/// @file
/// Start here: the object that a program makes and keeps for a run of work.
#ifndef DORVDL_CONTROL_CONTROLLER_H_
#define DORVDL_CONTROL_CONTROLLER_H_

#include <dorvdl/db/session.h>
#include <dorvdl/util/export.h>

#include <memory>
#include <string>

namespace dorvdl::control {

/// Owns the database connection and the name of the user on whose behalf the program acts, and
/// hands out table accessors bound to both. The controls (`TaskControl` and its siblings) work on
/// one. Belongs to one thread at a time.
///
/// A control is cheap to make, holds nothing but its controller, and must not outlive it. Failures
/// of its operations come back as results, after log lines of the layers below. What is thrown
/// comes from those layers: `soci::soci_error` when the connection cannot be opened or a row cannot
/// be read, `std::bad_cast` for a column of another type.
class DORVDL_EXPORT Controller {
 public:
  /// Opens its connection when it is first needed.
  Controller();

  /// Shares @p session, which may be null, with its other holders.
  explicit Controller(const std::shared_ptr<db::DBSession>& session);
  ~Controller();

  /// The acting user's name; empty for all users.
  const std::string& username() const { return username_; }
  void set_username(const std::string& username) { username_ = username; }

  /// The connection. Opens one when there is none yet or the one held is not good any more; the
  /// other holders of a replaced connection keep theirs, and a transaction on it does not cover
  /// what follows. A new connection is not tested: what is wrong with it shows in its first
  /// statement, and the next call replaces it.
  ///
  /// @throws soci::soci_error when the connection cannot be opened; the next call tries again.
  db::DBSession& db_session();

  /// A new accessor of a table that belongs to no user, for one call.
  template <typename Table>
  Table Use() {
    return Table(db_session());
  }

  /// A new accessor of a table whose rows belong to users, for one call on behalf of username().
  template <typename Table>
  Table UseWithName() {
    return Table(db_session(), username());
  }

 private:
  std::shared_ptr<db::DBSession> db_session_;
  std::string username_;
};

}  // namespace dorvdl::control

#endif  // DORVDL_CONTROL_CONTROLLER_H_
