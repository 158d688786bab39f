// The ledger's invariant, as one batch: the lines of all audited bills are gathered with the sign
// with which their audit posted them, summed and rounded per bill, and set against the stock on
// hand.
#include "host/ledger_check.h"

#include <string_view>

#include "foundation/conversions.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

// The lines as posting stages them: FQty signed, in base units; FPrice that of the base unit.
// FBillID is the bill with which a line is summed.
constexpr std::string_view kCreateLines =
    "SET NOCOUNT ON\n"
    "IF OBJECT_ID('tempdb.dbo.#LedgerLine') IS NOT NULL DROP TABLE #LedgerLine\n"
    "CREATE TABLE #LedgerLine (FBillID int NOT NULL, FItemID int NOT NULL,\n"
    "  FBatchNo nvarchar(255) NOT NULL, FAuxPropID int NOT NULL, FStockID int NOT NULL,\n"
    "  FKFPeriod int NOT NULL, FKFDate varchar(20) NOT NULL, FPeriodDate varchar(20) NOT NULL,\n"
    "  FBatchNoIndex varchar(30) NOT NULL, FQty decimal(28,10) NOT NULL,\n"
    "  FPrice decimal(28,10) NULL)\n";

// One source of lines: which bills, from which stock column, with which sign and price.
struct Source {
  std::string_view entry_table;
  std::string_view stock_column;
  std::string_view quantity;  // with its sign multiplied as posting does it
  std::string_view price;     // of the shown unit
  std::string_view bills;     // condition on the head v
};

constexpr Source kStockBillSources[] = {
    {"T_CC_StockBillEntry", "u.FDCStockID", "1*u.FQty", "u.FPrice",
     "v.FClassTypeID = 1020002 AND v.FBillTypeID <> 2012"
     " OR v.FClassTypeID = 1020003 AND v.FBillTypeID NOT IN (2031,2032)"
     " OR v.FClassTypeID IN (1020004,1040001) AND v.FBillTypeID NOT IN (2040,2041,3020,3021)"
     " OR v.FClassTypeID IN (1040003,1040007)"},
    {"T_CC_StockBillEntry", "u.FDCStockID", "-1*u.FQty", "u.FPrice",
     "v.FClassTypeID = 1020002 AND v.FBillTypeID = 2012"
     " OR v.FClassTypeID = 1020003 AND v.FBillTypeID IN (2031,2032)"},
    {"T_CC_StockBillEntry", "u.FSCStockID", "-1*u.FQty", "u.FCostPrice",
     "v.FClassTypeID IN (1030002,1030003) AND v.FBillTypeID IN (3001,3010)"
     " OR v.FClassTypeID = 1040007"},
    {"T_CC_StockBillEntry", "u.FSCStockID", "1*u.FQty", "u.FCostPrice",
     "v.FClassTypeID IN (1030002,1030003) AND v.FBillTypeID IN (3002,3004,3011)"},
    {"T_CC_StockBillEntry", "u.FSCStockID", "-1*u.FQty", "u.FPrice",
     "v.FClassTypeID IN (1030002,1030003) AND v.FBillTypeID NOT IN (3001,3002,3004,3010,3011)"
     " OR v.FClassTypeID IN (1030004,1040002) AND v.FBillTypeID NOT IN (2040,2041,3020,3021)"},
    {"T_CC_StockBillEntry", "u.FSCStockID", "-1*u.FProfitLossQty*u.FCoefficient", "u.FPrice",
     "v.FClassTypeID = 1040004"},
};

constexpr Source kAssemblySources[] = {
    {"T_CC_ZZCX_Entry", "u.FDCStockID", "1*u.FQty", "u.FPrice", "v.FClassTypeID = 1040005"},
    {"T_CC_ZZCX_Entry2", "u.FSCStockID", "-1*u.FQty", "u.FPrice", "v.FClassTypeID = 1040005"},
    {"T_CC_ZZCX_Entry", "u.FDCStockID", "-1*u.FQty", "u.FPrice", "v.FClassTypeID = 1040006"},
    {"T_CC_ZZCX_Entry2", "u.FSCStockID", "1*u.FQty", "u.FPrice", "v.FClassTypeID = 1040006"},
};

// A reversed estimate (2032) is posted with the purchase bill (2013) of its relation group.
constexpr std::string_view kPurchaseOfEstimate =
    "  LEFT JOIN (SELECT r1.FID, MIN(v2.FID) AS FBillID FROM ICRelations r1\n"
    "    INNER JOIN ICRelations r2 ON r2.FGroupNo = r1.FGroupNo\n"
    "    INNER JOIN T_CC_StockBill v2 ON v2.FClassTypeID = r2.FClassTypeID AND v2.FID = r2.FID\n"
    "    WHERE r1.FClassTypeID = 1020003 AND v2.FClassTypeID = 1020002 AND v2.FBillTypeID = 2013\n"
    "    GROUP BY r1.FID) g ON g.FID = v.FID AND v.FBillTypeID = 2032\n";

