// Values that travel to the server and back, and conditions on real rows.
#include <dorvdl/record/record_base.h>
#include <gtest/gtest.h>

#include <cstdint>

#include "integration/dbquery/query_test.h"

namespace dorvdbquery {
namespace {

const std::string kOddValues[] = {
    "",
    " ",
    "'",
    "''; DROP TABLE item; --",
    "\"quoted\"",
    "back\\slash \\' \\\\",
    "{1,2}",
    "NULL",
    "null",
    "$1 :name ::text ?",
    "line\nfeed\r\ttab",
    "E'\\x41' $q$ /* */",
    "%_%",
    "naïve 日本語 🦆",
    "\x01\x7f",
};

class ValuesTest : public QueryTest {
 protected:
  bool InsertNamed(int id, const std::string& name) {
    InsertQuery query(session_, "item");
    query.SetInsertAll({"id", "name"});
    query.Values({ToParameter(id), ToParameter(name)});
    return query.Execute();
  }

  std::string NameOf(int id) {
    std::string name;
    SelectQuery query(session_, "item");
    query.SelectField<std::string>("name", name);
    query.Where(Condition::ConditionFactory<int>("id", "=", id));
    EXPECT_TRUE(query.Execute());
    return name;
  }

  static Condition Name(const std::string& op, const std::string& value) {
    return Condition::ConditionFactory<std::string>("name", op, value);
  }
};

using Ids = std::vector<int>;

TEST_F(ValuesTest, OddTextsComeBackAsTheyWere) {
  int id = 0;
  for (const std::string& value : kOddValues) {
    ASSERT_TRUE(InsertNamed(++id, value)) << value;
    EXPECT_EQ(NameOf(id), value);
    EXPECT_EQ(IdsWhere(Name("=", value)), Ids{id}) << value;
    UpdateQuery update(session_, "item");
    update.SetFactory<std::string>("name", value + "2");
    update.Where(Name("=", value));
    ASSERT_TRUE(update.Execute()) << value;
    EXPECT_EQ(update.AffectedRows(), 1) << value;
    EXPECT_EQ(NameOf(id), value + "2");
  }
}

TEST_F(ValuesTest, AMebibyteOfTextComesBackAsItWas) {
  std::string large(1 << 20, 'x');
  large.back() = 'y';
  ASSERT_TRUE(InsertNamed(1, large));
  EXPECT_EQ(NameOf(1), large);
  EXPECT_EQ(IdsWhere(Name("=", large)), Ids{1});
  EXPECT_EQ(IdsWhere(Condition::HasSubstring("name", large)), Ids{1});
  EXPECT_EQ(IdsWhere(Condition::HasSubstring("name", large + "z")), Ids{});
}

TEST_F(ValuesTest, TheWidestNumbersComeBackAsTheyWere) {
  UpdateQuery update(session_, "item");
  update.SetFactory<int>("pid", -2147483647 - 1);
  update.SetFactory<long long>("size", 9223372036854775807LL);
  ASSERT_TRUE(Insert(1));
  ASSERT_TRUE(update.Execute());
  EXPECT_EQ(raw_.Run("SELECT pid, size FROM item"), Rows{"-2147483648|9223372036854775807"});
}

TEST_F(ValuesTest, AnAbsentValueIsNull) {
  InsertQuery query(session_, "item");
  query.SetInsertAll({"id", "pid", "name"});
  query.Values({ToParameter(1), Parameter(), Parameter()});
  ASSERT_TRUE(query.Execute());
  EXPECT_EQ(raw_.Run("SELECT * FROM item"), Rows{"1|NULL|NULL|NULL"});
}

TEST_F(ValuesTest, AHundredThousandIdsAreOneParameter) {
  raw_.Run("INSERT INTO item (id) SELECT generate_series(-5, 200000)");
  std::vector<int> ids(100000);
  for (std::size_t i = 0; i < ids.size(); ++i) {
    ids[i] = static_cast<int>(i);
  }
  EXPECT_EQ(IdsWhere(Condition::In<int>("id", ids)), ids);
  DeleteQuery query(session_, "item");
  query.Where(Condition::In<int>("id", ids));
  EXPECT_TRUE(query.Execute());
  EXPECT_EQ(raw_.Run("SELECT count(*), min(id), max(id) FROM item"), Rows{"100006|-5|200000"});
}

class ConditionOnRowsTest : public ValuesTest {
 protected:
  ConditionOnRowsTest() {
    raw_.Run(
        "INSERT INTO item (id, name, pid) VALUES (1, 'Alpha', 1), (2, 'al%_\\x', 2), (3, '', 0),"
        "(4, NULL, NULL)");
  }

