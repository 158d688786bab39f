// What a database holds, asked by the catalog functions that every driver has.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/batch_session.h"
#include "odbc/api.h"
#include "odbc/rows.h"
#include "odbc/text.h"

namespace tavcc::odbc {

// Each runs its function on a fresh statement and reads the rows; nothing where the driver fails.
// A table's name is compared without regard to letter case.
std::optional<Rows> ReadTables(const Statement& statement, Encoding encoding);
std::optional<Rows> ReadColumns(const Statement& statement, Encoding encoding,
                                std::string_view table);

// The tables and views among the rows of ReadTables, by name.
std::vector<SchemaObject> ObjectsOf(const Rows& tables);
// The names of the columns of ReadColumns.
std::vector<std::string> NamesOf(const Rows& columns);
// The same columns as a statement that makes the table names them; empty for none.
std::string DefinitionOf(std::string_view table, const Rows& columns);

}  // namespace tavcc::odbc
