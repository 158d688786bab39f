// Reading and writing numbers.
#include "embedded/types/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "embedded/types/text_units.h"
#include "foundation/text.h"

namespace tavcc::sql {
namespace {

// Takes a sign off the front; true for a minus.
bool TakeSign(std::string_view* text) {
  if (text->empty() || (text->front() != '-' && text->front() != '+')) return false;
  const bool negative = text->front() == '-';
  text->remove_prefix(1);
  return negative;
}

// Digits with at most one point; `scale` counts those behind it.
bool SplitAtPoint(std::string_view text, std::string* digits, int* scale) {
  bool point = false;
  bool any = false;
  *scale = 0;
  // More than any type keeps, and rounding looks at one digit more only.
  constexpr int kMostDecimals = 45;
  for (const char c : text) {
    if (c == '.' && !point) {
      point = true;
      continue;
    }
    if (!IsDigit(c)) return false;
    any = true;
    if (point && *scale == kMostDecimals) continue;
    if (point) ++*scale;
    if (c != '0' || !digits->empty()) digits->push_back(c);
  }
  return any;
}

NumberReading ReadDigits(std::string_view text, bool negative, WideInteger* coefficient,
                         int* scale) {
  std::string digits;
  if (!SplitAtPoint(text, &digits, scale)) return NumberReading::kNoNumber;
  if (static_cast<int>(digits.size()) - *scale > 38) return NumberReading::kOverflow;
  *coefficient = WideInteger::FromDigits(digits, negative);
  return NumberReading::kOk;
}

}  // namespace

NumberReading ReadWhole(std::string_view text, int64_t* value) {
  text = TrimBlanks(text);
  const bool negative = TakeSign(&text);
  text = TrimBlanks(text);
  uint64_t magnitude = 0;
  const uint64_t limit = negative ? uint64_t{1} << 63 : (uint64_t{1} << 63) - 1;
  bool overflow = false;
  for (const char c : text) {
    if (!IsDigit(c)) return NumberReading::kNoNumber;
    const auto digit = static_cast<uint64_t>(c - '0');
    if (magnitude > (limit - digit) / 10) overflow = true;
    magnitude = magnitude * 10 + digit;
  }
  if (overflow) return NumberReading::kOverflow;
  *value = static_cast<int64_t>(negative ? 0 - magnitude : magnitude);
  return NumberReading::kOk;
}

NumberReading ReadDecimal(std::string_view text, WideInteger* coefficient, int* scale) {
  text = TrimBlanks(text);
  const bool negative = TakeSign(&text);
  return ReadDigits(text, negative, coefficient, scale);
}

NumberReading ReadMoney(std::string_view text, WideInteger* coefficient, int* scale) {
  text = TrimBlanks(text);
  bool negative = TakeSign(&text);
  for (const std::string_view sign : {"$", "¥", "￥", "£", "€"}) {
    if (!text.starts_with(sign)) continue;
    text = TrimBlanks(text.substr(sign.size()));
    negative = TakeSign(&text) || negative;
    break;
  }
  std::string plain(text);
  std::erase(plain, ',');
  if (plain.empty()) plain = "0";
  return ReadDigits(plain, negative, coefficient, scale);
}

NumberReading ReadFloat(std::string_view text, double* value) {
  text = TrimBlanks(text);
  *value = 0;
  if (text.empty()) return NumberReading::kOk;
  if (text.front() == '+') text.remove_prefix(1);
  // from_chars also knows names and signs that are none of the server's.
  const bool plain = !text.empty() && std::ranges::all_of(text, [](char c) {
    return IsDigit(c) || c == '.' || c == '-' || c == '+' || c == 'e' || c == 'E';
  });
  if (!plain) return NumberReading::kNoNumber;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), *value);
  if (error == std::errc::invalid_argument || end != text.data() + text.size()) {
    return NumberReading::kNoNumber;
  }
  if (error != std::errc::result_out_of_range) return NumberReading::kOk;
  const double nearest = std::strtod(std::string(text).c_str(), nullptr);
  if (std::isinf(nearest)) return NumberReading::kOverflow;
  *value = nearest;
  return NumberReading::kOk;
}

void DecimalOfFloat(double value, WideInteger* coefficient, int* scale) {
  char buffer[40];
  std::snprintf(buffer, sizeof buffer, "%.16e", std::fabs(value));
  const std::string_view text(buffer);
  std::string digits(1, text[0]);
  digits.append(text.substr(2, 16));
  const int exponent = std::atoi(buffer + text.find('e') + 1);
  *coefficient = WideInteger::FromDigits(digits, value < 0);
  *scale = 16 - exponent;
}

void WriteFloat(double value, int style, std::string* out) {
  char buffer[64];
  const char* format = "%.6g";
  if (style == 1) format = "%.7e";
  if (style == 2) format = "%.15e";
  if (style == 3) format = "%.16e";
  std::snprintf(buffer, sizeof buffer, format, value == 0 ? 0.0 : value);
  std::string text(buffer);
  // The server writes exponents with three digits: 1e+006.
  if (const size_t e = text.find('e'); e != std::string::npos) {
    while (text.size() - e - 2 < 3) text.insert(e + 2, 1, '0');
  }
  out->append(text);
}

}  // namespace tavcc::sql
