// Texts are kept as UTF-8, but the server counts UTF-16 units: how to go between the two.
//
// Bytes that are no UTF-8 count as one character each, so nothing here fails or reads past the end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tavcc::sql {

struct DecodedCharacter {
  uint32_t code = 0;
  size_t size = 1;  // in bytes
};

// The character at `at`, which is inside the text.
DecodedCharacter DecodeAt(std::string_view text, size_t at);
void AppendCharacter(uint32_t code, std::string* out);

// Units of the whole text.
size_t CountUnits(std::string_view text);
// The byte at which unit number `unit` (from 0) begins, or the text's size when it has fewer. A
// unit in the middle of a pair is that of the pair's character: cutting there drops the whole
// character.
size_t ByteOfUnit(std::string_view text, size_t unit);

std::string_view TrimBlanks(std::string_view text);
std::string_view TrimTrailingBlanks(std::string_view text);

}  // namespace tavcc::sql
