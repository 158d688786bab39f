#include "tavcc/platform/windows/wide_text.h"

#include <windows.h>

namespace tavcc {

std::wstring ToWide(std::string_view utf8) {
  const int size = static_cast<int>(utf8.size());
  std::wstring wide(utf8.size(), L'\0');  // no text has more units in UTF-16 than bytes in UTF-8
  const int units = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(),
                                        static_cast<int>(wide.size()));
  wide.resize(static_cast<size_t>(units));
  return wide;
}

std::string FromWide(std::wstring_view wide) {
  const int size = static_cast<int>(wide.size());
  std::string utf8(wide.size() * 3, '\0');  // no unit takes more than three bytes
  const int bytes = WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(),
                                        static_cast<int>(utf8.size()), nullptr, nullptr);
  utf8.resize(static_cast<size_t>(bytes));
  return utf8;
}

}  // namespace tavcc
