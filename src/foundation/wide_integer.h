// A signed whole number of up to 115 digits: what decimal arithmetic computes in where 64 bits do
// not do. 32-bit limbs, since not every target has a 128-bit integer.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavcc {

class WideInteger {
 public:
  // 38 digits scaled up by 10^76, the most that a division needs, are 379 bits.
  static constexpr int kLimbs = 13;

  constexpr WideInteger() = default;  // 0
  static WideInteger FromInt64(int64_t value);
  // A magnitude of up to 128 bits, least significant limb first.
  using Limbs = std::array<uint32_t, 4>;
  static WideInteger FromLimbs(const Limbs& limbs);
  // The magnitude when it fits in 128 bits.
  std::optional<Limbs> ToLimbs() const;
  // Whole number in decimal digits; at most 100 of them.
  static WideInteger FromDigits(std::string_view digits, bool negative);

  bool IsZero() const { return used_ == 0; }
  bool IsNegative() const { return negative_; }
  void Negate() { negative_ = !negative_ && used_ > 0; }
  // The value when it fits in 64 bits.
  std::optional<int64_t> ToInt64() const;
  double ToDouble() const;
  // Decimal digits of the magnitude, "0" for zero.
  std::string Digits() const;

  // How many decimal digits the magnitude has, at least 1.
  int DigitCount() const;
  // Whether the magnitude is below 10^digits, `digits` being 0 to 76.
  bool FitsDigits(int digits) const;

  void Add(const WideInteger& other);
  void Subtract(WideInteger other) {
    other.Negate();
    Add(other);
  }
  static WideInteger Multiply(const WideInteger& a, const WideInteger& b);
  // Both towards zero; the remainder has the sign of `a`. `b` is not 0.
  static void Divide(const WideInteger& a, const WideInteger& b, WideInteger* quotient,
                     WideInteger* remainder);

  void MultiplyByPowerOf10(int power);
  // Drops `power` decimal digits, towards zero.
  void CutDigits(int power);
  // Drops `power` decimal digits, rounding half away from zero, or half to even.
  void RoundDigits(int power);
  void RoundDigitsHalfEven(int power);
  // Drops the last decimal digit if it is 0; false, and nothing is dropped, when it is not.
  bool DropZero();

  // -1, 0, 1.
  static int Compare(const WideInteger& a, const WideInteger& b);

  // 17 bytes, whose order is that of the numbers; the magnitude must fit in 128 bits.
  static constexpr int kBlobSize = 17;
  void ToBlob(unsigned char* bytes) const;
  static WideInteger FromBlob(const unsigned char* bytes);

 private:
  static int CompareMagnitude(const WideInteger& a, const WideInteger& b);
  void AddMagnitude(const WideInteger& other);
  void SubtractMagnitude(const WideInteger& smaller);
  void AddOneAwayFromZero(bool negative);
  void MultiplyBy(uint32_t factor);
  uint32_t DivideBy(uint32_t divisor);  // returns the remainder
  void Trim();
  static WideInteger DivideMagnitude(const WideInteger& a, const WideInteger& b,
                                     WideInteger* remainder);

  std::array<uint32_t, kLimbs> limbs_{};  // least significant first; 0 from used_ on
  int used_ = 0;
  bool negative_ = false;  // never set for zero
};

// 10^0 to 10^18.
inline constexpr std::array<int64_t, 19> kPowersOf10 = [] {
  std::array<int64_t, 19> powers{};
  int64_t power = 1;
  for (int64_t& entry : powers) {
    entry = power;
    if (&entry != &powers.back()) power *= 10;
  }
  return powers;
}();

}  // namespace tavcc
