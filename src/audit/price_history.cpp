#include "audit/price_history.h"

#include "foundation/bill_kinds.h"
#include "foundation/host_services.h"
#include "foundation/text.h"

namespace tavcc {

namespace {

using namespace class_type;

enum class Side { kNone, kSales, kPurchase };

struct PriceSource {
  int32_t class_type;
  std::string_view entry_table;
  std::string_view head_table;
  Side side;
};

// The stock bill's tables have a small "t" in these statements, unlike elsewhere: as stored.
constexpr PriceSource kSources[] = {
    {kPurchaseOrder, "t_CG_OrderEntry", "t_CG_Order", Side::kPurchase},
    {kPurchaseBill, "t_CC_StockBillEntry", "t_CC_StockBill", Side::kPurchase},
    {kPurchaseEstimate, "t_CC_StockBillEntry", "t_CC_StockBill", Side::kPurchase},
    {kPurchaseRebate, "t_CC_StockBillEntry", "t_CC_StockBill", Side::kNone},
    {kSalesOrder, "t_XS_OrderEntry", "t_XS_Order", Side::kSales},
    {kSalesBill, "t_CC_StockBillEntry", "t_CC_StockBill", Side::kSales},
    {kConsignment, "t_CC_StockBillEntry", "t_CC_StockBill", Side::kSales},
    {kSalesRebate, "t_CC_StockBillEntry", "t_CC_StockBill", Side::kNone},
    {kOtherReceipt, "t_CC_StockBillEntry", "t_CC_StockBill", Side::kNone},
    {kOtherIssue, "t_CC_StockBillEntry", "t_CC_StockBill", Side::kNone},
    {kCheckGain, "t_CC_StockBillEntry", "t_CC_StockBill", Side::kNone},
    {kCheckLoss, "t_CC_StockBillEntry", "t_CC_StockBill", Side::kNone},
    {kAssembly, "T_CC_ZZCX_Entry", "T_CC_ZZCX", Side::kNone},
    {kDisassembly, "T_CC_ZZCX_Entry", "T_CC_ZZCX", Side::kNone},
    {kTransfer, "t_CC_StockBillEntry", "t_CC_StockBill", Side::kNone},
    {kPriceAdjustment, "t_CC_StockBillEntry", "t_CC_StockBill", Side::kNone},
};

// Bills of other classes that leave prices behind too: those of these types.
constexpr int32_t kPricedTypes[] = {3001, 3010, 2013, 2011};
constexpr PriceSource kOtherClass = {0, "t_CC_StockBillEntry", "t_CC_StockBill", Side::kNone};

const PriceSource* FindSource(const AuditedBill& bill) {
  for (const PriceSource& source : kSources) {
    if (source.class_type == bill.class_type) return &source;
  }
  return IsInArray(bill.bill_type, kPricedTypes) ? &kOtherClass : nullptr;
}

// ---- The partner-free latest price -------------------------------------------------------------

void UpdateItemRows(Connection& connection, const PriceSource& source, int32_t id) {
  connection.Execute(
      Cat("Delete From t_LatestPrice Where FCustID=0 and FSupplyID=0 and FItemID IN (Select "
          "FItemID From ",
          source.entry_table, " where FID=", id, ")"));
  connection.Execute(
      Cat(" Insert Into t_LatestPrice (FCustID,"
          "FSupplyID,FItemID,FUnitID,FDate,FCheckDate)  Select "  // two blanks: as stored
          "0,0,FItemID,max(FShowUnitID) "
          ",(select FDate from ",
          source.head_table, " where Fid=", id, "),getdate()", " From ", source.entry_table,
          " where FID=", id, " Group By FItemID"));
}

// ---- The partner's history ---------------------------------------------------------------------

// A sale keeps the bill's highest price, a purchase its lowest, and no price with tax,
// deliberately.
struct PartnerSide {
  std::string_view column;
  std::string_view other_column;
  std::string_view aggregates;
};
constexpr PartnerSide kCustomer = {"FCustID", "FSupplyID",
                                   "Max(FPrice),Max(FIncludeTaxPrice),Min(FDiscountRate)"};
constexpr PartnerSide kSupplier = {"FSupplyID", "FCustID", "Min(FPrice), 0 ,Max(FDiscountRate)"};

void UpdatePartnerRows(Connection& connection, const PriceSource& source, int32_t id,
                       int32_t partner_id) {
  const PartnerSide& side = source.side == Side::kSales ? kCustomer : kSupplier;
  connection.Execute(
      Cat("Delete t From t_LatestPrice t "
          "inner join ",
          source.entry_table,
          " te on t.FItemID=te.FItemID and t.FUnitID=te.FShowUnitID\r\n"
          "Where t.",
          side.column, " = ", partner_id, " And te.FID = ", id, " And te.FPrice > 0"));
  connection.Execute(Cat("update t_LatestPrice set FIsLast=0 Where ", side.column, "=", partner_id,
                         " And FItemID IN (Select FItemID From ", source.entry_table,
                         " Where FID=", id, " And FPrice>0)"));
  connection.Execute(Cat("Insert Into t_LatestPrice (", side.column, ",", side.other_column,
                         ",FItemID,FPrice,FIncludeTaxPrice,FDiscountRate,FUnitID,FDate,FCheckDate) "
                         "Select ",
                         partner_id, ",0,FItemID,", side.aggregates,
                         ",FShowUnitID "
                         ",(select FDate from ",
                         source.head_table, " where Fid=", id,
                         " ),getdate()\r\n"
                         "From ",
                         source.entry_table, " where FID=", id,
                         " And FPrice>0 Group By FItemID,FShowUnitID"));
}

// ---- The items' latest prices ------------------------------------------------------------------

// Items of the bill may have a price row in some units and none in others: what is there is
// updated, then what is missing is inserted.
std::string SalesItemPrices(std::string_view entry_table, int32_t id) {
  return Cat(
      "if exists(select * from t_ItemPrice a, "
      "(Select FItemID,FShowUnitID From ",
      entry_table, " where FID=", id,
      " And FPrice>0) b Where a.FItemID=b.FItemID and a.FUnitID=b.FShowUnitID)\r\n"
      "Update a Set a.FXSLatestPrice=b.FPrice,a.FXSIncludeTaxLastPrice=b.FIncludeTaxPrice "
      "From t_ItemPrice a inner join (Select FItemID,FShowUnitID,Max(FPrice) as FPrice,"
      "Max(FIncludeTaxPrice) as FIncludeTaxPrice From ",
      entry_table, " where FID=", id,
      " And FPrice>0 Group By FItemID,FShowUnitID) b "
      "on a.FItemID=b.FItemID and a.FUnitID=b.FShowUnitID\r\n"
      "Insert Into t_ItemPrice (FItemID,FUnitID,FXSLatestPrice,FXSIncludeTaxLastPrice) "
      "Select b.FItemID,b.FShowUnitID,b.FPrice,b.FIncludeTaxPrice From "
      "(Select FItemID,FShowUnitID,Max(FPrice) as FPrice,Max(FIncludeTaxPrice) as "
      "FIncludeTaxPrice From ",
      entry_table, " where FID=", id,
      " And FPrice>0 Group By FItemID,FShowUnitID) b "
      "left join t_ItemPrice a on a.FItemID=b.FItemID and a.FUnitID=b.FShowUnitID "
      "Where a.FItemID is null");
}

std::string PurchaseItemPrices(std::string_view entry_table, int32_t id) {
  return Cat(
      "if exists(select * from t_ItemPrice a, "
      "(Select FItemID,FShowUnitID From ",
      entry_table, " where FID=", id,
      " And FPrice>0) b Where a.FItemID=b.FItemID and a.FUnitID=b.FShowUnitID)\r\n"
      "Update a Set a.FCGLatestPrice=b.FPrice "
      "From t_ItemPrice a inner join (Select FItemID,FShowUnitID,Min(FPrice) as FPrice From ",
      entry_table, " where FID=", id,
      " And FPrice>0 Group By FItemID,FShowUnitID) b "
      "on a.FItemID=b.FItemID and a.FUnitID=b.FShowUnitID\r\n"
      "Insert Into t_ItemPrice (FItemID,FUnitID,FCGLatestPrice) "
      "Select b.FItemID,b.FShowUnitID,b.FPrice From "
      "(Select FItemID,FShowUnitID,Min(FPrice) as FPrice From ",
      entry_table, " where FID=", id,
      " And FPrice>0 Group By FItemID,FShowUnitID) b "
      "left join t_ItemPrice a on a.FItemID=b.FItemID and a.FUnitID=b.FShowUnitID "
      "Where a.FItemID is null");
}

}  // namespace

void UpdatePriceHistory(Connection& connection, const AuditedBill& bill) {
  if (bill.check_type != kAudit) return;
  const PriceSource* source = FindSource(bill);
  if (source == nullptr) return;
  if (source->side != Side::kNone) {
    UpdatePartnerRows(connection, *source, bill.bill_id, PartnerID(bill));
    connection.Execute(source->side == Side::kSales
                           ? SalesItemPrices(source->entry_table, bill.bill_id)
                           : PurchaseItemPrices(source->entry_table, bill.bill_id));
    return;
  }
  if (IsInArray(bill.bill_type, bill_types::kValueOnly)) return;
  UpdateItemRows(connection, *source, bill.bill_id);
}

}  // namespace tavcc
