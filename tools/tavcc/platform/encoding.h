// Texts in other encodings, by what the system knows of them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavcc {

struct ConvertedText {
  std::string text;  // UTF-8
  // All bytes; or fewer, and no more than are of the encoding: those that the text is made of.
  size_t read = 0;
};

// `encoding`: "UTF-16LE", "UTF-16BE" or "GB18030". Nothing where the system does not know it.
std::optional<ConvertedText> ConvertToUtf8(std::string_view bytes, std::string_view encoding);

}  // namespace tavcc
