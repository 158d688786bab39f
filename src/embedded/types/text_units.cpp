// UTF-8 and UTF-16 lengths.
#include "embedded/types/text_units.h"

namespace tavcc::sql {
namespace {

constexpr unsigned char At(std::string_view text, size_t at) {
  return static_cast<unsigned char>(text[at]);
}

constexpr bool IsContinuation(unsigned char byte) {
  return (byte & 0xc0) == 0x80;
}

size_t SizeByFirst(unsigned char first) {
  if (first < 0xc2) return 1;
  if (first < 0xe0) return 2;
  if (first < 0xf0) return 3;
  return first < 0xf5 ? 4 : 1;
}

}  // namespace

DecodedCharacter DecodeAt(std::string_view text, size_t at) {
  const unsigned char first = At(text, at);
  const size_t size = SizeByFirst(first);
  if (size == 1 || at + size > text.size()) return {first, 1};
  uint32_t code = first & (0xffU >> (size + 1));
  for (size_t i = 1; i < size; ++i) {
    const unsigned char next = At(text, at + i);
    if (!IsContinuation(next)) return {first, 1};
    code = code << 6 | (next & 0x3fU);
  }
  return {code, size};
}

void AppendCharacter(uint32_t code, std::string* out) {
  const auto add = [out](uint32_t byte) { out->push_back(static_cast<char>(byte)); };
  if (code < 0x80) {
    add(code);
  } else if (code < 0x800) {
    add(0xc0 | code >> 6);
    add(0x80 | (code & 0x3f));
  } else if (code < 0x10000) {
    add(0xe0 | code >> 12);
    add(0x80 | (code >> 6 & 0x3f));
    add(0x80 | (code & 0x3f));
  } else {
    add(0xf0 | code >> 18);
    add(0x80 | (code >> 12 & 0x3f));
    add(0x80 | (code >> 6 & 0x3f));
    add(0x80 | (code & 0x3f));
  }
}

size_t CountUnits(std::string_view text) {
  size_t units = 0;
  for (size_t at = 0; at < text.size();) {
    if (At(text, at) < 0x80) {
      ++units;
      ++at;
      continue;
    }
    const size_t size = DecodeAt(text, at).size;
    units += size == 4 ? 2 : 1;
    at += size;
  }
  return units;
}

size_t ByteOfUnit(std::string_view text, size_t unit) {
  size_t at = 0;
  for (size_t units = 0; at < text.size() && units < unit;) {
    const size_t size = DecodeAt(text, at).size;
    units += size == 4 ? 2 : 1;
    if (units > unit) break;
    at += size;
  }
  return at;
}

std::string_view TrimTrailingBlanks(std::string_view text) {
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

std::string_view TrimBlanks(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  return TrimTrailingBlanks(text);
}

}  // namespace tavcc::sql
