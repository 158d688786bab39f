// What the commands print: values, rows, and statements.
#pragma once

#include <string>
#include <string_view>

#include "foundation/recordset.h"
#include "host/statement_log.h"
#include "scenario/json.h"

namespace tavcc {

// A value on one line: NULL, dates as YYYY-MM-DD HH:MM:SS, Booleans as True and False.
std::string ValueText(const Value& value);

// All rows with their header, each line behind `indent`; "(no rows)" where there is none.
std::string RowsText(Recordset& rows, std::string_view indent = "");

// {"columns": […], "rows": [[…], …]}
Json RowsJson(Recordset& rows);

// A statement with its rows, time and error.
Json StatementJson(const LoggedStatement& statement);

// An observer that shows each statement on standard error while a call runs.
void TraceStatement(const LoggedStatement& statement);

}  // namespace tavcc
