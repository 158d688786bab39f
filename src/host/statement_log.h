// What the library sends to the database: a record of every statement, and a way to make one fail.
//
// It serves `--trace`, the scenarios' lists of statements, and fault injection. One log may watch
// any number of connections; it keeps the order in which they were used.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
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

// How a statement goes wrong.
struct StatementFault {
  enum class Kind {
    kRaised,  // it does not run, and raises the error
    kLeft,    // it runs; the error is left in the connection's Errors(), and nothing raises it
    kClosed,  // it runs, and its recordset comes back closed
    kNulls,   // it runs, and every field of its rows is Null
  };
  StatementFault(AutomationError raised_or_left, Kind how = Kind::kRaised)
      : error(std::move(raised_or_left)), kind(how) {}

  AutomationError error;  // without meaning for kClosed and kNulls
  Kind kind;
};

class StatementLog {
 public:
  const std::vector<LoggedStatement>& statements() const { return statements_; }
  // Forgets the statements so far and any failure still ordered.
  void Clear();

  // Lets the k-th statement from now on (1 is the next one) go wrong, once. Its text counts as sent
  // also where it does not reach the database; the connection's Errors() then tell of an error that
  // was raised or left.
  void FailAt(int k, StatementFault fault);
  // Whether a failure was ordered that no statement has met yet.
  bool FailurePending() const { return fault_.has_value(); }

  // Called after each statement, for output while a call runs.
  void SetObserver(std::function<void(const LoggedStatement&)> observer);

  // For connections: what is to go wrong with the statement about to be sent, if anything.
  std::optional<StatementFault> TakeFault();
  void Add(LoggedStatement statement);

 private:
  std::vector<LoggedStatement> statements_;
  std::optional<StatementFault> fault_;
  int statements_to_fault_ = 0;
  std::function<void(const LoggedStatement&)> observer_;
};

// The connection with a log before it; all else goes to `connection` unchanged. `log` must outlive
// the result.
ConnectionPtr LogStatements(ConnectionPtr connection, StatementLog& log);

}  // namespace tavcc
