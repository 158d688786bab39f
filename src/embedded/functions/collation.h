// The collation of every text: case, width and trailing blanks do not count.
//
// Letters are compared as their small ones, full-width forms as the half-width ones, and everything
// else by code point; the server's own order of ideographs and punctuation is not reproduced. What
// matters to the rules is which texts are equal.
#pragma once

#include <cstdint>
#include <string_view>

#include "embedded/types/text_units.h"

namespace tavcc::sql::internal {

// The small letter of a capital one (Latin, Greek, Cyrillic), other characters as they are.
uint32_t LowerOf(uint32_t code);
uint32_t UpperOf(uint32_t code);
// What a character counts as in a comparison: half-width and small.
uint32_t FoldOf(uint32_t code);

// The character at `at`, which is inside the text, folded.
Utf8Character FoldedAt(std::string_view text, size_t at);

// The length in bytes of what matches `pattern` at `at` in `text` by folded characters, or npos.
// An empty pattern matches nothing, of length 0.
size_t MatchAt(std::string_view text, size_t at, std::string_view pattern);

}  // namespace tavcc::sql::internal
