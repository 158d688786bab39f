// The bills of a database as a host finds them, and as it hands them to the rules.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/erp.h"

namespace tavcc {

struct Bill {
  int32_t class_type = 0;
  int32_t id = 0;
  int32_t bill_type = 0;
  std::string number;
  std::string head_table;
  int32_t status = 0;
  int32_t customer_id = 0;
  int32_t supplier_id = 0;
  Decimal amount;
  Decimal neutralized;  // of prepayments

  int32_t partner_id() const { return customer_id != 0 ? customer_id : supplier_id; }
};

// Which bills are meant; what is not set is not asked for.
struct BillFilter {
  std::optional<std::string> number = {};
  std::optional<int32_t> class_type = {};
  std::optional<int32_t> id = {};
  std::optional<int32_t> status = {};
  // The system makes some bills itself, and audits them with those that they belong to.
  bool made_by_system = true;
};

// In the order of their ids. Errors: the database's.
std::vector<Bill> FindBills(Erp& erp, const BillFilter& filter);

// The bill's dictionary with every key that a batch audit and the gates around it read.
DictionaryPtr BillDictionary(Host& host, const Bill& bill);

// A query that answers with the items of the bills' lines. Empty for more bills than it can name.
std::string ItemsOf(const std::vector<Bill>& bills);

// "XS260305, XS260306"
std::string NumbersOf(const std::vector<Bill>& bills);

// "销售单 XS260305 (class 1030002, id 134)"
std::string Described(const Bill& bill);

// The text as a literal of the dialect.
std::string SqlLiteral(const std::string& text);

}  // namespace tavcc
