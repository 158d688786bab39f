#include "tavcc/bills.h"

#include <fmt/core.h>

#include <algorithm>
#include <map>
#include <string_view>

#include "audit/class_names.h"
#include "foundation/conversions.h"
#include "language/language.h"

namespace tavcc {
namespace {

// A table of heads, and what it says of a bill's partner and amounts.
struct HeadTable {
  const char* name;
  const char* customer;
  const char* supplier;
  const char* amount;
  const char* neutralized;
};
constexpr HeadTable kHeadTables[] = {
    {"T_CC_StockBill", "FCustID", "FSupplyID", "FAllAmount", "FNeutralizeAmount"},
    {"T_CC_ZZCX", "0", "0", "0", "0"},
    {"t_CG_Order", "0", "FSupplyID", "FAllAmount", "0"},
    {"t_XS_Order", "FCustID", "0", "FAllAmount", "0"},
};

std::string Conditions(const BillFilter& filter) {
  std::string text;
  const auto add = [&](const char* column, const auto& value) {
    text += fmt::format("{} {} = {}", text.empty() ? " WHERE" : " AND", column, value);
  };
  if (filter.number) add("FBillNo", SqlLiteral(*filter.number));
  if (filter.class_type) add("FClassTypeID", *filter.class_type);
  if (filter.id) add("FID", *filter.id);
  if (filter.status) add("FStatus", *filter.status);
  return text;
}

void AddBills(Connection& cn, const HeadTable& table, const BillFilter& filter,
              std::vector<Bill>& bills) {
  const RecordsetPtr rows = cn.Execute(fmt::format(
      "SELECT FID, FClassTypeID, FBillTypeID, FBillNo, FStatus, {} AS FCustID, {} AS FSupplyID,"
      " {} AS FAllAmount, {} AS FNeutralizeAmount FROM {}{}",
      table.customer, table.supplier, table.amount, table.neutralized, table.name,
      Conditions(filter)));
  for (; !rows->AtEnd(); rows->MoveNext()) {
    bills.push_back({.class_type = LongOrZero(rows->Field("FClassTypeID")),
                     .id = LongOrZero(rows->Field("FID")),
                     .bill_type = LongOrZero(rows->Field("FBillTypeID")),
                     .number = ToText(rows->Field("FBillNo")),
                     .head_table = table.name,
                     .status = LongOrZero(rows->Field("FStatus")),
                     .customer_id = LongOrZero(rows->Field("FCustID")),
                     .supplier_id = LongOrZero(rows->Field("FSupplyID")),
                     .amount = DecimalOrZero(rows->Field("FAllAmount")),
                     .neutralized = DecimalOrZero(rows->Field("FNeutralizeAmount"))});
  }
}

std::vector<std::string> EntryTablesOf(const Bill& bill) {
  if (bill.head_table == "T_CC_ZZCX") return {"T_CC_ZZCX_Entry", "T_CC_ZZCX_Entry2"};
  return {bill.head_table + "Entry"};
}

}  // namespace

std::vector<Bill> FindBills(Erp& erp, const BillFilter& filter) {
  constexpr int32_t kMadeBySystem = 2032;
  std::vector<Bill> bills;
  const ConnectionPtr cn = erp.connection();
  for (const HeadTable& table : kHeadTables) AddBills(*cn, table, filter, bills);
  if (!filter.made_by_system) {
    std::erase_if(bills, [](const Bill& bill) { return bill.bill_type == kMadeBySystem; });
  }
  std::stable_sort(bills.begin(), bills.end(),
                   [](const Bill& a, const Bill& b) { return a.id < b.id; });
  return bills;
}

DictionaryPtr BillDictionary(Host& host, const Bill& bill) {
  const DictionaryPtr dictionary = host.NewDictionary();
  dictionary->SetItem("ClassTypeID", bill.class_type);
  dictionary->SetItem("BillInterID", bill.id);
  dictionary->SetItem("BillType", bill.bill_type);
  dictionary->SetItem("BillTypeID", bill.bill_type);
  dictionary->SetItem("HeadTableName", bill.head_table);
  dictionary->SetItem("BillNo", bill.number);
  dictionary->SetItem("CustOrSupplyID", bill.partner_id());
  dictionary->SetItem("CustID", bill.customer_id);
  dictionary->SetItem("SupplyID", bill.supplier_id);
  dictionary->SetItem("AllAmount", bill.amount);
  dictionary->SetItem("FNeutralizeAmount", bill.neutralized);
  return dictionary;
}

std::string ItemsOf(const std::vector<Bill>& bills) {
  constexpr size_t kMostNamed = 1000;
  if (bills.empty()) return "0";
  if (bills.size() > kMostNamed) return "";
  std::map<std::string, std::string> ids;  // by table of lines
  for (const Bill& bill : bills) {
    for (const std::string& table : EntryTablesOf(bill)) {
      std::string& list = ids[table];
      list += fmt::format("{}{}", list.empty() ? "" : ", ", bill.id);
    }
  }
  std::string query;
  for (const auto& [table, list] : ids) {
    query += fmt::format("{}SELECT FItemID FROM {} WHERE FID IN ({})",
                         query.empty() ? "" : " UNION ", table, list);
  }
  return query;
}

std::string NumbersOf(const std::vector<Bill>& bills) {
  std::string text;
  for (const Bill& bill : bills) text += (text.empty() ? "" : ", ") + bill.number;
  return text;
}

std::string Described(const Bill& bill) {
  return Say("{} {} (class {}, id {})", ClassName(bill.class_type), bill.number, bill.class_type,
             bill.id);
}

std::string SqlLiteral(const std::string& text) {
  std::string literal = "N'";
  for (const char c : text) {
    literal += c;
    if (c == '\'') literal += c;
  }
  return literal += '\'';
}

}  // namespace tavcc
