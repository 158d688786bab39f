// Texts as Windows' functions take them.
#pragma once

#include <string>
#include <string_view>

namespace tavcc {

// What is no UTF-8, or no UTF-16, becomes U+FFFD.
std::wstring ToWide(std::string_view utf8);
std::string FromWide(std::wstring_view wide);

}  // namespace tavcc
