// What the dialect costs: batches through the embedded database beside the same work written by
// hand in SQLite's own SQL with prepared statements.
//
// Three ratios are read off one run:
//   Dialect* / ByHand*            what the layer costs; at most 1.5 is the aim
//   *NewText* / *SameText*        a statement that differs only in its numbers: near 1, since it is
//                                 never compiled again, against FirstTime
//   ApplyRows/10 … 100000         time per row of the inventory posting: flat
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "embedded/embedded.h"

namespace {

using tavcc::ConnectionPtr;
using tavcc::sql::Database;
using tavcc::sql::OpenOptions;

constexpr int kRows = 10'000;

struct Dialect {
  std::shared_ptr<Database> database = Database::Open(OpenOptions{});
  ConnectionPtr connection = database->NewSession();

  void Run(const std::string& sql) const { connection->Execute(sql); }
};

struct ByHand {
  sqlite3* database = nullptr;

  ByHand() { sqlite3_open(":memory:", &database); }
  ~ByHand() { sqlite3_close_v2(database); }
  ByHand(const ByHand&) = delete;
  ByHand& operator=(const ByHand&) = delete;

  void Run(const std::string& sql) const {
    sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr);
  }
  sqlite3_stmt* Prepare(const char* sql) const {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database, sql, -1, &statement, nullptr);
    return statement;
  }
};

constexpr char kTable[] =
    "create table t (id int not null primary key, name nvarchar(40), qty decimal(28,10))";

Dialect FilledDialect() {
  Dialect dialect;
  dialect.Run(kTable);
  dialect.Run("begin tran");
  for (int i = 1; i <= kRows; ++i) {
    dialect.Run("insert into t values (" + std::to_string(i) + ",'item',1.5)");
  }
  dialect.Run("commit");
  return dialect;
}

void FillByHand(ByHand& by_hand) {
  by_hand.Run("create table t (id integer primary key, name text, qty integer); begin;");
  for (int i = 1; i <= kRows; ++i) {
    by_hand.Run("insert into t values (" + std::to_string(i) + ",'item',15000000000)");
  }
  by_hand.Run("commit");
}

// ---- One row read
// --------------------------------------------------------------------------------

void DialectSelectSameText(benchmark::State& state) {
  const Dialect dialect = FilledDialect();
  const std::string sql = "select id,name,qty from t where id=4711";
  for (auto _ : state) {
    const auto rows = dialect.connection->Execute(sql);
    benchmark::DoNotOptimize(rows->AtEnd());
  }
}
BENCHMARK(DialectSelectSameText);

void DialectSelectNewText(benchmark::State& state) {
  const Dialect dialect = FilledDialect();
  int id = 0;
  for (auto _ : state) {
    id = id % kRows + 1;
    const auto rows =
        dialect.connection->Execute("select id,name,qty from t where id=" + std::to_string(id));
    benchmark::DoNotOptimize(rows->AtEnd());
  }
}
BENCHMARK(DialectSelectNewText);

// Each text is new in more than its numbers, so that it is compiled.
void DialectSelectFirstTime(benchmark::State& state) {
  const Dialect dialect = FilledDialect();
  int id = 0;
  for (auto _ : state) {
    const auto rows = dialect.connection->Execute("select id,name,qty as q" + std::to_string(++id) +
                                                  " from t where id=4711");
    benchmark::DoNotOptimize(rows->AtEnd());
  }
}
BENCHMARK(DialectSelectFirstTime);

void ByHandSelect(benchmark::State& state) {
  ByHand by_hand;
  FillByHand(by_hand);
  sqlite3_stmt* const select = by_hand.Prepare("select id,name,qty from t where id=?1");
  int id = 0;
  for (auto _ : state) {
    id = id % kRows + 1;
    sqlite3_bind_int64(select, 1, id);
    sqlite3_step(select);
    std::string name(reinterpret_cast<const char*>(sqlite3_column_text(select, 1)));
    benchmark::DoNotOptimize(name);
    benchmark::DoNotOptimize(sqlite3_column_int64(select, 0) + sqlite3_column_int64(select, 2));
    sqlite3_reset(select);
  }
  sqlite3_finalize(select);
}
BENCHMARK(ByHandSelect);

