#include "statements.h"

#include "columns.h"

namespace bench {
namespace {

#define BENCH_NAME(name) #name

// "a", "b", "c": the names quoted and joined.
std::string Joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) {
    text.append(text.empty() ? "\"" : ", \"").append(name).append("\"");
  }
  return text;
}

std::string Insert(const std::vector<std::string>& columns) {
  std::string values;
  for (std::size_t i = 1; i <= columns.size(); ++i) {
    values.append(i == 1 ? "$" : ", $").append(std::to_string(i));
  }
  return "INSERT INTO \"download_queue\" (" + Joined(columns) + ") VALUES (" + values +
         ") RETURNING \"task_id\"";
}

Statements MakeTexts() {
  const std::vector<std::string> all = {"task_id",
                                        BENCH_TASK_COLUMNS(BENCH_NAME, BENCH_NAME, BENCH_NAME)};
  return {
      {"list", "SELECT " + Joined(all) +
                   R"( FROM "download_queue" WHERE lower(username) = $1 ORDER BY "task_id" ASC)"},
      {"get", R"(SELECT * FROM "download_queue" WHERE task_id = $1 AND lower(username) = $2)"},
      {"count", R"(SELECT count(*) FROM "download_queue" WHERE lower(username) = $1)"},
      {"list_items", R"(SELECT * FROM "rss_item" WHERE feed_id = $1)"},
      {"search_items", R"(SELECT * FROM "rss_item" WHERE title ILIKE $1)"},
      {"create_new", Insert({BENCH_NEW_TASK_COLUMNS(BENCH_NAME, BENCH_NAME, BENCH_NAME)})},
      {"create_whole", Insert({BENCH_TASK_COLUMNS(BENCH_NAME, BENCH_NAME, BENCH_NAME)})},
      {"update_short", R"(UPDATE "download_queue" SET "current_size" = $1, "current_rate" = $2, )"
                       R"("downloaded_pieces" = $3 WHERE task_id = $4 AND lower(username) = $5)"},
      {"update", R"(UPDATE "download_queue" SET "current_size" = $1, "current_rate" = $2, )"
                 R"("connected_peers" = $3, "downloaded_pieces" = $4, "upload_rate" = $5, )"
                 R"("total_upload" = $6 WHERE task_id = $7 AND lower(username) = $8)"},
      {"set_file",
       R"(UPDATE "download_queue" SET "file_oid" = $1 WHERE task_id = $2 AND lower(username) = $3)"},
      {"get_file",
       R"(SELECT "file_oid" FROM "download_queue" WHERE task_id = $1 AND lower(username) = $2)"},
  };
}

constexpr Statement Statements::*kAll[] = {
    &Statements::list,         &Statements::get,          &Statements::count,
    &Statements::list_items,   &Statements::search_items, &Statements::create_new,
    &Statements::create_whole, &Statements::update_short, &Statements::update,
    &Statements::set_file,     &Statements::get_file,
};

}  // namespace

std::vector<Statement> Statements::All() const {
  std::vector<Statement> all;
  for (Statement Statements::*const statement : kAll) {
    all.push_back(this->*statement);
  }
  return all;
}

const Statements& Texts() {
  static const Statements texts = MakeTexts();
  return texts;
}

Statements WithNames(Statements statements) {
  for (Statement Statements::*const statement : kAll) {
    std::string named;
    for (const char c : (statements.*statement).text) {
      named.append(c == '$' ? ":p" : std::string(1, c));
    }
    (statements.*statement).text = named;
  }
  return statements;
}

}  // namespace bench
