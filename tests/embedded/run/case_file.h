// Cases of SQL as data: a file is a list of cases, a case a list of steps on a fresh database.
//
//   {"name": "…", "from": "where the expectation comes from", "schema": true, "steps": [
//     {"sql": "select 1 as a", "columns": ["a"], "rows": [[1]]},
//     {"sql": ["line one\r\n", "line two"], "error": 208, "message": "Invalid object name 'x'."}]}
//
// "schema" makes the tables of the ERP database first. "sql" may be a list of pieces, joined as
// they stand. A step without "rows" and "error" must pass; "rows" are all rows in their order, a
// number for any numeric value, a text for texts, dates and decimals to the last digit, null.
// "errors" lists the numbers of all errors of the batch. "session" is 1 or 2 where a case needs
// two.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "embedded/embedded.h"

namespace tavcc::sql {

struct CaseName {
  std::string file, name;
  size_t index = 0;
};

// All cases of the files in a folder under tests/embedded.
std::vector<CaseName> FindCases(const std::string& folder);

// A fresh database, with the tables of the ERP database where the case asks for them.
std::shared_ptr<Database> OpenFor(const CaseName& which);

// The batches of a case, in their order.
std::vector<std::string> BatchesOf(const CaseName& which);

// Runs a case; the text says what differs, empty when nothing does.
std::string RunCase(const CaseName& which);

}  // namespace tavcc::sql
