#include "audit/random_bills.h"

#include "foundation/bill_kinds.h"
#include "foundation/text.h"

namespace tavcc::testing {

namespace {

using namespace class_type;

constexpr int32_t kItems = 12;
constexpr int32_t kStocks = 3;
constexpr int32_t kPartners = 2;

// Every second item of a tracking method.
bool HasBatches(int32_t item) {
  return item % 2 == 0;
}

enum class Lines { kStockBill, kAssembly, kSalesOrder, kPurchaseOrder };

// Signs of what a line moves on audit, at FDCStockID and at FSCStockID. `difference`: the line's
// profit and loss counts, not its quantity.
struct Kind {
  int32_t class_type;
  int32_t bill_type;
  Lines lines;
  int received;
  int issued;
  bool difference = false;
};

constexpr Kind kKinds[] = {
    {kPurchaseOrder, 0, Lines::kPurchaseOrder, 0, 0},
    {kSalesOrder, 0, Lines::kSalesOrder, 0, 0},
    {kPurchaseBill, 2011, Lines::kStockBill, 1, 0},
    {kPurchaseBill, 2012, Lines::kStockBill, -1, 0},
    {kPurchaseEstimate, 2030, Lines::kStockBill, 1, 0},
    {kPurchaseEstimate, 2031, Lines::kStockBill, -1, 0},
    {kPurchaseEstimate, 2032, Lines::kStockBill, -1, 0},
    {kPurchaseRebate, 2042, Lines::kStockBill, 1, 0},
    {kPurchaseRebate, 2043, Lines::kStockBill, 1, 0},
    {kPurchaseRebate, 2040, Lines::kStockBill, 0, 0},
    {kSalesBill, 3001, Lines::kStockBill, 0, -1},
    {kSalesBill, 3002, Lines::kStockBill, 0, 1},
    {kSalesBill, 3003, Lines::kStockBill, 0, 0},
    {kSalesBill, 3004, Lines::kStockBill, 0, 1},
    {kConsignment, 3010, Lines::kStockBill, 0, -1},
    {kConsignment, 3011, Lines::kStockBill, 0, 1},
    {kConsignment, 3005, Lines::kStockBill, 0, -1},
    {kSalesRebate, 3022, Lines::kStockBill, 0, -1},
    {kSalesRebate, 3021, Lines::kStockBill, 0, 0},
    {kOtherReceipt, 0, Lines::kStockBill, 1, 0},
    {kOtherIssue, 0, Lines::kStockBill, 0, -1},
    {kCheckGain, 0, Lines::kStockBill, 1, 0},
    {kCheckLoss, 0, Lines::kStockBill, 0, -1, true},
    {kAssembly, 0, Lines::kAssembly, 1, -1},
    {kDisassembly, 0, Lines::kAssembly, -1, 1},
    {kTransfer, 0, Lines::kStockBill, 1, -1},
    {kPriceAdjustment, 0, Lines::kStockBill, 0, 0},
};

void Move(RandomBill& bill, int32_t item, int32_t stock, int sign, const Decimal& quantity) {
  if (sign == 0) return;
  Decimal& sum = bill.movement[{item, stock}];
  sum = *Decimal::Add(sum, sign > 0 ? quantity : quantity.Negated());
}

// One shelf life for each batch, so that posting rewrites none.
std::string ShelfLife(const std::string& batch) {
  return batch.empty() ? "0,null,null" : "30,'2026-02-01','2026-03-03'";
}

}  // namespace

// The methods in turn.
int32_t RandomCompany::Track(int32_t item) const {
  if (item % 3 == 2) return specific_identification_ ? 80 : 76;
  return item % 3 == 1 ? 78 : 76;
}

void RandomCompany::Found(Company& company) {
  company.Run(
      "insert into t_MeasureUnit(FMeasureUnitID,FUnitGroupID,FCoefficient) "
      "values(1,1,1),(2,1,12)");
  for (int32_t stock = 1; stock <= kStocks; ++stock) {
    company.Run(Cat("insert into t_Stock(FItemID,FTypeID) values(", stock, ",500)"));
  }
  for (int32_t partner = 1; partner <= kPartners; ++partner) {
    for (const std::string_view table : {"t_Organization", "t_Supplier"}) {
      company.Run(Cat("insert into ", table,
                      "(FItemID,FCurReceAmount,FCurPrepAmount,FUnPrepCheckAmount) values(", partner,
                      ",", Amount(100000, 2), ",", Amount(100000, 2), ",", Amount(100000, 2), ")"));
    }
  }
  for (int32_t item = 1; item <= kItems; ++item) {
    company.Run(
        Cat("insert into t_ICItem(FItemID,FUnitGroupID,FUnitID,FTrack,FISBatchManager) "
            "values(",
            item, ",1,1,", Track(item), ",", int32_t{HasBatches(item)}, ")"));
    for (int32_t stock = 1; stock <= kStocks; ++stock) {
      if (Below(4) == 0) continue;  // nothing there yet
      const std::string batch = HasBatches(item) ? "P1" : "";
      opening_.push_back({item, stock, batch});
      const Decimal quantity = Amount(400, 1);
      const std::string row = Cat(item, ",", stock, ",'", batch, "',", batch.empty() ? "0" : "30",
                                  ",'", batch.empty() ? "1900-01-01" : "2026-02-01", "','",
                                  batch.empty() ? "1900-01-01" : "2026-03-03", "',", quantity, ",",
                                  *Decimal::Multiply(quantity, 2), ",", Amount(1000000, 2), ")");
      for (const std::string_view table : {"T_CC_Inventory", "ICInvInitial"}) {
        company.Run(Cat("insert into ", table,
                        "(FItemID,FStockID,FBatchNo,FKFPeriod,FKFDate,FPeriodDate,FQty,FSecQty,"
                        "FBal) values(",
                        row));
      }
    }
  }
}

// The second quantity is twice the first, so that it is zero where the first is. `in_stock`: the
// line names a row of the opening stock.
RandomCompany::Line RandomCompany::RandomLine(bool in_stock) {
  Line line;
  line.item = static_cast<int32_t>(Below(kItems)) + 1;
  line.stock = static_cast<int32_t>(Below(kStocks)) + 1;
  line.other_stock = static_cast<int32_t>(Below(kStocks)) + 1;
  line.batch = HasBatches(line.item) ? (Below(3) == 0 ? "P2" : "P1") : "";
  if (in_stock) {
    const StockRow& row = opening_[Below(static_cast<uint32_t>(opening_.size()))];
    line.item = row.item;
    line.stock = line.other_stock = row.stock;
    line.batch = row.batch;
  }
  line.coefficient = Below(3) == 0 ? 12 : 1;
  line.shown = Amount(60, 1);
  line.quantity = *Decimal::Multiply(line.shown, line.coefficient);
  line.second = *Decimal::Multiply(line.quantity, 2);
  line.difference = Amount(20, 1);
  return line;
}

RandomBill RandomCompany::AddBill(Company& company, int32_t id) {
  const Kind& kind = kKinds[Below(std::size(kKinds))];
  RandomBill bill;
  bill.key = {.class_type = kind.class_type,
              .bill_type = kind.bill_type,
              .id = id,
              .partner_id = static_cast<int32_t>(Below(kPartners)) + 1,
              .amount = Price(),
              .neutralized = Below(2) == 0 ? "0" : Price()};
  const auto head = [&](std::string_view table) {
    company.Run(Cat("insert into ", table,
                    "(FID,FClassTypeID,FBillTypeID,FBillNo,FDate,FBillerID) values(", id, ",",
                    kind.class_type, ",", kind.bill_type, ",'B", id, "','20260310',1)"));
  };
  if (Below(2) == 0) {
    company.Run(Cat("insert into ICCheckInfo(FID,FSourceClassTypeID2,FCurCheckAmount) values(", id,
                    ",1,", Price(), ")"));
  }
  const uint32_t lines = Below(6);
  switch (kind.lines) {
    case Lines::kStockBill:
      head("T_CC_StockBill");
      break;
    case Lines::kAssembly:
      head("T_CC_ZZCX");
      break;
    case Lines::kSalesOrder:
      head("t_XS_Order");
      break;
    case Lines::kPurchaseOrder:
      head("t_CG_Order");
      break;
  }
  for (uint32_t n = 1; n <= lines; ++n) {
    const auto index = static_cast<int32_t>(n);
    // Value moves only where there is a stock row.
    const Line line = RandomLine(kind.received == 0 && kind.issued == 0);
    const std::string common =
        Cat(id, ",", index, ",", index, ",", line.item, ",1,", line.coefficient, ",", line.quantity,
            ",", line.shown, ",", line.second, ",", Price());
    switch (kind.lines) {
      case Lines::kSalesOrder:
      case Lines::kPurchaseOrder:
        company.Run(Cat("insert into ",
                        kind.lines == Lines::kSalesOrder ? "t_XS_OrderEntry" : "t_CG_OrderEntry",
                        "(FID,FEntryID,FIndex,FItemID,FShowUnitID,FCoefficient,FQty,FShowQty,"
                        "FSecQty,FPrice,FInTotalQty) values(",
                        common, ",", line.shown, ")"));
        break;
      case Lines::kAssembly: {
        const bool product = n == 1;
        company.Run(Cat("insert into ", product ? "T_CC_ZZCX_Entry" : "T_CC_ZZCX_Entry2",
                        "(FID,FEntryID,FIndex,FItemID,FShowUnitID,FCoefficient,FQty,FShowQty,"
                        "FSecQty,FPrice,",
                        product ? "FDCStockID" : "FSCStockID",
                        ",FBatchNo,FKFPeriod,FProDate,FExpDate) values(", common, ",", line.stock,
                        ",'", line.batch, "',", ShelfLife(line.batch), ")"));
        Move(bill, line.item, line.stock, product ? kind.received : kind.issued, line.quantity);
        break;
      }
      case Lines::kStockBill: {
        company.Run(
            Cat("insert into T_CC_StockBillEntry(FID,FEntryID,FIndex,FItemID,FShowUnitID,"
                "FCoefficient,FQty,FShowQty,FSecQty,FPrice,FCostPrice,FAmount,FDCStockID,"
                "FSCStockID,FProfitLossQty,FProfitLossSecQty,FBatchNo,FKFPeriod,FKFDate,"
                "FPeriodDate) values(",
                common, ",", Price(), ",", Price(), ",", line.stock, ",", line.other_stock, ",",
                line.difference, ",",
                *Decimal::Multiply(*Decimal::Multiply(line.difference, line.coefficient), 2), ",'",
                line.batch, "',", ShelfLife(line.batch), ")"));
        const Decimal quantity =
            kind.difference ? *Decimal::Multiply(line.difference, line.coefficient) : line.quantity;
        Move(bill, line.item, line.stock, kind.received, quantity);
        Move(bill, line.item, line.other_stock, kind.issued, quantity);
        break;
      }
    }
  }
  return bill;
}

}  // namespace tavcc::testing
