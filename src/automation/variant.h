// Values across the border: VARIANT and BSTR on the outside, Value and UTF-8 on the inside.
#pragma once

#include <string>
#include <string_view>

#include "automation/platform.h"
#include "foundation/value.h"

namespace tavcc::automation {

// UTF-16 and UTF-8. A lone surrogate becomes U+FFFD; a null BSTR is the empty text.
std::string ToUtf8(BSTR text);
// A new BSTR that the caller frees. Errors: 7 when there is no memory.
BSTR NewBstr(std::string_view utf8);

// The value of a VARIANT, by reference or not. The integers of more than 32 bits, and unsigned ones
// that do not fit, become decimals, as do currencies; an error code DISP_E_PARAMNOTFOUND is an
// omitted argument. Objects become adapters that hold a reference (objects.h).
// Errors: 13 with a text that names the type for arrays (binary included) and everything else that
// an automation value cannot be.
Value FromVariant(const VARIANT& variant);

// Fills `out`, which holds nothing, with the value; its owner clears it. A decimal that a DECIMAL
// cannot hold loses decimals, rounded. Errors: 6 for a decimal that is too large for any; 13 for an
// object that lives only inside the library.
void ToVariant(const Value& value, VARIANT* out);

}  // namespace tavcc::automation
