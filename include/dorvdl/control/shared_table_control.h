/// @file
/// What the controls of tables without owners have in common.
#ifndef DORVDL_CONTROL_SHARED_TABLE_CONTROL_H_
#define DORVDL_CONTROL_SHARED_TABLE_CONTROL_H_

#include <dorvdl/control/controller.h>

#include <vector>

namespace dorvdl::control {

/// The control of a table whose rows belong to no user: creates, updates, deletes and gets rows by
/// key alone, whoever the controller acts for; on a user's controller, only those that belong to
/// what is the user's (Controller::ForUser()).
///
/// Controller says what holds for all controls.
///
/// @tparam Interface  the interface that the control implements.
/// @tparam Table      the table's accessor; complete only where the control is implemented.
template <typename Interface, typename Table, typename Record>
class SharedTableControl : public Interface {
 public:
  explicit SharedTableControl(Controller& controller) : controller_(controller) {}

  /// Inserts the present fields of @p record and, on success, sets its key.
  bool Create(Record& record) override;

  /// Writes the present fields of @p record to the row with its key. True also when there is none;
  /// false when only the key is present, but for a plug-in's state, whose update has its key.
  bool Update(const Record& record) override;

  /// Deletes the rows with these keys. False for no keys, without asking the database.
  bool Delete(const std::vector<int>& ids) override;

  /// The row with this key; not valid when there is none.
  Record Get(int id) override;

 protected:
  ~SharedTableControl() = default;

  Controller& controller_;
};

}  // namespace dorvdl::control

#endif  // DORVDL_CONTROL_SHARED_TABLE_CONTROL_H_
