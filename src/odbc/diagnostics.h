// What the driver has to say about the last call on a handle.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "odbc/api.h"
#include "odbc/statement_calls.h"
#include "odbc/text.h"

namespace tavcc::odbc {

struct Diagnostic {
  std::string state;   // five characters
  int32_t number = 0;  // the server's number; 0 where the driver itself speaks
  std::string text;    // without the prefixes that say who speaks

  // A message, e.g. of PRINT, or of a change of the language.
  bool IsMessage() const { return state.starts_with("01") || state == "00000"; }
  // The connection is gone.
  bool IsLoss() const { return state.starts_with("08"); }
  // The batch was given up: nothing more comes of it.
  bool IsTimeout() const { return state.starts_with("HYT"); }
  bool IsCancel() const { return state == "HY008"; }
};

// What drivers of SQL Server know beyond the standard's fields; 0 and empty where one does not.
struct ServerDetails {
  int severity = 0;
  int state = 0;
  int line = 0;
  std::string procedure;
};

// All records of the statement, in the order of the driver.
std::vector<Diagnostic> ReadDiagnostics(const StatementCalls& calls, Encoding encoding);

// All records of an environment or a connection.
std::vector<Diagnostic> ReadDiagnostics(SQLSMALLINT kind, SQLHANDLE handle, Encoding encoding);
template <class Handle>
std::vector<Diagnostic> ReadDiagnostics(const Handle& handle, Encoding encoding) {
  return ReadDiagnostics(Handle::kind(), handle.get(), encoding);
}

// Of the record, counted from 1. The calls are best the driver's own.
ServerDetails ReadDetails(const StatementCalls& calls, SQLSMALLINT record);

// "[Microsoft][ODBC Driver 18 for SQL Server][SQL Server]Invalid object name 'X'." without what is
// in front of the message: up to three names, of which "[SQL Server]" is the last. A message may
// itself begin with a bracket.
std::string WithoutPrefixes(std::string text);

}  // namespace tavcc::odbc
