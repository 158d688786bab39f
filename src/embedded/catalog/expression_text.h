// Expressions as text again, for definitions that the catalog keeps.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "embedded/syntax/ast.h"

namespace tavcc::sql {

// The expression as T-SQL. Errors: 50001 for a construct that a default cannot hold.
std::string ExpressionText(const Expression& expression);
// Reads one expression. Errors: those of ParseBatch.
std::shared_ptr<const Expression> ParseExpression(std::string_view text);

}  // namespace tavcc::sql
