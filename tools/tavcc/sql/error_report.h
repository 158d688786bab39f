// An error of the server, with the line of the script that it is about.
#pragma once

#include <string>

#include "foundation/batch_session.h"
#include "tavcc/sql/error_place.h"
#include "tavcc/sql/script.h"

namespace tavcc {

// "Msg 208, Level 16, State 1, Line 3", the text, and the line with a caret below.
std::string ErrorText(const BatchMessage& message, const Batch& batch);

}  // namespace tavcc
