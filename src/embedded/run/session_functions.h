// The functions of emitted text that need the session, and how a connection is set up for it.
//
//   s_object_id(name[, type])        OBJECT_ID
//   s_variable(n)                    the variable as it is at this row
//   s_scalar(x)                      aggregate: the one value, NULL for none; 512 for more
//   s_not_null(x, column, table)     x; 515 for NULL
//   s_top(n)                         n; 127 below 0
#pragma once

#include "embedded/catalog/sqlite.h"
#include "embedded/syntax/ast.h"
#include "embedded/types/stored_value.h"

namespace tavcc::sql {

class Engine;

void RegisterSessionFunctions(SqliteConnection& store, Engine& engine);
// Settings that every connection has; `shared`: other processes may be at work on the store.
void PrepareConnection(SqliteConnection& store, bool shared);

// The value of a literal with or without a sign. Errors: 50001 for anything else.
TypedValue ConstantValue(const Expression& expression);

}  // namespace tavcc::sql
