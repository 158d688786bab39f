// The standard streams, as the system has them.
#pragma once

#include <string_view>
#include <system_error>

namespace tavcc {

enum class Stream { kInput, kOutput, kErrors };

// Whether a person sits at the other end.
bool IsTerminal(Stream stream);

// The same, and the terminal understands the escape sequences for colours and erased lines.
bool ShowsEscapes(Stream stream);

// Writes all of the UTF-8 text, now and as it is: no line end is changed. Answers the error that
// kept a part of it from being written.
std::error_code WriteAll(Stream stream, std::string_view text);

}  // namespace tavcc
