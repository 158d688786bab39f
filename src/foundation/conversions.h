// Conversions between automation values, as automation's own do them.
//
// Empty is 0, the empty text, False; Null converts to nothing (error 94); True is -1; a date is its
// number of days; text must be a whole number text (blanks around it allowed), otherwise error 13;
// an object is error 13, a null reference 91. Integers round half to even and overflow with
// error 6. An omitted argument converts as error 13.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/value.h"

namespace tavcc {

int16_t ToInteger(const Value& value);
int32_t ToLong(const Value& value);
double ToDouble(const Value& value);
// A double becomes the decimal of at most 15 significant digits. Beyond a decimal's range it is
// error 6, or nothing.
Decimal ToDecimal(const Value& value);
std::optional<Decimal> ToDecimalIfItFits(const Value& value);
// Text "True" and "False" are read without regard to case; any other text must be a number.
bool ToBoolean(const Value& value);
// Text is read as DateTime::Parse does, a number as an automation date; otherwise error 13.
DateTime ToDate(const Value& value);
// Numbers are plain decimal text without trailing zeros, doubles with at most 15 significant
// digits; dates as DateTime::ToText; "True" and "False".
std::string ToText(const Value& value);

// The numeric value of a setting or a field whatever it holds: Empty, Null, an omitted argument, an
// empty or non-numeric text count as 0. An object is error 13.
double NumberOrZero(const Value& value);
// The same, exactly.
Decimal DecimalOrZero(const Value& value);
// As NumberOrZero, then rounded to a 32-bit integer (error 6 beyond its range).
int32_t LongOrZero(const Value& value);

// The number of a setting that chooses between numbered ways: Empty, Null and an omitted argument
// are 0, and a text that is no number chooses none of them. An object is error 13.
std::optional<double> SettingNumber(const Value& value);

// Automation's "=" between two values: numbers, booleans and dates by value; texts byte by byte; a
// text never equals a number; Empty equals 0, False and the empty text; Null equals nothing;
// objects by identity.
bool VariantEquals(const Value& a, const Value& b);

// "at most 15 significant digits, plain decimal text": 0.1 -> "0.1", 1e20 ->
// "100000000000000000000". An infinity or a NaN is error 6.
std::string NumberText(double value);

}  // namespace tavcc
