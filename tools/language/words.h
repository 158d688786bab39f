// The files of words, as they travel inside the program.
#pragma once

#include <string_view>

namespace tavcc {

// A JSON object from English texts to Chinese ones: zh.json, byte for byte.
std::string_view ChineseWords();

}  // namespace tavcc
