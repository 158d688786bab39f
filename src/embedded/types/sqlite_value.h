// Stored values in SQLite's hands.
#pragma once

#include "embedded/types/stored_value.h"

struct sqlite3_stmt;
struct sqlite3_value;

namespace tavcc::sql {

// What a column of the current row, or an argument of a function, holds.
StoredValue FromSqlite(sqlite3_value* value);
// The same into `out`, whose memory is used again.
void ReadSqlite(sqlite3_value* value, StoredValue& out);
// Binds to parameter `index` (from 1). The value must outlive the binding: nothing is copied.
void BindStored(sqlite3_stmt* statement, int index, const StoredValue& value);

}  // namespace tavcc::sql
