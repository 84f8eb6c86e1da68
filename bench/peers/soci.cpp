#include "soci.h"

#include "soci_session.h"

namespace bench {
namespace {

class ByName {
 public:
  explicit ByName(const soci::row& row) : row_(row) {}

  int Int(const char* name) { return row_.get<int>(name, 0); }
  long long Bigint(const char* name) { return row_.get<long long>(name, 0); }
  void Text(const char* name, std::string* field) {
    *field = row_.get<std::string>(name, std::string());
  }

 private:
  const soci::row& row_;
};

constexpr std::size_t kColumns = 34;

// SOCI reads a value when the statement runs, so until then a number needs a place, which room for
// all columns keeps from moving.
#define BENCH_USE_NUMBER(name) soci::use(numbers.emplace_back(task.name()))
#define BENCH_USE_TEXT(name) soci::use(task.name())

class Soci : public SociSession {
 public:
  Soci() : SociSession("soci") {}

  std::size_t List(const std::string& user, Tasks* seen) override {
    soci::row row;
    soci::statement statement =
        (session().prepare << texts_.list.text, soci::use(user), soci::into(row));
    return Read(statement, row, seen);
  }

  std::size_t Get(const std::string& user, int id, Tasks* seen) override {
    soci::row row;
    soci::statement statement =
        (session().prepare << texts_.get.text, soci::use(id), soci::use(user), soci::into(row));
    return Read(statement, row, seen);
  }

  std::size_t Count(const std::string& user) override {
    long long count = 0;
    session() << texts_.count.text, soci::use(user), soci::into(count);
    return static_cast<std::size_t>(count);
  }

  std::size_t ListItems(int feed, Items* seen) override {
    soci::row row;
    soci::statement statement =
        (session().prepare << texts_.list_items.text, soci::use(feed), soci::into(row));
    return Read(statement, row, seen);
  }

  std::size_t SearchItems(const std::string& pattern, Items* seen) override {
    soci::row row;
    soci::statement statement =
        (session().prepare << texts_.search_items.text, soci::use(pattern), soci::into(row));
    return Read(statement, row, seen);
  }

  int CreateNew(const Task& task) override {
    std::vector<long long> numbers;
    numbers.reserve(kColumns);
    int id = 0;
    session() << texts_.create_new.text,
        BENCH_NEW_TASK_COLUMNS(BENCH_USE_NUMBER, BENCH_USE_NUMBER, BENCH_USE_TEXT), soci::into(id);
    return id;
  }

  int CreateWhole(const Task& task) override {
    std::vector<long long> numbers;
    numbers.reserve(kColumns);
    int id = 0;
    session() << texts_.create_whole.text,
        BENCH_TASK_COLUMNS(BENCH_USE_NUMBER, BENCH_USE_NUMBER, BENCH_USE_TEXT), soci::into(id);
    return id;
  }

  void UpdateShort(const std::string& user, const Task& progress) override {
    const int id = progress.task_id();
    const long long size = progress.current_size();
    const int rate = progress.current_rate();
    const int pieces = progress.downloaded_pieces();
    session() << texts_.update_short.text, soci::use(size), soci::use(rate), soci::use(pieces),
        soci::use(id), soci::use(user);
  }

  void Update(const std::string& user, const Task& progress) override {
    const int id = progress.task_id();
    const long long size = progress.current_size();
    const int rate = progress.current_rate();
    const int peers = progress.connected_peers();
    const int pieces = progress.downloaded_pieces();
    const int upload_rate = progress.upload_rate();
    const long long upload = progress.total_upload();
    session() << texts_.update.text, soci::use(size), soci::use(rate), soci::use(peers),
        soci::use(pieces), soci::use(upload_rate), soci::use(upload), soci::use(id),
        soci::use(user);
  }

  void InUnit(const std::function<void()>& work) override {
    soci::transaction transaction(session());
    work();
    transaction.commit();
  }

 private:
  template <typename Message>
  static std::size_t Read(soci::statement& statement, const soci::row& row,
                          std::vector<Message>* seen) {
    std::vector<Message> messages;
    statement.execute();
    while (statement.fetch()) {
      Decode(ByName(row), messages.emplace_back());
    }
    const std::size_t count = messages.size();
    if (seen != nullptr) {
      *seen = std::move(messages);
    }
    return count;
  }
};

}  // namespace

std::unique_ptr<Peer> MakeSoci() { return std::make_unique<Soci>(); }

}  // namespace bench
