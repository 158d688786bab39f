#include "foundation/decimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "foundation/wide_integer.h"

namespace tavcc {

namespace {

using Limbs = WideInteger::Limbs;

// 10^38, the first magnitude with too many digits.
constexpr Limbs kBeyond = {0x00000000, 0x098A2240, 0x5A86C47A, 0x4B3B4CA8};

WideInteger Signed(const Decimal& decimal) {
  WideInteger number = WideInteger::FromLimbs(decimal.limbs());
  if (decimal.IsNegative()) number.Negate();
  return number;
}

std::optional<Decimal> Narrow(const WideInteger& number, bool negative, int scale) {
  const std::optional<Limbs> limbs = number.ToLimbs();
  return limbs ? Decimal::FromLimbs(*limbs, negative, scale) : std::nullopt;
}

// The number as a decimal, with as many decimals as 38 digits leave room for.
std::optional<Decimal> Fit(WideInteger number, int scale) {
  const bool negative = number.IsNegative();
  int excess =
      std::max(number.DigitCount() - Decimal::kMaxPrecision, scale - Decimal::kMaxPrecision);
  if (excess > 0) {
    if (excess > scale) return std::nullopt;
    number.RoundDigits(excess);
    scale -= excess;
    // Rounding 99…9 up makes one digit more.
    if (number.DigitCount() > Decimal::kMaxPrecision) {
      if (scale == 0) return std::nullopt;
      number.RoundDigits(1);
      --scale;
    }
  }
  return Narrow(number, negative, scale);
}

// Both at the larger of their scales, which becomes `scale`.
std::pair<WideInteger, WideInteger> AtOneScale(const Decimal& a, const Decimal& b, int& scale) {
  scale = std::max(a.scale(), b.scale());
  std::pair<WideInteger, WideInteger> both(Signed(a), Signed(b));
  both.first.MultiplyByPowerOf10(scale - a.scale());
  both.second.MultiplyByPowerOf10(scale - b.scale());
  return both;
}

}  // namespace

Decimal::Decimal(int64_t value) : negative_(value < 0) {
  const uint64_t magnitude =
      negative_ ? ~static_cast<uint64_t>(value) + 1 : static_cast<uint64_t>(value);
  limbs_[0] = static_cast<uint32_t>(magnitude);
  limbs_[1] = static_cast<uint32_t>(magnitude >> 32);
}

Decimal Decimal::FromScaled(int64_t coefficient, int scale) {
  Decimal result(coefficient);
  result.scale_ = static_cast<uint8_t>(scale);
  return result;
}

std::optional<Decimal> Decimal::FromLimbs(const Limbs& limbs, bool negative, int scale) {
  if (scale < 0 || scale > kMaxPrecision) return std::nullopt;
  if (!std::lexicographical_compare(limbs.rbegin(), limbs.rend(), kBeyond.rbegin(),
                                    kBeyond.rend())) {
    return std::nullopt;
  }
  Decimal result;
  result.limbs_ = limbs;
  result.scale_ = static_cast<uint8_t>(scale);
  result.negative_ = negative && !result.IsZero();
  return result;
}

std::optional<Decimal> Decimal::Parse(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return std::nullopt;
  text = text.substr(first, text.find_last_not_of(' ') - first + 1);
  const bool negative = text[0] == '-';
  if (negative || text[0] == '+') text.remove_prefix(1);

  std::array<char, kMaxPrecision> digits{};
  int scale = 0;
  int significant = 0;
  bool digit_seen = false;
  bool point_seen = false;
  for (const char c : text) {
    if (c == '.' && !point_seen) {
      point_seen = true;
      continue;
    }
    if (c < '0' || c > '9') return std::nullopt;
    digit_seen = true;
    if (point_seen && ++scale > kMaxPrecision) return std::nullopt;
    if (significant == 0 && c == '0') continue;
    if (significant == kMaxPrecision) return std::nullopt;
    digits[static_cast<size_t>(significant++)] = c;
  }
  if (!digit_seen) return std::nullopt;
  const std::string_view number(digits.data(), static_cast<size_t>(significant));
  return Narrow(WideInteger::FromDigits(number, false), negative, scale);
}

std::optional<Decimal> Decimal::FromDouble(double value) {
  if (!std::isfinite(value)) return std::nullopt;
  constexpr int kSignificant = 15;
  char digits[40];
  const auto end = std::to_chars(digits, digits + sizeof digits, std::fabs(value),
                                 std::chars_format::scientific, kSignificant - 1)
                       .ptr;
  const char* exponent_at = std::find(digits, end, 'e');
  int exponent = 0;
  // to_chars writes "d.ddde+XX"; from_chars reads no plus sign.
  std::from_chars(exponent_at[1] == '+' ? exponent_at + 2 : exponent_at + 1, end, exponent);
  if (exponent >= kMaxPrecision) return std::nullopt;

  std::string significant(digits, static_cast<size_t>(exponent_at - digits));
  std::erase(significant, '.');
  WideInteger number = WideInteger::FromDigits(significant, false);
  int scale = kSignificant - 1 - exponent;
  if (scale < 0) {
    number.MultiplyByPowerOf10(-scale);
    scale = 0;
  }
  if (scale > kMaxPrecision) {
    const int excess = scale - kMaxPrecision;
    if (excess > kSignificant) return Decimal();
    number.RoundDigitsHalfEven(excess);
    scale = kMaxPrecision;
  }
  const auto result = Narrow(number, value < 0, scale);
  if (!result) return std::nullopt;
  return result->Normalized();
}

int Decimal::Digits() const {
  return WideInteger::FromLimbs(limbs_).DigitCount();
}

std::optional<int64_t> Decimal::Coefficient64() const {
  if ((limbs_[2] | limbs_[3]) != 0) return std::nullopt;
  const uint64_t magnitude = (uint64_t{limbs_[1]} << 32) | limbs_[0];
  constexpr uint64_t kMostNegative = uint64_t{1} << 63;
  if (magnitude > kMostNegative || (magnitude == kMostNegative && !negative_)) return std::nullopt;
  return static_cast<int64_t>(negative_ ? ~magnitude + 1 : magnitude);
}

Decimal Decimal::Negated() const {
  Decimal result = *this;
  result.negative_ = !negative_ && !IsZero();
  return result;
}

std::optional<Decimal> Decimal::Rescaled(int scale) const {
  if (scale == scale_) return *this;
  WideInteger number = WideInteger::FromLimbs(limbs_);
  if (scale > scale_) {
    number.MultiplyByPowerOf10(scale - scale_);
  } else {
    number.RoundDigits(scale_ - scale);
  }
  return Narrow(number, negative_, scale);
}

std::optional<Decimal> Decimal::Truncated(int scale) const {
  if (scale >= scale_) return Rescaled(scale);
  WideInteger number = WideInteger::FromLimbs(limbs_);
  number.CutDigits(scale_ - scale);
  return Narrow(number, negative_, scale);
}

Decimal Decimal::RoundedHalfEven(int digits) const {
  if (digits >= scale_) return *this;
  WideInteger number = WideInteger::FromLimbs(limbs_);
  number.RoundDigitsHalfEven(scale_ - digits);
  return *Narrow(number, negative_, digits);  // never more digits than before
}

Decimal Decimal::Normalized() const {
  WideInteger number = WideInteger::FromLimbs(limbs_);
  int scale = scale_;
  while (scale > 0 && number.DropZero()) --scale;
  return *Narrow(number, negative_, scale);
}

std::optional<Decimal> Decimal::Add(const Decimal& a, const Decimal& b) {
  int scale = 0;
  auto [sum, other] = AtOneScale(a, b, scale);
  sum.Add(other);
  return Fit(sum, scale);
}

std::optional<Decimal> Decimal::Subtract(const Decimal& a, const Decimal& b) {
  return Add(a, b.Negated());
}

std::optional<Decimal> Decimal::Multiply(const Decimal& a, const Decimal& b) {
  return Fit(WideInteger::Multiply(Signed(a), Signed(b)), a.scale_ + b.scale_);
}

std::optional<Decimal> Decimal::Divide(const Decimal& a, const Decimal& b, int scale) {
  WideInteger dividend = Signed(a);
  const int shift = scale + b.scale_ - a.scale_;
  if (shift >= 0) {
    dividend.MultiplyByPowerOf10(shift);
  } else {
    // Dropping digits first loses nothing that the whole quotient would show.
    dividend.CutDigits(-shift);
  }
  WideInteger quotient;
  WideInteger::Divide(dividend, Signed(b), &quotient, nullptr);
  return Narrow(quotient, quotient.IsNegative(), scale);
}

std::string Decimal::ToText() const {
  std::string digits = WideInteger::FromLimbs(limbs_).Digits();
  // One digit at least before the point.
  const auto least = static_cast<size_t>(scale_) + 1;
  if (digits.size() < least) digits.insert(0, least - digits.size(), '0');
  if (scale_ > 0) digits.insert(digits.size() - scale_, 1, '.');
  if (negative_) digits.insert(0, 1, '-');
  return digits;
}

double Decimal::ToDouble() const {
  const std::string text = ToText();
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::strong_ordering operator<=>(const Decimal& a, const Decimal& b) {
  int scale = 0;
  const auto [x, y] = AtOneScale(a, b, scale);
  return WideInteger::Compare(x, y) <=> 0;
}

}  // namespace tavcc
