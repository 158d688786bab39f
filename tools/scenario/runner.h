// Runs scenarios and tells what differs.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "scenario/backend.h"
#include "scenario/scenario.h"

namespace tavcc {

// A step of a scenario that came out otherwise than expected.
struct StepFailure {
  int step = 0;      // 0 when the start state could not be made
  std::string what;  // the call or the query, and the failing statement of a sweep
  std::vector<std::string> differences;
  std::vector<LoggedStatement> sent;  // what the call sent
};

// What a call came to: its result or its error, its arguments afterwards, and what it sent.
struct CallOutcome {
  Value result;
  std::vector<Value> arguments;
  std::optional<AutomationError> error;
  std::vector<LoggedStatement> sent;
  std::vector<std::string> off_tape;  // what it asked that is not on its tape, or left unasked
};
CallOutcome CallStep(BackendSession& session, const Step& step,
                     const std::optional<InjectedFailure>& failure);

// What a query came to: its rows, or its error.
struct QueryOutcome {
  RecordsetPtr rows;
  std::optional<AutomationError> error;
};
QueryOutcome QueryStep(BackendSession& session, const Step& step);

// Adds a line for each difference between what a call came to and what is expected of its result
// and arguments, by name, and of its error; without an expected one, none is. What was not on its
// tape comes first.
void CompareOutcome(const Method& method, const Json& expect,
                    const std::optional<ExpectedError>& error, const CallOutcome& outcome,
                    std::vector<std::string>& differences);

// All of a call that came out otherwise than its step expects: the above, and its statements.
std::vector<std::string> StepDifferences(const Step& step, const CallOutcome& outcome);

// What of a scenario was left out, a line for each.
struct Skipped {
  std::vector<std::string> for_clock;  // steps that need a clock that stands still
  std::vector<std::string> cut_short;  // rests of scenarios that could not go on, and sweeps
};

// Who watches a run: what the scenario's own steps do, not what its sweeps repeat. Each may be
// null.
struct RunObserver {
  std::function<void(BackendSession&)> opened = nullptr;  // a session in the start state
  std::function<void(const Step&)> calling = nullptr;     // what is a call
  std::function<void(const Step&, const CallOutcome&)> called = nullptr;
  std::function<void(BackendSession&)> ended = nullptr;  // the last step was taken
};

// Runs the scenario to its end. The steps that came out otherwise than expected; none when all came
// as expected. A step that needs the clock is left out where the backend does not fix it, and the
// rest of a scenario that cannot go on; `skipped`, where given, is told of each.
std::vector<StepFailure> RunScenario(const Scenario& scenario, Backend& backend,
                                     Skipped* skipped = nullptr, const RunObserver& observer = {});

// A fresh session on which the steps before `number` were taken, those that need the clock only
// where it is `fixed`. Errors: those of Open.
std::unique_ptr<BackendSession> SessionBefore(const Scenario& scenario, int number,
                                              Backend& backend, bool fixed);

// The sweep of the step that its statement `at` is for; null when there is none.
const Sweep* SweepFor(const Step& step, int at);

// The line for a step that needs the clock.
std::string NeedsClockText(const Scenario& scenario, int step);

// The failures as a person reads them: where, the differences, and the SQL that was sent. Empty
// when there is none.
std::string DescribeFailures(const Scenario& scenario, const std::vector<StepFailure>& failures);

// What a call is supplied with beside the arguments it is given.
struct Supplies {
  Host& host;                // makes dictionaries and vectors
  std::string dsn;           // sDsn, strConString
  ConnectionPtr connection;  // cn, oConn
};

// The arguments of a call in the order of the parameters: those given in `args`, then the supplies;
// an optional one that is not given is omitted, any other is the empty value of its type.
// Errors: JsonError for a form that is none, e.g. a date that does not exist.
std::vector<Value> MakeArguments(const Supplies& supplies, const Method& method, const Json& args);

// "select …" for a text, "procedure name(@a = 1)" for a call.
std::string ShowStatement(const LoggedStatement& statement);

}  // namespace tavcc
