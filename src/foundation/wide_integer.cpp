// Schoolbook arithmetic on 32-bit limbs; division after Knuth's algorithm D.
#include "foundation/wide_integer.h"

#include <algorithm>
#include <bit>

namespace tavcc {
namespace {

constexpr uint32_t kChunk = 1000000000;  // the largest power of ten in a limb
constexpr int kChunkDigits = 9;

}  // namespace

WideInteger WideInteger::FromInt64(int64_t value) {
  WideInteger result;
  result.negative_ = value < 0;
  const uint64_t magnitude =
      value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
  result.limbs_[0] = static_cast<uint32_t>(magnitude);
  result.limbs_[1] = static_cast<uint32_t>(magnitude >> 32);
  result.used_ = 2;
  result.Trim();
  return result;
}

WideInteger WideInteger::FromLimbs(const Limbs& limbs) {
  WideInteger result;
  std::ranges::copy(limbs, result.limbs_.begin());
  result.used_ = static_cast<int>(limbs.size());
  result.Trim();
  return result;
}

std::optional<WideInteger::Limbs> WideInteger::ToLimbs() const {
  Limbs limbs{};
  if (used_ > static_cast<int>(limbs.size())) return std::nullopt;
  std::copy_n(limbs_.begin(), limbs.size(), limbs.begin());
  return limbs;
}

WideInteger WideInteger::FromDigits(std::string_view digits, bool negative) {
  WideInteger result;
  while (!digits.empty()) {
    const std::string_view chunk = digits.substr(0, kChunkDigits);
    digits.remove_prefix(chunk.size());
    uint32_t value = 0;
    for (const char c : chunk) value = value * 10 + static_cast<uint32_t>(c - '0');
    result.MultiplyBy(static_cast<uint32_t>(kPowersOf10[chunk.size()]));
    result.AddMagnitude(FromInt64(value));
  }
  result.negative_ = negative && !result.IsZero();
  return result;
}

std::optional<int64_t> WideInteger::ToInt64() const {
  if (used_ > 2) return std::nullopt;
  const uint64_t magnitude = uint64_t{limbs_[1]} << 32 | limbs_[0];
  const uint64_t limit = uint64_t{1} << 63;
  if (negative_) {
    if (magnitude > limit) return std::nullopt;
    return static_cast<int64_t>(0 - magnitude);
  }
  if (magnitude >= limit) return std::nullopt;
  return static_cast<int64_t>(magnitude);
}

double WideInteger::ToDouble() const {
  return std::stod((negative_ ? "-" : "") + Digits());
}

std::string WideInteger::Digits() const {
  if (IsZero()) return "0";
  std::string text;
  for (WideInteger rest = *this; !rest.IsZero();) {
    uint32_t chunk = rest.DivideBy(kChunk);
    for (int i = 0; i < kChunkDigits && (chunk != 0 || !rest.IsZero()); ++i, chunk /= 10) {
      text.push_back(static_cast<char>('0' + chunk % 10));
    }
  }
  std::ranges::reverse(text);
  return text;
}

bool WideInteger::FitsDigits(int digits) const {
  static const auto kPowers = [] {
    std::array<WideInteger, 77> powers;
    powers[0] = FromInt64(1);
    for (size_t i = 1; i < powers.size(); ++i) {
      powers[i] = powers[i - 1];
      powers[i].MultiplyBy(10);
    }
    return powers;
  }();
  const auto index = std::clamp<size_t>(static_cast<size_t>(digits), 0, kPowers.size() - 1);
  return CompareMagnitude(*this, kPowers[index]) < 0;
}

int WideInteger::DigitCount() const {
  int digits = 0;
  WideInteger rest = *this;
  for (; rest.used_ > 1; digits += kChunkDigits) rest.DivideBy(kChunk);
  for (uint32_t limb = rest.limbs_[0]; limb != 0; limb /= 10) ++digits;
  return std::max(digits, 1);
}

void WideInteger::Trim() {
  while (used_ > 0 && limbs_[static_cast<size_t>(used_) - 1] == 0) --used_;
  if (used_ == 0) negative_ = false;
}

int WideInteger::CompareMagnitude(const WideInteger& a, const WideInteger& b) {
  if (a.used_ != b.used_) return a.used_ < b.used_ ? -1 : 1;
  for (size_t i = static_cast<size_t>(a.used_); i-- > 0;) {
    if (a.limbs_[i] != b.limbs_[i]) return a.limbs_[i] < b.limbs_[i] ? -1 : 1;
  }
  return 0;
}

int WideInteger::Compare(const WideInteger& a, const WideInteger& b) {
  if (a.negative_ != b.negative_) return a.negative_ ? -1 : 1;
  const int magnitude = CompareMagnitude(a, b);
  return a.negative_ ? -magnitude : magnitude;
}

void WideInteger::AddMagnitude(const WideInteger& other) {
  uint64_t carry = 0;
  const int used = std::min(std::max(used_, other.used_) + 1, kLimbs);
  for (size_t i = 0; i < static_cast<size_t>(used); ++i) {
    carry += uint64_t{limbs_[i]} + other.limbs_[i];
    limbs_[i] = static_cast<uint32_t>(carry);
    carry >>= 32;
  }
  used_ = used;
  Trim();
}

void WideInteger::SubtractMagnitude(const WideInteger& smaller) {
  uint64_t borrow = 0;
  for (size_t i = 0; i < static_cast<size_t>(used_); ++i) {
    const uint64_t difference = uint64_t{limbs_[i]} - smaller.limbs_[i] - borrow;
    limbs_[i] = static_cast<uint32_t>(difference);
    borrow = difference >> 63;
  }
  Trim();
}

void WideInteger::Add(const WideInteger& other) {
  if (negative_ == other.negative_ || IsZero()) {
    negative_ = other.IsZero() ? negative_ : other.negative_;
    AddMagnitude(other);
    return;
  }
  if (CompareMagnitude(*this, other) >= 0) {
    SubtractMagnitude(other);
    return;
  }
  WideInteger larger = other;
  larger.SubtractMagnitude(*this);
  *this = larger;
}

void WideInteger::AddOneAwayFromZero(bool negative) {
  WideInteger one = FromInt64(1);
  AddMagnitude(one);
  negative_ = negative;
}

void WideInteger::MultiplyBy(uint32_t factor) {
  uint64_t carry = 0;
  for (size_t i = 0; i < static_cast<size_t>(used_); ++i) {
    carry += uint64_t{limbs_[i]} * factor;
    limbs_[i] = static_cast<uint32_t>(carry);
    carry >>= 32;
  }
  if (carry != 0 && used_ < kLimbs)
    limbs_[static_cast<size_t>(used_++)] = static_cast<uint32_t>(carry);
}

uint32_t WideInteger::DivideBy(uint32_t divisor) {
  uint64_t rest = 0;
  for (size_t i = static_cast<size_t>(used_); i-- > 0;) {
    rest = rest << 32 | limbs_[i];
    limbs_[i] = static_cast<uint32_t>(rest / divisor);
    rest %= divisor;
  }
  Trim();
  return static_cast<uint32_t>(rest);
}

WideInteger WideInteger::Multiply(const WideInteger& a, const WideInteger& b) {
  WideInteger result;
  for (size_t i = 0; i < static_cast<size_t>(a.used_); ++i) {
    uint64_t carry = 0;
    size_t j = 0;
    for (; j < static_cast<size_t>(b.used_) && i + j < kLimbs; ++j) {
      carry += uint64_t{a.limbs_[i]} * b.limbs_[j] + result.limbs_[i + j];
      result.limbs_[i + j] = static_cast<uint32_t>(carry);
      carry >>= 32;
    }
    if (i + j < kLimbs) result.limbs_[i + j] = static_cast<uint32_t>(carry);
  }
  result.used_ = std::min(a.used_ + b.used_, kLimbs);
  result.negative_ = a.negative_ != b.negative_;
  result.Trim();
  return result;
}

void WideInteger::MultiplyByPowerOf10(int power) {
  for (; power >= kChunkDigits; power -= kChunkDigits) MultiplyBy(kChunk);
  if (power > 0) MultiplyBy(static_cast<uint32_t>(kPowersOf10[static_cast<size_t>(power)]));
}

void WideInteger::CutDigits(int power) {
  for (; power >= kChunkDigits && !IsZero(); power -= kChunkDigits) DivideBy(kChunk);
  if (power > 0 && !IsZero())
    DivideBy(static_cast<uint32_t>(kPowersOf10[static_cast<size_t>(power)]));
}

// Half away from zero looks at nothing but the first digit that is dropped.
void WideInteger::RoundDigits(int power) {
  if (power <= 0) return;
  const bool negative = negative_;
  CutDigits(power - 1);
  if (IsZero()) return;
  if (DivideBy(10) >= 5) AddOneAwayFromZero(negative);
}

void WideInteger::RoundDigitsHalfEven(int power) {
  if (power <= 0) return;
  const bool negative = negative_;
  const WideInteger whole = *this;
  CutDigits(power - 1);
  WideInteger cut = *this;
  cut.MultiplyByPowerOf10(power - 1);
  const bool exact = CompareMagnitude(cut, whole) == 0;
  const uint32_t last = IsZero() ? 0 : DivideBy(10);
  const bool odd = (limbs_[0] & 1) != 0;
  if (last > 5 || (last == 5 && (!exact || odd))) AddOneAwayFromZero(negative);
}

bool WideInteger::DropZero() {
  WideInteger shorter = *this;
  if (shorter.DivideBy(10) != 0) return false;
  *this = shorter;
  return true;
}

WideInteger WideInteger::DivideMagnitude(const WideInteger& a, const WideInteger& b,
                                         WideInteger* remainder) {
  const auto n = static_cast<size_t>(b.used_);
  const auto m = static_cast<size_t>(a.used_) - n;
  const int shift = std::countl_zero(b.limbs_[n - 1]);
  const auto shifted = [shift](uint32_t high, uint32_t low) {
    return shift == 0 ? high : high << shift | low >> (32 - shift);
  };
  std::array<uint32_t, kLimbs + 1> u{};
  std::array<uint32_t, kLimbs> v{};
  for (size_t i = n; i-- > 0;) v[i] = shifted(b.limbs_[i], i > 0 ? b.limbs_[i - 1] : 0);
  u[m + n] = shift == 0 ? 0 : a.limbs_[m + n - 1] >> (32 - shift);
  for (size_t i = m + n; i-- > 0;) u[i] = shifted(a.limbs_[i], i > 0 ? a.limbs_[i - 1] : 0);

  WideInteger quotient;
  for (size_t j = m + 1; j-- > 0;) {
    const uint64_t top = uint64_t{u[j + n]} << 32 | u[j + n - 1];
    uint64_t guess = top / v[n - 1];
    uint64_t rest = top % v[n - 1];
    while (guess >> 32 != 0 || (n > 1 && guess * v[n - 2] > (rest << 32 | u[j + n - 2]))) {
      --guess;
      rest += v[n - 1];
      if (rest >> 32 != 0) break;
    }
    int64_t borrow = 0;
    uint64_t carry = 0;
    for (size_t i = 0; i < n; ++i) {
      carry += guess * v[i];
      const int64_t difference =
          int64_t{u[i + j]} - static_cast<int64_t>(carry & 0xffffffffU) + borrow;
      u[i + j] = static_cast<uint32_t>(difference);
      borrow = difference >> 32;
      carry >>= 32;
    }
    const int64_t difference = int64_t{u[j + n]} - static_cast<int64_t>(carry) + borrow;
    u[j + n] = static_cast<uint32_t>(difference);
    if (difference < 0) {  // the guess was one too large
      --guess;
      uint64_t back = 0;
      for (size_t i = 0; i < n; ++i) {
        back += uint64_t{u[i + j]} + v[i];
        u[i + j] = static_cast<uint32_t>(back);
        back >>= 32;
      }
      u[j + n] += static_cast<uint32_t>(back);
    }
    quotient.limbs_[j] = static_cast<uint32_t>(guess);
  }
  quotient.used_ = static_cast<int>(m) + 1;
  quotient.Trim();
  for (size_t i = 0; i < n; ++i) {
    remainder->limbs_[i] = shift == 0 ? u[i] : u[i] >> shift | u[i + 1] << (32 - shift);
  }
  remainder->used_ = static_cast<int>(n);
  return quotient;
}

void WideInteger::Divide(const WideInteger& a, const WideInteger& b, WideInteger* quotient,
                         WideInteger* remainder) {
  WideInteger rest;
  WideInteger result;
  if (CompareMagnitude(a, b) < 0) {
    rest = a;
  } else if (b.used_ == 1) {
    result = a;
    rest = FromInt64(result.DivideBy(b.limbs_[0]));
  } else {
    result = DivideMagnitude(a, b, &rest);
  }
  result.negative_ = a.negative_ != b.negative_;
  rest.negative_ = a.negative_;
  result.Trim();
  rest.Trim();
  if (quotient != nullptr) *quotient = result;
  if (remainder != nullptr) *remainder = rest;
}

void WideInteger::ToBlob(unsigned char* bytes) const {
  const unsigned char mask = negative_ ? 0xff : 0;
  bytes[0] = negative_ ? 0 : 1;
  for (size_t i = 0; i < 16; ++i) {
    const uint32_t limb = limbs_[(15 - i) / 4];
    bytes[1 + i] = static_cast<unsigned char>((limb >> (8 * ((15 - i) % 4)) & 0xff) ^ mask);
  }
}

WideInteger WideInteger::FromBlob(const unsigned char* bytes) {
  WideInteger result;
  result.negative_ = bytes[0] == 0;
  const unsigned char mask = result.negative_ ? 0xff : 0;
  for (size_t i = 0; i < 16; ++i) {
    const auto byte = static_cast<uint32_t>(static_cast<unsigned char>(bytes[1 + i] ^ mask));
    result.limbs_[(15 - i) / 4] |= byte << (8 * ((15 - i) % 4));
  }
  result.used_ = 4;
  result.Trim();
  return result;
}

}  // namespace tavcc
