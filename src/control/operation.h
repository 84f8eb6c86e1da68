// One operation of a control: the shape that all of them have.
#ifndef SRC_CONTROL_OPERATION_H_
#define SRC_CONTROL_OPERATION_H_

#include <dorvdl/control/controller.h>
#include <dorvdl/dbquery/failure.h>

#include <optional>
#include <string>
#include <type_traits>

#include "dbquery/failure_keeper.h"

namespace dorvdl::control {

// While it lives, what fails first on its controller is kept, and is the controller's failure when
// it ends. An operation that failed fails the unit around it. An operation within another on the
// same controller is a part of it.
class Operation {
 public:
  explicit Operation(Controller& controller);
  ~Operation();
  Operation(const Operation&) = delete;
  Operation& operator=(const Operation&) = delete;

  // Fails the operation by what failed in a part of it.
  void Keep(const dorvdbquery::Failure& failure) noexcept;

  void Fail(dorvdbquery::Failure::Kind kind, const char* message) noexcept;

  // Whether the controller is a user's and has lost its name: nothing may be reached then. Fails
  // the operation, and logs.
  bool IsNobodys();

  // A new accessor, within the bounds of the controller.
  template <typename Table>
  Table Use() {
    Table table = MakeTable<Table>(Open());
    watch_.emplace(table.GetSession(), first_);
    if (const std::string* const user = bound_user()) {
      table.BindTo(*user);
    }
    return table;
  }

 private:
  // The connection, opened where need be; fails, and throws, as that throws.
  db::DBSession& Open();

  // The user to whom the controller is bound; null when it reaches everybody's rows.
  const std::string* bound_user() const;

  template <typename Table>
  Table MakeTable(db::DBSession& session) {
    if constexpr (std::is_constructible_v<Table, db::DBSession&, const std::string&>) {
      return Table(session, controller_.username());
    } else {
      return Table(session);
    }
  }

  Controller& controller_;
  Operation* const outer_;
  dorvdbquery::Failure first_;
  std::optional<dorvdbquery::FailureKeeper> watch_;
};

// Runs @p work as one operation; what it throws fails the operation and passes on.
template <typename Work>
auto Operate(Controller& controller, Work work) {
  Operation operation(controller);
  try {
    return work(operation);
  } catch (...) {
    // Not what an exception says: it may quote a value.
    operation.Fail(dorvdbquery::Failure::Kind::kLocal, "an exception ended the operation");
    throw;
  }
}

// Runs @p call, which is given an accessor, as one operation. Where nothing may be reached the
// result is @p failed, by default the empty one of its type.
template <typename Table, typename Call, typename Result = std::invoke_result_t<Call&, Table&>>
Result OnTable(Controller& controller, Call call, std::optional<Result> failed = std::nullopt) {
  return Operate(controller, [&](Operation& operation) -> Result {
    if (operation.IsNobodys()) {
      return failed ? *failed : Result();
    }
    Table table = operation.Use<Table>();
    return call(table);
  });
}

// What a count that failed tells.
inline constexpr std::optional<int> kNoCount = -1;

// An operation that has nothing to do: false, which is an answer and no failure.
inline bool NothingToDo(Controller& controller) {
  const Operation operation(controller);
  return false;
}

}  // namespace dorvdl::control

#endif  // SRC_CONTROL_OPERATION_H_
