// #TavTempBill: the connection's temporary table of signed bill lines, which the posting adds to
// the stock on hand and the stock check holds against it.
//
// It belongs to the connection: two connections never see each other's.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/connection.h"
#include "foundation/host.h"

namespace tavcc {

// The columns that give a line's quantities. Each is spliced behind "u1.", so that a product with
// another column of the line is a column too.
struct QuantityColumns {
  std::string_view quantity;  // in base units
  std::string_view shown;     // in the shown unit
  std::string_view second;    // in the second unit
};
inline constexpr QuantityColumns kQuantities = {"FQty", "FShowQty", "FSecQty"};
inline constexpr QuantityColumns kDifferences = {"FProfitLossQty*u1.FCoefficient", "FProfitLossQty",
                                                 "FProfitLossSecQty"};

// Where lines of bills are read from: two tables, and the names of their columns.
struct LineSource {
  std::string_view entry_table;
  std::string_view head_table;
  std::string_view stock_column;
  std::string_view shelf_life_column;  // the day of production
  std::string_view period_column;      // the day of expiry
  std::string_view price;              // an expression; the price of the shown unit
  QuantityColumns quantities;
};

// Drops the connection's #TavTempBill, if there is one, and creates it. Errors: the connection's.
void CreateTempBillTable(Connection& connection);

// Errors: the connection's.
void EmptyTempBillTable(Connection& connection);

// Inserts one row per line of the bill. `sign` is 1 or -1: a line's quantity times it is what the
// row holds; `direction` is 1 for audit, -1 for un-audit. False when the database refuses:
// `message` is then the text of its errors, otherwise it stays as it is.
// Errors: one that left no trace in the connection's errors.
bool InsertBillLines(Host& host, Connection& connection, const LineSource& source, int32_t bill_id,
                     int32_t sign, int32_t direction, std::string& message);

}  // namespace tavcc
