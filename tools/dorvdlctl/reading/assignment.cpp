#include "reading/assignment.h"

#include <cstdint>

#include "outcome.h"
#include "reading/parse_number.h"
#include "rendering/text.h"

namespace dorvdl::ctl {
namespace {

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;

template <typename T>
T NumberOf(const std::string& column, const std::string& value) {
  T number = 0;
  if (!ParseNumber(value, number)) {
    throw WrongUsage(column + ": \"" + value + "\" is no whole number of " +
                     std::to_string(sizeof(T) * 8) + " bits");
  }
  return number;
}

bool TruthOf(const std::string& column, const std::string& value) {
  if (value == "yes" || value == "true" || value == "1") {
    return true;
  }
  if (value == "no" || value == "false" || value == "0") {
    return false;
  }
  throw WrongUsage(column + ": \"" + value + "\" is neither yes nor no");
}

std::string WithArticle(const std::string& noun) {
  return (std::string("aeiou").find(noun.front()) == std::string::npos ? "a " : "an ") + noun;
}

void SetField(const FieldDescriptor& field, const std::string& value, Message& message) {
  const google::protobuf::Reflection& reflection = *message.GetReflection();
  switch (field.cpp_type()) {
    case FieldDescriptor::CPPTYPE_INT32:
      return reflection.SetInt32(&message, &field, NumberOf<std::int32_t>(field.name(), value));
    case FieldDescriptor::CPPTYPE_INT64:
      return reflection.SetInt64(&message, &field, NumberOf<std::int64_t>(field.name(), value));
    case FieldDescriptor::CPPTYPE_BOOL:
      return reflection.SetBool(&message, &field, TruthOf(field.name(), value));
    default:  // records have no other type than these and texts
      return reflection.SetString(&message, &field, value);
  }
}

}  // namespace

void AssignColumn(const Assignable& kind, const std::string& column, const std::string& value,
                  Message& message) {
  const FieldDescriptor* const field = message.GetDescriptor()->FindFieldByName(column);
  if (field == nullptr) {
    throw WrongUsage(WithArticle(kind.noun) + " has no column \"" + column + "\"");
  }
  if (column == kind.key) {
    throw WrongUsage(column + " is the key and cannot be set");
  }
  if (!IsUtf8(value)) {
    throw WrongUsage(column + ": not UTF-8");
  }
  if (kind.check != nullptr) {
    kind.check(column, value);
  }
  SetField(*field, value, message);
}

void Assign(const Assignable& kind, const std::string& assignment, Message& message) {
  const std::size_t sign = assignment.find('=');
  if (sign == std::string::npos) {
    throw WrongUsage("\"" + assignment + "\" is not of the form KEY=VALUE");
  }
  AssignColumn(kind, assignment.substr(0, sign), assignment.substr(sign + 1), message);
}

}  // namespace dorvdl::ctl
