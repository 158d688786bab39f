// Decimal arithmetic with the server's result types, on coefficients and scales.
#pragma once

#include "embedded/types/sql_type.h"
#include "foundation/wide_integer.h"

namespace tavcc::sql {

enum class DecimalStatus : uint8_t { kOk, kOverflow, kDivideByZero };

// `scale_a` and `scale_b` are those of the operands; `result` is a decimal or money type, whose
// scale and range the result gets. Sums, differences and products are rounded half away from zero,
// quotients cut, as the server does. *out is untouched unless the status is kOk.
using DecimalOperation = DecimalStatus(WideInteger a, int scale_a, WideInteger b, int scale_b,
                                       const SqlType& result, WideInteger* out);
DecimalOperation AddDecimals, SubtractDecimals, MultiplyDecimals, DivideDecimals,
    RemainderOfDecimals;
int CompareDecimals(WideInteger a, int scale_a, WideInteger b, int scale_b);

// To another scale; going down rounds half away from zero.
void Rescale(WideInteger* value, int from_scale, int to_scale);
// Whether the coefficient is within the range of a decimal or money type.
bool FitsScaled(const WideInteger& coefficient, const SqlType& type);

// "-1.50" for -150 at scale 2.
std::string DecimalText(const WideInteger& coefficient, int scale);

}  // namespace tavcc::sql
