// Assignments to the columns of a record.
#ifndef DORVDLCTL_READING_ASSIGNMENT_H_
#define DORVDLCTL_READING_ASSIGNMENT_H_

#include <google/protobuf/message.h>

#include <string>

namespace dorvdl::ctl {

// What may be assigned to a kind of record.
struct Assignable {
  std::string noun;  // the kind, in messages
  std::string key;   // the key column, which is never assigned
  // Throws WrongUsage for a value that a column cannot have though its type allows it; may be null.
  void (*check)(const std::string& column, const std::string& value) = nullptr;
};

// Sets a column of @p message. A number stands as decimal digits, a truth value as yes, true or 1,
// no, false or 0, and a text as it is. Throws WrongUsage for an unknown column, the key, and a
// value that the column cannot have.
void AssignColumn(const Assignable& kind, const std::string& column, const std::string& value,
                  google::protobuf::Message& message);

// The same for an assignment "column=value".
void Assign(const Assignable& kind, const std::string& assignment,
            google::protobuf::Message& message);

}  // namespace dorvdl::ctl

#endif  // DORVDLCTL_READING_ASSIGNMENT_H_
