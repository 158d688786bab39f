// A Connection over ODBC: any database that has a driver, SQL Server above all.
//
// Statements go to the server as they are. A batch is walked to its end, so that each of its errors
// is seen, and its first rows are read whole: a recordset never holds the connection. The password
// of a connection string stands in no error and no description.
#pragma once

#include <string>

#include "foundation/batch_session.h"

namespace tavcc {

struct OdbcOptions {
  // As SQLDriverConnect takes it, e.g. "Driver=FreeTDS;Server=erp;UID=sa;PWD={a;b};Database=ERP".
  std::string connection_string;
  // How long connecting and one batch may take; 0 waits for ever.
  int login_seconds = 15;
  int query_seconds = 300;
};

// The number of an error that the driver raises itself, without one of the server's: the one that
// automation calls an unspecified error.
inline constexpr int32_t kDriverError = -2147467259;

// Connects. Errors: AutomationError with the server's or the driver's first error, led by what the
// connection string names, its password masked.
//
// Beside the port's contract: informational messages are in Errors() with number 0. A timeout is an
// error and leaves the session open where the driver could cancel the batch. A connection that is
// lost in the middle is an error that says so, and the session is then closed. A procedure is
// called by a batch "EXEC name @a = …" whose variables take the output parameters, since drivers
// disagree about bound ones; an output parameter's variable is of the kind of its value, text where
// it has none. A column of binary type raises error 13.
BatchSessionPtr OpenOdbc(const OdbcOptions& options);

// Opens a session of OpenOdbc again that was closed or lost. Errors: as OpenOdbc; it stays closed.
void ReopenOdbc(Connection& session);

}  // namespace tavcc
