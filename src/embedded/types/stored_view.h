// A stored value by reference: what conversions and comparisons work on, whether it comes from
// SQLite's hands or from a variable. Copies nothing.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "embedded/types/stored_value.h"
#include "foundation/wide_integer.h"

struct sqlite3_value;

namespace tavcc::sql {

struct StoredView {
  using Kind = StoredValue::Kind;

  Kind kind = Kind::kNull;
  int64_t integer = 0;     // kInteger
  double real = 0;         // kReal
  std::string_view bytes;  // kText, kBlob

  static StoredView Integer(int64_t value) { return {Kind::kInteger, value, 0, {}}; }
  static StoredView Real(double value) { return {Kind::kReal, 0, value, {}}; }
  static StoredView Text(std::string_view text) { return {Kind::kText, 0, 0, text}; }
  static StoredView Binary(std::string_view bytes) { return {Kind::kBlob, 0, 0, bytes}; }
};

// Where a conversion puts bytes that it makes; what a StoredView refers to until the next
// conversion.
struct Scratch {
  std::string text;
  unsigned char decimal[WideInteger::kBlobSize];
};

StoredView FromStored(const StoredValue& value);
StoredValue ToStored(const StoredView& cell);
StoredView ViewOf(sqlite3_value* value);

// The coefficient of a stored decimal, money or whole number. Errors: kStoreFailure for what is
// stored as neither.
WideInteger CoefficientOf(const StoredView& cell);
// The stored form of a coefficient; a BLOB lives in `scratch`.
StoredView StoreCoefficient(const WideInteger& coefficient, Scratch* scratch);

}  // namespace tavcc::sql
