// The trace of a call in text form: a line of JSON for each thing that happened.
//
//   {"call":"PublicSysInfo.AuditBill","started":"…","process":7,"thread":8,"arguments":{…}}
//   {"statement":1,"sql":"Select …","from":"src/…/x.cpp:12","rows":1,"milliseconds":0.4}
//   {"rows_of":1,"columns":["FID"],"rows":[[7]],"count":1,"to_the_end":true}
//   {"settings":[{"category":"IC","key":"ControlPoint","value":"1"}]}
//   {"result":1,"arguments":{…},"milliseconds":12.5}
//
// Statements stand in the order in which they were sent; the rows that the rule saw follow when it
// has let go of them. A call that raised an error has "error" in place of "result". A line
// {"left_out":n} tells how many lines were too many.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "host/statement_log.h"

namespace tavcc {

// The text as a JSON string.
std::string JsonQuoted(std::string_view text);
// Decimals and dates have the forms of tests/scenarios/README.md; of an object only vectors are
// told.
std::string JsonText(const Value& value);

std::string StatementLine(const LoggedStatement& statement);
std::string RowsLine(const LoggedStatement& statement);
std::string SettingsLine(std::span<const LoggedSetting> settings);
std::string ErrorText(const AutomationError& error);

}  // namespace tavcc
