#include <dorvdl/dbquery/session.h>
#include <dorvdl/dbquery/transaction.h>
#include <dorvdl/util/log.h>
#include <libpq/libpq-fs.h>

#include <optional>
#include <vector>

#include "dbquery/local_file.h"
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

void LogFailedTransfer(PGconn* connection, const char* what) {
  const std::string message(PQerrorMessage(connection));
  DORVDL_LOG(LOG_ERR, "Failed to %s large object: %s", what,
             message.substr(0, message.find('\n')).c_str());
}

// Copies the rest of @p file into a new large object; 0 on failure.
Oid Store(PGconn* connection, const LocalFile& file) {
  const Oid oid = lo_creat(connection, INV_READ | INV_WRITE);
  const int object = oid == InvalidOid ? -1 : lo_open(connection, oid, INV_WRITE);
  bool sent = object >= 0;
  bool read = true;
  std::vector<char> piece(kPiece);
  while (sent && read) {
    const ssize_t size = file.Read(piece.data(), piece.size());
    read = size >= 0;
    if (size <= 0) {
      break;
    }
    const auto length = static_cast<std::size_t>(size);
    sent = lo_write(connection, object, piece.data(), length) == static_cast<int>(length);
  }
  sent = sent && lo_close(connection, object) == 0;
  if (!sent) {
    LogFailedTransfer(connection, "write");
  } else if (!read) {
    lo_unlink(connection, oid);  // the transaction may be the caller's and go on
  }
  return sent && read ? oid : InvalidOid;
}

// Copies the large object @p oid to @p file; false on failure.
bool Load(PGconn* connection, Oid oid, const LocalFile& file) {
  const int object = lo_open(connection, oid, INV_READ);
  bool received = object >= 0;
  bool written = true;
  std::vector<char> piece(kPiece);
  while (received && written) {
    const int size = lo_read(connection, object, piece.data(), piece.size());
    received = size >= 0;
    if (size <= 0) {
      break;
    }
    written = file.Write(piece.data(), static_cast<std::size_t>(size));
  }
  received = received && lo_close(connection, object) == 0;
  if (!received) {
    LogFailedTransfer(connection, "read");
  }
  return received && written;
}

}  // namespace

unsigned Session::ClientSideLOImport(const std::string& path) {
  const LocalFile file = LocalFile::OpenRegular(path);
  if (!file.IsOpen()) {
    return 0;
  }
  if (state_ == nullptr || state_->failed_begins > 0) {
    DORVDL_LOG(LOG_ERR, "Failed to write large object: no connection or transaction");
    return 0;
  }
  OwnTransaction transaction(*this, state_->connection());
  if (state_->failed_begins > 0) {
    return 0;
  }
  const Oid oid = Store(state_->connection(), file);
  return oid != InvalidOid && transaction.Commit() ? oid : 0;
}

bool Session::ClientSideLOExport(unsigned long long oid, const std::string& path) {
  if (state_ == nullptr || state_->failed_begins > 0) {
    DORVDL_LOG(LOG_ERR, "Failed to read large object: no connection or transaction");
    return false;
  }
  ReplacedFile file(path);
  if (!file.IsOpen()) {
    return false;
  }
  OwnTransaction transaction(*this, state_->connection());
  return state_->failed_begins == 0 &&
         // An object id has 32 bits; what is above is the sign of the column it was kept in.
         Load(state_->connection(), static_cast<Oid>(oid), file) && transaction.Commit() &&
         file.Replace();
}

}  // namespace dorvdbquery
