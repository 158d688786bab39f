// Which expressions and conditions of a query are the same, whatever they are called.
#include <gtest/gtest.h>

#include "embedded/bind/binder.h"
#include "embedded/bind/same.h"
#include "embedded/session/engine.h"
#include "embedded/syntax/parser.h"

namespace tavcc::sql {
namespace {

constexpr const char* kTables =
    "create table t (a int, b int, q decimal(28,10), s varchar(5))\n"
    "create table u (a int, b int, q decimal(9,2), s varchar(5))\n";

struct Pair {
  const char *first, *second;
  bool same;
};

constexpr Pair kExpressions[] = {
    {"x.a", "x.a", true},
    {"x.a", "[X].[A]", true},
    {"x.a", "x.b", false},
    {"x.a", "y.a", false},
    {"1", "1", true},
    {"1", "2", false},
    {"1", "1.0", false},
    {"'x'", "'x'", true},
    {"'x'", "'X'", false},
    {"'x'", "N'x'", false},
    {"null", "null", true},
    {"x.a+1", "x.a+1", true},
    {"x.a+1", "x.a-1", false},
    {"x.a+1", "1+x.a", false},
    {"-x.a", "-x.a", true},
    {"-x.a", "~x.a", false},
    {"x.q*2.5", "x.q*2.5", true},
    {"@@rowcount", "@@rowcount", true},
    {"@@rowcount", "@@error", false},
    {"convert(varchar(5),x.a)", "cast(x.a as varchar(5))", true},
    {"convert(varchar(5),x.a)", "convert(varchar(6),x.a)", false},
    {"convert(varchar(30),getdate(),112)", "convert(varchar(30),getdate(),120)", false},
    {"isnull(x.a,0)", "isnull(x.a,0)", true},
    {"isnull(x.a,0)", "isnull(x.b,0)", false},
    {"left(x.s,2)", "right(x.s,2)", false},
    {"year(getdate())", "year(getdate())", true},
    {"year(getdate())", "month(getdate())", false},
    {"case when x.a=1 then 2 end", "case when x.a=1 then 2 end", true},
    {"case when x.a=1 then 2 end", "case when x.a<1 then 2 end", false},
    {"case when x.a=1 then 2 end", "case when x.a=1 then 2 else 3 end", false},
    {"(select max(z.a) from u z)", "(select max(z.a) from u z)", true},
    {"(select max(z.a) from u z)", "(select max(w.a) from u w)", true},
    {"(select max(z.a) from u z)", "(select max(z.b) from u z)", false},
    {"(select max(z.a) from u z)", "(select max(z.a) from t z)", false},
    {"(select max(z.a) from u z where z.b=x.b)", "(select max(z.a) from u z where z.b=x.b)", true},
    {"(select max(z.a) from u z where z.b=x.b)", "(select max(z.a) from u z where z.b=y.b)", false},
    {"(select max(v.k) from (select a as k from u) v)",
     "(select max(w.k) from (select a as k from u) w)", true},
    {"(select top 1 a from u)", "(select top 2 a from u)", false},
    {"(select top 1 a from u order by b)", "(select top 1 a from u order by b desc)", false},
    {"(select 1 union select 2)", "(select 1 union all select 2)", false},
};

constexpr Pair kConditions[] = {
    {"x.a=y.a", "x.a=y.a", true},
    {"x.a=y.a", "y.a=x.a", false},
    {"x.a=y.a", "x.a<>y.a", false},
    {"x.a=1 and y.a=2", "x.a=1 and y.a=2", true},
    {"x.a=1 and y.a=2", "x.a=1 or y.a=2", false},
    {"x.a=1 and y.a=2", "x.a=1 and y.a=2 and x.b=3", false},
    {"not x.a=1", "not x.a=1", true},
    {"x.a is null", "x.a is not null", false},
    {"x.a in (1,2)", "x.a in (1,2)", true},
    {"x.a in (1,2)", "x.a in (1,3)", false},
    {"x.a in (1,2)", "x.a not in (1,2)", false},
    {"x.a in (select a from u)", "x.a in (select a from u)", true},
    {"x.a in (select a from u)", "x.a in (select b from u)", false},
    {"x.s like 'a%'", "x.s like 'a%'", true},
    {"x.s like 'a%'", "x.s like 'a%' escape '!'", false},
    {"exists (select 1 from u where a=x.a)", "exists (select 1 from u where a=x.a)", true},
    {"exists (select 1 from u where a=x.a)", "exists (select 1 from u where a=y.a)", false},
};

class Same : public ::testing::Test {
 protected:
  void SetUp() override {
    engine_->RunBatch(kTables);
    ASSERT_TRUE(engine_->errors().empty());
  }

  BoundQueryPtr Bind(const std::string& sql) {
    const Batch batch = ParseBatch(sql);
    BindResult result;
    Binder binder(engine_->context().catalog, {}, {}, result);
    return binder.BindQuery(*static_cast<const SelectStatement&>(*batch.statements.at(0)).query);
  }

  std::unique_ptr<Engine> engine_ = std::make_unique<Engine>(StoreLocation{":memory:", false});
};

TEST_F(Same, ExpressionsAreComparedByWhatTheyAre) {
  for (const Pair& pair : kExpressions) {
    const auto query = Bind(std::string("select ") + pair.first + ',' + pair.second +
                            " from t x cross join u y where y.a=0");
    const auto& items = query->select->items;
    EXPECT_EQ(pair.same, AreSame(*items[0].expression, *items[1].expression))
        << pair.first << "   " << pair.second;
  }
}

TEST_F(Same, SoAreConditions) {
  for (const Pair& pair : kConditions) {
    const auto query = Bind(std::string("select case when ") + pair.first + " then 1 when " +
                            pair.second + " then 2 end from t x cross join u y");
    const auto& whens = static_cast<const BoundCase&>(*query->select->items[0].expression).whens;
    EXPECT_EQ(pair.same, AreSame(*whens[0].condition, *whens[1].condition))
        << pair.first << "   " << pair.second;
  }
}

}  // namespace
}  // namespace tavcc::sql
