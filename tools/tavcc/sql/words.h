// What a name in a batch is made of, for those who look for one without reading the batch.
#pragma once

#include "foundation/text.h"

namespace tavcc {

// Whether the byte may stand in a name or a variable; all beyond ASCII may.
constexpr bool IsPartOfWord(char c) {
  const bool is_letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return is_letter || IsDigit(c) || c == '_' || c == '@' || c == '#' || c == '$' ||
         static_cast<unsigned char>(c) >= 0x80;
}

}  // namespace tavcc
