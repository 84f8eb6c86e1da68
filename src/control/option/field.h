// How the criteria of an option and the fields of its request become one another.
#ifndef SRC_CONTROL_OPTION_FIELD_H_
#define SRC_CONTROL_OPTION_FIELD_H_

#include <functional>
#include <tuple>

namespace dorvdl::control::option {

// A criterion (a data member of the option) with the accessors of its field in the request.
template <typename Criterion, typename Has, typename Get, typename Set>
struct Field {
  Criterion criterion;
  Has has;
  Get get;
  Set set;
};
template <typename Criterion, typename Has, typename Get, typename Set>
Field(Criterion, Has, Get, Set) -> Field<Criterion, Has, Get, Set>;

// The Field of that name in the ListOption and the ListRequest that are in scope.
#define DORVDL_OPTION_FIELD(name)                                                  \
  ::dorvdl::control::option::Field {                                               \
    &ListOption::name, &ListRequest::has_##name, &ListRequest::name,               \
        [](ListRequest& request, const auto& value) { request.set_##name(value); } \
  }

// Sets those criteria of `option` whose fields are present in `request`. `fields` is a tuple.
template <typename Request, typename Fields, typename Option>
void ReadFields(const Request& request, const Fields& fields, Option& option) {
  const auto read = [&](const auto& field) {
    if (std::invoke(field.has, request)) {
      option.*field.criterion = std::invoke(field.get, request);
    }
  };
  std::apply([&](const auto&... field) { (read(field), ...); }, fields);
}

// Sets those fields of `request` whose criteria are set in `option`. `fields` is a tuple.
template <typename Option, typename Fields, typename Request>
void WriteFields(const Option& option, const Fields& fields, Request& request) {
  const auto write = [&](const auto& field) {
    if (const auto& criterion = option.*field.criterion) {
      field.set(request, *criterion);
    }
  };
  std::apply([&](const auto&... field) { (write(field), ...); }, fields);
}

// Reads a kind's request: the common part and the kind's own `fields`.
template <typename Request, typename Fields, typename Option>
void ReadRequest(const Request& request, const Fields& fields, Option& option) {
  option.Clear();
  if (request.has_common()) {
    option.common.fromProto(request.common());
  }
  ReadFields(request, fields, option);
}

// Writes a kind's request: the common part, always present, and the kind's own `fields`.
template <typename Option, typename Fields, typename Request>
void WriteRequest(const Option& option, const Fields& fields, Request& request) {
  request.Clear();
  option.common.toProto(*request.mutable_common());
  WriteFields(option, fields, request);
}

}  // namespace dorvdl::control::option

#endif  // SRC_CONTROL_OPTION_FIELD_H_