  static Condition Pids(const std::vector<int>& pids) { return Condition::In<int>("pid", pids); }
};

TEST_F(ConditionOnRowsTest, InFindsItsValuesAndNoNull) {
  EXPECT_EQ(IdsWhere(Pids({2, 1, 2, 99, -1})), (Ids{1, 2}));
  EXPECT_EQ(IdsWhere(Pids({})), Ids{});
}

TEST_F(ConditionOnRowsTest, ANegatedInLeavesNullOut) {
  EXPECT_EQ(IdsWhere(!Pids({1, 2})), Ids{3});
  EXPECT_EQ(IdsWhere(!Pids({})), (Ids{1, 2, 3, 4})) << "not of no values is of everything";
}

TEST_F(ConditionOnRowsTest, ASubstringIsLiteralAndItsCaseCounts) {
  EXPECT_EQ(IdsWhere(Condition::HasSubstring("name", "al")), Ids{2});
  EXPECT_EQ(IdsWhere(Condition::HasSubstring("name", "%_\\")), Ids{2});
  EXPECT_EQ(IdsWhere(Condition::HasSubstring("name", "a%x")), Ids{});
  EXPECT_EQ(IdsWhere(Condition::HasSubstring("name", "")), (Ids{1, 2, 3})) << "but not NULL";
  EXPECT_EQ(IdsWhere(!Condition::HasSubstring("name", "l")), Ids{3});
}

TEST_F(ConditionOnRowsTest, ColumnsOfConditionsFoldTheirCapitals) {
  EXPECT_EQ(IdsWhere(Condition::HasSubstring("NAME", "Alp")), Ids{1});
  EXPECT_EQ(IdsWhere(Condition::In<int>("Pid", {1})), Ids{1});
}

TEST_F(ConditionOnRowsTest, NegationsAndConjunctionsBindAsTheyAreWritten) {
  const Condition first = Condition::ConditionFactory<int>("id", "=", 1);
  const Condition early = Condition::ConditionFactory<int>("id", "<=", 2);
  const Condition pair = Condition::ConditionFactory<std::string>("id = 3 OR name", "=", "Alpha");
  EXPECT_EQ(IdsWhere(!(early && first)), (Ids{2, 3, 4}));
  EXPECT_EQ(IdsWhere(!early && !first), (Ids{3, 4}));
  EXPECT_EQ(IdsWhere(!!(early && !first)), Ids{2});
  EXPECT_EQ(IdsWhere(!pair), Ids{2}) << "the expression of code is parenthesised with the rest";
  EXPECT_EQ(IdsWhere(Condition::Null() && first && Condition::Null()), Ids{1});
  EXPECT_EQ(IdsWhere(!Condition::Null()), Ids{});
  EXPECT_EQ(IdsWhere(Condition::Null()), (Ids{1, 2, 3, 4}));
}

TEST_F(ConditionOnRowsTest, PatternOperatorsTakeThePatternAsAParameter) {
  EXPECT_EQ(IdsWhere(Name("ILIKE", "AL%")), (Ids{1, 2}));
  EXPECT_EQ(IdsWhere(Name("~", "^A")), Ids{1});
  EXPECT_EQ(IdsWhere(Name("IS DISTINCT FROM", "Alpha")), (Ids{2, 3, 4}));
}

TEST_F(ConditionOnRowsTest, LimitAndOffsetPageTheRows) {
  const auto page = [this](int limit, int offset) {
    Ids ids;
    int id = 0;
    SelectQuery query(session_, "item");
    query.SelectField<int>("id", id);
    query.OrderBy("id", SelectBase::kAscending);
    query.Limit(limit);
    query.Offset(offset);
    EXPECT_TRUE(query.ExecuteWithoutPreFetch());
    while (query.Fetch()) {
      ids.push_back(id);
    }
    return ids;
  };
  EXPECT_EQ(page(2, 1), (Ids{2, 3}));
  EXPECT_EQ(page(0, 0), Ids{});
  EXPECT_EQ(page(2147483647, 3), Ids{4});
  EXPECT_EQ(page(1, 2147483647), Ids{});
}

TEST_F(ConditionOnRowsTest, OrdersApplyInTheOrderTheyAreGiven) {
  Ids ids;
  int id = 0;
  SelectQuery query(session_, "item");
  query.SelectField<int>("id", id);
  query.OrderBy(OrderExpression("pid IS NULL"), SelectBase::kDescending);
  query.OrderBy("PID", SelectBase::kDescending);
  ASSERT_TRUE(query.ExecuteWithoutPreFetch());
  while (query.Fetch()) {
    ids.push_back(id);
  }
  EXPECT_EQ(ids, (Ids{4, 2, 1, 3}));
}

TEST_F(ConditionOnRowsTest, AnUpdateAndADeleteThatReachNoRowAreTrue) {
  UpdateQuery update(session_, "item");
  update.SetFactory<int>("pid", 5);
  update.Where(!Condition::Null());
  EXPECT_TRUE(update.Execute());
  EXPECT_EQ(update.AffectedRows(), 0);
  DeleteQuery remove(session_, "item");
  remove.Where(Condition::In<int>("id", {}));
  EXPECT_TRUE(remove.Execute());
  EXPECT_EQ(IdsWhere(Condition::Null()).size(), 4U);
}

}  // namespace
}  // namespace dorvdbquery
