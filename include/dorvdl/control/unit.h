/// @file
/// Several changes that happen as a whole or not at all.
#ifndef DORVDL_CONTROL_UNIT_H_
#define DORVDL_CONTROL_UNIT_H_

#include <dorvdl/control/controller.h>
#include <dorvdl/util/export.h>

#include <memory>
#include <optional>

namespace dorvdbquery {
class UnitTransaction;
}

namespace dorvdl::control {

/// A unit of work on a controller. While it lives all controls on that controller work in one
/// transaction on one connection, which is not replaced even when it is lost; many changes in one
/// unit are also many times faster than one by one, for the server makes them durable once.
///
/// Anything that fails in it marks it failed: an operation of a control (Controller::failure() says
/// so, and nothing else does), or a statement that somebody else runs on the session meanwhile. The
/// calls that follow are still made. They work after what the library itself refused and after a
/// failed `Create` or `LoImport` of a task; after any other error of the server they fail as well.
///
/// Units and transactions on one session nest, whichever controllers share it: the inner one is a
/// savepoint, and whoever works on the session belongs to the innermost. They end in the reverse
/// order; a unit that ends before one inside it is rolled back with that. A unit is neither copied
/// nor moved, and ends before its controller.
class DORVDL_EXPORT Unit {
 public:
  /// What has become of the changes.
  enum class Outcome {
    kCommitted,   ///< they last; those of a unit inside another only if that one is committed
    kRolledBack,  ///< none of them lasts
    kUnknown,     ///< all of them last or none: the answer to the commit was lost
  };

  /// Opens the controller's connection as a control's call does and begins a transaction (READ
  /// COMMITTED), or a savepoint within one. When that fails the unit is a failed one (logged), and
  /// everything in it fails.
  ///
  /// @throws soci::soci_error when the connection cannot be opened.
  explicit Unit(Controller& controller);

  /// Rolls back unless Commit() was called.
  ~Unit();
  Unit(const Unit&) = delete;
  Unit& operator=(const Unit&) = delete;

  /// Whether something has failed, so that Commit() will roll back; afterwards, whether it did not
  /// commit.
  bool failed() const;

  /// Ends the unit, and tells how. When it did not commit, the controller's failure() is what
  /// failed first in it, the commit included. Called again it tells the same, and why.
  [[nodiscard]] Outcome Commit();

 private:
  Controller& controller_;
  const std::shared_ptr<db::DBSession> session_;
  std::unique_ptr<dorvdbquery::UnitTransaction> transaction_;  // null when it is over
  std::optional<Outcome> outcome_;
  dorvdbquery::Failure failure_;  // what failed first, once it is over
};

}  // namespace dorvdl::control

#endif  // DORVDL_CONTROL_UNIT_H_
