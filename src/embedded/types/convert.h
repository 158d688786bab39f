// CAST between every pair of types, on values by reference.
#pragma once

#include "embedded/error.h"
#include "embedded/types/sql_type.h"
#include "embedded/types/stored_value.h"
#include "embedded/types/stored_view.h"

namespace tavcc::sql {

// Converts; *out refers to `in`'s bytes or to `scratch`. NULL stays NULL. On failure false, with
// the server's error for the pair of types in *error (line 0), *out untouched:
//
//   245, 244, 248  text to a whole number or bit      8114  text to decimal, float or bigint
//   235, 236       text to money                      241, 242, 295  text to a date
//   8115, 220, 232 a number beyond the target         8169  text to uniqueidentifier
//   8152           text too long for a column         529   no such conversion
//   50001          a value that is not stored as values of `from` are
//
// What is cut and what is rounded is the table "Truncating and rounding results" of the "CAST and
// CONVERT" page: decimal and float to a whole number are cut, money and dates to one are rounded,
// everything to decimal is rounded.
bool ConvertView(const StoredView& in, const SqlType& from, const SqlType& to, ConvertMode mode,
                 int style, Scratch* scratch, StoredView* out, SqlError* error);

}  // namespace tavcc::sql
