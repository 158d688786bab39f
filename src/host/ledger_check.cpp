// The ledger's invariant, as one batch: the lines of all audited bills are gathered with the sign
// with which their audit posted them, summed and rounded per bill, and set against the stock on
// hand.
#include "host/ledger_check.h"

#include <string_view>

#include "foundation/conversions.h"
#include "foundation/text.h"
#include "host/ledger_lines.h"

namespace tavcc {

namespace {

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
    "    GROUP BY FHead, FBillID, FItemID, FBatchNo, FAuxPropID, FStockID, FKFPeriod, FKFDate,\n"
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
  return Cat(LedgerLines("v.FStatus > 0", "v.FStatus > 0"), kCompare);
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
