// An exact decimal number of up to 38 digits: sign, 128-bit coefficient, scale.
//
// No amount or quantity of the system passes through binary floating point unless a rule says so.
// The class has no 128-bit integer of the compiler's underneath, since the 32-bit server has none.
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavcc {

class Decimal {
 public:
  static constexpr int kMaxPrecision = 38;

  constexpr Decimal() = default;
  Decimal(int64_t value);  // NOLINT(google-explicit-constructor): every integer is a decimal

  // coefficient * 10^-scale; `scale` is 0 to 38.
  static Decimal FromScaled(int64_t coefficient, int scale);

  // Reads "[blanks][+-]digits[.digits][blanks]"; nothing when the text is anything else or has more
  // than 38 significant digits. The scale is the number of digits after the point ("1.50" has 2).
  static std::optional<Decimal> Parse(std::string_view text);

  // The decimal with at most 15 significant digits nearest to `value`, without trailing zeros.
  // Nothing for an infinity, a NaN, or a magnitude of 1e38 and more; what lies below 1e-38 is 0.
  static std::optional<Decimal> FromDouble(double value);

  int scale() const { return scale_; }
  bool IsNegative() const { return negative_; }
  bool IsZero() const { return (limbs_[0] | limbs_[1] | limbs_[2] | limbs_[3]) == 0; }
  // Number of digits of the coefficient, at least 1: 3 for 1.50, 1 for 0.
  int Digits() const;

  // The coefficient when it fits in 64 bits, e.g. -150 for -1.50.
  std::optional<int64_t> Coefficient64() const;

  Decimal Negated() const;

  // The same value at another scale. Going down rounds half away from zero, as SQL Server does when
  // it converts. Nothing when the result needs more than 38 digits.
  std::optional<Decimal> Rescaled(int scale) const;

  // As Rescaled, but drops the excess digits instead of rounding them.
  std::optional<Decimal> Truncated(int scale) const;

  // Rounded half to even at `digits` decimal places (0 to 38), as automation's Round does.
  Decimal RoundedHalfEven(int digits) const;

  // The same value with no trailing zero after the point: 1.50 becomes 1.5, 2.00 becomes 2.
  Decimal Normalized() const;

  // Exact results. Nothing when the result does not fit: a sum or a product keeps the full scale
  // while it fits in 38 digits, otherwise it loses decimals (rounded half away from zero) before it
  // is given up.
  static std::optional<Decimal> Add(const Decimal& a, const Decimal& b);
  static std::optional<Decimal> Subtract(const Decimal& a, const Decimal& b);
  static std::optional<Decimal> Multiply(const Decimal& a, const Decimal& b);
  // a / b at `scale` decimals; the excess is dropped, as SQL Server does. `b` must not be 0.
  static std::optional<Decimal> Divide(const Decimal& a, const Decimal& b, int scale);

  // Plain decimal text with exactly scale() decimals: "-1.50". Never an exponent.
  std::string ToText() const;
  double ToDouble() const;

  // Values are compared, not representations: 1.5 equals 1.50.
  friend std::strong_ordering operator<=>(const Decimal& a, const Decimal& b);
  friend bool operator==(const Decimal& a, const Decimal& b) { return (a <=> b) == 0; }

  // The coefficient's magnitude, least significant 32 bits first (for borders that speak binary).
  const std::array<uint32_t, 4>& limbs() const { return limbs_; }
  // Nothing when the magnitude has more than 38 digits.
  static std::optional<Decimal> FromLimbs(const std::array<uint32_t, 4>& limbs, bool negative,
                                          int scale);

 private:
  std::array<uint32_t, 4> limbs_{};
  uint8_t scale_ = 0;
  bool negative_ = false;  // never set for zero
};

}  // namespace tavcc
