// What a call does, as text: a line of JSON for each thing that happens, told by its first key. The
// automation server's traces are made of such lines; what `--trace --json` prints of a statement
// has the same members.
//
//   {"call":"PublicSysInfo.AuditBill","started":"…","process":7,"thread":8,"arguments":{…}}
//   {"ladder":1}
//   {"statement":1,"sql":"Select …","from":"src/…/x.cpp:12","gate":"credit","rows":1,
//    "milliseconds":0.4}
//   {"rows_of":1,"columns":["FID"],"rows":[[7]],"count":1,"to_the_end":true}
//   {"errors_of":1,"errors":[{"number":50000,"source":"…","description":"…","state":"…"}]}
//   {"host":"setting","category":"IC","key":"ControlPoint","value":"1","gate":"credit"}
//   {"gate":"credit","answer":"refused","message":"…","rule":"src/checks/credit.cpp:116"}
//   {"left_out":12}
//   {"result":1,"arguments":{…},"milliseconds":12.5}
//
// - "ladder" begins the n-th list of gates: in a batch that of the n-th bill.
// - A statement stands where it was sent; its rows, as far as the rule saw them, follow when it has
//   let go of them. Its "rows" are null where it has no result, -1 where the cursor does not know
//   how many. One that failed has "error"; a stored procedure has "procedure" with "parameters" and
//   "outputs" in place of "sql".
// - "errors_of" is what the connection told of its last statement when the rule asked.
// - "host" is what the host answered: setting, published, right (by class type), text, user.
// - A gate's answer is passed, refused, not asked, or failed: an error left it.
// - "left_out" tells how many lines were too many for the file.
// - The last line has what came back, or "error" in place of "result" where the call raised one.
//   It has "failure" too where anything failed below the rules, whatever they made of it.
//
// Values have the forms of tests/scenarios/README.md, exactly: 7 is a 32-bit integer, {"integer":7}
// a 16-bit one, 7.0 a double, {"decimal":"1.50"}, {"date":"…"}, null is Null, {"empty":true},
// {"nothing":true}; of an object only vectors are told.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/statement_log.h"

namespace tavcc {

// The text as a JSON string; what is no UTF-8 in it as U+FFFD.
std::string JsonQuoted(std::string_view text);
std::string JsonText(const Value& value);

// A line each, without its end.
std::string StatementLine(const LoggedStatement& statement);
std::string RowsLine(const LoggedStatement& statement);
std::string ErrorsLine(int statement, const std::vector<ConnectionError>& errors);
std::string HostLine(const HostAnswer& answer);
std::string GateLine(const GateAnswer& answer);

// Objects.
std::string StatementJsonText(const LoggedStatement& statement);
std::string ErrorJsonText(const AutomationError& error);

}  // namespace tavcc
