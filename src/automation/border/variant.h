// Values across the border: VARIANT and BSTR on the outside, Value and UTF-8 on the inside.
#pragma once

#include <string>
#include <string_view>

#include "automation/border/platform.h"
#include "foundation/value.h"

namespace tavcc::automation {

// UTF-16 and UTF-8. A lone surrogate becomes U+FFFD; a null BSTR is the empty text.
std::string ToUtf8(BSTR text);
// A new BSTR that the caller frees. Errors: 7 when there is no memory.
BSTR NewBstr(std::string_view utf8);

// What a VARIANT stands for: a VARIANT by reference for the one it refers to, which may do so
// again; any other for itself. Null for a null reference, and for one that leads nowhere.
VARIANT* Referred(VARIANT* variant);

// The value of a VARIANT, by reference or not. The integers of more than 32 bits, and unsigned ones
// that do not fit, become decimals, as do currencies; an error code DISP_E_PARAMNOTFOUND is an
// omitted argument. Objects cross by WrapObject.
// Errors: 13 for a null reference, for an object without late binding, and with a text that names
// the type for arrays (binary included) and everything else that an automation value cannot be.
Value FromVariant(const VARIANT& variant);

// How objects cross is the module's own: the automation server adapts the host's objects to ports,
// the reference host puts its ports before automation. Each module defines these two.
//
// The value of an object reference; a null reference stays one.
Value WrapObject(IDispatch* object);
// The reference behind a value's object, which the caller releases; null for null. Errors: 13 for
// an object that has no face outside the module.
IDispatch* UnwrapObject(const ObjectPtr& object);

// Fills `out`, which holds nothing, with the value; its owner clears it. A decimal that a DECIMAL
// cannot hold loses decimals, rounded. Errors: 6 for a decimal that is too large for any; 13 for an
// object that lives only inside the library.
void ToVariant(const Value& value, VARIANT* out);

}  // namespace tavcc::automation
