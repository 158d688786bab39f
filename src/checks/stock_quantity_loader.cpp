#include "checks/stock_quantity_loader.h"

#include "foundation/bill_kinds.h"
#include "foundation/temp_bill_table.h"

namespace tavcc {

namespace {

using namespace class_type;

constexpr std::string_view kProductTable = "T_CC_ZZCX_Entry";
constexpr std::string_view kComponentTable = "T_CC_ZZCX_Entry2";

struct LoadedColumns {
  std::string_view stock_column;
  std::string_view price;
  QuantityColumns quantities = kQuantities;
  std::string_view shelf_life_column = "FKFDate";
  std::string_view period_column = "FPeriodDate";
};

std::optional<LoadedColumns> ColumnsOf(int32_t class_type, std::string_view entry_table) {
  switch (class_type) {
    case kPurchaseBill:
    case kPurchaseEstimate:
    case kPurchaseRebate:
    case kOtherReceipt:
      return LoadedColumns{"FDCStockID", "Fprice"};
    case kSalesBill:
    case kConsignment:
    case kSalesRebate:
    case kOtherIssue:
      return LoadedColumns{"FSCStockID", "FPrice"};
    case kCheckGain:
      return LoadedColumns{"FDCStockID", "FPrice", kDifferences};
    case kCheckLoss:
      return LoadedColumns{"FSCStockID", "FPrice", kDifferences};
    case kAssembly:
    case kDisassembly:
      return LoadedColumns{entry_table == kProductTable ? "FDCStockID" : "FSCStockID", "Fprice",
                           kQuantities, "FProDate", "FExpDate"};
    default:
      return std::nullopt;
  }
}

// A transfer takes from one stock (the source on audit) what it puts into the other.
constexpr LoadedColumns kSourceOfTransfer = {"FSCStockID", "u1.FCostPrice"};
constexpr LoadedColumns kTargetOfTransfer = {"FDCStockID", "u1.FCostPrice"};

LineSource SourceOf(const BillTables& tables, const LoadedColumns& columns) {
  return {tables.entry,          tables.head,   columns.stock_column, columns.shelf_life_column,
          columns.period_column, columns.price, columns.quantities};
}

}  // namespace

std::optional<BillTables> ResolveBillTables(int32_t class_type, int16_t intCheckType) {
  const bool audit = intCheckType == kAudit;
  switch (class_type) {
    case kPurchaseBill:
    case kPurchaseEstimate:
    case kPurchaseRebate:
    case kSalesBill:
    case kConsignment:
    case kSalesRebate:
    case kOtherReceipt:
    case kOtherIssue:
    case kCheckGain:
    case kCheckLoss:
    case kTransfer:
    case kPriceAdjustment:
    case kStockBill1080001:
    case kStockBill1080002:
      return BillTables{"T_CC_StockBill", "T_CC_StockBillEntry"};
    case kAssembly:
      return BillTables{"T_CC_ZZCX", audit ? kComponentTable : kProductTable};
    case kDisassembly:
      return BillTables{"T_CC_ZZCX", audit ? kProductTable : kComponentTable};
    default:
      return std::nullopt;
  }
}

void LoadBillFromDatabase(Host& host, Connection& connection, const BillTables& tables,
                          int32_t class_type, int32_t bill_id, int16_t intCheckType,
                          std::string& message) {
  if (class_type == kTransfer) {
    const bool audit = intCheckType == kAudit;
    const LoadedColumns& issuing = audit ? kSourceOfTransfer : kTargetOfTransfer;
    const LoadedColumns& receiving = audit ? kTargetOfTransfer : kSourceOfTransfer;
    // Both are sent, whatever the first one comes to.
    InsertBillLines(host, connection, SourceOf(tables, issuing), bill_id, 1, intCheckType, message);
    InsertBillLines(host, connection, SourceOf(tables, receiving), bill_id, -1, intCheckType,
                    message);
    return;
  }
  if (const auto columns = ColumnsOf(class_type, tables.entry)) {
    InsertBillLines(host, connection, SourceOf(tables, *columns), bill_id, 1, intCheckType,
                    message);
  }
}

}  // namespace tavcc
