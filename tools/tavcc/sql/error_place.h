// Where in a batch is what an error is about?
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "foundation/batch_session.h"
#include "tavcc/sql/script.h"

namespace tavcc {

struct ErrorPlace {
  std::string place;  // "setup.sql:7", "line 7", "line 1 of the executed text"
  std::string line;
  size_t column = 0;  // of bytes of the line, from 0
};

// The first of the names in quotation marks of the message that stands in the line that the server
// gives or behind it, else the beginning of that line. What is in a text that the batch executes is
// looked for in the batch where the text stands there, and shown in the text itself otherwise.
//
// Nothing for an error in a procedure, and where the server gives no line of the batch; nor, where
// a session does not tell, for one that names nothing and may be of an executed text.
std::optional<ErrorPlace> FindPlace(const BatchMessage& message, const Batch& batch);

}  // namespace tavcc
