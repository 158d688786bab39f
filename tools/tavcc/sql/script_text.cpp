#include "tavcc/sql/script_text.h"

#include <fmt/core.h>
#include <iconv.h>

#include <algorithm>
#include <utility>

#include "foundation/utf8.h"
#include "scenario/json.h"
#include "tavcc/command.h"

namespace tavcc {
namespace {

// A converter of the C library to UTF-8.
class Converter {
 public:
  explicit Converter(const char* from) : handle_(iconv_open("UTF-8", from)) {}
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() {
    if (IsOpen()) iconv_close(handle_);
  }
  // False where the system's library does not know the encoding.
  bool IsOpen() const { return reinterpret_cast<intptr_t>(handle_) != -1; }

  struct Converted {
    std::string text;
    size_t read = 0;  // all bytes, or as far as they are of the encoding
  };
  Converted Convert(std::string_view bytes) {
    // No character takes more than three times as many bytes in UTF-8.
    Converted converted{std::string(bytes.size() * 3 + 4, '\0'), 0};
    char* in = const_cast<char*>(bytes.data());
    char* out = converted.text.data();
    size_t left = bytes.size(), room = converted.text.size();
    iconv(handle_, &in, &left, &out, &room);
    converted.read = bytes.size() - left;
    converted.text.resize(converted.text.size() - room);
    return converted;
  }

 private:
  iconv_t handle_;
};

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
  throw CommandError(fmt::format("{}: line {} {}", source, line, what));
}

std::string Convert(std::string_view bytes, const char* encoding, std::string_view source,
                    std::string_view what) {
  Converter converter(encoding);
  if (!converter.IsOpen()) {
    throw CommandError(fmt::format("{}: this system cannot read {}", source, encoding));
  }
  Converter::Converted converted = converter.Convert(bytes);
  if (converted.read < bytes.size()) Refuse(source, converted.text, what);
  return std::move(converted.text);
}

}  // namespace

std::string DecodeScript(std::string bytes, std::string_view source) {
  for (const Mark& mark : kMarks) {
    if (!bytes.starts_with(mark.bytes)) continue;
    bytes.erase(0, mark.bytes.size());
    if (mark.encoding == nullptr) break;
    return Convert(bytes, mark.encoding, source, "is no UTF-16, although the file begins as such");
  }
  if (const size_t zero = bytes.find('\0'); zero != std::string::npos) {
    Refuse(source, std::string_view(bytes).substr(0, zero),
           "holds a zero character (UTF-16 is known by its byte order mark)");
  }
  if (IsUtf8(bytes)) return bytes;
  return Convert(bytes, "GB18030", source, "is neither UTF-8 nor GB18030");
}

std::string ReadScript(const std::string& path) {
  return DecodeScript(ReadTextFile(path), path);
}

}  // namespace tavcc
