// Which tables there are, and what they hold as texts to be compared.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/connection.h"

namespace tavcc::testing {

// The names of the tables that a script creates, each at the beginning of a line.
std::vector<std::string> CreatedTables(std::string_view script);

// Of the tables, those that hold rows. Errors: the connection's, where a table is not there.
std::vector<std::string> TablesWithRows(Connection& connection,
                                        std::span<const std::string> tables);

// The table's rows in the order in which they come, without the column `but`. A text "1" is not the
// number 1, and no part of a second is left out. Errors: the connection's.
std::vector<std::string> TableRows(Connection& connection, const std::string& table,
                                   std::string_view but = "");

}  // namespace tavcc::testing