// Bill type 3003 is never posted.
void AppendSource(std::string& batch, const Source& source, std::string_view head_table,
                  std::string_view shelf_life_date, std::string_view period_date,
                  std::string_view bill_id, std::string_view more_joins) {
  CatTo(batch,
        "INSERT INTO #LedgerLine (FBillID, FItemID, FBatchNo, FAuxPropID, FStockID, FKFPeriod,\n"
        "  FKFDate, FPeriodDate, FBatchNoIndex, FQty, FPrice)\n"
        "SELECT ",
        bill_id, ", u.FItemID, ISNULL(u.FBatchNo,''), u.FAuxPropID, ISNULL(", source.stock_column,
        ",0), u.FKFPeriod,\n"
        "  LEFT(ISNULL(CONVERT(varchar(20), u.",
        shelf_life_date,
        ", 120),'1900-01-01'),10),\n"
        "  LEFT(ISNULL(CONVERT(varchar(20), u.",
        period_date,
        ", 120),'1900-01-01'),10),\n"
        "  u.FBatchNoIndex, ",
        source.quantity, ", ", source.price, "/u.FCoefficient\n", "FROM ", source.entry_table,
        " u INNER JOIN ", head_table,
        " v ON u.FID = v.FID\n"
        "  INNER JOIN t_ICItem i ON u.FItemID = i.FItemID\n",
        more_joins, "WHERE v.FStatus > 0 AND v.FBillTypeID <> 3003 AND (", source.bills, ")\n");
}

constexpr std::string_view kCompare =
    "SELECT d.FItemID, i.FNumber, i.FName, d.FStockID, s.FName AS FStockName, d.FBatchNo,\n"
    "  d.FAuxPropID, d.FExpectedQty, d.FActualQty, d.FExpectedBal, d.FActualBal\n"
    "FROM (SELECT FItemID, FStockID, FBatchNo, FAuxPropID,\n"
    "    SUM(FExpectedQty) AS FExpectedQty, SUM(FActualQty) AS FActualQty,\n"
    "    SUM(FExpectedBal) AS FExpectedBal, SUM(FActualBal) AS FActualBal\n"
    "  FROM (SELECT FItemID, FStockID, FBatchNo, FAuxPropID, FQty AS FExpectedQty,\n"
    "      0 AS FActualQty, FBal AS FExpectedBal, 0 AS FActualBal\n"
    "    FROM ICInvInitial\n"
    "    UNION ALL\n"
    "    SELECT FItemID, FStockID, FBatchNo, FAuxPropID, SUM(FQty), 0,\n"
    "      CONVERT(decimal(28,10), ROUND(ISNULL(SUM(FQty*FPrice),0),2)), 0\n"
    "    FROM #LedgerLine\n"
    "    GROUP BY FBillID, FItemID, FBatchNo, FAuxPropID, FStockID, FKFPeriod, FKFDate,\n"
    "      FPeriodDate, FBatchNoIndex\n"
    "    UNION ALL\n"
    "    SELECT u.FItemID, ISNULL(CASE WHEN v.FClassTypeID IN (1030004,1040002)\n"
    "        THEN u.FSCStockID ELSE u.FDCStockID END,0),\n"
    "      ISNULL(u.FBatchNo,''), u.FAuxPropID, 0, 0, ISNULL(u.FAmount,0), 0\n"
    "    FROM T_CC_StockBillEntry u INNER JOIN T_CC_StockBill v ON u.FID = v.FID\n"
    "    WHERE v.FStatus > 0\n"
    "      AND (v.FBillTypeID IN (2040,2041,3020,3021) OR v.FClassTypeID = 1040008)\n"
    "    UNION ALL\n"
    "    SELECT FItemID, FStockID, FBatchNo, FAuxPropID, 0, ISNULL(FQty,0), 0, ISNULL(FBal,0)\n"
    "    FROM T_CC_Inventory) l\n"
    "  GROUP BY FItemID, FStockID, FBatchNo, FAuxPropID\n"
    "  HAVING SUM(FExpectedQty) <> SUM(FActualQty)\n"
    "    OR SUM(FExpectedBal) <> SUM(FActualBal)) d\n"
    "  LEFT JOIN t_ICItem i ON d.FItemID = i.FItemID\n"
    "  LEFT JOIN t_Stock s ON d.FStockID = s.FItemID\n"
    "ORDER BY i.FNumber, d.FItemID, d.FStockID, d.FBatchNo, d.FAuxPropID\n"
    "DROP TABLE #LedgerLine\n";

std::string LedgerBatch() {
  std::string batch(kCreateLines);
  for (const Source& source : kStockBillSources) {
    AppendSource(batch, source, "T_CC_StockBill", "FKFDate", "FPeriodDate",
                 "ISNULL(g.FBillID, v.FID)", kPurchaseOfEstimate);
  }
  for (const Source& source : kAssemblySources) {
    AppendSource(batch, source, "T_CC_ZZCX", "FProDate", "FExpDate", "v.FID", "");
  }
  return batch += kCompare;
}

// The text of a column that an outer join may leave null.
std::string TextOrEmpty(const Value& value) {
  return value.IsNull() ? "" : ToText(value);
}

}  // namespace

std::vector<LedgerDifference> CheckLedger(Connection& connection) {
  std::vector<LedgerDifference> differences;
  const RecordsetPtr rows = connection.Execute(LedgerBatch());
  for (; !rows->AtEnd(); rows->MoveNext()) {
    differences.push_back({.item_id = ToLong(rows->Field("FItemID")),
                           .item_number = TextOrEmpty(rows->Field("FNumber")),
                           .item_name = TextOrEmpty(rows->Field("FName")),
                           .stock_id = ToLong(rows->Field("FStockID")),
                           .stock_name = TextOrEmpty(rows->Field("FStockName")),
                           .batch = ToText(rows->Field("FBatchNo")),
                           .aux_prop_id = ToLong(rows->Field("FAuxPropID")),
                           .expected_quantity = ToDecimal(rows->Field("FExpectedQty")),
                           .actual_quantity = ToDecimal(rows->Field("FActualQty")),
                           .expected_value = ToDecimal(rows->Field("FExpectedBal")),
                           .actual_value = ToDecimal(rows->Field("FActualBal"))});
  }
  return differences;
}

}  // namespace tavcc
