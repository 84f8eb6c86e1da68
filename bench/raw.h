// libpq's statements and rows, for the peers that the library is measured against. Ends the program
// on any error.
#ifndef BENCH_RAW_H_
#define BENCH_RAW_H_

#include <libpq-fe.h>

#include <charconv>
#include <cstdlib>
#include <initializer_list>
#include <iostream>
#include <memory>
#include <vector>

namespace bench {

using Result = std::unique_ptr<PGresult, decltype(&PQclear)>;

inline Result Checked(PGconn* connection, PGresult* answer) {
  const ExecStatusType status = PQresultStatus(answer);
  if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK) {
    std::cerr << PQerrorMessage(connection);
    std::exit(1);
  }
  return {answer, &PQclear};
}

inline Result Execute(PGconn* connection, const char* statement,
                      std::initializer_list<const char*> values) {
  return Checked(connection, PQexecParams(connection, statement, static_cast<int>(values.size()),
                                          nullptr, values.begin(), nullptr, nullptr, 0));
}

// One row of an answer, read from its first column to its last.
class Row {
 public:
  Row(const PGresult* result, int row) : result_(result), row_(row) {}

  int Int() { return Number<int>(); }
  long long Bigint() { return Number<long long>(); }

  // Assigns the text of the next column, which is empty for NULL.
  void To(std::string* field) {
    field->assign(PQgetvalue(result_, row_, column_),
                  static_cast<std::size_t>(PQgetlength(result_, row_, column_)));
    ++column_;
  }

 private:
  // A NULL is an empty text, which leaves the number at 0.
  template <typename T>
  T Number() {
    T number = 0;
    const char* const text = PQgetvalue(result_, row_, column_);
    std::from_chars(text, text + PQgetlength(result_, row_, column_), number);
    ++column_;
    return number;
  }

  const PGresult* result_;
  const int row_;
  int column_ = 0;
};

// Decodes each row of the answer into a message.
template <typename Message>
std::vector<Message> DecodeAll(const Result& result, void (*decode)(Row, Message&)) {
  std::vector<Message> messages(static_cast<std::size_t>(PQntuples(result.get())));
  for (std::size_t i = 0; i < messages.size(); ++i) {
    decode({result.get(), static_cast<int>(i)}, messages[i]);
  }
  return messages;
}

}  // namespace bench

#endif  // BENCH_RAW_H_
