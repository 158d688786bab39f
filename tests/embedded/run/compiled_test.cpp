// What is compiled once and never again, and what is not read.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>

#include "embedded/embedded.h"
#include "embedded/session/session.h"
#include "foundation/conversions.h"
#include "foundation/error.h"

namespace tavcc::sql {
namespace {

class Compiled : public ::testing::Test {
 protected:
  void Run(const std::string& sql) { session_->Execute(sql); }
  int64_t Count() { return dynamic_cast<Session&>(*session_).engine().context().compiled; }
  sqlite3* Handle() { return dynamic_cast<Session&>(*session_).engine().context().store.handle(); }

  // How many statements SQLite had to compile again until now.
  int CompiledAgain() {
    int count = 0;
    for (sqlite3_stmt* one = nullptr; (one = sqlite3_next_stmt(Handle(), one)) != nullptr;) {
      count += sqlite3_stmt_status(one, SQLITE_STMTSTATUS_REPREPARE, 0);
    }
    return count;
  }

  // How many statements are compiled while `sql` runs.
  int64_t CompiledBy(const std::string& sql) {
    const int64_t before = Count();
    Run(sql);
    return Count() - before;
  }

  std::shared_ptr<Database> database_ = Database::Open(OpenOptions{});
  ConnectionPtr session_ = database_->NewSession();
};

TEST_F(Compiled, OtherValuesAreNoOtherStatement) {
  Run("create table t (a int not null primary key, b nvarchar(10), q decimal(28,10))");
  EXPECT_LT(0, CompiledBy("insert into t values (1,'aa',1.5)"));
  EXPECT_EQ(0, CompiledBy("insert into t values (2,'bb',2.5)"));
  EXPECT_LT(0, CompiledBy("select b from t where a=1 and q>0"));
  EXPECT_EQ(0, CompiledBy("select b from t where a=777 and q>1"));
  EXPECT_LT(0, CompiledBy("update t set q=q+(100.01) where a=1"));
  EXPECT_EQ(0, CompiledBy("update t set q=q+(999.99) where a=12"));
}

// Length, precision and scale of a literal count only where the answer depends on them.
TEST_F(Compiled, OtherLengthsAreNoOtherStatementEither) {
  Run("create table t (a int not null primary key, b nvarchar(40), c char(8), q decimal(28,10), "
      "p decimal(5,2), f float)");
  const std::pair<const char*, const char*> rows[] = {
      {"insert into t values (1,'a','b',1.5,1.25,2.5)",
       "insert into t values (2,'longer than one','bcd',12.345,100.1,30.25)"},
      {"insert into t values (3,'a','b',-1.5,1.25,2.5)",
       "insert into t values (4,'bc','',-1.505,999.99,0.125)"},
      {"select a from t where p=1.5", "select a from t where p=10.25"},
      {"update t set c='x' where a=1", "update t set c='xyz' where a=2"},
      {"update t set b='x',q=1.5,p=2.5 where a=1", "update t set b='xyz',q=100.25,p=7. where a=2"},
      {"update t set q=q,p=-2.5 where a=1", "update t set q=q,p=-10.25 where a=2"},
      {"select a from t where b='x' and c=N'b'", "select a from t where b='xyz' and c=N'bcd'"},
      {"select a from t where b like 'x%'", "select a from t where b like '%letters%'"},
      {"select a from t where b in ('x','y')", "select a from t where b in ('xyz','')"},
      {"select a from t where q=1.5 or p<-2.5", "select a from t where q=100.25 or p<-10.2"},
      {"select a from t where f>1.5 and q between 0.5 and 100.0",
       "select a from t where f>2.25 and q between 0.125 and 9.99"},
      {"select a from t where q>3000000000", "select a from t where q>30000000000"},
      {"delete t where b='nobody'", "delete t where b='nobody at all'"},
      {"declare @b nvarchar(9), @q decimal(9,2) set @b='a' select @q=1.5",
       "declare @b nvarchar(9), @q decimal(9,2) set @b='abc' select @q=12.345"},
  };
  for (const auto& [first, second] : rows) {
    EXPECT_LT(0, CompiledBy(first)) << first;
    EXPECT_EQ(0, CompiledBy(second)) << second;
  }
  // A text that the column is too short for, and decimals beyond the column's, take another way.
  EXPECT_LT(0, CompiledBy("update t set c='123456789' where a=9"));
  EXPECT_LT(0, CompiledBy("select a from t where p=1.125"));
  // The type of a result is that of its literal.
  Run("select 'abc' as x, 1.5 as y");
  EXPECT_LT(0, CompiledBy("select 'abcd' as x, 1.5 as y"));
  EXPECT_LT(0, CompiledBy("select 'abc' as x, 1.50 as y"));
}

// Of more programs than are kept, those go that were not used for longest.
TEST_F(Compiled, WhatIsUsedStays) {
  Run("create table t (a int not null primary key)");
  const std::string used = "select a from t where a=5";
  const std::string unused = "select a as unused from t where a=5";
  Run(unused);
  Run(used);
  for (int i = 0; i < 600; ++i) {
    Run("select a as c" + std::to_string(i) + " from t");
    EXPECT_EQ(0, CompiledBy(used)) << i;
  }
  EXPECT_EQ(1, CompiledBy(unused));
}

// The memory of a recordset is used again for the next rows, but not while somebody holds it.
TEST_F(Compiled, ARecordsetThatIsHeldStaysAsItIs) {
  Run("create table t (a int not null primary key, b nvarchar(40))");
  Run("insert into t values (1,'one, in more letters than fit'),(2,'two')");
  const RecordsetPtr held = session_->Execute("select a,b from t where a=1");
  const auto* first = session_->Execute("select b from t where a=2").get();
  const RecordsetPtr next = session_->Execute("select b,a from t where a=2");
#ifndef __SANITIZE_THREAD__
  EXPECT_EQ(first, next.get());
#else
  static_cast<void>(first);
#endif
  EXPECT_NE(held.get(), next.get());
  EXPECT_EQ(1, held->Field("a").long_integer());
  EXPECT_EQ("one, in more letters than fit", held->Field("b").text());
  EXPECT_EQ("two", next->Field(0).text());
  EXPECT_EQ(2, next->Field(1).long_integer());
}

TEST_F(Compiled, ATemporaryTableMadeAgainKeepsItsStatements) {
  const std::string drop = "if object_id('tempdb.dbo.#t') is not null drop table #t";
  const std::string make = "create table #t (a int not null default(0), b varchar(5))";
  const std::string use = "insert into #t (a) values (1) select a from #t where a=1";
  for (const auto& sql : {drop, make, use, drop, make, use}) Run(sql);
  for (int round = 0; round < 3; ++round) {
    for (const auto& sql : {drop, make, use}) EXPECT_EQ(0, CompiledBy(sql)) << sql;
  }
  Run(drop);
  Run("create table #t (a int, c int)");
  EXPECT_LT(0, CompiledBy("insert into #t (a) values (1) select a from #t where a=1"));
}

// A host takes the transactions of refused calls back: the next call finds its tables made.
TEST_F(Compiled, ATemporaryTableThatWasRolledBackIsMadeAgainOnce) {
  Run("create table t (a int)");
  const auto refused = [&] {
    Run("begin tran");
    Run("create table #t (id int identity(1,1), a int not null default(0), b varchar(5))");
    Run("insert into t values (1) insert into #t (a) select a from t");
    const RecordsetPtr rows = session_->Execute("select id, a from #t");
    EXPECT_EQ(1, rows->RecordCount());
    EXPECT_EQ("1", ToText(rows->Field("id")));
    Run("rollback");
    EXPECT_THROW(Run("select a from #t"), AutomationError);
  };
  for (int i = 0; i < 2; ++i) refused();
  const int64_t compiled = Count();
  const int again = CompiledAgain();
  for (int i = 0; i < 3; ++i) refused();
  EXPECT_EQ(again, CompiledAgain());
  // The statement that raises is compiled each time.
  EXPECT_LE(Count() - compiled, 3);
}

TEST_F(Compiled, AGroupedTableIsNarrowedToTheKeysItIsJoinedOn) {
  Run("create table inv (item int, stock int, qty decimal(28,10))");
  Run("create index ix on inv (item, stock)");
  Run("create table #t (item int, qty decimal(28,10))");
  for (int i = 0; i < 2000; ++i) {
    Run("insert into inv values (" + std::to_string(i) + ",1," + std::to_string(i) + ")");
  }
  Run("insert into #t values (7,1),(1999,5),(5000,1)");
  const char kQuery[] =
      "select t.item, s.q from (select item, sum(qty) as q from inv group by item) s "
      "right outer join #t t on s.item=t.item order by t.item";
  Run(kQuery);
  int steps = 0;
  sqlite3_progress_handler(
      Handle(), 100, [](void* count) { return ++*static_cast<int*>(count), 0; }, &steps);
  const RecordsetPtr rows = session_->Execute(kQuery);
  sqlite3_progress_handler(Handle(), 0, nullptr, nullptr);
  // Reading all of it takes some ten steps a row.
  EXPECT_LT(steps, 20);
  EXPECT_EQ(3, rows->RecordCount());
  EXPECT_EQ("7.0000000000", rows->Field("q").decimal().ToText());
}

TEST_F(Compiled, SqliteDoesNotCompileAgainForTheFilterOfAnIndex) {
  Run("create table t (a int, q decimal(28,10))");
  Run("create index ix on t (a) where q=0");
  const auto round = [&](int i) {
    Run("select a from t where q=" + std::to_string(i % 2));
    Run("select a from t where q=0 and a=" + std::to_string(i));
  };
  round(0);
  const int before = CompiledAgain();
  for (int i = 1; i < 6; ++i) round(i);
  EXPECT_EQ(before, CompiledAgain());
}

}  // namespace
}  // namespace tavcc::sql
