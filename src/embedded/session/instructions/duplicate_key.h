// Which key value it was that was taken: SQLite names the key, the server's errors 2601, 2627 and
// 1505 the value.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "embedded/session/plan_run.h"

namespace tavcc::sql {

// The server's error for a row that SQLite refused: 515, 2601 or 2627, with the statement's `verb`
// and what `value` says of the key that was taken. Another error is given back as it is.
SqlError RefusedRow(const SqlError& error, const Table& table, std::string_view verb,
                    const std::function<std::string(const Key&)>& value);

// "(7, abc)": what a row, its number before its columns, has as its key.
std::string KeyText(const Table& table, const Key& key, std::span<const StoredValue> row);

// "(7, abc)": the first of the rows that the plan would insert whose key is in the table, or in a
// row before it; `refused` becomes its place among them, from 1. The table must be as it was before
// the INSERT.
std::string DuplicateKey(SessionContext& session, const InsertPlan& insert, const Frame& frame,
                         std::span<const StoredValue> row, const Key& key, int64_t* refused);

// "(7, abc)": a value that several rows of the table have in these columns.
std::string RepeatedKey(SessionContext& session, const Table& table,
                        const std::vector<std::string>& columns);

}  // namespace tavcc::sql
