// Texts are kept as UTF-8, but the server counts UTF-16 units: how to go between the two.
//
// Bytes that are no UTF-8 count as one character each, so nothing here fails or reads past the end.
#pragma once

#include <cstddef>
#include <string_view>

#include "foundation/utf8.h"

namespace tavcc::sql {

// The character at `at`, which is inside the text.
inline Utf8Character DecodeAt(std::string_view text, size_t at) {
  const Utf8Character character = CharacterAt(text, at);
  return character.size > 0 ? character : Utf8Character{static_cast<unsigned char>(text[at]), 1};
}

// Units of the whole text.
size_t CountUnits(std::string_view text);
// The byte at which unit number `unit` (from 0) begins, or the text's size when it has fewer. A
// unit in the middle of a pair is that of the pair's character: cutting there drops the whole
// character.
size_t ByteOfUnit(std::string_view text, size_t unit);

std::string_view TrimBlanks(std::string_view text);
std::string_view TrimTrailingBlanks(std::string_view text);

}  // namespace tavcc::sql
