// The front end of the embedded database: the text of a batch to its tree.
#pragma once

#include <string_view>

#include "embedded/syntax/ast.h"

namespace tavcc::sql {

// The most that statements, brackets, subqueries, CASE, NOT and signs may be nested in one another.
inline constexpr int kMaxNesting = 128;

// The most operators in a row that build a tree leaning to the left: a + b + c …, joins, UNIONs.
// (AND and OR build no such tree, see LogicalCondition.) No tree is higher than both limits
// together, so that plain recursion may walk and destroy it.
inline constexpr int kMaxChain = 500;

// CASE expressions in one another, and what stands for one: IIF, COALESCE, NULLIF.
inline constexpr int kMaxCaseNesting = 10;

// Parses one batch (UTF-8, any line ends). Looks nothing up: unknown tables, columns, variables and
// functions are the binder's.
//
// Throws SqlError with the number, severity and text of the server: 102 and 156 for a syntax error,
// 105 and 113 for an unclosed quotation or comment, 125 and 191 for too deep a nesting, and so on.
// The number 50001 is our own: a construct of the server's language that this database does not
// have, which the text names. A batch that throws has no tree: nothing of it may run.
Batch ParseBatch(std::string_view text);

// One expression of a definition: its literals are no parameters. Errors: as ParseBatch.
ExpressionPtr ParseExpression(std::string_view text);

}  // namespace tavcc::sql
