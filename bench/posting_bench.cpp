// What the rules' own statements cost over a large inventory: posting a bill, looking for negative
// stock, making the temporary table of bills. The posting's time per row is to stay flat.
//
// It is least flat where each row meets database pages of its own: a thousand rows among a hundred
// thousand dirty a page each, which SQLite copies for the rollback, while a hundred thousand share
// them. ApplyNeighbours posts as many rows side by side.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "embedded/embedded.h"
#include "support/source_dir.h"

namespace {

using tavcc::ConnectionPtr;
using tavcc::sql::Database;
using tavcc::sql::OpenOptions;

struct Dialect {
  std::shared_ptr<Database> database = Database::Open(OpenOptions{});
  ConnectionPtr connection = database->NewSession();

  void Run(const std::string& sql) const { connection->Execute(sql); }
};

// ---- Inventory posting ----

std::string ReadFile(const std::string& name) {
  std::ifstream file(tavcc::SourceDir() / name, std::ios::binary);
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
// that every round finds the same inventory. `stride`: from one row's item to the next one's.
void Apply(benchmark::State& state, int stride) {
  const Dialect dialect;
  FillInventory(dialect);
  dialect.Run(kMakeTemporary);
  const int count = static_cast<int>(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    dialect.Run("begin tran");
    for (int i = 0; i < count; ++i) {
      const int item = (i * stride) % kInventory + 1;
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

void ApplyRows(benchmark::State& state) {
  Apply(state, 7919);
}
BENCHMARK(ApplyRows)->Arg(10)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

void ApplyNeighbours(benchmark::State& state) {
  Apply(state, 1);
}
BENCHMARK(ApplyNeighbours)->Arg(10)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

// ---- The negative-stock query, and one whole bill ----

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