// ---- One row changed
// ------------------------------------------------------------------------------

void DialectUpdate(benchmark::State& state) {
  const Dialect dialect = FilledDialect();
  dialect.Run("begin tran");
  int id = 0;
  for (auto _ : state) {
    id = id % kRows + 1;
    dialect.Run("update t set qty=2.5 where id=" + std::to_string(id));
  }
  dialect.Run("rollback");
}
BENCHMARK(DialectUpdate);

void ByHandUpdate(benchmark::State& state) {
  ByHand by_hand;
  FillByHand(by_hand);
  by_hand.Run("begin");
  sqlite3_stmt* const update = by_hand.Prepare("update t set qty=?2 where id=?1");
  int id = 0;
  for (auto _ : state) {
    id = id % kRows + 1;
    sqlite3_bind_int64(update, 1, id);
    sqlite3_bind_int64(update, 2, 25'000'000'000);
    sqlite3_step(update);
    sqlite3_reset(update);
  }
  sqlite3_finalize(update);
  by_hand.Run("rollback");
}
BENCHMARK(ByHandUpdate);

// ---- One row added
// --------------------------------------------------------------------------------

void DialectInsert(benchmark::State& state) {
  const Dialect dialect;
  dialect.Run(kTable);
  dialect.Run("begin tran");
  int id = 0;
  for (auto _ : state) {
    dialect.Run("insert into t values (" + std::to_string(++id) + ",'item',1.5)");
  }
  dialect.Run("rollback");
}
BENCHMARK(DialectInsert);

void ByHandInsert(benchmark::State& state) {
  ByHand by_hand;
  by_hand.Run("create table t (id integer primary key, name text, qty integer); begin;");
  sqlite3_stmt* const insert = by_hand.Prepare("insert into t values (?1,?2,?3)");
  int id = 0;
  for (auto _ : state) {
    sqlite3_bind_int64(insert, 1, ++id);
    sqlite3_bind_text(insert, 2, "item", 4, SQLITE_STATIC);
    sqlite3_bind_int64(insert, 3, 15'000'000'000);
    sqlite3_step(insert);
    sqlite3_reset(insert);
  }
  sqlite3_finalize(insert);
  by_hand.Run("rollback");
}
BENCHMARK(ByHandInsert);

// ---- A batch of ten statements, as the rules send them
// ---------------------------------------------

void DialectBatch(benchmark::State& state) {
  const Dialect dialect = FilledDialect();
  dialect.Run("begin tran");
  int id = 0;
  for (auto _ : state) {
    id = id % (kRows - 10) + 1;
    std::string sql = "set nocount on declare @q decimal(28,10) ";
    for (int i = 0; i < 5; ++i) {
      const std::string row = std::to_string(id + i);
      sql += "select @q=qty from t where id=" + row + " update t set qty=@q where id=" + row + " ";
    }
    dialect.Run(sql);
  }
  dialect.Run("rollback");
}
BENCHMARK(DialectBatch);

void ByHandBatch(benchmark::State& state) {
  ByHand by_hand;
  FillByHand(by_hand);
  by_hand.Run("begin");
  sqlite3_stmt* const select = by_hand.Prepare("select qty from t where id=?1");
  sqlite3_stmt* const update = by_hand.Prepare("update t set qty=?2 where id=?1");
  int id = 0;
  for (auto _ : state) {
    id = id % (kRows - 10) + 1;
    for (int i = 0; i < 5; ++i) {
      sqlite3_bind_int64(select, 1, id + i);
      sqlite3_step(select);
      const int64_t quantity = sqlite3_column_int64(select, 0);
      sqlite3_step(select);
      sqlite3_reset(select);
      sqlite3_bind_int64(update, 1, id + i);
      sqlite3_bind_int64(update, 2, quantity);
      sqlite3_step(update);
      sqlite3_reset(update);
    }
  }
  sqlite3_finalize(select);
  sqlite3_finalize(update);
  by_hand.Run("rollback");
}
BENCHMARK(ByHandBatch);

// ---- Inventory posting
// ----------------------------------------------------------------------------

std::string ReadFile(const std::string& name) {
  std::ifstream file(std::filesystem::path(TAVCC_SOURCE_DIR) / name, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

constexpr char kMakeTemporary[] =
    "CREATE TABLE #TavTempBill\r\n(FBrNo VARCHAR(10) NOT NULL DEFAULT(''),\r\n"
    " FInterID INT NOT NULL DEFAULT(0),\r\n FEntryID INT NOT NULL DEFAULT(0),\r\n"
    " FTranType INT NOT NULL DEFAULT(0),\r\n FItemID INT NOT NULL DEFAULT(0),\r\n"
    " FShowUnitID INT NOT NULL DEFAULT(0),\r\n FBatchNo NVARCHAR(255) NOT NULL DEFAULT(''),\r\n"
    " FAuxPropID INT NOT NULL DEFAULT(0),\r\n FStockID INT NOT NULL DEFAULT(0),\r\n"
    " FStockPlaceID INT NOT NULL DEFAULT(0),\r\n FKFPeriod INT NOT NULL DEFAULT(0),\r\n"
    " FKFDate VARCHAR(20) NOT NULL DEFAULT(''),\r\n FQty DECIMAL(28,10) NOT NULL DEFAULT(0),\r\n"
    " FShowQty DECIMAL(28,10) NOT NULL DEFAULT(0),\r\n"
    " FSecQty DECIMAL(28,10) NOT NULL DEFAULT(0),\r\n"
    " FPrice DECIMAL(28,10) NOT NULL DEFAULT(0),\r\n"
    " FPeriodDate VARCHAR(20) NOT NULL DEFAULT(''),\r\n"
    " FBatchNoIndex VARCHAR(30) NOT NULL DEFAULT('') \r\n)\r\n";

constexpr char kApply[] =
    " Update t1 \r\n"
    " SET t1.FKFDate=u1.FKFDate,t1.FKFPeriod=u1.FKFPeriod,t1.FPeriodDate=u1.FPeriodDate \r\n"
    " FROM T_CC_Inventory t1 Inner Join t_ICItem ti On ((t1.FItemID = ti.FItemID And (ti.FTrack = "
    "80)) or (t1.FItemID = ti.FItemID And (ti.FTrack <> 80 AND ti.FISBatchManager = 1))) \r\n"
    " INNER JOIN #TavTempBill u1\r\n"
    " ON t1.FItemID=u1.FItemID AND t1.FBatchNo=u1.FBatchNo \r\n"
    "    AND t1.FStockID=u1.FStockID \r\n"
    "    AND t1.FBatchNoIndex = u1.FBatchNoIndex \r\n"
    " Update t1\r\n"
    " SET t1.FQty=t1.FQty+u1.FQty,t1.FSecQty=t1.FSecQty+u1.FSecQty,t1.FBal=t1.FBal+u1.FBal\r\n"
    " FROM T_CC_Inventory t1 INNER JOIN\r\n"
    " (SELECT FItemID,FBatchNo,FAuxPropID,FStockID,FKFPeriod,FKFDate,FPeriodDate,FBatchNoIndex\r\n"
    "         ,SUM(FQty) AS FQty,SUM(FSecQty) AS FSecQty,Round(IsNull(SUM(FQty*FPrice),0),2) AS "
    "FBal\r\n"
    "  FROM #TavTempBill\r\n"
    "  GROUP BY "
    "FItemID,FBatchNo,FAuxPropID,FStockID,FKFPeriod,FKFDate,FPeriodDate,FBatchNoIndex\r\n"
    " ) u1\r\n"
    " ON t1.FItemID=u1.FItemID AND t1.FBatchNo=u1.FBatchNo AND t1.FAuxPropID=u1.FAuxPropID\r\n"
    "    AND t1.FStockID=u1.FStockID \r\n"
    "    AND t1.FKFPeriod=u1.FKFPeriod AND t1.FKFDate=u1.FKFDate AND "
    "t1.FPeriodDate=u1.FPeriodDate\r\n"
    "    AND t1.FBatchNoIndex = u1.FBatchNoIndex \r\n"
    " Delete u1\r\n"
    " FROM T_CC_Inventory t1 INNER JOIN #TavTempBill u1\r\n"
    " ON t1.FItemID=u1.FItemID AND t1.FBatchNo=u1.FBatchNo AND t1.FAuxPropID=u1.FAuxPropID\r\n"
    "    AND t1.FStockID=u1.FStockID \r\n"
    "    AND t1.FKFPeriod=u1.FKFPeriod AND t1.FKFDate=u1.FKFDate AND "
    "t1.FPeriodDate=u1.FPeriodDate\r\n"
    "    AND t1.FBatchNoIndex = u1.FBatchNoIndex\r\n"
    " INSERT INTO "
    "T_CC_Inventory(FBrNo,FItemID,FAuxPropID,FBatchNo,FStockID,FKFPeriod,FKFDate,FQty,FBal,FSecQty,"
    "FLockQty,FPeriodDate,FBatchNoIndex)\r\n"
    " SELECT "
    "'',u.FItemID,u.FAuxPropID,u.FBatchNo,u.FStockID,u.FKFPeriod,u.FKFDate,SUM(u.FQty) AS "
    "FQty,Round(IsNull(SUM(FQty*FPrice),0),2),\r\n"
    " SUM(u.FSecQty) AS FSecQty,0,U.FPeriodDate,u.FBatchNoIndex FROM #TavTempBill u\r\n"
    " GROUP BY "
    "u.FItemID,u.FBatchNo,u.FAuxPropID,u.FStockID,u.FKFPeriod,u.FKFDate,u.FPeriodDate,u."
    "FBatchNoIndex \r\n";

constexpr int kInventory = 100'000;

void FillInventory(const Dialect& dialect) {
  dialect.database->RunScript(ReadFile("src/host/schema.sql"));
  dialect.Run("begin tran");
  for (int i = 1; i <= kInventory; ++i) {
    const std::string id = std::to_string(i);
    dialect.Run("insert into t_ICItem(FItemID,FTrack,FISBatchManager) values (" + id + ",76,0)");
    dialect.Run(
        "insert into T_CC_Inventory(FItemID,FStockID,FKFDate,FPeriodDate,FQty,FBal) values (" + id +
        ",1,'1900-01-01','1900-01-01',1000,5000)");
  }
  dialect.Run("commit");
}

// Half of the rows meet an inventory row, the other half become new ones; all is rolled back, so
// that every round finds the same inventory.
void ApplyRows(benchmark::State& state) {
  const Dialect dialect;
  FillInventory(dialect);
  dialect.Run(kMakeTemporary);
  const int count = static_cast<int>(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    dialect.Run("begin tran");
    for (int i = 0; i < count; ++i) {
      const int item = (i * 7919) % kInventory + 1;
      dialect.Run(
          "insert into #TavTempBill(FItemID,FStockID,FKFDate,FPeriodDate,FQty,FPrice) values (" +
          std::to_string(item) + "," + std::to_string(1 + i % 2) +
          ",'1900-01-01','1900-01-01',3,2.5)");
    }
    state.ResumeTiming();
    dialect.Run(kApply);
    state.PauseTiming();
    dialect.Run("rollback");
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(ApplyRows)->Arg(10)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

// ---- The negative-stock query, and one whole bill
// -------------------------------------------------

constexpr char kNegativeStock[] =
    "SELECT M1.FNUMBER,M1.FNAME,M1.FMODEL,M1.Ftrack,S1.FNAME AS STOCKNAME,\r\n"
    " ISNULL(STOCK.STOCKSUMQTY,0) AS STOCKQTY,ISNULL(STOCK.STOCKSUMQTY,0)/N1.FCoefficient AS "
    "STOCKSHOWQTY,\r\n"
    " (ISNULL(STOCK.STOCKSUMQTY,0)-ISNULL(T1.SUMQTY,0)) AS "
    "DIFFQTY,T1.SUMQTY,T1.SUMSHOWQTY,Y1.FNUMBER AS AUXNUMBER,Y1.FNAME AS AUXNAME,T1.*\r\n"
    " From \r\n"
    "(SELECT "
    "t.FITEMID,t.FSTOCKID,t.FAUXPROPID,t.FBATCHNO,t.FKFPeriod,t.FKFDATE,t.FPeriodDate,sum(FQTY) AS "
    "STOCKSUMQTY from ( select  t.FITEMID,t.FSTOCKID,t.FAUXPROPID,FBATCHNO= (case when "
    "t_ICItem.FTrack = 78 AND dbo.t_ICItem.FISBatchManager = 0 then '' else t.FBATCHNO END), "
    "t.FKFPeriod,t.FKFDATE,t.FPeriodDate,ISNULL(t.FQTY,0) as FQTY from T_CC_Inventory t inner join "
    "t_ICItem  on t.FItemID=t_ICItem.FItemID ) t GROUP BY "
    "t.FITEMID,t.FSTOCKID,t.FAUXPROPID,t.FBATCHNO,t.FKFPeriod,t.FKFDATE,t.FPeriodDate ) STOCK \r\n"
    " RIGHT OUTER JOIN\r\n"
    " (SELECT "
    "FITEMID,FShowUnitID,FStockID,FAUXPROPID,FBATCHNO,FKFPeriod,FKFDATE,FPeriodDate,ISNULL(SUM("
    "FQTY),0) AS SUMQTY,ISNULL(SUM(FSHOWQTY),0) AS SUMSHOWQTY FROM #TavTempBill\r\n"
    " GROUP BY FITEMID,FShowUnitID,FStockID,FAUXPROPID,FBATCHNO,FKFPeriod,FKFDATE,FPeriodDate) "
    "T1\r\n"
    " ON STOCK.FITEMID=T1.FITEMID AND STOCK.FSTOCKID=T1.FStockID AND "
    "STOCK.FAUXPROPID=T1.FAUXPROPID\r\n"
    " AND STOCK.FBATCHNO=T1.FBATCHNO AND STOCK.FKFPeriod=T1.FKFPeriod AND STOCK.FKFDATE=T1.FKFDATE "
    "AND STOCK.FPeriodDate=T1.FPeriodDate\r\n"
    " LEFT OUTER JOIN T_STOCK S1 ON T1.FStockID=S1.FITEMID\r\n"
    " LEFT OUTER JOIN T_ICITEM M1 ON T1.FITEMID=M1.FITEMID\r\n"
    " LEFT OUTER JOIN t_auxItem Y1 ON T1.FAUXPROPID=Y1.FITEMID\r\n"
    " LEFT JOIN VW_UNIT N1 ON T1.FITEMID=N1.FSRCITEMID AND T1.FShowUnitID=N1.FItemID\r\n"
    " WHERE ISNULL(STOCK.STOCKSUMQTY,0)-ISNULL(T1.SUMQTY,0)<0\r\n";

void NegativeStock(benchmark::State& state) {
  const Dialect dialect;
  FillInventory(dialect);
  dialect.Run(kMakeTemporary);
  for (int i = 0; i < 10; ++i) {
    dialect.Run(
        "insert into #TavTempBill(FItemID,FStockID,FKFDate,FPeriodDate,FQty,FPrice) values (" +
        std::to_string(i * 997 + 1) + ",1,'1900-01-01','1900-01-01',3,2.5)");
  }
  for (auto _ : state) {
    const auto rows = dialect.connection->Execute(kNegativeStock);
    benchmark::DoNotOptimize(rows->AtEnd());
  }
}
BENCHMARK(NegativeStock)->Unit(benchmark::kMicrosecond);

// Dropping and making the temporary table, as each batch of bills begins.
void MakeTemporaryAgain(benchmark::State& state) {
  const Dialect dialect;
  dialect.Run(kMakeTemporary);
  for (auto _ : state) {
    dialect.Run(
        "if   object_id('tempdb.dbo.#TavTempBill')   is   not   null drop   table   "
        "[dbo].[#TavTempBill]");
    dialect.Run(kMakeTemporary);
    dialect.Run("insert into #TavTempBill(FItemID) values (1)");
  }
}
BENCHMARK(MakeTemporaryAgain)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
