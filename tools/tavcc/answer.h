// One call as the shell sees it: made in a host transaction, and judged as passed, refused or
// failed.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "host/erp.h"
#include "registry/class_registry.h"
#include "scenario/embedded_roads.h"
#include "tavcc/command.h"

namespace tavcc {

struct Answer {
  Exit verdict = Exit::kFailed;
  Value result;
  std::vector<Value> arguments;  // one per parameter, the in/out ones as the call left them
  std::optional<AutomationError> error;
  std::vector<LoggedStatement> statements;  // what the call sent
};

// Calls the method on an object of its own, as a host does for each use. What it wrote is kept when
// it passed or refused and undone when it failed. `observer` sees each statement as it is sent.
// Errors: ArgumentError and the like before the
// method ran; what the method itself raises is in the answer.
Answer CallInTransaction(Erp& erp, const ClassDescription& cls, const Method& method,
                         std::vector<Value> arguments, const StatementObserver& observer = nullptr);

// The verdict in the result, and for CheckBill, which tells it in words only, in its message. A
// method that answers no verdict (a price, a period, whether a check is needed) passes by
// answering.
Exit VerdictOf(const Method& method, const Value& result, std::span<const Value> arguments);

// The verdict in an error that the method raised: the refusal of a BeforeDel hook is error -5; any
// other error is a failure.
Exit VerdictOf(const Method& method, const AutomationError& error);

// "passed", "refused", "failed".
const char* VerdictText(Exit verdict);

}  // namespace tavcc
