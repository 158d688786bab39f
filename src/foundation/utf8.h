// Texts in UTF-8: whether one is, one that is made of one that is not, its characters.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tavcc {

// Whether the whole text is UTF-8.
bool IsUtf8(std::string_view text);

// The text with U+FFFD for each byte that belongs to no character.
std::string RepairedUtf8(std::string_view text);

// How many characters a text that is UTF-8 has.
size_t CharacterCount(std::string_view text);

}  // namespace tavcc
