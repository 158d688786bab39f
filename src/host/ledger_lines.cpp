#include "host/ledger_lines.h"

#include <cstdint>
#include <string_view>

#include "foundation/text.h"

namespace tavcc {
namespace {

// The lines as posting stages them: FQty signed, in base units; FPrice that of the base unit.
// FHead tells the bills of T_CC_ZZCX from those of T_CC_StockBill, FBillID is the bill with which a
// line is summed.
constexpr std::string_view kCreateLines =
    "SET NOCOUNT ON\n"
    "IF OBJECT_ID('tempdb.dbo.#LedgerLine') IS NOT NULL DROP TABLE #LedgerLine\n"
    "CREATE TABLE #LedgerLine (FHead int NOT NULL, FBillID int NOT NULL, FItemID int NOT NULL,\n"
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

// The two kinds of heads, and which of their bills are looked at.
struct Head {
  int32_t number;
  std::string_view table;
  std::string_view shelf_life_date;
  std::string_view period_date;
  std::string_view bill_id;
  std::string_view more_joins;
  std::string bills;
};

// Bill type 3003 is never posted.
void AppendSource(std::string& batch, const Source& source, const Head& head) {
  CatTo(
      batch,
      "INSERT INTO #LedgerLine (FHead, FBillID, FItemID, FBatchNo, FAuxPropID, FStockID, FKFPeriod,\n"
      "  FKFDate, FPeriodDate, FBatchNoIndex, FQty, FPrice)\n"
      "SELECT ",
      head.number, ", ", head.bill_id, ", u.FItemID, ISNULL(u.FBatchNo,''), u.FAuxPropID, ISNULL(",
      source.stock_column,
      ",0), u.FKFPeriod,\n"
      "  LEFT(ISNULL(CONVERT(varchar(20), u.",
      head.shelf_life_date,
      ", 120),'1900-01-01'),10),\n"
      "  LEFT(ISNULL(CONVERT(varchar(20), u.",
      head.period_date,
      ", 120),'1900-01-01'),10),\n"
      "  u.FBatchNoIndex, ",
      source.quantity, ", ", source.price, "/u.FCoefficient\n", "FROM ", source.entry_table,
      " u INNER JOIN ", head.table,
      " v ON u.FID = v.FID\n"
      "  INNER JOIN t_ICItem i ON u.FItemID = i.FItemID\n",
      head.more_joins, "WHERE ", head.bills, " AND v.FBillTypeID <> 3003 AND (", source.bills,
      ")\n");
}

}  // namespace

std::string LedgerLines(const std::string& stock_bills, const std::string& assembly_bills) {
  const Head stock{0,
                   "T_CC_StockBill",
                   "FKFDate",
                   "FPeriodDate",
                   "ISNULL(g.FBillID, v.FID)",
                   kPurchaseOfEstimate,
                   stock_bills};
  const Head assembly{1, "T_CC_ZZCX", "FProDate", "FExpDate", "v.FID", "", assembly_bills};
  std::string batch(kCreateLines);
  for (const Source& source : kStockBillSources) AppendSource(batch, source, stock);
  for (const Source& source : kAssemblySources) AppendSource(batch, source, assembly);
  return batch;
}

}  // namespace tavcc
