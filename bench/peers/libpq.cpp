#include "libpq.h"

#include <charconv>
#include <utility>

namespace bench {
namespace {

// One row of an answer, read from its first column to its last.
class Row {
 public:
  Row(const Result& result, int row) : result_(result.get()), row_(row) {}

  int Int(const char*) { return Number<int>(); }
  long long Bigint(const char*) { return Number<long long>(); }

  // A NULL is an empty text.
  void Text(const char*, std::string* field) {
    field->assign(PQgetvalue(result_, row_, column_),
                  static_cast<std::size_t>(PQgetlength(result_, row_, column_)));
    ++column_;
  }

 private:
  // And that leaves the number at 0.
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

template <typename Message>
std::size_t Read(const Result& result, std::vector<Message>* seen) {
  std::vector<Message> messages(static_cast<std::size_t>(PQntuples(result.get())));
  for (std::size_t i = 0; i < messages.size(); ++i) {
    Decode(Row(result, static_cast<int>(i)), messages[i]);
  }
  const std::size_t count = messages.size();
  if (seen != nullptr) {
    *seen = std::move(messages);
  }
  return count;
}

#define BENCH_VALUE(name) task.name()

int Number(const Result& result) { return Row(result, 0).Int(""); }

}  // namespace

void Libpq::Trace(std::FILE* file) { connection_.Trace(file); }

void Libpq::Run(const char* statement) { connection_.Run(statement); }

Result Libpq::Ask(const Statement& statement, const Values& values) {
  return Checked(connection(), Send(statement, values));
}

std::size_t Libpq::List(const std::string& user, Tasks* seen) {
  return Read(Ask(Texts().list, Values(user)), seen);
}

std::size_t Libpq::Get(const std::string& user, int id, Tasks* seen) {
  return Read(Ask(Texts().get, Values(id, user)), seen);
}

std::size_t Libpq::Count(const std::string& user) {
  return static_cast<std::size_t>(Number(Ask(Texts().count, Values(user))));
}

std::size_t Libpq::ListItems(int feed, Items* seen) {
  return Read(Ask(Texts().list_items, Values(feed)), seen);
}

std::size_t Libpq::SearchItems(const std::string& pattern, Items* seen) {
  return Read(Ask(Texts().search_items, Values(pattern)), seen);
}

int Libpq::CreateNew(const Task& task) {
  return Number(Ask(Texts().create_new,
                    Values{BENCH_NEW_TASK_COLUMNS(BENCH_VALUE, BENCH_VALUE, BENCH_VALUE)}));
}

int Libpq::CreateWhole(const Task& task) {
  return Number(
      Ask(Texts().create_whole, Values{BENCH_TASK_COLUMNS(BENCH_VALUE, BENCH_VALUE, BENCH_VALUE)}));
}

void Libpq::UpdateShort(const std::string& user, const Task& progress) {
  Ask(Texts().update_short, Values(progress.current_size(), progress.current_rate(),
                                   progress.downloaded_pieces(), progress.task_id(), user));
}

void Libpq::Update(const std::string& user, const Task& progress) {
  Ask(Texts().update,
      Values(progress.current_size(), progress.current_rate(), progress.connected_peers(),
             progress.downloaded_pieces(), progress.upload_rate(), progress.total_upload(),
             progress.task_id(), user));
}

void Libpq::InUnit(const std::function<void()>& work) {
  Run("BEGIN");
  work();
  Run("COMMIT");
}

void Libpq::Import(const std::string& user, int id, const std::string& path) {
  InUnit([&] {
    const Oid oid = lo_import(connection(), path.c_str());
    Check(oid != InvalidOid);
    Ask(Texts().set_file, Values(static_cast<int>(oid), id, user));
  });
}

void Libpq::Export(const std::string& user, int id, const std::string& path) {
  const int oid = Number(Ask(Texts().get_file, Values(id, user)));
  InUnit([&] { Check(lo_export(connection(), static_cast<Oid>(oid), path.c_str()) == 1); });
}

}  // namespace bench
