// Goldens of the bound tree: SQL to the tree with every type and every conversion written out. The
// trees are derived from the "Data type precedence" and "Precision, scale, and length" pages.
#include <gtest/gtest.h>

#include "embedded/bind/binder.h"
#include "embedded/bind/describe.h"
#include "embedded/session/engine.h"
#include "embedded/syntax/parser.h"

namespace tavcc::sql {
namespace {

constexpr char kTables[] =
    "create table t (a int not null, q decimal(28,10), s varchar(5), n nvarchar(10), d datetime, "
    "f float, b bit, m money, l bigint) "
    "create table u (a int, q decimal(9,2) not null default(0), s varchar(5))";

struct Golden {
  const char* sql;
  const char* tree;
};

const Golden kGoldens[] = {
    // Arithmetic
    {"select a+1 from t", "select (t.a:int + 1:int):int from t"},
    {"select q+1 from t", "select (t.q:decimal(28,10) + 1:int):decimal(29,10) from t"},
    {"select q*a from t", "select (t.q:decimal(28,10) * t.a:int):decimal(38,9) from t"},
    {"select q*q from t", "select (t.q:decimal(28,10) * t.q:decimal(28,10)):decimal(38,6) from t"},
    {"select a/2 from t", "select (t.a:int / 2:int):int from t"},
    {"select a+l from t", "select (t.a:int + t.l:bigint):bigint from t"},
    {"select f+q from t", "select (t.f:float + convert(float, t.q:decimal(28,10))):float from t"},
    {"select s+1 from t", "select (convert(int, t.s:varchar(5)) + 1:int):int from t"},
    {"select s+'x' from t", "select (t.s:varchar(5) + 'x':varchar(1)):varchar(6) from t"},
    {"select -a from t", "select -t.a:int:int from t"},
    // Comparisons
    {"select a from t where a='5'",
     "select t.a:int as a from t where t.a:int = convert(int, '5':varchar(1))"},
    {"select a from t where q>0",
     "select t.a:int as a from t where t.q:decimal(28,10) > convert(decimal(28,10), 0:int)"},
    {"select a from t where q>1.5",
     "select t.a:int as a from t where t.q:decimal(28,10) > 1.5:decimal(2,1)"},
    {"select a from t where s=n",
     "select t.a:int as a from t where convert(nvarchar(10), t.s:varchar(5)) = t.n:nvarchar(10)"},
    {"select a from t where s='abc'",
     "select t.a:int as a from t where t.s:varchar(5) = 'abc':varchar(3)"},
    {"select a from t where d>='2026-03-01'",
     "select t.a:int as a from t where t.d:datetime >= convert(datetime, '2026-03-01':varchar(10))"},
    {"select a from t where a between '1' and 3",
     "select t.a:int as a from t where (t.a:int >= convert(int, '1':varchar(1)) and t.a:int <= "
     "3:int)"},
    {"select a from t where a in (1,'2')",
     "select t.a:int as a from t where t.a:int in (1:int, convert(int, '2':varchar(1)))"},
    {"select a from t where q in (select q from u)",
     "select t.a:int as a from t where t.q:decimal(28,10) in (select convert(decimal(28,10), "
     "u.q:decimal(9,2)) as q from u)"},
    {"select a from t where b=1", "select t.a:int as a from t where convert(int, t.b:bit) = 1:int"},
    {"select a from t where s is not null and not a=1",
     "select t.a:int as a from t where (t.s:varchar(5) is not null and not t.a:int = 1:int)"},
    // Functions, CASE, aggregates
    {"select isnull(q,0) from t",
     "select ISNULL(t.q:decimal(28,10), convert(decimal(28,10), 0:int)):decimal(28,10) from t"},
    {"select isnull(s,n) from t",
     "select ISNULL(t.s:varchar(5), convert(varchar(5), t.n:nvarchar(10))):varchar(5) from t"},
    {"select left(s,'2') from t",
     "select LEFT(t.s:varchar(5), convert(int, '2':varchar(1))):varchar(5) from t"},
    {"select convert(varchar(20),d,120) from t",
     "select convert(varchar(20), t.d:datetime, 120) from t"},
    {"select cast(a as varchar) from t", "select convert(varchar(30), t.a:int) from t"},
    {"select datediff(day,d,'2026-03-01') from t",
     "select DATEDIFF(part 4, t.d:datetime, convert(datetime, '2026-03-01':varchar(10))):int from "
     "t"},
    {"select case when a=1 then s else n end from t",
     "select case when t.a:int = 1:int then convert(nvarchar(10), t.s:varchar(5)) else "
     "t.n:nvarchar(10) end:nvarchar(10) from t"},
    {"select case a when '1' then 1 else 2.5 end from t",
     "select case when t.a:int = convert(int, '1':varchar(1)) then convert(decimal(11,1), 1:int) "
     "else convert(decimal(11,1), 2.5:decimal(2,1)) end:decimal(11,1) from t"},
    {"select sum(a),sum(q),avg(q),count(*),max(d) from t",
     "select sum(t.a:int):int, sum(t.q:decimal(28,10)):decimal(38,10), "
     "avg(t.q:decimal(28,10)):decimal(38,10), count(*):int, max(t.d:datetime):datetime from t"},
    {"select s,sum(q) as z from t group by s having sum(q)<>0",
     "select t.s:varchar(5) as s, sum(t.q:decimal(28,10)):decimal(38,10) as z from t group by "
     "t.s:varchar(5) having sum(t.q:decimal(28,10)):decimal(38,10) <> convert(decimal(38,10), "
     "0:int)"},
    // Sources
    {"select x.a from t x right join u on x.a=u.a",
     "select x.a:int as a from (u left join t as x on x.a:int = u.a:int)"},
    {"select v.z from (select a as z from u) v",
     "select v.z:int as z from (select u.a:int as z from u) as v"},
    {"select (select max(a) from u where u.a=t.a) from t",
     "select (select max(u.a:int):int from u where u.a:int = t.a:int) from t"},
    {"select 1 union select 2.5",
     "(select convert(decimal(11,1), 1:int)) union (select convert(decimal(11,1), "
     "2.5:decimal(2,1)))"},
    {"with c(x) as (select a from u) select x+1 from c",
     "select (c.x:int + 1:int):int from (select u.a:int as a from u) as c"},
    {"with c as (select 1 as n union all select n+1 from c where n<3) select n from c",
     "select c.n:int as n from ((select 1:int as n) union all (select (c.n:int + 1:int):int from "
     "recursion as c where c.n:int < 3:int)) as c"},
    {"select row_number() over (partition by s order by a desc) from t",
     "select row_number() over (partition by t.s:varchar(5) order by t.a:int desc):bigint from t"},
    {"select lag(q,1,0) over (order by a) from t",
     "select lag(t.q:decimal(28,10), convert(bigint, 1:int), convert(decimal(28,10), 0:int)) over "
     "(order by t.a:int):decimal(28,10) from t"},
    {"select sum(q) over () from t",
     "select sum(t.q:decimal(28,10)) over ():decimal(38,10) from t"},
    {"select top 3 a from t order by a desc",
     "select top convert(bigint, 3:int) t.a:int as a from t order by 1 desc"},
    // Changes
    {"insert into u (a,s) values ('1','x')",
     "insert u(a, s) values (assign(int, '1':varchar(1)), assign(varchar(5), 'x':varchar(1)))"},
    {"insert into u select a,1,s from u",
     "insert u(a, q, s) select u.a:int as a, assign(decimal(9,2), 1:int), u.s:varchar(5) as s from "
     "u"},
    {"update u set q=u.q+t.q from u inner join t on u.a=t.a",
     "update u set q = assign(decimal(9,2), (u.q:decimal(9,2) + t.q:decimal(28,10)):decimal(29,10)) "
     "from (u inner join t on u.a:int = t.a:int)"},
    {"delete x from u x left join t on x.a=t.a where t.a is null",
     "delete x from (u as x left join t on x.a:int = t.a:int) where t.a:int is null"},
};

std::string Bound(Engine& engine, const std::string& sql) {
  const Batch batch = ParseBatch(sql);
  BindResult result;
  Binder binder(engine.context().catalog, {}, {}, result);
  const Statement& statement = *batch.statements.at(0);
  switch (statement.kind) {
    case Statement::Kind::kInsert:
      return Describe(binder.BindInsert(static_cast<const InsertStatement&>(statement), false));
    case Statement::Kind::kUpdate:
      return Describe(binder.BindUpdate(static_cast<const UpdateStatement&>(statement)));
    case Statement::Kind::kDelete:
      return Describe(binder.BindDelete(static_cast<const DeleteStatement&>(statement)));
    default:
      return Describe(*binder.BindQuery(*static_cast<const SelectStatement&>(statement).query));
  }
}

TEST(BoundTree, HasEveryConversionWrittenOut) {
  const auto opened = std::make_unique<Engine>(StoreLocation{":memory:", false});
  Engine& engine = *opened;
  engine.RunBatch(kTables);
  ASSERT_TRUE(engine.errors().empty());
  for (const Golden& golden : kGoldens) {
    try {
      EXPECT_EQ(golden.tree, Bound(engine, golden.sql)) << golden.sql;
    } catch (const SqlError& error) {
      ADD_FAILURE() << golden.sql << "\n  " << error.number << ": " << error.message;
    }
  }
}

}  // namespace
}  // namespace tavcc::sql
