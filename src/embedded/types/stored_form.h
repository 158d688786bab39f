// What is known of a conversion from the two types alone.
#pragma once

#include <string_view>

#include "embedded/types/sql_type.h"
#include "embedded/types/stored_value.h"

namespace tavcc::sql {

// Whether a value of `from` is stored the same way as `to`, whatever it is.
bool IsSameStored(const SqlType& from, const SqlType& to);
// Whether no value of `from` fails to convert to `to`.
bool NeverFails(const SqlType& from, const SqlType& to, ConvertMode mode);
// Whether a value is one that the type has: in the form in which it is stored, whole numbers and
// dates also in their range. Everything that the store writes is; what another program wrote may
// not be. NULL always is.
bool IsStoredAs(const StoredValue& value, const SqlType& type);
// The form of a value in words, for what is said of one that no type has: "text", "a number".
std::string_view FormText(const StoredValue& value);

}  // namespace tavcc::sql
