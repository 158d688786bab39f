// A text on its way to the database, with the line of source that sends it.
//
// The line is where a text becomes a SqlText: where a rule calls Execute or ExecuteSQL. A helper
// that sends what its callers ask takes a SqlText too, and the line is its caller's.
#pragma once

#include <concepts>
#include <string_view>

#include "foundation/call_site.h"

namespace tavcc {

// A parameter only: it refers to the text, which must live as long as the call.
struct SqlText {
  template <class Text>
  requires std::convertible_to<const Text&, std::string_view> SqlText(
      const Text& sent, CallSite sender = CallSite::Current())
      : text(sent), from(sender) {}

  std::string_view text;
  CallSite from;
};

}  // namespace tavcc
