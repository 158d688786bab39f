// The value of a default that a procedure's parameter has.
#pragma once

#include "embedded/syntax/ast.h"
#include "embedded/types/stored_value.h"

namespace tavcc::sql {

// The value of a literal with or without a sign. Errors: 50001 for anything else.
TypedValue ConstantValue(const Expression& expression);

}  // namespace tavcc::sql
