/// @file
/// Start here: the object that a program makes and keeps for a run of work.
#ifndef DORVDL_CONTROL_CONTROLLER_H_
#define DORVDL_CONTROL_CONTROLLER_H_

#include <dorvdl/db/session.h>
#include <dorvdl/dbquery/failure.h>
#include <dorvdl/util/export.h>

#include <memory>
#include <string>

namespace dorvdl::control {

class Operation;

/// Owns the database connection and the name of the user on whose behalf the program acts, and
/// hands out table accessors bound to both. The controls (`TaskControl` and its siblings) work on
/// one. Belongs to one thread at a time.
///
/// A control is cheap to make, holds nothing but its controller, and must not outlive it. Failures
/// of its operations come back as results, after log lines of the layers below; failure() tells a
/// failed one from one that found nothing, and why. What is thrown comes from those layers:
/// `soci::soci_error` when the connection cannot be opened or a row cannot be read, `std::bad_cast`
/// for a column of another type.
///
/// Several changes that belong together are a Unit (`<dorvdl/control/unit.h>`).
class DORVDL_EXPORT Controller {
 public:
  /// Opens its connection when it is first needed.
  Controller();

  /// Shares @p session, which may be null, with its other holders.
  explicit Controller(const std::shared_ptr<db::DBSession>& session);

  /// A user's controller, for all that is done at a user's request. Its controls reach only what
  /// belongs to that user: in the tables without owners the filters and items of the user's feeds,
  /// and the thumbnails, plug-in states and notifications of the user's tasks. What belongs to
  /// somebody else, or to a feed or task that is gone, is not there for them. Each call stays one
  /// statement in one round trip.
  ///
  /// What is created is the user's: an owner that is absent is filled in; another's name, another's
  /// feed or task, a key that the record carries (but for a plug-in's state, whose key is its task)
  /// and a `file_oid` other than 0 are refused. An update may carry the user's own name, which
  /// leaves the column as it is; one that carries another name or key, another's feed or task, or a
  /// `file_oid` is refused. With an empty name every operation is refused, and nothing thrown.
  ///
  /// The bounds are the controls'. Use(), UseWithName() and db_session() hand out what they always
  /// do: who takes an accessor leaves the bounds.
  ///
  /// @param username  in any case; set_username() changes the user.
  /// @param session   shared with its other holders; may be null.
  [[nodiscard]] static Controller ForUser(const std::string& username,
                                          std::shared_ptr<db::DBSession> session = nullptr);

  /// Shares the session of @p other, acts for the same user within the same bounds, and is in no
  /// unit. A controller that is in a unit must not be assigned to.
  Controller(const Controller& other);
  Controller& operator=(const Controller& other);
  ~Controller();

  /// The acting user's name; empty for all users (a user's controller: for nobody).
  const std::string& username() const { return username_; }
  void set_username(const std::string& username) { username_ = username; }

  /// What the last operation of a control on this controller failed with: the first thing that
  /// failed in it, an exception that left it included. None when it did not fail: an empty list, an
  /// invalid record or a false is an answer then. An operation sets it to none as it begins; what
  /// other holders of the session do does not change it. A Unit that did not commit leaves here
  /// what failed first in it.
  [[nodiscard]] const dorvdbquery::Failure& failure() const { return failure_; }

  /// The connection. Opens one when there is none yet or the one held is not good any more; the
  /// other holders of a replaced connection keep theirs, and a transaction on it does not cover
  /// what follows. A new connection is not tested: what is wrong with it shows in its first
  /// statement, and the next call replaces it. While a Unit lives, the connection stays, also a
  /// lost one.
  ///
  /// @throws soci::soci_error when the connection cannot be opened; the next call tries again.
  db::DBSession& db_session();

  /// A new accessor of a table that belongs to no user, for one call. It has no bounds, also that
  /// of a user's controller.
  template <typename Table>
  Table Use() {
    return Table(db_session());
  }

  /// A new accessor of a table whose rows belong to users, for one call on behalf of username().
  /// It has no other bounds, also that of a user's controller.
  template <typename Table>
  Table UseWithName() {
    return Table(db_session(), username());
  }

 private:
  friend class Operation;
  friend class Unit;

  std::shared_ptr<db::DBSession> db_session_;
  std::string username_;
  bool is_users_ = false;           // the controls stay within the bounds of the user
  int units_ = 0;                   // that are open on this controller and pin its connection
  Operation* operation_ = nullptr;  // the innermost that is running
  dorvdbquery::Failure failure_;
};

}  // namespace dorvdl::control

#endif  // DORVDL_CONTROL_CONTROLLER_H_
