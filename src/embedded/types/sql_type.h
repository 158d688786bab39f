// The types of the dialect: SQL Server's, as far as the rules and the ERP's schema use them.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/decimal.h"

namespace tavcc::sql {

// In order of precedence, lowest first, as the documentation of Transact-SQL lists it ("Data type
// precedence"): where two types meet, the one further down wins.
enum class TypeKind : uint8_t {
  kNull,  // the type of a bare NULL: takes on whatever it meets
  kBinary,
  kVarBinary,
  kChar,
  kVarChar,
  kNChar,
  kNVarChar,
  kUniqueIdentifier,
  kBit,
  kTinyInt,
  kSmallInt,
  kInt,
  kBigInt,
  kSmallMoney,
  kMoney,
  kDecimal,  // also "numeric"
  kReal,
  kFloat,
  kDate,
  kSmallDateTime,
  kDateTime,
};

struct SqlType {
  static constexpr int kMax = -1;  // length of (max)
  static constexpr int kMaxPrecision = Decimal::kMaxPrecision;

  TypeKind kind = TypeKind::kNull;
  int length = 0;     // characters of a text type, bytes of a binary one; kMax for (max)
  int precision = 0;  // of kDecimal: 1 to 38
  int scale = 0;      // of kDecimal: 0 to precision

  friend bool operator==(const SqlType&, const SqlType&) = default;
};

}  // namespace tavcc::sql
