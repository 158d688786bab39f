// A tape: the statements that a call sent, in order, each with what the database answered. A step
// that has one is replayed without a database (tape_session.h).
//
//   {"sql": "Select …", "columns": ["FID", "FQty"], "rows": [[7, {"decimal": "1.50"}]]}
//   {"sql": "Update …"}
//   {"procedure": "GetNumber", "parameters": {"@a": 1}, "outputs": {"@n": 8}}
//   {"sql": "Insert …", "error": {"number": 2627, "source": "…", "description": "…"}}
//
// Values have the exact forms of values.h. "errors" lists what the connection's Errors() tells
// then, where that is anything but the one error.
#pragma once

#include <string>
#include <vector>

#include "host/statement_log.h"
#include "scenario/json.h"

namespace tavcc {

// As the log keeps them, with answers and errors.
using Tape = std::vector<LoggedStatement>;

Json TapeJson(const Tape& tape);

// The statements without their answers, as a step lists them under "statements".
Json ListedStatement(const LoggedStatement& statement);
Json ListedStatements(const Tape& tape);

// Errors: JsonError, with the statement's place on the tape.
Tape TapeFromJson(const Json& json);

}  // namespace tavcc
