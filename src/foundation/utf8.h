// Whether a text is UTF-8, and one that is, made of one that is not.
#pragma once

#include <string>
#include <string_view>

namespace tavcc {

// Whether the whole text is UTF-8.
bool IsUtf8(std::string_view text);

// The text with U+FFFD for each byte that belongs to no character.
std::string RepairedUtf8(std::string_view text);

}  // namespace tavcc
