// The functions that emitted SQLite text calls, and how to register them on a connection.
//
// This header is the contract between the emitter and the functions. All names begin with "t_", so
// that none of SQLite's own is touched. "code" and "shape" are whole-number constants made by the
// functions at the end of this header; every other argument is in the stored form of its type (see
// types/stored_value.h). NULL in any argument gives NULL unless stated otherwise.
//
// SQLite computes a call of constants once in a statement, when it is first needed: where no row
// needs it, an error in it is not raised. Only conditions that no row has a part in are tried
// before the rows are read.
//
// Types are static: the emitter knows every operand's type and puts what a function needs to know
// into its name or its code. An operand in the wrong stored form is a fault of the emitter's.
//
// clang-format off
//
// Whole numbers; <k> is tinyint, smallint, int or bigint: the type of the result
//   t_add_<k>(a, b)  t_sub_<k>  t_mul_<k>   8115 "Arithmetic overflow error converting expression to
//                                           data type <k>."
//   t_div_<k>(a, b)  t_mod_<k>              towards zero; 8134 "Divide by zero error encountered."
//   t_neg_<k>(a)  t_abs_<k>(a)              8115 for the smallest value
//   t_round_<k>(a, digits, truncate)        truncate: 0 rounds, anything else cuts
//   t_power_<k>(a, b)                       b is float; the result is cut to a whole number
//   t_sign_int(a)                           -1, 0, 1
//   t_xor(a, b)                             bitwise; & | ~ are SQLite's own
//
// Floating point; <f> is float or real
//   t_add_<f>(a, b)  t_sub_<f>  t_mul_<f>   8115 when the result is beyond the type
//   t_div_<f>(a, b)                         8134, 8115
//   t_round_float(a, digits, truncate)  t_sign_float(a)  t_ceiling_float(a)  t_floor_float(a)
//   t_power_float(a, b)  t_sqrt(a)  t_exp(a)  t_log(a)  t_log10(a)   3623 outside their domain
//   -a and abs(a) are SQLite's own.
//
// Decimals and money
//   t_add_decimal(a, b, shape)  t_sub_decimal  t_mul_decimal  t_div_decimal  t_mod_decimal
//       Operands at their own stored scales (a whole number has 0, money 4); the result is rounded
//       (+ - *) or cut (/) to the scale of the result. 8115 when it has more digits than the result's
//       precision, 8134. shape = DecimalShape(StoredScale(a), StoredScale(b), result type)
//   t_neg_decimal(a)  t_abs_decimal(a)
//   t_sign_decimal(a, shape)                shape = DecimalShape(scale of a, 0, result type), as in
//   t_ceiling_decimal(a, shape)             all of these
//   t_floor_decimal(a, shape)
//   t_round_decimal(a, digits, truncate, shape)
//   t_power_decimal(a, b, shape)            b is float; through float, as the server does
//   t_cmp_decimal(a, b, shape)              -1, 0, 1: emit t_cmp_decimal(a,b,shape)<0. The result
//                                           type in the shape is not looked at.
//   t_order_decimal(a)                      ORDER BY t_order_decimal(x), x (DESC on both) is the
//                                           order of decimals of one scale: -1 for what is below the
//                                           64-bit integers, else 0
//   = <>, GROUP BY, DISTINCT, UNION and IN are native at equal scales; < > and ORDER BY are native
//   too where AlwaysStoredAsInteger(type).
//
// Conversion
//   t_conv(x, code)                         code = ConversionCode(from, to, mode, style). Any pair
//                                           that CheckExplicit allows, with the server's errors
//   t_conv(x, code, table, column)          into a column: text that does not fit is 2628, which names
//                                           both (today's servers); without names it is 8152 (servers
//                                           up to 2017, and databases at their compatibility levels)
//   t_style(x, code, style)                 as t_conv with a style that is known only at run time
//
// Aggregates
//   t_sum_int(x)  t_sum_bigint(x)           of whole numbers; 8115 beyond the type
//   t_avg_int(x)  t_avg_bigint(x)           towards zero
//   t_sum_decimal(x)  t_sum_money(x)        the scale stays; 8115 beyond 38 digits (money: 64 bits)
//   t_avg_decimal(x, shape)                 shape as for t_ceiling_decimal. SQLite allows DISTINCT for
//                                           one argument only: t_div_decimal(t_sum_decimal(DISTINCT
//                                           x), count(DISTINCT x), shape), null when the count is 0
//   t_min_decimal(x)  t_max_decimal(x)      only where not AlwaysStoredAsInteger
//   SUM and AVG of float, COUNT, MIN and MAX of everything else are SQLite's own (of text with COLLATE
//   tsql, which its min and max obey).
//
// Text; lengths and positions count UTF-16 units, as the server does
//   t_left(s, n)  t_right(s, n)             negative n: 537 / 536
//   t_substring(s, start, length)           start from 1; what lies before the text counts as length;
//                                           negative length: 537
//   t_len(s)                                without trailing blanks
//   t_datalength(s, width)                  width 2 for nchar/nvarchar, 1 for char/varchar and binary
//   t_ltrim(s)  t_rtrim(s)  t_upper(s)  t_lower(s)  t_reverse(s)
//   t_replace(s, from, to)
//   t_charindex(what, s)  t_charindex(what, s, start)  t_patindex(pattern, s)
//   t_stuff(s, start, length, with)         NULL when start or length is outside the text; `with`
//                                           NULL counts as empty
//   t_replicate(s, n)  t_replicate(s, n, limit)  t_space(n)   NULL for a negative n; cut to `limit`
//                                           units (8000; -1 for (max) types)
//   t_char(n)  t_nchar(n)                   NULL outside 0 to 255 / 0 to 65535
//   t_ascii(s)  t_unicode(s)                NULL of the empty text
//   t_str(x)  t_str(x, length)  t_str(x, length, decimals)   of a float; right-aligned; '***' when it
//                                           does not fit
//   t_isnumeric(s)  t_isdate(s)             of text; 0 for NULL
//   t_like(s, pattern)  t_like(s, pattern, escape)   1 or 0; 506 when escape is not one character
//   t_like_char(…)                          as t_like where neither side is nchar or nvarchar: blanks
//                                           at the end of s (not of the pattern) need no match
//   t_concat(a, b, length)                  || cut to `length` units; plain || where the operands
//                                           cannot exceed it
//   COLLATE tsql                            of every text comparison and text column
//
// Dates (date, smalldatetime and datetime alike: ticks); part is a DatePart as a number
//   t_getdate()                             the session's clock, the same within one statement
//   t_datediff(part, a, b)                  boundaries crossed from a to b; 535 beyond an int
//   t_dateadd(part, n, d, code)             code = TypeCode(type of the result); 517 beyond it
//   t_datepart(part, d)  t_datename(part, d)
//   t_add_datetime(a, b, code)  t_sub_datetime   code = TypeCode(result); 8115 beyond it
//
// Steps: what is too deep to be written as one value (see emit/shallow.cpp)
//   t_keep(place, x)                        keeps x, which may be NULL; NULL
//   t_kept(place)                           what was kept there last
//   t_last(…)                               its last argument, the others having been computed before
//
// clang-format on
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "embedded/error.h"
#include "embedded/types/sql_type.h"
#include "embedded/types/stored_value.h"
#include "embedded/types/stored_view.h"
#include "foundation/date_time.h"

