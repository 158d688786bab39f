// With the C library's converter.
#include "tavcc/platform/encoding.h"

#include <iconv.h>

#include <cstdint>

namespace tavcc {
namespace {

class Converter {
 public:
  explicit Converter(const std::string& from) : handle_(iconv_open("UTF-8", from.c_str())) {}
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() {
    if (IsOpen()) iconv_close(handle_);
  }
  bool IsOpen() const { return reinterpret_cast<intptr_t>(handle_) != -1; }

  ConvertedText Convert(std::string_view bytes) {
    // No character takes more than three times as many bytes in UTF-8.
    ConvertedText converted{std::string(bytes.size() * 3 + 4, '\0'), 0};
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

}  // namespace

std::optional<ConvertedText> ConvertToUtf8(std::string_view bytes, std::string_view encoding) {
  Converter converter{std::string(encoding)};
  if (!converter.IsOpen()) return std::nullopt;
  return converter.Convert(bytes);
}

}  // namespace tavcc
