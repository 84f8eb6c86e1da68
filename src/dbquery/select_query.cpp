#include <dorvdl/dbquery/select_query.h>
#include <soci/postgresql/soci-postgresql.h>

#include <utility>

#include "dbquery/result_row.h"

namespace dorvdbquery {
namespace {

// Hands each row of the answer to a row target.
class RowElement : public soci::details::into_type_base {
 public:
  explicit RowElement(std::shared_ptr<RowTarget> target) : target_(std::move(target)) {}

  void define(soci::details::statement_impl& statement, int&) override {
    backend_ = static_cast<soci::postgresql_statement_backend*>(statement.get_backend());
  }

  void post_fetch(bool got_data, bool) override {
    if (!got_data) {
      return;
    }
    const ResultRow row(backend_->result_, backend_->currentRow_);
    if (!std::exchange(described_, true)) {
      target_->Describe(row);
    }
    target_->Read(row);
  }

  void pre_exec(int) override {}
  void pre_fetch() override {}
  void clean_up() override {}
  std::size_t size() const override { return 1; }

 private:
  std::shared_ptr<RowTarget> target_;
  soci::postgresql_statement_backend* backend_ = nullptr;
  bool described_ = false;
};

}  // namespace

SelectBase::~SelectBase() = default;

void SelectBase::AppendPaging(SqlText& statement) const {
  if (limit_) {
    statement.Append(" LIMIT ").Bind(ToParameter(*limit_));
  }
  if (offset_) {
    statement.Append(" OFFSET ").Bind(ToParameter(*offset_));
  }
}

SelectQuery::SelectQuery(const Session& session, std::string table)
    : SelectBase(session, std::move(table)) {}

SelectQuery::~SelectQuery() = default;

void SelectQuery::IntoRow(std::shared_ptr<RowTarget> target) {
  AddTarget([target = std::move(target)](soci::statement& statement) {
    statement.exchange(soci::details::into_type_ptr(new RowElement(target)));
  });
}

void SelectQuery::OrderBy(const std::string& column, Order order) {
  order_.push_back({column, true, order});
}

void SelectQuery::OrderBy(OrderExpression expression, Order order) {
  order_.push_back({expression.text(), false, order});
}

SqlText SelectQuery::Statement() const {
  SqlText statement;
  statement.Append("SELECT ");
  const char* separator = "";
  for (const std::string& field : fields_) {
    statement.Append(std::exchange(separator, ", ")).Append(field);
  }
  if (fields_.empty()) {
    statement.Append("*");
  }
  statement.Append(" FROM ").AppendIdentifier(table());
  AppendWhere(statement);
  separator = " ORDER BY ";
  for (const OrderTerm& term : order_) {
    statement.Append(std::exchange(separator, ", "));
    term.is_column ? statement.AppendIdentifier(term.text) : statement.Append(term.text);
    statement.Append(term.order == kDescending ? " DESC" : " ASC");
  }
  AppendPaging(statement);
  return statement;
}

}  // namespace dorvdbquery
