// Random companies and bills: small enough to read, varied enough to meet the corners.
#pragma once

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "audit/audit_company.h"
#include "foundation/decimal.h"

namespace tavcc::testing {

// Item, stock.
using StockKey = std::pair<int32_t, int32_t>;

struct RandomBill {
  BillKey key;
  // What auditing it adds to the stock, by the rules' own table written down a second time.
  std::map<StockKey, Decimal> movement;
};

class RandomCompany {
 public:
  // Items valued by specific identification are never issued below zero, whatever is allowed;
  // `specific_identification` tells whether there are any.
  explicit RandomCompany(uint32_t seed, bool specific_identification = true)
      : random_(seed), specific_identification_(specific_identification) {}

  // Fills an empty company: items of every tracking method, stocks, partners, opening stock.
  void Found(Company& company);

  // Writes a bill of a random class and type into the company.
  RandomBill AddBill(Company& company, int32_t id);

  // 0 to below - 1; the same on every platform.
  uint32_t Below(uint32_t below) { return static_cast<uint32_t>(random_() % below); }

 private:
  struct Line {
    int32_t item, stock, other_stock;
    std::string batch;
    Decimal quantity, shown, second, difference, coefficient;
  };
  Line RandomLine(bool in_stock);
  std::string Price() { return Amount(20000, 2).ToText(); }
  Decimal Amount(uint32_t below, int scale) {
    return Decimal::FromScaled(static_cast<int64_t>(Below(below)), scale);
  }

  struct StockRow {
    int32_t item, stock;
    std::string batch;
  };

  int32_t Track(int32_t item) const;

  std::mt19937 random_;
  bool specific_identification_;
  std::vector<StockRow> opening_;
};

}  // namespace tavcc::testing