struct sqlite3;
struct sqlite3_value;

namespace tavcc::sql {

struct FreeValue {
  void operator()(sqlite3_value* value) const;
};

// What the functions of one connection share with their session.
struct FunctionSession {
  // What GETDATE() reads; the machine's local time when empty.
  std::function<DateTime()> clock;
  // The clock as read in the statement at hand: the session clears it before each statement.
  std::optional<DateTime> now;
  // Set by a function before it fails the step: the server's error for it, which the session takes
  // when sqlite3_step answers SQLITE_ERROR. Line 0.
  std::optional<SqlError> pending;
  // Where conversions form their texts; kept, so that texts of usual length need no allocation.
  Scratch scratch;
  // What t_keep keeps.
  std::vector<std::unique_ptr<sqlite3_value, FreeValue>> kept;

  DateTime Now();
};

// Registers every function above and the collation `tsql`. The session must outlive the connection.
// Errors: SqlError 50001 when SQLite refuses a registration.
void RegisterFunctions(sqlite3* database, FunctionSession* session);

// The collation as a comparison of its own (names, CASE on variables): below, equal to or above 0.
int CompareText(std::string_view a, std::string_view b);
// Three-way comparison of two stored values of one type (of decimals: of one scale); neither is
// NULL.
int CompareStored(const StoredValue& a, const StoredValue& b, const SqlType& type);

// ---- Date parts ----

enum class DatePart : uint8_t {
  kYear,
  kQuarter,
  kMonth,
  kDayOfYear,
  kDay,
  kWeek,
  kIsoWeek,
  kWeekday,
  kHour,
  kMinute,
  kSecond,
  kMillisecond,
  kMicrosecond,
  kNanosecond,
};
// The part of a word with all its abbreviations ("yy", "yyyy", "year" …), in any case; nothing for
// another word (error 155: "'%.*ls' is not a recognized %ls option." with the function's name).
std::optional<DatePart> ParseDatePart(std::string_view word);
// Its full word: "hour".
std::string_view DatePartWord(DatePart part);

// ---- Codes ----

// A type as one number below 2^20: kind (5 bits), then precision and scale, or the length plus one.
constexpr int64_t TypeCode(const SqlType& type) {
  const int64_t detail = type.kind == TypeKind::kDecimal
                             ? (int64_t{type.precision} << 6) | int64_t{type.scale}
                             : int64_t{type.length} + 1;
  return static_cast<int64_t>(type.kind) | (detail << 5);
}
constexpr SqlType TypeFromCode(int64_t code) {
  const auto kind = static_cast<TypeKind>(code & 31);
  const int detail = static_cast<int>((code >> 5) & 0x7fff);
  if (kind == TypeKind::kDecimal) return SqlType{kind, 0, detail >> 6, detail & 63};
  return SqlType{kind, detail - 1, 0, 0};
}

constexpr int64_t ConversionCode(const SqlType& from, const SqlType& to,
                                 ConvertMode mode = ConvertMode::kCast, int style = kNoStyle) {
  return TypeCode(from) | (TypeCode(to) << 20) | (static_cast<int64_t>(mode) << 40) |
         (static_cast<int64_t>(style & 0xffff) << 41);
}

// `result` is a decimal or a money type.
constexpr int64_t DecimalShape(int scale_a, int scale_b, const SqlType& result) {
  return int64_t{scale_a} | (int64_t{scale_b} << 6) | (TypeCode(result) << 12);
}

}  // namespace tavcc::sql
