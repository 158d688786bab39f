// What is known of a conversion from the two types alone.
#pragma once

#include "embedded/types/sql_type.h"
#include "embedded/types/stored_value.h"

namespace tavcc::sql {

// Whether a value of `from` is stored the same way as `to`, whatever it is.
bool IsSameStored(const SqlType& from, const SqlType& to);
// Whether no value of `from` fails to convert to `to`.
bool NeverFails(const SqlType& from, const SqlType& to, ConvertMode mode);

}  // namespace tavcc::sql
