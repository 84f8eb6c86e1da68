// The connections of all peers and of who watches them: opened as the library opens its own.
#ifndef BENCH_CONNECTION_H_
#define BENCH_CONNECTION_H_

#include <dorvdl/db/session.h>
#include <libpq-fe.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace bench {

[[noreturn]] void Die(const std::string& why);

// Ends the program unless @p good.
void Check(bool good);

using Result = std::unique_ptr<PGresult, decltype(&PQclear)>;

// Takes the answer; ends the program when it is an error.
Result Checked(PGconn* connection, PGresult* answer);

// Each peer has one of its own, for what a connection has done before can show in its speed.
class Connection {
 public:
  Connection();

  PGconn* get() const { return connection_; }
  const std::shared_ptr<dorvdl::db::DBSession>& session() const { return session_; }
  soci::session& soci() const { return *session_->session().handle(); }

  // How to open the same with another library.
  std::string Options() const;

  // Has libpq write each message to the file; to none when it is null.
  void Trace(std::FILE* file);

  // Runs the statements and returns the numbers in the last one's first row.
  std::vector<double> Run(const std::string& statements);

 private:
  std::shared_ptr<dorvdl::db::DBSession> session_;
  PGconn* connection_;
};

}  // namespace bench

#endif  // BENCH_CONNECTION_H_
