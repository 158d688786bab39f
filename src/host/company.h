// A company's database in memory, which scenarios and tests begin with.
#pragma once

#include <functional>

#include "embedded/open_options.h"

namespace tavcc {

// Opens a database in memory with the ERP's tables and the base rows: those of SchemaScript and
// BaseScript, which are run once for all that a program opens. `clock` is OpenOptions::clock.
sql::OpenOptions CompanyOptions(std::function<DateTime()> clock = {});

}  // namespace tavcc
