// What the audit of one bill changes: stock on hand, the partner's balances, the quantities of an
// order, the bill's head. Only the bill's own items, partner and rows are looked at.
#include <fmt/core.h>

#include <utility>

#include "foundation/bill_kinds.h"
#include "language/language.h"
#include "tavcc/explain.h"

namespace tavcc {
namespace {

WatchedRows Partner(const Bill& bill) {
  const bool customer = bill.customer_id != 0;
  return {customer ? Translatable("Balances of the customer")
                   : Translatable("Balances of the supplier"),
          {"partner"},
          {"owed", "paid beforehand", "of it settled", "of it open"},
          fmt::format("SELECT FName, FCurReceAmount, FCurPrepAmount, FPrepCheckAmount,"
                      " FUnPrepCheckAmount FROM {} WHERE FItemID = {}",
                      customer ? "t_Organization" : "t_Supplier", bill.partner_id())};
}

WatchedRows OrderLines(const Bill& bill) {
  const bool sales = bill.class_type == class_type::kSalesOrder;
  return {Translatable("Quantities of the order"),
          {"line", "item", "name"},
          {"on order", "on order (base)", sales ? "to go out" : "to come in",
           sales ? "to go out (base)" : "to come in (base)"},
          fmt::format("SELECT e.FIndex, i.FNumber, i.FName, {0}, {1}, e.FInTotalQty,"
                      " e.FBaseInTotalQty FROM {2}Entry e"
                      " LEFT JOIN t_ICItem i ON e.FItemID = i.FItemID WHERE e.FID = {3}"
                      " ORDER BY e.FIndex, e.FEntryID",
                      sales ? "e.FXSOrderQty" : "e.FCgOrderQty",
                      sales ? "e.FBaseXSOrderQty" : "e.FBaseCgOrderQty", bill.head_table, bill.id)};
}

// The bill's own head and, where a purchase reverses an estimate, the heads that go with it.
WatchedRows Heads(const Bill& bill) {
  return {Translatable("State of the bill"),
          {"bill"},
          {"state", "auditor"},
          fmt::format("SELECT FBillNo, FStatus, FCheckerID FROM {} WHERE FID = {}"
                      " UNION ALL SELECT v.FBillNo, v.FStatus, v.FCheckerID FROM T_CC_StockBill v"
                      " INNER JOIN ICRelations r1 ON v.FClassTypeID = r1.FClassTypeID"
                      " AND v.FID = r1.FID"
                      " INNER JOIN ICRelations r2 ON r1.FGroupNo = r2.FGroupNo"
                      " WHERE r2.FClassTypeID = {} AND r2.FID = {} AND v.FID <> {}",
                      bill.head_table, bill.id, bill.class_type, bill.id, bill.id),
          false};
}

std::vector<WatchedRows> WatchedOf(const Bill& bill) {
  const bool order =
      bill.class_type == class_type::kSalesOrder || bill.class_type == class_type::kPurchaseOrder;
  std::vector<WatchedRows> watched;
  if (!order) watched.push_back(StockRows(ItemsOf({bill})));
  if (bill.partner_id() != 0) watched.push_back(Partner(bill));
  if (order) watched.push_back(OrderLines(bill));
  watched.push_back(Heads(bill));
  return watched;
}

}  // namespace

ChangeWatch::ChangeWatch(Erp& erp, const Bill& bill) : erp_(erp) {
  const ConnectionPtr cn = erp.host().GetUnloggedConnection(erp.dsn());
  for (WatchedRows& rows : WatchedOf(bill)) watched_.emplace_back(*cn, std::move(rows));
}

std::vector<ChangeTable> ChangeWatch::Changes() {
  const ConnectionPtr cn = erp_.host().GetUnloggedConnection(erp_.dsn());
  std::vector<ChangeTable> changes;
  for (const RowComparison& watched : watched_) {
    ChangeTable change = watched.Changes(*cn);
    if (!change.rows.empty()) changes.push_back(std::move(change));
  }
  return changes;
}

}  // namespace tavcc
