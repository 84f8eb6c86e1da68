#include <arpa/inet.h>
#include <dorvdl/dbquery/session.h>
#include <dorvdl/dbquery/transaction.h>
#include <dorvdl/util/log.h>
#include <libpq/libpq-fs.h>

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dbquery/exchange.h"
#include "dbquery/failures.h"
#include "dbquery/local_file.h"
#include "dbquery/replaced_file.h"
#include "dbquery/session_state.h"

namespace dorvdbquery {
namespace {

// Large objects move in pieces of this many bytes; libpq's own 8 KiB cost a round trip each.
constexpr std::size_t kPiece = 256UL * 1024;

// Large objects can be used inside a transaction only: this one, unless one is open already.
class OwnTransaction {
 public:
  OwnTransaction(Session& session, PGconn* connection) {
    if (PQtransactionStatus(connection) == PQTRANS_IDLE) {
      transaction_.emplace(session);
    }
  }

  bool Commit() { return !transaction_ || transaction_->Commit(); }

 private:
  std::optional<DefaultTransaction> transaction_;
};

// Runs a statement about a large object, as libpq's calls do on their way; null, and a line in the
// log that says what could not be done, when it fails.
Answer Call(SessionState& state, const char* what, const char* statement,
            const Arguments& arguments, Purpose purpose = Purpose::kWork) {
  Answer answer = Ask(state, statement, arguments, AnswerForm::kBinary, purpose);
  if (!IsSuccess(answer.get())) {
    const std::string message(PQerrorMessage(state.connection()));
    DORVDL_LOG(LOG_ERR, "Failed to %s large object: %s", what,
               message.substr(0, message.find('\n')).c_str());
    answer.reset();
  }
  return answer;
}

// The only value of an answer with one row.
std::string_view ValueOf(const Answer& answer) {
  return {PQgetvalue(answer.get(), 0, 0),
          static_cast<std::size_t>(PQgetlength(answer.get(), 0, 0))};
}

// The same when it is an integer or an object id.
std::uint32_t NumberOf(const Answer& answer) {
  std::uint32_t number = 0;
  std::memcpy(&number, ValueOf(answer).data(), sizeof(number));
  return ntohl(number);
}

// Whether calls can be made; logs when they cannot.
bool CanTransfer(SessionState* state, const char* what) {
  const char* const refusal = state == nullptr ? nullptr : state->Refusal();
  const bool is_usable = state != nullptr && !state->is_broken && refusal == nullptr;
  if (!is_usable) {
    DORVDL_LOG(LOG_ERR, "Failed to %s large object: no connection or transaction", what);
  }
  if (state != nullptr && !is_usable) {
    state->Note(refusal != nullptr ? OwnFailure(Failure::Kind::kRefused, refusal)
                                   : OwnFailure(Failure::Kind::kConnection, kLostConnection));
  }
  return is_usable;
}

// Notes that a file could not be read or written.
void NoteProblem(SessionState& state, const LocalFile& file) {
  state.Note(OwnFailure(Failure::Kind::kLocal, file.problem().c_str()));
}

// Copies the rest of @p file into a new large object; 0 on failure.
Oid Store(SessionState& state, LocalFile& file) {
  std::vector<char> piece(kPiece);
  const Answer made = Call(state, "write", "SELECT lo_create(0)", Arguments(0));
  if (made == nullptr) {
    return InvalidOid;
  }
  const Oid oid = NumberOf(made);
  const std::string id = std::to_string(oid);
  for (std::size_t stored = 0;;) {
    const ssize_t size = file.Read(piece.data(), piece.size());
    if (size == 0) {
      return oid;
    }
    if (size < 0) {
      NoteProblem(state, file);
      // The transaction may be the caller's and go on.
      Call(state, "remove", "SELECT lo_unlink($1)", Arguments(1).AddText(id.c_str()),
           Purpose::kCleanUp);
      return InvalidOid;
    }
    const std::string offset = std::to_string(stored);
    const std::string_view bytes(piece.data(), static_cast<std::size_t>(size));
    if (Call(state, "write", "SELECT lo_put($1, $2, $3)",
             Arguments(3).AddText(id.c_str()).AddText(offset.c_str()).AddBytes(bytes)) == nullptr) {
      return InvalidOid;
    }
    stored += bytes.size();
  }
}

// Copies the large object @p oid to @p file; false on failure. The object is opened, so that all of
// its pieces are of one moment.
bool Load(SessionState& state, Oid oid, LocalFile& file) {
  const std::string id = std::to_string(oid);
  const std::string mode = std::to_string(INV_READ);
  const Answer opened = Call(state, "read", "SELECT lo_open($1, $2)",
                             Arguments(2).AddText(id.c_str()).AddText(mode.c_str()));
  if (opened == nullptr) {
    return false;
  }
  const std::string object = std::to_string(NumberOf(opened));
  const std::string most = std::to_string(kPiece);
  bool written = true;
  for (std::size_t size = kPiece; written && size == kPiece;) {
    const Answer piece = Call(state, "read", "SELECT loread($1, $2)",
                              Arguments(2).AddText(object.c_str()).AddText(most.c_str()));
    if (piece == nullptr) {
      return false;
    }
    size = ValueOf(piece).size();
    written = file.Write(ValueOf(piece).data(), size);
  }
  if (!written) {
    NoteProblem(state, file);
  }
  const bool closed =
      Call(state, "read", "SELECT lo_close($1)", Arguments(1).AddText(object.c_str()),
           written ? Purpose::kWork : Purpose::kCleanUp) != nullptr;
  return written && closed;
}

}  // namespace

unsigned Session::ClientSideLOImport(const std::string& path) {
  LocalFile file = LocalFile::OpenRegular(path);
  if (!file.IsOpen()) {
    Fail(OwnFailure(Failure::Kind::kLocal, file.problem().c_str()));
    return 0;
  }
  if (!CanTransfer(state_.get(), "write")) {
    return 0;
  }
  OwnTransaction transaction(*this, state_->connection());
  const Oid oid = state_->failed_begins == 0 ? Store(*state_, file) : InvalidOid;
  return oid != InvalidOid && transaction.Commit() ? oid : 0;
}

bool Session::ClientSideLOExport(unsigned long long oid, const std::string& path) {
  if (!CanTransfer(state_.get(), "read")) {
    return false;
  }
  ReplacedFile file(path);
  if (!file.IsOpen()) {
    NoteProblem(*state_, file);
    return false;
  }
  OwnTransaction transaction(*this, state_->connection());
  // An object id has 32 bits; what is above is the sign of the column it was kept in.
  const bool is_complete = state_->failed_begins == 0 &&
                           Load(*state_, static_cast<Oid>(oid), file) && transaction.Commit();
  if (is_complete && !file.Replace()) {
    NoteProblem(*state_, file);
    return false;
  }
  return is_complete;
}

}  // namespace dorvdbquery
