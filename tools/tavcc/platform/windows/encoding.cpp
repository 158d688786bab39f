// With the system's code pages.
#include "tavcc/platform/encoding.h"

#include <windows.h>

#include <algorithm>

#include "tavcc/platform/windows/wide_text.h"

namespace tavcc {
namespace {

constexpr UINT kGb18030 = 54936;
constexpr UINT kGbk = 936;  // what of it has two bytes, where the system knows no more

// How many units of UTF-16 stand before one that has no other half.
size_t WholeUnits(std::wstring_view text) {
  for (size_t i = 0; i < text.size(); ++i) {
    if (!IS_SURROGATE_PAIR(text[i], i + 1 < text.size() ? text[i + 1] : L'\0')) {
      if (IS_HIGH_SURROGATE(text[i]) || IS_LOW_SURROGATE(text[i])) return i;
    } else {
      ++i;
    }
  }
  return text.size();
}

ConvertedText FromUtf16(std::string_view bytes, bool big_endian) {
  std::wstring wide;
  for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto first = static_cast<unsigned char>(bytes[i]);
    const auto second = static_cast<unsigned char>(bytes[i + 1]);
    wide += static_cast<wchar_t>(big_endian ? first << 8 | second : second << 8 | first);
  }
  wide.resize(WholeUnits(wide));
  return {FromWide(wide), wide.size() * 2};
}

// Line by line, as the line that cannot be read is to be named: no character of several bytes has
// a line end among them.
ConvertedText FromCodePage(std::string_view bytes, UINT code_page) {
  ConvertedText converted;
  while (converted.read < bytes.size()) {
    const size_t end = std::min(bytes.find('\n', converted.read), bytes.size() - 1) + 1;
    const std::string_view line = bytes.substr(converted.read, end - converted.read);
    std::wstring wide(line.size(), L'\0');
    const int units = MultiByteToWideChar(code_page, MB_ERR_INVALID_CHARS, line.data(),
                                          static_cast<int>(line.size()), wide.data(),
                                          static_cast<int>(wide.size()));
    if (units == 0) break;
    converted.text += FromWide(std::wstring_view(wide).substr(0, static_cast<size_t>(units)));
    converted.read = end;
  }
  return converted;
}

}  // namespace

std::optional<ConvertedText> ConvertToUtf8(std::string_view bytes, std::string_view encoding) {
  if (encoding.starts_with("UTF-16")) return FromUtf16(bytes, encoding == "UTF-16BE");
  if (encoding != "GB18030") return std::nullopt;
  for (const UINT code_page : {kGb18030, kGbk}) {
    if (IsValidCodePage(code_page) != 0) return FromCodePage(bytes, code_page);
  }
  return std::nullopt;
}

}  // namespace tavcc
