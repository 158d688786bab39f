// What each method promises when one of its statements fails: the table in contracts.json.
//
//   "cls_CX.AuditBill": [
//     {"statement": "Select FValue", "goes_on": true},
//     {"expect": {"result": false, "strReturnMsg": "%error%"}}
//   ]
//
// The first promise that fits holds. `statement` is a piece of the failing statement's text, `when`
// names arguments that the call was given (a list: one of these); without them it is for all.
// "%error%" in a text stands for the failure's description, "%number%" for its number.
#pragma once

#include <string>

#include "foundation/error.h"
#include "scenario/json.h"
#include "scenario/runner.h"

namespace tavcc::faults {

// Reads the table and checks its keys. Errors: JsonError; std::invalid_argument for an unknown
// method.
Json ReadContracts(const std::string& file);

// The promise for a failing statement of a call with these arguments; null when the table has none.
const Json* PromiseFor(const Json& contracts, const std::string& method,
                       const std::string& statement, const Json& arguments);

// What a call answers, on one line, without what it sent.
std::string ShowOutcome(const Method& method, const CallOutcome& outcome);

// Adds a line for each difference between the promise and what the call came to.
//   expect    the result and the arguments by name; no error is raised
//   error     number, source, description of the error that the host gets
//   goes_on   the failure is the method's own affair: no error is raised, and nothing that the call
//             answers speaks of it
void CompareWithPromise(const Json& promise, const Method& method, const AutomationError& failure,
                        const CallOutcome& outcome, std::vector<std::string>& differences);

}  // namespace tavcc::faults
