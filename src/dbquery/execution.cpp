#include "dbquery/execution.h"

#include <soci/postgresql/soci-postgresql.h>

#include <utility>

namespace dorvdbquery {
namespace {

soci::postgresql_statement_backend& Backend(soci::details::statement_backend* backend) {
  return *static_cast<soci::postgresql_statement_backend*>(backend);
}

// Binds all values of a statement at once, in place: SOCI's own elements would copy each value,
// cut it at an embedded NUL and put it into the text of exceptions.
class ParameterElement : public soci::details::use_type_base {
 public:
  explicit ParameterElement(const std::vector<Parameter>& parameters) {
    values_.reserve(parameters.size());
    for (const Parameter& parameter : parameters) {
      // libpq's interface lacks the const; nothing writes to the values.
      values_.push_back(parameter ? const_cast<char*>(parameter->c_str()) : nullptr);
    }
  }

  void bind(soci::details::statement_impl& statement, int& position) override {
    auto& buffers = Backend(statement.get_backend()).useByPosBuffers_;
    for (char*& value : values_) {
      buffers.emplace_hint(buffers.end(), position++, &value);
    }
  }

  // For an element without a name SOCI would look among the names it found in the text.
  std::string get_name() const override { return "values"; }
  void dump_value(std::ostream&) const override {}
  void pre_exec(int) override {}
  void pre_use() override {}
  void post_use(bool) override {}
  void clean_up() override {}
  std::size_t size() const override { return 1; }

 private:
  std::vector<char*> values_;
};

}  // namespace

Execution::Execution(soci::session& session, SqlText sql, const std::vector<Target>& targets)
    : sql_(std::move(sql)), statement_(session) {
  statement_.alloc();
  for (const Target& add_target : targets) {
    add_target(statement_);
  }
  if (!sql_.parameters().empty()) {
    statement_.exchange(soci::details::use_type_ptr(new ParameterElement(sql_.parameters())));
  }
  statement_.prepare(sql_.text(), soci::details::st_one_time_query);
  statement_.define_and_bind();
}

void Execution::Run(bool read_first_row) { statement_.execute(read_first_row); }

bool Execution::Fetch() { return statement_.fetch(); }

const PGresult* Execution::result() { return Backend(statement_.get_backend()).result_; }

}  // namespace dorvdbquery
