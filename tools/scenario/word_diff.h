// What differs between two texts, word by word.
#pragma once

#include <string>
#include <string_view>

namespace tavcc {

// One text for both: what only the first has stands in [-…-], what only the second has in {+…+}.
// Each line break is shown as \r\n or \n, and the line is broken there.
std::string WordDiff(std::string_view first, std::string_view second);

}  // namespace tavcc
