// What the library sends to the database: a record of every statement, and a way to make one fail.
//
// It serves `--trace`, the scenarios' lists of statements, and fault injection. One log may watch
// any number of connections; it keeps the order in which they were used.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/connection.h"
#include "foundation/error.h"

namespace tavcc {

struct LoggedStatement {
  bool is_procedure = false;
  std::string text = {};                            // the batch as sent, or the procedure's name
  std::vector<ProcedureParameter> parameters = {};  // a procedure's input parameters, in order
  int rows = -1;            // rows of the result; -1 when it has none or the cursor does not know
  double milliseconds = 0;  // how long the database took
  std::optional<AutomationError> error = {};  // what it raised instead of a result
};

class StatementLog {
 public:
  const std::vector<LoggedStatement>& statements() const { return statements_; }
  // Forgets the statements so far and any failure still ordered.
  void Clear();

  // Raises `error` in place of the k-th statement from now on (1 is the next one), once. The
  // statement does not reach the database; its text still counts as sent, and the connection's
  // Errors() then tell of it.
  void FailAt(int k, AutomationError error);
  // Whether a failure was ordered that no statement has met yet.
  bool FailurePending() const { return failure_.has_value(); }

  // Called after each statement, for output while a call runs.
  void SetObserver(std::function<void(const LoggedStatement&)> observer);

  // For connections: the failure to raise in place of the statement about to be sent, if any.
  std::optional<AutomationError> TakeFailure();
  void Add(LoggedStatement statement);

 private:
  std::vector<LoggedStatement> statements_;
  std::optional<AutomationError> failure_;
  int statements_to_failure_ = 0;
  std::function<void(const LoggedStatement&)> observer_;
};

// The connection with a log before it; all else goes to `connection` unchanged. `log` must outlive
// the result.
ConnectionPtr LogStatements(ConnectionPtr connection, StatementLog& log);

}  // namespace tavcc
