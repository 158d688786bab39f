// Which key value it was that was taken: SQLite names the key, the server's errors 2601, 2627 and
// 1505 the value.
#pragma once

#include <span>
#include <string>

#include "embedded/run/plan.h"

namespace tavcc::sql {

// "(7, abc)": the first of the rows that the plan would insert whose key is in the table, or in a
// row before it. The table must be as it was before the INSERT.
std::string DuplicateKey(Engine& engine, const Plan& insert, const Frame& frame,
                         std::span<const StoredValue> row, const Key& key);

// "(7, abc)": a value that several rows of the table have in these columns.
std::string RepeatedKey(Engine& engine, const Table& table,
                        const std::vector<std::string>& columns);

}  // namespace tavcc::sql
