// The statements of the peers that send their own: the texts that the library sends.
#ifndef BENCH_STATEMENTS_H_
#define BENCH_STATEMENTS_H_

#include <string>
#include <vector>

namespace bench {

// With the parameters $1, $2 ... in the order that their use in peers/libpq.cpp shows.
struct Statement {
  const char* name;
  std::string text;
};

struct Statements {
  Statement list;
  Statement get;
  Statement count;
  Statement list_items;
  Statement search_items;
  Statement create_new;
  Statement create_whole;
  Statement update_short;
  Statement update;
  Statement set_file;
  Statement get_file;

  // Every statement, for a connection to prepare.
  std::vector<Statement> All() const;
};

const Statements& Texts();

// The same with parameters that have names, for SOCI: $1 becomes :p1.
Statements WithNames(Statements statements);

}  // namespace bench

#endif  // BENCH_STATEMENTS_H_
