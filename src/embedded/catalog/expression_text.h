// Expressions as text again, for definitions that the catalog keeps.
#pragma once

#include <string>

#include "embedded/syntax/ast.h"

namespace tavcc::sql {

// The expression as T-SQL. Errors: 50001 for a construct that a default cannot hold.
std::string ExpressionText(const Expression& expression);

}  // namespace tavcc::sql
