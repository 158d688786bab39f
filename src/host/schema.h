// The T-SQL scripts of the ERP database, as the files beside this one hold them.
//
// Each is a script for a new database: batches separated by lines that hold only GO. They are to be
// run in this order; the sample company is optional.
#pragma once

#include <string_view>

namespace tavcc {

// schema.sql: tables, indexes, views, stored procedures.
std::string_view SchemaScript();
// base.sql: the settings and periods that every database has.
std::string_view BaseScript();
// sample.sql: the sample company with its bills.
std::string_view SampleScript();

}  // namespace tavcc
