// UTF-8 and UTF-16 lengths.
#include "embedded/types/text_units.h"

namespace tavcc::sql {
size_t CountUnits(std::string_view text) {
  size_t units = 0;
  for (size_t at = 0; at < text.size();) {
    if (static_cast<unsigned char>(text[at]) < 0x80) {
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
