// Type and value of literals.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "embedded/types/sql_type.h"
#include "embedded/types/stored_value.h"

namespace tavcc::sql {

enum class LiteralForm : uint8_t {
  kNull,
  kInteger,
  kDecimal,
  kFloat,
  kText,
  kNationalText,
  kBinary
};

// Type and stored value of a literal: 7 is int, 3000000000 decimal(10,0), 1.50 decimal(3,2), 1e3
// float, 'abc' varchar(3), '' varchar(1), N'…' nvarchar, 0x… varbinary. Errors: 1007 for a number
// of more than 38 digits, 168 for a float out of range.
TypedValue EvaluateLiteral(LiteralForm form, std::string_view text);
// The precision of an exact number as it is written: of 7 it is 1, of 1.50 three, of 0.05 two.
// Zeros in front do not count, but all that stands behind the point does.
size_t LiteralPrecision(std::string_view number);
// The type of a text literal (kText or kNationalText) of so many UTF-16 units.
SqlType TextLiteralType(LiteralForm form, size_t units);

}  // namespace tavcc::sql
