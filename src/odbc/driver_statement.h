// A statement as the driver itself knows it, past the driver manager.
//
// unixODBC takes a statement as never run when its very first result is an error: it then answers
// by itself that there are no more results, and freeing the statement makes the driver cancel what
// is left of the batch. The driver knows better, and ODBC hands out its handle for such questions.
#pragma once

#include <optional>
#include <vector>

#include "odbc/api.h"
#include "odbc/diagnostics.h"

namespace tavcc::odbc {

class DriverStatement {
 public:
  // Nothing where the driver cannot be reached or knows bytes only.
  static std::optional<DriverStatement> Find(const Link& link, const Statement& statement);

  // Goes on to the next result, over the rows of the current one.
  SQLRETURN MoreResults() const { return more_results_(handle_); }
  // What the driver has to say about the last MoreResults.
  std::vector<Diagnostic> Diagnostics() const;

 private:
  DriverStatement() = default;

  SQLHANDLE handle_ = SQL_NULL_HANDLE;
  decltype(&SQLMoreResults) more_results_ = nullptr;
  decltype(&SQLGetDiagRecW) read_record_ = nullptr;
};

}  // namespace tavcc::odbc
