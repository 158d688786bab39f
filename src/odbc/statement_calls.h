// The functions by which a statement is asked for its results, and the handle that they take: the
// driver manager's, or past it the driver's own.
//
// unixODBC takes a statement as never run when its very first result is an error: it then answers
// by itself that there are no more results, and freeing the statement makes the driver cancel what
// is left of the batch. The driver knows better, and ODBC hands out its handle for such questions.
// It also keeps to itself what drivers of SQL Server know of an error beyond the standard's fields.
#pragma once

#include <optional>

#include "odbc/api.h"

namespace tavcc::odbc {

struct StatementCalls {
  SQLHANDLE handle = SQL_NULL_HANDLE;
  decltype(&SQLNumResultCols) column_count = SQLNumResultCols;
  decltype(&SQLDescribeColW) describe_wide = SQLDescribeColW;
  decltype(&SQLDescribeCol) describe_bytes = SQLDescribeCol;
  decltype(&SQLFetch) fetch = SQLFetch;
  decltype(&SQLGetData) get_data = SQLGetData;
  decltype(&SQLRowCount) row_count = SQLRowCount;
  decltype(&SQLMoreResults) more_results = SQLMoreResults;
  decltype(&SQLGetDiagRecW) record_wide = SQLGetDiagRecW;
  decltype(&SQLGetDiagRec) record_bytes = SQLGetDiagRec;
  decltype(&SQLGetDiagFieldW) field = SQLGetDiagFieldW;
  decltype(&SQLCancel) cancel = SQLCancel;
};

// The driver manager's, for the statement.
StatementCalls ManagerCalls(const Statement& statement);

// The driver's own; nothing where it cannot be reached or lacks one of them: a driver that knows
// bytes only does.
std::optional<StatementCalls> DriverCalls(const Link& link, const Statement& statement);

}  // namespace tavcc::odbc
