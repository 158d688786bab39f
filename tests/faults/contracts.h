// What each method promises when one of its statements goes wrong: the table in contracts.json.
//
//   "cls_CX.AuditBill": [
//     {"statement": "Select FValue", "goes_on": true},
//     {"fault": "nulls", "statement": "Select FStatus", "as_usual": true},
//     {"expect": {"result": false, "strReturnMsg": "%error%"}}
//   ]
//
// The first promise that fits holds. `statement` is a piece of the failing statement's text, `when`
// names arguments that the call was given (a list: one of these); without them it is for all.
// "%error%" in a text stands for the failure's description, "%number%" for its number.
//
// `fault` is the kind: "raised", "left", "closed" or "nulls". Without it the promise is for a
// raised error and for a closed recordset, whose reading raises one. An error that was left behind
// without being raised is nobody's affair where no promise names it; what a row of nulls comes to
// stands here for each statement that returns rows: a null counts as 0 or as the empty text
// ("goes_on"), it is not looked at ("as_usual"), or reading it is an error like a raised one
// ("as_raised"). The promises under "*" are those of all methods; a method's own come first.
#pragma once

#include <string>

#include "foundation/error.h"
#include "scenario/json.h"
#include "scenario/runner.h"

namespace tavcc::faults {

// Reads the table and checks its keys. Errors: JsonError; std::invalid_argument for an unknown
// method.
Json ReadContracts(const std::string& file);

// The word for a kind in the table.
std::string FaultName(StatementFault::Kind kind);

// The promise for a statement of a call with these arguments that goes wrong in this way; null when
// the table has none.
const Json* PromiseFor(const Json& contracts, StatementFault::Kind kind, const std::string& method,
                       const std::string& statement, const Json& arguments);

// What a call answers, on one line, without what it sent.
std::string ShowOutcome(const Method& method, const CallOutcome& outcome);

// Adds a line for each difference between the promise and what the call came to.
//   expect    the result and the arguments by name; no error is raised
//   error     number, source, description of the error that the host gets
//   goes_on   the failure is the method's own affair: no error is raised where none is otherwise,
//             and nothing that the call answers speaks of it
//   as_usual  the call answers what it answers (`usual`) when nothing goes wrong
//   one_of    one of several promises: which one lies with the data, where a check that comes first
//             may refuse
void CompareWithPromise(const Json& promise, const Method& method, const AutomationError& failure,
                        const CallOutcome& usual, const CallOutcome& outcome,
                        std::vector<std::string>& differences);

}  // namespace tavcc::faults
