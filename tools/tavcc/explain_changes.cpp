// What the audit of one bill changes: stock on hand, the partner's balances, the quantities of an
// order, the bill's head. Only the bill's own items, partner and rows are looked at.
#include <fmt/core.h>

#include <algorithm>

#include "foundation/bill_kinds.h"
#include "foundation/conversions.h"
#include "tavcc/explain.h"
#include "tavcc/output.h"

namespace tavcc {
namespace {

struct Watched {
  const char* title;
  std::vector<std::string> key_columns;
  std::vector<std::string> value_columns;
  std::string query;  // the key's columns, then the values'
};

// The bill's items.
std::string ItemsOf(const Bill& bill) {
  if (bill.head_table == "T_CC_ZZCX") {
    return fmt::format(
        "SELECT FItemID FROM T_CC_ZZCX_Entry WHERE FID = {0}"
        " UNION SELECT FItemID FROM T_CC_ZZCX_Entry2 WHERE FID = {0}",
        bill.id);
  }
  return fmt::format("SELECT FItemID FROM {}Entry WHERE FID = {}", bill.head_table, bill.id);
}

Watched Stock(const Bill& bill) {
  return {"Stock on hand",
          {"item", "name", "stock", "batch", "aux"},
          {"quantity", "value"},
          fmt::format("SELECT i.FNumber, i.FName, s.FName, v.FBatchNo, ISNULL(a.FName, ''),"
                      " SUM(v.FQty), SUM(v.FBal) FROM T_CC_Inventory v"
                      " INNER JOIN t_ICItem i ON v.FItemID = i.FItemID"
                      " LEFT JOIN t_Stock s ON v.FStockID = s.FItemID"
                      " LEFT JOIN t_AuxItem a ON v.FAuxPropID = a.FItemID"
                      " WHERE v.FItemID IN ({})"
                      " GROUP BY v.FItemID, i.FNumber, i.FName, v.FStockID, s.FName, v.FBatchNo,"
                      " v.FAuxPropID, a.FName"
                      " ORDER BY v.FItemID, v.FStockID, v.FBatchNo, v.FAuxPropID",
                      ItemsOf(bill))};
}

Watched Partner(const Bill& bill) {
  const bool customer = bill.customer_id != 0;
  return {customer ? "Balances of the customer" : "Balances of the supplier",
          {"partner"},
          {"owed", "paid beforehand", "of it settled", "of it open"},
          fmt::format("SELECT FName, FCurReceAmount, FCurPrepAmount, FPrepCheckAmount,"
                      " FUnPrepCheckAmount FROM {} WHERE FItemID = {}",
                      customer ? "t_Organization" : "t_Supplier", bill.partner_id())};
}

Watched OrderLines(const Bill& bill) {
  const bool sales = bill.class_type == class_type::kSalesOrder;
  return {"Quantities of the order",
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
Watched Heads(const Bill& bill) {
  return {"State of the bill",
          {"bill"},
          {"state", "auditor"},
          fmt::format("SELECT FBillNo, FStatus, FCheckerID FROM {} WHERE FID = {}"
                      " UNION ALL SELECT v.FBillNo, v.FStatus, v.FCheckerID FROM T_CC_StockBill v"
                      " INNER JOIN ICRelations r1 ON v.FClassTypeID = r1.FClassTypeID"
                      " AND v.FID = r1.FID"
                      " INNER JOIN ICRelations r2 ON r1.FGroupNo = r2.FGroupNo"
                      " WHERE r2.FClassTypeID = {} AND r2.FID = {} AND v.FID <> {}",
                      bill.head_table, bill.id, bill.class_type, bill.id, bill.id)};
}

std::vector<Watched> WatchedOf(const Bill& bill) {
  const bool order =
      bill.class_type == class_type::kSalesOrder || bill.class_type == class_type::kPurchaseOrder;
  std::vector<Watched> watched;
  if (!order) watched.push_back(Stock(bill));
  if (bill.partner_id() != 0) watched.push_back(Partner(bill));
  if (order) watched.push_back(OrderLines(bill));
  watched.push_back(Heads(bill));
  return watched;
}

std::string CellText(const Value& value) {
  return value.IsNull() ? "" : PlainText(value);
}

// The rows as they are now, in `after`.
ChangeTable Look(Connection& cn, const Watched& watched) {
  ChangeTable table{watched.title, watched.key_columns, watched.value_columns, {}};
  const RecordsetPtr rows = cn.Execute(watched.query);
  for (; !rows->AtEnd(); rows->MoveNext()) {
    ChangeTable::Row& row = table.rows.emplace_back();
    int i = 0;
    for (; i < static_cast<int>(watched.key_columns.size()); ++i) {
      row.key.push_back(CellText(rows->Field(i)));
    }
    for (; i < rows->FieldCount(); ++i) row.after.push_back(CellText(rows->Field(i)));
  }
  return table;
}

std::vector<ChangeTable> LookAtAll(Erp& erp, const Bill& bill) {
  const ConnectionPtr cn = erp.host().GetUnloggedConnection(erp.dsn());
  std::vector<ChangeTable> tables;
  for (const Watched& watched : WatchedOf(bill)) tables.push_back(Look(*cn, watched));
  return tables;
}

const ChangeTable::Row* FindRow(const ChangeTable& table, const std::vector<std::string>& key) {
  const auto found = std::find_if(table.rows.begin(), table.rows.end(),
                                  [&](const ChangeTable::Row& row) { return row.key == key; });
  return found == table.rows.end() ? nullptr : &*found;
}

ChangeTable Difference(const ChangeTable& before, ChangeTable after) {
  for (ChangeTable::Row& row : after.rows) {
    if (const ChangeTable::Row* const old = FindRow(before, row.key)) row.before = old->after;
  }
  for (const ChangeTable::Row& row : before.rows) {
    if (FindRow(after, row.key) == nullptr) after.rows.push_back({row.key, row.after, {}});
  }
  std::erase_if(after.rows, [](const ChangeTable::Row& row) { return row.before == row.after; });
  return after;
}

}  // namespace

ChangeWatch::ChangeWatch(Erp& erp, const Bill& bill)
    : erp_(erp), bill_(bill), before_(LookAtAll(erp, bill)) {}

std::vector<ChangeTable> ChangeWatch::Changes() {
  std::vector<ChangeTable> changes;
  std::vector<ChangeTable> after = LookAtAll(erp_, bill_);
  for (size_t i = 0; i < after.size(); ++i) {
    ChangeTable change = Difference(before_[i], std::move(after[i]));
    if (!change.rows.empty()) changes.push_back(std::move(change));
  }
  return changes;
}

}  // namespace tavcc
