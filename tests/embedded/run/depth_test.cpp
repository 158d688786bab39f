// Deep nesting and long chains: the answer, or an error of the server's that says what is too much.
//
// "SELECT (Transact-SQL)": an expression may hold 65,535 names and constants. "MSSQLSERVER_125":
// CASE may be nested to level 10. "IN (Transact-SQL)": many thousands of values may be error 8632.
// "MSSQLSERVER_191": what is nested too deeply is 191; how deep that is, no page says.
#include <gtest/gtest.h>

#include <functional>

#include "embedded/embedded.h"
#include "foundation/conversions.h"
#include "foundation/error.h"

namespace tavcc::sql {
namespace {

std::string Repeat(const std::string& text, int times) {
  std::string result;
  for (int i = 0; i < times; ++i) result += text;
  return result;
}

// before before … middle after after …
std::string Nested(const std::string& before, const std::string& middle, const std::string& after,
                   int times) {
  return Repeat(before, times) + middle + Repeat(after, times);
}

std::string Numbers(int count) {
  std::string out = "1";
  for (int i = 1; i < count; ++i) out += "," + std::to_string(i + 5);
  return out;
}

// The first value of the first result, or the error.
std::string Answer(const std::string& sql) {
  const ConnectionPtr session = Database::Open({})->NewSession();
  try {
    session->Execute(
        "create table t (a int not null, s varchar(8000)) insert into t values (1,'x')");
    const RecordsetPtr rows = session->Execute(sql);
    return rows->AtEnd() ? "no row" : ToText(rows->Field(0));
  } catch (const AutomationError& error) {
    return std::to_string(error.number()) + ' ' + std::string(error.description());
  }
}

struct Shape {
  const char* name;
  std::function<std::string(int depth)> text;
  std::vector<int> depths;
  std::function<std::string(int depth)> answer;
};

std::string One(int) {
  return "1";
}

const std::vector<int> kNested = {15, 30, 60, 120};
const std::vector<int> kTwiceNested = {10, 30, 60};  // two levels of the parser's each
const std::vector<int> kChained = {15, 30, 60, 120, 200, 450};
const std::vector<int> kListed = {30, 200, 450, 1000, 5000};

TEST(Depth, WhatIsNestedOrChainedIsAnswered) {
  const Shape shapes[] = {
      {"functions", [](int n) { return "select " + Nested("abs(", "a", ")", n) + " from t"; },
       kNested, One},
      {"functions around their first argument",
       [](int n) { return "select " + Nested("replace(", "s", ",'a','b')", n) + " from t"; },
       kNested, [](int) { return "x"; }},
      {"functions around their last argument",
       [](int n) { return "select " + Nested("isnull(null,", "a", ")", n) + " from t"; }, kNested,
       One},
      {"conversions",
       [](int n) {
         return "select " + Nested("convert(int,convert(varchar(9),", "a", "))", n / 2) + " from t";
       },
       kNested, One},
      {"functions in a condition and an order",
       [](int n) {
         const std::string deep = Nested("isnull(null,", "a", ")", n);
         return "select a from t where " + deep + "=1 group by a,s order by " + deep;
       },
       kNested, One},
      {"functions of an aggregate",
       [](int n) {
         return "select " +
                Nested("isnull(null,", "sum(" + Nested("abs(", "a", ")", n) + ")", ")", n) +
                " from t";
       },
       kTwiceNested, One},
      {"functions in an UPDATE",
       [](int n) {
         return "update t set a=" + Nested("isnull(null,", "a", ")", n) + "+1 select a from t";
       },
       kNested, [](int) { return "2"; }},
      {"functions of constants outside a query",
       [](int n) {
         return "declare @a int set @a=" + Nested("isnull(null,", "3", ")", n) + " select @a";
       },
       kNested, [](int) { return "3"; }},
      {"brackets", [](int n) { return "select " + Nested("(", "a", ")", n) + " from t"; }, kNested,
       One},
      {"brackets of a condition",
       [](int n) { return "select a from t where " + Nested("(", "a=1", ")", n); }, kNested, One},
      {"NOT", [](int n) { return "select a from t where " + Nested("not (", "a=1", ")", n); },
       kTwiceNested, One},
      {"signs", [](int n) { return "select " + Repeat("- ", n) + "a from t"; }, {30, 60, 120}, One},
      {"sums", [](int n) { return "select a" + Repeat("+1", n) + " from t"; }, kChained,
       [](int n) { return std::to_string(n + 1); }},
      {"sums of constants", [](int n) { return "select 1" + Repeat("+1", n); }, kChained,
       [](int n) { return std::to_string(n + 1); }},
      {"sums to the right",
       [](int n) { return "select " + Nested("1+(", "a", ")", n) + " from t"; }, kNested,
       [](int n) { return std::to_string(n + 1); }},
      {"decimal sums",
       [](int n) { return "select a" + Repeat("+0.5", n) + "-0.5 from t"; },
       {16, 30, 60, 120, 200, 450},
       [](int n) { return std::to_string(n / 2) + ".5"; }},
      {"texts put together", [](int n) { return "select s" + Repeat("+'b'", n) + " from t"; },
       kChained, [](int n) { return "x" + std::string(static_cast<size_t>(n), 'b'); }},
      {"an UPDATE with a sum",
       [](int n) { return "update t set a=a" + Repeat("+1", n) + " select a from t"; }, kChained,
       [](int n) { return std::to_string(n + 1); }},
      {"CASE in THEN",
       [](int n) {
         return "select " + Nested("case when a=1 then ", "a", " else 0 end", n) + " from t";
       },
       {10},
       One},
      {"CASE in ELSE",
       [](int n) {
         return "select " + Nested("case when a=2 then 0 else ", "a", " end", n) + " from t";
       },
       {10},
       One},
      {"derived tables",
       [](int n) { return "select * from " + Nested("(select * from ", "t", ") t", n); },
       {5, 15, 30, 60},
       One},
      {"derived tables that group",
       [](int n) {
         return "select * from " + Nested("(select a,count(*) n from (select a from ", "t",
                                          ") t group by a) t", n / 2);
       },
       kTwiceNested, One},
      {"derived tables inside a correlated subquery",
       [](int n) {
         return "select (select max(a) from " +
                Nested("(select a from ", "(select x.a from t where t.a=x.a) t", ") t", n) +
                ") from t x";
       },
       {15, 30},
       One},
      {"derived tables that are inserted",
       [](int n) {
         return "insert into t select a+1,s from " + Nested("(select * from ", "t", ") t", n) +
                " select max(a) from t";
       },
       {15, 30},
       [](int) { return "2"; }},
      {"derived tables that are joined to an updated one",
       [](int n) {
         return "update t set a=d.a+1 from t inner join " +
                Nested("(select * from ", "t", ") d", n) + " on t.a=d.a select a from t";
       },
       {15, 30},
       [](int) { return "2"; }},
      {"derived tables that say what to delete",
       [](int n) {
         return "delete t from t inner join " + Nested("(select * from ", "t", ") d", n) +
                " on t.a=d.a select count(*) from t";
       },
       {15, 30},
       [](int) { return "0"; }},
      {"subqueries for values",
       [](int n) { return "select " + Nested("(select ", "a from t", ")", n); },
       {10, 15},
       One},
      {"EXISTS",
       [](int n) {
         return "select a from t where " + Nested("exists(select 1 from t where ", "1=1", ")", n);
       },
       {5, 10},
       One},
      {"AND in OR in AND",
       [](int n) { return "select a from t where " + Nested("(a=1 and (a=2 or ", "a=1", "))", n); },
       {5, 10},
       One},
      {"OR", [](int n) { return "select a from t where a=0" + Repeat(" or a=1", n); }, kListed,
       One},
      {"AND", [](int n) { return "select a from t where a=1" + Repeat(" and a=1", n); }, kListed,
       One},
      {"OR outside a query", [](int n) { return "if 1=0" + Repeat(" or 1=1", n) + " select 1"; },
       kListed, One},
      {"IN", [](int n) { return "select a from t where a in (" + Numbers(n) + ")"; }, kListed, One},
      {"WHEN",
       [](int n) {
         return "select case a" + Repeat(" when 0 then 0", n) + " when 1 then 1 end from t";
       },
       {30, 1000},
       One},
      {"UNION ALL", [](int n) { return "select 1" + Repeat(" union all select 1", n); }, kChained,
       One},
      {"BEGIN", [](int n) { return Nested("begin ", "select 1", " end", n); }, kNested, One},
      {"IF", [](int n) { return Repeat("if 1=1 ", n) + "select 1"; }, kNested, One},
      {"ELSE", [](int n) { return Repeat("if 1=0 select 2 else ", n) + "select 1"; }, kNested, One},
  };
  for (const Shape& shape : shapes) {
    for (const int depth : shape.depths) {
      EXPECT_EQ(Answer(shape.text(depth)), shape.answer(depth)) << shape.name << ", " << depth;
    }
  }
}

TEST(Depth, WhatIsTooDeepIsAnErrorOfTheServers) {
  constexpr char kTooDeep[] =
      "191 Some part of your SQL statement is nested too deeply. Rewrite the query or break it up "
      "into smaller queries.";
  const std::string texts[] = {
      "select " + Nested("abs(", "a", ")", 200) + " from t",
      "select " + Nested("(", "a", ")", 450) + " from t",
      "select a" + Repeat("+1", 1000) + " from t",
      "select * from " + Nested("(select * from ", "t", ") t", 200),
      "select a from t where " + Nested("exists(select 1 from t where ", "1=1", ")", 60),
      "select a from t where " + Nested("a in (select a from t where ", "1=1", ")", 60),
      "select a from t where " + Nested("(a=1 and (a=2 or ", "a=1", "))", 60),
      "select 1" + Repeat(" union all select 1", 500),
      "select 1" + Repeat(" union all select 1", 1000),
      Nested("begin ", "select 1", " end", 200),
      Repeat("if 1=1 ", 1000) + "select 1",
  };
  for (const std::string& text : texts) EXPECT_EQ(Answer(text), kTooDeep) << text.substr(0, 60);
}

TEST(Depth, CaseMayBeNestedToLevelTen) {
  constexpr char kTooDeep[] = "125 Case expressions may only be nested to level 10.";
  const std::string texts[] = {
      "select " + Nested("case when a=1 then ", "a", " end", 11) + " from t",
      "select " + Nested("case when a=1 then 0 else ", "a", " end", 450) + " from t",
      "select " + Nested("iif(a=1,", "a", ",0)", 11) + " from t",
      "select " + Nested("coalesce(", "a", ",0)", 11) + " from t",
      "select " + Nested("nullif(", "a", ",0)", 60) + " from t",
  };
  for (const std::string& text : texts) EXPECT_EQ(Answer(text), kTooDeep) << text.substr(0, 60);
}

// CASE x WHEN … stands for as many comparisons with x: inside one another they multiply.
TEST(Depth, WhatMultipliesIsRefusedInTime) {
  constexpr char kTooMuch[] =
      "8632 Internal error: An expression services limit has been reached. Please look for "
      "potentially complex expressions in your query, and try to simplify them.";
  const std::string one = "case ";
  const std::string whens = Repeat(" when 1 then 1", 20) + " end";
  EXPECT_EQ(Answer("select " + Nested(one, "a", whens, 10) + " from t"), kTooMuch);
  EXPECT_EQ(Answer("select a from t where a in (" + Numbers(300'000) + ")"), kTooMuch);
}

TEST(Depth, WhatIsTooWideIsNamed) {
  std::string joins = "select 1 from t t0";
  for (int i = 1; i <= 70; ++i) {
    joins += " inner join t t" + std::to_string(i) + " on t0.a=t" + std::to_string(i) + ".a";
  }
  EXPECT_EQ(Answer(joins),
            "50001 Not supported by the embedded database: a join of more than 64 tables.");
  EXPECT_EQ(Answer("insert into t (a) values (1)" + Repeat(",(1)", 1000)),
            "10738 The number of row value expressions in the INSERT statement exceeds the maximum "
            "allowed number of 1000 row values.");
  EXPECT_EQ(Answer("select 1" + Repeat(",1", 2500)),
            "50001 Not supported by the embedded database: a query of more than 2000 columns.");
}

}  // namespace
}  // namespace tavcc::sql
