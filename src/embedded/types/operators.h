// The operators of values, as the rules of types name them.
#pragma once

#include <cstdint>

namespace tavcc::sql {

enum class UnaryOperator : uint8_t { kPlus, kMinus, kBitNot };

enum class BinaryOperator : uint8_t {
  kAdd,
  kSubtract,
  kMultiply,
  kDivide,
  kModulo,
  kBitAnd,
  kBitOr,
  kBitXor,
};

}  // namespace tavcc::sql
