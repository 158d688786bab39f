// The text of a script, whichever of the usual encodings it was saved in.
#pragma once

#include <string>
#include <string_view>

namespace tavcc {

// The bytes as UTF-8, without a byte order mark: UTF-8 with or without one, UTF-16 of either order
// with one, and what is not UTF-8 as GB18030, of which GBK and GB2312 are parts. Errors:
// CommandError that names `source` and the first line that is none of them.
std::string DecodeScript(std::string bytes, std::string_view source);

// Reads and decodes a file. Errors: as DecodeScript; JsonError for one that cannot be read.
std::string ReadScript(const std::string& path);

}  // namespace tavcc
