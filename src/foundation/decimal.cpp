#include "foundation/decimal.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>

namespace tavcc {

namespace {

using Limbs = std::array<uint32_t, 4>;

// Room for the widest intermediate: a dividend of 38 digits shifted left by 76.
using Wide = std::array<uint32_t, 13>;

constexpr std::array<uint32_t, 10> kSmallPowers = {
    1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};
constexpr int kChunk = 9;  // digits of the largest power of ten in one limb

// 10^38, the first magnitude with too many digits.
constexpr Limbs kBeyond = {0x00000000, 0x098A2240, 0x5A86C47A, 0x4B3B4CA8};

template <size_t N>
size_t UsedLimbs(const std::array<uint32_t, N>& number) {
  size_t used = N;
  while (used > 0 && number[used - 1] == 0) --used;
  return used;
}

Wide Widen(const Limbs& limbs) {
  Wide wide{};
  std::copy(limbs.begin(), limbs.end(), wide.begin());
  return wide;
}

void MultiplySmall(Wide& number, uint32_t factor, uint32_t addend = 0) {
  uint64_t carry = addend;
  for (uint32_t& limb : number) {
    const uint64_t product = uint64_t{limb} * factor + carry;
    limb = static_cast<uint32_t>(product);
    carry = product >> 32;
  }
}

// Divides in place and returns the remainder.
uint32_t DivideSmall(Wide& number, uint32_t divisor) {
  uint64_t remainder = 0;
  for (size_t i = number.size(); i-- > 0;) {
    const uint64_t part = (remainder << 32) | number[i];
    number[i] = static_cast<uint32_t>(part / divisor);
    remainder = part % divisor;
  }
  return static_cast<uint32_t>(remainder);
}

void ShiftUp(Wide& number, int digits) {
  for (; digits > kChunk; digits -= kChunk) MultiplySmall(number, kSmallPowers[kChunk]);
  MultiplySmall(number, kSmallPowers[static_cast<size_t>(digits)]);
}

// Drops the last `digits` digits and returns whether any of them was not 0.
bool ShiftDown(Wide& number, int digits) {
  bool inexact = false;
  for (; digits > kChunk; digits -= kChunk) {
    inexact |= DivideSmall(number, kSmallPowers[kChunk]) != 0;
  }
  inexact |= DivideSmall(number, kSmallPowers[static_cast<size_t>(digits)]) != 0;
  return inexact;
}

enum class Rounding { kHalfAway, kHalfEven, kTruncate };

void RoundDown(Wide& number, int digits, Rounding rounding) {
  if (digits == 0) return;
  const bool rest = ShiftDown(number, digits - 1);
  const uint32_t last = DivideSmall(number, 10);
  if (rounding == Rounding::kTruncate) return;
  const bool tie = last == 5 && !rest;
  const bool up = rounding == Rounding::kHalfEven && tie ? (number[0] & 1) != 0 : last >= 5;
  if (up) MultiplySmall(number, 1, 1);
}

int CountDigits(Wide number) {
  int digits = 0;
  while (UsedLimbs(number) > 1) {
    DivideSmall(number, kSmallPowers[kChunk]);
    digits += kChunk;
  }
  for (uint32_t rest = number[0]; rest != 0; rest /= 10) ++digits;
  return std::max(digits, 1);
}

int Compare(const Wide& a, const Wide& b) {
  for (size_t i = a.size(); i-- > 0;) {
    if (a[i] != b[i]) return a[i] < b[i] ? -1 : 1;
  }
  return 0;
}

Wide Add(const Wide& a, const Wide& b) {
  Wide sum{};
  uint64_t carry = 0;
  for (size_t i = 0; i < sum.size(); ++i) {
    carry += uint64_t{a[i]} + b[i];
    sum[i] = static_cast<uint32_t>(carry);
    carry >>= 32;
  }
  return sum;
}

// a - b; a must not be the smaller.
Wide Subtract(const Wide& a, const Wide& b) {
  Wide difference{};
  int64_t borrow = 0;
  for (size_t i = 0; i < difference.size(); ++i) {
    const int64_t part = int64_t{a[i]} - b[i] + borrow;
    difference[i] = static_cast<uint32_t>(part);
    borrow = part < 0 ? -1 : 0;
  }
  return difference;
}

Wide MultiplyWide(const Limbs& a, const Limbs& b) {
  Wide product{};
  for (size_t i = 0; i < a.size(); ++i) {
    uint64_t carry = 0;
    for (size_t j = 0; j < b.size(); ++j) {
      carry += uint64_t{a[i]} * b[j] + product[i + j];
      product[i + j] = static_cast<uint32_t>(carry);
      carry >>= 32;
    }
    product[i + b.size()] = static_cast<uint32_t>(carry);
  }
  return product;
}

template <size_t N>
void ShiftLeftBits(std::array<uint32_t, N>& number, int bits) {
  if (bits == 0) return;
  for (size_t i = N; i-- > 0;) {
    const uint32_t low = i == 0 ? 0 : number[i - 1] >> (32 - bits);
    number[i] = (number[i] << bits) | low;
  }
}

// Whole part of a / b by Knuth's algorithm D (The Art of Computer Programming, 4.3.1).
Wide DivideWide(Wide a, Limbs b) {
  const size_t n = UsedLimbs(b);
  if (n == 1) {
    DivideSmall(a, b[0]);
    return a;
  }
  const int shift = std::countl_zero(b[n - 1]);
  ShiftLeftBits(b, shift);
  ShiftLeftBits(a, shift);  // the top limb is free: no intermediate fills all of them
  Wide quotient{};
  for (size_t j = a.size() - n; j-- > 0;) {
    const uint64_t top = (uint64_t{a[j + n]} << 32) | a[j + n - 1];
    uint64_t estimate = top / b[n - 1];
    uint64_t rest = top % b[n - 1];
    while (estimate >> 32 != 0 || estimate * b[n - 2] > ((rest << 32) | a[j + n - 2])) {
      --estimate;
      rest += b[n - 1];
      if (rest >> 32 != 0) break;
    }
    int64_t borrow = 0;
    uint64_t carry = 0;
    for (size_t i = 0; i < n; ++i) {
      carry += estimate * b[i];
      const int64_t part = int64_t{a[i + j]} - static_cast<uint32_t>(carry) + borrow;
      a[i + j] = static_cast<uint32_t>(part);
      borrow = part < 0 ? -1 : 0;
      carry >>= 32;
    }
    const int64_t part = int64_t{a[j + n]} - static_cast<int64_t>(carry) + borrow;
    a[j + n] = static_cast<uint32_t>(part);
    if (part < 0) {  // the estimate was one too large
      --estimate;
      uint64_t back = 0;
      for (size_t i = 0; i < n; ++i) {
        back += uint64_t{a[i + j]} + b[i];
        a[i + j] = static_cast<uint32_t>(back);
        back >>= 32;
      }
      a[j + n] += static_cast<uint32_t>(back);
    }
    quotient[j] = static_cast<uint32_t>(estimate);
  }
  return quotient;
}

std::optional<Decimal> Narrow(const Wide& number, bool negative, int scale) {
  if (UsedLimbs(number) > 4) return std::nullopt;
  return Decimal::FromLimbs({number[0], number[1], number[2], number[3]}, negative, scale);
}

// The number as a decimal, with as many decimals as 38 digits leave room for.
std::optional<Decimal> Fit(Wide number, bool negative, int scale) {
  int excess =
      std::max(CountDigits(number) - Decimal::kMaxPrecision, scale - Decimal::kMaxPrecision);
  if (excess > 0) {
    if (excess > scale) return std::nullopt;
    RoundDown(number, excess, Rounding::kHalfAway);
    scale -= excess;
    // Rounding 99…9 up makes one digit more.
    if (CountDigits(number) > Decimal::kMaxPrecision) {
      if (scale == 0) return std::nullopt;
      RoundDown(number, 1, Rounding::kHalfAway);
      --scale;
    }
  }
  return Narrow(number, negative, scale);
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

  Wide number{};
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
    if ((significant > 0 || c != '0') && ++significant > kMaxPrecision) return std::nullopt;
    MultiplySmall(number, 10, static_cast<uint32_t>(c - '0'));
  }
  if (!digit_seen) return std::nullopt;
  return Narrow(number, negative, scale);
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

