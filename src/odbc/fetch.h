// Reading the rows of a statement's current result.
#pragma once

#include <optional>
#include <vector>

#include "foundation/error.h"
#include "odbc/api.h"
#include "odbc/diagnostics.h"
#include "odbc/rows.h"

namespace tavcc::odbc {

struct Fetched {
  Rows rows;                            // no result where the statement returns none
  std::vector<Diagnostic> diagnostics;  // what the driver said while it was read
  // A value that the port has no form for; the rows are then not to be used.
  std::optional<AutomationError> refusal;
};

// Reads the current result to its end. Integers are 16 or 32 bits wide; bigint, decimal and money
// are decimals, made of the driver's text; dates are those of `datetime`; text comes in pieces.
Fetched FetchRows(const Statement& statement, Encoding encoding);

}  // namespace tavcc::odbc
