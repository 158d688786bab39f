// Stored values into other types, into automation values and from them, and into text.
#pragma once

#include <string>

#include "embedded/types/sql_type.h"
#include "embedded/types/stored_value.h"
#include "foundation/value.h"

namespace tavcc::sql {

// Converts a stored value of type `from` into one of type `to`, as CAST or an assignment does. NULL
// stays NULL. Errors: SqlError as the server raises it for the pair of types (see conversions.h);
// 529 for a pair that no conversion leads between.
StoredValue ConvertStored(const StoredValue& value, const SqlType& from, const SqlType& to,
                          ConvertMode mode = ConvertMode::kCast, int style = kNoStyle);

// The automation value of a stored one: bit is Boolean, tinyint and smallint a 16-bit integer, int
// a 32-bit one, bigint a Decimal, decimal and money a Decimal of their scale, float and real a
// Double, dates a DateTime, text a text, NULL Null. Errors: 50001 that names a binary type.
Value ToValue(const StoredValue& value, const SqlType& type);

// The type that an automation value has as a parameter, and its stored form: Boolean is bit, 16
// bits smallint, 32 bits int, Double float, Decimal decimal(38, its scale), a date datetime, text
// nvarchar of its length (at least 1, (max) beyond 4000); Null, Empty and omitted are NULL. Errors:
// 50001 for an object.
TypedValue FromValue(const Value& value);

// The plain text of a value as a client shows it ("1.50", "2026-03-01 10:00:00.000", "NULL").
std::string DisplayText(const StoredValue& value, const SqlType& type);

}  // namespace tavcc::sql
