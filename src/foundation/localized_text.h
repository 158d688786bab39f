// Message texts in the user's language: the Chinese text is the key of its own translation.
//
// The host's resource loader translates. One loader per thread is kept, with its language, until
// another language is asked for or ReleaseHostObjects is called.
//
// A compound text is pieces joined by "^|^"; a piece that begins with "~$~" is a key, any other one
// is a literal:
//
//   "No. 7: ^|^~$~单据不存在^|^!"   "No. 7: ", the translation of "单据不存在", "!"
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "foundation/host.h"

namespace tavcc {

// The translation of the text without the blanks around it; of a compound text, that of its pieces.
// Where the loader cannot be created or fails, the trimmed text itself. Raises nothing, and leaves
// the thread's pending error (trap.h) as it was, so that a trap's failure part may call it.
std::string LoadResText(Host& host, std::string_view sText, std::string_view sLanguage);

// A compound text's pieces, the keys among them translated, joined without separators.
std::string LoadResTextParts(Host& host, std::string_view sText, std::string_view sLanguage);

// The translation with its placeholders "%1" … filled from `values` in order. Errors: the host's,
// where a value has no text.
std::string LoadResTextFmt(Host& host, std::string_view sText, std::string_view sLanguage,
                           std::span<const Value> values);

}  // namespace tavcc
