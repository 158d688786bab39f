#include "odbc/text.h"

#include <cstdint>

namespace tavcc::odbc {
namespace {

constexpr uint32_t kReplacement = 0xFFFD;
constexpr uint32_t kFirstSupplementary = 0x10000;
constexpr uint32_t kLastCodePoint = 0x10FFFF;

bool IsHighSurrogate(uint32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
bool IsLowSurrogate(uint32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

// The code point at `at`, which moves behind it. What is no UTF-8 is one replacement per byte.
uint32_t NextCodePoint(std::string_view text, size_t& at) {
  constexpr uint32_t kLeast[] = {0, 0x80, 0x800, kFirstSupplementary};
  const auto lead = static_cast<uint8_t>(text[at++]);
  if (lead < 0x80) return lead;
  const size_t tail = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  if (lead < 0xC2 || lead > 0xF4 || text.size() - at < tail) return kReplacement;
  uint32_t point = lead & (0x3Fu >> tail);
  for (size_t i = 0; i < tail; ++i) {
    const auto byte = static_cast<uint8_t>(text[at + i]);
    if ((byte & 0xC0) != 0x80) return kReplacement;
    point = point << 6 | (byte & 0x3Fu);
  }
  const bool surrogate = IsHighSurrogate(point) || IsLowSurrogate(point);
  if (point < kLeast[tail] || point > kLastCodePoint || surrogate) return kReplacement;
  at += tail;
  return point;
}

void AppendUtf8(std::string& out, uint32_t point) {
  const auto add = [&](uint32_t byte) { out += static_cast<char>(byte); };
  if (point < 0x80) return add(point);
  if (point < 0x800) {
    add(0xC0 | point >> 6);
  } else if (point < kFirstSupplementary) {
    add(0xE0 | point >> 12);
    add(0x80 | (point >> 6 & 0x3F));
  } else {
    add(0xF0 | point >> 18);
    add(0x80 | (point >> 12 & 0x3F));
    add(0x80 | (point >> 6 & 0x3F));
  }
  add(0x80 | (point & 0x3F));
}

}  // namespace

std::vector<SQLWCHAR> ToWide(std::string_view text) {
  std::vector<SQLWCHAR> wide;
  wide.reserve(text.size());
  for (size_t at = 0; at < text.size();) {
    const uint32_t point = NextCodePoint(text, at);
    if (point < kFirstSupplementary) {
      wide.push_back(static_cast<SQLWCHAR>(point));
      continue;
    }
    const uint32_t offset = point - kFirstSupplementary;
    wide.push_back(static_cast<SQLWCHAR>(0xD800 + (offset >> 10)));
    wide.push_back(static_cast<SQLWCHAR>(0xDC00 + (offset & 0x3FF)));
  }
  return wide;
}

std::string FromWide(std::span<const SQLWCHAR> wide) {
  std::string text;
  text.reserve(wide.size());
  for (size_t at = 0; at < wide.size(); ++at) {
    const uint32_t unit = wide[at];
    if (IsHighSurrogate(unit) && at + 1 < wide.size() && IsLowSurrogate(wide[at + 1])) {
      const uint32_t low = wide[++at];
      AppendUtf8(text, kFirstSupplementary + ((unit - 0xD800) << 10) + (low - 0xDC00));
      continue;
    }
    const bool half = IsHighSurrogate(unit) || IsLowSurrogate(unit);
    AppendUtf8(text, half ? kReplacement : unit);
  }
  return text;
}

}  // namespace tavcc::odbc
