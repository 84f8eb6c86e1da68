// One request to the server and its whole answer: the one place where something is sent.
#ifndef SRC_DBQUERY_EXCHANGE_H_
#define SRC_DBQUERY_EXCHANGE_H_

#include <libpq-fe.h>

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "dbquery/session_state.h"

namespace dorvdbquery {

struct AnswerDeleter {
  void operator()(PGresult* result) const { PQclear(result); }
};
// Null when libpq could not even report a failure.
using Answer = std::unique_ptr<PGresult, AnswerDeleter>;

// Whether the server has done what it was asked.
bool IsSuccess(const PGresult* answer);

// Whether the server has sent this failure; otherwise libpq made it up, and does not know what is
// still to come.
bool IsFromServer(const PGresult* answer);

// The values of a statement's placeholders, in order. They are referred to, not copied.
class Arguments {
 public:
  explicit Arguments(std::size_t count) { values_.reserve(count); }

  // A text that ends with a zero; null for a NULL.
  Arguments& AddText(const char* text);

  // Bytes of any value, for a placeholder of the type bytea.
  Arguments& AddBytes(std::string_view bytes);

  int count() const { return static_cast<int>(values_.size()); }
  const char* const* values() const { return values_.data(); }

  // As libpq takes them: null when all are texts.
  const int* lengths() const { return lengths_.empty() ? nullptr : lengths_.data(); }
  const int* formats() const { return formats_.empty() ? nullptr : formats_.data(); }

 private:
  std::vector<const char*> values_;
  std::vector<int> lengths_;
  std::vector<int> formats_;
};

enum class AnswerForm { kText = 0, kBinary = 1 };

// What is asked for the sake of something that has failed leaves what that failed with.
enum class Purpose { kWork, kCleanUp };

// Sends @p text, one or more statements without placeholders, and waits for all of the answer: that
// of the last statement, or of the first that failed. Allocates nothing but the message of a
// failure, which is done without when memory is short. What it failed with, or that it has not, is
// the session's failure afterwards. On a failure that is not the server's the session is broken; on
// a broken session nothing is sent, and the answer is null.
Answer Ask(SessionState& state, const char* text, Purpose purpose = Purpose::kWork);

// The same for one statement and the values of its placeholders.
Answer Ask(SessionState& state, const char* text, const Arguments& arguments,
           AnswerForm form = AnswerForm::kText, Purpose purpose = Purpose::kWork);

// The two halves of Ask(), for an answer that is waited for later. In between nothing else may be
// asked. False when nothing was sent.
bool Send(SessionState& state, const char* text);
Answer Receive(SessionState& state);

}  // namespace dorvdbquery

#endif  // SRC_DBQUERY_EXCHANGE_H_
