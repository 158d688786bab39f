// A DELETE that reads the query of a table variable's INSERT leaves the same rows as one that reads
// the variable, over random tables and random forms of the two statements; and it reads few rows.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "embedded/embedded.h"
#include "embedded/session/session.h"
#include "foundation/conversions.h"
#include "foundation/text.h"
#include "support/source_dir.h"

namespace tavcc::sql {
namespace {

class ReadOnce : public ::testing::Test {
 protected:
  RecordsetPtr Run(const std::string& sql) { return session_->Execute(sql); }
  sqlite3* Handle() { return dynamic_cast<Session&>(*session_).engine().context().store.handle(); }

  int Pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }
  std::string OneOf(const std::vector<std::string>& texts) {
    return texts[static_cast<size_t>(Pick(static_cast<int>(texts.size())))];
  }

  // What a query gives, as one text.
  std::string Answer(const std::string& sql) {
    std::string out;
    for (const RecordsetPtr rows = Run(sql); !rows->AtEnd(); rows->MoveNext()) {
      CatTo(out, ToText(rows->Field("id")), " ");
    }
    return out;
  }

  std::shared_ptr<Database> database_ = Database::Open(OpenOptions{});
  ConnectionPtr session_ = database_->NewSession();
  std::mt19937 random_{20260310};
};

// How many rows were written into temporary tables, table variables included.
class TemporaryWrites {
 public:
  explicit TemporaryWrites(sqlite3* handle) : handle_(handle) {
    sqlite3_update_hook(
        handle,
        [](void* count, int, const char* schema, const char* table, sqlite3_int64) {
          // A new table is written down in a table of SQLite's own.
          const bool own = std::string_view(table).starts_with("sqlite_");
          if (std::string_view(schema) == "temp" && !own) ++*static_cast<int*>(count);
        },
        &count_);
  }
  TemporaryWrites(const TemporaryWrites&) = delete;
  TemporaryWrites& operator=(const TemporaryWrites&) = delete;
  ~TemporaryWrites() { sqlite3_update_hook(handle_, nullptr, nullptr); }
  int count() const { return count_; }

