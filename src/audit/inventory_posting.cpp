#include "audit/inventory_posting.h"

#include <span>
#include <vector>

#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "foundation/host_services.h"
#include "foundation/temp_bill_table.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

// ---- Sources and signs -------------------------------------------------------------------------

constexpr LineSource StockBillLines(std::string_view stock_column, std::string_view price,
                                    const QuantityColumns& quantities = kQuantities) {
  return {"T_CC_StockBillEntry",
          "T_CC_StockBill",
          stock_column,
          "FKFDate",
          "FPeriodDate",
          price,
          quantities};
}

constexpr LineSource kReceived = StockBillLines("FDCStockID", "FPrice");
constexpr LineSource kIssued = StockBillLines("FSCStockID", "FPrice");
constexpr LineSource kIssuedAtCost = StockBillLines("FSCStockID", "u1.FCostPrice");
constexpr LineSource kLost = StockBillLines("FSCStockID", "FPrice", kDifferences);
// The trailing blank is the column's as stored.
constexpr LineSource kMovedOut = StockBillLines("FSCStockID ", "u1.FCostPrice");
constexpr LineSource kProducts = {"T_CC_ZZCX_Entry", "T_CC_ZZCX", "FDCStockID", "FProDate",
                                  "FExpDate",        "FPrice",    kQuantities};
constexpr LineSource kComponents = {"T_CC_ZZCX_Entry2", "T_CC_ZZCX", "FSCStockID", "FProDate",
                                    "FExpDate",         "FPrice",    kQuantities};

// What the direction is multiplied by: goods come in with the audit, or go out with it.
enum class Movement : int8_t { kNone = 0, kIn = 1, kOut = -1 };

struct Posting {
  int32_t class_type;
  std::span<const int32_t> bill_types;  // none: every other bill type of the class
  Movement movement;
  LineSource source;
  Movement second_movement = Movement::kNone;
  LineSource second_source = {};
};

constexpr int32_t kPurchaseReturn[] = {2012};
constexpr int32_t kReversedEstimate[] = {2031, 2032};
constexpr int32_t kSalesAtCost[] = {3001, 3010};

using namespace class_type;
using enum Movement;

// The first row that names the class and the bill type holds.
constexpr Posting kPostings[] = {
    {kPurchaseBill, kPurchaseReturn, kOut, kReceived},
    {kPurchaseBill, {}, kIn, kReceived},
    {kPurchaseEstimate, kReversedEstimate, kOut, kReceived},
    {kPurchaseEstimate, {}, kIn, kReceived},
    {kPurchaseRebate, bill_types::kValueOnly, kNone, {}},
    {kPurchaseRebate, {}, kIn, kReceived},
    {kOtherReceipt, bill_types::kValueOnly, kNone, {}},
    {kOtherReceipt, {}, kIn, kReceived},
    {kSalesBill, kSalesAtCost, kOut, kIssuedAtCost},
    {kSalesBill, bill_types::kSalesReturns, kIn, kIssuedAtCost},
    {kSalesBill, {}, kOut, kIssued},
    {kConsignment, kSalesAtCost, kOut, kIssuedAtCost},
    {kConsignment, bill_types::kSalesReturns, kIn, kIssuedAtCost},
    {kConsignment, {}, kOut, kIssued},
    {kSalesRebate, bill_types::kValueOnly, kNone, {}},
    {kSalesRebate, {}, kOut, kIssued},
    {kOtherIssue, bill_types::kValueOnly, kNone, {}},
    {kOtherIssue, {}, kOut, kIssued},
    {kCheckGain, {}, kIn, kReceived},
    {kCheckLoss, {}, kOut, kLost},
    {kAssembly, {}, kIn, kProducts, kOut, kComponents},
    {kDisassembly, {}, kOut, kProducts, kIn, kComponents},
    {kTransfer, {}, kOut, kMovedOut, kIn, kReceived},
};

const Posting* FindPosting(int32_t class_type, int32_t bill_type) {
  for (const Posting& posting : kPostings) {
    if (posting.class_type != class_type) continue;
    if (posting.bill_types.empty()) return &posting;
    for (const int32_t element : posting.bill_types) {
      if (element == bill_type) return &posting;
    }
  }
  return nullptr;
}

// ---- Estimates that a purchase bill replaces ---------------------------------------------------

std::vector<int32_t> ReversedEstimates(Connection& connection, int32_t bill_id) {
  std::vector<int32_t> ids;
  const RecordsetPtr rows = connection.Execute(
      Cat("Select Distinct v1.FID From T_CC_StockBill v1 "
          "Inner Join ICRelations r1 On v1.FClassTypeID=r1.FClassTypeID And v1.FID=r1.FID "
          "Inner Join ICRelations r2 On r1.FGroupNo=r2.FGroupNo "
          "Where v1.FClassTypeID=1020003 And v1.FBillTypeID=2032 "
          "And r2.FClassTypeID=1020002 And r2.FID=",
          bill_id));
  for (; !rows->AtEnd(); rows->MoveNext()) ids.push_back(ToLong(rows->Field(0)));
  return ids;
}

}  // namespace

