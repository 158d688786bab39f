#include "tavcc/sql/script_text.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

#include "foundation/utf8.h"
#include "language/language.h"
#include "scenario/json.h"
#include "tavcc/command.h"
#include "tavcc/platform/encoding.h"

namespace tavcc {
namespace {

struct Mark {
  std::string_view bytes;
  const char* encoding;  // null for UTF-8, which needs no converter
};
constexpr Mark kMarks[] = {
    {"\xEF\xBB\xBF", nullptr},
    {"\xFF\xFE", "UTF-16LE"},
    {"\xFE\xFF", "UTF-16BE"},
};

[[noreturn]] void Refuse(std::string_view source, std::string_view before, std::string_view what) {
  const auto line = std::ranges::count(before, '\n') + 1;
  throw CommandError(Say("{}: line {} {}", source, line, what));
}

std::string Convert(std::string_view bytes, const char* encoding, std::string_view source,
                    std::string_view what) {
  auto converted = ConvertToUtf8(bytes, encoding);
  if (!converted) {
    throw CommandError(Say("{}: this system cannot read {}", source, encoding));
  }
  if (converted->read < bytes.size()) Refuse(source, converted->text, what);
  return std::move(converted->text);
}

}  // namespace

std::string DecodeScript(std::string bytes, std::string_view source) {
  for (const Mark& mark : kMarks) {
    if (!bytes.starts_with(mark.bytes)) continue;
    bytes.erase(0, mark.bytes.size());
    if (mark.encoding == nullptr) break;
    return Convert(bytes, mark.encoding, source,
                   Translated("is no UTF-16, although the file begins as such"));
  }
  if (const size_t zero = bytes.find('\0'); zero != std::string::npos) {
    Refuse(source, std::string_view(bytes).substr(0, zero),
           Translated("holds a zero character (UTF-16 is known by its byte order mark)"));
  }
  if (IsUtf8(bytes)) return bytes;
  return Convert(bytes, "GB18030", source, Translated("is neither UTF-8 nor GB18030"));
}

std::string ReadScript(const std::string& path) {
  return DecodeScript(ReadTextFile(path), path);
}

}  // namespace tavcc
