// An error of the server, with the line of the script that it is about.
#pragma once

#include <optional>
#include <string>

#include "foundation/batch_session.h"
#include "tavcc/sql/script.h"

namespace tavcc {

// The place of what an error is about.
struct ErrorPlace {
  ScriptPlace place;
  std::string line;
  size_t column = 0;  // of bytes of the line, from 0
};

// Where it is in the batch: the first of the names in quotation marks of the message that stands in
// the line that the server gives or behind it, else the beginning of that line. Nothing for an
// error in a procedure, and where the server gives no line of the batch.
std::optional<ErrorPlace> FindPlace(const BatchMessage& message, const Batch& batch);

// "Msg 208, Level 16, State 1, Line 3", the text, and the line with a caret below.
std::string ErrorText(const BatchMessage& message, const Batch& batch);

}  // namespace tavcc