bool FillTempBill(Host& host, Connection& connection, int32_t class_type, int32_t bill_id,
                  int32_t bill_type, int32_t CheckType, std::string& message) {
  const auto insert = [&](Movement movement, const LineSource& source, int32_t id) {
    if (movement == kNone) return true;
    const int32_t sign = static_cast<int32_t>(movement) * CheckType;
    return InsertBillLines(host, connection, source, id, sign, CheckType, message);
  };
  const Posting* posting = FindPosting(class_type, bill_type);
  if (posting == nullptr) return true;
  if (!insert(posting->movement, posting->source, bill_id)) return false;
  if (!insert(posting->second_movement, posting->second_source, bill_id)) return false;
  if (class_type != kPurchaseBill || bill_type != bill_types::kPurchaseOfEstimated) return true;
  for (const int32_t estimate_id : ReversedEstimates(connection, bill_id)) {
    if (!insert(kOut, kReceived, estimate_id)) return false;
  }
  return true;
}

void ApplyTempBillToInventory(Connection& connection) {
  connection.Execute(
      // Batches take over the shelf life of the posted lines, whatever theirs was.
      " Update t1 \r\n"
      " SET t1.FKFDate=u1.FKFDate,t1.FKFPeriod=u1.FKFPeriod,t1.FPeriodDate=u1.FPeriodDate \r\n"
      " FROM T_CC_Inventory t1 Inner Join t_ICItem ti On ((t1.FItemID = ti.FItemID And "
      "(ti.FTrack = 80)) or (t1.FItemID = ti.FItemID And (ti.FTrack <> 80 AND "
      "ti.FISBatchManager = 1))) \r\n"
      " INNER JOIN #TavTempBill u1\r\n"
      " ON t1.FItemID=u1.FItemID AND t1.FBatchNo=u1.FBatchNo \r\n"
      "    AND t1.FStockID=u1.FStockID \r\n"
      "    AND t1.FBatchNoIndex = u1.FBatchNoIndex \r\n"
      // What is there already grows or shrinks.
      " Update t1\r\n"
      " SET t1.FQty=t1.FQty+u1.FQty,t1.FSecQty=t1.FSecQty+u1.FSecQty,t1.FBal=t1.FBal+u1.FBal\r\n"
      " FROM T_CC_Inventory t1 INNER JOIN\r\n"
      " (SELECT FItemID,FBatchNo,FAuxPropID,FStockID,FKFPeriod,FKFDate,FPeriodDate,"
      "FBatchNoIndex\r\n"
      "         ,SUM(FQty) AS FQty,SUM(FSecQty) AS FSecQty,"
      "Round(IsNull(SUM(FQty*FPrice),0),2) AS FBal\r\n"
      "  FROM #TavTempBill\r\n"
      "  GROUP BY FItemID,FBatchNo,FAuxPropID,FStockID,FKFPeriod,FKFDate,FPeriodDate,"
      "FBatchNoIndex\r\n"
      " ) u1\r\n"
      " ON t1.FItemID=u1.FItemID AND t1.FBatchNo=u1.FBatchNo AND t1.FAuxPropID=u1.FAuxPropID\r\n"
      "    AND t1.FStockID=u1.FStockID \r\n"
      "    AND t1.FKFPeriod=u1.FKFPeriod AND t1.FKFDate=u1.FKFDate AND "
      "t1.FPeriodDate=u1.FPeriodDate\r\n"
      "    AND t1.FBatchNoIndex = u1.FBatchNoIndex \r\n"
      // Posted lines leave the temporary table,
      " Delete u1\r\n"
      " FROM T_CC_Inventory t1 INNER JOIN #TavTempBill u1\r\n"
      " ON t1.FItemID=u1.FItemID AND t1.FBatchNo=u1.FBatchNo AND t1.FAuxPropID=u1.FAuxPropID\r\n"
      "    AND t1.FStockID=u1.FStockID \r\n"
      "    AND t1.FKFPeriod=u1.FKFPeriod AND t1.FKFDate=u1.FKFDate AND "
      "t1.FPeriodDate=u1.FPeriodDate\r\n"
      "    AND t1.FBatchNoIndex = u1.FBatchNoIndex\r\n"
      // and the rest become stock rows.
      " INSERT INTO T_CC_Inventory(FBrNo,FItemID,FAuxPropID,FBatchNo,FStockID,FKFPeriod,FKFDate,"
      "FQty,FBal,FSecQty,FLockQty,FPeriodDate,FBatchNoIndex)\r\n"
      " SELECT '',u.FItemID,u.FAuxPropID,u.FBatchNo,u.FStockID,u.FKFPeriod,u.FKFDate,"
      "SUM(u.FQty) AS FQty,Round(IsNull(SUM(FQty*FPrice),0),2),\r\n"
      " SUM(u.FSecQty) AS FSecQty,0,U.FPeriodDate,u.FBatchNoIndex FROM #TavTempBill u\r\n"
      " GROUP BY u.FItemID,u.FBatchNo,u.FAuxPropID,u.FStockID,u.FKFPeriod,u.FKFDate,"
      "u.FPeriodDate,u.FBatchNoIndex \r\n");
}

void CleanInventory(Connection& connection) {
  connection.Execute(
      " update T_CC_Inventory set FSecQty = 0 where abs(FQty) <= 0.000000001 and abs(FSecQty) >= "
      "0.000000001 ");
  // Shelf life and batch index play no part in the match, deliberately.
  connection.Execute(
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
      " WHERE t1.FQty=0 And t1.Fbal=0 and u1.FItemID is null");
}

bool NeedsCleanInventory(int32_t class_type, int32_t bill_type) {
  constexpr int32_t kReceivingClasses[] = {
      kPurchaseBill, kPurchaseEstimate, kPurchaseRebate, kOtherReceipt,
      kCheckGain,    kAssembly,         kDisassembly,    kTransfer,
  };
  constexpr int32_t kKeptType = 2042;
  return bill_type != kKeptType && IsInArray(class_type, kReceivingClasses);
}

}  // namespace tavcc
