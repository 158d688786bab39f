// Numbers as text: what the server reads as a number, and how it writes a float.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/wide_integer.h"

namespace tavcc::sql {

enum class NumberReading : uint8_t { kOk, kNoNumber, kOverflow };

// A whole number: blanks around it, a sign with blanks behind it, digits. Nothing but blanks, or a
// sign alone, is 0. kOverflow beyond 64 bits.
NumberReading ReadWhole(std::string_view text, int64_t* value);

// "[blanks][sign]digits[.digits][blanks]": no exponent. Digits beyond what any decimal can keep are
// cut. kOverflow for more than 38 digits before the point. Empty text is no number.
NumberReading ReadDecimal(std::string_view text, WideInteger* coefficient, int* scale);

// As ReadDecimal, with a currency sign and commas between the digits; empty text is 0.
NumberReading ReadMoney(std::string_view text, WideInteger* coefficient, int* scale);

// With an exponent if there is one; empty text is 0.
NumberReading ReadFloat(std::string_view text, double* value);

// The nearest decimal of 17 significant digits.
void DecimalOfFloat(double value, WideInteger* coefficient, int* scale);

// The styles of CONVERT: 0 at most 6 digits, 1 always 8, 2 always 16, 3 always 17 with an exponent.
void WriteFloat(double value, int style, std::string* out);

}  // namespace tavcc::sql
