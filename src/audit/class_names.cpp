#include "audit/class_names.h"

#include "foundation/bill_kinds.h"

namespace tavcc {

namespace {

struct ClassNameRow {
  int32_t class_type;
  std::string_view name;
};

using namespace class_type;

constexpr ClassNameRow kClassNames[] = {
    {kPurchaseOrder, "采购订单"},
    {kPurchaseBill, "购货单"},
    {kPurchaseEstimate, "采购估价单"},
    {kPurchaseRebate, "采购返利单"},
    {kPurchaseSettlement, "采购结算单"},
    {kSalesOrder, "销售订单"},
    {kSalesBill, "销售单"},
    {kConsignment, "委托代销单"},
    {kSalesRebate, "销售返利单"},
    {kConsignmentSettlement, "委托代销结算单"},
    {kOtherReceipt, "其他入库单"},
    {kOtherIssue, "其他出库单"},
    {kCheckGain, "盘盈单"},
    {kCheckLoss, "盘亏单"},
    {kAssembly, "组装单"},
    {kDisassembly, "拆卸单"},
    {kTransfer, "调拨单"},
    {kPriceAdjustment, "调价单"},
};

}  // namespace

std::string_view ClassName(int32_t class_type) {
  for (const ClassNameRow& row : kClassNames) {
    if (row.class_type == class_type) return row.name;
  }
  return "";
}

}  // namespace tavcc
