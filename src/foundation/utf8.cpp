#include "foundation/utf8.h"

#include <algorithm>

namespace tavcc {

void AppendUtf8(std::string& out, uint32_t code) {
  const auto add = [&](uint32_t byte) { out += static_cast<char>(byte); };
  if (code < 0x80) return add(code);
  if (code < 0x800) {
    add(0xC0 | code >> 6);
  } else if (code < kFirstOfTwoUnits) {
    add(0xE0 | code >> 12);
    add(0x80 | (code >> 6 & 0x3F));
  } else {
    add(0xF0 | code >> 18);
    add(0x80 | (code >> 12 & 0x3F));
    add(0x80 | (code >> 6 & 0x3F));
  }
  add(0x80 | (code & 0x3F));
}

bool IsUtf8(std::string_view text) {
  for (size_t at = 0; at < text.size();) {
    const size_t length = WholeCharacterAt(text, at).size;
    if (length == 0) return false;
    at += length;
  }
  return true;
}

std::string RepairedUtf8(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (size_t at = 0; at < text.size();) {
    const size_t length = WholeCharacterAt(text, at).size;
    if (length == 0) {
      AppendUtf8(out, kReplacementCharacter);
    } else {
      out += text.substr(at, length);
    }
    at += length == 0 ? 1 : length;
  }
  return out;
}

size_t CharacterCount(std::string_view text) {
  return static_cast<size_t>(
      std::ranges::count_if(text, [](char c) { return !IsContinuationByte(c); }));
}

}  // namespace tavcc
