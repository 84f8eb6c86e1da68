#include "record/criterion.h"

#include <algorithm>
#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <locale>
#include <vector>

#include "argument.h"

namespace dorvdl::ctl {
namespace {

// In any case, as the list itself takes it.
CLI::Validator OrderOf(const Description& kind) {
  const auto check = [&kind](const std::string& name) -> std::string {
    std::vector<std::string> known = kind.columns;
    known.insert(known.end(), kind.orders.begin(), kind.orders.end());
    const auto is_name = [&name](const std::string& candidate) {
      return boost::iequals(name, candidate, std::locale::classic());
    };
    if (std::any_of(known.begin(), known.end(), is_name)) {
      return "";
    }
    const std::string quoted = "\"" + name + "\" is ";
    return kind.orders.empty()
               ? quoted + "no column"
               : quoted + "neither a column nor " + boost::algorithm::join(kind.orders, " nor ");
  };
  return CLI::Validator(check, "", "");
}

std::string OrdersText(const Description& kind) {
  std::string text = "Order by a column (`" + kind.GroupName() + " show` names them)";
  for (std::size_t i = 0; i < kind.orders.size(); ++i) {
    text.append(i + 1 == kind.orders.size() ? " or by " : ", by ").append(kind.orders[i]);
  }
  return text + "; default: " + kind.key;
}

}  // namespace

CLI::Option& AddTextCriterion(CLI::App& command, const std::string& name,
                              const std::string& description,
                              boost::optional<std::string>& criterion) {
  return *command
              .add_option_function<std::string>(
                  name, [&criterion](const std::string& text) { criterion = text; }, description)
              ->check(Utf8Text());
}

CLI::Option& AddNumberCriterion(CLI::App& command, const std::string& name,
                                const std::string& description, std::int32_t least,
                                boost::optional<std::int32_t>& criterion) {
  return *command
              .add_option_function<std::int32_t>(
                  name, [&criterion](std::int32_t number) { criterion = number; }, description)
              ->check(NumberFrom(least));
}

void AddOrderAndPage(CLI::App& command, const Description& kind,
                     control::option::common::ListOption& option) {
  option.sort_by = kind.key;
  command
      .add_option_function<std::string>(
          "--sort-by", [&option](const std::string& name) { option.sort_by = name; },
          OrdersText(kind))
      ->type_name("COLUMN")
      ->check(OrderOf(kind));
  command.add_flag_callback(
      "--descending", [&option] { option.ascending = false; }, "Turn the order round");
  AddNumberCriterion(command, "--limit", "List N " + kind.noun + "s at most", 0, option.limit)
      .type_name("N");
  AddNumberCriterion(command, "--offset", "Leave out the first N " + kind.noun + "s", 0,
                     option.offset)
      .type_name("N");
}

}  // namespace dorvdl::ctl
