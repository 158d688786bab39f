// What a limit price query is asked for, and the four queries that a variant of the check has.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/decimal.h"

namespace tavcc {

// Where the lower limit of a sale comes from: the setting "XSPriceLimit".
enum class LimitSource {
  kSalesLimit = 0,   // the item's sales limit price
  kAverageCost = 1,  // the item's average stock cost
  kLatestPrice = 2,  // its latest purchase-in price
  kLowestPrice = 3,  // its lowest purchase-in price
};

// One line that is being entered.
struct LinePrice {
  int32_t index = 0;
  int32_t item_id = 0;
  int32_t unit_id = 0;
  double coefficient = 0;        // of the line's unit
  Decimal customer_coefficient;  // of the customer's type; 0 for no such customer
  double price = 0;
};

// A whole saved bill.
struct BillPrices {
  std::string_view head_table;
  std::string_view entry_table;
  int32_t bill_id = 0;
  bool exempts_502 = false;  // lines out of stocks of type 502 are exempt
};

struct PriceQueries {
  std::string (*sales_line)(LimitSource source, const LinePrice& line);
  std::string (*purchase_line)(const LinePrice& line);
  std::string (*sales_bill)(LimitSource source, const BillPrices& bill);
  std::string (*purchase_bill)(const BillPrices& bill);
};

extern const PriceQueries kGeneralPriceQueries;
extern const PriceQueries kSteelPriceQueries;

}  // namespace tavcc
