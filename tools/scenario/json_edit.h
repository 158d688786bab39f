// Changing a JSON text where its values changed, and nowhere else.
#pragma once

#include <string>
#include <string_view>

#include "scenario/json.h"

namespace tavcc {

// The text of a new file: on one line where it fits, else indented by two blanks a level.
std::string LaidOut(const Json& json);

// The text with `updated` in place of what it says. Members and elements that stay keep their text,
// blanks and line breaks included; what is new is written as its neighbours are: on one line where
// it fits, else indented by two blanks a level. Members keep their order, new ones come last.
// Errors: JsonError for a text that is no JSON.
std::string Rewritten(std::string_view text, const Json& updated);

}  // namespace tavcc