  Wide number{};
  for (const char* at = digits; at != exponent_at; ++at) {
    if (*at != '.') MultiplySmall(number, 10, static_cast<uint32_t>(*at - '0'));
  }
  int scale = kSignificant - 1 - exponent;
  if (scale < 0) {
    ShiftUp(number, -scale);
    scale = 0;
  }
  if (scale > kMaxPrecision) {
    const int excess = scale - kMaxPrecision;
    if (excess > kSignificant) return Decimal();
    RoundDown(number, excess, Rounding::kHalfEven);
    scale = kMaxPrecision;
  }
  const auto result = Narrow(number, value < 0, scale);
  if (!result) return std::nullopt;
  return result->Normalized();
}

int Decimal::Digits() const {
  return CountDigits(Widen(limbs_));
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
  Wide number = Widen(limbs_);
  if (scale > scale_) {
    ShiftUp(number, scale - scale_);
  } else {
    RoundDown(number, scale_ - scale, Rounding::kHalfAway);
  }
  return Narrow(number, negative_, scale);
}

std::optional<Decimal> Decimal::Truncated(int scale) const {
  if (scale >= scale_) return Rescaled(scale);
  Wide number = Widen(limbs_);
  RoundDown(number, scale_ - scale, Rounding::kTruncate);
  return Narrow(number, negative_, scale);
}

Decimal Decimal::RoundedHalfEven(int digits) const {
  if (digits >= scale_) return *this;
  Wide number = Widen(limbs_);
  RoundDown(number, scale_ - digits, Rounding::kHalfEven);
  return *Narrow(number, negative_, digits);  // never more digits than before
}

Decimal Decimal::Normalized() const {
  Wide number = Widen(limbs_);
  int scale = scale_;
  while (scale > 0) {
    Wide shorter = number;
    if (DivideSmall(shorter, 10) != 0) break;
    number = shorter;
    --scale;
  }
  return *Narrow(number, negative_, scale);
}

std::optional<Decimal> Decimal::Add(const Decimal& a, const Decimal& b) {
  const int scale = std::max(a.scale_, b.scale_);
  Wide x = Widen(a.limbs_);
  Wide y = Widen(b.limbs_);
  ShiftUp(x, scale - a.scale_);
  ShiftUp(y, scale - b.scale_);
  if (a.negative_ == b.negative_) return Fit(tavcc::Add(x, y), a.negative_, scale);
  if (Compare(x, y) >= 0) return Fit(tavcc::Subtract(x, y), a.negative_, scale);
  return Fit(tavcc::Subtract(y, x), b.negative_, scale);
}

std::optional<Decimal> Decimal::Subtract(const Decimal& a, const Decimal& b) {
  return Add(a, b.Negated());
}

std::optional<Decimal> Decimal::Multiply(const Decimal& a, const Decimal& b) {
  return Fit(MultiplyWide(a.limbs_, b.limbs_), a.negative_ != b.negative_, a.scale_ + b.scale_);
}

std::optional<Decimal> Decimal::Divide(const Decimal& a, const Decimal& b, int scale) {
  Wide dividend = Widen(a.limbs_);
  const int shift = scale + b.scale_ - a.scale_;
  if (shift >= 0) {
    ShiftUp(dividend, shift);
  } else {
    // Dropping digits first loses nothing that the whole quotient would show.
    ShiftDown(dividend, -shift);
  }
  return Narrow(DivideWide(dividend, b.limbs_), a.negative_ != b.negative_, scale);
}

std::string Decimal::ToText() const {
  std::string digits;
  Wide number = Widen(limbs_);
  while (UsedLimbs(number) > 0) {
    uint32_t chunk = DivideSmall(number, kSmallPowers[kChunk]);
    for (int i = 0; i < kChunk; ++i, chunk /= 10) {
      digits += static_cast<char>('0' + chunk % 10);
    }
  }
  while (digits.size() > 1 && digits.back() == '0') digits.pop_back();
  // One digit at least before the point.
  const auto least = static_cast<size_t>(scale_) + 1;
  if (digits.size() < least) digits.append(least - digits.size(), '0');
  if (scale_ > 0) digits.insert(scale_, 1, '.');
  if (negative_) digits += '-';
  std::reverse(digits.begin(), digits.end());
  return digits;
}

double Decimal::ToDouble() const {
  const std::string text = ToText();
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::strong_ordering operator<=>(const Decimal& a, const Decimal& b) {
  if (a.negative_ != b.negative_) {
    return a.negative_ ? std::strong_ordering::less : std::strong_ordering::greater;
  }
  const int scale = std::max(a.scale_, b.scale_);
  Wide x = Widen(a.limbs_);
  Wide y = Widen(b.limbs_);
  ShiftUp(x, scale - a.scale_);
  ShiftUp(y, scale - b.scale_);
  const int order = a.negative_ ? Compare(y, x) : Compare(x, y);
  return order <=> 0;
}

}  // namespace tavcc