 private:
  sqlite3* handle_;
  int count_ = 0;
};

struct Forms {
  std::string once;  // the variable is read once
  // And once more, so that it has to be a table; and what is asked is not plainly a lack of
  // matches.
  std::string again;
  bool plain = true;  // all of it asks for no more than a lack of matches
};

// INSERT and DELETE over random parts of the tables of RandomTables.
Forms RandomForms(std::mt19937& random) {
  const auto pick = [&](int count) {
    return std::uniform_int_distribution<int>(0, count - 1)(random);
  };
  bool plain = true;
  const auto block = [&](const std::string& table) {
    if (pick(8) == 0) {
      plain = false;
      const char* items[] = {"max(l.n)", "l.n+0", "l.n"};
      const bool having = pick(2) == 0;
      const char* item = items[pick(having ? 3 : 2)];
      return Cat("select l.k,l.b,l.d,", item, " from ", table, " l group by l.k,l.b,l.d,l.n",
                 having ? " having count(*)>1" : "");
    }
    std::string out = Cat("select ", pick(4) == 0 ? "distinct " : "", "l.k,l.b,l.d,l.n from ",
                          table, " l with(nolock)");
    if (pick(2) == 0) CatTo(out, " join heads h with(nolock) on l.h=h.h where h.s=", pick(2));
    if (pick(2) == 0) out += " group by l.k,l.b,l.d,l.n";
    return out;
  };
  std::string sql = "declare @v table(d decimal(28,10), b varchar(255), n int, k bigint) ";
  sql += "insert into @v(k,b,d,n) " + block("a");
  for (int more = pick(3); more > 0; --more) {
    sql += (pick(3) == 0 ? " union " : " union all ") + block(more == 1 ? "a" : "c");
  }
  const char* keys[] = {"t.k=u.k", "u.b=t.b", "t.d=u.d", "t.n=u.n"};
  const char* nulls[] = {"u.k", "u.b", "u.d", "u.n"};
  const int asked = pick(4);
  std::string on = keys[asked];
  for (int i = 0; i < 4; ++i) {
    if (i != asked && pick(3) > 0) CatTo(on, " and ", keys[i]);
  }
  if (pick(4) == 0) on += " and t.n>=0";
  if (pick(8) == 0) {
    plain = false;
    on += pick(2) == 0 ? " and u.n<=t.k" : " and u.n+1=u.k";
  }
  CatTo(sql, " delete t from inv t left join @v u on ", on, " where ");
  if (pick(3) > 0) sql += "t.q=0 and ";
  if (pick(3) == 0) sql += "abs(t.q)<=0.000000001 and ";
  std::string rest;
  if (pick(8) == 0) {
    plain = false;
    rest = pick(2) == 0 ? " and isnull(u.n,0)=1" : " or u.n=1";
  }
  return {Cat(sql, nulls[asked], " is null", rest),
          Cat(sql, "(", nulls[asked], " is null or 1=0)", rest,
              " declare @rows int select @rows=count(*) from @v"),
          plain};
}

TEST_F(ReadOnce, LeavesTheSameRows) {
  Run("create table inv (id int primary key, k int, b nvarchar(40) null, d decimal(28,10) null,"
      " n int null, q decimal(28,10))");
  Run("create index ix_empty on inv (k,b) where q=0");
  for (const char* table : {"a", "c"}) {
    Run(Cat("create table ", table,
            " (h int, k int null, b nvarchar(40) null,"
            " d decimal(28,10) null, n int null)"));
  }
  Run("create index ix_a on a (k, b) create table heads (h int primary key, s int null)");
  const std::vector<std::string> texts = {"null",  "''",  "' '",           "'x'",
                                          "'X  '", "'y'", "'\xe4\xb8\x80'"};
  const std::vector<std::string> decimals = {"null", "0", "1.5", "90000000000000000", "-1.5"};
  const std::vector<std::string> quantities = {"0", "0", "0.0000000001", "5", "null"};
  int deleted = 0;
  for (int round = 0; round < 250; ++round) {
    Run("truncate table inv truncate table a truncate table c truncate table heads");
    for (int h = 0; h < 4; ++h) {
      Run(Cat("insert into heads values (", h, ",", OneOf({"0", "1", "null"}), ")"));
    }
    const auto row = [&] {
      return Cat(OneOf({"null", "1", "2"}), ",", OneOf(texts), ",", OneOf(decimals), ",",
                 OneOf({"null", "0", "-1", "1"}));
    };
    for (int i = 0; i < 12; ++i) {
      Run(Cat("insert into inv values (", i, ",", row(), ",", OneOf(quantities), ")"));
      Run(Cat("insert into ", OneOf({"a", "c"}), " values (", Pick(4), ",", row(), ")"));
      Run(Cat("insert into a values (", Pick(4), ",", row(), ")"));
    }
    const Forms forms = RandomForms(random_);
    std::string left[2];
    for (const bool again : {false, true}) {
      Run("begin transaction");
      const TemporaryWrites writes(Handle());
      Run(again ? forms.again : forms.once);
      // The variable is emptied in one piece, which is no write of a row.
      if (!again && forms.plain) {
        EXPECT_EQ(0, writes.count()) << forms.once;
      }
      left[again] = Answer("select id from inv order by id");
      Run("rollback");
    }
    EXPECT_EQ(left[1], left[0]) << forms.once;
    if (left[0] != Answer("select id from inv order by id")) ++deleted;
  }
  EXPECT_GT(deleted, 150);
}

// The clean-up as the posting sends it, over the reference schema: neither the stock nor the lines
// of audited bills are read through.
TEST_F(ReadOnce, TheCleanUpReadsFewRows) {
  std::ifstream schema(SourceDir() / "src/host/schema.sql", std::ios::binary);
  database_->RunScript(std::string{std::istreambuf_iterator<char>(schema), {}});
  constexpr int kRows = 3000;
  for (int i = 1; i <= kRows; ++i) {
    Run(Cat("insert into T_CC_Inventory(FItemID,FStockID,FQty,FBal,FSecQty) values(", i, ",1,",
            i % 1000 == 0 ? 0 : 5, ",0,", i % 1500 == 0 ? 3 : 0, ")"));
    Run(Cat("insert into T_CC_StockBillEntry(FID,FItemID,FDCStockID) values(", i % 10, ",", i,
            ",1)"));
  }
  Run("insert into T_CC_StockBill(FID,FStatus) values(0,1)");
  Run("delete from T_CC_StockBillEntry where FItemID=2000");
  const std::string second =
      " update T_CC_Inventory set FSecQty = 0 where abs(FQty) <= 0.000000001 and abs(FSecQty) >= "
      "0.000000001 ";
  const std::string clean =
      " declare @temp_inv table(FItemID int,FBatchNo varchar(255),FDCStockID int ,FAuxPropID int )"
      " insert into @temp_inv(FItemID ,FBatchNo,FDCStockID  ,FAuxPropID)"
      " SELECT t1.FItemID,t1.FBatchNo,t1.FDCStockID,t1.FAuxPropID"
      " FROM T_CC_StockBillEntry t1 with(nolock)"
      " JOIN T_CC_StockBill t2 with(nolock) ON t1.FID=t2.FID"
      " WHERE FStatus=1 "
      " Group by t1.FItemID,t1.FBatchNo,t1.FDCStockID,t1.FAuxPropID"
      " Union All"
      " SELECT t1.FItemID,t1.FBatchNo,t1.FDCStockID,t1.FAuxPropID"
      " FROM T_CC_ZZCX_Entry t1 with(nolock) JOIN T_CC_ZZCX t2 with(nolock) ON t1.FID=t2.FID"
      " WHERE FStatus=1"
      " Group by t1.FItemID,t1.FBatchNo,t1.FDCStockID,t1.FAuxPropID"
      " Union All"
      " SELECT t1.FItemID,t1.FBatchNo,t1.FSCStockID,t1.FAuxPropID"
      " FROM T_CC_ZZCX_Entry2 t1 with(nolock) JOIN T_CC_ZZCX t2 with(nolock) ON t1.FID=t2.FID"
      " WHERE FStatus=1"
      " Group by t1.FItemID,t1.FBatchNo,t1.FSCStockID,t1.FAuxPropID"
      " DELETE t1 FROM T_CC_Inventory t1"
      " Left Join @temp_inv u1 on"
      " t1.FItemID=u1.FItemID AND t1.FBatchNo=u1.FBatchNo AND"
      " t1.FStockID=u1.FDCStockID and t1.FAuxPropID=u1.FAuxPropID"
      " WHERE t1.FQty=0 And t1.Fbal=0 and u1.FItemID is null";
  const auto steps_of = [&](const std::string& sql) {
    Run("begin transaction " + sql + " rollback");  // compiles it
    int steps = 0;
    sqlite3_progress_handler(
        Handle(), 10, [](void* count) { return ++*static_cast<int*>(count), 0; }, &steps);
    Run(sql);
    sqlite3_progress_handler(Handle(), 0, nullptr, nullptr);
    return steps * 10;
  };
  // Reading all rows takes some ten steps a row.
  EXPECT_LT(steps_of(second), 200);
  EXPECT_EQ("", Answer("select FItemID as id from T_CC_Inventory where FQty=0 and FSecQty<>0"));
  EXPECT_LT(steps_of(clean), 800);
  EXPECT_EQ("1000 3000 ", Answer("select FItemID as id from T_CC_Inventory where FQty=0"));
  EXPECT_GT(steps_of(clean + " declare @n int select @n=count(*) from @temp_inv"), kRows);
}

}  // namespace
}  // namespace tavcc::sql
