// The words of the other languages, as they travel inside the program.
#pragma once

#include <span>
#include <string_view>

namespace tavcc {

struct Word {
  std::string_view english;
  std::string_view other;
};

// Those of zh.json.
std::span<const Word> ChineseWords();

}  // namespace tavcc
