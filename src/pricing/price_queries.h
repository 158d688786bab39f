// What a limit price query is asked for, and the four queries that a variant of the check has.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/decimal.h"
#include "foundation/dictionary.h"

namespace tavcc {

// Where the lower limit of a sale comes from: the setting "XSPriceLimit".
enum class LimitSource {
  kSalesLimit = 0,   // the item's sales limit price
  kAverageCost = 1,  // the item's average stock cost
  kLatestPrice = 2,  // its latest purchase-in price
  kLowestPrice = 3,  // its lowest purchase-in price
};

// One line that is being entered. Each member converts its value when a query asks for it: a value
// that no query uses may be anything. Errors: those of the conversions.
class LinePrice {
 public:
  // Refers to the dictionary, which must outlive it. `customer_coefficient` is that of the
  // customer's type, 0 for no such customer.
  LinePrice(const Dictionary& oDict, double price, const Decimal& customer_coefficient = {})
      : oDict_(oDict), price_(price), customer_coefficient_(customer_coefficient) {}

  std::string index() const;  // the plain number, not rounded
  int32_t item_id() const;
  int32_t unit_id() const;
  double coefficient() const;  // of the line's unit
  const Decimal& customer_coefficient() const { return customer_coefficient_; }
  double price() const { return price_; }

 private:
  const Dictionary& oDict_;
  double price_;
  Decimal customer_coefficient_;
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
