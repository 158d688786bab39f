// Which key value it was that an INSERT found taken: SQLite names the key, the server's errors 2601
// and 2627 the value.
#pragma once

#include <span>
#include <string>

#include "embedded/run/plan.h"

namespace tavcc::sql {

// "(7, abc)": the first of the rows that the plan would insert whose key is in the table, or in a
// row before it. The table must be as it was before the INSERT.
std::string DuplicateKey(Engine& engine, const Plan& insert, const Frame& frame,
                         std::span<const StoredValue> row, const Key& key);

}  // namespace tavcc::sql
