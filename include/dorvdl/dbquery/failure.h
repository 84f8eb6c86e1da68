/// @file
/// What something failed with.
#ifndef DORVDL_DBQUERY_FAILURE_H_
#define DORVDL_DBQUERY_FAILURE_H_

#include <string>

namespace dorvdbquery {

/// Why something failed, for a program that has to act on it. Holds no value that was bound.
struct Failure {
  enum class Kind {
    kNone,        ///< nothing has failed
    kRefused,     ///< by the library: not sent, or what it needs is not there or not the user's
    kConnection,  ///< the connection cannot be opened, is lost or broken
    kRetry,       ///< by the server, and worth another try: a deadlock, a lock that was not to be
                  ///< had, a serialization failure, a statement that was cancelled or timed out
    kServer,      ///< by the server, for any other reason
    kLocal,       ///< on this side: a file, a switch of ids, a row that could not be read
  };

  Kind kind = Kind::kNone;
  /// The server's code of five characters; empty when the server has sent none.
  std::string sqlstate;
  /// The server's primary message, or the library's own words where the server has sent none. Empty
  /// for the classes 22 and P0, whose messages quote values, and when memory was short.
  std::string message;

  /// True when something has failed.
  explicit operator bool() const { return kind != Kind::kNone; }
};

}  // namespace dorvdbquery

#endif  // DORVDL_DBQUERY_FAILURE_H_
