// Text to tree: each row is a statement and its tree as print.h writes it.
#include <gtest/gtest.h>

#include "embedded/error.h"
#include "embedded/syntax/parser.h"
#include "embedded/syntax/print.h"

namespace tavcc::sql {
namespace {

struct Row {
  const char* text;
  const char* tree;
};

template <size_t kCount>
void ExpectTrees(const Row (&rows)[kCount]) {
  for (const Row& row : rows) {
    try {
      EXPECT_EQ(Print(ParseBatch(row.text)), row.tree) << row.text;
    } catch (const SqlError& error) {
      ADD_FAILURE() << row.text << "\n" << error.number << " " << error.message;
    }
  }
}

// Multiplication before the signs and addition, comparison, NOT, AND, OR: the server's table of
// operator precedence. The signs rank with addition: -100/-100*10 is -(100/-(100*10)).
TEST(Parse, Precedence) {
  ExpectTrees({
      {"select 1+2*3", "(select (+ 1 (* 2 3)))"},
      {"select (1+2)*3", "(select (* (+ 1 2) 3))"},
      {"select 1-2-3", "(select (- (- 1 2) 3))"},
      {"select 8/4/2%3", "(select (% (/ (/ 8 4) 2) 3))"},
      {"select a & b + c | d ^ e", "(select (^ (| (+ (& a b) c) d) e))"},
      {"select -100.0/-100.0*10.0", "(select (- (/ 100.0 (- (* 100.0 10.0)))))"},
      {"select -a+b", "(select (+ (- a) b))"},
      {"select - - a", "(select (- (- a)))"},
      {"select ~a*b", "(select (* (~ a) b))"},
      {"select ~-a", "(select (~ (- a)))"},
      {"select a where not a=1 and b=2 or c=3",
       "(select a (where (or (and (not (= a 1)) (= b 2)) (= c 3))))"},
      {"select a where a=1 or b=2 and c=3 or d=4",
       "(select a (where (or (= a 1) (and (= b 2) (= c 3)) (= d 4))))"},
      {"select a where not not a=1", "(select a (where (not (not (= a 1)))))"},
      {"select a where a=1 and (b=2 and c=3)",
       "(select a (where (and (= a 1) (and (= b 2) (= c 3)))))"},
  });
}

// A bracket may hold a value, a condition or a query, whatever its beginning looks like.
TEST(Parse, BracketsHoldValuesConditionsOrQueries) {
  ExpectTrees({
      {"select a where ((a))=1", "(select a (where (= a 1)))"},
      {"select a where ((a=1))", "(select a (where (= a 1)))"},
      {"select a where ((a)+1)*2>(b)", "(select a (where (> (* (+ a 1) 2) b)))"},
      {"select a where ((a)=1 or (b)=2) and c=3",
       "(select a (where (and (or (= a 1) (= b 2)) (= c 3))))"},
      {"select a where (select 1)=a", "(select a (where (= (select 1) a)))"},
      {"select a where ((select 1) + 2)=a", "(select a (where (= (+ (select 1) 2) a)))"},
      {"select ((select 1) union (select 2))", "(select (union (select 1) (select 2)))"},
      {"select a where exists((select 1) except (select 2))",
       "(select a (where (exists (except (select 1) (select 2)))))"},
      {"select a where ((a) in (1)) or ((b) is null)",
       "(select a (where (or (in a 1) (is-null b))))"},
      {"select case when (a) > ((1)) then 1 end", "(select (case (when (> a 1) 1)))"},
  });
}

TEST(Parse, Conditions) {
  ExpectTrees({
      {"select a where a<>1 and a!=2 and a<3 and a<=4 and a>5 and a>=6 and a!<7 and a!>8",
       "(select a (where (and (<> a 1) (<> a 2) (< a 3) (<= a 4) (> a 5) (>= a 6) (>= a 7) "
       "(<= a 8))))"},
      {"select a where a < > 1 and a > = 2 and a < = 3",
       "(select a (where (and (<> a 1) (>= a 2) (<= a 3))))"},
      {"select a where a is null and b is not null",
       "(select a (where (and (is-null a) (is-not-null b))))"},
      {"select a where a between 1 and 2 and b not between 3 and 4",
       "(select a (where (and (between a 1 2) (not-between b 3 4))))"},
      {"select a where a in (1, 2+3,'x') and b not in(select c from t)",
       "(select a (where (and (in a 1 (+ 2 3) 'x') (not-in b (select c (from t))))))"},
      {"select a where a like '1%' and b not like N'x!_' escape '!'",
       "(select a (where (and (like a '1%') (not-like b N'x!_' '!'))))"},
      {"select a where not exists(select * from t)",
       "(select a (where (not (exists (select * (from t))))))"},
  });
}

TEST(Parse, Values) {
  ExpectTrees({
      {"select 007, 1., .5, 1.50, 1e3, 1.5E-3, 0x1F, 0x, null, 'it''s', N'\xe5\x8d\x95'",
       "(select 007 1. .5 1.50 1e3 1.5E-3 0x1F 0x null 'it''s' N'\xe5\x8d\x95')"},
      {"select @a, @@rowcount, a, t.a, dbo.t.a, [my col], \"x\"\"y\", [a]]b]",
       "(select @a @@rowcount a t.a dbo.t.a my col x\"y a]b)"},
      {"select getdate(), isnull(a,0), dbo.f(1), left('ab',1), right(a,2), coalesce(a,b), "
       "nullif(a,0), current_timestamp",
       "(select (call getdate) (call isnull a 0) (call dbo.f 1) (call left 'ab' 1) "
       "(call right a 2) (call coalesce a b) (call nullif a 0) (call current_timestamp))"},
      {"select count(*), count(distinct a), sum(all b), max(c)",
       "(select (call count *) (call count distinct a) (call sum b) (call max c))"},
      {"select DateDiff(Day,a,b), dateadd(mm,1,a), datepart(yy,a)",
       "(select (call DateDiff :Day a b) (call dateadd :mm 1 a) (call datepart :yy a))"},
      {"select cast(a as varchar), CAST(a AS decimal(28,10)), cast(a as nvarchar(max))",
       "(select (cast varchar a) (cast decimal(28,10) a) (cast nvarchar(max) a))"},
      {"select convert(varchar(20),a,120), convert(INT, a), convert([datetime],'2026-03-15')",
       "(select (convert varchar(20) a 120) (convert INT a) (convert datetime '2026-03-15'))"},
      {"select case a when 1 then 'x' when 2 then 'y' else 'z' end",
       "(select (case a (when 1 'x') (when 2 'y') (else 'z')))"},
      {"select case when a=1 then b end", "(select (case (when (= a 1) b)))"},
      {"select iif(a>1,b,c)", "(select (case (when (> a 1) b) (else c)))"},
      {"select (select top 1 a from t)", "(select (select (top 1) a (from t)))"},
  });
}

TEST(Parse, SelectLists) {
  ExpectTrees({
      {"select a as b, a b, a as 'b c', a 'd', a as [e f], g=a+1, 'h'=a, [i]=1",
       "(select (as b a) (as b a) (as b c a) (as d a) (as e f a) (as g (+ a 1)) (as h a) "
       "(as i 1))"},
      {"select *, T1.*, dbo.t.*", "(select * T1.* dbo.t.*)"},
      {"select @a=1, @b = b+@a", "(select (set @a 1) (set @b (+ b @a)))"},
      {"select @a += 2", "(select (set @a (+ @a 2)))"},
      {"select @a as x, @@error", "(select (as x @a) @@error)"},
      {"select all a", "(select a)"},
      {"select distinct top 5 a", "(select distinct (top 5) a)"},
      {"select top (@n) percent with ties a", "(select (top @n percent ties) a)"},
      {"select top 1 1 from t", "(select (top 1) 1 (from t))"},
      {"select a into #t from b", "(select a (into #t) (from b))"},
      {"select FBATCHNO= (case when a=1 then '' else b END), c",
       "(select (as FBATCHNO (case (when (= a 1) '') (else b))) c)"},
  });
}

TEST(Parse, TablesAndJoins) {
  ExpectTrees({
      {"select * from t", "(select * (from t))"},
      {"select * from t a, u as b, dbo.v, tempdb..#w, @x y",
       "(select * (from (as a t) (as b u) dbo.v tempdb..#w (as y @x)))"},
      {"select * from t with(nolock), u a (nolock), v (nolock) b, w with (updlock, holdlock)",
       "(select * (from (table t NOLOCK) (as a u NOLOCK) (as b v NOLOCK) "
       "(table w UPDLOCK HOLDLOCK)))"},
      {"select * from a join b on a.x=b.x left outer join c on c.x=b.x right join d on 1=1",
       "(select * (from (right (left (join a b (= a.x b.x)) c (= c.x b.x)) d (= 1 1))))"},
      {"select * from a full outer join b on a.x=b.x cross join c",
       "(select * (from (cross (full a b (= a.x b.x)) c)))"},
      {"select * from a inner join b inner join c on b.x=c.x on a.x=b.x",
       "(select * (from (join a (join b c (= b.x c.x)) (= a.x b.x))))"},
      {"select * from (a join b on a.x=b.x) join (c cross join d) on 1=1",
       "(select * (from (join (join a b (= a.x b.x)) (cross c d) (= 1 1))))"},
      {"select * from (select 1 as x) t, (select 2) as u(y)",
       "(select * (from (as t (select (as x 1))) (as u (y) (select 2))))"},
      {"select * from ((select 1 a) union all (select 2)) t",
       "(select * (from (as t (union-all (select (as a 1)) (select 2)))))"},
      {"select * from ((select 1 a)) t", "(select * (from (as t (select (as a 1)))))"},
      {"select * from ((a cross join b))", "(select * (from (cross a b)))"},
      {"select * from a inner hash join b on 1=1", "(select * (from (join a b (= 1 1))))"},
  });
}

TEST(Parse, Queries) {
  ExpectTrees({
      {"select 1 union select 2 union all select 3",
       "(union-all (union (select 1) (select 2)) (select 3))"},
      {"select 1 union select 2 intersect select 3",
       "(union (select 1) (intersect (select 2) (select 3)))"},
      {"(select 1 union select 2) intersect select 3",
       "(intersect (union (select 1) (select 2)) (select 3))"},
      {"select 1 except select 2 except select 3",
       "(except (except (select 1) (select 2)) (select 3))"},
      {"select a from t where b=1 group by a, c having count(*)>1 order by a desc, 2, b asc",
       "(order (select a (from t) (where (= b 1)) (group a c) (having (> (call count *) 1))) "
       "(desc a) 2 b)"},
      {"select a from t union select a from u order by 1",
       "(order (union (select a (from t)) (select a (from u))) 1)"},
      {"select a from t option (maxdop 1, recompile)", "(select a (from t))"},
  });
}

TEST(Parse, CommonTables) {
  ExpectTrees({
      {"with c(a) as (select 1) select a from c",
       "(with (as c (a) (select 1)) (select a (from c)))"},
      {"with a as (select 1 x), b as (select x from a) insert t select x from b",
       "(with (as a (select (as x 1))) (as b (select x (from a))) (insert t (select x (from b))))"},
      {"with c as (select 1 a) delete from c option (maxrecursion 5)",
       "(with (as c (select (as a 1))) max-recursion 5 (delete c))"},
  });
}

TEST(Parse, Windows) {
  ExpectTrees({
      {"select row_number() over (order by a) from t",
       "(select (call row_number (over (order a))) (from t))"},
      {"select sum(a) over (partition by b order by c desc rows between 2 preceding and current row)",
       "(select (call sum a (over (partition b) (order (desc c)) (rows before-2 current))))"},
      {"select max(a) over (order by b range unbounded preceding)",
       "(select (call max a (over (order b) (range first current))))"},
  });
}

TEST(Parse, Changes) {
  ExpectTrees({
      {"insert into t(a,b) values(1,'x'),(2,default)",
       "(insert t (a b) (row 1 'x') (row 2 default))"},
      {"insert t values(1)", "(insert t (row 1))"},
      {"insert t default values", "(insert t)"},
      {"insert into #t select a from u", "(insert #t (select a (from u)))"},
      {"insert #t (a) (select 1)", "(insert #t (a) (select 1))"},
      {"insert @t (a) exec p 1", "(insert @t (a) (exec p 1))"},
      {"insert t select 1 union all select 2 order by 1",
       "(insert t (order (union-all (select 1) (select 2)) 1))"},
      {"update t set a=1, b=default where c=2",
       "(update t (set a 1) (set b default) (where (= c 2)))"},
      {"Update t1 SET t1.a=u1.a FROM t t1 Inner Join #u u1 On t1.i=u1.i",
       "(update t1 (set t1.a u1.a) (from (join (as t1 t) (as u1 #u) (= t1.i u1.i))))"},
      {"update top (5) t with(rowlock) set @v=a=a+1, @w=2, b+=3",
       "(update (top 5) t (set @v a (+ a 1)) (set @w 2) (set b (+ b 3)))"},
      {"delete from t where a=1", "(delete t (where (= a 1)))"},
      {"Delete FromT_CC_ZZCX where FID=1", "(delete FromT_CC_ZZCX (where (= FID 1)))"},
      {"delete top (1) t", "(delete (top 1) t)"},
      {"DELETE t1 FROM t t1 left join @u u on t1.a=u.a where u.a is null",
       "(delete t1 (from (left (as t1 t) (as u @u) (= t1.a u.a))) (where (is-null u.a)))"},
      {"truncate table #t", "(truncate #t)"},
  });
}

TEST(Parse, Definitions) {
  ExpectTrees({
      {"create table dbo.t(a int not null identity(1,1) primary key, b varchar(10) null "
       "default(''), c decimal(28,10) default 0 not null, d nvarchar(max), e int identity)",
       "(create-table dbo.t (column a int not-null (identity 1 1) primary-key) "
       "(column b varchar(10) null (default '')) (column c decimal(28,10) not-null (default 0)) "
       "(column d nvarchar(max)) (column e int (identity 1 1)))"},
      {"create table t(a int constraint d default -1 constraint u unique nonclustered, b int, "
       "constraint pk primary key clustered (a desc, b), unique(b)) on [primary]",
       "(create-table t (column a int (default (- 1)) unique) (column b int) "
       "(primary-key pk (a b)) (unique (b)))"},
      {"create table t(a datetime default getdate(), b double precision)",
       "(create-table t (column a datetime (default (call getdate))) (column b float))"},
      {"alter table t add c int null, d int default 5",
       "(alter-table-add t (column c int null) (column d int (default 5)))"},
      {"alter table t with nocheck add constraint pk primary key(a)",
       "(alter-table-add t (primary-key pk (a)))"},
      {"create unique nonclustered index ix on t(a, b desc) with (fillfactor=80)",
       "(create-unique-index ix t (a b))"},
      {"create index ix on t(a) include (b)", "(create-index ix t (a))"},
      {"create index ix on t(a) where ([b]>=(-1.5) and c is not null) with (fillfactor=80)",
       "(create-index ix t (a) (and (>= b (- 1.5)) (is-not-null c)))"},
      {"create view v(x) as select a from t", "(create-view v (x) (select a (from t)))"},
      {"create procedure p @a int, @b varchar(20)='x', @c decimal(28,10) output as "
       "select @c=1 return 0",
       "(create-procedure p (parameter @a int) (parameter @b varchar(20) 'x') "
       "(parameter @c decimal(28,10) output) (select (set @c 1)) (return 0))"},
      {"create proc p (@a int = null out) as begin select 1 end",
       "(create-procedure p (parameter @a int null output) (begin (select 1)))"},
      {"create proc p as select 1", "(create-procedure p (select 1))"},
      {"drop table #t, dbo.u", "(drop-table #t dbo.u)"},
      {"drop table if exists t", "(drop-table if-exists t)"},
      {"drop view v", "(drop-view v)"},
      {"drop proc p", "(drop-procedure p)"},
      {"drop index ix on t", "(drop-index ix on t)"},
      {"drop index t.ix", "(drop-index ix on t)"},
  });
}

TEST(Parse, VariablesAndControl) {
  ExpectTrees({
      {"declare @a int, @b as varchar(20) = 'x', @t table(i int, j int default 0)",
       "(declare (@a int) (@b varchar(20) 'x') (@t (column i int) (column j int (default 0))))"},
      {"set @a=1 set @a+=2 set nocount on",
       "(set @a 1)\n(set @a (+ @a 2))\n(set-option NOCOUNT [ON])"},
      {"Set NoCount On   Declare @Same int\r\nSelect @Same=1\r\nSet NoCount Off ",
       "(set-option NOCOUNT [ON])\n(declare (@Same int))\n(select (set @Same 1))\n"
       "(set-option NOCOUNT [OFF])"},
      {"set identity_insert dbo.t on set rowcount 5 set transaction isolation level read committed",
       "(set-option IDENTITY_INSERT [dbo.t on])\n(set-option ROWCOUNT [5])\n"
       "(set-option TRANSACTION ISOLATION LEVEL [READ COMMITTED])"},
      {"if @a=1 select 1 else if @a=2 select 2 else select 3",
       "(if (= @a 1) (select 1) (if (= @a 2) (select 2) (select 3)))"},
      {"if exists(select 1) begin; select 1; print 'x' end; else break;",
       "(if (exists (select 1)) (begin (select 1) (print 'x')) (break))"},
      {"while 1=1 begin break continue end", "(while (= 1 1) (begin (break) (continue)))"},
      {"return", "(return)"},
      {"return -1 select 2", "(return (- 1))\n(select 2)"},
      {"if @a=1 return select 2", "(if (= @a 1) (return))\n(select 2)"},
      {"raiserror('x %d',16,1,@a) with nowait", "(raiserror 'x %d' 16 1 @a)"},
      {"begin tran x save transaction y rollback tran y commit work commit rollback",
       "(begin-transaction x)\n(save-transaction y)\n(rollback-transaction y)\n"
       "(commit-transaction)\n(commit-transaction)\n(rollback-transaction)"},
      {"", ""},
      {" ;; select 1;;select 2; ", "(select 1)\n(select 2)"},
  });
}

TEST(Parse, CursorsAndCalls) {
  ExpectTrees({
      {"Declare MyCur Cursor  For Select * From #T  Open MyCur  Fetch next From MyCur Into @a,@b "
       "Close MyCur DealLocate MyCur",
       "(declare-cursor MyCur (select * (from #T)))\n(open MyCur)\n(fetch MyCur @a @b)\n"
       "(close MyCur)\n(deallocate MyCur)"},
      {"declare c insensitive cursor local fast_forward for select 1 for read only fetch c",
       "(declare-cursor c (select 1))\n(fetch c)"},
      {"exec sp_x", "(exec sp_x)"},
      {"sp_x 1, 'a', @b output, default, null, -3, word, @c = 2",
       "(exec sp_x 1 'a' (argument @b output) default null (- 3) N'word' (@c 2))"},
      {"Exec sp_GetLastCost @S,@I,@B,@Price Output If IsNull(@Price,0)<=0 Insert Into #T "
       "Values(@I)",
       "(exec sp_GetLastCost @S @I @B (argument @Price output))\n"
       "(if (<= (call IsNull @Price 0) 0) (insert #T (row @I)))"},
      {"execute @r = dbo.p @x = @y out", "(exec @r= dbo.p (@x @y output))"},
      {"Exec(@str)", "(exec-text @str)"},
      {"exec('select ' + @a + N' from t')", "(exec-text (+ (+ 'select ' @a) N' from t'))"},
  });
}

// Only a batch's first statement may call a procedure without EXEC.
TEST(Parse, ProcedureNameAloneIsACallOnlyAtTheStart) {
  EXPECT_EQ(Print(ParseBatch("p select 1")), "(exec p)\n(select 1)");
  EXPECT_THROW(ParseBatch("select 1; p"), SqlError);
}

TEST(Parse, LinesAreThoseOfTheFirstToken) {
  const Batch batch = ParseBatch("select 1\r\n/* \n */ update t\nset a=\n  b\n");
  ASSERT_EQ(batch.statements.size(), 2u);
  EXPECT_EQ(batch.statements[0]->line, 1);
  EXPECT_EQ(batch.statements[1]->line, 3);
  const auto& update = static_cast<const UpdateStatement&>(*batch.statements[1]);
  EXPECT_EQ(update.assignments[0].value->line, 5);
}

TEST(Parse, DefinitionsKeepTheirOwnText) {
  const Batch view = ParseBatch("create view v as\n select a from t where b='x' \n");
  EXPECT_EQ(static_cast<const CreateViewStatement&>(*view.statements[0]).text,
            "select a from t where b='x'");
  const Batch procedure = ParseBatch(" create proc p as\nselect 1\r\n");
  EXPECT_EQ(static_cast<const CreateProcedureStatement&>(*procedure.statements[0]).text,
            "create proc p as\nselect 1");
}

}  // namespace
}  // namespace tavcc::sql
