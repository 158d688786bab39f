// The functions of emitted text that need the session.
//
//   s_object_id(name[, type])        OBJECT_ID
//   s_variable(n)                    the variable as it is at this row
//   s_scalar(x)                      aggregate: the one value, NULL for none; 512 for more
//   s_not_null(x, column, table)     x; 515 for NULL
//   s_top(n)                         n; 127 below 0
//   s_recursion(level, most)         level + 1; 530 beyond `most`
//   s_tiles(n)                       n; 4116 below 1 and for NULL
//   s_offset(n)                      n; 8730 below 0
#pragma once

namespace tavcc::sql {

struct SessionContext;

// On the session's own connection. Errors: SqlError 50001 when SQLite refuses a registration.
void RegisterSessionFunctions(SessionContext& session);

}  // namespace tavcc::sql
