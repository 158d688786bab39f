// Decimal arithmetic; see the header for the rules.
#include "embedded/types/decimal_math.h"

#include <algorithm>
#include <limits>

#include "embedded/types/type_rules.h"

namespace tavcc::sql {
namespace {

DecimalStatus Finish(WideInteger value, int scale, const SqlType& result, WideInteger* out) {
  Rescale(&value, scale, StoredScale(result));
  if (!FitsScaled(value, result)) return DecimalStatus::kOverflow;
  *out = value;
  return DecimalStatus::kOk;
}

// Brings both to the larger scale, which is returned.
int Align(WideInteger* a, int scale_a, WideInteger* b, int scale_b) {
  const int scale = std::max(scale_a, scale_b);
  a->MultiplyByPowerOf10(scale - scale_a);
  b->MultiplyByPowerOf10(scale - scale_b);
  return scale;
}

}  // namespace

void Rescale(WideInteger* value, int from_scale, int to_scale) {
  if (to_scale >= from_scale) {
    value->MultiplyByPowerOf10(to_scale - from_scale);
  } else {
    value->RoundDigits(from_scale - to_scale);
  }
}

bool FitsScaled(const WideInteger& coefficient, const SqlType& type) {
  if (type.kind == TypeKind::kDecimal) return coefficient.FitsDigits(type.precision);
  const auto value = coefficient.ToInt64();
  if (!value || type.kind == TypeKind::kMoney) return value.has_value();
  return *value >= std::numeric_limits<int32_t>::min() &&
         *value <= std::numeric_limits<int32_t>::max();
}

DecimalStatus AddDecimals(WideInteger a, int scale_a, WideInteger b, int scale_b,
                          const SqlType& result, WideInteger* out) {
  const int scale = Align(&a, scale_a, &b, scale_b);
  a.Add(b);
  return Finish(a, scale, result, out);
}

DecimalStatus SubtractDecimals(WideInteger a, int scale_a, WideInteger b, int scale_b,
                               const SqlType& result, WideInteger* out) {
  b.Negate();
  return AddDecimals(a, scale_a, b, scale_b, result, out);
}

DecimalStatus MultiplyDecimals(WideInteger a, int scale_a, WideInteger b, int scale_b,
                               const SqlType& result, WideInteger* out) {
  return Finish(WideInteger::Multiply(a, b), scale_a + scale_b, result, out);
}

DecimalStatus DivideDecimals(WideInteger a, int scale_a, WideInteger b, int scale_b,
                             const SqlType& result, WideInteger* out) {
  if (b.IsZero()) return DecimalStatus::kDivideByZero;
  const int power = StoredScale(result) + scale_b - scale_a;
  a.MultiplyByPowerOf10(std::max(power, 0));
  b.MultiplyByPowerOf10(std::max(-power, 0));
  WideInteger quotient;
  WideInteger::Divide(a, b, &quotient, nullptr);
  return Finish(quotient, StoredScale(result), result, out);
}

DecimalStatus RemainderOfDecimals(WideInteger a, int scale_a, WideInteger b, int scale_b,
                                  const SqlType& result, WideInteger* out) {
  if (b.IsZero()) return DecimalStatus::kDivideByZero;
  const int scale = Align(&a, scale_a, &b, scale_b);
  WideInteger remainder;
  WideInteger::Divide(a, b, nullptr, &remainder);
  return Finish(remainder, scale, result, out);
}

int CompareDecimals(WideInteger a, int scale_a, WideInteger b, int scale_b) {
  Align(&a, scale_a, &b, scale_b);
  return WideInteger::Compare(a, b);
}

std::string DecimalText(const WideInteger& coefficient, int scale) {
  std::string digits = coefficient.Digits();
  if (digits.size() <= static_cast<size_t>(scale)) {
    digits.insert(0, static_cast<size_t>(scale) + 1 - digits.size(), '0');
  }
  if (scale > 0) digits.insert(digits.size() - static_cast<size_t>(scale), 1, '.');
  if (coefficient.IsNegative()) digits.insert(0, 1, '-');
  return digits;
}

}  // namespace tavcc::sql
