// A stored value by reference: what conversions and comparisons work on, whether it comes from
// SQLite's hands or from a variable. Copies nothing.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "embedded/types/stored_value.h"
#include "embedded/types/wide.h"

namespace tavcc::sql {

struct Cell {
  using Kind = StoredValue::Kind;

  Kind kind = Kind::kNull;
  int64_t integer = 0;     // kInteger
  double real = 0;         // kReal
  std::string_view bytes;  // kText, kBlob

  static Cell Integer(int64_t value) { return {Kind::kInteger, value, 0, {}}; }
  static Cell Real(double value) { return {Kind::kReal, 0, value, {}}; }
  static Cell Text(std::string_view text) { return {Kind::kText, 0, 0, text}; }
  static Cell Binary(std::string_view bytes) { return {Kind::kBlob, 0, 0, bytes}; }
};

// Where a conversion puts bytes that it makes; what a Cell refers to until the next conversion.
struct Scratch {
  std::string text;
  unsigned char decimal[Wide::kBlobSize];
};

Cell FromStored(const StoredValue& value);
StoredValue ToStored(const Cell& cell);
Cell CellOf(sqlite3_value* value);

// The coefficient of a stored decimal, money or whole number.
Wide CoefficientOf(const Cell& cell);
// The stored form of a coefficient; a BLOB lives in `scratch`.
Cell StoreCoefficient(const Wide& coefficient, Scratch* scratch);

}  // namespace tavcc::sql
