// Splicing of statements and messages.
#pragma once

#include <concepts>
#include <string>
#include <string_view>

#include "foundation/decimal.h"

namespace tavcc {

namespace internal {
void Append(std::string& out, std::string_view text);
void Append(std::string& out, int32_t number);
void Append(std::string& out, const Decimal& number);
void Append(std::string& out, double number);
inline size_t SizeHint(std::string_view text) {
  return text.size();
}
inline size_t SizeHint(int32_t) {
  return 11;
}
inline size_t SizeHint(const Decimal&) {
  return 20;
}
inline size_t SizeHint(double) {
  return 20;
}
}  // namespace internal

// The one joiner. Texts go in as they are, without quoting; numbers as plain decimal text: no
// exponent, no grouping, "." as the point, no trailing zeros after it, doubles with at most 15
// significant digits.
//
//   Cat("Select FStatus From ", table, " where FID=", 7) == "Select FStatus From T where FID=7"
template <class... Pieces>
std::string Cat(const Pieces&... pieces) {
  std::string out;
  out.reserve((size_t{0} + ... + internal::SizeHint(pieces)));
  (internal::Append(out, pieces), ...);
  return out;
}

// Adds the pieces to `out`, as Cat joins them.
template <class... Pieces>
void CatTo(std::string& out, const Pieces&... pieces) {
  (internal::Append(out, pieces), ...);
}

constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Without the blanks (U+0020 only, as automation's Trim) at both ends.
std::string_view Trim(std::string_view text);
// ASCII letters folded; other bytes as they are.
std::string UpperCase(std::string_view text);
std::string LowerCase(std::string_view text);
bool EqualsIgnoringCase(std::string_view a, std::string_view b);

}  // namespace tavcc
